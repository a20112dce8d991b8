// Writes the application's icon as PNG files in the hicolor sizes, for installing.
#include "view/app_icon.h"

#include <QDir>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_icons FOLDER NAME\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (int size : {16, 32, 48, 64, 128, 256}) {
        const QString path = QStringLiteral("%1x%1/apps/%2.png").arg(size).arg(QString::fromLocal8Bit(argv[2]));
        if (!folder.mkpath(QFileInfo(folder.filePath(path)).path()) || !AppIconImage(size).save(folder.filePath(path))) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(folder.filePath(path)));
            return 1;
        }
    }
    return 0;
}
