#include "exchange/section_copy.h"

#include <algorithm>

namespace {
constexpr ScreenColor kFrameColor = MakeScreenColor(255, 255, 255);

// The rectangle between two corner points, both inside it, in either order.
QRect CornerRect(int x1, int y1, int x2, int y2)
{
    return QRect(QPoint(std::min(x1, x2), std::min(y1, y2)), QPoint(std::max(x1, x2), std::max(y1, y2)));
}

// A sample beyond the view shows what the view shows there: its background.
ScreenColor ViewSample(const PictureSurface& view, qint64 x, qint64 y)
{
    if (x < 0 || y < 0 || x >= view.image.width() || y >= view.image.height())
        return view.background;
    return ScreenColor(SurfacePixel(view, int(x), int(y)));
}

// Cells past this count land on neither the canvas nor the preview.
int VisibleCells(int previewSide, int canvasSide, int zoom)
{
    return std::max(previewSide, (canvasSide + zoom - 1) / zoom);
}
}

int SnapToGrid(int position, int viewZoom) { return position - position % viewZoom; }

void RedrawSectionView(PictureSurface& view, const QImage& picture, int viewZoom)
{
    ClearSurface(view);
    const int columns = std::min(picture.width(), (view.image.width() + viewZoom - 1) / viewZoom);
    const int rows = std::min(picture.height(), (view.image.height() + viewZoom - 1) / viewZoom);
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i)
            FillSurfaceRect(view, ZoomBlock(i, j, viewZoom), RgbToScreen(picture.pixel(i, j)));
}

void DrawSelectionFrame(PictureSurface& view, const SectionSelection& selection, int viewZoom)
{
    for (int i = 0; i < viewZoom; ++i) {
        const QRect ring = CornerRect(selection.anchorX - i, selection.anchorY - i, selection.cornerX + i,
                                      selection.cornerY + i);
        DrawSurfaceOutline(view, ring, kFrameColor);
    }
}

void CopySection(const PictureSurface& view, const SectionSelection& selection, int viewZoom, FrameSurfaces target)
{
    ClearSurface(target.canvas);
    ClearSurface(target.preview);
    const int cellsX = VisibleCells(target.preview.image.width(), target.canvas.image.width(), target.zoom);
    const int cellsY = VisibleCells(target.preview.image.height(), target.canvas.image.height(), target.zoom);
    // Each sample sits one pixel right of and below its block's corner, inside the
    // innermost line of the frame; the last one lies before the corner point.
    for (int ky = 0; ky < cellsY; ++ky) {
        const qint64 y = qint64(selection.anchorY) + 1 + qint64(ky) * viewZoom;
        if (y > qint64(selection.cornerY) - 1)
            break;
        for (int kx = 0; kx < cellsX; ++kx) {
            const qint64 x = qint64(selection.anchorX) + 1 + qint64(kx) * viewZoom;
            if (x > qint64(selection.cornerX) - 1)
                break;
            const ScreenColor color = ViewSample(view, x, y);
            FillSurfaceRect(target.canvas, ZoomBlock(kx, ky, target.zoom), color);
            SetSurfacePixel(target.preview, kx, ky, color);
        }
    }
}
