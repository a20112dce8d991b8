// zelvane-art import: every picture of a rip folder, frame folders and sheets alike, put
// back into the image as one journaled change, and the manifest kept in step.
#include "art/frame_import.h"
#include "cli/cli.h"
#include "cli/manifest.h"
#include "exchange/picture_pixels.h"
#include "rom/art_lists.h"

#include <QDir>
#include <QHash>
#include <cstdio>

namespace {
const CommandHelp kHelp{
    "import", "ROM DIR [--dry-run] [--match editor|perceptual] [--exact]",
    "Put every picture that DIR/manifest.json lists back into ROM, as one change.",
    "DIR is a folder rip wrote, with frame pictures or sheets (--sheets); each picture is read as\n"
    "insert reads it, at the origin the manifest records. A frame whose picture draws what the\n"
    "slot's frame already draws is left alone (the value-0 pixel the format adds to a run of odd\n"
    "width is no difference). Every other frame is encoded as insert encodes it and written over\n"
    "the frame it replaces when it fits there and no other entry points into those bytes, or else\n"
    "appended; the entry then points at it, and the manifest records the new offset. The whole\n"
    "import is one change of the image's history, undone by one revert. If any picture is refused,\n"
    "nothing at all is written: one line names each refused picture and the reason. A slot whose\n"
    "entry no longer holds the manifest's offset, and whose frame is not the picture already, was\n"
    "changed by another program since the rip, and is refused.\n\n"
    "  --dry-run       print one line for each frame that would be written (table, slot, in place or\n"
    "                  appended, where, and its bytes, the length tables then reports); write nothing\n"
    "  --match editor|perceptual\n"
    "                  for colours no slot shows exactly: the editor's matching (the default) or\n"
    "                  the nearest palette colour in OKLab; a note says how many pixels and how far\n"
    "  --exact         refuse a picture with any colour no slot shows",
    2};

struct ImportOptions {
    QString dir;
    PictureReading reading;
    bool dryRun = false;
};

// A listed picture, or the part of a sheet its rectangle names, as palette indices.
class PictureCache {
public:
    explicit PictureCache(QString dir) : dir(std::move(dir)) {}
    std::optional<QImage> Picture(const ManifestFrame& frame, QString& errorText)
    {
        auto known = pictures.find(frame.file);
        if (known == pictures.end()) {
            QImage picture;
            QString loadError;
            if (!LoadPicture(QDir(dir).filePath(frame.file), picture, loadError))
                picture = QImage();
            known = pictures.insert(frame.file, {picture, loadError});
        }
        errorText = known->second;
        if (known->first.isNull())
            return std::nullopt;
        if (!frame.rect)
            return known->first;
        if (known->first.rect().contains(*frame.rect))
            return known->first.copy(*frame.rect);
        errorText = QStringLiteral("%1: the rectangle of table %2 slot %3 lies outside the picture")
                        .arg(QDir::toNativeSeparators(QDir(dir).filePath(frame.file))).arg(frame.table).arg(frame.slot);
        return std::nullopt;
    }

private:
    QString dir;
    QHash<QString, std::pair<QImage, QString>> pictures;
};

QString NameOf(const QString& dir, const ManifestFrame& frame)
{
    const QString file = QDir::toNativeSeparators(QDir(dir).filePath(frame.file));
    return frame.rect ? QStringLiteral("%1 (table %2 slot %3)").arg(file).arg(frame.table).arg(frame.slot) : file;
}

// The requests for every listed picture; the pictures that cannot be read are refused.
std::vector<ImportRequest> Requests(const RomDocument& document, const std::vector<ManifestFrame>& frames,
                                    const ImportOptions& options, QStringList& refusals)
{
    const QuietStderr quiet;
    PictureCache cache(options.dir);
    std::vector<ImportRequest> requests;
    for (const ManifestFrame& frame : frames) {
        if (frame.file.isEmpty())
            continue;
        QString errorText;
        const QString name = NameOf(options.dir, frame);
        const std::optional<QImage> picture = cache.Picture(frame, errorText);
        if (!picture) {
            refusals << errorText;
            continue;
        }
        if (frame.table < 0 || frame.table >= kArtTableCount) {
            refusals << QStringLiteral("%1: table %2 does not exist").arg(name).arg(frame.table);
            continue;
        }
        const std::optional<PicturePixelsRead> read = PicturePixels(*picture, document.palettes[size_t(frame.table)], options.reading, errorText);
        if (!read) {
            refusals << QStringLiteral("%1: %2").arg(name, errorText);
            continue;
        }
        if (read->inexactPixels > 0)
            std::fprintf(stderr, "zelvane-art: note: %s: %s\n", qPrintable(name), qPrintable(InexactColorsText(*read)));
        requests.push_back({frame.table, frame.slot, frame.offset, frame.origin, read->grid, name});
    }
    return requests;
}

QString WayText(const ImportedFrame& frame)
{
    return frame.way == ImportWay::InPlace ? QStringLiteral("in place") : QStringLiteral("appended");
}

void NoteListsRunningOn(const RomDocument& document, const std::vector<ImportRequest>& requests, const ImportPlan& plan)
{
    for (size_t i = 0; i < plan.frames.size(); ++i)
        if (plan.frames[i].way != ImportWay::Unchanged)
            NoteListRunsOn(document, requests[i].table, requests[i].slot, plan.frames[i].position);
}

void PrintFrames(const std::vector<ImportRequest>& requests, const ImportPlan& plan, bool dryRun)
{
    for (size_t i = 0; i < plan.frames.size(); ++i) {
        const ImportedFrame& frame = plan.frames[i];
        if (frame.way == ImportWay::Unchanged)
            continue;
        std::printf("%stable %d slot %d: %s at %s (%d), %lld bytes\n", dryRun ? "would write " : "", requests[i].table,
                    requests[i].slot, qPrintable(WayText(frame)), qPrintable(ListLineText(frame.position)), frame.position,
                    qint64(frame.bytes));
        if (!frame.covers.isEmpty())
            std::fprintf(stderr, "zelvane-art: note: table %d slot %d's new bytes cover %s\n", requests[i].table,
                         requests[i].slot, qPrintable(frame.covers.join(QStringLiteral(", "))));
    }
}

int Refused(const QStringList& refusals)
{
    for (const QString& refusal : refusals)
        Fail(refusal);
    return kRefused;
}

// The manifest with the offsets the frames have now, so that the folder stays in step.
bool KeepManifestInStep(const QString& dir, std::vector<ManifestFrame> frames, const std::vector<ImportRequest>& requests,
                        const ImportPlan& plan, QString& errorText)
{
    for (size_t i = 0; i < requests.size(); ++i)
        for (ManifestFrame& frame : frames)
            if (frame.table == requests[i].table && frame.slot == requests[i].slot)
                frame.offset = plan.frames[i].position;
    return WriteManifest(dir, frames, errorText);
}

bool OffsetsChanged(const std::vector<ImportRequest>& requests, const ImportPlan& plan)
{
    for (size_t i = 0; i < requests.size(); ++i)
        if (plan.frames[i].position != requests[i].ripOffset)
            return true;
    return false;
}

int Import(CliImage& image, const ImportOptions& options)
{
    QString errorText;
    const std::optional<std::vector<ManifestFrame>> frames = ReadManifest(options.dir, errorText);
    if (!frames)
        return Fail(errorText);
    QStringList refusals;
    const std::vector<ImportRequest> requests = Requests(image.document, *frames, options, refusals);
    if (!refusals.isEmpty())
        return Refused(refusals + PlanImport(image.document, requests).refusals);
    ImportPlan plan;
    auto planner = [&](const RomDocument& document, QString& refusal) -> std::optional<PlannedChange> {
        plan = PlanImport(document, requests);
        refusal = plan.refusals.join(u'\n');
        return plan.refusals.isEmpty() && !plan.change.patches.empty() ? std::optional(plan.change) : std::nullopt;
    };
    if (options.dryRun) {
        planner(image.document, errorText);
        return plan.refusals.isEmpty() ? (NoteListsRunningOn(image.document, requests, plan), PrintFrames(requests, plan, true), kDone) : Refused(plan.refusals);
    }
    plan = PlanImport(image.document, requests);
    if (!plan.refusals.isEmpty())
        return Refused(plan.refusals);
    if (!plan.change.patches.empty()) {
        NoteListsRunningOn(image.document, requests, plan);
        JournalEntry made;
        const QString command = QStringLiteral("import %1").arg(QDir(options.dir).dirName());
        if (!ChangeDocument(image.document, command, planner, made, errorText))
            return plan.refusals.isEmpty() ? Finish(image, false, QStringLiteral("Nothing was imported: %1").arg(errorText))
                                           : Refused(plan.refusals);
        PrintFrames(requests, plan, false);
    }
    if (OffsetsChanged(requests, plan) && !KeepManifestInStep(options.dir, *frames, requests, plan, errorText))
        return Fail(QStringLiteral("The image was changed, but the manifest could not be brought in step: %1").arg(errorText));
    return Finish(image, true, {});
}
}

int RunImport(const QStringList& args)
{
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption("dry-run"));
    parser.addOption(QCommandLineOption("match", {}, "HOW"));
    parser.addOption(QCommandLineOption("exact"));
    if (const int exit = ParseCommand(parser, args, kHelp); exit >= 0)
        return exit;
    const QString match = parser.value("match");
    if (!match.isEmpty() && match != "editor" && match != "perceptual") {
        std::fprintf(stderr, "zelvane-art import: --match takes editor or perceptual\nUsage: zelvane-art import %s\n",
                     qPrintable(kHelp.synopsis));
        return kUsage;
    }
    const ImportOptions options{parser.positionalArguments()[1],
                                {match == "perceptual" ? ColorMatch::Perceptual : ColorMatch::Editor, parser.isSet("exact")},
                                parser.isSet("dry-run")};
    const std::unique_ptr<CliImage> image = OpenImage(parser.positionalArguments()[0], !options.dryRun);
    return image ? Import(*image, options) : kRefused;
}
