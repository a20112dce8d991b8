#pragma once
// Every command the main window starts. Each lives beside its subsystem.
#include <QPoint>
#include <QPointF>
#include <QString>

class Form1;
class QListWidget;

// Shell: start-up, shutdown, help and the about box.
void Form_Load(Form1& form);
void Form_Terminate(Form1& form);
void what_1_Click(Form1& form);
void what_2_Click(Form1& form);
void menu_about_Click(Form1& form);
void menu_exit_Click(Form1& form);
// True when an image is open and can be written; otherwise refuses with the right message.
bool CanWriteImage(Form1& form, const QString& notLoadedText, const QString& readOnlyText);

// ROM and art catalogue.
void menu_open_Click(Form1& form);
void FillArtLists(Form1& form);
void List1_Click(Form1& form);
void List2_Click(Form1& form);
int SelectedRow(const QListWidget* list); // -1 when no line is selected
void SelectRowQuietly(QListWidget* list, int row); // without starting a selection command

// Palette editing on the window's surface.
void Form_MouseDown(Form1& form, QPointF position);
void Form_DblClick(Form1& form);

// Frame display and the pixel tools.
void RefreshView(Form1& form);
void ColorPaletteBoxes(Form1& form, int paletteNumber);
void HScroll1_Change(Form1& form);
void ClearPictures(Form1& form);
void Picture1_MouseDown(Form1& form, QPoint position);
void Picture1_MouseMove(Form1& form, QPoint position);
void Picture1_MouseUp(Form1& form, QPoint position);
void Command1_Click(Form1& form);
void Command2_Click(Form1& form);

// Saving art into the image.
void SaveArt(Form1& form);

// Exchange formats.
void ExportBitmap(Form1& form);
void ExportUncompressedArt(Form1& form);
void ImportBitmap(Form1& form);
