#include "VTClip.h"

#include "VTPropertyJson.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

bool isClipUnit(int nUnit)
{
    return nUnit == VT::Pixel || nUnit == VT::Percent;
}

void setUnit(int& nField, int nUnit)
{
    if (isClipUnit(nUnit))
        nField = nUnit;
}

} // namespace

VTClip::VTClip(QObject* parent)
    : QObject(parent)
{}

VTClip::VTClip(const VTClip& other)
    : QObject()
    , m_nStyle(other.m_nStyle)
    , m_dCRectTop(other.m_dCRectTop)
    , m_dCRectRight(other.m_dCRectRight)
    , m_dCRectBottom(other.m_dCRectBottom)
    , m_dCRectLeft(other.m_dCRectLeft)
    , m_dCOvalVertex(other.m_dCOvalVertex)
    , m_dCOvalCoVertex(other.m_dCOvalCoVertex)
    , m_dCCircleRadius(other.m_dCCircleRadius)
    , m_nUnitRectTop(other.m_nUnitRectTop)
    , m_nUnitRectRight(other.m_nUnitRectRight)
    , m_nUnitRectBottom(other.m_nUnitRectBottom)
    , m_nUnitRectLeft(other.m_nUnitRectLeft)
    , m_nUnitOvalVertex(other.m_nUnitOvalVertex)
    , m_nUnitOvalCoVertex(other.m_nUnitOvalCoVertex)
    , m_nUnitCircleRadius(other.m_nUnitCircleRadius)
{}

QString VTClip::getStyleName(int nStyle)
{
    switch (nStyle) {
    case None:
        return tr("None");
    case Rectangle:
        return tr("Rectangle");
    case Circle:
        return tr("Circle");
    case Oval:
        return tr("Oval");
    default:
        return QString();
    }
}

void VTClip::setStyle(int nStyle)
{
    if (nStyle >= None && nStyle <= Oval)
        m_nStyle = nStyle;
}

void VTClip::setUnitRectTop(int nUnit)
{
    setUnit(m_nUnitRectTop, nUnit);
}

void VTClip::setUnitRectRight(int nUnit)
{
    setUnit(m_nUnitRectRight, nUnit);
}

void VTClip::setUnitRectBottom(int nUnit)
{
    setUnit(m_nUnitRectBottom, nUnit);
}

void VTClip::setUnitRectLeft(int nUnit)
{
    setUnit(m_nUnitRectLeft, nUnit);
}

void VTClip::setUnitOvalVertex(int nUnit)
{
    setUnit(m_nUnitOvalVertex, nUnit);
}

void VTClip::setUnitOvalCoVertex(int nUnit)
{
    setUnit(m_nUnitOvalCoVertex, nUnit);
}

void VTClip::setUnitCircleRadius(int nUnit)
{
    setUnit(m_nUnitCircleRadius, nUnit);
}

int VTClip::getUnitOfProperty(int nProperty) const
{
    switch (nProperty) {
    case VT::PropClipRectTop:
        return m_nUnitRectTop;
    case VT::PropClipRectRight:
        return m_nUnitRectRight;
    case VT::PropClipRectBottom:
        return m_nUnitRectBottom;
    case VT::PropClipRectLeft:
        return m_nUnitRectLeft;
    case VT::PropClipOvalVertex:
        return m_nUnitOvalVertex;
    case VT::PropClipOvalCoVertex:
        return m_nUnitOvalCoVertex;
    case VT::PropClipCircleRadius:
        return m_nUnitCircleRadius;
    default:
        return -1;
    }
}

bool VTClip::operator==(const VTClip& other) const
{
    return m_nStyle == other.m_nStyle && m_dCRectTop == other.m_dCRectTop &&
           m_dCRectRight == other.m_dCRectRight && m_dCRectBottom == other.m_dCRectBottom &&
           m_dCRectLeft == other.m_dCRectLeft && m_dCOvalVertex == other.m_dCOvalVertex &&
           m_dCOvalCoVertex == other.m_dCOvalCoVertex && m_dCCircleRadius == other.m_dCCircleRadius &&
           m_nUnitRectTop == other.m_nUnitRectTop && m_nUnitRectRight == other.m_nUnitRectRight &&
           m_nUnitRectBottom == other.m_nUnitRectBottom && m_nUnitRectLeft == other.m_nUnitRectLeft &&
           m_nUnitOvalVertex == other.m_nUnitOvalVertex && m_nUnitOvalCoVertex == other.m_nUnitOvalCoVertex &&
           m_nUnitCircleRadius == other.m_nUnitCircleRadius;
}

void VTClip::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("s"), m_nStyle);
    json.insert(QStringLiteral("rt"), m_dCRectTop);
    json.insert(QStringLiteral("rr"), m_dCRectRight);
    json.insert(QStringLiteral("rb"), m_dCRectBottom);
    json.insert(QStringLiteral("rl"), m_dCRectLeft);
    json.insert(QStringLiteral("urt"), m_nUnitRectTop);
    json.insert(QStringLiteral("urr"), m_nUnitRectRight);
    json.insert(QStringLiteral("urb"), m_nUnitRectBottom);
    json.insert(QStringLiteral("url"), m_nUnitRectLeft);
    json.insert(QStringLiteral("ov"), m_dCOvalVertex);
    json.insert(QStringLiteral("oc"), m_dCOvalCoVertex);
    json.insert(QStringLiteral("uov"), m_nUnitOvalVertex);
    json.insert(QStringLiteral("uoc"), m_nUnitOvalCoVertex);
    json.insert(QStringLiteral("cc"), m_dCCircleRadius);
    json.insert(QStringLiteral("ucc"), m_nUnitCircleRadius);
}

bool VTClip::parse(const QJsonObject& json, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("clip"), &lstProblems);
    m_nStyle = reader.readInt(QStringLiteral("s"), None, None, Oval);
    // Insets may be negative, which grows the visible area; radii may not, CSS drops the shape.
    m_dCRectTop = reader.readDouble(QStringLiteral("rt"), 0.0);
    m_dCRectRight = reader.readDouble(QStringLiteral("rr"), 0.0);
    m_dCRectBottom = reader.readDouble(QStringLiteral("rb"), 0.0);
    m_dCRectLeft = reader.readDouble(QStringLiteral("rl"), 0.0);
    m_nUnitRectTop = reader.readUnit(QStringLiteral("urt"));
    m_nUnitRectRight = reader.readUnit(QStringLiteral("urr"));
    m_nUnitRectBottom = reader.readUnit(QStringLiteral("urb"));
    m_nUnitRectLeft = reader.readUnit(QStringLiteral("url"));
    m_dCOvalVertex = reader.readDouble(QStringLiteral("ov"), 0.25, 0.0);
    m_dCOvalCoVertex = reader.readDouble(QStringLiteral("oc"), 0.5, 0.0);
    m_nUnitOvalVertex = reader.readInt(QStringLiteral("uov"), VT::Percent, VT::Pixel, VT::Percent);
    m_nUnitOvalCoVertex = reader.readInt(QStringLiteral("uoc"), VT::Percent, VT::Pixel, VT::Percent);
    m_dCCircleRadius = reader.readDouble(QStringLiteral("cc"), 0.5, 0.0);
    m_nUnitCircleRadius = reader.readInt(QStringLiteral("ucc"), VT::Percent, VT::Pixel, VT::Percent);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTClip::serializeToExport(QJsonArray& array) const
{
    switch (m_nStyle) {
    case Rectangle:
        array.append(Rectangle);
        array.append(VTPropertyJson::toExportLength(m_dCRectTop, m_nUnitRectTop));
        array.append(VTPropertyJson::toExportLength(m_dCRectRight, m_nUnitRectRight));
        array.append(VTPropertyJson::toExportLength(m_dCRectBottom, m_nUnitRectBottom));
        array.append(VTPropertyJson::toExportLength(m_dCRectLeft, m_nUnitRectLeft));
        break;
    case Circle:
        array.append(Circle);
        array.append(VTPropertyJson::toExportLength(m_dCCircleRadius, m_nUnitCircleRadius));
        break;
    case Oval:
        array.append(Oval);
        array.append(VTPropertyJson::toExportLength(m_dCOvalVertex, m_nUnitOvalVertex));
        array.append(VTPropertyJson::toExportLength(m_dCOvalCoVertex, m_nUnitOvalCoVertex));
        break;
    default:
        break;
    }
}
