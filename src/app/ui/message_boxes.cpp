#include "app/ui/message_boxes.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

const QString kRefusalTitle = QStringLiteral("ZOMG ERROR!!!1");
const QString kEditorTitle = QStringLiteral("Brennals' Zelvane Art Editor");

namespace {
QMessageBox::StandardButton RunBox(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
                                   QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    QMessageBox box(icon, title, text, buttons, parent);
    box.setDefaultButton(defaultButton);
    return QMessageBox::StandardButton(box.exec());
}

// Remembers the folder of the last file chosen, as one shared dialog would.
QString& LastFolder()
{
    static QString folder;
    return folder;
}
}

void ShowRefusal(QWidget* parent, const QString& text)
{
    RunBox(parent, QMessageBox::Critical, kRefusalTitle, text, QMessageBox::Ok, QMessageBox::Ok);
}

void ShowHelp(QWidget* parent, const QString& text)
{
    RunBox(parent, QMessageBox::Information, QStringLiteral("What is this?"), text, QMessageBox::Ok, QMessageBox::Ok);
}

bool AskYesNo(QWidget* parent, const QString& text)
{
    return RunBox(parent, QMessageBox::Question, QStringLiteral("Question"), text, QMessageBox::Yes | QMessageBox::No,
                  QMessageBox::Yes)
           == QMessageBox::Yes;
}

Answer AskYesNoCancel(QWidget* parent, const QString& text)
{
    switch (RunBox(parent, QMessageBox::Question, QStringLiteral("Question"), text,
                   QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes)) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    default: return Answer::Cancel;
    }
}

QString AskText(QWidget* parent, const QString& prompt, const QString& title)
{
    QInputDialog box(parent);
    box.setWindowTitle(title);
    box.setLabelText(prompt);
    box.setTextValue(QString());
    return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

QStringList NameFilters(const QString& filters)
{
    const QStringList parts = filters.split(u'|');
    QStringList result;
    for (int i = 0; i + 1 < parts.size(); i += 2)
        result << QStringLiteral("%1 (%2)").arg(parts[i], parts[i + 1]);
    return result;
}

QString AskFileName(QWidget* parent, FileQuestion kind, const QString& title, const QString& filters)
{
    QFileDialog dialog(parent, title, LastFolder());
    // Qt's own dialog behaves the same on every desktop and can be driven by tests.
    dialog.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::HideNameFilterDetails);
    dialog.setAcceptMode(kind == FileQuestion::Open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(kind == FileQuestion::Open ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    const QStringList names = NameFilters(filters);
    dialog.setNameFilters(names);
    if (!names.isEmpty())
        dialog.selectNameFilter(names.first());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    const QString chosen = dialog.selectedFiles().first();
    LastFolder() = QFileInfo(chosen).absolutePath();
    return chosen;
}
