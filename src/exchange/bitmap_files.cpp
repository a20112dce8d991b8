#include "exchange/bitmap_files.h"

#include "exchange/uncompressed_art.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>
#include <cstdlib>
#include <utility>

namespace {
// Pictures past these sizes are refused before anything is allocated for them.
constexpr qint64 kMaxSide = 16384;
constexpr qint64 kMaxPixels = 64 * 1024 * 1024;
constexpr int kAllocationLimitMb = int(kMaxPixels * 4 / (1024 * 1024));
// What a file may hold beyond the pixels of an uncompressed 32-bit picture of the size
// it declares: headers, colour table, colour profile, trailing bytes.
constexpr qint64 kFileSlack = 1024 * 1024;
constexpr int kPixelOffsetField = 10;

QString Shown(const QString& fileName) { return QDir::toNativeSeparators(fileName); }

// count bytes from offset on; bytes past the end, or of a file that cannot be read,
// are 0.
QByteArray FileBytesAt(const QString& fileName, qint64 offset, int count)
{
    QByteArray bytes;
    QFile file(fileName);
    if (file.open(QIODevice::ReadOnly) && file.seek(offset))
        bytes = file.read(count);
    return bytes + QByteArray(count - bytes.size(), '\0');
}

bool RefuseCutShort(const QString& fileName, QString& errorText)
{
    errorText = QStringLiteral("\"%1\" is cut short: it ends before its pixels do.").arg(Shown(fileName));
    return false;
}

// The fewest bytes the declared rows can take. Only bitmaps with a colour table may be
// run-length encoded, and those have no such bound.
qint64 LeastPixelBytes(QImage::Format format, qint64 width, qint64 height)
{
    const qint64 bits = format == QImage::Format_Mono ? 1 : format == QImage::Format_Indexed8 ? 0 : 16;
    return (width * bits + 31) / 32 * 4 * height;
}

// Checks the size the header declares; gives the most bytes such a file can need.
bool CheckDeclaredSize(QFile& file, const QString& fileName, qint64& maxFileBytes, QString& errorText)
{
    QImageReader reader(&file, "bmp");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    const qint64 width = size.width();
    const qint64 height = std::abs(qint64(size.height())); // negative: rows stored top down
    if (width <= 0 || height <= 0) {
        errorText = QStringLiteral("\"%1\" is not a bitmap that can be read.").arg(Shown(fileName));
        return false;
    }
    if (width > kMaxSide || height > kMaxSide || width * height > kMaxPixels) {
        errorText = QStringLiteral("\"%1\" declares a picture of %2 x %3 pixels, larger than can be imported.")
                        .arg(Shown(fileName))
                        .arg(width)
                        .arg(height);
        return false;
    }
    if (LeastPixelBytes(reader.imageFormat(), width, height) > file.size())
        return RefuseCutShort(fileName, errorText);
    maxFileBytes = width * height * 4 + kFileSlack;
    return true;
}

// The reader stops quietly where a short file ends, so one byte is added behind the
// file: a read that reaches it ran past the end.
bool DecodeBitmap(QByteArray bytes, const QString& fileName, QImage& image, QString& errorText)
{
    const qint64 fileSize = bytes.size();
    if (fileSize < kPixelOffsetField + 4
        || qFromLittleEndian<quint32>(bytes.constData() + kPixelOffsetField) > quint64(fileSize))
        return RefuseCutShort(fileName, errorText);
    bytes.append('\0');
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "bmp");
    reader.setAutoDetectImageFormat(false);
    QImageReader::setAllocationLimit(kAllocationLimitMb);
    if (!reader.read(&image)) {
        errorText =
            QStringLiteral("\"%1\" could not be read as a bitmap: %2").arg(Shown(fileName), reader.errorString());
        return false;
    }
    return buffer.pos() <= fileSize || RefuseCutShort(fileName, errorText);
}
}

bool WriteBitmapFile(const QImage& image, const QString& fileName, QString& errorText)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    // 24 bits a pixel keeps every colour exactly.
    QImageWriter writer(&buffer, "bmp");
    if (!writer.write(image.convertToFormat(QImage::Format_RGB32))) {
        errorText = QStringLiteral("Could not write \"%1\": %2").arg(Shown(fileName), writer.errorString());
        return false;
    }
    return WriteWholeFile(fileName, bytes, errorText);
}

int BitmapDepth(const QString& fileName)
{
    const QByteArray bytes = FileBytesAt(fileName, 28, 2);
    return uint8_t(bytes[0]) | (uint8_t(bytes[1]) << 8);
}

void ReadBitmapPalette(Palette& palette, const QString& fileName)
{
    const QByteArray table = FileBytesAt(fileName, 54, 16 * 4);
    for (int i = 0; i < 16; ++i) {
        const auto entry = reinterpret_cast<const uint8_t*>(table.constData()) + 4 * i;
        palette.colors[size_t(i)] = ScreenToConsole(MakeScreenColor(entry[2], entry[1], entry[0]));
    }
}

bool LoadBitmapImage(const QString& fileName, QImage& picture, QString& errorText)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        errorText = QStringLiteral("Could not open \"%1\": %2").arg(Shown(fileName), file.errorString());
        return false;
    }
    qint64 maxFileBytes = 0;
    if (!CheckDeclaredSize(file, fileName, maxFileBytes, errorText))
        return false;
    const QByteArray bytes = file.seek(0) ? file.read(maxFileBytes + 1) : QByteArray();
    if (bytes.size() > maxFileBytes) {
        errorText = QStringLiteral("\"%1\" is much longer than the picture it declares.").arg(Shown(fileName));
        return false;
    }
    QImage decoded;
    if (!DecodeBitmap(bytes, fileName, decoded, errorText))
        return false;
    picture = std::move(decoded);
    return true;
}

bool LoadBitmapPicture(const QString& fileName, QImage& picture, QString& errorText)
{
    QImage loaded;
    if (!LoadBitmapImage(fileName, loaded, errorText))
        return false;
    QImage converted = loaded.convertToFormat(QImage::Format_RGB32);
    if (converted.isNull()) {
        errorText = QStringLiteral("Not enough memory to load \"%1\".").arg(Shown(fileName));
        return false;
    }
    picture = std::move(converted);
    return true;
}
