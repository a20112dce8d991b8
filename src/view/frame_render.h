#pragma once
// A frame's own pixels without any canvas: the box its drawn pixels cover, in frame
// coordinates, and that box as an indexed picture in the entry's palette.
#include "art/art_frame.h"
#include "art/pixel_grid.h"
#include "palette/palette.h"

#include <QImage>
#include <QPoint>

// Pixel values 0 to 16 are drawn (16 is the palette's fixed black); anything else
// shows nothing, like a position no run covers.
constexpr int kLastDrawnValue = 16;
constexpr int kTransparentIndex = kLastDrawnValue + 1;

struct FramePixels {
    QPoint origin; // the frame coordinate of cell (0, 0)
    PixelGrid grid;
};

// Lines in stored order, so where runs overlap the later one wins, as on screen.
FramePixels RenderFramePixels(const ArtFrame& frame);

// 8-bit indexed: indices 0-16 the palette's slots, all opaque; index 17 fully
// transparent. A frame with no drawn pixel gives a 1 x 1 transparent picture.
QImage IndexedFramePicture(const FramePixels& pixels, const Palette& palette);
// That picture's colour table.
QList<QRgb> FrameColorTable(const Palette& palette);
// A frame's drawn pixels into an 8-bit indexed picture, its cell (0, 0) at at.
void PutFramePixels(QImage& picture, QPoint at, const PixelGrid& grid);

// Whether two frames draw the same pixels at the same frame coordinates.
bool DrawsSame(const ArtFrame& a, const ArtFrame& b);
