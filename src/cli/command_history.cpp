// zelvane-art history and revert: the changes the image's journal keeps, and putting
// the image back as it was before one of them.
#include "cli/cli.h"
#include "rom/journal.h"

#include <QDateTime>
#include <cstdio>

namespace {
const CommandHelp kHistoryHelp{
    "history", "ROM", "List the changes made to ROM, as its journal keeps them.",
    "One line each, numbered from 1 in the order they were made: the number, the time, the\n"
    "command, the ranges it wrote (position+length, hexadecimal) and how many bytes in all. The\n"
    "journal is ROM.zelvane-journal beside the image, or in ~/.local/state/zelvane-art/journals\n"
    "when the image's folder cannot be written.",
    1};
const CommandHelp kRevertHelp{
    "revert", "ROM N", "Put ROM back as it was before change N of its history.",
    "Every byte written since change N gets back the value it had before it, and the file its\n"
    "length. The revert is itself a change in the history, so it can be reverted in turn.",
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
    int n = 0;
    for (const JournalEntry& change : DoneChanges(image->path)) {
        int64_t bytes = 0;
        QStringList ranges;
        for (const JournalRange& range : change.ranges) {
            bytes += range.length;
            ranges << QStringLiteral("%1+%2").arg(range.position, 0, 16).arg(range.length, 0, 16).toUpper();
        }
        std::printf("%d  %s  %s  %s  %lld bytes\n", ++n,
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
    return image && image->session->RevertToBefore(*n) ? kDone : kRefused;
}
