#include "qtService/ui/messages/KrvMessage.h"

#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/core/Version.h"
#include "qtService/ui/window/Palette.h"

#include <QCheckBox>
#include <QSettings>

namespace {

QString titleOrDefault(const QString& title)
{
    return title.isEmpty() ? QStringLiteral("Kerval ") + krv::versionString() : title;
}

QString keyOf(int messageId)
{
    return QStringLiteral("msg_%1").arg(messageId);
}

QString settingsFile()
{
    return krv::userSettingsFolder() + QStringLiteral("messages.ini");
}

} // namespace

KrvMessage::KrvMessage(QObject* parent)
    : QObject(parent)
{
}

QMessageBox* KrvMessage::createBox(QMessageBox::Icon icon, const QString& text, const QString& title)
{
    auto* box = new QMessageBox(icon, titleOrDefault(title), QString(), QMessageBox::Ok, nullptr,
                                Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    box->setTextFormat(Qt::RichText);
    box->setText(QString(text).replace(QLatin1Char('\n'), QLatin1String("<br />")));
    box->setModal(false);
    m_openBoxes.insert(box, {});
    connect(box, &QDialog::finished, this, &KrvMessage::onMsgDlgFinished);
    return box;
}

void KrvMessage::showBox(QMessageBox* box, bool modal)
{
    if (modal) {
        box->exec();
        return;
    }
    box->show();
    box->raise();
}

void KrvMessage::info(const QString& text, const QString& title, const QString& detail, bool modal)
{
    QMessageBox* box = createBox(QMessageBox::Information, text, title);
    if (!detail.isEmpty())
        box->setDetailedText(detail);
    showBox(box, modal);
}

void KrvMessage::warning(const QString& text, const QString& title, bool modal)
{
    showBox(createBox(QMessageBox::Warning, text, title), modal);
}

QMessageBox::StandardButton KrvMessage::question(const QString& text, const QString& title,
                                                 QMessageBox::StandardButtons buttons)
{
    QMessageBox box(QMessageBox::Question, titleOrDefault(title), text, buttons);
    box.setTextFormat(Qt::RichText);
    return QMessageBox::StandardButton(box.exec());
}

void KrvMessage::showPredefined(int messageId, bool withCheckBox, bool force, const QString& title)
{
    if (!force && !isShown(messageId))
        return;
    // One box says it; a second of the same would only lie over the first.
    for (auto open = m_openBoxes.cbegin(); open != m_openBoxes.cend(); ++open) {
        if (open->messageId == messageId && messageId != UnknownMessage) {
            qobject_cast<QMessageBox*>(open.key())->raise();
            return;
        }
    }
    QMessageBox* box = createBox(QMessageBox::Information, predefinedText(messageId), title);
    OpenBox& open = m_openBoxes[box];
    open.messageId = messageId;
    if (withCheckBox) {
        // Set as the box's own check box it sits among the buttons and does not close the box.
        open.dontShowAnymore =
            new QCheckBox(tr("don't show anymore", "CheckBox text - don't show this message anymore"));
        box->setCheckBox(open.dontShowAnymore);
        ui::outlineChecks(open.dontShowAnymore);
    }
    showBox(box, false);
}

void KrvMessage::onMsgDlgFinished(int)
{
    QObject* box = sender();
    const OpenBox open = m_openBoxes.take(box);
    if (open.dontShowAnymore && open.dontShowAnymore->isChecked())
        setShown(open.messageId, false);
    box->deleteLater();
}

QList<int> KrvMessage::predefinedMessages()
{
    return {UnknownMessage, FontsAlreadyProcessed, FontsProcessed};
}

QString KrvMessage::predefinedText(int messageId)
{
    switch (messageId) {
    case FontsProcessed:
        return tr("Font(s) are now processed.", "Message shown when all fonts are processed");
    case FontsAlreadyProcessed:
        return tr("Font(s) are already processed.", "Message shown when fonts are already processed");
    default:
        return tr("Unknown message", "Message shown when some weird things occures");
    }
}

bool KrvMessage::isShown(int messageId)
{
    return QSettings(settingsFile(), QSettings::IniFormat).value(keyOf(messageId), true).toBool();
}

void KrvMessage::setShown(int messageId, bool shown)
{
    QSettings(settingsFile(), QSettings::IniFormat).setValue(keyOf(messageId), shown);
}
