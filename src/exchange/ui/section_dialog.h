#pragma once
// "Choose the section of your art": the imported bitmap enlarged, a grid-snapped
// selection dragged over it, and OK copying the selection over the frame image.
#include "exchange/section_copy.h"

#include <QDialog>

class Form1;
class PictureBox;
class QPushButton;
class QSlider;

class SectionDialog : public QDialog {
public:
    SectionDialog(Form1& form);

    // Shows a newly imported picture, keeping the slider and the selection.
    void ShowPicture(const QImage& picture);
    int ViewZoom() const;
    void RedrawView();

    PictureBox* Picture1 = nullptr;
    QSlider* Slider1 = nullptr;
    QPushButton* OKButton = nullptr;
    SectionSelection selection;

private:
    void Picture1_MouseDown(QPoint position);
    void Picture1_MouseMove(QPoint position);
    void Picture1_MouseUp(QPoint position);
    void OKButton_Click();
    void RedrawWithFrame();

    Form1& form;
    QImage picture;
};
