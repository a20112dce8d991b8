#pragma once
#include <QDialog>

// The about box: modeless, hidden by OK, Enter or Escape and shown again as it was.
class FrmAbout : public QDialog {
public:
    explicit FrmAbout(QWidget* parent);
};
