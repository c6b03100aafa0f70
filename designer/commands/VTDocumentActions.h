#pragma once

class VTCommandAction;
class VTDocument;
class VTPreloader;

// The actions on the document and its symbols outside the element tree and the timelines: event
// listeners, resources, functions, symbol settings, the editing symbol, export settings and the
// preloader. Record-only ids change nothing and are not handled here.
class VTDocumentActions final
{
public:
    VTDocumentActions() = delete;

    static bool handles(int nId);
    static void run(VTCommandAction& action, bool bUndo);

    // The preloader whose own loading indicator the document's settings reach: the document
    // itself when it is a preloader, else its loaded preloader document; null when neither.
    static VTPreloader* getPreloader(VTDocument* pDocument);

private:
    static void addEventListener(VTCommandAction& action, bool bAdd);
    static void moveEventListener(VTCommandAction& action);
    static void changeEventAction(VTCommandAction& action);
    static void setResourcesDeleted(VTCommandAction& action, bool bDeleted);
    static void addFunction(VTCommandAction& action, bool bAdd);
    static void changeFunction(VTCommandAction& action);
    static void changeMediaFormat(VTCommandAction& action);
    static void changeResource(VTCommandAction& action);
    static void changeSymbol(VTCommandAction& action);
    static void changeCurrentSymbol(VTCommandAction& action, bool bUndo);
    static void changeDocument(VTCommandAction& action);
    static void changeLoaderProps(VTCommandAction& action);
};
