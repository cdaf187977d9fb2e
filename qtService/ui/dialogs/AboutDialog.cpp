#include "qtService/ui/dialogs/AboutDialog.h"

#include "qtService/app/core/WebPaths.h"
#include "qtService/ui/messages/OpenOutside.h"

#include <QDate>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int iconEdge = 64;

} // namespace

AboutDialog::AboutDialog(const QString& title, const QString& version, const QDate& buildDate, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("AboutDialog"));
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    auto* icon = new QLabel(this);
    icon->setObjectName(QStringLiteral("lblIcon"));
    QPixmap pixmap = QPixmap(QStringLiteral(":/icon1.png"))
                         .scaledToWidth(int(iconEdge * devicePixelRatioF()), Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    icon->setPixmap(pixmap);
    auto* description = new QLabel(this);
    description->setObjectName(QStringLiteral("lblDescription"));
    description->setTextFormat(Qt::RichText);
    description->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    const QString site = QUrl(krv::web::loginPath()).adjusted(QUrl::RemovePath).toString();
    description->setText(
        QStringLiteral("<p style=\"font-weight: bold; font-size: 13px;\">%1</p><p>%2<br/>%3</p>"
                       "<p><a href=\"%4\">%4</a></p>")
            .arg(tr("Kerval Font Manager"), tr("Version: %1").arg(version),
                 tr("Date: %2").replace(QLatin1String("%2"), QLocale().toString(buildDate, QLocale::LongFormat)),
                 site));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->setObjectName(QStringLiteral("buttonBox"));
    auto* row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    row->setSpacing(18);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(description, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addLayout(row);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(description, &QLabel::linkActivated, this, &AboutDialog::openUrl);
}

void AboutDialog::openUrl(QString url)
{
    ui::openAddress(QUrl(url));
}
