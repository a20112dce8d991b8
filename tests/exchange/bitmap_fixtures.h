#pragma once
// Bitmap files for the import tests: 4-bit ones built byte by byte, so that what the
// loader is given does not depend on the reader it is tested against, and others
// from Qt's writer.
#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <vector>

enum class BmpRows { BottomUp, RunLength };

// A little-endian field of size bytes at offset, or behind the end for offset -1.
inline void SetField(QByteArray& bytes, int offset, quint32 value, int size)
{
    if (offset < 0)
        bytes.resize((offset = int(bytes.size())) + size);
    for (int i = 0; i < size; ++i)
        bytes[offset + i] = char((value >> (8 * i)) & 0xFF);
}

// A 4-bit bitmap with a 16-entry colour table; indices row by row from the top. Run
// length rows are runs of one pixel, an end of line after each row and an end of
// bitmap after the last.
inline QByteArray FourBitBitmap(const std::vector<QRgb>& colors, int width, int height,
                                const std::vector<int>& indices, BmpRows rows)
{
    const int stride = (width + 7) / 8 * 4;
    QByteArray pixels(rows == BmpRows::RunLength ? 0 : stride * height, '\0');
    for (int stored = 0; stored < height; ++stored) {
        const int* row = &indices[size_t((height - 1 - stored) * width)];
        for (int x = 0; x < width; ++x)
            if (rows == BmpRows::RunLength)
                pixels.append(char(1)).append(char(row[x] << 4));
            else
                pixels[stored * stride + x / 2] = char(pixels[stored * stride + x / 2] | row[x] << (x % 2 ? 0 : 4));
        if (rows == BmpRows::RunLength)
            pixels.append(char(0)).append(char(stored == height - 1 ? 1 : 0));
    }
    const int pixelOffset = 14 + 40 + 16 * 4;
    QByteArray bytes("BM");
    const quint32 fields[][2] = {
        {quint32(pixelOffset + pixels.size()), 4}, {0, 4}, {pixelOffset, 4}, {40, 4}, {quint32(width), 4}, {quint32(height), 4},
        {1, 2}, {4, 2}, {rows == BmpRows::RunLength ? 2u : 0u, 4}, {quint32(pixels.size()), 4}, {2835, 4}, {2835, 4}, {16, 4}, {0, 4},
    };
    for (const auto& [value, size] : fields)
        SetField(bytes, -1, value, int(size));
    for (QRgb color : colors)
        SetField(bytes, -1, color & 0xFFFFFF, 4); // blue, green, red, unused
    return bytes + pixels;
}

// Sixteen colours that differ in every component.
inline std::vector<QRgb> SixteenColors()
{
    std::vector<QRgb> colors;
    for (int i = 0; i < 16; ++i)
        colors.push_back(qRgb(i * 16, 255 - i * 16, i * 8 + 1));
    return colors;
}

// 16 x 12 pixels of index (x + y) mod 15 + 1, so that no pixel uses colour 0.
inline QByteArray DiagonalBitmap()
{
    std::vector<int> indices;
    for (int i = 0; i < 16 * 12; ++i)
        indices.push_back((i % 16 + i / 16) % 15 + 1);
    return FourBitBitmap(SixteenColors(), 16, 12, indices, BmpRows::BottomUp);
}

inline QByteArray Encoded(const QImage& image, const char* format = "bmp")
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return buffer.data();
}
