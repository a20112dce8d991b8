// Saving the painted preview back into the image: the question, the positions, the
// refusals, the pointer bytes, and reopening the image to see the pixels.
#include "art/save_art.h"
#include "form_fixture.h"
#include "view/ui/picture_box.h"

class TestSaveCommand : public QObject {
    Q_OBJECT
private slots:
    void appendRepointsAndReopenShowsThePixels();
    void typedPositionWritesThere_data();
    void typedPositionWritesThere();
    void nothingIsWritten_data();
    void nothingIsWritten();
};

namespace {
constexpr int kTable1 = 0xB18BC;

uint32_t EntryBytes(const QByteArray& rom, int table, int f) { return BigEndian32(reinterpret_cast<const uint8_t*>(rom.constData()) + table + 4 * f); }

// Opens the image, shows frame 1 of entry 1 and paints one pixel of slot 4 at (2, 2).
void PaintOnFrame(FormFixture& fixture)
{
    Form1& form = fixture.ShowEntry(1, 1);
    form.state.currentColor = 4;
    FormFixture::Stroke(form, {2 * 5, 2 * 5});
}
}

void TestSaveCommand::appendRepointsAndReopenShowsThePixels()
{
    FormFixture fixture;
    PaintOnFrame(fixture);
    Form1& form = *fixture.form;
    const QImage painted = form.Picture2->surface.image;
    const qint64 lengthBefore = QFileInfo(fixture.romPath).size();
    fixture.driver.PressButton(QMessageBox::Yes);
    form.save_art->click();
    const SeenDialog& question = fixture.driver.seen.at(1);
    QCOMPARE(question.title, QStringLiteral("Question"));
    QCOMPARE(question.text, QStringLiteral("Would you like to put this art at the end of the file? (Better)"));
    QCOMPARE(question.icon, QMessageBox::Question);
    QCOMPARE(question.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    QCOMPARE(question.defaultButton, QMessageBox::Yes);
    QVERIFY(fixture.driver.unexpected.isEmpty());

    const QByteArray rom = fixture.RomBytes();
    QVERIFY(rom.size() > lengthBefore);
    QCOMPARE(EntryBytes(rom, kTable1, 1), uint32_t(lengthBefore) + kCartridgeBase);
    QCOMPARE(form.state.artTables[1].pointers[1], int32_t(lengthBefore));
    QCOMPARE(form.List2->currentRow(), 1); // the frame stays selected for a second save
    QVERIFY(rom.endsWith(QByteArray(6, '\0')));

    // A second save appends a second copy and points at it.
    fixture.driver.PressButton(QMessageBox::Yes);
    form.file_saveart->trigger();
    const QByteArray twice = fixture.RomBytes();
    QCOMPARE(twice.size(), 2 * rom.size() - lengthBefore);
    QCOMPARE(EntryBytes(twice, kTable1, 1), uint32_t(rom.size()) + kCartridgeBase);

    // Opening the image again reads the frame from where the entry now points.
    fixture.Open();
    FormFixture::ClickRow(form.List1, 1);
    FormFixture::ClickRow(form.List2, 1);
    QCOMPARE(form.state.currentFrame.romOffset, int32_t(rom.size()));
    const QImage shown = form.Picture2->surface.image;
    QCOMPARE(shown.pixel(2, 2), painted.pixel(2, 2));
}

void TestSaveCommand::typedPositionWritesThere_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("upper case") << "1F0000";
    QTest::newRow("blanks") << "1F 00 00";
}

void TestSaveCommand::typedPositionWritesThere()
{
    QFETCH(QString, typed);
    FormFixture fixture;
    PaintOnFrame(fixture);
    const qint64 length = QFileInfo(fixture.romPath).size();
    fixture.driver.PressButton(QMessageBox::No);
    fixture.driver.Type(typed);
    fixture.form->save_art->click();
    QCOMPARE(fixture.driver.seen.at(2).text, QStringLiteral("Enter a position to save it to"));
    const QByteArray rom = fixture.RomBytes();
    QCOMPARE(rom.size(), length);
    QCOMPARE(EntryBytes(rom, kTable1, 1), 0x021F0000u);
    ArtFrame frame = fixture.form->state.currentFrame;
    QCOMPARE(rom.mid(0x1F0000, FrameBytes(frame).size()), FrameBytes(frame));
}

void TestSaveCommand::nothingIsWritten_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("refused");
    QTest::newRow("cancel") << QMessageBox::Cancel << QString() << false;
    QTest::newRow("input cancelled") << QMessageBox::No << QString() << false;
    QTest::newRow("no digits") << QMessageBox::No << "zz" << true;
    QTest::newRow("beyond the end") << QMessageBox::No << "400000" << true;
    QTest::newRow("too large") << QMessageBox::No << "123456789" << true;
}

void TestSaveCommand::nothingIsWritten()
{
    QFETCH(QMessageBox::StandardButton, button);
    QFETCH(QString, typed);
    QFETCH(bool, refused);
    FormFixture fixture;
    PaintOnFrame(fixture);
    const QByteArray before = fixture.RomBytes();
    fixture.driver.PressButton(button);
    if (button == QMessageBox::No)
        fixture.driver.Type(typed, typed.isEmpty());
    if (refused)
        fixture.driver.PressButton(QMessageBox::Ok);
    fixture.form->save_art->click();
    QVERIFY(fixture.driver.AllAnswered());
    QVERIFY(fixture.driver.unexpected.isEmpty());
    QCOMPARE(fixture.RomBytes(), before);
    QCOMPARE(fixture.form->List2->count(), 4); // the lists were filled again all the same
}

ZELVANE_WINDOW_TEST_MAIN(TestSaveCommand)

#include "test_save_command.moc"
