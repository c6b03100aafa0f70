#pragma once

#include <QString>

class MainWindow;

// Entry point to the host's services for plug-ins.
class ICore final
{
public:
    static MainWindow* getMainWindow();
    static void setMainWindow(MainWindow* pWindow);
    // Folder that holds "resources/" with the web pages and data files. VETRA_RESOURCE_PATH
    // overrides it; otherwise it is found beside the executable.
    static QString resourcePath();
    static QString versionString() { return QStringLiteral("2.6.0"); }
    static QString applicationName() { return QStringLiteral("Vetra Studio"); }
};
