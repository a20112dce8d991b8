#pragma once
// Answers the modal dialogs that a command opens with exec(), from a timer, so the
// window test drives the real message boxes, input boxes and file dialogs. Each
// dialog answered is kept as one line: what it showed and offered.
#include <QPushButton>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>

class DialogDriver {
public:
    DialogDriver()
    {
        timer.setInterval(5);
        QObject::connect(&timer, &QTimer::timeout, [this] { Poll(); });
        timer.start();
    }

    // Each answer handles the next modal dialog that opens, in order.
    void Press(QMessageBox::StandardButton button)
    {
        Expect<QMessageBox>([this, button](QMessageBox* box) {
            const auto name = [](int buttons) {
                QStringList names;
                for (const auto& [button, text] : {std::pair{QMessageBox::Ok, "Ok"}, {QMessageBox::Yes, "Yes"},
                                                   {QMessageBox::No, "No"}, {QMessageBox::Cancel, "Cancel"}})
                    if (buttons & button)
                        names << text;
                return names.join(u'|');
            };
            seen << QStringLiteral("%1 %2: %3 [%4] default %5")
                        .arg(int(box->icon()))
                        .arg(box->windowTitle(), box->text(), name(int(box->standardButtons())),
                             name(box->standardButton(box->defaultButton())));
            QAbstractButton* pressed = box->button(button);
            // Clicked after this poll returns, so a dialog it opens can be answered too.
            QTimer::singleShot(0, pressed, [pressed] { pressed->click(); });
        });
    }
    void Type(const QString& text)
    {
        Expect<QInputDialog>([this, text](QInputDialog* box) {
            seen << QStringLiteral("text %1: %2").arg(box->windowTitle(), box->labelText());
            box->setTextValue(text);
            QTimer::singleShot(0, box, [box] { box->accept(); });
        });
    }
    void Choose(const QString& path)
    {
        Expect<QFileDialog>([this, path](QFileDialog* dialog) {
            seen << QStringLiteral("%1 %2: %3 (%4)")
                        .arg(dialog->acceptMode() == QFileDialog::AcceptOpen ? "open" : "save", dialog->windowTitle(),
                             dialog->nameFilters().join(";;"), dialog->selectedNameFilter());
            dialog->selectFile(path);
            QTimer::singleShot(0, dialog, [dialog] { static_cast<QDialog*>(dialog)->accept(); });
        });
    }

    QStringList seen;
    QStringList unexpected;

private:
    template <typename Dialog>
    void Expect(std::function<void(Dialog*)> answer)
    {
        answers.push_back([answer](QWidget* w) {
            auto* dialog = qobject_cast<Dialog*>(w);
            if (dialog)
                answer(dialog);
            return dialog != nullptr;
        });
    }

    void Poll()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || answered.contains(modal))
            return; // none, or answered and still closing
        if (!answers.empty() && answers.front()(modal)) {
            answers.pop_front();
            answered.append(modal);
            return;
        }
        // A dialog nobody expected: note it and close it, so the test fails instead of hanging.
        unexpected << modal->windowTitle();
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
    }

    QTimer timer;
    QList<QPointer<QWidget>> answered;
    std::deque<std::function<bool(QWidget*)>> answers;
};
