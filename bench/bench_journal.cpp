// The writes the user waits for, journaled as the editor makes them: the image locked,
// the journal read on from its end, the old bytes flushed to it, the image written and
// flushed, the change marked done.
#include "app/editor_session.h"
#include "demo_image.h"
#include "rom_builder.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {
struct OpenDemo {
    QTemporaryDir dir; // on the disk, where the flushes cost what they cost the user
    QString path = dir.filePath(QStringLiteral("demo.bin"));
    EditorSession session{[](const Prompt&) { return PromptAnswer{}; }};
    OpenDemo()
    {
        WriteFileBytes(path, BuildDemoImage());
        session.OpenFile(path);
        session.SelectArtEntry(1);
    }
};

void BM_JournaledPaletteEdit(benchmark::State& state)
{
    OpenDemo demo;
    Palette edited = demo.session.State().document.palettes[1];
    for (auto _ : state) {
        edited.colors[3] ^= 0x1F;
        if (!demo.session.ReplacePalette(1, edited, QStringLiteral("%1"), QStringLiteral("palette edit")))
            state.SkipWithError("the palette was not written");
    }
}
BENCHMARK(BM_JournaledPaletteEdit)->Unit(benchmark::kMillisecond)->UseRealTime();

// A full preview's frame, saved over the same place each time so the image stays its size.
void BM_JournaledSave(benchmark::State& state)
{
    OpenDemo demo;
    PixelGrid pixels = MakePixelGrid(61, 85);
    for (size_t i = 0; i < pixels.cells.size(); ++i)
        pixels.cells[i] = 1 + int(i % 15);
    ArtFrame placement;
    placement.right = 60;
    placement.bottom = 84;
    for (auto _ : state)
        if (!demo.session.SaveFrame(1, 1, placement, pixels, 0x200000))
            state.SkipWithError("the frame was not saved");
}
BENCHMARK(BM_JournaledSave)->Unit(benchmark::kMillisecond)->UseRealTime();
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv); // the session watches the image for other programs
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
