#include "VTImage.h"

#include "VTResource.h"

#include <QJsonObject>

VTElement* VTImage::clone() const
{
    return new VTImage(*this);
}

void VTImage::initDefault()
{
    VTElement::initDefault();
    setLockAspectRatio(true);
}

void VTImage::prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const
{
    VTElement::prepareResourceMap(mapResources);
    m_resource.prepareResourceMap(mapResources);
}

void VTImage::updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources)
{
    VTElement::updateResourceMap(mapResources);
    m_resource.updateResourceMap(mapResources);
}

void VTImage::attachResources()
{
    VTElement::attachResources();
    m_resource.attach();
}

void VTImage::detachResources()
{
    VTElement::detachResources();
    m_resource.detach();
}

void VTImage::serialize(QJsonObject& json) const
{
    VTElement::serialize(json);
    json.insert(QStringLiteral("resourceId"), m_resource.getId());
}

void VTImage::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const
{
    VTElement::serializeToExport(json, bSingleLayout, bWithEvents);
    json.insert(QStringLiteral("rs"), m_resource.getId());
}

bool VTImage::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    VTResource* pResource = VTElementResourceLink::readResource(json, pManager, {VTResource::Image},
                                                                VTResource::Image, tr("image"), pProblems);
    if (!pResource)
        return false;
    m_resource.set(pResource);
    return VTElement::parse(json, pManager, pProblems);
}

VTImageProperty* VTImage::getImageProperty(const VTLayoutKey& key) const
{
    return qobject_cast<VTImageProperty*>(getLayoutProperty(key));
}

void VTImage::getBgImgData(QJsonObject& json, const VTLayoutKey& key) const
{
    if (const VTImageProperty* pBlock = getImageProperty(key))
        pBlock->serializeBgImage(json);
}
