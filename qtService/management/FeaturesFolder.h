#pragma once

#include <QMutex>
#include <QObject>
#include <QString>

// The folder of feature files, shared by all who search in it; any thread. One of them fills it at a time. Clearing it
// while it is being filled makes what comes out stale: good enough for the request that had it filled, not for later
// ones.
class FeaturesFolder : public QObject
{
    Q_OBJECT

public:
    explicit FeaturesFolder(const QString& path);
    ~FeaturesFolder() override;

    QString path() const { return m_path; }
    bool create() const;
    // A whole set lies in the folder.
    bool isFilled() const;
    // It is whole and up to date, and nobody is writing.
    bool isReady() const;
    // False when somebody else is filling the folder; extractionEnded() follows.
    bool beginExtraction();
    void endExtraction();
    // Deletes the files; true when all are gone.
    bool clear();
    // Changes with everything that changes the files.
    int generation() const;

signals:
    void extractionEnded();

private:
    const QString m_path;
    mutable QMutex m_mutex;
    bool m_isExtracting = false;
    bool m_isStale = false;
    int m_generation = 0;
};
