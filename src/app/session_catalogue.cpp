// Opening an image and choosing an art entry and one of its frames.
#include "app/editor_session.h"
#include "app/open_rom.h"
#include "rom/art_lists.h"
#include "view/frame_render.h"

#include <QFileInfo>

namespace {
int RowIn(const QStringList& lines, int row) { return row >= 0 && row < lines.size() ? row : -1; }
}

void EditorSession::Open()
{
    const QString fileName = AskFile(
        prompter, PromptKind::OpenFile, QStringLiteral("Load a Zelvane Rom"),
        QStringLiteral("Zelvane Roms (binary)|*.bin|Zelvane Roms (smd)|*.smd|Zelvane Roms (32x)|*.32x|All Files|*.*"));
    if (!fileName.isEmpty())
        OpenFile(fileName);
}

void EditorSession::OpenFile(const QString& fileName)
{
    const QString shown = QFileInfo(fileName).fileName();
    OpenReport report;
    QString errorText;
    if (!OpenRomImage(state, fileName, report, errorText)) {
        Refuse(prompter, QStringLiteral("Cannot open %1:\n%2").arg(shown, errorText));
        return;
    }
    state.outsideChangesShown = state.document.outsideChanges;
    WatchImage();
    FillArtLists(-1);
    if (!report.recovery.isEmpty())
        Inform(prompter, report.recovery);
    if (!state.document.file.writable)
        Refuse(prompter, QStringLiteral("%1 is read-only. You can browse its art, but nothing can be saved into it.").arg(shown));
    if (!report.catalogueWhole)
        Refuse(prompter, QStringLiteral("%1 is too short for a Zelvane ROM or its art tables are damaged. What "
                                        "could be read is shown; the rest reads as empty.")
                             .arg(shown));
}

void EditorSession::FillArtLists(int frameRowToKeep)
{
    // The art list is the same fixed positions for every image: filled once.
    if (!state.artListFilled) {
        state.artLines = ArtListLines(state.document.tables);
        state.artListFilled = true;
    }
    state.frameLines = FrameListLines(state.document.tables[size_t(std::max(state.artRow, 0))]);
    state.frameRow = RowIn(state.frameLines, frameRowToKeep);
    emit listsChanged();
}

void EditorSession::SelectArtEntry(int row)
{
    FollowOutsideChanges();
    state.artRow = RowIn(state.artLines, row);
    FillArtLists(-1);
    RefreshView();
}

void EditorSession::SelectFrame(int row)
{
    FollowOutsideChanges();
    state.frameRow = RowIn(state.frameLines, row);
    emit listsChanged();
    RefreshView();
}

// The watcher sees a write at once; the timer catches what it cannot see, such as a
// journal made in a folder it does not watch, or an image replaced under its name.
void EditorSession::WatchImage()
{
    if (!watcher.files().isEmpty())
        watcher.removePaths(watcher.files());
    watcher.addPath(state.document.file.fileName);
    if (QFileInfo::exists(state.document.journalPath))
        watcher.addPath(state.document.journalPath);
    if (!outsideCheck.isActive()) {
        connect(&watcher, &QFileSystemWatcher::fileChanged, this, &EditorSession::FollowOutsideChanges, Qt::UniqueConnection);
        connect(&outsideCheck, &QTimer::timeout, this, &EditorSession::FollowOutsideChanges, Qt::UniqueConnection);
        outsideCheck.start(kOutsideCheckMs);
    }
}

void EditorSession::FollowOutsideChanges()
{
    RefreshDocument(state.document);
    if (state.document.outsideChanges == state.outsideChangesShown)
        return;
    state.outsideChangesShown = state.document.outsideChanges;
    WatchImage(); // a replaced file or a new journal is watched anew
    FillArtLists(state.frameRow);
    ArtFrame shown;
    int32_t readPosition = 0;
    const int t = std::max(state.artRow, 0), f = std::max(state.frameRow, 0);
    ReadFrame(state.document.file, readPosition, shown, state.document.tables[size_t(t)].pointers[size_t(f)]);
    if (state.artRow >= 0 && !DrawsSame(shown, state.currentFrame))
        RefreshView();
    else
        ColorPaletteBoxes(CurrentPalette());
}
