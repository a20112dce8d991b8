#pragma once
// The main window: its controls, its menus and the editor state it owns. The
// commands that the controls start live beside their subsystems (see commands.h).
#include "app/editor_state.h"

#include <QApplication>
#include <QMainWindow>
#include <QPointer>

class FormSurface;
class PictureBox;
class QAction;
class QGroupBox;
class QLabel;
class QListWidget;
class QMenu;
class QPushButton;
class QScrollBar;
class FrmAbout;
class SectionDialog;

// Fusion with the face colour of the pictures and a font small enough for every caption.
void StyleApplication(QApplication& app);

class Form1 : public QMainWindow {
public:
    Form1();
    ~Form1() override;

    EditorState state;

    FormSurface* surface = nullptr;
    QGroupBox* Frame1 = nullptr;
    QListWidget* List1 = nullptr;
    QListWidget* List2 = nullptr;
    QPushButton* what_1 = nullptr;
    QPushButton* what_2 = nullptr;
    QLabel* Label2 = nullptr;
    PictureBox* Picture1 = nullptr;
    QPushButton* save_art = nullptr;
    QPushButton* Command2 = nullptr;
    QScrollBar* HScroll1 = nullptr;
    QPushButton* Command1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    PictureBox* Picture2 = nullptr;
    QGroupBox* Frame3 = nullptr;
    QPushButton* load_bitmap = nullptr;
    QPushButton* export_bitmap = nullptr;
    QPushButton* export_uart = nullptr;

    QMenu* menu_file = nullptr;
    QAction* menu_open = nullptr;
    QAction* menu_exit = nullptr;
    QMenu* menu_art = nullptr;
    QAction* file_saveart = nullptr;
    QAction* menu_export_bitmap = nullptr;
    QAction* menu_export_uart = nullptr;
    QAction* menu_bitmap_import = nullptr;
    QMenu* menu_help = nullptr;
    QAction* menu_about = nullptr;

    FrmAbout* frmAbout = nullptr;         // created at its first showing
    QPointer<SectionDialog> sectionDialog; // built at an import; its close box ends it

    static constexpr int kClientWidth = 741;
    static constexpr int kClientHeight = 284;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildControls();
    void BuildMenus();
    void WireEvents();
};
