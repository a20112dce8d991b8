// Frames: reading them, rebuilding them from the frame image, their bytes, and saving
// them into the image with the table entry that points at them.
#include "art/save_art.h"
#include "art/frame_placement.h"
#include "library_fixture.h"
#include "view/frame_drawing.h"

#include <QtTest>

namespace {
constexpr int kOddLength = 0x300001; // appended frames start wherever the file ends
// {left, right, top, bottom}, then {startX, endX, y, pixels...} for each line.
using Values = QList<QList<int>>;

QByteArray Hex(const char* text) { return QByteArray::fromHex(text); }

// count lines of width pixels of index 7 from X -127, at Y 0, 1, 2...
QByteArray ManyLines(int count, int width, Values& values)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        bytes += Hex("81") + char(0x81 + width) + char(i) + '\0' + QByteArray(width, '\7');
        values.append(QList<int>{-127, -127 + width, i} + QList<int>(width, 7));
    }
    return bytes;
}

Values ValuesOf(const ArtFrame& frame, int lastLine)
{
    Values values{{frame.left, frame.right, frame.top, frame.bottom}};
    for (int i = 0; i <= lastLine; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        values.append({line.startX, line.endX, line.y});
        for (int k = 0; k < line.endX - line.startX; ++k)
            values.last().append(line.pixels[size_t(k)]);
    }
    return values;
}

// One string per row of a frame image at least the preview's size: '.' is the
// background, a hexadecimal digit that slot's colour, 'x' a colour no slot is near.
QImage Picture(const QStringList& rows)
{
    int width = kPreviewWidth;
    for (const QString& row : rows)
        width = std::max(width, int(row.size()));
    QImage image(width, std::max(kPreviewHeight, int(rows.size())), QImage::Format_RGB32);
    image.fill(ScreenToRgb(kPictureBackground));
    for (int y = 0; y < rows.size(); ++y)
        for (int x = 0; x < rows[y].size(); ++x)
            if (const QChar c = rows[y][x]; c != u'.')
                image.setPixel(x, y, ScreenToRgb(c == u'x' ? MakeScreenColor(255, 0, 255) : SlotColor(QString(c).toInt(nullptr, 16))));
    return image;
}

// A record full of an earlier frame's leftovers.
ArtFrame UsedFrame(int right, int bottom)
{
    ArtFrame frame{0x123456, -5, int16_t(right), -6, int16_t(bottom), {}, 42};
    frame.lines.fill({3, 9, -4, {}});
    return frame;
}

QStringList Runs(int count) { return {QStringLiteral("1.").repeated(count)}; } // of one pixel each

struct EncodeCase {
    QStringList rows;
    QPoint rightBottom;
    FrameFit fit = FrameFit::Fits;
    QByteArray bytes = {}; // checked when given
};
}
Q_DECLARE_METATYPE(EncodeCase)

class TestFrames : public QObject {
    Q_OBJECT
private slots:
    void readFrame_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<FrameRead>("result");
        QTest::addColumn<Values>("values");
        const QByteArray plain = Hex("0000000000000000"), end = Hex("0000");
        Values most{{0, 0, 0, 0}}, longest{{0, 0, 0, 0}};
        const QByteArray mostBytes = ManyLines(kFrameLineSlots, 0, most);
        QTest::newRow("two pixels left of and above the origin") << Hex("FFFE0001FF000000" "FE00FF00" "0304" "0000")
            << FrameRead::Complete << Values{{-2, 1, -1, 0}, {-2, 0, -1, 3, 4}};
        // Y words are 8.8 fixed point, to the nearest and halves to even: 0180 is 2, 0280 is
        // 2, FF80 is 0 and FE80 is -2.
        QTest::newRow("header extremes; zero start and end end only at a line's start")
            << Hex("80007FFF01800280" "00000300" "01030400AABB" "0000") << FrameRead::Complete
            << Values{{-32768, 32767, 2, 2}, {0, 0, 3}, {1, 3, 4, -86, -69}};
        QTest::newRow("line bytes 80 and 81; end before start")
            << plain + Hex("80810100" "8183FF80" "80FF" "0503FE80") + end << FrameRead::Complete
            << Values{{0, 0, 0, 0}, {128, -127, 1}, {-127, -125, 0, 128, -1}, {5, 3, -2}};
        QTest::newRow("101 lines") << plain + mostBytes + end << FrameRead::Complete << most;
        QTest::newRow("line of 101 pixels") << plain + ManyLines(1, 101, longest) + end << FrameRead::Complete << longest;
        QTest::newRow("first line's pixels cut") << Hex("0001000203000400" "00040000" "0102") << FrameRead::Cut
                                                 << Values{{1, 2, 3, 4}};
        QTest::newRow("more than 101 lines") << plain + mostBytes + Hex("81816500") + end << FrameRead::Cut << most;
    }

    void readFrame()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(FrameRead, result);
        QFETCH(Values, values);
        // A damaged frame ends the file; a whole one is followed by more data. The frame
        // starts behind 16 bytes of other data.
        TempImage t;
        QVERIFY(t.Open(QByteArray(16, '\xEE') + bytes + QByteArray(result == FrameRead::Cut ? 0 : 300, '\x11')));
        ArtFrame frame = UsedFrame(9, 9);
        QCOMPARE(ReadFrame(t.rom, t.at, frame, 16), result);
        QCOMPARE(ValuesOf(frame, frame.lastLine), values);
        if (result == FrameRead::Complete)
            QCOMPARE(t.at, 16 + bytes.size() - 2); // at the terminator
    }

    void encodeWriteRead_data()
    {
        QTest::addColumn<EncodeCase>("c");
        const FrameFit fits = FrameFit::Fits;
        QTest::newRow("two runs over two rows") << EncodeCase{
            {"115", ".3"}, {1, 0}, fits, Hex("FFFF0001FF000000" "FF03FF0001010500" "000200000300" "00000000" "0000")};
        QTest::newRow("no drawn pixel") << EncodeCase{{}, {5, -3}, fits, Hex("00050005FD00FD00" "00000000" "0000")};
        QTest::newRow("index 0 and unmatched colours are drawn as 0") << EncodeCase{
            {"10x.F"}, {4, 0}, fits, Hex("0000000400000000" "0004000001000000" "040600000F00" "00000000" "0000")};
        QTest::newRow("right and bottom stay, left and top follow") << EncodeCase{
            {"..1", "", ".2"}, {10, 20}, fits, Hex("0008000A12001400" "0A0C12000100" "090B14000200" "00000000" "0000")};
        QTest::newRow("left in all 16 bits") << EncodeCase{
            {QString(150, u'.') + u'4'}, {0, 0}, fits, Hex("FF6A000000000000" "000200000400" "00000000" "0000")};
        QTest::newRow("X from -127 to 128") << EncodeCase{{"11", QString(253, u'.') + "33"}, {127, 0}};
        QTest::newRow("100 runs") << EncodeCase{Runs(100), {71, 0}};
        QTest::newRow("101 runs") << EncodeCase{Runs(101), {71, 0}, FrameFit::TooManyRuns};
        QTest::newRow("run of 100") << EncodeCase{{QString(100, u'1')}, {50, 0}};
        QTest::newRow("run of 101") << EncodeCase{{QString(101, u'1')}, {50, 0}, FrameFit::RunTooLong};
        QTest::newRow("widening pixel beyond X 128") << EncodeCase{{"1"}, {127, 0}, FrameFit::XOutOfRange};
        QTest::newRow("end wrapping past 16 bits") << EncodeCase{{"1"}, {32767, 0}, FrameFit::XOutOfRange};
        QTest::newRow("top at Y -129") << EncodeCase{{"1", "1"}, {0, -128}, FrameFit::YOutOfRange};
    }

    void encodeWriteRead()
    {
        QFETCH(EncodeCase, c);
        const auto& [rows, rightBottom, fit, bytes] = c;
        ArtFrame frame = UsedFrame(rightBottom.x(), rightBottom.y()), copy = frame;
        QCOMPARE(EncodeFrame(frame, Picture(rows), TestPalette(), kPictureBackground), fit);
        if (fit != FrameFit::Fits) { // a refused frame leaves the record as it was
            QCOMPARE(ValuesOf(frame, frame.lastLine), ValuesOf(copy, copy.lastLine));
            return;
        }
        QCOMPARE(frame.romOffset, 0x123456); // the save keeps the new place in the table
        const QByteArray written = FrameBytes(copy = frame);
        if (!bytes.isEmpty())
            QCOMPARE(written.toHex(' '), bytes.toHex(' '));
        TempImage t;
        QVERIFY(t.Open(QByteArray(33, '\x5A') + written + QByteArray(100, '\x5A')));
        ArtFrame read;
        QCOMPARE(ReadFrame(t.rom, t.at, read, 33), FrameRead::Complete);
        // The empty line in front of the terminator reads as the end, unless it is the only one.
        QCOMPARE(ValuesOf(read, read.lastLine), ValuesOf(copy, std::max(copy.lastLine - 1, 0)));
    }

    void typedPosition()
    {
        // What was typed, and the position it names in a file of kOddLength bytes (-1: refused).
        const QList<QPair<QString, int>> cases = {
            {" \t1F\r\n00 00 ", 0x1F0000}, {"aBcDeX12", 0xABCDE}, {"0x1F", 0}, {"300001", kOddLength}, {"300002", -1},
            {"0000000000000000001", 1}, {"10000000000000001F0000", -1}, {"G1", -1}, {"-10", -1}, {QStringLiteral("\uFF11\u0663"), -1}};
        for (const auto& [answer, position] : cases) {
            QString error;
            QCOMPARE(TypedSavePosition(answer, kOddLength, error).value_or(-1), position);
            QCOMPARE(error.isEmpty(), position >= 0);
        }
        QString error; // however long the file, positions stop below the cartridge base
        QVERIFY(TypedSavePosition("1FFFFFF", 0x4000000, error) && !TypedSavePosition("2000000", 0x4000000, error));
        QVERIFY(AppendPosition(0x1FFFFFF, error) && !AppendPosition(0x2000000, error));
    }

    void placedAtAnOrigin()
    {
        // Cells land at the origin; left and top stay the old frame's where they lie above
        // and left of the pixels, and otherwise follow them.
        PixelGrid grid = MakePixelGrid(4, 3);
        grid.At(1, 0) = 5, grid.At(3, 2) = 7;
        for (const auto& [oldLeft, left] : {std::pair{-20, -20}, {9, -7}}) {
            ArtFrame current = UsedFrame(0, 0);
            current.left = int16_t(oldLeft);
            current.top = -30;
            PlacedPixels placed = PlaceAtOrigin(current, grid, {-8, -5});
            QCOMPARE(EncodeGrid(placed.placement, placed.pixels), FrameFit::Fits);
            const ArtFrame& frame = placed.placement;
            QCOMPARE(ValuesOf(frame, 1), (Values{{left, -5, -30, -3}, {-7, -6, -5, 5}, {-5, -4, -3, 7}}));
        }
    }
};

QTEST_GUILESS_MAIN(TestFrames)
#include "test_frames.moc"
