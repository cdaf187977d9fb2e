#pragma once

#include "qtService/management/systemfm/FontActivityReason.h"
#include "qtService/management/systemfm/FontPlaces.h"

#include <QCoreApplication>
#include <QSet>
#include <QString>

#include <functional>

struct _FcConfig;
struct _FcPattern;

namespace kerval::systemfm {

class FontconfigDatabase;

// Finds out why programs get a font file, or why not. Loads fontconfig's whole configuration for each question.
class FontconfigExplainer
{
    Q_DECLARE_TR_FUNCTIONS(FontconfigExplainer)

public:
    // The database is fresh and outlives the explainer.
    FontconfigExplainer(FontconfigDatabase& database, const FontPlaces& places);

    void setRejected(const QSet<QString>& outlines) { m_rejected = outlines; }
    // The paths under which fontconfig finds the font by itself.
    void setListed(const QStringList& paths) { m_listed = paths; }
    // Our file and our link for the font that is asked about; empty when there are none.
    void setOwnFiles(const QString& placed, const QString& linked);
    // Gives the font that a file of ours stands for; other files come back as they are.
    void setOwner(const std::function<QString(const QString&)>& owner) { m_owner = owner; }

    FontActivityReason explain(const QString& fileName);

private:
    FontActivityReason active(const QString& path, _FcPattern* font, _FcConfig* config) const;
    QStringList paths() const;
    FontActivityReason inactive();
    FontActivityReason reason(FontActivityReason::Kind kind, ActivityType type, const QString& otherFile = {}) const;
    QString renamingFile(const QString& family, bool atScan, _FcPattern* font) const;
    QString winningDuplicate(const QString& path, _FcPattern* font, _FcConfig* config) const;
    QString text(FontActivityReason::Kind kind, const QString& otherFile) const;

    FontconfigDatabase& m_database;
    FontPlaces m_places;
    QSet<QString> m_rejected;
    QStringList m_listed;
    QString m_placed;
    QString m_linked;
    std::function<QString(const QString&)> m_owner;
};

} // namespace kerval::systemfm
