#include "VTPropertyJson.h"

#include "VTTypes.h"

#include <cmath>

namespace {

QString describeNumber(double dValue)
{
    return QString::number(dValue, 'g', 10);
}

} // namespace

VTPropertyJson::VTPropertyJson(const QJsonObject& object, const QString& context, QStringList* pProblems)
    : m_joObject(object)
    , m_reader(object, context, pProblems)
{}

double VTPropertyJson::readDouble(const QString& key, double dDefault, double dMin, double dMax) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return dDefault;
    const double dValue = value.toDouble();
    if (!value.isDouble() || !std::isfinite(dValue)) {
        m_reader.reportWrongType(key, tr("a number"), describeNumber(dDefault));
        return dDefault;
    }
    if (dValue < dMin || dValue > dMax) {
        if (dMax == std::numeric_limits<double>::max())
            reportRejected(key, tr("at least %1").arg(describeNumber(dMin)), describeNumber(dDefault));
        else
            reportRejected(key, tr("from %1 to %2").arg(describeNumber(dMin), describeNumber(dMax)),
                           describeNumber(dDefault));
        return dDefault;
    }
    return dValue;
}

int VTPropertyJson::readInt(const QString& key, int nDefault, int nMin, int nMax) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return nDefault;
    if (!VTJsonReader::isInt(value)) {
        m_reader.reportWrongType(key, tr("a whole number"), QString::number(nDefault));
        return nDefault;
    }
    const int nValue = static_cast<int>(value.toDouble());
    if (nValue < nMin || nValue > nMax) {
        if (nMax == std::numeric_limits<int>::max())
            reportRejected(key, tr("at least %1").arg(nMin), QString::number(nDefault));
        else
            reportRejected(key, tr("from %1 to %2").arg(nMin).arg(nMax), QString::number(nDefault));
        return nDefault;
    }
    return nValue;
}

int VTPropertyJson::readUnit(const QString& key, bool bAllowRatio) const
{
    return readInt(key, VT::Pixel, VT::Pixel, bAllowRatio ? VT::Ratio : VT::Percent);
}

QColor VTPropertyJson::readColor(const QString& key, const QColor& defaultColor) const
{
    const QJsonValue value = m_joObject.value(key);
    if (value.isUndefined())
        return defaultColor;
    QColor color;
    if (colorFromJson(value, &color))
        return color;
    m_reader.reportWrongType(key, tr("a colour number"), defaultColor.name(QColor::HexArgb));
    return defaultColor;
}

QJsonValue VTPropertyJson::colorToJson(const QColor& color)
{
    return static_cast<qint32>(color.rgba());
}

bool VTPropertyJson::colorFromJson(const QJsonValue& value, QColor* pColor)
{
    if (!value.isDouble())
        return false;
    const double dValue = value.toDouble();
    // Checked before converting: a double outside the target range makes the cast undefined.
    if (!std::isfinite(dValue) || std::trunc(dValue) != dValue ||
        dValue < static_cast<double>(std::numeric_limits<qint32>::min()) ||
        dValue > static_cast<double>(std::numeric_limits<quint32>::max()))
        return false;
    const auto nValue = static_cast<qint64>(dValue);
    *pColor = QColor::fromRgba(static_cast<QRgb>(static_cast<quint32>(nValue & 0xffffffff)));
    return true;
}

QJsonValue VTPropertyJson::toExportLength(double dValue, int nUnit)
{
    switch (nUnit) {
    case VT::Percent:
        return QString(QString::number(dValue * 100.0, 'g', 6) + QLatin1Char('%'));
    case VT::Ratio:
        return QString(QString::number(dValue * 100.0, 'g', 6) + QLatin1Char('a'));
    default:
        return dValue;
    }
}

void VTPropertyJson::appendExportColor(QJsonArray& array, const QColor& color)
{
    array.append(color.red());
    array.append(color.green());
    array.append(color.blue());
    array.append(color.alpha());
}

QJsonArray VTPropertyJson::toExportColor(const QColor& color)
{
    QJsonArray array;
    appendExportColor(array, color);
    return array;
}

void VTPropertyJson::reportRejected(const QString& key, const QString& expected,
                                    const QString& fallback) const
{
    // The value is a number here, and the number itself tells the user more than its type.
    m_reader.report(tr("\"%1\" should be %2 but is %3; %4 is used instead.")
                        .arg(key, expected, describeNumber(m_joObject.value(key).toDouble()), fallback));
}
