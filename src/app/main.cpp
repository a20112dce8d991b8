#include "app/ui/form1.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstring>

namespace {
// Also the source of the man page (help2man): its headings become the page's sections.
const char* const kHelpText =
    "Usage: zelvane-art-editor [OPTION]... [FILE]\n"
    "Browse, paint and save the sprite frames and palettes of a Zelvane ROM image.\n"
    "\n"
    "The editor shows the frames of the image's 14 art tables in their palettes. You paint\n"
    "pixels, edit palette colours, save frames back into the image, and exchange art as BMP,\n"
    "raw 4bpp tiles and TPL palettes. The image is never loaded whole: every read and write\n"
    "is a positioned one on the open file, and every write goes through a journal, so it can\n"
    "be undone and a crash never leaves the image half-written.\n"
    "\n"
    "FILE, a ROM image, is opened at start-up as \"Open Zelvane Rom\" opens it: the same\n"
    "reading, notes and refusals. A file you may read but not write opens for browsing only.\n"
    "The command-line companion, zelvane-art(1), lists, rips and inserts the art and palettes\n"
    "of the same images, under the same journal.\n"
    "\n"
    "Options:\n"
    "  --help     show this help and exit\n"
    "  --version  show the version and exit\n"
    "Qt's own options, such as -platform NAME, are taken as well.\n"
    "\n"
    "Files:\n"
    "  FILE.zelvane-journal\n"
    "      The journal beside the image, named after its canonical path; or, when the\n"
    "      image's folder cannot be written, ~/.local/state/zelvane-art/journals/ (under\n"
    "      $XDG_STATE_HOME when set). It keeps every change, for undo and for the command\n"
    "      line's history and revert, and puts back a change a crash interrupted when the\n"
    "      image is next opened. Removing it loses the history and nothing else; do not\n"
    "      remove it after a crash before the image has been opened once.\n";
}

int main(int argc, char** argv)
{
    // Answered before any window system is needed.
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("zelvane-art-editor %s\n", ZELVANE_VERSION);
            return 0;
        }
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(kHelpText, stdout);
            return 0;
        }
    }
    QApplication app(argc, argv); // takes Qt's own options out of argv
    StyleApplication(app);
    Form1 window;
    window.show();
    // A file named on the command line (the desktop entry's %f) opens as "Open Zelvane
    // Rom" would open it, once the window is there for its notes.
    if (argc > 1)
        window.OpenLater(QString::fromLocal8Bit(argv[1]));
    return app.exec();
}
