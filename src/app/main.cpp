#include "app/ui/form1.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    StyleApplication(app);
    Form1 window;
    window.show();
    // A file named on the command line (the desktop entry's %f) opens as "Open Zelvane
    // Rom" would open it, once the window is there for its notes.
    if (argc > 1)
        window.OpenLater(QString::fromLocal8Bit(argv[1]));
    return app.exec();
}
