#include "exchange/png_palette.h"

#include <QtEndian>
#include <zlib.h> // the CRC-32 of the chunk that is rewritten

namespace {
constexpr qint64 kSignatureBytes = 8;
constexpr qint64 kChunkHead = 8; // the data's length and the chunk's type; a CRC follows the data
constexpr qint64 kMaxPngBytes = qint64(64) << 20;

struct Palette {
    qint64 chunkAt = 0;
    quint32 length = 0; // three bytes a colour
    int allowed = 0;    // the colours an index of the bit depth can name
};

// The PLTE chunk of an indexed picture, found before the pixel data as the format places it.
std::optional<Palette> FindPalette(QIODevice& png)
{
    int allowed = 0;
    for (qint64 at = kSignatureBytes; png.seek(at);) {
        const QByteArray head = png.read(kChunkHead + 13); // with IHDR's data
        if (head.size() < kChunkHead)
            return std::nullopt;
        const quint32 length = qFromBigEndian<quint32>(head.constData());
        const QByteArray type = head.mid(4, 4);
        const bool indexed = type == "IHDR" && head.size() == kChunkHead + 13 && uchar(head[17]) == 3;
        if (indexed && uchar(head[16]) <= 8)
            allowed = 1 << uchar(head[16]); // the bit depth's
        if (type == "PLTE")
            return Palette{at, length, allowed};
        if (type == "IDAT" || type == "IEND")
            return std::nullopt;
        at += kChunkHead + qint64(length) + 4;
    }
    return std::nullopt;
}

QByteArray BigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}
}

std::optional<PaddedPng> WithFullPalette(QIODevice& png)
{
    const std::optional<Palette> palette = FindPalette(png);
    // A table that is empty, not whole colours or already full is left to the reader.
    if (!palette || palette->length == 0 || palette->length % 3 != 0 || palette->length / 3 >= quint32(palette->allowed)
        || !png.seek(0))
        return std::nullopt;
    const QByteArray file = png.read(kMaxPngBytes);
    const QByteArray chunk = "PLTE" + file.mid(palette->chunkAt + kChunkHead, palette->length)
        + QByteArray(3 * palette->allowed - int(palette->length), '\0');
    const uLong crc = crc32(0, reinterpret_cast<const Bytef*>(chunk.constData()), uInt(chunk.size()));
    return PaddedPng{file.left(palette->chunkAt) + BigEndian(quint32(chunk.size() - 4)) + chunk + BigEndian(quint32(crc))
                         + file.mid(palette->chunkAt + kChunkHead + palette->length + 4),
                     int(palette->length / 3)};
}
