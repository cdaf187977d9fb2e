#include "qtService/app/service/FontManagementService.h"
#include "tests/rest/library.h"
#include "tests/support/helperprograms.h"
#include "tests/support/testregistry.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThreadPool>
#include <QtTest>

class TestFontResources : public QObject
{
    Q_OBJECT

    std::unique_ptr<Library> m_library;

    HttpReply get(const QString& pathAndQuery) { return m_library->client().get(pathAndQuery); }
    HttpReply send(const char* method, const QString& path, const QByteArray& body = QByteArray())
    {
        return m_library->client().send(method, path, body);
    }

    // The numbers that the test gave its fonts, in the order of the answer.
    static QList<int> numbers(const HttpReply& reply)
    {
        QList<int> list;
        const QJsonArray fonts = reply.json().array();
        for (const QJsonValue& font : fonts)
            list.append(
                font.toObject().value(QLatin1String("otherInfo2")).toString().section(QLatin1Char(' '), 0, 0).toInt());
        return list;
    }

    static QStringList memberNames(const QByteArray& json)
    {
        QStringList names;
        static const QRegularExpression member(QStringLiteral("[{,]\"([#A-Za-z0-9]+)\":"));
        auto match = member.globalMatch(QString::fromUtf8(json));
        while (match.hasNext())
            names.append(match.next().captured(1));
        return names;
    }

private slots:
    void initTestCase() { m_library = std::make_unique<Library>(); }
    void cleanupTestCase() { m_library.reset(); }
    void init() { m_library->clear(); }

    void aFontShowsItsExportedProperties()
    {
        const int id =
            m_library
                ->addFonts(1,
                           [](fms::StaticFont& font, int) {
                               font.setFamilyName(QStringLiteral("Quote\" and \\ and \u00e9\U0001F600"));
                               font.setDesigner(QStringLiteral("x").repeated(5000));
                               font.setVendorUrl(QUrl(QStringLiteral("https://\u00fcber.example/a b?c=\u00e9")));
                               font.setDesignerUrl(QUrl(QStringLiteral("plain text")));
                               font.setSupportedSubsets({30, 2, 0, 11});
                               font.setIsItalic(true);
                               font.setItalicAngle(-12);
                               font.setOnlineSource(QStringLiteral("a store"));
                           })
                .first();
        const HttpReply reply = get(QStringLiteral("/fonts/%1").arg(id));
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Content-Type"), QByteArray("application/json"));

        QStringList expectedNames = fms::StaticFont::exportedProperties();
        expectedNames.removeAll(QStringLiteral("onlinseSource"));
        const QJsonObject shown = reply.json().object();
        const StaticFontPtr font = m_library->font(id);
        for (const QString& name : qAsConst(expectedNames)) {
            const QVariant value = font->property(name.toLatin1().constData());
            QVERIFY2(value.isValid(), qPrintable(name));
            QJsonValue expected = QJsonValue::fromVariant(value);
            if (name == QLatin1String("supportedSubsets"))
                expected = QJsonArray{0, 2, 11, 30};
            else if (value.type() == QVariant::Url && value.toUrl().isEmpty())
                expected = QJsonValue();
            QCOMPARE(shown.value(name), expected);
        }
        expectedNames << QStringLiteral("isSystemFont") << QStringLiteral("isDuplicateFont")
                      << QStringLiteral("characters");
        QCOMPARE(memberNames(reply.body), expectedNames);
        QCOMPARE(shown.value(QLatin1String("licenseUrl")), QJsonValue());
        QCOMPARE(shown.value(QLatin1String("characters")).toString(),
                 QStringLiteral("http://127.0.0.1:%1/characters/%2").arg(m_library->server().port()).arg(id));

        const HttpReply list = get(QStringLiteral("/fonts/"));
        expectedNames << QStringLiteral("#");
        QCOMPARE(memberNames(list.body), expectedNames);

        QCOMPARE(get(QStringLiteral("/fonts/%1/").arg(id)).status, 200);
        QCOMPARE(get(QStringLiteral("/fonts/%1/extra").arg(id)).status, 404);
        QCOMPARE(get(QStringLiteral("/fonts/999999")).status, 404);
        QCOMPARE(get(QStringLiteral("/fonts/99999999999999999999")).status, 404);
    }

    void pages_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("links"); // relation=page
        QTest::newRow("none") << QString() << 200 << 120 << QString();
        QTest::newRow("first") << QStringLiteral("?page=0&per_page=50&sort_by=id") << 200 << 50
                               << QStringLiteral("next=1 first=0 last=3");
        QTest::newRow("last with fonts") << QStringLiteral("?page=2&per_page=50") << 200 << 20
                                         << QStringLiteral("prev=1 first=0 last=3");
        QTest::newRow("past the end") << QStringLiteral("?page=3&per_page=50") << 404 << 0
                                      << QStringLiteral("prev=2 first=0 last=3");
        QTest::newRow("a full last page")
            << QStringLiteral("?page=1&per_page=60") << 200 << 60 << QStringLiteral("prev=0 first=0 last=2");
        QTest::newRow("huge numbers") << QStringLiteral("?page=2147483647&per_page=2147483647") << 404 << 0
                                      << QStringLiteral("prev=2147483646 first=0 last=1");
        QTest::newRow("no page size") << QStringLiteral("?page=0&per_page=0") << 200 << 120 << QString();
        QTest::newRow("negative page") << QStringLiteral("?page=-1&per_page=10") << 200 << 120 << QString();
    }

    void pages()
    {
        QFETCH(QString, query);
        QFETCH(int, status);
        QFETCH(int, count);
        QFETCH(QString, links);
        m_library->addFonts(120);
        const HttpReply reply = get(QStringLiteral("/fonts") + query);
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.json().array().size(), count);
        QStringList expected;
        const QString size = QUrlQuery(query.mid(1)).queryItemValue(QStringLiteral("per_page"));
        for (const QString& link : links.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            expected.append(QStringLiteral("<http://127.0.0.1:%1/fonts?page=%2&per_page=%3>; rel=\"%4\"")
                                .arg(m_library->server().port())
                                .arg(link.section(QLatin1Char('='), 1), size, link.section(QLatin1Char('='), 0, 0)));
        QCOMPARE(QString::fromLatin1(reply.header("Link")), expected.join(QStringLiteral(", ")));
    }

    void filters_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QList<int>>("found");
        QTest::newRow("nothing asked") << QString() << QList<int>{0, 1, 2, 3, 4, 5};
        QTest::newRow("two formats") << QStringLiteral("format=TrueType,OpenType") << QList<int>{0, 1, 3, 4};
        QTest::newRow("three formats filter nothing")
            << QStringLiteral("format=TrueType,OpenType,Type 1") << QList<int>{0, 1, 2, 3, 4, 5};
        QTest::newRow("foundry") << QStringLiteral("foundry=adobe") << QList<int>{1, 3, 5};
        QTest::newRow("empty foundry") << QStringLiteral("foundry=") << QList<int>{0, 2, 4};
        QTest::newRow("subsets are all asked") << QStringLiteral("supported_subsets=1,,3") << QList<int>{3, 4, 5};
        QTest::newRow("two words, any case") << QStringLiteral("textual_search_term=+BOLD++garamond+") << QList<int>{2};
        QTest::newRow("a word nowhere") << QStringLiteral("textual_search_term=garamond+xyz") << QList<int>{};
        QTest::newRow("words in other properties")
            << QStringLiteral("textual_search_term=adobe&textual_search_properties=foundry,,vendor")
            << QList<int>{1, 3, 5};
        QTest::newRow("only serif") << QStringLiteral("serif=yes") << QList<int>{0, 4};
        QTest::newRow("not serif") << QStringLiteral("serif=0") << QList<int>{1, 2, 3, 5};
        QTest::newRow("not a boolean") << QStringLiteral("serif=maybe") << QList<int>{0, 1, 2, 3, 4, 5};
        QTest::newRow("weight 1") << QStringLiteral("font_weight=1") << QList<int>{0};
        QTest::newRow("weight 2") << QStringLiteral("font_weight=2") << QList<int>{1, 2};
        QTest::newRow("weight 4 overlaps") << QStringLiteral("font_weight=4") << QList<int>{1, 2, 3, 4};
        QTest::newRow("weight 5") << QStringLiteral("font_weight=5") << QList<int>{5};
        QTest::newRow("weight 6 is none") << QStringLiteral("font_weight=6") << QList<int>{0, 1, 2, 3, 4, 5};
        QTest::newRow("no slant") << QStringLiteral("italic_angle=1") << QList<int>{0};
        QTest::newRow("some slant") << QStringLiteral("italic_angle=2") << QList<int>{1};
        QTest::newRow("narrow") << QStringLiteral("font_width=1") << QList<int>{0, 1, 2, 3};
        QTest::newRow("optical size") << QStringLiteral("optical_size=2") << QList<int>{3, 4, 5};
    }

    void filters()
    {
        QFETCH(QString, query);
        QFETCH(QList<int>, found);
        const int weights[] = {99, 100, 150, 250, 499, 500};
        m_library->addFonts(6, [&](fms::StaticFont& font, int i) {
            font.setFormat(
                QStringList{QStringLiteral("TrueType"), QStringLiteral("OpenType"), QStringLiteral("Type 1")}.at(i %
                                                                                                                 3));
            font.setFoundry(i % 2 ? QStringLiteral("adobe") : QString());
            font.setSupportedSubsets(i < 3 ? QSet<int>{1, 2} : QSet<int>{1, 2, 3});
            font.setFamilyName(i == 2 || i == 3 ? QStringLiteral("Garamond") : QStringLiteral("Other"));
            font.setStyleName(i % 2 ? QStringLiteral("Book") : QStringLiteral("SemiBold"));
            font.setOtherInfo2(QString::number(i) + (i % 4 ? QString() : QStringLiteral(" Serif")));
            font.setHwe(weights[i]);
            font.setItalicAngle(i * 14);
            font.setSpecificWidth(i * 200 + 100);
            font.setSpecificHeight(100);
        });
        const HttpReply reply = get(QStringLiteral("/fonts?sort_by=otherInfo2&") + query);
        QCOMPARE(reply.status, 200);
        QCOMPARE(numbers(reply), found);
    }

    void sortsByAnyProperty()
    {
        const QStringList families{QStringLiteral("banana"), QStringLiteral("Apple"), QStringLiteral("cherry")};
        const QList<int> ids = m_library->addFonts(3, [&](fms::StaticFont& font, int i) {
            font.setOtherInfo2(QString::number(i));
            font.setFamilyName(families.at(i));
            font.setStyleName(i == 0 ? QStringLiteral("book") : i == 1 ? QStringLiteral("Book") : QString());
            font.setHwe(i == 0 ? 1000 : i == 1 ? 9 : 20);
            font.setIsBold(i == 0);
            font.setDateAdded(QDateTime::fromSecsSinceEpoch(i == 2 ? 5 : 1000 + i));
        });
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=familyName"))), (QList<int>{1, 0, 2}));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=familyName&order=desc"))), (QList<int>{2, 0, 1}));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=styleName"))), (QList<int>{2, 1, 0}));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=hwe"))), (QList<int>{1, 2, 0}));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=isBold"))).last(), 0);
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=dateAdded"))), (QList<int>{2, 0, 1}));
        const QList<int> unsorted = numbers(get(QStringLiteral("/fonts")));
        for (const char* name : {"#", "noSuchProperty", "objectName"})
            QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=") +
                                 QString::fromUtf8(QUrl::toPercentEncoding(QLatin1String(name))))),
                     unsorted);
        const QString idList = QStringLiteral("%1,,x,%2").arg(ids.at(0)).arg(ids.at(2));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?sort_by=id&id=") + idList)), (QList<int>{0, 2}));

        // "#" tells the place before sorting, but only where a sort method was asked for.
        const HttpReply placed = get(QStringLiteral("/fonts?sort_method=unknown&sort_by=familyName"));
        const QJsonArray fonts = placed.json().array();
        for (int i = 0; i < fonts.size(); ++i)
            QCOMPARE(fonts.at(i).toObject().value(QLatin1String("#")).toInt(), unsorted.indexOf(numbers(placed).at(i)));
    }

    void groupsNarrowTheSelection()
    {
        const QList<int> ids =
            m_library->addFonts(5, [](fms::StaticFont& font, int i) { font.setOtherInfo2(QString::number(i)); });
        const int group = m_library->service().addGroup(QStringLiteral("Mine"));
        QCOMPARE(send("POST", QStringLiteral("/group_memberships"),
                      QStringLiteral("{\"groupId\":%1,\"fontId\":%2}").arg(group).arg(ids.at(3)).toUtf8())
                     .status,
                 200);
        QCOMPARE(numbers(get(QStringLiteral("/fonts?group=%1").arg(group))), (QList<int>{3}));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?group=-104"))), (QList<int>{4, 3, 2, 1, 0}));
        QCOMPARE(numbers(get(QStringLiteral("/fonts?group=-104&limit=2&sort_by=id&order=desc"))).size(), 2);
        QCOMPARE(numbers(get(QStringLiteral("/fonts?group=-101"))), QList<int>());
        QCOMPARE(numbers(get(QStringLiteral("/fonts?group=777&sort_by=id"))).size(), 5);
    }

    void patchEditsTheUsersFields_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::newRow("note") << QByteArray("{\"userNote\":\"mine\"}") << 204;
        QTest::newRow("both") << QByteArray("{\"userNote\":\"mine\",\"isHidden\":true}") << 204;
        QTest::newRow("other member") << QByteArray("{\"userRanking\":3}") << 400;
        QTest::newRow("other member beside") << QByteArray("{\"isHidden\":true,\"userNote\":\"mine\",\"x\":1}") << 400;
        QTest::newRow("wrong type") << QByteArray("{\"userNote\":\"mine\",\"isHidden\":\"yes\"}") << 400;
        QTest::newRow("empty") << QByteArray("{}") << 400;
        QTest::newRow("no object") << QByteArray("[1]") << 400;
        QTest::newRow("no JSON") << QByteArray("{\"userNote\":") << 400;
        QTest::newRow("deep JSON") << QByteArray("{\"a\":").repeated(100000) << 400;
    }

    void patchEditsTheUsersFields()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        const int id = m_library->addFonts(1).first();
        const QString path = QStringLiteral("/fonts/%1").arg(id);
        const HttpReply reply = send("PATCH", path, body);
        QCOMPARE(reply.status, status);
        QVERIFY(reply.body.isEmpty());
        const QJsonObject font = get(path).json().object();
        QCOMPARE(font.value(QLatin1String("userNote")).toString(), status == 204 ? QStringLiteral("mine") : QString());
        QCOMPARE(font.value(QLatin1String("isHidden")).toBool(), status == 204 && body.contains("isHidden"));
        QCOMPARE(send("PATCH", QStringLiteral("/fonts/999999"), body).status, 400);
    }

    void removes()
    {
        const QList<int> ids = m_library->addFonts(5);
        const QString first = QStringLiteral("/fonts/%1").arg(ids.at(0));
        QCOMPARE(send("DELETE", first).status, 204);
        QCOMPARE(send("DELETE", first).status, 400);
        QCOMPARE(get(first).status, 404);
        QCOMPARE(send("DELETE", QStringLiteral("/fonts?id=%1,%2").arg(ids.at(1)).arg(ids.at(2))).status, 204);
        QCOMPARE(get(QStringLiteral("/fonts")).json().array().size(), 2);
        QCOMPARE(send("DELETE", QStringLiteral("/fonts?foundry=nobody")).status, 404);
        QCOMPARE(send("PUT", QStringLiteral("/fonts"), "{}").status, 405);
        QCOMPARE(send("PATCH", QStringLiteral("/fonts"), "{}").status, 405);
    }

    void reveal()
    {
        const int id = m_library->addFonts(1).first();
        QCOMPARE(send("POST", QStringLiteral("/fonts/%1/show").arg(id), "{}").status, 400);
        QCOMPARE(send("POST", QStringLiteral("/fonts/999999/reveal"), "{}").status, 404);
    }

    void activityChange()
    {
        const QString file = m_library->addFile(QStringLiteral("active.ttf"));
        const QList<int> ids = m_library->addFonts(2, [&](fms::StaticFont& font, int i) {
            if (i == 0)
                font.setFileName(file);
        });
        const QString path = QStringLiteral("/fonts/activity_change?id=%1,%2").arg(ids.at(0)).arg(ids.at(1));
        QCOMPARE(send("POST", path, "{}").status, 400);
        QCOMPARE(send("POST", path, "{\"activityType\":3}").status, 400);
        QCOMPARE(send("POST", path, "{\"activityType\":\"2\"}").status, 400);
        QCOMPARE(send("POST", path, "nonsense").status, 400);
        QCOMPARE(send("POST", QStringLiteral("/fonts?id=%1").arg(ids.at(0)), "{\"activityType\":2}").status, 400);
        QCOMPARE(send("POST", QStringLiteral("/fonts/activity_change?id=99999"), "{\"activityType\":2}").status, 404);

        const HttpReply reply = send("POST", path, "{\"activityType\":2}");
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.header("Content-Type"), QByteArray("application/json"));
        // The second font has no file, which the system refuses.
        QCOMPARE(reply.body, QStringLiteral("[{\"id\":%1,\"errorCode\":0,\"conflictingFont\":0},"
                                            "{\"id\":%2,\"errorCode\":17,\"conflictingFont\":0}]")
                                 .arg(ids.at(0))
                                 .arg(ids.at(1))
                                 .toUtf8());
        QTRY_COMPARE(m_library->font(ids.at(0))->activityType(), 2);
    }

    void otherRequestsAreAnsweredWhileACommandRuns()
    {
        const QList<int> ids = m_library->addFonts(50);
        QNetworkAccessManager manager;
        QList<QNetworkReply*> replies;
        for (const int id : ids) {
            QNetworkRequest request(QUrl(QStringLiteral("http://127.0.0.1:%1/fonts/activity_change?id=%2")
                                             .arg(m_library->server().port())
                                             .arg(id)));
            request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
            replies.append(manager.post(request, "{\"activityType\":1}"));
            request.setUrl(
                QUrl(QStringLiteral("http://127.0.0.1:%1/fonts/%2").arg(m_library->server().port()).arg(id)));
            replies.append(manager.get(request));
        }
        QTRY_VERIFY_WITH_TIMEOUT(std::all_of(replies.cbegin(), replies.cend(), [](auto* r) { return r->isFinished(); }),
                                 30000);
        for (int i = 0; i < replies.size(); ++i) {
            const QByteArray body = replies.at(i)->readAll();
            QVERIFY2(body.contains("\"id\":" + QByteArray::number(ids.at(i / 2))), body.constData());
        }
    }

    // Each of them holds a thread of the common pool while it waits for its turn; the one whose turn it is must not
    // need another one.
    void activationsAtTheSameTimeAllEnd()
    {
        constexpr int each = 60;
        const QList<int> ids = m_library->addFonts(3 * each, [this](fms::StaticFont& font, int i) {
            font.setFileName(m_library->addFile(QStringLiteral("together%1.ttf").arg(i)));
        });
        QThreadPool::globalInstance()->setMaxThreadCount(2);
        QNetworkAccessManager manager;
        QList<QNetworkReply*> replies;
        for (int first = 0; first < ids.size(); first += each) {
            QStringList asked;
            for (const int id : ids.mid(first, each))
                asked.append(QString::number(id));
            QNetworkRequest request(
                QUrl(QStringLiteral("http://127.0.0.1:%1/fonts/activity_change?id=%2")
                         .arg(QString::number(m_library->server().port()), asked.join(QLatin1Char(',')))));
            request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
            replies.append(manager.post(request, "{\"activityType\":2}"));
        }
        QTRY_VERIFY_WITH_TIMEOUT(std::all_of(replies.cbegin(), replies.cend(), [](auto* r) { return r->isFinished(); }),
                                 30000);
        QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
        for (QNetworkReply* reply : qAsConst(replies))
            QCOMPARE(reply->readAll().count("\"errorCode\":0"), each);
    }

    void fontsWithoutMeasuresAreAlikeToThemselvesOnly()
    {
        kerval::testing::provideHelperPrograms(QStringLiteral(KERVAL_BIN_DIR));
        const int id = m_library->addFonts(3).first();
        const HttpReply reply = get(QStringLiteral("/fonts?sort_method=similarity&base_font=%1").arg(id));
        QCOMPARE(reply.status, 200);
        const QJsonArray alike = reply.json().array();
        QCOMPARE(alike.size(), 1);
        QCOMPARE(alike.first().toObject().value(QLatin1String("id")).toInt(), id);
        // Without a base font the method selects nothing.
        QCOMPARE(get(QStringLiteral("/fonts?sort_method=similarity")).json().array().size(), 3);
    }
};

KERVAL_TEST(TestFontResources)
#include "tst_fontresources.moc"
