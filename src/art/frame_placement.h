#pragma once
// Placing a picture's pixels at a chosen frame coordinate, for the encoder, which puts
// the rightmost drawn column at frame X right and the lowest drawn row at Y bottom.
#include "art/art_frame.h"
#include "art/pixel_grid.h"

#include <QPoint>

struct PlacedPixels {
    ArtFrame placement; // the frame to encode over: its right and bottom place the cells
    PixelGrid pixels;
};

// How far from the frame's 0,0 an origin may lie: far beyond any frame, and near enough
// that placing pixels there cannot overflow. Further origins are refused before placing.
constexpr int kMaxOriginDistance = 32768;
bool WithinReach(QPoint origin);

// Cell (c, r) lands at frame (origin.x + c, origin.y + r). The header's left and top
// stay the current frame's where they lie above and left of the drawn pixels, so the
// editor shows the frame where it showed the old one; otherwise they follow the pixels.
// A picture with no drawn pixel is placed as the editor places it.
PlacedPixels PlaceAtOrigin(const ArtFrame& current, const PixelGrid& pixels, QPoint origin);
