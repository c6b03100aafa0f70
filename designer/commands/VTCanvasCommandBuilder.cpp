#include "VTCanvasCommandBuilder.h"

#include "VTAnchorPoint.h"
#include "VTAnimation.h"
#include "VTAutoShape.h"
#include "VTBackground.h"
#include "VTBezierPath.h"
#include "VTBorder.h"
#include "VTBreakpointManager.h"
#include "VTCanvasElementRecords.h"
#include "VTCanvasKeyframeUpdater.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementActionValues.h"
#include "VTElementCommandAction.h"
#include "VTFreeFormArrowStyle.h"
#include "VTFreeFormShape.h"
#include "VTMotionPathKeyframe.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTText.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"
#include "VTUpdateViewInfo.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace {

using Id = VTElementCommandAction::ElementActionId;
using Params = QList<VTCmdParam*>;

// Autoshape types of the freeform kinds that the stage draws as open lines.
constexpr int kLineShape = 590;
constexpr int kArrowShape = 591;
constexpr int kDoubleArrowShape = 592;
constexpr int kLineArrowSize = 8;
constexpr int kLineWidth = 5;
// Element ids the page may choose; anything near the end of the range would leave the scene's
// counter nowhere to go.
constexpr int kLastPageId = std::numeric_limits<int>::max() / 2;

const QString s_strActionsKey = QStringLiteral("actions");
const QString s_strSceneKey = QStringLiteral("sceneId");
const QString s_strSymbolKey = QStringLiteral("symbolResourceId");
const QString s_strResponsiveKey = QStringLiteral("responsive");
const QString s_strHLayoutKey = QStringLiteral("hLayoutId");
const QString s_strVLayoutKey = QStringLiteral("vLayoutId");
const QString s_strTextKey = QStringLiteral("text");

// ---- reading what the page sent: numbers may come as ints or doubles ----

int intAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = lstParams.value(nIndex, nullptr);
    return pParam ? VTElementActionValues::readInt(*pParam) : 0;
}

double doubleAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = lstParams.value(nIndex, nullptr);
    const double dValue = pParam ? VTElementActionValues::readDouble(*pParam) : 0.0;
    return std::isfinite(dValue) ? dValue : 0.0;
}

bool boolAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = lstParams.value(nIndex, nullptr);
    if (!pParam)
        return false;
    if (pParam->getType() == VTCmdParam::Bool)
        return pParam->getAsBool();
    return VTElementActionValues::readDouble(*pParam) != 0.0;
}

QString stringAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = lstParams.value(nIndex, nullptr);
    return pParam ? pParam->getAsString() : QString();
}

QPointF pointAt(const Params& lstParams, int nIndex)
{
    return QPointF(doubleAt(lstParams, nIndex), doubleAt(lstParams, nIndex + 1));
}

int colorChannel(const Params& lstParams, int nIndex)
{
    return std::clamp(intAt(lstParams, nIndex), 0, 255);
}

QColor colorAt(const Params& lstParams, int nIndex)
{
    return QColor(colorChannel(lstParams, nIndex), colorChannel(lstParams, nIndex + 1),
                  colorChannel(lstParams, nIndex + 2), colorChannel(lstParams, nIndex + 3));
}

// A path travels as a JSON array inside a string.
bool pathFromString(const QString& text, VTBezierPath& path)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isArray())
        return false;
    path.parseFromJsArray(document.array());
    return true;
}

// Keeps the layout the page worked in as the symbol's for the time of the build, and puts the
// symbol's own back afterwards.
class SymbolLayout final
{
public:
    SymbolLayout(VTSymbol* pSymbol, const QJsonObject& root)
        : m_pSymbol(pSymbol)
        , m_oldKey(pSymbol->getCurrentLayoutId(false))
        , m_bOldResponsive(pSymbol->isResponsiveMode())
    {
        const VTLayoutKey key(root.value(s_strHLayoutKey).toInt(m_oldKey.getHorizontalId()),
                              root.value(s_strVLayoutKey).toInt(m_oldKey.getVerticalId()));
        const bool bResponsive = root.value(s_strResponsiveKey).toBool(m_bOldResponsive);
        // A pair that names no layout of the symbol would leave the elements without values.
        const bool bKnown = pSymbol->getBreakpointManager()->getAllBreakpointIds(true).contains(key);
        apply(bKnown ? key : m_oldKey, bResponsive);
    }
    ~SymbolLayout() { apply(m_oldKey, m_bOldResponsive); }
    SymbolLayout(const SymbolLayout&) = delete;
    SymbolLayout& operator=(const SymbolLayout&) = delete;

private:
    void apply(const VTLayoutKey& key, bool bResponsive)
    {
        VTBreakpointManager* pManager = m_pSymbol->getBreakpointManager();
        if (pManager->getCurrentId(false) == key && pManager->isResponsiveMode() == bResponsive)
            return;
        // Both at once, so that the scenes switch only once.
        pManager->setResponsiveMode(bResponsive);
        pManager->setCurrentId(key);
        m_pSymbol->updateCurrentLayoutId();
    }

    VTSymbol* m_pSymbol;
    VTLayoutKey m_oldKey;
    bool m_bOldResponsive;
};

VTSymbol* findSymbol(VTDocument* pDocument, int nResourceId)
{
    if (nResourceId == -1)
        return pDocument;
    VTResourceManager* pManager = pDocument->getResourceManager();
    VTResource* pResource = pManager ? pManager->findResourceById(nResourceId) : nullptr;
    return pResource ? pManager->getSymbolForResource(pResource) : nullptr;
}

} // namespace

VTCanvasCommandBuilder::VTCanvasCommandBuilder(VTDocument* pDocument, QObject* pSender)
    : m_pDocument(pDocument)
    , m_pSender(pSender)
{}

bool VTCanvasCommandBuilder::submitCommandFromJS(const QString& json, bool bRunCmdOnly)
{
    if (!m_pDocument)
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject())
        return false;
    const QJsonObject root = document.object();
    Build build;
    build.pSymbol = findSymbol(m_pDocument, root.value(s_strSymbolKey).toInt(-1));
    const VTSceneManager* pScenes = build.pSymbol ? build.pSymbol->getSceneManager() : nullptr;
    build.pScene = pScenes ? pScenes->getSceneById(root.value(s_strSceneKey).toInt()) : nullptr;
    if (!build.pScene)
        return false;
    build.strText = root.value(s_strTextKey).toString();

    auto pCommand = std::make_unique<VTCommand>(m_pDocument, build.strText, m_pSender);
    build.pCommand = pCommand.get();
    {
        const SymbolLayout layout(build.pSymbol, root);
        build.bResponsive = build.pSymbol->isResponsiveMode();
        VTResourceManager* pManager = build.pSymbol->getResourceManager()
                                          ? build.pSymbol->getResourceManager()
                                          : m_pDocument->getResourceManager();
        const QJsonArray records = root.value(s_strActionsKey).toArray();
        for (const QJsonValue& record : records) {
            if (!record.isObject())
                continue;
            VTUpdateViewInfo info;
            info.parse(record.toObject(), pManager);
            Params* pParams = info.getParams();
            if (!pParams)
                continue;
            // An element the page described belongs to its record until a record takes it over.
            for (VTCmdParam* pParam : qAsConst(*pParams)) {
                if (pParam->getType() == VTCmdParam::Element && pParam->getAsElement())
                    pParam->setOwned(true);
            }
            buildRecord(build, info.getId(), *pParams);
        }
    }

    if (pCommand->isEmpty())
        return false;
    if (!bRunCmdOnly && !build.bRunOnly) {
        m_pDocument->submitCommand(pCommand.release(), false);
    } else {
        pCommand->doCmd();
    }
    return true;
}

void VTCanvasCommandBuilder::buildRecord(Build& build, int nId, Params& lstParams)
{
    switch (nId) {
    case VTCommandAction::AddElement:
        insertElement(build, lstParams);
        break;
    case VTCommandAction::AddAnchorPoint:
    case VTCommandAction::RemoveAnchorPoint:
    case VTCommandAction::SetAnchorPointData:
        editAnchorPoint(build, nId, lstParams);
        break;
    case VTCommandAction::SelectElement:
        selectElement(build, lstParams);
        break;
    case VTCommandAction::SetSymbolWidth:
    case VTCommandAction::SetSymbolHeight:
        changeStageSize(build, nId, lstParams);
        break;
    case VTCommandAction::UpdateBreakpoint:
        updateBreakpoint(build, lstParams);
        break;
    case VTCommandAction::ChangeCurrentBreakpoint:
        changeCurrentBreakpoint(build, lstParams);
        break;
    case Id::ChangeGeometry:
        changeGeometry(build, lstParams);
        break;
    case Id::ChangeText:
        changeText(build, lstParams);
        break;
    case Id::ChangeAdjustments:
        changeAdjustments(build, lstParams);
        break;
    case Id::ChangeFreeFormPath:
        changeFreeFormPath(build, lstParams);
        break;
    case Id::SetFreeFormEditPoint:
        setFreeFormEditPoint(build, lstParams);
        break;
    default:
        // The page has no business with other actions.
        break;
    }
}

VTElement* VTCanvasCommandBuilder::findElement(const Build& build, const Params& lstParams) const
{
    return lstParams.isEmpty() ? nullptr : build.pScene->findElementById(intAt(lstParams, 0));
}

void VTCanvasCommandBuilder::clearSender(Build& build) const
{
    build.pCommand->setSender(nullptr);
}

void VTCanvasCommandBuilder::insertElement(Build& build, Params& lstParams)
{
    VTCmdParam* pParam = lstParams.value(0, nullptr);
    VTElement* pElement = pParam ? pParam->getAsElement() : nullptr;
    if (!pElement)
        return;
    const VTLayoutKey base = VTLayoutKey::base();
    if (pElement->getType() == VT::ShapeElement) {
        auto* pShape = qobject_cast<VTAutoShape*>(pElement);
        pShape->setAutoShapeType(intAt(lstParams, 1), base);
        const int nCount = std::clamp(intAt(lstParams, 2), 0, std::max(0, lstParams.size() - 3));
        QVector<double> vecAdjustments;
        for (int i = 0; i < nCount; ++i)
            vecAdjustments.append(doubleAt(lstParams, 3 + i));
        pShape->setAdjustments(vecAdjustments, base);
    } else if (auto* pFreeForm = qobject_cast<VTFreeFormShape*>(pElement)) {
        const int nType = intAt(lstParams, 1);
        pFreeForm->setAutoShapeType(nType, base);
        if (nType == kDoubleArrowShape || nType == kArrowShape) {
            const int nStart =
                nType == kDoubleArrowShape ? VTFreeFormArrowStyle::Arrow : VTFreeFormArrowStyle::NoArrow;
            const int nStartSize =
                nType == kDoubleArrowShape ? kLineArrowSize : VTFreeFormArrowStyle::kDefaultArrowSize;
            (void)pFreeForm->replaceArrowStyle(
                std::make_unique<VTFreeFormArrowStyle>(nStart, nStartSize, VTFreeFormArrowStyle::Arrow,
                                                       kLineArrowSize),
                base);
        }
        auto pPath = std::make_unique<VTBezierPath>();
        pathFromString(stringAt(lstParams, 2), *pPath);
        const bool bClosed = pPath->isClosedPath();
        (void)pFreeForm->replacePath(std::move(pPath), base);
        VTBorder* pBorder = pFreeForm->getBorder(base);
        VTBackground* pBackground = pFreeForm->getBackground(base);
        if (bClosed) {
            if (pBackground)
                pBackground->setFillStyle(1);
        } else {
            if (pBorder) {
                pBorder->setStyle(1);
                pBorder->setColor(QColor(74, 134, 232, 255));
                if (nType >= kLineShape && nType <= kDoubleArrowShape)
                    pBorder->setWidth(kLineWidth);
            }
            if (pBackground)
                pBackground->setFillStyle(0);
        }
    }

    // The page may propose an id; one that is taken, or none, is left to the scene's counter.
    const int nId = pElement->getId();
    bool bTaken = nId < 1 || nId > kLastPageId || build.setClaimedIds.contains(nId);
    for (const VTScene* pScene : build.pSymbol->getSceneManager()->getScenes())
        bTaken = bTaken || pScene->findElementById(nId);
    if (bTaken)
        pElement->resetId();
    else
        build.setClaimedIds.insert(nId);

    const VTBreakpointManager* pManager = build.pSymbol->getBreakpointManager();
    pElement->prepareLayoutProperty(pManager->getAllBreakpointIds(false), true, base);
    pElement->setCurrentLayoutID(build.pSymbol->getCurrentLayoutId(true));

    // The action owns the element until its first redo puts it into the scene.
    pParam->release();
    auto* pAction = new VTCommandAction(VTCommandAction::AddElement, m_pDocument, 3);
    pAction->addParam(pElement, true);
    pAction->addParam(-1);
    pAction->addParam(build.pScene, false);
    build.pCommand->addAction(pAction);
    clearSender(build);
    build.pCommand->setName(tr("Insert %1").arg(pElement->getKindName()));
}

void VTCanvasCommandBuilder::editAnchorPoint(Build& build, int nId, const Params& lstParams)
{
    const int nNeeded = nId == VTCommandAction::AddAnchorPoint      ? 9
                        : nId == VTCommandAction::RemoveAnchorPoint ? 2
                                                                    : 8;
    VTElement* pElement = lstParams.size() >= nNeeded ? findElement(build, lstParams) : nullptr;
    VTTimeline* pTimeline = build.pScene->getTimelineManager()->getCurrentTimeline();
    if (!pElement || !pTimeline)
        return;
    clearSender(build);
    const int nIndex = intAt(lstParams, 1);
    const QPointF ptPosition = pointAt(lstParams, 2);
    const QPointF ptControl1 = pointAt(lstParams, 4);
    const QPointF ptControl2 = pointAt(lstParams, 6);
    for (const VTLayoutKey& key : getBreakpointIds(build.pSymbol)) {
        VTAnimation* pAnimation = pTimeline->getAnimation(pElement, key);
        auto* pKeyframe = qobject_cast<VTMotionPathKeyframe*>(
            pAnimation ? pAnimation->getKeyframe(VT::PropLocation) : nullptr);
        if (!pKeyframe)
            continue;
        const bool bInherits = pAnimation->isPropInherit(VT::PropLocation);
        if (!build.bResponsive && !key.isBase() && !bInherits)
            continue;
        if (build.bResponsive && !key.isBase() && bInherits)
            build.pCommand->createActionsToChangeAnimationInherit(pAnimation, key, VT::PropLocation, false);
        switch (nId) {
        case VTCommandAction::AddAnchorPoint:
            createActionsToAddAnchorPoint(
                build.pCommand, pKeyframe, nIndex,
                new VTAnchorPoint(ptPosition, ptControl1, ptControl2, intAt(lstParams, 8)));
            break;
        case VTCommandAction::RemoveAnchorPoint:
            build.pCommand->createActionsToDeleteAnchorPoint(pTimeline, pKeyframe, nIndex, key);
            break;
        default:
            createActionsToMoveAnchorPoint(build.pCommand, pKeyframe, nIndex, ptPosition, ptControl1,
                                           ptControl2, lstParams.size() > 8 && boolAt(lstParams, 8));
            break;
        }
    }
    build.pCommand->setName(nId == VTCommandAction::AddAnchorPoint      ? tr("Insert Anchor Point")
                            : nId == VTCommandAction::RemoveAnchorPoint ? tr("Remove Anchor Point")
                                                                        : tr("Move Anchor Point"));
}

void VTCanvasCommandBuilder::selectElement(Build& build, const Params& lstParams)
{
    VTElement* pElement = lstParams.size() >= 2 ? findElement(build, lstParams) : nullptr;
    if (!pElement)
        return;
    auto* pAction = new VTCommandAction(VTCommandAction::SelectElement, nullptr, 2);
    pAction->addParam(pElement, false);
    pAction->addParam(boolAt(lstParams, 1));
    build.pCommand->addAction(pAction);
}

void VTCanvasCommandBuilder::changeStageSize(Build& build, int nId, const Params& lstParams)
{
    const int nValue = intAt(lstParams, 0);
    if (lstParams.isEmpty() || nValue < 1)
        return;
    auto* pAction = new VTCommandAction(nId, m_pDocument, 2);
    pAction->addParam(build.pSymbol, false);
    pAction->addParam(nValue);
    build.pCommand->addAction(pAction);
    build.bRunOnly = true;
    clearSender(build);
}

void VTCanvasCommandBuilder::updateBreakpoint(Build& build, const Params& lstParams)
{
    VTBreakpointManager* pManager = build.pSymbol->getBreakpointManager();
    if (!pManager || lstParams.size() < 3)
        return;
    const auto direction =
        intAt(lstParams, 0) == 0 ? VTBreakpointManager::Horizontal : VTBreakpointManager::Vertical;
    const int nBreakpoint = intAt(lstParams, 1);
    const int nOld = direction == VTBreakpointManager::Horizontal ? pManager->getHBreakpoint(nBreakpoint)
                                                                  : pManager->getVBreakpoint(nBreakpoint);
    if (nOld < 0)
        return;
    // A value past a neighbour would break the order of the ranges.
    const int nNew = pManager->validate(direction, nBreakpoint, intAt(lstParams, 2));
    // The ruler shows the new value already; the action keeps the old one for undo.
    auto* pAction = new VTCommandAction(VTCommandAction::UpdateBreakpoint, m_pDocument, 4, true);
    pAction->addParam(build.pSymbol, false);
    pAction->addParam(static_cast<int>(direction));
    pAction->addParam(nBreakpoint);
    pAction->addParam(nOld);
    build.pCommand->addAction(pAction);
    pManager->update(direction, nBreakpoint, nNew);
    if (!build.bResponsive)
        return;
    const VTLayoutKey fitting =
        pManager->getBreakpointBySize(build.pSymbol->getWidth(), build.pSymbol->getHeight());
    if (fitting == build.pSymbol->getCurrentLayoutId(false))
        return;
    build.pCommand->createActionsToChangeCurrentBreakpoint(build.pSymbol, fitting.getHorizontalId(),
                                                           fitting.getVerticalId(), true, false);
    clearSender(build);
}

void VTCanvasCommandBuilder::changeCurrentBreakpoint(Build& build, const Params& lstParams)
{
    if (lstParams.size() < 3)
        return;
    const VTLayoutKey key(intAt(lstParams, 0), intAt(lstParams, 1));
    if (!build.pSymbol->getBreakpointManager()->getAllBreakpointIds(true).contains(key))
        return;
    build.pCommand->createActionsToChangeCurrentBreakpoint(build.pSymbol, key.getHorizontalId(),
                                                           key.getVerticalId(), boolAt(lstParams, 2), false);
    build.bRunOnly = true;
    clearSender(build);
}

void VTCanvasCommandBuilder::changeGeometry(Build& build, const Params& lstParams)
{
    if (lstParams.size() < 6)
        return;
    VTElement* pElement = findElement(build, lstParams);
    const QList<int> lstProperties = lstParams.at(4)->getAsIntList();
    if (!pElement || lstParams.size() != lstProperties.size() + 5)
        return;
    QList<double> lstValues;
    for (int i = 0; i < lstProperties.size(); ++i)
        lstValues.append(doubleAt(lstParams, 5 + i));
    VTCanvasElementRecords::changeGeometry(*build.pCommand, *build.pSymbol, pElement, lstProperties,
                                           lstValues);
    clearSender(build);
    if (build.strText.isEmpty())
        build.pCommand->setName(tr("Change Geometry"));
}

void VTCanvasCommandBuilder::changeText(Build& build, const Params& lstParams)
{
    auto* pText = qobject_cast<VTText*>(lstParams.size() >= 18 ? findElement(build, lstParams) : nullptr);
    if (!pText)
        return;
    VTCanvasElementRecords::TextFormat format;
    format.strInnerHtml = stringAt(lstParams, 1);
    format.bBold = boolAt(lstParams, 2);
    format.bItalic = boolAt(lstParams, 3);
    format.bUnderline = boolAt(lstParams, 4);
    format.bStrikeOut = boolAt(lstParams, 5);
    format.nFontSize = intAt(lstParams, 6);
    format.strFontFamily = stringAt(lstParams, 7);
    format.color = colorAt(lstParams, 8);
    format.highlightColor = colorAt(lstParams, 12);
    format.nWordSpace = intAt(lstParams, 16);
    format.nLetterSpace = intAt(lstParams, 17);
    VTCanvasElementRecords::changeText(*build.pCommand, *build.pSymbol, build.pScene, pText, format);
    clearSender(build);
    build.pCommand->setName(tr("Change Text"));
}

void VTCanvasCommandBuilder::changeAdjustments(Build& build, const Params& lstParams)
{
    auto* pShape = qobject_cast<VTAutoShape*>(findElement(build, lstParams));
    const int nCount = intAt(lstParams, 1);
    if (!pShape || nCount < 0 || lstParams.size() < 2 + nCount)
        return;
    for (const VTLayoutKey& key : build.pSymbol->getBreakpointManager()->getAllBreakpointIds(true)) {
        auto* pAction = new VTElementCommandAction(Id::ChangeAdjustments, m_pDocument, 5 + nCount);
        pAction->addParam(static_cast<VTElement*>(pShape), false);
        pAction->addParam(nCount);
        pAction->addParam(pShape->isInherit(VT::PropShape, key));
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        for (int i = 0; i < nCount; ++i)
            pAction->addParam(doubleAt(lstParams, 2 + i));
        build.pCommand->addAction(pAction);
    }
    build.pCommand->setName(tr("Change Shape Adjustment"));
}

void VTCanvasCommandBuilder::changeFreeFormPath(Build& build, const Params& lstParams)
{
    auto* pFreeForm = qobject_cast<VTFreeFormShape*>(findElement(build, lstParams));
    VTBezierPath path;
    if (!pFreeForm || !pathFromString(stringAt(lstParams, 1), path))
        return;
    for (const VTLayoutKey& key : build.pSymbol->getBreakpointManager()->getAllBreakpointIds(true)) {
        const bool bInherit = pFreeForm->isInherit(VT::PropFreeFormPath, key);
        // Outside responsive mode a layout with a path of its own keeps it. The inherit state stays
        // what it was in every layout that takes the path.
        if (!build.bResponsive && !key.isBase() && !bInherit)
            continue;
        auto* pAction = new VTElementCommandAction(Id::ChangeFreeFormPath, m_pDocument, 5);
        pAction->addParam(static_cast<VTElement*>(pFreeForm), false);
        pAction->addParam(path.clone().release(), true);
        pAction->addParam(vtGetMapInherits(2, VT::PropFreeFormPath, bInherit ? 1 : 0));
        pAction->addParam(key.getHorizontalId());
        pAction->addParam(key.getVerticalId());
        build.pCommand->addAction(pAction);
    }
}

void VTCanvasCommandBuilder::setFreeFormEditPoint(Build& build, const Params& lstParams)
{
    auto* pFreeForm =
        qobject_cast<VTFreeFormShape*>(lstParams.size() >= 2 ? findElement(build, lstParams) : nullptr);
    if (!pFreeForm)
        return;
    auto* pAction = new VTElementCommandAction(Id::SetFreeFormEditPoint, nullptr, 2);
    pAction->addParam(static_cast<VTElement*>(pFreeForm), false);
    pAction->addParam(boolAt(lstParams, 1));
    build.pCommand->addAction(pAction);
}

void VTCanvasCommandBuilder::updateGeometryKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand,
                                                     bool bMoveOnly) const
{
    VTCanvasKeyframeUpdater::updateGeometryKeyframes(pAction, pCommand, bMoveOnly);
}

void VTCanvasCommandBuilder::updateTextKeyframes(VTElementCommandAction* pAction, VTCommand* pCommand,
                                                 VTScene* pScene) const
{
    VTCanvasKeyframeUpdater::updateTextKeyframes(pAction, pCommand, pScene);
}

void VTCanvasCommandBuilder::createActionsToAddAnchorPoint(VTCommand* pCommand,
                                                           VTMotionPathKeyframe* pKeyframe, int nIndex,
                                                           VTAnchorPoint* pAnchor) const
{
    VTCanvasKeyframeUpdater::createActionsToAddAnchorPoint(pCommand, pKeyframe, nIndex, pAnchor);
}

void VTCanvasCommandBuilder::createActionsToMoveAnchorPoint(
    VTCommand* pCommand, VTMotionPathKeyframe* pKeyframe, int nIndex, const QPointF& ptPosition,
    const QPointF& ptControl1, const QPointF& ptControl2, bool bNoTransitionUpdate) const
{
    VTCanvasKeyframeUpdater::createActionsToMoveAnchorPoint(pCommand, pKeyframe, nIndex, ptPosition,
                                                            ptControl1, ptControl2, bNoTransitionUpdate);
}

QList<VTLayoutKey> VTCanvasCommandBuilder::getBreakpointIds(const VTSymbol* pSymbol) const
{
    return VTCanvasKeyframeUpdater::getBreakpointIds(pSymbol);
}

bool VTCanvasCommandBuilder::hasKeyframe(const VTElement* pElement, const VT::ElementProperty& property,
                                         const VTLayoutKey& key) const
{
    return VTCanvasKeyframeUpdater::hasKeyframe(pElement, property, key);
}
