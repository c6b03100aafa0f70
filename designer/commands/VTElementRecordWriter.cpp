#include "VTElementRecordWriter.h"

#include "VTAnimatedProperty.h"
#include "VTAutoShape.h"
#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTCmdParam.h"
#include "VTCorner.h"
#include "VTDiv.h"
#include "VTElementCommandAction.h"
#include "VTFilterEffect.h"
#include "VTFreeFormShape.h"
#include "VTFreeFormShapeProperty.h"
#include "VTHTMLWidget.h"
#include "VTImage.h"
#include "VTKeyframe.h"
#include "VTMedia.h"
#include "VTRecordWriter.h"
#include "VTResource.h"
#include "VTScene.h"
#include "VTShadow.h"
#include "VTText.h"

namespace {

using Params = QList<VTCmdParam*>;
using Writer = VTRecordWriter;
using Ids = VTElementCommandAction;

// A value of the stage page that reaches it in percent is stored as a fraction.
constexpr double s_dPercent = 100.0;
// An adjustment count beyond this is no real shape; it would only make the record huge.
constexpr int s_nMaxAdjustments = 1000;

// The page counts only the named entries, but the list is as long as the action's.
void padToParamCount(QJsonArray& entries, const Params& lstParams)
{
    while (entries.size() < lstParams.size())
        entries.append(Writer::emptyEntry());
}

template <typename Block> QJsonArray exportBlock(const Block* pBlock)
{
    QJsonArray array;
    if (pBlock)
        pBlock->serializeToExport(array);
    return array;
}

// The value of a property in a given layout as the page shows a plain value. The element shows
// that layout for the read only, as the bound property of some kinds is read through the element.
void writePropertyValue(VTElement* pElement, const Params& lstParams, QJsonArray& entries)
{
    const VTCmdParam* pProperty = Writer::param(lstParams, 1);
    const VTCmdParam* pKey = Writer::param(lstParams, 2);
    const int nProperty = pProperty ? pProperty->getAsInt() : -1;
    const VTLayoutKey key = pKey ? pKey->getAsIntPair() : VTLayoutKey::current();
    const VTLayoutKey shown = pElement->getCurrentLayoutID();
    pElement->setCurrentLayoutID(key);
    const QObject* pTarget = VTAnimatedProperty::getTargetObject(pElement, nProperty, key);
    QVariant value;
    QString unit;
    if (pTarget) {
        value = pTarget->property(VTAnimatedProperty::getPropertyName(nProperty).constData());
        unit = VTAnimatedProperty::getUnitSign(pElement, nProperty, key);
    }
    pElement->setCurrentLayoutID(shown);
    if (!pTarget)
        return;
    QJsonObject object{{QStringLiteral("el"), Writer::pageElementId(pElement)}};
    VTKeyframe::serializeSavedValueToExport(object, nProperty, unit, value);
    entries.append(Writer::objectEntry(object));
}

void writeMediaFlag(int nId, const VTElement* pElement, QJsonArray& entries)
{
    const auto* pMedia = qobject_cast<const VTMedia*>(pElement);
    if (!pMedia)
        return;
    QJsonObject object{{QStringLiteral("elementId"), pElement->getId()}};
    if (nId == Ids::ChangeVolume)
        object.insert(QStringLiteral("volume"), pMedia->getVolume() * s_dPercent);
    else if (nId == Ids::SetMediaLoop)
        object.insert(QStringLiteral("loop"), pMedia->isLoop());
    else
        object.insert(QStringLiteral("controls"), pMedia->hasControls());
    entries.append(Writer::objectEntry(object));
}

void writeHtmlWidgetSource(const VTElement* pElement, QJsonArray& entries)
{
    const auto* pWidget = qobject_cast<const VTHTMLWidget*>(pElement);
    if (!pWidget)
        return;
    entries.append(Writer::intEntry(pElement->getId()));
    entries.append(Writer::boolEntry(pWidget->isUseResource()));
    if (pWidget->isUseResource()) {
        const VTResource* pResource = pWidget->getHTMLResource();
        entries.append(Writer::intEntry(pResource ? pResource->getId() : -1));
    } else {
        entries.append(Writer::textEntry(pWidget->getUrl()));
    }
}

void writeAdjustments(const VTElement* pElement, const Params& lstParams, QJsonArray& entries)
{
    const auto* pShape = qobject_cast<const VTAutoShape*>(pElement);
    if (!pShape)
        return;
    const VTCmdParam* pCount = Writer::param(lstParams, 1);
    const int nCount = qBound(0, pCount ? pCount->getAsInt() : 0, s_nMaxAdjustments);
    const QVector<double>& vecAdjustments = pShape->getAdjustments();
    entries.append(Writer::intEntry(pElement->getId()));
    entries.append(Writer::intEntry(nCount));
    for (int i = 0; i < nCount; ++i)
        entries.append(Writer::doubleEntry(vecAdjustments.value(i, 0.0)));
}

void writeFreeForm(const VTElement* pElement, QJsonArray& entries)
{
    const auto* pShape = qobject_cast<const VTFreeFormShape*>(pElement);
    const VTFreeFormShapeProperty* pBlock = pShape ? pShape->getFreeFormProperty() : nullptr;
    if (!pBlock || pElement->getType() != VT::FreeFormElement)
        return;
    QJsonObject object;
    pBlock->serializeToExport(object, true, false);
    entries.append(Writer::intEntry(pElement->getId()));
    entries.append(Writer::objectEntry(object));
}

void writePerspective(const Params& lstParams, QJsonArray& entries)
{
    const VTCmdParam* pParam = Writer::param(lstParams, 0);
    const VTScene* pScene = pParam ? pParam->getAsScene() : nullptr;
    if (!pScene)
        return;
    entries.append(Writer::arrayEntry({pScene->getPerspectiveX() * s_dPercent,
                                       pScene->getPerspectiveY() * s_dPercent, pScene->getPerspectiveZ()}));
}

// The records whose entries are one value of the element, always behind its id.
bool writeSimpleValue(int nId, const VTElement* pElement, const Params& lstParams, QJsonArray& entries)
{
    const int nElementId = pElement->getId();
    switch (nId) {
    case Ids::ChangeOpacity:
        entries = {Writer::intEntry(nElementId), Writer::doubleEntry(pElement->getOpacity())};
        padToParamCount(entries, lstParams);
        return true;
    case Ids::ChangeClassName:
        entries = {Writer::intEntry(nElementId), Writer::textEntry(pElement->getClassName())};
        padToParamCount(entries, lstParams);
        return true;
    case Ids::ChangeDisplay:
        entries = {Writer::intEntry(nElementId), Writer::intEntry(pElement->getDisplay())};
        padToParamCount(entries, lstParams);
        return true;
    case Ids::ChangeOverflow:
        entries = {Writer::intEntry(nElementId), Writer::intEntry(pElement->getOverflowType()),
                   Writer::intEntry(pElement->getType())};
        padToParamCount(entries, lstParams);
        return true;
    case Ids::ChangeCursor:
        entries = {Writer::intEntry(nElementId), Writer::textEntry(pElement->getCursorValue())};
        padToParamCount(entries, lstParams);
        return true;
    case Ids::SetLocked:
        entries = {Writer::intEntry(Writer::pageElementId(pElement)),
                   Writer::boolEntry(pElement->isLocked())};
        return true;
    case Ids::SetVisible:
        entries = {Writer::intEntry(Writer::pageElementId(pElement)),
                   Writer::boolEntry(pElement->isVisible())};
        return true;
    case Ids::SetLockAspectRatio:
        entries = {Writer::intEntry(nElementId), Writer::boolEntry(pElement->isAspectRatioLocked()),
                   Writer::intEntry(pElement->getType())};
        return true;
    case Ids::UpdateHtmlWidgetFromResource:
        entries = {Writer::intEntry(nElementId)};
        return true;
    default:
        return false;
    }
}

// The records whose entries are a block of the element in the player's array form.
bool writeBlock(int nId, const VTElement* pElement, QJsonArray& entries)
{
    const int nElementId = pElement->getId();
    switch (nId) {
    case Ids::ChangeBorder:
        entries = {Writer::intEntry(nElementId), Writer::arrayEntry(exportBlock(pElement->getBorder()))};
        return true;
    case Ids::ChangeBackground:
        entries = {Writer::intEntry(nElementId), Writer::arrayEntry(exportBlock(pElement->getBackground())),
                   Writer::intEntry(pElement->getType())};
        return true;
    case Ids::ChangeClip:
        entries = {Writer::intEntry(nElementId), Writer::arrayEntry(exportBlock(pElement->getClip()))};
        return true;
    case Ids::ChangeShadow:
        entries = {Writer::intEntry(nElementId), Writer::arrayEntry(exportBlock(pElement->getShadow()))};
        return true;
    case Ids::ChangeFilter:
        entries = {Writer::intEntry(nElementId), Writer::arrayEntry(exportBlock(pElement->getFilter()))};
        return true;
    case Ids::ChangeCorner:
        if (const auto* pDiv = qobject_cast<const VTDiv*>(pElement))
            entries = {Writer::intEntry(nElementId), Writer::arrayEntry(exportBlock(pDiv->getCorner()))};
        return true;
    case Ids::ChangeText:
        if (const auto* pText = qobject_cast<const VTText*>(pElement)) {
            QJsonArray array;
            pText->serializeTextToExport(array);
            entries = {Writer::intEntry(nElementId), Writer::arrayEntry(array)};
        }
        return true;
    case Ids::ChangeGeometry: {
        QJsonObject geometry;
        pElement->serializeGeomToExport(geometry);
        entries = {Writer::intEntry(nElementId), Writer::objectEntry(geometry),
                   Writer::intEntry(pElement->getType())};
        return true;
    }
    default:
        return false;
    }
}

// The records of one kind of element; an element of another kind gives no entries.
bool writeKindValue(int nId, VTElement* pElement, const Params& lstParams, QJsonArray& entries)
{
    switch (nId) {
    case Ids::ChangeAdjustments:
        writeAdjustments(pElement, lstParams, entries);
        return true;
    case Ids::ChangeImageResource:
        if (const auto* pImage = qobject_cast<const VTImage*>(pElement)) {
            const VTResource* pResource = pImage->getImageResource();
            entries = {Writer::intEntry(pElement->getId()),
                       Writer::intEntry(pResource ? pResource->getId() : -1)};
        }
        return true;
    case Ids::ChangeBgImage:
        if (const auto* pImage = qobject_cast<const VTImage*>(pElement)) {
            QJsonObject object{{QStringLiteral("elementId"), pElement->getId()}};
            pImage->getBgImgData(object);
            entries = {Writer::objectEntry(object)};
        }
        return true;
    case Ids::ChangeVolume:
    case Ids::SetMediaLoop:
    case Ids::SetMediaControls:
        writeMediaFlag(nId, pElement, entries);
        return true;
    case Ids::ChangeHtmlWidgetSource:
        writeHtmlWidgetSource(pElement, entries);
        return true;
    case Ids::ChangeHtmlWidgetCode:
        if (const auto* pWidget = qobject_cast<const VTHTMLWidget*>(pElement))
            entries = {Writer::intEntry(pElement->getId()), Writer::textEntry(pWidget->getSrcHTML())};
        return true;
    case Ids::ChangeFreeFormPath:
    case Ids::ChangeArrowStyle:
        writeFreeForm(pElement, entries);
        return true;
    case Ids::SetPropertyValue:
        writePropertyValue(pElement, lstParams, entries);
        return true;
    default:
        return false;
    }
}

bool isListed(int nId)
{
    switch (nId) {
    case Ids::ChangeGeometry:
    case Ids::ChangeBorder:
    case Ids::ChangeBackground:
    case Ids::ChangeOpacity:
    case Ids::SetLocked:
    case Ids::SetVisible:
    case Ids::ChangeText:
    case Ids::ChangeAdjustments:
    case Ids::ChangeClassName:
    case Ids::ChangeDisplay:
    case Ids::ChangeOverflow:
    case Ids::ChangeCursor:
    case Ids::ChangeImageResource:
    case Ids::ChangeBgImage:
    case Ids::ChangeVolume:
    case Ids::SetMediaLoop:
    case Ids::SetMediaControls:
    case Ids::ChangeCorner:
    case Ids::ChangeHtmlWidgetSource:
    case Ids::ChangeHtmlWidgetCode:
    case Ids::UpdateHtmlWidgetFromResource:
    case Ids::SetLockAspectRatio:
    case Ids::ChangeFreeFormPath:
    case Ids::ChangeArrowStyle:
    case Ids::SetPropertyValue:
    case Ids::ChangeClip:
    case Ids::ChangeShadow:
    case Ids::ChangeFilter:
    case Ids::ChangePerspective:
        return true;
    default:
        return false;
    }
}

} // namespace

bool VTElementRecordWriter::writeEntries(int nId, const QList<VTCmdParam*>& lstParams, QJsonArray& entries)
{
    if (!isListed(nId))
        return false;
    if (nId == Ids::ChangePerspective) {
        writePerspective(lstParams, entries);
        return true;
    }
    const VTCmdParam* pParam = Writer::param(lstParams, 0);
    VTElement* pElement = pParam ? pParam->getAsElement() : nullptr;
    if (pElement && !writeSimpleValue(nId, pElement, lstParams, entries) &&
        !writeBlock(nId, pElement, entries))
        writeKindValue(nId, pElement, lstParams, entries);
    return true;
}
