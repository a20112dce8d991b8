// Painting single pixels on the canvas, "Clr" and "Draw with transparent".
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/form_surface.h"
#include "view/frame_drawing.h"
#include "view/ui/picture_box.h"

namespace {
ScreenColor DrawingColor(const EditorState& state)
{
    return ConsoleToScreen(state.palettes[size_t(state.currentPalette)], state.currentColor, state.transparentColor);
}
}

void Picture1_MouseDown(Form1& form, QPoint) { form.state.drawing = true; }

void Picture1_MouseMove(Form1& form, QPoint position)
{
    EditorState& state = form.state;
    if (!state.drawing)
        return;
    const int column = NearestImagePixel(position.x(), state.zoom);
    const int row = NearestImagePixel(position.y(), state.zoom);
    const QRect changed = PaintCanvasPoint({form.Picture1->surface, form.Picture2->surface, state.zoom},
                                           position.x(), position.y(), DrawingColor(state));
    form.Picture1->ShowChanged(changed);
    form.Picture2->ShowChanged(QRect(column, row, 1, 1));
}

void Picture1_MouseUp(Form1& form, QPoint) { form.state.drawing = false; }

void Command1_Click(Form1& form) { ClearPictures(form); }

void Command2_Click(Form1& form)
{
    form.state.currentColor = 17;
    form.surface->SetColboxColor(DrawingColor(form.state));
}
