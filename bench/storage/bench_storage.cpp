// Storing, loading and searching a catalogue of 100,000 faces, and the memory it takes.
#include "bench/storage/GeneratedCatalogue.h"
#include "bench/storage/PlainRecords.h"
#include "bench/support/bench.h"
#include "qtService/database/CachedFontRepositoryStrategy.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cstdio>

using namespace kerval::bench;

namespace {

constexpr int CatalogueSize = 100000;
constexpr int StoredRows = 10000;

QList<FontDatabase::FontTableColumn> storedColumns()
{
    auto columns = RelationalFontRepositoryStrategy::propertyColumns().values();
    columns.removeOne(FontDatabase::id);
    std::sort(columns.begin(), columns.end());
    return columns;
}

// The rows of the fonts as the values that are bound, made outside the measured time.
std::vector<std::vector<QVariant>> boundValues(const FontDatabase& database, const QList<StaticFontPtr>& fonts)
{
    const auto& properties = RelationalFontRepositoryStrategy::propertyColumns();
    const auto columns = storedColumns();
    std::vector<std::vector<QVariant>> rows;
    for (const StaticFontPtr& font : fonts) {
        std::vector<QVariant> row;
        for (auto column : columns) {
            const QVariant value = font->property(properties.key(column).toUtf8().constData());
            row.push_back(database.fontTransformation()->toDatabase(column, value));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

void benchStoring()
{
    const QList<StaticFontPtr> fonts = generateFonts(StoredRows);
    int round = 0;
    QTemporaryDir folder;
    const auto newFile = [&] { return folder.filePath(QString::number(++round)); };
    compare(
        "store a row", 1.5,
        [&] {
            RelationalFontRepositoryStrategy strategy(QSharedPointer<FontDatabase>::create(newFile()));
            for (const StaticFontPtr& font : fonts)
                font->setId(fms::StaticFont::NewId);
            return seconds([&] { strategy.addFonts(fonts); });
        },
        [&] {
            const FontDatabase database(newFile());
            const auto rows = boundValues(database, fonts);
            QStringList names;
            QStringList marks;
            for (auto column : storedColumns()) {
                names.append(database.fontColumnName(column));
                marks.append(QStringLiteral("?"));
            }
            QSqlDatabase connection = database.connectionFactory()->database();
            return seconds([&] {
                connection.transaction();
                {
                    QSqlQuery query(connection);
                    query.prepare(QStringLiteral("INSERT INTO font (%1) VALUES (%2)")
                                      .arg(names.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
                    for (const auto& row : rows) {
                        for (size_t i = 0; i < row.size(); ++i)
                            query.bindValue(int(i), row[i]);
                        query.exec();
                    }
                }
                connection.commit();
            });
        },
        7, StoredRows, "us");
}

void benchLoading(const QString& file)
{
    std::vector<std::string> texts;
    std::vector<std::string> numbers;
    {
        const FontDatabase database(file);
        for (auto column : storedColumns()) {
            const bool isNumber = database.plainFontColumns().contains(column) && column != FontDatabase::style_field &&
                                  column != FontDatabase::serif_style;
            (isNumber ? numbers : texts).push_back(database.fontColumnName(column).toStdString());
        }
        numbers.emplace_back("id");
    }
    compare(
        "load 100,000 records", 1.8,
        [&] {
            QSharedPointer<CachedFontRepositoryStrategy> cache;
            return seconds([&] {
                cache = QSharedPointer<CachedFontRepositoryStrategy>::create(
                    QSharedPointer<RelationalFontRepositoryStrategy>::create(
                        QSharedPointer<FontDatabase>::create(file)));
            });
        },
        [&] {
            std::vector<PlainRecord> records;
            return seconds([&] { records = readPlainRecords(file.toStdString(), texts, numbers); });
        },
        5);
}

MatchingCriteriaPtr search(const std::vector<QString>& words)
{
    auto criteria = MatchingCriteria::allOf();
    for (const QString& word : words) {
        auto anywhere = MatchingCriteria::anyOf();
        for (const char* property :
             {"designer", "styleName", "familyName", "description", "userNote", "foundry", "license"})
            anywhere->append(
                MatchingCriteria::leaf(MatchingCriteria::Contains, QLatin1String(property), word, Qt::CaseInsensitive));
        criteria->append(anywhere);
    }
    return criteria;
}

void benchSearching(const QString& file)
{
    CachedFontRepositoryStrategy cache(
        QSharedPointer<RelationalFontRepositoryStrategy>::create(QSharedPointer<FontDatabase>::create(file)));
    std::vector<PlainSearchRecord> plain;
    const auto own = [](const QString& text) { return QString(text.constData(), text.size()); };
    for (const StaticFontPtr& font : cache.fonts()) {
        plain.push_back({own(font->designer()), own(font->styleName()), own(font->familyName()),
                         own(font->description()), own(font->userNote()), own(font->foundry()), own(font->license())});
    }
    const auto row = [&](const char* what, const std::vector<QString>& words) {
        const auto criteria = search(words);
        int found = 0;
        int expected = 0;
        // Folding the texts happens once in a run, with the first search.
        compare(
            what, 0.5, [&] { return seconds([&] { found = cache.findMatchingFontIds(criteria).size(); }); },
            [&] { return seconds([&] { expected = countMatches(plain, words); }); });
        if (found != expected)
            std::printf("DIFFERENT RESULTS: %d and %d\n", found, expected);
    };
    row("search for three words, some found",
        {QStringLiteral("garamond"), QStringLiteral("bold"), QStringLiteral("serif")});
    row("search for three words, none found",
        {QStringLiteral("counters"), QStringLiteral("helvetica"), QStringLiteral("grotesk")});
}

double residentMebibytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.mid(6).simplified().split(' ').first().toDouble() / 1024;
        }
    }
    return 0;
}

// In a process of its own, after one search, as the service holds it: loaded, hashed for the user's data, folded.
void reportMemory(const QString& file)
{
    CachedFontRepositoryStrategy cache(
        QSharedPointer<RelationalFontRepositoryStrategy>::create(QSharedPointer<FontDatabase>::create(file)));
    cache.fontsForHash(QString());
    cache.findMatchingFontIds(search({QStringLiteral("nothing of the kind")}));
    atMost("resident with 100,000 records", residentMebibytes(), 400, "MiB");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--memory") == 0) {
        reportMemory(QString::fromLocal8Bit(argv[2]));
        return 0;
    }
    // "--only store|load|search|memory" for whoever works on one of them.
    const QString only = argc == 3 && qstrcmp(argv[1], "--only") == 0 ? QString::fromLocal8Bit(argv[2]) : QString();
    const auto wanted = [&only](const char* part) { return only.isEmpty() || only == QLatin1String(part); };
    if (wanted("store"))
        benchStoring();
    if (only == QLatin1String("store"))
        return 0;

    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("fms.db"));
    {
        RelationalFontRepositoryStrategy strategy(QSharedPointer<FontDatabase>::create(file));
        for (int done = 0; done < CatalogueSize; done += 10000)
            strategy.addFonts(generateFonts(10000, done));
    }
    if (wanted("load"))
        benchLoading(file);
    if (wanted("search"))
        benchSearching(file);
    if (wanted("memory"))
        return QProcess::execute(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), file});
    return 0;
}
