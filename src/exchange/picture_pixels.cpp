#include "exchange/picture_pixels.h"

#include "exchange/bitmap_files.h"
#include "exchange/png_palette.h"
#include "palette/color_match.h"
#include "palette/perceptual_match.h"
#include "view/frame_render.h"
#include "view/picture_surface.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

namespace {
QString Shown(const QString& fileName) { return QDir::toNativeSeparators(fileName); }

bool LoadPng(const QString& fileName, QImage& picture, QString& errorText)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        errorText = QStringLiteral("%1: %2").arg(Shown(fileName), file.errorString());
        return false;
    }
    QImageReader header(&file, "png");
    header.setAutoDetectImageFormat(false);
    const QSize size = header.size();
    if (size.width() > kMaxPictureSide || size.height() > kMaxPictureSide) {
        errorText = QStringLiteral("%1: a picture of %2 x %3 pixels is larger than any frame can be")
                        .arg(Shown(fileName)).arg(size.width()).arg(size.height());
        return false;
    }
    std::optional<PaddedPng> padded = WithFullPalette(file);
    QBuffer paddedFile(padded ? &padded->bytes : nullptr);
    file.seek(0);
    QImageReader reader(padded ? static_cast<QIODevice*>(&paddedFile) : &file, "png");
    reader.setAutoDetectImageFormat(false);
    if (!reader.read(&picture)) {
        errorText = QStringLiteral("%1: not a PNG picture that can be read (%2)").arg(Shown(fileName), reader.errorString());
        return false;
    }
    if (padded) { // back to the file's own colours, so that PicturePixels refuses the indices beyond them
        picture = picture.convertToFormat(QImage::Format_Indexed8);
        picture.setColorCount(padded->colors);
    }
    return true;
}

// A file may use indices its own colour table lacks; those are refused, not looked up.
int IndexedCell(const QImage& picture, int x, int y, int& badIndex)
{
    const int index = picture.pixelIndex(x, y);
    if (index < picture.colorCount() && qAlpha(picture.color(index)) == 0)
        return kNoPixel;
    if (index >= picture.colorCount() || index > kLastDrawnValue)
        badIndex = index;
    return index;
}

int MatchedCell(QRgb rgb, const Palette& palette, ColorMatch match)
{
    const ScreenColor color = RgbToScreen(rgb);
    if (qAlpha(rgb) < 128 || color == kPictureBackground)
        return kNoPixel;
    return match == ColorMatch::Editor ? MatchPaletteIndex(palette, color) : NearestPerceptualIndex(palette, color);
}
}

bool LoadPicture(const QString& fileName, QImage& picture, QString& errorText)
{
    const QString extension = QFileInfo(fileName).suffix().toLower();
    if (extension == "png")
        return LoadPng(fileName, picture, errorText);
    if (extension != "bmp") {
        errorText = QStringLiteral("%1: name a .png or a .bmp picture").arg(Shown(fileName));
        return false;
    }
    if (!HasImportedDepth(fileName)) {
        errorText = QStringLiteral("%1: not a 16-colour bitmap (4 bits a pixel)").arg(Shown(fileName));
        return false;
    }
    if (!LoadBitmapImage(fileName, picture, errorText))
        return false;
    if (picture.width() <= kMaxPictureSide && picture.height() <= kMaxPictureSide)
        return true;
    errorText = QStringLiteral("%1: the picture is larger than any frame can be").arg(Shown(fileName));
    return false;
}

std::optional<PixelGrid> PicturePixels(const QImage& picture, const Palette& palette, ColorMatch match, QString& errorText)
{
    // One-bit pictures keep their indices as 8-bit ones.
    const bool indexed = picture.colorCount() > 0;
    const QImage source = indexed ? picture.convertToFormat(QImage::Format_Indexed8)
                                  : picture.convertToFormat(QImage::Format_ARGB32);
    PixelGrid grid = MakePixelGrid(picture.width(), picture.height());
    int badIndex = -1;
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            grid.At(x, y) = indexed ? IndexedCell(source, x, y, badIndex) : MatchedCell(source.pixel(x, y), palette, match);
    if (badIndex < 0)
        return grid;
    errorText = QStringLiteral("the picture uses colour index %1; a frame holds indices 0 to %2, and the picture's own "
                               "colour table has %3")
                    .arg(badIndex).arg(kLastDrawnValue).arg(picture.colorCount());
    return std::nullopt;
}
