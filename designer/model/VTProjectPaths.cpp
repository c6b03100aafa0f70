#include "VTProjectPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

VTProjectPaths::VTProjectPaths(const QString& projectFilePath)
    : m_strFilePath(projectFilePath)
{}

QString VTProjectPaths::getProjectFilePath(const QString& location, const QString& baseName)
{
    const QDir folder(QDir(location).filePath(baseName));
    return QDir::cleanPath(
        QFileInfo(folder.filePath(baseName + QLatin1Char('.') + getProjectSuffix())).absoluteFilePath());
}

QString VTProjectPaths::stripProjectSuffix(const QString& name)
{
    QString result = name.trimmed();
    const QString suffix = QLatin1Char('.') + getProjectSuffix();
    if (result.endsWith(suffix, Qt::CaseInsensitive))
        result.chop(suffix.size());
    return result.trimmed();
}

QString VTProjectPaths::getName() const
{
    return QFileInfo(m_strFilePath).completeBaseName();
}

QString VTProjectPaths::getLocation() const
{
    return QFileInfo(m_strFilePath).absolutePath();
}

QString VTProjectPaths::getResourceFolderName() const
{
    return getName() + QStringLiteral("_res");
}

QString VTProjectPaths::getResourceFolderPath() const
{
    return QDir(getLocation()).filePath(getResourceFolderName());
}

QString VTProjectPaths::getBackupFilePath() const
{
    return QDir(getLocation()).filePath(getName() + QLatin1Char('.') + getBackupSuffix());
}

QString VTProjectPaths::getHTML5EntryFileName() const
{
    return getName() + QStringLiteral(".html");
}

QString VTProjectPaths::getHTML5DataFileName() const
{
    return getName() + QStringLiteral(".js");
}

QString VTProjectPaths::getHTML5CSSFileName() const
{
    return getName() + QStringLiteral(".css");
}

QString VTProjectPaths::getPath4Export(const QString& path)
{
    const QStringList segments = QDir::fromNativeSeparators(path).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QStringList kept;
    for (const QString& segment : segments) {
        // "." and ".." are ordinary relative steps; a run of three or more dots names nothing.
        const bool bOnlyDots =
            segment.size() >= 3 &&
            std::all_of(segment.cbegin(), segment.cend(), [](QChar c) { return c == QLatin1Char('.'); });
        if (!bOnlyDots)
            kept.append(segment);
    }
    return kept.join(QLatin1Char('/'));
}
