#include "VTImageProperty.h"

#include "VTPropertyJson.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

bool isPlacementUnit(int nUnit)
{
    return nUnit == VT::Pixel || nUnit == VT::Percent;
}

const QString kAlt = QStringLiteral("alt");

} // namespace

VTImageProperty::VTImageProperty(QObject* parent)
    : VTElementProperty(parent)
{}

VTImageProperty::VTImageProperty(const VTImageProperty& other)
    : VTElementProperty(other)
    , m_dBgImageX(other.m_dBgImageX)
    , m_dBgImageY(other.m_dBgImageY)
    , m_dBgImageW(other.m_dBgImageW)
    , m_dBgImageH(other.m_dBgImageH)
    , m_nBgImageUnitX(other.m_nBgImageUnitX)
    , m_nBgImageUnitY(other.m_nBgImageUnitY)
    , m_nBgImageUnitW(other.m_nBgImageUnitW)
    , m_nBgImageUnitH(other.m_nBgImageUnitH)
    , m_strAlt(other.m_strAlt)
{}

VTElementProperty* VTImageProperty::clone() const
{
    return new VTImageProperty(*this);
}

void VTImageProperty::setBgImageUnitX(int nUnit)
{
    if (isPlacementUnit(nUnit))
        m_nBgImageUnitX = nUnit;
}

void VTImageProperty::setBgImageUnitY(int nUnit)
{
    if (isPlacementUnit(nUnit))
        m_nBgImageUnitY = nUnit;
}

void VTImageProperty::setBgImageUnitW(int nUnit)
{
    if (isPlacementUnit(nUnit))
        m_nBgImageUnitW = nUnit;
}

void VTImageProperty::setBgImageUnitH(int nUnit)
{
    if (isPlacementUnit(nUnit))
        m_nBgImageUnitH = nUnit;
}

int VTImageProperty::getPropertyUnit(int nProperty) const
{
    switch (nProperty) {
    case VT::PropBackgroundX:
        return m_nBgImageUnitX;
    case VT::PropBackgroundY:
        return m_nBgImageUnitY;
    case VT::PropBackgroundWidth:
        return m_nBgImageUnitW;
    case VT::PropBackgroundHeight:
        return m_nBgImageUnitH;
    default:
        return VTElementProperty::getPropertyUnit(nProperty);
    }
}

void VTImageProperty::serializeBgImage(QJsonObject& json) const
{
    json.insert(QStringLiteral("bgImgX"), m_dBgImageX);
    json.insert(QStringLiteral("bgImgY"), m_dBgImageY);
    json.insert(QStringLiteral("bgImgWidth"), m_dBgImageW);
    json.insert(QStringLiteral("bgImgHeight"), m_dBgImageH);
    json.insert(QStringLiteral("bgImgXUnit"), m_nBgImageUnitX);
    json.insert(QStringLiteral("bgImgYUnit"), m_nBgImageUnitY);
    json.insert(QStringLiteral("bgImgWUnit"), m_nBgImageUnitW);
    json.insert(QStringLiteral("bgImgHUnit"), m_nBgImageUnitH);
}

void VTImageProperty::serialize(QJsonObject& json) const
{
    VTElementProperty::serialize(json);
    serializeBgImage(json);
    // Older readers do not know the key, so a file without alternative texts stays as it was.
    if (!m_strAlt.isEmpty())
        json.insert(kAlt, m_strAlt);
}

bool VTImageProperty::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("layout properties"), &lstProblems);
    m_dBgImageX = reader.readDouble(QStringLiteral("bgImgX"), 0.0);
    m_dBgImageY = reader.readDouble(QStringLiteral("bgImgY"), 0.0);
    // CSS drops a negative background size, and the picture would then show at its own size.
    m_dBgImageW = reader.readDouble(QStringLiteral("bgImgWidth"), 0.0, 0.0);
    m_dBgImageH = reader.readDouble(QStringLiteral("bgImgHeight"), 0.0, 0.0);
    m_nBgImageUnitX = reader.readUnit(QStringLiteral("bgImgXUnit"));
    m_nBgImageUnitY = reader.readUnit(QStringLiteral("bgImgYUnit"));
    m_nBgImageUnitW = reader.readUnit(QStringLiteral("bgImgWUnit"));
    m_nBgImageUnitH = reader.readUnit(QStringLiteral("bgImgHUnit"));
    m_strAlt = reader.readString(kAlt);

    VTElementProperty::parse(json, pManager, &lstProblems);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

QStringList VTImageProperty::serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const
{
    QStringList lstDrop = VTElementProperty::serializeToExport(json, bFirstBlock, bOverride);
    if (isGroupWritten(bOverride, {VT::PropBackgroundX, VT::PropBackgroundY, VT::PropBackgroundWidth,
                                   VT::PropBackgroundHeight})) {
        json.insert(QStringLiteral("ir"),
                    QJsonArray{VTPropertyJson::toExportLength(m_dBgImageX, m_nBgImageUnitX),
                               VTPropertyJson::toExportLength(m_dBgImageY, m_nBgImageUnitY),
                               VTPropertyJson::toExportLength(m_dBgImageW, m_nBgImageUnitW),
                               VTPropertyJson::toExportLength(m_dBgImageH, m_nBgImageUnitH)});
    }
    return lstDrop;
}
