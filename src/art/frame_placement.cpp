#include "art/frame_placement.h"

#include <QRect>
#include <algorithm>

namespace {
// How far above or left of the pixels a kept header may lie: further apart, no frame fits.
constexpr int kMaxKeptMargin = 256;
}

bool WithinReach(QPoint origin)
{
    return origin.x() >= -kMaxOriginDistance && origin.x() <= kMaxOriginDistance && origin.y() >= -kMaxOriginDistance
        && origin.y() <= kMaxOriginDistance;
}

PlacedPixels PlaceAtOrigin(const ArtFrame& current, const PixelGrid& pixels, QPoint origin)
{
    const QRect box = DrawnBox(pixels);
    if (box.isEmpty())
        return {current, pixels};
    const QRect drawn = box.translated(origin);
    const int left = std::clamp(int(current.left), drawn.left() - kMaxKeptMargin, drawn.left());
    const int top = std::clamp(int(current.top), drawn.top() - kMaxKeptMargin, drawn.top());
    PlacedPixels placed{current, MakePixelGrid(drawn.right() - left + 1, drawn.bottom() - top + 1)};
    placed.placement.right = int16_t(std::clamp(drawn.right(), INT16_MIN, INT16_MAX));
    placed.placement.bottom = int16_t(std::clamp(drawn.bottom(), INT16_MIN, INT16_MAX));
    for (int y = box.top(); y <= box.bottom(); ++y)
        for (int x = box.left(); x <= box.right(); ++x)
            placed.pixels.At(x + origin.x() - left, y + origin.y() - top) = pixels.At(x, y);
    return placed;
}
