// The main window as the user first sees it: layout, menus, start-up, help and about.
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
    void controls_data();
    void controls();
    void windowFrame();
    void menus();
    void tabOrder();
    void startUp();
    void transparentColorIsNoPaletteColor();
    void captionsShowWhole();
    void helpTexts_data();
    void helpTexts();
    void aboutBoxIsOneModelessBox();
    void refusalsWithoutRom_data();
    void refusalsWithoutRom();
};

void TestMainWindow::controls_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QString>("caption");
    QTest::newRow("Frame1") << "Frame1" << QRect(8, 8, 289, 265) << "Pointer List";
    QTest::newRow("List1") << "List1" << QRect(16, 24, 129, 212) << "";
    QTest::newRow("List2") << "List2" << QRect(160, 24, 129, 212) << "";
    QTest::newRow("what_1") << "what_1" << QRect(16, 248, 129, 17) << "What's This?";
    QTest::newRow("what_2") << "what_2" << QRect(160, 248, 129, 17) << "What's This?";
    QTest::newRow("Label2") << "Label2" << QRect(336, 8, 49, 17) << "Art Editor";
    QTest::newRow("Picture1") << "Picture1" << QRect(328, 24, 249, 209) << "";
    QTest::newRow("save_art") << "save_art" << QRect(328, 240, 153, 25) << "Save changes to current art";
    QTest::newRow("Command2") << "Command2" << QRect(488, 240, 129, 25) << "Draw with transparent";
    QTest::newRow("HScroll1") << "HScroll1" << QRect(584, 24, 29, 17) << "";
    QTest::newRow("Command1") << "Command1" << QRect(584, 48, 30, 17) << "Clr";
    QTest::newRow("Frame2") << "Frame2" << QRect(640, 8, 81, 113) << "Art Preview";
    QTest::newRow("Picture2") << "Picture2" << QRect(648, 24, 65, 89) << "";
    QTest::newRow("Frame3") << "Frame3" << QRect(632, 136, 97, 137) << "Misc";
    QTest::newRow("load_bitmap") << "load_bitmap" << QRect(640, 152, 81, 25) << "Import bitmap";
    QTest::newRow("export_bitmap") << "export_bitmap" << QRect(640, 184, 81, 25) << "Export bitmap";
    QTest::newRow("export_uart") << "export_uart" << QRect(640, 216, 81, 49) << "Export Uncompressed art";
}

QString Caption(QWidget* w)
{
    if (auto* button = qobject_cast<QPushButton*>(w))
        return button->text();
    if (auto* group = qobject_cast<QGroupBox*>(w))
        return group->title();
    if (auto* label = qobject_cast<QLabel*>(w))
        return label->text();
    return QString();
}

void TestMainWindow::controls()
{
    QFETCH(QString, name);
    QFETCH(QRect, rect);
    QFETCH(QString, caption);
    Form1 form;
    auto* control = form.centralWidget()->findChild<QWidget*>(name);
    QVERIFY2(control, qPrintable(name));
    QCOMPARE(control->parentWidget(), form.centralWidget());
    QCOMPARE(control->geometry(), rect);
    QCOMPARE(Caption(control), caption);
}

void TestMainWindow::windowFrame()
{
    Form1 form;
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QCOMPARE(form.windowTitle(), QStringLiteral("Brennals' Zelvane Art Editing Tool"));
    QCOMPARE(form.centralWidget()->size(), QSize(741, 284));
    QCOMPARE(form.centralWidget()->y(), form.menuBar()->height());
    QCOMPARE(form.minimumSize(), form.maximumSize());
    QVERIFY(!(form.windowFlags() & Qt::WindowMaximizeButtonHint));
    QCOMPARE(form.Picture1->surface.image.size(), QSize(245, 205));
    QCOMPARE(form.Picture2->surface.image.size(), QSize(61, 85));
}

void TestMainWindow::menus()
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
}

void TestMainWindow::tabOrder()
{
    Form1 form;
    const QStringList expected = {"List1",    "List2",       "what_1",   "what_2",   "Picture1",      "Picture2", "HScroll1",
                                  "save_art", "load_bitmap", "Command1", "Command2", "export_bitmap", "export_uart"};
    QStringList chain;
    QWidget* w = form.List1;
    for (int i = 0; i < 200 && chain.size() < expected.size(); ++i, w = w->nextInFocusChain())
        if (expected.contains(w->objectName()) && !chain.contains(w->objectName()))
            chain << w->objectName();
    QCOMPARE(chain, expected);
}

void TestMainWindow::startUp()
{
    Form1 form;
    QCOMPARE(form.state.zoom, int16_t(5));
    QCOMPARE(form.HScroll1->value(), 5);
    QCOMPARE(form.state.transparentColor, form.Picture2->surface.background);
    QVERIFY(!form.state.romLoaded);
    QCOMPARE(form.List1->count(), 0);
    for (int i = 0; i < kPaletteBoxes; ++i)
        QCOMPARE(form.surface->PalboxColor(i), ScreenColor(0));
    QCOMPARE(form.surface->ColboxColor(), ScreenColor(0));
}

void TestMainWindow::transparentColorIsNoPaletteColor()
{
    Form1 form;
    Palette palette;
    for (int word = 0; word < 0x10000; ++word) {
        palette.colors[1] = ConsoleColor(word);
        if (word != kTransparentMarker && ConsoleToScreen(palette, 1, 0) == form.state.transparentColor)
            QFAIL(qPrintable(QString::number(word, 16)));
    }
}

void TestMainWindow::captionsShowWhole()
{
    Form1 form;
    form.show();
    for (QPushButton* button : form.centralWidget()->findChildren<QPushButton*>()) {
        const QFontMetrics metrics(button->font());
        const QRect room = button->rect().adjusted(3, 2, -3, -2);
        const QRect needed = metrics.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, button->text());
        QVERIFY2(room.contains(needed), qPrintable(button->objectName()));
        if (button != form.export_uart) // only the tall button may wrap
            QVERIFY2(metrics.horizontalAdvance(button->text()) <= room.width(), qPrintable(button->objectName()));
    }
}

void TestMainWindow::helpTexts_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("text");
    QTest::newRow("what_1") << "what_1"
                            << "This is basically just a list of pointers in your zelvane rom, each one standing for "
                               "art. They each point to more pointers, which are the list of pointers on the right "
                               "side, that point to each frame of art.";
    QTest::newRow("what_2") << "what_2"
                            << "This is a list of pointers that point to 1 frame of art. To edit the art, click the "
                               "pointer that points to it, and use the art editor.";
}

void TestMainWindow::helpTexts()
{
    QFETCH(QString, button);
    QFETCH(QString, text);
    FormFixture fixture;
    fixture.driver.PressButton(QMessageBox::Ok);
    fixture.form->findChild<QPushButton*>(button)->click();
    QCOMPARE(fixture.driver.seen.size(), size_t(1));
    const SeenDialog& box = fixture.driver.seen[0];
    QCOMPARE(box.title, QStringLiteral("What is this?"));
    QCOMPARE(box.text, text);
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
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
    form.menu_about->trigger();
    QCOMPARE(form.frmAbout, about);
    QCOMPARE(form.findChildren<FrmAbout*>().size(), 1);
    about->findChild<QPushButton*>("cmdOK")->click();
    QVERIFY(!about->isVisible());
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        form.menu_about->trigger();
        QVERIFY(QTest::qWaitForWindowActive(about));
        QTest::keyClick(about, key);
        QVERIFY2(!about->isVisible(), qPrintable(QString::number(key, 16)));
    }
    QCOMPARE(form.frmAbout, about);
}

void TestMainWindow::refusalsWithoutRom_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("text");
    const QString save = "Save what art? (*HINT* OPEN A ROM FIRST) lmao";
    const QString open = "Open a rom first. =P";
    const QString import = "How will you import it if there is no rom loaded that contains the art to overwrite?";
    QTest::newRow("save_art") << "save_art" << save;
    QTest::newRow("file_saveart") << "file_saveart" << save;
    QTest::newRow("export_bitmap") << "export_bitmap" << open;
    QTest::newRow("menu_export_bitmap") << "menu_export_bitmap" << open;
    QTest::newRow("export_uart") << "export_uart" << open;
    QTest::newRow("menu_export_uart") << "menu_export_uart" << open;
    QTest::newRow("load_bitmap") << "load_bitmap" << import;
    QTest::newRow("menu_bitmap_import") << "menu_bitmap_import" << import;
}

void TestMainWindow::refusalsWithoutRom()
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
    QCOMPARE(fixture.driver.seen[0].title, QStringLiteral("ZOMG ERROR!!!1"));
    QCOMPARE(fixture.driver.seen[0].text, text);
    QCOMPARE(fixture.driver.seen[0].icon, QMessageBox::Critical);
    QVERIFY(fixture.driver.unexpected.isEmpty());
    QVERIFY(fixture.form->state.bitmapFile.isEmpty());
}

ZELVANE_WINDOW_TEST_MAIN(TestMainWindow)

#include "test_main_window.moc"
