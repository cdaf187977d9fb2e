#include "tests/qtService/database/TestLibrary.h"

#include "qtService/database/CachedFontRepositoryStrategy.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "qtService/management/systemfm/SystemFontManager.h"
#include "tests/qtService/database/FakeFontManagerStrategy.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <memory>

using kerval::systemfm::SystemFontManager;

TestLibrary::TestLibrary()
{
    auto fake = std::make_unique<FakeFontManagerStrategy>();
    systemFonts = fake.get();
    systemFontManager.reset(new SystemFontManager(std::move(fake), nullptr));
    restart();
}

TestLibrary::~TestLibrary()
{
    repository.reset();
    strategy.reset();
    userDatabase.reset();
    m_fontDatabase.reset();
}

void TestLibrary::restart()
{
    repository.reset();
    strategy.reset();
    userDatabase.reset();
    m_fontDatabase.reset();
    userDatabase.reset(new KrvUserDatabase);
    if (!userDatabase->open(m_folder.filePath(QStringLiteral("user.db"))))
        qFatal("no user.db");
    m_fontDatabase.reset(new FontDatabase(m_folder.filePath(QStringLiteral("fms.db")), nullptr));
    strategy.reset(
        new CachedFontRepositoryStrategy(QSharedPointer<RelationalFontRepositoryStrategy>::create(m_fontDatabase)));
    repository.reset(new KrvFontRepository(strategy, userDatabase.data(), systemFontManager.data()));
}

StaticFontPtr TestLibrary::makeFont(const QString& fileName, const QString& content, int faceIndex, uint added)
{
    const auto font = StaticFontPtr::create();
    font->setFileName(fileName);
    font->setOriginalFileName(fileName);
    font->setFamilyName(QFileInfo(fileName).baseName());
    font->setStyleName(QStringLiteral("Regular"));
    font->setPostScriptName(QFileInfo(fileName).baseName());
    font->setFoundry(QStringLiteral("Foundry %1").arg(content.size() % 3));
    font->setFormat(QStringLiteral("TrueType"));
    font->setFileHash(
        QString::fromLatin1(QCryptographicHash::hash(content.toUtf8(), QCryptographicHash::Sha1).toHex()));
    font->setFaceIndex(faceIndex);
    font->setDateAdded(QDateTime::fromSecsSinceEpoch(added));
    return font;
}

QList<int> TestLibrary::addFonts(const QList<StaticFontPtr>& fonts)
{
    repository->addFonts(fonts);
    QList<int> ids;
    for (const StaticFontPtr& font : fonts)
        ids.append(font->id());
    return ids;
}
