#include "updates/UpdateDocument.h"

#include <QScriptEngine>
#include <QTimer>

namespace updates {

namespace {

constexpr int patienceMs = 1000;
// How often a running script lets the timer have its turn.
constexpr int eventsIntervalMs = 20;

} // namespace

QVariantMap evaluateDocument(const QByteArray& body)
{
    QScriptEngine engine;
    engine.setProcessEventsInterval(eventsIntervalMs);
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &engine, [&engine] { engine.abortEvaluation(); });
    limit.start(patienceMs);
    const QScriptValue value = engine.evaluate(QLatin1Char('(') + QString::fromUtf8(body) + QLatin1Char(')'));
    if (engine.hasUncaughtException() || !value.isObject())
        return QVariantMap();
    return value.toVariant().toMap();
}

} // namespace updates
