// Reading frames: header values, runs, the terminator, and frames that are damaged
// or lie outside the file.
#include "art/art_frame.h"
#include "rom_builder.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {
constexpr int kFrameAt = 16; // the frame follows 16 bytes of other data

QByteArray Bytes(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (int v : values)
        bytes.append(char(v));
    return bytes;
}

QByteArray Word(int value) { return Bytes({value >> 8, value}); }

QByteArray Header(int left, int right, int topWord, int bottomWord)
{
    return Word(left) + Word(right) + Word(topWord) + Word(bottomWord);
}

QByteArray Line(int startByte, int endByte, int yWord, const QByteArray& pixels = {})
{
    return Bytes({startByte, endByte}) + Word(yWord) + pixels;
}

const QByteArray kEnd(2, '\0');

// {startX, endX, y, pixels...} for each line in use.
QList<QList<int>> LinesOf(const ArtFrame& frame)
{
    QList<QList<int>> lines;
    for (int i = 0; i <= frame.lastLine; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        QList<int> values{line.startX, line.endX, line.y};
        for (int k = 0; k < line.endX - line.startX; ++k)
            values.append(line.pixels[size_t(k)]);
        lines.append(values);
    }
    return lines;
}

// count lines of no pixels, start and end 1, at Y 0, 1, 2, ...
QByteArray EmptyLines(int count, QList<QList<int>>* expected = nullptr)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        bytes += Line(1, 1, i << 8);
        if (expected)
            expected->append({1, 1, i});
    }
    return bytes;
}

QByteArray Run(int width, int first)
{
    QByteArray pixels;
    for (int k = 0; k < width; ++k)
        pixels.append(char(first + k));
    return pixels;
}

QList<int> RunValues(int startX, int endX, int y, int width, int first)
{
    QList<int> values{startX, endX, y};
    for (int k = 0; k < width; ++k)
        values.append(first + k);
    return values;
}

bool OpenImage(const QTemporaryDir& dir, const QByteArray& image, RomFile& rom)
{
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    QString error;
    return WriteFileBytes(path, image) && OpenRomFile(rom, path, error);
}
}

class TestFrameReader : public QObject {
    Q_OBJECT
private slots:
    void lineByte_data();
    void lineByte();
    void fixedPoint_data();
    void fixedPoint();
    void readFrame_data();
    void readFrame();
    void offsetsOutsideTheFile_data();
    void offsetsOutsideTheFile();
};

void TestFrameReader::lineByte_data()
{
    QTest::addColumn<int>("byte");
    QTest::addColumn<int>("value");
    QTest::newRow("00") << 0x00 << 0;
    QTest::newRow("7F") << 0x7F << 127;
    QTest::newRow("80 is +128") << 0x80 << 128;
    QTest::newRow("81") << 0x81 << -127;
    QTest::newRow("FF") << 0xFF << -1;
}

void TestFrameReader::lineByte()
{
    QFETCH(int, byte);
    QFETCH(int, value);
    QCOMPARE(int(LineByteValue(uint8_t(byte))), value);
}

void TestFrameReader::fixedPoint_data()
{
    QTest::addColumn<int>("word");
    QTest::addColumn<int>("value");
    QTest::newRow("0180: 1.5 to 2") << 0x0180 << 2;
    QTest::newRow("0280: 2.5 to 2") << 0x0280 << 2;
    QTest::newRow("0080: 0.5 to 0") << 0x0080 << 0;
    QTest::newRow("017F") << 0x017F << 1;
    QTest::newRow("0181") << 0x0181 << 2;
    QTest::newRow("FF80: -0.5 to 0") << 0xFF80 << 0;
    QTest::newRow("FE80: -1.5 to -2") << 0xFE80 << -2;
    QTest::newRow("FF7F") << 0xFF7F << -1;
    QTest::newRow("FE00") << 0xFE00 << -2;
    QTest::newRow("8000") << 0x8000 << -128;
    QTest::newRow("7FFF") << 0x7FFF << 128;
    QTest::newRow("FFFF") << 0xFFFF << 0;
}

void TestFrameReader::fixedPoint()
{
    QFETCH(int, word);
    QFETCH(int, value);
    QCOMPARE(int(FixedPointValue(uint16_t(word))), value);
}

void TestFrameReader::readFrame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<FrameRead>("result");
    QTest::addColumn<QList<int>>("header"); // left, right, top, bottom; empty when cut before it ends
    QTest::addColumn<QList<QList<int>>>("lines");
    QTest::addColumn<int>("terminator"); // where readPosition ends, from the frame's start

    QTest::newRow("two pixels left of and above the origin") << Bytes({0xFF, 0xFE, 0x00, 0x01, 0xFF, 0x00, 0x00, 0x00, 0xFE, 0x00,
                                              0xFF, 0x00, 0x03, 0x04, 0x00, 0x00})
                                    << FrameRead::Complete << QList<int>{-2, 1, -1, 0}
                                    << QList<QList<int>>{{-2, 0, -1, 3, 4}} << 14;
    QTest::newRow("frame without pixels") << Header(0, 0, 0, 0) + Line(0, 0, 0) + kEnd << FrameRead::Complete
                                          << QList<int>{0, 0, 0, 0} << QList<QList<int>>{{0, 0, 0}} << 12;
    QTest::newRow("header extremes") << Header(0x8000, 0x7FFF, 0x0180, 0x0280) + Line(0, 0, 0) + kEnd
                                     << FrameRead::Complete << QList<int>{-32768, 32767, 2, 2}
                                     << QList<QList<int>>{{0, 0, 0}} << 12;
    QTest::newRow("zero start and end stand only first")
        << Header(0, 0, 0, 0) + Line(0, 0, 0x0300) + Line(1, 3, 0x0400, Bytes({0xAA, 0xBB})) + kEnd
        << FrameRead::Complete << QList<int>{0, 0, 0, 0} << QList<QList<int>>{{0, 0, 3}, {1, 3, 4, -86, -69}} << 18;
    QTest::newRow("line bytes 80 and 81")
        << Header(0, 0, 0, 0) + Line(0x80, 0x81, 0x0100) + Line(0x81, 0x83, 0, Bytes({0x80, 0xFF})) + kEnd
        << FrameRead::Complete << QList<int>{0, 0, 0, 0} << QList<QList<int>>{{128, -127, 1}, {-127, -125, 0, 128, -1}}
        << 18;
    QTest::newRow("end equal to start has no pixels")
        << Header(0, 0, 0, 0) + Line(5, 5, 0x0100) + Line(1, 2, 0x0200, Bytes({7})) + kEnd << FrameRead::Complete
        << QList<int>{0, 0, 0, 0} << QList<QList<int>>{{5, 5, 1}, {1, 2, 2, 7}} << 17;
    QTest::newRow("end before start has no pixels")
        << Header(0, 0, 0, 0) + Line(5, 3, 0x0180) + Line(0, 1, 0x8000, Bytes({9})) + kEnd << FrameRead::Complete
        << QList<int>{0, 0, 0, 0} << QList<QList<int>>{{5, 3, 2}, {0, 1, -128, 9}} << 17;

    QList<QList<int>> most;
    const QByteArray mostBytes = EmptyLines(kFrameLineSlots, &most);
    QTest::newRow("101 lines") << Header(0, 0, 0, 0) + mostBytes + kEnd << FrameRead::Complete
                               << QList<int>{0, 0, 0, 0} << most << 8 + int(mostBytes.size());
    QTest::newRow("line of 101 pixels")
        << Header(0, 0, 0, 0) + Line(0x81, 0xE6, 0, Run(101, 1)) + kEnd << FrameRead::Complete
        << QList<int>{0, 0, 0, 0} << QList<QList<int>>{RunValues(-127, -26, 0, 101, 1)} << 8 + 4 + 101;

    // Damaged frames keep the lines before the damage.
    const QByteArray good = Header(1, 2, 0x0300, 0x0400) + Line(0, 2, 0, Bytes({1, 2}));
    const QList<int> goodHeader{1, 2, 3, 4};
    const QList<QList<int>> goodLines{{0, 2, 0, 1, 2}};
    QTest::newRow("header cut") << Bytes({0xFF, 0xFE, 0x00, 0x01, 0xFF}) << FrameRead::Cut << QList<int>{}
                                << QList<QList<int>>{} << -1;
    QTest::newRow("first line cut") << Header(1, 2, 0x0300, 0x0400) + Bytes({0, 2}) << FrameRead::Cut
                                    << goodHeader << QList<QList<int>>{} << -1;
    QTest::newRow("first line's pixels cut") << Header(1, 2, 0x0300, 0x0400) + Line(0, 4, 0, Bytes({1, 2}))
                                             << FrameRead::Cut << goodHeader << QList<QList<int>>{} << -1;
    QTest::newRow("second line's pixels cut") << good + Line(0, 4, 0x0100, Bytes({1, 2})) << FrameRead::Cut
                                              << goodHeader << goodLines << -1;
    QTest::newRow("terminator missing") << good << FrameRead::Cut << goodHeader << goodLines << -1;
    QTest::newRow("terminator cut") << good + Bytes({0}) << FrameRead::Cut << goodHeader << goodLines << -1;
    QTest::newRow("more than 101 lines") << Header(0, 0, 0, 0) + mostBytes + Line(1, 1, 0x6500) + kEnd
                                         << FrameRead::Cut << QList<int>{0, 0, 0, 0} << most << -1;
    QTest::newRow("line of 102 pixels") << good + Line(0x81, 0xE7, 0, Run(102, 1)) + kEnd << FrameRead::Cut
                                        << goodHeader << goodLines << -1;
    QTest::newRow("line of 255 pixels") << good + Line(0x81, 0x80, 0, Run(255, 1)) + kEnd << FrameRead::Cut
                                        << goodHeader << goodLines << -1;
}

void TestFrameReader::readFrame()
{
    QFETCH(QByteArray, bytes);
    QFETCH(FrameRead, result);
    QFETCH(QList<int>, header);
    QFETCH(QList<QList<int>>, lines);
    QFETCH(int, terminator);

    // A damaged frame ends the file; a whole one is followed by more data.
    QByteArray image = QByteArray(kFrameAt, '\xEE') + bytes;
    if (result == FrameRead::Complete)
        image += QByteArray(300, '\x11');
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    ArtFrame frame;
    frame.lastLine = 7; // an earlier frame's lines must not survive
    int32_t at = 0;
    QCOMPARE(ReadFrame(rom, at, frame, kFrameAt), result);
    QCOMPARE(frame.romOffset, kFrameAt);
    if (!header.isEmpty())
        QCOMPARE((QList<int>{frame.left, frame.right, frame.top, frame.bottom}), header);
    QCOMPARE(LinesOf(frame), lines);
    if (terminator >= 0)
        QCOMPARE(at, kFrameAt + terminator);
    CloseRomFile(rom);
}

void TestFrameReader::offsetsOutsideTheFile_data()
{
    QTest::addColumn<int>("offset");
    QTest::newRow("-1") << -1;
    QTest::newRow("-8") << -8;
    QTest::newRow("most negative") << INT32_MIN;
    QTest::newRow("at the end") << 64;
    QTest::newRow("beyond the end") << 0x7FFFFFF0;
    QTest::newRow("seven bytes before the end") << 57;
}

void TestFrameReader::offsetsOutsideTheFile()
{
    QFETCH(int, offset);
    QByteArray image(64, '\0'); // a frame without pixels wherever it is read inside
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    ArtFrame frame;
    frame.lastLine = 3;
    int32_t at = 0;
    QCOMPARE(ReadFrame(rom, at, frame, offset), FrameRead::Cut);
    QCOMPARE(frame.romOffset, offset);
    QCOMPARE(frame.lastLine, int16_t(-1));
    QCOMPARE(ReadFrame(rom, at, frame, 0), FrameRead::Complete);
    QCOMPARE(LinesOf(frame), (QList<QList<int>>{{0, 0, 0}}));
    CloseRomFile(rom);
}

QTEST_GUILESS_MAIN(TestFrameReader)
#include "test_frame_reader.moc"
