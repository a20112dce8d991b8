#pragma once
#include "app/editor_state.h"

// What the newly opened image held.
struct OpenReport {
    bool catalogueWhole = true; // every table ended properly and every palette was there
    QString recovery;           // what was done about an interrupted change, or what is wrong with the journal
};

// Opens fileName as the ROM image, puts back a change its journal shows interrupted,
// and reads its 14 art tables and palettes; recovery gets every note of the opening. A file that cannot be opened leaves the
// state as it was and gives false with errorText.
bool OpenRomImage(EditorState& state, const QString& fileName, OpenReport& report, QString& errorText);
