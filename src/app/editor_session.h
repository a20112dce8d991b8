#pragma once
// The editor session: it owns the editor's state, runs every command on it, asks its
// questions through the prompter and reports what changed, so that any front end can
// drive it and redraw from it. Legacy handler names are given where they differ.
#include "app/editor_state.h"
#include "app/prompter.h"
#include "art/pixel_grid.h"
#include "rom/rom_patch.h"

#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <functional>

class EditorSession : public QObject {
    Q_OBJECT
public:
    // Starts as the main window loads (Form_Load): zoom 5, both pictures cleared and
    // refreshed, the transparent colour taken from the preview.
    explicit EditorSession(Prompter prompter, QObject* parent = nullptr);
    ~EditorSession() override; // closes the image (Form_Terminate)

    const EditorState& State() const { return state; }

    // The catalogue: menu_open_Click, and the same for a file already named.
    void Open();
    void OpenFile(const QString& fileName);
    void SelectArtEntry(int row); // List1_Click; -1 when no line is selected
    void SelectFrame(int row);    // List2_Click

    // The view and the pixel tools.
    void SetZoom(int value); // HScroll1_Change
    void PressCanvas();      // Picture1_MouseDown
    void MoveOnCanvas(QPoint position);
    void ReleaseCanvas();
    void ClearPictures();       // Command1, "Clr"
    void DrawWithTransparent(); // Command2

    // The palette boxes on the window's surface: Form_MouseDown and Form_DblClick.
    void PressWindowSurface(QPointF position);
    void DoubleClickWindowSurface();

    void SaveArt();
    void ExportBitmap();
    void ExportUncompressedArt();
    void ImportBitmap();

    // The section chooser's view, slider and OK, and its close box.
    void SetSectionZoom(int sliderValue);
    void PressSection(QPoint position);
    void MoveOnSection(QPoint position);
    void ReleaseSection(QPoint position);
    void CopySection();
    void CloseSectionChooser();

    // Ctrl+Z and Ctrl+Shift+Z (or Ctrl+Y): a step of painting, or a write to the image,
    // which is undone by a new change that puts its old bytes and length back.
    void Undo();
    void Redo();

    // Writes to the image that any front end may ask for; refusals go to the prompter.
    // Slot f of table t becomes a frame of pixels at position, keeping placement's right
    // and bottom, and the entry points there.
    bool SaveFrame(int t, int f, const ArtFrame& placement, const PixelGrid& pixels, int32_t position,
                   const QString& command = QStringLiteral("save"));
    // Palette record n takes edited's slots; 1-15 reach the image, or nothing changes.
    // Never grows the file: a palette past its end is refused.
    bool ReplacePalette(int n, const Palette& edited, const QString& failureText, const QString& command,
                        AfterReplay after = AfterReplay::Nothing);

    // Puts the image back as it was before the nth change its journal keeps (from 1),
    // byte for byte and in length, as a new change. Refused with a message otherwise.
    bool RevertToBefore(int n);

signals:
    void listsChanged();                                      // lines or selected lines
    void picturesChanged(QRect canvasRect, QRect previewRect); // drawing-area rectangles
    void paletteBoxesChanged();                               // Palbox and Colbox colours
    void sectionChooserChanged();                             // created, shown, hidden or closed
    void sectionViewChanged();

private:
    void RefreshView();
    void FillArtLists(int frameRowToKeep);
    void ColorPaletteBoxes(const Palette& palette);
    void ShowColbox();
    void ShowAllPictures();
    bool CanWriteImage(const QString& notLoadedText, const QString& readOnlyText);
    void EditBoxColor(int box);
    bool ChangeImage(const QString& command, const std::vector<RomPatch>& patches,
                     const std::function<void()>& applyToCatalogue, AfterReplay after, QString& errorText);
    void Remember(HistoryStep step);
    void ForgetPainting();
    void BeginCanvasStep();
    void EndCanvasStep();
    void ChangeWholePictures(const std::function<void()>& change);
    void Replay(std::vector<HistoryStep>& from, std::vector<HistoryStep>& to, bool forward);
    bool ReplayImageStep(const ImageStep& step, bool forward);
    void ShowCatalogueChange(const ImageStep& step);
    void ExportTplPalette(const QString& artFile);
    void ImportBitmapPalette(const QString& fileName);
    void ShowSectionChooser();
    void RedrawSectionView(bool withFrame);
    void MoveSelectionCorner(QPoint position);
    int SectionZoom() const { return state.sectionChooser.slider + 1; }
    FrameSurfaces Pictures() { return {state.canvas, state.preview, state.zoom}; }
    const Palette& CurrentPalette() const { return state.palettes[size_t(state.currentPalette)]; }

    EditorState state;
    Prompter prompter;
};
