#pragma once
// A push button whose caption wraps onto several lines when it is wider than the button.
#include <QPushButton>

class WrapButton : public QPushButton {
public:
    WrapButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {}

protected:
    void paintEvent(QPaintEvent* event) override;
};
