#pragma once

#include <QObject>
#include <QReadWriteLock>
#include <QStringList>

class QSettings;

namespace ExtensionSystem {

class IPlugin;
class PluginSpec;

// Finds, checks, loads and starts plug-ins, and keeps the pool of objects they share.
class PluginManager final : public QObject
{
    Q_OBJECT
public:
    static PluginManager* instance();

    // The settings every part of the studio reads and writes. The environment variable
    // VETRA_SETTINGS_FILE points it at another ini file (tests use a throw-away one).
    static QSettings* settings();
    // Takes ownership; replaces (and deletes) the previous settings object.
    static void setSettings(QSettings* pSettings);
    static QString defaultSettingsPath();

    static void addObject(QObject* pObject);
    static void removeObject(QObject* pObject);
    static QList<QObject*> allObjects();
    template <typename T> static T* getObject()
    {
        for (QObject* p : allObjects()) {
            if (T* pResult = qobject_cast<T*>(p))
                return pResult;
        }
        return nullptr;
    }

    // A plug-in the host itself provides, such as "core".
    static void addBuiltinPlugin(const QString& name, const QString& version);
    static void setPluginPaths(const QStringList& paths);
    static QStringList pluginPaths();
    // Reads metadata, resolves dependencies, loads, initialises and starts every plug-in found.
    // Plug-ins with a problem are not loaded; their PluginSpec records why.
    static void loadPlugins(const QStringList& arguments = {});
    static QList<PluginSpec*> plugins();
    static PluginSpec* findPlugin(const QString& name);
    // Errors of plug-ins that could not be loaded, one readable line each.
    static QStringList errorStrings();
    // Shuts plug-ins down in the reverse order of loading and deletes them.
    static void shutdown();

signals:
    void objectAdded(QObject* pObject);
    void aboutToRemoveObject(QObject* pObject);
    void pluginsChanged();

private:
    PluginManager() = default;
    ~PluginManager() override;
    void readPluginSpecs();
    void resolve(PluginSpec* pSpec);
    bool loadPlugin(PluginSpec* pSpec, const QStringList& arguments);

    QSettings* m_pSettings = nullptr;
    QStringList m_lstPluginPaths;
    QList<PluginSpec*> m_lstSpecs;
    QList<PluginSpec*> m_lstLoadOrder;
    QList<QObject*> m_lstObjects;
    mutable QReadWriteLock m_lock;
};

} // namespace ExtensionSystem
