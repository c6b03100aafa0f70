#include "VTBorder.h"

#include "VTPropertyJson.h"

#include <QJsonArray>
#include <QJsonObject>

VTBorder::VTBorder(QObject* parent)
    : QObject(parent)
{}

VTBorder::VTBorder(const VTBorder& other)
    : QObject()
    , m_nStyle(other.m_nStyle)
    , m_nWidth(other.m_nWidth)
    , m_clBorderColor(other.m_clBorderColor)
{}

QString VTBorder::getStyleName(int nStyle)
{
    switch (nStyle) {
    case None:
        return tr("None");
    case Solid:
        return tr("Solid");
    case Dotted:
        return tr("Dotted");
    case Dashed:
        return tr("Dashed");
    default:
        return QString();
    }
}

void VTBorder::setStyle(int nStyle)
{
    if (nStyle >= None && nStyle <= Dashed)
        m_nStyle = nStyle;
}

bool VTBorder::operator==(const VTBorder& other) const
{
    return m_nStyle == other.m_nStyle && m_nWidth == other.m_nWidth &&
           m_clBorderColor.rgba() == other.m_clBorderColor.rgba();
}

void VTBorder::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("style"), m_nStyle);
    json.insert(QStringLiteral("width"), m_nWidth);
    json.insert(QStringLiteral("color"), VTPropertyJson::colorToJson(m_clBorderColor));
}

bool VTBorder::parse(const QJsonObject& json, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("border"), &lstProblems);
    m_nStyle = reader.readInt(QStringLiteral("style"), None, None, Dashed);
    // A negative width has no drawing; the player would drop the whole border rule.
    m_nWidth = reader.readInt(QStringLiteral("width"), 0, 0);
    m_clBorderColor = reader.readColor(QStringLiteral("color"), Qt::black);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTBorder::serializeToExport(QJsonArray& array) const
{
    if (m_nStyle == None)
        return;
    array.append(m_nStyle);
    array.append(m_nWidth);
    VTPropertyJson::appendExportColor(array, m_clBorderColor);
}
