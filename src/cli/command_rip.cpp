// zelvane-art rip: every listed frame as an indexed PNG in its entry's palette, a
// manifest that says where each came from, and each distinct palette in three formats.
#include "cli/cli.h"
#include "exchange/palette_files.h"
#include "exchange/whole_file.h"
#include "rom/art_lists.h"
#include "view/frame_render.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <unistd.h>

namespace {
const CommandHelp kHelp{
    "rip", "ROM DIR [--tables 0,3,...] [--quiet]",
    "Write the frames of ROM into DIR as indexed PNG pictures, with a manifest and the palettes.",
    "Each frame the frame list shows becomes DIR/tableNN/slotNNN.png, 8-bit indexed in its entry's\n"
    "palette: indices 0 to 16 are the frame's pixel values, index 17 is fully transparent. The PNG\n"
    "covers the box of the drawn pixels; DIR/manifest.json gives each file's table, slot, offset and\n"
    "origin, the frame coordinate of its top-left pixel. Frames that cannot be read are listed there\n"
    "with a reason instead of a file. Each distinct palette is written as DIR/palettes/tableNN.gpl,\n"
    ".act and .tpl. DIR is created when missing.\n\n"
    "  --tables LIST  only these tables, comma-separated (0 to 13)\n"
    "  --quiet        no progress line on a terminal",
    2};

struct Rip {
    QDir dir;
    const RomDocument& state;
    bool progress = false;
    QJsonArray frames = {};
    QList<std::pair<Palette, QString>> palettes = {}; // distinct ones, and their base names
    int done = 0, total = 0;
    QString errorText = {};
};

std::optional<QList<int>> TableList(const QString& text)
{
    QList<int> tables;
    for (const QString& part : text.split(u',')) {
        const std::optional<int> n = DecimalArgument(part.trimmed());
        if (!n || *n < 0 || *n >= kArtTableCount)
            return std::nullopt;
        tables << *n;
    }
    return tables;
}

QByteArray PngBytes(const QImage& picture)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "png").write(picture);
    return buffer.data();
}

bool MakeFolder(Rip& rip, const QString& relative)
{
    if (rip.dir.mkpath(relative))
        return true;
    rip.errorText = QStringLiteral("%1: the folder cannot be created").arg(QDir::toNativeSeparators(rip.dir.filePath(relative)));
    return false;
}

// Unlike the editor's exports, no flush and rename per file: a rip writes thousands of
// them, and a rip that fails is simply run again. What was begun of a file goes.
bool WriteInto(Rip& rip, const QString& relative, const QByteArray& bytes)
{
    QFile file(rip.dir.filePath(relative));
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)
        && file.write(bytes) == bytes.size() && file.flush()) {
        file.close();
        if (file.error() == QFileDevice::NoError)
            return true;
    }
    rip.errorText = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(file.fileName()), file.errorString());
    file.remove();
    return false;
}

// The palette's files, written once for all the tables that show the same colours.
std::optional<QString> PaletteFiles(Rip& rip, int n)
{
    const Palette& palette = rip.state.palettes[size_t(n)];
    for (const auto& [known, name] : rip.palettes)
        if (known.colors == palette.colors)
            return name;
    const QString name = QStringLiteral("palettes/table%1").arg(n, 2, 10, QChar(u'0'));
    if (!MakeFolder(rip, QStringLiteral("palettes")))
        return std::nullopt;
    for (const char* extension : {".gpl", ".act", ".tpl"})
        if (!WriteInto(rip, name + extension, *PaletteFileBytes(palette, name + extension, QStringLiteral("Zelvane table %1").arg(n), rip.errorText)))
            return std::nullopt;
    rip.palettes.append({palette, name});
    return name;
}

// An earlier rip's manifest goes first, so that a rip that fails leaves none listing
// what is not there for insert to trust.
bool RemoveStaleManifest(const QString& dirPath)
{
    QFile stale(QDir(dirPath).filePath(QStringLiteral("manifest.json")));
    if (!stale.exists() || stale.remove())
        return true;
    Fail(QStringLiteral("%1: the old manifest cannot be removed (%2)")
             .arg(QDir::toNativeSeparators(stale.fileName()), stale.errorString()));
    return false;
}

bool RipFrame(Rip& rip, int n, int slot, const QString& paletteName)
{
    const int32_t offset = rip.state.tables[size_t(n)].pointers[size_t(slot)];
    QJsonObject entry{{"table", n}, {"slot", slot}, {"offset", double(uint32_t(offset))}};
    ArtFrame frame;
    int32_t readPosition = 0;
    if (offset < 0 || offset >= RomLength(rip.state.file)) {
        entry["reason"] = QStringLiteral("the entry holds no position inside the image");
    } else if (ReadFrame(rip.state.file, readPosition, frame, offset) != FrameRead::Complete) {
        entry["reason"] = QStringLiteral("the frame runs past the end of the image or past what a frame can hold");
    } else {
        const FramePixels pixels = RenderFramePixels(frame);
        const QString file = QStringLiteral("table%1/slot%2.png").arg(n, 2, 10, QChar(u'0')).arg(slot, 3, 10, QChar(u'0'));
        if (!WriteInto(rip, file, PngBytes(IndexedFramePicture(pixels, rip.state.palettes[size_t(n)]))))
            return false;
        entry["file"] = file;
        entry["origin"] = QJsonArray{pixels.origin.x(), pixels.origin.y()};
        entry["palette"] = paletteName;
    }
    rip.frames.append(entry);
    if (rip.progress && (++rip.done % 32 == 0 || rip.done == rip.total))
        std::fprintf(stderr, "\rrip: %d of %d frames", rip.done, rip.total);
    return true;
}

bool RipTable(Rip& rip, int n)
{
    const std::optional<QString> paletteName = PaletteFiles(rip, n);
    if (!paletteName || !MakeFolder(rip, QStringLiteral("table%1").arg(n, 2, 10, QChar(u'0'))))
        return false;
    for (int slot = 0; slot < ListedSlotCount(rip.state.tables[size_t(n)]); ++slot)
        if (!RipFrame(rip, n, slot, *paletteName))
            return false;
    return true;
}
}

int RunRip(const QStringList& args)
{
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption(QStringLiteral("tables"), {}, QStringLiteral("LIST")));
    parser.addOption(QCommandLineOption(QStringLiteral("quiet")));
    if (const int exit = ParseCommand(parser, args, kHelp); exit >= 0)
        return exit;
    const std::optional<QList<int>> tables = parser.isSet(QStringLiteral("tables"))
        ? TableList(parser.value(QStringLiteral("tables")))
        : QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    if (!tables) {
        std::fprintf(stderr, "zelvane-art rip: --tables takes table numbers 0 to 13, such as 0,3,7\n");
        return kUsage;
    }
    const std::unique_ptr<CliImage> image = OpenImage(parser.positionalArguments()[0], false);
    if (!image)
        return kRefused;
    const QString dirPath = parser.positionalArguments()[1];
    if (!RemoveStaleManifest(dirPath))
        return kRefused;
    if (!QDir().mkpath(dirPath))
        return Fail(QStringLiteral("%1: the folder cannot be created").arg(QDir::toNativeSeparators(dirPath)));
    Rip rip{QDir(dirPath), image->document, !parser.isSet(QStringLiteral("quiet")) && ::isatty(2)};
    for (int n : *tables)
        rip.total += ListedSlotCount(rip.state.tables[size_t(n)]);
    for (int n : *tables)
        if (!RipTable(rip, n))
            return Fail(rip.errorText);
    if (rip.progress && rip.total > 0)
        std::fputc('\n', stderr);
    const QByteArray manifest = QJsonDocument(QJsonObject{{"frames", rip.frames}}).toJson(QJsonDocument::Indented);
    // Last, and whole or not at all.
    return WriteWholeFile(rip.dir.filePath(QStringLiteral("manifest.json")), manifest, rip.errorText) ? kDone : Fail(rip.errorText);
}
