#pragma once
// Uncompressed art (8 x 8 tiles of 4-bit palette indices) and TPL palette files.
#include "palette/palette.h"
#include "exchange/whole_file.h"
#include "view/picture_surface.h"

#include <QByteArray>
#include <QString>

// Index of the last tile column (or row) for the art's largest x (or y):
// (max + max mod 8) / 8, halves to even. Not max / 8: it often adds blank tiles.
int TileSpan(int maxCoordinate);

// The tiles covering the art of the preview (pixels other than transparentColor),
// each pixel matched to a palette index; positions beyond the preview read as white.
QByteArray UncompressedArtBytes(const PictureSurface& preview, const Palette& palette, ScreenColor transparentColor);

// A 5-bit component on the palette file's scale, one 8.25 step below the screen's.
uint8_t TplComponent(int fiveBit);
// 772 bytes: "TPL", type 0, slots 0-15 as red, green, blue, then 240 black colours.
QByteArray TplPaletteBytes(const Palette& palette);

