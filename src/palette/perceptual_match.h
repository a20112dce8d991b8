#pragma once
// Nearest palette colour in OKLab, a perceptual colour space: for pictures drawn in
// colours that are not the palette's own.
#include "palette/palette.h"

// The slot 0-16 whose colour lies nearest in OKLab (16 is the fixed black); the lower
// slot on a tie. Slots holding a marked word (bit 15 set) are never chosen.
int NearestPerceptualIndex(const Palette& palette, ScreenColor color);
