// Exporting the frame image as a bitmap or as raw 4bpp tiles with a palette, and
// importing a section of a 16-colour bitmap over it.
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/message_boxes.h"
#include "exchange/bitmap_files.h"
#include "exchange/ui/section_dialog.h"
#include "exchange/uncompressed_art.h"
#include "view/ui/picture_box.h"

#include <QFileInfo>

namespace {
const QString kOpenRomFirst = QStringLiteral("Open a rom first. =P");
const QString kBitmapFilters = QStringLiteral("Bitmap Files|*.bmp|All Files|*.*");

bool SameFile(const QString& a, const QString& b) { return QFileInfo(a).absoluteFilePath() == QFileInfo(b).absoluteFilePath(); }

void ExportTplPalette(Form1& form, const QString& artFile)
{
    if (!AskYesNo(&form, QStringLiteral("Would you like to export the palette in TLP format as well?")))
        return;
    const QString paletteFile = AskFileName(&form, FileQuestion::Save, QStringLiteral("Export Tile Layer Pro Palette"),
                                            QStringLiteral("TLP Palettes|*.TPL|All Files|*.*"));
    if (paletteFile.isEmpty())
        return;
    if (SameFile(paletteFile, artFile)) {
        ShowRefusal(&form, QStringLiteral("The palette was not written: %1 is the art file just exported, and the "
                                          "palette would replace it. Export again and choose another name.")
                               .arg(QFileInfo(paletteFile).fileName()));
        return;
    }
    QString errorText;
    if (!WriteWholeFile(paletteFile, TplPaletteBytes(form.state.palettes[size_t(form.state.currentPalette)]), errorText))
        ShowRefusal(&form, errorText);
}

bool CheckBitmapDepth(Form1& form, const QString& fileName)
{
    if (BitmapDepth(fileName) == 4)
        return true;
    ShowRefusal(&form, QStringLiteral("This is not a 16 bit bitmap. You lose"));
    return false;
}

// The palette goes into the image at once, or not at all.
void ImportBitmapPalette(Form1& form, const QString& fileName)
{
    EditorState& state = form.state;
    Palette& palette = state.palettes[size_t(state.currentPalette)];
    const Palette before = palette;
    ReadBitmapPalette(palette, fileName);
    QString errorText;
    if (!WritePalette(state.romFile, state.readPosition, palette, errorText)) {
        palette = before;
        ShowRefusal(&form, QStringLiteral("The bitmap's palette was not imported:\n%1").arg(errorText));
    }
}
}

void ExportBitmap(Form1& form)
{
    if (!form.state.romLoaded) {
        ShowRefusal(&form, kOpenRomFirst);
        return;
    }
    form.state.bitmapFile =
        AskFileName(&form, FileQuestion::Save, QStringLiteral("Export Bitmap File"), kBitmapFilters);
    if (form.state.bitmapFile.isEmpty())
        return;
    QString errorText;
    if (!WriteBitmapFile(form.Picture2->surface.image, form.state.bitmapFile, errorText))
        ShowRefusal(&form, errorText);
}

void ExportUncompressedArt(Form1& form)
{
    if (!form.state.romLoaded) {
        ShowRefusal(&form, kOpenRomFirst);
        return;
    }
    const QString artFile = AskFileName(
        &form, FileQuestion::Save, QStringLiteral("Export Uncompressed Art File"),
        QStringLiteral("Uncompressed Art (dat)|*.dat|Uncompressed Art (bin)|*.bin|All Files|*.*"));
    if (artFile.isEmpty())
        return;
    const EditorState& state = form.state;
    const QByteArray art = UncompressedArtBytes(form.Picture2->surface, state.palettes[size_t(state.currentPalette)],
                                                state.transparentColor);
    QString errorText;
    if (!WriteWholeFile(artFile, art, errorText)) {
        ShowRefusal(&form, errorText);
        return;
    }
    ExportTplPalette(form, artFile);
}

void ImportBitmap(Form1& form)
{
    EditorState& state = form.state;
    if (!state.romLoaded) {
        ShowRefusal(&form, QStringLiteral("How will you import it if there is no rom loaded that contains the art to overwrite?"));
        return;
    }
    state.bitmapFile = AskFileName(&form, FileQuestion::Open, QStringLiteral("Load Bitmap File"), kBitmapFilters);
    if (state.bitmapFile.isEmpty() || !CheckBitmapDepth(form, state.bitmapFile))
        return;
    // The pixels load before the palette question, so a broken file changes nothing.
    QImage picture;
    QString errorText;
    if (!LoadBitmapPicture(state.bitmapFile, picture, errorText)) {
        ShowRefusal(&form, errorText);
        return;
    }
    if (AskYesNo(&form, QStringLiteral("Would you like to import the palette from the bitmap as well? (Better)")))
        ImportBitmapPalette(form, state.bitmapFile);
    state.importedPicture = picture;
    if (!form.sectionDialog)
        form.sectionDialog = new SectionDialog(form);
    form.sectionDialog->ShowPicture(state.importedPicture);
}
