#pragma once
// Writing a palette record into the image as a change of its document.
#include "rom/rom_document.h"

// Plans the record's slots 1-15 at its position. A record past the end of the file is
// refused: the file is never made longer for a palette.
ChangePlanner PalettePlanner(const Palette& edited);
