#include "VTElementCommandAction.h"

#include "VTAnimatedProperty.h"
#include "VTAutoShape.h"
#include "VTAutoShapeProperty.h"
#include "VTBezierPath.h"
#include "VTCmdParam.h"
#include "VTElement.h"
#include "VTElementActionValues.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShape.h"
#include "VTHTMLWidget.h"
#include "VTScene.h"
#include "VTSymbolElement.h"

#include <QByteArray>
#include <QVariant>
#include <QVector>

#include <memory>

// Every run below writes into the block of the layout key the action carries, through the
// accessors that take a key. The element's current layout is never switched for that: switching a
// scene would re-run its timelines in the other layout, and nothing is gained, since every value
// has a keyed accessor. The one exception is SetPropertyValue, whose target may be the element's
// own Qt property, which only ever reads the current layout.

namespace {

using Values = VTElementActionValues;

// Scenes are elements: an element parameter may hold a scene and a scene parameter stands for an
// element.
VTElement* elementOf(const VTCmdParam* pParam)
{
    if (!pParam)
        return nullptr;
    if (VTElement* pElement = pParam->getAsElement())
        return pElement;
    return pParam->getAsScene();
}

VTScene* sceneOf(const VTCmdParam* pParam)
{
    if (!pParam)
        return nullptr;
    if (VTScene* pScene = pParam->getAsScene())
        return pScene;
    return qobject_cast<VTScene*>(pParam->getAsElement());
}

VTLayoutKey keyOf(const VTCmdParam* pH, const VTCmdParam* pV)
{
    return VTLayoutKey(pH ? Values::readInt(*pH) : 0, pV ? Values::readInt(*pV) : 0);
}

// The inherit changes that come with a layout-bound value: applied, and replaced by the states
// they overwrote, so that the next run puts those back.
void swapInherits(VTElement* pElement, VTCmdParam* pMapParam, const VTLayoutKey& key)
{
    if (!pElement || !pMapParam)
        return;
    const QMap<int, bool> mapInherits = pMapParam->getAsMapInherits();
    if (mapInherits.isEmpty())
        return;
    pMapParam->setValue(pElement->addInherits(mapInherits, key));
}

// Element, the values of the id, the inherit map, h, v.
void runLayoutBoundValues(VTCommandAction& action)
{
    const int nValues = Values::valueCount(action.getId());
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (nValues < 0 || lstParams.size() != nValues + 4)
        return;
    VTElement* pElement = elementOf(lstParams.at(0));
    const VTLayoutKey key = keyOf(lstParams.at(nValues + 2), lstParams.at(nValues + 3));
    if (!pElement || !pElement->getLayoutProperty(key))
        return;
    if (Values::swap(action.getId(), pElement, key, lstParams, 1))
        swapInherits(pElement, lstParams.at(nValues + 1), key);
}

// Element (or scene) and one value held for all layouts.
void runElementValues(VTCommandAction& action)
{
    const int nValues = Values::valueCount(action.getId());
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (nValues < 0 || lstParams.size() != nValues + 1)
        return;
    Values::swap(action.getId(), elementOf(lstParams.at(0)), VTLayoutKey::current(), lstParams, 1);
}

// Element, h, v, inherit map, property ids, one value per id.
void runChangeGeometry(VTCommandAction& action)
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() < 5)
        return;
    const QList<int> lstProperties = lstParams.at(4)->getAsIntList();
    if (lstParams.size() != lstProperties.size() + 5)
        return;
    VTElement* pElement = elementOf(lstParams.at(0));
    const VTLayoutKey key = keyOf(lstParams.at(1), lstParams.at(2));
    if (!pElement || !pElement->getLayoutProperty(key))
        return;
    for (int i = 0; i < lstProperties.size(); ++i) {
        if (VTCmdParam* pValue = lstParams.at(5 + i))
            Values::swapGeometry(pElement, key, lstProperties.at(i), *pValue);
    }
    swapInherits(pElement, lstParams.at(3), key);
    // A placed symbol shows the layout of its instance; a size change may concern the one shown.
    if (auto* pSymbol = qobject_cast<VTSymbolElement*>(pElement))
        pSymbol->updateSymbolLayoutId();
}

// Element, n, inherit state of the shape, h, v, n adjustments. The replaced adjustments may be
// more or fewer, so the list is rebuilt behind the fixed five.
void runChangeAdjustments(VTCommandAction& action)
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() < 5)
        return;
    const int nCount = lstParams.at(1)->getAsInt();
    if (nCount < 0 || lstParams.size() != nCount + 5)
        return;
    auto* pShape = qobject_cast<VTAutoShape*>(elementOf(lstParams.at(0)));
    const VTLayoutKey key = keyOf(lstParams.at(3), lstParams.at(4));
    if (!pShape || !pShape->getAutoShapeProperty(key))
        return;

    QVector<double> vecAdjustments;
    vecAdjustments.reserve(nCount);
    for (int i = 0; i < nCount; ++i)
        vecAdjustments.append(lstParams.at(5 + i) ? Values::readDouble(*lstParams.at(5 + i)) : 0.0);
    const QVector<double> vecOld = pShape->getAdjustments(key);
    const bool bOldInherit = pShape->isInherit(VT::PropShape, key);
    pShape->setAdjustments(vecAdjustments, key);
    pShape->setInherit(VT::PropShape, lstParams.at(2)->getAsBool(), key);

    lstParams.at(1)->setValue(vecOld.size());
    lstParams.at(2)->setValue(bOldInherit);
    action.truncateParams(5);
    for (double dValue : vecOld)
        action.addParam(dValue);
}

// Element, resource or text, use resource. Only the source named by the parameter's type moves;
// the other one stays as it is, so the exchange stays exact either way.
void runChangeHtmlWidgetSource(VTCommandAction& action)
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() != 3)
        return;
    auto* pWidget = qobject_cast<VTHTMLWidget*>(elementOf(lstParams.at(0)));
    VTCmdParam* pSource = lstParams.at(1);
    if (!pWidget || !pSource)
        return;
    if (pSource->getType() == VTCmdParam::Resource) {
        VTResource* pOld = pWidget->getHTMLResource();
        pWidget->setHTMLResource(pSource->getAsResource());
        pSource->setValue(pOld, false);
    } else if (pSource->getType() == VTCmdParam::String) {
        const QString oldUrl = pWidget->getUrl();
        pWidget->setUrl(pSource->getAsString());
        pSource->setValue(oldUrl);
    } else {
        return;
    }
    const bool bOldUse = pWidget->isUseResource();
    pWidget->setUseResource(lstParams.at(2)->getAsBool());
    lstParams.at(2)->setValue(bOldUse);
}

// Element, path or arrow style, inherit map, h, v. The object changes hands: the shape takes the
// parameter's and the parameter takes, and owns, the shape's. A parameter that does not own its
// object cannot give it away, and the action then does nothing.
template <typename T>
void runExchange(VTCommandAction& action, int nType, T* (VTCmdParam::*fnGet)() const,
                 std::unique_ptr<T> (VTFreeFormShape::*fnReplace)(std::unique_ptr<T>, const VTLayoutKey&))
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() != 5)
        return;
    auto* pShape = qobject_cast<VTFreeFormShape*>(elementOf(lstParams.at(0)));
    VTCmdParam* pObject = lstParams.at(1);
    const VTLayoutKey key = keyOf(lstParams.at(3), lstParams.at(4));
    if (!pShape || !pShape->getFreeFormProperty(key) || !pObject || pObject->getType() != nType)
        return;
    T* pNew = (pObject->*fnGet)();
    if (pNew && !pObject->isOwned())
        return;
    pObject->release();
    std::unique_ptr<T> pOld = (pShape->*fnReplace)(std::unique_ptr<T>(pNew), key);
    pObject->setValue(pOld.release(), true);
    swapInherits(pShape, lstParams.at(2), key);
}

// Element, property, layout key, value. The bound Qt property may be the element's own, which
// reads and writes the current layout, so the element shows the action's layout meanwhile.
void runSetPropertyValue(VTCommandAction& action)
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() != 4)
        return;
    VTElement* pElement = elementOf(lstParams.at(0));
    VTCmdParam* pValue = lstParams.at(3);
    if (!pElement || !pValue || !pValue->getAsVariant().isValid())
        return;
    const int nProperty = lstParams.at(1)->getAsInt();
    const VTLayoutKey key = pElement->resolveLayoutKey(lstParams.at(2)->getAsIntPair());
    const QByteArray name = VTAnimatedProperty::getPropertyName(nProperty);
    if (name.isEmpty() || !pElement->getLayoutProperty(key))
        return;

    const VTLayoutKey current = pElement->getCurrentLayoutID();
    const bool bSwitch = key != current;
    if (bSwitch)
        pElement->setCurrentLayoutID(key);
    if (QObject* pTarget = VTAnimatedProperty::getTargetObject(pElement, nProperty, key)) {
        const QVariant oldValue = pTarget->property(name.constData());
        if (oldValue.isValid() && pTarget->setProperty(name.constData(), pValue->getAsVariant()))
            pValue->setValue(oldValue);
    }
    if (bSwitch)
        pElement->setCurrentLayoutID(current);
}

// Element, layout key, the layout's whole inherit map.
void runSetInherits(VTCommandAction& action)
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() != 3)
        return;
    VTElement* pElement = elementOf(lstParams.at(0));
    VTCmdParam* pMap = lstParams.at(2);
    const VTLayoutKey key = lstParams.at(1)->getAsIntPair();
    // An empty map is a real value here (everything inherits), so a map of another type must not
    // pass for one.
    if (!pElement || !pMap || pMap->getType() != VTCmdParam::MapInherits || !pElement->getLayoutProperty(key))
        return;
    pMap->setValue(pElement->setInherits(pMap->getAsMapInherits(), key));
}

// Scene, inherit map, h, v, property (one of the three perspective origins), value.
void runChangePerspective(VTCommandAction& action)
{
    const QList<VTCmdParam*>& lstParams = action.getParams();
    if (lstParams.size() != 6)
        return;
    VTScene* pScene = sceneOf(lstParams.at(0));
    const VTLayoutKey key = keyOf(lstParams.at(2), lstParams.at(3));
    VTCmdParam* pValue = lstParams.at(5);
    if (!pScene || !pValue || !pScene->getLayoutProperty(key))
        return;
    const double dValue = Values::readDouble(*pValue);
    double dOld = 0.0;
    switch (lstParams.at(4)->getAsInt()) {
    case VT::PropPerspectiveOriginX:
        dOld = pScene->getPerspectiveX(key);
        pScene->setPerspectiveX(dValue, key);
        break;
    case VT::PropPerspectiveOriginY:
        dOld = pScene->getPerspectiveY(key);
        pScene->setPerspectiveY(dValue, key);
        break;
    case VT::PropPerspectiveOriginZ:
        dOld = pScene->getPerspectiveZ(key);
        pScene->setPerspectiveZ(dValue, key);
        break;
    default:
        return;
    }
    pValue->setValue(dOld);
    swapInherits(pScene, lstParams.at(1), key);
}

} // namespace

VTElementCommandAction::VTElementCommandAction(ElementActionId nId, VTDocument* pDocument, int nReserve,
                                               bool bSkipFirstRedo)
    : VTCommandAction(nId, pDocument, nReserve, bSkipFirstRedo)
{}

void VTElementCommandAction::redo()
{
    if (m_bSkipNextRedo) {
        m_bSkipNextRedo = false;
        return;
    }
    switch (m_nId) {
    case ChangeGeometry:
        runChangeGeometry(*this);
        break;
    case ChangeAdjustments:
        runChangeAdjustments(*this);
        break;
    case ChangeHtmlWidgetSource:
        runChangeHtmlWidgetSource(*this);
        break;
    case ChangeFreeFormPath:
        runExchange<VTBezierPath>(*this, VTCmdParam::BezierPath, &VTCmdParam::getAsBezierPath,
                                  &VTFreeFormShape::replacePath);
        break;
    case ChangeArrowStyle:
        runExchange<VTFreeFormArrowStyle>(*this, VTCmdParam::ArrowStyle, &VTCmdParam::getAsArrowStyle,
                                          &VTFreeFormShape::replaceArrowStyle);
        break;
    case SetPropertyValue:
        runSetPropertyValue(*this);
        break;
    case SetInherits:
        runSetInherits(*this);
        break;
    case ChangePerspective:
        runChangePerspective(*this);
        break;
    case UpdateHtmlWidgetFromResource:
        // Only a record: the views reload the widget from its resource.
        break;
    default:
        if (isLayoutBound(m_nId))
            runLayoutBoundValues(*this);
        else
            runElementValues(*this);
        break;
    }
}

void VTElementCommandAction::prepareChangeGeometryParams(VTElement* pElement)
{
    if (m_nId != ChangeGeometry || !m_lstParams.isEmpty() || !pElement)
        return;
    const VTLayoutKey key = pElement->getCurrentLayoutID();
    addParam(pElement, false);
    addParam(key.getHorizontalId());
    addParam(key.getVerticalId());
    addParam(pElement->getInherits(key));
    addParam(QList<int>());
}

namespace {

template <typename T> void setGeometryValue(VTCommandAction& action, VT::ElementProperty property, T value)
{
    QList<VTCmdParam*>& lstParams = action.getParams();
    if (action.getId() != VTElementCommandAction::ChangeGeometry || lstParams.size() < 5)
        return;
    QList<int> lstProperties = lstParams.at(4)->getAsIntList();
    // A list out of step with the values would put the new value under another property.
    if (lstParams.size() != lstProperties.size() + 5)
        return;
    const int nIndex = lstProperties.indexOf(property);
    if (nIndex >= 0) {
        lstParams.at(5 + nIndex)->setValue(value);
        return;
    }
    lstProperties.append(property);
    lstParams.at(4)->setValue(lstProperties);
    action.addParam(value);
}

} // namespace

void VTElementCommandAction::setChangeGeometryProperty(VT::ElementProperty property, double dValue)
{
    setGeometryValue(*this, property, dValue);
}

void VTElementCommandAction::setChangeGeometryProperty(VT::ElementProperty property, int nValue)
{
    setGeometryValue(*this, property, nValue);
}

int VTElementCommandAction::getChangeGeometryPropertyParamIndex(VT::ElementProperty property) const
{
    if (m_nId != ChangeGeometry || m_lstParams.size() < 5)
        return -1;
    const int nIndex = m_lstParams.at(4)->getAsIntList().indexOf(property);
    if (nIndex < 0 || 5 + nIndex >= m_lstParams.size())
        return -1;
    return 5 + nIndex;
}

VTCmdParam* VTElementCommandAction::getChangeGeometryPropertyParam(VT::ElementProperty property) const
{
    const int nIndex = getChangeGeometryPropertyParamIndex(property);
    return nIndex < 0 ? nullptr : m_lstParams.at(nIndex);
}

namespace {

// Element, the family's values in its current layout, its inherit map there and that layout.
void prepareLayoutBound(VTCommandAction& action, int nId, VTElement* pElement)
{
    if (action.getId() != nId || action.paramCount() != 0 || !pElement)
        return;
    const VTLayoutKey key = pElement->getCurrentLayoutID();
    action.addParam(pElement, false);
    if (!Values::collect(nId, pElement, key, action)) {
        // An element without these values gets no half-filled action.
        action.truncateParams(0);
        return;
    }
    action.addParam(pElement->getInherits(key));
    action.addParam(key.getHorizontalId());
    action.addParam(key.getVerticalId());
}

} // namespace

void VTElementCommandAction::prepareChangeBorderParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeBorder, pElement);
}

void VTElementCommandAction::prepareChangeBackgroundParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeBackground, pElement);
}

void VTElementCommandAction::prepareChangeTextPrams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeText, pElement);
}

void VTElementCommandAction::prepareChangeBgImageParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeBgImage, pElement);
}

void VTElementCommandAction::prepareChangeCornerParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeCorner, pElement);
}

void VTElementCommandAction::prepareChangeClipParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeClip, pElement);
}

void VTElementCommandAction::prepareChangeShadowParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeShadow, pElement);
}

void VTElementCommandAction::prepareChangeFilterParams(VTElement* pElement)
{
    prepareLayoutBound(*this, ChangeFilter, pElement);
}

bool VTElementCommandAction::isLayoutBound(int nId)
{
    switch (nId) {
    case ChangeBorder:
    case ChangeBackground:
    case ChangeOpacity:
    case ChangeText:
    case ChangeClassName:
    case ChangeDisplay:
    case ChangeOverflow:
    case ChangeTitle:
    case ChangeTabIndex:
    case ChangeCursor:
    case ChangeBgImage:
    case ChangeCorner:
    case ChangeFreeFormPath:
    case ChangeArrowStyle:
    case ChangeClip:
    case ChangeShadow:
    case ChangeFilter:
        return true;
    default:
        return false;
    }
}
