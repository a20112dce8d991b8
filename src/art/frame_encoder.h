#pragma once
// Rebuilds a frame from the frame image (the 1:1 preview) and turns it into bytes.
#include "art/art_frame.h"
#include "art/pixel_grid.h"
#include "palette/palette.h"

#include <QByteArray>
#include <QImage>
#include <QString>

// Whether the drawn image fits a frame record and reads back unchanged.
enum class FrameFit { Fits, TooManyRuns, RunTooLong, XOutOfRange, YOutOfRange };
QString FrameFitText(FrameFit fit);

// The palette index of every drawn pixel (any colour but transparentColor).
PixelGrid MatchPicture(const QImage& image, const Palette& palette, ScreenColor transparentColor);

// Runs of drawn cells become the frame's lines; column 0 is frame X left. right and
// bottom stay, and left and top follow from the rightmost and lowest drawn cells. A
// frame that does not fit leaves the record untouched.
FrameFit EncodeGrid(ArtFrame& frame, const PixelGrid& grid);

// The editor's save: the preview's pixels matched against palette, then encoded.
FrameFit EncodeFrame(ArtFrame& frame, const QImage& image, const Palette& palette, ScreenColor transparentColor);

// The frame's bytes; odd lines gain an index-0 pixel, in the record too.
QByteArray FrameBytes(ArtFrame& frame);

