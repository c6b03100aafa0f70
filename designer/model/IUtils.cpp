#include "IUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

const char s_szContainerAlphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr int s_nContainerFirstRange = 42;
constexpr int s_nContainerFullRange = 52;
constexpr int s_nContainerIdLength = 8;
constexpr int s_nMaxResourceNameLength = 200;

bool isReservedDeviceName(const QString& baseName)
{
    static const QStringList s_lstReserved = {QStringLiteral("CON"), QStringLiteral("PRN"),
                                              QStringLiteral("AUX"), QStringLiteral("NUL")};
    const QString upper = baseName.toUpper();
    if (s_lstReserved.contains(upper))
        return true;
    // COM1..COM9 and LPT1..LPT9
    return upper.size() == 4 &&
           (upper.startsWith(QLatin1String("COM")) || upper.startsWith(QLatin1String("LPT"))) &&
           upper.at(3) >= QLatin1Char('1') && upper.at(3) <= QLatin1Char('9');
}

} // namespace

int IUtils::clampToInt(double dValue)
{
    if (std::isnan(dValue))
        return 0;
    if (dValue >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (dValue <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(dValue);
}

int IUtils::clampToInt(qint64 nValue)
{
    return static_cast<int>(
        std::clamp<qint64>(nValue, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

QString IUtils::genContainerId()
{
    QString id;
    id.reserve(s_nContainerIdLength);
    id.append(QLatin1Char(s_szContainerAlphabet[rand() % s_nContainerFirstRange]));
    for (int i = 1; i < s_nContainerIdLength; ++i)
        id.append(QLatin1Char(s_szContainerAlphabet[rand() % s_nContainerFullRange]));
    return id;
}

bool IUtils::removeDir(const QString& path)
{
    if (path.trimmed().isEmpty())
        return false;
    QDir dir(path);
    if (dir.isRoot())
        return false;
    if (!dir.exists())
        return true;
    return dir.removeRecursively();
}

QString IUtils::convert2ValidResourceName(const QString& name)
{
    static const QString s_strReserved = QStringLiteral("\\/:*?\"<>|#%");
    QString result;
    result.reserve(name.size());
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control || s_strReserved.contains(c))
            result.append(QLatin1Char('_'));
        else
            result.append(c);
    }
    result = result.trimmed();
    while (result.endsWith(QLatin1Char('.')) || result.endsWith(QLatin1Char(' ')))
        result.chop(1);
    // A leading dot hides the file on Unix and is easy to lose on copies.
    if (result.startsWith(QLatin1Char('.')))
        result[0] = QLatin1Char('_');

    QString suffix = QFileInfo(result).suffix();
    QString base = suffix.isEmpty() ? result : result.left(result.size() - suffix.size() - 1);
    if (isReservedDeviceName(base))
        base.prepend(QLatin1Char('_'));
    if (base.isEmpty())
        base = QStringLiteral("_");
    if (suffix.size() > s_nMaxResourceNameLength / 2)
        suffix.truncate(s_nMaxResourceNameLength / 2);
    const int nRoom = s_nMaxResourceNameLength - (suffix.isEmpty() ? 0 : suffix.size() + 1);
    if (base.size() > nRoom)
        base.truncate(nRoom);
    if (suffix.isEmpty())
        return base;
    return base + QLatin1Char('.') + suffix;
}

QString IUtils::time2String(int nMilliseconds)
{
    qint64 nValue = nMilliseconds;
    const bool bNegative = nValue < 0;
    if (bNegative)
        nValue = -nValue;
    const qint64 nHours = nValue / 3600000;
    const qint64 nMinutes = (nValue / 60000) % 60;
    const qint64 nSeconds = (nValue / 1000) % 60;
    const qint64 nMillis = nValue % 1000;
    return QStringLiteral("%1%2:%3:%4.%5")
        .arg(bNegative ? QStringLiteral("-") : QString())
        .arg(nHours, 2, 10, QLatin1Char('0'))
        .arg(nMinutes, 2, 10, QLatin1Char('0'))
        .arg(nSeconds, 2, 10, QLatin1Char('0'))
        .arg(nMillis, 3, 10, QLatin1Char('0'));
}

bool IUtils::copyFileInBlocks(const QString& sourcePath, const QString& targetPath, bool* pbSourceFailed)
{
    if (pbSourceFailed)
        *pbSourceFailed = false;
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly)) {
        if (pbSourceFailed)
            *pbSourceFailed = true;
        return false;
    }
    QSaveFile target(targetPath);
    if (!target.open(QIODevice::WriteOnly))
        return false;
    QByteArray block;
    while (!source.atEnd()) {
        block = source.read(s_nCopyBlockSize);
        if (block.isEmpty() && source.error() != QFileDevice::NoError) {
            if (pbSourceFailed)
                *pbSourceFailed = true;
            target.cancelWriting();
            return false;
        }
        if (target.write(block) != block.size()) {
            target.cancelWriting();
            return false;
        }
    }
    return target.commit();
}

bool IUtils::copyDir(const QString& sourcePath, const QString& targetPath)
{
    const QDir source(sourcePath);
    if (!source.exists() || !QDir().mkpath(targetPath))
        return false;
    const QDir target(targetPath);
    const QFileInfoList entries = source.entryInfoList(QDir::Files | QDir::Dirs | QDir::Hidden |
                                                       QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo& entry : entries) {
        const QString targetEntry = target.filePath(entry.fileName());
        const bool bCopied = entry.isDir() ? copyDir(entry.absoluteFilePath(), targetEntry)
                                           : copyFileInBlocks(entry.absoluteFilePath(), targetEntry);
        if (!bCopied)
            return false;
    }
    return true;
}
