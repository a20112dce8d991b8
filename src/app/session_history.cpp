// Undo and redo: every write to the image as a journaled change, and every stroke,
// "Clr" and pasted section as the parts of the pictures it changed.
#include "app/editor_session.h"
#include "rom/rom_open.h"

#include <map>

namespace {
struct CatalogueCopy {
    std::array<ArtTable, kArtTableRecords> tables;
    std::array<Palette, kPaletteRecords> palettes;
};

bool Same(const ArtTable& a, const ArtTable& b) { return a.position == b.position && a.pointers == b.pointers; }
bool Same(const Palette& a, const Palette& b) { return a.position == b.position && a.colors == b.colors; }

CatalogueChange Difference(const CatalogueCopy& before, const EditorState& after)
{
    CatalogueChange change;
    for (int i = 0; i < kArtTableRecords; ++i)
        if (!Same(before.tables[size_t(i)], after.document.tables[size_t(i)]))
            change.tables.push_back({i, {before.tables[size_t(i)], after.document.tables[size_t(i)]}});
    for (int i = 0; i < kPaletteRecords; ++i)
        if (!Same(before.palettes[size_t(i)], after.document.palettes[size_t(i)]))
            change.palettes.push_back({i, {before.palettes[size_t(i)], after.document.palettes[size_t(i)]}});
    return change;
}

// The bytes the image holds after the patches, later ones over earlier ones.
std::map<int64_t, char> Overlay(const std::vector<RomPatch>& patches)
{
    std::map<int64_t, char> bytes;
    for (const RomPatch& patch : patches)
        for (qsizetype i = 0; i < patch.bytes.size(); ++i)
            bytes[patch.position + i] = patch.bytes[i];
    return bytes;
}

// Whether the image is still as a step left it (or found it): nothing else changed it.
bool ImageHolds(const RomFile& rom, const std::vector<RomPatch>& patches, int64_t length)
{
    if (RomLength(rom) != length)
        return false;
    for (const auto& [position, byte] : Overlay(patches)) {
        char there = 0;
        if (position < length && (ReadRomBytes(rom, position, &there, 1) != 1 || there != byte))
            return false;
    }
    return true;
}

qsizetype PictureBytes(const HistoryStep& step)
{
    const auto* canvas = std::get_if<CanvasStep>(&step);
    return canvas ? canvas->canvasBefore.sizeInBytes() * 2 + canvas->previewBefore.sizeInBytes() * 2 : 0;
}

void PutBack(PictureSurface& surface, const QRect& rect, const QImage& part)
{
    for (int y = 0; y < part.height(); ++y)
        std::copy_n(reinterpret_cast<const QRgb*>(part.constScanLine(y)), part.width(),
                    reinterpret_cast<QRgb*>(surface.image.scanLine(rect.top() + y)) + rect.left());
}
}

bool EditorSession::ChangeImage(const QString& command, const ChangePlanner& plan,
                                const std::function<void()>& applyToCatalogue, AfterReplay after, QString& errorText)
{
    ImageStep step{command, {}, 0, {}, {}, after};
    CatalogueCopy before;
    // The catalogue and the plan as they stand under the lock, after any outside change.
    auto keepPlan = [&](const RomDocument& document, QString& refusal) {
        before = {document.tables, document.palettes};
        std::optional<PlannedChange> change = plan(document, refusal);
        if (change)
            step.patches = change->patches;
        return change;
    };
    const bool done = ChangeDocument(state.document, command, keepPlan, step.entry, errorText);
    FollowOutsideChanges();
    if (!done)
        return false;
    state.lastOwnChange = step.entry.number;
    step.lengthAfter = step.entry.newLength;
    applyToCatalogue();
    step.catalogue = Difference(before, state);
    Remember(std::move(step));
    return true;
}

void EditorSession::Remember(HistoryStep step)
{
    EditHistory& history = state.history;
    history.undone.clear();
    history.done.push_back(std::move(step));
    qsizetype pictureBytes = 0;
    for (const HistoryStep& kept : history.done)
        pictureBytes += PictureBytes(kept);
    while (history.done.size() > size_t(kMaxHistorySteps) || pictureBytes > kMaxHistoryPictureBytes) {
        pictureBytes -= PictureBytes(history.done.front());
        history.done.erase(history.done.begin());
    }
}

// Once the pictures are redrawn from the image, no painting step applies to them.
void EditorSession::ForgetPainting()
{
    state.strokeBefore = CanvasStep{};
    for (std::vector<HistoryStep>* steps : {&state.history.done, &state.history.undone})
        std::erase_if(*steps, [](const HistoryStep& step) { return std::holds_alternative<CanvasStep>(step); });
}

// The pictures as they are, shared until they are drawn on; the parts that change are
// added to the step's rectangles as they change.
void EditorSession::BeginCanvasStep()
{
    state.strokeBefore = CanvasStep{{}, {}, state.canvas.image, {}, state.preview.image, {}};
}

void EditorSession::EndCanvasStep()
{
    CanvasStep step = std::exchange(state.strokeBefore, CanvasStep{});
    if (step.canvasBefore.isNull() || (step.canvasRect.isEmpty() && step.previewRect.isEmpty()))
        return;
    step.canvasBefore = step.canvasBefore.copy(step.canvasRect);
    step.previewBefore = step.previewBefore.copy(step.previewRect);
    step.canvasAfter = state.canvas.image.copy(step.canvasRect);
    step.previewAfter = state.preview.image.copy(step.previewRect);
    Remember(std::move(step));
}

void EditorSession::ChangeWholePictures(const std::function<void()>& change)
{
    BeginCanvasStep();
    change();
    state.strokeBefore.canvasRect = state.canvas.image.rect();
    state.strokeBefore.previewRect = state.preview.image.rect();
    ShowAllPictures();
    EndCanvasStep();
}

void EditorSession::ShowCatalogueChange(const ImageStep& step)
{
    if (step.after == AfterReplay::RereadTables)
        ReadArtTables(state.document.file, state.readPosition, state.document.tables, 7);
    FillArtLists(state.frameRow);
    if (step.after == AfterReplay::RedrawFrame)
        RefreshView();
}

bool EditorSession::ReplayImageStep(const ImageStep& step, bool forward)
{
    const PlannedChange change = forward ? PlannedChange{step.patches, step.lengthAfter} : RestoringChange(step.entry);
    // Only the image as the step left it (or found it), with no change since, is replayed.
    auto plan = [&](const RomDocument& document, QString& refusal) -> std::optional<PlannedChange> {
        const bool untouched = IsLastChange(document, state.lastOwnChange)
                               && (forward ? ImageHolds(document.file, RestoringChange(step.entry).patches, step.entry.oldLength)
                                           : ImageHolds(document.file, step.patches, step.lengthAfter));
        refusal = QStringLiteral("the image was changed since, outside this editor.");
        return untouched ? std::optional<PlannedChange>(change) : std::nullopt;
    };
    JournalEntry made;
    QString errorText;
    const bool done = ChangeDocument(state.document, (forward ? QStringLiteral("redo ") : QStringLiteral("undo ")) + step.command,
                                     plan, made, errorText);
    FollowOutsideChanges();
    if (!done) {
        Refuse(prompter, QStringLiteral("The %1 was not %2: %3").arg(step.command, forward ? "redone" : "undone", errorText));
        return false;
    }
    state.lastOwnChange = made.number;
    for (const auto& [i, tables] : step.catalogue.tables)
        state.document.tables[size_t(i)] = forward ? tables.second : tables.first;
    for (const auto& [i, palettes] : step.catalogue.palettes)
        state.document.palettes[size_t(i)] = forward ? palettes.second : palettes.first;
    ShowCatalogueChange(step);
    return true;
}

void EditorSession::Undo()
{
    if (!state.drawing)
        Replay(state.history.done, state.history.undone, false);
}

void EditorSession::Redo()
{
    if (!state.drawing)
        Replay(state.history.undone, state.history.done, true);
}
// Takes the last step of from, undoes or redoes it, and keeps it on to.
void EditorSession::Replay(std::vector<HistoryStep>& from, std::vector<HistoryStep>& to, bool forward)
{
    if (from.empty())
        return;
    HistoryStep step = from.back();
    if (const auto* image = std::get_if<ImageStep>(&step)) {
        if (!ReplayImageStep(*image, forward))
            return;
    } else {
        const CanvasStep& canvas = std::get<CanvasStep>(step);
        PutBack(state.canvas, canvas.canvasRect, forward ? canvas.canvasAfter : canvas.canvasBefore);
        PutBack(state.preview, canvas.previewRect, forward ? canvas.previewAfter : canvas.previewBefore);
        emit picturesChanged(canvas.canvasRect, canvas.previewRect);
    }
    from.pop_back(); // a redraw in the replay forgets the painting steps below, not this one
    to.push_back(std::move(step));
}

bool EditorSession::RevertToBefore(int n)
{
    JournalEntry made;
    QString errorText;
    const bool done = RevertDocument(state.document, n, made, errorText);
    FollowOutsideChanges();
    if (!done) {
        Refuse(prompter, QStringLiteral("Nothing was reverted: %1").arg(errorText));
        return false;
    }
    ReadArtTables(state.document.file, state.readPosition, state.document.tables, kArtTableCount);
    ReadPalettes(state.document.file, state.readPosition, state.document.palettes);
    state.history = EditHistory{};
    FillArtLists(state.frameRow);
    return true;
}
