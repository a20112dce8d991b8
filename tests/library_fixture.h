#pragma once
// Shared by the format library tests: images in temporary files, and a palette of
// fifteen colours none within a step of another.
#include "palette/palette.h"
#include "rom_builder.h"
#include "view/picture_surface.h"

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

// The pixels of the rectangle, within the surface, that differ from color.
inline int CountNot(const PictureSurface& surface, ScreenColor color, QRect rect = QRect(0, 0, 1000, 1000))
{
    rect = rect.intersected(surface.image.rect());
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        for (int x = rect.left(); x <= rect.right(); ++x)
            count += SurfacePixel(surface, x, y) != int64_t(color);
    return count;
}
