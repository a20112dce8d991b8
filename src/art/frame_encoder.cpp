#include "art/frame_encoder.h"

#include "palette/color_match.h"

namespace {
constexpr int kMaxRuns = kFrameLineSlots - 1; // the last slot stays free for the empty line
constexpr int kMaxRunPixels = kLinePixelSlots - 1; // room for the widening pixel

void FindExtent(const PixelGrid& grid, int& maxX, int& maxY)
{
    maxX = maxY = 0;
    for (int y = 0; y < grid.height; ++y)
        for (int x = 0; x < grid.width; ++x)
            if (grid.At(x, y) != kNoPixel) {
                maxX = std::max(maxX, x);
                maxY = std::max(maxY, y);
            }
}

FrameFit CheckRange(const ArtFrame& frame)
{
    if (frame.top < -128 || frame.bottom > 127)
        return FrameFit::YOutOfRange;
    for (int i = 0; i < frame.lastLine; ++i) {
        const FrameLine& line = frame.lines[size_t(i)];
        const int width = line.endX - line.startX;
        // Only a start beyond 128 can have wrapped endX past 32767; test it first.
        if (line.startX < -127 || line.startX > 128 || line.endX + (width % 2) > 128)
            return FrameFit::XOutOfRange;
    }
    return FrameFit::Fits;
}

FrameFit BuildRuns(ArtFrame& out, const PixelGrid& grid, int maxX, int maxY)
{
    int n = 0, count = 0;
    for (int r = 0; r <= maxY + 1; ++r) {
        for (int x = 0; x <= maxX + 1; ++x) {
            const bool drawn = x < grid.width && r < grid.height && grid.At(x, r) != kNoPixel;
            if (drawn) {
                if (n >= kMaxRuns)
                    return FrameFit::TooManyRuns;
                if (count >= kMaxRunPixels)
                    return FrameFit::RunTooLong;
                FrameLine& line = out.lines[size_t(n)];
                line.pixels[size_t(count)] = int16_t(grid.At(x, r));
                line.y = int16_t(r + out.top);
                ++count;
            } else if (count > 0) {
                FrameLine& line = out.lines[size_t(n)];
                line.endX = int16_t(x + out.left);
                line.startX = int16_t(x - count + out.left);
                ++n;
                count = 0;
            }
        }
    }
    out.lastLine = int16_t(n);
    return FrameFit::Fits;
}
}

QString FrameFitText(FrameFit fit)
{
    switch (fit) {
    case FrameFit::Fits: return {};
    case FrameFit::TooManyRuns: return QStringLiteral("This art has more than 100 runs of pixels; a frame holds at most 100.");
    case FrameFit::RunTooLong: return QStringLiteral("This art has a run of more than 100 pixels; a frame holds at most 100 in a run.");
    case FrameFit::XOutOfRange: return QStringLiteral("This art reaches past frame X -127 to 128 and would not read back as drawn.");
    case FrameFit::YOutOfRange: return QStringLiteral("This art reaches past frame Y -128 to 127 and would not read back as drawn.");
    }
    return {};
}

PixelGrid MatchPicture(const QImage& image, const Palette& palette, ScreenColor transparentColor)
{
    PixelGrid grid = MakePixelGrid(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (const ScreenColor color = RgbToScreen(image.pixel(x, y)); color != transparentColor)
                grid.At(x, y) = MatchPaletteIndex(palette, color);
    return grid;
}

FrameFit EncodeGrid(ArtFrame& frame, const PixelGrid& grid)
{
    static thread_local ArtFrame out;
    out = ArtFrame{};
    out.romOffset = frame.romOffset;
    out.right = frame.right;
    out.bottom = frame.bottom;
    int maxX = 0, maxY = 0;
    FindExtent(grid, maxX, maxY);
    const int left = out.right - maxX, top = out.bottom - maxY;
    if (left < INT16_MIN)
        return FrameFit::XOutOfRange;
    if (top < INT16_MIN)
        return FrameFit::YOutOfRange;
    out.left = int16_t(left);
    out.top = int16_t(top);
    FrameFit fit = BuildRuns(out, grid, maxX, maxY);
    if (fit == FrameFit::Fits)
        fit = CheckRange(out);
    if (fit == FrameFit::Fits)
        frame = out;
    return fit;
}

FrameFit EncodeFrame(ArtFrame& frame, const QImage& image, const Palette& palette, ScreenColor transparentColor)
{
    return EncodeGrid(frame, MatchPicture(image, palette, transparentColor));
}

QByteArray FrameBytes(ArtFrame& frame)
{
    QByteArray bytes;
    bytes.reserve(8 + kFrameLineSlots * (4 + kLinePixelSlots) + 2);
    auto put = [&bytes](int value) { bytes.append(char(uint8_t(value))); };
    put(frame.left >> 8); put(frame.left);
    put(frame.right >> 8); put(frame.right);
    put(frame.top); put(0);
    put(frame.bottom); put(0);
    const int lastLine = std::min<int>(frame.lastLine, kFrameLineSlots - 1);
    for (int i = 0; i <= lastLine; ++i) {
        FrameLine& line = frame.lines[size_t(i)];
        const int width = line.endX - line.startX;
        if (width > 0 && width % 2 == 1 && width < kLinePixelSlots) {
            line.endX = int16_t(line.endX + 1);
            line.pixels[size_t(width)] = 0;
        }
        put(line.startX); put(line.endX); put(line.y); put(0);
        const int pixelCount = std::clamp(line.endX - line.startX, 0, kLinePixelSlots);
        for (int k = 0; k < pixelCount; ++k)
            put(line.pixels[size_t(k)]);
    }
    put(0); put(0);
    return bytes;
}
