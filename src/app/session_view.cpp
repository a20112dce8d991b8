// Start-up, the frame display and the pixel tools.
#include "app/editor_session.h"

#include <algorithm>

EditorSession::EditorSession(Prompter prompter, QObject* parent) : QObject(parent), prompter(std::move(prompter))
{
    SetZoom(5);
    state.transparentColor = ScreenColor(SurfacePixel(state.preview, 0, 0));
}

EditorSession::~EditorSession() { CloseDocument(state.document); }

void EditorSession::ShowAllPictures() { emit picturesChanged(state.canvas.image.rect(), state.preview.image.rect()); }

void EditorSession::ShowColbox()
{
    state.colboxColor = ConsoleToScreen(CurrentPalette(), state.currentColor, state.transparentColor);
    emit paletteBoxesChanged();
}

void EditorSession::ColorPaletteBoxes(const Palette& palette)
{
    // Box 0 keeps the black it has from the start.
    for (int i = 1; i < kPaletteBoxes; ++i)
        state.palboxColors[size_t(i)] = ConsoleToScreen(palette, i, state.transparentColor);
    emit paletteBoxesChanged();
}

// Reads the selected frame anew, so painting that was not saved is gone.
void EditorSession::RefreshView()
{
    if (IsDocumentOpen(state.document)) {
        const int t = std::max(state.artRow, 0);
        const int f = std::max(state.frameRow, 0);
        ReadFrame(state.document.file, state.readPosition, state.currentFrame, state.document.tables[size_t(t)].pointers[size_t(f)]);
        ForgetPainting();
        ClearSurface(state.canvas);
        ClearSurface(state.preview);
        state.currentPalette = int16_t(t);
        DrawFrame(Pictures(), state.currentFrame, CurrentPalette(), state.transparentColor);
        ShowAllPictures();
        ShowColbox();
    }
    ColorPaletteBoxes(CurrentPalette());
}

void EditorSession::SetZoom(int value)
{
    state.zoom = int16_t(std::clamp(value, 1, 8));
    ForgetPainting();
    ClearSurface(state.canvas);
    ClearSurface(state.preview);
    ShowAllPictures();
    RefreshView();
}

void EditorSession::PressCanvas()
{
    state.drawing = true;
    BeginCanvasStep();
}

void EditorSession::PaintFramePixel(QPoint pixel)
{
    if (!state.drawing)
        return;
    const ScreenColor color = ConsoleToScreen(CurrentPalette(), state.currentColor, state.transparentColor);
    const QRect canvasRect = ::PaintFramePixel(Pictures(), pixel, color);
    const QRect previewRect = QRect(pixel, QSize(1, 1)).intersected(state.preview.image.rect());
    state.strokeBefore.canvasRect |= canvasRect;
    state.strokeBefore.previewRect |= previewRect;
    emit picturesChanged(canvasRect, previewRect);
}

void EditorSession::ReleaseCanvas()
{
    state.drawing = false;
    EndCanvasStep();
}

void EditorSession::ClearPictures()
{
    ChangeWholePictures([this] {
        ClearSurface(state.canvas);
        ClearSurface(state.preview);
    });
}

void EditorSession::DrawWithTransparent()
{
    state.currentColor = 17;
    ShowColbox();
}
