#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

// What designs.txt says about families; the format is described at its head.
class DesignLabels
{
public:
    struct Family
    {
        QString kind; // class; empty when the file does not say
        QSet<QString> cuts;
        QSet<QString> redrawn;
        QSet<QString> alike;
        QSet<QString> genre;
        QSet<QString> kin;
        bool heldOut = false;
    };

    bool read(const QString& designs, const QString& heldOut);
    const Family& family(const QString& name);

private:
    struct Rule
    {
        QString kind; // "class", "cut", "redrawn", "alike", "genre" or "kin"
        QString name;
        QString pattern;
    };

    QVector<Rule> m_rules;
    QSet<QString> m_heldOut;
    QHash<QString, Family> m_families;
};

// Weight, slant, width and small capitals as the names tell them, to compare like with like.
struct NamedStyle
{
    int weight = 400;
    bool italic = false;
    bool condensed = false;
    bool other = false; // small capitals, slanted romans, expanded

    static NamedStyle of(const QString& family, const QString& style, const QString& postScriptName);
    bool operator==(const NamedStyle& o) const { return weight == o.weight && sameBut(o); }
    // Equal apart from the weight.
    bool sameBut(const NamedStyle& o) const
    {
        return italic == o.italic && condensed == o.condensed && other == o.other;
    }
};
