#pragma once
// Reading the catalogue of a newly opened image: the 14 art tables and 14 palettes
// at their fixed places.
#include "palette/palette.h"
#include "rom/art_table.h"

// True when every table ended properly and every palette was whole.
bool ReadArtTables(const RomFile& rom, int32_t& readPosition, std::array<ArtTable, kArtTableRecords>& tables, int count);
bool ReadPalettes(const RomFile& rom, int32_t& readPosition, std::array<Palette, kPaletteRecords>& palettes);
