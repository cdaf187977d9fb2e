#include "tests/support/testregistry.h"

#include <QGuiApplication>
#include <QMutex>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace kerval::testing {

std::vector<TestClass>& testClasses()
{
    static std::vector<TestClass> classes;
    return classes;
}

static ApplicationFactory& applicationFactory()
{
    static ApplicationFactory factory = [](int& argc, char** argv) -> std::unique_ptr<QObject> {
        return std::make_unique<QGuiApplication>(argc, argv);
    };
    return factory;
}

void setApplicationFactory(ApplicationFactory factory)
{
    applicationFactory() = std::move(factory);
}

namespace {

QMutex warningsMutex;
QStringList allowedWarnings;
QStringList frameworkWarnings;
QtMessageHandler previousHandler = nullptr;

// Complaints of the framework that always mean a fault of ours: broken connections, painters, timers and threads.
bool isFrameworkComplaint(const QString& text)
{
    static const char* const marks[] = {
        "QObject::",   "QPainter",        "QTimer",        "QThread",           "QSqlDatabasePrivate",
        "QSqlQuery::", "QSocketNotifier", "QMetaObject::", "QCoreApplication::"};
    return std::any_of(std::begin(marks), std::end(marks),
                       [&](const char* mark) { return text.startsWith(QLatin1String(mark)); });
}

void collectWarnings(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type == QtWarningMsg && isFrameworkComplaint(text)) {
        QMutexLocker lock(&warningsMutex);
        const bool allowed = std::any_of(allowedWarnings.cbegin(), allowedWarnings.cend(),
                                         [&](const QString& part) { return text.contains(part); });
        if (!allowed)
            frameworkWarnings.append(text);
    }
    if (previousHandler)
        previousHandler(type, context, text);
}

} // namespace

void allowFrameworkWarning(const QString& part)
{
    QMutexLocker lock(&warningsMutex);
    allowedWarnings.append(part);
}

} // namespace kerval::testing

#ifdef __SANITIZE_ADDRESS__
// The platform plugin that the tests run on never frees its screen, nor the script engine what it keeps for a thread,
// nor Qt Quick the pictures of a window that goes with the program.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libQt5Script\nleak:libQt5Quick\n";
}
#endif

// Usage: test_x [TestClass ...] [QtTest options]. The user's own folders are never touched: the program gets a
// temporary home before the application object exists.
int main(int argc, char** argv)
{
    using namespace kerval::testing;
    // As the program itself does where there is no locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QTemporaryDir home;
    const QByteArray root = QFile::encodeName(home.path());
    qputenv("HOME", root);
    qputenv("XDG_DATA_HOME", root + "/data");
    qputenv("XDG_CONFIG_HOME", root + "/config");
    qputenv("XDG_CACHE_HOME", root + "/cache");
    qputenv("XDG_RUNTIME_DIR", root + "/run");
    for (const char* folder : {"data", "config", "cache", "run"})
        QDir(home.path()).mkpath(QLatin1String(folder));
    QFile::setPermissions(home.filePath(QStringLiteral("run")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    const std::unique_ptr<QObject> application = applicationFactory()(argc, argv);
    auto classes = testClasses();
    std::sort(classes.begin(), classes.end(),
              [](const TestClass& a, const TestClass& b) { return std::strcmp(a.name, b.name) < 0; });

    std::vector<char*> passed{argv[0]};
    QStringList wanted;
    for (int i = 1; i < argc; ++i) {
        const bool isClass = std::any_of(classes.cbegin(), classes.cend(),
                                         [&](const TestClass& c) { return std::strcmp(c.name, argv[i]) == 0; });
        if (isClass)
            wanted.append(QLatin1String(argv[i]));
        else
            passed.push_back(argv[i]);
    }

    int failures = 0;
    for (const TestClass& test : classes) {
        if (!wanted.isEmpty() && !wanted.contains(QLatin1String(test.name)))
            continue;
        std::unique_ptr<QObject> object = test.create();
        // QTest installs its own handler for each run and chains to the one it finds.
        previousHandler = nullptr;
        qInstallMessageHandler(collectWarnings);
        failures += QTest::qExec(object.get(), int(passed.size()), passed.data());
        qInstallMessageHandler(nullptr);
        object.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    for (const QString& warning : frameworkWarnings)
        std::fprintf(stderr, "framework warning: %s\n", qPrintable(warning));
    return failures || !frameworkWarnings.isEmpty() ? 1 : 0;
}
