#pragma once

#include <QMap>
#include <QSet>
#include <QString>

namespace kerval::systemfm {

// Numbered folders (two hexadecimal digits, more after the 256th) that each hold a bounded number of files.
//
// When a file enters or leaves a folder, fontconfig reads every font of that folder again. With the bound, switching a
// font costs the same whether fifty or fifty thousand are active; hashing files into a fixed number of folders would
// not keep it.
class BoundedFolders
{
public:
    static constexpr int capacity = 32;

    explicit BoundedFolders(const QString& root);

    // The name of a folder that has room for `files` more, counted as taken from now on.
    QString take(int files);
    void count(const QString& name, int files);
    void release(const QString& name, int files);
    QString path(const QString& name) const { return m_root + QLatin1Char('/') + name; }
    QString root() const { return m_root; }

private:
    QString m_root;
    QMap<int, int> m_counts;
    QSet<int> m_withRoom;
};

} // namespace kerval::systemfm
