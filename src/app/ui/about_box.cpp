#include "app/ui/about_box.h"

#include "view/app_icon.h"

#include <QLabel>
#include <QPushButton>

FrmAbout::FrmAbout(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Brennals' Tessik Zelvane Art Editor"));
    setFixedSize(382, 99);
    setModal(false);

    auto* picIcon = new QLabel(this);
    picIcon->setObjectName(QStringLiteral("picIcon"));
    picIcon->setGeometry(16, 16, 36, 36);
    picIcon->setPixmap(QPixmap::fromImage(AppIconImage(32)));

    auto* lblTitle = new QLabel(QStringLiteral("Brennals' Tessik Zelvane Art Editor"), this);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    lblTitle->setGeometry(70, 16, 259, 16);

    auto* lblVersion = new QLabel(QStringLiteral("Version 2.00"), this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblVersion->setGeometry(70, 40, 259, 15);

    auto* cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(152, 64, 84, 23);
    cmdOK->setDefault(true);
    // Escape rejects a QDialog, which hides it just as OK does.
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::hide);
}
