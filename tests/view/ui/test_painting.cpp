// Painting on the canvas, "Clr", "Draw with transparent" and the zoom bar.
#include "app/ui/form_surface.h"
#include "form_fixture.h"
#include "view/frame_drawing.h"
#include "view/ui/picture_box.h"

#include <QScrollBar>

class TestPainting : public QObject {
    Q_OBJECT
private slots:
    void strokePaintsNearestPixel_data();
    void strokePaintsNearestPixel();
    void strokeEndsOnReleaseEvenOutside();
    void clrAndTransparentColour();
    void zoomChangeRedrawsFromTheImage();
};

namespace {
QPoint CanvasPoint(int x, int y) { return {x + PictureBox::kBorder, y + PictureBox::kBorder}; }

ScreenColor PreviewPixel(const Form1& form, int x, int y) { return ScreenColor(SurfacePixel(form.Picture2->surface, x, y)); }
}

void TestPainting::strokePaintsNearestPixel_data()
{
    QTest::addColumn<int>("zoom");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("column");
    QTest::newRow("zoom 5, x 12") << 5 << 12 << 2;
    QTest::newRow("zoom 5, x 13") << 5 << 13 << 3;
    QTest::newRow("zoom 2, x 1 half to even") << 2 << 1 << 0;
    QTest::newRow("zoom 2, x 7 half to even") << 2 << 7 << 4;
    QTest::newRow("zoom 1") << 1 << 17 << 17;
    QTest::newRow("zoom 8") << 8 << 100 << 12;
}

void TestPainting::strokePaintsNearestPixel()
{
    QFETCH(int, zoom);
    QFETCH(int, x);
    QFETCH(int, column);
    FormFixture fixture;
    fixture.Open();
    Form1& form = *fixture.form;
    form.HScroll1->setValue(zoom);
    form.state.currentColor = 5;
    const ScreenColor color = ConsoleToScreen(form.state.palettes[0], 5, form.state.transparentColor);
    FormFixture::Stroke(form, {x, x});
    QCOMPARE(PreviewPixel(form, column, column), color);
    const QRect block = ZoomBlock(column, column, zoom).intersected(form.Picture1->surface.image.rect());
    QCOMPARE(ScreenColor(SurfacePixel(form.Picture1->surface, block.left(), block.top())), color);
    QCOMPARE(ScreenColor(SurfacePixel(form.Picture1->surface, block.right(), block.bottom())), color);
}

void TestPainting::strokeEndsOnReleaseEvenOutside()
{
    FormFixture fixture;
    Form1& form = *fixture.form;
    const QImage before = form.Picture2->surface.image;
    QTest::mousePress(form.Picture1, Qt::LeftButton, {}, CanvasPoint(10, 10)); // a press alone paints nothing
    QTest::mouseMove(form.Picture1, CanvasPoint(400, 10)); // outside: paints nothing there
    QTest::mouseRelease(form.Picture1, Qt::LeftButton, {}, CanvasPoint(400, 10));
    QVERIFY(!form.state.drawing);
    QTest::mouseMove(form.Picture1, CanvasPoint(20, 20));
    QCOMPARE(form.Picture2->surface.image, before);
}

void TestPainting::clrAndTransparentColour()
{
    FormFixture fixture;
    Form1& form = *fixture.form;
    // Before any image: every slot paints black, the transparent one included.
    form.Command2->click();
    QCOMPARE(form.state.currentColor, int16_t(17));
    QCOMPARE(form.surface->ColboxColor(), ScreenColor(0));
    fixture.Open();
    FormFixture::ClickRow(form.List1, 0);
    form.Command2->click();
    QCOMPARE(form.surface->ColboxColor(), form.state.transparentColor);
    form.Command1->click();
    for (const PictureBox* picture : {form.Picture1, form.Picture2})
        QCOMPARE(picture->surface.image.pixel(0, 0), picture->surface.image.pixel(picture->surface.image.width() - 1,
                                                                                   picture->surface.image.height() - 1));
    QVERIFY(form.Picture2->surface.image.convertToFormat(QImage::Format_Indexed8).colorCount() == 1);
    QCOMPARE(form.state.currentColor, int16_t(17));
}

void TestPainting::zoomChangeRedrawsFromTheImage()
{
    FormFixture fixture;
    Form1& form = fixture.ShowEntry(0);
    const QImage stored = form.Picture2->surface.image;
    form.state.currentColor = 3;
    FormFixture::Stroke(form, {200, 200});
    QVERIFY(form.Picture2->surface.image != stored);
    form.HScroll1->setValue(8);
    QCOMPARE(form.state.zoom, int16_t(8));
    QCOMPARE(form.Picture2->surface.image, stored); // the painting is gone
    // At zoom 8 the canvas shows each preview pixel as an 8x8 block.
    for (int y = 0; y < 25; ++y)
        for (int x = 0; x < 30; ++x)
            QCOMPARE(form.Picture1->surface.image.pixel(x * 8 + 7, y * 8 + 7), stored.pixel(x, y));
}

ZELVANE_WINDOW_TEST_MAIN(TestPainting)

#include "test_painting.moc"
