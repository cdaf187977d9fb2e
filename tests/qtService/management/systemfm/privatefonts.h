#pragma once

#include "qtService/management/systemfm/FontManagerStrategyFontconfig.h"

#include <QSet>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace kerval::testing {

// A home of its own for fontconfig: this process and the programs it starts see the fonts of this tree and nothing of
// the machine's. The real library runs on it.
class PrivateFonts
{
public:
    PrivateFonts();
    ~PrivateFonts();

    QString path(const QString& name) const { return m_folder.filePath(name); }
    systemfm::FontPlaces places() const;
    systemfm::LogonSession session() const;
    std::unique_ptr<systemfm::FontManagerStrategyFontconfig> makeStrategy() const;

    // Copies of a real font. The folders: "lib" is unknown to fontconfig, "sys" stands for the distribution's,
    // "data/fonts" is the user's font folder.
    QString addFont(const QString& name, int number = 0) const;
    QString addCollection(const QString& name) const;
    // Gives the metrics file.
    QString addType1(const QString& name) const;

    void writeConfiguration(const QByteArray& more = {}) const;
    // A new logon session: the runtime folder is a new one.
    void startNewSession();

    // What fc-list, run as a program of its own, says now: file paths, links resolved.
    QStringList listed() const;
    int listedFaces() const;
    bool isListed(const QString& fontFile) const;
    QString matched(const QString& family) const;

private:
    QTemporaryDir m_folder;
    QString m_runtime;
};

int activity(systemfm::FontManagerStrategyInterface& strategy, const QString& fileName);

// One change with its answer, told to the system as the service does.
int change(systemfm::FontManagerStrategyInterface& strategy, const QString& fileName, systemfm::ActivityType type);

} // namespace kerval::testing
