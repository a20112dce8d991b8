#pragma once
// Placing an edited frame in the image and pointing its table entry at it.
#include "art/frame_encoder.h"
#include "rom/art_table.h"
#include "rom/rom_document.h"

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

// A save's position when the frame goes at the end of the file, as long as the file is
// when the change is made.
constexpr int32_t kAtTheEnd = -1;

// What a frame save planned, once it is planned.
struct FrameSaveOutcome {
    std::optional<FrameSavePlan> plan;
    int32_t position = 0;
    bool refused = false; // the frame or its position was refused, not the change
};

// Plans slot f of table t as the frame of pixels at position (or kAtTheEnd), on the
// image as it stands when the change is made.
ChangePlanner FrameSavePlanner(int t, int f, const ArtFrame& placement, const PixelGrid& pixels, int32_t position,
                               FrameSaveOutcome& outcome);
