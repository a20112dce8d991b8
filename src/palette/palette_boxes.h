#pragma once
// The 16 palette boxes and the current-colour box on the main window's surface, and
// what a press or a typed answer makes of them.
#include "palette/colors.h"

#include <QPointF>
#include <QRect>
#include <QString>

constexpr int kPaletteBoxes = 16;
extern const QRect kColboxRect;

// Two columns of eight, 16 pixels apart, boxes 0 and 1 in the top row.
QRect PalboxRect(int i);

// The box under a point, edges included; -1 for none. Boxes never touch, so at most
// one holds a point.
int PaletteBoxAt(int x, int y);
// The box under a pointer's position, rounded to whole pixels (halves to even) first.
int PaletteBoxUnder(QPointF position);

// A typed colour: its last six hexadecimal digits, read BBGGRR.
ScreenColor TypedColor(const QString& answer);
