#pragma once
// Writing several ranges of the image as one change: every range is written, or what
// was there before, and the file's old length, is put back.
#include "rom/rom_file.h"

#include <QByteArray>
#include <vector>

struct RomPatch {
    int64_t position = 0;
    QByteArray bytes;
};

// Writes the patches in order. When one fails, every range touched gets its old bytes
// back and a file that grew is cut back to its old length. errorText then says what
// failed, and whether the image was put back.
bool WriteOrRestore(RomFile& rom, const std::vector<RomPatch>& patches, QString& errorText);
