// The flows of a session, driven as the windows drive them, with every question answered
// by a script: opening, the lists, painting and the palette boxes; saving into the
// image, the two exports, and importing a bitmap section.
#include "art/frame_encoder.h"
#include "exchange/bitmap_fixtures.h"
#include "exchange/uncompressed_art.h"
#include "rom/art_lists.h"
#include "session_fixture.h"

#include <QtTest>

namespace {
constexpr int kDemoLength = 0x300000;

struct SaveCase {
    Reply answer;
    QString typed;
    int position;         // where the frame lands; -1 nowhere
    QString refusal = {}; // how the message after the questions begins
    int faultAt = 0;
};
}
Q_DECLARE_METATYPE(SaveCase)

class TestSessionFlows : public QObject {
    Q_OBJECT
private slots:
    void listsAndSelection()
    {
        SessionFixture f;
        f.Show(3, 4);
        QCOMPARE(f.state.artLines.first() + f.state.artLines.last(), QStringLiteral("A050412C120"));
        QCOMPARE(f.state.frameLines.size(), 7); // six frames and the end marker, which draws nothing
        QCOMPARE(f.state.frameLines.last(), QStringLiteral("FF000000"));
        QCOMPARE(f.state.currentPalette, int16_t(3));
        QCOMPARE(f.state.currentFrame.romOffset, f.state.document.tables[3].pointers[4]);
        QVERIFY(CountNot(f.state.preview, kPictureBackground) > 100);
        QCOMPARE(f.state.palboxColors[0], ScreenColor(0)); // box 0 stays black
        QCOMPARE(f.state.palboxColors[5], ConsoleToScreen(f.state.document.palettes[3], 5, kPictureBackground));
        f.session.SelectFrame(6);
        QCOMPARE(CountNot(f.state.preview, kPictureBackground), 0);
        // Reopening keeps the art list and its selection; another entry shows its frame 0.
        f.session.OpenFile(f.romPath);
        QVERIFY(f.state.artLines.size() == 14 && f.state.artRow == 3 && f.state.frameRow == -1);
        f.session.SelectFrame(1);
        f.session.SelectArtEntry(0);
        QCOMPARE(f.state.frameRow, -1);
        QCOMPARE(f.state.currentFrame.romOffset, f.state.document.tables[0].pointers[0]);
        // Selecting the selected line again reads the frame anew: painting is gone.
        const QImage shown = f.state.preview.image;
        f.Stroke({0, 0});
        f.session.SelectArtEntry(0);
        QCOMPARE(f.state.preview.image, shown);
    }

    void paletteBoxesAndPainting()
    {
        SessionFixture f;
        f.Show(1);
        f.session.PickColorSlot(PaletteBoxUnder(PalboxRect(7).center()));
        f.session.PickColorSlot(PaletteBoxUnder({583.5, 71.5})); // rounded to box 0's corner, not cut
        f.session.PickColorSlot(PaletteBoxUnder({599, 90}));     // between boxes: the colour stays
        QCOMPARE(f.state.currentColor, int16_t(0));
        QCOMPARE(f.state.colboxColor, ConsoleToScreen(f.state.document.palettes[1], 0, kPictureBackground));
        f.session.SetZoom(2);
        f.session.ClearPictures();
        f.session.PickColorSlot(PaletteBoxUnder(PalboxRect(6).center()));
        f.session.PaintFramePixel(CanvasPixelAt({30, 30}, f.state.zoom)); // no stroke begun
        f.session.PressCanvas();
        for (const QPoint p : {QPoint(3, 0), QPoint(5, 0), QPoint(7, 1)}) // halves go to the even pixel
            f.session.PaintFramePixel(CanvasPixelAt(p, f.state.zoom));
        f.session.ReleaseCanvas();
        f.session.PaintFramePixel(CanvasPixelAt({40, 40}, f.state.zoom));
        const ScreenColor color = ConsoleToScreen(f.state.document.palettes[1], 6, 0);
        QVERIFY(SurfacePixel(f.state.preview, 2, 0) == color && SurfacePixel(f.state.preview, 4, 0) == color);
        QVERIFY(CountNot(f.state.preview, kPictureBackground) == 2 && CountNot(f.state.canvas, kPictureBackground) == 2 * 4);
    }

    void nothingIsWritten_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("said"); // the last message
        QTest::newRow("no image") << "none" << kRefusal + "You cannot edit a palette when a rom is not loaded, so load one!";
        QTest::newRow("cancelled") << "cancel" << "text Brennals' Zelvane Art Editor: Enter the RGB in hex: ";
        QTest::newRow("read-only") << "read-only" << "is read-only, so its palette cannot be changed.";
        QTest::newRow("write fails") << "fault" << kRefusal + "The palette could not be written:\nNo space left on device\nThe image was left as it was.";
        QTest::newRow("past the end") << "short" << kRefusal + "The palette could not be written:\nthe palette at 22921A lies beyond the "
                                                               "end of the file, which is not made longer for it.";
    }

    void nothingIsWritten()
    {
        QFETCH(QString, how);
        QFETCH(QString, said);
        SessionFixture f;
        if (how == "short")
            WriteFileBytes(f.romPath, BuildDemoImage().left(0x229220));
        if (how == "read-only") {
            f.OpenReadOnly();
            QCOMPARE(f.script.asked.takeFirst(), kRefusal + "demo.bin is read-only. You can browse its art, but nothing can be saved into it.");
        }
        else if (how != "none")
            f.session.OpenFile(f.romPath);
        const QByteArray before = f.RomBytes();
        const Palette palette = f.state.document.palettes[0];
        InjectWriteFault(how == "fault" ? 3 : 0, WriteFault::DiskFull); // after the new journal's two
        f.EditColor(5, how == "cancel" ? QString() : QStringLiteral("FFFFFF"));
        ClearWriteFault();
        QVERIFY2(f.script.asked.last().endsWith(said), qPrintable(f.script.asked.last()));
        QCOMPARE(f.RomBytes(), before);
        QCOMPARE(f.state.document.palettes[0].colors, palette.colors);
    }

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
        f.Show(1, 0);
        f.session.PickColorSlot(PaletteBoxUnder(PalboxRect(4).center()));
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
        // Still the frame the user sees, unless its entry now holds 0 and ends the list. Table 1
        // ended where its frame 0 began: read again, its list runs on once frame 0 moves.
        QCOMPARE(f.state.frameRow, c.position == 0 ? -1 : 0);
        QCOMPARE(f.state.frameLines.size() > 4, c.position > 0);
        // Only the entry and the frame bytes changed; a failed write left nothing behind.
        QByteArray expected = before;
        if (c.position >= 0) {
            ArtFrame encoded = f.state.currentFrame;
            PutBytes(expected, c.position, FrameBytes(encoded));
            PutWord32(expected, 0xB18BC, uint32_t(c.position) + kCartridgeBase);
        }
        QCOMPARE(f.RomBytes(), expected);
        QCOMPARE(f.state.document.tables[1].pointers[0], c.position >= 0 ? c.position : int32_t(BigEndian32(reinterpret_cast<const uint8_t*>(before.constData()) + 0xB18BC) - kCartridgeBase));
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
        QCOMPARE(FileBytes(art), UncompressedArtBytes(f.state.preview, f.state.document.palettes[5], kPictureBackground));
        QCOMPARE(FileBytes(tpl), TplPaletteBytes(f.state.document.palettes[5]));
        QCOMPARE(f.script.asked.mid(0, 5), (QStringList{
            "save Export Bitmap File: Bitmap Files|*.bmp|All Files|*.*",
            "save Export Uncompressed Art File: Uncompressed Art (dat)|*.dat|Uncompressed Art (bin)|*.bin|All Files|*.*",
            "(?) yes/no Question: Would you like to export the palette in TLP format as well?",
            "save Export Tile Layer Pro Palette: TLP Palettes|*.TPL|All Files|*.*",
            kRefusal + "The palette was not written: art.dat is the art file just exported, and the palette would replace it. "
                       "Export again and choose another name."}));
        // Over the bitmap, onto a full disk: the old file stays whole and nothing else is left.
        const QByteArray oldBitmap = FileBytes(bmp);
        const QStringList files = QDir(f.dir.path()).entryList(QDir::Files | QDir::Hidden);
        f.Stroke({30, 30});
        f.script.Answer(Reply::Ok, bmp);
        InjectWriteFault(1, WriteFault::WritesShort);
        f.session.ExportBitmap();
        ClearWriteFault();
        QVERIFY(FileBytes(bmp) == oldBitmap && QDir(f.dir.path()).entryList(QDir::Files | QDir::Hidden) == files);
        QVERIFY(f.script.asked.last().endsWith("No space left on device. The file was kept as it was."));
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
        QVERIFY(f.state.sectionChooser.shown && f.state.document.palettes[1].colors[15] == fifteen);
        QCOMPARE(f.state.palboxColors[1], ConsoleToScreen(f.state.document.palettes[8], 1, kPictureBackground));
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

QTEST_GUILESS_MAIN(TestSessionFlows)
#include "test_session_flows.moc"
