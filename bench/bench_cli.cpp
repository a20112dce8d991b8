// The command line as its users run it, a process from start to exit: rip of an image
// whose 14 tables are full (151 frames each, 2,114 frames), and tables on the demo image.
#include "demo_image.h"
#include "rom/art_table.h"
#include "rom_builder.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {
constexpr int kFreeArea = 0x140000;

// Each list's 151st entry is the last before frame 0's data, which follows it.
QByteArray FullImage()
{
    QByteArray image(0x300000, '\0');
    int freeAt = kFreeArea;
    for (int n = 0; n < kArtTableCount; ++n) {
        const int position = kArtTablePositions[size_t(n)];
        std::vector<QByteArray> frames;
        for (int f = 0; f < kTableSlots; ++f) {
            IndexGrid sprite = MakeIndexGrid(16, 16);
            for (int y = 0; y < 16; ++y)
                for (int x = (y + f) % 4; x < 16 - y % 3; ++x)
                    sprite.At(x, y) = 1 + (x + y + f + n) % 15;
            frames.push_back(SpriteFrameBytes(sprite, 8, 0));
        }
        PutFramesAfterList(image, position, frames, freeAt);
    }
    return image;
}

struct Images {
    QTemporaryDir dir;
    QString full = dir.filePath("full.bin"), demo = dir.filePath("demo.bin");
    Images() { WriteFileBytes(full, FullImage()), WriteFileBytes(demo, BuildDemoImage()); }
};

Images& Shared()
{
    static Images images;
    return images;
}

bool RunCli(const QStringList& args)
{
    QProcess process;
    process.start(QStringLiteral(ZELVANE_CLI), args);
    return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

// Into new folders: the file system's creation of 2,114 files counts too. Argument 1
// rips into a RAM disk, to see the program's own part.
void BM_RipFullImage(benchmark::State& state)
{
    Images& images = Shared();
    QTemporaryDir ramDisk(QStringLiteral("/dev/shm/zelvane-bench-XXXXXX"));
    const QDir into(state.range(0) ? ramDisk.path() : images.dir.path());
    int rips = 0;
    for (auto _ : state)
        if (!RunCli({"rip", images.full, into.filePath(QStringLiteral("rip%1").arg(rips++)), "--quiet"}))
            state.SkipWithError("rip failed");
    QFile manifest(into.filePath(QStringLiteral("rip0/manifest.json")));
    state.counters["frames_ripped"] = manifest.open(QIODevice::ReadOnly) ? double(manifest.readAll().count("\"file\"")) : 0.0;
    state.counters["frames_per_second"] =
        benchmark::Counter(double(kArtTableCount * kTableSlots) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_RipFullImage)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_TablesOfTheDemoImage(benchmark::State& state)
{
    Images& images = Shared();
    for (auto _ : state)
        if (!RunCli({"tables", images.demo}))
            state.SkipWithError("tables failed");
}
BENCHMARK(BM_TablesOfTheDemoImage)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK_MAIN();
