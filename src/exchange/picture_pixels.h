#pragma once
// Pictures from other tools as a frame's pixels: an indexed PNG or a 16-colour bitmap
// keeps its indices, an RGB(A) PNG is matched against the entry's palette.
#include "art/pixel_grid.h"
#include "palette/palette.h"

#include <QImage>
#include <QString>
#include <optional>

enum class ColorMatch { Editor, Perceptual };

// Larger pictures are refused before anything is allocated for them.
constexpr int kMaxPictureSide = 4096;

// A .png, or a .bmp with 4 bits a pixel, as it is stored; errorText names the file.
bool LoadPicture(const QString& fileName, QImage& picture, QString& errorText);

// The palette index of every drawn pixel. Not drawn: an index whose colour is fully
// transparent, an RGB pixel under half opaque or of the pictures' background colour.
// An indexed picture may use indices 0 to 16 only.
std::optional<PixelGrid> PicturePixels(const QImage& picture, const Palette& palette, ColorMatch match,
                                       QString& errorText);
