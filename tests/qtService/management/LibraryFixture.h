#pragma once

#include <QSharedPointer>
#include <QStringList>
#include <QTemporaryDir>

class FontAdder;
class FontDatabase;
class KrvFeatureRepository;
class KrvFontRepository;
class KrvSimilarityWrapper;
class KrvUserDatabase;

namespace kerval::testing {

// A catalogue and a user database of their own in a temporary folder, and fonts to fill them with.
struct LibraryFixture
{
    LibraryFixture();
    ~LibraryFixture();

    QTemporaryDir folder;
    QSharedPointer<KrvUserDatabase> userDatabase;
    QSharedPointer<FontDatabase> database;
    QSharedPointer<KrvFontRepository> repository;
    QSharedPointer<KrvFeatureRepository> features;
    QSharedPointer<KrvSimilarityWrapper> similarity;

    QString path(const QString& name) const { return folder.filePath(name); }
    QString adderProgram() const;
    QSharedPointer<FontAdder> createAdder(const QString& program);
    // Stores a record of the file; its id.
    int addRecord(const QString& fileName, int faceIndex = 0);
};

// The DejaVu fonts of the system, as many as asked for.
QStringList systemFontFiles(int count);
// Copies them into a folder under their own names; the copies.
QStringList copyFonts(const QString& folder, int count);
// The font with another first letter of its family names, with a blank or another sign as second letter of its
// PostScript names, and without any names that matter.
QByteArray renamedFont(const QByteArray& font, char firstLetter);
QByteArray oddlyNamedFont(const QByteArray& font, char secondLetter);
QByteArray namelessFont(const QByteArray& font);
// An executable script; its path.
QString writeScript(const QString& path, const QByteArray& commands);

// Makes the settings folder forget what earlier tests left in it.
void clearSettings();

} // namespace kerval::testing
