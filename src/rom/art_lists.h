#pragma once
// What the art list and the frame list show: one line per art table, and one per
// listed slot of the selected table, each a position in upper-case hexadecimal.
#include "rom/art_table.h"

#include <QStringList>

// A 32-bit value as its line reads: FF000000 for the end marker, FE000000 for -0x2000000.
QString ListLineText(int32_t value);

// The tables with a position, up to the first without one.
QStringList ArtListLines(const std::array<ArtTable, kArtTableRecords>& tables);

// How many slots the frame list shows: slots 0 up to the one before the first that
// holds 0 (end-marker lines included), at most all 151.
int ListedSlotCount(const ArtTable& table);
QStringList FrameListLines(const ArtTable& table);
