#include "fontlens/recognizer/FormData.h"
#include "fontlens/recognizer/RequestValues.h"
#include "tests/support/testregistry.h"

#include <QRandomGenerator>
#include <QtTest>

using kerval::recognizer::FormData;
namespace values = kerval::recognizer::values;

class TestProtocolValues : public QObject
{
    Q_OBJECT

    static QByteArray part(const QByteArray& name, const QByteArray& value, const QByteArray& boundary = "AaB03x")
    {
        return "--" + boundary + "\r\nContent-disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
    }
    static QString repeated(const QString& item, int count, QChar separator)
    {
        QStringList items;
        for (int i = 0; i < count; ++i)
            items.append(item);
        return items.join(separator);
    }

private slots:
    void multipart_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("body");
        const QByteArray file("\x89PNG\r\n\x1a\n\r\n--AaB0\r\n\r\nend\0x", 26);
        const QByteArray fields = part("action", "imgupload") + part("empty", "") + part("uploadedfile", file);
        QTest::newRow("the client's comma and open end")
            << QByteArray("multipart/form-data, boundary=AaB03x") << QByteArray(fields + "--AaB03x\r\n\r\n");
        QTest::newRow("standard") << QByteArray("multipart/form-data; boundary=AaB03x")
                                  << QByteArray(fields + "--AaB03x--\r\n");
        QTest::newRow("quoted, preamble, epilogue")
            << QByteArray("Multipart/Form-Data; charset=utf-8; Boundary=\"AaB03x\"")
            << QByteArray("hello\r\n" + fields + "--AaB03x--\r\nbye\r\n--AaB03x");
        QTest::newRow("other boundary, headers in another order")
            << QByteArray("multipart/form-data; boundary=----b")
            << QByteArray(
                   "------b\r\nContent-Type: text/plain\r\ncontent-disposition: form-data; filename=\"name=.png\"; "
                   "name=uploadedfile\r\n\r\n" +
                   file + "\r\n" + part("action", "imgupload", "----b") + part("empty", "", "----b") + "------b--");
    }

    void multipart()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, body);
        QVERIFY(FormData::isMultipart(type));
        const auto form = FormData::fromMultipart(type, body);
        QVERIFY(form);
        QCOMPARE(form->text(QStringLiteral("action")), QStringLiteral("imgupload"));
        QVERIFY(form->contains(QStringLiteral("empty")));
        QCOMPARE(form->bytes(QStringLiteral("empty")), QByteArray());
        QCOMPARE(form->bytes(QStringLiteral("uploadedfile")),
                 QByteArray("\x89PNG\r\n\x1a\n\r\n--AaB0\r\n\r\nend\0x", 26));
    }

    void brokenMultipartGivesNoFile()
    {
        const QByteArray type = "multipart/form-data, boundary=AaB03x";
        QVERIFY(!FormData::fromMultipart("multipart/form-data", part("a", "b")));
        QVERIFY(!FormData::fromMultipart("multipart/form-data; boundary=", part("a", "b")));
        QVERIFY(!FormData::fromMultipart(type, "no boundary"));
        QVERIFY(!FormData::fromMultipart(type, {}));
        // Cut short: the last part is not known to be whole.
        const auto cut = FormData::fromMultipart(type, part("action", "x") + part("uploadedfile", "abc").chopped(2));
        QVERIFY(cut && cut->contains(QStringLiteral("action")) && !cut->contains(QStringLiteral("uploadedfile")));
        QByteArray many;
        for (int i = 0; i < 1000; ++i)
            many += part("n" + QByteArray::number(i), "v");
        QVERIFY(!FormData::fromMultipart(type, many + "--AaB03x--"));
        QByteArray long_ = "--AaB03x\r\nX: " + QByteArray(100000, 'a') + "\r\n\r\nv\r\n--AaB03x--";
        QVERIFY(!FormData::fromMultipart(type, long_)->contains(QStringLiteral("X")));
    }

    void urlEncoded()
    {
        const FormData form =
            FormData::fromUrlEncoded("a=1%2B2+3&b=%C3%A4%20%26&a=second&=x&c&d=e=f&%64%64=g&bad=%ff%zz");
        QCOMPARE(form.text(QStringLiteral("a")), QStringLiteral("1+2+3"));
        QCOMPARE(form.text(QStringLiteral("b")), QString::fromUtf8("\xc3\xa4 &"));
        QVERIFY(form.contains(QStringLiteral("c")));
        QCOMPARE(form.text(QStringLiteral("d")), QStringLiteral("e=f"));
        QCOMPARE(form.text(QStringLiteral("dd")), QStringLiteral("g"));
        QVERIFY(form.text(QStringLiteral("bad")).contains(QChar(QChar::ReplacementCharacter)));
    }

    void points_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count"); // -1: refused
        const auto row = [](const char* text, int count) { QTest::newRow(text) << QString::fromLatin1(text) << count; };
        row("1,2", 1);
        row("1,2;3,4", 2);
        row("-1,99999", 1);
        for (const char* text : {"", ";", "1", "1,", ",2", "1,2;", ";1,2", "1,2,3", "nan,1", "1.5,2", "1e3,2", "inf,1",
                                 "99999999999,1", "2147483647,0", "0x10,1", "a,b"})
            row(text, -1);
        QTest::newRow("64 points") << repeated(QStringLiteral("1,2"), 64, QLatin1Char(';')) << 64;
        QTest::newRow("65 points") << repeated(QStringLiteral("1,2"), 65, QLatin1Char(';')) << -1;
        QTest::newRow("a million points") << repeated(QStringLiteral("1,2"), 1000000, QLatin1Char(';')) << -1;
    }

    void points()
    {
        QFETCH(QString, text);
        QFETCH(int, count);
        const auto points = values::points(text);
        QCOMPARE(points ? points->size() : -1, count);
    }

    void polygons()
    {
        const auto two = values::polygons(QStringLiteral("1,2;3,4_5,6;7,8"));
        using Points = QVector<QPoint>;
        QVERIFY(two);
        QCOMPARE(two->size(), 2);
        QCOMPARE(two->first(), QPolygon(Points{{1, 2}, {3, 4}}));
        QCOMPARE(two->last(), QPolygon(Points{{5, 6}, {7, 8}}));
        QCOMPARE(values::polygons(QString())->size(), 0);
        for (const char* text : {"_", "1,2_", "_1,2", "1,2;_3,4", "x"})
            QVERIFY(!values::polygons(QString::fromLatin1(text)));
        QVERIFY(!values::polygons(repeated(QStringLiteral("1,2"), 129, QLatin1Char('_'))));
        const QString large = repeated(QStringLiteral("1,2"), 2000, QLatin1Char(';'));
        QVERIFY(values::polygons(large + QLatin1Char('_') + large));
        QVERIFY(!values::polygons(repeated(large, 3, QLatin1Char('_'))));
    }

    void letters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("characters"); // null: refused
        QTest::addColumn<int>("impossible");
        QTest::newRow("two") << QStringLiteral("a,x1").replace(QLatin1Char('x'), QLatin1Char('e')) +
                                    QStringLiteral(";b,d2")
                             << QStringLiteral("ab") << -1;
        QTest::newRow("separators") << QStringLiteral(",,1;;,2;=,3") << QStringLiteral(",;=") << -1;
        QTest::newRow("not Latin") << QString::fromUtf8("\xc3\xa4,1;\xe5\xad\x97,2")
                                   << QString::fromUtf8("\xc3\xa4\xe5\xad\x97") << -1;
        QTest::newRow("space") << QStringLiteral("a,1; ,2") << QStringLiteral("a ") << 1;
        QTest::newRow("null") << QString(QChar(0)) + QStringLiteral(",1") << QString(QChar(0)) << 0;
        QTest::newRow("half a pair") << QString(QChar(0xd835)) + QStringLiteral(",1") << QString(QChar(0xd835)) << 0;
        QTest::newRow("lost in decoding")
            << QString(QChar(0xfffd)) + QStringLiteral(",1") << QString(QChar(0xfffd)) << 0;
        for (const char* text :
             {"", "a", "a,", ",1", "a,1;", "a,1;b", "ab,1", "a,1b,2;", "a,xyz", "a,1;;", "a1", "a,-1"})
            QTest::newRow(*text ? text : "empty") << QString::fromLatin1(text) << QString() << -1;
        QTest::newRow("128") << repeated(QStringLiteral("a,1"), 128, QLatin1Char(';')) << QString(128, QLatin1Char('a'))
                             << -1;
        QTest::newRow("129") << repeated(QStringLiteral("a,1"), 129, QLatin1Char(';')) << QString() << -1;
        QTest::newRow("long id") << QStringLiteral("a,") + QString(65, QLatin1Char('0')) << QString() << -1;
    }

    void letters()
    {
        QFETCH(QString, text);
        QFETCH(QString, characters);
        QFETCH(int, impossible);
        int found = 0;
        const auto letters = values::letters(text, &found);
        QCOMPARE(letters.has_value(), !characters.isNull());
        QString read;
        if (letters) {
            for (const auto& letter : *letters)
                read += letter.character;
            QCOMPARE(found, impossible);
        }
        QCOMPARE(read, characters.isNull() ? QString() : characters);
    }

    // Whatever comes in: an answer within the bounds, and no crash (this runs under the sanitizers as well).
    void mutatedRequestsAreBounded()
    {
        QRandomGenerator random(4711);
        const QByteArray type = "multipart/form-data, boundary=AaB03x";
        const QByteArray body =
            part("action", "imgupload") + part("uploadedfile", QByteArray(200, '-')) + "--AaB03x\r\n\r\n";
        const QByteArray query =
            "type=1&action=objat&imgid=0a&points=1,2;3,4&threshold=30&angle=-5&spltrs=1,2;3,4_5,6;7,8";
        const QByteArray letters = "imgids=a,0a;b,1b;%C3%A4,2c;;,3";
        const auto mutated = [&random](QByteArray text) {
            static const QByteArray pieces[] = {"\r\n", "--AaB03x", "%",  ";",    ",", "_",
                                                "=",    "&",        "\0", "\xff", "-", "99999999999"};
            for (int i = random.bounded(1, 6); i > 0 && !text.isEmpty(); --i) {
                const int at = random.bounded(text.size());
                switch (random.bounded(4)) {
                case 0:
                    text[at] = char(random.bounded(256));
                    break;
                case 1:
                    text.remove(at, random.bounded(1, 30));
                    break;
                case 2:
                    text.insert(at, pieces[random.bounded(int(std::size(pieces)))]);
                    break;
                default:
                    text.insert(at, text.mid(random.bounded(text.size()), 40));
                }
            }
            return text;
        };
        for (int i = 0; i < 20000; ++i) {
            const QByteArray changed = mutated(body);
            const auto form = FormData::fromMultipart(mutated(type), changed);
            QVERIFY(!form || form->bytes(QStringLiteral("uploadedfile")).size() <= changed.size());
            const FormData fields = FormData::fromUrlEncoded(mutated(query));
            const auto points = values::points(fields.text(QStringLiteral("points")));
            QVERIFY(!points || (!points->isEmpty() && points->size() <= 64));
            const auto polygons = values::polygons(fields.text(QStringLiteral("spltrs")));
            QVERIFY(!polygons || polygons->size() <= 128);
            int impossible = 0;
            const auto found =
                values::letters(FormData::fromUrlEncoded(mutated(letters)).text(QStringLiteral("imgids")), &impossible);
            QVERIFY(!found || (impossible < found->size() && values::isPictureId(found->last().pictureId)));
        }
    }
};

KERVAL_TEST(TestProtocolValues)
#include "tst_protocolvalues.moc"
