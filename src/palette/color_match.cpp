#include "palette/color_match.h"

namespace {
struct Lowering {
    int red, green, blue;
};

// Tried in this order; the first candidate found in the palette decides.
constexpr Lowering kPasses[] = {
    {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 1}, {0, 1, 1}, {1, 0, 1}, {0, 1, 0}, {0, 0, 1},
};

int FindSlot(const Palette& palette, ConsoleColor word)
{
    for (int slot = 0; slot <= 16; ++slot)
        if (palette.colors[size_t(slot)] == word)
            return slot;
    return -1;
}
}

int MatchPaletteIndex(const Palette& palette, ScreenColor color)
{
    const int red = ComponentTo5(ScreenRed(color));
    const int green = ComponentTo5(ScreenGreen(color));
    const int blue = ComponentTo5(ScreenBlue(color));
    for (const Lowering& pass : kPasses) {
        const int r = red - pass.red, g = green - pass.green, b = blue - pass.blue;
        // A component already at 0 has no lower step: such a pass is skipped rather
        // than letting -1 borrow into the neighbouring component's bits.
        if (r < 0 || g < 0 || b < 0)
            continue;
        const int slot = FindSlot(palette, ConsoleColor(r | (g << 5) | (b << 10)));
        if (slot == 16)
            return 1;
        if (slot >= 0)
            return slot;
    }
    return 0;
}
