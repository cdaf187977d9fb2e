#include "fontlens/recognizer/AddressPermits.h"
#include "fontlens/recognizer/PictureStore.h"
#include "fontlens/recognizer/RequestValues.h"
#include "tests/support/testregistry.h"

#include <QSet>
#include <QUrl>
#include <QtTest>

using kerval::recognizer::AddressPermits;
using kerval::recognizer::PictureStore;
using kerval::recognizer::StoredPicture;

class TestPictureStore : public QObject
{
    Q_OBJECT

    qint64 m_now = 0;
    PictureStore::Clock clock()
    {
        return [this] { return m_now; };
    }
    static StoredPicture picture(int bytes)
    {
        StoredPicture picture;
        picture.bytes = QByteArray(bytes, 'x');
        return picture;
    }

private slots:
    void init() { m_now = 0; }

    void idsAreLongHexadecimalAndNeverTheSame()
    {
        PictureStore store(clock());
        QSet<QString> ids;
        QString session;
        for (int i = 0; i < 15; ++i)
            ids.insert(session = store.addPicture(picture(1)));
        for (int i = 0; i < 400; ++i)
            ids.insert(*store.addLetter(session, picture(1)));
        QCOMPARE(ids.size(), 415);
        for (const QString& id : qAsConst(ids)) {
            QCOMPARE(id.size(), 32);
            QVERIFY(kerval::recognizer::values::isPictureId(id));
        }
        QVERIFY(!store.picture(QStringLiteral("0")));
        QVERIFY(!store.addLetter(QStringLiteral("0"), picture(1)));
    }

    void aSessionIsForgottenAnHourAfterItsLastUse()
    {
        PictureStore store(clock());
        const QString old = store.addPicture(picture(10));
        const QString used = store.addPicture(picture(10));
        const QString letter = *store.addLetter(used, picture(10));
        m_now = 59 * 60 * 1000;
        QVERIFY(store.picture(letter)); // keeps the picture it came from as well
        m_now = 60 * 60 * 1000;
        QVERIFY(!store.picture(old));
        QVERIFY(store.picture(used));
        m_now += 60 * 60 * 1000 - 1;
        QCOMPARE(store.count(), 2);
        ++m_now;
        store.forgetExpired();
        QVERIFY(store.isEmpty());
        QCOMPARE(store.bytes(), 0);
    }

    void theSessionLongestUnusedMakesRoom()
    {
        PictureStore::Limits limits;
        limits.sessions = 3;
        PictureStore store(clock(), limits);
        const QString first = store.addPicture(picture(1));
        const QString second = store.addPicture(picture(1));
        const QString third = store.addPicture(picture(1));
        QVERIFY(store.picture(first));
        const QString fourth = store.addPicture(picture(1));
        QVERIFY(store.picture(first) && store.picture(third) && store.picture(fourth));
        QVERIFY(!store.picture(second));
    }

    void bytesAreBounded()
    {
        PictureStore::Limits limits;
        limits.bytes = 100;
        PictureStore store(clock(), limits);
        const QString other = store.addPicture(picture(40));
        const QString session = store.addPicture(picture(40));
        const QString letter = *store.addLetter(session, picture(30)); // 110: the other session goes
        QVERIFY(!store.picture(other));
        const QString newer = *store.addLetter(session, picture(20));
        QVERIFY(store.picture(letter));
        const QString newest = *store.addLetter(session, picture(20)); // of the letters the one unused goes
        QVERIFY(!store.picture(newer));
        QVERIFY(store.picture(session) && store.picture(letter) && store.picture(newest));
        QCOMPARE(store.bytes(), 90);
        const QString large = store.addPicture(picture(500)); // kept, alone
        QVERIFY(store.picture(large));
        QCOMPARE(store.count(), 1);
        QCOMPARE(store.bytes(), 500);
    }

    void lettersAreBounded()
    {
        PictureStore::Limits limits;
        limits.lettersPerSession = 10;
        PictureStore store(clock(), limits);
        const QString session = store.addPicture(picture(1));
        const QString letter = *store.addLetter(session, picture(1));
        QString last = letter;
        for (int i = 0; i < 100; ++i)
            last = *store.addLetter(last, picture(1)); // a letter of a letter
        QCOMPARE(store.count(), 11);
        QVERIFY(store.picture(session) && store.picture(last));
        QVERIFY(!store.picture(letter));
    }

    void aPermitIsGoodOnceAndForAMinute()
    {
        AddressPermits permits(clock());
        const QUrl typed(QStringLiteral("http://nas.local/a b.png?x=1%262"));
        permits.add(typed);
        QVERIFY(!permits.take(QUrl(QStringLiteral("http://nas.local/other.png"))));
        // As it arrives through the client's form.
        QVERIFY(permits.take(QUrl(typed.toString())));
        QVERIFY(!permits.take(typed));
        permits.add(typed);
        m_now = 60 * 1000;
        QVERIFY(!permits.take(typed));
        for (int i = 0; i < 1000; ++i)
            permits.add(typed);
        int taken = 0;
        while (permits.take(typed))
            ++taken;
        QVERIFY(taken <= 32);
    }
};

KERVAL_TEST(TestPictureStore)
#include "tst_picturestore.moc"
