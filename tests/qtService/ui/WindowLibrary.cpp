#include "tests/qtService/ui/WindowLibrary.h"

#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QtTest>

namespace {

// One for the whole process: what looks after the system's fonts lives as long and would fall back to the machine's own
// when its configuration vanished.
void provideFontconfig()
{
    static const QTemporaryDir folder;
    const QByteArray root = QFile::encodeName(folder.path());
    if (qgetenv("FONTCONFIG_FILE") == root + "/fonts.conf")
        return;
    kerval::testing::writeFile(
        folder.filePath(QStringLiteral("fonts.conf")),
        "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\"><fontconfig><dir>" + root +
            "/sys</dir><dir>" + qgetenv("XDG_DATA_HOME") + "/fonts</dir><cachedir>" + root +
            "/cache</cachedir><include ignore_missing=\"yes\">" + qgetenv("XDG_CONFIG_HOME") +
            "/fontconfig/conf.d</include></fontconfig>");
    qputenv("FONTCONFIG_FILE", root + "/fonts.conf");
}

} // namespace

WindowLibrary::WindowLibrary()
{
    QDir(krv::userSettingsFolder()).removeRecursively();
    QDir(m_folder.path()).mkpath(QStringLiteral("fonts"));
    provideFontconfig();
    m_service = QSharedPointer<FontManagementService>::create();
    start();
}

WindowLibrary::~WindowLibrary()
{
    stop();
}

void WindowLibrary::restart()
{
    stop();
    start();
}

void WindowLibrary::start()
{
    m_service->start();
    if (!QTest::qWaitFor([this] { return m_service->isStarted(); }, 30000))
        qFatal("the service does not start");
}

void WindowLibrary::stop()
{
    m_service->stop();
    if (!QTest::qWaitFor([this] { return !m_service->isStarted(); }, 30000))
        qFatal("the service does not stop");
}

QList<int> WindowLibrary::addFonts(int count)
{
    static const QString source = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    QList<StaticFontPtr> fonts;
    QList<int> ids;
    for (int i = 1; i <= count; ++i) {
        const QString file = m_folder.filePath(QStringLiteral("fonts/font%1.ttf").arg(i));
        QFile::link(source, file);
        fonts.append(makeFont(file, QStringLiteral("Family %1").arg(i), QStringLiteral("Family%1-Book").arg(i)));
    }
    m_service->repository()->addFonts(fonts);
    for (const StaticFontPtr& font : qAsConst(fonts))
        ids.append(font->id());
    return ids;
}

StaticFontPtr WindowLibrary::makeFont(const QString& file, const QString& familyName, const QString& postScriptName)
{
    const auto font = StaticFontPtr::create();
    font->setFileName(file);
    font->setFileHash(QStringLiteral("hash of ") + QFileInfo(file).fileName());
    font->setFamilyName(familyName);
    font->setStyleName(QStringLiteral("Book"));
    font->setPostScriptName(postScriptName);
    font->setFormat(QStringLiteral("TrueType"));
    font->setDateAdded(QDateTime::currentDateTime());
    return font;
}

int WindowLibrary::addFont(const QString& file, const QString& familyName, const QString& postScriptName)
{
    const StaticFontPtr font = makeFont(file, familyName, postScriptName);
    m_service->repository()->addFonts({font});
    return font->id();
}

StaticFontPtr WindowLibrary::font(int id) const
{
    return m_service->repository()->font(id);
}
