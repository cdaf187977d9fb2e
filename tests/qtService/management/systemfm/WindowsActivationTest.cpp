#include "qtService/management/systemfm/FontManagerStrategyWindows.h"
#include "tests/support/testregistry.h"

#include <QMap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kerval::systemfm;

namespace {

// What the stand-in keeps outlives the strategies, as the system does.
struct StandIn
{
    QMap<QString, QMap<QString, QString>> registry{{QStringLiteral("user"), {}}, {QStringLiteral("machine"), {}}};
    QStringList loaded;
    int broadcasts = 0;
    bool registryWritable = true;
    bool loads = true;
    WindowsFontOperations::Logon logon{1000, 7, 9};
    std::function<void()> listener;
};

class StandInOperations : public WindowsFontOperations
{
public:
    explicit StandInOperations(StandIn& system)
        : m_system(system)
    {
    }
    QString fontsFolder() override { return QStringLiteral("C:/Windows/Fonts"); }
    bool addFontResource(const QString& argument) override
    {
        if (m_system.loads)
            m_system.loaded.append(argument);
        return m_system.loads;
    }
    bool removeFontResource(const QString& argument) override { return m_system.loaded.removeAll(argument) > 0; }
    void broadcastFontChange() override
    {
        ++m_system.broadcasts;
        if (m_system.listener)
            m_system.listener();
    }
    void setFontChangeListener(const std::function<void()>& listener) override { m_system.listener = listener; }
    QStringList registryLocations() override { return {QStringLiteral("user"), QStringLiteral("machine")}; }
    QList<QPair<QString, QString>> registryValues(const QString& location) override
    {
        QList<QPair<QString, QString>> values;
        const auto& stored = m_system.registry[location];
        for (auto value = stored.cbegin(); value != stored.cend(); ++value)
            values.append({value.key(), *value});
        return values;
    }
    QString registryValue(const QString& location, const QString& name) override
    {
        return m_system.registry[location].value(name);
    }
    void setRegistryValue(const QString& location, const QString& name, const QString& data) override
    {
        if (m_system.registryWritable)
            m_system.registry[location].insert(name, data);
    }
    void removeRegistryValue(const QString& location, const QString& name) override
    {
        if (m_system.registryWritable)
            m_system.registry[location].remove(name);
    }
    bool currentLogon(Logon* logon) override
    {
        *logon = m_system.logon;
        return true;
    }
    QPair<int, int> version() override { return {10, 0}; }

private:
    StandIn& m_system;
};

const QString plain = QStringLiteral("C:/Fonts/Plain.TTF");
const QString plainPath = QStringLiteral("c:\\fonts\\plain.ttf");

} // namespace

class WindowsActivationTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_system = StandIn();
        m_folder.reset(new QTemporaryDir);
    }
    void registersUnderTheNameOfItsKind_data();
    void registersUnderTheNameOfItsKind();
    void aTemporaryFontIsNotRegistered();
    void refusalsOfTheSystemAreResults();
    void temporaryFontsBelongToOneLogon();
    void changesByOthersAreReadOnceTheySettle();

private:
    std::unique_ptr<FontManagerStrategyWindows> make()
    {
        return std::make_unique<FontManagerStrategyWindows>(std::make_unique<StandInOperations>(m_system),
                                                            m_folder->path());
    }

    StandIn m_system;
    QScopedPointer<QTemporaryDir> m_folder;
};

void WindowsActivationTest::registersUnderTheNameOfItsKind_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("valueName");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("resource");
    QTest::newRow("TrueType") << plain << "A (TrueType)" << plainPath << plainPath;
    QTest::newRow("in the fonts folder") << "C:\\WINDOWS\\Fonts\\In.otf"
                                         << "A (OpenType)"
                                         << "in.otf"
                                         << "c:\\windows\\fonts\\in.otf";
    QTest::newRow("collection") << "C:/x/Two.ttc"
                                << "A & B (TrueType)"
                                << "c:\\x\\two.ttc"
                                << "c:\\x\\two.ttc";
    QTest::newRow("Type 1") << "C:/x/Old.PFM"
                            << "A"
                            << "c:\\x\\old.pfm"
                            << "c:\\x\\old.pfm|c:\\x\\old.pfb";
}

void WindowsActivationTest::registersUnderTheNameOfItsKind()
{
    QFETCH(QString, file);
    QFETCH(QString, valueName);
    QFETCH(QString, data);
    QFETCH(QString, resource);
    const auto strategy = make();
    const QStringList names{QStringLiteral("A"), QStringLiteral("B")};
    const auto all = [](int result) {
        return QHash<QString, int>{{QStringLiteral("A"), result}, {QStringLiteral("B"), result}};
    };
    QCOMPARE(strategy->activatePermanently(file, names), all(0));
    QCOMPARE(m_system.registry[QStringLiteral("user")], (QMap<QString, QString>{{valueName, data}}));
    QCOMPARE(m_system.loaded, QStringList{resource});
    QCOMPARE(make()->activeFonts().value(0).activityType, PermanentlyActive);
    QCOMPARE(strategy->deactivate(file, names), all(0));
    QVERIFY(m_system.registry[QStringLiteral("user")].isEmpty());
    QVERIFY(m_system.loaded.isEmpty());
    QVERIFY(strategy->activeFonts().isEmpty());
}

void WindowsActivationTest::aTemporaryFontIsNotRegistered()
{
    const auto strategy = make();
    strategy->activatePermanently(plain, {QStringLiteral("A")});
    QCOMPARE(strategy->activateTemporarily(plain, {QStringLiteral("A")}).value(QStringLiteral("A"), -1), 0);
    QVERIFY(m_system.registry[QStringLiteral("user")].isEmpty());
    QCOMPARE(strategy->activeFonts().size(), 1);
    QCOMPARE(strategy->activeFonts().constFirst().activityType, TemporarilyActive);
    QCOMPARE(strategy->activeFonts().constFirst().fileName, plainPath);
    strategy->activatePermanently(plain, {QStringLiteral("A")});
    QCOMPARE(strategy->activeFonts().size(), 1);
    QCOMPARE(strategy->activeFonts().constFirst().activityType, PermanentlyActive);
}

void WindowsActivationTest::refusalsOfTheSystemAreResults()
{
    const auto strategy = make();
    const QString name = QStringLiteral("A");
    m_system.registryWritable = false;
    QCOMPARE(strategy->activatePermanently(plain, {name}).value(name), 1);
    QVERIFY(strategy->activeFonts().isEmpty());
    m_system.registryWritable = true;
    strategy->activatePermanently(plain, {name});
    m_system.registryWritable = false;
    QCOMPARE(strategy->activateTemporarily(plain, {name}).value(name), 1);
    QCOMPARE(strategy->deactivate(plain, {name}).value(name), 1);
    QCOMPARE(strategy->activeFonts().value(0).activityType, PermanentlyActive);
    m_system.registryWritable = true;
    m_system.loads = false;
    const QString other = QStringLiteral("C:/x/other.ttf");
    QCOMPARE(strategy->activatePermanently(other, {name}).value(name), 2);
    QCOMPARE(strategy->activateTemporarily(other, {name}).value(name), 2);
    QCOMPARE(strategy->deactivate(other, {name}).value(name), 2);
    QCOMPARE(strategy->activeFonts().size(), 1);
}

void WindowsActivationTest::temporaryFontsBelongToOneLogon()
{
    {
        const auto strategy = make();
        strategy->activateTemporarily(plain, {QStringLiteral("A")});
        strategy->notifyFontChange();
        QCOMPARE(m_system.broadcasts, 1);
    }
    const QSettings stored(m_folder->filePath(QStringLiteral("tempactive.ini")), QSettings::IniFormat);
    const QByteArray id = stored.value(QStringLiteral("UniqueSessionId")).toByteArray();
    QCOMPARE(id.size(), 16);
    QCOMPARE(*reinterpret_cast<const qint64*>(id.constData()), qint64(1000));
    QCOMPARE(make()->activeFonts().size(), 1);
    m_system.logon.time = 2000;
    QVERIFY(make()->activeFonts().isEmpty());
    m_system.logon.time = 1000;
    QVERIFY(make()->activeFonts().isEmpty());
}

void WindowsActivationTest::changesByOthersAreReadOnceTheySettle()
{
    const auto strategy = make();
    QSignalSpy changes(strategy.get(), &FontManagerStrategyInterface::activeFontsChanged);
    m_system.registry[QStringLiteral("machine")].insert(QStringLiteral("New (TrueType)"), QStringLiteral("new.ttf"));
    for (int i = 0; i < 5; ++i)
        m_system.listener();
    QVERIFY(strategy->activeFonts().isEmpty());
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(strategy->activeFonts().value(0).fileName, QStringLiteral("c:\\windows\\fonts\\new.ttf"));
    QCOMPARE(strategy->installedFontFiles(), QStringList{QStringLiteral("c:\\windows\\fonts\\new.ttf")});
}

KERVAL_TEST(WindowsActivationTest)
#include "WindowsActivationTest.moc"
