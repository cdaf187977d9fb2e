#include "qtService/management/systemfm/FontconfigRules.h"

#include "qtService/app/core/PathCodec.h"
#include "qtService/management/systemfm/FontconfigDatabase.h"
#include "qtService/management/systemfm/XmlText.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamReader>

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace kerval::systemfm {

namespace {

const char head[] = "<?xml version=\"1.0\"?>\n"
                    "<!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\">\n"
                    "<!-- Written by Kerval: the fonts that are switched off. Switch them there; an edited file is\n"
                    "     kept beside the next one. Checksum: ";

QByteArray checksum(const QByteArray& body)
{
    return QCryptographicHash::hash(body, QCryptographicHash::Sha1).toHex();
}

bool isIntact(const QByteArray& content)
{
    const int end = content.indexOf(" -->\n");
    return content.startsWith(head) && end > 0 &&
           content.mid(int(sizeof head) - 1, end - int(sizeof head) + 1) == checksum(content.mid(end + 5));
}

bool hasWildcard(const QString& path)
{
    return path.contains(QLatin1Char('*')) || path.contains(QLatin1Char('?'));
}

QByteArray readWhole(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

FontconfigRules::FontconfigRules(const QString& rulesFile, const QString& recoveryFile)
    : m_rulesFile(rulesFile)
    , m_recoveryFile(recoveryFile)
{
}

bool FontconfigRules::canName(const QString& path)
{
    return std::none_of(path.cbegin(), path.cend(), [](QChar c) {
        return (c.unicode() < 0x20 && c != QLatin1Char('\n') && c != QLatin1Char('\r') && c != QLatin1Char('\t')) ||
               c.unicode() >= 0xfffe;
    });
}

// What lies on the disk is what programs obey, so it is the truth, a missing file too. Only one that cannot be read is
// made anew from the second copy.
void FontconfigRules::load()
{
    m_rejected.clear();
    m_extraFolder.clear();
    m_stored = readWhole(m_rulesFile);
    if (m_stored.isEmpty() && !QFile::exists(m_rulesFile))
        return;
    if (parse(m_stored)) {
        if (!isIntact(m_stored))
            qWarning().noquote() << "W_0_ edited by somebody else:" << m_rulesFile;
        return;
    }
    readRecovery();
    save();
}

bool FontconfigRules::save()
{
    const QByteArray present = readWhole(m_rulesFile);
    if (!present.isEmpty() && !isIntact(present) && !keepForeign(present))
        return false;
    if (m_rejected.isEmpty() && m_extraFolder.isEmpty()) {
        if (QFile::exists(m_rulesFile) && !QFile::remove(m_rulesFile))
            return false;
        m_stored.clear();
        return writeRecovery();
    }

    const QByteArray wanted = content();
    const QString folder = QFileInfo(m_rulesFile).path();
    // fontconfig reads only names that end in ".conf".
    const QString unfinished = m_rulesFile + QStringLiteral(".new");
    if (!QDir().mkpath(folder) || !writeRecovery())
        return false;
    QFile file(unfinished);
    bool written = file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(wanted) == wanted.size() &&
                   file.flush() && ::fdatasync(file.handle()) == 0;
    file.close();
    written = written && file.error() == QFileDevice::NoError && readWhole(unfinished) == wanted &&
              FontconfigDatabase::canRead(unfinished) &&
              std::rename(QFile::encodeName(unfinished).constData(), QFile::encodeName(m_rulesFile).constData()) == 0;
    if (!written) {
        QFile::remove(unfinished);
        return false;
    }
    m_stored = wanted;
    return true;
}

bool FontconfigRules::isStored() const
{
    return readWhole(m_rulesFile) == m_stored;
}

QByteArray FontconfigRules::content() const
{
    QStringList paths = m_rejected.values();
    std::sort(paths.begin(), paths.end());
    QString body = QStringLiteral("<fontconfig>\n");
    if (!m_extraFolder.isEmpty())
        body += QLatin1String("  <dir>") + escapedXml(m_extraFolder) + QLatin1String("</dir>\n");
    body += QLatin1String("  <selectfont>\n    <rejectfont>\n");
    for (const QString& path : qAsConst(paths)) {
        if (hasWildcard(path))
            body += QLatin1String("      <pattern><patelt name=\"file\"><string>") + escapedXml(path) +
                    QLatin1String("</string></patelt></pattern>\n");
        else
            body += QLatin1String("      <glob>") + escapedXml(path) + QLatin1String("</glob>\n");
    }
    body += QLatin1String("    </rejectfont>\n  </selectfont>\n</fontconfig>\n");
    const QByteArray text = body.toUtf8();
    return head + checksum(text) + " -->\n" + text;
}

// Takes the paths that are ours to give back: globs without wildcards and patterns of a file.
bool FontconfigRules::parse(const QByteArray& content)
{
    QSet<QString> rejected;
    QString extraFolder;
    QXmlStreamReader reader(content);
    bool rejecting = false;
    bool fileElement = false;
    bool root = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement()) {
            if (reader.name() == QLatin1String("rejectfont"))
                rejecting = false;
            continue;
        }
        if (!reader.isStartElement())
            continue;
        const QStringRef name = reader.name();
        if (name == QLatin1String("fontconfig")) {
            root = true;
        } else if (name == QLatin1String("rejectfont")) {
            rejecting = true;
        } else if (name == QLatin1String("patelt")) {
            fileElement = reader.attributes().value(QLatin1String("name")) == QLatin1String("file");
        } else if (name == QLatin1String("dir")) {
            extraFolder = reader.readElementText(QXmlStreamReader::SkipChildElements);
        } else if (rejecting && name == QLatin1String("glob")) {
            const QString path = reader.readElementText(QXmlStreamReader::SkipChildElements);
            if (!hasWildcard(path))
                rejected.insert(path);
        } else if (rejecting && fileElement && name == QLatin1String("string")) {
            rejected.insert(reader.readElementText(QXmlStreamReader::SkipChildElements));
        }
    }
    if (reader.hasError() || !root)
        return false;
    m_rejected = rejected;
    m_extraFolder = extraFolder;
    return true;
}

bool FontconfigRules::keepForeign(const QByteArray& content)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString kept = m_rulesFile + QStringLiteral(".kept-") + stamp;
    for (int i = 2; QFile::exists(kept); ++i)
        kept = m_rulesFile + QStringLiteral(".kept-%1-%2").arg(stamp).arg(i);
    QSaveFile file(kept);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return false;
    qWarning().noquote() << "W_0_ the edited font rules were kept as" << kept;
    return true;
}

void FontconfigRules::readRecovery()
{
    QFile file(m_recoveryFile);
    if (!file.open(QIODevice::ReadOnly))
        return;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith("rejected="))
            m_rejected.insert(krv::decodePath(line.mid(9)));
        else if (line.startsWith("folder="))
            m_extraFolder = krv::decodePath(line.mid(7));
    }
}

bool FontconfigRules::writeRecovery() const
{
    QByteArray text = "[Rules]\n";
    if (!m_extraFolder.isEmpty())
        text += "folder=" + krv::encodePath(m_extraFolder) + '\n';
    for (const QString& path : m_rejected)
        text += "rejected=" + krv::encodePath(path) + '\n';
    QSaveFile file(m_recoveryFile);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

} // namespace kerval::systemfm
