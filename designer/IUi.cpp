#include "IUi.h"

#include <QDir>

QString IUi::fileName(const QString& name, int nState, int nSize)
{
    static const char* const kSizeSuffix[] = {"", "_12", "_16", "_24", "_32", "_48", "_64"};
    const QString size = (nSize >= 0 && nSize <= Size_64) ? QLatin1String(kSizeSuffix[nSize]) : QString();
    const QString state = nState == State_Disabled ? QStringLiteral("_d") : QString();
    return QStringLiteral("%1%2%3.png").arg(name, size, state);
}

QPixmap IUi::getPixmap(const QString& name, int nState, int nSize, const QString& dir)
{
    const QString path = QDir(dir).absoluteFilePath(fileName(name, nState, nSize));
    const QPixmap cached = m_mapCache.value(path);
    if (!cached.isNull())
        return cached;
    QPixmap pixmap;
    if (pixmap.load(path)) {
        m_mapCache.insert(path, pixmap);
        return pixmap;
    }
    // A missing image is not an error: callers get an empty square of the usual icon size.
    return QPixmap(16, 16);
}

QIcon IUi::getIcon(const QString& name, int nSize, const QString& dir)
{
    QIcon icon;
    icon.addPixmap(getPixmap(name, State_Normal, nSize, dir), QIcon::Normal, QIcon::Off);
    icon.addPixmap(getPixmap(name, State_Disabled, nSize, dir), QIcon::Disabled, QIcon::Off);
    return icon;
}
