#include "IPlugin.h"

#include "PluginManager.h"

namespace ExtensionSystem {

IPlugin::IPlugin() = default;

IPlugin::~IPlugin()
{
    for (int i = m_lstAutoReleased.size() - 1; i >= 0; --i) {
        QObject* pObject = m_lstAutoReleased.at(i);
        PluginManager::removeObject(pObject);
        delete pObject;
    }
}

QObject* IPlugin::remoteCommand(const QStringList&, const QString&, const QStringList&)
{
    return nullptr;
}

void IPlugin::addAutoReleasedObject(QObject* pObject)
{
    if (!pObject)
        return;
    m_lstAutoReleased.append(pObject);
    PluginManager::addObject(pObject);
}

} // namespace ExtensionSystem
