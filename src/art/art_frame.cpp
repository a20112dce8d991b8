#include "art/art_frame.h"

namespace {
constexpr int kHeaderBytes = 8;
// The longest frame worth reading: every line slot filled with the longest run a
// line byte pair can describe, plus the terminator.
constexpr int kMaxFrameBytes = kHeaderBytes + kFrameLineSlots * (4 + 255) + 2;

struct Cursor {
    const uint8_t* bytes;
    int64_t length;
    int64_t at;
    bool Has(int64_t count) const { return at + count <= length; }
};

FrameRead ReadLines(Cursor& in, ArtFrame& frame)
{
    for (int i = 0;; ++i) {
        if (i == kFrameLineSlots || !in.Has(4))
            return FrameRead::Cut;
        FrameLine& line = frame.lines[size_t(i)];
        const int16_t startX = LineByteValue(in.bytes[in.at]);
        const int16_t endX = LineByteValue(in.bytes[in.at + 1]);
        const int width = endX > startX ? endX - startX : 0;
        if (width > kLinePixelSlots || !in.Has(4 + width))
            return FrameRead::Cut;
        line.startX = startX;
        line.endX = endX;
        line.y = FixedPointValue(BigEndian16(in.bytes + in.at + 2));
        in.at += 4;
        for (int k = 0; k < width; ++k)
            line.pixels[size_t(k)] = LineByteValue(in.bytes[in.at + k]);
        in.at += width;
        frame.lastLine = int16_t(i);
        if (!in.Has(2))
            return FrameRead::Cut;
        if (in.bytes[in.at] == 0 && in.bytes[in.at + 1] == 0)
            return FrameRead::Complete;
    }
}
}

int16_t FixedPointValue(uint16_t word)
{
    const int value = int16_t(word);
    int whole = value >> 8; // floor division by 256
    const int fraction = value & 0xFF;
    if (fraction > 0x80 || (fraction == 0x80 && (whole & 1) != 0))
        ++whole;
    return int16_t(whole);
}

FrameRead ReadFrame(const RomFile& rom, int32_t& readPosition, ArtFrame& frame, int32_t offset)
{
    static thread_local std::array<uint8_t, kMaxFrameBytes> buffer;
    frame.romOffset = offset;
    frame.left = frame.right = frame.top = frame.bottom = 0;
    frame.lastLine = -1;
    readPosition = offset;

    Cursor in{buffer.data(), ReadRomBytes(rom, offset, buffer.data(), kMaxFrameBytes), 0};
    if (!in.Has(kHeaderBytes))
        return FrameRead::Cut;
    frame.left = int16_t(BigEndian16(in.bytes));
    frame.right = int16_t(BigEndian16(in.bytes + 2));
    frame.top = FixedPointValue(BigEndian16(in.bytes + 4));
    frame.bottom = FixedPointValue(BigEndian16(in.bytes + 6));
    in.at = kHeaderBytes;
    const FrameRead result = ReadLines(in, frame);
    readPosition = int32_t(uint32_t(offset) + uint32_t(in.at));
    return result;
}

int64_t ReadStoredFrame(const RomFile& rom, int32_t offset, ArtFrame& frame)
{
    int32_t readPosition = 0;
    return ReadFrame(rom, readPosition, frame, offset) == FrameRead::Complete ? int64_t(readPosition) - offset + 2 : 0;
}
