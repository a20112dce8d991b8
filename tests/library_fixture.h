#pragma once
// Shared by the format library tests: images in temporary files, and a palette of
// fifteen colours none within a step of another.
#include "palette/palette.h"
#include "rom_builder.h"

#include <QFile>
#include <QTemporaryDir>

inline QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// An image in rom.bin of a fresh folder, open while the value lives.
struct TempImage {
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("rom.bin"));
    RomFile rom;
    int32_t at = 0; // the readers' readPosition
    QString error;
    ~TempImage() { CloseRomFile(rom); }
    bool Open(const QByteArray& bytes) { return WriteFileBytes(path, bytes) && OpenRomFile(rom, path, error); }
    QByteArray Bytes() const { return FileBytes(path); }
};

inline ConsoleColor Word(int red, int green, int blue) { return ConsoleColor(red | green << 5 | blue << 10); }

inline Palette TestPalette()
{
    Palette palette;
    palette.colors[0] = kColorZeroWord;
    for (int slot = 1; slot <= kStoredColors; ++slot)
        palette.colors[size_t(slot)] = Word(2 * slot, 31 - slot, slot);
    palette.colors[17] = kTransparentMarker;
    return palette;
}

inline ScreenColor SlotColor(int slot) { return ConsoleToScreen(TestPalette(), slot, 0); }
