#include "ThemesManager.h"

#include "PluginManager.h"

#include <QApplication>
#include <QPalette>
#include <QSettings>
#include <QStyleFactory>

namespace {
constexpr char kThemeKey[] = "Vetra/Theme";
const QString kLight = QStringLiteral("light");
const QString kDark = QStringLiteral("dark");
} // namespace

ThemesManager* ThemesManager::instance()
{
    static ThemesManager s_instance;
    return &s_instance;
}

QStringList ThemesManager::getThemes() const
{
    return {kLight, kDark};
}

QString ThemesManager::getThemeName(const QString& id) const
{
    if (id == kDark)
        return QApplication::translate("ThemesManager", "Dark");
    if (id == kLight)
        return QApplication::translate("ThemesManager", "Light");
    return {};
}

QString ThemesManager::getSavedTheme() const
{
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    const QString id = pSettings ? pSettings->value(QLatin1String(kThemeKey), kDark).toString() : kDark;
    return getThemes().contains(id) ? id : kDark;
}

void ThemesManager::saveThemes(const QString& id)
{
    if (!getThemes().contains(id))
        return;
    if (QSettings* pSettings = ExtensionSystem::PluginManager::settings())
        pSettings->setValue(QLatin1String(kThemeKey), id);
    apply(id);
}

void ThemesManager::applySaved()
{
    apply(getSavedTheme());
}

void ThemesManager::apply(const QString& id)
{
    m_strCurrent = id;
    auto* pApp = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!pApp)
        return;
    pApp->setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (id != kDark) {
        pApp->setPalette(pApp->style()->standardPalette());
        return;
    }
    QPalette p;
    const QColor window(0x2b, 0x2d, 0x31), base(0x1f, 0x21, 0x24), text(0xe6, 0xe6, 0xe6);
    const QColor highlight(0x3d, 0x8b, 0xfd);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::ToolTipBase, base);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, window);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, Qt::white);
    p.setColor(QPalette::Highlight, highlight);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, highlight);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    pApp->setPalette(p);
}
