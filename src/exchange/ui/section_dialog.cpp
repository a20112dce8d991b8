#include "exchange/ui/section_dialog.h"

#include "app/ui/form1.h"
#include "view/ui/picture_box.h"

#include <QLabel>
#include <QPushButton>
#include <QSlider>

SectionDialog::SectionDialog(Form1& owner)
    : QDialog(&owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      form(owner)
{
    setObjectName(QStringLiteral("Dialog"));
    setWindowTitle(QStringLiteral("Choose the section of your art"));
    setFixedSize(517, 399);
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose); // the close box ends it; the next import builds it anew

    Picture1 = new PictureBox(this, QStringLiteral("Picture1"), {8, 8, 449, 337});
    Slider1 = new QSlider(Qt::Vertical, this);
    Slider1->setObjectName(QStringLiteral("Slider1"));
    Slider1->setGeometry(472, 8, 40, 337);
    Slider1->setRange(0, 10);
    Slider1->setSingleStep(1);
    Slider1->setPageStep(5);
    Slider1->setInvertedAppearance(true);
    Slider1->setTickPosition(QSlider::TicksBothSides);
    OKButton = new QPushButton(QStringLiteral("OK"), this);
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setGeometry(208, 360, 81, 25);
    OKButton->setAutoDefault(false);
    auto* hidden = new QLabel(this);
    hidden->setObjectName(QStringLiteral("hidden"));
    hidden->setGeometry(16, 408, 417, 193);
    hidden->hide();

    connect(Slider1, &QSlider::valueChanged, this, [this] { RedrawView(); });
    connect(OKButton, &QPushButton::clicked, this, [this] { OKButton_Click(); });
    Picture1->onMouseDown = [this](QPoint p) { Picture1_MouseDown(p); };
    Picture1->onMouseMove = [this](QPoint p) { Picture1_MouseMove(p); };
    Picture1->onMouseUp = [this](QPoint p) { Picture1_MouseUp(p); };
}

void SectionDialog::ShowPicture(const QImage& newPicture)
{
    picture = newPicture;
    RedrawView();
    show();
    raise();
    activateWindow();
}

int SectionDialog::ViewZoom() const { return Slider1->value() + 1; }

void SectionDialog::RedrawView()
{
    RedrawSectionView(Picture1->surface, picture, ViewZoom());
    Picture1->ShowAll();
}

void SectionDialog::RedrawWithFrame()
{
    RedrawView();
    DrawSelectionFrame(Picture1->surface, selection, ViewZoom());
}

void SectionDialog::Picture1_MouseDown(QPoint position)
{
    const int z = ViewZoom();
    selection.selecting = true;
    selection.anchorX = selection.cornerX = SnapToGrid(position.x(), z);
    selection.anchorY = selection.cornerY = SnapToGrid(position.y(), z);
    RedrawWithFrame();
}

void SectionDialog::Picture1_MouseMove(QPoint position)
{
    if (!selection.selecting)
        return;
    selection.cornerX = SnapToGrid(position.x(), ViewZoom());
    selection.cornerY = SnapToGrid(position.y(), ViewZoom());
    RedrawWithFrame();
}

void SectionDialog::Picture1_MouseUp(QPoint position)
{
    selection.selecting = false;
    selection.cornerX = SnapToGrid(position.x(), ViewZoom());
    selection.cornerY = SnapToGrid(position.y(), ViewZoom());
    RedrawWithFrame();
}

void SectionDialog::OKButton_Click()
{
    CopySection(Picture1->surface, selection, ViewZoom(),
                {form.Picture1->surface, form.Picture2->surface, form.state.zoom});
    form.Picture1->ShowAll();
    form.Picture2->ShowAll();
    hide();
}
