#pragma once
#include "app/editor_state.h"

// What the newly opened image held.
struct OpenReport {
    bool catalogueWhole = true; // every table ended properly and every palette was there
    QString recovery;           // what was done about an interrupted change, if there was one
};

// Opens fileName as the ROM image, puts back a change its journal shows interrupted,
// and reads its 14 art tables and palettes. A file that cannot be opened leaves the
// state as it was and gives false with errorText.
bool OpenRomImage(EditorState& state, const QString& fileName, OpenReport& report, QString& errorText);
