#include "qtService/ui/dialogs/SplashScreenDialog.h"

#include "qtService/app/core/Version.h"

#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

SplashScreenDialog::SplashScreenDialog(QWidget* parent)
    : QDialog(parent, Qt::SplashScreen | Qt::WindowStaysOnTopHint)
{
    setObjectName(QStringLiteral("SplashScreenDialog"));
    setWindowTitle(QStringLiteral("Kerval"));
    const bool dense = devicePixelRatioF() > 1;
    QPixmap pixmap(dense ? QStringLiteral(":/icons/kerval_trans2x.png") : QStringLiteral(":/icons/kerval_trans.png"));
    pixmap.setDevicePixelRatio(dense ? 2 : 1);
    auto* logo = new QLabel(this);
    logo->setObjectName(QStringLiteral("lblLogoText"));
    logo->setPixmap(pixmap);
    logo->setAlignment(Qt::AlignCenter);
    logo->setAccessibleName(QStringLiteral("Kerval"));
    auto* version = new QLabel(tr("Version: %1").arg(krv::versionString()), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    version->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(48, 36, 48, 28);
    layout->setSpacing(18);
    layout->addWidget(logo);
    layout->addWidget(version);
}

void SplashScreenDialog::mousePressEvent(QMouseEvent*)
{
    hide();
}
