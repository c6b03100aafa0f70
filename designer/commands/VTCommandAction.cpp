#include "VTCommandAction.h"

#include "VTDocument.h"
#include "VTDocumentActions.h"
#include "VTFunction.h"
#include "VTKeyframeActions.h"
#include "VTLayoutActions.h"
#include "VTLoadIndicatorProps.h"
#include "VTPreloader.h"
#include "VTTimelineActions.h"
#include "VTTreeActions.h"

#include <QJsonArray>

namespace {

void addLoaderProps(VTCommandAction& action, const VTLoadIndicatorProps* pProps)
{
    if (!pProps)
        return;
    action.addParam(pProps->getDiameter());
    action.addParam(pProps->getDensity());
    action.addParam(pProps->getRange());
    action.addParam(pProps->getSpeed());
    action.addParam(static_cast<int>(pProps->getColor().rgba()));
    action.addParam(pProps->getShape());
}

} // namespace

VTCommandAction::VTCommandAction(int nId, VTDocument* pDocument, int nReserve, bool bSkipFirstRedo)
    : m_nId(nId)
    , m_pDocument(pDocument)
    , m_bSkipNextRedo(bSkipFirstRedo)
{
    if (nReserve > 0)
        m_lstParams.reserve(nReserve);
}

VTCommandAction::~VTCommandAction()
{
    for (VTCmdParam* pParam : qAsConst(m_lstParams)) {
        // A removed function is no object a parameter deletes by itself, yet the action holds it
        // like any other removed object: it goes with the action unless it was put back.
        VTFunction* pOwnedFunction = pParam->getType() == VTCmdParam::JSFunction && pParam->isOwned()
                                         ? pParam->getAsJSFunction()
                                         : nullptr;
        if (pOwnedFunction)
            pParam->release();
        delete pParam;
        delete pOwnedFunction;
    }
    m_lstParams.clear();
}

void VTCommandAction::redo()
{
    if (m_bSkipNextRedo) {
        m_bSkipNextRedo = false;
        return;
    }
    run(false);
}

void VTCommandAction::undo()
{
    run(true);
}

void VTCommandAction::run(bool bUndo)
{
    if (VTTreeActions::handles(m_nId))
        VTTreeActions::run(*this, bUndo);
    else if (VTTimelineActions::handles(m_nId))
        VTTimelineActions::run(*this, bUndo);
    else if (VTKeyframeActions::handles(m_nId))
        VTKeyframeActions::run(*this, bUndo);
    else if (VTLayoutActions::handles(m_nId))
        VTLayoutActions::run(*this, bUndo);
    else if (VTDocumentActions::handles(m_nId))
        VTDocumentActions::run(*this, bUndo);
    // Anything else only carries its record to the views.
}

VTCmdParam* VTCommandAction::addParam(VTCmdParam* pParam)
{
    if (pParam)
        m_lstParams.append(pParam);
    return pParam;
}

void VTCommandAction::truncateParams(int nIndex)
{
    nIndex = qMax(0, nIndex);
    while (m_lstParams.size() > nIndex)
        delete m_lstParams.takeLast();
}

void VTCommandAction::prepareToChangeJSFunctionParams(VTFunction* pFunction)
{
    if (!pFunction)
        return;
    addParam(pFunction, false);
    addParam(pFunction->getName());
    addParam(pFunction->getContent());
    addParam(QJsonArray::fromStringList(pFunction->getParams()));
    addParam(pFunction->getUuid().toString());
}

void VTCommandAction::prepareToChangeDefaultLoaderProps()
{
    if (m_pDocument)
        addLoaderProps(*this, m_pDocument->getDefaultLoadingIndicatorProps());
}

void VTCommandAction::prepareToChangeLoaderDocCanvasLoaderProps()
{
    if (VTPreloader* pPreloader = VTDocumentActions::getPreloader(m_pDocument))
        addLoaderProps(*this, pPreloader->getLoadingIndicatorProps());
}

bool VTCommandAction::shouldUpdateTimeline(int nId)
{
    if (nId >= AddAnimation && nId <= SetAnchorPointData)
        return true;
    switch (nId) {
    case AddPlaybackListener:
    case RemovePlaybackListener:
    case ChangePlaybackListener:
    case SetAutoOrient:
    case ChangeAllKeyValues:
    case InvertAnchorPoints:
    case ChangeCurrentBreakpoint:
        return true;
    default:
        return false;
    }
}
