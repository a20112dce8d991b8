#include "exchange/uncompressed_art.h"
#include "view/frame_drawing.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
// The preview's background (240, 240, 240) matches slot 2, white slot 15; the other
// slots hold words no other colour in these tests reaches.
Palette ArtPalette()
{
    Palette palette;
    for (int slot = 1; slot < 16; ++slot)
        palette.colors[size_t(slot)] = ConsoleColor(slot | (slot << 10));
    palette.colors[0] = kColorZeroWord;
    palette.colors[2] = 0x77BD;
    palette.colors[15] = 0x7FFF;
    palette.colors[17] = kTransparentMarker;
    return palette;
}

// {x, y, slot} for art pixels, {offset, byte} for expected bytes.
using Triples = QList<QList<int>>;
using Pairs = QList<QPair<int, int>>;
}

class TestUncompressedArt : public QObject {
    Q_OBJECT

private slots:
    void tileSpan_data()
    {
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("span");
        const QList<QPair<int, int>> cases = {{0, 0}, {1, 0}, {2, 0}, {3, 1}, {5, 1}, {6, 2},
                                              {7, 2}, {8, 1}, {15, 3}, {60, 8}, {84, 11}};
        for (const auto& [maximum, span] : cases)
            QTest::addRow("%d", maximum) << maximum << span;
    }

    void tileSpan()
    {
        QFETCH(int, maximum);
        QFETCH(int, span);
        QCOMPARE(TileSpan(maximum), span);
    }

    void artBytes_data()
    {
        QTest::addColumn<Triples>("art");
        QTest::addColumn<int>("length");
        QTest::addColumn<Pairs>("bytes");
        QTest::newRow("empty") << Triples{} << 32 << Pairs{{0, 0x22}, {31, 0x22}};
        QTest::newRow("one pixel at (1, 0)") << Triples{{1, 0, 5}} << 32 << Pairs{{0, 0x25}, {1, 0x22}, {31, 0x22}};
        QTest::newRow("corner at (7, 7)") << Triples{{7, 7, 9}} << 3 * 3 * 32
                                          << Pairs{{31, 0x29}, {32, 0x22}, {287, 0x22}};
        QTest::newRow("extent per axis") << Triples{{8, 0, 9}, {0, 3, 9}} << 2 * 2 * 32
                                         << Pairs{{0, 0x22}, {12, 0x92}, {32, 0x92}};
        QTest::newRow("right edge") << Triples{{60, 0, 9}} << 9 * 32
                                    << Pairs{{226, 0x9F}, {225, 0x22}, {256, 0xFF}, {287, 0xFF}};
        QTest::newRow("bottom right corner") << Triples{{60, 84, 9}} << 9 * 12 * 32
                                             << Pairs{{3122, 0x9F}, {3126, 0xFF}, {2896, 0x22}, {3455, 0xFF}};
    }

    void artBytes()
    {
        QFETCH(Triples, art);
        QFETCH(int, length);
        QFETCH(Pairs, bytes);
        const Palette palette = ArtPalette();
        PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
        for (const QList<int>& pixel : art)
            SetSurfacePixel(preview, pixel[0], pixel[1], ConsoleToScreen(palette, pixel[2], kPictureBackground));
        const QByteArray result = UncompressedArtBytes(preview, palette, kPictureBackground);
        QCOMPARE(result.size(), length);
        for (const auto& [offset, byte] : bytes)
            QCOMPARE(uint8_t(result[offset]), uint8_t(byte));
    }

    void tplScale()
    {
        const int published[32] = {0,   0,   8,   16,  25,  33,  41,  50,  58,  66,  74,  82,  91,  99,  107, 116,
                                   124, 132, 140, 148, 157, 165, 173, 182, 190, 198, 206, 214, 223, 231, 239, 248};
        for (int n = 0; n < 32; ++n)
            QCOMPARE(int(TplComponent(n)), published[n]);
    }

    void tplColor_data()
    {
        QTest::addColumn<int>("word");
        QTest::addColumn<QList<int>>("rgb");
        QTest::newRow("colour zero") << 0x1084 << QList<int>{25, 25, 25};
        QTest::newRow("white") << 0x7FFF << QList<int>{248, 248, 248};
        QTest::newRow("black") << 0x0000 << QList<int>{0, 0, 0};
        QTest::newRow("components 1") << 0x0421 << QList<int>{0, 0, 0};
        QTest::newRow("components 2") << 0x0842 << QList<int>{8, 8, 8};
        QTest::newRow("transparent marker") << 0xFFFF << QList<int>{248, 248, 248};
        QTest::newRow("red, green, blue order") << 0x7C1F << QList<int>{248, 0, 248};
        QTest::newRow("green alone") << 0x03E0 << QList<int>{0, 248, 0};
    }

    void tplColor()
    {
        QFETCH(int, word);
        QFETCH(QList<int>, rgb);
        Palette palette;
        palette.colors[7] = ConsoleColor(word);
        const QByteArray bytes = TplPaletteBytes(palette);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(int(uint8_t(bytes[4 + 7 * 3 + i])), rgb[i]);
    }

    void tplLayout()
    {
        Palette palette;
        palette.colors.fill(0x7FFF); // slots 16 and 17 included: they are not written
        const QByteArray bytes = TplPaletteBytes(palette);
        QCOMPARE(bytes.size(), 772);
        QCOMPARE(bytes.left(4), QByteArray("TPL\0", 4));
        QCOMPARE(bytes.mid(4, 48), QByteArray(48, char(248)));
        QCOMPARE(bytes.mid(52), QByteArray(720, '\0'));
    }

    void writeWholeFile()
    {
        QTemporaryDir dir;
        const QString fileName = dir.filePath(QStringLiteral("art.dat"));
        QString errorText;
        QVERIFY(WriteWholeFile(fileName, QByteArray(5000, 'a'), errorText));
        QVERIFY(WriteWholeFile(fileName, QByteArray(32, 'b'), errorText));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray(32, 'b'));

        const QString missing = dir.filePath(QStringLiteral("none/art.dat"));
        QVERIFY(!WriteWholeFile(missing, QByteArray(32, 'c'), errorText));
        QVERIFY(errorText.contains(QStringLiteral("art.dat")));
        QVERIFY(!QFile::exists(missing));
    }
};

QTEST_GUILESS_MAIN(TestUncompressedArt)
#include "test_uncompressed_art.moc"
