#pragma once
// The editor's modal questions, each run with exec() so it blocks like a real dialog.
#include <QString>
#include <QStringList>

class QWidget;

enum class Answer { Yes, No, Cancel };
enum class FileQuestion { Open, Save };

extern const QString kRefusalTitle;
extern const QString kEditorTitle;

void ShowRefusal(QWidget* parent, const QString& text);
void ShowHelp(QWidget* parent, const QString& text);
bool AskYesNo(QWidget* parent, const QString& text);
Answer AskYesNoCancel(QWidget* parent, const QString& text);
// The typed text, empty when cancelled.
QString AskText(QWidget* parent, const QString& prompt, const QString& title);

// filters pairs names and patterns as "Name|*.ext|Other|*.*"; the first is preselected.
// Gives the chosen file name, empty when cancelled.
QString AskFileName(QWidget* parent, FileQuestion kind, const QString& title, const QString& filters);
QStringList NameFilters(const QString& filters);
