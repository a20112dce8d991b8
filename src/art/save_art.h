#pragma once
// Placing an edited frame in the image and pointing its table entry at it.
#include "art/frame_encoder.h"
#include "rom/art_table.h"

#include <optional>

void SetFramePointer(ArtTable& table, int f, int32_t position);
bool WriteFramePointer(RomFile& rom, int32_t& readPosition, const ArtTable& table, int f, QString& errorText);

// The typed position, or nothing (with errorText) when it names no place in the file:
// no leading digit, beyond the end of the file, or too large for 32 bits.
std::optional<int32_t> TypedSavePosition(const QString& answer, int64_t fileLength, QString& errorText);

struct FrameSave {
    ArtTable& table;
    int f;
    ArtFrame& frame;
    const QImage& image;
    const Palette& palette;
    ScreenColor transparentColor;
};

// Encodes the image and writes it at position, with the entry pointing there. Nothing
// is written for a frame that does not fit; a failed frame write puts the old entry
// back, in memory and in the image. False (with errorText) when nothing was saved.
bool SaveFrameAt(RomFile& rom, int32_t& readPosition, const FrameSave& save, int32_t position, QString& errorText);
