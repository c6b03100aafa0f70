#include "VTStudioApplication.h"

#include "ActionManager.h"
#include "DocumentManager.h"
#include "MainWindow.h"
#include "PluginManager.h"
#include "PluginSpec.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

using ExtensionSystem::PluginManager;
using ExtensionSystem::PluginSpec;

QString VTStudioApplication::pluginPath()
{
    const QString env = qEnvironmentVariable("VETRA_PLUGIN_PATH");
    if (!env.isEmpty())
        return env;
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/vetra-studio/plugins"));
}

bool VTStudioApplication::loadPlugins(MainWindow&, QStringList* pErrors)
{
    PluginManager::addBuiltinPlugin(QStringLiteral("core"), QStringLiteral("1.0.0"));
    PluginManager::setPluginPaths({pluginPath()});
    PluginManager::loadPlugins(QCoreApplication::arguments());
    QStringList errors = PluginManager::errorStrings();
    bool bOk = true;
    const PluginSpec* pDesigner = PluginManager::findPlugin(QStringLiteral("designer"));
    if (!pDesigner || pDesigner->getState() != PluginSpec::Running) {
        bOk = false;
        if (!pDesigner)
            errors << QCoreApplication::translate("VTStudioApplication",
                                                  "The designer plug-in was not found in \"%1\".")
                          .arg(QDir::toNativeSeparators(pluginPath()));
    }
    for (const PluginSpec* pSpec : PluginManager::plugins()) {
        if (pSpec->isRequired() && pSpec->hasError())
            bOk = false;
    }
    if (pErrors)
        *pErrors = errors;
    ActionManager::readFromSettings();
    return bOk;
}

void VTStudioApplication::shutdown()
{
    ActionManager::saveSettings();
    DocumentManager::saveSettings();
    PluginManager::shutdown();
}
