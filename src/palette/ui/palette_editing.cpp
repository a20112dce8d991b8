// Picking the drawing colour from the palette boxes and typing new palette colours.
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/form_surface.h"
#include "app/ui/message_boxes.h"
#include "rom/hex_answer.h"

#include <cmath>

namespace {
// Edges count as inside.
bool InsideBox(int i, int x, int y)
{
    const QRect box = PalboxRect(i);
    return box.left() <= x && x <= box.left() + box.width() && box.top() <= y && y <= box.top() + box.height();
}

// The answer's last six hexadecimal digits, read BBGGRR.
ScreenColor TypedColor(const QString& answer) { return ScreenColor(ReadHexAnswer(answer).value & 0xFFFFFF); }

void EditBoxColor(Form1& form, int i)
{
    if (!CanWriteImage(form, QStringLiteral("You cannot edit a palette when a rom is not loaded, so load one!"),
                       QStringLiteral("%1 is read-only, so its palette cannot be changed.")))
        return;
    EditorState& state = form.state;
    const QString answer = AskText(&form, QStringLiteral("Enter the RGB in hex: "), kEditorTitle);
    if (answer.isEmpty())
        return;
    Palette& palette = state.palettes[size_t(state.currentPalette)];
    const ConsoleColor oldWord = palette.colors[size_t(i)];
    palette.colors[size_t(i)] = ScreenToConsole(TypedColor(answer));
    QString errorText;
    if (!WritePalette(state.romFile, state.readPosition, palette, errorText)) {
        palette.colors[size_t(i)] = oldWord;
        ShowRefusal(&form, QStringLiteral("The palette could not be written:\n%1").arg(errorText));
    }
}
}

void Form_MouseDown(Form1& form, QPointF position)
{
    EditorState& state = form.state;
    state.mouseX = int16_t(std::nearbyint(position.x()));
    state.mouseY = int16_t(std::nearbyint(position.y()));
    for (int i = 0; i < kPaletteBoxes; ++i)
        if (InsideBox(i, state.mouseX, state.mouseY))
            state.currentColor = int16_t(i);
    form.surface->SetColboxColor(
        ConsoleToScreen(state.palettes[size_t(state.currentPalette)], state.currentColor, state.transparentColor));
}

void Form_DblClick(Form1& form)
{
    for (int i = 0; i < kPaletteBoxes; ++i)
        if (InsideBox(i, form.state.mouseX, form.state.mouseY))
            EditBoxColor(form, i);
    RefreshView(form);
}
