#include "exchange/sprite_sheet.h"

#include <algorithm>

std::vector<QRect> LayOutSheet(const std::vector<QSize>& sizes)
{
    std::vector<QRect> rects;
    int x = 0, y = 0, rowHeight = 0;
    for (const QSize& size : sizes) {
        if (x > 0 && x + size.width() > kSheetWidth) {
            x = 0;
            y += rowHeight + 1;
            rowHeight = 0;
        }
        rects.emplace_back(QPoint(x, y), size);
        x += size.width() + 1;
        rowHeight = std::max(rowHeight, size.height());
    }
    return rects;
}

QImage SheetPicture(const std::vector<FramePixels>& frames, const std::vector<QRect>& rects, const Palette& palette)
{
    QRect all(0, 0, 1, 1);
    for (const QRect& rect : rects)
        all |= rect;
    QImage sheet(all.size(), QImage::Format_Indexed8);
    sheet.setColorTable(FrameColorTable(palette));
    sheet.fill(uint(kTransparentIndex));
    for (size_t i = 0; i < frames.size() && i < rects.size(); ++i)
        PutFramePixels(sheet, rects[i].topLeft(), frames[i].grid);
    return sheet;
}
