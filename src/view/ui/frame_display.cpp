// Showing the selected frame 1:1 in the preview and enlarged on the canvas.
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/form_surface.h"
#include "view/frame_drawing.h"
#include "view/ui/picture_box.h"

#include <QScrollBar>

void ClearPictures(Form1& form)
{
    ClearSurface(form.Picture1->surface);
    ClearSurface(form.Picture2->surface);
    form.Picture1->ShowAll();
    form.Picture2->ShowAll();
}

void ColorPaletteBoxes(Form1& form, int paletteNumber)
{
    const Palette& palette = form.state.palettes[size_t(paletteNumber)];
    for (int i = 1; i < kPaletteBoxes; ++i)
        form.surface->SetPalboxColor(i, ConsoleToScreen(palette, i, form.state.transparentColor));
}

void RefreshView(Form1& form)
{
    EditorState& state = form.state;
    if (state.romLoaded) {
        const int t = std::max(SelectedRow(form.List1), 0);
        const int f = std::max(SelectedRow(form.List2), 0);
        ReadFrame(state.romFile, state.readPosition, state.currentFrame, state.artTables[size_t(t)].pointers[size_t(f)]);
        ClearPictures(form);
        state.currentPalette = int16_t(t);
        DrawFrame({form.Picture1->surface, form.Picture2->surface, state.zoom}, state.currentFrame,
                  state.palettes[size_t(t)], state.transparentColor);
        form.surface->SetColboxColor(ConsoleToScreen(state.palettes[size_t(t)], state.currentColor, state.transparentColor));
    }
    ColorPaletteBoxes(form, state.currentPalette);
}

void HScroll1_Change(Form1& form)
{
    form.state.zoom = int16_t(form.HScroll1->value());
    ClearPictures(form);
    RefreshView(form);
}
