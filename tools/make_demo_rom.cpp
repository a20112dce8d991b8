// Writes the demo ROM image that the editor opens when the game's own is not at hand.
#include "demo_image.h"
#include "rom_builder.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_demo_rom OUTPUT.bin\n");
        return 2;
    }
    if (!WriteFileBytes(QString::fromLocal8Bit(argv[1]), BuildDemoImage())) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
