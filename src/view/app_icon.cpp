#include "view/app_icon.h"

#include <QColor>

namespace {
// Outline (o), three greens, white shine (w) and eyes (e); '.' is transparent.
const char* const kSlime[kIconPixels] = {
    "................",
    "................",
    "......oooo......",
    "....oo3333oo....",
    "...o33ww3322o...",
    "..o33w33332221o.",
    "..o3w3333322221o",
    ".o333e3333e2221o",
    ".o333e3333e2211o",
    ".o3333322222211o",
    "o33333222222111o",
    "o32222222222111o",
    "o22222222211111o",
    ".o111111111111o.",
    "..oooooooooooo..",
    "................",
};

QRgb Color(char key)
{
    switch (key) {
    case 'o': return qRgb(24, 32, 40);
    case '1': return qRgb(40, 120, 56);
    case '2': return qRgb(72, 176, 80);
    case '3': return qRgb(136, 224, 112);
    case 'w': return qRgb(248, 248, 240);
    case 'e': return qRgb(16, 24, 32);
    }
    return qRgba(0, 0, 0, 0);
}
}

QImage AppIconImage(int size)
{
    const int block = std::max(size / kIconPixels, 1);
    QImage icon(kIconPixels * block, kIconPixels * block, QImage::Format_ARGB32);
    for (int y = 0; y < icon.height(); ++y)
        for (int x = 0; x < icon.width(); ++x)
            icon.setPixel(x, y, Color(kSlime[y / block][x / block]));
    return icon;
}
