#include "qtService/database/StaticFont.h"
#include "qtService/management/systemfm/SystemFontManager.h"
#include "tests/qtService/database/FakeFontManagerStrategy.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/qtService/management/StandardGroups.h"
#include "tests/support/testregistry.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <thread>

using kerval::systemfm::ActivityType;
using Ids = SystemFontGroupList;

namespace {

struct ModelFont
{
    QString fileName;
    QString content;
    QString hash;
    int face = 0;
    uint added = 0;
    bool hidden = false;
    bool exists = true;
    int activity = 0;
    uint activated = 0;
    uint deactivated = 0;
};

struct ModelGroup
{
    QString name;
    QSet<QString> hashes;
};

// What the library should hold, in the plainest terms.
struct Model
{
    QMap<int, ModelFont> fonts;
    QSet<QString> hiddenHashes; // outlive the fonts
    QHash<QString, int> activeFiles;
    QMap<int, ModelGroup> groups;
    QList<int> recentlyAdded; // fonts of "All Fonts", oldest first

    bool inAll(int id) const { return fonts[id].exists && !fonts[id].hidden; }

    int duplicates(int id) const
    {
        return int(std::count_if(fonts.cbegin(), fonts.cend(),
                                 [&](const ModelFont& other) {
                                     return other.content == fonts[id].content && other.face == fonts[id].face;
                                 })) -
               1;
    }

    QSet<int> select(const std::function<bool(int)>& belongs) const
    {
        QSet<int> ids;
        for (auto it = fonts.constBegin(); it != fonts.constEnd(); ++it) {
            if (belongs(it.key()))
                ids.insert(it.key());
        }
        return ids;
    }

    QList<int> newest(uint ModelFont::*date) const
    {
        QList<QPair<qint64, int>> dated;
        for (auto it = fonts.constBegin(); it != fonts.constEnd(); ++it) {
            if (inAll(it.key()) && it.value().*date)
                dated.append({-qint64(it.value().*date), it.key()});
        }
        std::sort(dated.begin(), dated.end());
        QList<int> ids;
        for (const auto& entry : qAsConst(dated))
            ids.append(entry.second);
        return ids.mid(0, StandardGroups::RecentLimit);
    }

    // Fonts that came into "All Fonts" by one change, oldest first, go behind those that were there.
    void follow(const QSet<int>& before)
    {
        QList<int> entered;
        for (int id : select([this](int font) { return inAll(font); })) {
            if (!before.contains(id))
                entered.append(id);
        }
        std::sort(entered.begin(), entered.end(), [this](int a, int b) { return fonts[a].added < fonts[b].added; });
        QList<int> kept;
        for (int id : qAsConst(recentlyAdded)) {
            if (fonts.contains(id) && inAll(id))
                kept.append(id);
        }
        recentlyAdded = kept + entered;
    }
};

} // namespace

// Drives repository, user database and system fonts at random and compares every group with a plain model after every
// step; a set that follows only the group's signals must come to the same.
class FontGroupsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void groupsStayRight_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed : {1u, 2u, 3u})
            QTest::addRow("seed %u", seed) << seed;
        const quint32 today = quint32(QDate::currentDate().toJulianDay());
        QTest::addRow("today's seed %u", today) << today;
    }

    void groupsStayRight()
    {
        QFETCH(quint32, seed);
        m_random.seed(seed);
        m_model = Model();
        m_clock = 1000;
        m_library.reset(new TestLibrary);
        m_groups.reset(new StandardGroups(m_library->repository, m_library->userDatabase.data()));
        for (int step = 0; step < 250 && !QTest::currentTestFailed(); ++step) {
            const QSet<int> before = m_model.select([this](int id) { return m_model.inAll(id); });
            const QString what = change();
            m_model.follow(before);
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
            compare(QStringLiteral("step %1, %2").arg(step).arg(what));
        }
        m_groups.reset();
        m_library.reset();
    }

    void cleanup()
    {
        m_groups.reset();
        m_library.reset();
    }

private:
    bool chance(int percent) { return m_random.bounded(100) < percent; }

    QList<int> someFonts()
    {
        QList<int> ids = m_model.fonts.keys();
        std::shuffle(ids.begin(), ids.end(), m_random);
        // Mostly few, sometimes enough for the ways that large changes take.
        return ids.mid(0, m_random.bounded(chance(20) ? 60 : 6));
    }

    // A third of the changes are made as commands make them, on another thread.
    void make(const std::function<void()>& work)
    {
        if (!chance(33)) {
            work();
            return;
        }
        std::thread(work).join();
    }

    void update(const QList<int>& ids, const QStringList& properties,
                const std::function<void(fms::StaticFont&, ModelFont&)>& set)
    {
        QList<StaticFontPtr> fonts;
        for (int id : ids) {
            fonts.append(m_library->repository->font(id));
            set(*fonts.last(), m_model.fonts[id]);
        }
        make([&] { QVERIFY(m_library->repository->updateFonts(fonts, properties)); });
    }

    QString change()
    {
        const int kind = m_random.bounded(100);
        if (kind < 25)
            return addFonts();
        if (kind < 35)
            return removeFonts();
        if (kind < 55)
            return hideFonts();
        if (kind < 62)
            return loseFiles();
        if (kind < 74)
            return activate();
        if (kind < 80)
            return changeSystemFonts();
        if (kind < 99)
            return changeGroups();
        return removeAll();
    }

    QString addFonts()
    {
        QList<StaticFontPtr> records;
        QList<ModelFont> fonts;
        const int count = 1 + m_random.bounded(chance(15) ? 40 : 5);
        for (int i = 0; i < count; ++i) {
            ModelFont font;
            static const QStringList folders{QStringLiteral("/usr/share/fonts/"), QStringLiteral("/home/fonts/")};
            static const QStringList names{QStringLiteral("arial.ttf"), QStringLiteral("Arial.ttf"),
                                           QStringLiteral("a.otf"), QStringLiteral("b.otf")};
            // Few paths and contents, so that fonts come back and have copies.
            font.fileName = folders.at(m_random.bounded(2)) + QString::number(m_random.bounded(40)) + QLatin1Char('/') +
                            names.at(m_random.bounded(4));
            font.content = QString::number(m_random.bounded(60));
            font.face = m_random.bounded(2);
            font.added = ++m_clock;
            const auto record = TestLibrary::makeFont(font.fileName, font.content, font.face, font.added);
            font.hash = record->fontHash();
            const auto sameHash = [&](const ModelFont& other) { return other.hash == font.hash; };
            if (std::any_of(m_model.fonts.cbegin(), m_model.fonts.cend(), sameHash) ||
                std::any_of(fonts.cbegin(), fonts.cend(), sameHash))
                continue;
            font.hidden = m_model.hiddenHashes.contains(font.hash);
            font.activity = m_model.activeFiles.value(font.fileName);
            records.append(record);
            fonts.append(font);
        }
        make([&] { m_library->addFonts(records); });
        for (int i = 0; i < fonts.size(); ++i)
            m_model.fonts.insert(records.at(i)->id(), fonts.at(i));
        return QStringLiteral("added %1").arg(fonts.size());
    }

    QString removeFonts()
    {
        QList<StaticFontPtr> records;
        for (int id : someFonts()) {
            records.append(m_library->repository->font(id));
            m_model.fonts.remove(id);
        }
        make([&] { QVERIFY(m_library->repository->removeFonts(records)); });
        return QStringLiteral("removed %1").arg(records.size());
    }

    QString hideFonts()
    {
        const bool hidden = chance(60);
        const QList<int> ids = someFonts();
        for (int id : ids) {
            if (hidden)
                m_model.hiddenHashes.insert(m_model.fonts[id].hash);
            else
                m_model.hiddenHashes.remove(m_model.fonts[id].hash);
        }
        update(ids, {QStringLiteral("isHidden")}, [hidden](fms::StaticFont& record, ModelFont& font) {
            record.setIsHidden(hidden);
            font.hidden = hidden;
        });
        return QStringLiteral("hidden %1: %2").arg(ids.size()).arg(hidden);
    }

    QString loseFiles()
    {
        const bool exists = chance(60);
        update(someFonts(), {QStringLiteral("fileExists")}, [exists](fms::StaticFont& record, ModelFont& font) {
            record.setFileExists(exists);
            font.exists = exists;
        });
        return QStringLiteral("files exist: %1").arg(exists);
    }

    // All faces of a file change together, as activation does it.
    QString activate()
    {
        const int activity = m_random.bounded(3);
        QSet<QString> files;
        for (int id : someFonts())
            files.insert(m_model.fonts[id].fileName);
        const auto ofFiles = m_model.select([&](int id) { return files.contains(m_model.fonts[id].fileName); });
        const uint now = ++m_clock;
        for (const QString& file : qAsConst(files)) {
            if (activity)
                m_model.activeFiles.insert(file, activity);
            else
                m_model.activeFiles.remove(file);
        }
        update(ofFiles.values(),
               {QStringLiteral("dateActivated"), QStringLiteral("dateDeactivated"), QStringLiteral("activityType")},
               [&](fms::StaticFont& record, ModelFont& font) {
                   font.activity = activity;
                   font.activated = activity ? now : font.activated;
                   font.deactivated = activity ? 0 : now;
                   record.setActivityType(activity);
                   record.setDateActivated(QDateTime::fromSecsSinceEpoch(font.activated));
                   record.setDateDeactivated(QDateTime::fromSecsSinceEpoch(font.deactivated));
               });
        return QStringLiteral("activity %1 of %2 files").arg(activity).arg(files.size());
    }

    QString changeSystemFonts()
    {
        m_model.activeFiles.clear();
        QHash<QString, ActivityType> active;
        for (int id : someFonts()) {
            const int activity = 1 + m_random.bounded(2);
            m_model.activeFiles.insert(m_model.fonts[id].fileName, activity);
            active.insert(m_model.fonts[id].fileName, ActivityType(activity));
        }
        for (ModelFont& font : m_model.fonts)
            font.activity = m_model.activeFiles.value(font.fileName);
        m_library->systemFonts->setActive(active);
        return QStringLiteral("%1 files active in the system").arg(active.size());
    }

    QString changeGroups()
    {
        KrvUserDatabase& database = *m_library->userDatabase;
        if (m_model.groups.isEmpty() || (chance(15) && m_model.groups.size() < 6)) {
            const QString name = QStringLiteral("group %1").arg(++m_clock);
            int id = 0;
            make([&] { id = database.addGroup(name, 0); });
            m_model.groups.insert(id, {name, {}});
            return QStringLiteral("made group %1").arg(id);
        }
        const int id = m_model.groups.keys().at(m_random.bounded(m_model.groups.size()));
        ModelGroup& group = m_model.groups[id];
        QStringList hashes;
        for (int font : someFonts())
            hashes.append(m_model.fonts[font].hash);
        const int kind = m_random.bounded(100);
        if (kind < 50) {
            make([&] { QVERIFY(database.addFontsToGroup(hashes, id)); });
            group.hashes += QSet<QString>(hashes.cbegin(), hashes.cend());
        } else if (kind < 75) {
            make([&] { QVERIFY(database.removeFontsFromGroup(hashes, id)); });
            group.hashes -= QSet<QString>(hashes.cbegin(), hashes.cend());
        } else if (kind < 85) {
            group.name = QStringLiteral("renamed %1").arg(++m_clock);
            make([&] { QVERIFY(database.renameGroup(id, group.name)); });
        } else if (kind < 93) {
            make([&] { QVERIFY(database.clearGroup(id)); });
            group.hashes.clear();
        } else {
            make([&] { QVERIFY(database.removeGroup(id)); });
            m_model.groups.remove(id);
        }
        return QStringLiteral("changed group %1, kind %2, %3 fonts").arg(id).arg(kind).arg(hashes.size());
    }

    QString removeAll()
    {
        make([&] { QVERIFY(m_library->repository->removeAll()); });
        m_model.fonts.clear();
        return QStringLiteral("removed all");
    }

    void compareGroup(int groupId, const QSet<int>& expected, const QString& what)
    {
        const QString where = QStringLiteral("%1: group %2").arg(what).arg(groupId);
        const FontGroupPtr group = m_groups->group(groupId);
        QVERIFY2(group, qPrintable(where));
        QVERIFY2(m_groups->members(groupId) == expected, qPrintable(where));
        QVERIFY2(group->fontCount() == expected.size(), qPrintable(where + QStringLiteral(" counts wrongly")));
        QVERIFY2(m_groups->heardOf(groupId) == expected, qPrintable(where + QStringLiteral(" said something else")));
        QSet<int> found;
        for (const StaticFontPtr& font : group->fonts())
            found.insert(font->id());
        QVERIFY2(found == expected, qPrintable(where + QStringLiteral(" finds something else")));
    }

    void compare(const QString& what)
    {
        const Model& model = m_model;
        const auto all = [&](int id) { return model.inAll(id); };
        compareGroup(Ids::AllFonts, model.select(all), what);
        compareGroup(Ids::ActiveFonts, model.select([&](int id) { return all(id) && model.fonts[id].activity; }), what);
        compareGroup(Ids::InactiveFonts, model.select([&](int id) { return all(id) && !model.fonts[id].activity; }),
                     what);
        compareGroup(Ids::HiddenFonts,
                     model.select([&](int id) { return model.fonts[id].exists && model.fonts[id].hidden; }), what);
        compareGroup(Ids::DuplicateFonts, model.select([&](int id) { return all(id) && model.duplicates(id) > 0; }),
                     what);
        compareGroup(Ids::SystemFonts, model.select([&](int id) {
            const QString& file = model.fonts[id].fileName;
            return all(id) && file.startsWith(QLatin1String("/usr/")) && file.endsWith(QLatin1String("/arial.ttf"));
        }),
                     what);
        compareRecent(Ids::RecentlyAddedFonts, newestAdded(), what);
        compareRecent(Ids::RecentlyActivatedFonts, model.newest(&ModelFont::activated), what);
        compareRecent(Ids::RecentlyDeactivatedFonts, model.newest(&ModelFont::deactivated), what);

        QCOMPARE(m_groups->user->groupIdList(), model.groups.keys());
        for (auto it = model.groups.constBegin(); it != model.groups.constEnd(); ++it) {
            compareGroup(it.key(),
                         model.select([&](int id) { return all(id) && it->hashes.contains(model.fonts[id].hash); }),
                         what);
            QCOMPARE(m_groups->group(it.key())->name(), it->name);
        }
    }

    QList<int> newestAdded() const
    {
        QList<int> ids = m_model.recentlyAdded;
        std::reverse(ids.begin(), ids.end());
        return ids.mid(0, StandardGroups::RecentLimit);
    }

    void compareRecent(int groupId, const QList<int>& expected, const QString& what)
    {
        compareGroup(groupId, QSet<int>(expected.cbegin(), expected.cend()), what);
        QVERIFY2(m_groups->group(groupId)->fontIdList() == expected,
                 qPrintable(QStringLiteral("%1: order of group %2").arg(what).arg(groupId)));
    }

    QRandomGenerator m_random;
    Model m_model;
    uint m_clock = 0;
    QScopedPointer<TestLibrary> m_library;
    QScopedPointer<StandardGroups> m_groups;
};

KERVAL_TEST(FontGroupsModelTest)
#include "FontGroupsModelTest.moc"
