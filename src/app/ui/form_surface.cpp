#include "app/ui/form_surface.h"

#include <QMouseEvent>
#include <QPainter>

const QRect kColboxRect(584, 200, 29, 29);
const QRect kShape2Rect(320, 16, 301, 257);

QRect PalboxRect(int i) { return QRect(584 + 16 * (i % 2), 72 + 16 * (i / 2), 13, 13); }

FormSurface::FormSurface(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Form1Surface"));
}

void FormSurface::SetPalboxColor(int i, ScreenColor color)
{
    palboxColors[size_t(i)] = color;
    update(PalboxRect(i));
}

void FormSurface::SetColboxColor(ScreenColor color)
{
    colboxColor = color;
    update(kColboxRect);
}

namespace {
void DrawColorBox(QPainter& painter, const QRect& box, ScreenColor color)
{
    painter.fillRect(box, QColor::fromRgb(ScreenToRgb(color)));
    painter.setPen(Qt::black);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
}
}

void FormSurface::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(Qt::black);
    painter.drawRect(kShape2Rect.adjusted(0, 0, -1, -1));
    for (int i = 0; i < kPaletteBoxes; ++i)
        DrawColorBox(painter, PalboxRect(i), palboxColors[size_t(i)]);
    DrawColorBox(painter, kColboxRect, colboxColor);
}

void FormSurface::mousePressEvent(QMouseEvent* event)
{
    // Presses that land on a control (a group box's frame, a label) are the control's.
    if (childAt(event->position().toPoint()) == nullptr && onMouseDown)
        onMouseDown(event->position());
}

void FormSurface::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (childAt(event->position().toPoint()) == nullptr && onDoubleClick)
        onDoubleClick();
}
