// The command line as its users run it, a process from start to exit: rip of an image
// whose 14 tables are full (151 frames each, 2,114 frames), as frames and as sheets, an
// import of sheets on which every frame was edited, and tables on the demo image.
#include "demo_image.h"
#include "rom/art_table.h"
#include "rom_builder.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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

void BM_RipSheetsOfTheFullImage(benchmark::State& state)
{
    Images& images = Shared();
    int rips = 0;
    for (auto _ : state)
        if (!RunCli({"rip", images.full, images.dir.filePath(QStringLiteral("sheets%1").arg(rips++)), "--sheets", "--quiet"}))
            state.SkipWithError("rip failed");
    state.counters["frames_per_second"] =
        benchmark::Counter(double(kArtTableCount * kTableSlots) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_RipSheetsOfTheFullImage)->Unit(benchmark::kMillisecond)->UseRealTime();

// Every frame's rectangle mirrored on its sheet, as a paint program would edit it.
void MirrorEveryFrame(const QString& dir)
{
    QFile file(dir + "/manifest.json");
    file.open(QIODevice::ReadOnly);
    QMap<QString, QImage> sheets;
    for (const QJsonValue& line : QJsonDocument::fromJson(file.readAll())["frames"].toArray()) {
        const QString name = line["file"].toString();
        const QJsonArray r = line["rect"].toArray();
        if (!sheets.contains(name))
            sheets[name] = QImage(dir + "/" + name);
        QImage& sheet = sheets[name];
        const QRect rect(r[0].toInt(), r[1].toInt(), r[2].toInt(), r[3].toInt());
        const QImage part = sheet.copy(rect);
        for (int y = 0; y < rect.height(); ++y)
            for (int x = 0; x < rect.width(); ++x)
                sheet.setPixel(rect.left() + x, rect.top() + y, uint(part.pixelIndex(rect.width() - 1 - x, y)));
    }
    for (auto sheet = sheets.begin(); sheet != sheets.end(); ++sheet)
        sheet->save(dir + "/" + sheet.key());
}

void BM_ImportEveryFrameEdited(benchmark::State& state)
{
    Images& images = Shared();
    const QString edited = images.dir.filePath("edited");
    if (!RunCli({"rip", images.full, edited, "--sheets", "--quiet", "--force"})) // each run edits them anew
        state.SkipWithError("rip failed");
    MirrorEveryFrame(edited);
    const QByteArray manifest = [&] { QFile f(edited + "/manifest.json"); f.open(QIODevice::ReadOnly); return f.readAll(); }();
    const QByteArray full = FullImage();
    const QString rom = images.dir.filePath("imported.bin");
    for (auto _ : state) {
        state.PauseTiming();
        QFile::remove(rom + ".zelvane-journal");
        WriteFileBytes(rom, full), WriteFileBytes(edited + "/manifest.json", manifest);
        state.ResumeTiming();
        if (!RunCli({"import", rom, edited}))
            state.SkipWithError("import failed");
    }
    state.counters["frames_per_second"] =
        benchmark::Counter(double(kArtTableCount * kTableSlots) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ImportEveryFrameEdited)->Unit(benchmark::kMillisecond)->UseRealTime();

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
