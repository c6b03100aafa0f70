#include "VTFreeFormArrowStyle.h"

#include "VTPropertyJson.h"

#include <QJsonObject>

VTFreeFormArrowStyle::VTFreeFormArrowStyle(int nStartType, int nStartSize, int nEndType, int nEndSize)
{
    setStartArrowType(nStartType);
    setStartArrowSize(nStartSize);
    setEndArrowType(nEndType);
    setEndArrowSize(nEndSize);
}

std::unique_ptr<VTFreeFormArrowStyle> VTFreeFormArrowStyle::clone() const
{
    return std::make_unique<VTFreeFormArrowStyle>(*this);
}

bool VTFreeFormArrowStyle::isEqual(const VTFreeFormArrowStyle* pA, const VTFreeFormArrowStyle* pB)
{
    if (!pA || !pB)
        return pA == pB;
    return *pA == *pB;
}

bool VTFreeFormArrowStyle::operator==(const VTFreeFormArrowStyle& other) const
{
    return m_nStartArrowType == other.m_nStartArrowType && m_nStartArrowSize == other.m_nStartArrowSize &&
           m_nEndArrowType == other.m_nEndArrowType && m_nEndArrowSize == other.m_nEndArrowSize;
}

QString VTFreeFormArrowStyle::getArrowTypeName(int nType)
{
    switch (nType) {
    case NoArrow:
        return tr("None");
    case Arrow:
        return tr("Arrow");
    case OpenArrow:
        return tr("Open");
    case StealthArrow:
        return tr("Stealth");
    case DiamondArrow:
        return tr("Diamond");
    case OvalArrow:
        return tr("Oval");
    default:
        return QString();
    }
}

QString VTFreeFormArrowStyle::getArrowTypeImageName(int nType, bool bStart)
{
    static const char* const names[] = {"no_arrow",      "arrow",         "open_arrow",
                                        "stealth_arrow", "diamond_arrow", "oval_arrow"};
    if (!isValidType(nType))
        return QString();
    return (bStart ? QStringLiteral("begin_") : QStringLiteral("end_")) + QLatin1String(names[nType]);
}

void VTFreeFormArrowStyle::setStartArrowType(int nType)
{
    if (isValidType(nType))
        m_nStartArrowType = nType;
}

void VTFreeFormArrowStyle::setStartArrowSize(int nSize)
{
    if (isValidSize(nSize))
        m_nStartArrowSize = nSize;
}

void VTFreeFormArrowStyle::setEndArrowType(int nType)
{
    if (isValidType(nType))
        m_nEndArrowType = nType;
}

void VTFreeFormArrowStyle::setEndArrowSize(int nSize)
{
    if (isValidSize(nSize))
        m_nEndArrowSize = nSize;
}

void VTFreeFormArrowStyle::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("start_arrow_type"), m_nStartArrowType);
    json.insert(QStringLiteral("start_arrow_size"), m_nStartArrowSize);
    json.insert(QStringLiteral("end_arrow_type"), m_nEndArrowType);
    json.insert(QStringLiteral("end_arrow_size"), m_nEndArrowSize);
}

bool VTFreeFormArrowStyle::parse(const QJsonObject& json, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("arrow"), &lstProblems);
    // The present values are the defaults, so that an absent or damaged key leaves its end alone.
    m_nStartArrowType =
        reader.readInt(QStringLiteral("start_arrow_type"), m_nStartArrowType, NoArrow, OvalArrow);
    m_nStartArrowSize =
        reader.readInt(QStringLiteral("start_arrow_size"), m_nStartArrowSize, kMinArrowSize, kMaxArrowSize);
    m_nEndArrowType = reader.readInt(QStringLiteral("end_arrow_type"), m_nEndArrowType, NoArrow, OvalArrow);
    m_nEndArrowSize =
        reader.readInt(QStringLiteral("end_arrow_size"), m_nEndArrowSize, kMinArrowSize, kMaxArrowSize);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}
