// The section chooser: the imported bitmap enlarged, a selection dragged on its grid,
// and OK copying the selection over the frame image.
#include "app/editor_session.h"

#include <algorithm>

void EditorSession::ShowSectionChooser()
{
    if (!state.sectionChooser.exists) {
        state.sectionChooser = SectionChooser{};
        state.sectionChooser.exists = true;
    }
    state.sectionChooser.shown = true;
    emit sectionChooserChanged();
    // A new picture shows at once at the enlargement the slider keeps.
    RedrawSectionView(false);
}

void EditorSession::RedrawSectionView(bool withFrame)
{
    SectionChooser& chooser = state.sectionChooser;
    ::RedrawSectionView(chooser.view, state.importedPicture, SectionZoom());
    if (withFrame)
        DrawSelectionFrame(chooser.view, chooser.selection, SectionZoom());
    emit sectionViewChanged();
}

void EditorSession::SetSectionZoom(int sliderValue)
{
    state.sectionChooser.slider = std::clamp(sliderValue, 0, 10);
    RedrawSectionView(false);
}

void EditorSession::PressSection(QPoint position)
{
    SectionSelection& s = state.sectionChooser.selection;
    s.selecting = true;
    s.anchorX = s.cornerX = SnapToGrid(position.x(), SectionZoom());
    s.anchorY = s.cornerY = SnapToGrid(position.y(), SectionZoom());
    RedrawSectionView(true);
}

void EditorSession::MoveOnSection(QPoint position)
{
    if (state.sectionChooser.selection.selecting)
        MoveSelectionCorner(position);
}

void EditorSession::ReleaseSection(QPoint position)
{
    state.sectionChooser.selection.selecting = false;
    MoveSelectionCorner(position);
}

void EditorSession::MoveSelectionCorner(QPoint position)
{
    SectionSelection& s = state.sectionChooser.selection;
    s.cornerX = SnapToGrid(position.x(), SectionZoom());
    s.cornerY = SnapToGrid(position.y(), SectionZoom());
    RedrawSectionView(true);
}

void EditorSession::CopySection()
{
    ChangeWholePictures([this] {
        ::CopySection(state.sectionChooser.view, state.sectionChooser.selection, SectionZoom(), Pictures());
    });
    state.sectionChooser.shown = false;
    emit sectionChooserChanged();
}

void EditorSession::CloseSectionChooser()
{
    state.sectionChooser = SectionChooser{};
    emit sectionChooserChanged();
}
