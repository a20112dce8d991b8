// The editing flows of a session, driven as the windows drive it: opening, the lists,
// the view, painting and the palette boxes, with every question answered by a script.
#include "rom/art_lists.h"
#include "session_fixture.h"

#include <QtTest>

namespace {
const QString kCannotEdit = QStringLiteral("(x) message ZOMG ERROR!!!1: You cannot edit a palette when a rom is not loaded, so load one!");
constexpr int kPalette2 = 0x22927E;

int DrawnPixels(const PictureSurface& surface)
{
    int drawn = 0;
    for (int y = 0; y < surface.image.height(); ++y)
        for (int x = 0; x < surface.image.width(); ++x)
            drawn += SurfacePixel(surface, x, y) != int64_t(kPictureBackground);
    return drawn;
}

void DoubleClickBox(EditorSession& session, int box)
{
    session.PressWindowSurface(PalboxRect(box).center());
    session.DoubleClickWindowSurface();
}
}

class TestSessionEditing : public QObject {
    Q_OBJECT
private slots:
    void opening_data()
    {
        QTest::addColumn<QString>("file"); // "" cancels the dialog
        QTest::addColumn<int>("length");   // of the demo image written there; -1 none, -2 a folder
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<QStringList>("notes");
        QTest::newRow("cancelled") << QString() << -1 << false << QStringList();
        QTest::newRow("missing") << "none.bin" << -1 << false
                                 << QStringList{"(x) message ZOMG ERROR!!!1: Cannot open none.bin:\nNo such file or directory"};
        QTest::newRow("a folder") << "art.bin" << -2 << false
                                  << QStringList{"(x) message ZOMG ERROR!!!1: Cannot open art.bin:\nIs a directory"};
        QTest::newRow("whole") << "demo.bin" << 0x300000 << false << QStringList();
        QTest::newRow("read-only") << "demo.bin" << 0x300000 << true
                                   << QStringList{"(x) message ZOMG ERROR!!!1: demo.bin is read-only. You can browse its art, but nothing can be saved into it."};
        QTest::newRow("too short") << "demo.bin" << 0x12C120 << false
                                   << QStringList{"(x) message ZOMG ERROR!!!1: demo.bin is too short for a Zelvane ROM or its art "
                                                  "tables are damaged. What could be read is shown; the rest reads as empty."};
    }

    void opening()
    {
        QFETCH(QString, file);
        QFETCH(int, length);
        QFETCH(bool, readOnly);
        QFETCH(QStringList, notes);
        SessionFixture f;
        if (length >= 0)
            QVERIFY(WriteFileBytes(f.romPath, BuildDemoImage().left(length)));
        if (length == -2)
            QVERIFY(QDir(f.dir.path()).mkdir(file));
        f.script.Answer(Reply::Ok, file.isEmpty() ? QString() : f.dir.filePath(file));
        if (readOnly)
            f.OpenReadOnly();
        else
            f.session.Open();
        if (!readOnly)
        QCOMPARE(f.script.asked.takeFirst(), QStringLiteral("open Load a Zelvane Rom: Zelvane Roms (binary)|*.bin|"
                                                            "Zelvane Roms (smd)|*.smd|Zelvane Roms (32x)|*.32x|All Files|*.*"));
        QCOMPARE(f.script.asked, notes);
        const bool opened = length >= 0;
        QCOMPARE(f.state.romLoaded, opened);
        QCOMPARE(f.state.artLines.size(), opened ? 14 : 0);
        if (opened)
            QCOMPARE(f.state.frameLines, FrameListLines(f.state.artTables[0]));
    }

    void listsAndSelection()
    {
        SessionFixture f;
        f.Show(3, 4);
        QCOMPARE(f.state.artLines.first(), QStringLiteral("A0504"));
        QCOMPARE(f.state.artLines.last(), QStringLiteral("12C120"));
        QCOMPARE(f.state.frameLines.size(), 7); // six frames and the end marker
        QCOMPARE(f.state.frameLines.last(), QStringLiteral("FF000000"));
        QCOMPARE(f.state.currentPalette, int16_t(3));
        QCOMPARE(f.state.currentFrame.romOffset, f.state.artTables[3].pointers[4]);
        QVERIFY(DrawnPixels(f.state.preview) > 100);
        QCOMPARE(f.state.palboxColors[0], ScreenColor(0)); // box 0 stays black
        QCOMPARE(f.state.palboxColors[5], ConsoleToScreen(f.state.palettes[3], 5, kPictureBackground));
        // The marker's line reads nothing and draws nothing.
        f.session.SelectFrame(6);
        QCOMPARE(DrawnPixels(f.state.preview), 0);
        // Reopening keeps the art list and its selection, and empties the frame selection.
        f.session.OpenFile(f.romPath);
        QCOMPARE(f.state.artLines.size(), 14);
        QCOMPARE(f.state.artRow, 3);
        QCOMPARE(f.state.frameRow, -1);
        // Another entry shows its frame 0, whatever frame was selected before.
        f.session.SelectFrame(5);
        f.session.SelectArtEntry(0);
        QCOMPARE(f.state.frameRow, -1);
        QCOMPARE(f.state.currentFrame.romOffset, f.state.artTables[0].pointers[0]);
    }

    void selectingAgainDiscardsPainting()
    {
        SessionFixture f;
        f.Show(1, 2);
        const QImage shown = f.state.preview.image;
        f.Stroke({0, 0});
        QVERIFY(f.state.preview.image != shown);
        f.session.SelectFrame(2);
        QCOMPARE(f.state.preview.image, shown);
        f.Stroke({0, 0});
        f.session.SelectArtEntry(1);
        QCOMPARE(f.state.frameRow, -1);
        QCOMPARE(f.state.currentFrame.romOffset, f.state.artTables[1].pointers[0]);
    }

    void painting_data()
    {
        QTest::addColumn<int>("zoom");
        QTest::addColumn<QList<QPoint>>("moves"); // between one press and release
        QTest::addColumn<QList<QPoint>>("painted"); // preview pixels
        QTest::newRow("zoom 5, halves to even") << 5 << QList<QPoint>{{12, 13}, {2, 2}, {3, 7}} << QList<QPoint>{{2, 3}, {0, 0}, {1, 1}};
        QTest::newRow("zoom 2") << 2 << QList<QPoint>{{1, 0}, {3, 0}, {5, 0}, {7, 0}} << QList<QPoint>{{0, 0}, {2, 0}, {4, 0}};
        QTest::newRow("zoom 1") << 1 << QList<QPoint>{{60, 84}} << QList<QPoint>{{60, 84}};
        QTest::newRow("press and release only") << 5 << QList<QPoint>{} << QList<QPoint>{};
    }

    void painting()
    {
        QFETCH(int, zoom);
        QFETCH(QList<QPoint>, moves);
        QFETCH(QList<QPoint>, painted);
        SessionFixture f;
        f.session.OpenFile(f.romPath);
        f.session.SetZoom(zoom);
        f.session.ClearPictures();
        f.session.PressWindowSurface(PalboxRect(6).center());
        f.session.MoveOnCanvas({30, 30}); // no stroke begun: nothing
        f.session.PressCanvas();
        for (const QPoint& p : moves)
            f.session.MoveOnCanvas(p);
        f.session.ReleaseCanvas();
        f.session.MoveOnCanvas({40, 40});
        QCOMPARE(DrawnPixels(f.state.preview), painted.size());
        for (const QPoint& p : painted)
            QCOMPARE(SurfacePixel(f.state.preview, p.x(), p.y()), int64_t(ConsoleToScreen(f.state.palettes[0], 6, 0)));
        QCOMPARE(DrawnPixels(f.state.canvas), painted.size() * zoom * zoom);
        // Painting with the transparent colour erases.
        f.session.DrawWithTransparent();
        QCOMPARE(f.state.colboxColor, kPictureBackground);
        for (const QPoint& p : painted)
            f.Stroke(p * zoom);
        QCOMPARE(DrawnPixels(f.state.preview), 0);
    }

    void pressOnTheSurface_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("color");
        QTest::newRow("box 0 top-left edge") << QPointF(584, 72) << 0;
        QTest::newRow("box 0 right edge") << QPointF(597, 85) << 0;
        QTest::newRow("rounded, not cut") << QPointF(583.5, 71.5) << 0;
        QTest::newRow("box 1") << QPointF(605, 75) << 1;
        QTest::newRow("box 15 bottom-right edge") << QPointF(613, 197) << 15;
        QTest::newRow("between boxes keeps the colour") << QPointF(599, 90) << 7;
    }

    void pressOnTheSurface()
    {
        QFETCH(QPointF, point);
        QFETCH(int, color);
        SessionFixture f;
        f.Show(1);
        f.session.PressWindowSurface(PalboxRect(7).center());
        f.session.PressWindowSurface(point);
        QCOMPARE(f.state.currentColor, int16_t(color));
        QCOMPARE(f.state.colboxColor, ConsoleToScreen(f.state.palettes[1], color, kPictureBackground));
    }

    void typedColours_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("word");
        QTest::newRow("red") << "FF" << 0x001F;
        QTest::newRow("green") << "FF00" << 0x03E0;
        QTest::newRow("blue, blanks and lower case") << " ff\t00 00" << 0x7C00;
        QTest::newRow("1F") << "1F" << 0x0004;
        QTest::newRow("never negative") << "8000" << 0x0200;
        QTest::newRow("last six digits") << "1234567" << 0x110C;
        QTest::newRow("no digits") << "zz" << 0x0000;
        QTest::newRow("prefix") << "0x1F" << 0x0000;
    }

    void typedColours()
    {
        QFETCH(QString, typed);
        QFETCH(int, word);
        SessionFixture f;
        f.Show(2);
        const QByteArray before = f.RomBytes();
        f.Stroke({0, 0});
        f.script.Answer(Reply::Ok, typed);
        DoubleClickBox(f.session, 3);
        QCOMPARE(f.script.asked, QStringList{"text Brennals' Zelvane Art Editor: Enter the RGB in hex: "});
        QCOMPARE(f.state.palettes[2].colors[3], ConsoleColor(word));
        QByteArray expected = before;
        expected[kPalette2 + 4] = char(word >> 8);
        expected[kPalette2 + 5] = char(word);
        QCOMPARE(f.RomBytes(), expected);
        // Table 9 shares the stored palette but keeps its own copy; the frame is read anew.
        QCOMPARE(f.state.palettes[9].colors[3], ConsoleColor(uint8_t(before[kPalette2 + 4]) << 8 | uint8_t(before[kPalette2 + 5])));
        QCOMPARE(SurfacePixel(f.state.preview, 0, 0), int64_t(kPictureBackground));
    }

    void nothingIsWritten_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QStringList>("asked");
        const QString typing = "text Brennals' Zelvane Art Editor: Enter the RGB in hex: ";
        QTest::newRow("no image") << "none" << QStringList{kCannotEdit};
        QTest::newRow("cancelled") << "cancel" << QStringList{typing};
        QTest::newRow("read-only") << "read-only" << QStringList{};
        QTest::newRow("write fails") << "fault" << QStringList{typing, "(x) message ZOMG ERROR!!!1: The palette could not be "
                                                                       "written:\nNo space left on device\nThe image was left as it was."};
    }

    void nothingIsWritten()
    {
        QFETCH(QString, how);
        QFETCH(QStringList, asked);
        SessionFixture f;
        if (how == "read-only")
            f.OpenReadOnly();
        else if (how != "none")
            f.session.OpenFile(f.romPath);
        f.script.asked.clear();
        const QByteArray before = f.RomBytes();
        const Palette palette = f.state.palettes[0];
        f.script.Answer(Reply::Ok, how == "cancel" ? QString() : QStringLiteral("FFFFFF"));
        InjectWriteFault(how == "fault" ? 3 : 0, WriteFault::DiskFull); // after the journal's two
        DoubleClickBox(f.session, 5);
        ClearWriteFault();
        if (how == "read-only")
            QVERIFY(f.script.asked.value(0).endsWith("is read-only, so its palette cannot be changed."));
        else
            QCOMPARE(f.script.asked, asked);
        QCOMPARE(f.RomBytes(), before);
        QCOMPARE(f.state.palettes[0].colors, palette.colors);
    }
};

QTEST_GUILESS_MAIN(TestSessionEditing)
#include "test_session_editing.moc"
