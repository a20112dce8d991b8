// The encoder's round trip: any grid that fits a frame, encoded, written and read back,
// shows the same pixels at the same frame positions; the only pixels added are the
// index-0 ones that widen a line of odd width.
#include "art/frame_encoder.h"
#include "fuzz_input.h"
#include "view/frame_render.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static MemoryFile file;
    if (size < 4)
        return 0;
    PixelGrid grid = MakePixelGrid(1 + data[0] % 80, 1 + data[1] % 80);
    for (size_t i = 0; i < grid.cells.size() && 4 + i < size; ++i)
        grid.cells[i] = data[4 + i] % 20 > kLastDrawnValue ? kNoPixel : data[4 + i] % 20;
    ArtFrame frame;
    frame.right = int8_t(data[2]);
    frame.bottom = int8_t(data[3]);
    if (EncodeGrid(frame, grid) != FrameFit::Fits)
        return 0;
    const QByteArray bytes = FrameBytes(frame);
    file.Fill(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
    RomFile rom;
    QString error;
    ArtFrame read;
    int32_t position = 0;
    if (!OpenRomFile(rom, file.Path(), error) || ReadFrame(rom, position, read, 0) != FrameRead::Complete)
        std::abort();
    CloseRomFile(rom);
    const FramePixels shown = RenderFramePixels(read);
    for (int y = 0; y < shown.grid.height; ++y)
        for (int x = 0; x < shown.grid.width; ++x) {
            const int c = x + shown.origin.x() - frame.left, r = y + shown.origin.y() - frame.top;
            const int wanted = c >= 0 && r >= 0 && c < grid.width && r < grid.height ? grid.At(c, r) : kNoPixel;
            const int got = shown.grid.At(x, y);
            const bool widening = wanted == kNoPixel && got == 0 && x > 0 && shown.grid.At(x - 1, y) != kNoPixel;
            if (got != wanted && !widening)
                std::abort();
        }
    return 0;
}
