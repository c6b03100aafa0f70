#include "VTFontResource.h"

#include "VTGoogleFontInfo.h"

VTFontResource::VTFontResource()
    : VTResource(Font)
{}

VTFontResource::VTFontResource(const VTFontResource& other)
    : VTResource(other)
    , m_pGoogleFontInfo(other.m_pGoogleFontInfo ? other.m_pGoogleFontInfo->clone() : nullptr)
    , m_strFamilyName(other.m_strFamilyName)
{}

VTFontResource::~VTFontResource() = default;

VTResource* VTFontResource::clone() const
{
    auto* pCopy = new VTFontResource(*this);
    pCopy->setId(-1);
    pCopy->setUsageCount(0);
    return pCopy;
}

void VTFontResource::setGoogleFontInfo(VTGoogleFontInfo* pInfo)
{
    m_pGoogleFontInfo.reset(pInfo);
}

void VTFontResource::serialize(QJsonObject& object) const
{
    VTResource::serialize(object);
    if (m_pGoogleFontInfo) {
        QJsonObject info;
        m_pGoogleFontInfo->serializeToJson(info);
        object.insert(QStringLiteral("googlefont"), info);
    }
}
