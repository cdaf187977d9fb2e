#pragma once

#include "qtService/management/systemfm/SystemFontDescriptor.h"

#include <QDir>
#include <QSet>

// Passes the active fonts of the system whose file is not in the catalogue. Runs on several pool threads at once and
// only reads what it holds.
class NewFontsFilterFunctor
{
public:
    using result_type = bool;

    explicit NewFontsFilterFunctor(const QSet<QString>& cataloguedFiles)
        : m_cataloguedFiles(cataloguedFiles)
    {
    }

    bool operator()(const kerval::systemfm::SystemFontDescriptor& descriptor) const
    {
        return !m_cataloguedFiles.contains(QDir::fromNativeSeparators(descriptor.fileName));
    }

private:
    QSet<QString> m_cataloguedFiles;
};
