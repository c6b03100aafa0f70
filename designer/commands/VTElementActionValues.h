#pragma once

#include "VTLayoutKey.h"

#include <QList>

class VTCmdParam;
class VTCommandAction;
class VTElement;

// The values that element actions carry, read from the model and written back into it.
//
// Each family of values (a border, a background, the text format...) is listed once, in parameter
// order, and that one list serves both to prepare an action from the present state and to run it.
// So a preparing call and a run can never disagree on where a value sits. Running swaps: every
// parameter is written into the model and then holds the value it replaced, so a second run
// restores the first state.
class VTElementActionValues final
{
public:
    VTElementActionValues() = delete;

    // How many values an id carries behind its target: for a layout-bound id without the inherit
    // map and the layout key. -1 for the ids whose parameters are no fixed list of values.
    static int valueCount(int nId);

    // Appends the present values of the id's family in that layout to the action. False, adding
    // nothing, when the target lacks them (another kind of element, no block in that layout).
    static bool collect(int nId, VTElement* pTarget, const VTLayoutKey& key, VTCommandAction& action);

    // Writes the parameters from nFirst on into the target in that layout and leaves the replaced
    // values in their place. False, changing nothing, when the target lacks the values or the list
    // is too short.
    static bool swap(int nId, VTElement* pTarget, const VTLayoutKey& key, const QList<VTCmdParam*>& lstParams,
                     int nFirst);

    // A number from a parameter of either number type, for values that builders fill through the
    // int or the double setter alike; anything else reads as 0.
    static int readInt(const VTCmdParam& param);
    static double readDouble(const VTCmdParam& param);

    // The properties that the geometry action writes; the ones in the second group are whole
    // numbers (coordinate type and units).
    static bool isGeometryProperty(int nProperty);
    static bool isIntGeometryProperty(int nProperty);
    // Writes one geometry value into the target's block of that layout and leaves the replaced one
    // in the parameter. An int parameter is accepted for a double value and the other way round; a
    // parameter that holds no number changes nothing and returns false.
    static bool swapGeometry(VTElement* pTarget, const VTLayoutKey& key, int nProperty, VTCmdParam& param);
};
