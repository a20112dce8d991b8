#include "rom/art_table.h"

const std::array<int32_t, kArtTableCount> kArtTablePositions = {
    0xA0504, 0xB18BC, 0xCB3B4, 0xD4E44, 0xF1130, 0xF6A18, 0x101304,
    0x11B088, 0x11F7A8, 0x121AA4, 0x1256B0, 0x1293E0, 0x12A9E8, 0x12C120,
};

const std::array<int32_t, kArtTableCount> kPalettePositions = {
    0x22921A, 0x22923E, 0x22927E, 0x22925C, 0x2292A0, 0x2292BE, 0x2292DC,
    0x22921A, 0x22923E, 0x22927E, 0x22925C, 0x2292A0, 0x2292BE, 0x2292DC,
};

TableEnd ReadArtTable(const RomFile& rom, int32_t& readPosition, ArtTable& table, int32_t position)
{
    table.pointers.fill(0);
    table.position = position;
    readPosition = position;

    // One read for the whole list: it is at most 151 entries long.
    uint8_t bytes[kTableSlots * 4];
    const int64_t available = ReadRomBytes(rom, position, bytes, sizeof bytes);

    for (int i = 0; i < kTableSlots; ++i) {
        if ((i + 1) * 4 > available)
            return TableEnd::EndOfFile;
        const uint8_t* entry = bytes + i * 4;
        readPosition = int32_t(uint32_t(readPosition) + 4u);
        const uint32_t value = BigEndian32(entry);
        if (value == 0xFFFFFFFFu) {
            // An empty slot repeats the first frame and never ends the list.
            table.pointers[i] = i == 0 ? int32_t(value) : table.pointers[0];
            continue;
        }
        if ((value & 0xFF000000u) == 0xFF000000u) {
            table.pointers[i] = int32_t(value);
            return TableEnd::EndMarker;
        }
        table.pointers[i] = int32_t(value - kCartridgeBase);
        if (table.pointers[0] == readPosition)
            return TableEnd::FirstFrameReached;
    }
    return TableEnd::CapacityReached;
}
