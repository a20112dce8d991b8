#pragma once
// The bytes of the image that the catalogue names: each listed frame, each table's list
// and each palette. A write can then say what it covers.
#include "rom/rom_document.h"

#include <QStringList>
#include <vector>

struct ListedSpan {
    int64_t start = 0, end = 0; // end is one past the last byte
    int table = -1, slot = -1;  // slot -1 for a table's list or palette
    QString what;               // "table 1 slot 2's frame", "table 1's list", "table 1's palette"
};

std::vector<ListedSpan> ListedSpans(const RomDocument& document);

// What bytes [position, position + length) cover, but for slot's own frame.
QStringList CoveredBy(const std::vector<ListedSpan>& spans, int64_t position, int64_t length, int table = -1, int slot = -1);

// Whether an entry other than table's slot points into [position, position + length).
bool OtherEntryPointsInto(const RomDocument& document, int table, int slot, int64_t position, int64_t length);
