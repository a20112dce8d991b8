#pragma once
// Pictures from other tools as a frame's pixels. A picture whose colour table is the one
// rip writes for the palette keeps its indices; any other is read by colour, so that a
// tool that reorders the table, or drops it, changes nothing but the file.
#include "art/pixel_grid.h"
#include "palette/palette.h"

#include <QImage>
#include <QString>
#include <optional>

enum class ColorMatch { Editor, Perceptual };

// How colours that no palette slot has become slots.
struct PictureReading {
    ColorMatch match = ColorMatch::Editor;
    bool exact = false; // refuse a picture with such colours instead
};

struct PicturePixelsRead {
    PixelGrid grid;
    int inexactPixels = 0;    // drawn pixels whose colour no slot has
    double worstDistance = 0; // the farthest of them from the slot colour it took, Euclidean in 8-bit RGB
};

// Larger pictures are refused before anything is allocated for them.
constexpr int kMaxPictureSide = 4096;

// A .png, or a .bmp of 4 (indexed), 24 or 32 bits a pixel, as it is stored; errorText
// names the file.
bool LoadPicture(const QString& fileName, QImage& picture, QString& errorText);

// The palette slot of every drawn pixel. An indexed picture whose colour table is rip's
// for this palette (or the start of it, as a tool that drops unused entries leaves it)
// keeps its indices; an index whose colour is fully transparent is no pixel. Any other
// picture is read by colour: pixels under half opaque and of the pictures' background are
// no pixel, a colour slots 0-16 show exactly takes the lowest such slot, and any other is
// matched as reading says. An index beyond the picture's own colour table is refused.
std::optional<PicturePixelsRead> PicturePixels(const QImage& picture, const Palette& palette,
                                               const PictureReading& reading, QString& errorText);

// One sentence on the pixels whose colour no slot has: how many, and the worst distance.
QString InexactColorsText(const PicturePixelsRead& read);
