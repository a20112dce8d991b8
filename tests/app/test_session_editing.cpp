// The editing flows of a session, driven as the windows drive it: opening, the lists,
// the view, painting and the palette boxes, with every question answered by a script.
#include "rom/art_lists.h"
#include "session_fixture.h"

#include <QtTest>

namespace {
const QString kRefusal = QStringLiteral("(x) message ZOMG ERROR!!!1: ");
constexpr int kPalette2 = 0x22927E;

int DrawnPixels(const PictureSurface& surface)
{
    int drawn = 0;
    for (int y = 0; y < surface.image.height(); ++y)
        for (int x = 0; x < surface.image.width(); ++x)
            drawn += SurfacePixel(surface, x, y) != int64_t(kPictureBackground);
    return drawn;
}

void DoubleClickBox(SessionFixture& f, int box, const QString& typed)
{
    f.script.Answer(Reply::Ok, typed);
    f.session.PressWindowSurface(PalboxRect(box).center());
    f.session.DoubleClickWindowSurface();
}
}

class TestSessionEditing : public QObject {
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
        QCOMPARE(f.state.currentFrame.romOffset, f.state.artTables[3].pointers[4]);
        QVERIFY(DrawnPixels(f.state.preview) > 100);
        QCOMPARE(f.state.palboxColors[0], ScreenColor(0)); // box 0 stays black
        QCOMPARE(f.state.palboxColors[5], ConsoleToScreen(f.state.palettes[3], 5, kPictureBackground));
        f.session.SelectFrame(6);
        QCOMPARE(DrawnPixels(f.state.preview), 0);
        // Reopening keeps the art list and its selection; another entry shows its frame 0.
        f.session.OpenFile(f.romPath);
        QVERIFY(f.state.artLines.size() == 14 && f.state.artRow == 3 && f.state.frameRow == -1);
        f.session.SelectFrame(1);
        f.session.SelectArtEntry(0);
        QCOMPARE(f.state.frameRow, -1);
        QCOMPARE(f.state.currentFrame.romOffset, f.state.artTables[0].pointers[0]);
        // Selecting the selected line again reads the frame anew: painting is gone.
        const QImage shown = f.state.preview.image;
        f.Stroke({0, 0});
        f.session.SelectArtEntry(0);
        QCOMPARE(f.state.preview.image, shown);
    }

    void painting()
    {
        SessionFixture f;
        f.session.OpenFile(f.romPath);
        f.session.SetZoom(2);
        f.session.ClearPictures();
        f.session.PressWindowSurface(PalboxRect(6).center());
        f.session.MoveOnCanvas({30, 30}); // no stroke begun
        f.session.PressCanvas();
        for (const QPoint p : {QPoint(3, 0), QPoint(5, 0), QPoint(7, 1)}) // halves go to the even pixel
            f.session.MoveOnCanvas(p);
        f.session.ReleaseCanvas();
        f.session.MoveOnCanvas({40, 40});
        const ScreenColor color = ConsoleToScreen(f.state.palettes[0], 6, 0);
        QVERIFY(SurfacePixel(f.state.preview, 2, 0) == color && SurfacePixel(f.state.preview, 4, 0) == color);
        QVERIFY(DrawnPixels(f.state.preview) == 2 && DrawnPixels(f.state.canvas) == 2 * 4);
    }

    void pressOnTheSurface()
    {
        SessionFixture f;
        f.Show(1);
        f.session.PressWindowSurface(PalboxRect(7).center());
        f.session.PressWindowSurface({583.5, 71.5}); // rounded to box 0's corner, not cut
        QCOMPARE(f.state.currentColor, int16_t(0));
        f.session.PressWindowSurface({599, 90}); // between boxes: the colour stays
        QCOMPARE(f.state.currentColor, int16_t(0));
        QCOMPARE(f.state.colboxColor, ConsoleToScreen(f.state.palettes[1], 0, kPictureBackground));
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
        const Palette palette = f.state.palettes[0];
        InjectWriteFault(how == "fault" ? 3 : 0, WriteFault::DiskFull); // after the new journal's two
        DoubleClickBox(f, 5, how == "cancel" ? QString() : QStringLiteral("FFFFFF"));
        ClearWriteFault();
        QVERIFY2(f.script.asked.last().endsWith(said), qPrintable(f.script.asked.last()));
        QCOMPARE(f.RomBytes(), before);
        QCOMPARE(f.state.palettes[0].colors, palette.colors);
    }
};

QTEST_GUILESS_MAIN(TestSessionEditing)
#include "test_session_editing.moc"
