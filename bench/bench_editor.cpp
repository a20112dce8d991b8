// The editor's window as the user drives it (offscreen): selecting a frame, changing the
// zoom and a stroke of twenty moves, each until the window has repainted.
#include "app/ui/form1.h"
#include "demo_image.h"
#include "rom/ui/list_box.h"
#include "rom_builder.h"
#include "view/ui/picture_box.h"

#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <benchmark/benchmark.h>

namespace {
struct Editor {
    QTemporaryDir dir;
    Form1 form;
    Editor()
    {
        const QString path = dir.filePath(QStringLiteral("demo.bin"));
        WriteFileBytes(path, BuildDemoImage());
        form.show();
        form.session.OpenFile(path);
        form.session.SelectArtEntry(1);
    }
    void Click(ListBox* list, int row)
    {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
        form.repaint();
    }
};

void BM_SelectFrame(benchmark::State& state)
{
    Editor e;
    int row = 0;
    for (auto _ : state)
        e.Click(e.form.List2, row++ % 4);
}
BENCHMARK(BM_SelectFrame)->Unit(benchmark::kMillisecond);

void BM_ChangeZoom(benchmark::State& state)
{
    Editor e;
    int zoom = 0;
    for (auto _ : state) {
        e.form.HScroll1->setValue(1 + zoom++ % 8);
        e.form.repaint();
    }
}
BENCHMARK(BM_ChangeZoom)->Unit(benchmark::kMillisecond);

void BM_StrokeOfTwentyMoves(benchmark::State& state)
{
    Editor e;
    PictureBox* canvas = e.form.Picture1;
    for (auto _ : state) {
        QTest::mousePress(canvas, Qt::LeftButton, {}, {20, 20});
        for (int i = 0; i < 20; ++i) {
            QTest::mouseMove(canvas, {20 + i * 9, 20 + i * 8});
            canvas->repaint();
        }
        QTest::mouseRelease(canvas, Qt::LeftButton, {}, {200, 180});
    }
}
BENCHMARK(BM_StrokeOfTwentyMoves)->Unit(benchmark::kMillisecond);
}

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    StyleApplication(app);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
