#include "rom_builder.h"

#include "art/frame_encoder.h"
#include "view/picture_surface.h"

#include <QFile>

IndexGrid MakeIndexGrid(int width, int height)
{
    return IndexGrid{width, height, std::vector<int>(size_t(width * height), -1)};
}

void PutBytes(QByteArray& image, int position, const QByteArray& bytes)
{
    if (position + bytes.size() > image.size())
        image.resize(position + bytes.size(), '\0');
    std::copy(bytes.begin(), bytes.end(), image.begin() + position);
}

void PutWord32(QByteArray& image, int position, uint32_t value)
{
    QByteArray bytes(4, '\0');
    PutBigEndian32(reinterpret_cast<uint8_t*>(bytes.data()), value);
    PutBytes(image, position, bytes);
}

void PutTableEntries(QByteArray& image, int position, const std::vector<uint32_t>& entries)
{
    for (size_t i = 0; i < entries.size(); ++i)
        PutWord32(image, position + int(i) * 4, entries[i]);
}

void PutPaletteWords(QByteArray& image, int position, const std::array<ConsoleColor, 15>& words)
{
    QByteArray bytes(30, '\0');
    for (size_t i = 0; i < words.size(); ++i)
        PutBigEndian16(reinterpret_cast<uint8_t*>(bytes.data()) + i * 2, words[i]);
    PutBytes(image, position, bytes);
}

QByteArray SpriteFrameBytes(const IndexGrid& sprite, const Palette& palette, int right, int bottom)
{
    QImage image(sprite.width + 1, sprite.height + 1, QImage::Format_RGB32);
    image.fill(ScreenToRgb(kPictureBackground));
    for (int y = 0; y < sprite.height; ++y)
        for (int x = 0; x < sprite.width; ++x) {
            const int index = sprite.cells[size_t(y * sprite.width + x)];
            if (index >= 0)
                image.setPixel(x, y, ScreenToRgb(ConsoleToScreen(palette, index, kPictureBackground)));
        }
    ArtFrame frame;
    frame.right = int16_t(right);
    frame.bottom = int16_t(bottom);
    EncodeFrame(frame, image, palette, kPictureBackground);
    return FrameBytes(frame);
}

bool WriteFileBytes(const QString& fileName, const QByteArray& bytes)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}
