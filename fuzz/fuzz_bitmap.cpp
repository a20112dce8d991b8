// The bitmap import's depth check, palette reading and loader on arbitrary files.
#include "exchange/bitmap_files.h"
#include "exchange/picture_pixels.h"
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static MemoryFile file;
    file.Fill(data, size);
    Palette palette;
    ReadBitmapPalette(palette, file.Path());
    QImage picture;
    QString error;
    if (HasImportedDepth(file.Path()) && LoadBitmapImage(file.Path(), picture, error))
        PicturePixels(picture, palette, PictureReading{}, error);
    return 0;
}
