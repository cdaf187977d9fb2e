#pragma once

#include <QHash>
#include <QList>
#include <QPair>
#include <QSet>
#include <QString>

// The faces that wait for the adder, in order, each once. Appending, taking and asking cost the same at any length.
// Not thread-safe: its owner's lock guards it.
class FontQueue
{
public:
    using Face = QPair<QString, int>; // file and face index

    bool isEmpty() const { return m_faces.isEmpty(); }
    int size() const { return m_faces.size(); }
    bool contains(const Face& face) const { return m_members.contains(face); }
    const QList<Face>& faces() const { return m_faces; }

    // False when the face waits already.
    bool append(const Face& face);
    Face takeFirst();
    void clear();

    // The file that carries a queue over a restart: two lines a face, path and face index, both encoded, so that any
    // name fits into a line. Replaced atomically; a file that holds less than whole pairs gives the whole ones.
    static bool save(const QString& fileName, const QList<Face>& faces);
    static QList<Face> load(const QString& fileName);

private:
    QList<Face> m_faces;
    QSet<Face> m_members;
};
