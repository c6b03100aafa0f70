#pragma once

#include "VTLayoutKey.h"
#include "VTTypes.h"

#include <QCoreApplication>
#include <QList>
#include <QPointF>
#include <QSet>
#include <QString>

class QJsonObject;
class QObject;
class VTAnchorPoint;
class VTCmdParam;
class VTCommand;
class VTDocument;
class VTElement;
class VTElementCommandAction;
class VTMotionPathKeyframe;
class VTScene;
class VTSymbol;
class VTTimeline;

// Turns a finished gesture of the stage page into one undo step.
//
// The page owns no model: it describes what it did as a list of records (the same numbers as the
// actions and the records that come back to it) and hands them over in one call. Each record
// becomes the actions that make the change in the model, with the keyframe work that the layout
// mode and the auto-keyframe mode ask for, all in one command. The JSON comes from a web page and
// is not trusted: a record that names no element of the scene, has the wrong number of values or
// targets the wrong kind is passed over, and the others still run.
//
// The command's sender is the canvas, so that the page does not hear again of what it did itself;
// records that the page must see anyway (a new element and its id, keys the studio added, paths it
// rebuilt) clear it.
class VTCanvasCommandBuilder final
{
    Q_DECLARE_TR_FUNCTIONS(VTCanvasCommandBuilder)
public:
    VTCanvasCommandBuilder(VTDocument* pDocument, QObject* pSender);

    VTDocument* getDocument() const { return m_pDocument; }
    void setDocument(VTDocument* pDocument) { m_pDocument = pDocument; }
    QObject* getSender() const { return m_pSender; }

    // Builds and runs the command of one gesture: pushed on the undo stack, or with bRunCmdOnly
    // (or a record that only shows something) run once and thrown away. Returns whether anything
    // ran.
    bool submitCommandFromJS(const QString& json, bool bRunCmdOnly);

    // The keyframe rules, also used by the arrange operations. The action's element shows the
    // action's layout when these are called.
    void updateGeometryKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand, bool bMoveOnly) const;
    void updateTextKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand, VTScene* pScene) const;
    // Takes ownership of pAnchor.
    void createActionsToAddAnchorPoint(VTCommand* pCommand, VTMotionPathKeyframe* pKeyframe, int nIndex,
                                       VTAnchorPoint* pAnchor) const;
    void createActionsToMoveAnchorPoint(VTCommand* pCommand, VTMotionPathKeyframe* pKeyframe, int nIndex,
                                        const QPointF& ptPosition, const QPointF& ptControl1,
                                        const QPointF& ptControl2, bool bNoTransitionUpdate) const;
    // The layouts a stage operation walks: the shown one in responsive mode, else all of them.
    QList<VTLayoutKey> getBreakpointIds(const VTSymbol* pSymbol) const;
    bool hasKeyframe(const VTElement* pElement, const VT::ElementProperty& property,
                     const VTLayoutKey& key) const;

private:
    // What one build works on.
    struct Build
    {
        VTSymbol* pSymbol = nullptr;
        VTScene* pScene = nullptr;
        VTCommand* pCommand = nullptr;
        QString strText;
        bool bResponsive = false;
        // A record that only shows something (stage size, layout): no undo entry.
        bool bRunOnly = false;
        // Ids that elements of this command were given, so two new elements never share one.
        QSet<int> setClaimedIds;
    };
    using Params = QList<VTCmdParam*>;

    void buildRecord(Build& build, int nId, Params& lstParams);
    VTElement* findElement(const Build& build, const Params& lstParams) const;
    void clearSender(Build& build) const;

    void insertElement(Build& build, Params& lstParams);
    void editAnchorPoint(Build& build, int nId, const Params& lstParams);
    void selectElement(Build& build, const Params& lstParams);
    void changeStageSize(Build& build, int nId, const Params& lstParams);
    void updateBreakpoint(Build& build, const Params& lstParams);
    void changeCurrentBreakpoint(Build& build, const Params& lstParams);
    void changeGeometry(Build& build, const Params& lstParams);
    void changeText(Build& build, const Params& lstParams);
    void changeAdjustments(Build& build, const Params& lstParams);
    void changeFreeFormPath(Build& build, const Params& lstParams);
    void setFreeFormEditPoint(Build& build, const Params& lstParams);

    VTDocument* m_pDocument = nullptr;
    QObject* m_pSender = nullptr;
};
