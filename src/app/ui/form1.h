#pragma once
// The main window: it builds the controls and menus, forwards every event to the
// editor session and redraws from what the session reports.
#include "app/editor_session.h"

#include <QApplication>
#include <QMainWindow>
#include <QPointer>

class FormSurface;
class ListBox;
class PictureBox;
class QAction;
class QGroupBox;
class QLabel;
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

    // Opens fileName as "Open Zelvane Rom" would, once the current event is over.
    void OpenLater(const QString& fileName);

    Prompter prompter;
    EditorSession session;

    FormSurface* surface = nullptr;
    QGroupBox* Frame1 = nullptr;
    ListBox* List1 = nullptr; // art entries
    ListBox* List2 = nullptr; // frames of the selected entry
    QPushButton* what_1 = nullptr;
    QPushButton* what_2 = nullptr;
    QLabel* Label2 = nullptr;
    PictureBox* Picture1 = nullptr; // the zoomed canvas
    QPushButton* save_art = nullptr;
    QPushButton* Command2 = nullptr; // "Draw with transparent"
    QScrollBar* HScroll1 = nullptr;  // zoom
    QPushButton* Command1 = nullptr; // "Clr"
    QGroupBox* Frame2 = nullptr;
    PictureBox* Picture2 = nullptr; // the 1:1 preview
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

    FrmAbout* frmAbout = nullptr;          // created at its first showing
    QPointer<SectionDialog> sectionDialog; // built at an import; its close box ends it

    static constexpr int kClientWidth = 741;
    static constexpr int kClientHeight = 284;

protected:
    void closeEvent(QCloseEvent* event) override;
    // A file dropped on the window opens as one chosen in the open dialog.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildControls();
    void BuildMenus();
    void WireEvents();
    void WireSession();
    void ShowSectionChooser();
    void ShowAbout();
};
