// Reading art tables: where a list ends, what each kind of entry becomes, and how
// a list that runs off the end of the file is treated.
#include "rom/art_table.h"
#include "rom/rom_open.h"
#include "rom_builder.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {
constexpr int kTable0 = 0xA0504;
constexpr int kImageLength = kTable0 + kTableSlots * 4 + 64;

uint32_t Address(int position) { return uint32_t(position) + kCartridgeBase; }

// The list sits at the first table's place; the zero bytes around it never end a
// list, so a reader that misses an end keeps storing entries.
QByteArray ImageWithList(const std::vector<uint32_t>& entries, int length = kImageLength)
{
    QByteArray image(kImageLength, '\0');
    PutTableEntries(image, kTable0, entries);
    image.resize(length);
    return image;
}

std::vector<uint32_t> Addresses(int count, int first)
{
    std::vector<uint32_t> entries;
    for (int i = 0; i < count; ++i)
        entries.push_back(Address(first + i * 0x100));
    return entries;
}

QList<int> AllSlots(const ArtTable& table) { return QList<int>(table.pointers.begin(), table.pointers.end()); }

QList<int> Padded(QList<int> leading)
{
    leading.resize(kTableSlots, 0);
    return leading;
}

bool OpenImage(const QTemporaryDir& dir, const QByteArray& image, RomFile& rom)
{
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    QString error;
    return WriteFileBytes(path, image) && OpenRomFile(rom, path, error);
}
}

class TestArtTable : public QObject {
    Q_OBJECT
private slots:
    void readTable_data();
    void readTable();
    void rereadFromChangedImage();
    void openReadsTheFixedPlaces();
};

void TestArtTable::readTable_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<int>("position");
    QTest::addColumn<QList<int>>("expected"); // leading slots; the rest must be 0
    QTest::addColumn<TableEnd>("end");
    QTest::addColumn<int>("readPosition");

    const int marker = int(0xFF000000u);
    const int emptyFirst = int(0xFFFFFFFFu);

    std::vector<uint32_t> seven = {Address(0xA0520)};
    for (uint32_t a : Addresses(7, 0x110000))
        seven.push_back(a);
    QTest::newRow("ends where the first frame starts")
        << ImageWithList(seven) << kTable0
        << QList<int>{0xA0520, 0x110000, 0x110100, 0x110200, 0x110300, 0x110400, 0x110500}
        << TableEnd::FirstFrameReached << 0xA0520;
    QTest::newRow("first frame right behind the list")
        << ImageWithList({Address(0xA0508), Address(0x110000)}) << kTable0 << QList<int>{0xA0508}
        << TableEnd::FirstFrameReached << 0xA0508;

    // Empty slots
    QTest::newRow("empty slot repeats slot 0 and the list goes on")
        << ImageWithList({Address(0xA0600), Address(0x110000), Address(0x120000), 0xFFFFFFFFu,
                          Address(0x130000), 0xFF000000u})
        << kTable0 << QList<int>{0xA0600, 0x110000, 0x120000, 0xA0600, 0x130000, marker}
        << TableEnd::EndMarker << kTable0 + 24;
    QTest::newRow("empty slot is no end even where the first frame starts")
        << ImageWithList({Address(kTable0 + 8), 0xFFFFFFFFu, Address(0x110000), 0xFF000000u})
        << kTable0 << QList<int>{kTable0 + 8, kTable0 + 8, 0x110000, marker} << TableEnd::EndMarker
        << kTable0 + 16;
    QTest::newRow("empty first slot keeps all ones")
        << ImageWithList({0xFFFFFFFFu, Address(0x110000), 0xFFFFFFFFu, 0xFF000000u}) << kTable0
        << QList<int>{emptyFirst, 0x110000, emptyFirst, marker} << TableEnd::EndMarker << kTable0 + 16;

    // End markers
    QTest::newRow("FF 00 00 00 ends and is kept")
        << ImageWithList({Address(0x110000), 0xFF000000u, Address(0x120000), Address(0x130000)}) << kTable0
        << QList<int>{0x110000, marker} << TableEnd::EndMarker << kTable0 + 8;
    QTest::newRow("marker keeps its other bytes")
        << ImageWithList({Address(0x110000), 0xFF123456u, Address(0x120000)}) << kTable0
        << QList<int>{0x110000, int(0xFF123456u)} << TableEnd::EndMarker << kTable0 + 8;
    QTest::newRow("marker as the only entry")
        << ImageWithList({0xFF000001u, Address(0x120000)}) << kTable0 << QList<int>{int(0xFF000001u)}
        << TableEnd::EndMarker << kTable0 + 4;

    // Entries below the cartridge base
    QTest::newRow("00 00 00 00 wraps and goes on, 02 00 00 00 is 0")
        << ImageWithList({Address(0x110000), 0x00000000u, 0x02000000u, 0xFF000000u}) << kTable0
        << QList<int>{0x110000, int(0xFE000000u), 0, marker} << TableEnd::EndMarker << kTable0 + 16;
    QTest::newRow("first byte FE is an address, not a marker")
        << ImageWithList({Address(0x110000), 0xFE000000u, 0xFF000000u}) << kTable0
        << QList<int>{0x110000, int(0xFC000000u), marker} << TableEnd::EndMarker << kTable0 + 12;

    // Capacity
    std::vector<uint32_t> tooLong = Addresses(kTableSlots, 0x110000);
    tooLong.push_back(0xFF000000u);
    QList<int> full;
    for (int i = 0; i < kTableSlots; ++i)
        full.push_back(0x110000 + i * 0x100);
    QTest::newRow("151 entries without an end fill the table")
        << ImageWithList(tooLong) << kTable0 << full << TableEnd::CapacityReached << kTable0 + kTableSlots * 4;
    std::vector<uint32_t> fits = Addresses(kTableSlots, 0x110000);
    fits[0] = Address(kTable0 + kTableSlots * 4);
    full[0] = kTable0 + kTableSlots * 4;
    QTest::newRow("first frame right behind 151 entries")
        << ImageWithList(fits) << kTable0 << full << TableEnd::FirstFrameReached << kTable0 + kTableSlots * 4;

    // The end of the file
    QTest::newRow("list runs off the end of the file")
        << ImageWithList(Addresses(3, 0x110000), kTable0 + 10) << kTable0 << QList<int>{0x110000, 0x110100}
        << TableEnd::EndOfFile << kTable0 + 8;
    QTest::newRow("marker in the last four bytes")
        << ImageWithList({Address(0x110000), 0xFF000000u}, kTable0 + 8) << kTable0
        << QList<int>{0x110000, marker} << TableEnd::EndMarker << kTable0 + 8;
    QTest::newRow("file ends at the table") << ImageWithList({}, kTable0) << kTable0 << QList<int>{}
                                            << TableEnd::EndOfFile << kTable0;
    QTest::newRow("file ends before the table") << ImageWithList({}, 0x1000) << kTable0 << QList<int>{}
                                                << TableEnd::EndOfFile << kTable0;
    QTest::newRow("negative position") << ImageWithList({0xFF000000u}) << -4 << QList<int>{}
                                       << TableEnd::EndOfFile << -4;
}

void TestArtTable::readTable()
{
    QFETCH(QByteArray, image);
    QFETCH(int, position);
    QFETCH(QList<int>, expected);
    QFETCH(TableEnd, end);
    QFETCH(int, readPosition);

    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    ArtTable table;
    table.pointers.fill(0x5A5A5A5A); // whatever an earlier read left
    int32_t at = 0;
    QCOMPARE(ReadArtTable(rom, at, table, position), end);
    QCOMPARE(table.position, position);
    QCOMPARE(AllSlots(table), Padded(expected));
    QCOMPARE(at, readPosition);
    CloseRomFile(rom);
}

void TestArtTable::rereadFromChangedImage()
{
    QTemporaryDir dir;
    RomFile rom;
    std::vector<uint32_t> longer = Addresses(20, 0x110000);
    longer.push_back(0xFF000000u);
    QVERIFY(OpenImage(dir, ImageWithList(longer), rom));
    ArtTable table;
    int32_t at = 0;
    QCOMPARE(ReadArtTable(rom, at, table, kTable0), TableEnd::EndMarker);
    QCOMPARE(table.pointers[19], 0x111300);

    uint8_t shorter[8];
    PutBigEndian32(shorter, Address(0x120000));
    PutBigEndian32(shorter + 4, 0xFF000000u);
    QString error;
    QVERIFY(WriteRomBytes(rom, kTable0, shorter, sizeof shorter, error));
    QCOMPARE(ReadArtTable(rom, at, table, kTable0), TableEnd::EndMarker);
    QCOMPARE(AllSlots(table), Padded({0x120000, int(0xFF000000u)}));
    CloseRomFile(rom);
}

void TestArtTable::openReadsTheFixedPlaces()
{
    // Written out here rather than taken from the library, so that a wrong
    // constant there shows.
    const int places[kArtTableCount] = {0xA0504,  0xB18BC,  0xCB3B4,  0xD4E44,  0xF1130,
                                        0xF6A18,  0x101304, 0x11B088, 0x11F7A8, 0x121AA4,
                                        0x1256B0, 0x1293E0, 0x12A9E8, 0x12C120};
    QByteArray image(0x130000, '\0');
    for (int n = 0; n < kArtTableCount; ++n) // one entry each, its frame right behind it
        PutWord32(image, places[n], Address(places[n] + 4));

    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    std::array<ArtTable, kArtTableRecords> tables{};
    int32_t at = 0;
    // The save reads only the first seven again.
    QVERIFY(ReadArtTables(rom, at, tables, 7));
    QCOMPARE(tables[6].pointers[0], places[6] + 4);
    QCOMPARE(tables[7].position, 0);

    QVERIFY(ReadArtTables(rom, at, tables, kArtTableCount));
    for (int n = 0; n < kArtTableCount; ++n) {
        QCOMPARE(tables[size_t(n)].position, places[n]);
        QCOMPARE(AllSlots(tables[size_t(n)]), Padded({places[n] + 4}));
    }
    for (int n = kArtTableCount; n < kArtTableRecords; ++n)
        QCOMPARE(AllSlots(tables[size_t(n)]), Padded({}));
    CloseRomFile(rom);

    // A list cut by the end of the file makes the whole read incomplete.
    image.resize(places[13] + 2);
    QVERIFY(OpenImage(dir, image, rom));
    QVERIFY(!ReadArtTables(rom, at, tables, kArtTableCount));
    QCOMPARE(tables[12].pointers[0], places[12] + 4);
    CloseRomFile(rom);
}

QTEST_GUILESS_MAIN(TestArtTable)
#include "test_art_table.moc"
