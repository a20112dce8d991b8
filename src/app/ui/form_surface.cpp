#include "app/ui/form_surface.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
const QRect kShape2Rect(320, 16, 301, 257);

void DrawColorBox(QPainter& painter, const QRect& box, ScreenColor color)
{
    painter.fillRect(box, QColor::fromRgb(ScreenToRgb(color)));
    painter.setPen(Qt::black);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
}
}

FormSurface::FormSurface(QWidget* parent, const EditorState& state) : QWidget(parent), state(state)
{
    setObjectName(QStringLiteral("Form1Surface"));
}

void FormSurface::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(Qt::black);
    painter.drawRect(kShape2Rect.adjusted(0, 0, -1, -1));
    for (int i = 0; i < kPaletteBoxes; ++i)
        DrawColorBox(painter, PalboxRect(i), state.palboxColors[size_t(i)]);
    DrawColorBox(painter, kColboxRect, state.colboxColor);
}

void FormSurface::mousePressEvent(QMouseEvent* event)
{
    // Presses that land on a control (a group box's frame, a label) are the control's.
    if (childAt(event->position().toPoint()) != nullptr)
        return;
    pressedBox = PaletteBoxUnder(event->position());
    if (onPickSlot)
        onPickSlot(pressedBox);
}

void FormSurface::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (childAt(event->position().toPoint()) == nullptr && onEditSlot)
        onEditSlot(pressedBox);
}
