#include "tests/rest/library.h"

#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "tests/support/signalcount.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QtTest>

namespace {

const char* const sampleFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

}

Library::Library()
{
    using kerval::testing::writeFile;
    const QByteArray root = QFile::encodeName(m_folder.path());
    for (const char* name : {"sys", "lib"})
        QDir(m_folder.path()).mkpath(QLatin1String(name));
    writeFile(m_folder.filePath(QStringLiteral("fonts.conf")),
              "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\"><fontconfig><dir>" +
                  root + "/sys</dir><dir>" + qgetenv("XDG_DATA_HOME") + "/fonts</dir><cachedir>" + root +
                  "/cache</cachedir><include ignore_missing=\"yes\">" + qgetenv("XDG_CONFIG_HOME") +
                  "/fontconfig/conf.d</include></fontconfig>");
    qputenv("FONTCONFIG_FILE", root + "/fonts.conf");

    m_service = QSharedPointer<FontManagementService>::create();
    const kerval::testing::SignalCount started(m_service.data(), &FontManagementService::started);
    m_service->start();
    if (!QTest::qWaitFor([&] { return !started.isEmpty(); }, 30000))
        qFatal("the service does not start");
    clear(); // what an earlier library of this program left in its home
    m_server = std::make_unique<api::rest::Server>(m_service);
    if (!m_server->listen(0))
        qFatal("no port to listen on");
    m_client = std::make_unique<HttpClient>(m_server->port());
}

Library::~Library()
{
    m_server.reset();
    m_service->stop();
    if (!QTest::qWaitFor([this] { return !m_service->isStarted(); }, 30000))
        qFatal("the service does not stop");
    m_service.reset();
}

QList<int> Library::addFonts(int count, const std::function<void(fms::StaticFont&, int)>& prepare)
{
    QList<StaticFontPtr> fonts;
    for (int i = 0; i < count; ++i) {
        ++m_serial;
        const auto font = StaticFontPtr::create();
        font->setFileName(m_folder.filePath(QStringLiteral("lib/font%1.ttf").arg(m_serial)));
        font->setFileHash(QStringLiteral("hash%1").arg(m_serial));
        font->setFamilyName(QStringLiteral("Family %1").arg(i));
        font->setStyleName(QStringLiteral("Regular"));
        font->setPostScriptName(QStringLiteral("Family-%1").arg(m_serial));
        font->setFormat(QStringLiteral("TrueType"));
        font->setDateAdded(QDateTime::fromSecsSinceEpoch(1600000000 + i));
        if (prepare)
            prepare(*font, i);
        fonts.append(font);
    }
    if (!m_service->repository()->addFonts(fonts))
        qFatal("fonts were not stored");
    QList<int> ids;
    for (const StaticFontPtr& font : qAsConst(fonts))
        ids.append(font->id());
    // Groups follow by queued signals.
    const auto all = m_service->systemFontGroups()->group(SystemFontGroupList::AllFonts);
    if (!ids.isEmpty() && !QTest::qWaitFor([&] { return all->containsFont(ids.last()); }))
        qFatal("the groups do not follow");
    return ids;
}

QString Library::addFile(const QString& name)
{
    const QString path = m_folder.filePath(QStringLiteral("lib/") + name);
    if (!QFile::copy(QLatin1String(sampleFont), path))
        qFatal("cannot copy %s", sampleFont);
    return path;
}

StaticFontPtr Library::font(int id) const
{
    return m_service->repository()->font(id);
}

void Library::clear()
{
    m_service->repository()->removeAll();
    const auto groups = m_service->userDatabase()->groups();
    for (const KrvUserDatabase::Group& group : groups)
        m_service->userDatabase()->removeGroup(group.id);
    const auto hidden = m_service->userDatabase()->allFontHashes();
    m_service->userDatabase()->setHidden(hidden, false);
    const auto all = m_service->systemFontGroups()->group(SystemFontGroupList::AllFonts);
    if (!QTest::qWaitFor([&] { return !all->hasFonts(); }))
        qFatal("the groups do not follow");
}
