#include "app/ui/form1.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    StyleApplication(app);
    Form1 window;
    window.show();
    return app.exec();
}
