#pragma once
// Palettes in other tools' files: GIMP (.gpl), Adobe colour tables (.act), the TPL
// file of the uncompressed export (.tpl), and indexed pictures (.png, .bmp), chosen by
// the name's extension. Files hold slots 0-15 in their screen colours.
#include "palette/palette.h"

#include <QByteArray>
#include <QString>
#include <array>
#include <optional>

using PaletteColors = std::array<ConsoleColor, 16>;

bool IsPaletteFileName(const QString& fileName);

// The file's bytes for palette, or nothing (with errorText) for an unknown extension.
std::optional<QByteArray> PaletteFileBytes(const Palette& palette, const QString& fileName, const QString& name,
                                           QString& errorText);

// The first 16 colours of a palette file as colour words, each converted as a typed
// colour is (a TPL file on its own scale), or nothing with errorText naming the file.
std::optional<PaletteColors> ReadPaletteFile(const QString& fileName, QString& errorText);
