// Turning a screen colour back into a palette index.
#include "palette/color_match.h"

#include <QtTest>

namespace {
ConsoleColor Word(int red, int green, int blue) { return ConsoleColor(red | green << 5 | blue << 10); }
ScreenColor Shown(int red, int green, int blue) { return WordToScreen(Word(red, green, blue)); }

// Slot s holds (31, s, 31): far from every colour the tests look for.
Palette FarPalette()
{
    Palette palette;
    palette.colors[0] = kColorZeroWord;
    for (int slot = 1; slot <= kStoredColors; ++slot)
        palette.colors[size_t(slot)] = Word(31, slot, 31);
    palette.colors[17] = kTransparentMarker;
    return palette;
}

struct Placed {
    int slot;
    int word;
};
}
Q_DECLARE_METATYPE(QList<Placed>)

class TestColorMatch : public QObject {
    Q_OBJECT
private slots:
    void match_data();
    void match();
    void earlierPassWins_data();
    void earlierPassWins();
    void everyStoredColorFindsItsSlot();
};

void TestColorMatch::match_data()
{
    QTest::addColumn<QList<Placed>>("placed"); // changes to FarPalette
    QTest::addColumn<uint>("color");
    QTest::addColumn<int>("index");

    const QList<Placed> slot5{{5, Word(10, 12, 14)}};
    QTest::newRow("exact") << slot5 << uint(Shown(10, 12, 14)) << 5;
    QTest::newRow("red one step above") << slot5 << uint(Shown(11, 12, 14)) << 5;
    QTest::newRow("red, green above") << slot5 << uint(Shown(11, 13, 14)) << 5;
    QTest::newRow("all three above") << slot5 << uint(Shown(11, 13, 15)) << 5;
    QTest::newRow("green, blue above") << slot5 << uint(Shown(10, 13, 15)) << 5;
    QTest::newRow("red, blue above") << slot5 << uint(Shown(11, 12, 15)) << 5;
    QTest::newRow("green above") << slot5 << uint(Shown(10, 13, 14)) << 5;
    QTest::newRow("blue above") << slot5 << uint(Shown(10, 12, 15)) << 5;
    QTest::newRow("two steps above") << slot5 << uint(Shown(12, 12, 14)) << 0;
    QTest::newRow("one step below") << QList<Placed>{{5, 0x294A}} << uint(Shown(9, 10, 10)) << 0;
    QTest::newRow("halfway screen value") << slot5 << uint(MakeScreenColor(86, 99, 119)) << 5;

    QTest::newRow("lower slot wins") << QList<Placed>{{7, 0x294A}, {3, 0x294A}} << uint(Shown(10, 10, 10)) << 3;
    QTest::newRow("neighbours 0x294A and 0x2949 (3)") << QList<Placed>{{3, 0x294A}, {4, 0x2949}}
                                                      << uint(Shown(10, 10, 10)) << 3;
    QTest::newRow("neighbours 0x294A and 0x2949 (4)") << QList<Placed>{{3, 0x294A}, {4, 0x2949}}
                                                      << uint(Shown(9, 10, 10)) << 4;
    QTest::newRow("colour of slot 0 stays 0") << QList<Placed>{{4, 0x1084}} << uint(Shown(4, 4, 4)) << 0;
    QTest::newRow("marked slot never matches") << QList<Placed>{{2, 0x8000 | Word(10, 12, 14)}}
                                               << uint(Shown(10, 12, 14)) << 0;
    QTest::newRow("slot 17 is not searched") << QList<Placed>{{17, Word(10, 12, 14)}} << uint(Shown(10, 12, 14)) << 0;

    // Black and the always-zero slot 16
    QTest::newRow("black without a black slot") << QList<Placed>{} << uint(MakeScreenColor(0, 0, 0)) << 1;
    QTest::newRow("black in slot 6") << QList<Placed>{{6, 0}} << uint(MakeScreenColor(0, 0, 0)) << 6;
    QTest::newRow("black in slots 6 and 2") << QList<Placed>{{6, 0}, {2, 0}} << uint(MakeScreenColor(0, 0, 0)) << 2;
    QTest::newRow("(8,0,0) exact") << QList<Placed>{{7, 0x0001}, {3, 0}} << uint(MakeScreenColor(8, 0, 0)) << 7;
    QTest::newRow("(8,0,0) reaches black") << QList<Placed>{{9, 0}} << uint(MakeScreenColor(8, 0, 0)) << 9;
    QTest::newRow("(8,0,0) reaches slot 16") << QList<Placed>{} << uint(MakeScreenColor(8, 0, 0)) << 1;

    // A component at 0 has no lower step; borrowing from the next component's bits
    // would reach these words.
    QTest::newRow("no borrow from green") << QList<Placed>{{4, 0x001F}} << uint(Shown(0, 1, 0)) << 1;
    QTest::newRow("no borrow from blue") << QList<Placed>{{4, 0x13FF}} << uint(Shown(0, 0, 5)) << 0;
    QTest::newRow("no borrow into bit 15") << QList<Placed>{{4, 0xFFE3}, {5, 0xFFE2}} << uint(Shown(3, 0, 0)) << 0;
    QTest::newRow("no -1 reaching a stored marker") << QList<Placed>{{3, 0xFFFF}} << uint(Shown(0, 5, 5)) << 0;
    QTest::newRow("no borrow in pass 3") << QList<Placed>{{4, 0xFFE1}} << uint(Shown(2, 0, 0)) << 0;
}

void TestColorMatch::match()
{
    QFETCH(QList<Placed>, placed);
    QFETCH(uint, color);
    QFETCH(int, index);
    Palette palette = FarPalette();
    for (const Placed& p : placed)
        palette.colors[size_t(p.slot)] = ConsoleColor(p.word);
    QCOMPARE(MatchPaletteIndex(palette, color), index);
}

void TestColorMatch::earlierPassWins_data()
{
    QTest::addColumn<int>("pass");
    for (int pass = 1; pass < 8; ++pass)
        QTest::addRow("pass %d before pass %d", pass, pass + 1) << pass;
}

void TestColorMatch::earlierPassWins()
{
    QFETCH(int, pass);
    // The words the eight passes try for the colour (11, 13, 15), in order.
    const ConsoleColor tried[8] = {Word(11, 13, 15), Word(10, 13, 15), Word(10, 12, 15), Word(10, 12, 14),
                                   Word(11, 12, 14), Word(10, 13, 14), Word(11, 12, 15), Word(11, 13, 14)};
    Palette palette = FarPalette();
    palette.colors[12] = tried[pass - 1];
    palette.colors[2] = tried[pass]; // a lower slot must not let the later pass win
    QCOMPARE(MatchPaletteIndex(palette, Shown(11, 13, 15)), 12);
}

void TestColorMatch::everyStoredColorFindsItsSlot()
{
    const Palette palette = FarPalette();
    for (int slot = 1; slot <= kStoredColors; ++slot)
        QCOMPARE(MatchPaletteIndex(palette, ConsoleToScreen(palette, slot, 0)), slot);
}

QTEST_GUILESS_MAIN(TestColorMatch)
#include "test_color_match.moc"
