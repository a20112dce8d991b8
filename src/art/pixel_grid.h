#pragma once
// Palette indices of a picture, row by row, with kNoPixel where nothing is drawn: what
// the encoder turns into runs, whether it came from the preview or from a file.
#include <vector>

constexpr int kNoPixel = -1;

struct PixelGrid {
    int width = 0;
    int height = 0;
    std::vector<int> cells;
    int& At(int x, int y) { return cells[size_t(y) * size_t(width) + size_t(x)]; }
    int At(int x, int y) const { return cells[size_t(y) * size_t(width) + size_t(x)]; }
};

inline PixelGrid MakePixelGrid(int width, int height)
{
    return PixelGrid{width, height, std::vector<int>(size_t(width) * size_t(height), kNoPixel)};
}
