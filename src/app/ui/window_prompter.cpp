#include "app/ui/window_prompter.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>

namespace {
QMessageBox::Icon BoxIcon(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::Information: return QMessageBox::Information;
    case PromptIcon::Question: return QMessageBox::Question;
    case PromptIcon::Critical: return QMessageBox::Critical;
    case PromptIcon::None: break;
    }
    return QMessageBox::NoIcon;
}

// Messages have OK; questions Yes and No (and Cancel), Yes the default.
PromptAnswer RunMessageBox(QWidget* parent, const Prompt& prompt)
{
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton defaultButton = QMessageBox::Ok;
    if (prompt.kind != PromptKind::Message) {
        buttons = QMessageBox::Yes | QMessageBox::No;
        if (prompt.kind == PromptKind::YesNoCancel)
            buttons |= QMessageBox::Cancel;
        defaultButton = QMessageBox::Yes;
    }
    QMessageBox box(BoxIcon(prompt.icon), prompt.title, prompt.text, buttons, parent);
    box.setDefaultButton(defaultButton);
    switch (box.exec()) {
    case QMessageBox::Ok: return {Reply::Ok, {}};
    case QMessageBox::Yes: return {Reply::Yes, {}};
    case QMessageBox::No: return {Reply::No, {}};
    default: return {Reply::Cancel, {}};
    }
}

PromptAnswer RunInputBox(QWidget* parent, const Prompt& prompt)
{
    QInputDialog box(parent);
    box.setWindowTitle(prompt.title);
    box.setLabelText(prompt.text);
    box.setTextValue(QString());
    if (box.exec() != QDialog::Accepted)
        return {Reply::Cancel, {}};
    return {Reply::Ok, box.textValue()};
}

// Remembers the folder of the last file chosen, as one shared dialog would.
QString& LastFolder()
{
    static QString folder;
    return folder;
}

PromptAnswer RunFileDialog(QWidget* parent, const Prompt& prompt)
{
    const bool opening = prompt.kind == PromptKind::OpenFile;
    QFileDialog dialog(parent, prompt.title, LastFolder());
    // Qt's own dialog behaves the same on every desktop and can be driven by tests.
    dialog.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::HideNameFilterDetails);
    dialog.setAcceptMode(opening ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(opening ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    const QStringList names = NameFilters(prompt.filters);
    dialog.setNameFilters(names);
    if (!names.isEmpty())
        dialog.selectNameFilter(names.first());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {Reply::Cancel, {}};
    const QString chosen = dialog.selectedFiles().first();
    LastFolder() = QFileInfo(chosen).absolutePath();
    return {Reply::Ok, chosen};
}
}

QStringList NameFilters(const QString& filters)
{
    const QStringList parts = filters.split(u'|');
    QStringList result;
    for (int i = 0; i + 1 < parts.size(); i += 2)
        result << QStringLiteral("%1 (%2)").arg(parts[i], parts[i + 1]);
    return result;
}

Prompter WindowPrompter(QWidget* parent)
{
    return [window = QPointer<QWidget>(parent)](const Prompt& prompt) {
        switch (prompt.kind) {
        case PromptKind::Text: return RunInputBox(window, prompt);
        case PromptKind::OpenFile:
        case PromptKind::SaveFile: return RunFileDialog(window, prompt);
        default: return RunMessageBox(window, prompt);
        }
    };
}
