// "Open Zelvane Rom": ask for a file, open it in place and read its catalogue.
#include "app/open_rom.h"
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/message_boxes.h"

#include <QFileInfo>

void menu_open_Click(Form1& form)
{
    const QString fileName = AskFileName(
        &form, FileQuestion::Open, QStringLiteral("Load a Zelvane Rom"),
        QStringLiteral("Zelvane Roms (binary)|*.bin|Zelvane Roms (smd)|*.smd|Zelvane Roms (32x)|*.32x|All Files|*.*"));
    if (fileName.isEmpty())
        return;
    OpenReport report;
    QString errorText;
    if (!OpenRomImage(form.state, fileName, report, errorText)) {
        ShowRefusal(&form, QStringLiteral("Cannot open %1:\n%2").arg(QFileInfo(fileName).fileName(), errorText));
        return;
    }
    FillArtLists(form);
    if (!form.state.romFile.writable)
        ShowRefusal(&form, QStringLiteral("%1 is read-only. You can browse its art, but nothing can be saved into it.")
                               .arg(QFileInfo(fileName).fileName()));
    if (!report.catalogueWhole)
        ShowRefusal(&form, QStringLiteral("%1 is too short for a Zelvane ROM or its art tables are damaged. What "
                                          "could be read is shown; the rest reads as empty.")
                               .arg(QFileInfo(fileName).fileName()));
}
