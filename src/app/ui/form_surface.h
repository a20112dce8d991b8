#pragma once
// The main window's own surface: it draws the editor frame, the palette boxes and
// the current-colour box, and takes the presses and double-clicks that reach it.
#include "app/editor_state.h"

#include <QWidget>
#include <functional>

class FormSurface : public QWidget {
public:
    FormSurface(QWidget* parent, const EditorState& state);

    std::function<void(QPointF)> onMouseDown;
    std::function<void()> onDoubleClick;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    const EditorState& state;
};
