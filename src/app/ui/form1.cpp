#include "app/ui/form1.h"

#include "app/ui/about_box.h"
#include "app/ui/form_surface.h"
#include "app/ui/window_prompter.h"
#include "app/ui/wrap_button.h"
#include "exchange/ui/section_dialog.h"
#include "rom/ui/list_box.h"
#include "view/app_icon.h"
#include "view/ui/picture_box.h"

#include <QCloseEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStyleFactory>

void StyleApplication(QApplication& app)
{
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette = app.style()->standardPalette();
    const QColor face = QColor::fromRgb(ScreenToRgb(kPictureBackground));
    palette.setColor(QPalette::Window, face);
    palette.setColor(QPalette::Button, face);
    app.setPalette(palette);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(10);
    app.setFont(font);
    QIcon icon;
    for (int size : {16, 32, 48, 64, 128, 256})
        icon.addPixmap(QPixmap::fromImage(AppIconImage(size)));
    app.setWindowIcon(icon);
    app.setDesktopFileName(QStringLiteral("net.zelvane.ArtEditor"));
}

namespace {
template <typename Widget, typename... Args>
Widget* Place(QWidget* parent, const QString& name, const QRect& geometry, Args&&... args)
{
    auto* widget = new Widget(std::forward<Args>(args)..., parent);
    widget->setObjectName(name);
    widget->setGeometry(geometry);
    return widget;
}

QAction* AddItem(QMenu* menu, const QString& name, const QString& caption)
{
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    return action;
}

QAction* AddSeparator(QMenu* menu, const QString& name)
{
    QAction* separator = menu->addSeparator();
    separator->setObjectName(name);
    return separator;
}
}

Form1::Form1() : prompter(WindowPrompter(this)), session(prompter)
{
    setObjectName(QStringLiteral("Form1"));
    setWindowTitle(QStringLiteral("Brennals' Zelvane Art Editing Tool"));
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    BuildControls();
    BuildMenus();
    setFixedSize(kClientWidth, kClientHeight + menuBar()->sizeHint().height());
    setAcceptDrops(true);
    WireEvents();
    WireSession();
}

void Form1::OpenLater(const QString& fileName)
{
    QTimer::singleShot(0, this, [this, fileName] { session.OpenFile(fileName); });
}

namespace {
QString DroppedFile(const QMimeData* data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 && urls.first().isLocalFile() ? urls.first().toLocalFile() : QString();
}
}

void Form1::dragEnterEvent(QDragEnterEvent* event)
{
    if (!DroppedFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void Form1::dropEvent(QDropEvent* event)
{
    const QString fileName = DroppedFile(event->mimeData());
    if (fileName.isEmpty())
        return;
    event->acceptProposedAction();
    OpenLater(fileName);
}

void Form1::BuildControls()
{
    const EditorState& state = session.State();
    surface = new FormSurface(this, state);
    surface->setFixedSize(kClientWidth, kClientHeight);
    setCentralWidget(surface);
    // Group boxes first, so the controls they frame lie above them.
    Frame1 = Place<QGroupBox>(surface, "Frame1", {8, 8, 289, 265}, QStringLiteral("Pointer List"));
    Frame2 = Place<QGroupBox>(surface, "Frame2", {640, 8, 81, 113}, QStringLiteral("Art Preview"));
    Frame3 = Place<QGroupBox>(surface, "Frame3", {632, 136, 97, 137}, QStringLiteral("Misc"));
    List1 = new ListBox(surface, QStringLiteral("List1"), {16, 24, 129, 212});
    List2 = new ListBox(surface, QStringLiteral("List2"), {160, 24, 129, 212});
    what_1 = Place<QPushButton>(surface, "what_1", {16, 248, 129, 17}, QStringLiteral("What's This?"));
    what_2 = Place<QPushButton>(surface, "what_2", {160, 248, 129, 17}, QStringLiteral("What's This?"));
    Label2 = Place<QLabel>(surface, "Label2", {336, 8, 49, 17}, QStringLiteral("Art Editor"));
    Label2->setAutoFillBackground(true);
    Label2->setAlignment(Qt::AlignCenter);
    Picture1 = new PictureBox(surface, QStringLiteral("Picture1"), {328, 24, 249, 209}, state.canvas);
    save_art = Place<QPushButton>(surface, "save_art", {328, 240, 153, 25}, QStringLiteral("Save changes to current art"));
    Command2 = Place<QPushButton>(surface, "Command2", {488, 240, 129, 25}, QStringLiteral("Draw with transparent"));
    HScroll1 = Place<QScrollBar>(surface, "HScroll1", {584, 24, 29, 17}, Qt::Horizontal);
    HScroll1->setRange(1, 8);
    HScroll1->setSingleStep(1);
    HScroll1->setPageStep(1);
    HScroll1->setFocusPolicy(Qt::StrongFocus);
    HScroll1->setValue(state.zoom);
    Command1 = Place<QPushButton>(surface, "Command1", {584, 48, 30, 17}, QStringLiteral("Clr"));
    Picture2 = new PictureBox(surface, QStringLiteral("Picture2"), {648, 24, 65, 89}, state.preview);
    load_bitmap = Place<QPushButton>(surface, "load_bitmap", {640, 152, 81, 25}, QStringLiteral("Import bitmap"));
    export_bitmap = Place<QPushButton>(surface, "export_bitmap", {640, 184, 81, 25}, QStringLiteral("Export bitmap"));
    export_uart = Place<WrapButton>(surface, "export_uart", {640, 216, 81, 49}, QStringLiteral("Export Uncompressed art"));

    const QList<QWidget*> tabOrder = {List1,    List2,       what_1,   what_2,   Picture1,      Picture2, HScroll1,
                                      save_art, load_bitmap, Command1, Command2, export_bitmap, export_uart};
    for (qsizetype i = 0; i + 1 < tabOrder.size(); ++i)
        setTabOrder(tabOrder[i], tabOrder[i + 1]);
}

void Form1::BuildMenus()
{
    menu_file = menuBar()->addMenu(QStringLiteral("File"));
    menu_file->setObjectName(QStringLiteral("menu_file"));
    menu_open = AddItem(menu_file, "menu_open", QStringLiteral("Open Zelvane Rom"));
    AddSeparator(menu_file, "sep1");
    menu_exit = AddItem(menu_file, "menu_exit", QStringLiteral("Exit"));

    menu_art = menuBar()->addMenu(QStringLiteral("Art"));
    menu_art->setObjectName(QStringLiteral("menu_art"));
    file_saveart = AddItem(menu_art, "file_saveart", QStringLiteral("Save current art"));
    AddSeparator(menu_art, "sep2");
    menu_export_bitmap = AddItem(menu_art, "menu_export_bitmap", QStringLiteral("Export art as bitmap"));
    menu_export_uart = AddItem(menu_art, "menu_export_uart", QStringLiteral("Export art as uncompressed pixel data"));
    AddSeparator(menu_art, "sep3");
    menu_bitmap_import = AddItem(menu_art, "menu_bitmap_import", QStringLiteral("Import section of bitmap"));

    menu_help = menuBar()->addMenu(QStringLiteral("Help"));
    menu_help->setObjectName(QStringLiteral("menu_help"));
    menu_about = AddItem(menu_help, "menu_about", QStringLiteral("About"));
}

void Form1::WireEvents()
{
    EditorSession* s = &session;
    connect(menu_open, &QAction::triggered, s, &EditorSession::Open);
    connect(menu_exit, &QAction::triggered, this, [this] {
        close();
        QApplication::quit();
    });
    connect(menu_about, &QAction::triggered, this, &Form1::ShowAbout);
    connect(what_1, &QPushButton::clicked, this, [this] {
        ShowHelp(prompter, QStringLiteral("This is basically just a list of pointers in your zelvane rom, each one "
                                          "standing for art. They each point to more pointers, which are the list of "
                                          "pointers on the right side, that point to each frame of art."));
    });
    connect(what_2, &QPushButton::clicked, this, [this] {
        ShowHelp(prompter, QStringLiteral("This is a list of pointers that point to 1 frame of art. To edit the art, "
                                          "click the pointer that points to it, and use the art editor."));
    });
    List1->onSelect = [s](int row) { s->SelectArtEntry(row); };
    List2->onSelect = [s](int row) { s->SelectFrame(row); };
    connect(HScroll1, &QScrollBar::valueChanged, s, &EditorSession::SetZoom);
    connect(Command1, &QPushButton::clicked, s, &EditorSession::ClearPictures);
    connect(Command2, &QPushButton::clicked, s, &EditorSession::DrawWithTransparent);
    // Each menu item that repeats a button runs that button's command.
    struct Twin {
        QPushButton* button;
        QAction* item;
        void (EditorSession::*command)();
    };
    for (const Twin& twin : {Twin{save_art, file_saveart, &EditorSession::SaveArt},
                             Twin{export_bitmap, menu_export_bitmap, &EditorSession::ExportBitmap},
                             Twin{export_uart, menu_export_uart, &EditorSession::ExportUncompressedArt},
                             Twin{load_bitmap, menu_bitmap_import, &EditorSession::ImportBitmap}}) {
        connect(twin.button, &QPushButton::clicked, s, twin.command);
        connect(twin.item, &QAction::triggered, s, twin.command);
    }
    // Undo and redo are keys of the window, not menu items or controls.
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z), this), &QShortcut::activated, s, &EditorSession::Undo);
    for (const QKeySequence& keys : {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)})
        connect(new QShortcut(keys, this), &QShortcut::activated, s, &EditorSession::Redo);
    Picture1->onMouseDown = [s](QPoint) { s->PressCanvas(); };
    Picture1->onMouseMove = [s](QPoint p) { s->PaintFramePixel(CanvasPixelAt(p, s->State().zoom)); };
    Picture1->onMouseUp = [s](QPoint) { s->ReleaseCanvas(); };
    surface->onPickSlot = [s](int box) { s->PickColorSlot(box); };
    surface->onEditSlot = [s](int box) { s->EditColorSlot(box); };
}

void Form1::WireSession()
{
    const EditorState& state = session.State();
    connect(&session, &EditorSession::listsChanged, this, [this, &state] {
        List1->ShowLines(state.artLines, state.artRow);
        List2->ShowLines(state.frameLines, state.frameRow);
    });
    connect(&session, &EditorSession::picturesChanged, this, [this](QRect canvasRect, QRect previewRect) {
        Picture1->ShowChanged(canvasRect);
        Picture2->ShowChanged(previewRect);
    });
    // The palette boxes and Colbox share one column of the surface.
    connect(&session, &EditorSession::paletteBoxesChanged, surface, [this] { surface->update(584, 72, 30, 158); });
    connect(&session, &EditorSession::sectionChooserChanged, this, &Form1::ShowSectionChooser);
}

void Form1::ShowSectionChooser()
{
    const SectionChooser& chooser = session.State().sectionChooser;
    if (chooser.shown) {
        if (!sectionDialog)
            sectionDialog = new SectionDialog(this, session);
        sectionDialog->show();
        sectionDialog->raise();
        sectionDialog->activateWindow();
    } else if (sectionDialog && chooser.exists) {
        sectionDialog->hide();
    }
}

void Form1::ShowAbout()
{
    if (!frmAbout)
        frmAbout = new FrmAbout(this);
    frmAbout->show();
    frmAbout->raise();
    frmAbout->activateWindow();
}

void Form1::closeEvent(QCloseEvent* event)
{
    // The about box and the section chooser go with the main window.
    for (QWidget* window : {static_cast<QWidget*>(frmAbout), static_cast<QWidget*>(sectionDialog.data())})
        if (window)
            window->close();
    event->accept();
}
