#pragma once
// The application's icon: a pixel-art slime, drawn at any multiple of 16 pixels, so the
// window, the about box and the installed icons are one picture.
#include <QImage>

constexpr int kIconPixels = 16;

// size is 16 times a whole number; each icon pixel becomes a square block.
QImage AppIconImage(int size);
