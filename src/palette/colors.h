#pragma once
// The console's 15-bit colour word and the 24-bit screen colour, and the scaling
// between them.
#include <QRgb>
#include <array>
#include <cstdint>

// Red in bits 0-4, green in 5-9, blue in 10-14; 0xFFFF marks transparency.
using ConsoleColor = uint16_t;
// Red in bits 0-7, green in 8-15, blue in 16-23 (reads BBGGRR in hexadecimal).
using ScreenColor = uint32_t;

constexpr ConsoleColor kTransparentMarker = 0xFFFF;
constexpr ConsoleColor kColorZeroWord = 0x1084;

constexpr ScreenColor MakeScreenColor(int red, int green, int blue)
{
    return ScreenColor(red & 0xFF) | (ScreenColor(green & 0xFF) << 8) | (ScreenColor(blue & 0xFF) << 16);
}
constexpr int ScreenRed(ScreenColor c) { return int(c & 0xFF); }
constexpr int ScreenGreen(ScreenColor c) { return int((c >> 8) & 0xFF); }
constexpr int ScreenBlue(ScreenColor c) { return int((c >> 16) & 0xFF); }

// Pixels of a QImage carry their colour as 0xAARRGGBB.
inline QRgb ScreenToRgb(ScreenColor c) { return qRgb(ScreenRed(c), ScreenGreen(c), ScreenBlue(c)); }
inline ScreenColor RgbToScreen(QRgb rgb) { return MakeScreenColor(qRed(rgb), qGreen(rgb), qBlue(rgb)); }

// 5-bit component to 8 bits: n * 8.25, halves to even, at most 255.
extern const std::array<uint8_t, 32> kComponentTo8;

// 8-bit component to 5 bits: v / 8.25 to the nearest (no value falls halfway).
constexpr int ComponentTo5(int v) { return (8 * v + 33) / 66; }

// The colour the console word shows, ignoring bit 15 (no transparency test).
ScreenColor WordToScreen(ConsoleColor word);
ConsoleColor ScreenToConsole(ScreenColor color);
