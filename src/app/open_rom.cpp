#include "app/open_rom.h"

bool OpenRomImage(EditorState& state, const QString& fileName, OpenReport& report, QString& errorText)
{
    RomDocument opened;
    QStringList notes;
    if (!OpenDocument(opened, fileName, notes, errorText))
        return false;
    // The earlier image is never used again, and its history does not apply here.
    CloseDocument(state.document);
    state.history = EditHistory{};
    state.document = opened;
    report.recovery = (notes + JournalNotes(opened)).join(u'\n');
    report.catalogueWhole = opened.catalogueWhole;
    return true;
}
