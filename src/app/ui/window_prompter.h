#pragma once
// The editor's answer to every question: Qt's own modal dialogs, run with exec().
#include "app/prompter.h"

#include <QStringList>

class QWidget;

Prompter WindowPrompter(QWidget* parent);

// "Name|*.ext|Other|*.*" as the file dialog's filters: "Name (*.ext)", "Other (*.*)".
QStringList NameFilters(const QString& filters);
