#include "qtService/app/OptionParser.h"

#include <QDebug>
#include <QFileInfo>

#include <cstdlib>

OptionParser::OptionParser(int argc, const char* const* argv)
{
    if (argc <= 0)
        return;
    m_programName = QFileInfo(QString::fromUtf8(argv[0])).fileName();
    for (int i = 1; i < argc; ++i)
        m_arguments.append(QString::fromUtf8(argv[i]));
}

void OptionParser::addSwitch(const QString& longName, bool* target)
{
    addOption({Switch, 0, longName, target, QString()});
    *target = false;
}

void OptionParser::addOptionalOption(char shortLetter, const QString& longName, QString* target,
                                     const QString& defaultValue)
{
    addOption({OptionalArgument, shortLetter, longName, target, defaultValue});
    *target = QString();
}

void OptionParser::addOptionalOption(const QString& longName, QString* target, const QString& defaultValue)
{
    addOptionalOption(0, longName, target, defaultValue);
}

void OptionParser::addOption(const Option& option)
{
    m_options.append(option);
}

void OptionParser::setRequiredArgument(QString* target)
{
    m_requiredSlot.target = target;
    m_requiredCount = 1;
}

void OptionParser::setOptionalArgument(QString* target)
{
    m_optionalSlot.target = target;
    m_optionalCount = 1;
}

OptionParser::Token OptionParser::nextToken(QStringList& stack)
{
    Token token;
    if (stack.isEmpty())
        return token;
    token.raw = token.text = stack.takeLast();
    ++m_currentIndex;

    if (token.raw.startsWith(QLatin1String("--"))) {
        token.kind = TokenKind::Long;
        token.text = token.raw.mid(2);
        if (token.text.isEmpty()) {
            qWarning("'--' feature not supported, yet");
            std::exit(2);
        }
        const int equals = token.text.indexOf(QLatin1Char('='));
        if (equals >= 0) {
            stack.append(token.text.mid(equals + 1));
            --m_currentIndex;
            token.text.truncate(equals);
            token.raw.truncate(equals + 2);
        }
    } else if (token.raw.size() != 1 && token.raw.startsWith(QLatin1Char('-'))) {
        token.kind = TokenKind::Short;
        if (token.raw.size() > 2) {
            stack.append(token.raw.mid(2));
            --m_currentIndex;
            token.raw.truncate(2);
        }
        token.text = token.raw.mid(1);
    } else {
        token.kind = TokenKind::Argument;
    }
    return token;
}

OptionParser::Option OptionParser::findOption(const Token& token) const
{
    if (token.kind == TokenKind::End) {
        Option end;
        end.type = End;
        return end;
    }
    for (const Option& option : m_options) {
        const bool isLong = token.kind == TokenKind::Long && option.longName == token.text;
        const bool isShort = token.kind == TokenKind::Short && option.shortLetter != 0 &&
                             token.text == QString(QLatin1Char(option.shortLetter));
        if (isLong || isShort)
            return option;
    }
    return Option();
}

void OptionParser::markSeen(const Option& option)
{
    if (!option.longName.isEmpty())
        m_seen.insert(option.longName, 1);
    if (option.shortLetter)
        m_seen.insert(QString(QLatin1Char(option.shortLetter)), 1);
}

bool OptionParser::storePositional(const QString& text)
{
    const Option* slot = m_requiredCount > 0 ? &m_requiredSlot : m_optionalCount > 0 ? &m_optionalSlot : nullptr;
    if (!slot)
        return true; // the program declares none: plain arguments are ignored
    QString* target = static_cast<QString*>(slot->target);
    if (!target->isNull()) {
        qWarning("Too many arguments");
        return false;
    }
    *target = text;
    return true;
}

bool OptionParser::parse(bool untilFirstSwitchOnly)
{
    QStringList stack;
    for (const QString& argument : m_arguments)
        stack.prepend(argument);

    State state = State::Start;
    Option current;
    TokenKind currentKind = TokenKind::Long;
    for (bool finalPass = true;;) {
        if (stack.isEmpty() && !finalPass) {
            if (m_requiredCount > 0 && static_cast<QString*>(m_requiredSlot.target)->isNull()) {
                qWarning("Lacking required argument");
                return false;
            }
            return true;
        }
        Token token = nextToken(stack);
        const Option option = findOption(token);
        if (option.type == Unknown && (token.kind == TokenKind::Long || token.kind == TokenKind::Short)) {
            if (current.type != VariableLength) {
                qWarning("Unknown option %s%s", token.kind == TokenKind::Long ? "--" : "-", qUtf8Printable(token.text));
                return false;
            }
            token.kind = TokenKind::Argument;
        }

        switch (state) {
        case State::Start:
            switch (option.type) {
            case Switch:
                *static_cast<bool*>(option.target) = true;
                markSeen(option);
                break;
            case SingleArgument:
            case Repeatable:
            case OptionalArgument:
            case VariableLength:
                current = option;
                currentKind = token.kind;
                markSeen(option);
                state = option.type == SingleArgument || option.type == Repeatable ? State::Mandatory : State::Optional;
                break;
            case End:
                break;
            case Unknown:
                if (!storePositional(token.text))
                    return false;
                break;
            }
            break;
        case State::Mandatory:
            if (token.kind != TokenKind::Argument) {
                const QString name =
                    currentKind == TokenKind::Long ? current.longName : QString(QLatin1Char(current.shortLetter));
                qWarning("Expected an argument after '%s' option", qUtf8Printable(name));
                return false;
            }
            if (current.type == Repeatable)
                static_cast<QStringList*>(current.target)->append(token.text);
            else
                *static_cast<QString*>(current.target) = token.text;
            state = State::Start;
            break;
        case State::Optional:
            if (token.kind == TokenKind::Argument) {
                if (current.type == VariableLength) {
                    static_cast<QStringList*>(current.target)->append(token.text);
                } else {
                    *static_cast<QString*>(current.target) = token.text;
                    state = State::Start;
                }
            } else {
                if (current.type == OptionalArgument)
                    *static_cast<QString*>(current.target) = current.defaultValue;
                if (token.kind != TokenKind::End) {
                    // Its attached value, if any, already lies on the stack as a plain argument.
                    stack.append(token.raw);
                    --m_currentIndex;
                }
                state = State::Start;
                current = Option();
            }
            break;
        }

        if (untilFirstSwitchOnly && option.type == Switch)
            return true;
        if (token.kind == TokenKind::End)
            finalPass = false;
    }
}
