#pragma once
// Answers the modal dialogs that a command opens with exec(), from a timer, so the
// tests drive the real message boxes, input boxes and file dialogs.
#include <QAbstractButton>
#include <QPushButton>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>

struct SeenDialog {
    QString title;
    QString text; // message text, input prompt, or the file dialog's name filters joined by ';;'
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
    QString selectedFilter;
};

class DialogDriver {
public:
    DialogDriver()
    {
        timer.setInterval(5);
        QObject::connect(&timer, &QTimer::timeout, [this] { Poll(); });
        timer.start();
    }

    // Each answer handles the next modal dialog that opens, in order.
    void PressButton(QMessageBox::StandardButton button)
    {
        answers.push_back([this, button](QWidget* w) {
            auto* box = qobject_cast<QMessageBox*>(w);
            if (!box)
                return false;
            SeenDialog s;
            s.title = box->windowTitle();
            s.text = box->text();
            s.icon = box->icon();
            s.buttons = box->standardButtons();
            s.defaultButton = box->defaultButton() ? box->standardButton(box->defaultButton()) : QMessageBox::NoButton;
            seen.push_back(s);
            QAbstractButton* pressed = box->button(button);
            // Clicked after this poll returns, so a dialog it opens can be answered too.
            QTimer::singleShot(0, pressed, [pressed] { pressed->click(); });
            return true;
        });
    }

    void Type(const QString& text, bool cancel = false)
    {
        answers.push_back([this, text, cancel](QWidget* w) {
            auto* box = qobject_cast<QInputDialog*>(w);
            if (!box)
                return false;
            SeenDialog s;
            s.title = box->windowTitle();
            s.text = box->labelText();
            seen.push_back(s);
            box->setTextValue(text);
            QTimer::singleShot(0, box, [box, cancel] { cancel ? box->reject() : box->accept(); });
            return true;
        });
    }

    // An empty path cancels the dialog.
    void ChooseFile(const QString& path)
    {
        answers.push_back([this, path](QWidget* w) {
            auto* dialog = qobject_cast<QFileDialog*>(w);
            if (!dialog)
                return false;
            SeenDialog s;
            s.title = dialog->windowTitle();
            s.text = dialog->nameFilters().join(QStringLiteral(";;"));
            s.acceptMode = dialog->acceptMode();
            s.selectedFilter = dialog->selectedNameFilter();
            seen.push_back(s);
            if (!path.isEmpty())
                dialog->selectFile(path);
            // The file dialog's own accept checks the name and may ask before replacing a file.
            QTimer::singleShot(0, dialog, [dialog, path] {
                path.isEmpty() ? dialog->reject() : static_cast<QDialog*>(dialog)->accept();
            });
            return true;
        });
    }

    bool AllAnswered() const { return answers.empty(); }

    std::vector<SeenDialog> seen;
    QStringList unexpected;

private:
    void Poll()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal)
            return;
        if (answered.contains(modal))
            return; // answered and still closing, or waiting for a dialog it opened
        if (!answers.empty() && answers.front()(modal)) {
            answers.pop_front();
            answered.append(modal);
            return;
        }
        // A dialog nobody expected: note it and close it, so the test fails instead of hanging.
        auto* box = qobject_cast<QMessageBox*>(modal);
        unexpected.push_back(modal->windowTitle() + QStringLiteral(": ") + (box ? box->text() : QString()));
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
    }

    QTimer timer;
    QList<QPointer<QWidget>> answered;
    std::deque<std::function<bool(QWidget*)>> answers;
};
