#pragma once
// The main window's own surface: it draws the editor frame, the palette boxes and
// the current-colour box, and takes the presses and double-clicks that reach it.
#include "palette/colors.h"

#include <QWidget>
#include <array>
#include <functional>

constexpr int kPaletteBoxes = 16;
QRect PalboxRect(int i);
extern const QRect kColboxRect;
extern const QRect kShape2Rect;

class FormSurface : public QWidget {
public:
    explicit FormSurface(QWidget* parent);

    void SetPalboxColor(int i, ScreenColor color);
    void SetColboxColor(ScreenColor color);
    ScreenColor PalboxColor(int i) const { return palboxColors[size_t(i)]; }
    ScreenColor ColboxColor() const { return colboxColor; }

    std::function<void(QPointF)> onMouseDown;
    std::function<void()> onDoubleClick;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    std::array<ScreenColor, kPaletteBoxes> palboxColors{};
    ScreenColor colboxColor = 0;
};
