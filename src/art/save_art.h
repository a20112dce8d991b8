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

// A save worked out in full before anything is written: the encoded frame (its lines
// widened as written) and the entry and frame bytes, in that order.
struct FrameSavePlan {
    ArtFrame frame;
    std::vector<RomPatch> patches;
};

// Encodes pixels as slot f's frame, keeping placement's right and bottom, to go at
// position. Nothing (with errorText) when the slot or the frame does not fit.
std::optional<FrameSavePlan> PlanFrameSave(const ArtTable& table, int f, const ArtFrame& placement,
                                           const PixelGrid& pixels, int32_t position, QString& errorText);
