#pragma once
// Putting many pictures back into the image as one change: each listed frame whose
// picture draws what the slot already draws is left alone; every other is encoded as
// insert encodes it and written over the frame it replaces when it fits there and no
// other entry points into those bytes, or else appended. Any refusal refuses them all.
#include "art/pixel_grid.h"
#include "rom/rom_document.h"

#include <QPoint>
#include <QStringList>

struct ImportRequest {
    int table = -1, slot = -1;
    int64_t ripOffset = -1; // where the slot's entry pointed when the picture was ripped
    QPoint origin;          // the frame coordinate of the pixels' cell (0, 0)
    PixelGrid pixels;
    QString name;           // the picture, for messages
};

enum class ImportWay { Unchanged, InPlace, Appended };

struct ImportedFrame {
    ImportWay way = ImportWay::Unchanged;
    int32_t position = 0; // where the slot's entry points afterwards
    qsizetype bytes = 0;  // written there
    QStringList covers;   // what else an in-place write covers
};

struct ImportPlan {
    std::vector<ImportedFrame> frames; // one for each request
    QStringList refusals;              // "picture: reason", one for each refused request
    PlannedChange change;
};

ImportPlan PlanImport(const RomDocument& document, const std::vector<ImportRequest>& requests);
