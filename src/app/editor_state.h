#pragma once
// The values every command of the editor shares, each with its initial value.
#include "art/art_frame.h"
#include "palette/palette.h"
#include "rom/art_table.h"
#include "rom/rom_file.h"

#include <QImage>
#include <QString>

struct EditorState {
    RomFile romFile;                                    // the open image, none at start
    bool romLoaded = false;
    int32_t readPosition = 0;
    std::array<ArtTable, kArtTableRecords> artTables{};
    bool artListFilled = false;
    std::array<Palette, kPaletteRecords> palettes{};
    int16_t currentPalette = 0;
    int16_t currentColor = 0;
    ArtFrame currentFrame{};
    int16_t zoom = 0;                                   // set to 5 at start-up
    ScreenColor transparentColor = 0;                   // taken from the preview at start-up
    bool drawing = false;
    int16_t mouseX = 0;
    int16_t mouseY = 0;
    QImage importedPicture;
    QString bitmapFile;
};
