#pragma once
// Art tables: lists of big-endian SH-2 frame addresses at fixed places in the image.
#include "rom/rom_file.h"

#include <array>
#include <cstdint>

constexpr int kTableSlots = 151;
constexpr int kArtTableCount = 14;
constexpr int kArtTableRecords = 21;
constexpr uint32_t kCartridgeBase = 0x02000000;

struct ArtTable {
    int32_t position = 0;
    std::array<int32_t, kTableSlots> pointers{};
};

// Where the image keeps art table n and its palette (tables n and n + 7 share one).
extern const std::array<int32_t, kArtTableCount> kArtTablePositions;
extern const std::array<int32_t, kArtTableCount> kPalettePositions;

// How a table read ended. Anything but a marker or the position rule means the list
// was cut: at the end of the file, or after its 151st entry.
enum class TableEnd { EndMarker, FirstFrameReached, EndOfFile, CapacityReached };

// Fills table from the list at position; leaves readPosition behind the last entry read.
TableEnd ReadArtTable(const RomFile& rom, int32_t& readPosition, ArtTable& table, int32_t position);
