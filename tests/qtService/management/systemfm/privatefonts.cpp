#include "tests/qtService/management/systemfm/privatefonts.h"

#include "tests/support/testtree.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

using namespace kerval::systemfm;

namespace kerval::testing {

namespace {

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(program), process.readAllStandardError().constData());
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList sampleFonts()
{
    QStringList fonts;
    QDirIterator files(QStringLiteral("/usr/share/fonts/truetype/dejavu"), {QStringLiteral("DejaVu*.ttf")},
                       QDir::Files);
    while (files.hasNext())
        fonts.append(files.next());
    fonts.sort();
    if (fonts.isEmpty())
        qFatal("the fonts of the package fonts-dejavu-core are missing");
    return fonts;
}

QString testData(const QString& name)
{
    return QStringLiteral(KERVAL_SOURCE_DIR "/tests/data/fonts/") + name;
}

void copy(const QString& from, const QString& to)
{
    QDir().mkpath(QFileInfo(to).path());
    QFile::remove(to);
    if (!QFile::copy(from, to))
        qFatal("cannot copy %s", qPrintable(from));
}

} // namespace

PrivateFonts::PrivateFonts()
{
    for (const char* name : {"data/fonts", "config", "sys", "lib", "settings", "cache"})
        QDir().mkpath(path(QLatin1String(name)));
    startNewSession();
    writeConfiguration();
    qputenv("FONTCONFIG_FILE", QFile::encodeName(path(QStringLiteral("fonts.conf"))));
}

PrivateFonts::~PrivateFonts()
{
    qunsetenv("FONTCONFIG_FILE");
}

FontPlaces PrivateFonts::places() const
{
    return FontPlaces::at(path(QStringLiteral("data/fonts")), path(QStringLiteral("config")),
                          path(QStringLiteral("settings")));
}

LogonSession PrivateFonts::session() const
{
    return LogonSession::open(m_runtime, path(QStringLiteral("tmp")), "boot");
}

std::unique_ptr<FontManagerStrategyFontconfig> PrivateFonts::makeStrategy() const
{
    return std::make_unique<FontManagerStrategyFontconfig>(places(), session());
}

void PrivateFonts::startNewSession()
{
    m_runtime = path(QStringLiteral("run"));
    QDir(m_runtime).removeRecursively();
    QDir().mkpath(m_runtime);
}

void PrivateFonts::writeConfiguration(const QByteArray& more) const
{
    const QByteArray root = QFile::encodeName(m_folder.path());
    writeFile(path(QStringLiteral("fonts.conf")),
              "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\"><fontconfig>"
              "<dir>" +
                  root + "/sys</dir><dir>" + root + "/data/fonts</dir><cachedir>" + root +
                  "/cache</cachedir>"
                  "<include ignore_missing=\"yes\">" +
                  root +
                  "/config/fontconfig/conf.d</include>"
                  "<include ignore_missing=\"yes\">" +
                  root + "/config/fontconfig/fonts.conf</include>" + more + "</fontconfig>");
}

QString PrivateFonts::addFont(const QString& name, int number) const
{
    static const QStringList samples = sampleFonts();
    copy(samples.at(number % samples.size()), path(name));
    return path(name);
}

QString PrivateFonts::addCollection(const QString& name) const
{
    copy(testData(QStringLiteral("two-faces.ttc")), path(name));
    return path(name);
}

QString PrivateFonts::addType1(const QString& name) const
{
    const QString base = path(name).section(QLatin1Char('.'), 0, -2);
    copy(testData(QStringLiteral("kite.pfb")), base + QStringLiteral(".pfb"));
    copy(testData(QStringLiteral("kite.pfm")), path(name));
    return path(name);
}

QStringList PrivateFonts::listed() const
{
    const QString mark = QStringLiteral("\x01");
    QStringList files = run(QStringLiteral("fc-list"), {QStringLiteral("--format=%{file}") + mark}).split(mark);
    files.removeLast();
    for (QString& file : files)
        file = QFileInfo(file).canonicalFilePath();
    return files;
}

int PrivateFonts::listedFaces() const
{
    return listed().size();
}

// Files of ours are compared by content: they are other names, links or copies of the font.
bool PrivateFonts::isListed(const QString& fontFile) const
{
    const QByteArray content = readFile(
        fontFile.endsWith(QLatin1String(".pfm")) ? fontFile.left(fontFile.size() - 1) + QLatin1Char('b') : fontFile);
    const QStringList files = listed();
    return std::any_of(files.cbegin(), files.cend(), [&](const QString& file) { return readFile(file) == content; });
}

QString PrivateFonts::matched(const QString& family) const
{
    return run(QStringLiteral("fc-match"), {QStringLiteral("--format=%{file}"), family});
}

int activity(FontManagerStrategyInterface& strategy, const QString& fileName)
{
    const QList<SystemFontDescriptor> fonts = strategy.activeFonts();
    for (const SystemFontDescriptor& font : fonts) {
        if (font.fileName == fileName)
            return font.activityType;
    }
    return Inactive;
}

int change(FontManagerStrategyInterface& strategy, const QString& fileName, ActivityType type)
{
    const QStringList names{QStringLiteral("Name")};
    const QHash<QString, int> results = type == PermanentlyActive   ? strategy.activatePermanently(fileName, names)
                                        : type == TemporarilyActive ? strategy.activateTemporarily(fileName, names)
                                                                    : strategy.deactivate(fileName, names);
    strategy.notifyFontChange();
    return results.value(QStringLiteral("Name"), -1);
}

} // namespace kerval::testing
