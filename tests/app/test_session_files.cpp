// The flows of a session that write files: saving into the image, the two exports, and
// importing a bitmap section, with every question answered by a script.
#include "art/frame_encoder.h"
#include "exchange/bitmap_fixtures.h"
#include "exchange/uncompressed_art.h"
#include "session_fixture.h"

#include <QtTest>

namespace {
constexpr int kDemoLength = 0x300000;
const QString kRefusal = QStringLiteral("(x) message ZOMG ERROR!!!1: ");

struct SaveCase {
    Reply answer;
    QString typed;
    int position;         // where the frame lands; -1 nowhere
    QString refusal = {}; // how the message after the questions begins
    int faultAt = 0;
};
}
Q_DECLARE_METATYPE(SaveCase)

class TestSessionFiles : public QObject {
    Q_OBJECT
private slots:
    void save_data()
    {
        QTest::addColumn<SaveCase>("c");
        const QString notSaved = "The art was not saved: No space left on device\nThe image was left as it was.";
        QTest::newRow("appended") << SaveCase{Reply::Yes, {}, kDemoLength};
        QTest::newRow("typed") << SaveCase{Reply::No, "1F0000", 0x1F0000};
        QTest::newRow("typed at the end") << SaveCase{Reply::No, "300000", kDemoLength};
        QTest::newRow("cancelled") << SaveCase{Reply::Cancel, {}, -1};
        QTest::newRow("nothing typed") << SaveCase{Reply::No, " ", -1};
        QTest::newRow("a prefix reads as 0") << SaveCase{Reply::No, "0x1000", 0};
        QTest::newRow("letters") << SaveCase{Reply::No, "G1", -1, "Nothing was saved: type the position as hexadecimal digits, such as 1F0000."};
        QTest::newRow("beyond the end") << SaveCase{Reply::No, "300001", -1, "Nothing was saved: 300001 lies beyond the end of the file (300000)."};
        QTest::newRow("too large") << SaveCase{Reply::No, "2000000", -1, "Nothing was saved: 2000000 is too large for a position in the ROM."};
        // Writes: the new journal's heading, the change's old bytes, the entry, the frame.
        QTest::newRow("journal write fails") << SaveCase{Reply::Yes, {}, -1, "The art was not saved: Nothing was written: the journal ", 2};
        QTest::newRow("entry write fails") << SaveCase{Reply::No, "1F0000", -1, notSaved, 3};
        QTest::newRow("frame write fails") << SaveCase{Reply::Yes, {}, -1, notSaved, 4};
    }

    void save()
    {
        QFETCH(SaveCase, c);
        SessionFixture f;
        f.Show(1, 2);
        f.session.PressWindowSurface(PalboxRect(4).center());
        f.Stroke({10, 10});
        const QByteArray before = f.RomBytes();
        f.script.asked.clear();
        f.script.Answer(c.answer).Answer(Reply::Ok, c.typed);
        InjectWriteFault(c.faultAt, WriteFault::WritesShort);
        f.session.SaveArt();
        ClearWriteFault();
        if (!c.refusal.isEmpty())
            QVERIFY(f.script.asked.takeLast().startsWith(kRefusal + c.refusal));
        QCOMPARE(f.script.asked.join('\n'), c.answer == Reply::No ? kSaveQuestion + '\n' + kTypePosition : kSaveQuestion);
        // Still the frame the user sees, unless its entry now holds 0 and ends the list.
        QCOMPARE(f.state.frameRow, c.position == 0 ? -1 : 2);
        // Only the entry and the frame bytes changed; a failed write left nothing behind.
        QByteArray expected = before;
        if (c.position >= 0) {
            ArtFrame encoded = f.state.currentFrame;
            PutBytes(expected, c.position, FrameBytes(encoded));
            PutWord32(expected, 0xB18BC + 8, uint32_t(c.position) + kCartridgeBase);
        }
        QCOMPARE(f.RomBytes(), expected);
        QCOMPARE(f.state.artTables[1].pointers[2], c.position >= 0 ? c.position : int32_t(BigEndian32(reinterpret_cast<const uint8_t*>(before.constData()) + 0xB18C4) - kCartridgeBase));
    }

    void movedFrameZeroLetsTheListRunOn()
    {
        SessionFixture f;
        f.Show(1, 0);
        f.script.Answer(Reply::Yes);
        f.session.SaveArt(); // table 1 ended where its frame 0 began; read again, it runs on
        QVERIFY(f.state.frameLines.size() > 4 && f.state.frameRow == 0);
    }

    void exports()
    {
        SessionFixture f;
        f.Show(5);
        f.Stroke({20, 20});
        const QString bmp = f.dir.filePath("frame.bmp"), art = f.dir.filePath("art.dat"), tpl = f.dir.filePath("art.TPL");
        f.script.Answer(Reply::Ok, bmp).Answer(Reply::Ok, art).Answer(Reply::Yes).Answer(Reply::Ok, art).Answer(Reply::Ok);
        f.script.Answer(Reply::Ok, art).Answer(Reply::Yes).Answer(Reply::Ok, tpl);
        f.session.ExportBitmap();
        f.session.ExportUncompressedArt(); // naming the art file again for the palette is refused
        f.session.ExportUncompressedArt();
        QCOMPARE(QImage(bmp).convertToFormat(QImage::Format_RGB32), f.state.preview.image);
        QCOMPARE(FileBytes(art), UncompressedArtBytes(f.state.preview, f.state.palettes[5], kPictureBackground));
        QCOMPARE(FileBytes(tpl), TplPaletteBytes(f.state.palettes[5]));
        QCOMPARE(f.script.asked.mid(0, 5), (QStringList{
            "save Export Bitmap File: Bitmap Files|*.bmp|All Files|*.*",
            "save Export Uncompressed Art File: Uncompressed Art (dat)|*.dat|Uncompressed Art (bin)|*.bin|All Files|*.*",
            "(?) yes/no Question: Would you like to export the palette in TLP format as well?",
            "save Export Tile Layer Pro Palette: TLP Palettes|*.TPL|All Files|*.*",
            kRefusal + "The palette was not written: art.dat is the art file just exported, and the palette would replace it. "
                       "Export again and choose another name."}));
    }

    void importedSection()
    {
        SessionFixture f;
        f.Show(1, 1);
        WriteFileBytes(f.dir.filePath("art.bmp"), DiagonalBitmap());
        f.script.Answer(Reply::Ok, f.dir.filePath("art.bmp")).Answer(Reply::Yes);
        f.session.ImportBitmap();
        QCOMPARE(f.script.asked.join('\n'), "open Load Bitmap File: Bitmap Files|*.bmp|All Files|*.*\n(?) yes/no Question: "
                                            "Would you like to import the palette from the bitmap as well? (Better)");
        // The palette reached the image at once; the boxes show it from the next refresh.
        const std::vector<QRgb> colors = SixteenColors();
        const ConsoleColor fifteen = ScreenToConsole(RgbToScreen(colors[15]));
        QCOMPARE(FileBytes(f.romPath).mid(0x22923E + 28, 2), QByteArray{} + char(fifteen >> 8) + char(fifteen));
        QVERIFY(f.state.sectionChooser.shown && f.state.palettes[1].colors[15] == fifteen);
        QCOMPARE(f.state.palboxColors[1], ConsoleToScreen(f.state.palettes[8], 1, kPictureBackground));
        // One to one, the samples sit one pixel inside the frame's line: a drag from (2, 3) to
        // (6, 5) copies the 3 x 1 pixels strictly between. (The window test drags at z = 2.)
        f.session.SetSectionZoom(0);
        f.session.PressSection({2, 3});
        f.session.MoveOnSection({4, 4});
        f.session.ReleaseSection({6, 5});
        f.session.CopySection();
        QVERIFY(!f.state.sectionChooser.shown && f.state.sectionChooser.exists);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 5; ++x)
                QCOMPARE(f.state.preview.image.pixel(x, y), x < 3 && y < 1 ? colors[size_t((x + 3 + y + 4) % 15 + 1)] : ScreenToRgb(kPictureBackground));
    }

private:
    const QString kSaveQuestion = QStringLiteral("(?) yes/no/cancel Question: Would you like to put this art at the end of the file? (Better)");
    const QString kTypePosition = QStringLiteral("text Brennals' Zelvane Art Editor: Enter a position to save it to");
};

QTEST_GUILESS_MAIN(TestSessionFiles)
#include "test_session_files.moc"
