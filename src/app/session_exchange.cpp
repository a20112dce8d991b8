// Exporting the frame image as a bitmap or as raw 4bpp tiles with a palette, and
// importing a 16-colour bitmap for the section chooser.
#include "app/editor_session.h"
#include "exchange/bitmap_files.h"
#include "exchange/uncompressed_art.h"

#include <QFileInfo>

namespace {
const QString kOpenRomFirst = QStringLiteral("Open a rom first. =P");
const QString kBitmapFilters = QStringLiteral("Bitmap Files|*.bmp|All Files|*.*");

bool SameFile(const QString& a, const QString& b) { return QFileInfo(a).absoluteFilePath() == QFileInfo(b).absoluteFilePath(); }
}

void EditorSession::ExportBitmap()
{
    if (!IsDocumentOpen(state.document)) {
        Refuse(prompter, kOpenRomFirst);
        return;
    }
    state.bitmapFile = AskFile(prompter, PromptKind::SaveFile, QStringLiteral("Export Bitmap File"), kBitmapFilters);
    if (state.bitmapFile.isEmpty())
        return;
    QString errorText;
    if (!WriteBitmapFile(state.preview.image, state.bitmapFile, errorText))
        Refuse(prompter, errorText);
}

void EditorSession::ExportUncompressedArt()
{
    if (!IsDocumentOpen(state.document)) {
        Refuse(prompter, kOpenRomFirst);
        return;
    }
    const QString artFile =
        AskFile(prompter, PromptKind::SaveFile, QStringLiteral("Export Uncompressed Art File"),
                QStringLiteral("Uncompressed Art (dat)|*.dat|Uncompressed Art (bin)|*.bin|All Files|*.*"));
    if (artFile.isEmpty())
        return;
    QString errorText;
    if (!WriteWholeFile(artFile, UncompressedArtBytes(state.preview, CurrentPalette(), state.transparentColor), errorText)) {
        Refuse(prompter, errorText);
        return;
    }
    ExportTplPalette(artFile);
}

void EditorSession::ExportTplPalette(const QString& artFile)
{
    if (!AskYesNo(prompter, QStringLiteral("Would you like to export the palette in TLP format as well?")))
        return;
    const QString paletteFile = AskFile(prompter, PromptKind::SaveFile, QStringLiteral("Export Tile Layer Pro Palette"),
                                        QStringLiteral("TLP Palettes|*.TPL|All Files|*.*"));
    if (paletteFile.isEmpty())
        return;
    if (SameFile(paletteFile, artFile)) {
        Refuse(prompter, QStringLiteral("The palette was not written: %1 is the art file just exported, and the "
                                        "palette would replace it. Export again and choose another name.")
                             .arg(QFileInfo(paletteFile).fileName()));
        return;
    }
    QString errorText;
    if (!WriteWholeFile(paletteFile, TplPaletteBytes(CurrentPalette()), errorText))
        Refuse(prompter, errorText);
}

void EditorSession::ImportBitmap()
{
    if (!IsDocumentOpen(state.document)) {
        Refuse(prompter, QStringLiteral("How will you import it if there is no rom loaded that contains the art to overwrite?"));
        return;
    }
    state.bitmapFile = AskFile(prompter, PromptKind::OpenFile, QStringLiteral("Load Bitmap File"), kBitmapFilters);
    if (state.bitmapFile.isEmpty())
        return;
    if (!HasImportedDepth(state.bitmapFile)) {
        Refuse(prompter, QStringLiteral("This is not a 16 bit bitmap. You lose"));
        return;
    }
    // The pixels load before the palette question, so a broken file changes nothing.
    QImage picture;
    QString errorText;
    if (!LoadBitmapPicture(state.bitmapFile, picture, errorText)) {
        Refuse(prompter, errorText);
        return;
    }
    if (AskYesNo(prompter, QStringLiteral("Would you like to import the palette from the bitmap as well? (Better)")))
        ImportBitmapPalette(state.bitmapFile);
    state.importedPicture = picture;
    ShowSectionChooser();
}

// The palette goes into the image at once, or not at all. The boxes show it from the
// next refresh on.
void EditorSession::ImportBitmapPalette(const QString& fileName)
{
    Palette imported = CurrentPalette();
    ReadBitmapPalette(imported, fileName);
    ReplacePalette(state.currentPalette, imported, QStringLiteral("The bitmap's palette was not imported:\n%1"),
                   QStringLiteral("palette import"));
}
