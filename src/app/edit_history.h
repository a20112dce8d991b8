#pragma once
// The editor's undo history: every step carries what it changed, before and after.
// Image steps went through the journal and are undone by a new change through it;
// canvas steps live only in the pictures.
#include "palette/palette.h"
#include "rom/art_table.h"
#include "rom/journal_format.h"

#include <QImage>
#include <QRect>
#include <variant>
#include <vector>

// The tables and palette records a step changed.
struct CatalogueChange {
    std::vector<std::pair<int, std::pair<ArtTable, ArtTable>>> tables;  // record, before and after
    std::vector<std::pair<int, std::pair<Palette, Palette>>> palettes;
};

// What the command did beyond its write, and so its undo and redo do too.
enum class AfterReplay { Nothing, RedrawFrame, RereadTables };

struct ImageStep {
    QString command;
    std::vector<RomPatch> patches; // what it wrote, in order
    int64_t lengthAfter = 0;
    JournalEntry entry;             // what was there before, and the old length
    CatalogueChange catalogue;
    AfterReplay after = AfterReplay::Nothing;
};

// One stroke, "Clr" or a pasted section: the changed parts of both pictures.
struct CanvasStep {
    QRect canvasRect, previewRect;
    QImage canvasBefore, canvasAfter, previewBefore, previewAfter;
};

using HistoryStep = std::variant<ImageStep, CanvasStep>;

struct EditHistory {
    std::vector<HistoryStep> done;
    std::vector<HistoryStep> undone;
};

// Past these, the oldest steps are forgotten.
constexpr int kMaxHistorySteps = 200;
constexpr qsizetype kMaxHistoryPictureBytes = 16 * 1024 * 1024;
