#pragma once
// The editor session: the view and tool state on top of the open image's document. It
// runs every editor command, asks its questions through the prompter and reports what
// changed, so that any front end can drive it and redraw from it. The windows hit-test
// and hand it intents: a line, a colour slot, a frame pixel.
#include "app/editor_state.h"
#include "app/prompter.h"
#include "art/pixel_grid.h"
#include "rom/rom_patch.h"

#include <QFileSystemWatcher>
#include <QTimer>

#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <functional>

// How often the editor looks for changes another program made to the open image.
constexpr int kOutsideCheckMs = 500;

class EditorSession : public QObject {
    Q_OBJECT
public:
    // Starts as the main window opens: zoom 5, both pictures cleared and refreshed, the
    // transparent colour taken from the preview.
    explicit EditorSession(Prompter prompter, QObject* parent = nullptr);
    ~EditorSession() override; // closes the image

    const EditorState& State() const { return state; }

    // The catalogue: "Open Zelvane Rom", and the same for a file already named.
    void Open();
    void OpenFile(const QString& fileName);
    void SelectArtEntry(int row); // -1 when no line is selected
    void SelectFrame(int row);

    // The view and the pixel tools.
    void SetZoom(int value);
    // A stroke: pressed, painting frame pixels with the drawing colour, released.
    void PressCanvas();
    void PaintFramePixel(QPoint pixel);
    void ReleaseCanvas();
    void ClearPictures();       // "Clr"
    void DrawWithTransparent(); // "Draw with transparent"

    // The palette boxes: a press picks the drawing colour, a double click edits the
    // slot's colour. -1 stands for a place with no box.
    void PickColorSlot(int box);
    void EditColorSlot(int box);

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
    // Slot f of table t becomes a frame of pixels at position (or kAtTheEnd), keeping
    // placement's right and bottom, and the entry points there.
    bool SaveFrame(int t, int f, const ArtFrame& placement, const PixelGrid& pixels, int32_t position,
                   const QString& command = QStringLiteral("save"));
    // Palette record n takes edited's slots; 1-15 reach the image, or nothing changes.
    // Never grows the file: a palette past its end is refused.
    bool ReplacePalette(int n, const Palette& edited, const QString& failureText, const QString& command,
                        AfterReplay after = AfterReplay::Nothing);

    // Puts the image back as it was before the nth change its journal keeps (from 1),
    // byte for byte and in length, as a new change. Refused with a message otherwise.
    bool RevertToBefore(int n);

    // Shows what another program changed in the image since the editor last looked: the
    // lists as the image is, the same lines selected, and the frame drawn again only
    // when its own pixels changed. Asks nothing.
    void FollowOutsideChanges();

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
    bool ChangeImage(const QString& command, const ChangePlanner& plan,
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
    const Palette& CurrentPalette() const { return state.document.palettes[size_t(state.currentPalette)]; }

    void WatchImage();

    EditorState state;
    Prompter prompter;
    QFileSystemWatcher watcher; // the image and its journal, for changes by other programs
    QTimer outsideCheck;        // and a look each second, where the watcher misses one
};
