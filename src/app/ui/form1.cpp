#include "app/ui/form1.h"

#include "app/ui/commands.h"
#include "app/ui/form_surface.h"
#include "app/ui/about_box.h"
#include "app/ui/wrap_button.h"
#include "exchange/ui/section_dialog.h"
#include "view/ui/picture_box.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
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

Form1::Form1()
{
    setObjectName(QStringLiteral("Form1"));
    setWindowTitle(QStringLiteral("Brennals' Zelvane Art Editing Tool"));
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    BuildControls();
    BuildMenus();
    setFixedSize(kClientWidth, kClientHeight + menuBar()->sizeHint().height());
    WireEvents();
    Form_Load(*this);
}

Form1::~Form1() { Form_Terminate(*this); }

void Form1::BuildControls()
{
    surface = new FormSurface(this);
    surface->setFixedSize(kClientWidth, kClientHeight);
    setCentralWidget(surface);
    // Group boxes first, so the controls they frame lie above them.
    Frame1 = Place<QGroupBox>(surface, "Frame1", {8, 8, 289, 265}, QStringLiteral("Pointer List"));
    Frame2 = Place<QGroupBox>(surface, "Frame2", {640, 8, 81, 113}, QStringLiteral("Art Preview"));
    Frame3 = Place<QGroupBox>(surface, "Frame3", {632, 136, 97, 137}, QStringLiteral("Misc"));
    List1 = Place<QListWidget>(surface, "List1", {16, 24, 129, 212});
    List2 = Place<QListWidget>(surface, "List2", {160, 24, 129, 212});
    what_1 = Place<QPushButton>(surface, "what_1", {16, 248, 129, 17}, QStringLiteral("What's This?"));
    what_2 = Place<QPushButton>(surface, "what_2", {160, 248, 129, 17}, QStringLiteral("What's This?"));
    Label2 = Place<QLabel>(surface, "Label2", {336, 8, 49, 17}, QStringLiteral("Art Editor"));
    Label2->setAutoFillBackground(true);
    Label2->setAlignment(Qt::AlignCenter);
    Picture1 = new PictureBox(surface, QStringLiteral("Picture1"), {328, 24, 249, 209});
    save_art = Place<QPushButton>(surface, "save_art", {328, 240, 153, 25}, QStringLiteral("Save changes to current art"));
    Command2 = Place<QPushButton>(surface, "Command2", {488, 240, 129, 25}, QStringLiteral("Draw with transparent"));
    HScroll1 = Place<QScrollBar>(surface, "HScroll1", {584, 24, 29, 17}, Qt::Horizontal);
    HScroll1->setRange(1, 8);
    HScroll1->setSingleStep(1);
    HScroll1->setPageStep(1);
    HScroll1->setFocusPolicy(Qt::StrongFocus);
    Command1 = Place<QPushButton>(surface, "Command1", {584, 48, 30, 17}, QStringLiteral("Clr"));
    Picture2 = new PictureBox(surface, QStringLiteral("Picture2"), {648, 24, 65, 89});
    load_bitmap = Place<QPushButton>(surface, "load_bitmap", {640, 152, 81, 25}, QStringLiteral("Import bitmap"));
    export_bitmap = Place<QPushButton>(surface, "export_bitmap", {640, 184, 81, 25}, QStringLiteral("Export bitmap"));
    export_uart = Place<WrapButton>(surface, "export_uart", {640, 216, 81, 49}, QStringLiteral("Export Uncompressed art"));
    for (QListWidget* list : {List1, List2})
        list->setSelectionMode(QAbstractItemView::SingleSelection);

    const QList<QWidget*> tabOrder = {List1,     List2,       what_1,   what_2,   Picture1,      Picture2, HScroll1,
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
    Form1& form = *this;
    auto on = [&form](auto* sender, auto signal, void (*command)(Form1&)) {
        QObject::connect(sender, signal, &form, [&form, command] { command(form); });
    };
    on(menu_open, &QAction::triggered, menu_open_Click);
    on(menu_exit, &QAction::triggered, menu_exit_Click);
    on(menu_about, &QAction::triggered, menu_about_Click);
    on(what_1, &QPushButton::clicked, what_1_Click);
    on(what_2, &QPushButton::clicked, what_2_Click);
    on(List1, &QListWidget::itemSelectionChanged, List1_Click);
    on(List2, &QListWidget::itemSelectionChanged, List2_Click);
    on(HScroll1, &QScrollBar::valueChanged, HScroll1_Change);
    on(Command1, &QPushButton::clicked, Command1_Click);
    on(Command2, &QPushButton::clicked, Command2_Click);
    // Each menu item that repeats a button runs that button's command.
    struct Twin {
        QPushButton* button;
        QAction* item;
        void (*command)(Form1&);
    };
    for (const Twin& twin : {Twin{save_art, file_saveart, SaveArt}, Twin{export_bitmap, menu_export_bitmap, ExportBitmap},
                             Twin{export_uart, menu_export_uart, ExportUncompressedArt},
                             Twin{load_bitmap, menu_bitmap_import, ImportBitmap}}) {
        on(twin.button, &QPushButton::clicked, twin.command);
        on(twin.item, &QAction::triggered, twin.command);
    }
    Picture1->onMouseDown = [&form](QPoint p) { Picture1_MouseDown(form, p); };
    Picture1->onMouseMove = [&form](QPoint p) { Picture1_MouseMove(form, p); };
    Picture1->onMouseUp = [&form](QPoint p) { Picture1_MouseUp(form, p); };
    surface->onMouseDown = [&form](QPointF p) { Form_MouseDown(form, p); };
    surface->onDoubleClick = [&form] { Form_DblClick(form); };
}

void Form1::closeEvent(QCloseEvent* event)
{
    // The about box and the section chooser go with the main window.
    for (QWidget* window : {static_cast<QWidget*>(frmAbout), static_cast<QWidget*>(sectionDialog.data())})
        if (window)
            window->close();
    Form_Terminate(*this);
    event->accept();
}
