// The open ROM image file and the typed hexadecimal answers.
#include "rom/hex_answer.h"
#include "rom/rom_file.h"
#include "rom_builder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sys/fsuid.h>
#include <unistd.h>

namespace {
const QByteArray kTenBytes("\x00\x11\x22\x33\x44\x55\x66\x77\x88\x99", 10);

QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
}

class TestRomFile : public QObject {
    Q_OBJECT
private slots:
    void readOnlyFileBrowsesButRefusesWrites();
    void unopenableNameKeepsTheOpenImage_data();
    void unopenableNameKeepsTheOpenImage();
    void readsStopAtTheEnd_data();
    void readsStopAtTheEnd();
    void writesInPlaceAndAtTheEnd();
    void hexAnswer_data();
    void hexAnswer();
};

void TestRomFile::readOnlyFileBrowsesButRefusesWrites()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("locked.bin"));
    QVERIFY(WriteFileBytes(path, kTenBytes));
    RomFile rom;
    QString error;
    QVERIFY2(OpenWithoutWriteAccess(dir, path, rom, error), qPrintable(error));
    QVERIFY(IsRomOpen(rom));
    QVERIFY(!rom.writable);

    uint8_t got[10] = {};
    QCOMPARE(ReadRomBytes(rom, 0, got, 10), 10);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(got), 10), kTenBytes);

    const uint8_t change[2] = {0xAB, 0xCD};
    QVERIFY(!WriteRomBytes(rom, 2, change, 2, error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!WriteRomBytes(rom, 10, change, 2, error));
    QCOMPARE(FileBytes(path), kTenBytes);
    QCOMPARE(RomLength(rom), 10);
    CloseRomFile(rom);
}

void TestRomFile::unopenableNameKeepsTheOpenImage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing file") << QStringLiteral("missing.bin");
    QTest::newRow("directory") << QStringLiteral("folder");
    QTest::newRow("empty name") << QString();
}

void TestRomFile::unopenableNameKeepsTheOpenImage()
{
    QFETCH(QString, name);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("folder")));
    const QString good = dir.filePath(QStringLiteral("rom.bin"));
    QVERIFY(WriteFileBytes(good, kTenBytes));
    RomFile rom;
    QString error;
    QVERIFY(OpenRomFile(rom, good, error));

    QVERIFY(!OpenRomFile(rom, name.isEmpty() ? name : dir.filePath(name), error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(rom.fileName, good);
    QVERIFY(rom.writable);
    uint8_t byte = 0;
    QCOMPARE(ReadRomBytes(rom, 9, &byte, 1), 1);
    QCOMPARE(byte, uint8_t(0x99));
    CloseRomFile(rom);
    QVERIFY(!IsRomOpen(rom));
    QCOMPARE(RomLength(rom), -1);
}

void TestRomFile::readsStopAtTheEnd_data()
{
    QTest::addColumn<qint64>("position");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<qint64>("got");
    QTest::newRow("whole file") << qint64(0) << qint64(10) << qint64(10);
    QTest::newRow("running past the end") << qint64(6) << qint64(10) << qint64(4);
    QTest::newRow("last byte") << qint64(9) << qint64(1) << qint64(1);
    QTest::newRow("at the end") << qint64(10) << qint64(4) << qint64(0);
    QTest::newRow("far beyond") << qint64(1000) << qint64(4) << qint64(0);
    QTest::newRow("beyond 32 bits") << qint64(0x100000000) << qint64(4) << qint64(0);
    QTest::newRow("negative") << qint64(-1) << qint64(4) << qint64(0);
    QTest::newRow("nothing asked") << qint64(3) << qint64(0) << qint64(0);
}

void TestRomFile::readsStopAtTheEnd()
{
    QFETCH(qint64, position);
    QFETCH(qint64, count);
    QFETCH(qint64, got);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    QVERIFY(WriteFileBytes(path, kTenBytes));
    RomFile rom;
    QString error;
    QVERIFY(OpenRomFile(rom, path, error));

    QByteArray buffer(int(count) + 8, '\x5A'); // the tail shows writes beyond what was read
    QCOMPARE(ReadRomBytes(rom, position, buffer.data(), count), got);
    if (got > 0)
        QCOMPARE(buffer.left(int(got)), kTenBytes.mid(int(position), int(got)));
    QCOMPARE(buffer.mid(int(got)), QByteArray(buffer.size() - int(got), '\x5A'));
    CloseRomFile(rom);
}

void TestRomFile::writesInPlaceAndAtTheEnd()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("rom.bin"));
    QVERIFY(WriteFileBytes(path, kTenBytes));
    RomFile rom;
    QString error;
    QVERIFY(OpenRomFile(rom, path, error));
    QCOMPARE(RomLength(rom), 10); // opening never truncates

    const uint8_t bytes[3] = {0xA1, 0xA2, 0xA3};
    QVERIFY(WriteRomBytes(rom, 4, bytes, 3, error));
    QVERIFY(WriteRomBytes(rom, 10, bytes, 3, error));
    QVERIFY(!WriteRomBytes(rom, -1, bytes, 3, error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(RomLength(rom), 13);
    QCOMPARE(FileBytes(path), QByteArray("\x00\x11\x22\x33\xA1\xA2\xA3\x77\x88\x99\xA1\xA2\xA3", 13));
    CloseRomFile(rom);
}

void TestRomFile::hexAnswer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("digits");
    QTest::addColumn<quint64>("value");
    QTest::addColumn<bool>("tooLarge");

    QTest::newRow("upper case") << "1F0000" << 6 << quint64(0x1F0000) << false;
    QTest::newRow("lower case") << "1f0000" << 6 << quint64(0x1F0000) << false;
    QTest::newRow("mixed case") << "aBcDeF" << 6 << quint64(0xABCDEF) << false;
    QTest::newRow("blanks between digits") << "1F 00 00" << 6 << quint64(0x1F0000) << false;
    QTest::newRow("tabs and line breaks") << " \t1F\r\n00\t00 " << 6 << quint64(0x1F0000) << false;
    QTest::newRow("stops at the first other character") << "1F0000X12" << 6 << quint64(0x1F0000) << false;
    QTest::newRow("0x prefix reads the 0 only") << "0x1F" << 1 << quint64(0) << false;
    QTest::newRow("&H prefix reads nothing") << "&H10" << 0 << quint64(0) << false;
    QTest::newRow("empty") << "" << 0 << quint64(0) << false;
    QTest::newRow("blanks only") << " \t " << 0 << quint64(0) << false;
    QTest::newRow("no digit") << "zz" << 0 << quint64(0) << false;
    QTest::newRow("G is no digit") << "G1" << 0 << quint64(0) << false;
    QTest::newRow("minus sign") << "-10" << 0 << quint64(0) << false;
    QTest::newRow("digits of other scripts") << QStringLiteral("\uFF11\u0663") << 0 << quint64(0) << false;
    QTest::newRow("16 digits fit") << "FFFFFFFFFFFFFFFF" << 16 << quint64(0xFFFFFFFFFFFFFFFF) << false;
    QTest::newRow("17 digits overflow") << "10000000000000000" << 17 << quint64(0) << true;
    QTest::newRow("leading zeros do not overflow") << "000000000000000000001" << 21 << quint64(1) << false;
}

void TestRomFile::hexAnswer()
{
    QFETCH(QString, text);
    QFETCH(int, digits);
    QFETCH(quint64, value);
    QFETCH(bool, tooLarge);
    const HexAnswer answer = ReadHexAnswer(text);
    QCOMPARE(answer.digits, digits);
    QCOMPARE(answer.tooLarge, tooLarge);
    if (!tooLarge)
        QCOMPARE(answer.value, value);
}

QTEST_GUILESS_MAIN(TestRomFile)
#include "test_rom_file.moc"
