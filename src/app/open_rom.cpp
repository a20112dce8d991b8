#include "app/open_rom.h"

#include "rom/rom_open.h"

bool OpenRomImage(EditorState& state, const QString& fileName, OpenReport& report, QString& errorText)
{
    RomFile opened;
    if (!OpenRomFile(opened, fileName, errorText))
        return false;
    CloseRomFile(state.romFile); // the earlier image is never used again
    state.romFile = opened;
    const bool tablesWhole = ReadArtTables(state.romFile, state.readPosition, state.artTables, kArtTableCount);
    const bool palettesWhole = ReadPalettes(state.romFile, state.readPosition, state.palettes);
    report.catalogueWhole = tablesWhole && palettesWhole;
    state.romLoaded = true;
    return true;
}
