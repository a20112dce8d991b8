// The exchange commands end to end: importing a section of a bitmap and saving it,
// the bitmap and uncompressed exports, and their refusals.
#include "exchange/bitmap_fixtures.h"
#include "exchange/ui/section_dialog.h"
#include "exchange/uncompressed_art.h"
#include "form_fixture.h"
#include "view/ui/picture_box.h"

#include <QProcess>
#include <QSlider>

class TestExchangeCommands : public QObject {
    Q_OBJECT
private slots:
    void importedSectionIsSavedIntoTheImage();
    void bitmapFromAnotherTool();
    void refusedBitmapsChangeNothing_data();
    void refusedBitmapsChangeNothing();
    void closedChooserIsBuiltAgain();
    void exportBitmapIsPixelExact();
    void exportUncompressedArtWithPalette_data();
    void exportUncompressedArtWithPalette();
};

namespace {
// 16 x 12 pixels whose index is (x + y) mod 15 + 1, so no pixel uses colour 0.
QString WriteTestBitmap(const QTemporaryDir& dir)
{
    std::vector<int> indices;
    for (int y = 0; y < 12; ++y)
        for (int x = 0; x < 16; ++x)
            indices.push_back((x + y) % 15 + 1);
    const QString path = dir.filePath("art.bmp");
    WriteFileBytes(path, FourBitBitmap(SixteenColors(), 16, 12, indices, BmpRows::BottomUp));
    return path;
}

void ImportBitmapFile(FormFixture& fixture, const QString& path, QMessageBox::StandardButton palette)
{
    fixture.driver.ChooseFile(path);
    fixture.driver.PressButton(palette);
    fixture.form->load_bitmap->click();
}

void Drag(PictureBox* view, QPoint from, QPoint to)
{
    const QPoint border(PictureBox::kBorder, PictureBox::kBorder);
    QTest::mousePress(view, Qt::LeftButton, {}, from + border);
    QTest::mouseMove(view, to + border);
    QTest::mouseRelease(view, Qt::LeftButton, {}, to + border);
}
}

void TestExchangeCommands::importedSectionIsSavedIntoTheImage()
{
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(1, 1);
    const QString bitmap = WriteTestBitmap(fixture.dir);
    ImportBitmapFile(fixture, bitmap, QMessageBox::Yes);
    QCOMPARE(fixture.driver.seen.at(1).title, QStringLiteral("Load Bitmap File"));
    QCOMPARE(fixture.driver.seen.at(1).text, QStringLiteral("Bitmap Files (*.bmp);;All Files (*.*)"));
    QCOMPARE(fixture.driver.seen.at(2).text, QStringLiteral("Would you like to import the palette from the bitmap as well? (Better)"));
    QCOMPARE(form.state.bitmapFile, bitmap);

    // The palette reached the image at once.
    const QByteArray rom = fixture.RomBytes();
    const std::vector<QRgb> colors = SixteenColors();
    for (int i = 1; i <= 15; ++i)
        QCOMPARE(BigEndian16(reinterpret_cast<const uint8_t*>(rom.constData()) + 0x22923E + 2 * (i - 1)),
                 ScreenToConsole(RgbToScreen(colors[size_t(i)])));

    SectionDialog* chooser = form.sectionDialog;
    QVERIFY(chooser && chooser->isVisible() && !chooser->isModal());
    QCOMPARE(chooser->windowTitle(), QStringLiteral("Choose the section of your art"));
    chooser->Slider1->setValue(1); // z = 2
    Drag(chooser->Picture1, {2 * 2 + 1, 3 * 2 + 1}, {6 * 2 + 1, 5 * 2 + 1});
    chooser->OKButton->click();
    QVERIFY(!chooser->isVisible());
    const QImage& preview = form.Picture2->surface.image;
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            QCOMPARE(preview.pixel(x, y), colors[size_t((x + 2 + y + 3) % 15 + 1)] | 0xFF000000u);
    QCOMPARE(RgbToScreen(preview.pixel(4, 0)), form.state.transparentColor);

    fixture.driver.PressButton(QMessageBox::Yes);
    form.save_art->click();
    fixture.Open();
    FormFixture::ClickRow(form.List2, 1);
    const ArtFrame& frame = form.state.currentFrame;
    QCOMPARE(frame.lastLine, int16_t(1));
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            QCOMPARE(frame.lines[size_t(y)].pixels[size_t(x)], int16_t((x + 2 + y + 3) % 15 + 1));
    QVERIFY(fixture.driver.unexpected.isEmpty());
}

void TestExchangeCommands::bitmapFromAnotherTool()
{
    FormFixture fixture;
    const QString path = fixture.dir.filePath("tool.bmp");
    const QStringList arguments = {"-size", "6x4", "xc:red", "-fill", "blue", "-draw", "point 1,1", "-fill", "lime",
                                   "-draw", "point 5,3", "-type", "Palette", "BMP3:" + path};
    if (QProcess::execute("convert", arguments) != 0)
        QSKIP("ImageMagick's convert is not installed");
    fixture.Open();
    ImportBitmapFile(fixture, path, QMessageBox::No);
    SectionDialog* chooser = fixture.form->sectionDialog;
    chooser->Slider1->setValue(1);
    Drag(chooser->Picture1, {0, 0}, {12, 8});
    chooser->OKButton->click();
    const QImage& preview = fixture.form->Picture2->surface.image;
    QCOMPARE(preview.pixel(0, 0), qRgb(255, 0, 0));
    QCOMPARE(preview.pixel(1, 1), qRgb(0, 0, 255));
    QCOMPARE(preview.pixel(5, 3), qRgb(0, 255, 0));
    QCOMPARE(RgbToScreen(preview.pixel(6, 0)), fixture.form->state.transparentColor);
}

void TestExchangeCommands::refusedBitmapsChangeNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const QString depth = "This is not a 16 bit bitmap. You lose";
    QTest::newRow("8-bit") << Encoded(SmallImage(QImage::Format_Indexed8, 200)) << depth;
    QTest::newRow("24-bit") << Encoded(SmallImage(QImage::Format_RGB888)) << depth;
    QTest::newRow("too short") << QByteArray("BM\x10", 3) << depth;
    // Header and colours intact, pixels cut: refused before the palette question.
    const QByteArray cut = FourBitBitmap(SixteenColors(), 16, 12, std::vector<int>(16 * 12, 1), BmpRows::BottomUp).left(130);
    QTest::newRow("pixels cut short") << cut << "";
}

void TestExchangeCommands::refusedBitmapsChangeNothing()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    FormFixture fixture;
    fixture.Open();
    const QString path = fixture.dir.filePath("wrong.bmp");
    WriteFileBytes(path, bytes);
    const QByteArray before = fixture.RomBytes();
    fixture.driver.ChooseFile(path);
    fixture.driver.PressButton(QMessageBox::Ok);
    fixture.form->menu_bitmap_import->trigger();
    QCOMPARE(fixture.driver.seen.size(), size_t(3));
    QCOMPARE(fixture.driver.seen[2].title, QStringLiteral("ZOMG ERROR!!!1"));
    QVERIFY(text.isEmpty() || fixture.driver.seen[2].text == text);
    QVERIFY(fixture.driver.unexpected.isEmpty());
    QVERIFY(!fixture.form->sectionDialog);
    QCOMPARE(fixture.RomBytes(), before);
}

void TestExchangeCommands::closedChooserIsBuiltAgain()
{
    FormFixture fixture;
    fixture.Open();
    const QString bitmap = WriteTestBitmap(fixture.dir);
    ImportBitmapFile(fixture, bitmap, QMessageBox::No);
    fixture.form->sectionDialog->Slider1->setValue(4);
    fixture.form->sectionDialog->hide();
    ImportBitmapFile(fixture, bitmap, QMessageBox::No);
    QCOMPARE(fixture.form->sectionDialog->Slider1->value(), 4); // hiding keeps its state
    fixture.form->sectionDialog->close();
    QTRY_VERIFY(!fixture.form->sectionDialog);
    ImportBitmapFile(fixture, bitmap, QMessageBox::No);
    QVERIFY(fixture.form->sectionDialog);
    QCOMPARE(fixture.form->sectionDialog->Slider1->value(), 0);
}

void TestExchangeCommands::exportBitmapIsPixelExact()
{
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(1);
    const QString path = fixture.dir.filePath("frame.bmp");
    fixture.driver.ChooseFile(path);
    form.export_bitmap->click();
    QCOMPARE(fixture.driver.seen.at(1).title, QStringLiteral("Export Bitmap File"));
    QCOMPARE(fixture.driver.seen.at(1).acceptMode, QFileDialog::AcceptSave);
    QCOMPARE(form.state.bitmapFile, path);
    QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32), form.Picture2->surface.image);

    fixture.driver.ChooseFile(QString());
    form.menu_export_bitmap->trigger();
    QVERIFY(form.state.bitmapFile.isEmpty());
}

void TestExchangeCommands::exportUncompressedArtWithPalette_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<QString>("paletteName");
    QTest::addColumn<bool>("paletteWritten");
    QTest::newRow("art and palette") << QMessageBox::Yes << "art.TPL" << true;
    QTest::newRow("art only") << QMessageBox::No << "" << false;
    QTest::newRow("palette dialog cancelled") << QMessageBox::Yes << "" << false;
    QTest::newRow("palette named as the art file") << QMessageBox::Yes << "art.dat" << false;
}

void TestExchangeCommands::exportUncompressedArtWithPalette()
{
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(QString, paletteName);
    QFETCH(bool, paletteWritten);
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(2);
    const QString artPath = fixture.dir.filePath("art.dat");
    fixture.driver.ChooseFile(artPath);
    fixture.driver.PressButton(answer);
    if (answer == QMessageBox::Yes)
        fixture.driver.ChooseFile(paletteName.isEmpty() ? QString() : fixture.dir.filePath(paletteName));
    if (paletteName == "art.dat") {
        fixture.driver.PressButton(QMessageBox::Yes); // replace the existing file?
        fixture.driver.PressButton(QMessageBox::Ok);  // the refusal
    }
    form.menu_export_uart->trigger();
    QVERIFY(fixture.driver.AllAnswered());
    QVERIFY(fixture.driver.unexpected.isEmpty());
    QCOMPARE(fixture.driver.seen.at(1).title, QStringLiteral("Export Uncompressed Art File"));
    QCOMPARE(fixture.driver.seen.at(2).text, QStringLiteral("Would you like to export the palette in TLP format as well?"));
    const EditorState& state = form.state;
    QFile art(artPath);
    QVERIFY(art.open(QIODevice::ReadOnly));
    QCOMPARE(art.readAll(), UncompressedArtBytes(form.Picture2->surface, state.palettes[2], state.transparentColor));
    QFile palette(fixture.dir.filePath("art.TPL"));
    QCOMPARE(palette.exists(), paletteWritten);
    if (paletteWritten) {
        QVERIFY(palette.open(QIODevice::ReadOnly));
        QCOMPARE(palette.readAll(), TplPaletteBytes(state.palettes[2]));
    }
}

ZELVANE_WINDOW_TEST_MAIN(TestExchangeCommands)

#include "test_exchange_commands.moc"
