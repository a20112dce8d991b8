#pragma once
// Drawing a frame 1:1 into the preview and enlarged into the canvas, and painting
// single pixels into both.
#include "art/art_frame.h"
#include "palette/palette.h"
#include "view/picture_surface.h"

// Drawing areas of the canvas and the preview (their boxes less a 2-pixel border).
constexpr int kCanvasWidth = 245, kCanvasHeight = 205;
constexpr int kPreviewWidth = 61, kPreviewHeight = 85;

struct FrameSurfaces {
    PictureSurface& canvas;
    PictureSurface& preview;
    int zoom;
};

// The canvas block of image pixel (column, row).
QRect ZoomBlock(int column, int row, int zoom);

// Lines in stored order; frame position (X, Y) lands at column X + |left|, row Y + |top|.
void DrawFrame(FrameSurfaces surfaces, const ArtFrame& frame, const Palette& palette, ScreenColor transparentColor);

// x / zoom to the nearest whole number, halves to the even one.
int NearestImagePixel(int position, int zoom);

// Paints one pixel of the frame picture and its block on the canvas; returns the
// canvas rectangle that changed.
QRect PaintFramePixel(FrameSurfaces surfaces, QPoint pixel, ScreenColor color);

// The frame picture's pixel under a point of the zoomed canvas.
QPoint CanvasPixelAt(QPoint canvasPoint, int zoom);
