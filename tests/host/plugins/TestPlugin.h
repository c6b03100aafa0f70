#pragma once

#include "IPlugin.h"

// A plug-in whose metadata comes from the file named at build time, so each test library can
// carry a different kind of wrong metadata.
class TestPlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TEST_PLUGIN_IID FILE TEST_PLUGIN_JSON)
    Q_INTERFACES(ExtensionSystem::IPlugin)
public:
    bool initialize(const QStringList&, QString*) override { return true; }
    void extensionsInitialized() override {}
};
