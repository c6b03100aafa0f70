#pragma once

#include <QVariant>

// One key of a keyframe: a time and the value the property takes there. A property may jump at a
// key: value_minus is where the curve arrives from the left, value where it leaves to the right.
// The two are equal unless the user made a jump.
class VTKeyValue final
{
public:
    VTKeyValue(int nTime, const QVariant& value)
        : m_nTime(nTime)
        , m_value(value)
        , m_valueMinus(value)
    {}

    int getTime() const { return m_nTime; }
    void setTime(int nTime) { m_nTime = nTime; }
    const QVariant& getValue() const { return m_value; }
    void setValue(const QVariant& value) { m_value = value; }
    const QVariant& getValueMinus() const { return m_valueMinus; }
    void setValueMinus(const QVariant& value) { m_valueMinus = value; }
    bool isJump() const { return m_value != m_valueMinus; }

private:
    int m_nTime = 0;
    QVariant m_value;
    QVariant m_valueMinus;
};
