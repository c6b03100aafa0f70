#include "VTCorner.h"

#include "VTPropertyJson.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

bool isCornerUnit(int nUnit)
{
    return nUnit == VT::Pixel || nUnit == VT::Percent;
}

} // namespace

VTCorner::VTCorner(QObject* parent)
    : QObject(parent)
{}

VTCorner::VTCorner(const VTCorner& other)
    : QObject()
    , m_nTopLeft(other.m_nTopLeft)
    , m_nTopRight(other.m_nTopRight)
    , m_nBottomLeft(other.m_nBottomLeft)
    , m_nBottomRight(other.m_nBottomRight)
    , m_nUnitTopLeft(other.m_nUnitTopLeft)
    , m_nUnitTopRight(other.m_nUnitTopRight)
    , m_nUnitBottomLeft(other.m_nUnitBottomLeft)
    , m_nUnitBottomRight(other.m_nUnitBottomRight)
{}

void VTCorner::setUnitTopLeft(int nUnit)
{
    if (isCornerUnit(nUnit))
        m_nUnitTopLeft = nUnit;
}

void VTCorner::setUnitTopRight(int nUnit)
{
    if (isCornerUnit(nUnit))
        m_nUnitTopRight = nUnit;
}

void VTCorner::setUnitBottomLeft(int nUnit)
{
    if (isCornerUnit(nUnit))
        m_nUnitBottomLeft = nUnit;
}

void VTCorner::setUnitBottomRight(int nUnit)
{
    if (isCornerUnit(nUnit))
        m_nUnitBottomRight = nUnit;
}

bool VTCorner::isAllZero() const
{
    return m_nTopLeft == 0.0 && m_nTopRight == 0.0 && m_nBottomLeft == 0.0 && m_nBottomRight == 0.0;
}

bool VTCorner::operator==(const VTCorner& other) const
{
    return m_nTopLeft == other.m_nTopLeft && m_nTopRight == other.m_nTopRight &&
           m_nBottomLeft == other.m_nBottomLeft && m_nBottomRight == other.m_nBottomRight &&
           m_nUnitTopLeft == other.m_nUnitTopLeft && m_nUnitTopRight == other.m_nUnitTopRight &&
           m_nUnitBottomLeft == other.m_nUnitBottomLeft && m_nUnitBottomRight == other.m_nUnitBottomRight;
}

void VTCorner::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("tl"), m_nTopLeft);
    json.insert(QStringLiteral("tr"), m_nTopRight);
    json.insert(QStringLiteral("bl"), m_nBottomLeft);
    json.insert(QStringLiteral("br"), m_nBottomRight);
    json.insert(QStringLiteral("unitTL"), m_nUnitTopLeft);
    json.insert(QStringLiteral("unitTR"), m_nUnitTopRight);
    json.insert(QStringLiteral("unitBL"), m_nUnitBottomLeft);
    json.insert(QStringLiteral("unitBR"), m_nUnitBottomRight);
}

bool VTCorner::parse(const QJsonObject& json, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("corner"), &lstProblems);
    // CSS rejects a negative radius, and with it the whole rule.
    m_nTopLeft = reader.readDouble(QStringLiteral("tl"), 0.0, 0.0);
    m_nTopRight = reader.readDouble(QStringLiteral("tr"), 0.0, 0.0);
    m_nBottomLeft = reader.readDouble(QStringLiteral("bl"), 0.0, 0.0);
    m_nBottomRight = reader.readDouble(QStringLiteral("br"), 0.0, 0.0);
    m_nUnitTopLeft = reader.readUnit(QStringLiteral("unitTL"));
    m_nUnitTopRight = reader.readUnit(QStringLiteral("unitTR"));
    m_nUnitBottomLeft = reader.readUnit(QStringLiteral("unitBL"));
    m_nUnitBottomRight = reader.readUnit(QStringLiteral("unitBR"));
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTCorner::serializeToExport(QJsonArray& array) const
{
    if (isAllZero())
        return;
    array.append(VTPropertyJson::toExportLength(m_nTopLeft, m_nUnitTopLeft));
    array.append(VTPropertyJson::toExportLength(m_nTopRight, m_nUnitTopRight));
    array.append(VTPropertyJson::toExportLength(m_nBottomLeft, m_nUnitBottomLeft));
    array.append(VTPropertyJson::toExportLength(m_nBottomRight, m_nUnitBottomRight));
}
