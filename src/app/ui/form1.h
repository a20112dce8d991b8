#pragma once
#include <QApplication>
#include <QMainWindow>
void StyleApplication(QApplication& app);
class Form1 : public QMainWindow {
public:
    Form1() = default;
};
