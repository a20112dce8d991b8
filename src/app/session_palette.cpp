// Picking the drawing colour from the palette boxes and typing new palette colours.
#include "app/editor_session.h"

#include <cmath>

bool EditorSession::CanWriteImage(const QString& notLoadedText, const QString& readOnlyText)
{
    if (!state.romLoaded)
        Refuse(prompter, notLoadedText);
    else if (!state.romFile.writable)
        Refuse(prompter, readOnlyText.arg(state.romFile.fileName));
    return state.romLoaded && state.romFile.writable;
}

void EditorSession::PressWindowSurface(QPointF position)
{
    state.mouseX = int16_t(std::nearbyint(position.x())); // halves to even
    state.mouseY = int16_t(std::nearbyint(position.y()));
    if (const int box = PaletteBoxAt(state.mouseX, state.mouseY); box >= 0)
        state.currentColor = int16_t(box);
    ShowColbox();
}

void EditorSession::DoubleClickWindowSurface()
{
    if (const int box = PaletteBoxAt(state.mouseX, state.mouseY); box >= 0)
        EditBoxColor(box);
    RefreshView();
}

// The new colour reaches the image at once, or neither the image nor the record changes.
void EditorSession::EditBoxColor(int box)
{
    if (!CanWriteImage(QStringLiteral("You cannot edit a palette when a rom is not loaded, so load one!"),
                       QStringLiteral("%1 is read-only, so its palette cannot be changed.")))
        return;
    const QString answer = AskText(prompter, QStringLiteral("Enter the RGB in hex: "), kEditorTitle);
    if (answer.isEmpty())
        return;
    Palette edited = CurrentPalette();
    edited.colors[size_t(box)] = ScreenToConsole(TypedColor(answer));
    ReplacePalette(state.currentPalette, edited, QStringLiteral("The palette could not be written:\n%1"));
}

bool EditorSession::ReplacePalette(int n, const Palette& edited, const QString& failureText)
{
    QString errorText;
    state.readPosition = edited.position;
    if (!state.romLoaded || !WriteImage({PalettePatch(edited)}, errorText)) {
        Refuse(prompter, failureText.arg(state.romLoaded ? errorText : QStringLiteral("No ROM image is open.")));
        return false;
    }
    state.readPosition = edited.position + kPaletteBytes;
    state.palettes[size_t(n)] = edited;
    return true;
}

bool EditorSession::WriteImage(const std::vector<RomPatch>& patches, QString& errorText)
{
    return WriteOrRestore(state.romFile, patches, errorText);
}
