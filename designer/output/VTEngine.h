#pragma once

#include <QString>

// The web player that exports and previews ship: the folder that holds vtplayer.js with its page
// and style sheet templates, and the browser that previews open. Plain process-wide settings;
// preferences change them, exports and previews read them.
class VTEngine final
{
public:
    VTEngine() = delete;

    // The folder set by the user, or defaultPath() while none is set.
    static QString path();
    // The player that comes with the application: "resources/canvas/player" in the shared folder.
    static QString defaultPath();
    // An empty path goes back to the default.
    static void setPath(const QString& path);
    // Whether the path changed since the last call; the call clears it.
    static bool pathChanged();
    static bool isValid() { return isValidPath(path()); }
    // A player folder must hold every script, page and style sheet that the default one holds,
    // so that a partial copy is never taken for a player.
    static bool isValidPath(const QString& path);

    static QString browserPath();
    static void setBrowserPath(const QString& path);
    static bool useBuiltinBrowser();
    static void setUseBuiltinBrowser(bool bUse);

    // The shared folder that holds "resources/". Found as the host finds it: the environment
    // variable VETRA_RESOURCE_PATH, else share/vetra-studio beside the program's folder, else the
    // program's folder. The core library cannot reach the host's own lookup, which lives with
    // the main window.
    static QString resourcePath();

    static QString getPlayerFileName() { return QStringLiteral("vtplayer.js"); }
    static QString getPageTemplateFileName() { return QStringLiteral("vtplayer.html"); }
    static QString getStyleTemplateFileName() { return QStringLiteral("vtplayer.css"); }
};
