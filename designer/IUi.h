#pragma once

#include "ISingleton.h"

#include <QIcon>
#include <QMap>
#include <QPixmap>

// Loads the studio's images by base name, size and state, and keeps what it loaded.
class IUi final : public ISingleton<IUi>
{
public:
    enum VTImageSize { Size_None = 0, Size_12 = 1, Size_16 = 2, Size_24 = 3, Size_32 = 4, Size_48 = 5, Size_64 = 6 };
    enum VTImageState { State_Any = 1, State_Normal = 2, State_Disabled = 4 };

    static QString imageDir() { return QStringLiteral(":/designer/images/"); }
    // "<name><size suffix><state suffix>.png"
    static QString fileName(const QString& name, int nState, int nSize);

    QPixmap getPixmap(const QString& name, int nState = State_Normal, int nSize = Size_None,
                      const QString& dir = imageDir());
    QIcon getIcon(const QString& name, int nSize = Size_None, const QString& dir = imageDir());
    int getCacheSize() const { return m_mapCache.size(); }

private:
    friend class ISingleton<IUi>;
    IUi() = default;

    QMap<QString, QPixmap> m_mapCache;
};
