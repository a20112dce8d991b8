#include "palette/perceptual_match.h"

#include <cmath>

namespace {
struct Lab {
    double l, a, b;
};

double Linear(int component)
{
    const double c = component / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

Lab ToOklab(ScreenColor color)
{
    const double r = Linear(ScreenRed(color)), g = Linear(ScreenGreen(color)), b = Linear(ScreenBlue(color));
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s, 1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

double Distance(const Lab& x, const Lab& y)
{
    return (x.l - y.l) * (x.l - y.l) + (x.a - y.a) * (x.a - y.a) + (x.b - y.b) * (x.b - y.b);
}
}

int NearestPerceptualIndex(const Palette& palette, ScreenColor color)
{
    const Lab wanted = ToOklab(color);
    int best = 0;
    double bestDistance = INFINITY;
    for (int slot = 0; slot <= 16; ++slot) {
        const ConsoleColor word = palette.colors[size_t(slot)];
        if (word & 0x8000)
            continue;
        if (const double d = Distance(wanted, ToOklab(WordToScreen(word))); d < bestDistance) {
            best = slot;
            bestDistance = d;
        }
    }
    return best;
}
