// Any file can be opened as an image, so every reader, the drawing and the encoder must
// cope with random bytes: small images, and images of the demo's size with random lists,
// palettes and frames at the fixed places. The seed is fixed, so a failure repeats; the
// sanitizer build is where this test earns its keep.
#include "art/frame_encoder.h"
#include "library_fixture.h"
#include "rom/art_table.h"
#include "view/frame_drawing.h"

#include <QtTest>
#include <random>
#include <set>

namespace {
// Raw engine output only: the standard distributions differ between libraries.
std::mt19937 rng;
uint32_t Roll(uint32_t below) { return below == 0 ? 0 : rng() % below; }

// Zeros and 0xFF bytes end lists and frames, so they come more often than chance.
QByteArray RandomBytes(int length)
{
    QByteArray bytes(length, '\0');
    for (char& b : bytes)
        if (const uint32_t kind = Roll(8); kind >= 2)
            b = kind == 2 ? '\xFF' : char(Roll(256));
    return bytes;
}

// A list that mostly points into the file, often at a first frame right behind it,
// with empty slots, markers and stray words.
QByteArray RandomList(int position, int64_t length)
{
    QByteArray bytes(kTableSlots * 4, '\0');
    for (int i = 0; i < kTableSlots; ++i) {
        const uint32_t kind = Roll(40);
        const uint32_t entry = i == 0 && kind < 20 ? uint32_t(position + 4 + 4 * int(Roll(kTableSlots + 2))) + kCartridgeBase
                               : kind < 4          ? (kind < 3 ? ~0u : 0xFF000000u | Roll(0x1000000))
                               : kind < 7          ? rng()
                                                   : Roll(uint32_t(length) + 64) - 32 + kCartridgeBase;
        PutBigEndian32(reinterpret_cast<uint8_t*>(bytes.data()) + i * 4, entry);
    }
    return bytes;
}

// Frame bytes that are often well formed, so the readers get past the header.
QByteArray RandomFrame()
{
    QByteArray bytes = RandomBytes(8);
    for (int i = int(Roll(110)); i > 0; --i) {
        const auto start = uint8_t(Roll(256));
        const auto end = uint8_t(Roll(10) == 0 ? Roll(256) : start + Roll(30));
        bytes.append(char(start)).append(char(end)).append(RandomBytes(2));
        bytes.append(RandomBytes(std::max(0, LineByteValue(end) - LineByteValue(start))));
    }
    return Roll(8) == 0 ? bytes : bytes.append(2, '\0');
}

struct Checker {
    TempImage image;
    std::array<Palette, kPaletteRecords> palettes{};
    PictureSurface canvas = MakeSurface(kCanvasWidth, kCanvasHeight);
    PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
    ArtFrame frame;
    int framesRead = 0, framesComplete = 0;
    std::array<int, 4> tableEnds{}; // by TableEnd, to see that every way of ending came up

    // What holds for any frame, whatever the bytes; the frame is then drawn.
    bool ReadAndDraw(int32_t offset, const Palette& palette)
    {
        const FrameRead read = ReadFrame(image.rom, image.at, frame, offset);
        framesRead += 1;
        framesComplete += read == FrameRead::Complete;
        uint8_t end[2] = {1, 1}; // a whole frame leaves readPosition at its terminator
        if (frame.lastLine < -1 || frame.lastLine >= kFrameLineSlots
            || (read == FrameRead::Complete && (ReadRomBytes(image.rom, image.at, end, 2) != 2 || end[0] || end[1]))
            || std::any_of(frame.lines.begin(), frame.lines.begin() + frame.lastLine + 1,
                           [](const FrameLine& line) { return line.endX - line.startX > kLinePixelSlots; }))
            return false;
        ClearSurface(canvas);
        ClearSurface(preview);
        DrawFrame({canvas, preview, 1 + int(Roll(8))}, frame, palette, kPictureBackground);
        return true;
    }

    // Each table at positions ends on an entry within 151 of its start, inside the file
    // unless the file cut it, keeps no slot behind its end, and points at frames that
    // read, draw and encode again. Then frames at offsets no table gives.
    QString CheckImage(const QList<int32_t>& positions, int64_t length, int offsets)
    {
        for (int n = 0; n < positions.size(); ++n) {
            ArtTable table;
            const TableEnd end = ReadArtTable(image.rom, image.at, table, positions[n]);
            ++tableEnds[size_t(end)];
            const int64_t read = int64_t(image.at) - table.position;
            if (read < 0 || read % 4 || read > kTableSlots * 4 || (end != TableEnd::EndOfFile && table.position + read > length)
                || std::any_of(table.pointers.begin() + read / 4, table.pointers.end(), [](int32_t p) { return p != 0; }))
                return QStringLiteral("table at %1").arg(table.position);
            for (int32_t pointer : std::set<int32_t>(table.pointers.begin(), table.pointers.end()))
                if (!ReadAndDraw(pointer, palettes[size_t(n)]))
                    return QStringLiteral("frame at %1").arg(pointer);
            ArtFrame encoded = frame;
            if (EncodeFrame(encoded, preview.image, palettes[size_t(n)], kPictureBackground) == FrameFit::Fits)
                FrameBytes(encoded);
        }
        for (int i = 0; i < offsets; ++i)
            if (const int32_t offset = Roll(8) == 0 ? int32_t(rng()) : int32_t(Roll(uint32_t(length) + 64)) - 32;
                !ReadAndDraw(offset, palettes[size_t(i % kArtTableCount)]))
                return QStringLiteral("frame at %1").arg(offset);
        return {};
    }
};
}

class TestRandomImages : public QObject {
    Q_OBJECT
private slots:
    void randomImages()
    {
        rng.seed(0x5EED0001);
        Checker c;
        for (int round = 0; round < 660; ++round) {
            QByteArray image;
            QList<int32_t> positions;
            if (round < 600) { // small: random bytes and some well-formed lists and frames, tables anywhere
                const int length = int(Roll(4096));
                image = RandomBytes(length);
                for (int i = 0; i < 3 && length > 16; ++i)
                    PutBytes(image, int(Roll(uint32_t(length))), Roll(2) ? RandomFrame() : RandomList(0, length));
                image.resize(length);
                for (int t = 0; t < 6; ++t)
                    positions.append(int32_t(Roll(uint32_t(length) + 16)) - 8);
            } else { // the demo's size: lists at the fixed places, frames where they point, random palettes
                image = QByteArray(0x300000, '\0');
                positions = QList<int32_t>(kArtTablePositions.begin(), kArtTablePositions.end());
                for (int32_t position : positions) {
                    const QByteArray list = RandomList(position, image.size());
                    const auto* entries = reinterpret_cast<const uint8_t*>(list.data());
                    PutBytes(image, position, list);
                    for (int i = 0; i < kTableSlots; i += 1 + int(Roll(4)))
                        if (const int64_t at = int64_t(BigEndian32(entries + i * 4)) - kCartridgeBase; at >= 0 && at < 0x300000)
                            PutBytes(image, int(at), RandomFrame());
                }
                PutBytes(image, kPalettePositions[0], RandomBytes(kPalettePositions[6] + kPaletteBytes - kPalettePositions[0]));
                image.resize(Roll(4) == 0 ? 0xA0000 + int(Roll(0x229300 - 0xA0000)) : 0x300000); // some end early
            }
            QVERIFY(c.image.Open(image));
            for (int n = 0; n < positions.size(); ++n) // small images keep palettes where the tables are
                ReadPalette(c.image.rom, c.image.at, c.palettes[size_t(n)], round < 600 ? positions[n] : kPalettePositions[size_t(n)]);
            const QString fault = c.CheckImage(positions, image.size(), round < 600 ? 20 : 200);
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
        }
        QVERIFY(c.framesComplete > c.framesRead / 20 && std::ranges::all_of(c.tableEnds, [](int n) { return n > 0; }));
    }
};

QTEST_GUILESS_MAIN(TestRandomImages)
#include "test_random_images.moc"
