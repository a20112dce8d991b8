#pragma once
// Answers the modal dialogs that a command opens with exec(), from a timer, so the
// window test drives the real message boxes, input boxes and file dialogs. Each dialog
// answered is kept as one line: what it showed and offered.
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QVariant>

class DialogDriver {
public:
    DialogDriver()
    {
        QObject::connect(&timer, &QTimer::timeout, [this] { Poll(); });
        timer.start(5);
    }

    // The answers to the next modal dialogs, in order: the button to press in a message
    // box, the text to type in an input box, the file to choose in a file dialog.
    void Answer(const QVariant& answer) { answers << answer; }

    QStringList seen;
    QStringList unexpected;

private:
    static QString Buttons(QMessageBox::StandardButtons buttons)
    {
        QStringList names;
        for (const auto& [button, name] : {std::pair{QMessageBox::Ok, "Ok"}, {QMessageBox::Yes, "Yes"}, {QMessageBox::No, "No"}, {QMessageBox::Cancel, "Cancel"}})
            if (buttons & button)
                names << name;
        return names.join(u'|');
    }

    void Poll()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || answered.contains(modal))
            return; // none, or answered and still closing
        auto* box = qobject_cast<QMessageBox*>(modal);
        auto* input = qobject_cast<QInputDialog*>(modal);
        auto* files = qobject_cast<QFileDialog*>(modal);
        if (answers.isEmpty()) { // a dialog nobody expected fails the test instead of hanging it
            unexpected << modal->windowTitle();
            static_cast<QDialog*>(modal)->reject();
            return;
        }
        const QVariant answer = answers.takeFirst();
        answered << modal;
        if (box)
            seen << QStringLiteral("%1 %2: %3 [%4] default %5").arg(int(box->icon())).arg(box->windowTitle(), box->text(),
                        Buttons(box->standardButtons()), Buttons(box->standardButton(box->defaultButton())));
        if (input) {
            seen << QStringLiteral("text %1: %2").arg(input->windowTitle(), input->labelText());
            input->setTextValue(answer.toString());
        }
        if (files)
            files->selectFile(answer.toString());
        // After this poll, so that a dialog the answer opens is answered in turn; the file
        // dialog's own accept checks the name and may ask before replacing a file.
        QTimer::singleShot(0, modal, [modal, box, answer] {
            box ? box->button(QMessageBox::StandardButton(answer.toInt()))->click() : static_cast<QDialog*>(modal)->accept();
        });
    }

    QTimer timer;
    QList<QPointer<QWidget>> answered;
    QVariantList answers;
};
