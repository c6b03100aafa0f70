#include "VTRecordWriter.h"

#include "VTAnimation.h"
#include "VTBreakpointManager.h"
#include "VTCmdParam.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementRecordWriter.h"
#include "VTKeyframe.h"
#include "VTLoadIndicatorProps.h"
#include "VTMotionPath.h"
#include "VTPlaybackAnimation.h"
#include "VTPreloader.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSymbol.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

namespace {

using Params = QList<VTCmdParam*>;
using Writer = VTRecordWriter;

VTElement* elementAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam ? pParam->getAsElement() : nullptr;
}

int intAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam ? pParam->getAsInt() : 0;
}

bool boolAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam && pParam->getAsBool();
}

QString textAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam ? pParam->getAsString() : QString();
}

VTKeyframe* keyframeAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam ? pParam->getAsKeyframeAnimation() : nullptr;
}

VTAnimation* animationAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam ? pParam->getAsAnimation() : nullptr;
}

VTSymbol* symbolAt(const Params& lstParams, int nIndex)
{
    const VTCmdParam* pParam = Writer::param(lstParams, nIndex);
    return pParam ? pParam->getAsSymbol() : nullptr;
}

QJsonObject keyframeData(const VTKeyframe* pKeyframe)
{
    QJsonObject object;
    if (pKeyframe)
        pKeyframe->getKeyframesData(object, true);
    return object;
}

// Insertion and removal name the parent the element is in, or would be in: the explicit parent
// when the action has one, else the scene.
VTElement* insertionParent(const Params& lstParams)
{
    if (lstParams.size() == 4)
        return elementAt(lstParams, 3);
    const VTCmdParam* pParam = Writer::param(lstParams, 2);
    return pParam ? pParam->getAsScene() : nullptr;
}

void appendParent(QJsonArray& entries, const VTElement* pParent)
{
    entries.append(Writer::intEntry(pParent ? pParent->getId() : -1));
    entries.append(Writer::intEntry(pParent ? static_cast<int>(pParent->getType()) : -1));
}

bool writeTree(int nId, const Params& lstParams, QJsonArray& entries)
{
    switch (nId) {
    case VTCommandAction::AddElement:
    case VTCommandAction::RemoveElement: {
        VTElement* pElement = elementAt(lstParams, 0);
        if (!pElement)
            return true;
        const VTElement* pParent = insertionParent(lstParams);
        if (nId == VTCommandAction::AddElement) {
            QJsonObject entry;
            VTCmdParam(pElement, false).serialize(entry);
            entries.append(entry);
        } else {
            entries.append(Writer::intEntry(pElement->getId()));
        }
        entries.append(Writer::intEntry(pParent ? pParent->getChildIndex(pElement) : -1));
        appendParent(entries, pParent);
        return true;
    }
    case VTCommandAction::ReparentElement: {
        const VTElement* pElement = elementAt(lstParams, 0);
        if (!pElement)
            return true;
        const VTElement* pParent = pElement->getParent();
        QJsonObject geometry;
        pElement->serializeGeomToExport(geometry);
        entries.append(Writer::intEntry(pElement->getId()));
        entries.append(Writer::intEntry(pParent ? pParent->getChildIndex(pElement) : -1));
        entries.append(Writer::objectEntry(geometry));
        appendParent(entries, pParent);
        return true;
    }
    case VTCommandAction::ChangeElementOrder: {
        const VTElement* pElement = elementAt(lstParams, 0);
        if (!pElement)
            return true;
        const VTElement* pParent = pElement->getParent();
        entries.append(Writer::intEntry(pElement->getId()));
        entries.append(Writer::intEntry(pParent ? pParent->getChildIndex(pElement) : -1));
        return true;
    }
    case VTCommandAction::SelectScene: {
        const VTCmdParam* pScene = Writer::param(lstParams, 0);
        if (!pScene || !pScene->getAsScene())
            return true;
        QJsonObject entry;
        VTCmdParam(pScene->getAsScene(), false).serialize(entry);
        entries.append(entry);
        entries.append(Writer::boolEntry(boolAt(lstParams, 1)));
        return true;
    }
    case VTCommandAction::SelectElement: {
        const VTElement* pElement = elementAt(lstParams, 0);
        if (!pElement)
            return true;
        entries.append(Writer::intEntry(pElement->getId()));
        entries.append(Writer::boolEntry(pElement->isSelected()));
        return true;
    }
    default:
        return false;
    }
}

void writeLabel(int nId, const Params& lstParams, QJsonArray& entries)
{
    const VTCmdParam* pTimelineParam = Writer::param(lstParams, 0);
    const VTTimeline* pTimeline = pTimelineParam ? pTimelineParam->getAsTimeline() : nullptr;
    if (!pTimeline)
        return;
    QJsonObject object;
    switch (nId) {
    case VTCommandAction::AddLabel:
    case VTCommandAction::RemoveLabel:
        object.insert(QStringLiteral("labelName"), textAt(lstParams, 1));
        object.insert(QStringLiteral("timeStamp"), intAt(lstParams, 2));
        break;
    case VTCommandAction::RenameLabel:
        // The action has swapped its two texts by now: the second holds the name it replaced.
        object.insert(QStringLiteral("oldLabelName"), textAt(lstParams, 2));
        object.insert(QStringLiteral("newLabelName"), textAt(lstParams, 1));
        break;
    default: {
        const QString name = textAt(lstParams, 1);
        object.insert(QStringLiteral("labelName"), name);
        object.insert(QStringLiteral("newTimeStamp"), pTimeline->getLabelValue(name));
        break;
    }
    }
    entries.append(Writer::objectEntry(object));
}

void writePlayback(const Params& lstParams, QJsonArray& entries)
{
    const auto* pPlayback = qobject_cast<const VTPlaybackAnimation*>(animationAt(lstParams, 0));
    if (!pPlayback)
        return;
    QJsonArray anims;
    pPlayback->appendPlaybacksData(anims);
    entries.append(
        Writer::objectEntry({{QStringLiteral("el"), Writer::pageElementId(pPlayback->getElement())},
                             {QStringLiteral("p"), QStringLiteral("pb")},
                             {QStringLiteral("anims"), anims}}));
}

bool writeTimeline(int nId, const Params& lstParams, QJsonArray& entries)
{
    switch (nId) {
    case VTCommandAction::SetCurrentTimeline: {
        const VTCmdParam* pParam = Writer::param(lstParams, 0);
        const VTTimelineManager* pManager = pParam ? pParam->getAsTimelineManager() : nullptr;
        if (!pManager)
            return true;
        QJsonObject object;
        if (const VTTimeline* pCurrent = pManager->getCurrentTimeline())
            object.insert(QStringLiteral("currentTime"), pCurrent->getCurrentTime());
        entries.append(Writer::objectEntry(object));
        return true;
    }
    case VTCommandAction::AddLabel:
    case VTCommandAction::RemoveLabel:
    case VTCommandAction::RenameLabel:
    case VTCommandAction::MoveLabel:
        writeLabel(nId, lstParams, entries);
        return true;
    case VTCommandAction::AddAnimation: {
        const VTAnimation* pAnimation = animationAt(lstParams, 0);
        if (!pAnimation)
            return true;
        QJsonArray anims;
        if (const auto* pPlayback = qobject_cast<const VTPlaybackAnimation*>(pAnimation))
            pPlayback->appendPlaybacksData(anims);
        const QList<VTKeyframe*> lstKeyframes = pAnimation->getKeyframes();
        for (const VTKeyframe* pKeyframe : lstKeyframes)
            pKeyframe->appendAnimData(anims, true);
        entries.append(Writer::objectEntry({{QStringLiteral("anims"), anims}}));
        return true;
    }
    case VTCommandAction::RemoveAnimation: {
        const VTAnimation* pAnimation = animationAt(lstParams, 0);
        if (pAnimation) {
            entries.append(Writer::objectEntry(
                {{QStringLiteral("el"), Writer::pageElementId(pAnimation->getElement())}}));
        }
        return true;
    }
    case VTCommandAction::AddKeyframe:
        // The page expects an entry here even without a keyframe.
        entries.append(Writer::objectEntry(keyframeData(keyframeAt(lstParams, 0))));
        return true;
    case VTCommandAction::RemoveKeyframe: {
        const VTKeyframe* pKeyframe = keyframeAt(lstParams, 0);
        if (pKeyframe) {
            entries.append(
                Writer::objectEntry({{QStringLiteral("el"), Writer::pageElementId(elementAt(lstParams, 1))},
                                     {QStringLiteral("p"), pKeyframe->getExportPropertyName()}}));
        }
        return true;
    }
    case VTCommandAction::AddAnchorPoint:
    case VTCommandAction::RemoveAnchorPoint:
    case VTCommandAction::SetAnchorKeyTime:
    case VTCommandAction::SetAnchorPointData:
    case VTCommandAction::InvertAnchorPoints: {
        const VTCmdParam* pParam = Writer::param(lstParams, 0);
        const VTMotionPath* pPath = pParam ? pParam->getAsMotionPath() : nullptr;
        const auto* pKeyframe = pPath ? qobject_cast<const VTKeyframe*>(pPath->getParent()) : nullptr;
        if (pKeyframe)
            entries.append(Writer::objectEntry(keyframeData(pKeyframe)));
        return true;
    }
    case VTCommandAction::AddPlaybackListener:
    case VTCommandAction::RemovePlaybackListener:
    case VTCommandAction::ChangePlaybackListener:
        writePlayback(lstParams, entries);
        return true;
    case VTCommandAction::SetAutoOrient: {
        const VTAnimation* pAnimation = animationAt(lstParams, 0);
        if (const VTKeyframe* pKeyframe = pAnimation ? pAnimation->getKeyframe(VT::PropLocation) : nullptr)
            entries.append(Writer::objectEntry(keyframeData(pKeyframe)));
        return true;
    }
    default:
        break;
    }
    const bool bKeyframeRecord =
        (nId >= VTCommandAction::MoveKeyframe && nId <= VTCommandAction::MoveKeyValue) ||
        nId == VTCommandAction::ChangeAllKeyValues || nId == VTCommandAction::ChangeUnitSign;
    if (!bKeyframeRecord)
        return false;
    if (const VTKeyframe* pKeyframe = keyframeAt(lstParams, 0))
        entries.append(Writer::objectEntry(keyframeData(pKeyframe)));
    return true;
}

const VTPreloader* findPreloader(VTDocument* pDocument)
{
    if (!pDocument)
        return nullptr;
    if (const auto* pPreloader = qobject_cast<const VTPreloader*>(pDocument))
        return pPreloader;
    return pDocument->getPreloaderDoc();
}

QJsonObject preloaderIndicator(const VTPreloader* pPreloader)
{
    QJsonObject object;
    if (const VTLoadIndicatorProps* pProps = pPreloader->getLoadingIndicatorProps())
        pProps->serializeToExport(object);
    return object;
}

bool writeResources(int nId, const Params& lstParams, bool bUndo, VTDocument* pDocument,
                    VTResourceManager* pManager, QJsonArray& entries)
{
    switch (nId) {
    case VTCommandAction::RestoreResource:
    case VTCommandAction::DeleteResource: {
        // Only a restored resource is new to the page; fonts go both ways, as the page registers
        // and drops them.
        const bool bAny = nId == VTCommandAction::RestoreResource && !bUndo;
        for (const VTCmdParam* pParam : lstParams) {
            const VTResource* pResource = pParam ? pParam->getAsResource() : nullptr;
            if (!pResource || (!bAny && pResource->getType() != VTResource::Font))
                continue;
            const QJsonArray array = Writer::exportResource(pManager, pResource);
            if (!array.isEmpty())
                entries.append(Writer::arrayEntry(array));
        }
        return true;
    }
    case VTCommandAction::CommandFinished:
        return true;
    case VTCommandAction::ChangeMediaFormat:
    case VTCommandAction::SetIncludeResource:
    case VTCommandAction::ChangeResourceOrder:
    case VTCommandAction::ChangeResourcePath:
    case VTCommandAction::ResourceChanged: {
        const VTCmdParam* pParam = Writer::param(lstParams, 0);
        const VTResource* pResource = pParam ? pParam->getAsResource() : nullptr;
        entries.append(Writer::arrayEntry(Writer::exportResource(pManager, pResource)));
        entries.append(Writer::intEntry(pResource ? pResource->getId() : -1));
        return true;
    }
    case VTCommandAction::SetCanvasLoaderProps:
        if (const VTPreloader* pPreloader = findPreloader(pDocument))
            entries.append(Writer::objectEntry(preloaderIndicator(pPreloader)));
        return true;
    case VTCommandAction::SetUseLoadingIndicator:
        if (const VTPreloader* pPreloader = findPreloader(pDocument)) {
            const bool bUse = pPreloader->isUseLoadingIndicator();
            entries.append(Writer::boolEntry(bUse));
            if (bUse)
                entries.append(Writer::objectEntry(preloaderIndicator(pPreloader)));
        }
        return true;
    default:
        return false;
    }
}

void writeBreakpoints(const Params& lstParams, QJsonArray& entries)
{
    const VTSymbol* pSymbol = symbolAt(lstParams, 0);
    if (!pSymbol)
        return;
    const int nDirection = intAt(lstParams, 1);
    entries.append(Writer::intEntry(nDirection));
    const VTBreakpointManager* pBreakpoints = pSymbol->getBreakpointManager();
    if (!pBreakpoints)
        return;
    const VTLayoutKey current = pBreakpoints->getCurrentId(true);
    entries.append(Writer::arrayEntry({current.getHorizontalId(), current.getVerticalId()}));
    const auto direction = nDirection == VTBreakpointManager::Vertical ? VTBreakpointManager::Vertical
                                                                       : VTBreakpointManager::Horizontal;
    const VTBreakpointManager::EntryList& lstBreakpoints = pBreakpoints->getBreakpoints(direction);
    for (const VTBreakpointManager::Entry& breakpoint : lstBreakpoints)
        entries.append(Writer::arrayEntry({breakpoint.first, breakpoint.second}));
}

bool writeSymbol(int nId, const Params& lstParams, QJsonArray& entries)
{
    switch (nId) {
    case VTCommandAction::SetSymbolWidth:
    case VTCommandAction::SetSymbolHeight:
    case VTCommandAction::SetSymbolAlignment:
        if (const VTSymbol* pSymbol = symbolAt(lstParams, 0)) {
            const int nValue = nId == VTCommandAction::SetSymbolWidth    ? pSymbol->getWidth()
                               : nId == VTCommandAction::SetSymbolHeight ? pSymbol->getHeight()
                                                                         : pSymbol->getAlignment();
            entries.append(Writer::intEntry(nValue));
        }
        return true;
    case VTCommandAction::AddBreakpoint:
    case VTCommandAction::RemoveBreakpoint:
    case VTCommandAction::UpdateBreakpoint:
        writeBreakpoints(lstParams, entries);
        return true;
    case VTCommandAction::ChangeCurrentBreakpoint:
        if (const VTSymbol* pSymbol = symbolAt(lstParams, 0))
            entries.append(Writer::objectEntry({{QStringLiteral("r"), pSymbol->isResponsiveMode()}}));
        return true;
    default:
        return false;
    }
}

} // namespace

QJsonArray VTRecordWriter::writeEntries(int nId, const QList<VTCmdParam*>& lstParams, bool bUndo,
                                        VTDocument* pDocument, VTResourceManager* pResourceManager)
{
    if (!pResourceManager && pDocument)
        pResourceManager = pDocument->getResourceManager();
    QJsonArray entries;
    const bool bWritten = writeTree(nId, lstParams, entries) || writeTimeline(nId, lstParams, entries) ||
                          writeResources(nId, lstParams, bUndo, pDocument, pResourceManager, entries) ||
                          writeSymbol(nId, lstParams, entries) ||
                          VTElementRecordWriter::writeEntries(nId, lstParams, entries);
    return bWritten ? entries : writeOwnForm(lstParams);
}

QJsonArray VTRecordWriter::writeOwnForm(const QList<VTCmdParam*>& lstParams)
{
    QJsonArray entries;
    for (const VTCmdParam* pParam : lstParams) {
        QJsonObject entry;
        if (pParam)
            pParam->serialize(entry);
        else
            entry = emptyEntry();
        entries.append(entry);
    }
    return entries;
}

QJsonObject VTRecordWriter::intEntry(int nValue)
{
    return {{QStringLiteral("type"), VTCmdParam::Int}, {QStringLiteral("value"), nValue}};
}

QJsonObject VTRecordWriter::doubleEntry(double dValue)
{
    return {{QStringLiteral("type"), VTCmdParam::Double}, {QStringLiteral("value"), dValue}};
}

QJsonObject VTRecordWriter::boolEntry(bool bValue)
{
    return {{QStringLiteral("type"), VTCmdParam::Bool}, {QStringLiteral("value"), bValue}};
}

QJsonObject VTRecordWriter::textEntry(const QString& text)
{
    return {{QStringLiteral("type"), VTCmdParam::String}, {QStringLiteral("value"), text}};
}

QJsonObject VTRecordWriter::objectEntry(const QJsonObject& object)
{
    return {{QStringLiteral("type"), VTCmdParam::JsonObject}, {QStringLiteral("value"), object}};
}

QJsonObject VTRecordWriter::arrayEntry(const QJsonArray& array)
{
    return {{QStringLiteral("type"), VTCmdParam::JsonArray}, {QStringLiteral("value"), array}};
}

QJsonObject VTRecordWriter::emptyEntry()
{
    return {{QStringLiteral("type"), VTCmdParam::Empty}};
}

int VTRecordWriter::pageElementId(const VTElement* pElement)
{
    if (!pElement)
        return -1;
    return pElement->getType() == VT::SceneElement ? 0 : pElement->getId();
}

QJsonArray VTRecordWriter::exportResource(VTResourceManager* pManager, const VTResource* pResource)
{
    QJsonArray array;
    if (pManager && pResource)
        pManager->serializeToExport(array, pResource, true, true);
    return array;
}
