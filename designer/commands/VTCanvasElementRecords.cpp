#include "VTCanvasElementRecords.h"

#include "VTBreakpointManager.h"
#include "VTBuilderSupport.h"
#include "VTCanvasKeyframeUpdater.h"
#include "VTCmdParam.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementActionValues.h"
#include "VTElementCommandAction.h"
#include "VTScene.h"
#include "VTSymbol.h"
#include "VTText.h"
#include "VTTypes.h"

#include <QMap>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

using Id = VTElementCommandAction::ElementActionId;

// ---- geometry values ----

bool isMoveProperty(int nProperty)
{
    return nProperty == VT::PropLeft || nProperty == VT::PropTop || nProperty == VT::PropTranslateX ||
           nProperty == VT::PropTranslateY || nProperty == VT::PropTranslateZ;
}

bool isResizeProperty(int nProperty)
{
    return nProperty == VT::PropWidth || nProperty == VT::PropHeight || nProperty == VT::PropScaleX ||
           nProperty == VT::PropScaleY || nProperty == VT::PropScaleZ;
}

// The page measures in pixels and percent points; what the element stores as a share arrives
// times 100.
bool arrivesInPercent(const VTElement& element, int nProperty, const VTLayoutKey& key)
{
    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
        return element.getUnitX(key) == VT::Percent;
    case VT::PropTop:
    case VT::PropBottom:
        return element.getUnitY(key) == VT::Percent;
    case VT::PropWidth:
        return element.getUnitW(key) == VT::Percent || element.getUnitW(key) == VT::Ratio;
    case VT::PropHeight:
        return element.getUnitH(key) == VT::Percent || element.getUnitH(key) == VT::Ratio;
    case VT::PropScaleX:
    case VT::PropScaleY:
    case VT::PropScaleZ:
        return true;
    default:
        return false;
    }
}

// The property whose keyframe animates the same value.
int siblingProperty(int nProperty)
{
    switch (nProperty) {
    case VT::PropLeft:
        return VT::PropRight;
    case VT::PropTop:
        return VT::PropBottom;
    case VT::PropTranslateX:
    case VT::PropTranslateY:
        return VT::PropLocation;
    default:
        return nProperty;
    }
}

// Whole-number properties take only the values they name.
bool isValidIntGeometry(int nProperty, int nValue)
{
    switch (nProperty) {
    case VT::PropCoordinateType:
        return nValue >= VT::LeftTop && nValue <= VT::LeftBottom;
    case VT::PropUnitX:
    case VT::PropUnitY:
        return nValue == VT::Pixel || nValue == VT::Percent;
    default:
        return nValue >= VT::Pixel && nValue <= VT::Ratio;
    }
}

// ---- text values ----

// One value of a text action that the page may change: the property and where it sits.
struct TextEntry
{
    int nProperty;
    int nIndex;
    QVariant value;
};

bool sameValue(const VTCmdParam& param, const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return param.getAsBool() == value.toBool();
    case QMetaType::QString:
        return param.getAsString() == value.toString();
    default:
        return VTElementActionValues::readInt(param) == value.toInt();
    }
}

void writeValue(VTCmdParam& param, const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        param.setValue(value.toBool());
        break;
    case QMetaType::QString:
        param.setValue(value.toString());
        break;
    default:
        param.setValue(value.toInt());
        break;
    }
}

int rgbaInt(const QColor& color)
{
    return static_cast<int>(static_cast<quint32>(color.rgba()));
}

} // namespace

void VTCanvasElementRecords::changeGeometry(VTCommand& command, const VTSymbol& symbol, VTElement* pElement,
                                            const QList<int>& lstProperties, const QList<double>& lstValues)
{
    if (!pElement || lstProperties.size() != lstValues.size())
        return;
    // A move keeps the shape of the position tracks; a resize that moves (from the left edge, say)
    // shifts them.
    const bool bMove = std::any_of(lstProperties.cbegin(), lstProperties.cend(), isMoveProperty);
    const bool bResize = std::any_of(lstProperties.cbegin(), lstProperties.cend(), isResizeProperty);
    const bool bMoveOnly = bMove && !bResize;
    VTDocument* pDocument = command.getDocument();
    const bool bAutoKeyframe = pDocument && pDocument->isAutoKeyframeMode();
    const bool bResponsive = symbol.isResponsiveMode();

    const VTLayoutKey start = pElement->getCurrentLayoutID();
    VTLayoutSwitch layout(pElement, start);
    for (const VTLayoutKey& key : VTCanvasKeyframeUpdater::getBreakpointIds(&symbol)) {
        layout.switchTo(key);
        auto pAction = std::make_unique<VTElementCommandAction>(Id::ChangeGeometry, pDocument);
        pAction->prepareChangeGeometryParams(pElement);
        QMap<int, bool> mapInherits;
        for (int i = 0; i < lstProperties.size(); ++i) {
            const int nProperty = lstProperties.at(i);
            double dValue = lstValues.at(i);
            if (!VTElementActionValues::isGeometryProperty(nProperty) || !std::isfinite(dValue))
                continue;
            if (arrivesInPercent(*pElement, nProperty, key))
                dValue /= 100.0;
            const double dCurrent = VTCanvasKeyframeUpdater::geometryValue(*pElement, nProperty, key);
            bool bInherit = pElement->isInherit(nProperty, key);
            if (!bResponsive) {
                // Only layouts that follow the base move with it; one with a value of its own keeps it.
                if (!key.isBase()) {
                    if (!bInherit)
                        dValue = dCurrent;
                    if (VTCanvasKeyframeUpdater::isNearlyEqual(dValue, dCurrent))
                        continue;
                }
            } else if (!key.isBase() && !bAutoKeyframe && bInherit &&
                       !VTCanvasKeyframeUpdater::hasKeyframe(pElement, nProperty, key) &&
                       !VTCanvasKeyframeUpdater::hasKeyframe(pElement, siblingProperty(nProperty), key)) {
                // An edit in a layout of its own overrides the base there, unless it changed nothing.
                bInherit = VTCanvasKeyframeUpdater::isNearlyEqual(dValue, dCurrent);
            }
            const auto property = static_cast<VT::ElementProperty>(nProperty);
            if (VTElementActionValues::isIntGeometryProperty(nProperty)) {
                const int nValue = static_cast<int>(std::lround(dValue));
                if (!isValidIntGeometry(nProperty, nValue))
                    continue;
                pAction->setChangeGeometryProperty(property, nValue);
            } else {
                pAction->setChangeGeometryProperty(property, dValue);
            }
            mapInherits.insert(nProperty, bInherit);
        }
        if (pAction->paramCount() < 6)
            continue;
        pAction->getParam(3)->setValue(mapInherits);
        VTElementCommandAction* pAdded = pAction.release();
        command.addAction(pAdded);
        if (key == start)
            VTCanvasKeyframeUpdater::updateGeometryKeyframes(pAdded, &command, bMoveOnly);
    }
}

void VTCanvasElementRecords::changeText(VTCommand& command, const VTSymbol& symbol, VTScene* pScene,
                                        VTText* pText, const TextFormat& format)
{
    constexpr int kTextParams = 19;
    if (!pText)
        return;
    VTDocument* pDocument = command.getDocument();
    // In the order the values are merged; indexes are those of the text action.
    const QList<TextEntry> lstEntries{
        {VT::PropTextColor, 10, rgbaInt(format.color)},
        {VT::PropHighlightColor, 11, rgbaInt(format.highlightColor)},
        {VT::PropInnerHtml, 1, format.strInnerHtml},
        {VT::PropBold, 4, format.bBold},
        {VT::PropItalic, 7, format.bItalic},
        {VT::PropUnderline, 8, format.bUnderline},
        {VT::PropStrikeout, 9, format.bStrikeOut},
        {VT::PropFontSize, 3, format.nFontSize},
        {VT::PropFontFamily, 2, format.strFontFamily},
        {VT::PropWordSpacing, 6, format.nWordSpace},
        {VT::PropLetterSpacing, 5, format.nLetterSpace},
    };
    const bool bResponsive = symbol.isResponsiveMode();
    const VTLayoutKey shown = symbol.getCurrentLayoutId(true);
    for (const VTLayoutKey& key : symbol.getBreakpointManager()->getAllBreakpointIds(true)) {
        const bool bShown = key == shown;
        // Another layout takes the edit where it follows the base, and only from an edit of the base.
        if (!bShown && (bResponsive || !shown.isBase()))
            continue;
        auto pAction = std::make_unique<VTElementCommandAction>(Id::ChangeText, pDocument, kTextParams);
        {
            const VTLayoutSwitch layout(pText, key);
            pAction->prepareChangeTextPrams(pText);
        }
        if (pAction->paramCount() != kTextParams)
            continue;
        QMap<int, bool> mapOverrides;
        bool bWritten = false;
        for (const TextEntry& entry : lstEntries) {
            VTCmdParam* pParam = pAction->getParam(entry.nIndex);
            if (bShown) {
                if (!sameValue(*pParam, entry.value))
                    mapOverrides.insert(entry.nProperty, false);
            } else if (!pText->isInherit(entry.nProperty, key)) {
                continue;
            }
            writeValue(*pParam, entry.value);
            bWritten = true;
        }
        if (!bWritten)
            continue;
        VTElementCommandAction* pAdded = pAction.release();
        command.addAction(pAdded);
        if (!bShown)
            continue;
        if (!key.isBase() && !mapOverrides.isEmpty()) {
            auto* pInherits = new VTCommandAction(VTCommandAction::ChangeElementInherits, pDocument, 4);
            pInherits->addParam(static_cast<VTElement*>(pText), false);
            pInherits->addParam(key.getHorizontalId());
            pInherits->addParam(key.getVerticalId());
            pInherits->addParam(mapOverrides);
            command.addAction(pInherits);
        }
        VTCanvasKeyframeUpdater::updateTextKeyframes(pAdded, &command, pScene);
    }
}
