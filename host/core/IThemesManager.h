#pragma once

#include <QString>
#include <QStringList>

class IThemesManager
{
public:
    virtual ~IThemesManager() = default;
    virtual QStringList getThemes() const = 0;
    virtual QString getThemeName(const QString& id) const = 0;
    virtual QString getSavedTheme() const = 0;
    virtual QString getCurrentTheme() const = 0;
    // Stores the id; it applies now and at the next start.
    virtual void saveThemes(const QString& id) = 0;
};
