#include "exchange/uncompressed_art.h"

#include "palette/color_match.h"
#include "view/frame_drawing.h"

#include <algorithm>

namespace {
constexpr int kTileSide = 8;
constexpr int kTplColors = 256;

// Positions beyond the preview read as -1, all bits set, which matches as white.
int PixelIndex(const PictureSurface& preview, const Palette& palette, int x, int y)
{
    return MatchPaletteIndex(palette, ScreenColor(SurfacePixel(preview, x, y)));
}

// The largest x and y of any pixel that is not transparent, each found on its own.
QPoint ArtExtent(const PictureSurface& preview, ScreenColor transparentColor)
{
    QPoint extent(0, 0);
    for (int y = 0; y < preview.image.height(); ++y)
        for (int x = 0; x < preview.image.width(); ++x)
            if (SurfacePixel(preview, x, y) != int64_t(transparentColor))
                extent = QPoint(std::max(extent.x(), x), std::max(extent.y(), y));
    return extent;
}

void AppendTile(QByteArray& bytes, const PictureSurface& preview, const Palette& palette, int tileX, int tileY)
{
    for (int row = 0; row < kTileSide; ++row) {
        const int y = tileY * kTileSide + row;
        for (int column = 0; column < kTileSide; column += 2) {
            const int x = tileX * kTileSide + column;
            bytes.append(char(PixelIndex(preview, palette, x, y) * 16 + PixelIndex(preview, palette, x + 1, y)));
        }
    }
}
}

int TileSpan(int maxCoordinate) { return NearestImagePixel(maxCoordinate + maxCoordinate % kTileSide, kTileSide); }

QByteArray UncompressedArtBytes(const PictureSurface& preview, const Palette& palette, ScreenColor transparentColor)
{
    const QPoint extent = ArtExtent(preview, transparentColor);
    const int lastTileX = TileSpan(extent.x());
    const int lastTileY = TileSpan(extent.y());
    QByteArray bytes;
    bytes.reserve((lastTileX + 1) * (lastTileY + 1) * kTileSide * kTileSide / 2);
    for (int tileY = 0; tileY <= lastTileY; ++tileY)
        for (int tileX = 0; tileX <= lastTileX; ++tileX)
            AppendTile(bytes, preview, palette, tileX, tileY);
    return bytes;
}

uint8_t TplComponent(int fiveBit)
{
    // (n - 1) * 8.25 is the screen scale of n - 1; below 1 it would be negative.
    const int n = std::clamp(fiveBit, 0, 31);
    return n == 0 ? 0 : kComponentTo8[size_t(n - 1)];
}

QByteArray TplPaletteBytes(const Palette& palette)
{
    QByteArray bytes("TPL", 3);
    bytes.append('\0'); // red, green, blue bytes
    for (int slot = 0; slot < 16; ++slot) {
        const ConsoleColor word = palette.colors[size_t(slot)];
        for (int shift : {0, 5, 10})
            bytes.append(char(TplComponent((word >> shift) & 31)));
    }
    bytes.append(QByteArray((kTplColors - 16) * 3, '\0'));
    return bytes;
}
