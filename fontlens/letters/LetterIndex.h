#pragma once

#include "fontlens/letters/LetterMatcher.h"
#include "fontlens/letters/ShapeDescriptor.h"

#include <QHash>
#include <QMutex>
#include <QSharedPointer>
#include <QVector>

#include <atomic>
#include <functional>
#include <unordered_map>
#include <vector>

class QThreadPool;

namespace kerval::letters {

class DescriptorCache;

// A face among the candidates. The key stands for the file as it is: its path, size and time, and the face's index.
struct IndexedFace
{
    QString file;
    int faceIndex = 0;
    quint64 key = 0; // 0: there is no such file
};
using IndexedFaces = std::vector<IndexedFace>;

// How one character looks in each of the faces. Letters of several parts also have their main part by itself, because
// who clicks at an "i" may leave out its dot.
struct LetterTable
{
    enum State : std::uint8_t
    {
        Unknown,
        Missing,
        Measured
    };
    struct Row
    {
        ShapeDescriptor shape; // in units of the em
        State state = Unknown;
    };

    QSharedPointer<const IndexedFaces> faces;
    std::vector<Row> rows; // one for each face
    std::unordered_map<int, ShapeDescriptor> mainParts;
};
using LetterTablePtr = QSharedPointer<const LetterTable>;

// Keeps the descriptors of all candidates' letters, character by character: in memory, and in files of the cache
// folder. What is missing is measured when it is asked for. Thread-safe.
class LetterIndex
{
public:
    explicit LetterIndex(const QString& cacheFolder);
    ~LetterIndex();

    void setFaces(const QVector<QPair<QString, int>>& files);
    // Looks at the files' sizes and times the first time after setFaces().
    QSharedPointer<const IndexedFaces> faces();

    // A table for each of the characters, complete unless cancelled; work is spread over the pool, or done by the
    // calling thread alone when that is null.
    QVector<LetterTablePtr> tables(const QVector<QChar>& characters, QThreadPool* pool,
                                   const std::function<bool()>& cancelled);

private:
    QSharedPointer<LetterTable> known(QChar character, const QSharedPointer<const IndexedFaces>& faces);
    void keep(QChar character, const LetterTablePtr& table);

    QMutex m_mutex; // for all below
    QVector<QPair<QString, int>> m_files;
    QSharedPointer<const IndexedFaces> m_faces;
    QHash<QChar, LetterTablePtr> m_tables;
    QVector<QChar> m_lastUsed; // the latest at the end
    std::unique_ptr<DescriptorCache> m_cache;
};

} // namespace kerval::letters
