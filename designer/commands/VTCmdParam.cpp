#include "VTCmdParam.h"

#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTBezierPath.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTElement.h"
#include "VTElementFactory.h"
#include "VTElementProperty.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTMotionPath.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

namespace {

const QString s_strTypeKey = QStringLiteral("type");
const QString s_strValueKey = QStringLiteral("value");

// Shape codes of a div that the stage page sends with a new element.
constexpr int s_nRoundedRectShape = 12;
constexpr int s_nEllipseShape = 21;

// The void pointer holds a pointer of exactly the class of its type code, so it is cast back to
// that class before anything else is done with it.
template <typename T> T* objectAs(void* pObject)
{
    return static_cast<T*>(pObject);
}

void deleteObject(int nType, void* pObject)
{
    switch (nType) {
    case VTCmdParam::Element:
        delete objectAs<VTElement>(pObject);
        break;
    case VTCmdParam::Scene:
        delete objectAs<VTScene>(pObject);
        break;
    case VTCmdParam::SceneManager:
        delete objectAs<VTSceneManager>(pObject);
        break;
    case VTCmdParam::TimelineManager:
        delete objectAs<VTTimelineManager>(pObject);
        break;
    case VTCmdParam::Timeline:
        delete objectAs<VTTimeline>(pObject);
        break;
    case VTCmdParam::Animation:
        delete objectAs<VTAnimation>(pObject);
        break;
    case VTCmdParam::Keyframe:
        delete objectAs<VTKeyframe>(pObject);
        break;
    case VTCmdParam::KeyValue:
        delete objectAs<VTKeyValue>(pObject);
        break;
    case VTCmdParam::MotionPath:
        delete objectAs<VTMotionPath>(pObject);
        break;
    case VTCmdParam::AnchorPoint:
        delete objectAs<VTAnchorPoint>(pObject);
        break;
    case VTCmdParam::EventListener:
        delete objectAs<VTEventListener>(pObject);
        break;
    case VTCmdParam::EventListenerList:
        delete objectAs<VTEventListenerList>(pObject);
        break;
    case VTCmdParam::ElementProperty:
        delete objectAs<VTElementProperty>(pObject);
        break;
    case VTCmdParam::BezierPath:
        delete objectAs<VTBezierPath>(pObject);
        break;
    case VTCmdParam::ArrowStyle:
        delete objectAs<VTFreeFormArrowStyle>(pObject);
        break;
    default:
        break;
    }
}

// The element that the stage page describes for an insertion; null for a kind that is not made.
VTElement* createElementFromPage(const QJsonObject& value)
{
    const int nKind = value.value(s_strTypeKey).toInt();
    VTElement* pElement = VTElementFactory::createElement(nKind);
    if (!pElement)
        return nullptr;
    const QJsonObject path = value.value(QStringLiteral("path")).toObject();
    pElement->setPositionX(path.value(QStringLiteral("l")).toDouble());
    pElement->setPositionY(path.value(QStringLiteral("t")).toDouble());
    pElement->setSizeW(path.value(QStringLiteral("w")).toDouble());
    pElement->setSizeH(path.value(QStringLiteral("h")).toDouble());
    pElement->setId(value.value(QStringLiteral("id")).toInt());
    if (nKind != VT::DivElement)
        return pElement;
    auto* pDiv = qobject_cast<VTDiv*>(pElement);
    VTCorner* pCorner = pDiv ? pDiv->getCorner() : nullptr;
    if (!pCorner)
        return pElement;
    const int nShape = value.value(QStringLiteral("shapeType")).toInt();
    if (nShape == s_nRoundedRectShape || nShape == s_nEllipseShape) {
        const double dRadius = nShape == s_nRoundedRectShape ? 25.0 : 0.5;
        pCorner->setTopLeft(dRadius);
        pCorner->setTopRight(dRadius);
        pCorner->setBottomLeft(dRadius);
        pCorner->setBottomRight(dRadius);
    }
    if (nShape == s_nEllipseShape) {
        // Radii of half the size on every corner make the ellipse.
        pCorner->setUnitTopLeft(VT::Percent);
        pCorner->setUnitTopRight(VT::Percent);
        pCorner->setUnitBottomLeft(VT::Percent);
        pCorner->setUnitBottomRight(VT::Percent);
    }
    return pElement;
}

} // namespace

VTCmdParam::VTCmdParam(int nValue)
{
    setValue(nValue);
}

VTCmdParam::VTCmdParam(double dValue)
{
    setValue(dValue);
}

VTCmdParam::VTCmdParam(const QPointF& ptValue)
{
    setValue(ptValue);
}

VTCmdParam::VTCmdParam(bool bValue)
{
    setValue(bValue);
}

VTCmdParam::VTCmdParam(const QString& strValue)
{
    setValue(strValue);
}

VTCmdParam::VTCmdParam(const QStringList& lstValue)
{
    setValue(lstValue);
}

VTCmdParam::VTCmdParam(const QJsonObject& value)
{
    setValue(value);
}

VTCmdParam::VTCmdParam(const QJsonArray& value)
{
    setValue(value);
}

VTCmdParam::VTCmdParam(const QVariant& value)
{
    setValue(value);
}

VTCmdParam::VTCmdParam(const QBitArray& value)
{
    setValue(value);
}

VTCmdParam::VTCmdParam(const VTLayoutKey& key)
{
    setValue(key);
}

VTCmdParam::VTCmdParam(const QMap<int, bool>& mapInherits)
{
    setValue(mapInherits);
}

VTCmdParam::VTCmdParam(const QList<int>& lstValue)
{
    setValue(lstValue);
}

VTCmdParam::VTCmdParam(VTElement* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTScene* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTSceneManager* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTTimelineManager* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTTimeline* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTAnimation* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTKeyframe* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTKeyValue* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTMotionPath* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTAnchorPoint* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTEventListener* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTEventListenerList* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTResource* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTResourceManager* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTFunction* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTFunctionManager* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTSymbol* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTElementProperty* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTBezierPath* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::VTCmdParam(VTFreeFormArrowStyle* pObject, bool bOwned)
{
    setValue(pObject, bOwned);
}

VTCmdParam::~VTCmdParam()
{
    clearValue();
}

bool VTCmdParam::isPointerType(int nType)
{
    return (nType >= Element && nType <= BezierPath) || nType == ArrowStyle;
}

bool VTCmdParam::isOwnableType(int nType)
{
    return (nType >= Element && nType <= EventListenerList) || nType == ElementProperty ||
           nType == BezierPath || nType == ArrowStyle;
}

void VTCmdParam::clearValue()
{
    void* pObject = m_pObject;
    const int nType = m_nType;
    const bool bOwned = m_bOwned;
    // The fields are reset before the delete, so that nothing the destructor reaches can find
    // this parameter still pointing at a half-destroyed object.
    m_nType = Empty;
    m_value = QVariant();
    m_pObject = nullptr;
    m_bOwned = false;
    if (bOwned && pObject && isOwnableType(nType))
        deleteObject(nType, pObject);
}

void VTCmdParam::setPointer(int nType, void* pObject, bool bOwned)
{
    // Setting the object a parameter already holds only changes its type and ownership: deleting
    // it first would leave the parameter pointing at freed memory.
    if (pObject && pObject == m_pObject) {
        m_value = QVariant();
    } else {
        clearValue();
        m_pObject = pObject;
    }
    m_nType = nType;
    m_bOwned = bOwned;
}

void VTCmdParam::setValue(int nValue)
{
    clearValue();
    m_nType = Int;
    m_value = nValue;
}

void VTCmdParam::setValue(double dValue)
{
    clearValue();
    m_nType = Double;
    m_value = dValue;
}

void VTCmdParam::setValue(const QPointF& ptValue)
{
    clearValue();
    m_nType = PointF;
    m_value = ptValue;
}

void VTCmdParam::setValue(bool bValue)
{
    clearValue();
    m_nType = Bool;
    m_value = bValue;
}

void VTCmdParam::setValue(const QString& strValue)
{
    clearValue();
    m_nType = String;
    m_value = strValue;
}

void VTCmdParam::setValue(const QStringList& lstValue)
{
    clearValue();
    m_nType = StringList;
    m_value = lstValue;
}

void VTCmdParam::setValue(const QJsonObject& value)
{
    clearValue();
    m_nType = JsonObject;
    m_value = value;
}

void VTCmdParam::setValue(const QJsonArray& value)
{
    clearValue();
    m_nType = JsonArray;
    m_value = value;
}

void VTCmdParam::setValue(const QVariant& value)
{
    clearValue();
    m_nType = Variant;
    m_value = value;
}

void VTCmdParam::setValue(const QBitArray& value)
{
    clearValue();
    m_nType = BitArray;
    m_value = value;
}

void VTCmdParam::setValue(const VTLayoutKey& key)
{
    clearValue();
    m_nType = IntPair;
    m_value = QVariant::fromValue(key);
}

void VTCmdParam::setValue(const QMap<int, bool>& mapInherits)
{
    clearValue();
    m_nType = MapInherits;
    m_value = QVariant::fromValue(mapInherits);
}

void VTCmdParam::setValue(const QList<int>& lstValue)
{
    clearValue();
    m_nType = IntList;
    m_value = QVariant::fromValue(lstValue);
}

void VTCmdParam::setValue(VTElement* pObject, bool bOwned)
{
    setPointer(Element, pObject, bOwned);
}

void VTCmdParam::setValue(VTScene* pObject, bool bOwned)
{
    setPointer(Scene, pObject, bOwned);
}

void VTCmdParam::setValue(VTSceneManager* pObject, bool bOwned)
{
    setPointer(SceneManager, pObject, bOwned);
}

void VTCmdParam::setValue(VTTimelineManager* pObject, bool bOwned)
{
    setPointer(TimelineManager, pObject, bOwned);
}

void VTCmdParam::setValue(VTTimeline* pObject, bool bOwned)
{
    setPointer(Timeline, pObject, bOwned);
}

void VTCmdParam::setValue(VTAnimation* pObject, bool bOwned)
{
    setPointer(Animation, pObject, bOwned);
}

void VTCmdParam::setValue(VTKeyframe* pObject, bool bOwned)
{
    setPointer(Keyframe, pObject, bOwned);
}

void VTCmdParam::setValue(VTKeyValue* pObject, bool bOwned)
{
    setPointer(KeyValue, pObject, bOwned);
}

void VTCmdParam::setValue(VTMotionPath* pObject, bool bOwned)
{
    setPointer(MotionPath, pObject, bOwned);
}

void VTCmdParam::setValue(VTAnchorPoint* pObject, bool bOwned)
{
    setPointer(AnchorPoint, pObject, bOwned);
}

void VTCmdParam::setValue(VTEventListener* pObject, bool bOwned)
{
    setPointer(EventListener, pObject, bOwned);
}

void VTCmdParam::setValue(VTEventListenerList* pObject, bool bOwned)
{
    setPointer(EventListenerList, pObject, bOwned);
}

void VTCmdParam::setValue(VTResource* pObject, bool bOwned)
{
    setPointer(Resource, pObject, bOwned);
}

void VTCmdParam::setValue(VTResourceManager* pObject, bool bOwned)
{
    setPointer(ResourceManager, pObject, bOwned);
}

void VTCmdParam::setValue(VTFunction* pObject, bool bOwned)
{
    setPointer(JSFunction, pObject, bOwned);
}

void VTCmdParam::setValue(VTFunctionManager* pObject, bool bOwned)
{
    setPointer(FunctionManager, pObject, bOwned);
}

void VTCmdParam::setValue(VTSymbol* pObject, bool bOwned)
{
    setPointer(Symbol, pObject, bOwned);
}

void VTCmdParam::setValue(VTElementProperty* pObject, bool bOwned)
{
    setPointer(ElementProperty, pObject, bOwned);
}

void VTCmdParam::setValue(VTBezierPath* pObject, bool bOwned)
{
    setPointer(BezierPath, pObject, bOwned);
}

void VTCmdParam::setValue(VTFreeFormArrowStyle* pObject, bool bOwned)
{
    setPointer(ArrowStyle, pObject, bOwned);
}

int VTCmdParam::getAsInt() const
{
    return m_nType == Int ? m_value.toInt() : 0;
}

double VTCmdParam::getAsDouble() const
{
    return m_nType == Double ? m_value.toDouble() : 0.0;
}

QPointF VTCmdParam::getAsPointF() const
{
    return m_nType == PointF ? m_value.toPointF() : QPointF();
}

bool VTCmdParam::getAsBool() const
{
    return m_nType == Bool && m_value.toBool();
}

QString VTCmdParam::getAsString() const
{
    return m_nType == String ? m_value.toString() : QString();
}

QStringList VTCmdParam::getAsStringList() const
{
    return m_nType == StringList ? m_value.toStringList() : QStringList();
}

QJsonObject VTCmdParam::getAsJsonObject() const
{
    return m_nType == JsonObject ? m_value.toJsonObject() : QJsonObject();
}

QJsonArray VTCmdParam::getAsJsonArray() const
{
    return m_nType == JsonArray ? m_value.toJsonArray() : QJsonArray();
}

QVariant VTCmdParam::getAsVariant() const
{
    return m_nType == Variant ? m_value : QVariant();
}

QBitArray VTCmdParam::getAsBitArray() const
{
    return m_nType == BitArray ? m_value.toBitArray() : QBitArray();
}

VTLayoutKey VTCmdParam::getAsIntPair() const
{
    return m_nType == IntPair ? m_value.value<VTLayoutKey>() : VTLayoutKey();
}

QMap<int, bool> VTCmdParam::getAsMapInherits() const
{
    return m_nType == MapInherits ? m_value.value<QMap<int, bool>>() : QMap<int, bool>();
}

QList<int> VTCmdParam::getAsIntList() const
{
    return m_nType == IntList ? m_value.value<QList<int>>() : QList<int>();
}

// A scene is an element and an element is a list of event listeners: a getter of a base class
// answers for the parameters that hold a subclass, since those are the same object.
VTElement* VTCmdParam::getAsElement() const
{
    if (m_nType == Element)
        return objectAs<VTElement>(m_pObject);
    if (m_nType == Scene)
        return objectAs<VTScene>(m_pObject);
    return nullptr;
}

VTScene* VTCmdParam::getAsScene() const
{
    if (m_nType == Scene)
        return objectAs<VTScene>(m_pObject);
    if (m_nType == Element)
        return qobject_cast<VTScene*>(objectAs<VTElement>(m_pObject));
    return nullptr;
}

VTSceneManager* VTCmdParam::getAsSceneManager() const
{
    return m_nType == SceneManager ? objectAs<VTSceneManager>(m_pObject) : nullptr;
}

VTTimelineManager* VTCmdParam::getAsTimelineManager() const
{
    return m_nType == TimelineManager ? objectAs<VTTimelineManager>(m_pObject) : nullptr;
}

VTTimeline* VTCmdParam::getAsTimeline() const
{
    return m_nType == Timeline ? objectAs<VTTimeline>(m_pObject) : nullptr;
}

VTAnimation* VTCmdParam::getAsAnimation() const
{
    return m_nType == Animation ? objectAs<VTAnimation>(m_pObject) : nullptr;
}

VTKeyframe* VTCmdParam::getAsKeyframeAnimation() const
{
    return m_nType == Keyframe ? objectAs<VTKeyframe>(m_pObject) : nullptr;
}

VTKeyValue* VTCmdParam::getAsKeyValueAnimation() const
{
    return m_nType == KeyValue ? objectAs<VTKeyValue>(m_pObject) : nullptr;
}

VTMotionPath* VTCmdParam::getAsMotionPath() const
{
    return m_nType == MotionPath ? objectAs<VTMotionPath>(m_pObject) : nullptr;
}

VTAnchorPoint* VTCmdParam::getAsAnchorPoint() const
{
    return m_nType == AnchorPoint ? objectAs<VTAnchorPoint>(m_pObject) : nullptr;
}

VTEventListener* VTCmdParam::getAsEventListener() const
{
    return m_nType == EventListener ? objectAs<VTEventListener>(m_pObject) : nullptr;
}

VTEventListenerList* VTCmdParam::getAsEventListenerList() const
{
    if (m_nType == EventListenerList)
        return objectAs<VTEventListenerList>(m_pObject);
    return getAsElement();
}

VTResource* VTCmdParam::getAsResource() const
{
    return m_nType == Resource ? objectAs<VTResource>(m_pObject) : nullptr;
}

VTResourceManager* VTCmdParam::getAsResourceManager() const
{
    return m_nType == ResourceManager ? objectAs<VTResourceManager>(m_pObject) : nullptr;
}

VTFunction* VTCmdParam::getAsJSFunction() const
{
    return m_nType == JSFunction ? objectAs<VTFunction>(m_pObject) : nullptr;
}

VTFunctionManager* VTCmdParam::getAsFunctionManager() const
{
    return m_nType == FunctionManager ? objectAs<VTFunctionManager>(m_pObject) : nullptr;
}

VTSymbol* VTCmdParam::getAsSymbol() const
{
    return m_nType == Symbol ? objectAs<VTSymbol>(m_pObject) : nullptr;
}

VTElementProperty* VTCmdParam::getAsElementProperty() const
{
    return m_nType == ElementProperty ? objectAs<VTElementProperty>(m_pObject) : nullptr;
}

VTBezierPath* VTCmdParam::getAsBezierPath() const
{
    if (m_nType == BezierPath)
        return objectAs<VTBezierPath>(m_pObject);
    if (m_nType == MotionPath)
        return objectAs<VTMotionPath>(m_pObject);
    return nullptr;
}

VTFreeFormArrowStyle* VTCmdParam::getAsArrowStyle() const
{
    return m_nType == ArrowStyle ? objectAs<VTFreeFormArrowStyle>(m_pObject) : nullptr;
}

void VTCmdParam::serialize(QJsonObject& json) const
{
    json.insert(s_strTypeKey, m_nType);
    switch (m_nType) {
    case Int:
        json.insert(s_strValueKey, getAsInt());
        break;
    case Double:
        json.insert(s_strValueKey, getAsDouble());
        break;
    case PointF: {
        const QPointF pt = getAsPointF();
        json.insert(s_strValueKey, QJsonObject{{QStringLiteral("x"), pt.x()}, {QStringLiteral("y"), pt.y()}});
        break;
    }
    case Bool:
        json.insert(s_strValueKey, getAsBool());
        break;
    case String:
        json.insert(s_strValueKey, getAsString());
        break;
    case JsonObject:
        json.insert(s_strValueKey, getAsJsonObject());
        break;
    case JsonArray:
        json.insert(s_strValueKey, getAsJsonArray());
        break;
    case Element:
        if (const VTElement* pElement = getAsElement()) {
            QJsonObject object;
            pElement->serializeToExport(object, true, true);
            json.insert(s_strValueKey, object);
        }
        break;
    case Scene:
        if (const VTScene* pScene = getAsScene()) {
            QJsonObject object;
            pScene->serialize(object);
            json.insert(s_strValueKey, object);
        }
        break;
    case BezierPath:
        if (const VTBezierPath* pPath = getAsBezierPath()) {
            QJsonArray array;
            pPath->serializeToExport(array);
            json.insert(s_strValueKey, array);
        }
        break;
    default:
        break;
    }
}

void VTCmdParam::parse(const QJsonObject& json, VTResourceManager* pResourceManager)
{
    // Everything the page sends that needs a resource arrives as an id in a text; the manager is
    // part of the reading interface all the same.
    Q_UNUSED(pResourceManager)
    clearValue();
    const int nType = json.value(s_strTypeKey).toInt();
    const QJsonValue value = json.value(s_strValueKey);
    switch (nType) {
    case Int:
        setValue(value.toInt());
        break;
    case Double:
        setValue(value.toDouble());
        break;
    case PointF: {
        const QJsonObject point = value.toObject();
        setValue(QPointF(point.value(QStringLiteral("x")).toDouble(),
                         point.value(QStringLiteral("y")).toDouble()));
        break;
    }
    case Bool:
        setValue(value.toBool());
        break;
    case String:
        setValue(value.toString());
        break;
    case Element:
        // Inserting code takes the element over; until then nobody owns it. Without a description
        // there is nothing to insert.
        setValue(value.isObject() ? createElementFromPage(value.toObject()) : nullptr, false);
        break;
    case IntList: {
        QList<int> lstValues;
        const QJsonArray array = value.toArray();
        for (const QJsonValue& item : array)
            lstValues.append(item.toInt());
        setValue(lstValues);
        break;
    }
    default:
        // The other types carry nothing readable from the page; the type alone says what was meant.
        if (nType > Empty && nType <= IntList)
            m_nType = nType;
        break;
    }
}
