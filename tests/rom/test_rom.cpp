// The open image file, and the art tables and palettes at their fixed places.
#include "library_fixture.h"
#include "rom/art_lists.h"
#include "rom/rom_open.h"

#include <QtTest>

namespace {
constexpr int kTable0 = 0xA0504;
constexpr int kListEnd = kTable0 + kTableSlots * 4;

uint32_t Address(int position) { return uint32_t(position) + kCartridgeBase; }

QList<int> Slots(const ArtTable& table) { return QList<int>(table.pointers.begin(), table.pointers.end()); }
QList<int> Padded(const QList<int>& leading) { return leading + QList<int>(kTableSlots - leading.size(), 0); }

// A list at the first table's place in an image of length bytes; the zero bytes around
// it never end a list, so a reader that misses an end goes on.
struct TableCase {
    std::vector<uint32_t> entries;
    QList<int> leading; // the slots before the zero ones
    TableEnd end;
    int entriesRead;
    int length = kListEnd + 64, position = kTable0;
};
}
Q_DECLARE_METATYPE(TableCase)

class TestRom : public QObject {
    Q_OBJECT
private slots:
    void readTable_data()
    {
        QTest::addColumn<TableCase>("c");
        const int marker = int(0xFF000000u);
        std::vector<uint32_t> full(kTableSlots + 1, 0xFF000000u);
        QList<int> fullSlots;
        for (int i = 0; i < kTableSlots; ++i)
            full[size_t(i)] = Address(fullSlots.emplace_back(0x110000 + i * 0x100));
        QTest::newRow("first frame right behind the list") << TableCase{
            {Address(kTable0 + 8), Address(0x110000), 0}, {kTable0 + 8, 0x110000}, TableEnd::FirstFrameReached, 2};
        QTest::newRow("empty slot repeats slot 0 and ends nothing") << TableCase{
            {Address(kTable0 + 12), Address(0x110000), ~0u, Address(0x120000), 0xFF000000u},
            {kTable0 + 12, 0x110000, kTable0 + 12, 0x120000, marker}, TableEnd::EndMarker, 5};
        QTest::newRow("empty first slot keeps all ones") << TableCase{
            {~0u, Address(0x110000), ~0u, 0xFF000000u}, {-1, 0x110000, -1, marker}, TableEnd::EndMarker, 4};
        QTest::newRow("marker keeps its other bytes") << TableCase{
            {Address(0x110000), 0xFF123456u, 0}, {0x110000, int(0xFF123456u)}, TableEnd::EndMarker, 2};
        QTest::newRow("words below the base wrap, FE is no marker") << TableCase{
            {0, 0x02000000u, 0xFE000000u, 0xFF000000u}, {int(0xFE000000u), 0, int(0xFC000000u), marker}, TableEnd::EndMarker, 4};
        QTest::newRow("151 entries fill the table") << TableCase{full, fullSlots, TableEnd::CapacityReached, kTableSlots};
        QTest::newRow("list runs off the end of the file")
            << TableCase{full, {0x110000, 0x110100}, TableEnd::EndOfFile, 2, kTable0 + 10};
        QTest::newRow("negative position") << TableCase{{0xFF000000u}, {}, TableEnd::EndOfFile, 0, kListEnd, -4};
    }

    void readTable()
    {
        QFETCH(TableCase, c);
        QByteArray image(kListEnd + 64, '\0');
        PutTableEntries(image, kTable0, c.entries);
        TempImage t;
        QVERIFY(t.Open(image.left(c.length)));
        ArtTable table;
        table.pointers.fill(0x5A5A5A5A); // whatever an earlier read left
        QCOMPARE(ReadArtTable(t.rom, t.at, table, c.position), c.end);
        QCOMPARE(table.position, c.position);
        QCOMPARE(Slots(table), Padded(c.leading));
        QCOMPARE(t.at, c.position + 4 * c.entriesRead);
        // The frame list stops before the first slot holding 0.
        const int listed = int(Padded(c.leading).indexOf(0));
        QCOMPARE(ListedSlotCount(table), listed < 0 ? kTableSlots : listed);
        QCOMPARE(FrameListLines(table).value(listed - 1), listed > 0 ? ListLineText(table.pointers[size_t(listed - 1)]) : QString());
    }

    void openReadsTheFixedPlaces()
    {
        // Written out rather than taken from the library, so that a wrong constant shows.
        const int tables[kArtTableCount] = {0xA0504,  0xB18BC,  0xCB3B4,  0xD4E44,  0xF1130,  0xF6A18,  0x101304,
                                            0x11B088, 0x11F7A8, 0x121AA4, 0x1256B0, 0x1293E0, 0x12A9E8, 0x12C120};
        const int palettes[7] = {0x22921A, 0x22923E, 0x22927E, 0x22925C, 0x2292A0, 0x2292BE, 0x2292DC};
        QByteArray image(0x229300, '\0');
        for (int n = 0; n < kArtTableCount; ++n) // one entry each, its frame right behind it
            PutWord32(image, tables[n], Address(tables[n] + 4));
        for (int n = 0; n < 7; ++n)
            PutPaletteWords(image, palettes[n], {ConsoleColor(0x100 + n)});
        TempImage t;
        QVERIFY(t.Open(image));
        std::array<ArtTable, kArtTableRecords> read{};
        std::array<Palette, kPaletteRecords> colors{};
        QVERIFY(ReadArtTables(t.rom, t.at, read, kArtTableCount) && ReadPalettes(t.rom, t.at, colors));
        for (size_t n = 0; n < kArtTableCount; ++n) {
            QCOMPARE(Slots(read[n]), Padded({tables[n] + 4}));
            QCOMPARE(colors[n].position, palettes[n % 7]);
            QCOMPARE(colors[n].colors[1], ConsoleColor(0x100 + n % 7));
        }
        // A palette or a list cut by the end of the file makes the read incomplete.
        QVERIFY(t.Open(image.left(palettes[6] + 29)));
        QVERIFY(ReadArtTables(t.rom, t.at, read, kArtTableCount) && !ReadPalettes(t.rom, t.at, colors));
        QVERIFY(t.Open(image.left(tables[13] + 2)));
        QVERIFY(!ReadArtTables(t.rom, t.at, read, kArtTableCount));
        // So does a list that has not ended after 151 entries.
        PutTableEntries(image, tables[0], std::vector<uint32_t>(kTableSlots, Address(0x120000)));
        QVERIFY(t.Open(image) && !ReadArtTables(t.rom, t.at, read, kArtTableCount));
    }
};

QTEST_GUILESS_MAIN(TestRom)
#include "test_rom.moc"
