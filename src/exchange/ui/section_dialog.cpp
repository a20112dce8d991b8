#include "exchange/ui/section_dialog.h"

#include "app/editor_session.h"
#include "view/ui/picture_box.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

SectionDialog::SectionDialog(QWidget* parent, EditorSession& session)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      session(session)
{
    setObjectName(QStringLiteral("Dialog"));
    setWindowTitle(QStringLiteral("Choose the section of your art"));
    setFixedSize(517, 399);
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose); // the close box ends it; the next import builds it anew

    const SectionChooser& chooser = session.State().sectionChooser;
    Picture1 = new PictureBox(this, QStringLiteral("Picture1"), {8, 8, 449, 337}, chooser.view);
    Slider1 = new QSlider(Qt::Vertical, this);
    Slider1->setObjectName(QStringLiteral("Slider1"));
    Slider1->setGeometry(472, 8, 40, 337);
    Slider1->setRange(0, 10);
    Slider1->setSingleStep(1);
    Slider1->setPageStep(5);
    Slider1->setInvertedAppearance(true);
    Slider1->setTickPosition(QSlider::TicksBothSides);
    Slider1->setValue(chooser.slider);
    OKButton = new QPushButton(QStringLiteral("OK"), this);
    OKButton->setObjectName(QStringLiteral("OKButton"));
    OKButton->setGeometry(208, 360, 81, 25);
    OKButton->setAutoDefault(false);
    auto* hidden = new QLabel(this);
    hidden->setObjectName(QStringLiteral("hidden"));
    hidden->setGeometry(16, 408, 417, 193);
    hidden->hide();

    connect(Slider1, &QSlider::valueChanged, &session, &EditorSession::SetSectionZoom);
    connect(OKButton, &QPushButton::clicked, &session, &EditorSession::CopySection);
    connect(&session, &EditorSession::sectionViewChanged, Picture1, [this] { Picture1->update(); });
    Picture1->onMouseDown = [&session](QPoint p) { session.PressSection(p); };
    Picture1->onMouseMove = [&session](QPoint p) { session.MoveOnSection(p); };
    Picture1->onMouseUp = [&session](QPoint p) { session.ReleaseSection(p); };
}

void SectionDialog::closeEvent(QCloseEvent* event)
{
    session.CloseSectionChooser();
    event->accept();
}
