#pragma once
// Everything the editor holds between two commands, each value with its initial one.
// Only the session's operations change it; the windows read it to draw.
#include "app/edit_history.h"
#include "art/art_frame.h"
#include "exchange/section_copy.h"
#include "palette/palette.h"
#include "palette/palette_boxes.h"
#include "rom/art_table.h"
#include "rom/rom_document.h"
#include "view/frame_drawing.h"

#include <QImage>
#include <QString>
#include <QStringList>

// The drawing area of the section chooser's view (its box less the border).
constexpr int kSectionViewWidth = 445, kSectionViewHeight = 333;

// The section chooser: created by an import, hidden by OK, gone after its close box.
struct SectionChooser {
    bool exists = false;
    bool shown = false;
    int slider = 0; // the enlargement is slider + 1
    SectionSelection selection;
    PictureSurface view = MakeSurface(kSectionViewWidth, kSectionViewHeight);
};

struct EditorState {
    RomDocument document; // the open image, none at start
    int32_t readPosition = 0;
    int outsideChangesShown = 0; // of the document's outside changes, how many the lists show
    int lastOwnChange = 0;       // the journal's number of the editor's latest change
    bool artListFilled = false;
    QStringList artLines;   // List1
    QStringList frameLines; // List2
    int artRow = -1;        // the selected lines, -1 for none
    int frameRow = -1;
    int16_t currentPalette = 0;
    int16_t currentColor = 0;
    ArtFrame currentFrame{};
    PictureSurface canvas = MakeSurface(kCanvasWidth, kCanvasHeight); // Picture1
    PictureSurface preview = MakeSurface(kPreviewWidth, kPreviewHeight); // Picture2: the frame image
    std::array<ScreenColor, kPaletteBoxes> palboxColors{}; // all black until a refresh
    ScreenColor colboxColor = 0;
    int16_t zoom = 0;                 // set to 5 at start-up
    ScreenColor transparentColor = 0; // taken from the preview at start-up
    bool drawing = false;
    QImage importedPicture;
    QString bitmapFile;
    SectionChooser sectionChooser;
    EditHistory history;
    CanvasStep strokeBefore; // the pictures as a stroke found them, until its release
};
