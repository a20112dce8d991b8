// Making a patch of a 4 MiB image: the clean image and the changed one compared whole,
// for a hack's usual scattered edits and for edits every few bytes, the worst case for
// the number of records.
#include "exchange/patch_formats.h"

#include <benchmark/benchmark.h>

namespace {
constexpr qsizetype kImage = 4 << 20;

QByteArray CleanImage()
{
    QByteArray bytes(kImage, Qt::Uninitialized);
    uint32_t state = 0x2545F491;
    for (char& byte : bytes)
        byte = char((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
}

// Every stride bytes, run bytes changed; and 64 KiB more at the end.
QByteArray ChangedImage(const QByteArray& clean, qsizetype stride, qsizetype run)
{
    QByteArray changed = clean + QByteArray(64 << 10, '\x5A');
    for (qsizetype at = 0; at + run <= clean.size(); at += stride)
        for (qsizetype i = at; i < at + run; ++i)
            changed[i] = char(~changed[i]);
    return changed;
}

void BM_CreatePatch(benchmark::State& state)
{
    const PatchFormat format = PatchFormat(state.range(0));
    const QByteArray clean = CleanImage(), changed = ChangedImage(clean, state.range(1), state.range(2));
    QString errorText;
    qsizetype size = 0;
    for (auto _ : state)
        size = CreatePatch(format, clean, changed, errorText).value_or(QByteArray()).size();
    state.counters["patch_bytes"] = double(size);
}
// Formats 0 (BPS) and 1 (IPS); 16 bytes changed every 4 KiB, then 1 byte every 8.
BENCHMARK(BM_CreatePatch)->ArgsProduct({{0, 1}, {4096}, {16}})->ArgsProduct({{0, 1}, {8}, {1}})
    ->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ApplyBps(benchmark::State& state)
{
    const QByteArray clean = CleanImage(), patch = CreateBps(clean, ChangedImage(clean, state.range(0), state.range(1)));
    QString errorText;
    for (auto _ : state)
        benchmark::DoNotOptimize(ApplyBps(patch, clean, errorText));
}
BENCHMARK(BM_ApplyBps)->Args({4096, 16})->Args({8, 1})->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK_MAIN();
