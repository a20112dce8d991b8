// Saving a frame into the image: where it goes, the table entry that points at it,
// and the saves that must leave the file as it was.
#include "art/save_art.h"
#include "rom_builder.h"
#include "view/frame_drawing.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sys/fsuid.h>
#include <unistd.h>

namespace {
constexpr int kTable = 0x0A0504;
constexpr int kOddLength = 0x300001; // appended frames start wherever the file ends

uint32_t Address(int position) { return uint32_t(position) + kCartridgeBase; }

Palette TestPalette()
{
    Palette palette;
    palette.colors[0] = kColorZeroWord;
    for (int slot = 1; slot <= kStoredColors; ++slot)
        palette.colors[size_t(slot)] = ConsoleColor(slot * 2 | slot << 5 | (31 - slot) << 10);
    palette.colors[17] = kTransparentMarker;
    return palette;
}

// pixels: (x, y, slot) drawn on an otherwise empty preview.
QImage Preview(const QList<std::array<int, 3>>& pixels)
{
    const Palette palette = TestPalette();
    QImage image(kPreviewWidth, kPreviewHeight, QImage::Format_RGB32);
    image.fill(ScreenToRgb(kPictureBackground));
    for (const auto& [x, y, slot] : pixels)
        image.setPixel(x, y, ScreenToRgb(ConsoleToScreen(palette, slot, kPictureBackground)));
    return image;
}

QImage TwoRowPicture() { return Preview({{0, 0, 1}, {1, 0, 1}, {2, 0, 5}, {1, 1, 3}}); }
const QByteArray kTwoRowBytes = QByteArray::fromHex("FFFF0001FF000000FF03FF0001010500000200000300000000000000");

// A table of three frames, the first right behind the list.
QByteArray ImageWithTable(int length)
{
    QByteArray image(length, '\0');
    for (int i = 0; i < length; i += 97)
        image[i] = char(i / 97);
    PutTableEntries(image, kTable, {Address(kTable + 16), Address(0x0B0000), Address(0x0B0100), 0xFF000000u});
    return image;
}

QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray WithBytes(QByteArray image, int position, const QByteArray& bytes)
{
    PutBytes(image, position, bytes);
    return image;
}

QByteArray AddressBytes(int position)
{
    QByteArray bytes(4, '\0');
    PutBigEndian32(reinterpret_cast<uint8_t*>(bytes.data()), Address(position));
    return bytes;
}

// Root may write any file, so the open runs under an ordinary file-system identity;
// the directory must then be searchable by everyone.
bool OpenWithoutWriteAccess(const QTemporaryDir& dir, const QString& path, RomFile& rom, QString& error)
{
    const auto readable = QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    QFile::setPermissions(path, readable);
    QFile::setPermissions(dir.path(), readable | QFileDevice::ExeOwner | QFileDevice::ExeGroup
                                          | QFileDevice::ExeOther | QFileDevice::WriteOwner);
    const bool root = ::geteuid() == 0;
    if (root)
        ::setfsuid(65534);
    const bool opened = OpenRomFile(rom, path, error);
    if (root)
        ::setfsuid(0);
    return opened;
}

struct Session {
    QTemporaryDir dir;
    QString path;
    RomFile rom;
    int32_t readPosition = 0;
    ArtTable table;
    ~Session() { CloseRomFile(rom); }
};

bool Start(Session& s, const QByteArray& image, bool writable = true)
{
    s.path = s.dir.filePath(QStringLiteral("rom.bin"));
    QString error;
    if (!WriteFileBytes(s.path, image))
        return false;
    const bool opened = writable ? OpenRomFile(s.rom, s.path, error) : OpenWithoutWriteAccess(s.dir, s.path, s.rom, error);
    return opened && ReadArtTable(s.rom, s.readPosition, s.table, kTable) == TableEnd::EndMarker;
}
}

class TestSaveArt : public QObject {
    Q_OBJECT
private slots:
    void appendAtTheEnd();
    void twoAppends();
    void typedPosition_data();
    void typedPosition();
    void saveAtTypedPosition();
    void refusedSaveChangesNothing_data();
    void refusedSaveChangesNothing();
};

void TestSaveArt::appendAtTheEnd()
{
    Session s;
    const QByteArray image = ImageWithTable(kOddLength);
    QVERIFY(Start(s, image));
    ArtFrame frame;
    frame.right = 1;
    const QImage preview = TwoRowPicture();
    const Palette palette = TestPalette();
    QString error;
    QVERIFY2(SaveFrameAt(s.rom, s.readPosition, {s.table, 2, frame, preview, palette, kPictureBackground},
                         int32_t(RomLength(s.rom)), error),
             qPrintable(error));

    QCOMPARE(FileBytes(s.path), WithBytes(WithBytes(image, kTable + 8, AddressBytes(kOddLength)), kOddLength,
                                          kTwoRowBytes));
    QCOMPARE(AddressBytes(kOddLength).toHex(), QByteArray("02300001"));
    QCOMPARE(s.table.pointers[2], kOddLength);
    QCOMPARE(s.readPosition, kOddLength + kTwoRowBytes.size() - 2);
    QCOMPARE(frame.lastLine, int16_t(2));
    QCOMPARE(frame.lines[0].endX, int16_t(3)); // the record keeps the widened lines

    // Read back as the save's re-read does.
    ArtTable reread;
    QCOMPARE(ReadArtTable(s.rom, s.readPosition, reread, kTable), TableEnd::EndMarker);
    QCOMPARE(reread.pointers[2], kOddLength);
    ArtFrame read;
    QCOMPARE(ReadFrame(s.rom, s.readPosition, read, reread.pointers[2]), FrameRead::Complete);
    QCOMPARE(read.lastLine, int16_t(1));
    QCOMPARE(read.lines[1].y, int16_t(0));
}

void TestSaveArt::twoAppends()
{
    Session s;
    const QByteArray image = ImageWithTable(0x0C0000);
    QVERIFY(Start(s, image));
    const Palette palette = TestPalette();
    const QImage first = TwoRowPicture();
    const QImage second = Preview({{4, 4, 7}});
    ArtFrame frame;
    frame.right = 1;
    QString error;
    QVERIFY(SaveFrameAt(s.rom, s.readPosition, {s.table, 1, frame, first, palette, kPictureBackground}, 0x0C0000, error));
    const int secondAt = int(RomLength(s.rom));
    QCOMPARE(secondAt, 0x0C0000 + kTwoRowBytes.size());
    QVERIFY(SaveFrameAt(s.rom, s.readPosition, {s.table, 1, frame, second, palette, kPictureBackground}, secondAt, error));

    ArtFrame lone; // right and bottom pass from one save to the next
    lone.right = 1;
    QCOMPARE(EncodeFrame(lone, second, palette, kPictureBackground), FrameFit::Fits);
    const QByteArray expected = WithBytes(WithBytes(WithBytes(image, kTable + 4, AddressBytes(secondAt)), 0x0C0000,
                                                    kTwoRowBytes),
                                          secondAt, FrameBytes(lone));
    QCOMPARE(FileBytes(s.path), expected);
    QCOMPARE(s.table.pointers[1], secondAt);
}

void TestSaveArt::typedPosition_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("position"); // -1: refused

    QTest::newRow("1F0000") << "1F0000" << 0x1F0000;
    QTest::newRow("lower case") << "1f0000" << 0x1F0000;
    QTest::newRow("blanks") << "1F 00 00" << 0x1F0000;
    QTest::newRow("trailing letter") << "1F0000X" << 0x1F0000;
    QTest::newRow("0 is a position") << "0" << 0;
    QTest::newRow("the file's end") << "300001" << kOddLength;
    QTest::newRow("empty") << "" << -1;
    QTest::newRow("no digit") << "zz" << -1;
    QTest::newRow("&H prefix") << "&H10" << -1;
    QTest::newRow("beyond the end") << "300002" << -1;
    QTest::newRow("beyond the cartridge") << "2000000" << -1;
    QTest::newRow("beyond 32 bits") << "100000000" << -1;
    QTest::newRow("beyond 64 bits") << "100000000000000001F0000" << -1;
}

void TestSaveArt::typedPosition()
{
    QFETCH(QString, answer);
    QFETCH(int, position);
    QString error;
    const std::optional<int32_t> typed = TypedSavePosition(answer, kOddLength, error);
    QCOMPARE(typed.has_value(), position >= 0);
    if (typed)
        QCOMPARE(*typed, position);
    else
        QVERIFY(!error.isEmpty());
}

void TestSaveArt::saveAtTypedPosition()
{
    Session s;
    const QByteArray image = ImageWithTable(kOddLength);
    QVERIFY(Start(s, image));
    QString error;
    const std::optional<int32_t> position = TypedSavePosition(QStringLiteral("1F0000"), RomLength(s.rom), error);
    QVERIFY(position);
    ArtFrame frame;
    frame.right = 1;
    const QImage preview = TwoRowPicture();
    const Palette palette = TestPalette();
    QVERIFY(SaveFrameAt(s.rom, s.readPosition, {s.table, 0, frame, preview, palette, kPictureBackground}, *position, error));
    QCOMPARE(AddressBytes(0x1F0000).toHex(), QByteArray("021f0000"));
    QCOMPARE(FileBytes(s.path), WithBytes(WithBytes(image, kTable, AddressBytes(0x1F0000)), 0x1F0000, kTwoRowBytes));
    QCOMPARE(s.table.pointers[0], 0x1F0000);
}

void TestSaveArt::refusedSaveChangesNothing_data()
{
    QTest::addColumn<bool>("writable");
    QTest::addColumn<int>("f");
    QTest::addColumn<int>("runs");

    QTest::newRow("read-only image") << false << 2 << 3;
    QTest::newRow("frame with 101 runs") << true << 2 << 101;
    QTest::newRow("frame number -1") << true << -1 << 3;
    QTest::newRow("frame number 151") << true << 151 << 3;
}

void TestSaveArt::refusedSaveChangesNothing()
{
    QFETCH(bool, writable);
    QFETCH(int, f);
    QFETCH(int, runs);
    Session s;
    const QByteArray image = ImageWithTable(0x0C0000);
    QVERIFY(Start(s, image, writable));
    QCOMPARE(s.rom.writable, writable);

    QList<std::array<int, 3>> dots;
    for (int i = 0; i < runs; ++i)
        dots.append({(i % 30) * 2, i / 30, 1 + i % 15});
    const QImage preview = Preview(dots);
    const Palette palette = TestPalette();
    ArtFrame frame;
    frame.right = 70;
    frame.bottom = 8;
    frame.lastLine = 5;
    const ArtTable table = s.table;
    QString error;
    QVERIFY(!SaveFrameAt(s.rom, s.readPosition, {s.table, f, frame, preview, palette, kPictureBackground},
                         int32_t(RomLength(s.rom)), error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(FileBytes(s.path), image);
    QVERIFY(s.table.pointers == table.pointers);
    QCOMPARE(frame.lastLine, int16_t(5));
    QCOMPARE(frame.left, int16_t(0));
}

QTEST_GUILESS_MAIN(TestSaveArt)
#include "test_save_art.moc"
