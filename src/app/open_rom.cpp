#include "app/open_rom.h"

#include "rom/rom_open.h"

bool OpenRomImage(EditorState& state, const QString& fileName, OpenReport& report, QString& errorText)
{
    RomFile opened;
    if (!OpenRomFile(opened, fileName, errorText))
        return false;
    // The earlier image is never used again, and its history does not apply here.
    CloseRomFile(state.romFile);
    CloseJournal(state.journal);
    state.history = EditHistory{};
    state.romFile = opened;
    report.recovery = RecoverInterruptedChange(fileName, state.romFile);
    const bool tablesWhole = ReadArtTables(state.romFile, state.readPosition, state.artTables, kArtTableCount);
    const bool palettesWhole = ReadPalettes(state.romFile, state.readPosition, state.palettes);
    report.catalogueWhole = tablesWhole && palettesWhole;
    state.romLoaded = true;
    return true;
}
