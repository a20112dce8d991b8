#pragma once
// A frame of art: an 8-byte header and horizontal runs of palette indices.
#include "rom/rom_file.h"

#include <array>
#include <cstdint>

constexpr int kFrameLineSlots = 101;
constexpr int kLinePixelSlots = 101;

struct FrameLine {
    int16_t startX = 0;
    int16_t endX = 0; // one past the run's last pixel
    int16_t y = 0;
    std::array<int16_t, kLinePixelSlots> pixels{};
};

struct ArtFrame {
    int32_t romOffset = 0;
    int16_t left = 0;
    int16_t right = 0;
    int16_t top = 0;
    int16_t bottom = 0;
    std::array<FrameLine, kFrameLineSlots> lines{};
    int16_t lastLine = 0; // -1 when not even the first line could be read
};

// Line bytes: 0x00-0x80 are 0 to 128, 0x81-0xFF are -127 to -1.
constexpr int16_t LineByteValue(uint8_t byte) { return byte <= 0x80 ? int16_t(byte) : int16_t(byte - 256); }

// Signed 8.8 fixed point to the nearest whole number, halves to even.
int16_t FixedPointValue(uint16_t word);

// Complete: the frame ended at its terminator. Cut: the file ended first, or the
// frame has more lines or longer lines than the record holds; the lines before the
// damage are kept (lastLine -1 when there are none).
enum class FrameRead { Complete, Cut };

FrameRead ReadFrame(const RomFile& rom, int32_t& readPosition, ArtFrame& frame, int32_t offset);

// Reads the frame at offset; gives how many bytes it takes in the image, its end mark
// included, or 0 when it cannot be read whole.
int64_t ReadStoredFrame(const RomFile& rom, int32_t offset, ArtFrame& frame);
