// zelvane-art insert: a picture into the image as one slot's frame, with the editor's
// encoder, limits and refusals, and the entry pointed at it.
#include "art/frame_placement.h"
#include "art/listed_spans.h"
#include "art/save_art.h"
#include "cli/cli.h"
#include "cli/manifest.h"
#include "exchange/picture_pixels.h"
#include "rom/art_lists.h"
#include "view/frame_render.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <cstdio>

namespace {
const CommandHelp kHelp{
    "insert", "ROM TABLE SLOT IMAGE (--append | --at HEX) [--origin X,Y] [--match editor|perceptual] [--exact] [--dry-run]",
    "Put IMAGE into ROM as the frame of slot SLOT of table TABLE, and point the entry at it.",
    "IMAGE is a PNG, or a BMP of 4, 24 or 32 bits a pixel. A picture whose colour table is the one\n"
    "rip writes for the table's palette, or the start of it, keeps its indices. Any other (a table\n"
    "reordered by another tool, RGB, RGBA, a 24-bit BMP) is read by colour: a colour that a palette\n"
    "slot shows exactly takes that slot (the lowest of slots 0 to 16 that show it), any other is\n"
    "matched by --match, and a note on stderr says how many pixels had no exact colour and how far\n"
    "the farthest lies from its match, as the Euclidean distance of 8-bit red, green and blue.\n"
    "Fully transparent pixels, pixels under half opaque and pixels of the editor's background\n"
    "(240, 240, 240) are not drawn. The frame is encoded as the editor saves it, and refused as\n"
    "the editor refuses it.\n\n"
    "  --append        write the frame at the end of the file\n"
    "  --at HEX        write it at this position, whatever lies there\n"
    "  --origin X,Y    the frame coordinate of the picture's top-left pixel; by default the one\n"
    "                  rip recorded for it in the nearest manifest.json, else the editor's placement\n"
    "  --match editor|perceptual\n"
    "                  for colours no slot shows: the editor's matching (the default) or the\n"
    "                  nearest palette colour in OKLab\n"
    "  --exact         refuse a picture with any colour no slot shows, and write nothing\n"
    "  --dry-run       say where the frame would go and what the entry would become; write nothing",
    4};

struct InsertRequest {
    int table = 0, slot = 0;
    QString picture;
    std::optional<QString> at; // hexadecimal digits; none for --append
    std::optional<QPoint> origin;
    PictureReading reading;
    bool dryRun = false;
};

// Reads the options; an error text for a wrong command line.
QString ReadRequest(const QCommandLineParser& parser, InsertRequest& request)
{
    const QStringList args = parser.positionalArguments();
    const std::optional<int> table = DecimalArgument(args[1]), slot = DecimalArgument(args[2]);
    if (!table || !slot)
        return QStringLiteral("TABLE and SLOT are decimal numbers");
    request.table = *table;
    request.slot = *slot;
    request.picture = args[3];
    if (parser.isSet("append") == parser.isSet("at"))
        return QStringLiteral("give either --append or --at HEX");
    if (parser.isSet("at")) {
        static const QRegularExpression hex(QStringLiteral("^(0[xX])?([0-9A-Fa-f]+)$"));
        const QRegularExpressionMatch m = hex.match(parser.value("at"));
        if (!m.hasMatch())
            return QStringLiteral("--at takes a hexadecimal position, such as 1F0000");
        request.at = m.captured(2);
    }
    if (parser.isSet("origin")) {
        const QStringList xy = parser.value("origin").split(u',');
        const std::optional<int> x = DecimalArgument(xy.value(0)), y = DecimalArgument(xy.value(1));
        if (xy.size() != 2 || !x || !y)
            return QStringLiteral("--origin takes two whole numbers, such as -8,-30");
        request.origin = QPoint(*x, *y);
    }
    const QString match = parser.value("match");
    if (!match.isEmpty() && match != "editor" && match != "perceptual")
        return QStringLiteral("--match takes editor or perceptual");
    request.reading = {match == "perceptual" ? ColorMatch::Perceptual : ColorMatch::Editor, parser.isSet("exact")};
    request.dryRun = parser.isSet("dry-run");
    return {};
}

std::optional<int32_t> TargetPosition(const InsertRequest& request, const CliImage& image)
{
    const int64_t length = RomLength(image.document.file);
    QString errorText;
    const std::optional<int32_t> position =
        request.at ? TypedSavePosition(*request.at, length, errorText) : AppendPosition(length, errorText);
    if (!position)
        Fail(QDir::toNativeSeparators(image.path) + ": " + errorText);
    return position;
}

// The frame already there, when it shows exactly what the plan would write.
bool AlreadyThere(const CliImage& image, const InsertRequest& request, const FrameSavePlan& plan, int32_t position)
{
    if (image.document.tables[size_t(request.table)].pointers[size_t(request.slot)] != position)
        return false;
    ArtFrame there;
    return ReadStoredFrame(image.document.file, position, there) > 0 && DrawsSame(there, plan.frame);
}

void PrintDryRun(const InsertRequest& request, const FrameSavePlan& plan, int32_t position, int32_t oldEntry)
{
    const RomPatch& entry = plan.patches.front();
    std::printf("would write %lld bytes at %s (%d)\n", qint64(plan.patches.back().bytes.size()),
                qPrintable(ListLineText(position)), position);
    std::printf("would point table %d slot %d (entry at %s) from %s to %s\n", request.table, request.slot,
                qPrintable(ListLineText(int32_t(entry.position))), qPrintable(ListLineText(oldEntry)),
                qPrintable(ListLineText(position)));
}

// A write at a typed position says what else it covers.
void NoteWhatItCovers(const CliImage& image, const InsertRequest& request, const FrameSavePlan& plan, int32_t position)
{
    const QStringList covered = CoveredBy(ListedSpans(image.document), position, plan.patches.back().bytes.size(),
                                          request.table, request.slot);
    if (request.at && !covered.isEmpty())
        std::fprintf(stderr, "zelvane-art: note: the new bytes at %s cover %s\n", qPrintable(ListLineText(position)),
                     qPrintable(covered.join(QStringLiteral(", "))));
}

int Insert(CliImage& image, const InsertRequest& request)
{
    const RomDocument& state = image.document;
    const QString rom = QDir::toNativeSeparators(image.path);
    if (request.table < 0 || request.table >= kArtTableCount || request.slot < 0
        || request.slot >= ListedSlotCount(state.tables[size_t(request.table)]))
        return Fail(QStringLiteral("%1: table %2 lists no slot %3").arg(rom).arg(request.table).arg(request.slot));
    QImage picture;
    QString errorText;
    bool loaded = false;
    {
        const QuietStderr quiet;
        loaded = LoadPicture(request.picture, picture, errorText);
    }
    if (!loaded)
        return Fail(errorText);
    const std::optional<PicturePixelsRead> read = PicturePixels(picture, state.palettes[size_t(request.table)], request.reading, errorText);
    if (!read)
        return Fail(QDir::toNativeSeparators(request.picture) + ": " + errorText);
    if (read->inexactPixels > 0)
        std::fprintf(stderr, "zelvane-art: note: %s: %s\n", qPrintable(QDir::toNativeSeparators(request.picture)),
                     qPrintable(InexactColorsText(*read)));
    const PixelGrid& pixels = read->grid;
    const std::optional<int32_t> position = TargetPosition(request, image);
    if (!position)
        return kRefused;
    const int32_t oldEntry = state.tables[size_t(request.table)].pointers[size_t(request.slot)];
    ArtFrame current;
    int32_t readPosition = 0;
    ReadFrame(state.file, readPosition, current, oldEntry);
    const std::optional<QPoint> origin = request.origin ? request.origin : RecordedOrigin(request.picture);
    if (origin && !WithinReach(*origin))
        return Fail(QStringLiteral("%1: the origin %2 lies more than %3 pixels from the frame's 0,0")
                        .arg(QDir::toNativeSeparators(request.picture),
                             request.origin ? QStringLiteral("given") : QStringLiteral("recorded in manifest.json"))
                        .arg(kMaxOriginDistance));
    const PlacedPixels placed = origin ? PlaceAtOrigin(current, pixels, *origin) : PlacedPixels{current, pixels};
    const std::optional<FrameSavePlan> plan =
        PlanFrameSave(state.tables[size_t(request.table)], request.slot, placed.placement, placed.pixels, *position, errorText);
    if (!plan)
        return Fail(QDir::toNativeSeparators(request.picture) + ": " + errorText);
    if (AlreadyThere(image, request, *plan, *position)) {
        std::fprintf(stderr, "zelvane-art: %s: the slot already shows this picture there; nothing %s written\n", qPrintable(rom),
                     request.dryRun ? "would be" : "was");
        return kDone;
    }
    NoteListRunsOn(image.document, request.table, request.slot, *position);
    NoteWhatItCovers(image, request, *plan, *position);
    if (request.dryRun) {
        PrintDryRun(request, *plan, *position, oldEntry);
        return kDone;
    }
    const QString command = QStringLiteral("insert %1 as table %2 slot %3")
                                .arg(QFileInfo(request.picture).fileName()).arg(request.table).arg(request.slot);
    FrameSaveOutcome saved;
    return ChangeImage(image, command,
                       FrameSavePlanner(request.table, request.slot, placed.placement, placed.pixels,
                                        request.at ? *position : kAtTheEnd, saved),
                       QStringLiteral("The art was not saved: %1"));
}
}

int RunInsert(const QStringList& args)
{
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption("append"));
    parser.addOption(QCommandLineOption("at", {}, "HEX"));
    parser.addOption(QCommandLineOption("origin", {}, "X,Y"));
    parser.addOption(QCommandLineOption("match", {}, "HOW"));
    parser.addOption(QCommandLineOption("exact"));
    parser.addOption(QCommandLineOption("dry-run"));
    if (const int exit = ParseCommand(parser, args, kHelp); exit >= 0)
        return exit;
    InsertRequest request;
    if (const QString error = ReadRequest(parser, request); !error.isEmpty()) {
        std::fprintf(stderr, "zelvane-art insert: %s\nUsage: zelvane-art insert %s\n", qPrintable(error), qPrintable(kHelp.synopsis));
        return kUsage;
    }
    const std::unique_ptr<CliImage> image = OpenImage(parser.positionalArguments()[0], !request.dryRun);
    return image ? Insert(*image, request) : kRefused;
}
