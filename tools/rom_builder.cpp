#include "rom_builder.h"

#include "art/frame_encoder.h"
#include "rom/art_table.h"

#include <QFile>

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

void PutFramesAfterList(QByteArray& image, int position, const std::vector<QByteArray>& frames, int& freeAt)
{
    std::vector<uint32_t> entries;
    for (size_t f = 0; f < frames.size(); ++f) {
        int at = position + int(frames.size()) * 4;
        if (f > 0) {
            at = freeAt;
            freeAt += int(frames[f].size());
        }
        PutBytes(image, at, frames[f]);
        entries.push_back(uint32_t(at) + kCartridgeBase);
    }
    PutTableEntries(image, position, entries);
}

void PutPaletteWords(QByteArray& image, int position, const std::array<ConsoleColor, 15>& words)
{
    QByteArray bytes(30, '\0');
    for (size_t i = 0; i < words.size(); ++i)
        PutBigEndian16(reinterpret_cast<uint8_t*>(bytes.data()) + i * 2, words[i]);
    PutBytes(image, position, bytes);
}

QByteArray SpriteFrameBytes(const IndexGrid& sprite, int right, int bottom)
{
    ArtFrame frame;
    frame.right = int16_t(right);
    frame.bottom = int16_t(bottom);
    EncodeGrid(frame, sprite);
    return FrameBytes(frame);
}

bool WriteFileBytes(const QString& fileName, const QByteArray& bytes)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}
