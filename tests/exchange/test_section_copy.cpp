#include "exchange/section_copy.h"

#include <QTest>

namespace {
constexpr ScreenColor kWhite = MakeScreenColor(255, 255, 255);
// Beside and below the drawn bitmap; differs from the target's background so that a
// copied sample from there can be told from a cell that was not copied.
constexpr ScreenColor kViewBackground = MakeScreenColor(1, 2, 3);
constexpr ScreenColor kLeftOver = MakeScreenColor(9, 9, 9);

QImage Bitmap()
{
    QImage picture(8, 6, QImage::Format_RGB32);
    for (int j = 0; j < picture.height(); ++j)
        for (int i = 0; i < picture.width(); ++i)
            picture.setPixel(i, j, qRgb(10 * i + 5, 10 * j + 5, 200));
    return picture;
}

// The bitmap pixel's colour, or the view's background beside the bitmap.
ScreenColor BitmapColor(QPoint pixel)
{
    const QImage picture = Bitmap();
    return picture.valid(pixel) ? RgbToScreen(picture.pixel(pixel)) : kViewBackground;
}

PictureSurface Stale(QSize size)
{
    PictureSurface surface = MakeSurface(size.width(), size.height());
    FillSurfaceRect(surface, surface.image.rect(), kLeftOver);
    return surface;
}
}

class TestSectionCopy : public QObject {
    Q_OBJECT

private slots:
    void snap_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("zoom");
        QTest::addColumn<int>("snapped");
        const QList<QList<int>> cases = {{7, 3, 6}, {6, 3, 6}, {0, 5, 0}, {4, 1, 4}, {-7, 3, -6}, {-2, 3, 0}};
        for (const QList<int>& c : cases)
            QTest::addRow("%d at %d", c[0], c[1]) << c[0] << c[1] << c[2];
    }

    void snap()
    {
        QFETCH(int, position);
        QFETCH(int, zoom);
        QFETCH(int, snapped);
        QCOMPARE(SnapToGrid(position, zoom), snapped);
    }

    void redraw_data()
    {
        QTest::addColumn<int>("zoom");
        QTest::addColumn<QPoint>("viewPixel");
        QTest::addColumn<QPoint>("bitmapPixel");
        QTest::newRow("block corner") << 3 << QPoint(6, 3) << QPoint(2, 1);
        QTest::newRow("block end") << 3 << QPoint(23, 17) << QPoint(7, 5);
        QTest::newRow("right of the bitmap") << 3 << QPoint(24, 0) << QPoint(8, 0);
        QTest::newRow("below the bitmap") << 3 << QPoint(0, 18) << QPoint(0, 6);
        QTest::newRow("one to one") << 1 << QPoint(7, 5) << QPoint(7, 5);
        QTest::newRow("cut at the view's edge") << 11 << QPoint(39, 29) << QPoint(3, 2);
    }

    void redraw()
    {
        QFETCH(int, zoom);
        QFETCH(QPoint, viewPixel);
        QFETCH(QPoint, bitmapPixel);
        PictureSurface view = Stale(QSize(40, 30));
        view.background = kViewBackground;
        RedrawSectionView(view, Bitmap(), zoom);
        QCOMPARE(SurfacePixel(view, viewPixel.x(), viewPixel.y()), int64_t(BitmapColor(bitmapPixel)));
    }

    void frame_data()
    {
        QTest::addColumn<int>("zoom");
        QTest::addColumn<QRect>("points"); // anchor as top left, corner as bottom right
        QTest::addColumn<QList<QPoint>>("white");
        QTest::addColumn<QList<QPoint>>("clear");
        QTest::newRow("two thick") << 2 << QRect(QPoint(4, 4), QPoint(8, 6))
                                   << QList<QPoint>{{4, 4}, {8, 6}, {6, 4}, {4, 5}, {3, 3}, {9, 7}, {6, 7}}
                                   << QList<QPoint>{{5, 5}, {7, 5}, {2, 2}, {10, 8}};
        QTest::newRow("corner before anchor") << 1 << QRect(QPoint(8, 8), QPoint(4, 4))
                                              << QList<QPoint>{{4, 4}, {8, 8}, {6, 4}, {4, 6}}
                                              << QList<QPoint>{{6, 6}, {3, 3}};
        QTest::newRow("rings crossing over") << 3 << QRect(QPoint(8, 8), QPoint(4, 4))
                                             << QList<QPoint>{{4, 4}, {5, 5}, {6, 6}, {7, 5}}
                                             << QList<QPoint>{{3, 3}, {9, 9}};
        QTest::newRow("rings one apart") << 2 << QRect(QPoint(6, 6), QPoint(6, 5))
                                         << QList<QPoint>{{5, 6}, {6, 6}, {5, 5}, {7, 6}}
                                         << QList<QPoint>{{8, 6}, {4, 6}, {6, 4}, {6, 7}};
        QTest::newRow("partly outside") << 2 << QRect(QPoint(0, 0), QPoint(40, 40))
                                        << QList<QPoint>{{0, 0}, {0, 29}, {39, 0}} << QList<QPoint>{{1, 1}};
    }

    void frame()
    {
        QFETCH(int, zoom);
        QFETCH(QRect, points);
        QFETCH(QList<QPoint>, white);
        QFETCH(QList<QPoint>, clear);
        PictureSurface view = MakeSurface(40, 30);
        const SectionSelection selection{false, points.left(), points.top(), points.right(), points.bottom()};
        DrawSelectionFrame(view, selection, zoom);
        for (QPoint p : white)
            QCOMPARE(SurfacePixel(view, p.x(), p.y()), int64_t(kWhite));
        for (QPoint p : clear)
            QCOMPARE(SurfacePixel(view, p.x(), p.y()), int64_t(view.background));
    }

    void copy_data()
    {
        QTest::addColumn<int>("viewZoom");
        QTest::addColumn<QRect>("points"); // anchor as top left, corner as bottom right
        QTest::addColumn<int>("zoom");
        QTest::addColumn<QSize>("preview");
        QTest::addColumn<QSize>("canvas");
        QTest::addColumn<QRect>("copied"); // bitmap pixels that land at the top left
        const QSize preview(10, 10), canvas(40, 40);
        const QRect dragged(2, 3, 4, 2);
        QTest::newRow("enlarged 3") << 3 << QRect(QPoint(6, 9), QPoint(18, 15)) << 4 << preview << canvas << dragged;
        QTest::newRow("enlarged 2") << 2 << QRect(QPoint(4, 6), QPoint(12, 10)) << 3 << preview << canvas << dragged;
        QTest::newRow("one to one, strictly between") << 1 << QRect(QPoint(2, 3), QPoint(6, 5)) << 2 << preview
                                                      << canvas << QRect(3, 4, 3, 1);
        QTest::newRow("corner before anchor") << 2 << QRect(QPoint(12, 10), QPoint(4, 6)) << 3 << preview << canvas
                                              << QRect();
        QTest::newRow("corner one block on") << 2 << QRect(QPoint(4, 6), QPoint(6, 8)) << 3 << preview << canvas
                                             << QRect(2, 3, 1, 1);
        QTest::newRow("same block") << 2 << QRect(QPoint(4, 6), QPoint(4, 6)) << 3 << preview << canvas << QRect();
        QTest::newRow("no drag") << 2 << QRect(QPoint(0, 0), QPoint(0, 0)) << 3 << preview << canvas << QRect();
        QTest::newRow("beyond the bitmap") << 3 << QRect(QPoint(18, 0), QPoint(39, 6)) << 2 << preview << canvas
                                           << QRect(6, 0, 7, 2);
        QTest::newRow("beyond the view") << 3 << QRect(QPoint(-3, -3), QPoint(45, 6)) << 2 << QSize(20, 20) << canvas
                                         << QRect(-1, -1, 16, 3);
        QTest::newRow("cut by both pictures") << 2 << QRect(QPoint(4, 6), QPoint(12, 10)) << 4 << QSize(3, 1)
                                              << QSize(10, 6) << dragged;
    }

    void copy()
    {
        QFETCH(int, viewZoom);
        QFETCH(QRect, points);
        QFETCH(int, zoom);
        QFETCH(QSize, preview);
        QFETCH(QSize, canvas);
        QFETCH(QRect, copied);
        PictureSurface view = MakeSurface(40, 30, kViewBackground);
        RedrawSectionView(view, Bitmap(), viewZoom);
        PictureSurface canvasSurface = Stale(canvas);
        PictureSurface previewSurface = Stale(preview);
        const SectionSelection selection{false, points.left(), points.top(), points.right(), points.bottom()};
        CopySection(view, selection, viewZoom, FrameSurfaces{canvasSurface, previewSurface, zoom});

        auto expected = [&](QPoint cell) {
            return cell.x() < copied.width() && cell.y() < copied.height() ? BitmapColor(copied.topLeft() + cell)
                                                                           : kPictureBackground;
        };
        for (int y = 0; y < preview.height(); ++y)
            for (int x = 0; x < preview.width(); ++x)
                QCOMPARE(SurfacePixel(previewSurface, x, y), int64_t(expected(QPoint(x, y))));
        for (int y = 0; y < canvas.height(); ++y)
            for (int x = 0; x < canvas.width(); ++x)
                QCOMPARE(SurfacePixel(canvasSurface, x, y), int64_t(expected(QPoint(x / zoom, y / zoom))));
    }
};

QTEST_GUILESS_MAIN(TestSectionCopy)
#include "test_section_copy.moc"
