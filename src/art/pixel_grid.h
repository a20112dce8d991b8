#pragma once
// Palette indices of a picture, row by row, with kNoPixel where nothing is drawn: what
// the encoder turns into runs, whether it came from the preview or from a file.
#include <QRect>
#include <cstddef>
#include <vector>

constexpr int kNoPixel = -1;

struct PixelGrid {
    int width = 0;
    int height = 0;
    std::vector<int> cells;
    int& At(int x, int y) { return cells[std::size_t(y) * std::size_t(width) + std::size_t(x)]; }
    int At(int x, int y) const { return cells[std::size_t(y) * std::size_t(width) + std::size_t(x)]; }
};

inline PixelGrid MakePixelGrid(int width, int height)
{
    return PixelGrid{width, height, std::vector<int>(std::size_t(width) * std::size_t(height), kNoPixel)};
}

// The smallest box of cells that holds every drawn cell; empty when none is drawn.
inline QRect DrawnBox(const PixelGrid& pixels)
{
    QRect box;
    for (int y = 0; y < pixels.height; ++y)
        for (int x = 0; x < pixels.width; ++x)
            if (pixels.At(x, y) != kNoPixel)
                box |= QRect(x, y, 1, 1);
    return box;
}
