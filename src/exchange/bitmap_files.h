#pragma once
// Bitmap files: writing the frame image, reading the two header fields the import
// looks at, and loading the pixels of a bitmap to import.
#include "palette/palette.h"

#include <QImage>
#include <QString>

// Replaces the file whole with the image as a 24-bit bitmap; on failure the old file
// stays and errorText names the file and the reason.
bool WriteBitmapFile(const QImage& image, const QString& fileName, QString& errorText);

// The bits per pixel at byte 28 (low byte first); missing bytes and unreadable
// files give 0.
int BitmapDepth(const QString& fileName);

// Only 16-colour bitmaps (4 bits per pixel) are imported; nothing else is checked.
constexpr int kImportedBitmapDepth = 4;
inline bool HasImportedDepth(const QString& fileName) { return BitmapDepth(fileName) == kImportedBitmapDepth; }

// Colour table entries 0-15 (blue, green, red, unused from byte 54) into slots 0-15;
// missing bytes read as 0.
void ReadBitmapPalette(Palette& palette, const QString& fileName);

// The bitmap as it is stored (indexed or not). Absurd sizes, short and damaged files
// are refused with errorText, leaving picture as it was.
bool LoadBitmapImage(const QString& fileName, QImage& picture, QString& errorText);

// The same as Format_RGB32, as the section chooser shows it.
bool LoadBitmapPicture(const QString& fileName, QImage& picture, QString& errorText);
