#include "qtService/database/StaticFont.h"
#include "rest/Server.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QMap>
#include <QtTest>

using api::rest::ResourceHandler;
using api::rest::Server;

// Holds docs/openapi.yaml against the route table, in both directions.
class TestOpenApi : public QObject
{
    Q_OBJECT

    // The program adds these itself, in the layer above.
    struct ProgramRoute : ResourceHandler
    {
        using ResourceHandler::ResourceHandler;
    };

    QStringList m_lines;
    QMap<QString, QSet<QString>> m_documented; // path as written -> methods
    QVector<Server::Route> m_routes;

    // The pattern that answers a documented path, with numbers for its variables.
    QString patternFor(QString path) const
    {
        path.replace(QLatin1String("{id}"), QLatin1String("12"))
            .replace(QLatin1String("{pair}"), QLatin1String("3;17"));
        for (const Server::Route& route : m_routes) {
            if (QRegularExpression(QRegularExpression::anchoredPattern(route.pattern)).match(path).hasMatch())
                return route.pattern;
        }
        return QString();
    }

    static QSet<QString> methodNames(const Server::Route& route)
    {
        QSet<QString> names;
        for (const QHttpRequest::HttpMethod method : route.methods)
            names.insert(ResourceHandler::methodText(method));
        return names;
    }

private slots:
    // Reads what the document's indentation tells: paths by two spaces, methods by four.
    void initTestCase()
    {
        m_lines = QString::fromUtf8(kerval::testing::readFile(QStringLiteral(KERVAL_SOURCE_DIR "/docs/openapi.yaml")))
                      .split(QLatin1Char('\n'));
        const QRegularExpression pathLine(QStringLiteral("^  (/\\S*):$"));
        const QRegularExpression methodLine(QStringLiteral("^    (get|put|post|delete|patch|head|options):$"));
        QString path;
        for (const QString& line : qAsConst(m_lines)) {
            const auto isPath = pathLine.match(line);
            const auto isMethod = methodLine.match(line);
            if (isPath.hasMatch())
                path = isPath.captured(1);
            else if (isMethod.hasMatch() && !path.isEmpty())
                m_documented[path].insert(isMethod.captured(1).toUpper());
        }
        Server server{QSharedPointer<FontManagementService>()};
        const ResourceHandler::Methods get{QHttpRequest::HTTP_GET};
        const ResourceHandler::Methods both{QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST};
        server.addHandler("/service(/.+)?/?", new ProgramRoute(both));
        server.addHandler("/query/norvik/krvmodules\\.cgi", new ProgramRoute(both));
        server.addHandler("/query/norvik/ocrsim\\.php", new ProgramRoute(get));
        server.addHandler("/php/norvik/GetBuyFontLinks\\.php", new ProgramRoute(get));
        m_routes = server.routes();
        QCOMPARE(m_routes.size(), 14);
    }

    void everyDocumentedRequestIsServed()
    {
        QVERIFY(m_documented.size() > 10);
        for (auto entry = m_documented.cbegin(); entry != m_documented.cend(); ++entry) {
            const QString pattern = patternFor(entry.key());
            QVERIFY2(!pattern.isEmpty(), qPrintable(entry.key()));
            const auto route = std::find_if(m_routes.cbegin(), m_routes.cend(),
                                            [&](const Server::Route& r) { return r.pattern == pattern; });
            for (const QString& method : *entry)
                QVERIFY2(methodNames(*route).contains(method), qPrintable(method + QLatin1Char(' ') + entry.key()));
        }
    }

    void everyServedMethodIsDocumented()
    {
        QMap<QString, QSet<QString>> documentedByPattern;
        for (auto entry = m_documented.cbegin(); entry != m_documented.cend(); ++entry)
            documentedByPattern[patternFor(entry.key())].unite(*entry);
        for (const Server::Route& route : qAsConst(m_routes)) {
            const QSet<QString> missing = methodNames(route) - documentedByPattern.value(route.pattern);
            QVERIFY2(missing.isEmpty(),
                     qPrintable(route.pattern + QLatin1Char(' ') + missing.values().join(QLatin1Char(' '))));
        }
    }

    void fontMembersAreDocumentedInTheirOrder()
    {
        QStringList members;
        const QRegularExpression member(QStringLiteral("^        (\\w+): \\{"));
        for (int line = m_lines.indexOf(QStringLiteral("    Font:")) + 3; line < m_lines.size(); ++line) {
            const auto match = member.match(m_lines.at(line));
            if (!match.hasMatch())
                break;
            members.append(match.captured(1));
        }
        QStringList expected = fms::StaticFont::exportedProperties();
        expected.removeAll(QStringLiteral("onlinseSource"));
        expected << QStringLiteral("isSystemFont") << QStringLiteral("isDuplicateFont") << QStringLiteral("characters");
        QCOMPARE(members, expected);
    }

    void referencesResolve()
    {
        const QRegularExpression reference(QStringLiteral("#/components/(\\w+)/(\\w+)"));
        int found = 0;
        for (const QString& line : qAsConst(m_lines)) {
            auto match = reference.globalMatch(line);
            while (match.hasNext()) {
                const QString name = match.next().captured(2);
                QVERIFY2(m_lines.contains(QStringLiteral("    %1:").arg(name)), qPrintable(name));
                ++found;
            }
        }
        QVERIFY(found > 20);
    }
};

KERVAL_TEST(TestOpenApi)
#include "tst_openapi.moc"
