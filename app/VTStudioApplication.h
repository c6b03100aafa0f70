#pragma once

#include <QStringList>

class MainWindow;

// Start-up and shut-down of the studio around the host window and the plug-ins.
class VTStudioApplication final
{
public:
    // Loads the plug-ins into `window`. A required plug-in that cannot load is an error:
    // false, with the reasons in `errors`.
    static bool loadPlugins(MainWindow& window, QStringList* pErrors);
    static QString pluginPath();
    // Shuts the plug-ins down and stores what the host keeps in the settings.
    static void shutdown();
};
