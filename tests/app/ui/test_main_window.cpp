// The main window as the user first sees it: layout, menus, start-up, messages and about.
#include "app/ui/about_box.h"
#include "app/ui/form_surface.h"
#include "form_fixture.h"
#include "view/ui/picture_box.h"

#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>

class TestMainWindow : public QObject {
    Q_OBJECT
private slots:
    void layout();
    void menusAndTabOrder();
    void startUp();
    void messages_data();
    void messages();
    void aboutBoxIsOneModelessBox();
};

namespace {
struct Control {
    const char* name;
    QRect rect;
    const char* caption;
};

const Control kControls[] = {
    {"Frame1", {8, 8, 289, 265}, "Pointer List"}, {"List1", {16, 24, 129, 212}, ""},
    {"List2", {160, 24, 129, 212}, ""}, {"what_1", {16, 248, 129, 17}, "What's This?"},
    {"what_2", {160, 248, 129, 17}, "What's This?"}, {"Label2", {336, 8, 49, 17}, "Art Editor"},
    {"Picture1", {328, 24, 249, 209}, ""}, {"save_art", {328, 240, 153, 25}, "Save changes to current art"},
    {"Command2", {488, 240, 129, 25}, "Draw with transparent"}, {"HScroll1", {584, 24, 29, 17}, ""},
    {"Command1", {584, 48, 30, 17}, "Clr"}, {"Frame2", {640, 8, 81, 113}, "Art Preview"},
    {"Picture2", {648, 24, 65, 89}, ""}, {"Frame3", {632, 136, 97, 137}, "Misc"},
    {"load_bitmap", {640, 152, 81, 25}, "Import bitmap"}, {"export_bitmap", {640, 184, 81, 25}, "Export bitmap"},
    {"export_uart", {640, 216, 81, 49}, "Export Uncompressed art"},
};

QString Caption(QWidget* w)
{
    if (auto* button = qobject_cast<QPushButton*>(w))
        return button->text();
    if (auto* group = qobject_cast<QGroupBox*>(w))
        return group->title();
    auto* label = qobject_cast<QLabel*>(w);
    return label ? label->text() : QString();
}
}

void TestMainWindow::layout()
{
    Form1 form;
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QCOMPARE(form.windowTitle(), QStringLiteral("Brennals' Zelvane Art Editing Tool"));
    QCOMPARE(form.centralWidget()->geometry(), QRect(0, form.menuBar()->height(), 741, 284));
    QCOMPARE(form.minimumSize(), form.maximumSize());
    QVERIFY(!(form.windowFlags() & Qt::WindowMaximizeButtonHint));
    for (const Control& c : kControls) {
        auto* control = form.centralWidget()->findChild<QWidget*>(c.name);
        QVERIFY2(control && control->geometry() == c.rect, c.name);
        QCOMPARE(Caption(control), QString(c.caption));
    }
    QCOMPARE(form.Picture1->surface.image.size(), QSize(245, 205));
    QCOMPARE(form.Picture2->surface.image.size(), QSize(61, 85));
    // Every caption shows whole; only the tall export button may wrap.
    for (QPushButton* button : form.centralWidget()->findChildren<QPushButton*>()) {
        const QFontMetrics metrics(button->font());
        const QRect room = button->rect().adjusted(3, 2, -3, -2);
        QVERIFY2(room.contains(metrics.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, button->text())),
                 qPrintable(button->objectName()));
        QVERIFY(button == form.export_uart || metrics.horizontalAdvance(button->text()) <= room.width());
    }
}

void TestMainWindow::menusAndTabOrder()
{
    Form1 form;
    QStringList seen;
    for (QAction* menu : form.menuBar()->actions()) {
        seen << menu->menu()->objectName() + "=" + menu->text();
        for (QAction* item : menu->menu()->actions())
            seen << item->objectName() + (item->isSeparator() ? QString("|") : "=" + item->text());
    }
    QCOMPARE(seen, QStringList({"menu_file=File", "menu_open=Open Zelvane Rom", "sep1|", "menu_exit=Exit",
                                "menu_art=Art", "file_saveart=Save current art", "sep2|",
                                "menu_export_bitmap=Export art as bitmap",
                                "menu_export_uart=Export art as uncompressed pixel data", "sep3|",
                                "menu_bitmap_import=Import section of bitmap", "menu_help=Help", "menu_about=About"}));
    const QStringList order = {"List1",    "List2",       "what_1",   "what_2",   "Picture1",      "Picture2", "HScroll1",
                               "save_art", "load_bitmap", "Command1", "Command2", "export_bitmap", "export_uart"};
    QStringList chain;
    for (QWidget* w = form.List1; chain.size() < order.size(); w = w->nextInFocusChain())
        if (order.contains(w->objectName()) && !chain.contains(w->objectName()))
            chain << w->objectName();
    QCOMPARE(chain, order);
}

void TestMainWindow::startUp()
{
    Form1 form;
    QCOMPARE(form.state.zoom, int16_t(5));
    QCOMPARE(form.HScroll1->value(), 5);
    QCOMPARE(form.state.transparentColor, form.Picture2->surface.background);
    QVERIFY(!form.state.romLoaded);
    for (int i = 0; i < kPaletteBoxes; ++i)
        QCOMPARE(form.surface->PalboxColor(i), ScreenColor(0));
    QCOMPARE(form.surface->ColboxColor(), ScreenColor(0));
    // No console word may show as the transparent colour.
    Palette palette;
    for (int word = 0; word < kTransparentMarker; ++word) {
        palette.colors[1] = ConsoleColor(word);
        QVERIFY(ConsoleToScreen(palette, 1, 0) != form.state.transparentColor);
    }
}

void TestMainWindow::messages_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("text");
    const QString save = "Save what art? (*HINT* OPEN A ROM FIRST) lmao";
    const QString open = "Open a rom first. =P";
    const QString import = "How will you import it if there is no rom loaded that contains the art to overwrite?";
    QTest::newRow("what_1") << "what_1" << "This is basically just a list of pointers in your zelvane rom, each one "
                                            "standing for art. They each point to more pointers, which are the list of "
                                            "pointers on the right side, that point to each frame of art.";
    QTest::newRow("what_2") << "what_2" << "This is a list of pointers that point to 1 frame of art. To edit the art, "
                                            "click the pointer that points to it, and use the art editor.";
    // Without an image every command that needs one refuses, from its button and its menu item alike.
    for (const char* name : {"save_art", "file_saveart"})
        QTest::newRow(name) << name << save;
    for (const char* name : {"export_bitmap", "menu_export_bitmap", "export_uart", "menu_export_uart"})
        QTest::newRow(name) << name << open;
    for (const char* name : {"load_bitmap", "menu_bitmap_import"})
        QTest::newRow(name) << name << import;
}

void TestMainWindow::messages()
{
    QFETCH(QString, control);
    QFETCH(QString, text);
    FormFixture fixture;
    fixture.driver.PressButton(QMessageBox::Ok);
    if (auto* button = fixture.form->findChild<QPushButton*>(control))
        button->click();
    else
        fixture.form->findChild<QAction*>(control)->trigger();
    QCOMPARE(fixture.driver.seen.size(), size_t(1));
    const SeenDialog& box = fixture.driver.seen[0];
    const bool help = control.startsWith("what_");
    QCOMPARE(box.title, help ? QStringLiteral("What is this?") : QStringLiteral("ZOMG ERROR!!!1"));
    QCOMPARE(box.icon, help ? QMessageBox::Information : QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.text, text);
}

void TestMainWindow::aboutBoxIsOneModelessBox()
{
    FormFixture fixture;
    Form1& form = *fixture.form;
    form.menu_about->trigger();
    FrmAbout* about = form.frmAbout;
    QVERIFY(about && about->isVisible() && !about->isModal());
    QCOMPARE(about->windowTitle(), QStringLiteral("About Brennals' Tessik Zelvane Art Editor"));
    QCOMPARE(about->size(), QSize(382, 99));
    about->findChild<QPushButton*>("cmdOK")->click();
    QVERIFY(!about->isVisible());
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        form.menu_about->trigger();
        QVERIFY(QTest::qWaitForWindowActive(about));
        QTest::keyClick(about, key);
        QVERIFY(!about->isVisible());
    }
    QCOMPARE(form.findChildren<FrmAbout*>(), QList<FrmAbout*>({about}));
}

ZELVANE_WINDOW_TEST_MAIN(TestMainWindow)

#include "test_main_window.moc"
