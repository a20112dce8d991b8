// A demo ROM image with art tables, palettes and sprite frames at the places the
// editor reads them, since the game's own image cannot be shipped.
#include "demo_image.h"

#include "rom/art_table.h"
#include "rom_builder.h"

#include <cmath>

namespace {
constexpr int kImageSize = 0x300000;
constexpr int kFreeArea = 0x140000; // frames other than each table's first go here

ConsoleColor Word(int r, int g, int b) { return ConsoleColor(r | (g << 5) | (b << 10)); }

// Outline, two five-step ramps, two accents and white.
std::array<ConsoleColor, 15> PaletteWords(int hue)
{
    static const int kBase[7][6] = {
        {31, 12, 6, 8, 20, 31}, {6, 20, 31, 31, 24, 6}, {10, 28, 8, 28, 14, 30},
        {28, 8, 28, 8, 24, 30}, {30, 22, 4, 8, 12, 28}, {8, 24, 28, 30, 10, 12}, {20, 20, 22, 26, 18, 8},
    };
    const int* b = kBase[hue];
    std::array<ConsoleColor, 15> words{};
    words[0] = Word(2, 2, 4);
    for (int step = 0; step < 5; ++step) {
        const double light = 0.35 + 0.16 * step;
        words[size_t(1 + step)] = Word(int(b[0] * light), int(b[1] * light), int(b[2] * light));
        words[size_t(6 + step)] = Word(int(b[3] * light), int(b[4] * light), int(b[5] * light));
    }
    words[11] = Word(31, 26, 20); // skin
    words[12] = Word(31, 31, 8);  // gold
    words[13] = Word(4, 4, 10);   // eye
    words[14] = Word(31, 31, 31);
    return words;
}

void Disc(IndexGrid& g, double cx, double cy, double rx, double ry, int rampStart)
{
    for (int y = 0; y < g.height; ++y)
        for (int x = 0; x < g.width; ++x) {
            const double dx = (x + 0.5 - cx) / rx, dy = (y + 0.5 - cy) / ry;
            const double d = dx * dx + dy * dy;
            if (d > 1.0)
                continue;
            // Lit from the upper left: brighter steps towards the light.
            const double light = 1.0 - ((dx + dy) * 0.5 + 1.0) * 0.5;
            const int shade = d > 0.8 ? 0 : 1 + std::clamp(int(light * 4.0), 0, 3);
            g.At(x, y) = d > 0.8 ? 1 : rampStart + shade;
        }
}

void Box(IndexGrid& g, int x0, int y0, int w, int h, int index)
{
    for (int y = std::max(0, y0); y < std::min(g.height, y0 + h); ++y)
        for (int x = std::max(0, x0); x < std::min(g.width, x0 + w); ++x)
            g.At(x, y) = (y == y0 || y == y0 + h - 1 || x == x0 || x == x0 + w - 1) ? 1 : index;
}

IndexGrid Slime(int frame)
{
    IndexGrid g = MakeIndexGrid(36, 30);
    const double squash = 1.0 + 0.12 * std::sin(frame * 1.6);
    Disc(g, 18, 30 - 12 / squash, 17 * squash, 12 / squash, 1);
    g.At(12, 18) = g.At(13, 18) = g.At(23, 18) = g.At(24, 18) = 14;
    g.At(12, 17) = g.At(23, 17) = 15;
    return g;
}

IndexGrid Knight(int frame)
{
    IndexGrid g = MakeIndexGrid(28, 52);
    Disc(g, 14, 9, 8, 8, 6);          // helmet
    Box(g, 9, 8, 10, 5, 12);          // face
    g.At(11, 10) = g.At(16, 10) = 14;
    Box(g, 6, 17, 16, 18, 8);         // body
    Box(g, 12, 19, 4, 14, 13);        // belt and crest
    const int step = (frame % 2) * 3;
    Box(g, 7, 35, 6, 16 - step, 4);   // legs
    Box(g, 15, 35, 6, 13 + step, 4);
    Box(g, 2, 18 + step, 4, 14, 9);   // arms
    Box(g, 22, 21 - step, 4, 14, 9);
    return g;
}

IndexGrid Gem(int frame)
{
    IndexGrid g = MakeIndexGrid(30, 30);
    const double width = 3.0 + 11.0 * std::fabs(std::cos(frame * 0.5));
    Disc(g, 15, 15, width, 14, 6);
    if (width > 6)
        Disc(g, 15, 15, width * 0.45, 7, 1);
    return g;
}

IndexGrid Sprite(int table, int frame)
{
    switch (table % 3) {
    case 0: return Slime(frame);
    case 1: return Knight(frame);
    default: return Gem(frame);
    }
}

struct Layout {
    QByteArray image = QByteArray(kImageSize, '\0');
    int freeAt = kFreeArea;
};

uint32_t Address(int position) { return uint32_t(position) + kCartridgeBase; }

// Frame 0 follows the list, so the list ends by the position rule; table 3 ends at
// a marker instead and table 2 has an empty slot that repeats frame 0.
void PutTable(Layout& rom, int table)
{
    const int frames = 3 + table % 4;
    const int position = kArtTablePositions[size_t(table)];
    const bool marker = table == 3;
    const bool emptySlot = table == 2;
    const int entries = frames + (marker ? 1 : 0) + (emptySlot ? 1 : 0);
    std::vector<uint32_t> list;
    int firstAt = position + entries * 4;
    for (int f = 0; f < frames; ++f) {
        const IndexGrid sprite = Sprite(table, f);
        const QByteArray bytes = SpriteFrameBytes(sprite, sprite.width / 2, 0);
        int at = rom.freeAt;
        if (f == 0 && !marker)
            at = firstAt;
        else
            rom.freeAt += int(bytes.size());
        PutBytes(rom.image, at, bytes);
        list.push_back(Address(at));
        if (emptySlot && f == 1)
            list.push_back(0xFFFFFFFFu);
    }
    if (marker)
        list.push_back(0xFF000000u);
    PutTableEntries(rom.image, position, list);
}
}

QByteArray BuildDemoImage()
{
    Layout rom;
    PutBytes(rom.image, 0x100, QByteArray("ZELVANE DEMO IMAGE FOR THE ART EDITOR"));
    for (int n = 0; n < kArtTableCount; ++n) {
        PutPaletteWords(rom.image, kPalettePositions[size_t(n)], PaletteWords(n % 7));
        PutTable(rom, n);
    }
    return rom.image;
}
