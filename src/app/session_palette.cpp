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
    ReplacePalette(state.currentPalette, edited, QStringLiteral("The palette could not be written:\n%1"),
                   QStringLiteral("palette edit"), AfterReplay::RedrawFrame);
}

bool EditorSession::ReplacePalette(int n, const Palette& edited, const QString& failureText, const QString& command,
                                   AfterReplay after)
{
    QString errorText = QStringLiteral("No ROM image is open.");
    if (state.romLoaded && edited.position + kPaletteBytes > RomLength(state.romFile))
        errorText = QStringLiteral("the palette at %1 lies beyond the end of the file, which is not made longer for it.")
                        .arg(QString::number(edited.position, 16).toUpper());
    else if (state.romLoaded && ChangeImage(command, {PalettePatch(edited)}, [&] { state.palettes[size_t(n)] = edited; },
                                            after, errorText))
        return true;
    Refuse(prompter, failureText.arg(errorText));
    return false;
}
