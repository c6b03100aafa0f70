#pragma once

#include <QString>
#include <QStringList>

class ILanguageManager
{
public:
    virtual ~ILanguageManager() = default;
    virtual QStringList getLanguages() const = 0;
    virtual QString getLanguageName(const QString& id) const = 0;
    virtual QString getSavedLanguage() const = 0;
    virtual QString getCurrentLanguage() const = 0;
    // Stores the id; a language change applies at the next start.
    virtual void saveLanguage(const QString& id) = 0;
};
