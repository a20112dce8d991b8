#include "exchange/bitmap_files.h"
#include "exchange/bitmap_fixtures.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Three columns (an odd width) and two rows of indices, top row first.
const std::vector<int> kGrid = {0, 1, 15, 7, 3, 9};

QByteArray GridBitmap(BmpRows rows) { return FourBitBitmap(SixteenColors(), 3, 2, kGrid, rows); }

QByteArray WithField(QByteArray bytes, int offset, quint32 value)
{
    SetField(bytes, offset, value, 4);
    return bytes;
}

// The palette table begins at byte 54; entries are blue, green, red, unused.
QByteArray TableFile(const QByteArray& entries) { return QByteArray(54, 'x') + entries; }
}

class TestBitmapFiles : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

    QString Written(const QByteArray& bytes)
    {
        const QString fileName = dir.filePath(QStringLiteral("in.bmp"));
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
            qFatal("cannot write the test file");
        return fileName;
    }

private slots:
    void exportReadsBackExactly()
    {
        QImage image(61, 85, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgb(x * 4, y * 3, (x * 7 + y * 13) & 255));
        const QString fileName = Written(QByteArray(100000, 'o')); // longer than the bitmap
        QString errorText;
        QVERIFY(WriteBitmapFile(image, fileName, errorText));
        QCOMPARE(BitmapDepth(fileName), 24);
        const QImage back(fileName, "bmp");
        QVERIFY(back.size() == image.size());
        QCOMPARE(back.convertToFormat(QImage::Format_RGB32), image);
    }

    void exportFailureNamesFile()
    {
        QString errorText;
        const QString fileName = dir.filePath(QStringLiteral("absent/out.bmp"));
        QVERIFY(!WriteBitmapFile(QImage(2, 2, QImage::Format_RGB32), fileName, errorText));
        QVERIFY(errorText.contains(QStringLiteral("out.bmp")));
        QVERIFY(!QFile::exists(fileName));
    }

    void depth_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("depth");
        QTest::newRow("4-bit") << GridBitmap(BmpRows::BottomUp) << 4;
        QTest::newRow("8-bit") << Encoded(SmallImage(QImage::Format_Indexed8, 256)) << 8;
        QTest::newRow("24-bit") << Encoded(SmallImage(QImage::Format_RGB32)) << 24;
        QTest::newRow("any file with 4 there") << QByteArray(28, 'x') + QByteArray("\x04\x00", 2) << 4;
        QTest::newRow("high byte missing") << QByteArray(28, 'x') + QByteArray("\x04", 1) << 4;
        QTest::newRow("high byte counts") << QByteArray(28, 'x') + QByteArray("\x04\x01", 2) << 0x104;
        QTest::newRow("ends before byte 28") << QByteArray(28, '\x04') << 0;
        QTest::newRow("empty") << QByteArray() << 0;
    }

    void depth()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, depth);
        QCOMPARE(BitmapDepth(Written(bytes)), depth);
    }

    void palette_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QList<int>>("words");
        const QByteArray entries("\x00\x00\xFF\x00"
                                 "\xFF\xFF\xFF\x00"
                                 "\x08\x08\x08\x00"
                                 "\x04\x04\x04\xAA"
                                 "\x00\xFF\x00\x00",
                                 20);
        QList<int> words = {0x001F, 0x7FFF, 0x0421, 0x0000, 0x03E0};
        words.resize(16, 0);
        QTest::newRow("entries") << TableFile(entries + QByteArray(44, '\0')) << words;
        words[15] = 0x7C00;
        QTest::newRow("last entry") << TableFile(entries + QByteArray(40, '\0') + QByteArray("\xFF\x00\x00\x00", 4))
                                    << words;
        QTest::newRow("red missing") << TableFile(QByteArray("\xFF\xFF", 2))
                                     << QList<int>{0x7FE0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        QTest::newRow("no table") << QByteArray(20, '\xFF') << QList<int>(16, 0);
    }

    void palette()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QList<int>, words);
        Palette palette;
        palette.colors.fill(0x5555);
        palette.colors[17] = kTransparentMarker;
        ReadBitmapPalette(palette, Written(bytes));
        for (int i = 0; i < 16; ++i)
            QCOMPARE(int(palette.colors[size_t(i)]), words[i]);
        QCOMPARE(palette.colors[16], ConsoleColor(0x5555));
        QCOMPARE(palette.colors[17], kTransparentMarker);
    }

    void unreadableFile()
    {
        const QString fileName = dir.filePath(QStringLiteral("absent.bmp"));
        QCOMPARE(BitmapDepth(fileName), 0);
        Palette palette;
        palette.colors.fill(0x5555);
        ReadBitmapPalette(palette, fileName);
        QCOMPARE(palette.colors[15], ConsoleColor(0));
        QImage picture;
        QString errorText;
        QVERIFY(!LoadBitmapPicture(fileName, picture, errorText));
        QVERIFY(errorText.contains(QStringLiteral("absent.bmp")));
    }

    void load_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("bottom up") << GridBitmap(BmpRows::BottomUp);
        QTest::newRow("top down") << GridBitmap(BmpRows::TopDown);
        QTest::newRow("run length") << GridBitmap(BmpRows::RunLength);
        QTest::newRow("trailing bytes") << GridBitmap(BmpRows::BottomUp) + QByteArray(1000, '\x77');
    }

    void load()
    {
        QFETCH(QByteArray, bytes);
        QImage picture;
        QString errorText;
        QVERIFY2(LoadBitmapPicture(Written(bytes), picture, errorText), qPrintable(errorText));
        QCOMPARE(picture.format(), QImage::Format_RGB32);
        QCOMPARE(picture.size(), QSize(3, 2));
        for (int i = 0; i < 6; ++i)
            QCOMPARE(picture.pixel(i % 3, i / 3), SixteenColors()[size_t(kGrid[size_t(i)])]);
    }

    void loadRefusals_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray grid = GridBitmap(BmpRows::BottomUp);
        QTest::newRow("last row cut") << grid.left(grid.size() - 2);
        QTest::newRow("no pixels") << grid.left(14 + 40 + 64);
        QTest::newRow("colour table cut") << grid.left(14 + 40 + 20);
        QTest::newRow("run length cut") << GridBitmap(BmpRows::RunLength).chopped(4);
        const QByteArray wide = Encoded(QImage(50, 40, QImage::Format_RGB32));
        QTest::newRow("24-bit cut") << wide.left(wide.size() / 2);
        QTest::newRow("pixels behind the end") << WithField(grid, 10, 5000);
        QTest::newRow("side too long") << WithField(grid, 18, 16385);
        QTest::newRow("too many pixels") << WithField(WithField(grid, 18, 10000), 22, 10000);
        QTest::newRow("huge") << WithField(WithField(grid, 18, 0x7FFFFFFF), 22, 0x7FFFFFFF);
        QTest::newRow("no width") << WithField(grid, 18, 0);
        QTest::newRow("longer than declared") << grid + QByteArray(2 * 1024 * 1024, '\0');
        QTest::newRow("garbage") << QByteArray("This is not a bitmap at all, just some words in a file.");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("picture of another kind") << Encoded(SmallImage(QImage::Format_RGB32), "png");
    }

    void loadRefusals()
    {
        QFETCH(QByteArray, bytes);
        QImage picture(1, 1, QImage::Format_RGB32);
        picture.fill(qRgb(1, 2, 3));
        const QImage before = picture;
        QString errorText;
        QVERIFY(!LoadBitmapPicture(Written(bytes), picture, errorText));
        QVERIFY(errorText.contains(QStringLiteral("in.bmp")));
        QCOMPARE(picture, before);
    }
};

QTEST_GUILESS_MAIN(TestBitmapFiles)
#include "test_bitmap_files.moc"
