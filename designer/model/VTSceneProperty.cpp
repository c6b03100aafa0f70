#include "VTSceneProperty.h"

#include "VTPropertyJson.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

VTSceneProperty::VTSceneProperty(QObject* parent)
    : VTElementProperty(parent)
{}

VTSceneProperty::VTSceneProperty(const VTSceneProperty& other)
    : VTElementProperty(other)
    , m_dPerspectiveOrgX(other.m_dPerspectiveOrgX)
    , m_dPerspectiveOrgY(other.m_dPerspectiveOrgY)
    , m_dPerspectiveOrgZ(other.m_dPerspectiveOrgZ)
{}

VTElementProperty* VTSceneProperty::clone() const
{
    return new VTSceneProperty(*this);
}

void VTSceneProperty::setPerspectiveZ(double dValue)
{
    if (dValue >= 0.0)
        m_dPerspectiveOrgZ = dValue;
}

bool VTSceneProperty::isPreserved3D() const
{
    if (m_dPerspectiveOrgX != kDefaultPerspectiveX || m_dPerspectiveOrgY != kDefaultPerspectiveY ||
        m_dPerspectiveOrgZ != kDefaultPerspectiveZ)
        return true;
    return VTElementProperty::isPreserved3D();
}

void VTSceneProperty::serialize(QJsonObject& json) const
{
    VTElementProperty::serialize(json);
    json.insert(QStringLiteral("perspectiveOrgX"), m_dPerspectiveOrgX);
    json.insert(QStringLiteral("perspectiveOrgY"), m_dPerspectiveOrgY);
    json.insert(QStringLiteral("perspectiveOrgZ"), m_dPerspectiveOrgZ);
}

bool VTSceneProperty::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("layout properties"), &lstProblems);
    m_dPerspectiveOrgX = reader.readDouble(QStringLiteral("perspectiveOrgX"), kDefaultPerspectiveX);
    m_dPerspectiveOrgY = reader.readDouble(QStringLiteral("perspectiveOrgY"), kDefaultPerspectiveY);
    m_dPerspectiveOrgZ = reader.readDouble(QStringLiteral("perspectiveOrgZ"), kDefaultPerspectiveZ, 0.0);

    VTElementProperty::parse(json, pManager, &lstProblems);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

QStringList VTSceneProperty::serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const
{
    QStringList lstDrop = VTElementProperty::serializeToExport(json, bFirstBlock, bOverride);
    if (isGroupWritten(bOverride,
                       {VT::PropPerspectiveOriginX, VT::PropPerspectiveOriginY, VT::PropPerspectiveOriginZ}))
        json.insert(QStringLiteral("pso"),
                    QJsonArray{m_dPerspectiveOrgX * 100.0, m_dPerspectiveOrgY * 100.0, m_dPerspectiveOrgZ});
    return lstDrop;
}
