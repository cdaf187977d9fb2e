#include "qtService/ui/widgets/ApplicationProgressIndicator.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

// Docks and taskbars of several desktops listen to this signal of the session bus; it needs no answer.
class ApplicationProgressIndicatorPrivate
{
public:
    void announce()
    {
        // What nobody sees need not be told.
        if (!shown && !announcedShown)
            return;
        const QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            return;
        const int span = maximum - minimum;
        const double progress = span > 0 ? double(value - minimum) / span : 0;
        // Every value costs every listener a redraw; steps below a percent are none.
        const int step = int(progress * 100);
        if (step == announcedStep && shown == announcedShown)
            return;
        announcedStep = step;
        announcedShown = shown;
        const QVariantMap properties{{QStringLiteral("progress"), progress},
                                     {QStringLiteral("progress-visible"), shown},
                                     {QStringLiteral("urgent"), false}};
        QDBusMessage update =
            QDBusMessage::createSignal(QStringLiteral("/com/canonical/unity/launcherentry/kerval"),
                                       QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
        update << QStringLiteral("application://kerval.desktop") << properties;
        bus.send(update);
    }

    int minimum = 0;
    int maximum = 0;
    int value = 0;
    bool shown = false;
    int announcedStep = -1;
    bool announcedShown = false;
};

ApplicationProgressIndicator::ApplicationProgressIndicator(QWidget*)
    : m_private(new ApplicationProgressIndicatorPrivate)
{
}

ApplicationProgressIndicator::~ApplicationProgressIndicator()
{
    delete m_private;
}

void ApplicationProgressIndicator::setRange(int minimum, int maximum)
{
    m_private->minimum = minimum;
    m_private->maximum = maximum;
    m_private->announce();
}

void ApplicationProgressIndicator::setValue(int value)
{
    m_private->value = value;
    m_private->announce();
}

void ApplicationProgressIndicator::setPaused(bool)
{
    // The signal has no word for it; the value stays where it is.
}

void ApplicationProgressIndicator::setVisible(bool visible)
{
    m_private->shown = visible;
    m_private->announce();
}
