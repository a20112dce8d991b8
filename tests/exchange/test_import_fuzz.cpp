// Damaged and random files through everything that reads a bitmap to import. The
// readers must refuse them or read them, never crash or read outside their buffers.
#include "exchange/bitmap_files.h"
#include "exchange/bitmap_fixtures.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {
constexpr int kCases = 4000;
constexpr quint32 kSeed = 0x5EC7104u;

// Fields of the file and info headers, where a damaged value does the most harm.
constexpr int kFieldOffsets[] = {2, 10, 14, 18, 22, 26, 28, 30, 34, 46, 50};
constexpr quint32 kTellingValues[] = {0,     1,     2,     3,      4,      8,          12,         16,        24,
                                      32,    40,    64,    108,    124,    255,        256,        0x7FFF,    0x8000,
                                      65535, 16384, 16385, 100000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xFFFFFFFE};

QList<QByteArray> ValidFiles()
{
    std::vector<int> indices(15);
    for (size_t i = 0; i < indices.size(); ++i)
        indices[i] = int(i);
    return {
        FourBitBitmap(SixteenColors(), 5, 3, indices, BmpRows::BottomUp),
        FourBitBitmap(SixteenColors(), 5, 3, indices, BmpRows::TopDown),
        FourBitBitmap(SixteenColors(), 5, 3, indices, BmpRows::RunLength),
        Encoded(SmallImage(QImage::Format_RGB32)),
        Encoded(SmallImage(QImage::Format_Indexed8, 256)),
        Encoded(SmallImage(QImage::Format_Mono, 2)),
    };
}

QByteArray Noise(QRandomGenerator& random)
{
    QByteArray bytes(int(random.bounded(200)), '\0');
    for (char& byte : bytes)
        byte = char(random.bounded(256));
    if (bytes.size() >= 2 && random.bounded(2) == 0)
        bytes.replace(0, 2, "BM");
    return bytes;
}

void Mutate(QByteArray& bytes, QRandomGenerator& random)
{
    switch (random.bounded(4)) {
    case 0: { // one byte, mostly in the headers and the colour table
        const int span = random.bounded(3) == 0 ? int(bytes.size()) : std::min(int(bytes.size()), 130);
        if (span > 0)
            bytes[int(random.bounded(span))] = char(random.bounded(256));
        break;
    }
    case 1: {
        const int offset = kFieldOffsets[random.bounded(int(std::size(kFieldOffsets)))];
        const quint32 value = kTellingValues[random.bounded(int(std::size(kTellingValues)))];
        if (offset + 4 <= bytes.size())
            SetField(bytes, offset, value, random.bounded(2) == 0 ? 2 : 4);
        break;
    }
    case 2:
        bytes.truncate(int(random.bounded(int(bytes.size()) + 1)));
        break;
    default:
        bytes.append(QByteArray(int(random.bounded(64)), char(random.bounded(256))));
    }
}

void Quiet(QtMsgType, const QMessageLogContext&, const QString&) {}
}

class TestImportFuzz : public QObject {
    Q_OBJECT

private slots:
    void damagedFiles()
    {
        QTemporaryDir dir;
        const QString fileName = dir.filePath(QStringLiteral("fuzz.bmp"));
        const QList<QByteArray> valid = ValidFiles();
        QRandomGenerator random(kSeed);
        // The image plugins warn about many of these files; the verdicts are what count.
        const QtMessageHandler previous = qInstallMessageHandler(Quiet);
        int loaded = 0;
        for (int i = 0; i < kCases; ++i) {
            QByteArray bytes;
            if (i % 4 == 0) {
                bytes = Noise(random);
            } else {
                bytes = valid[int(random.bounded(int(valid.size())))];
                for (int n = int(random.bounded(1, 5)); n > 0; --n)
                    Mutate(bytes, random);
            }
            QFile file(fileName);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            QCOMPARE(file.write(bytes), qint64(bytes.size()));
            file.close();

            const int depth = BitmapDepth(fileName);
            QVERIFY(depth >= 0 && depth <= 0xFFFF);
            Palette palette;
            palette.colors[16] = 0x1234;
            ReadBitmapPalette(palette, fileName);
            QCOMPARE(palette.colors[16], ConsoleColor(0x1234));
            QImage picture(1, 1, QImage::Format_RGB32);
            QString errorText;
            if (LoadBitmapPicture(fileName, picture, errorText)) {
                ++loaded;
                QCOMPARE(picture.format(), QImage::Format_RGB32);
                QVERIFY(!picture.isNull() && picture.width() <= 16384 && picture.height() <= 16384);
            } else {
                QVERIFY(!errorText.isEmpty());
                QCOMPARE(picture.size(), QSize(1, 1));
            }
        }
        qInstallMessageHandler(previous);
        qInfo("%d of %d files loaded", loaded, kCases);
    }
};

QTEST_GUILESS_MAIN(TestImportFuzz)
#include "test_import_fuzz.moc"
