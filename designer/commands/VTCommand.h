#pragma once

#include "VTLayoutKey.h"
#include "VTTypes.h"

#include <QList>
#include <QMap>
#include <QPointF>
#include <QSizeF>
#include <QUndoCommand>

class QObject;
class VTAnchorPoint;
class VTAnimation;
class VTCommandAction;
class VTDocument;
class VTElement;
class VTKeyValue;
class VTKeyframe;
class VTMatrix4x4;
class VTMotionPathKeyframe;
class VTResource;
class VTScene;
class VTSymbol;
class VTTimeline;
class VTUpdateViewInfo;

// An undoable change: an ordered list of actions, run forward by redo and backward by undo,
// with the place the user worked at (symbol, scenes, timelines, selection) restored first so
// undo takes the user back to where the change was made. Every action that ran is announced
// through the document's dataChanged, and record 41 closes each run.
class VTCommand : public QUndoCommand
{
public:
    VTCommand(VTDocument* pDocument, const QString& strText = QString(), QObject* pSender = nullptr,
              QUndoCommand* pParent = nullptr);
    ~VTCommand() override;

    void undo() override;
    void redo() override;
    // Runs redo once outside the undo stack; the caller deletes the command afterwards.
    virtual void doCmd();

    void addAction(VTCommandAction* pAction);
    void addActions(const QList<VTCommandAction*>& lstActions);
    void setActions(const QList<VTCommandAction*>& lstActions);
    const QList<VTCommandAction*>& getActions() const { return m_lstActions; }
    QList<VTCommandAction*> detachActions();
    void clearActions();
    bool isEmpty() const { return m_lstActions.isEmpty(); }

    void setSender(QObject* pSender) { m_pSender = pSender; }
    void setName(const QString& strName) { setText(strName); }
    void setDocument(VTDocument* pDocument);
    VTDocument* getDocument() const { return m_pDocument; }
    void setReverseUndoOrder(bool bReverse) { m_bReverseUndoOrder = bReverse; }
    void setReverseRedoOrder(bool bReverse) { m_bReverseRedoOrder = bReverse; }
    void setNeedPauseTimeline(bool bNeed) { m_bNeedPauseTimeline = bNeed; }

    void genereateNavigationContext();
    void setNavigationContext(const QList<VTSymbol*>& lstSymbols, const QList<VTScene*>& lstScenes,
                              const QList<VTElement*>& lstElements);
    bool hasNavigationContext() const { return m_bHasNavigationContext; }
    // Inside a symbol, a command that changes anything also gives the symbol's resource a new
    // identity (action 63), so its instances refresh. Answers whether it added that action.
    bool changeCurrentSymbolUuidIfNeeded();

    static bool shouldUpdateTimeline(int nId);
    void emitDataChanged(VTUpdateViewInfo* pInfo);

    // The first action with this id whose parameter nParamIndex holds pElement (a parameter of
    // another type matches a null element), or null.
    VTCommandAction* getElementActionById(int nId, VTElement* pElement, int nParamIndex) const;

    // Builders: each appends the actions of one gesture, computed from the model as it is now.
    // Only the breakpoint builders change the model while building (their actions skip the
    // first redo).
    void createActionsForVisibleCmd(VTElement* pElement, bool bVisible, bool bApplyParent);
    void createActionsForVisibleParentCmd(VTElement* pElement, bool bVisible);
    void createActionsForLockCmd(VTElement* pElement, bool bLock, bool bApplyParent);
    void createActionsForLockParentCmd(VTElement* pElement, bool bLock);
    void createActionForDeselectAllSceneButCurrent();
    void createActionsForDeselectAll(const QList<VTElement*>& lstElements, VTElement* pExcept);
    void createActionsForSelectElement(VTElement* pElement, bool bSelect);
    void createActionsForDeleteElement(VTElement* pElement, VTScene* pScene, bool bToGroups,
                                       bool bWholeGroups);
    void createActionsForDeleteElements(const QList<VTElement*>& lstElements, VTScene* pScene, bool bToGroups,
                                        bool bWholeGroups);
    void replaceElementsByGroupParent(QList<VTElement*>& lstElements);
    void createActionsForDeleteAnimationGroup(VTElement* pElement, VTTimeline* pTimeline);
    void createActionsForDeleteAnimation(VTAnimation* pAnimation, VTTimeline* pTimeline,
                                         const VTLayoutKey& key);
    void createActionsForChangeCurrentSymbol(VTSymbol* pSymbol);
    void createActionsToUpdateContainerSizeAndCurrentBreakpoint(VTSymbol* pSymbol, int nWidth, int nHeight);
    void createActionsForAddResource(VTResource* pResource, bool bSkipFirstRedo);
    void createActionsToUpdateHtmlWidgetFromResource(VTSymbol* pSymbol, const VTResource* pResource);
    void prepairToDeleteAnchorPoint(VTMotionPathKeyframe* pKeyframe, int nIndex);
    void createActionsToDeleteAnchorPoint(VTTimeline* pTimeline, VTMotionPathKeyframe* pKeyframe, int nIndex,
                                          const VTLayoutKey& key);
    void createActionsToAddKeyAnchorPoint(VTMotionPathKeyframe* pKeyframe, VTAnchorPoint* pAnchor,
                                          int nIndex);
    void createActionsToDeleteKeyValues(VTTimeline* pTimeline, VTKeyframe* pKeyframe,
                                        const QList<VTKeyValue*>& lstKeys, const VTLayoutKey& key);
    void createActionsToRemoveKeyframe(VTTimeline* pTimeline, VTKeyframe* pKeyframe, const VTLayoutKey& key);
    void createActionsToSaveCurrentElementPropValue(VTElement* pElement, VT::ElementProperty property,
                                                    const VTLayoutKey& key);
    void createActionsToChangeAnimationInherit(VTAnimation* pAnimation, const VTLayoutKey& key,
                                               VT::ElementProperty property, bool bInherit);
    void createActionsToAddBreakpoint(int nDirection, int nValue);
    void createActionsToRemoveBreakpoint(int nDirection, int nValue);
    void createActionsToChangeCurrentBreakpoint(VTSymbol* pSymbol, int nH, int nV, bool bResponsive,
                                                bool bSkipFirstRedo);
    void createActionsToLayoutElementWhenGrouping(VTElement* pElement, QMap<int, double>& mapBaseValues,
                                                  const QSizeF& oldParentSize, const QSizeF& newParentSize,
                                                  const QMap<int, double>& mapValues);
    void createActionsToLayoutElementWhenGrouping(VTElement* pElement, QMap<int, double>& mapBaseValues,
                                                  const QSizeF& oldParentSize, const QSizeF& newParentSize,
                                                  const QPointF* pOffset, const QSizeF* pSize,
                                                  const VTMatrix4x4* pMatrix);
    void createActionsToDragElement(QList<VTElement*> lstElements, VTElement* pTarget, int nPosition);

private:
    void run(bool bUndo);
    void restoreNavigationContext(VTUpdateViewInfo& info);
    void refreshTimelines(VTUpdateViewInfo& info);

    QList<VTCommandAction*> m_lstActions;
    VTDocument* m_pDocument = nullptr;
    QObject* m_pSender = nullptr;
    bool m_bHasNavigationContext = false;
    QList<VTSymbol*> m_lstSymbols;
    QList<VTScene*> m_lstScenes;
    QList<VTTimeline*> m_lstTimelines;
    QList<VTElement*> m_lstElements;
    bool m_bReverseUndoOrder = false;
    bool m_bReverseRedoOrder = false;
    bool m_bNeedPauseTimeline = true;
};
