#include "palette/palette.h"

ScreenColor ConsoleToScreen(const Palette& palette, int slot, ScreenColor transparentColor)
{
    if (slot < 0 || slot >= kPaletteSlots)
        return transparentColor;
    const ConsoleColor word = palette.colors[size_t(slot)];
    return word == kTransparentMarker ? transparentColor : WordToScreen(word);
}

bool ReadPalette(const RomFile& rom, int32_t& readPosition, Palette& palette, int32_t position)
{
    palette.position = position;
    readPosition = position;
    uint8_t bytes[kPaletteBytes] = {};
    const int64_t available = ReadRomBytes(rom, position, bytes, sizeof bytes);
    palette.colors[0] = kColorZeroWord;
    for (int slot = 1; slot <= kStoredColors; ++slot)
        palette.colors[size_t(slot)] = BigEndian16(bytes + (slot - 1) * 2);
    palette.colors[17] = kTransparentMarker;
    readPosition = int32_t(uint32_t(position) + kPaletteBytes);
    return available == kPaletteBytes;
}

RomPatch PalettePatch(const Palette& palette)
{
    QByteArray bytes(kPaletteBytes, '\0');
    for (int slot = 1; slot <= kStoredColors; ++slot)
        PutBigEndian16(reinterpret_cast<uint8_t*>(bytes.data()) + (slot - 1) * 2, palette.colors[size_t(slot)]);
    return {palette.position, bytes};
}
