#pragma once
// "Choose the section of your art": the imported bitmap enlarged, a grid-snapped
// selection dragged over it, and OK copying the selection over the frame image. The
// session holds all of it; the dialog shows it and forwards the user's actions.
#include <QDialog>

class EditorSession;
class PictureBox;
class QPushButton;
class QSlider;

class SectionDialog : public QDialog {
public:
    SectionDialog(QWidget* parent, EditorSession& session);

    PictureBox* Picture1 = nullptr;
    QSlider* Slider1 = nullptr;
    QPushButton* OKButton = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    EditorSession& session;
};
