#pragma once

#include <QCoreApplication>
#include <QList>
#include <QString>

class VTElementProperty;

// What the program knows about each VT::ElementProperty number: the Qt property that holds the
// value, the names shown to the user, the key of the player's animation data, the group it is
// listed under and the unit sign shown beside its value. Keyframes, the timeline panel, the
// inspector and the export all read it from here, so the names agree everywhere.
//
// Property numbers come from files and commands; a number that is not in the table gives an empty
// text and false, never a crash.
class VTElementPropertyInfo final
{
    Q_DECLARE_TR_FUNCTIONS(VTElementPropertyInfo)
public:
    VTElementPropertyInfo() = delete;

    static bool isValidProperty(int nProperty);

    // The Qt property name, "m_dPositionX"; empty when no object property carries the value.
    static QString getPropertyNameByType(int nProperty);
    static QString getNameByType(int nProperty);
    // The untranslated label; it names the per-property actions, so it must not change with the
    // language.
    static QString getNameByType_NoTR(int nProperty);
    static QString getExportedPropertyNameByType(int nProperty);
    static QString getGroupNameByPropType(int nProperty, bool bTranslate = true);

    // "px", "%", "deg", "color" or empty. Lengths whose unit the user chooses show the sign of
    // nUnit: "px" for pixels, "%" for percent, nothing for any other unit. Other properties ignore
    // nUnit.
    static QString getPropUnitSign(int nProperty, int nUnit);
    // The same with the unit looked up in the block that holds the value; lengths of a missing
    // block, or of a block without that value, show nothing.
    static QString getPropUnitSign(int nProperty, const VTElementProperty* pBlock);
    // Whether the sign depends on a unit the user chooses.
    static bool hasVariableUnit(int nProperty);

    static bool isAnimatedProp(int nProperty);
    // The animatable properties in the order their rows are shown.
    static const QList<int>& getAnimatedProps();
    // The restrictions that an element's kind puts on animation; it does not repeat
    // isAnimatedProp, which callers test on their own.
    static bool canAnimate(int nElementType, int nProperty);
    // Display jumps from one key to the next; every other property can move between keys.
    static bool canHaveTransition(int nProperty);
};
