#pragma once

#include "VTCommandAction.h"
#include "VTTypes.h"

class VTElement;

// Actions that edit the plain properties of one element or scene. They all swap: redo writes the
// carried values and keeps the ones it replaced in the same parameters, so undo is redo. Values
// of a layout are always addressed by the layout key the action carries, whatever layout the
// element shows.
class VTElementCommandAction final : public VTCommandAction
{
public:
    enum ElementActionId : int
    {
        ChangeGeometry = 1000,
        ChangeBorder = 1001,
        ChangeBackground = 1002,
        ChangeOpacity = 1003,
        SetLocked = 1005,
        SetVisible = 1006,
        SetElementName = 1007,
        ChangeText = 1008,
        ChangeAdjustments = 1009,
        ChangeClassName = 1010,
        ChangeDisplay = 1011,
        ChangeOverflow = 1012,
        SetAutoAdvance = 1013,
        ChangeTitle = 1014,
        ChangeTabIndex = 1015,
        ChangeCursor = 1016,
        ChangeImageResource = 1017,
        ChangeImageAlt = 1018,
        ChangeBgImage = 1019,
        ChangeMediaDuration = 1020,
        ChangeVolume = 1021,
        SetMediaAutoplay = 1022,
        SetMediaLoop = 1023,
        SetMediaControls = 1024,
        SetMediaPreload = 1025,
        ChangeTransitionType = 1026,
        ChangeTransitionDuration = 1027,
        ChangeTransitionEasing = 1028,
        ChangeTransitionDirection = 1029,
        ChangeCorner = 1030,
        ChangeHtmlWidgetSource = 1031,
        ChangeHtmlWidgetCode = 1032,
        UpdateHtmlWidgetFromResource = 1033,
        SetLockAspectRatio = 1034,
        SetSymbolAutoplay = 1035,
        ChangeFreeFormPath = 1036,
        SetFreeFormEditPoint = 1037,
        ChangeArrowStyle = 1038,
        SetPropertyValue = 1039,
        SetInherits = 1040,
        ChangeClip = 1041,
        ChangeShadow = 1042,
        ChangeFilter = 1043,
        ChangePerspective = 1044,
    };

    VTElementCommandAction(ElementActionId nId, VTDocument* pDocument, int nReserve = 0,
                           bool bSkipFirstRedo = false);

    void undo() override { redo(); }
    void redo() override;

    // ChangeGeometry only, on an empty action: element, its current layout, its inherit map of
    // that layout and an empty list of property ids.
    void prepareChangeGeometryParams(VTElement* pElement);
    // ChangeGeometry only: sets the value of a property, appending it when it is not listed yet.
    void setChangeGeometryProperty(VT::ElementProperty property, double dValue);
    void setChangeGeometryProperty(VT::ElementProperty property, int nValue);
    // 5 + the property's place in the id list, or -1.
    int getChangeGeometryPropertyParamIndex(VT::ElementProperty property) const;
    VTCmdParam* getChangeGeometryPropertyParam(VT::ElementProperty property) const;

    // On an empty action of the matching id: every parameter from the element's present state in
    // its current layout, inherit map and layout key included. Callers then overwrite the few
    // values they change.
    void prepareChangeBorderParams(VTElement* pElement);
    void prepareChangeBackgroundParams(VTElement* pElement);
    void prepareChangeTextPrams(VTElement* pElement);
    void prepareChangeBgImageParams(VTElement* pElement);
    void prepareChangeCornerParams(VTElement* pElement);
    void prepareChangeClipParams(VTElement* pElement);
    void prepareChangeShadowParams(VTElement* pElement);
    void prepareChangeFilterParams(VTElement* pElement);

    // True for the ids whose parameters end in the inherit map, h and v.
    static bool isLayoutBound(int nId);
};
