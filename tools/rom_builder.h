#pragma once
// Builds ROM images in memory, for the tests and the demo image.
#include "art/art_frame.h"
#include "art/pixel_grid.h"
#include "palette/palette.h"

#include <QByteArray>
#include <QString>
#include <vector>

// Palette indices of a sprite, row by row; -1 is a transparent position.
using IndexGrid = PixelGrid;
inline IndexGrid MakeIndexGrid(int width, int height) { return MakePixelGrid(width, height); }

void PutBytes(QByteArray& image, int position, const QByteArray& bytes);
void PutWord32(QByteArray& image, int position, uint32_t value);
// Raw 4-byte entries (addresses, empty slots, end markers) from position on.
void PutTableEntries(QByteArray& image, int position, const std::vector<uint32_t>& entries);
// A table's list of frames: frame 0 right after the list, so the list ends by the
// position rule, and the others from freeAt on, which moves past them.
void PutFramesAfterList(QByteArray& image, int position, const std::vector<QByteArray>& frames, int& freeAt);
void PutPaletteWords(QByteArray& image, int position, const std::array<ConsoleColor, 15>& words);

// The bytes the editor saves for this sprite, with the frame's
// rightmost column at X = right and lowest row at Y = bottom.
QByteArray SpriteFrameBytes(const IndexGrid& sprite, int right, int bottom);

bool WriteFileBytes(const QString& fileName, const QByteArray& bytes);
