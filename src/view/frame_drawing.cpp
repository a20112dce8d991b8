#include "view/frame_drawing.h"

#include <cstdlib>

QRect ZoomBlock(int column, int row, int zoom) { return QRect(column * zoom, row * zoom, zoom, zoom); }

void DrawFrame(FrameSurfaces surfaces, const ArtFrame& frame, const Palette& palette, ScreenColor transparentColor)
{
    const int shiftX = std::abs(int(frame.left));
    const int shiftY = std::abs(int(frame.top));
    const int lastLine = std::min<int>(frame.lastLine, kFrameLineSlots - 1);
    for (int i = 0; i <= lastLine; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        const int width = std::min(line.endX - line.startX, kLinePixelSlots);
        const int row = shiftY + line.y;
        for (int k = 0; k < width; ++k) {
            const int column = shiftX + line.startX + k;
            const ScreenColor color = ConsoleToScreen(palette, line.pixels[size_t(k)], transparentColor);
            FillSurfaceRect(surfaces.canvas, ZoomBlock(column, row, surfaces.zoom), color);
            SetSurfacePixel(surfaces.preview, column, row, color);
        }
    }
}

int NearestImagePixel(int position, int zoom)
{
    int quotient = position / zoom;
    int remainder = position % zoom;
    if (remainder < 0) { // floor division, so the remainder is never negative
        --quotient;
        remainder += zoom;
    }
    if (2 * remainder > zoom || (2 * remainder == zoom && (quotient & 1) != 0))
        ++quotient;
    return quotient;
}

QRect PaintFramePixel(FrameSurfaces surfaces, QPoint pixel, ScreenColor color)
{
    SetSurfacePixel(surfaces.preview, pixel.x(), pixel.y(), color);
    return FillSurfaceRect(surfaces.canvas, ZoomBlock(pixel.x(), pixel.y(), surfaces.zoom), color);
}

QPoint CanvasPixelAt(QPoint canvasPoint, int zoom)
{
    return {NearestImagePixel(canvasPoint.x(), zoom), NearestImagePixel(canvasPoint.y(), zoom)};
}
