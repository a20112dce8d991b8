// Colour words, screen colours and palettes in the image.
#include "palette/palette.h"
#include "rom/art_table.h"
#include "rom/rom_open.h"
#include "rom_builder.h"
#include "view/picture_surface.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
constexpr ScreenColor kTransparent = 0x00ABCDEF; // no console word shows as this

// Bytes that differ from each other, so a shifted or swapped word shows.
QByteArray PatternBytes(int length)
{
    QByteArray bytes(length, '\0');
    for (int i = 0; i < length; ++i)
        bytes[i] = char((i * 37 + 11) & 0xFF);
    return bytes;
}

QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool OpenImage(const QTemporaryDir& dir, const QByteArray& image, RomFile& rom)
{
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    QString error;
    return WriteFileBytes(path, image) && OpenRomFile(rom, path, error);
}

QList<int> StoredWords(const Palette& palette) { return QList<int>(palette.colors.begin() + 1, palette.colors.begin() + 16); }
}

class TestColors : public QObject {
    Q_OBJECT
private slots:
    void consoleToScreen_data();
    void consoleToScreen();
    void screenToConsole_data();
    void screenToConsole();
    void everyWordSurvivesTheRoundTrip();
    void readPaletteSetsTheEditorSlots();
    void readThenWriteChangesNoByte_data();
    void readThenWriteChangesNoByte();
    void writeTouchesOnlyThirtyBytes();
    void paletteAtTheEndOfAShortFile_data();
    void paletteAtTheEndOfAShortFile();
    void openReadsTheFixedPalettePlaces();
};

void TestColors::consoleToScreen_data()
{
    QTest::addColumn<int>("word");
    QTest::addColumn<uint>("screen");
    QTest::newRow("black") << 0x0000 << uint(MakeScreenColor(0, 0, 0));
    QTest::newRow("white") << 0x7FFF << uint(MakeScreenColor(255, 255, 255));
    QTest::newRow("red") << 0x001F << uint(MakeScreenColor(255, 0, 0));
    QTest::newRow("green") << 0x03E0 << uint(MakeScreenColor(0, 255, 0));
    QTest::newRow("blue") << 0x7C00 << uint(MakeScreenColor(0, 0, 255));
    QTest::newRow("red 1, blue 31") << 0x7C01 << uint(MakeScreenColor(8, 0, 255));
    QTest::newRow("colour of index 0") << 0x1084 << uint(MakeScreenColor(33, 33, 33));
    QTest::newRow("2 rounds down to even") << 0x0842 << uint(MakeScreenColor(16, 16, 16));
    QTest::newRow("6 rounds up to even") << 0x18C6 << uint(MakeScreenColor(50, 50, 50));
    QTest::newRow("10 rounds down to even") << 0x294A << uint(MakeScreenColor(82, 82, 82));
    QTest::newRow("30 rounds up to even") << 0x7BDE << uint(MakeScreenColor(248, 248, 248));
    QTest::newRow("bit 15 is ignored") << 0x801F << uint(MakeScreenColor(255, 0, 0));
    QTest::newRow("transparent marker") << 0xFFFF << uint(kTransparent);
    QTest::newRow("all but the marker") << 0xFFFE << uint(MakeScreenColor(248, 255, 255));
}

void TestColors::consoleToScreen()
{
    QFETCH(int, word);
    QFETCH(uint, screen);
    Palette palette;
    palette.colors[5] = ConsoleColor(word);
    QCOMPARE(ConsoleToScreen(palette, 5, kTransparent), ScreenColor(screen));
}

void TestColors::screenToConsole_data()
{
    QTest::addColumn<uint>("screen");
    QTest::addColumn<int>("word");
    QTest::newRow("white") << uint(MakeScreenColor(255, 255, 255)) << 0x7FFF;
    QTest::newRow("4 is still 0") << uint(MakeScreenColor(4, 4, 4)) << 0x0000;
    QTest::newRow("5 is 1") << uint(MakeScreenColor(5, 5, 5)) << 0x0421;
    QTest::newRow("grey") << uint(MakeScreenColor(128, 128, 128)) << 0x4210;
    QTest::newRow("magenta") << uint(MakeScreenColor(255, 0, 255)) << 0x7C1F;
    QTest::newRow("red") << uint(MakeScreenColor(255, 0, 0)) << 0x001F;
    QTest::newRow("each component its own") << uint(MakeScreenColor(129, 255, 255)) << 0x7FF0;
    QTest::newRow("12, 13, 20") << uint(MakeScreenColor(12, 13, 20)) << (1 | 2 << 5 | 2 << 10);
    QTest::newRow("high byte ignored") << 0xFF0000FFu << 0x001F;
}

void TestColors::screenToConsole()
{
    QFETCH(uint, screen);
    QFETCH(int, word);
    QCOMPARE(ScreenToConsole(screen), ConsoleColor(word));
}

void TestColors::everyWordSurvivesTheRoundTrip()
{
    Palette palette;
    for (int word = 0; word <= 0x7FFF; ++word) {
        palette.colors[1] = ConsoleColor(word);
        const ScreenColor shown = ConsoleToScreen(palette, 1, kTransparent);
        // The pictures' background must never be a palette colour.
        QVERIFY(shown != kPictureBackground);
        if (ScreenToConsole(shown) != word)
            QFAIL(qPrintable(QStringLiteral("word %1 comes back as %2").arg(word, 4, 16).arg(ScreenToConsole(shown), 4, 16)));
    }
}

void TestColors::readPaletteSetsTheEditorSlots()
{
    QByteArray image(64, '\0');
    PutPaletteWords(image, 6, {0xFFFF, 0x0001, 0x0002, 0x0003, 0x0004, 0x0005, 0x0006, 0x0007, 0x0008,
                               0x0009, 0x000A, 0x000B, 0x000C, 0x8000, 0x7FFF});
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    Palette palette;
    palette.colors[0] = 0x1234; // an edit of slot 0 lasts only until the next read
    int32_t at = 0;
    QVERIFY(ReadPalette(rom, at, palette, 6));
    QCOMPARE(palette.position, 6);
    QCOMPARE(at, 36);
    QCOMPARE(palette.colors[0], kColorZeroWord);
    QCOMPARE(StoredWords(palette), (QList<int>{0xFFFF, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x8000, 0x7FFF}));
    QCOMPARE(palette.colors[16], ConsoleColor(0));
    QCOMPARE(palette.colors[17], kTransparentMarker);
    // A stored marker shows like slot 17.
    QCOMPARE(ConsoleToScreen(palette, 1, kTransparent), kTransparent);
    CloseRomFile(rom);
}

void TestColors::readThenWriteChangesNoByte_data()
{
    QTest::addColumn<int>("position");
    QTest::newRow("start of the file") << 0;
    QTest::newRow("odd position") << 0x22927E;
    QTest::newRow("last 30 bytes") << 0x229400 - kPaletteBytes;
}

void TestColors::readThenWriteChangesNoByte()
{
    QFETCH(int, position);
    const QByteArray image = PatternBytes(0x229400);
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    Palette palette;
    int32_t at = 0;
    QString error;
    QVERIFY(ReadPalette(rom, at, palette, position));
    QVERIFY(WritePalette(rom, at, palette, error));
    QCOMPARE(at, position + kPaletteBytes);
    CloseRomFile(rom);
    QVERIFY(FileBytes(dir.filePath(QStringLiteral("rom.bin"))) == image);
}

void TestColors::writeTouchesOnlyThirtyBytes()
{
    const QByteArray image = PatternBytes(200);
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    Palette palette;
    palette.position = 101;
    for (int slot = 0; slot < kPaletteSlots; ++slot)
        palette.colors[size_t(slot)] = ConsoleColor(0x0101 * slot);
    int32_t at = 0;
    QString error;
    QVERIFY(WritePalette(rom, at, palette, error));
    CloseRomFile(rom);

    QByteArray expected = image;
    for (int slot = 1; slot <= kStoredColors; ++slot) // high byte first, slot 0 not stored
        expected[101 + (slot - 1) * 2] = expected[102 + (slot - 1) * 2] = char(slot);
    QCOMPARE(FileBytes(dir.filePath(QStringLiteral("rom.bin"))), expected);
}

void TestColors::paletteAtTheEndOfAShortFile_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QList<int>>("words");
    QTest::newRow("half the palette") << 20 << QList<int>{0x0102, 0x0304, 0x0506, 0x0708, 0x090A, 0x0B0C,
                                                          0x0D0E, 0x0F10, 0x1112, 0x1314, 0, 0, 0, 0, 0};
    QTest::newRow("a word cut in two") << 23 << QList<int>{0x0405, 0x0607, 0x0809, 0x0A0B, 0x0C0D, 0x0E0F,
                                                           0x1011, 0x1213, 0x1400, 0, 0, 0, 0, 0, 0};
    QTest::newRow("at the end") << 40 << QList<int>(15, 0);
    QTest::newRow("beyond the end") << 4000 << QList<int>(15, 0);
    QTest::newRow("negative position") << -2 << QList<int>(15, 0);
}

void TestColors::paletteAtTheEndOfAShortFile()
{
    QFETCH(int, position);
    QFETCH(QList<int>, words);
    QByteArray image(40, '\0');
    for (int i = 20; i < 40; ++i)
        image[i] = char(i - 19);
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    Palette palette;
    palette.colors.fill(0x5A5A);
    palette.colors[16] = 0;
    int32_t at = 0;
    QVERIFY(!ReadPalette(rom, at, palette, position));
    QCOMPARE(StoredWords(palette), words);
    QCOMPARE(palette.colors[0], kColorZeroWord);
    QCOMPARE(palette.colors[17], kTransparentMarker);
    QCOMPARE(at, position + kPaletteBytes);
    CloseRomFile(rom);
}

void TestColors::openReadsTheFixedPalettePlaces()
{
    // Written out here rather than taken from the library; palette 2 lies behind 3.
    const int places[7] = {0x22921A, 0x22923E, 0x22927E, 0x22925C, 0x2292A0, 0x2292BE, 0x2292DC};
    QByteArray image(0x229300, '\0');
    for (int n = 0; n < 7; ++n) {
        std::array<ConsoleColor, 15> words{};
        words.fill(ConsoleColor(0x100 + n));
        PutPaletteWords(image, places[n], words);
    }
    QTemporaryDir dir;
    RomFile rom;
    QVERIFY(OpenImage(dir, image, rom));
    std::array<Palette, kPaletteRecords> palettes{};
    int32_t at = 0;
    QVERIFY(ReadPalettes(rom, at, palettes));
    for (int n = 0; n < kArtTableCount; ++n) {
        QCOMPARE(palettes[size_t(n)].position, places[n % 7]);
        QCOMPARE(StoredWords(palettes[size_t(n)]), QList<int>(15, 0x100 + n % 7));
    }
    QCOMPARE(palettes[14].colors[0], ConsoleColor(0)); // records behind the 14 stay zero
    CloseRomFile(rom);

    image.resize(places[6] + 10);
    QVERIFY(OpenImage(dir, image, rom));
    QVERIFY(!ReadPalettes(rom, at, palettes));
    CloseRomFile(rom);
}

QTEST_GUILESS_MAIN(TestColors)
#include "test_colors.moc"
