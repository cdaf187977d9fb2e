#include "bench/similarity/SurveyCatalogue.h"

#include "helpers/common/FeatureBlob.h"

#include <QFile>
#include <QProcess>

#include <sqlite3.h>
#include <string>

using namespace kerval::helpers;

namespace {

void execute(sqlite3* database, const char* sql)
{
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", sql, sqlite3_errmsg(database));
}

} // namespace

void writeCatalogue(const QString& path, const std::vector<SurveyedFace>& faces, int count)
{
    sqlite3* database = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &database);
    execute(database, "PRAGMA synchronous = OFF");
    execute(database,
            "CREATE TABLE font (id INTEGER PRIMARY KEY, ps_name, other_info2, hwi, hwe, hhe, sc_all, sc_body, "
            "sc_head, deleted)");
    execute(database, "CREATE TABLE feature (font_id INTEGER NOT NULL, character INTEGER, featuredata BLOB)");
    execute(database, "CREATE INDEX index_feature_font_id ON feature (font_id)");
    execute(database, "BEGIN");
    sqlite3_stmt* font = nullptr;
    sqlite3_stmt* feature = nullptr;
    sqlite3_prepare_v2(database, "INSERT INTO font VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, 0)", -1, &font, nullptr);
    sqlite3_prepare_v2(database, "INSERT INTO feature VALUES (?, 0, ?)", -1, &feature, nullptr);
    for (int id = 1; id <= count; ++id) {
        const SurveyedFace& face = faces[std::size_t(id - 1) % faces.size()];
        const krv::FaceAnalysis& shape = face.analysis;
        const float change = 1 + 1e-6F * float(std::size_t(id - 1) / faces.size());
        std::string blob;
        for (std::size_t letter = 0; letter < featureAlphabet.size(); ++letter) {
            FeatureVector vector = shape.features[letter];
            for (float& value : vector)
                value *= change;
            appendFeature(blob, static_cast<unsigned char>(featureAlphabet[letter]), vector);
        }
        const QByteArray name = face.postScriptName.toUtf8() + QByteArray::number(id);
        sqlite3_bind_int(font, 1, id);
        sqlite3_bind_text(font, 2, name.constData(), name.size(), SQLITE_TRANSIENT);
        sqlite3_bind_text(font, 3, shape.classification.c_str(), -1, SQLITE_TRANSIENT);
        const int numbers[] = {
            shape.hwi, shape.hwe, shape.hhe, shape.smartChoiceAll, shape.smartChoiceBody, shape.smartChoiceHead};
        for (int i = 0; i < 6; ++i)
            sqlite3_bind_int(font, 4 + i, numbers[i]);
        sqlite3_bind_int(feature, 1, id);
        sqlite3_bind_blob(feature, 2, blob.data(), int(blob.size()), SQLITE_TRANSIENT);
        sqlite3_step(font);
        sqlite3_step(feature);
        sqlite3_reset(font);
        sqlite3_reset(feature);
    }
    sqlite3_finalize(font);
    sqlite3_finalize(feature);
    execute(database, "COMMIT");
    sqlite3_close(database);
}

void extractCatalogue(const QString& database, const QString& featuresFolder)
{
    runHelper("krvextractfeatures.exe",
              {QStringLiteral("--createfolder"), QStringLiteral("-d"), hexPath(database), QStringLiteral("-f"),
               hexPath(featuresFolder), QStringLiteral("-r"), QStringLiteral("QSQLITE"), QStringLiteral("-m"),
               QStringLiteral("zerocharacter")});
}

void runHelper(const char* program, const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(KERVAL_BIN_DIR "/") + QLatin1String(program), arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("%s: %s", program, process.readAllStandardError().constData());
}

QString hexPath(const QString& path)
{
    return QStringLiteral("0x") + QString::fromLatin1(QFile::encodeName(path).toHex());
}
