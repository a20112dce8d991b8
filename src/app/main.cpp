#include "app/ui/form1.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    // Answered before any window system is needed.
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("zelvane-art-editor %s\n", ZELVANE_VERSION);
            return 0;
        }
        if (std::strcmp(argv[i], "--help") == 0) {
            std::printf("Usage: zelvane-art-editor [FILE]\nThe art editor for Zelvane ROM images; FILE is a ROM image "
                        "to open at start-up.\nThe command-line companion is zelvane-art.\n");
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
