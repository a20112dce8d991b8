#include "view/ui/picture_box.h"

#include <QMouseEvent>
#include <QPainter>
#include <qdrawutil.h>

namespace {
QPoint DrawingAreaPoint(const QMouseEvent* event)
{
    const QPoint p = event->position().toPoint();
    return {p.x() - PictureBox::kBorder, p.y() - PictureBox::kBorder};
}
}

PictureBox::PictureBox(QWidget* parent, const QString& name, const QRect& geometry, const PictureSurface& surface)
    : QWidget(parent), surface(surface)
{
    setObjectName(name);
    setGeometry(geometry);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true); // moves without a button still reach the tools, which ignore them
}

void PictureBox::ShowChanged(const QRect& drawingAreaRect)
{
    const QRect visible = drawingAreaRect.intersected(surface.image.rect());
    if (!visible.isEmpty())
        update(visible.translated(kBorder, kBorder));
}

void PictureBox::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const QRect area(kBorder, kBorder, surface.image.width(), surface.image.height());
    const QRect dirty = event->rect().intersected(area);
    if (!dirty.isEmpty())
        painter.drawImage(dirty.topLeft(), surface.image, dirty.translated(-kBorder, -kBorder));
    if (!area.contains(event->rect()))
        qDrawWinPanel(&painter, rect(), palette(), true);
}

void PictureBox::mousePressEvent(QMouseEvent* event)
{
    if (onMouseDown)
        onMouseDown(DrawingAreaPoint(event));
}

void PictureBox::mouseMoveEvent(QMouseEvent* event)
{
    if (onMouseMove)
        onMouseMove(DrawingAreaPoint(event));
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event)
{
    if (onMouseUp)
        onMouseUp(DrawingAreaPoint(event));
}
