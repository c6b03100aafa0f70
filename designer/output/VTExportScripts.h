#pragma once

#include <QString>

class VTDocument;

// The scripts of an exported page. The data script (N.js) hands one document's scene data and
// functions to the player; the load script, inline in the page, opens the document with its
// preloader. The player's global is KorvelVetra: a data script pushes into its loadedDocs, the
// load script calls its openDoc.
class VTExportScripts final
{
public:
    VTExportScripts() = delete;

    // The compact JSON of one document as the player reads it. bPreview: the preview folder's
    // form and, for the main document, the symbol being edited instead of the project.
    // bCurrentSceneOnly: that symbol's current scene alone. bPreloader: the document is the
    // custom preloader of another one, so its events go under "pe" and its resources live in
    // the preloader's folder.
    static QString createDocDataScript(VTDocument& document, bool bPreview, bool bCurrentSceneOnly,
                                       bool bPreloader);
    // "var f = [];" followed by each function of the project as a variable and a row of f.
    // Functions whose names cannot be declared are left out (the export refuses them before).
    // bInline: the script goes into the page itself, where no "</script" may stand.
    static QString createFunctionDataScript(const VTDocument& document, bool bInline);
    // The whole data script N.js.
    static QString createDataFileScript(VTDocument& document, bool bPreview, bool bCurrentSceneOnly);
    // The page's own script that opens the document; for a normal document with a custom
    // preloader, the preloader's data and functions are in it. May load the preloader.
    static QString createLoadScript(VTDocument& document, bool bPreview);

    // The helper names that the project's functions may use, from the resources'
    // "canvas/vtscopeinjection.js", without comments and trimmed; read once per process.
    // Empty when the file is missing.
    static QString getScopeInjectionScript();
    // Forgets the text read, so the next call reads the file again.
    static void reloadScopeInjectionScript();
    // The scan that makes the text above: "//" up to and with the next line break and "/*" up to
    // the next "*/" go, wherever they stand.
    static QString stripComments(const QString& script);

    // The page's alignment of the stage as the player names it.
    static QString convertAlignToString(int nAlign);

    // The "resourceFolder" of the data: where the page finds the document's resources.
    static QString getResourceFolder(const VTDocument& document, bool bPreview, bool bPreloader);
};
