// Drawing a frame into the preview and the zoomed canvas, and painting with the mouse.
#include "view/frame_drawing.h"

#include <QtTest>

namespace {
ConsoleColor Word(int red, int green, int blue) { return ConsoleColor(red | green << 5 | blue << 10); }

Palette TestPalette()
{
    Palette palette;
    palette.colors[0] = kColorZeroWord;
    for (int slot = 1; slot <= kStoredColors; ++slot)
        palette.colors[size_t(slot)] = Word(2 * slot, 31 - slot, slot);
    palette.colors[17] = kTransparentMarker;
    return palette;
}

ScreenColor SlotColor(int slot) { return ConsoleToScreen(TestPalette(), slot, kPictureBackground); }

// One line of the given pixels from startX at y.
FrameLine Line(int startX, int y, std::initializer_list<int> pixels)
{
    FrameLine line;
    line.startX = int16_t(startX);
    line.endX = int16_t(startX + int(pixels.size()));
    line.y = int16_t(y);
    int k = 0;
    for (int p : pixels)
        line.pixels[size_t(k++)] = int16_t(p);
    return line;
}

ArtFrame Frame(int left, int top, std::initializer_list<FrameLine> lines)
{
    ArtFrame frame;
    frame.left = int16_t(left);
    frame.top = int16_t(top);
    frame.lastLine = int16_t(int(lines.size()) - 1);
    int i = 0;
    for (const FrameLine& line : lines)
        frame.lines[size_t(i++)] = line;
    return frame;
}

// Two pixels that a negative left and top place at image columns 0 and 1 of row 0.
ArtFrame TwoPixelFrame() { return Frame(-2, -1, {Line(-2, -1, {3, 4})}); }

// A frame over much of the preview, lines overlapping and some pixels outside it.
ArtFrame BusyFrame()
{
    ArtFrame frame = Frame(-10, 5, {});
    for (int i = 0; i < 60; ++i) {
        FrameLine& line = frame.lines[size_t(i)];
        line.startX = int16_t(-10 + (i * 7) % 23);
        line.endX = int16_t(line.startX + 20 + i % 50);
        line.y = int16_t(-5 + i * 3 / 2);
        for (int k = 0; k < line.endX - line.startX; ++k)
            line.pixels[size_t(k)] = int16_t((i + k) % 16);
    }
    frame.lastLine = 59;
    return frame;
}

struct Pictures {
    PictureSurface canvas = MakeSurface(kCanvasWidth, kCanvasHeight);
    PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
    FrameSurfaces At(int zoom) { return {canvas, preview, zoom}; }
};

// Every pixel of the rectangle has the colour.
bool Filled(const PictureSurface& surface, const QRect& rect, ScreenColor color)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        for (int x = rect.left(); x <= rect.right(); ++x)
            if (SurfacePixel(surface, x, y) != int64_t(color))
                return false;
    return true;
}

int CountNot(const PictureSurface& surface, ScreenColor color)
{
    int count = 0;
    for (int y = 0; y < surface.image.height(); ++y)
        for (int x = 0; x < surface.image.width(); ++x)
            count += SurfacePixel(surface, x, y) != int64_t(color);
    return count;
}
}

class TestFrameDrawing : public QObject {
    Q_OBJECT
private slots:
    void twoPixelFrameAtZoom5();
    void canvasIsThePreviewEnlarged_data();
    void canvasIsThePreviewEnlarged();
    void pixelColours();
    void framesReachingOutsideThePictures_data();
    void framesReachingOutsideThePictures();
    void nearestImagePixel_data();
    void nearestImagePixel();
    void paintCanvasPoint_data();
    void paintCanvasPoint();
};

void TestFrameDrawing::twoPixelFrameAtZoom5()
{
    Pictures p;
    DrawFrame(p.At(5), TwoPixelFrame(), TestPalette(), kPictureBackground);
    QCOMPARE(SurfacePixel(p.preview, 0, 0), int64_t(SlotColor(3)));
    QCOMPARE(SurfacePixel(p.preview, 1, 0), int64_t(SlotColor(4)));
    QCOMPARE(CountNot(p.preview, kPictureBackground), 2);
    QVERIFY(Filled(p.canvas, QRect(0, 0, 5, 5), SlotColor(3)));
    QVERIFY(Filled(p.canvas, QRect(5, 0, 5, 5), SlotColor(4)));
    QCOMPARE(CountNot(p.canvas, kPictureBackground), 50);
}

void TestFrameDrawing::canvasIsThePreviewEnlarged_data()
{
    QTest::addColumn<int>("zoom");
    for (int zoom = 1; zoom <= 8; ++zoom)
        QTest::addRow("zoom %d", zoom) << zoom;
}

void TestFrameDrawing::canvasIsThePreviewEnlarged()
{
    QFETCH(int, zoom);
    Pictures p;
    DrawFrame(p.At(zoom), BusyFrame(), TestPalette(), kPictureBackground);
    // Blocks touch without gap or overlap: every canvas pixel shows its image pixel.
    for (int y = 0; y < std::min(kCanvasHeight, kPreviewHeight * zoom); ++y)
        for (int x = 0; x < std::min(kCanvasWidth, kPreviewWidth * zoom); ++x)
            if (SurfacePixel(p.canvas, x, y) != SurfacePixel(p.preview, x / zoom, y / zoom))
                QFAIL(qPrintable(QStringLiteral("canvas (%1, %2) differs from preview").arg(x).arg(y)));
    QVERIFY(CountNot(p.preview, kPictureBackground) > 1000);
}

void TestFrameDrawing::pixelColours()
{
    Palette palette = TestPalette();
    palette.colors[9] = kTransparentMarker;
    const ArtFrame frame = Frame(0, 0, {Line(0, 0, {0, 18, -1, 128, 9, 17, 15}), Line(1, 2, {5}), Line(3, 0, {6})});
    Pictures p;
    p.preview.background = p.canvas.background = MakeScreenColor(1, 2, 3); // a background only clearing gives
    ClearSurface(p.preview);
    DrawFrame(p.At(1), frame, palette, kPictureBackground);
    const ScreenColor darkGrey = MakeScreenColor(33, 33, 33);
    const QList<int64_t> row0{darkGrey, kPictureBackground, kPictureBackground, SlotColor(6), kPictureBackground,
                              kPictureBackground, SlotColor(15)};
    for (int x = 0; x < row0.size(); ++x)
        QCOMPARE(SurfacePixel(p.preview, x, 0), row0[x]);
    QCOMPARE(SurfacePixel(p.preview, 1, 1), int64_t(MakeScreenColor(1, 2, 3))); // between lines
    QCOMPARE(SurfacePixel(p.preview, 1, 2), int64_t(SlotColor(5)));
}

void TestFrameDrawing::framesReachingOutsideThePictures_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("startX");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("inPreview"); // pixels of the three drawn in each picture at zoom 1
    QTest::addColumn<int>("onCanvas");

    QTest::newRow("signs of left and top do not matter") << 2 << 1 << -2 << -1 << 3 << 3;
    QTest::newRow("right edge of the preview") << 0 << 0 << 59 << 0 << 2 << 3;
    QTest::newRow("bottom edge of the preview") << 0 << 0 << 0 << 84 << 3 << 3;
    QTest::newRow("right edge of the canvas") << 0 << 0 << 243 << 0 << 0 << 2;
    QTest::newRow("below the preview") << 0 << 0 << 0 << 85 << 0 << 3;
    QTest::newRow("partly left of the pictures") << 0 << 0 << -2 << 0 << 1 << 1;
    QTest::newRow("left of the pictures") << 0 << 0 << -4 << 0 << 0 << 0;
    QTest::newRow("above the pictures") << 0 << 0 << 0 << -1 << 0 << 0;
    QTest::newRow("largest shift") << -32768 << -32768 << 0 << 0 << 0 << 0;
    QTest::newRow("largest shift back") << -32768 << -32768 << -127 << -128 << 0 << 0;
}

void TestFrameDrawing::framesReachingOutsideThePictures()
{
    QFETCH(int, left);
    QFETCH(int, top);
    QFETCH(int, startX);
    QFETCH(int, y);
    QFETCH(int, inPreview);
    QFETCH(int, onCanvas);
    const ArtFrame frame = Frame(left, top, {Line(startX, y, {1, 2, 3})});
    Pictures p;
    DrawFrame(p.At(1), frame, TestPalette(), kPictureBackground);
    QCOMPARE(CountNot(p.preview, kPictureBackground), inPreview);
    QCOMPARE(CountNot(p.canvas, kPictureBackground), onCanvas);
    Pictures zoomed;
    DrawFrame(zoomed.At(8), frame, TestPalette(), kPictureBackground);
    QCOMPARE(CountNot(zoomed.preview, kPictureBackground), inPreview);
}

void TestFrameDrawing::nearestImagePixel_data()
{
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QList<int>>("positions");
    QTest::addColumn<QList<int>>("pixels");
    QTest::newRow("zoom 5") << 5 << QList<int>{0, 2, 3, 7, 8, 12, 13, 17, 18}
                            << QList<int>{0, 0, 1, 1, 2, 2, 3, 3, 4};
    QTest::newRow("zoom 2, halves to even") << 2 << QList<int>{0, 1, 2, 3, 5, 7, 9}
                                            << QList<int>{0, 0, 1, 2, 2, 4, 4};
    QTest::newRow("zoom 1") << 1 << QList<int>{0, 1, 60, 244} << QList<int>{0, 1, 60, 244};
    QTest::newRow("zoom 8") << 8 << QList<int>{3, 4, 12, 244} << QList<int>{0, 0, 2, 30};
    QTest::newRow("zoom 5, negative") << 5 << QList<int>{-1, -2, -3, -7, -8} << QList<int>{0, 0, -1, -1, -2};
    QTest::newRow("zoom 2, negative halves") << 2 << QList<int>{-1, -3, -5} << QList<int>{0, -2, -2};
}

void TestFrameDrawing::nearestImagePixel()
{
    QFETCH(int, zoom);
    QFETCH(QList<int>, positions);
    QFETCH(QList<int>, pixels);
    QList<int> got;
    for (int position : positions)
        got.append(NearestImagePixel(position, zoom));
    QCOMPARE(got, pixels);
}

void TestFrameDrawing::paintCanvasPoint_data()
{
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QPoint>("imagePixel"); // painted in the preview, if inside it
    QTest::addColumn<QRect>("changed");     // on the canvas

    QTest::newRow("zoom 5") << 5 << QPoint(12, 13) << QPoint(2, 3) << QRect(10, 15, 5, 5);
    QTest::newRow("zoom 1") << 1 << QPoint(7, 9) << QPoint(7, 9) << QRect(7, 9, 1, 1);
    QTest::newRow("near the origin") << 5 << QPoint(-2, 2) << QPoint(0, 0) << QRect(0, 0, 5, 5);
    QTest::newRow("block cut by the canvas edge") << 8 << QPoint(244, 200) << QPoint(30, 25) << QRect(240, 200, 5, 5);
    QTest::newRow("nearest row below the canvas") << 8 << QPoint(0, 204) << QPoint(0, 26) << QRect();
    QTest::newRow("beyond the canvas, inside the preview") << 8 << QPoint(250, 0) << QPoint(31, 0) << QRect();
    QTest::newRow("outside both") << 8 << QPoint(1000, 1000) << QPoint(125, 125) << QRect();
    QTest::newRow("left of both") << 5 << QPoint(-3, 0) << QPoint(-1, 0) << QRect();
}

void TestFrameDrawing::paintCanvasPoint()
{
    QFETCH(int, zoom);
    QFETCH(QPoint, point);
    QFETCH(QPoint, imagePixel);
    QFETCH(QRect, changed);
    Pictures p;
    const ScreenColor color = SlotColor(7);
    QCOMPARE(PaintCanvasPoint(p.At(zoom), point.x(), point.y(), color), changed);
    QCOMPARE(CountNot(p.canvas, kPictureBackground), changed.width() * changed.height());
    if (!changed.isEmpty())
        QVERIFY(Filled(p.canvas, changed, color));
    const bool inPreview = p.preview.image.valid(imagePixel);
    QCOMPARE(CountNot(p.preview, kPictureBackground), inPreview ? 1 : 0);
    if (inPreview)
        QCOMPARE(SurfacePixel(p.preview, imagePixel.x(), imagePixel.y()), int64_t(color));
}

QTEST_GUILESS_MAIN(TestFrameDrawing)
#include "test_frame_drawing.moc"
