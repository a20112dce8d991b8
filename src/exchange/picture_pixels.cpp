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
#include <algorithm>
#include <cmath>

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

// The colour table rip writes for this palette: slots 0-16 opaque, then the transparent index.
QList<QRgb> RipColors(const Palette& palette) { return IndexedFramePicture(FramePixels{}, palette).colorTable(); }

bool InRipOrder(const QImage& indexed, const QList<QRgb>& rip)
{
    const QList<QRgb> own = indexed.colorTable();
    return own.size() <= rip.size() && std::equal(own.begin(), own.end(), rip.begin());
}

// A file may use indices its own colour table lacks; those are refused, not looked up.
int IndexBeyondTable(const QImage& indexed)
{
    for (int y = 0; y < indexed.height(); ++y)
        for (int x = 0; x < indexed.width(); ++x)
            if (const int index = indexed.pixelIndex(x, y); index >= indexed.colorCount())
                return index;
    return -1;
}

int KeptIndex(const QImage& indexed, int x, int y)
{
    const int index = indexed.pixelIndex(x, y);
    return qAlpha(indexed.color(index)) == 0 ? kNoPixel : index;
}

double RgbDistance(QRgb a, QRgb b) { return std::hypot(qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)); }

int ColorCell(QRgb rgb, const QList<QRgb>& rip, const Palette& palette, ColorMatch match, PicturePixelsRead& read)
{
    const ScreenColor color = RgbToScreen(rgb);
    if (qAlpha(rgb) < 128 || color == kPictureBackground)
        return kNoPixel;
    const QRgb opaque = ScreenToRgb(color);
    for (int slot = 0; slot <= kLastDrawnValue; ++slot)
        if (rip[slot] == opaque)
            return slot;
    const int slot = match == ColorMatch::Editor ? MatchPaletteIndex(palette, color) : NearestPerceptualIndex(palette, color);
    ++read.inexactPixels;
    read.worstDistance = std::max(read.worstDistance, RgbDistance(opaque, rip[slot]));
    return slot;
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
    if (const int depth = BitmapDepth(fileName); depth != kImportedBitmapDepth && depth != 24 && depth != 32) {
        errorText = QStringLiteral("%1: not a bitmap of 4, 24 or 32 bits a pixel").arg(Shown(fileName));
        return false;
    }
    if (!LoadBitmapImage(fileName, picture, errorText))
        return false;
    if (picture.width() <= kMaxPictureSide && picture.height() <= kMaxPictureSide)
        return true;
    errorText = QStringLiteral("%1: the picture is larger than any frame can be").arg(Shown(fileName));
    return false;
}

std::optional<PicturePixelsRead> PicturePixels(const QImage& picture, const Palette& palette, const PictureReading& reading,
                                               QString& errorText)
{
    // Pictures of fewer bits a pixel are read as 8-bit ones, with the same indices.
    const bool indexed = picture.colorCount() > 0;
    const QImage source = indexed ? picture.convertToFormat(QImage::Format_Indexed8)
                                  : picture.convertToFormat(QImage::Format_ARGB32);
    if (const int index = indexed ? IndexBeyondTable(source) : -1; index >= 0) {
        errorText = QStringLiteral("the picture uses colour index %1, and its own colour table has %2")
                        .arg(index).arg(picture.colorCount());
        return std::nullopt;
    }
    const QList<QRgb> rip = RipColors(palette);
    const bool keepIndices = indexed && InRipOrder(source, rip);
    PicturePixelsRead read{MakePixelGrid(picture.width(), picture.height())};
    for (int y = 0; y < read.grid.height; ++y)
        for (int x = 0; x < read.grid.width; ++x)
            read.grid.At(x, y) = keepIndices ? KeptIndex(source, x, y)
                                             : ColorCell(source.pixel(x, y), rip, palette, reading.match, read);
    if (!reading.exact || read.inexactPixels == 0)
        return read;
    errorText = InexactColorsText(read) + QStringLiteral("; --exact refuses them");
    return std::nullopt;
}

QString InexactColorsText(const PicturePixelsRead& read)
{
    const auto drawn = std::count_if(read.grid.cells.begin(), read.grid.cells.end(), [](int cell) { return cell != kNoPixel; });
    return QStringLiteral("%1 of %2 drawn pixels %3 no exact palette colour; the farthest lies %4 from the slot colour it "
                          "was matched to (Euclidean distance in 8-bit RGB)")
        .arg(read.inexactPixels).arg(drawn)
        .arg(read.inexactPixels == 1 ? QStringLiteral("has") : QStringLiteral("have"))
        .arg(read.worstDistance, 0, 'f', 1);
}
