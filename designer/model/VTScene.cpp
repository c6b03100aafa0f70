#include "VTScene.h"

#include "VTElementReader.h"

#include "VTBackground.h"
#include "VTBorder.h"
#include "VTJsonReader.h"
#include "VTSceneManager.h"
#include "VTSceneProperty.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QJsonArray>

namespace {

const QString kNextChildId = QStringLiteral("nextChildId");
const QString kIsSelected = QStringLiteral("isSelected");
const QString kAutoAdvance = QStringLiteral("autoAdvance");
const QString kTsType = QStringLiteral("tsType");
const QString kTsDuration = QStringLiteral("tsDuration");
const QString kTsEasing = QStringLiteral("tsEasing");
const QString kTsDirection = QStringLiteral("tsDirection");
const QString kTimelines = QStringLiteral("timelines");

} // namespace

VTScene::VTScene()
    : m_pTimelineManager(std::make_unique<VTTimelineManager>(this))
{}

VTScene::VTScene(const VTScene& other)
    : VTElement(other)
    , m_nNextChildId(other.m_nNextChildId)
    , m_bAutoAdvance(other.m_bAutoAdvance)
    , m_nTsType(other.m_nTsType)
    , m_nTsDuration(other.m_nTsDuration)
    , m_nTsEasing(other.m_nTsEasing)
    , m_nTsDirection(other.m_nTsDirection)
    , m_pTimelineManager(std::make_unique<VTTimelineManager>(this))
    , m_pSceneManager(other.m_pSceneManager)
{
    // The copy's elements keep the ids of the original's, so the timelines read back onto them.
    QJsonObject timelines;
    other.m_pTimelineManager->serialize(timelines);
    m_pTimelineManager->parse(timelines);
}

VTScene::~VTScene()
{
    // Timelines point at the elements; they go before the tree.
    m_pTimelineManager.reset();
    // A scene deleted while still listed must not leave a dangling entry in its manager.
    if (m_pSceneManager)
        m_pSceneManager->detachScene(this);
}

VTElement* VTScene::clone() const
{
    return new VTScene(*this);
}

void VTScene::initDefault()
{
    VTElement::initDefault();
    m_nNextChildId = 1;
    setPositionX(0.0);
    setPositionY(0.0);
    setSizeW(800.0);
    setSizeH(600.0);
    setUnitW(VT::Pixel);
    setUnitH(VT::Pixel);
    if (VTBackground* pBackground = getBackground()) {
        pBackground->setFillStyle(VTBackground::Solid);
        pBackground->setSolidColor(Qt::white);
    }
    if (VTBorder* pBorder = getBorder())
        pBorder->setStyle(VTBorder::None);
    m_pTimelineManager = std::make_unique<VTTimelineManager>(this);
    m_pSceneManager = nullptr;
    m_bAutoAdvance = true;
    m_nTsType = VT::TransitionNone;
    m_nTsEasing = 0;
}

void VTScene::updateName()
{
    const auto isTaken = [this](const QString& name) {
        return m_pSceneManager && m_pSceneManager->isDuplicatedSceneName(name, this);
    };
    const QString current = getName();
    if (current.isEmpty()) {
        for (int n = 1;; ++n) {
            const QString candidate = QStringLiteral("Scene_%1").arg(n);
            if (!isTaken(candidate)) {
                setName(candidate);
                break;
            }
        }
    } else if (isTaken(current)) {
        for (int n = 1;; ++n) {
            // Both parts in one arg call: a name holding "%1" must not take the number.
            const QString candidate = QStringLiteral("%1_%2").arg(current, QString::number(n));
            if (!isTaken(candidate)) {
                setName(candidate);
                break;
            }
        }
    }
    QSet<QString> setTaken;
    for (VTElement* pChild : getChildren())
        pChild->nameSubtree(setTaken);
}

double VTScene::getParentComputedW(const VTLayoutKey& key) const
{
    Q_UNUSED(key)
    const VTSymbol* pSymbol = m_pSceneManager ? m_pSceneManager->getSymbol() : nullptr;
    return pSymbol ? pSymbol->getWidth() : 0.0;
}

double VTScene::getParentComputedH(const VTLayoutKey& key) const
{
    Q_UNUSED(key)
    const VTSymbol* pSymbol = m_pSceneManager ? m_pSceneManager->getSymbol() : nullptr;
    return pSymbol ? pSymbol->getHeight() : 0.0;
}

bool VTScene::isSupportedEventType(VTEventListener::EventType nEventType) const
{
    return (nEventType >= VTEventListener::SceneActivate && nEventType <= VTEventListener::WindowResize) ||
           VTElement::isSupportedEventType(nEventType);
}

void VTScene::setSelected(bool bSelected)
{
    VTElement::setSelected(bSelected);
    if (m_pSceneManager)
        m_pSceneManager->updateSelection(this);
}

int VTScene::addElement(VTElement* pElement, int nIndex, VTElement* pParent)
{
    if (!pElement)
        return -1;
    pElement->updateId(m_nNextChildId);
    VTElement* pTarget = pParent && pParent != this ? pParent : this;
    const int nAdded = pTarget->addChild(pElement, nIndex);
    if (nAdded >= 0)
        pElement->updateName();
    return nAdded;
}

QString VTScene::getTransTypeName(int nType)
{
    switch (nType) {
    case VT::TransitionNone:
        return tr("None");
    case VT::TransitionFade:
        return tr("Fade");
    case VT::TransitionPush:
        return tr("Push");
    case VT::TransitionWipe:
        return tr("Wipe");
    case VT::TransitionCover:
        return tr("Cover");
    case VT::TransitionUncover:
        return tr("Uncover");
    default:
        return {};
    }
}

QString VTScene::getTransDirectionName(int nDirection)
{
    switch (nDirection) {
    case VT::FromLeft:
        return tr("From Left");
    case VT::FromTop:
        return tr("From Top");
    case VT::FromRight:
        return tr("From Right");
    case VT::FromBottom:
        return tr("From Bottom");
    case VT::FromTopLeft:
        return tr("From Top Left");
    case VT::FromTopRight:
        return tr("From Top Right");
    case VT::FromBottomLeft:
        return tr("From Bottom Left");
    case VT::FromBottomRight:
        return tr("From Bottom Right");
    default:
        return {};
    }
}

double VTScene::getPerspectiveX(const VTLayoutKey& key) const
{
    const auto* pBlock = qobject_cast<const VTSceneProperty*>(getLayoutProperty(key));
    return pBlock ? pBlock->getPerspectiveX() : 0.0;
}

void VTScene::setPerspectiveX(double dValue, const VTLayoutKey& key)
{
    if (auto* pBlock = qobject_cast<VTSceneProperty*>(getLayoutProperty(key)))
        pBlock->setPerspectiveX(dValue);
}

double VTScene::getPerspectiveY(const VTLayoutKey& key) const
{
    const auto* pBlock = qobject_cast<const VTSceneProperty*>(getLayoutProperty(key));
    return pBlock ? pBlock->getPerspectiveY() : 0.0;
}

void VTScene::setPerspectiveY(double dValue, const VTLayoutKey& key)
{
    if (auto* pBlock = qobject_cast<VTSceneProperty*>(getLayoutProperty(key)))
        pBlock->setPerspectiveY(dValue);
}

double VTScene::getPerspectiveZ(const VTLayoutKey& key) const
{
    const auto* pBlock = qobject_cast<const VTSceneProperty*>(getLayoutProperty(key));
    return pBlock ? pBlock->getPerspectiveZ() : 0.0;
}

void VTScene::setPerspectiveZ(double dValue, const VTLayoutKey& key)
{
    if (auto* pBlock = qobject_cast<VTSceneProperty*>(getLayoutProperty(key)))
        pBlock->setPerspectiveZ(dValue);
}

void VTScene::serialize(QJsonObject& json) const
{
    VTElement::serialize(json);
    json.insert(kNextChildId, m_nNextChildId);
    json.insert(kIsSelected, isSelected());
    json.insert(kAutoAdvance, m_bAutoAdvance);
    json.insert(kTsType, m_nTsType);
    json.insert(kTsDuration, m_nTsDuration);
    json.insert(kTsEasing, m_nTsEasing);
    json.insert(kTsDirection, m_nTsDirection);
    QJsonObject timelines;
    m_pTimelineManager->serialize(timelines);
    json.insert(kTimelines, timelines);
}

bool VTScene::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    VTElementReader::takeDepthExceeded();
    const bool bRead = VTElement::parse(json, pManager, pProblems);
    if (VTElementReader::takeDepthExceeded() || !bRead)
        return false;
    const VTJsonReader reader(json, tr("scene \"%1\"").arg(getName()), pProblems);
    m_nNextChildId = reader.readInt(kNextChildId, kFileDefaultNextChildId);
    m_bAutoAdvance = reader.readBool(kAutoAdvance, true);
    m_nTsType = reader.readInt(kTsType, VT::TransitionNone);
    m_nTsDuration = reader.readInt(kTsDuration, 0);
    m_nTsEasing = reader.readInt(kTsEasing, 0);
    m_nTsDirection = reader.readInt(kTsDirection, 0);
    const QJsonObject timelines = reader.readObject(kTimelines);
    QStringList lstTimelineProblems;
    m_pTimelineManager->parse(timelines, &lstTimelineProblems);
    for (const QString& problem : qAsConst(lstTimelineProblems))
        reader.report(problem);
    setSelected(reader.readBool(kIsSelected, false));
    return true;
}

void VTScene::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bUnused, bool bWithEvents) const
{
    Q_UNUSED(bUnused)
    VTElement::serializeToExport(json, bSingleLayout, bWithEvents);
    json.insert(QStringLiteral("aa"), m_bAutoAdvance);
    QJsonArray transition{m_nTsType, m_nTsDuration};
    if (m_nTsType == VT::TransitionFade || m_nTsType == VT::TransitionPush)
        transition.append(m_nTsEasing);
    if (m_nTsType == VT::TransitionPush)
        transition.append(m_nTsDirection);
    json.insert(QStringLiteral("st"), transition);
    // The stage shows one timeline, the one being edited; the player gets them all.
    const VTTimeline* pCurrent = m_pTimelineManager->getCurrentTimeline();
    if (!pCurrent)
        pCurrent = m_pTimelineManager->getMainTimeline();
    QJsonArray timelines;
    for (const VTTimeline* pTimeline : m_pTimelineManager->getTimelines()) {
        if (bSingleLayout && pTimeline != pCurrent)
            continue;
        QJsonObject timeline;
        pTimeline->serializeToExport(timeline, bSingleLayout, !bSingleLayout && bWithEvents);
        timelines.append(timeline);
    }
    json.insert(QStringLiteral("timelines"), timelines);
    json.insert(QStringLiteral("currentTime"), pCurrent ? pCurrent->getCurrentTime() : 0);
    if (isPreserved3D())
        json.insert(QStringLiteral("t3d"), true);
}

void VTScene::setCurrentLayoutID(const VTLayoutKey& key)
{
    VTElement::setCurrentLayoutID(key);
    if (key.isCurrent() || !m_pTimelineManager)
        return;
    for (VTTimeline* pTimeline : m_pTimelineManager->getTimelines())
        pTimeline->setLayoutID(key);
}
