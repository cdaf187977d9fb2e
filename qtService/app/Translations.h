#pragma once

#include <QStringList>
#include <QTranslator>

#include <memory>
#include <vector>

// The texts of the program and of the framework in the user's language, for as long as the object lives. The sources
// are English; a language without a file of ours shows them. The wording for this platform lies beneath every language,
// so that no text names another platform. Main thread, after the application object.
class Translations
{
public:
    // Languages as QLocale::uiLanguages() gives them, the preferred first.
    explicit Translations(const QStringList& languages);
    ~Translations();

    // The language whose texts are shown: "en", "de", "pt_BR" ...
    QString language() const { return m_language; }

private:
    void install(const QString& name, const QString& folder);

    QString m_language;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};
