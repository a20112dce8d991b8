// Opening an image through the dialog and browsing it with the two lists.
#include "form_fixture.h"
#include "view/ui/picture_box.h"

#include <sys/stat.h>

class TestOpenAndLists : public QObject {
    Q_OBJECT
private slots:
    void openDialogAndCatalogue();
    void cancelKeepsTheOpenImage();
    void badFiles();
    void selectingAnEntry_data();
    void selectingAnEntry();
};

namespace {
bool PreviewHasArt(const Form1& form)
{
    const QImage& image = form.Picture2->surface.image;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (RgbToScreen(image.pixel(x, y)) != form.state.transparentColor)
                return true;
    return false;
}
}

void TestOpenAndLists::openDialogAndCatalogue()
{
    FormFixture fixture;
    fixture.Open();
    const SeenDialog& dialog = fixture.driver.seen.at(0);
    QCOMPARE(dialog.title, QStringLiteral("Load a Zelvane Rom"));
    QCOMPARE(dialog.text, QStringLiteral("Zelvane Roms (binary) (*.bin);;Zelvane Roms (smd) (*.smd);;"
                                         "Zelvane Roms (32x) (*.32x);;All Files (*.*)"));
    QVERIFY(dialog.selectedFilter.startsWith(QStringLiteral("Zelvane Roms (binary)")));
    QCOMPARE(dialog.acceptMode, QFileDialog::AcceptOpen);
    Form1& form = *fixture.form;
    QVERIFY(form.state.romLoaded && fixture.driver.unexpected.isEmpty());
    QStringList lines;
    for (int i = 0; i < form.List1->count(); ++i)
        lines << form.List1->item(i)->text();
    QCOMPARE(lines, QStringList({"A0504", "B18BC", "CB3B4", "D4E44", "F1130", "F6A18", "101304", "11B088", "11F7A8",
                                 "121AA4", "1256B0", "1293E0", "12A9E8", "12C120"}));
    QCOMPARE(form.List2->count(), 3); // table 0 of the demo image holds three frames
    QCOMPARE(form.List2->item(0)->text(), QString::number(form.state.artTables[0].pointers[0], 16).toUpper());
    QVERIFY(form.List1->selectedItems().isEmpty() && form.List2->selectedItems().isEmpty());
    QCOMPARE(form.state.palettes[10].colors, form.state.palettes[3].colors);
    QVERIFY(!PreviewHasArt(form)); // opening does not refresh
}

void TestOpenAndLists::cancelKeepsTheOpenImage()
{
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(1);
    const int fd = form.state.romFile.fd;
    const QImage before = form.Picture2->surface.image;
    fixture.Open(QString()); // cancel
    QCOMPARE(form.state.romFile.fd, fd);
    QCOMPARE(form.Picture2->surface.image, before);
    fixture.Open(); // a second image: one set of art lines, the selection kept
    QCOMPARE(form.List1->count(), 14);
    QCOMPARE(form.List1->currentRow(), 1);
    QCOMPARE(form.List2->count(), 4);
}

void TestOpenAndLists::badFiles()
{
    FormFixture fixture;
    Form1& form = *fixture.form;
    const QString pipe = fixture.dir.filePath("pipe.bin"), shortRom = fixture.dir.filePath("short.bin");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    WriteFileBytes(shortRom, BuildDemoImage().left(0xB0000)); // table 0 only
    for (const QString& path : {pipe, shortRom}) {
        fixture.driver.ChooseFile(path);
        fixture.driver.PressButton(QMessageBox::Ok);
        form.menu_open->trigger();
        const SeenDialog& note = fixture.driver.seen.back();
        QVERIFY(note.title == "ZOMG ERROR!!!1" && note.text.contains(QFileInfo(path).fileName()));
        // A file that cannot be opened changes nothing; a short one opens with the note.
        QCOMPARE(form.state.romLoaded, path == shortRom);
    }
    FormFixture::ClickRow(form.List1, 13); // its table lies beyond the end: nothing to show
    QVERIFY(form.List2->count() == 0 && !PreviewHasArt(form));
    FormFixture::ClickRow(form.List1, 0);
    QVERIFY(PreviewHasArt(form));
}

void TestOpenAndLists::selectingAnEntry_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<QString>("lastLine");
    QTest::newRow("position rule") << 1 << "140DFE";
    QTest::newRow("empty slot repeats frame 0") << 2 << "1417F0";
    QTest::newRow("end marker") << 3 << "FF000000";
}

void TestOpenAndLists::selectingAnEntry()
{
    QFETCH(int, entry);
    QFETCH(QString, lastLine);
    FormFixture fixture;
    fixture.Open();
    Form1& form = *fixture.form;
    FormFixture::ClickRow(form.List1, entry - 1);
    QTest::keyClick(form.List1, Qt::Key_Down); // by keyboard as well as by mouse
    QCOMPARE(form.state.currentPalette, int16_t(entry));
    const ArtTable& table = form.state.artTables[size_t(entry)];
    QCOMPARE(form.state.currentFrame.romOffset, table.pointers[0]);
    QVERIFY(PreviewHasArt(form) && form.List2->selectedItems().isEmpty());
    QCOMPARE(form.List2->item(form.List2->count() - 1)->text(), lastLine);
    if (entry == 2)
        QCOMPARE(form.List2->item(2)->text(), form.List2->item(0)->text());
    FormFixture::ClickRow(form.List2, 1);
    QCOMPARE(form.state.currentFrame.romOffset, table.pointers[1]);
}

ZELVANE_WINDOW_TEST_MAIN(TestOpenAndLists)

#include "test_open_and_lists.moc"
