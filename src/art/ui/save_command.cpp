// "Save changes to current art": put the preview's frame in the image and point the
// selected table entry at it.
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/message_boxes.h"
#include "art/save_art.h"
#include "rom/rom_open.h"
#include "view/ui/picture_box.h"

#include <QListWidget>
#include <optional>

namespace {
// Where the frame goes: the end of the file, a typed position, or nowhere.
std::optional<int32_t> AskSavePosition(Form1& form)
{
    const Answer answer =
        AskYesNoCancel(&form, QStringLiteral("Would you like to put this art at the end of the file? (Better)"));
    if (answer == Answer::Cancel)
        return std::nullopt;
    const int64_t length = RomLength(form.state.romFile);
    QString errorText;
    if (answer == Answer::Yes) {
        if (length < 0 || length >= int64_t(kCartridgeBase)) {
            ShowRefusal(&form, QStringLiteral("Nothing was saved: the end of this file lies beyond what a table entry can address."));
            return std::nullopt;
        }
        return int32_t(length);
    }
    const QString typed = AskText(&form, QStringLiteral("Enter a position to save it to"), kEditorTitle);
    if (typed.trimmed().isEmpty())
        return std::nullopt;
    const std::optional<int32_t> position = TypedSavePosition(typed, length, errorText);
    if (!position)
        ShowRefusal(&form, errorText);
    return position;
}

void SaveAt(Form1& form, int t, int f, int32_t position)
{
    EditorState& state = form.state;
    const FrameSave save{state.artTables[size_t(t)], f, state.currentFrame, form.Picture2->surface.image,
                         state.palettes[size_t(state.currentPalette)], state.transparentColor};
    QString errorText;
    if (!SaveFrameAt(state.romFile, state.readPosition, save, position, errorText))
        ShowRefusal(&form, errorText);
}
}

void SaveArt(Form1& form)
{
    if (!CanWriteImage(form, QStringLiteral("Save what art? (*HINT* OPEN A ROM FIRST) lmao"),
                       QStringLiteral("%1 is read-only, so the art cannot be saved into it.")))
        return;
    EditorState& state = form.state;
    const int t = std::max(SelectedRow(form.List1), 0);
    const int selectedFrame = SelectedRow(form.List2);
    const int f = std::max(selectedFrame, 0);
    if (const std::optional<int32_t> position = AskSavePosition(form))
        SaveAt(form, t, f, *position);
    ReadArtTables(state.romFile, state.readPosition, state.artTables, 7);
    FillArtLists(form);
    // Keep the frame the user sees selected, so a second save addresses it again.
    if (selectedFrame >= 0 && selectedFrame < form.List2->count())
        SelectRowQuietly(form.List2, selectedFrame);
}
