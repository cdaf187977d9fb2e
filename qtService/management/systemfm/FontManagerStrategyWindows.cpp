#include "qtService/management/systemfm/FontManagerStrategyWindows.h"

#include "fontfile/KrvFontFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cstring>

namespace kerval::systemfm {

namespace {

constexpr int settleTime = 250;
const QLatin1String sessionKey("UniqueSessionId");
const QLatin1String temporaryKey("TempActiveFonts");

template <class Number>
void appendBytes(QByteArray& bytes, Number number)
{
    char raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);
    bytes.append(raw, int(sizeof number));
}

// Windows' own separators wherever this runs.
QString withNativeSeparators(QString path)
{
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

QString withPortableSeparators(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

} // namespace

WindowsFontOperations::~WindowsFontOperations() = default;

FontManagerStrategyWindows::FontManagerStrategyWindows(std::unique_ptr<WindowsFontOperations> operations,
                                                       const QString& settingsFolder)
    : m_operations(std::move(operations))
    , m_fontsFolder(normalised(m_operations->fontsFolder()))
    , m_tempSettings(new QSettings(settingsFolder + QStringLiteral("/tempactive.ini"), QSettings::IniFormat))
    , m_registryLocations(m_operations->registryLocations())
    , m_updateTimer(this)
{
    if (m_tempSettings->value(sessionKey).toByteArray() == sessionId()) {
        const QStringList stored = m_tempSettings->value(temporaryKey).toStringList();
        m_tempActiveFonts = QSet<QString>(stored.cbegin(), stored.cend());
    } else {
        m_tempSettings->clear();
    }
    m_updateTimer.setInterval(settleTime);
    m_updateTimer.setSingleShot(true);
    connect(this, &FontManagerStrategyWindows::startTimer, &m_updateTimer, QOverload<>::of(&QTimer::start));
    connect(&m_updateTimer, &QTimer::timeout, this, QOverload<>::of(&FontManagerStrategyWindows::updateActiveFonts));
    m_operations->setFontChangeListener([this] { emit startTimer(); });
    updateActiveFonts(false);
}

FontManagerStrategyWindows::~FontManagerStrategyWindows()
{
    m_operations->setFontChangeListener({});
}

QList<SystemFontDescriptor> FontManagerStrategyWindows::activeFonts()
{
    QList<SystemFontDescriptor> fonts;
    QReadLocker lock(&m_lock);
    for (const QString& file : qAsConst(m_permanentActiveFonts)) {
        if (isSupportedFont(file))
            fonts.append(SystemFontDescriptor(file, PermanentlyActive));
    }
    for (const QString& file : qAsConst(m_tempActiveFonts))
        fonts.append(SystemFontDescriptor(file, TemporarilyActive));
    return fonts;
}

QStringList FontManagerStrategyWindows::installedFontFiles()
{
    QReadLocker lock(&m_lock);
    return m_registeredFonts.keys();
}

QHash<QString, int> FontManagerStrategyWindows::activatePermanently(const QString& fileName,
                                                                    const QStringList& fontNames)
{
    const QString file = normalised(fileName);
    QWriteLocker lock(&m_lock);
    if (!registerFont(file, fontNames))
        return sameForAll(fontNames, RegistrationFailed);
    m_tempActiveFonts.remove(file);
    if (m_operations->addFontResource(resourceArgument(file)))
        return sameForAll(fontNames, Done);
    unregisterFont(file);
    return sameForAll(fontNames, LoadFailed);
}

QHash<QString, int> FontManagerStrategyWindows::activateTemporarily(const QString& fileName,
                                                                    const QStringList& fontNames)
{
    const QString file = normalised(fileName);
    QWriteLocker lock(&m_lock);
    if (m_registeredFonts.contains(file) && !unregisterFont(file))
        return sameForAll(fontNames, RegistrationFailed);
    if (!m_operations->addFontResource(resourceArgument(file)))
        return sameForAll(fontNames, LoadFailed);
    m_tempActiveFonts.insert(file);
    return sameForAll(fontNames, Done);
}

QHash<QString, int> FontManagerStrategyWindows::deactivate(const QString& fileName, const QStringList& fontNames)
{
    const QString file = normalised(fileName);
    QWriteLocker lock(&m_lock);
    m_tempActiveFonts.remove(file);
    if (m_registeredFonts.contains(file) && !unregisterFont(file))
        return sameForAll(fontNames, RegistrationFailed);
    const bool unloaded = m_operations->removeFontResource(resourceArgument(file));
    return sameForAll(fontNames, unloaded ? Done : LoadFailed);
}

bool FontManagerStrategyWindows::hasNativeConflictCheck()
{
    return false;
}

void FontManagerStrategyWindows::notifyFontChange()
{
    m_operations->broadcastFontChange();
    QWriteLocker lock(&m_lock);
    m_tempSettings->setValue(sessionKey, sessionId());
    m_tempSettings->setValue(temporaryKey, QStringList(m_tempActiveFonts.values()));
    m_tempSettings->sync();
}

QString FontManagerStrategyWindows::fontsFolder()
{
    return m_fontsFolder;
}

// The lists of later versions than those there are lists for name nothing.
QStringList FontManagerStrategyWindows::protectedFontFiles()
{
    const QPair<int, int> version = m_operations->version();
    QString list;
    if (version == qMakePair(5, 1))
        list = QStringLiteral(":/fonts_xp.txt");
    else if (version == qMakePair(6, 0))
        list = QStringLiteral(":/fonts_vista.txt");
    else if (version == qMakePair(6, 1))
        list = QStringLiteral(":/fonts_7.txt");
    else if (version.second == 2)
        list = QStringLiteral(":/fonts_8.txt");
    QStringList names;
    QFile file(list);
    if (list.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return names;
    QTextStream lines(&file);
    while (!lines.atEnd())
        names.append(lines.readLine());
    return names;
}

FontActivityReason FontManagerStrategyWindows::activityReason(const QString& fileName)
{
    const QString file = normalised(fileName);
    FontActivityReason reason;
    QReadLocker lock(&m_lock);
    if (!QFile::exists(fileName)) {
        reason.kind = FontActivityReason::Missing;
        reason.text = tr("Inactive: the file is gone.");
    } else if (m_tempActiveFonts.contains(file)) {
        reason.kind = FontActivityReason::PlacedForSession;
        reason.activityType = TemporarilyActive;
        reason.text = tr("Active until this session ends.");
    } else if (m_registeredFonts.contains(file)) {
        reason.kind = FontActivityReason::InstalledInSystem;
        reason.activityType = PermanentlyActive;
        reason.text = tr("Active: registered with the system.");
    } else {
        reason.text = tr("Inactive: not registered with the system.");
    }
    return reason;
}

void FontManagerStrategyWindows::updateActiveFonts(bool emitNotification)
{
    {
        QWriteLocker lock(&m_lock);
        m_registeredFonts.clear();
        m_permanentActiveFonts.clear();
        for (const QString& location : qAsConst(m_registryLocations)) {
            const QList<QPair<QString, QString>> values = m_operations->registryValues(location);
            for (const auto& value : values) {
                const QString path = fullPath(value.second);
                m_registeredFonts.insert(path, value.first);
                m_permanentActiveFonts.insert(path);
            }
        }
    }
    if (emitNotification)
        emit activeFontsChanged();
}

void FontManagerStrategyWindows::updateActiveFonts()
{
    updateActiveFonts(true);
}

QString FontManagerStrategyWindows::normalised(const QString& path)
{
    return withNativeSeparators(path).toLower();
}

// The metrics file and its outline file for a Type 1 font, which share the name up to the first dot.
QString FontManagerStrategyWindows::resourceArgument(const QString& fileName)
{
    if (KrvFontFile::fileTypeFromFileName(fileName) != KrvFontFile::FileTypeType1)
        return fileName;
    const int dot = fileName.indexOf(QLatin1Char('.'), fileName.lastIndexOf(QLatin1Char('\\')) + 1);
    const QString base = fileName.left(dot);
    return QStringLiteral("%1|%2").arg(fileName, base + QLatin1String(".pfb"));
}

QString FontManagerStrategyWindows::registryName(const QString& fileName, const QStringList& fontNames)
{
    const int type = KrvFontFile::fileTypeFromFileName(withPortableSeparators(fileName));
    QString name =
        type == KrvFontFile::FileTypeTrueTypeCollection ? fontNames.join(QLatin1String(" & ")) : fontNames.value(0);
    if (type == KrvFontFile::FileTypeTrueType || type == KrvFontFile::FileTypeTrueTypeCollection)
        name += QLatin1String(" (TrueType)");
    else if (type == KrvFontFile::FileTypeOpenType)
        name += QLatin1String(" (OpenType)");
    return name;
}

// A bare name is a file of the fonts folder.
QString FontManagerStrategyWindows::fullPath(const QString& registryData) const
{
    const QString path = normalised(registryData);
    return path.contains(QLatin1Char('\\')) ? path : m_fontsFolder + QLatin1Char('\\') + path;
}

QByteArray FontManagerStrategyWindows::sessionId()
{
    WindowsFontOperations::Logon logon;
    if (!m_operations->currentLogon(&logon))
        return {};
    QByteArray id;
    appendBytes(id, logon.time);
    appendBytes(id, logon.idHighPart);
    appendBytes(id, logon.idLowPart);
    return id;
}

// Called with the lock held. A value that cannot be read back was not written, whatever the call said.
bool FontManagerStrategyWindows::registerFont(const QString& fileName, const QStringList& fontNames)
{
    if (m_registryLocations.isEmpty() || fontNames.isEmpty())
        return false;
    const int slash = fileName.lastIndexOf(QLatin1Char('\\'));
    const bool isInFontsFolder = fileName.left(slash).compare(m_fontsFolder, Qt::CaseInsensitive) == 0;
    const QString data = isInFontsFolder ? fileName.mid(slash + 1) : fileName;
    const QString name = registryName(fileName, fontNames);
    const QString location = m_registryLocations.constFirst();
    m_operations->setRegistryValue(location, name, data);
    if (m_operations->registryValue(location, name) != data)
        return false;
    m_registeredFonts.insert(fileName, name);
    m_permanentActiveFonts.insert(fileName);
    return true;
}

bool FontManagerStrategyWindows::unregisterFont(const QString& fileName)
{
    const QString name = m_registeredFonts.value(fileName);
    for (const QString& location : qAsConst(m_registryLocations)) {
        const QString data = m_operations->registryValue(location, name);
        if (data.isEmpty() || fullPath(data) != fileName)
            continue;
        m_operations->removeRegistryValue(location, name);
        if (!m_operations->registryValue(location, name).isEmpty())
            return false;
    }
    m_registeredFonts.remove(fileName);
    m_permanentActiveFonts.remove(fileName);
    return true;
}

} // namespace kerval::systemfm
