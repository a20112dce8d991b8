// zelvane-art patch create and apply: the image's changes as a BPS or IPS patch to
// share, and such a patch applied as one change of the image's history.
#include "cli/cli.h"
#include "exchange/patch_formats.h"
#include "exchange/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace {
const CommandHelp kCreateHelp{
    "patch create", "ROM OUT [--from N | --source CLEAN]", "Write a patch that turns a clean image into ROM as it is now.",
    "The format follows OUT's extension: .bps, which refuses to apply to any image but the clean\n"
    "one, or .ips, which reaches only the first 16 MiB and checks nothing. The clean image is ROM\n"
    "as it was before its first journaled change, rebuilt from its journal:\n\n"
    "  --from N        as it was before change N of its history instead\n"
    "  --source CLEAN  the file CLEAN instead\n\n"
    "Rebuilding needs ROM as its journal's last change left it, and the changes in its journal,\n"
    "not in one kept aside.",
    2};
const CommandHelp kApplyHelp{
    "patch apply", "ROM PATCH", "Apply a .bps or .ips patch to ROM in place, as one change of its history.",
    "A BPS patch applies only to the very image it was made for. A patch made for another image\n"
    "or a damaged one is refused, and nothing is written. revert takes the change back, as any other.",
    2};

QString Shown(const QString& path) { return QDir::toNativeSeparators(path); }

int Usage(const CommandHelp& help, const char* error)
{
    std::fprintf(stderr, "zelvane-art %s: %s\nUsage: zelvane-art %s %s\n", qPrintable(help.name), error,
                 qPrintable(help.name), qPrintable(help.synopsis));
    return kUsage;
}

// The whole image, with positioned reads: a patch is made of, and applied to, all of it.
std::optional<QByteArray> ImageBytes(const RomFile& rom, QString& errorText)
{
    const int64_t length = RomLength(rom);
    QByteArray bytes(qsizetype(std::clamp<int64_t>(length, 0, kMaxPatchedImage)), Qt::Uninitialized);
    if (length >= 0 && length <= kMaxPatchedImage && ReadRomBytes(rom, 0, bytes.data(), length) == length)
        return bytes;
    errorText = QStringLiteral("%1 cannot be read whole, or is longer than 1 GiB").arg(Shown(rom.fileName));
    return std::nullopt;
}

// A file the user names, whole: a regular file no longer than an image a patch may make.
std::optional<QByteArray> InputFile(const QString& path, QString& errorText)
{
    QFile file(path);
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        errorText = QStringLiteral("%1: not a regular file").arg(Shown(path));
    else if (!file.open(QIODevice::ReadOnly))
        errorText = QStringLiteral("%1: %2").arg(Shown(path), file.errorString());
    else if (file.size() > kMaxPatchedImage)
        errorText = QStringLiteral("%1: longer than 1 GiB").arg(Shown(path));
    else
        return file.readAll();
    return std::nullopt;
}

// What a planned change makes of bytes in memory, as the journal makes it of the file.
QByteArray Applied(QByteArray bytes, const PlannedChange& change)
{
    if (bytes.size() < change.newLength)
        bytes.append(qsizetype(change.newLength - bytes.size()), '\0');
    bytes.truncate(qsizetype(change.newLength));
    for (const RomPatch& patch : change.patches)
        std::copy_n(patch.bytes.constData(), std::min<int64_t>(patch.bytes.size(), bytes.size() - patch.position),
                    bytes.data() + patch.position);
    return bytes;
}

// The image as it was before change n of its history, rebuilt from the journal.
std::optional<QByteArray> ImageBefore(const RomDocument& doc, int n, const QByteArray& now, QString& errorText)
{
    const std::vector<JournalEntry> done = DocumentHistory(doc);
    const int first = doc.journal.firstNumber, last = first + int(done.size()) - 1;
    const QString rom = Shown(doc.file.fileName), instead = QStringLiteral("; name the clean image with --source CLEAN");
    if (IsDamaged(doc.journal))
        errorText = QStringLiteral("%1: its journal is damaged after change %2, so what came later is not known%3").arg(rom).arg(last).arg(instead);
    else if (n >= 1 && n < first)
        errorText = QStringLiteral("%1: change %2 is in the journal kept aside as %3, which is never read again%4")
                        .arg(rom).arg(n).arg(doc.journal.carriesOn, instead);
    else if (done.empty())
        errorText = QStringLiteral("%1: its journal keeps no change to make a patch of%2").arg(rom, instead);
    else if (n < first || n > last)
        errorText = QStringLiteral("%1: its journal keeps changes %2 to %3; there is no change %4").arg(rom).arg(first).arg(last).arg(n);
    else if (!IsLastChange(doc, last))
        errorText = QStringLiteral("%1: the image is not as its last journaled change (%2, %3) left it: another program "
                                   "changed it since%4").arg(rom).arg(last).arg(done.back().command, instead);
    else if (const PlannedChange before = RevertingChange(done, size_t(n - first)); before.newLength > kMaxPatchedImage)
        errorText = QStringLiteral("%1: before change %2 the image was longer than 1 GiB").arg(rom).arg(n);
    else
        return Applied(now, before);
    return std::nullopt;
}

int Create(const QCommandLineParser& parser)
{
    const QString rom = parser.positionalArguments()[0], out = parser.positionalArguments()[1];
    const std::optional<PatchFormat> format = PatchFormatOf(out);
    const std::optional<int> from = parser.isSet("from") ? DecimalArgument(parser.value("from")) : 1;
    if (!format)
        return Usage(kCreateHelp, "OUT must end in .bps or .ips");
    if (!from || (parser.isSet("from") && parser.isSet("source")))
        return Usage(kCreateHelp, "give --from N, N a change's number as history shows it, or --source CLEAN");
    const std::unique_ptr<CliImage> image = OpenImage(rom, false);
    if (!image)
        return kRefused;
    if (QFileInfo(out).canonicalFilePath() == image->document.canonicalPath)
        return Fail(QStringLiteral("%1: the patch would replace the image itself").arg(Shown(out)));
    QString errorText;
    std::optional<QByteArray> clean, now = ImageBytes(image->document.file, errorText);
    if (now)
        clean = parser.isSet("source") ? InputFile(parser.value("source"), errorText)
                                       : ImageBefore(image->document, *from, *now, errorText);
    if (!clean)
        return Fail(errorText);
    const std::optional<QByteArray> patch = CreatePatch(*format, *clean, *now, errorText);
    if (!patch)
        return Fail(Shown(out) + ": " + errorText);
    return WriteWholeFile(out, *patch, errorText) ? kDone : Fail(errorText);
}

int Apply(const QCommandLineParser& parser)
{
    const QString rom = parser.positionalArguments()[0], patchFile = parser.positionalArguments()[1];
    const std::optional<PatchFormat> format = PatchFormatOf(patchFile);
    if (!format)
        return Usage(kApplyHelp, "PATCH must end in .bps or .ips");
    QString errorText;
    const std::optional<QByteArray> patch = InputFile(patchFile, errorText);
    if (!patch)
        return Fail(errorText);
    const std::unique_ptr<CliImage> image = OpenImage(rom, true);
    if (!image)
        return kRefused;
    // Planned under the lock, against the image as it is then.
    bool unchanged = false;
    const auto plan = [&](const RomDocument& doc, QString& refusal) -> std::optional<PlannedChange> {
        const std::optional<QByteArray> now = ImageBytes(doc.file, refusal);
        const std::optional<QByteArray> target = now ? ApplyPatch(*format, *patch, *now, refusal) : std::nullopt;
        if (!target)
            return std::nullopt;
        PlannedChange change{{}, target->size()};
        for (const ChangedRun& run : ChangedRuns(*now, *target, 1))
            change.patches.push_back({run.start, target->mid(qsizetype(run.start), qsizetype(run.end - run.start))});
        unchanged = change.patches.empty() && target->size() == now->size();
        return unchanged ? std::nullopt : std::optional<PlannedChange>(change);
    };
    const QString name = QFileInfo(patchFile).fileName();
    JournalEntry made;
    const bool done = ChangeDocument(image->document, QStringLiteral("patch apply %1").arg(name), plan, made, errorText);
    if (unchanged)
        Fail(QStringLiteral("%1: the image already is what %2 makes of it; nothing was written").arg(Shown(rom), name));
    return Finish(*image, done || unchanged, QStringLiteral("%1 was not applied: %2").arg(name, errorText));
}
}

int RunPatch(const QStringList& args)
{
    const QString action = args.value(0);
    if (action == QLatin1String("--help")) {
        std::fputs(qPrintable(HelpText(kCreateHelp) + u'\n' + HelpText(kApplyHelp)), stdout);
        return kDone;
    }
    if (action != QLatin1String("create") && action != QLatin1String("apply")) {
        std::fprintf(stderr, "zelvane-art patch: say create or apply\nUsage: zelvane-art patch create|apply ROM FILE\n");
        return kUsage;
    }
    const bool create = action == QLatin1String("create");
    QCommandLineParser parser;
    if (create) {
        parser.addOption(QCommandLineOption("from", {}, "N"));
        parser.addOption(QCommandLineOption("source", {}, "CLEAN"));
    }
    if (const int exit = ParseCommand(parser, args.mid(1), create ? kCreateHelp : kApplyHelp); exit >= 0)
        return exit;
    return create ? Create(parser) : Apply(parser);
}
