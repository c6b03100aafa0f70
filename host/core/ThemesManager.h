#pragma once

#include "IThemesManager.h"

// Two built-in looks: the platform's light palette and a dark one.
class ThemesManager final : public IThemesManager
{
public:
    static ThemesManager* instance();

    QStringList getThemes() const override;
    QString getThemeName(const QString& id) const override;
    QString getSavedTheme() const override;
    QString getCurrentTheme() const override { return m_strCurrent; }
    void saveThemes(const QString& id) override;
    // Applies the saved theme to the application.
    void applySaved();

private:
    ThemesManager() = default;
    void apply(const QString& id);

    QString m_strCurrent;
};
