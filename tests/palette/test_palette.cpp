// Colour words and screen colours, palettes read from the image, and matching a screen colour
// back to a palette index.
#include "library_fixture.h"
#include "palette/color_match.h"
#include "palette/palette_boxes.h"
#include "palette/perceptual_match.h"

#include <QtTest>

namespace {
constexpr ScreenColor kTransparent = 0x00ABCDEF; // no console word shows as this

ScreenColor Shown(int red, int green, int blue) { return WordToScreen(Word(red, green, blue)); }
}

class TestPalettes : public QObject {
    Q_OBJECT
private slots:
    void wordsAndScreenColours()
    {
        // Components in their places, bit 15 ignored, the marker transparent.
        const QList<QPair<int, ScreenColor>> shown = {{0x7C01, MakeScreenColor(8, 0, 255)}, {0x801F, MakeScreenColor(255, 0, 0)}, {0xFFFF, kTransparent}};
        Palette palette;
        for (const auto& [word, screen] : shown) {
            palette.colors[5] = ConsoleColor(word);
            QCOMPARE(ConsoleToScreen(palette, 5, kTransparent), screen);
        }
        // 4 is still 0 and 5 is 1, each component on its own.
        QCOMPARE(ScreenToConsole(MakeScreenColor(4, 5, 129)), ConsoleColor(0 | 1 << 5 | 16 << 10));
        // The 5-bit scale in 8 bits: n * 8.25, halves to even, at most 255.
        QCOMPARE(QList<int>(kComponentTo8.begin(), kComponentTo8.end()), (QList<int>{0, 8, 16, 25, 33, 41, 50, 58, 66, 74, 82, 91, 99, 107, 116, 124,
                                                                                    132, 140, 148, 157, 165, 173, 182, 190, 198, 206, 214, 223, 231, 239, 248, 255}));
        // A press hits a palette box on its edges too, and between boxes none.
        QCOMPARE(QList<int>({PaletteBoxAt(584, 72), PaletteBoxAt(597, 85), PaletteBoxAt(613, 197), PaletteBoxAt(599, 90)}), QList<int>({0, 0, 15, -1}));
        // Typed colours read blue, green, red, from their last six digits.
        const QList<QPair<QString, ScreenColor>> typed = {{"FF", 0xFF}, {"8000", 0x8000}, {" ff\t00 00", 0xFF0000}, {"1234567", 0x234567}, {"0x1F", 0}, {"zz", 0}};
        for (const auto& [answer, color] : typed)
            QCOMPARE(TypedColor(answer), color);
        // Every word comes back, and none shows as the pictures' background, which marks
        // transparent pixels.
        for (int word = 0; word <= 0x7FFF; ++word) {
            palette.colors[1] = ConsoleColor(word);
            const ScreenColor screen = ConsoleToScreen(palette, 1, kTransparent);
            if (screen == kPictureBackground || ScreenToConsole(screen) != word)
                QFAIL(qPrintable(QStringLiteral("word %1").arg(word, 4, 16)));
        }
    }

    void readAndWriteInPlace()
    {
        QByteArray image(300, '\0');
        for (int i = 0; i < image.size(); ++i) // neighbours differ, so a shifted or swapped word shows
            image[i] = char(i * 37 + 11);
        // Whole at an odd place and in the last 30 bytes; cut in a word, at the end and
        // before the start, where the missing bytes read as zero.
        const QList<QPair<int, bool>> places = {{133, true}, {270, true}, {285, false}, {300, false}, {-2, false}};
        TempImage t;
        QVERIFY(t.Open(image));
        for (const auto& [position, whole] : places) {
            Palette palette;
            palette.colors.fill(0x5A5A); // an edit of slot 0 lasts only until the next read
            QCOMPARE(ReadPalette(t.rom, t.at, palette, position), whole);
            const QByteArray stored = (position < 0 ? QByteArray() : image.mid(position)) + QByteArray(30, '\0');
            for (int slot = 1; slot <= kStoredColors; ++slot)
                QCOMPARE(palette.colors[size_t(slot)], BigEndian16(reinterpret_cast<const uint8_t*>(stored.data()) + 2 * slot - 2));
            QVERIFY(palette.colors[0] == kColorZeroWord && palette.colors[17] == kTransparentMarker);
        }
    }

    void match_data()
    {
        QTest::addColumn<QList<int>>("placed"); // slot, word, slot, word... over TestPalette
        QTest::addColumn<uint>("color");
        QTest::addColumn<int>("index");
        const QList<int> slot5{5, Word(10, 12, 14)};
        QTest::newRow("exact") << slot5 << uint(Shown(10, 12, 14)) << 5;
        QTest::newRow("all three one step above") << slot5 << uint(Shown(11, 13, 15)) << 5;
        QTest::newRow("one step below") << slot5 << uint(Shown(9, 12, 14)) << 0;
        QTest::newRow("lower slot wins") << QList<int>{7, 0x294A, 3, 0x294A} << uint(Shown(10, 10, 10)) << 3;
        QTest::newRow("exact beats a step lower") << QList<int>{3, 0x2949, 4, 0x294A} << uint(Shown(10, 10, 10)) << 4;
        QTest::newRow("colour of slot 0 stays 0") << QList<int>{4, 0x1084} << uint(Shown(4, 4, 4)) << 0;
        QTest::newRow("marked slot never matches") << QList<int>{2, 0x8000 | Word(10, 12, 14)} << uint(Shown(10, 12, 14)) << 0;
        QTest::newRow("black from slot 16 is 1") << QList<int>{} << uint(Shown(1, 0, 0)) << 1;
        QTest::newRow("black in slots 6 and 2") << QList<int>{6, 0, 2, 0} << uint(Shown(0, 0, 0)) << 2;
        // A component at 0 has no lower step; borrowing from the next component's bits
        // would reach these words.
        QTest::newRow("no borrow from green") << QList<int>{4, 0x001F} << uint(Shown(0, 1, 0)) << 1;
        QTest::newRow("no borrow into bit 15") << QList<int>{4, 0xFFE3, 5, 0xFFE2} << uint(Shown(3, 0, 0)) << 0;
        // The words the passes try for (11, 13, 15), in order; a lower slot must not let a
        // later pass win.
        const int tried[8] = {Word(11, 13, 15), Word(10, 13, 15), Word(10, 12, 15), Word(10, 12, 14),
                              Word(11, 12, 14), Word(10, 13, 14), Word(11, 12, 15), Word(11, 13, 14)};
        for (int pass = 1; pass < 8; ++pass)
            QTest::addRow("pass %d before pass %d", pass, pass + 1) << QList<int>{12, tried[pass - 1], 2, tried[pass]}
                                                                  << uint(Shown(11, 13, 15)) << 12;
    }

    void match()
    {
        QFETCH(QList<int>, placed);
        QFETCH(uint, color);
        QFETCH(int, index);
        Palette palette = TestPalette();
        for (int i = 0; i + 1 < placed.size(); i += 2)
            palette.colors[size_t(placed[i])] = ConsoleColor(placed[i + 1]);
        QCOMPARE(MatchPaletteIndex(palette, color), index);
    }

    void perceptualMatch()
    {
        Palette palette = TestPalette();
        palette.colors[3] = 0x8000 | Word(31, 0, 0); // a marked word is never chosen
        palette.colors[9] = Word(29, 1, 0);
        QCOMPARE(NearestPerceptualIndex(palette, MakeScreenColor(255, 0, 0)), 9);
        QCOMPARE(NearestPerceptualIndex(palette, SlotColor(5)), 5);
        QCOMPARE(NearestPerceptualIndex(palette, MakeScreenColor(0, 0, 0)), 16); // the fixed black
    }
};

QTEST_GUILESS_MAIN(TestPalettes)
#include "test_palette.moc"
