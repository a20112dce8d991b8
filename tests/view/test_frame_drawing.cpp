// Drawing a frame into the preview and the zoomed canvas, and painting with the mouse.
#include "library_fixture.h"
#include "view/frame_drawing.h"
#include "view/frame_render.h"

#include <QtTest>

namespace {
// One line of pixels from (startX, y), then the first lines of more.
ArtFrame Frame(int left, int top, int startX, int y, std::initializer_list<int> pixels, std::initializer_list<ArtFrame> more = {})
{
    ArtFrame frame{0, int16_t(left), 0, int16_t(top), 0, {}, int16_t(more.size())};
    frame.lines[0] = {int16_t(startX), int16_t(startX + int(pixels.size())), int16_t(y), {}};
    std::copy(pixels.begin(), pixels.end(), frame.lines[0].pixels.begin());
    for (size_t i = 0; i < more.size(); ++i)
        frame.lines[i + 1] = more.begin()[i].lines[0];
    return frame;
}

struct Pictures {
    PictureSurface canvas = MakeSurface(kCanvasWidth, kCanvasHeight);
    PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight);
    FrameSurfaces At(int zoom) { return {canvas, preview, zoom}; }
};
}

class TestFrameDrawing : public QObject {
    Q_OBJECT
private slots:
    void pixelsLandInPlace()
    {
        Palette palette = TestPalette();
        palette.colors[9] = kTransparentMarker;
        // A negative left and top put frame X -2 and Y -1 at column 0 of row 0. Slots past
        // 0-17 and marked slots are transparent; later lines draw over earlier ones.
        const ArtFrame frame = Frame(-2, -1, -2, -1, {0, 18, -1, 128, 9, 17, 15}, {Frame(0, 0, -1, 1, {5}), Frame(0, 0, 1, -1, {6})});
        Pictures p;
        p.preview.background = MakeScreenColor(1, 2, 3); // a background only clearing gives
        ClearSurface(p.preview);
        DrawFrame(p.At(5), frame, palette, kPictureBackground);
        const ScreenColor clear = kPictureBackground;
        const QList<int64_t> row0{MakeScreenColor(33, 33, 33), clear, clear, SlotColor(6), clear, clear, SlotColor(15)};
        for (int x = 0; x < row0.size(); ++x)
            QCOMPARE(SurfacePixel(p.preview, x, 0), row0[x]);
        QCOMPARE(SurfacePixel(p.preview, 1, 1), int64_t(MakeScreenColor(1, 2, 3))); // between lines
        QCOMPARE(SurfacePixel(p.preview, 1, 2), int64_t(SlotColor(5)));
        QCOMPARE(CountNot(p.canvas, SlotColor(6), QRect(15, 0, 5, 5)), 0);
        QCOMPARE(CountNot(p.canvas, kPictureBackground), 4 * 25);
        // The shift is the size of left and top, whatever their sign.
        DrawFrame(p.At(5), Frame(2, 1, -2, -1, {7}), palette, kPictureBackground);
        QCOMPARE(SurfacePixel(p.preview, 0, 0), int64_t(SlotColor(7)));
    }

    void renderedWithoutCanvas()
    {
        // Later runs win, values outside 0-16 are not drawn, and the picture is the box of
        // what is drawn, whatever left and top say.
        const ArtFrame frame = Frame(-50, 50, -3, 2, {17, 4, 5, -1}, {Frame(0, 0, -1, 2, {16}), Frame(0, 0, -2, 4, {0, 40})});
        const FramePixels pixels = RenderFramePixels(frame);
        QCOMPARE(pixels.origin, QPoint(-2, 2));
        const QImage picture = IndexedFramePicture(pixels, TestPalette());
        QCOMPARE(picture.size(), QSize(2, 3));
        const int t = kTransparentIndex;
        const QList<int> indices{4, 16, t, t, 0, t};
        for (int i = 0; i < indices.size(); ++i)
            QCOMPARE(picture.pixelIndex(i % 2, i / 2), indices[i]);
        QCOMPARE(picture.color(4), ScreenToRgb(SlotColor(4)));
        QCOMPARE(picture.color(16), qRgb(0, 0, 0));
        QCOMPARE(qAlpha(picture.color(t)), 0);
    }

    void paintingTheNearestPixel()
    {
        // Left of 0 the nearest pixel is still the nearest, and halves go to the even one.
        QCOMPARE(QList<int>({NearestImagePixel(-3, 5), NearestImagePixel(-8, 5), NearestImagePixel(-5, 2)}), QList<int>({-1, -2, -2}));
        // A block at the canvas's edge is cut there; a point left of both pictures paints nothing.
        Pictures p;
        QCOMPARE(PaintFramePixel(p.At(8), CanvasPixelAt({244, 200}, 8), SlotColor(7)), QRect(240, 200, 5, 5));
        QCOMPARE(PaintFramePixel(p.At(5), CanvasPixelAt({-3, 0}, 5), SlotColor(7)), QRect());
        QCOMPARE(CountNot(p.preview, kPictureBackground), 1);
    }
};

QTEST_GUILESS_MAIN(TestFrameDrawing)
#include "test_frame_drawing.moc"
