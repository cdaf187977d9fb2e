#include "fontlens/recognition/FontListReply.h"
#include "fontlens/recognizer/FontListXml.h"
#include "tests/support/testregistry.h"

#include <QXmlStreamReader>
#include <QtTest>

using kerval::recognizer::fontListXml;
using kerval::recognizer::ProposedFont;

// What goes in has to come out of the program's own client and of any other XML reader.
class TestFontListXml : public QObject
{
    Q_OBJECT

    struct Reply : FontRecognizer::FontListReply
    {
        using FontRecognizer::FontListReply::parse;
    };

private slots:
    void namesSurvive_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("read");
        const auto row = [](const char* title, const QString& name) { QTest::newRow(title) << name << name; };
        row("plain", QStringLiteral("DejaVu Sans"));
        row("empty", QString());
        row("ampersand", QStringLiteral("Ab & Co"));
        row("markup", QStringLiteral("</FN><F>7</F><b>\"x\""));
        row("end of a wrapper", QStringLiteral("a]]>b"));
        row("a whole wrapper", QStringLiteral("<![CDATA[x]]></FN>"));
        row("an entity", QStringLiteral("&lt;&#65;"));
        row("beyond the basic plane", QString::fromUtf8("\xf0\x9d\x94\x84 \xe5\xad\x97"));
        QTest::newRow("what XML cannot hold")
            << QString(QStringLiteral("a") + QChar(1) + QChar(0xd800) + QChar(0xffff) + QChar(0) + QStringLiteral("b"))
            << QStringLiteral("ab");
    }

    void namesSurvive()
    {
        QFETCH(QString, name);
        QFETCH(QString, read);
        const QByteArray xml = fontListXml({{7, name, name, name, 0.25}});
        Reply reply;
        QVERIFY2(reply.parse(xml), xml.constData());
        QCOMPARE(reply.fonts().size(), 1);
        QCOMPARE(reply.fonts().first()->id, 7);
        QCOMPARE(reply.fonts().first()->name, read);
        QCOMPARE(reply.fonts().first()->style, read);
        QCOMPARE(reply.fonts().first()->foundry, read);
        QCOMPARE(reply.fonts().first()->deviance, 0.25);

        QXmlStreamReader reader(xml);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("FN"))
                QCOMPARE(reader.readElementText(), read);
        }
        QVERIFY2(!reader.hasError(), xml.constData());
    }

    void orderAndNumbersSurvive()
    {
        QVector<ProposedFont> fonts;
        for (int i = 0; i < 100; ++i)
            fonts.append({1000 + i, QStringLiteral("Font %1").arg(i), QString(), QString(), 1e-7 * i});
        Reply reply;
        QVERIFY(reply.parse(fontListXml(fonts)));
        QCOMPARE(reply.fonts().size(), 100);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(reply.fonts().at(i)->id, 1000 + i);
            QCOMPARE(reply.fonts().at(i)->deviance, 1e-7 * i);
        }
        QVERIFY(reply.parse(fontListXml({})));
        QVERIFY(reply.fonts().isEmpty());
    }
};

KERVAL_TEST(TestFontListXml)
#include "tst_fontlistxml.moc"
