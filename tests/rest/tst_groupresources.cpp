#include "qtService/app/service/FontManagementService.h"
#include "tests/rest/library.h"
#include "tests/support/testregistry.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QtTest>

class TestGroupResources : public QObject
{
    Q_OBJECT

    std::unique_ptr<Library> m_library;

    HttpReply send(const char* method, const QString& path, const QByteArray& body = QByteArray())
    {
        return m_library->client().send(method, path, body);
    }
    HttpReply get(const QString& path) { return m_library->client().get(path); }
    int addGroup(const char* name) { return m_library->service().addGroup(QString::fromUtf8(name)); }
    void join(int groupId, int fontId)
    {
        const QByteArray body =
            "{\"groupId\":" + QByteArray::number(groupId) + ",\"fontId\":" + QByteArray::number(fontId) + "}";
        QCOMPARE(send("POST", QStringLiteral("/group_memberships"), body).status, 200);
        QTRY_VERIFY(pairs(QStringLiteral("?groupId=%1").arg(groupId))
                        .contains(QStringLiteral("%1;%2").arg(groupId).arg(fontId)));
    }
    QStringList pairs(const QString& query)
    {
        QStringList ids;
        const QJsonArray memberships = get(QStringLiteral("/group_memberships") + query).json().array();
        for (const QJsonValue& membership : memberships)
            ids.append(membership.toObject().value(QLatin1String("id")).toString());
        return ids;
    }

private slots:
    void initTestCase() { m_library = std::make_unique<Library>(); }
    void cleanupTestCase() { m_library.reset(); }
    void init() { m_library->clear(); }

    void lists()
    {
        const int id = addGroup("Mine");
        const QByteArray own =
            "[{\"id\":" + QByteArray::number(id) + ",\"name\":\"Mine\",\"font_count\":0,\"user_defined\":true}]";
        const HttpReply mine = get(QStringLiteral("/groups?user_defined=true"));
        QCOMPARE(mine.body, own);
        QCOMPARE(mine.header("Content-Type"), QByteArray("application/json"));
        const QJsonArray system = get(QStringLiteral("/groups?user_defined=no")).json().array();
        QVERIFY(system.size() >= 9);
        for (const QJsonValue& group : system) {
            QVERIFY(group.toObject().value(QLatin1String("id")).toInt() <= -100);
            QVERIFY(!group.toObject().value(QLatin1String("user_defined")).toBool());
        }
        QCOMPARE(get(QStringLiteral("/groups?user_defined=perhaps")).json().array().size(), system.size() + 1);
    }

    void makesRenamesAndDeletes()
    {
        const QByteArray name = "\"Gr\xc3\xb6\xc3\x9f"
                                "e \\\"100%1\\\" '; DROP\"";
        const HttpReply made = send("POST", QStringLiteral("/groups"), "{\"name\":" + name + "}");
        QCOMPARE(made.status, 201);
        const int id = made.json().object().value(QLatin1String("id")).toInt();
        const QString path = QStringLiteral("/groups/%1").arg(id);
        QCOMPARE(made.body, "{\"id\":" + QByteArray::number(id) + ",\"name\":" + name +
                                ",\"font_count\":0,\"user_defined\":true}");
        QCOMPARE(get(path).body, made.body);
        QCOMPARE(get(path + QLatin1Char('/')).body, made.body);

        const QByteArray renaming = "{\"name\":\"New\",\"id\":" + QByteArray::number(id) + "}";
        const HttpReply renamed = send("PUT", path, renaming);
        QCOMPARE(renamed.status, 200);
        QCOMPARE(renamed.json().object().value(QLatin1String("name")).toString(), QStringLiteral("New"));
        QCOMPARE(send("DELETE", path).status, 204);
        QCOMPARE(send("DELETE", path).status, 400);
        QCOMPARE(get(path).status, 404);
        QCOMPARE(send("PUT", path, renaming).status, 500);
        // An id in the path makes no difference to what is made.
        QCOMPARE(send("POST", path, "{\"name\":\"Again\"}").status, 201);
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        const auto row = [](const char* name, const char* method, const char* path, const char* body, int status) {
            QTest::newRow(name) << QByteArray(method) << QString::fromLatin1(path) << QByteArray(body) << status;
        };
        row("empty name", "POST", "/groups", "{\"name\":\"\"}", 400);
        row("no name", "POST", "/groups", "{}", 400);
        row("name is a number", "POST", "/groups", "{\"name\":5}", 400);
        row("no JSON", "POST", "/groups", "name", 400);
        row("ids differ", "PUT", "/groups/5", "{\"name\":\"a\",\"id\":6}", 400);
        row("rename without a name", "PUT", "/groups/5", "{\"name\":\"\",\"id\":5}", 400);
        row("rename a system group", "PUT", "/groups/-101", "{\"name\":\"a\",\"id\":-101}", 400);
        row("rename nothing", "PUT", "/groups/5000", "{\"name\":\"a\",\"id\":5000}", 500);
        row("delete a system group", "DELETE", "/groups/-101", "", 400);
        row("delete group 0", "DELETE", "/groups/0", "", 400);
        row("group 0", "GET", "/groups/0", "", 404);
        row("no such system group", "GET", "/groups/-105", "", 404);
        row("no such group", "GET", "/groups/5000", "", 404);
        row("put on the list", "PUT", "/groups", "{}", 405);
        row("membership without a font", "POST", "/group_memberships", "{\"groupId\":1}", 400);
        row("membership in a system group", "POST", "/group_memberships", "{\"groupId\":-100,\"fontId\":1}", 400);
        row("membership of nothing", "POST", "/group_memberships", "{\"groupId\":5000,\"fontId\":5000}", 500);
        row("foundries are read-only", "DELETE", "/foundries", "", 405);
    }

    void refusals()
    {
        QFETCH(QByteArray, method);
        QFETCH(QString, path);
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        const HttpReply reply = send(method.constData(), path, body);
        QCOMPARE(reply.status, status);
        QVERIFY(reply.body.isEmpty());
    }

    void memberships()
    {
        const QList<int> fonts = m_library->addFonts(3);
        const int group = addGroup("A");
        const QByteArray body =
            "{\"groupId\":" + QByteArray::number(group) + ",\"fontId\":" + QByteArray::number(fonts.at(1)) + "}";
        const HttpReply added = send("POST", QStringLiteral("/group_memberships"), body);
        QCOMPARE(added.status, 200);
        const QString pair = QStringLiteral("%1;%2").arg(group).arg(fonts.at(1));
        QCOMPARE(added.body, body.chopped(1) + ",\"id\":\"" + pair.toUtf8() + "\"}");
        QTRY_COMPARE(pairs(QStringLiteral("?groupId=%1").arg(group)), QStringList{pair});
        // A font is also a member of the system groups.
        const QStringList all = pairs(QStringLiteral("?fontId=%1").arg(fonts.at(1)));
        QVERIFY(all.contains(pair));
        QVERIFY(all.contains(QStringLiteral("-100;%1").arg(fonts.at(1))));
        QVERIFY(!all.contains(QStringLiteral("-100;%1").arg(fonts.at(0))));

        QCOMPARE(send("DELETE", QStringLiteral("/group_memberships/") + pair).status, 204);
        QTRY_COMPARE(pairs(QStringLiteral("?groupId=%1").arg(group)), QStringList());
    }

    void deletingMembershipsTakesOnlyWhatWasAsked_data()
    {
        QTest::addColumn<QString>("path"); // %1, %2: groups; %3, %4: fonts
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("left");
        const QStringList all{QStringLiteral("1;1"), QStringLiteral("1;2"), QStringLiteral("2;1")};
        QTest::newRow("item") << QStringLiteral("/%1;%3") << 204 << QStringList(all.mid(1));
        QTest::newRow("item with a slash") << QStringLiteral("/%1;%3/") << 204 << QStringList(all.mid(1));
        QTest::newRow("lists") << QStringLiteral("?groupId=%1,%2&fontId=%3") << 204 << QStringList(all.mid(1, 1));
        QTest::newRow("font in every group") << QStringLiteral("?fontId=%3") << 204 << QStringList(all.mid(1, 1));
        QTest::newRow("one group") << QStringLiteral("?groupId=%1") << 204 << QStringList(all.mid(2));
        QTest::newRow("everything") << QString() << 204 << QStringList();
        QTest::newRow("half a pair") << QStringLiteral("/%1") << 400 << all;
        QTest::newRow("words") << QStringLiteral("/all;fonts") << 400 << all;
        QTest::newRow("three numbers") << QStringLiteral("/%1;%3;%4") << 400 << all;
        QTest::newRow("more path") << QStringLiteral("/%1;%3/x") << 400 << all;
        QTest::newRow("a word for a pair beside lists") << QStringLiteral("/x?groupId=%1&fontId=%3") << 400 << all;
        QTest::newRow("an empty list") << QStringLiteral("?groupId=") << 400 << all;
        QTest::newRow("an unreadable list") << QStringLiteral("?groupId=%1&fontId=%3,x") << 400 << all;
        QTest::newRow("a system group") << QStringLiteral("?groupId=-100") << 204 << all;
    }

    void deletingMembershipsTakesOnlyWhatWasAsked()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        QFETCH(QStringList, left);
        const QList<int> fonts = m_library->addFonts(2);
        const QList<int> groups{addGroup("A"), addGroup("B")};
        join(groups.at(0), fonts.at(0));
        join(groups.at(0), fonts.at(1));
        join(groups.at(1), fonts.at(0));
        for (int i = 0; i < 2; ++i) {
            path.replace(QLatin1Char('%') + QString::number(i + 1), QString::number(groups.at(i)));
            path.replace(QLatin1Char('%') + QString::number(i + 3), QString::number(fonts.at(i)));
        }
        QCOMPARE(send("DELETE", QStringLiteral("/group_memberships") + path).status, status);
        QStringList expected;
        for (const QString& pair : left)
            expected.append(QStringLiteral("%1;%2")
                                .arg(groups.at(pair.section(QLatin1Char(';'), 0, 0).toInt() - 1))
                                .arg(fonts.at(pair.section(QLatin1Char(';'), 1).toInt() - 1)));
        const QString query = QStringLiteral("?groupId=%1,%2").arg(groups.at(0)).arg(groups.at(1));
        QTRY_COMPARE(pairs(query), expected);
    }

    void nothingToEmptyIsRefused() { QCOMPARE(send("DELETE", QStringLiteral("/group_memberships")).status, 400); }

    void foundriesAreSortedByCodeUnits()
    {
        const QStringList names{QStringLiteral("adobe"), QStringLiteral("Bitstream"), QString(),
                                QStringLiteral("adobe")};
        m_library->addFonts(4, [&](fms::StaticFont& font, int i) { font.setFoundry(names.at(i)); });
        const HttpReply reply = get(QStringLiteral("/foundries/"));
        QCOMPARE(reply.body, QByteArray("[\"Bitstream\",\"adobe\"]"));
        QCOMPARE(reply.header("Content-Type"), QByteArray("application/json"));
    }
};

KERVAL_TEST(TestGroupResources)
#include "tst_groupresources.moc"
