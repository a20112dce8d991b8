#pragma once
// A picture box: a 2-pixel sunken border around a surface that the session draws on.
// Mouse positions are reported relative to the drawing area.
#include "view/picture_surface.h"

#include <QWidget>
#include <functional>

class PictureBox : public QWidget {
public:
    PictureBox(QWidget* parent, const QString& name, const QRect& geometry, const PictureSurface& surface);

    const PictureSurface& surface;
    std::function<void(QPoint)> onMouseDown, onMouseMove, onMouseUp;

    // Repaints only the part of the drawing area that changed.
    void ShowChanged(const QRect& drawingAreaRect);

    static constexpr int kBorder = 2;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};
