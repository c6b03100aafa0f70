#include "LanguageManager.h"

#include "ICore.h"
#include "PluginManager.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTranslator>

namespace {
constexpr char kLanguageKey[] = "Vetra/Language";
}

LanguageManager::LanguageManager()
{
    m_mapNames.insert(QStringLiteral("en"), QStringLiteral("English"));
    m_mapNames.insert(QStringLiteral("de"), QStringLiteral("Deutsch"));
    m_mapNames.insert(QStringLiteral("fr"), QStringLiteral("Français"));
}

LanguageManager* LanguageManager::instance()
{
    static LanguageManager s_instance;
    return &s_instance;
}

QStringList LanguageManager::getLanguages() const
{
    return m_mapNames.keys();
}

QString LanguageManager::getLanguageName(const QString& id) const
{
    return m_mapNames.value(id);
}

QString LanguageManager::getSavedLanguage() const
{
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    const QString id = pSettings ? pSettings->value(QLatin1String(kLanguageKey)).toString() : QString();
    return m_mapNames.contains(id) ? id : QString();
}

void LanguageManager::saveLanguage(const QString& id)
{
    if (!id.isEmpty() && !m_mapNames.contains(id))
        return;
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings())
        pSettings->setValue(QLatin1String(kLanguageKey), id);
}

void LanguageManager::applySaved()
{
    m_strCurrent = getSavedLanguage();
    if (m_strCurrent.isEmpty() || m_strCurrent == QLatin1String("en"))
        return;
    auto* pTranslator = new QTranslator(QCoreApplication::instance());
    if (pTranslator->load(QStringLiteral("vetra_") + m_strCurrent, ICore::resourcePath() + QStringLiteral("/translations")))
        QCoreApplication::installTranslator(pTranslator);
    else
        delete pTranslator;
}
