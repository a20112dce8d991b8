// Damaged and random files through everything that reads a bitmap to import. The
// readers must refuse them or read them, never crash or read outside their buffers.
#include "exchange/bitmap_files.h"
#include "exchange/bitmap_fixtures.h"
#include "rom_builder.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

class TestImportFuzz : public QObject {
    Q_OBJECT
private slots:
    void damagedFiles()
    {
        QList<QByteArray> valid = {Encoded(SmallImage(QImage::Format_RGB32)), Encoded(SmallImage(QImage::Format_Indexed8, 256)),
                                   Encoded(SmallImage(QImage::Format_Mono, 2))};
        for (BmpRows rows : {BmpRows::BottomUp, BmpRows::TopDown, BmpRows::RunLength})
            valid.append(FourBitBitmap(SixteenColors(), 5, 3, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}, rows));
        // Header fields where a damaged value does the most harm, and values that tell.
        const int fields[] = {2, 10, 14, 18, 22, 26, 28, 30, 34, 46, 50};
        const quint32 values[] = {0, 1, 2, 4, 8, 16, 24, 32, 124, 0x100, 0x8000, 16385, 0x7FFFFFFF, 0x80000000, ~0u, ~1u};
        QTemporaryDir dir;
        const QString fileName = dir.filePath(QStringLiteral("fuzz.bmp"));
        QRandomGenerator random(0x5EC7104u);
        auto roll = [&random](int below) { return int(random.bounded(std::max(below, 1))); };
        // The image plugins warn about many of these files; the verdicts are what count.
        const QtMessageHandler previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        int loaded = 0;
        for (int i = 0; i < 4000; ++i) {
            QByteArray bytes = valid[roll(6)];
            if (i % 4 == 0) { // noise, sometimes with the bitmap signature
                bytes.resize(roll(200));
                for (char& byte : bytes)
                    byte = char(roll(256));
                if (bytes.size() >= 2 && roll(2))
                    bytes.replace(0, 2, "BM");
            }
            for (int n = i % 4 == 0 ? 0 : 1 + roll(4); n > 0; --n) {
                const int kind = roll(4), size = int(bytes.size());
                if (kind == 0 && size > 0) // one byte, mostly in the headers and the colour table
                    bytes[roll(roll(3) ? std::min(size, 130) : size)] = char(roll(256));
                else if (kind == 1 && size >= 54)
                    SetField(bytes, fields[roll(11)], values[roll(16)], roll(2) ? 2 : 4);
                else if (kind == 2)
                    bytes.truncate(roll(size + 1));
                else
                    bytes.append(QByteArray(roll(64), char(roll(256))));
            }
            QVERIFY(WriteFileBytes(fileName, bytes));
            QImage picture(1, 1, QImage::Format_RGB32);
            QString errorText;
            const bool read = LoadBitmapPicture(fileName, picture, errorText);
            loaded += read;
            QCOMPARE(errorText.isEmpty(), read);
            QVERIFY(read ? picture.format() == QImage::Format_RGB32 && std::max(picture.width(), picture.height()) <= 16384
                         : picture.size() == QSize(1, 1));
        }
        qInstallMessageHandler(previous);
        QVERIFY2(loaded > 500, qPrintable(QString::number(loaded))); // the damage must not stop every file early
    }
};

QTEST_GUILESS_MAIN(TestImportFuzz)
#include "test_import_fuzz.moc"
