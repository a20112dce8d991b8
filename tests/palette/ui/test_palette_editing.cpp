// Picking the drawing colour from the palette boxes and typing new colours.
#include "app/ui/form_surface.h"
#include "form_fixture.h"

class TestPaletteEditing : public QObject {
    Q_OBJECT
private slots:
    void pressPicksBox_data();
    void pressPicksBox();
    void doubleClickWithoutRomRefusesOnce();
    void typedColourIsWrittenAtOnce_data();
    void typedColourIsWrittenAtOnce();
    void nothingChanges(); // cancelled, or refused on a read-only image
};

namespace {
void PressSurface(Form1& form, QPoint p) { QTest::mousePress(form.surface, Qt::LeftButton, {}, p); }

void DoubleClickBox(Form1& form, int box)
{
    const QPoint p = PalboxRect(box).center();
    QTest::mousePress(form.surface, Qt::LeftButton, {}, p);
    QTest::mouseRelease(form.surface, Qt::LeftButton, {}, p);
    QTest::mouseDClick(form.surface, Qt::LeftButton, {}, p);
}
}

void TestPaletteEditing::pressPicksBox_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("color");
    QTest::newRow("box 0 top-left edge") << QPoint(584, 72) << 0;
    QTest::newRow("box 0 right edge (left + width)") << QPoint(597, 85) << 0;
    QTest::newRow("box 1") << QPoint(605, 75) << 1;
    QTest::newRow("box 15 bottom-right edge") << QPoint(613, 197) << 15;
    QTest::newRow("between boxes keeps the colour") << QPoint(599, 90) << 7;
}

void TestPaletteEditing::pressPicksBox()
{
    QFETCH(QPoint, point);
    QFETCH(int, color);
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(1);
    form.state.currentColor = 7;
    PressSurface(form, point);
    QCOMPARE(form.state.currentColor, int16_t(color));
    QCOMPARE(form.state.mouseX, int16_t(point.x()));
    QCOMPARE(form.surface->ColboxColor(), ConsoleToScreen(form.state.palettes[1], color, form.state.transparentColor));
}

void TestPaletteEditing::doubleClickWithoutRomRefusesOnce()
{
    FormFixture fixture;
    fixture.driver.PressButton(QMessageBox::Ok);
    DoubleClickBox(*fixture.form, 4);
    QCOMPARE(fixture.driver.seen.size(), size_t(1));
    QCOMPARE(fixture.driver.seen[0].text, QStringLiteral("You cannot edit a palette when a rom is not loaded, so load one!"));
    QCOMPARE(fixture.driver.seen[0].icon, QMessageBox::Critical);
    QVERIFY(fixture.driver.unexpected.isEmpty());
}

void TestPaletteEditing::typedColourIsWrittenAtOnce_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("word");
    QTest::newRow("red") << "FF" << 0x001F;
    QTest::newRow("green") << "FF00" << 0x03E0;
    QTest::newRow("blue") << "FF0000" << 0x7C00;
    QTest::newRow("blanks and lower case") << "ff ff ff" << 0x7FFF;
    QTest::newRow("1F") << "1F" << 0x0004;
    QTest::newRow("never negative") << "8000" << 0x0200;
    QTest::newRow("last six digits") << "1234567" << 0x110C;
    QTest::newRow("no digits") << "zz" << 0x0000;
    QTest::newRow("prefix") << "0x1F" << 0x0000;
}

void TestPaletteEditing::typedColourIsWrittenAtOnce()
{
    QFETCH(QString, typed);
    QFETCH(int, word);
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(2);
    const QByteArray before = fixture.RomBytes();
    fixture.driver.Type(typed);
    DoubleClickBox(form, 3);
    QCOMPARE(fixture.driver.seen.at(1).title, QStringLiteral("Brennals' Zelvane Art Editor"));
    QCOMPARE(fixture.driver.seen.at(1).text, QStringLiteral("Enter the RGB in hex: "));
    QCOMPARE(form.state.palettes[2].colors[3], ConsoleColor(word));
    QByteArray expected = before;
    expected[0x22927E + 4] = char(word >> 8);
    expected[0x22927E + 5] = char(word);
    QCOMPARE(fixture.RomBytes(), expected);
    QCOMPARE(form.state.palettes[9].colors[3], ConsoleColor(before[0x22927E + 4] << 8 | uint8_t(before[0x22927E + 5])));
}

void TestPaletteEditing::nothingChanges()
{
    for (const bool readOnly : {false, true}) {
        FormFixture fixture;
        fixture.Open();
        fixture.form->state.romFile.writable = !readOnly;
        const QByteArray before = fixture.RomBytes();
        const Palette palette = fixture.form->state.palettes[0];
        readOnly ? fixture.driver.PressButton(QMessageBox::Ok) : fixture.driver.Type(QString(), true);
        DoubleClickBox(*fixture.form, 5);
        QVERIFY(!readOnly || fixture.driver.seen.back().text.contains("read-only"));
        QCOMPARE(fixture.RomBytes(), before);
        QCOMPARE(fixture.form->state.palettes[0].colors, palette.colors);
    }
}

ZELVANE_WINDOW_TEST_MAIN(TestPaletteEditing)

#include "test_palette_editing.moc"
