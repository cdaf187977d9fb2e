#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <string>
#include <string_view>

struct sqlite3;

namespace kerval::testing {

// A catalogue with just the columns that the extraction reads, and faces whose letters hold one number throughout.
class SmallCatalogue
{
public:
    explicit SmallCatalogue(const QString& path);
    ~SmallCatalogue();
    Q_DISABLE_COPY(SmallCatalogue)

    void add(int id, const char* name, const char* keywords, float look, int weight = 135, int score = 500);
    // The looks of the letters that stand for a face, and of all others.
    void addTwoLooks(int id, const char* name, float faceLetters, float otherLetters);
    void addFont(int id, const char* name, const char* keywords, int weight = 135, int score = 500);
    void addBlob(int id, const std::string& blob);
    void run(const QByteArray& sql);

    QString path() const { return m_path; }

private:
    QString m_path;
    sqlite3* m_database = nullptr;
};

// What a helper program printed, and what a similarity program's output says.
struct Answer
{
    int exitCode = -1;
    QByteArray output;
    QByteArray complaint;
    QList<int> ids;
    QList<double> deviances;
};

QString hexPath(const QString& path);
QStringList extraction(const QString& database, const QString& folder); // the program's arguments
Answer start(const QString& program, const QStringList& arguments, const QByteArray& input = {});
Answer extract(const QString& database, const QString& folder);
Answer find(const QString& folder, const char* method, int font, int limit = 10, const QByteArray& ids = {},
            const QString& characters = QStringLiteral("htlaf"));

QString inFolder(const QString& folder, std::string_view name);

// Three faces in a feature folder: asked about 9, the answer is 9, 3 and 5.
bool extractThreeFaces(SmallCatalogue& catalogue, const QString& folder);

} // namespace kerval::testing
