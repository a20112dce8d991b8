#pragma once
// Palette records: 15 stored colour words plus the editor's own slots 0, 16 and 17.
#include "palette/colors.h"
#include "rom/rom_patch.h"

#include <QString>

constexpr int kPaletteSlots = 18;
constexpr int kPaletteRecords = 101;
constexpr int kStoredColors = 15;
constexpr int kPaletteBytes = kStoredColors * 2;

struct Palette {
    int32_t position = 0;
    std::array<ConsoleColor, kPaletteSlots> colors{};
};

// The screen colour of a slot; the transparent marker (and any slot number outside
// 0-17) shows as transparentColor.
ScreenColor ConsoleToScreen(const Palette& palette, int slot, ScreenColor transparentColor);

// Fills the record from the 30 bytes at position. Bytes beyond the end of the file
// read as zero; the result says whether all 30 were there.
bool ReadPalette(const RomFile& rom, int32_t& readPosition, Palette& palette, int32_t position);

// Writing the palette back: slots 1-15 as the image stores them, at the record's
// position (the session writes it through the journal).
RomPatch PalettePatch(const Palette& palette);
