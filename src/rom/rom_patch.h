#pragma once
// Bytes to write at a position of the image; a change is a list of them, written
// through the journal.
#include "rom/rom_file.h"

#include <QByteArray>
#include <vector>

struct RomPatch {
    int64_t position = 0;
    QByteArray bytes;
};
