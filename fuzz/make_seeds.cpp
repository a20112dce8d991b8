// Writes a small seed corpus for each fuzz target into the folder given: pieces of the
// demo image, grids, bitmaps, typed answers and a real journal.
#include "demo_image.h"
#include "exchange/bitmap_fixtures.h"
#include "rom/art_table.h"
#include "rom/journal.h"
#include "rom_builder.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>

namespace {
void Seed(const QDir& root, const QString& target, int n, const QByteArray& bytes)
{
    root.mkpath(target);
    WriteFileBytes(root.filePath(QStringLiteral("%1/seed%2").arg(target).arg(n)), bytes);
}

// A piece of the image for the open target: where it goes, how long, the bytes.
QByteArray Piece(const QByteArray& image, int position, int count)
{
    char head[5];
    qToBigEndian<uint32_t>(uint32_t(position), head);
    head[4] = char(count);
    return QByteArray(head, 5) + image.mid(position, count);
}

QByteArray JournalSeed()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("rom.bin");
    WriteFileBytes(path, QByteArray(4096, 'r'));
    RomFile rom;
    Journal journal;
    JournalEntry entry;
    QString error;
    OpenRomFile(rom, path, error);
    CommitChange(journal, rom, "save", {{10, "frame"}, {4096, "appended"}}, -1, entry, error);
    CommitChange(journal, rom, "revert", {{10, "old!!"}}, 4096, entry, error);
    CloseJournal(journal);
    CloseRomFile(rom);
    QFile file(path + ".zelvane-journal");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
}

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const QDir root(QString::fromLocal8Bit(argv[1]));
    const QByteArray image = BuildDemoImage();
    for (int n = 0; n < kArtTableCount; ++n) {
        QByteArray pieces("\x00\x30\x00\x00", 4);
        const int table = kArtTablePositions[size_t(n)];
        const int frame = int(qFromBigEndian<uint32_t>(image.constData() + table) - kCartridgeBase);
        pieces += Piece(image, table, 64) + Piece(image, kPalettePositions[size_t(n)], 30);
        for (int at = frame; at < frame + 1024; at += 255)
            pieces += Piece(image, at, 255);
        Seed(root, "open_image", n, pieces);
    }
    for (int n = 0; n < 4; ++n) {
        QByteArray grid;
        grid.append(char(7 + n * 5)).append(char(4 + n * 9)).append(char(n * 3)).append(char(-n));
        for (int i = 0; i < 200; ++i)
            grid.append(char((i * 7 + n) % 23));
        Seed(root, "encoder", n, grid);
    }
    std::vector<int> indices(6 * 5);
    for (size_t i = 0; i < indices.size(); ++i)
        indices[i] = int(i % 16);
    for (BmpRows rows : {BmpRows::BottomUp, BmpRows::TopDown, BmpRows::RunLength})
        Seed(root, "bitmap", int(rows), FourBitBitmap(SixteenColors(), 6, 5, indices, rows));
    const char* const answers[] = {"1F0000", " ff 00 ff", "0x1000", "123456789abcdef0123", "zz"};
    for (int n = 0; n < 5; ++n)
        Seed(root, "answers", n, answers[n]);
    Seed(root, "journal", 0, JournalSeed());
    return 0;
}
