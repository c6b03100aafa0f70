#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

class QPluginLoader;

namespace ExtensionSystem {

class IPlugin;

struct PluginDependency
{
    QString strName;
    QString strVersion;
};

// What the loader knows of one plug-in: its metadata, its state and, after a failure, why.
class PluginSpec final
{
public:
    enum State { Invalid, Read, Resolved, Loaded, Initialized, Running, Stopped, Deleted };

    // A plug-in the host provides itself (the "core" that others depend on).
    static PluginSpec* createBuiltin(const QString& name, const QString& version);
    // Reads the metadata of a library without loading its code.
    static PluginSpec* read(const QString& filePath);
    ~PluginSpec();

    QString getName() const { return m_strName; }
    QString getVersion() const { return m_strVersion; }
    QString getCompatVersion() const { return m_strCompatVersion; }
    QString getCategory() const { return m_strCategory; }
    QString getDescription() const { return m_strDescription; }
    QString getFilePath() const { return m_strFilePath; }
    bool isRequired() const { return m_bRequired; }
    bool isBuiltin() const { return m_bBuiltin; }
    QVector<PluginDependency> getDependencies() const { return m_vecDependencies; }
    State getState() const { return m_state; }
    bool hasError() const { return !m_strError.isEmpty(); }
    QString getErrorString() const { return m_strError; }
    IPlugin* getPlugin() const { return m_pPlugin; }

    // True when this plug-in can stand in for a dependency on version `version`.
    bool provides(const QString& name, const QString& version) const;

    // "x.y.z" with up to four numeric parts; anything else is not a version.
    static bool isValidVersion(const QString& version);
    // Negative, zero or positive as v1 is older, equal or newer than v2.
    static int compareVersions(const QString& v1, const QString& v2);

private:
    friend class PluginManager;
    PluginSpec() = default;
    bool parseMetaData(const QJsonObject& metaData);
    void setError(const QString& text);

    QString m_strName;
    QString m_strVersion;
    QString m_strCompatVersion;
    QString m_strCategory;
    QString m_strDescription;
    QString m_strFilePath;
    QString m_strError;
    bool m_bRequired = false;
    bool m_bBuiltin = false;
    QVector<PluginDependency> m_vecDependencies;
    State m_state = Invalid;
    QPluginLoader* m_pLoader = nullptr;
    IPlugin* m_pPlugin = nullptr;
};

} // namespace ExtensionSystem
