// Start-up, shutdown, the help buttons and the about box.
#include "app/ui/about_box.h"
#include "app/ui/commands.h"
#include "app/ui/form1.h"
#include "app/ui/message_boxes.h"
#include "view/ui/picture_box.h"

#include <QApplication>
#include <QScrollBar>

void Form_Load(Form1& form)
{
    // Setting the scroll bar runs the zoom change at once: clear and refresh.
    form.HScroll1->setValue(5);
    form.state.zoom = 5;
    form.state.transparentColor = ScreenColor(SurfacePixel(form.Picture2->surface, 0, 0));
}

void Form_Terminate(Form1& form)
{
    CloseRomFile(form.state.romFile);
}

void what_1_Click(Form1& form)
{
    ShowHelp(&form, QStringLiteral("This is basically just a list of pointers in your zelvane rom, each one standing "
                                   "for art. They each point to more pointers, which are the list of pointers on the "
                                   "right side, that point to each frame of art."));
}

void what_2_Click(Form1& form)
{
    ShowHelp(&form, QStringLiteral("This is a list of pointers that point to 1 frame of art. To edit the art, click "
                                   "the pointer that points to it, and use the art editor."));
}

void menu_about_Click(Form1& form)
{
    if (!form.frmAbout)
        form.frmAbout = new FrmAbout(&form);
    form.frmAbout->show();
    form.frmAbout->raise();
    form.frmAbout->activateWindow();
}

void menu_exit_Click(Form1& form)
{
    form.close();
    QApplication::quit();
}

bool CanWriteImage(Form1& form, const QString& notLoadedText, const QString& readOnlyText)
{
    if (!form.state.romLoaded)
        ShowRefusal(&form, notLoadedText);
    else if (!form.state.romFile.writable)
        ShowRefusal(&form, readOnlyText.arg(form.state.romFile.fileName));
    return form.state.romLoaded && form.state.romFile.writable;
}
