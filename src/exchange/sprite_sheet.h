#pragma once
// A table's frames on one picture: each in a rectangle of its own, in slot order, left
// to right in rows, with at least one transparent pixel between neighbours.
#include "palette/palette.h"
#include "view/frame_render.h"

#include <QImage>
#include <QRect>
#include <vector>

// Rows are filled up to this width; a wider frame gets a row of its own.
constexpr int kSheetWidth = 512;

// Where each frame goes, from its picture's size.
std::vector<QRect> LayOutSheet(const std::vector<QSize>& sizes);

// The sheet: 8-bit indexed in the palette as a single frame's picture is, every pixel
// outside the frames transparent.
QImage SheetPicture(const std::vector<FramePixels>& frames, const std::vector<QRect>& rects, const Palette& palette);
