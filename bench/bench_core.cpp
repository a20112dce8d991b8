// Timings of what the user waits for: opening an image, showing the largest frame,
// one painting move and saving a full preview. The image is a 3 MiB file laid out
// like the demo image, with the largest frame a record holds as table 0's frame 0.
#include "art/frame_encoder.h"
#include "rom/rom_open.h"
#include "rom_builder.h"
#include "view/frame_drawing.h"

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr int kImageLength = 3 * 1024 * 1024;
constexpr int kFreeArea = 0x140000; // frames other than each table's first go here

ConsoleColor Word(int red, int green, int blue) { return ConsoleColor(red | green << 5 | blue << 10); }

std::array<ConsoleColor, 15> PaletteWords(int n)
{
    std::array<ConsoleColor, 15> words{};
    for (int i = 0; i < 15; ++i)
        words[size_t(i)] = Word((2 * i + n) % 32, (31 - i + 3 * n) % 32, (i + 5 * n) % 32);
    return words;
}

// 101 lines of 101 pixels, centred on frame position (0, 0).
QByteArray LargestFrameBytes()
{
    QByteArray bytes;
    auto put = [&bytes](int value) { bytes.append(char(uint8_t(value))); };
    put(0xFF); put(-50); put(0); put(50);  // left -50, right 50
    put(-50); put(0); put(50); put(0);     // top -50, bottom 50
    for (int i = 0; i < kFrameLineSlots; ++i) {
        put(-50); put(51); put(i - 50); put(0);
        for (int k = 0; k < kLinePixelSlots; ++k)
            put(1 + (i + k) % 15);
    }
    put(0); put(0);
    return bytes;
}

IndexGrid Blob(int frame)
{
    IndexGrid grid = MakeIndexGrid(30, 40);
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x) {
            const int dx = 2 * x - 29, dy = 2 * y - 39;
            if (dx * dx * 16 + dy * dy * 9 < 29 * 29 * 9 + frame * 40)
                grid.At(x, y) = 1 + (x + y + frame) % 15;
        }
    return grid;
}

// Each table lists 3 to 6 frames; frame 0 follows the list, the others lie elsewhere.
QByteArray DemoLayoutImage()
{
    QByteArray image(kImageLength, '\0');
    for (int n = 0; n < kArtTableCount; ++n)
        PutPaletteWords(image, kPalettePositions[size_t(n)], PaletteWords(n % 7));
    int freeAt = kFreeArea;
    for (int n = 0; n < kArtTableCount; ++n) {
        const int position = kArtTablePositions[size_t(n)];
        const int frames = 3 + n % 4;
        std::vector<QByteArray> list;
        for (int f = 0; f < frames; ++f)
            list.push_back(n == 0 && f == 0 ? LargestFrameBytes() : SpriteFrameBytes(Blob(f), 15, 0));
        PutFramesAfterList(image, position, list, freeAt);
    }
    return image;
}

struct Workspace {
    QTemporaryDir dir;
    RomFile rom;
    RomFile scratch; // takes the saves, so the image stays as built
    int32_t readPosition = 0;
    std::array<ArtTable, kArtTableRecords> tables{};
    std::array<Palette, kPaletteRecords> palettes{};
    PictureSurface canvas = MakeSurface(kCanvasWidth, kCanvasHeight);
    PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
    ArtFrame frame;
};

Workspace& Shared()
{
    static Workspace* w = [] {
        auto* made = new Workspace;
        const QString image = made->dir.filePath(QStringLiteral("image.bin"));
        const QString scratch = made->dir.filePath(QStringLiteral("scratch.bin"));
        QString error;
        if (!WriteFileBytes(image, DemoLayoutImage()) || !WriteFileBytes(scratch, QByteArray(4096, '\0'))
            || !OpenRomFile(made->rom, image, error) || !OpenRomFile(made->scratch, scratch, error))
            std::abort();
        ReadArtTables(made->rom, made->readPosition, made->tables, kArtTableCount);
        ReadPalettes(made->rom, made->readPosition, made->palettes);
        return made;
    }();
    return *w;
}

void OpenCatalogue(Workspace& w)
{
    ReadArtTables(w.rom, w.readPosition, w.tables, kArtTableCount);
    ReadPalettes(w.rom, w.readPosition, w.palettes);
}

// Read system calls of this thread so far, as the kernel counts them. Reading the
// count is one read itself.
int64_t ReadCalls()
{
    const int fd = ::open("/proc/thread-self/io", O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return -1;
    char text[512] = {};
    const ssize_t got = ::read(fd, text, sizeof text - 1);
    ::close(fd);
    const char* at = got > 0 ? std::strstr(text, "syscr: ") : nullptr;
    return at ? std::atoll(at + 7) : -1;
}

void BM_OpenCatalogue(benchmark::State& state)
{
    Workspace& w = Shared();
    const int64_t before = ReadCalls();
    const int64_t idle = ReadCalls() - before;
    const int64_t start = ReadCalls();
    OpenCatalogue(w);
    const int64_t reads = ReadCalls() - start - idle;
    for (auto _ : state) {
        OpenCatalogue(w);
        benchmark::DoNotOptimize(w.tables.data());
    }
    if (before >= 0)
        state.counters["reads_per_open"] = double(reads);
}
BENCHMARK(BM_OpenCatalogue);

void BM_ReadLargestFrame(benchmark::State& state)
{
    Workspace& w = Shared();
    for (auto _ : state) {
        ReadFrame(w.rom, w.readPosition, w.frame, w.tables[0].pointers[0]);
        benchmark::DoNotOptimize(w.frame.lastLine);
    }
    state.counters["lines"] = w.frame.lastLine + 1;
}
BENCHMARK(BM_ReadLargestFrame);

void BM_RefreshLargestFrameZoom8(benchmark::State& state)
{
    Workspace& w = Shared();
    for (auto _ : state) {
        ReadFrame(w.rom, w.readPosition, w.frame, w.tables[0].pointers[0]);
        ClearSurface(w.canvas);
        ClearSurface(w.preview);
        DrawFrame({w.canvas, w.preview, 8}, w.frame, w.palettes[0], kPictureBackground);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_RefreshLargestFrameZoom8);

void BM_PaintMoveZoom8(benchmark::State& state)
{
    Workspace& w = Shared();
    const ScreenColor color = ConsoleToScreen(w.palettes[0], 5, kPictureBackground);
    int i = 0;
    for (auto _ : state) {
        ++i;
        benchmark::DoNotOptimize(PaintFramePixel({w.canvas, w.preview, 8},
                                                 CanvasPixelAt({i * 37 % kCanvasWidth, i * 53 % kCanvasHeight}, 8), color));
    }
}
BENCHMARK(BM_PaintMoveZoom8);

void BM_EncodeAndWriteFullPreview(benchmark::State& state)
{
    Workspace& w = Shared();
    const Palette& palette = w.palettes[0];
    for (int y = 0; y < kPreviewHeight; ++y)
        for (int x = 0; x < kPreviewWidth; ++x)
            SetSurfacePixel(w.preview, x, y, ConsoleToScreen(palette, 1 + (x + y) % 15, kPictureBackground));
    constexpr int64_t kScratchLength = 4096;
    int64_t end = kScratchLength;
    int saves = 0;
    QString error;
    for (auto _ : state) {
        ArtFrame& frame = w.frame;
        frame.right = kPreviewWidth - 1;
        frame.bottom = kPreviewHeight - 1;
        const QByteArray bytes = EncodeFrame(frame, w.preview.image, palette, kPictureBackground) == FrameFit::Fits
                                     ? FrameBytes(frame)
                                     : QByteArray();
        if (bytes.isEmpty() || !WriteRomBytes(w.scratch, end, bytes.constData(), bytes.size(), error)) {
            state.SkipWithError("the preview could not be saved");
            break;
        }
        end += bytes.size();
        if (++saves % 256 == 0) { // keep the scratch file small
            state.PauseTiming();
            if (::ftruncate(w.scratch.fd, kScratchLength) != 0)
                state.SkipWithError("cannot truncate the scratch file");
            end = kScratchLength;
            state.ResumeTiming();
        }
    }
    state.counters["frame_bytes"] = double(FrameBytes(w.frame).size());
}
BENCHMARK(BM_EncodeAndWriteFullPreview);
}

BENCHMARK_MAIN();
