#include "rom/rom_open.h"

bool ReadArtTables(const RomFile& rom, int32_t& readPosition, std::array<ArtTable, kArtTableRecords>& tables, int count)
{
    bool whole = true;
    for (int n = 0; n < count && n < kArtTableCount; ++n) {
        const TableEnd end = ReadArtTable(rom, readPosition, tables[size_t(n)], kArtTablePositions[size_t(n)]);
        whole = whole && (end == TableEnd::EndMarker || end == TableEnd::FirstFrameReached);
    }
    return whole;
}

bool ReadPalettes(const RomFile& rom, int32_t& readPosition, std::array<Palette, kPaletteRecords>& palettes)
{
    bool whole = true;
    for (int n = 0; n < kArtTableCount; ++n)
        whole = ReadPalette(rom, readPosition, palettes[size_t(n)], kPalettePositions[size_t(n)]) && whole;
    return whole;
}
