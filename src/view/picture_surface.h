#pragma once
// A picture that keeps what is drawn on it: the drawing area of a picture box
// (inside its border), cleared to a background colour.
#include "palette/colors.h"

#include <QImage>
#include <QRect>

// The face colour of the pictures. No console word shows as it (240 is not an
// 8-bit step of the 5-bit scale), so it can mark transparent pixels.
constexpr ScreenColor kPictureBackground = MakeScreenColor(240, 240, 240);

struct PictureSurface {
    QImage image;
    ScreenColor background = kPictureBackground;
};

PictureSurface MakeSurface(int width, int height, ScreenColor background = kPictureBackground);
void ClearSurface(PictureSurface& surface);
// Each drawing call clips to the drawing area and returns the rectangle it changed.
QRect FillSurfaceRect(PictureSurface& surface, const QRect& rect, ScreenColor color);
QRect SetSurfacePixel(PictureSurface& surface, int x, int y, ScreenColor color);
QRect DrawSurfaceOutline(PictureSurface& surface, const QRect& rect, ScreenColor color);
// The pixel's colour, or -1 outside the drawing area.
int64_t SurfacePixel(const PictureSurface& surface, int x, int y);
