#pragma once

#include "VTCmdParam.h"

#include <QList>

class VTDocument;
class VTFunction;

// One typed change of the model inside a command. The number says what it does; the positional
// parameters say to what. redo() and undo() write back into the parameters what they need to
// reverse themselves, so a command can run either way any number of times.
class VTCommandAction
{
public:
    enum ActionId : int
    {
        AddElement = 1,
        RemoveElement = 2,
        ReparentElement = 3,
        ChangeElementOrder = 4,
        AddScene = 5,
        RemoveScene = 6,
        SelectScene = 7,
        MoveScene = 8,
        AddTimeline = 9,
        RemoveTimeline = 10,
        SetCurrentTimeline = 11,
        RenameTimeline = 12,
        AddLabel = 13,
        RemoveLabel = 14,
        RenameLabel = 15,
        MoveLabel = 16,
        AddAnimation = 17,
        RemoveAnimation = 18,
        AddKeyframe = 19,
        RemoveKeyframe = 20,
        MoveKeyframe = 21,
        ChangeEasing = 22,
        SetTransition = 23,
        InvertKeyValues = 24,
        AddKeyValue = 25,
        RemoveKeyValue = 26,
        ChangeKeyValue = 27,
        MoveKeyValue = 28,
        AddAnchorPoint = 29,
        RemoveAnchorPoint = 30,
        SetAnchorKeyTime = 31,
        SetAnchorPointData = 32,
        SelectElement = 33,
        AddEventListener = 34,
        RemoveEventListener = 35,
        MoveEventListener = 36,
        ChangeEventAction = 37,
        MoveTrigger = 38,
        RestoreResource = 39,
        DeleteResource = 40,
        CommandFinished = 41,
        EditingSymbolChanged = 43,
        AddFunction = 44,
        RemoveFunction = 45,
        ChangeFunction = 46,
        ChangeMediaFormat = 47,
        RenameResource = 48,
        SetIncludeResource = 49,
        ChangeResourceOrder = 50,
        TextEditingChanged = 51,
        ChangeResourcePath = 52,
        TextFormatChanged = 53,
        TextEditorCommand = 54,
        MediaInfoChanged = 55,
        AddPlaybackListener = 56,
        RemovePlaybackListener = 57,
        ChangePlaybackListener = 58,
        SetSymbolWidth = 59,
        SetSymbolHeight = 60,
        SetSymbolAlignment = 61,
        ChangeCurrentSymbol = 62,
        ChangeResourceUuid = 63,
        SetExportTitle = 65,
        SetExportDescription = 66,
        SetExportAuthor = 67,
        SetAutoplay = 68,
        SetAutoOrient = 69,
        SetLoaderType = 70,
        SetDefaultLoaderProps = 71,
        SetCanvasLoaderProps = 72,
        SetUseLoadingIndicator = 73,
        TimelinePlayed = 74,
        TimelinePaused = 75,
        TimeChanged = 76,
        SetExportKeywords = 77,
        ChangeAllKeyValues = 78,
        ChangeMainTimeline = 79,
        InvertAnchorPoints = 80,
        ChangeUnitSign = 81,
        StopAllTasks = 82,
        AddLayoutProperty = 83,
        RemoveLayoutProperty = 84,
        UpdateLayoutProperty = 85,
        AddLayoutAnimations = 86,
        RemoveLayoutAnimations = 87,
        UpdateLayoutAnimations = 88,
        AddBreakpoint = 89,
        RemoveBreakpoint = 90,
        UpdateBreakpoint = 91,
        ChangeCurrentBreakpoint = 92,
        ChangeAnimationInherits = 93,
        SetEmbedSystemFonts = 94,
        SetHtml5ResFolder = 95,
        SetViewport = 96,
        SetContainerId = 97,
        SetPreloaderResFolder = 98,
        SetHtmlOutput = 99,
        SetCssOutput = 100,
        ChangeElementInherits = 101,
        SetAutoFit = 102,
        ResourceChanged = 103,
    };

    // nReserve only sizes the parameter list.
    VTCommandAction(int nId, VTDocument* pDocument, int nReserve = 0, bool bSkipFirstRedo = false);
    virtual ~VTCommandAction();

    VTCommandAction(const VTCommandAction&) = delete;
    VTCommandAction& operator=(const VTCommandAction&) = delete;

    virtual void undo();
    virtual void redo();

    int getId() const { return m_nId; }
    VTDocument* getDocument() const { return m_pDocument; }
    void setDocument(VTDocument* pDocument) { m_pDocument = pDocument; }
    bool isSkipNextRedo() const { return m_bSkipNextRedo; }
    void setSkipNextRedo(bool bSkip) { m_bSkipNextRedo = bSkip; }

    QList<VTCmdParam*>& getParams() { return m_lstParams; }
    const QList<VTCmdParam*>& getParams() const { return m_lstParams; }
    // The parameter at nIndex, or null past the end.
    VTCmdParam* getParam(int nIndex) const { return m_lstParams.value(nIndex, nullptr); }
    int paramCount() const { return m_lstParams.size(); }

    // Appends a parameter; the action owns it. The pointer forms take (object, owned).
    VTCmdParam* addParam(VTCmdParam* pParam);
    template <typename T> VTCmdParam* addParam(const T& value) { return addParam(new VTCmdParam(value)); }
    template <typename T> VTCmdParam* addParam(T* pObject, bool bOwned = false)
    {
        return addParam(new VTCmdParam(pObject, bOwned));
    }
    VTCmdParam* addParam(const char* pszValue)
    {
        return addParam(new VTCmdParam(QString::fromUtf8(pszValue)));
    }
    // Removes and deletes the parameters from nIndex on.
    void truncateParams(int nIndex);

    // Fill the parameters with the present state before a change, so that redo writes the new
    // values and keeps these for undo.
    void prepareToChangeJSFunctionParams(VTFunction* pFunction);
    void prepareToChangeDefaultLoaderProps();
    void prepareToChangeLoaderDocCanvasLoaderProps();

    // True for the ids after which the command refreshes every scene's current timeline.
    static bool shouldUpdateTimeline(int nId);

protected:
    // Runs redo when bUndo is false; the action families keep their undo beside their redo.
    void run(bool bUndo);

    int m_nId = 0;
    VTDocument* m_pDocument = nullptr;
    bool m_bSkipNextRedo = false;
    QList<VTCmdParam*> m_lstParams;
};
