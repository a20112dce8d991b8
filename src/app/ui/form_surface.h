#pragma once
// The main window's own surface: it draws the editor frame, the palette boxes and
// the current-colour box, and finds the palette box under the presses and double-clicks
// that reach it. A double click edits the box its press was on.
#include "app/editor_state.h"

#include <QWidget>
#include <functional>

class FormSurface : public QWidget {
public:
    FormSurface(QWidget* parent, const EditorState& state);

    std::function<void(int box)> onPickSlot; // -1: no box
    std::function<void(int box)> onEditSlot;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    const EditorState& state;
    int pressedBox = -1;
};
