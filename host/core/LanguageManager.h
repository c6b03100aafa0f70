#pragma once

#include "ILanguageManager.h"

#include <QMap>

// The languages the studio speaks; the choice is stored under "Vetra/Language" and also handed
// to the web pages.
class LanguageManager final : public ILanguageManager
{
public:
    static LanguageManager* instance();

    QStringList getLanguages() const override;
    QString getLanguageName(const QString& id) const override;
    QString getSavedLanguage() const override;
    QString getCurrentLanguage() const override { return m_strCurrent; }
    void saveLanguage(const QString& id) override;
    // Installs the saved language's translations, when there are any.
    void applySaved();

private:
    LanguageManager();

    QMap<QString, QString> m_mapNames;
    QString m_strCurrent;
};
