#include "view/picture_surface.h"

PictureSurface MakeSurface(int width, int height, ScreenColor background)
{
    PictureSurface surface{QImage(width, height, QImage::Format_RGB32), background};
    ClearSurface(surface);
    return surface;
}

void ClearSurface(PictureSurface& surface) { surface.image.fill(ScreenToRgb(surface.background)); }

QRect FillSurfaceRect(PictureSurface& surface, const QRect& rect, ScreenColor color)
{
    const QRect clipped = rect.intersected(surface.image.rect());
    if (clipped.isEmpty())
        return {};
    const QRgb rgb = ScreenToRgb(color);
    for (int y = clipped.top(); y <= clipped.bottom(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(surface.image.scanLine(y));
        std::fill(row + clipped.left(), row + clipped.right() + 1, rgb);
    }
    return clipped;
}

QRect SetSurfacePixel(PictureSurface& surface, int x, int y, ScreenColor color)
{
    if (!surface.image.valid(x, y))
        return {};
    reinterpret_cast<QRgb*>(surface.image.scanLine(y))[x] = ScreenToRgb(color);
    return QRect(x, y, 1, 1);
}

QRect DrawSurfaceOutline(PictureSurface& surface, const QRect& rect, ScreenColor color)
{
    const QRect r = rect.normalized();
    QRect changed;
    changed |= FillSurfaceRect(surface, QRect(r.left(), r.top(), r.width(), 1), color);
    changed |= FillSurfaceRect(surface, QRect(r.left(), r.bottom(), r.width(), 1), color);
    changed |= FillSurfaceRect(surface, QRect(r.left(), r.top(), 1, r.height()), color);
    changed |= FillSurfaceRect(surface, QRect(r.right(), r.top(), 1, r.height()), color);
    return changed;
}

int64_t SurfacePixel(const PictureSurface& surface, int x, int y)
{
    if (!surface.image.valid(x, y))
        return -1;
    return RgbToScreen(reinterpret_cast<const QRgb*>(surface.image.constScanLine(y))[x]);
}
