#include "view/frame_render.h"

#include <QRect>
#include <algorithm>

namespace {
bool Drawn(int value) { return value >= 0 && value <= kLastDrawnValue; }

template <typename Visit>
void ForEachPixel(const ArtFrame& frame, Visit visit)
{
    const int lastLine = std::min<int>(frame.lastLine, kFrameLineSlots - 1);
    for (int i = 0; i <= lastLine; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        const int width = std::min(line.endX - line.startX, kLinePixelSlots);
        for (int k = 0; k < width; ++k)
            visit(line.startX + k, int(line.y), int(line.pixels[size_t(k)]));
    }
}
}

FramePixels RenderFramePixels(const ArtFrame& frame)
{
    // Every covered position first, then the box of those that end up drawn.
    QRect covered;
    ForEachPixel(frame, [&covered](int x, int y, int) { covered |= QRect(x, y, 1, 1); });
    FramePixels all{covered.topLeft(), MakePixelGrid(covered.width(), covered.height())};
    ForEachPixel(frame, [&all](int x, int y, int value) {
        all.grid.At(x - all.origin.x(), y - all.origin.y()) = Drawn(value) ? value : kNoPixel;
    });
    const QRect drawn = DrawnBox(all.grid);
    FramePixels box{all.origin + drawn.topLeft(), MakePixelGrid(drawn.width(), drawn.height())};
    for (int y = 0; y < box.grid.height; ++y)
        for (int x = 0; x < box.grid.width; ++x)
            box.grid.At(x, y) = all.grid.At(x + drawn.left(), y + drawn.top());
    return box;
}

QList<QRgb> FrameColorTable(const Palette& palette)
{
    QList<QRgb> table;
    for (int slot = 0; slot <= kLastDrawnValue; ++slot)
        table << ScreenToRgb(WordToScreen(palette.colors[size_t(slot)]));
    table << qRgba(0, 0, 0, 0);
    return table;
}

void PutFramePixels(QImage& picture, QPoint at, const PixelGrid& grid)
{
    for (int y = 0; y < grid.height; ++y) {
        uchar* line = picture.scanLine(at.y() + y) + at.x();
        for (int x = 0; x < grid.width; ++x)
            if (const int value = grid.At(x, y); value != kNoPixel)
                line[x] = uchar(value);
    }
}

QImage IndexedFramePicture(const FramePixels& pixels, const Palette& palette)
{
    QImage picture(std::max(pixels.grid.width, 1), std::max(pixels.grid.height, 1), QImage::Format_Indexed8);
    picture.setColorTable(FrameColorTable(palette));
    picture.fill(uint(kTransparentIndex));
    PutFramePixels(picture, {0, 0}, pixels.grid);
    return picture;
}

bool DrawsSame(const ArtFrame& a, const ArtFrame& b)
{
    const FramePixels first = RenderFramePixels(a), second = RenderFramePixels(b);
    return first.origin == second.origin && first.grid.width == second.grid.width && first.grid.cells == second.grid.cells;
}
