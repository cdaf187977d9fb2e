#pragma once

#include <QDataStream>
#include <QList>
#include <QObject>
#include <QStringList>

// What the window's list is narrowed to: the sliders, the filter panel and the search box write into it, the fonts view
// model reads it. Every setter emits changed(), even for an equal value. It is a value too: it can be copied, streamed
// and stored as a setting. Main thread.
class FontFiltersState : public QObject
{
    Q_OBJECT

public:
    enum FontActivity
    {
        AnyActivity = 0,
        Inactive = 1,
        TemporarilyActive = 2,
        PermanentlyActive = 3
    };
    Q_ENUM(FontActivity)

    explicit FontFiltersState(QObject* parent = nullptr);
    FontFiltersState(const FontFiltersState& other);
    FontFiltersState& operator=(const FontFiltersState& other);

    QString userFamily() const { return m_values.userFamily; }
    QString textSearch() const { return m_values.textSearch; }
    QString foundry() const { return m_values.foundry; }
    QStringList formats() const { return m_values.formats; }
    // Numbers of the record's text fields that the search applies to; empty: all of them.
    QList<int> textSearchFields() const { return m_values.textSearchFields; }
    bool sanserifs() const { return m_values.sanSerifs; }
    bool serifs() const { return m_values.serifs; }
    bool symbols() const { return m_values.symbols; }
    bool nonsymbols() const { return m_values.nonSymbols; }
    bool monospaced() const { return m_values.monospaced; }
    bool nonMonospaced() const { return m_values.nonMonospaced; }
    QStringList classes() const { return m_values.classes; }
    // Buckets 1 to 5; 0: no restriction.
    int angle() const { return m_values.angle; }
    int width() const { return m_values.width; }
    int weight() const { return m_values.weight; }
    int optsize() const { return m_values.optsize; }
    QList<int> unicodeSubsets() const { return m_values.unicodeSubsets; }
    QList<int> groups() const { return m_values.groups; }
    QList<int> projects() const { return m_values.projects; }
    QList<int> tags() const { return m_values.tags; }
    int rating() const { return m_values.rating; }
    FontActivity fontActivity() const { return m_values.fontActivity; }

    // Emits changed() too, but is no filter: clear() and isCleared() leave it out of account.
    void setTextSearchFields(const QList<int>& fields);
    // True when nothing narrows the list.
    bool isCleared() const;

public slots:
    void setTextSearch(QString textsearch);
    void setUserFamily(QString userfamily);
    void setSerifs(bool serifs);
    void setSanserifs(bool sanserifs);
    void setSymbols(bool symbols);
    void setNonsymbols(bool nonsymbols);
    void setMonospaced(bool monospaced);
    void setNonMonospaced(bool nonmonospaced);
    void setClasses(QStringList classes);
    void setAngle(int angle);
    void setWidth(int width);
    void setWeight(int weight);
    void setOptsize(int optsize);
    void setFontActivity(FontFiltersState::FontActivity activity);
    void setFoundry(QString foundry);
    void setUnicodeSubsets(QList<int> subsets);
    void setGroups(QList<int> groups);
    void setProjects(QList<int> projects);
    void setTags(QList<int> tags);
    void setRating(int rating);
    void setFormats(QStringList formats);
    void clear();

signals:
    void changed();
    void cleared();

private:
    struct Values
    {
        QString userFamily;
        QString textSearch;
        QString foundry;
        QStringList formats;
        QList<int> textSearchFields;
        bool sanSerifs = true;
        bool serifs = true;
        bool symbols = true;
        bool nonSymbols = true;
        bool monospaced = true;
        bool nonMonospaced = true;
        QStringList classes;
        int angle = 0;
        int width = 0;
        int weight = 0;
        int optsize = 0;
        QList<int> unicodeSubsets;
        QList<int> groups;
        QList<int> projects;
        QList<int> tags;
        int rating = -1;
        FontActivity fontActivity = AnyActivity;
    };

    template <class T, class U>
    void store(T& member, U&& value);

    Values m_values;

    friend QDataStream& operator<<(QDataStream& stream, const FontFiltersState& state);
    friend QDataStream& operator>>(QDataStream& stream, FontFiltersState& state);
};

QDataStream& operator<<(QDataStream& stream, const FontFiltersState& state);
QDataStream& operator>>(QDataStream& stream, FontFiltersState& state);

Q_DECLARE_METATYPE(FontFiltersState)
