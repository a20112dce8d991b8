#pragma once
// A main window on a demo image in a temporary folder, opened through the real dialog.
#include "app/ui/form1.h"
#include "demo_image.h"
#include "rom_builder.h"
#include "ui_driver.h"

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

    QByteArray RomBytes() const
    {
        QFile file(romPath);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
