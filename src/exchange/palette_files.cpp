#include "exchange/palette_files.h"

#include "exchange/uncompressed_art.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QRegularExpression>

namespace {
constexpr int kColors = 16;
constexpr int kActBytes = 256 * 3;

QString Extension(const QString& fileName) { return QFileInfo(fileName).suffix().toLower(); }
QString Shown(const QString& fileName) { return QDir::toNativeSeparators(fileName); }
QString UnknownFormatText(const QString& fileName)
{
    return QStringLiteral("%1: unknown palette format; name it .gpl, .act, .tpl, .png or .bmp").arg(Shown(fileName));
}
ScreenColor SlotScreen(const Palette& palette, int slot) { return WordToScreen(palette.colors[size_t(slot)]); }

QByteArray GplBytes(const Palette& palette, const QString& name)
{
    QByteArray text = "GIMP Palette\nName: " + name.toUtf8() + "\nColumns: 16\n#\n";
    for (int slot = 0; slot < kColors; ++slot) {
        const ScreenColor c = SlotScreen(palette, slot);
        text += QStringLiteral("%1 %2 %3\tIndex %4\n")
                    .arg(ScreenRed(c), 3).arg(ScreenGreen(c), 3).arg(ScreenBlue(c), 3).arg(slot).toUtf8();
    }
    return text;
}

// 256 colours of three bytes, then the number in use and no transparent index.
QByteArray ActBytes(const Palette& palette)
{
    QByteArray bytes(kActBytes, '\0');
    for (int slot = 0; slot < kColors; ++slot) {
        const ScreenColor c = SlotScreen(palette, slot);
        bytes[3 * slot] = char(ScreenRed(c));
        bytes[3 * slot + 1] = char(ScreenGreen(c));
        bytes[3 * slot + 2] = char(ScreenBlue(c));
    }
    return bytes + QByteArray::fromHex("0010FFFF");
}

// A 16 x 1 picture whose pixel i has colour i.
QByteArray PictureBytes(const Palette& palette, const char* format)
{
    QImage picture(kColors, 1, QImage::Format_Indexed8);
    QList<QRgb> table;
    for (int slot = 0; slot < kColors; ++slot)
        table << ScreenToRgb(SlotScreen(palette, slot));
    picture.setColorTable(table); // before the pixels, which must index it
    for (int slot = 0; slot < kColors; ++slot)
        picture.setPixel(slot, 0, uint(slot));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(picture);
    return buffer.data();
}

std::optional<PaletteColors> FromRgb(const QList<QRgb>& colors)
{
    if (colors.size() < kColors)
        return std::nullopt;
    PaletteColors words{};
    for (int i = 0; i < kColors; ++i)
        words[size_t(i)] = ScreenToConsole(RgbToScreen(colors[i]));
    return words;
}

std::optional<PaletteColors> FromGpl(const QByteArray& bytes)
{
    static const QRegularExpression color(QStringLiteral("^\\s*(\\d+)\\s+(\\d+)\\s+(\\d+)"));
    const QStringList lines = QString::fromUtf8(bytes).split(u'\n');
    if (lines.isEmpty() || !lines[0].startsWith(QStringLiteral("GIMP Palette")))
        return std::nullopt;
    QList<QRgb> colors;
    for (const QString& line : lines.mid(1))
        if (const QRegularExpressionMatch m = color.match(line); m.hasMatch())
            colors << qRgb(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    return FromRgb(colors);
}

QList<QRgb> Triples(const QByteArray& bytes, int offset)
{
    QList<QRgb> colors;
    for (int i = 0; i < kColors && offset + 3 * i + 2 < bytes.size(); ++i) {
        const auto* p = reinterpret_cast<const uint8_t*>(bytes.constData()) + offset + 3 * i;
        colors << qRgb(p[0], p[1], p[2]);
    }
    return colors;
}

// The export's scale is one step below the screen's, so a component goes one step up.
std::optional<PaletteColors> FromTpl(const QByteArray& bytes)
{
    if (!bytes.startsWith("TPL") || bytes.size() < 4 + 3 * kColors || bytes[3] != '\0')
        return std::nullopt;
    PaletteColors words{};
    const QList<QRgb> colors = Triples(bytes, 4);
    auto up = [](int v) { return v == 0 ? 0 : std::min(ComponentTo5(v) + 1, 31); };
    for (int i = 0; i < kColors; ++i)
        words[size_t(i)] = ConsoleColor(up(qRed(colors[i])) | up(qGreen(colors[i])) << 5 | up(qBlue(colors[i])) << 10);
    return words;
}

std::optional<PaletteColors> FromPicture(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    QImage picture;
    if (reader.size().width() * qint64(reader.size().height()) > 1 << 24 || !reader.read(&picture))
        return std::nullopt;
    return FromRgb(picture.colorTable());
}
}

bool IsPaletteFileName(const QString& fileName)
{
    return QStringList{"gpl", "act", "tpl", "png", "bmp"}.contains(Extension(fileName));
}

std::optional<QByteArray> PaletteFileBytes(const Palette& palette, const QString& fileName, const QString& name,
                                           QString& errorText)
{
    const QString extension = Extension(fileName);
    if (extension == "gpl")
        return GplBytes(palette, name);
    if (extension == "act")
        return ActBytes(palette);
    if (extension == "tpl")
        return TplPaletteBytes(palette);
    if (extension == "png" || extension == "bmp")
        return PictureBytes(palette, extension == "png" ? "png" : "bmp");
    errorText = UnknownFormatText(fileName);
    return std::nullopt;
}

std::optional<PaletteColors> ReadPaletteFile(const QString& fileName, QString& errorText)
{
    QFile file(fileName);
    if (!IsPaletteFileName(fileName)) {
        errorText = UnknownFormatText(fileName);
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        errorText = QStringLiteral("%1: %2").arg(Shown(fileName), file.errorString());
        return std::nullopt;
    }
    const QByteArray bytes = file.read(1 << 24);
    const QString extension = Extension(fileName);
    std::optional<PaletteColors> colors;
    if (extension == "gpl")
        colors = FromGpl(bytes);
    else if (extension == "act")
        colors = bytes.size() == kActBytes || bytes.size() == kActBytes + 4 ? FromRgb(Triples(bytes, 0)) : std::nullopt;
    else if (extension == "tpl")
        colors = FromTpl(bytes);
    else
        colors = FromPicture(bytes);
    if (!colors)
        errorText = QStringLiteral("%1: not a %2 palette of at least 16 colours").arg(Shown(fileName), extension.toUpper());
    return colors;
}
