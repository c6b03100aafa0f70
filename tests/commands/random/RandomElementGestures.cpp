#include "RandomElementGestures.h"

#include "RandomCommandContext.h"
#include "VTAnimatedProperty.h"
#include "VTAutoShape.h"
#include "VTBezierPath.h"
#include "VTBuilderSupport.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementActionValues.h"
#include "VTElementCommandAction.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShape.h"
#include "VTImage.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"

#include <QMap>

#include <memory>

namespace {

using Id = VTElementCommandAction::ElementActionId;

// Kinds of element an action applies to; empty for any element of the stage.
using Kinds = QList<int>;

// An element of one of the kinds; one that holds a block for the layout it shows, since the
// inspector edits what the element shows. (Inside a placed symbol the layout shown follows the
// instance and may be one the symbol does not have.)
VTElement* pickTarget(RandomCommandContext& context, const Kinds& lstKinds)
{
    if (lstKinds == Kinds{VT::SceneElement})
        return context.getScene();
    return context.pick(context.getElementsAnywhere([&lstKinds](const VTElement* pElement) {
        return (lstKinds.isEmpty() || lstKinds.contains(pElement->getType())) &&
               pElement->getLayoutProperty();
    }));
}

VTElementCommandAction* newAction(RandomCommandContext& context, int nId)
{
    return new VTElementCommandAction(static_cast<Id>(nId), &context.getDocument(), 8);
}

VTCommand* single(RandomCommandContext& context, VTCommandAction* pAction)
{
    VTCommand* pCommand = context.newCommand(QStringLiteral("inspector %1").arg(pAction->getId()));
    pCommand->addAction(pAction);
    return pCommand;
}

// The inherit change and the layout key that end a layout-bound action: outside the base layout an
// edit may override the property there, as the inspector does.
void addLayoutTail(RandomCommandContext& context, VTCommandAction& action, const VTLayoutKey& key,
                   int nProperty)
{
    QMap<int, bool> mapInherits;
    if (!key.isBase() && context.chance(60))
        mapInherits.insert(nProperty, false);
    action.addParam(mapInherits);
    action.addParam(key.getHorizontalId());
    action.addParam(key.getVerticalId());
}

void nudgeParam(RandomCommandContext& context, VTCmdParam& param)
{
    switch (param.getType()) {
    case VTCmdParam::Int:
        param.setValue(param.getAsInt() + context.intIn(1, 5));
        break;
    case VTCmdParam::Double:
        param.setValue(param.getAsDouble() + context.doubleIn(-5.0, 5.0));
        break;
    case VTCmdParam::String:
        param.setValue(param.getAsString() + context.uniqueText(QStringLiteral("-")));
        break;
    case VTCmdParam::Bool:
        param.setValue(!param.getAsBool());
        break;
    default:
        break;
    }
}

// A family the inspector prepares from the element's present values: a few of them changed, and
// sometimes written into another layout of the element, as copying a style across layouts does.
VTCommand* preparedFamily(RandomCommandContext& context, int nId, const Kinds& lstKinds)
{
    VTElement* pElement = pickTarget(context, lstKinds);
    if (!pElement)
        return nullptr;
    VTElementCommandAction* pAction = newAction(context, nId);
    switch (nId) {
    case Id::ChangeBorder:
        pAction->prepareChangeBorderParams(pElement);
        break;
    case Id::ChangeBackground:
        pAction->prepareChangeBackgroundParams(pElement);
        break;
    case Id::ChangeText:
        pAction->prepareChangeTextPrams(pElement);
        break;
    case Id::ChangeBgImage:
        pAction->prepareChangeBgImageParams(pElement);
        break;
    case Id::ChangeCorner:
        pAction->prepareChangeCornerParams(pElement);
        break;
    case Id::ChangeClip:
        pAction->prepareChangeClipParams(pElement);
        break;
    case Id::ChangeShadow:
        pAction->prepareChangeShadowParams(pElement);
        break;
    default:
        pAction->prepareChangeFilterParams(pElement);
        break;
    }
    const int nValues = pAction->paramCount() - 4;
    if (nValues < 1) {
        delete pAction;
        return nullptr;
    }
    for (int i = context.intIn(1, 3); i > 0; --i)
        nudgeParam(context, *pAction->getParam(context.intIn(1, nValues)));
    if (context.chance(40)) {
        const VTLayoutKey key = context.pickLayout(pElement);
        pAction->getParam(nValues + 2)->setValue(key.getHorizontalId());
        pAction->getParam(nValues + 3)->setValue(key.getVerticalId());
    }
    return single(context, pAction);
}

VTCommand* changeGeometry(RandomCommandContext& context)
{
    VTElement* pElement = context.chance(20) ? context.getScene() : context.pick(context.getElements());
    if (!pElement)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pElement);
    VTElementCommandAction* pAction = newAction(context, Id::ChangeGeometry);
    pAction->addParam(pElement, false);
    pAction->addParam(key.getHorizontalId());
    pAction->addParam(key.getVerticalId());
    pAction->addParam(QMap<int, bool>());
    pAction->addParam(QList<int>());
    static const QList<int> s_lstProperties{
        VT::PropLeft,    VT::PropTop,     VT::PropWidth,      VT::PropHeight,         VT::PropScaleX,
        VT::PropScaleY,  VT::PropSkewX,   VT::PropSkewY,      VT::PropRotateZ,        VT::PropOriginX,
        VT::PropOriginY, VT::PropOriginZ, VT::PropTranslateX, VT::PropTranslateY,     VT::PropTranslateZ,
        VT::PropRotateX, VT::PropRotateY, VT::PropScaleZ,     VT::PropCoordinateType, VT::PropUnitX,
        VT::PropUnitY,   VT::PropUnitW,   VT::PropUnitH};
    QMap<int, bool> mapInherits;
    for (int nProperty : context.pickSome(s_lstProperties, context.intIn(1, 3))) {
        const auto property = static_cast<VT::ElementProperty>(nProperty);
        switch (nProperty) {
        case VT::PropCoordinateType:
            pAction->setChangeGeometryProperty(property, context.intIn(0, 3));
            break;
        case VT::PropUnitX:
        case VT::PropUnitY:
        case VT::PropUnitW:
        case VT::PropUnitH:
            pAction->setChangeGeometryProperty(property, context.intIn(0, 1));
            break;
        case VT::PropScaleX:
        case VT::PropScaleY:
        case VT::PropScaleZ:
        case VT::PropOriginX:
        case VT::PropOriginY:
            pAction->setChangeGeometryProperty(property, context.doubleIn(0.1, 2.0));
            break;
        case VT::PropWidth:
        case VT::PropHeight:
            pAction->setChangeGeometryProperty(property, context.doubleIn(10.0, 400.0));
            break;
        default:
            pAction->setChangeGeometryProperty(property, context.doubleIn(-150.0, 500.0));
            break;
        }
        if (!key.isBase() && context.chance(50))
            mapInherits.insert(nProperty, false);
    }
    pAction->getParam(3)->setValue(mapInherits);
    return single(context, pAction);
}

// Turns the value an element holds into the one a gesture writes.
using ChangeValue = std::function<QVariant(RandomCommandContext&, const QVariant&)>;

QVariant valueOf(const VTCmdParam& param)
{
    switch (param.getType()) {
    case VTCmdParam::Int:
        return param.getAsInt();
    case VTCmdParam::Double:
        return param.getAsDouble();
    case VTCmdParam::Bool:
        return param.getAsBool();
    default:
        return param.getAsString();
    }
}

void setValueOf(VTCmdParam& param, const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Int:
        param.setValue(value.toInt());
        break;
    case QMetaType::Double:
        param.setValue(value.toDouble());
        break;
    case QMetaType::Bool:
        param.setValue(value.toBool());
        break;
    default:
        param.setValue(value.toString());
        break;
    }
}

// One value, held by a layout or by the element as a whole, changed from what the element holds.
VTCommand* singleValue(RandomCommandContext& context, int nId, const Kinds& lstKinds,
                       const ChangeValue& change, bool bLayoutBound, int nProperty)
{
    VTElement* pElement = pickTarget(context, lstKinds);
    if (!pElement)
        return nullptr;
    const VTLayoutKey key = bLayoutBound ? context.pickLayout(pElement) : VTLayoutKey::current();
    VTElementCommandAction* pAction = newAction(context, nId);
    if (lstKinds == Kinds{VT::SceneElement})
        pAction->addParam(qobject_cast<VTScene*>(pElement), false);
    else
        pAction->addParam(pElement, false);
    if (!VTElementActionValues::collect(nId, pElement, key, *pAction) || pAction->paramCount() != 2) {
        delete pAction;
        return nullptr;
    }
    VTCmdParam& param = *pAction->getParam(1);
    setValueOf(param, change(context, valueOf(param)));
    if (bLayoutBound)
        addLayoutTail(context, *pAction, key, nProperty);
    return single(context, pAction);
}

VTCommand* changeAdjustments(RandomCommandContext& context)
{
    auto* pShape = qobject_cast<VTAutoShape*>(pickTarget(context, {VT::ShapeElement}));
    if (!pShape)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pShape);
    const QVector<double> vecAdjustments = pShape->getAdjustments(key);
    VTElementCommandAction* pAction = newAction(context, Id::ChangeAdjustments);
    pAction->addParam(static_cast<VTElement*>(pShape), false);
    pAction->addParam(vecAdjustments.size());
    pAction->addParam(key.isBase() || context.chance(50));
    pAction->addParam(key.getHorizontalId());
    pAction->addParam(key.getVerticalId());
    // The stage sends the adjustments of a shape that has none yet; the model keeps what it gets.
    const int nCount = vecAdjustments.isEmpty() ? context.intIn(1, 3) : vecAdjustments.size();
    pAction->getParam(1)->setValue(nCount);
    for (int i = 0; i < nCount; ++i)
        pAction->addParam(vecAdjustments.value(i, 0.5) + context.doubleIn(0.01, 0.1));
    return single(context, pAction);
}

VTCommand* changeWidgetSource(RandomCommandContext& context)
{
    VTElement* pWidget = pickTarget(context, {VT::HTMLWidgetElement});
    if (!pWidget)
        return nullptr;
    QList<VTResource*> lstPages;
    for (VTResource* pResource :
         context.getDocument().getResourceManager()->getResourcesByType(VTResource::Html, true))
        lstPages.append(pResource);
    VTElementCommandAction* pAction = newAction(context, Id::ChangeHtmlWidgetSource);
    pAction->addParam(pWidget, false);
    if (!lstPages.isEmpty() && context.chance(60)) {
        pAction->addParam(context.pick(lstPages), false);
        pAction->addParam(true);
    } else {
        pAction->addParam(QStringLiteral("https://example.org/") +
                          context.uniqueText(QStringLiteral("page")));
        pAction->addParam(false);
    }
    return single(context, pAction);
}

// The path or the arrows of a freeform change hands with the action.
VTCommand* changeFreeForm(RandomCommandContext& context, int nId)
{
    auto* pShape = qobject_cast<VTFreeFormShape*>(pickTarget(context, {VT::FreeFormElement}));
    if (!pShape)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pShape);
    VTElementCommandAction* pAction = newAction(context, nId);
    pAction->addParam(static_cast<VTElement*>(pShape), false);
    if (nId == Id::ChangeFreeFormPath) {
        const VTBezierPath* pPath = pShape->getPath(key);
        std::unique_ptr<VTBezierPath> pMoved = pPath ? pPath->clone() : std::make_unique<VTBezierPath>();
        // One draw per statement: the order in which arguments are worked out is the compiler's.
        const int nDx = context.intIn(-20, 20);
        const int nDy = context.intIn(-20, 20);
        pMoved->moveOffset(QPointF(nDx, nDy));
        pAction->addParam(pMoved.release(), true);
    } else {
        const int nStartType = context.intIn(0, 3);
        const int nStartSize = context.intIn(1, 4);
        const int nEndType = context.intIn(0, 3);
        const int nEndSize = context.intIn(1, 4);
        pAction->addParam(new VTFreeFormArrowStyle(nStartType, nStartSize, nEndType, nEndSize), true);
    }
    addLayoutTail(context, *pAction, key, VT::PropFreeFormPath);
    return single(context, pAction);
}

VTCommand* setPropertyValue(RandomCommandContext& context)
{
    VTElement* pElement = context.pick(context.getElements());
    if (!pElement)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pElement);
    QList<int> lstProperties;
    for (int nProperty : VTAnimatedProperty::getAnimatedProps()) {
        if (nProperty != VT::PropPlayback && VTAnimatedProperty::canAnimate(pElement, nProperty))
            lstProperties.append(nProperty);
    }
    const int nProperty = context.pick(lstProperties);
    const QVariant value = VTBuilderSupport::readBoundValue(pElement, nProperty, key);
    if (lstProperties.isEmpty() || !value.isValid())
        return nullptr;
    VTElementCommandAction* pAction = newAction(context, Id::SetPropertyValue);
    pAction->addParam(pElement, false);
    pAction->addParam(nProperty);
    pAction->addParam(key);
    pAction->addParam(context.nudge(value));
    return single(context, pAction);
}

VTCommand* changePerspective(RandomCommandContext& context)
{
    auto* pScene = context.getScene();
    if (!pScene)
        return nullptr;
    const VTLayoutKey key = context.pickLayout(pScene);
    const int nProperty = context.intIn(VT::PropPerspectiveOriginX, VT::PropPerspectiveOriginZ);
    VTElementCommandAction* pAction = newAction(context, Id::ChangePerspective);
    pAction->addParam(pScene, false);
    QMap<int, bool> mapInherits;
    if (!key.isBase() && context.chance(60))
        mapInherits.insert(nProperty, false);
    pAction->addParam(mapInherits);
    pAction->addParam(key.getHorizontalId());
    pAction->addParam(key.getVerticalId());
    pAction->addParam(nProperty);
    pAction->addParam(nProperty == VT::PropPerspectiveOriginZ ? context.doubleIn(100.0, 2000.0)
                                                              : context.doubleIn(0.0, 1.0));
    return single(context, pAction);
}

} // namespace

void RandomElementGestures::append(QList<RandomGesture>& lstGestures)
{
    const Kinds any;
    const Kinds scene{VT::SceneElement};
    const Kinds media{VT::AudioElement, VT::VideoElement};
    const auto add = [&lstGestures](int nId, int nWeight,
                                    std::function<VTCommand*(RandomCommandContext&)> build) {
        lstGestures << RandomGesture{
            QStringLiteral("inspector %1").arg(nId), {nId}, nWeight, std::move(build)};
    };
    const auto family = [&add](int nId, const Kinds& lstKinds) {
        add(nId, 2, [nId, lstKinds](RandomCommandContext& context) {
            return preparedFamily(context, nId, lstKinds);
        });
    };
    const auto value = [&add](int nId, const Kinds& lstKinds, bool bLayoutBound, int nProperty,
                              ChangeValue change) {
        add(nId, 1, [=](RandomCommandContext& context) {
            return singleValue(context, nId, lstKinds, change, bLayoutBound, nProperty);
        });
    };
    const ChangeValue flag = [](RandomCommandContext&, const QVariant& present) {
        return QVariant(!present.toBool());
    };
    const auto text = [](const QString& prefix) {
        return [prefix](RandomCommandContext& context, const QVariant&) {
            return QVariant(context.uniqueText(prefix));
        };
    };
    // Another whole number of the range.
    const auto number = [](int nMin, int nMax) {
        return [nMin, nMax](RandomCommandContext& context, const QVariant& present) {
            const int nPresent = present.toInt();
            const int nValue = context.intIn(nMin, nMax - 1);
            return QVariant(nValue >= nPresent && nPresent >= nMin && nPresent <= nMax ? nValue + 1 : nValue);
        };
    };
    const auto fraction = [](RandomCommandContext& context, const QVariant&) {
        return QVariant(context.doubleIn(0.0, 1.0));
    };

    add(Id::ChangeGeometry, 6, changeGeometry);
    family(Id::ChangeBorder, any);
    family(Id::ChangeBackground, any);
    family(Id::ChangeText, {VT::TextElement});
    family(Id::ChangeBgImage, {VT::ImageElement});
    family(Id::ChangeCorner, {VT::DivElement});
    family(Id::ChangeClip, any);
    family(Id::ChangeShadow, any);
    family(Id::ChangeFilter, any);
    value(Id::ChangeOpacity, any, true, VT::PropOpacity, fraction);
    value(Id::SetElementName, any, false, -1, text(QStringLiteral("Element ")));
    add(Id::ChangeAdjustments, 1, changeAdjustments);
    value(Id::ChangeClassName, any, true, VT::PropClassName, text(QStringLiteral("class")));
    value(Id::ChangeDisplay, any, true, VT::PropDisplay, number(0, 1));
    value(Id::ChangeOverflow, any, true, VT::PropOverflow, number(0, 3));
    value(Id::SetAutoAdvance, scene, false, -1, flag);
    value(Id::ChangeTitle, any, true, VT::PropTitle, text(QStringLiteral("title")));
    value(Id::ChangeTabIndex, any, true, VT::PropTabIndex, number(-1, 9));
    value(Id::ChangeCursor, any, true, VT::PropCursor,
          [](RandomCommandContext& context, const QVariant& present) {
              QStringList lstCursors{QStringLiteral("pointer"), QStringLiteral("move"),
                                     QStringLiteral("auto"), QStringLiteral("text")};
              lstCursors.removeAll(present.toString());
              return QVariant(context.pick(lstCursors));
          });
    add(Id::ChangeImageResource, 1, [](RandomCommandContext& context) -> VTCommand* {
        VTElement* pImage = pickTarget(context, {VT::ImageElement});
        VTResourceManager* pManager = context.getDocument().getResourceManager();
        QList<VTResource*> lstImages = pManager->getResourcesByType(VTResource::Image, true);
        if (auto* pOf = qobject_cast<VTImage*>(pImage))
            lstImages.removeAll(pOf->getImageResource());
        VTResource* pResource = context.pick(lstImages);
        if (!pImage || !pResource)
            return nullptr;
        VTElementCommandAction* pAction = newAction(context, Id::ChangeImageResource);
        pAction->addParam(pImage, false);
        pAction->addParam(pResource, false);
        return single(context, pAction);
    });
    value(Id::ChangeImageAlt, {VT::ImageElement}, false, -1, text(QStringLiteral("alt")));
    value(Id::ChangeMediaDuration, media, false, -1, number(0, 20000));
    value(Id::ChangeVolume, media, false, -1, fraction);
    for (int nId : {Id::SetMediaAutoplay, Id::SetMediaLoop, Id::SetMediaControls, Id::SetMediaPreload})
        value(nId, media, false, -1, flag);
    value(Id::ChangeTransitionType, scene, false, -1, number(0, 5));
    value(Id::ChangeTransitionDuration, scene, false, -1, number(100, 3000));
    value(Id::ChangeTransitionEasing, scene, false, -1, number(0, 40));
    value(Id::ChangeTransitionDirection, scene, false, -1, number(0, 3));
    add(Id::ChangeHtmlWidgetSource, 1, changeWidgetSource);
    value(Id::ChangeHtmlWidgetCode, {VT::HTMLWidgetElement}, false, -1, text(QStringLiteral("<p>code ")));
    value(Id::SetLockAspectRatio, any, false, -1, flag);
    value(Id::SetSymbolAutoplay, {VT::SymbolElement}, false, -1, flag);
    add(Id::ChangeFreeFormPath, 1,
        [](RandomCommandContext& context) { return changeFreeForm(context, Id::ChangeFreeFormPath); });
    value(Id::SetFreeFormEditPoint, {VT::FreeFormElement}, false, -1, flag);
    add(Id::ChangeArrowStyle, 1,
        [](RandomCommandContext& context) { return changeFreeForm(context, Id::ChangeArrowStyle); });
    add(Id::SetPropertyValue, 2, setPropertyValue);
    add(Id::ChangePerspective, 1, changePerspective);
}
