#pragma once
#include "palette/palette.h"

// The palette index (0-15) that shows a screen colour: an exact word first, then
// words one step lower in some components. Slot 16 (always 0) gives 1; no match gives 0.
int MatchPaletteIndex(const Palette& palette, ScreenColor color);
