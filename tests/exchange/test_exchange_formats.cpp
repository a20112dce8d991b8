// Bitmap files, uncompressed art and palette files.
#include "exchange/bitmap_files.h"
#include "exchange/bitmap_fixtures.h"
#include "exchange/picture_pixels.h"
#include "exchange/section_copy.h"
#include "exchange/uncompressed_art.h"
#include "library_fixture.h"
#include "view/frame_render.h"

#include <QtTest>

namespace {
// Three columns (an odd width) and two rows of indices, top row first.
const std::vector<int> kGrid = {0, 1, 15, 7, 3, 9};
QByteArray GridBitmap(BmpRows rows) { return FourBitBitmap(SixteenColors(), 3, 2, kGrid, rows); }

// Slots 2 and 5 show one colour.
Palette SharedColorPalette() { Palette palette = TestPalette(); palette.colors[5] = palette.colors[2]; return palette; }

// A row of pixels: indices into table, or, without a table, the colours themselves.
QImage PictureRow(const QList<uint>& pixels, const QList<QRgb>& table = {})
{
    QImage picture(int(pixels.size()), 1, table.isEmpty() ? QImage::Format_ARGB32 : QImage::Format_Indexed8);
    picture.setColorTable(table);
    for (int x = 0; x < picture.width(); ++x)
        picture.setPixel(x, 0, pixels[x]);
    return picture;
}

}

class TestExchangeFormats : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

    QString Written(const QByteArray& bytes)
    {
        const QString fileName = dir.filePath(QStringLiteral("in.bmp"));
        return WriteFileBytes(fileName, bytes) ? fileName : QString();
    }

private slots:
    void headerFieldsAndPixels()
    {
        // The bits per pixel at byte 28, low byte first; bytes past the end read as 0.
        QCOMPARE(BitmapDepth(Written(QByteArray(28, 'x') + QByteArray("\x04\x01", 2))), 0x104);
        QCOMPARE(BitmapDepth(Written(QByteArray(28, 'x') + '\x04')), 4);
        QCOMPARE(BitmapDepth(Written(QByteArray(28, '\x04'))), 0);
        // Colour table entries from byte 54 are blue, green, red, unused, for slots 0-15.
        const QByteArray entries = QByteArray(54, 'x') + QByteArray::fromHex("0000FF00" "FFFFFF00" "08080800" "040404AA" "00FF0000");
        Palette palette;
        palette.colors.fill(0x5555);
        ReadBitmapPalette(palette, Written(entries + QByteArray(40, '\0') + QByteArray::fromHex("FF000000")));
        QCOMPARE(QList<int>(palette.colors.begin(), palette.colors.end()),
                 (QList<int>{0x001F, 0x7FFF, 0x0421, 0, 0x03E0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x7C00, 0x5555, 0x5555}));
    }

    void loadRefusals_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        auto with = [](QByteArray bytes, int offset, quint32 value) { SetField(bytes, offset, value, 4); return bytes; };
        const QByteArray grid = GridBitmap(BmpRows::BottomUp);
        const QByteArray wide = Encoded(QImage(50, 40, QImage::Format_RGB32));
        QTest::newRow("last row cut") << grid.chopped(2);
        QTest::newRow("run length cut") << GridBitmap(BmpRows::RunLength).chopped(4);
        QTest::newRow("24-bit cut") << wide.left(wide.size() / 2);
        QTest::newRow("pixels behind the end") << with(grid, 10, 5000);
        QTest::newRow("side too long") << with(grid, 18, 16385);
        QTest::newRow("longer than declared") << grid + QByteArray(2 * 1024 * 1024, '\0');
        QTest::newRow("picture of another kind") << Encoded(QImage(5, 3, QImage::Format_RGB32), "png");
    }

    void loadRefusals()
    {
        QFETCH(QByteArray, bytes);
        const QImage before(5, 3, QImage::Format_Mono);
        QImage picture = before;
        QString errorText;
        QVERIFY(!LoadBitmapPicture(Written(bytes), picture, errorText));
        QVERIFY(errorText.contains(QStringLiteral("in.bmp")));
        QCOMPARE(picture, before); // as it was
    }

    void picturePixels_data()
    {
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<QList<int>>("cells");
        QTest::addColumn<int>("inexact");
        const QList<QRgb> rip = IndexedFramePicture({}, SharedColorPalette()).colorTable();
        // Rip's table, or as here the start of it, keeps the indices.
        QTest::newRow("rip's colour table") << PictureRow({5, 2, 15}, rip.mid(0, 16)) << QList<int>{5, 2, 15} << 0;
        // Exact colours, half transparent, background, then (-3, -4, 0) and (0, -3, 0) from slot 9.
        QTest::newRow("RGB") << PictureRow({rip[16], rip[5], (rip[9] & 0xFFFFFF) | 0x7F000000, 0xFFF0F0F0, rip[9] - 0x30400, rip[9] - 0x300})
                             << QList<int>{16, 2, -1, -1, 9, 9} << 2;
    }

    void picturePixels()
    {
        QFETCH(QImage, picture);
        QFETCH(QList<int>, cells);
        QFETCH(int, inexact);
        QString errorText;
        const PicturePixelsRead read = PicturePixels(picture, SharedColorPalette(), {}, errorText).value();
        QCOMPARE(QList<int>(read.grid.cells.begin(), read.grid.cells.end()), cells);
        QCOMPARE(read.inexactPixels, inexact);
        QCOMPARE(read.worstDistance, inexact ? 5.0 : 0.0);
    }

    void gridRounding()
    {
        // The last tile for the art's largest coordinate: (max + max mod 8) / 8, halves to even.
        const int spans[][2] = {{0, 0}, {2, 0}, {3, 1}, {6, 2}, {7, 2}, {8, 1}, {60, 8}, {84, 11}};
        for (const auto& [maximum, span] : spans)
            QCOMPARE(TileSpan(maximum), span);
        // The remainder takes the position's sign, so negative positions move towards 0.
        const int snaps[][3] = {{7, 3, 6}, {6, 3, 6}, {4, 1, 4}, {-7, 3, -6}, {-2, 3, 0}};
        for (const auto& [position, zoom, snapped] : snaps)
            QCOMPARE(SnapToGrid(position, zoom), snapped);
    }

    void artBytes()
    {
        Palette palette = TestPalette();
        palette.colors[2] = 0x77BD;  // the preview's background (240, 240, 240)
        palette.colors[15] = 0x7FFF; // white, what positions beyond the preview match
        // x, y, slot of each pixel drawn; the length; offset, byte, offset, byte...
        const QList<std::tuple<QList<int>, int, QList<int>>> cases = {
            {{}, 32, {0, 0x22, 31, 0x22}},
            {{1, 0, 5}, 32, {0, 0x25, 1, 0x22, 31, 0x22}},
            {{7, 7, 9}, 3 * 3 * 32, {31, 0x29, 32, 0x22, 287, 0x22}},
            {{8, 0, 9, 0, 3, 9}, 2 * 2 * 32, {0, 0x22, 12, 0x92, 32, 0x92}},
            {{60, 84, 9}, 9 * 12 * 32, {3122, 0x9F, 3126, 0xFF, 2896, 0x22, 3455, 0xFF}}};
        for (const auto& [art, length, bytes] : cases) {
            PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
            for (int i = 0; i + 2 < art.size(); i += 3)
                SetSurfacePixel(preview, art[i], art[i + 1], ConsoleToScreen(palette, art[i + 2], kPictureBackground));
            const QByteArray result = UncompressedArtBytes(preview, palette, kPictureBackground);
            QCOMPARE(result.size(), length);
            for (int i = 0; i + 1 < bytes.size(); i += 2)
                QCOMPARE(uint8_t(result[bytes[i]]), uint8_t(bytes[i + 1]));
        }
    }

    void tplPalette()
    {
        // One 8.25 step below the screen's scale: 0 and 1 give 0, 2 gives 8, 31 gives 248.
        QCOMPARE(QList<int>({TplComponent(0), TplComponent(1), TplComponent(2), TplComponent(31)}), QList<int>({0, 0, 8, 248}));
        Palette palette;
        palette.colors.fill(0x7FFF); // slots 16 and 17 are not written
        palette.colors[7] = Word(31, 2, 0);
        QCOMPARE(TplPaletteBytes(palette), QByteArray("TPL\0", 4) + QByteArray(21, char(248)) + QByteArray::fromHex("F80800")
                                               + QByteArray(24, char(248)) + QByteArray(720, '\0'));
    }
};

QTEST_GUILESS_MAIN(TestExchangeFormats)
#include "test_exchange_formats.moc"
