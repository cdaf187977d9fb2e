#include "tests/qtService/management/LibraryFixture.h"

#include "qtService/app/core/SettingsFolders.h"
#include "qtService/database/CachedFontRepositoryStrategy.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/RelationalFeatureRepositoryStrategy.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/KrvSimilarityWrapper.h"
#include "tests/support/testtree.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QtEndian>

namespace kerval::testing {

LibraryFixture::LibraryFixture()
    : userDatabase(QSharedPointer<KrvUserDatabase>::create())
{
    userDatabase->open(path(QStringLiteral("user.db")));
    database = QSharedPointer<FontDatabase>::create(path(QStringLiteral("fms.db")));
    repository = QSharedPointer<KrvFontRepository>::create(
        QSharedPointer<CachedFontRepositoryStrategy>::create(
            QSharedPointer<RelationalFontRepositoryStrategy>::create(database)),
        userDatabase.data());
    features = QSharedPointer<KrvFeatureRepository>::create(
        QSharedPointer<RelationalFeatureRepositoryStrategy>::create(database));
    const QString bin = QStringLiteral(KERVAL_BIN_DIR);
    similarity = QSharedPointer<KrvSimilarityWrapper>::create(
        bin + QStringLiteral("/krvextractfeatures.exe"), bin + QStringLiteral("/krvfindsimilar.exe"),
        path(QStringLiteral("features")), repository, database->databaseFileName(), 1, QString(), QString());
}

LibraryFixture::~LibraryFixture() = default;

QString LibraryFixture::adderProgram() const
{
    return QStringLiteral(KERVAL_BIN_DIR "/krvfontadder.exe");
}

QSharedPointer<FontAdder> LibraryFixture::createAdder(const QString& program)
{
    return QSharedPointer<FontAdder>::create(program, similarity.data(), userDatabase.data(), repository, features);
}

int LibraryFixture::addRecord(const QString& fileName, int faceIndex)
{
    const auto font = StaticFontPtr::create();
    font->setFileName(fileName);
    font->setFaceIndex(faceIndex);
    font->setFileHash(fileName);
    font->setFileExists(true);
    return repository->addFonts({font}) ? font->id() : 0;
}

QStringList systemFontFiles(int count)
{
    const QDir fonts(QStringLiteral("/usr/share/fonts/truetype/dejavu"));
    QStringList files;
    for (const QString& name : fonts.entryList({QStringLiteral("*.ttf")}, QDir::Files, QDir::Name).mid(0, count))
        files.append(fonts.filePath(name));
    if (files.size() < count)
        qFatal("%d DejaVu fonts are needed, the package fonts-dejavu-extra has them", count);
    return files;
}

QStringList copyFonts(const QString& folder, int count)
{
    QStringList copies;
    for (const QString& file : systemFontFiles(count)) {
        copies.append(folder + QLatin1Char('/') + QFileInfo(file).fileName());
        writeFile(copies.last(), readFile(file));
    }
    return copies;
}

namespace {

// Calls change with (name id, text begin, text length, unit size) for each record of the name table.
template <class Change>
QByteArray withNames(QByteArray font, Change change)
{
    uchar* const data = reinterpret_cast<uchar*>(font.data());
    for (int table = 0; table < qFromBigEndian<quint16>(data + 4); ++table) {
        uchar* const entry = data + 12 + 16 * table;
        if (qstrncmp(reinterpret_cast<char*>(entry), "name", 4) != 0)
            continue;
        uchar* const names = data + qFromBigEndian<quint32>(entry + 8);
        uchar* const texts = names + qFromBigEndian<quint16>(names + 4);
        for (int i = 0; i < qFromBigEndian<quint16>(names + 2); ++i) {
            uchar* const record = names + 6 + 12 * i;
            const int unit = qFromBigEndian<quint16>(record) == 1 ? 1 : 2;
            change(record, texts + qFromBigEndian<quint16>(record + 10), unit);
        }
    }
    return font;
}

} // namespace

QByteArray renamedFont(const QByteArray& font, char firstLetter)
{
    return withNames(font, [firstLetter](uchar* record, uchar* text, int unit) {
        const int nameId = qFromBigEndian<quint16>(record + 6);
        if (nameId == 1 || nameId == 16)
            text[unit - 1] = uchar(firstLetter);
    });
}

QByteArray oddlyNamedFont(const QByteArray& font, char secondLetter)
{
    return withNames(font, [secondLetter](uchar* record, uchar* text, int unit) {
        if (qFromBigEndian<quint16>(record + 6) == 6)
            text[2 * unit - 1] = uchar(secondLetter);
    });
}

QByteArray namelessFont(const QByteArray& font)
{
    return withNames(font, [](uchar* record, uchar*, int) { qToBigEndian<quint16>(200, record + 6); });
}

QString writeScript(const QString& path, const QByteArray& commands)
{
    writeFile(path, "#!/bin/sh\n" + commands);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

void clearSettings()
{
    QDir(krv::userSettingsFolder()).removeRecursively();
    krv::userSettingsFolder();
}

} // namespace kerval::testing
