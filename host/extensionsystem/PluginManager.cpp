#include "PluginManager.h"

#include "IPlugin.h"
#include "PluginSpec.h"

#include <QDir>
#include <QLibrary>
#include <QPluginLoader>
#include <QSettings>
#include <QStandardPaths>

namespace ExtensionSystem {

PluginManager* PluginManager::instance()
{
    static PluginManager* s_pInstance = new PluginManager;
    return s_pInstance;
}

PluginManager::~PluginManager()
{
    qDeleteAll(m_lstSpecs);
    delete m_pSettings;
}

QString PluginManager::defaultSettingsPath()
{
    const QString env = qEnvironmentVariable("VETRA_SETTINGS_FILE");
    if (!env.isEmpty())
        return env;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
           + QStringLiteral("/Vetra/Vetra Studio.ini");
}

QSettings* PluginManager::settings()
{
    PluginManager* self = instance();
    if (!self->m_pSettings)
        self->m_pSettings = new QSettings(defaultSettingsPath(), QSettings::IniFormat);
    return self->m_pSettings;
}

void PluginManager::setSettings(QSettings* pSettings)
{
    PluginManager* self = instance();
    if (self->m_pSettings == pSettings)
        return;
    delete self->m_pSettings;
    self->m_pSettings = pSettings;
}

void PluginManager::addObject(QObject* pObject)
{
    if (!pObject)
        return;
    PluginManager* self = instance();
    {
        QWriteLocker locker(&self->m_lock);
        if (self->m_lstObjects.contains(pObject))
            return;
        self->m_lstObjects.append(pObject);
    }
    emit self->objectAdded(pObject);
}

void PluginManager::removeObject(QObject* pObject)
{
    PluginManager* self = instance();
    if (!pObject || !allObjects().contains(pObject))
        return;
    emit self->aboutToRemoveObject(pObject);
    QWriteLocker locker(&self->m_lock);
    self->m_lstObjects.removeAll(pObject);
}

QList<QObject*> PluginManager::allObjects()
{
    PluginManager* self = instance();
    QReadLocker locker(&self->m_lock);
    return self->m_lstObjects;
}

void PluginManager::addBuiltinPlugin(const QString& name, const QString& version)
{
    PluginManager* self = instance();
    if (findPlugin(name))
        return;
    self->m_lstSpecs.append(PluginSpec::createBuiltin(name, version));
}

void PluginManager::setPluginPaths(const QStringList& paths)
{
    instance()->m_lstPluginPaths = paths;
}

QStringList PluginManager::pluginPaths()
{
    return instance()->m_lstPluginPaths;
}

QList<PluginSpec*> PluginManager::plugins()
{
    return instance()->m_lstSpecs;
}

PluginSpec* PluginManager::findPlugin(const QString& name)
{
    for (PluginSpec* pSpec : instance()->m_lstSpecs) {
        if (pSpec->getName() == name)
            return pSpec;
    }
    return nullptr;
}

QStringList PluginManager::errorStrings()
{
    QStringList result;
    for (const PluginSpec* pSpec : instance()->m_lstSpecs) {
        if (pSpec->hasError()) {
            const QString who = pSpec->getName().isEmpty() ? QDir::toNativeSeparators(pSpec->getFilePath())
                                                           : pSpec->getName();
            result << tr("The plug-in \"%1\" was not loaded: %2").arg(who, pSpec->getErrorString());
        }
    }
    return result;
}

void PluginManager::readPluginSpecs()
{
    for (const QString& path : qAsConst(m_lstPluginPaths)) {
        const QDir dir(path);
        const QFileInfoList files = dir.entryInfoList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
        for (const QFileInfo& file : files) {
            if (!QLibrary::isLibrary(file.fileName()))
                continue;
            bool bKnown = false;
            for (const PluginSpec* pSpec : qAsConst(m_lstSpecs))
                bKnown = bKnown || pSpec->getFilePath() == file.absoluteFilePath();
            if (!bKnown)
                m_lstSpecs.append(PluginSpec::read(file.absoluteFilePath()));
        }
    }
}

void PluginManager::resolve(PluginSpec* pSpec)
{
    if (pSpec->getState() != PluginSpec::Read)
        return;
    for (const PluginDependency& dep : pSpec->m_vecDependencies) {
        PluginSpec* pProvider = nullptr;
        for (PluginSpec* pOther : qAsConst(m_lstSpecs)) {
            if (pOther != pSpec && !pOther->hasError() && pOther->provides(dep.strName, dep.strVersion))
                pProvider = pOther;
        }
        if (!pProvider) {
            pSpec->setError(tr("it needs \"%1\" version %2, which is not available.").arg(dep.strName, dep.strVersion));
            return;
        }
    }
    pSpec->m_state = PluginSpec::Resolved;
}

bool PluginManager::loadPlugin(PluginSpec* pSpec, const QStringList& arguments)
{
    pSpec->m_pLoader = new QPluginLoader(pSpec->getFilePath());
    QObject* pInstance = pSpec->m_pLoader->instance();
    auto* pPlugin = qobject_cast<IPlugin*>(pInstance);
    if (!pPlugin) {
        pSpec->setError(pInstance ? tr("the library does not provide a Vetra Studio plug-in.")
                                  : tr("the library did not load: %1").arg(pSpec->m_pLoader->errorString()));
        delete pInstance;
        pSpec->m_pLoader->unload();
        return false;
    }
    pSpec->m_pPlugin = pPlugin;
    pSpec->m_state = PluginSpec::Loaded;
    QString error;
    if (!pPlugin->initialize(arguments, &error)) {
        pSpec->setError(error.isEmpty() ? tr("its initialisation failed.") : error);
        delete pPlugin;
        pSpec->m_pPlugin = nullptr;
        return false;
    }
    pSpec->m_state = PluginSpec::Initialized;
    return true;
}

void PluginManager::loadPlugins(const QStringList& arguments)
{
    PluginManager* self = instance();
    self->readPluginSpecs();
    // Dependencies only point at built-ins or earlier plug-ins, so repeated passes settle quickly.
    for (int pass = 0; pass < self->m_lstSpecs.size(); ++pass) {
        for (PluginSpec* pSpec : qAsConst(self->m_lstSpecs))
            self->resolve(pSpec);
    }
    for (PluginSpec* pSpec : qAsConst(self->m_lstSpecs)) {
        if (pSpec->getState() == PluginSpec::Resolved && !pSpec->isBuiltin()
            && self->loadPlugin(pSpec, arguments))
            self->m_lstLoadOrder.append(pSpec);
    }
    for (int i = self->m_lstLoadOrder.size() - 1; i >= 0; --i) {
        PluginSpec* pSpec = self->m_lstLoadOrder.at(i);
        pSpec->m_pPlugin->extensionsInitialized();
        pSpec->m_state = PluginSpec::Running;
    }
    for (int i = self->m_lstLoadOrder.size() - 1; i >= 0; --i)
        self->m_lstLoadOrder.at(i)->m_pPlugin->delayedInitialize();
    emit self->pluginsChanged();
}

void PluginManager::shutdown()
{
    PluginManager* self = instance();
    for (int i = self->m_lstLoadOrder.size() - 1; i >= 0; --i) {
        PluginSpec* pSpec = self->m_lstLoadOrder.at(i);
        pSpec->m_pPlugin->aboutToShutdown();
        pSpec->m_state = PluginSpec::Stopped;
    }
    for (int i = self->m_lstLoadOrder.size() - 1; i >= 0; --i) {
        PluginSpec* pSpec = self->m_lstLoadOrder.at(i);
        delete pSpec->m_pPlugin;
        pSpec->m_pPlugin = nullptr;
        pSpec->m_state = PluginSpec::Deleted;
    }
    self->m_lstLoadOrder.clear();
    if (self->m_pSettings)
        self->m_pSettings->sync();
}

} // namespace ExtensionSystem
