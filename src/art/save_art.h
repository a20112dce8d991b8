#pragma once
// Placing an edited frame in the image and pointing its table entry at it.
#include "art/frame_encoder.h"
#include "rom/art_table.h"
#include "rom/rom_patch.h"

#include <optional>

void SetFramePointer(ArtTable& table, int f, int32_t position);
// The entry's 4 bytes in the image: the position as a big-endian SH-2 address.
RomPatch FramePointerPatch(const ArtTable& table, int f);

// The end of the file, while a table entry can still address it.
std::optional<int32_t> AppendPosition(int64_t fileLength, QString& errorText);

// The typed position, or nothing (with errorText) when it names no place in the file:
// no leading digit, beyond the end of the file, or too large for 32 bits.
std::optional<int32_t> TypedSavePosition(const QString& answer, int64_t fileLength, QString& errorText);

// The entry and the frame bytes a save writes, in that order; frame is the encoded
// frame, and gains its widened lines.
std::vector<RomPatch> FrameSavePatches(const ArtTable& table, int f, ArtFrame& frame, int32_t position);

struct FrameSave {
    ArtTable& table;
    int f;
    ArtFrame& frame;
    const PixelGrid& pixels;
};

// Encodes the pixels and writes them at position, with the entry pointing there.
// Nothing is written for a frame that does not fit; when a write fails, the entry
// and the bytes are put back, and table and frame stay as they were. False (with
// errorText) when nothing was saved.
bool SaveFrameAt(RomFile& rom, int32_t& readPosition, const FrameSave& save, int32_t position, QString& errorText);
