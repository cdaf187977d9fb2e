#include "qtService/app/Translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>

namespace {

const char* const ownFolder = ":/translations";

// QTranslator would pass over English, which needs no file, to a language that the user likes less.
QString chooseLanguage(const QStringList& languages)
{
    for (QString language : languages) {
        language.replace(QLatin1Char('-'), QLatin1Char('_'));
        for (; !language.isEmpty(); language.truncate(qMax(0, language.lastIndexOf(QLatin1Char('_'))))) {
            if (language == QLatin1String("en") ||
                QFile::exists(QStringLiteral("%1/kerval_%2.qm").arg(QLatin1String(ownFolder), language)))
                return language;
        }
    }
    return QStringLiteral("en");
}

} // namespace

Translations::Translations(const QStringList& languages)
    : m_language(chooseLanguage(languages))
{
    const QString own = QLatin1String(ownFolder);
    install(QStringLiteral("kerval_linux_en"), own);
    if (m_language == QLatin1String("en"))
        return;
    // The framework's own texts: the buttons of message boxes, the file dialogs.
    install(QStringLiteral("qtbase_") + m_language, QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    install(QStringLiteral("kerval_") + m_language, own);
}

Translations::~Translations()
{
    for (const auto& translator : m_translators)
        QCoreApplication::removeTranslator(translator.get());
}

// What is installed later is asked first.
void Translations::install(const QString& name, const QString& folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(name, folder))
        return;
    QCoreApplication::installTranslator(translator.get());
    m_translators.push_back(std::move(translator));
}
