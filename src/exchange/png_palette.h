#pragma once
// Qt reads a PNG pixel whose index lies beyond the file's own colour table as index 0 (or,
// at one bit a pixel, gives the table a second colour). So that such a picture can be
// refused, its table is padded to every index its bit depth allows before Qt reads it,
// and cut back to the file's own colours after.
#include <QByteArray>
#include <QIODevice>
#include <optional>

struct PaddedPng {
    QByteArray bytes; // the file with its colour table padded with black
    int colors = 0;   // how many colours the file's own table has
};

// Nothing when png is no indexed PNG, or its table already has every colour its bit depth
// can name. Reads at most 64 MiB, more than any picture insert takes needs; a picture cut
// shorter than that fails to read.
std::optional<PaddedPng> WithFullPalette(QIODevice& png);
