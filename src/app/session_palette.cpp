// Picking the drawing colour from the palette boxes and typing new palette colours.
#include "app/editor_session.h"
#include "palette/palette_change.h"

#include <cmath>

bool EditorSession::CanWriteImage(const QString& notLoadedText, const QString& readOnlyText)
{
    if (!IsDocumentOpen(state.document))
        Refuse(prompter, notLoadedText);
    else if (!state.document.file.writable)
        Refuse(prompter, readOnlyText.arg(state.document.file.fileName));
    return IsDocumentOpen(state.document) && state.document.file.writable;
}

void EditorSession::PickColorSlot(int box)
{
    if (box >= 0 && box < kPaletteBoxes)
        state.currentColor = int16_t(box);
    ShowColbox();
}

void EditorSession::EditColorSlot(int box)
{
    FollowOutsideChanges();
    if (box >= 0 && box < kPaletteBoxes)
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
    if (IsDocumentOpen(state.document)
        && ChangeImage(command, PalettePlanner(edited), [&] { state.document.palettes[size_t(n)] = edited; }, after, errorText))
        return true;
    Refuse(prompter, failureText.arg(errorText));
    return false;
}
