#include "VTBuilderSupport.h"

#include "VTAnimatedProperty.h"
#include "VTBreakpointManager.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"

#include <QByteArray>

namespace {

void collectSelectedInto(const VTElement* pParent, QList<VTElement*>& lstSelected)
{
    for (VTElement* pChild : pParent->getChildren()) {
        if (pChild->isSelected())
            lstSelected.append(pChild);
        collectSelectedInto(pChild, lstSelected);
    }
}

// Where an action keeps its layout key: right behind the element for the geometry action, at the
// very end for the other layout-bound element actions.
bool actionLayout(const VTCommandAction& action, VTLayoutKey& key)
{
    const int nCount = action.paramCount();
    if (action.getId() == VTElementCommandAction::ChangeGeometry) {
        if (nCount < 5)
            return false;
        key = VTLayoutKey(action.getParam(1)->getAsInt(), action.getParam(2)->getAsInt());
        return true;
    }
    if (!VTElementCommandAction::isLayoutBound(action.getId()) || nCount < 4)
        return false;
    key = VTLayoutKey(action.getParam(nCount - 2)->getAsInt(), action.getParam(nCount - 1)->getAsInt());
    return true;
}

} // namespace

VTSymbol* VTBuilderSupport::currentSymbol(const VTCommand& command)
{
    VTDocument* pDocument = command.getDocument();
    return pDocument ? pDocument->getCurrentSymbol() : nullptr;
}

VTScene* VTBuilderSupport::currentScene(const VTCommand& command)
{
    const VTSymbol* pSymbol = currentSymbol(command);
    const VTSceneManager* pScenes = pSymbol ? pSymbol->getSceneManager() : nullptr;
    return pScenes ? pScenes->getCurrentScene() : nullptr;
}

VTBreakpointManager* VTBuilderSupport::currentBreakpoints(const VTCommand& command)
{
    const VTSymbol* pSymbol = currentSymbol(command);
    return pSymbol ? pSymbol->getBreakpointManager() : nullptr;
}

VTBreakpointManager* VTBuilderSupport::breakpointsOf(const VTCommand& command, const VTScene* pScene)
{
    const VTSceneManager* pScenes = pScene ? pScene->getSceneManager() : nullptr;
    const VTSymbol* pSymbol = pScenes ? pScenes->getSymbol() : nullptr;
    return pSymbol ? pSymbol->getBreakpointManager() : currentBreakpoints(command);
}

QList<VTElement*> VTBuilderSupport::collectSubtree(VTElement* pElement)
{
    QList<VTElement*> lstElements;
    if (!pElement)
        return lstElements;
    lstElements.append(pElement);
    // Breadth would do as well; the list only has to hold each element once, parents first.
    for (int i = 0; i < lstElements.size(); ++i) {
        for (VTElement* pChild : lstElements.at(i)->getChildren())
            lstElements.append(pChild);
    }
    return lstElements;
}

QList<VTElement*> VTBuilderSupport::collectSelected(const VTElement* pRoot)
{
    QList<VTElement*> lstSelected;
    if (pRoot)
        collectSelectedInto(pRoot, lstSelected);
    return lstSelected;
}

QVariant VTBuilderSupport::readBoundValue(VTElement* pElement, int nProperty, const VTLayoutKey& key)
{
    const QByteArray name = VTAnimatedProperty::getPropertyName(nProperty);
    if (!pElement || name.isEmpty() || key.isCurrent())
        return QVariant();
    VTLayoutSwitch layout(pElement, key);
    const QObject* pTarget = VTAnimatedProperty::getTargetObject(pElement, nProperty, key);
    return pTarget ? pTarget->property(name.constData()) : QVariant();
}

VTCommandAction* VTBuilderSupport::findLayoutAction(const VTCommand& command, int nId,
                                                    const VTElement* pElement, const VTLayoutKey& key)
{
    for (VTCommandAction* pAction : command.getActions()) {
        if (pAction->getId() != nId || pAction->paramCount() == 0)
            continue;
        const VTCmdParam* pTarget = pAction->getParam(0);
        const VTElement* pActionElement = pTarget->getAsElement();
        if (!pActionElement)
            pActionElement = pTarget->getAsScene();
        VTLayoutKey actionKey;
        if (pActionElement == pElement && actionLayout(*pAction, actionKey) && actionKey == key)
            return pAction;
    }
    return nullptr;
}

VTLayoutSwitch::VTLayoutSwitch(VTElement* pElement, const VTLayoutKey& key)
    : m_pElement(pElement)
    , m_oldKey(pElement ? pElement->getCurrentLayoutID() : VTLayoutKey())
{
    switchTo(key);
}

VTLayoutSwitch::~VTLayoutSwitch()
{
    switchTo(m_oldKey);
}

void VTLayoutSwitch::switchTo(const VTLayoutKey& key)
{
    if (m_pElement && !key.isCurrent() && m_pElement->getCurrentLayoutID() != key)
        m_pElement->VTElement::setCurrentLayoutID(key);
}
