#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// The program's own small command-line parser: "--name", "--name=value", "--name value", "-x", "-xvalue" and plain
// arguments. Options write into targets given when they are declared; complaints go to the framework's warning channel.
class OptionParser
{
public:
    enum OptionType
    {
        Unknown,
        End,
        Switch,
        SingleArgument,
        OptionalArgument,
        Repeatable,
        VariableLength
    };

    struct Option
    {
        OptionType type = Unknown;
        char shortLetter = 0; // 0: none
        QString longName;
        void* target = nullptr; // bool* for a switch, QStringList* for the list kinds, else QString*
        QString defaultValue;   // what an option of kind OptionalArgument holds when it is given without a value
    };

    OptionParser(int argc, const char* const* argv);

    void addSwitch(const QString& longName, bool* target);
    void addOptionalOption(char shortLetter, const QString& longName, QString* target, const QString& defaultValue);
    void addOptionalOption(const QString& longName, QString* target, const QString& defaultValue);
    // Any kind; the two above are what the program itself declares.
    void addOption(const Option& option);
    void setRequiredArgument(QString* target);
    void setOptionalArgument(QString* target);

    // False when the arguments do not fit what was declared. With untilFirstSwitchOnly parsing ends at the first
    // switch.
    bool parse(bool untilFirstSwitchOnly);

    QString programName() const { return m_programName; }
    bool wasSeen(const QString& name) const { return m_seen.contains(name); }

private:
    enum class TokenKind
    {
        End,
        Long,
        Short,
        Argument
    };
    enum class State
    {
        Start,
        Mandatory,
        Optional
    };
    struct Token
    {
        TokenKind kind = TokenKind::End;
        QString raw;  // as it stood on the command line
        QString text; // without dashes and attached value
    };

    Token nextToken(QStringList& stack);
    Option findOption(const Token& token) const;
    bool storePositional(const QString& text);
    void markSeen(const Option& option);

    QList<Option> m_options;
    QMap<QString, int> m_seen;
    QStringList m_arguments;
    QString m_programName;
    int m_requiredCount = 0;
    int m_optionalCount = 0;
    Option m_requiredSlot;
    Option m_optionalSlot;
    int m_currentIndex = 1;
};
