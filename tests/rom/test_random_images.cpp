// Any file can be opened as an image, so every reader and the drawing must cope with
// random bytes: at random sizes, planted at the fixed table and palette places, and
// at frame offsets inside, before and behind the file. The seed is fixed, so a
// failure repeats; the sanitizer build is where this test earns its keep.
#include "art/frame_encoder.h"
#include "rom/rom_open.h"
#include "rom_builder.h"
#include "view/frame_drawing.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <random>
#include <set>

namespace {
constexpr int kDemoLength = 0x300000;
constexpr int kPaletteArea = 0x22921A;
constexpr int kPaletteAreaBytes = 0x2292DC + 30 - kPaletteArea;

// Raw engine output only: the standard distributions differ between libraries.
uint32_t Roll(std::mt19937& rng, uint32_t below) { return below == 0 ? 0 : rng() % below; }
bool OneIn(std::mt19937& rng, uint32_t n) { return Roll(rng, n) == 0; }

// Zeros and 0xFF bytes end lists and frames, so they come more often than chance.
char RandomByte(std::mt19937& rng)
{
    const uint32_t kind = Roll(rng, 8);
    return kind < 2 ? '\0' : kind == 2 ? '\xFF' : char(Roll(rng, 256));
}

QByteArray RandomBytes(std::mt19937& rng, int length)
{
    QByteArray bytes(length, '\0');
    for (char& b : bytes)
        b = RandomByte(rng);
    return bytes;
}

uint32_t Address(int64_t position) { return uint32_t(position) + kCartridgeBase; }

// A list that mostly points into the file, with empty slots, markers and stray words.
QByteArray RandomList(std::mt19937& rng, int position, int64_t length)
{
    QByteArray bytes(kTableSlots * 4, '\0');
    for (int i = 0; i < kTableSlots; ++i) {
        const uint32_t kind = Roll(rng, 40);
        uint32_t entry = Address(int64_t(Roll(rng, uint32_t(length) + 64)) - 32);
        if (i == 0 && kind < 20)
            entry = Address(position + 4 * (1 + int(Roll(rng, kTableSlots + 2))));
        else if (kind < 3)
            entry = 0xFFFFFFFFu;
        else if (kind < 4)
            entry = 0xFF000000u | Roll(rng, 0x1000000);
        else if (kind < 7)
            entry = rng();
        PutBigEndian32(reinterpret_cast<uint8_t*>(bytes.data()) + i * 4, entry);
    }
    return bytes;
}

// Frame bytes that are often well formed, so the readers get past the header.
QByteArray RandomFrame(std::mt19937& rng)
{
    QByteArray bytes = RandomBytes(rng, 8);
    const int lines = int(Roll(rng, 110));
    for (int i = 0; i < lines; ++i) {
        const auto startByte = uint8_t(Roll(rng, 256));
        const auto endByte = uint8_t(OneIn(rng, 10) ? Roll(rng, 256) : startByte + Roll(rng, 30));
        bytes.append(char(startByte));
        bytes.append(char(endByte));
        bytes.append(RandomBytes(rng, 2));
        bytes.append(RandomBytes(rng, std::max(0, LineByteValue(endByte) - LineByteValue(startByte))));
    }
    if (!OneIn(rng, 8))
        bytes.append(2, '\0');
    return bytes;
}

bool Plant(RomFile& rom, int64_t position, const QByteArray& bytes)
{
    QString error;
    return WriteRomBytes(rom, position, bytes.constData(), bytes.size(), error);
}

// What holds for any frame read, whatever the bytes.
QString FrameFault(const RomFile& rom, const ArtFrame& frame, FrameRead read, int32_t readPosition)
{
    if (frame.lastLine < -1 || frame.lastLine >= kFrameLineSlots)
        return QStringLiteral("lastLine %1").arg(frame.lastLine);
    for (int i = 0; i <= frame.lastLine; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        if (line.endX - line.startX > kLinePixelSlots)
            return QStringLiteral("line %1 holds %2 pixels").arg(i).arg(line.endX - line.startX);
    }
    if (read == FrameRead::Complete) {
        uint8_t end[2] = {1, 1};
        if (ReadRomBytes(rom, readPosition, end, 2) != 2 || end[0] || end[1])
            return QStringLiteral("readPosition %1 is not at a terminator").arg(readPosition);
    }
    return {};
}

struct Checker {
    RomFile rom;
    int32_t readPosition = 0;
    std::array<ArtTable, kArtTableRecords> tables{};
    std::array<Palette, kPaletteRecords> palettes{};
    PictureSurface canvas = MakeSurface(kCanvasWidth, kCanvasHeight);
    PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
    ArtFrame frame;
    int framesRead = 0;
    int framesComplete = 0;
    std::array<int, 4> tableEnds{}; // by TableEnd, to see that every way of ending came up
};

QString ReadAndDraw(Checker& c, std::mt19937& rng, int32_t offset, const Palette& palette)
{
    const FrameRead read = ReadFrame(c.rom, c.readPosition, c.frame, offset);
    ++c.framesRead;
    c.framesComplete += read == FrameRead::Complete;
    const QString fault = FrameFault(c.rom, c.frame, read, c.readPosition);
    if (!fault.isEmpty())
        return QStringLiteral("frame at %1: ").arg(offset) + fault;
    ClearSurface(c.canvas);
    ClearSurface(c.preview);
    DrawFrame({c.canvas, c.preview, 1 + int(Roll(rng, 8))}, c.frame, palette, kPictureBackground);
    return {};
}

// Offsets the tables do not give: before, inside and behind the file.
QString ReadRandomOffsets(Checker& c, std::mt19937& rng, int64_t length, int count)
{
    for (int i = 0; i < count; ++i) {
        int32_t offset = int32_t(Roll(rng, uint32_t(length) + 64)) - 32;
        if (OneIn(rng, 8))
            offset = int32_t(rng());
        const QString fault = ReadAndDraw(c, rng, offset, c.palettes[size_t(i % kArtTableCount)]);
        if (!fault.isEmpty())
            return fault;
    }
    for (int32_t offset : {INT32_MIN, -1, INT32_MAX, int32_t(length) - 1, int32_t(length)}) {
        const QString fault = ReadAndDraw(c, rng, offset, c.palettes[0]);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

QString ReadTablePointers(Checker& c, std::mt19937& rng, const ArtTable& table, const Palette& palette)
{
    std::set<int32_t> seen;
    for (int32_t pointer : table.pointers)
        if (seen.insert(pointer).second) {
            const QString fault = ReadAndDraw(c, rng, pointer, palette);
            if (!fault.isEmpty())
                return fault;
        }
    return {};
}

// The preview now holds whatever the last frame drew; saving it must not misbehave.
void EncodePreview(Checker& c, const Palette& palette)
{
    ArtFrame encoded = c.frame;
    if (EncodeFrame(encoded, c.preview.image, palette, kPictureBackground) == FrameFit::Fits)
        FrameBytes(encoded);
}

QString TableFault(const ArtTable& table, TableEnd end, int32_t readPosition, int64_t length)
{
    const int64_t read = int64_t(readPosition) - table.position;
    if (read < 0 || read % 4 != 0 || read > kTableSlots * 4)
        return QStringLiteral("table at %1 ends at %2").arg(table.position).arg(readPosition);
    if (end != TableEnd::EndOfFile && table.position + read > length)
        return QStringLiteral("table at %1 read past the end of the file").arg(table.position);
    for (int64_t i = read / 4; i < kTableSlots; ++i)
        if (table.pointers[size_t(i)] != 0)
            return QStringLiteral("table at %1 keeps slot %2 behind its end").arg(table.position).arg(i);
    return {};
}
}

class TestRandomImages : public QObject {
    Q_OBJECT
private slots:
    void smallImages();
    void demoSizedImages();
};

void TestRandomImages::smallImages()
{
    std::mt19937 rng(0x5EED0001);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("small.bin"));
    Checker c;
    for (int round = 0; round < 600; ++round) {
        const int length = int(Roll(rng, 4096));
        QByteArray image = RandomBytes(rng, length);
        for (int i = 0; i < 3 && length > 16; ++i) // some well-formed lists and frames
            PutBytes(image, int(Roll(rng, uint32_t(length))), OneIn(rng, 2) ? RandomFrame(rng) : RandomList(rng, 0, length));
        image.resize(length);
        QVERIFY(WriteFileBytes(path, image));
        QString error;
        QVERIFY(OpenRomFile(c.rom, path, error));

        QVERIFY(!ReadArtTables(c.rom, c.readPosition, c.tables, kArtTableCount));
        QVERIFY(!ReadPalettes(c.rom, c.readPosition, c.palettes));
        for (int t = 0; t < 6; ++t) {
            ArtTable table;
            const int32_t position = int32_t(Roll(rng, uint32_t(length) + 16)) - 8;
            const TableEnd end = ReadArtTable(c.rom, c.readPosition, table, position);
            const QString tableFault = TableFault(table, end, c.readPosition, length);
            QVERIFY2(tableFault.isEmpty(), qPrintable(tableFault));
            ReadPalette(c.rom, c.readPosition, c.palettes[size_t(t)], position);
            const QString fault = ReadTablePointers(c, rng, table, c.palettes[size_t(t)]);
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
        }
        const QString fault = ReadRandomOffsets(c, rng, length, 20);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        EncodePreview(c, c.palettes[0]);
    }
    CloseRomFile(c.rom);
    QVERIFY(c.framesComplete > c.framesRead / 20);
}

void TestRandomImages::demoSizedImages()
{
    std::mt19937 rng(0x5EED0002);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("demo.bin"));
    QVERIFY(WriteFileBytes(path, QByteArray(kDemoLength, '\0')));
    Checker c;
    QString error;
    QVERIFY(OpenRomFile(c.rom, path, error));
    for (int round = 0; round < 60; ++round) {
        QVERIFY(QFile::resize(path, kDemoLength));
        // Plant lists, palettes and the frames the lists point at.
        for (int n = 0; n < kArtTableCount; ++n) {
            const int position = kArtTablePositions[size_t(n)];
            const QByteArray list = RandomList(rng, position, kDemoLength);
            QVERIFY(Plant(c.rom, position, list));
            for (int i = 0; i < kTableSlots; i += 1 + int(Roll(rng, 4))) {
                const int64_t at = int64_t(BigEndian32(reinterpret_cast<const uint8_t*>(list.constData()) + i * 4))
                                   - kCartridgeBase;
                if (at >= 0 && at < kDemoLength)
                    QVERIFY(Plant(c.rom, at, RandomFrame(rng)));
            }
        }
        QVERIFY(Plant(c.rom, kPaletteArea, RandomBytes(rng, kPaletteAreaBytes)));
        // Some images end inside the tables or the palettes.
        int64_t length = kDemoLength;
        if (OneIn(rng, 4)) {
            length = 0xA0000 + Roll(rng, 0x229300 - 0xA0000);
            QVERIFY(QFile::resize(path, length));
        }

        ReadArtTables(c.rom, c.readPosition, c.tables, kArtTableCount);
        ReadPalettes(c.rom, c.readPosition, c.palettes);
        for (int n = 0; n < kArtTableCount; ++n) {
            const ArtTable& table = c.tables[size_t(n)];
            const TableEnd end = ReadArtTable(c.rom, c.readPosition, c.tables[size_t(n)], table.position);
            ++c.tableEnds[size_t(end)];
            const QString tableFault = TableFault(table, end, c.readPosition, length);
            QVERIFY2(tableFault.isEmpty(), qPrintable(tableFault));
            const QString fault = ReadTablePointers(c, rng, table, c.palettes[size_t(n)]);
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
            EncodePreview(c, c.palettes[size_t(n)]);
        }
        const QString fault = ReadRandomOffsets(c, rng, length, 200);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    CloseRomFile(c.rom);
    for (int count : c.tableEnds)
        QVERIFY(count > 0);
    QVERIFY(c.framesComplete > c.framesRead / 10);
}

QTEST_GUILESS_MAIN(TestRandomImages)
#include "test_random_images.moc"
