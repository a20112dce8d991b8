#include "palette/palette_boxes.h"

#include <cmath>

#include "rom/hex_answer.h"

const QRect kColboxRect(584, 200, 29, 29);

QRect PalboxRect(int i) { return QRect(584 + 16 * (i % 2), 72 + 16 * (i / 2), 13, 13); }

int PaletteBoxAt(int x, int y)
{
    int hit = -1;
    for (int i = 0; i < kPaletteBoxes; ++i) {
        const QRect box = PalboxRect(i);
        if (box.left() <= x && x <= box.left() + box.width() && box.top() <= y && y <= box.top() + box.height())
            hit = i;
    }
    return hit;
}

ScreenColor TypedColor(const QString& answer) { return ScreenColor(ReadHexAnswer(answer).value & 0xFFFFFF); }

int PaletteBoxUnder(QPointF position)
{
    return PaletteBoxAt(int(std::nearbyint(position.x())), int(std::nearbyint(position.y())));
}
