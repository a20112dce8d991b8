// Takes the user guide's screenshots: runs the real editor on the demo image, goes
// through the guide's session step by step and photographs the screen (an X server
// such as Xvfb) after each, with the dialogs the step opens. tools/make-guide-shots.sh
// runs it.
#include "app/ui/form1.h"
#include "app/ui/form_surface.h"
#include "exchange/ui/section_dialog.h"
#include "palette/palette_boxes.h"
#include "rom/ui/list_box.h"
#include "view/ui/picture_box.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <QPointer>
#include <deque>
#include <functional>

namespace {
QString outputFolder;

// The screen around the windows that are showing, as the user sees it.
void Shot(const QString& name)
{
    QApplication::processEvents();
    QTest::qWait(150);
    QRect shown;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible())
            shown |= window->frameGeometry();
    const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
    screen.copy(shown.adjusted(-8, -8, 8, 8)).save(outputFolder + "/" + name + ".png");
    std::printf("%s.png\n", qPrintable(name));
}

// The dialogs the session will open, in order: each is photographed (when named), then
// answered.
struct Expected {
    QString name;
    std::function<void(QWidget*)> answer;
};
std::deque<Expected> expected;

void AnswerDialogs()
{
    QWidget* dialog = QApplication::activeModalWidget();
    static QPointer<QWidget> answered;
    if (!dialog || dialog == answered || expected.empty())
        return;
    answered = dialog;
    const Expected next = expected.front();
    expected.pop_front();
    if (!next.name.isEmpty())
        Shot(next.name);
    // After this poll, so that a dialog the answer opens is answered in turn.
    QTimer::singleShot(0, dialog, [dialog, next] { next.answer(dialog); });
}

void Press(QMessageBox::StandardButton button, const QString& name = {})
{
    expected.push_back({name, [button](QWidget* w) { qobject_cast<QMessageBox*>(w)->button(button)->click(); }});
}

// Photographed once the text is in.
void Type(const QString& text, const QString& name = {})
{
    expected.push_back({{}, [text, name](QWidget* w) {
        auto* box = qobject_cast<QInputDialog*>(w);
        box->setTextValue(text);
        if (!name.isEmpty())
            Shot(name);
        box->accept();
    }});
}

void Choose(const QString& path, const QString& name = {})
{
    expected.push_back({name, [path](QWidget* w) {
        auto* dialog = qobject_cast<QFileDialog*>(w);
        // The folder first, then the name typed into the name box, as a user would.
        dialog->setDirectory(QFileInfo(path).absolutePath());
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QFileInfo(path).fileName());
        QTimer::singleShot(0, dialog, [dialog] { static_cast<QDialog*>(dialog)->accept(); });
    }});
}

void Click(ListBox* list, int row)
{
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void Drag(QWidget* target, QPoint from, QPoint to)
{
    const QPoint border(PictureBox::kBorder, PictureBox::kBorder);
    QTest::mousePress(target, Qt::LeftButton, {}, from + border);
    for (int i = 1; i <= 8; ++i)
        QTest::mouseMove(target, from + (to - from) * i / 8 + border);
    QTest::mouseRelease(target, Qt::LeftButton, {}, to + border);
}

// Everything happens in the demo image's folder, which the editor starts in, so the file
// dialogs show the image and what the session writes beside it, nothing of the machine.
void GuideSession(Form1& form, const QString& demo, const QString& bitmap)
{
    const QString folder = QFileInfo(demo).absolutePath();
    QDir::setCurrent(folder);
    Choose(demo, "01-open");
    form.menu_open->trigger();
    Click(form.List1, 1);
    Click(form.List2, 2);
    Shot("02-browse");
    form.HScroll1->setValue(8);
    QTest::mousePress(form.surface, Qt::LeftButton, {}, PalboxRect(12).center());
    Drag(form.Picture1, {60, 120}, {180, 120});
    Drag(form.Picture1, {60, 136}, {180, 136});
    Shot("03-paint");
    Type("00C0FF", "04-palette");
    QTest::mouseDClick(form.surface, Qt::LeftButton, {}, PalboxRect(12).center());
    Drag(form.Picture1, {60, 120}, {180, 120});
    Press(QMessageBox::Yes, "05-save-end");
    form.save_art->click();
    Press(QMessageBox::No);
    Type("1F0000", "06-save-position");
    form.save_art->click();
    Choose(folder + "/frame.bmp", "07-export-bitmap");
    form.export_bitmap->click();
    Choose(folder + "/frame.dat");
    Press(QMessageBox::Yes, "08-export-tiles");
    Choose(folder + "/frame.TPL");
    form.export_uart->click();
    // The bitmap arrives only now, so the export dialogs did not show it.
    const QString imported = folder + "/" + QFileInfo(bitmap).fileName();
    if (!QFile::copy(bitmap, imported))
        qFatal("cannot put %s beside the image", qPrintable(bitmap));
    Choose(imported, "09-import-open");
    Press(QMessageBox::No);
    form.load_bitmap->click();
    form.sectionDialog->move(form.geometry().topRight() + QPoint(12, 0));
    form.sectionDialog->Slider1->setValue(4);
    Drag(form.sectionDialog->Picture1, {0, 0}, {175, 125});
    Shot("10-import-section");
    form.sectionDialog->OKButton->click();
    Shot("11-import-done");
    // Ctrl+Z is a shortcut of the window: it fires only while the window is active, and
    // with no window manager closing the chooser activates nothing.
    form.activateWindow();
    if (!QTest::qWaitForWindowActive(&form))
        qFatal("the main window did not become active");
    QTest::keyClick(&form, Qt::Key_Z, Qt::ControlModifier);
    Shot("12-undo");
}
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    StyleApplication(app);
    const QStringList args = app.arguments().mid(1);
    const bool session = args.value(0) == "session" && args.size() == 4;
    if (!session && !(args.value(0) == "show" && args.size() == 6)) {
        std::fprintf(stderr, "usage: guide_shots session OUTPUT_FOLDER IMAGE BITMAP\n"
                             "       guide_shots show OUTPUT_FOLDER IMAGE TABLE FRAME NAME\n");
        return 2;
    }
    outputFolder = QFileInfo(args[1]).absoluteFilePath();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, AnswerDialogs);
    poll.start(20);
    Form1 form;
    form.move(24, 24);
    form.show();
    (void)QTest::qWaitForWindowExposed(&form);
    if (session) {
        GuideSession(form, args[2], args[3]);
        return 0;
    }
    form.session.OpenFile(args[2]);
    Click(form.List1, args[3].toInt());
    Click(form.List2, args[4].toInt());
    Shot(args[5]);
    return 0;
}
