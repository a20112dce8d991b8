// zelvane-art: the editor's command-line companion. It lists, rips and inserts art and
// palettes through the editor's own session, without a window or a display.
#include "cli/cli.h"

#include <QCoreApplication>
#include <cstdio>

namespace {
const char* const kUsageText =
    "Usage: zelvane-art COMMAND ARGUMENT... [OPTION]...\n"
    "Lists, rips and inserts the art and palettes of a Zelvane ROM image.\n"
    "\n"
    "Commands:\n"
    "  tables ROM [--json]\n"
    "      List the 14 art tables and the frames each lists.\n"
    "  rip ROM DIR [--tables 0,3,...] [--sheets] [--force] [--quiet]\n"
    "      Write every listed frame as an indexed PNG (or each table's frames on one sheet),\n"
    "      a manifest.json and the palettes.\n"
    "  insert ROM TABLE SLOT IMAGE (--append | --at HEX) [--origin X,Y]\n"
    "         [--match editor|perceptual] [--exact] [--dry-run]\n"
    "      Put a picture into the image as that slot's frame and point the entry at it.\n"
    "  import ROM DIR [--dry-run] [--match editor|perceptual] [--exact]\n"
    "      Put every picture a rip folder lists back into the image, as one change.\n"
    "  palette export ROM TABLE FILE\n"
    "  palette import ROM TABLE FILE\n"
    "      Write a table's palette to FILE, or take its colours from FILE\n"
    "      (.gpl, .act, .tpl, or an indexed .png or .bmp).\n"
    "  history ROM\n"
    "      List the changes made to the image, as its journal keeps them.\n"
    "  revert ROM N\n"
    "      Put the image back as it was before change N of its history.\n"
    "  patch create ROM OUT [--from N | --source CLEAN]\n"
    "      Write a .bps or .ips patch that turns the clean image into the image as it is now.\n"
    "  patch apply ROM PATCH\n"
    "      Apply a .bps or .ips patch to the image, as one change of its history.\n"
    "\n"
    "TABLE, SLOT and N are decimal; HEX is hexadecimal. Every command takes --help.\n"
    "\n"
    "Options:\n"
    "  --help     show this help and exit\n"
    "  --version  show the version and exit\n"
    "\n"
    "Exit status:\n"
    "  0  done\n"
    "  1  the input was refused or a file failed; one line on stderr says why\n"
    "  2  the command line is wrong\n";
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zelvane-art"));
    // Qt's own warnings (a picture reader's complaints) would add lines to stderr that
    // say less than the one line each command prints when it fails.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QStringList args = QCoreApplication::arguments().mid(1);
    const QString command = args.isEmpty() ? QString() : args.takeFirst();
    if (command == QLatin1String("--help")) {
        std::fputs(kUsageText, stdout);
        return kDone;
    }
    if (command == QLatin1String("--version")) {
        std::printf("zelvane-art %s\n", ZELVANE_VERSION);
        return kDone;
    }
    const QList<std::pair<QString, int (*)(const QStringList&)>> commands = {
        {"tables", RunTables}, {"rip", RunRip},         {"insert", RunInsert}, {"import", RunImport},
        {"palette", RunPalette}, {"history", RunHistory}, {"revert", RunRevert}, {"patch", RunPatch}};
    for (const auto& [name, run] : commands)
        if (command == name)
            return run(args);
    std::fprintf(stderr, "zelvane-art: %s\nTry zelvane-art --help.\n",
                 command.isEmpty() ? "a command is missing" : qPrintable("unknown command " + command));
    return kUsage;
}
