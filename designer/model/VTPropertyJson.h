#pragma once

#include "VTJsonReader.h"

#include <QColor>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <limits>

// How the values of property blocks look in a project file and in the player's compact form.
//
// Reading: block values come from files that may have been edited by hand or damaged, so every
// read checks type, finiteness and range, and a rejected value falls back to the caller's
// default with a note, the way VTJsonReader does for plain types.
class VTPropertyJson final
{
    Q_DECLARE_TR_FUNCTIONS(VTPropertyJson)
public:
    // pProblems may be null; context names the object in the notes ("border").
    VTPropertyJson(const QJsonObject& object, const QString& context, QStringList* pProblems);

    bool has(const QString& key) const { return m_joObject.contains(key); }
    QJsonValue value(const QString& key) const { return m_joObject.value(key); }
    const VTJsonReader& reader() const { return m_reader; }

    // A finite number within [dMin, dMax].
    double readDouble(const QString& key, double dDefault,
                      double dMin = std::numeric_limits<double>::lowest(),
                      double dMax = std::numeric_limits<double>::max()) const;
    // A whole number within [nMin, nMax]; enums pass their first and last value.
    int readInt(const QString& key, int nDefault, int nMin = std::numeric_limits<int>::min(),
                int nMax = std::numeric_limits<int>::max()) const;
    // A VT::MeasureUnit; bAllowRatio for widths and heights, the only lengths that take it.
    int readUnit(const QString& key, bool bAllowRatio = false) const;
    QColor readColor(const QString& key, const QColor& defaultColor) const;
    QString readString(const QString& key, const QString& defaultValue = QString()) const
    {
        return m_reader.readString(key, defaultValue);
    }
    QJsonObject readObject(const QString& key) const { return m_reader.readObject(key); }
    QJsonArray readArray(const QString& key) const { return m_reader.readArray(key); }
    void report(const QString& text) const { m_reader.report(text); }

    // The saved form of a colour: QColor::rgba() as a signed 32-bit integer, the form keyframes
    // use too, so an opaque colour is negative.
    static QJsonValue colorToJson(const QColor& color);
    // Accepts the signed form and the unsigned one that other writers produce; false for anything
    // that is not a whole number within 32 bits.
    static bool colorFromJson(const QJsonValue& value, QColor* pColor);

    // The player's length form: pixels as a number, percent as "50%", ratio as "150a".
    static QJsonValue toExportLength(double dValue, int nUnit);
    // Red, green, blue, alpha as four integers.
    static void appendExportColor(QJsonArray& array, const QColor& color);
    static QJsonArray toExportColor(const QColor& color);

private:
    void reportRejected(const QString& key, const QString& expected, const QString& fallback) const;

    QJsonObject m_joObject;
    VTJsonReader m_reader;
};
