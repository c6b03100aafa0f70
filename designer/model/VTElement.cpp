#include "VTElement.h"

#include "VTBackground.h"
#include "VTBorder.h"
#include "VTElementPropertyFactory.h"
#include "VTElementPropertyInfo.h"
#include "VTElementReader.h"
#include "VTJsonReader.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <functional>
#include <limits>
#include <memory>

namespace {

const QString kRespProps = QStringLiteral("respProps");
const QString kEvents = QStringLiteral("events");
const QString kChildren = QStringLiteral("children");

bool isLayoutKey(const VTLayoutKey& key)
{
    return key.first >= 0 && key.second >= 0;
}

} // namespace

VTElement::VTElement()
    : VTEventListenerList(nullptr)
{}

VTElement::VTElement(const VTElement& other)
    : VTEventListenerList(other)
    , m_nId(other.m_nId)
    , m_strName(other.m_strName)
    , m_bVisible(other.m_bVisible)
    , m_bLocked(other.m_bLocked)
    , m_bAspectRatioLocked(other.m_bAspectRatioLocked)
    , m_currentLayoutId(other.m_currentLayoutId)
{
    for (auto it = other.m_mapLayoutProperties.cbegin(); it != other.m_mapLayoutProperties.cend(); ++it) {
        VTElementProperty* pBlock = it.value()->clone();
        pBlock->setParent(this);
        m_mapLayoutProperties.insert(it.key(), pBlock);
    }
    for (const VTElement* pChild : other.m_lstChildren)
        VTElement::addChild(pChild->clone());
}

std::atomic<quint64> VTElement::s_nTreeEpoch{0};

VTElement::~VTElement()
{
    s_nTreeEpoch.fetch_add(1, std::memory_order_relaxed);
    // The children go with the QObject destructor, after this element's members; they must not
    // reach back into a list that is gone by then.
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->m_pParent = nullptr;
    // Deleted while still in a tree: the parent's list must not keep a dangling entry.
    if (m_pParent)
        m_pParent->m_lstChildren.removeOne(this);
}

VTElement* VTElement::clone() const
{
    return new VTElement(*this);
}

void VTElement::initDefault()
{
    if (m_mapLayoutProperties.contains(VTLayoutKey::base()))
        return;
    std::unique_ptr<VTElementProperty> pBlock(createLayoutBlock());
    if (pBlock && addLayoutProperty(pBlock.get(), VTLayoutKey::base()))
        pBlock.release();
}

VTElementProperty* VTElement::createLayoutBlock() const
{
    return VTElementPropertyFactory::createElementProperty(getType());
}

// Events

void VTElement::prepareFunctionMap(QMap<VTFunction*, VTFunction*>& mapFunctions,
                                   const VTFunctionManager* pSourceManager) const
{
    VTEventListenerList::prepareFunctionMap(mapFunctions, pSourceManager);
    for (const VTElement* pChild : m_lstChildren)
        pChild->prepareFunctionMap(mapFunctions, pSourceManager);
}

void VTElement::updateFunctionMap(const QMap<VTFunction*, VTFunction*>& mapFunctions,
                                  const VTFunctionManager* pSourceManager)
{
    VTEventListenerList::updateFunctionMap(mapFunctions, pSourceManager);
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->updateFunctionMap(mapFunctions, pSourceManager);
}

void VTElement::updateTargetIds(const QMap<int, VTElement*>& mapElements, VTScene* pScene)
{
    QMap<int, int> mapNewIds;
    for (auto it = mapElements.cbegin(); it != mapElements.cend(); ++it) {
        if (it.value())
            mapNewIds.insert(it.key(), it.value()->getId());
    }
    std::function<bool(int)> fnIsInScene;
    if (const VTElement* pSceneRoot = pScene ? getScene() : nullptr)
        fnIsInScene = [pSceneRoot](int nId) { return pSceneRoot->getElementById(nId, true) != nullptr; };
    remapElementTargets(mapNewIds, fnIsInScene);
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->updateTargetIds(mapElements, pScene);
}

bool VTElement::isSupportedEventType(VTEventListener::EventType nEventType) const
{
    return nEventType >= VTEventListener::MouseClick && nEventType <= VTEventListener::SwipeRight;
}

void VTElement::removeAllEventListeners()
{
    for (VTEventListener* pListener : getEventListeners()) {
        detachEventListener(pListener);
        delete pListener;
    }
}

// Identity and tree

void VTElement::updateId(int& nNextId)
{
    constexpr int kLastId = std::numeric_limits<int>::max();
    if (m_nId < 1) {
        m_nId = nNextId;
        if (nNextId < kLastId)
            ++nNextId;
    } else if (m_nId >= nNextId) {
        nNextId = m_nId < kLastId ? m_nId + 1 : kLastId;
    }
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->updateId(nNextId);
}

void VTElement::resetId()
{
    m_nId = -1;
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->resetId();
}

void VTElement::updateName()
{
    const VTElement* pScope = getScene();
    if (!pScope)
        pScope = getRoot();
    // The names in use are gathered once: a pasted group of many unnamed elements would otherwise
    // search the whole scene for every candidate of every element.
    QSet<QString> setTaken;
    collectNames(pScope, this, setTaken);
    nameSubtree(setTaken);
}

void VTElement::collectNames(const VTElement* pRoot, const VTElement* pSkip, QSet<QString>& setNames)
{
    for (const VTElement* pChild : pRoot->m_lstChildren) {
        if (pChild == pSkip)
            continue;
        setNames.insert(pChild->m_strName);
        collectNames(pChild, pSkip, setNames);
    }
}

void VTElement::nameSubtree(QSet<QString>& setTaken)
{
    if (m_strName.isEmpty() || setTaken.contains(m_strName)) {
        const QString stem = m_strName.isEmpty() ? getKindName() : m_strName;
        // Both parts in one arg call: a stem holding "%1" must not take the number.
        for (int n = 1;; ++n) {
            const QString candidate = QStringLiteral("%1_%2").arg(stem, QString::number(n));
            if (!setTaken.contains(candidate)) {
                m_strName = candidate;
                break;
            }
        }
    }
    setTaken.insert(m_strName);
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->nameSubtree(setTaken);
}

QString VTElement::mapType2DefaultName(int nType)
{
    switch (nType) {
    case VT::ImageElement:
        return QStringLiteral("Image");
    case VT::AudioElement:
        return QStringLiteral("Audio");
    case VT::VideoElement:
        return QStringLiteral("Video");
    case VT::HTMLWidgetElement:
        return QStringLiteral("HTML_Widget");
    case VT::TextElement:
        return QStringLiteral("Text");
    case VT::DivElement:
        return QStringLiteral("Div");
    case VT::GroupElement:
        return QStringLiteral("Group");
    case VT::SymbolElement:
        return QStringLiteral("Symbol");
    case VT::SceneElement:
        return QStringLiteral("Scene");
    case VT::ShapeElement:
        return QStringLiteral("Shape");
    case VT::ComponentElement:
        return QStringLiteral("Component");
    case VT::FreeFormElement:
        return QStringLiteral("Freeform");
    default:
        return QStringLiteral("Element");
    }
}

VTElement* VTElement::getScene() const
{
    for (const VTElement* pElement = this; pElement; pElement = pElement->getParent()) {
        if (pElement->getType() == VT::SceneElement)
            return const_cast<VTElement*>(pElement);
    }
    return nullptr;
}

VTElement* VTElement::getRoot() const
{
    const VTElement* pElement = this;
    while (pElement->getParent())
        pElement = pElement->getParent();
    return const_cast<VTElement*>(pElement);
}

bool VTElement::isDuplicatedElemName(const QString& name, const VTElement* pExcept) const
{
    for (const VTElement* pChild : m_lstChildren) {
        if ((pChild != pExcept && pChild->m_strName == name) || pChild->isDuplicatedElemName(name, pExcept))
            return true;
    }
    return false;
}

VTElement* VTElement::getChildByIndex(int nIndex) const
{
    return m_lstChildren.value(nIndex, nullptr);
}

int VTElement::getChildIndex(const VTElement* pChild) const
{
    return m_lstChildren.indexOf(const_cast<VTElement*>(pChild));
}

VTElement* VTElement::getElementById(int nId, bool bIncludeSelf) const
{
    if (bIncludeSelf && m_nId == nId)
        return const_cast<VTElement*>(this);
    for (const VTElement* pChild : m_lstChildren) {
        if (VTElement* pFound = pChild->getElementById(nId, true))
            return pFound;
    }
    return nullptr;
}

bool VTElement::isParentOf(const VTElement* pElement) const
{
    for (const VTElement* pAncestor = pElement ? pElement->getParent() : nullptr; pAncestor;
         pAncestor = pAncestor->getParent()) {
        if (pAncestor == this)
            return true;
    }
    return false;
}

VTElement* VTElement::getCommonAncestor(const VTElement* pOther) const
{
    if (!pOther)
        return nullptr;
    QList<const VTElement*> lstOwnLine;
    for (const VTElement* pElement = this; pElement; pElement = pElement->getParent()) {
        lstOwnLine.append(pElement);
        if (pElement->getType() == VT::SceneElement)
            break;
    }
    for (const VTElement* pElement = pOther; pElement; pElement = pElement->getParent()) {
        if (lstOwnLine.contains(pElement))
            return const_cast<VTElement*>(pElement);
        if (pElement->getType() == VT::SceneElement)
            break;
    }
    return nullptr;
}

int VTElement::addChild(VTElement* pChild, int nIndex)
{
    if (!pChild || pChild == this || pChild->isParentOf(this))
        return -1;
    if (VTElement* pOldParent = pChild->getParent())
        pOldParent->detachChild(pChild);
    if (nIndex < 0 || nIndex >= m_lstChildren.size()) {
        nIndex = m_lstChildren.size();
        m_lstChildren.append(pChild);
    } else {
        m_lstChildren.insert(nIndex, pChild);
    }
    s_nTreeEpoch.fetch_add(1, std::memory_order_relaxed);
    pChild->QObject::setParent(this);
    pChild->setParent(this);
    pChild->setCurrentLayoutID(m_currentLayoutId);
    return nIndex;
}

int VTElement::detachChild(VTElement* pChild)
{
    if (!pChild || pChild->getParent() != this)
        return -1;
    const int nIndex = m_lstChildren.indexOf(pChild);
    if (nIndex >= 0)
        m_lstChildren.removeAt(nIndex);
    s_nTreeEpoch.fetch_add(1, std::memory_order_relaxed);
    pChild->setParent(nullptr);
    if (pChild->QObject::parent() == this)
        pChild->QObject::setParent(nullptr);
    return nIndex;
}

void VTElement::deleteAllChildren()
{
    const QList<VTElement*> lstChildren = m_lstChildren;
    for (VTElement* pChild : lstChildren) {
        detachChild(pChild);
        pChild->detachResources();
        delete pChild;
    }
}

QList<VTElement*> VTElement::getSelectedElements(bool bTopLevelOnly) const
{
    QList<VTElement*> lstSelected;
    if (!m_bSelected)
        return lstSelected;
    for (VTElement* pChild : m_lstChildren) {
        if (!pChild->isSelected())
            continue;
        const QList<VTElement*> lstBelow =
            bTopLevelOnly ? QList<VTElement*>() : pChild->getSelectedElements(false);
        if (lstBelow.isEmpty())
            lstSelected.append(pChild);
        else
            lstSelected.append(lstBelow);
    }
    return lstSelected;
}

int VTElement::getSelectedElementsCount() const
{
    return getSelectedElements(false).size();
}

void VTElement::updateLockAndVisibility()
{
    if (m_pParent) {
        if (m_pParent->isLocked())
            m_bLocked = true;
        if (!m_pParent->isVisible())
            m_bVisible = false;
    }
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->updateLockAndVisibility();
}

// Layouts

VTElementProperty* VTElement::getLayoutProperty(const VTLayoutKey& key) const
{
    return m_mapLayoutProperties.value(resolveLayoutKey(key), nullptr);
}

bool VTElement::addLayoutProperty(VTElementProperty* pBlock, const VTLayoutKey& key)
{
    const VTLayoutKey layout = resolveLayoutKey(key);
    if (!pBlock || !isLayoutKey(layout) || m_mapLayoutProperties.contains(layout) ||
        !m_mapLayoutProperties.key(pBlock, VTLayoutKey::current()).isCurrent())
        return false;
    pBlock->setParent(this);
    m_mapLayoutProperties.insert(layout, pBlock);
    return true;
}

VTElementProperty* VTElement::updateLayoutProperty(VTElementProperty* pBlock, const VTLayoutKey& key)
{
    const VTLayoutKey layout = resolveLayoutKey(key);
    if (!pBlock || !isLayoutKey(layout) ||
        !m_mapLayoutProperties.key(pBlock, VTLayoutKey::current()).isCurrent())
        return nullptr;
    VTElementProperty* pOld = removeLayoutProperty(layout);
    addLayoutProperty(pBlock, layout);
    return pOld;
}

VTElementProperty* VTElement::removeLayoutProperty(const VTLayoutKey& key)
{
    VTElementProperty* pBlock = m_mapLayoutProperties.take(resolveLayoutKey(key));
    if (pBlock)
        pBlock->setParent(nullptr);
    return pBlock;
}

void VTElement::deleteAllLayoutProperties()
{
    const QList<VTLayoutKey> lstKeys = getAllLayoutIds();
    for (const VTLayoutKey& key : lstKeys) {
        std::unique_ptr<VTElementProperty> pBlock(removeLayoutProperty(key));
        pBlock->getBackground()->detachResources();
    }
}

void VTElement::prepareLayoutProperty(QList<VTLayoutKey> lstKeys, bool bWithBase,
                                      const VTLayoutKey& sourceKey)
{
    const VTLayoutKey source = resolveLayoutKey(sourceKey);
    const VTElementProperty* pSource = getLayoutProperty(source);
    if (!pSource)
        return;
    if (!lstKeys.contains(VTLayoutKey::base()))
        lstKeys.prepend(VTLayoutKey::base());
    const QList<VTLayoutKey> lstExisting = getAllLayoutIds();
    for (const VTLayoutKey& key : lstExisting) {
        if (key == source || (bWithBase && lstKeys.contains(key)))
            continue;
        std::unique_ptr<VTElementProperty> pRemoved(removeLayoutProperty(key));
        pRemoved->getBackground()->detachResources();
    }
    for (const VTLayoutKey& key : qAsConst(lstKeys)) {
        if (m_mapLayoutProperties.contains(key))
            continue;
        std::unique_ptr<VTElementProperty> pCopy(pSource->clone());
        // A copy starts detached; it counts as its source does, so an element in the project
        // keeps counting the images of all its layouts.
        if (pSource->getBackground()->isAttached())
            pCopy->getBackground()->attachResources();
        if (addLayoutProperty(pCopy.get(), key))
            pCopy.release();
    }
}

void VTElement::setCurrentLayoutID(const VTLayoutKey& key)
{
    if (key.isCurrent())
        return;
    m_currentLayoutId = key;
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->setCurrentLayoutID(key);
}

bool VTElement::isInherit(int nProperty, const VTLayoutKey& key) const
{
    const VTElementProperty* pBlock = getLayoutProperty(key);
    return pBlock && pBlock->isInherit(nProperty);
}

bool VTElement::isInherit(const VTLayoutKey& key) const
{
    const VTElementProperty* pBlock = getLayoutProperty(key);
    return pBlock && pBlock->isInheritAll();
}

void VTElement::setInherit(int nProperty, bool bInherit, const VTLayoutKey& key)
{
    if (VTElementProperty* pBlock = getLayoutProperty(key))
        pBlock->setInherit(nProperty, bInherit);
}

void VTElement::setInherits(bool bInherit, const VTLayoutKey& key)
{
    if (VTElementProperty* pBlock = getLayoutProperty(key))
        pBlock->setInherits(bInherit);
}

QMap<int, bool> VTElement::getInherits(const VTLayoutKey& key) const
{
    const VTElementProperty* pBlock = getLayoutProperty(key);
    return pBlock ? pBlock->getInherits() : QMap<int, bool>();
}

QMap<int, bool> VTElement::addInherits(const QMap<int, bool>& mapInherits, const VTLayoutKey& key)
{
    QMap<int, bool> mapPrevious;
    VTElementProperty* pBlock = getLayoutProperty(key);
    if (!pBlock)
        return mapPrevious;
    for (auto it = mapInherits.cbegin(); it != mapInherits.cend(); ++it) {
        // Numbers the block would not store have no state to give back either.
        if (VTElementPropertyInfo::isValidProperty(it.key()))
            mapPrevious.insert(it.key(), pBlock->isInherit(it.key()));
    }
    pBlock->addInherits(mapInherits);
    return mapPrevious;
}

QMap<int, bool> VTElement::setInherits(const QMap<int, bool>& mapInherits, const VTLayoutKey& key)
{
    VTElementProperty* pBlock = getLayoutProperty(key);
    if (!pBlock)
        return QMap<int, bool>();
    const QMap<int, bool> mapPrevious = pBlock->getInherits();
    pBlock->setInherits(true);
    pBlock->addInherits(mapInherits);
    return mapPrevious;
}

// Geometry that the kinds may refine

double VTElement::getParentComputedW(const VTLayoutKey& key) const
{
    return m_pParent ? m_pParent->getComputedW(resolveLayoutKey(key)) : 0.0;
}

double VTElement::getParentComputedH(const VTLayoutKey& key) const
{
    return m_pParent ? m_pParent->getComputedH(resolveLayoutKey(key)) : 0.0;
}

void VTElement::setComputedX(double dValue, const VTLayoutKey& key)
{
    VTElementGeometry::applyComputedX(*this, dValue, key);
}

double VTElement::getContentBoxOffset(const VTLayoutKey& key) const
{
    const VTBorder* pBorder = getBorder(key);
    return pBorder && pBorder->getStyle() != VTBorder::None ? pBorder->getWidth() : 0.0;
}

void VTElement::setComputedLeftTop(const QPointF& ptValue, const VTLayoutKey& key)
{
    setComputedLeft(ptValue.x(), key);
    setComputedTop(ptValue.y(), key);
}

void VTElement::setAbsoluteLeftTop(const QPointF& ptValue, const VTLayoutKey& key)
{
    setAbsoluteLeft(ptValue.x(), key);
    setAbsoluteTop(ptValue.y(), key);
}

void VTElement::setGlobalPosition(const QPointF& ptValue, const VTLayoutKey& key)
{
    setGlobalPositionX(ptValue.x(), key);
    setGlobalPositionY(ptValue.y(), key);
}

int VTElement::getXKeyframeType(const VTLayoutKey& key) const
{
    const int nType = getCoordinateType(key);
    return nType == VT::LeftTop || nType == VT::LeftBottom ? VT::PropLeft : VT::PropRight;
}

int VTElement::getYKeyframeType(const VTLayoutKey& key) const
{
    const int nType = getCoordinateType(key);
    return nType == VT::LeftTop || nType == VT::RightTop ? VT::PropTop : VT::PropBottom;
}

int VTElement::changeCoordinateX(int nType)
{
    // Left and right trade places within the same vertical side: 0 with 1, 2 with 3.
    return nType >= VT::LeftTop && nType <= VT::LeftBottom ? nType ^ 1 : nType;
}

int VTElement::changeCoordinateY(int nType)
{
    return nType >= VT::LeftTop && nType <= VT::LeftBottom ? VT::LeftBottom - nType : nType;
}

QPointF VTElement::getContentOffsetToElement(const VTElement* pTarget, const VTLayoutKey& key) const
{
    const double dOffset = getContentBoxOffset(key);
    return getTransformToElement(pTarget, key).map(dOffset, dOffset);
}

// Resources

void VTElement::prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const
{
    for (const VTElementProperty* pBlock : m_mapLayoutProperties) {
        VTResource* pResource = pBlock->getBackground()->getImageResource();
        if (pResource && !mapResources.contains(pResource))
            mapResources.insert(pResource, nullptr);
    }
    for (const VTElement* pChild : m_lstChildren)
        pChild->prepareResourceMap(mapResources);
}

void VTElement::updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources)
{
    for (VTElementProperty* pBlock : qAsConst(m_mapLayoutProperties)) {
        VTBackground* pBackground = pBlock->getBackground();
        VTResource* pMapped = mapResources.value(pBackground->getImageResource(), nullptr);
        if (pMapped && pMapped != pBackground->getImageResource())
            pBackground->setImageResource(pMapped);
    }
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->updateResourceMap(mapResources);
}

void VTElement::attachResources()
{
    for (VTElementProperty* pBlock : qAsConst(m_mapLayoutProperties))
        pBlock->getBackground()->attachResources();
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->attachResources();
}

void VTElement::detachResources()
{
    for (VTElementProperty* pBlock : qAsConst(m_mapLayoutProperties))
        pBlock->getBackground()->detachResources();
    for (VTElement* pChild : qAsConst(m_lstChildren))
        pChild->detachResources();
}

void VTElement::getExportedFontInfo(QList<VTExportedFontInfo>& lstFonts) const
{
    for (const VTElementProperty* pBlock : m_mapLayoutProperties)
        pBlock->getExportedFontInfo(lstFonts);
    for (const VTElement* pChild : m_lstChildren)
        pChild->getExportedFontInfo(lstFonts);
}

// Every layout counts: the player keeps one 3D setting while the layouts change under it.
bool VTElement::isPreserved3D() const
{
    for (const VTElementProperty* pBlock : m_mapLayoutProperties) {
        if (pBlock->isPreserved3D())
            return true;
    }
    for (const VTElement* pChild : m_lstChildren) {
        if (pChild->isPreserved3D())
            return true;
    }
    return false;
}

// Project form

void VTElement::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("type"), getType());
    json.insert(QStringLiteral("id"), m_nId);
    json.insert(QStringLiteral("name"), m_strName);
    json.insert(QStringLiteral("expanded_keyframe"), m_bExpandedKeyframe);
    json.insert(QStringLiteral("expanded_timeline"), m_bExpandedTimeline);
    json.insert(QStringLiteral("expanded_elementpane"), m_bExpandedElementPane);
    json.insert(QStringLiteral("isVisible"), m_bVisible);
    json.insert(QStringLiteral("isLocked"), m_bLocked);
    json.insert(QStringLiteral("isAspectRatioLocked"), m_bAspectRatioLocked);

    QJsonArray layouts;
    for (auto it = m_mapLayoutProperties.cbegin(); it != m_mapLayoutProperties.cend(); ++it) {
        QJsonObject values;
        it.value()->serialize(values);
        layouts.append(QJsonObject{{QStringLiteral("hLayoutId"), it.key().first},
                                   {QStringLiteral("vLayoutId"), it.key().second},
                                   {QStringLiteral("values"), values}});
    }
    json.insert(kRespProps, layouts);

    QJsonArray events;
    VTEventListenerList::serialize(events);
    json.insert(kEvents, events);

    if (m_lstChildren.isEmpty())
        return;
    QJsonArray children;
    for (const VTElement* pChild : m_lstChildren) {
        QJsonObject child;
        pChild->serialize(child);
        children.append(child);
    }
    json.insert(kChildren, children);
}

bool VTElement::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    const VTElementReader::DepthGuard depthGuard;
    const VTJsonReader identity(json, tr("element"), pProblems);
    m_nId = identity.readInt(QStringLiteral("id"), -1);
    m_strName = identity.readString(QStringLiteral("name"));
    const QString context =
        m_strName.isEmpty() ? tr("element with id %1").arg(m_nId) : tr("element \"%1\"").arg(m_strName);

    const VTJsonReader reader(json, context, pProblems);
    m_bExpandedKeyframe = reader.readBool(QStringLiteral("expanded_keyframe"), true);
    m_bExpandedTimeline = reader.readBool(QStringLiteral("expanded_timeline"), true);
    m_bExpandedElementPane = reader.readBool(QStringLiteral("expanded_elementpane"), true);
    m_bVisible = reader.readBool(QStringLiteral("isVisible"), true);
    m_bLocked = reader.readBool(QStringLiteral("isLocked"), false);
    m_bAspectRatioLocked = reader.readBool(QStringLiteral("isAspectRatioLocked"), false);

    deleteAllLayoutProperties();
    VTElementReader::readLayouts(*this, json, pManager, context, pProblems);

    removeAllEventListeners();
    QStringList lstEventProblems;
    VTEventListenerList::parse(reader.readArray(kEvents), &lstEventProblems);
    VTElementReader::appendProblems(pProblems, context, lstEventProblems);

    deleteAllChildren();
    VTElementReader::readChildren(*this, reader.readArray(kChildren), pManager, context, pProblems);
    return true;
}

// Player form

void VTElement::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const
{
    json.insert(QStringLiteral("id"), m_nId);
    json.insert(QStringLiteral("n"), m_strName);
    json.insert(QStringLiteral("k"), getType());
    json.insert(QStringLiteral("selected"), m_bSelected);
    json.insert(QStringLiteral("locked"), m_bLocked);
    json.insert(QStringLiteral("visible"), m_bVisible);
    json.insert(QStringLiteral("aspectRatioLocked"), m_bAspectRatioLocked);
    if (const VTElementProperty* pBlock = getLayoutProperty())
        pBlock->serializeToExport(json, true, false);
    if (!bSingleLayout)
        writeLayoutsToExport(json);

    if (!m_lstChildren.isEmpty()) {
        QJsonArray elements;
        for (const VTElement* pChild : m_lstChildren) {
            QJsonObject child;
            pChild->serializeToExport(child, bSingleLayout, bWithEvents);
            elements.append(child);
        }
        json.insert(QStringLiteral("elems"), elements);
    }
    VTEventListenerList::serializeToExport(json, !bWithEvents || bSingleLayout);
}

void VTElement::writeLayoutsToExport(QJsonObject& json) const
{
    QJsonArray layouts;
    for (auto it = m_mapLayoutProperties.cbegin(); it != m_mapLayoutProperties.cend(); ++it) {
        QJsonObject values;
        if (it.key().isBase()) {
            // The base is complete in itself; an inherit map left over in it must not thin it out.
            const std::unique_ptr<VTElementProperty> pBase(it.value()->clone());
            pBase->setInherits(true);
            pBase->serializeToExport(values, false, false);
        } else {
            const QStringList lstDrop = it.value()->serializeToExport(values, false, true);
            if (!lstDrop.isEmpty())
                values.insert(QStringLiteral("or"), QJsonArray::fromStringList(lstDrop));
        }
        if (!values.isEmpty())
            layouts.append(QJsonArray{it.key().first, it.key().second, values});
    }
    json.insert(QStringLiteral("rp"), layouts);
}

void VTElement::serializeGeomToExport(QJsonObject& json) const
{
    if (const VTElementProperty* pBlock = getLayoutProperty())
        pBlock->serializeGeomToExport(json, false);
}
