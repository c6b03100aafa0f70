#include "VTLoadIndicatorProps.h"

#include "VTJsonReader.h"

#include <cmath>
#include <limits>

namespace {

const QString s_strDiameterKey = QStringLiteral("diameter");
const QString s_strDensityKey = QStringLiteral("density");
const QString s_strRangeKey = QStringLiteral("range");
const QString s_strSpeedKey = QStringLiteral("speed");
const QString s_strColorKey = QStringLiteral("color");
const QString s_strShapeKey = QStringLiteral("shape");

// The colour is written as QColor::rgb(), an unsigned 32-bit value; files written through a
// signed int hold the same bits as a negative number. Both are accepted, nothing else is.
bool readRgb(const QJsonValue& value, QRgb* pRgb)
{
    if (!value.isDouble())
        return false;
    const double dValue = value.toDouble();
    if (!std::isfinite(dValue) || std::trunc(dValue) != dValue ||
        dValue < static_cast<double>(std::numeric_limits<qint32>::min()) ||
        dValue > static_cast<double>(std::numeric_limits<quint32>::max()))
        return false;
    *pRgb = dValue < 0 ? static_cast<QRgb>(static_cast<qint32>(dValue)) : static_cast<QRgb>(dValue);
    return true;
}

} // namespace

void VTLoadIndicatorProps::setColor(const QColor& color)
{
    m_clColor = QColor::fromRgb(color.rgb());
}

QString VTLoadIndicatorProps::getShapeName(int nShape)
{
    switch (nShape) {
    case Spiral:
        return QStringLiteral("spiral");
    case Square:
        return QStringLiteral("square");
    case Rect:
        return QStringLiteral("rect");
    case RoundRect:
        return QStringLiteral("roundRect");
    default:
        return QStringLiteral("oval");
    }
}

void VTLoadIndicatorProps::parse(const QJsonObject& object, const QString& context, QStringList* pProblems)
{
    const VTJsonReader reader(object, context, pProblems);
    m_nDiameter = reader.readInt(s_strDiameterKey, 0);
    m_nDensity = reader.readInt(s_strDensityKey, 0);
    m_nSpeed = reader.readInt(s_strSpeedKey, 0);
    m_nShape = reader.readInt(s_strShapeKey, 0);

    m_dRange = 0.0;
    const QJsonValue range = object.value(s_strRangeKey);
    if (range.isDouble() && std::isfinite(range.toDouble()))
        m_dRange = range.toDouble();
    else if (!range.isUndefined())
        reader.reportWrongType(s_strRangeKey, VTJsonReader::tr("a number"), QStringLiteral("0"));

    QRgb rgb = 0;
    const QJsonValue color = object.value(s_strColorKey);
    if (!color.isUndefined() && !readRgb(color, &rgb))
        reader.reportWrongType(s_strColorKey, VTJsonReader::tr("a colour number"), QStringLiteral("0"));
    // fromRgb ignores the alpha byte of a QRgb.
    m_clColor = QColor::fromRgb(rgb);
}

void VTLoadIndicatorProps::serialize(QJsonObject& object) const
{
    object.insert(s_strDiameterKey, m_nDiameter);
    object.insert(s_strDensityKey, m_nDensity);
    object.insert(s_strRangeKey, m_dRange);
    object.insert(s_strSpeedKey, m_nSpeed);
    object.insert(s_strColorKey, static_cast<double>(m_clColor.rgb()));
    object.insert(s_strShapeKey, m_nShape);
}

void VTLoadIndicatorProps::serializeToExport(QJsonObject& object) const
{
    object.insert(s_strDiameterKey, m_nDiameter);
    object.insert(s_strDensityKey, m_nDensity);
    object.insert(s_strRangeKey, m_dRange);
    object.insert(s_strSpeedKey, m_nSpeed);
    object.insert(s_strColorKey, m_clColor.name());
    object.insert(s_strShapeKey, getShapeName());
}

bool VTLoadIndicatorProps::operator==(const VTLoadIndicatorProps& other) const
{
    return m_nDiameter == other.m_nDiameter && m_nDensity == other.m_nDensity && m_dRange == other.m_dRange &&
           m_nSpeed == other.m_nSpeed && m_clColor.rgb() == other.m_clColor.rgb() &&
           m_nShape == other.m_nShape;
}
