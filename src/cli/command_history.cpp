// zelvane-art history and revert: the changes the image's journal keeps, and putting
// the image back as it was before one of them.
#include "cli/cli.h"

#include <QDateTime>
#include <cstdio>

namespace {
const CommandHelp kHistoryHelp{
    "history", "ROM", "List the changes made to ROM, as its journal keeps them.",
    "One line each on stdout, numbered from 1 in the order they were made: the number, the time,\n"
    "the command, the ranges it wrote (position+length, hexadecimal) and how many bytes in all.\n"
    "Notes go to stderr: damage in the journal, a journal kept aside and the changes it holds, a\n"
    "change interrupted and not put back, a journal that does not match the image. The journal is\n"
    "ROM.zelvane-journal beside the image, or in ~/.local/state/zelvane-art/journals when the\n"
    "image's folder cannot be written.",
    1};
const CommandHelp kRevertHelp{
    "revert", "ROM N", "Put ROM back as it was before change N of its history.",
    "Every byte written since change N gets back the value it had before it, and the file its\n"
    "length. The revert is itself a change in the history, so it can be reverted in turn. It is\n"
    "refused when the image is not as the journal's last change left it, and for a change in a\n"
    "journal kept aside or at or before damage in the journal.",
    2};
}

int RunHistory(const QStringList& args)
{
    QCommandLineParser parser;
    if (const int exit = ParseCommand(parser, args, kHistoryHelp); exit >= 0)
        return exit;
    const std::unique_ptr<CliImage> image = OpenImage(parser.positionalArguments()[0], false);
    if (!image)
        return kRefused;
    const JournalContents& journal = image->document.journal;
    if (journal.firstNumber > 1)
        Fail(QStringLiteral("note: %1 in the journal kept aside as %2, and cannot be reverted")
                 .arg(journal.firstNumber == 2 ? QStringLiteral("change 1 is") : QStringLiteral("changes 1 to %1 are").arg(journal.firstNumber - 1),
                      journal.carriesOn));
    for (const JournalEntry& change : DocumentHistory(image->document)) {
        int64_t bytes = 0;
        QStringList ranges;
        for (const JournalRange& range : change.ranges) {
            bytes += range.length;
            ranges << QStringLiteral("%1+%2").arg(range.position, 0, 16).arg(range.length, 0, 16).toUpper();
        }
        std::printf("%d  %s  %s  %s  %lld bytes\n", change.number,
                    qPrintable(QDateTime::fromMSecsSinceEpoch(change.time).toString("yyyy-MM-dd HH:mm:ss")),
                    qPrintable(change.command), qPrintable(ranges.join(u' ')), qint64(bytes));
    }
    return kDone;
}

int RunRevert(const QStringList& args)
{
    QCommandLineParser parser;
    if (const int exit = ParseCommand(parser, args, kRevertHelp); exit >= 0)
        return exit;
    const std::optional<int> n = DecimalArgument(parser.positionalArguments()[1]);
    if (!n) {
        std::fprintf(stderr, "zelvane-art revert: N is the number history shows\nUsage: zelvane-art revert %s\n",
                     qPrintable(kRevertHelp.synopsis));
        return kUsage;
    }
    const std::unique_ptr<CliImage> image = OpenImage(parser.positionalArguments()[0], true);
    if (!image)
        return kRefused;
    JournalEntry made;
    QString errorText;
    const bool done = RevertDocument(image->document, *n, made, errorText);
    return Finish(*image, done, QStringLiteral("Nothing was reverted: %1").arg(errorText));
}
