// The flows of a session that write files: saving into the image, the two exports, and
// importing a bitmap section, with every question answered by a script.
#include "art/frame_encoder.h"
#include "exchange/bitmap_files.h"
#include "exchange/bitmap_fixtures.h"
#include "exchange/uncompressed_art.h"
#include "session_fixture.h"

#include <QtTest>

namespace {
constexpr int kTable1 = 0xB18BC;
constexpr int kDemoLength = 0x300000;
const QString kSaveQuestion = QStringLiteral("(?) yes/no/cancel Question: Would you like to put this art at the end of the file? (Better)");
const QString kTypePosition = QStringLiteral("text Brennals' Zelvane Art Editor: Enter a position to save it to");
const QString kRefusal = QStringLiteral("(x) message ZOMG ERROR!!!1: ");

struct SaveCase {
    Reply answer;
    QString typed;
    int position;         // where the frame lands; -1 nowhere
    QString refusal = {}; // the message after the questions
    int faultAt = 0;
};

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
}
Q_DECLARE_METATYPE(SaveCase)

class TestSessionFiles : public QObject {
    Q_OBJECT
private slots:
    void save_data()
    {
        QTest::addColumn<SaveCase>("c");
        QTest::newRow("appended") << SaveCase{Reply::Yes, {}, kDemoLength};
        QTest::newRow("typed") << SaveCase{Reply::No, "1F0000", 0x1F0000};
        QTest::newRow("typed at the end") << SaveCase{Reply::No, "300000", kDemoLength};
        QTest::newRow("cancelled") << SaveCase{Reply::Cancel, {}, -1};
        QTest::newRow("nothing typed") << SaveCase{Reply::No, " ", -1};
        QTest::newRow("no digits") << SaveCase{Reply::No, "0x1000", 0}; // a prefix reads as 0, as typed
        QTest::newRow("letters") << SaveCase{Reply::No, "G1", -1, "Nothing was saved: type the position as hexadecimal digits, such as 1F0000."};
        QTest::newRow("beyond the end") << SaveCase{Reply::No, "300001", -1, "Nothing was saved: 300001 lies beyond the end of the file (300000)."};
        QTest::newRow("too large") << SaveCase{Reply::No, "2000000", -1, "Nothing was saved: 2000000 is too large for a position in the ROM."};
        // Writes: the new journal's heading, the change's old bytes, the entry, the frame.
        QTest::newRow("journal write fails") << SaveCase{Reply::Yes, {}, -1, "The art was not saved: Nothing was written: the journal ", 2};
        QTest::newRow("entry write fails") << SaveCase{Reply::No, "1F0000", -1, "The art was not saved: No space left on device\nThe image was left as it was.", 3};
        QTest::newRow("frame write fails") << SaveCase{Reply::Yes, {}, -1, "The art was not saved: No space left on device\nThe image was left as it was.", 4};
    }

    void save()
    {
        QFETCH(SaveCase, c);
        SessionFixture f;
        f.Show(1, 2);
        f.session.PressWindowSurface(PalboxRect(4).center());
        f.Stroke({10, 10});
        const QImage painted = f.state.preview.image;
        const QByteArray before = f.RomBytes();
        const int32_t oldEntry = f.state.artTables[1].pointers[2];
        f.script.asked.clear();
        f.script.Answer(c.answer).Answer(Reply::Ok, c.typed);
        InjectWriteFault(c.faultAt, WriteFault::WritesShort);
        f.session.SaveArt();
        ClearWriteFault();
        QStringList asked{kSaveQuestion};
        if (c.answer == Reply::No)
            asked << kTypePosition;
        if (!c.refusal.isEmpty())
            QVERIFY(f.script.asked.takeLast().startsWith(kRefusal + c.refusal));
        QCOMPARE(f.script.asked, asked);
        // Still the frame the user sees, unless its entry now holds 0 and ends the list.
        QCOMPARE(f.state.frameRow, c.position == 0 ? -1 : 2);
        const QByteArray after = f.RomBytes();
        if (c.position < 0) {
            QCOMPARE(after, before);
            QCOMPARE(f.state.artTables[1].pointers[2], oldEntry);
            return;
        }
        // Only the entry and the frame bytes changed.
        ArtFrame encoded = f.state.currentFrame;
        const QByteArray frameBytes = FrameBytes(encoded);
        QByteArray expected = before;
        PutBytes(expected, c.position, frameBytes);
        PutWord32(expected, kTable1 + 8, uint32_t(c.position) + kCartridgeBase);
        QCOMPARE(after, expected);
        QCOMPARE(f.state.artTables[1].pointers[2], c.position);
        // Read back, the frame shows the painted pixel.
        if (c.position == 0)
            return;
        f.session.OpenFile(f.romPath);
        f.session.SelectFrame(2);
        QCOMPARE(f.state.preview.image.pixel(2, 2), painted.pixel(2, 2));
    }

    void movedFrameZeroLetsTheListRunOn()
    {
        SessionFixture f;
        f.Show(1, 0);
        f.script.Answer(Reply::Yes);
        f.session.SaveArt(); // table 1 ended where its frame 0 began; read again, it runs on
        QVERIFY(f.state.frameLines.size() > 4 && f.state.frameRow == 0);
    }

    void refusedWithoutAWritableImage()
    {
        SessionFixture f;
        f.session.SaveArt();
        f.session.ExportBitmap();
        f.session.ExportUncompressedArt();
        f.session.ImportBitmap();
        f.OpenReadOnly();
        f.session.SaveArt();
        QCOMPARE(f.script.asked.mid(0, 4),
                 (QStringList{kRefusal + "Save what art? (*HINT* OPEN A ROM FIRST) lmao", kRefusal + "Open a rom first. =P",
                              kRefusal + "Open a rom first. =P",
                              kRefusal + "How will you import it if there is no rom loaded that contains the art to overwrite?"}));
        QVERIFY(f.script.asked.last().endsWith("demo.bin is read-only, so the art cannot be saved into it."));
    }

    void exports_data()
    {
        QTest::addColumn<Reply>("palette");
        QTest::addColumn<QString>("paletteFile");
        QTest::newRow("art only") << Reply::No << QString();
        QTest::newRow("with the palette") << Reply::Yes << "art.TPL";
        QTest::newRow("palette over the art") << Reply::Yes << "art.dat";
    }

    void exports()
    {
        QFETCH(Reply, palette);
        QFETCH(QString, paletteFile);
        SessionFixture f;
        f.Show(5);
        f.Stroke({20, 20});
        const QString bmp = f.dir.filePath("frame.bmp"), art = f.dir.filePath("art.dat");
        f.script.Answer(Reply::Ok, bmp).Answer(Reply::Ok, art).Answer(palette);
        f.script.Answer(Reply::Ok, paletteFile.isEmpty() ? QString() : f.dir.filePath(paletteFile));
        f.session.ExportBitmap();
        f.session.ExportUncompressedArt();
        QCOMPARE(f.state.bitmapFile, bmp);
        QCOMPARE(QImage(bmp).convertToFormat(QImage::Format_RGB32), f.state.preview.image);
        const Palette& shown = f.state.palettes[5];
        QCOMPARE(FileBytes(art), UncompressedArtBytes(f.state.preview, shown, kPictureBackground));
        QStringList asked{"save Export Bitmap File: Bitmap Files|*.bmp|All Files|*.*",
                          "save Export Uncompressed Art File: Uncompressed Art (dat)|*.dat|Uncompressed Art (bin)|*.bin|All Files|*.*",
                          "(?) yes/no Question: Would you like to export the palette in TLP format as well?"};
        if (palette == Reply::Yes)
            asked << "save Export Tile Layer Pro Palette: TLP Palettes|*.TPL|All Files|*.*";
        if (paletteFile == "art.dat")
            asked << kRefusal + "The palette was not written: art.dat is the art file just exported, and the palette "
                                "would replace it. Export again and choose another name.";
        QCOMPARE(f.script.asked, asked);
        QCOMPARE(QFile::exists(f.dir.filePath("art.TPL")), paletteFile == "art.TPL");
        if (paletteFile == "art.TPL")
            QCOMPARE(FileBytes(f.dir.filePath(paletteFile)), TplPaletteBytes(shown));
    }

    void importRefusalsChangeNothing()
    {
        // Refused before the palette question: nothing is written and no chooser opens.
        const QList<QPair<QByteArray, QString>> bitmaps = {
            {Encoded(SmallImage(QImage::Format_Indexed8, 256)), "This is not a 16 bit bitmap. You lose"},
            {FourBitBitmap(SixteenColors(), 8, 8, std::vector<int>(64, 1), BmpRows::BottomUp).chopped(9), "is cut short: it ends before its pixels do."}};
        for (const auto& [bytes, refusal] : bitmaps) {
            SessionFixture f;
            f.Show(0);
            WriteFileBytes(f.dir.filePath("in.bmp"), bytes);
            const QByteArray before = f.RomBytes();
            f.script.Answer(Reply::Ok, f.dir.filePath("in.bmp")).Answer(Reply::Yes);
            f.session.ImportBitmap();
            QCOMPARE(f.script.asked.size(), 2);
            QVERIFY(f.script.asked[1].startsWith(kRefusal) && f.script.asked[1].endsWith(refusal));
            QCOMPARE(f.RomBytes(), before);
            QVERIFY(!f.state.sectionChooser.exists);
        }
    }

    void importedSection()
    {
        SessionFixture f;
        f.Show(1, 1);
        const QString bitmap = WriteTestBitmap(f.dir);
        f.script.asked.clear();
        f.script.Answer(Reply::Ok, bitmap).Answer(Reply::Yes);
        f.session.ImportBitmap();
        QCOMPARE(f.script.asked, (QStringList{"open Load Bitmap File: Bitmap Files|*.bmp|All Files|*.*",
                                              "(?) yes/no Question: Would you like to import the palette from the bitmap as well? (Better)"}));
        // The palette reached the image at once; the boxes show it from the next refresh.
        const std::vector<QRgb> colors = SixteenColors();
        const ConsoleColor fifteen = ScreenToConsole(RgbToScreen(colors[15]));
        QCOMPARE(FileBytes(f.romPath).mid(0x22923E + 28, 2), QByteArray{} + char(fifteen >> 8) + char(fifteen));
        QVERIFY(f.state.sectionChooser.shown && f.state.palettes[1].colors[15] == fifteen);
        QCOMPARE(f.state.palboxColors[1], ConsoleToScreen(f.state.palettes[8], 1, kPictureBackground));
        // At z = 2, a drag from bitmap pixel (2, 3) to (6, 5) copies the 4 x 2 pixels between.
        f.session.SetSectionZoom(1);
        f.session.PressSection({2 * 2 + 1, 3 * 2 + 1});
        f.session.MoveOnSection({4 * 2, 4 * 2});
        f.session.ReleaseSection({6 * 2 + 1, 5 * 2 + 1});
        f.session.CopySection();
        QVERIFY(!f.state.sectionChooser.shown && f.state.sectionChooser.exists);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 6; ++x) {
                const bool copied = x < 4 && y < 2;
                QCOMPARE(f.state.preview.image.pixel(x, y), copied ? colors[size_t((x + 2 + y + 3) % 15 + 1)]
                                                                   : ScreenToRgb(kPictureBackground));
            }
        // The chooser keeps its slider until its close box ends it.
        f.script.Answer(Reply::Ok, bitmap).Answer(Reply::No);
        f.session.ImportBitmap();
        QCOMPARE(f.state.sectionChooser.slider, 1);
        f.session.CloseSectionChooser();
        f.script.Answer(Reply::Ok, bitmap).Answer(Reply::No);
        f.session.ImportBitmap();
        QCOMPARE(f.state.sectionChooser.slider, 0);
    }
};

QTEST_GUILESS_MAIN(TestSessionFiles)
#include "test_session_files.moc"
