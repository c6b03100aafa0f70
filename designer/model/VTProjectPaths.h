#pragma once

#include <QString>

// The names that follow from a project file <location>/N/N.vetra: the project folder holds the
// file, its backup N.vetrabak and the resource folder N_res; an export writes N.html, N.js, N.css.
class VTProjectPaths final
{
public:
    explicit VTProjectPaths(const QString& projectFilePath);

    static QString getProjectSuffix() { return QStringLiteral("vetra"); }
    static QString getBackupSuffix() { return QStringLiteral("vetrabak"); }
    static QString getPackageSuffix() { return QStringLiteral("vetrapack"); }

    // The project file of the project named baseName in its own folder under location.
    static QString getProjectFilePath(const QString& location, const QString& baseName);
    // baseName with a trailing ".vetra" (any case) cut and blanks trimmed.
    static QString stripProjectSuffix(const QString& name);

    QString getName() const;
    QString getLocation() const;
    QString getResourceFolderName() const;
    QString getResourceFolderPath() const;
    QString getBackupFilePath() const;
    QString getHTML5EntryFileName() const;
    QString getHTML5DataFileName() const;
    QString getHTML5CSSFileName() const;

    // "/" separators, no empty segments and no segment made only of three or more dots.
    static QString getPath4Export(const QString& path);

private:
    QString m_strFilePath;
};
