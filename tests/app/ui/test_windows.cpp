// The windows end to end, with the real dialogs: open, paint, save at a typed position
// and reopen; import a bitmap section and save it. Run at scale 1 and 2. Everything
// else is tested on the session without windows.
#include "app/ui/form1.h"
#include "app/ui/form_surface.h"
#include "exchange/bitmap_fixtures.h"
#include "exchange/ui/section_dialog.h"
#include "rom/ui/list_box.h"
#include "session_fixture.h"
#include "ui_driver.h"
#include "view/ui/picture_box.h"

#include <QAction>
#include <QSlider>
#include <QTest>

namespace {
const QPoint kBorder(PictureBox::kBorder, PictureBox::kBorder);

void Drag(QWidget* view, QPoint from, QPoint to)
{
    QTest::mousePress(view, Qt::LeftButton, {}, from + kBorder);
    QTest::mouseMove(view, to + kBorder);
    QTest::mouseRelease(view, Qt::LeftButton, {}, to + kBorder);
}

struct Editor {
    QTemporaryDir dir;
    QString romPath = dir.filePath(QStringLiteral("demo.bin"));
    DialogDriver driver;
    Form1 form;
    const EditorState& state = form.session.State();

    Editor()
    {
        WriteFileBytes(romPath, BuildDemoImage());
        form.show();
        (void)QTest::qWaitForWindowExposed(&form);
    }
    static void Click(ListBox* list, int row)
    {
        list->scrollToItem(list->item(row));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
    }
    void Show(int entry, int frame)
    {
        driver.Answer(romPath);
        form.menu_open->trigger();
        Click(form.List1, entry);
        Click(form.List2, frame);
    }
    QRgb PreviewPixel(int x, int y) const { return state.preview.image.pixel(x, y); }
};
}

class TestWindows : public QObject {
    Q_OBJECT
private slots:
    void editSaveImportAndReopen()
    {
        Editor e;
        e.Show(1, 0);
        const QRgb stored = e.PreviewPixel(2, 2);
        QTest::mousePress(e.form.surface, Qt::LeftButton, {}, PalboxRect(4).center());
        Drag(e.form.Picture1, {10, 10}, {10, 10});
        const QRgb painted = e.PreviewPixel(2, 2);
        QCOMPARE(painted, ScreenToRgb(ConsoleToScreen(e.state.document.palettes[1], 4, kPictureBackground)));
        // The canvas shows pixel (2, 2)'s block in device pixels: twice as many at scale 2.
        const int scale = int(e.form.devicePixelRatio());
        const QImage shown = e.form.Picture1->grab().toImage();
        QVERIFY(shown.size() == scale * e.form.Picture1->size() && shown.pixel(scale * (PictureBox::kBorder + 10) + 1, scale * (PictureBox::kBorder + 10) + 1) == painted);
        // Keys that do not move the selection run nothing; a click on the selected line
        // reads the frame again and so discards the painting.
        QTest::keyClick(e.form.List2, Qt::Key_Up);
        QVERIFY(painted != stored && e.PreviewPixel(2, 2) == painted);
        Editor::Click(e.form.List2, 0);
        QCOMPARE(e.PreviewPixel(2, 2), stored);
        Drag(e.form.Picture1, {10, 10}, {10, 10});
        e.driver.Answer(QMessageBox::No);
        e.driver.Answer(QStringLiteral("1F0000"));
        e.form.save_art->click();
        QCOMPARE(FileBytes(e.romPath).mid(0xB18BC, 4), QByteArray::fromHex("021F0000"));

        // Into frame 1: a 16-colour bitmap, its palette taken, a 4 x 2 section dragged at
        // z = 2, saved at the end.
        Editor::Click(e.form.List2, 1);
        const QString bitmap = e.dir.filePath("art.bmp");
        WriteFileBytes(bitmap, DiagonalBitmap());
        e.driver.Answer(bitmap);
        e.driver.Answer(QMessageBox::Yes);
        e.form.load_bitmap->click();
        SectionDialog* chooser = e.form.sectionDialog;
        QVERIFY(chooser && chooser->isVisible() && !chooser->isModal());
        chooser->Slider1->setValue(1);
        Drag(chooser->Picture1, {2 * 2 + 1, 3 * 2 + 1}, {6 * 2 + 1, 5 * 2 + 1});
        chooser->OKButton->click();
        QVERIFY(!chooser->isVisible() && e.PreviewPixel(3, 1) == SixteenColors()[(5 + 4) % 15 + 1]);
        e.driver.Answer(QMessageBox::Yes);
        e.form.file_saveart->trigger();

        // Opened again, frame 0 shows the painted pixel (in the imported palette's colour 4)
        // and frame 1 the section's indices.
        e.Show(1, 0);
        QCOMPARE(e.state.currentFrame.romOffset, 0x1F0000);
        QCOMPARE(e.PreviewPixel(2, 2), ScreenToRgb(ConsoleToScreen(e.state.document.palettes[1], 4, kPictureBackground)));
        Editor::Click(e.form.List2, 1);
        QCOMPARE(e.state.currentFrame.lines[1].pixels[3], int16_t((5 + 4) % 15 + 1));
        // The real dialogs showed the titles and buttons the prompts named.
        QCOMPARE(e.driver.seen.mid(0, 2), (QStringList{"4 Question: Would you like to put this art at the end of the file? (Better) [Yes|No|Cancel] default Yes",
                                                       "text Brennals' Zelvane Art Editor: Enter a position to save it to"}));
        QVERIFY(e.driver.unexpected.isEmpty());
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    StyleApplication(app);
    TestWindows test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_windows.moc"
