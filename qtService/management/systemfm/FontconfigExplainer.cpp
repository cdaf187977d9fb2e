#include "qtService/management/systemfm/FontconfigExplainer.h"

#include "qtService/management/systemfm/FontFiles.h"
#include "qtService/management/systemfm/FontconfigDatabase.h"
#include "qtService/management/systemfm/ProtectedFonts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fontconfig/fontconfig.h>

namespace kerval::systemfm {

namespace {

struct PatternDeleter
{
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

const FcChar8* fcText(const QByteArray& text)
{
    return reinterpret_cast<const FcChar8*>(text.constData());
}

QString fileOf(const FcPattern* font)
{
    FcChar8* path = nullptr;
    return FcPatternGetString(font, FC_FILE, 0, &path) == FcResultMatch
               ? QFile::decodeName(reinterpret_cast<const char*>(path))
               : QString();
}

QStringList families(const FcPattern* font)
{
    QStringList names;
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i)
        names.append(QString::fromUtf8(reinterpret_cast<const char*>(name)).toCaseFolded());
    return names;
}

Pattern readFont(const QString& path)
{
    int faces = 0;
    return Pattern(FcFreeTypeQuery(fcText(QFile::encodeName(path)), 0, nullptr, &faces));
}

FcPattern* findFont(FcConfig* config, const QString& path)
{
    const FcFontSet* fonts = path.isEmpty() ? nullptr : FcConfigGetFonts(config, FcSetSystem);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        if (fileOf(fonts->fonts[i]) == path)
            return fonts->fonts[i];
    }
    return nullptr;
}

// The first family that a program gets which asks for this one.
QString answeredFamily(FcConfig* config, const QString& family)
{
    const Pattern asked(FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, fcText(family.toUtf8()), nullptr));
    FcConfigSubstitute(config, asked.get(), FcMatchPattern);
    return families(asked.get()).value(0);
}

bool sharesFamily(const QStringList& left, const QStringList& right)
{
    return std::any_of(left.cbegin(), left.cend(), [&](const QString& name) { return right.contains(name); });
}

bool includesOthers(const QString& configurationFile)
{
    QFile file(configurationFile);
    return file.open(QIODevice::ReadOnly) && file.readAll().contains("<include");
}

} // namespace

FontconfigExplainer::FontconfigExplainer(FontconfigDatabase& database, const FontPlaces& places)
    : m_database(database)
    , m_places(places)
    , m_owner([](const QString& path) { return path; })
{
}

void FontconfigExplainer::setOwnFiles(const QString& placed, const QString& linked)
{
    m_placed = placed;
    m_linked = linked;
}

FontActivityReason FontconfigExplainer::explain(const QString& fileName)
{
    const QString outline = fontfiles::outline(fileName);
    if (outline.isEmpty())
        return reason(FontActivityReason::Missing, Inactive);
    if (!readFont(outline))
        return reason(FontActivityReason::NotReadable, Inactive);
    const FontconfigDatabase::Config config = FontconfigDatabase::loadWithFonts();
    const QStringList candidates = paths();
    for (const QString& path : candidates) {
        if (FcPattern* const font = findFont(config.get(), path))
            return active(path, font, config.get());
    }
    return inactive();
}

FontActivityReason FontconfigExplainer::active(const QString& path, FcPattern* font, FcConfig* config) const
{
    const ActivityType type = path == m_linked ? TemporarilyActive : PermanentlyActive;
    const Pattern own = readFont(path);
    const QStringList ownFamilies = own ? families(own.get()) : QStringList();
    if (!ownFamilies.isEmpty()) {
        if (!sharesFamily(ownFamilies, families(font)))
            return reason(FontActivityReason::RenamedByOtherTool, type, renamingFile({}, true, own.get()));
        const QString family = ownFamilies.constFirst();
        if (answeredFamily(config, family) != family)
            return reason(FontActivityReason::RenamedByOtherTool, type, renamingFile(family, false, own.get()));
    }
    const QString winner = winningDuplicate(path, font, config);
    if (!winner.isEmpty())
        return reason(FontActivityReason::DuplicateWins, type, m_owner(winner));
    if (path == m_linked)
        return reason(FontActivityReason::PlacedForSession, type);
    if (path == m_placed)
        return reason(FontActivityReason::PlacedByUs, type);
    const bool isUsers = path.startsWith(m_places.userFonts + QLatin1Char('/')) ||
                         (path.startsWith(QDir::homePath() + QLatin1Char('/')) &&
                          !path.startsWith(protectedfonts::folder() + QLatin1Char('/')));
    return reason(isUsers ? FontActivityReason::InstalledByUser : FontActivityReason::InstalledInSystem, type);
}

// Where programs may find the font: its own paths, then ours.
QStringList FontconfigExplainer::paths() const
{
    QStringList paths = m_listed;
    for (const QString& own : {m_placed, m_linked}) {
        if (!own.isEmpty())
            paths.append(own);
    }
    return paths;
}

FontActivityReason FontconfigExplainer::inactive()
{
    for (const QString& path : qAsConst(m_listed)) {
        if (m_rejected.contains(path))
            return reason(FontActivityReason::RejectedByUs, Inactive);
    }
    const QStringList candidates = paths();
    for (const QString& path : candidates) {
        const QString file = m_database.hidingFile(path);
        if (!file.isEmpty())
            return reason(FontActivityReason::RejectedByOtherTool, Inactive, file);
        const QStringList broken = m_database.brokenFiles();
        if (!broken.isEmpty())
            return reason(FontActivityReason::ConfigurationBroken, Inactive, broken.constFirst());
    }
    return reason(FontActivityReason::NotInstalled, Inactive);
}

// The configuration file whose rules, taken by themselves, give the font another family when it is read, or answer its
// family with another one.
QString FontconfigExplainer::renamingFile(const QString& family, bool atScan, FcPattern* font) const
{
    const QStringList files = m_database.configurationFiles();
    for (const QString& file : files) {
        if (!QFileInfo(file).isFile() || includesOthers(file))
            continue;
        const FontconfigDatabase::Config config(FcConfigCreate());
        FcConfigParseAndLoad(config.get(), fcText(QFile::encodeName(file)), FcFalse);
        if (!atScan) {
            if (answeredFamily(config.get(), family) != family)
                return file;
            continue;
        }
        const Pattern scanned(FcPatternDuplicate(font));
        FcConfigSubstitute(config.get(), scanned.get(), FcMatchScan);
        if (!sharesFamily(families(scanned.get()), families(font)))
            return file;
    }
    return {};
}

// The file that a program gets which asks for this font's family and style, when it is another one of the same names.
QString FontconfigExplainer::winningDuplicate(const QString& path, FcPattern* font, FcConfig* config) const
{
    FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_WEIGHT, FC_SLANT, FC_WIDTH, nullptr);
    const Pattern asked(FcPatternFilter(font, objects));
    FcObjectSetDestroy(objects);
    const Pattern wanted(FcPatternDuplicate(asked.get()));
    FcConfigSubstitute(config, asked.get(), FcMatchPattern);
    FcDefaultSubstitute(asked.get());
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(config, asked.get(), &result));
    if (!match || fileOf(match.get()) == path || !sharesFamily(families(match.get()), families(wanted.get())))
        return {};
    int ours = 0;
    int theirs = 0;
    for (const char* property : {FC_SLANT, FC_WIDTH}) {
        if (FcPatternGetInteger(wanted.get(), property, 0, &ours) == FcResultMatch &&
            FcPatternGetInteger(match.get(), property, 0, &theirs) == FcResultMatch && ours != theirs)
            return {};
    }
    return fileOf(match.get());
}

FontActivityReason FontconfigExplainer::reason(FontActivityReason::Kind kind, ActivityType type,
                                               const QString& otherFile) const
{
    FontActivityReason reason;
    reason.kind = kind;
    reason.activityType = type;
    reason.otherFile = otherFile;
    reason.text = text(kind, otherFile);
    return reason;
}

QString FontconfigExplainer::text(FontActivityReason::Kind kind, const QString& otherFile) const
{
    switch (kind) {
    case FontActivityReason::PlacedByUs:
        return tr("Active: switched on here.");
    case FontActivityReason::PlacedForSession:
        return tr("Active until this session ends. Sandboxed programs do not see it.");
    case FontActivityReason::InstalledInSystem:
        return tr("Active: installed with the system.");
    case FontActivityReason::InstalledByUser:
        return tr("Active: installed in a folder of yours.");
    case FontActivityReason::DuplicateWins:
        return tr("Active, but programs get another file of the same name: %1").arg(otherFile);
    case FontActivityReason::RenamedByOtherTool:
        return otherFile.isEmpty()
                   ? tr("Active, but a rule of another tool answers its name with another family.")
                   : tr("Active, but a rule in %1 answers its name with another family.").arg(otherFile);
    case FontActivityReason::NotInstalled:
        return tr("Inactive: in no folder that programs look into.");
    case FontActivityReason::RejectedByUs:
        return tr("Inactive: switched off here.");
    case FontActivityReason::RejectedByOtherTool:
        return tr("Inactive: hidden by a rule in %1").arg(otherFile);
    case FontActivityReason::NotReadable:
        return tr("Inactive: the system cannot read this file as a font.");
    case FontActivityReason::Missing:
        return tr("Inactive: the file is gone.");
    case FontActivityReason::ConfigurationBroken:
        return tr("Inactive: this configuration file is broken: %1").arg(otherFile);
    }
    return {};
}

} // namespace kerval::systemfm
