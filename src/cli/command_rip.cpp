// zelvane-art rip: every listed frame as an indexed PNG in its entry's palette (or each
// table's frames on one sheet), a manifest that says where each came from and what rip
// wrote, and each distinct palette in three formats.
#include "cli/cli.h"
#include "cli/manifest.h"
#include "exchange/palette_files.h"
#include "exchange/sprite_sheet.h"
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
#include <QSet>
#include <cstdio>
#include <unistd.h>

namespace {
const CommandHelp kHelp{
    "rip", "ROM DIR [--tables 0,3,...] [--sheets] [--force] [--quiet]",
    "Write the frames of ROM into DIR as indexed PNG pictures, with a manifest and the palettes.",
    "Each frame the frame list shows becomes DIR/tableNN/slotNNN.png, 8-bit indexed in its entry's\n"
    "palette: indices 0 to 16 are the frame's pixel values, index 17 is fully transparent. The PNG\n"
    "covers the box of the drawn pixels; DIR/manifest.json gives each file's table, slot, offset,\n"
    "origin (the frame coordinate of its top-left pixel) and checksum. Frames that cannot be read\n"
    "are listed there with a reason instead of a file. Each distinct palette is written as\n"
    "DIR/palettes/tableNN.gpl, .act and .tpl. DIR is created when missing.\n\n"
    "A picture that was edited since the rip that wrote it (its checksum in DIR/manifest.json no\n"
    "longer matches) is never overwritten: rip refuses, naming it, before it writes anything.\n\n"
    "  --tables LIST  only these tables, comma-separated (0 to 13)\n"
    "  --sheets       one picture per table, DIR/tableNN.png, each frame in a rectangle of its own\n"
    "                 (in slot order, a transparent pixel between neighbours), given as \"rect\":\n"
    "                 [x, y, w, h] in the manifest; origin is the rectangle's top-left pixel\n"
    "  --force        overwrite pictures edited since the last rip\n"
    "  --quiet        no progress line on a terminal",
    2};

struct Rip {
    QDir dir;
    const RomDocument& state;
    bool sheets = false;
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

// The first picture an earlier rip wrote into dirPath that was edited since.
std::optional<QString> EditedPicture(const QString& dirPath)
{
    QString unread;
    const std::optional<std::vector<ManifestFrame>> earlier = ReadManifest(dirPath, unread);
    QSet<QString> checked;
    for (const ManifestFrame& frame : earlier.value_or(std::vector<ManifestFrame>{})) {
        if (!frame.crc32 || checked.contains(frame.file))
            continue;
        checked.insert(frame.file);
        QFile picture(QDir(dirPath).filePath(frame.file));
        if (picture.exists() && (!picture.open(QIODevice::ReadOnly) || ChecksumText(picture.readAll()) != *frame.crc32))
            return picture.fileName();
    }
    return std::nullopt;
}

// A frame of the list as rip finds it: its manifest line so far, and its pixels when it
// can be read.
struct FoundFrame {
    QJsonObject entry;
    std::optional<FramePixels> pixels;
};

FoundFrame FindFrame(const Rip& rip, int n, int slot)
{
    const int32_t offset = rip.state.tables[size_t(n)].pointers[size_t(slot)];
    FoundFrame found{{{"table", n}, {"slot", slot}, {"offset", double(uint32_t(offset))}}, std::nullopt};
    ArtFrame frame;
    int32_t readPosition = 0;
    if (offset < 0 || offset >= RomLength(rip.state.file))
        found.entry["reason"] = QStringLiteral("the entry holds no position inside the image");
    else if (ReadFrame(rip.state.file, readPosition, frame, offset) != FrameRead::Complete)
        found.entry["reason"] = QStringLiteral("the frame runs past the end of the image or past what a frame can hold");
    else
        found.pixels = RenderFramePixels(frame);
    return found;
}

void Record(Rip& rip, QJsonObject entry)
{
    rip.frames.append(entry);
    if (rip.progress && (++rip.done % 32 == 0 || rip.done == rip.total))
        std::fprintf(stderr, "\rrip: %d of %d frames", rip.done, rip.total);
}

QJsonObject Listed(QJsonObject entry, const QString& file, QPoint origin, const QString& palette, const QByteArray& bytes)
{
    entry["file"] = file;
    entry["origin"] = QJsonArray{origin.x(), origin.y()};
    entry["palette"] = palette;
    entry["crc32"] = ChecksumText(bytes);
    return entry;
}

bool RipFrames(Rip& rip, int n, const std::vector<FoundFrame>& found, const QString& paletteName)
{
    const QString folder = QStringLiteral("table%1").arg(n, 2, 10, QChar(u'0'));
    if (!MakeFolder(rip, folder))
        return false;
    for (const FoundFrame& frame : found) {
        if (!frame.pixels) {
            Record(rip, frame.entry);
            continue;
        }
        const QString file = QStringLiteral("%1/slot%2.png").arg(folder).arg(frame.entry["slot"].toInt(), 3, 10, QChar(u'0'));
        const QByteArray bytes = PngBytes(IndexedFramePicture(*frame.pixels, rip.state.palettes[size_t(n)]));
        if (!WriteInto(rip, file, bytes))
            return false;
        Record(rip, Listed(frame.entry, file, frame.pixels->origin, paletteName, bytes));
    }
    return true;
}

bool RipSheet(Rip& rip, int n, const std::vector<FoundFrame>& found, const QString& paletteName)
{
    std::vector<FramePixels> drawn;
    std::vector<QSize> sizes;
    for (const FoundFrame& frame : found)
        if (frame.pixels) {
            drawn.push_back(*frame.pixels);
            sizes.emplace_back(std::max(frame.pixels->grid.width, 1), std::max(frame.pixels->grid.height, 1));
        }
    const std::vector<QRect> rects = LayOutSheet(sizes);
    const QString file = QStringLiteral("table%1.png").arg(n, 2, 10, QChar(u'0'));
    const QByteArray bytes = PngBytes(SheetPicture(drawn, rects, rip.state.palettes[size_t(n)]));
    if (!WriteInto(rip, file, bytes))
        return false;
    size_t next = 0;
    for (const FoundFrame& frame : found) {
        if (!frame.pixels) {
            Record(rip, frame.entry);
            continue;
        }
        const QRect& rect = rects[next++];
        QJsonObject entry = Listed(frame.entry, file, frame.pixels->origin, paletteName, bytes);
        entry["rect"] = QJsonArray{rect.x(), rect.y(), rect.width(), rect.height()};
        Record(rip, entry);
    }
    return true;
}

bool RipTable(Rip& rip, int n)
{
    const std::optional<QString> paletteName = PaletteFiles(rip, n);
    if (!paletteName)
        return false;
    std::vector<FoundFrame> found;
    for (int slot = 0; slot < ListedSlotCount(rip.state.tables[size_t(n)]); ++slot)
        found.push_back(FindFrame(rip, n, slot));
    return rip.sheets ? RipSheet(rip, n, found, *paletteName) : RipFrames(rip, n, found, *paletteName);
}
}

int RunRip(const QStringList& args)
{
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption(QStringLiteral("tables"), {}, QStringLiteral("LIST")));
    parser.addOption(QCommandLineOption(QStringLiteral("quiet")));
    parser.addOption(QCommandLineOption(QStringLiteral("sheets")));
    parser.addOption(QCommandLineOption(QStringLiteral("force")));
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
    const std::optional<QString> edited = parser.isSet(QStringLiteral("force")) ? std::nullopt : EditedPicture(dirPath);
    if (edited)
        return Fail(QStringLiteral("%1 was edited since the rip that wrote it; nothing was written (--force overwrites it)")
                        .arg(QDir::toNativeSeparators(*edited)));
    if (!RemoveStaleManifest(dirPath))
        return kRefused;
    if (!QDir().mkpath(dirPath))
        return Fail(QStringLiteral("%1: the folder cannot be created").arg(QDir::toNativeSeparators(dirPath)));
    Rip rip{QDir(dirPath), image->document, parser.isSet(QStringLiteral("sheets")),
            !parser.isSet(QStringLiteral("quiet")) && ::isatty(2)};
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
