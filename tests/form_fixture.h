#pragma once
// A main window on a demo image in a temporary folder, opened through the real dialog.
#include "app/ui/form1.h"
#include "demo_image.h"
#include "rom_builder.h"
#include "ui_driver.h"
#include "view/ui/picture_box.h"

#include <QAction>
#include <QFile>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

struct FormFixture {
    QTemporaryDir dir;
    QString romPath = dir.filePath(QStringLiteral("demo.bin"));
    DialogDriver driver;
    std::unique_ptr<Form1> form;

    FormFixture()
    {
        WriteFileBytes(romPath, BuildDemoImage());
        form = std::make_unique<Form1>();
        form->show();
        (void)QTest::qWaitForWindowExposed(form.get());
    }

    void Open(const QString& path)
    {
        driver.ChooseFile(path);
        form->menu_open->trigger();
    }
    void Open() { Open(romPath); }

    // Opens the image and shows one of its frames, as a user would to start editing.
    Form1& ShowEntry(int entry, int frame = -1)
    {
        Open();
        ClickRow(form->List1, entry);
        if (frame >= 0)
            ClickRow(form->List2, frame);
        return *form;
    }

    QByteArray RomBytes() const
    {
        QFile file(romPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Press, move and release at one point of the canvas's drawing area.
    static void Stroke(Form1& form, QPoint point)
    {
        const QPoint at = point + QPoint(PictureBox::kBorder, PictureBox::kBorder);
        QTest::mousePress(form.Picture1, Qt::LeftButton, {}, at);
        QTest::mouseMove(form.Picture1, at);
        QTest::mouseRelease(form.Picture1, Qt::LeftButton, {}, at);
    }

    // Clicks a list line as a user would.
    static void ClickRow(QListWidget* list, int row)
    {
        list->scrollToItem(list->item(row));
        const QRect line = list->visualItemRect(list->item(row));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, line.center());
    }
};

// main() of a window test: the editor's style, so sizes and captions are as shipped.
#define ZELVANE_WINDOW_TEST_MAIN(TestClass)                                                                            \
    int main(int argc, char** argv)                                                                                    \
    {                                                                                                                  \
        QApplication app(argc, argv);                                                                                  \
        StyleApplication(app);                                                                                         \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
