#pragma once

#include "VTCmdParam.h"
#include "VTCommandAction.h"

// Typed access to the positional parameters of an action, shared by the action families.
//
// Every read goes through the parameter's type check, so a parameter of the wrong type reads as
// 0, false, empty or null. Swapping actions keep both sides of a change in one parameter: the
// model takes the carried value and the parameter keeps the value it replaced, which is what lets
// undo be the same step as redo.
class VTActionParams final
{
public:
    VTActionParams() = delete;

    // Whether the action has exactly one of the given parameter counts.
    static bool hasCount(const VTCommandAction& action, int nCount) { return action.paramCount() == nCount; }
    static bool hasCount(const VTCommandAction& action, int nFirst, int nSecond)
    {
        return action.paramCount() == nFirst || action.paramCount() == nSecond;
    }

    template <typename T> static T value(const VTCmdParam* pParam);

    // Writes the carried value through set and keeps in the parameter what get read before.
    template <typename T, typename Get, typename Set> static void swap(VTCmdParam* pParam, Get get, Set set)
    {
        if (!pParam)
            return;
        const T newValue = value<T>(pParam);
        const T oldValue = get();
        set(newValue);
        pParam->setValue(oldValue);
    }

    // Exchanges the values of two parameters of the same type.
    template <typename T> static void exchange(VTCmdParam* pFirst, VTCmdParam* pSecond)
    {
        if (!pFirst || !pSecond)
            return;
        const T first = value<T>(pFirst);
        pFirst->setValue(value<T>(pSecond));
        pSecond->setValue(first);
    }

    // The event list of an element, a scene or a bare list parameter.
    static VTEventListenerList* getEventList(const VTCmdParam* pParam);
};

template <> inline int VTActionParams::value<int>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsInt() : 0;
}

template <> inline double VTActionParams::value<double>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsDouble() : 0.0;
}

template <> inline bool VTActionParams::value<bool>(const VTCmdParam* pParam)
{
    return pParam && pParam->getAsBool();
}

template <> inline QString VTActionParams::value<QString>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsString() : QString();
}

template <> inline QPointF VTActionParams::value<QPointF>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsPointF() : QPointF();
}

template <> inline QVariant VTActionParams::value<QVariant>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsVariant() : QVariant();
}

template <> inline QJsonObject VTActionParams::value<QJsonObject>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsJsonObject() : QJsonObject();
}

template <> inline QJsonArray VTActionParams::value<QJsonArray>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsJsonArray() : QJsonArray();
}

template <> inline QMap<int, bool> VTActionParams::value<QMap<int, bool>>(const VTCmdParam* pParam)
{
    return pParam ? pParam->getAsMapInherits() : QMap<int, bool>();
}
