// Rebuilding a frame from the frame image and writing its bytes.
#include "art/frame_encoder.h"
#include "rom_builder.h"
#include "view/frame_drawing.h"
#include "view/picture_surface.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
ConsoleColor Word(int red, int green, int blue) { return ConsoleColor(red | green << 5 | blue << 10); }

// Fifteen different colours, none within a step of another.
Palette TestPalette()
{
    Palette palette;
    palette.colors[0] = kColorZeroWord;
    for (int slot = 1; slot <= kStoredColors; ++slot)
        palette.colors[size_t(slot)] = Word(2 * slot, 31 - slot, slot);
    palette.colors[17] = kTransparentMarker;
    return palette;
}

// One string per image row: '.' is the background, a hexadecimal digit the colour
// of that palette slot, 'x' a colour no slot comes near.
QImage Picture(const QStringList& rows)
{
    const Palette palette = TestPalette();
    int width = kPreviewWidth;
    for (const QString& row : rows)
        width = std::max(width, int(row.size()));
    QImage image(width, std::max(kPreviewHeight, int(rows.size())), QImage::Format_RGB32);
    image.fill(ScreenToRgb(kPictureBackground));
    for (int y = 0; y < rows.size(); ++y)
        for (int x = 0; x < rows[y].size(); ++x) {
            const QChar c = rows[y][x];
            if (c == u'x')
                image.setPixel(x, y, ScreenToRgb(MakeScreenColor(255, 0, 255)));
            else if (c != u'.')
                image.setPixel(x, y, ScreenToRgb(ConsoleToScreen(palette, QString(c).toInt(nullptr, 16), 0)));
        }
    return image;
}

FrameFit Encode(ArtFrame& frame, const QStringList& rows)
{
    return EncodeFrame(frame, Picture(rows), TestPalette(), kPictureBackground);
}

ArtFrame FrameWith(int right, int bottom)
{
    ArtFrame frame;
    frame.right = int16_t(right);
    frame.bottom = int16_t(bottom);
    return frame;
}

// A record full of an earlier frame's leftovers.
ArtFrame UsedFrame(int right, int bottom)
{
    ArtFrame frame = FrameWith(right, bottom);
    frame.romOffset = 0x123456;
    frame.left = -5;
    frame.top = -6;
    for (int i = 0; i < kFrameLineSlots; ++i) {
        frame.lines[size_t(i)] = {int16_t(i), int16_t(i + 3), int16_t(-i), {}};
        frame.lines[size_t(i)].pixels.fill(int16_t(7));
    }
    frame.lastLine = 42;
    return frame;
}

bool SameFrame(const ArtFrame& a, const ArtFrame& b)
{
    if (a.romOffset != b.romOffset || a.left != b.left || a.right != b.right || a.top != b.top
        || a.bottom != b.bottom || a.lastLine != b.lastLine)
        return false;
    for (size_t i = 0; i < a.lines.size(); ++i) {
        const FrameLine& p = a.lines[i];
        const FrameLine& q = b.lines[i];
        if (p.startX != q.startX || p.endX != q.endX || p.y != q.y || p.pixels != q.pixels)
            return false;
    }
    return true;
}

// {startX, endX, y, pixels...} for each line slot up to lastLine.
QList<QList<int>> LinesOf(const ArtFrame& frame, int last)
{
    QList<QList<int>> lines;
    for (int i = 0; i <= last; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        QList<int> values{line.startX, line.endX, line.y};
        for (int k = 0; k < line.endX - line.startX; ++k)
            values.append(line.pixels[size_t(k)]);
        lines.append(values);
    }
    return lines;
}

QList<int> HeaderOf(const ArtFrame& frame) { return {frame.left, frame.right, frame.top, frame.bottom}; }

QByteArray Hex(const char* text) { return QByteArray::fromHex(text); }

// count runs of one pixel, 25 to a row.
QStringList Dots(int count)
{
    QStringList rows;
    for (int done = 0; done < count; done += 25)
        rows.append(QStringLiteral("1.").repeated(std::min(25, count - done)));
    return rows;
}
}

class TestFrameEncoder : public QObject {
    Q_OBJECT
private slots:
    void encode_data();
    void encode();
    void frameBytes_data();
    void frameBytes();
    void encodingIsDeterministic();
    void writeThenRead_data();
    void writeThenRead();
    void framesThatDoNotFit_data();
    void framesThatDoNotFit();
};

void TestFrameEncoder::encode_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("bottom");
    QTest::addColumn<QList<int>>("header");
    QTest::addColumn<QList<QList<int>>>("lines"); // the runs, then the empty line

    QTest::newRow("two runs over two rows") << QStringList{"115", ".3"} << 1 << 0 << QList<int>{-1, 1, -1, 0}
                                    << QList<QList<int>>{{-1, 2, -1, 1, 1, 5}, {0, 1, 0, 3}, {0, 0, 0}};
    QTest::newRow("no drawn pixel") << QStringList{} << 5 << 3 << QList<int>{5, 5, 3, 3}
                                    << QList<QList<int>>{{0, 0, 0}};
    QTest::newRow("background splits a run") << QStringList{"1.2"} << 5 << 0 << QList<int>{3, 5, 0, 0}
                                              << QList<QList<int>>{{3, 4, 0, 1}, {5, 6, 0, 2}, {0, 0, 0}};
    QTest::newRow("index 0 is drawn") << QStringList{"101"} << 2 << 0 << QList<int>{0, 2, 0, 0}
                                      << QList<QList<int>>{{0, 3, 0, 1, 0, 1}, {0, 0, 0}};
    QTest::newRow("unmatched colour is index 0") << QStringList{"1xF"} << 2 << 0 << QList<int>{0, 2, 0, 0}
                                                 << QList<QList<int>>{{0, 3, 0, 1, 0, 15}, {0, 0, 0}};
    QTest::newRow("right and bottom stay, left and top follow")
        << QStringList{"..1", "", ".2"} << 10 << 20 << QList<int>{8, 10, 18, 20}
        << QList<QList<int>>{{10, 11, 18, 1}, {9, 10, 20, 2}, {0, 0, 0}};
    QTest::newRow("image at the bottom right corner")
        << QStringList{QString(), QString(60, u'.') + u'7'} + QStringList(82, QString())
               + QStringList{QString(60, u'.') + u'9'}
        << 0 << 0 << QList<int>{-60, 0, -84, 0} << QList<QList<int>>{{0, 1, -83, 7}, {0, 1, 0, 9}, {0, 0, 0}};
}

void TestFrameEncoder::encode()
{
    QFETCH(QStringList, rows);
    QFETCH(int, right);
    QFETCH(int, bottom);
    QFETCH(QList<int>, header);
    QFETCH(QList<QList<int>>, lines);

    ArtFrame frame = UsedFrame(right, bottom);
    QCOMPARE(Encode(frame, rows), FrameFit::Fits);
    QCOMPARE(HeaderOf(frame), header);
    QCOMPARE(frame.lastLine, lines.size() - 1);
    QCOMPARE(LinesOf(frame, frame.lastLine), lines);
    QCOMPARE(frame.romOffset, 0x123456); // the save keeps the new place in the table
}

void TestFrameEncoder::frameBytes_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("bottom");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("two runs over two rows") << QStringList{"115", ".3"} << 1 << 0
                                    << Hex("FFFF0001FF000000" "FF03FF0001010500" "000200000300" "00000000" "0000");
    QTest::newRow("no drawn pixel") << QStringList{} << 5 << -3 << Hex("00050005FD00FD00" "00000000" "0000");
    QTest::newRow("width 1 is written as 2") << QStringList{"2"} << -1 << 1
                                             << Hex("FFFFFFFF01000100" "FF0101000200" "00000000" "0000");
    QTest::newRow("width 2 stays") << QStringList{"23"} << 1 << 0
                                   << Hex("0000000100000000" "000200000203" "00000000" "0000");
    QTest::newRow("left in all 16 bits") << QStringList{QString(150, u'.') + u'4'} << 0 << 0
                                         << Hex("FF6A000000000000" "000200000400" "00000000" "0000");
}

void TestFrameEncoder::frameBytes()
{
    QFETCH(QStringList, rows);
    QFETCH(int, right);
    QFETCH(int, bottom);
    QFETCH(QByteArray, bytes);
    ArtFrame frame = FrameWith(right, bottom);
    QCOMPARE(Encode(frame, rows), FrameFit::Fits);
    QCOMPARE(FrameBytes(frame).toHex(' '), bytes.toHex(' '));
}

void TestFrameEncoder::encodingIsDeterministic()
{
    const QStringList rows{"..12.34", "5", "", "6789ABCDEF"};
    ArtFrame fresh = FrameWith(30, 40);
    ArtFrame used = UsedFrame(30, 40);
    QCOMPARE(Encode(fresh, rows), FrameFit::Fits);
    QCOMPARE(Encode(used, rows), FrameFit::Fits);
    const QByteArray first = FrameBytes(fresh);
    QCOMPARE(FrameBytes(used), first);
    QCOMPARE(Encode(fresh, rows), FrameFit::Fits);
    QCOMPARE(FrameBytes(fresh), first);
}

void TestFrameEncoder::writeThenRead_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("bottom");

    QTest::newRow("two runs over two rows") << QStringList{"115", ".3"} << 1 << 0;
    QTest::newRow("no drawn pixel") << QStringList{} << -7 << 9;
    QTest::newRow("X from -127") << QStringList{QStringLiteral("11") + QString(96, u'.') + QStringLiteral("22")}
                                 << -28 << 0;
    QTest::newRow("X up to 128") << QStringList{"1", "..33"} << 127 << 0;
    QTest::newRow("Y from -128 to 127")
        << QStringList{"1"} + QStringList(254, QString()) + QStringList{"2"} << 0 << 127;
    QStringList shape;
    for (int r = 0; r < 85; ++r) {
        QString row;
        for (int c = 0; c < 61; ++c)
            row.append(std::abs(c - 30) + std::abs(r - 42) < 40 ? QString::number((r * 7 + c) % 16, 16) : QStringLiteral("."));
        shape.append(row);
    }
    QTest::newRow("full preview") << shape << 30 << 42;
}

void TestFrameEncoder::writeThenRead()
{
    QFETCH(QStringList, rows);
    QFETCH(int, right);
    QFETCH(int, bottom);
    ArtFrame frame = FrameWith(right, bottom);
    QCOMPARE(Encode(frame, rows), FrameFit::Fits);
    const ArtFrame encoded = frame;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    const QByteArray before(0x8000, '\x5A');
    QVERIFY(WriteFileBytes(path, before));
    RomFile rom;
    QString error;
    QVERIFY(OpenRomFile(rom, path, error));
    int32_t at = 0;
    QVERIFY(WriteFrame(rom, at, frame, 33, error));
    ArtFrame copy = encoded;
    const QByteArray bytes = FrameBytes(copy);
    QCOMPARE(at, 33 + bytes.size() - 2);

    ArtFrame read;
    QCOMPARE(ReadFrame(rom, at, read, 33), FrameRead::Complete);
    CloseRomFile(rom);
    QCOMPARE(HeaderOf(read), HeaderOf(encoded));
    // The empty line in front of the terminator reads as the end, unless it is the only one.
    const int runs = std::max<int>(encoded.lastLine, 1);
    QCOMPARE(read.lastLine, runs - 1);
    QCOMPARE(LinesOf(read, read.lastLine), LinesOf(frame, runs - 1));
    for (int i = 0; i < encoded.lastLine; ++i) {
        const FrameLine& was = encoded.lines[size_t(i)];
        const FrameLine& now = read.lines[size_t(i)];
        const int width = was.endX - was.startX;
        QCOMPARE(now.endX, int16_t(was.endX + width % 2));
        if (width % 2)
            QCOMPARE(now.pixels[size_t(width)], int16_t(0));
    }

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray after = file.readAll();
    QCOMPARE(after.size(), before.size());
    QCOMPARE(after.mid(33, bytes.size()), bytes);
    QCOMPARE(after.left(33) + after.mid(33 + bytes.size()), before.left(before.size() - bytes.size()));
}

void TestFrameEncoder::framesThatDoNotFit_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("bottom");
    QTest::addColumn<FrameFit>("fit");

    QTest::newRow("100 runs") << Dots(100) << 0 << 0 << FrameFit::Fits;
    QTest::newRow("101 runs") << Dots(101) << 0 << 0 << FrameFit::TooManyRuns;
    QTest::newRow("run of 100") << QStringList{QString(100, u'1')} << 50 << 0 << FrameFit::Fits;
    QTest::newRow("run of 101") << QStringList{QString(101, u'1')} << 50 << 0 << FrameFit::RunTooLong;
    QTest::newRow("even run ending at X 127") << QStringList{"11"} << 127 << 0 << FrameFit::Fits;
    QTest::newRow("widening pixel beyond X 128") << QStringList{"1"} << 127 << 0 << FrameFit::XOutOfRange;
    QTest::newRow("run ending beyond X 128") << QStringList{"11"} << 128 << 0 << FrameFit::XOutOfRange;
    QTest::newRow("start at X -127") << QStringList{"11"} << -126 << 0 << FrameFit::Fits;
    QTest::newRow("start at X -128") << QStringList{"11"} << -127 << 0 << FrameFit::XOutOfRange;
    QTest::newRow("right at the 16-bit limit") << QStringList{"1"} << 32767 << 0 << FrameFit::XOutOfRange;
    QTest::newRow("left below 16 bits") << QStringList{"..1"} << -32767 << 0 << FrameFit::XOutOfRange;
    QTest::newRow("no pixel, right far out") << QStringList{} << 32767 << 0 << FrameFit::Fits;
    QTest::newRow("bottom at Y 127") << QStringList{"1"} << 0 << 127 << FrameFit::Fits;
    QTest::newRow("bottom at Y 128") << QStringList{"1"} << 0 << 128 << FrameFit::YOutOfRange;
    QTest::newRow("top at Y -128") << QStringList{"1", "1"} << 0 << -127 << FrameFit::Fits;
    QTest::newRow("top at Y -129") << QStringList{"1", "1"} << 0 << -128 << FrameFit::YOutOfRange;
    QTest::newRow("no pixel, bottom far out") << QStringList{} << 0 << 200 << FrameFit::YOutOfRange;
}

void TestFrameEncoder::framesThatDoNotFit()
{
    QFETCH(QStringList, rows);
    QFETCH(int, right);
    QFETCH(int, bottom);
    QFETCH(FrameFit, fit);
    ArtFrame frame = UsedFrame(right, bottom);
    const ArtFrame before = frame;
    QCOMPARE(Encode(frame, rows), fit);
    if (fit != FrameFit::Fits) {
        QVERIFY(SameFrame(frame, before));
        QVERIFY(!FrameFitText(fit).isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestFrameEncoder)
#include "test_frame_encoder.moc"
