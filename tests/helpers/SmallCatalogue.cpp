#include "tests/helpers/SmallCatalogue.h"

#include "helpers/common/ByteScrambling.h"
#include "helpers/common/FeatureBlob.h"
#include "helpers/shape/GlyphFeatures.h"

#include <QFile>
#include <QProcess>

#include <sqlite3.h>

using namespace kerval::helpers;

namespace kerval::testing {

SmallCatalogue::SmallCatalogue(const QString& path)
    : m_path(path)
{
    sqlite3_open(QFile::encodeName(path).constData(), &m_database);
    run("PRAGMA synchronous = OFF");
    run("CREATE TABLE font (id INTEGER PRIMARY KEY, ps_name, other_info2, hwi, hwe, hhe, sc_all, sc_body, sc_head, "
        "deleted)");
    run("CREATE TABLE feature (font_id, character, featuredata)");
}

SmallCatalogue::~SmallCatalogue()
{
    sqlite3_close(m_database);
}

void SmallCatalogue::add(int id, const char* name, const char* keywords, float look, int weight, int score)
{
    std::string blob;
    for (const char character : featureAlphabet) {
        FeatureVector vector;
        vector.fill(look);
        vector[krv::kSlantValue] = 0;
        appendFeature(blob, static_cast<unsigned char>(character), vector);
    }
    addFont(id, name, keywords, weight, score);
    addBlob(id, blob);
}

void SmallCatalogue::addFont(int id, const char* name, const char* keywords, int weight, int score)
{
    const QString sql = QStringLiteral("INSERT INTO font VALUES (%1, '%2', '%3', 900, %4, 690, %5, %5, %5, 0)");
    run(sql.arg(id).arg(QLatin1String(name), QLatin1String(keywords)).arg(weight).arg(score).toUtf8());
}

void SmallCatalogue::addBlob(int id, const std::string& blob)
{
    const QByteArray hex = QByteArray::fromStdString(blob).toHex();
    run("INSERT INTO feature VALUES (" + QByteArray::number(id) + ", 0, x'" + hex + "')");
}

void SmallCatalogue::run(const QByteArray& sql)
{
    if (sqlite3_exec(m_database, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql.left(80).constData(), sqlite3_errmsg(m_database));
}

void SmallCatalogue::addTwoLooks(int id, const char* name, float faceLetters, float otherLetters)
{
    std::string blob;
    for (const char character : featureAlphabet) {
        FeatureVector vector;
        vector.fill(std::string_view("htlaf").find(character) != std::string_view::npos ? faceLetters : otherLetters);
        appendFeature(blob, static_cast<unsigned char>(character), vector);
    }
    addFont(id, name, "Modern");
    addBlob(id, blob);
}

QString hexPath(const QString& path)
{
    return QStringLiteral("0x") + QString::fromLatin1(QFile::encodeName(path).toHex());
}

QStringList extraction(const QString& database, const QString& folder)
{
    return {QStringLiteral("--createfolder"),
            QStringLiteral("-d"),
            hexPath(database),
            QStringLiteral("-f"),
            hexPath(folder),
            QStringLiteral("-r"),
            QStringLiteral("QSQLITE"),
            QStringLiteral("-m"),
            QStringLiteral("zerocharacter")};
}

Answer start(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(KERVAL_BIN_DIR "/") + program, arguments);
    process.write(input);
    process.closeWriteChannel();
    Answer answer;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        answer.exitCode = process.exitCode();
    answer.output = process.readAllStandardOutput();
    answer.complaint = process.readAllStandardError();
    return answer;
}

Answer extract(const QString& database, const QString& folder)
{
    return start(QStringLiteral("krvextractfeatures.exe"), extraction(database, folder));
}

Answer find(const QString& folder, const char* method, int font, int limit, const QByteArray& ids,
            const QString& characters)
{
    QStringList arguments = {QStringLiteral("-f"), hexPath(folder),
                             QStringLiteral("-t"), characters,
                             QStringLiteral("-i"), QString::number(font),
                             QStringLiteral("-l"), QString::number(limit),
                             QStringLiteral("-o"), QStringLiteral("{id}:{deviance}\\n"),
                             QStringLiteral("-m"), QString::fromLatin1(method)};
    if (!ids.isEmpty())
        arguments << QStringLiteral("--stdininids");
    Answer answer = start(QStringLiteral("krvfindsimilar.exe"), arguments, ids.isEmpty() ? ids : ids + "\n");
    const auto text = unseal(answer.output.toStdString());
    for (const QString& line : QString::fromStdString(text.value_or("")).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        answer.ids << line.section(QLatin1Char(':'), 0, 0).toInt();
        answer.deviances << line.section(QLatin1Char(':'), 1).toDouble();
    }
    return answer;
}

QString inFolder(const QString& folder, std::string_view name)
{
    return folder + QLatin1Char('/') + QString::fromLatin1(name.data(), int(name.size()));
}

bool extractThreeFaces(SmallCatalogue& catalogue, const QString& folder)
{
    catalogue.add(3, "Alpha-Regular", "Modern", 1.0F);
    catalogue.add(5, "Gamma-Regular", "Classic, Serif", 1.5F);
    catalogue.add(9, "Beta-Regular", "Modern", 1.1F);
    return extract(catalogue.path(), folder).exitCode == 0;
}

} // namespace kerval::testing
