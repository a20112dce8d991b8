// "Save changes to current art": put the preview's frame in the image and point the
// selected table entry at it.
#include "app/editor_session.h"
#include "art/save_art.h"
#include "rom/rom_open.h"

#include <optional>

namespace {
const QString kNothingToSave = QStringLiteral("Save what art? (*HINT* OPEN A ROM FIRST) lmao");
const QString kCannotSaveInto = QStringLiteral("%1 is read-only, so the art cannot be saved into it.");

// Where the frame goes: the end of the file, a typed position, or nowhere.
std::optional<int32_t> AskSavePosition(const Prompter& prompter, int64_t fileLength)
{
    const Reply answer =
        AskYesNoCancel(prompter, QStringLiteral("Would you like to put this art at the end of the file? (Better)"));
    if (answer == Reply::Cancel)
        return std::nullopt;
    QString errorText;
    std::optional<int32_t> position;
    if (answer == Reply::Yes) {
        position = AppendPosition(fileLength, errorText) ? std::optional<int32_t>(kAtTheEnd) : std::nullopt;
    } else {
        const QString typed = AskText(prompter, QStringLiteral("Enter a position to save it to"), kEditorTitle);
        if (typed.trimmed().isEmpty())
            return std::nullopt;
        position = TypedSavePosition(typed, fileLength, errorText);
    }
    if (!position)
        Refuse(prompter, errorText);
    return position;
}
}

void EditorSession::SaveArt()
{
    if (!CanWriteImage(kNothingToSave, kCannotSaveInto))
        return;
    if (const std::optional<int32_t> position = AskSavePosition(prompter, RomLength(state.document.file)))
        SaveFrame(std::max(state.artRow, 0), std::max(state.frameRow, 0), state.currentFrame,
                  MatchPicture(state.preview.image, CurrentPalette(), state.transparentColor), *position);
    ReadArtTables(state.document.file, state.readPosition, state.document.tables, 7);
    // The frame the user sees stays selected, so a second save addresses it again.
    FillArtLists(state.frameRow);
}

bool EditorSession::SaveFrame(int t, int f, const ArtFrame& placement, const PixelGrid& pixels, int32_t position,
                              const QString& command)
{
    if (!CanWriteImage(kNothingToSave, kCannotSaveInto))
        return false;
    QString errorText;
    FrameSaveOutcome saved;
    auto pointAtIt = [&] { SetFramePointer(state.document.tables[size_t(t)], f, saved.position); };
    if (ChangeImage(command, FrameSavePlanner(t, f, placement, pixels, position, saved), pointAtIt, AfterReplay::RereadTables,
                    errorText)) {
        state.currentFrame = saved.plan->frame;
        state.readPosition = int32_t(uint32_t(saved.position) + uint32_t(saved.plan->patches.back().bytes.size() - 2));
        return true;
    }
    Refuse(prompter, saved.refused ? errorText : QStringLiteral("The art was not saved: %1").arg(errorText));
    return false;
}
