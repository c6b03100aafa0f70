#include "VTMedia.h"

#include "VTBorder.h"
#include "VTPropertyJson.h"
#include "VTResource.h"

#include <QJsonObject>

#include <cmath>

namespace {

const QString kResourceId = QStringLiteral("resourceId");
const QString kDuration = QStringLiteral("duration");
const QString kVolume = QStringLiteral("volume");
const QString kAutoplay = QStringLiteral("autoplay");
const QString kLoop = QStringLiteral("loop");
const QString kControls = QStringLiteral("controls");
const QString kPreload = QStringLiteral("preload");
const QString kInfoLoaded = QStringLiteral("mediaInfoLoaded");

} // namespace

VTMedia::VTMedia(VT::ElementType type)
    : m_nType(type == VT::AudioElement ? VT::AudioElement : VT::VideoElement)
    , m_bControls(m_nType == VT::AudioElement)
{}

VTElement* VTMedia::clone() const
{
    return new VTMedia(*this);
}

void VTMedia::initDefault()
{
    const bool bHadBase = getLayoutProperty(VTLayoutKey::base()) != nullptr;
    VTElement::initDefault();
    if (m_nType == VT::VideoElement)
        setLockAspectRatio(true);
    if (bHadBase)
        return;
    if (VTElementProperty* pBlock = getLayoutProperty(VTLayoutKey::base())) {
        pBlock->setSizeW(460.0);
        pBlock->setSizeH(m_nType == VT::AudioElement ? 30.0 : 250.0);
        pBlock->getBorder()->setWidth(0);
    }
}

void VTMedia::setDuration(int nDuration)
{
    if (nDuration >= 0)
        m_nDuration = nDuration;
}

void VTMedia::setVolume(double dVolume)
{
    if (std::isfinite(dVolume))
        m_dVolume = qBound(0.0, dVolume, 1.0);
}

void VTMedia::prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const
{
    VTElement::prepareResourceMap(mapResources);
    m_resource.prepareResourceMap(mapResources);
}

void VTMedia::updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources)
{
    VTElement::updateResourceMap(mapResources);
    m_resource.updateResourceMap(mapResources);
}

void VTMedia::attachResources()
{
    VTElement::attachResources();
    m_resource.attach();
}

void VTMedia::detachResources()
{
    VTElement::detachResources();
    m_resource.detach();
}

void VTMedia::serialize(QJsonObject& json) const
{
    VTElement::serialize(json);
    json.insert(kResourceId, m_resource.getId());
    json.insert(kDuration, m_nDuration);
    json.insert(kVolume, m_dVolume);
    json.insert(kAutoplay, m_bAutoplay);
    json.insert(kLoop, m_bLoop);
    json.insert(kControls, m_bControls);
    json.insert(kPreload, m_bPreload);
    json.insert(kInfoLoaded, m_bInfoLoaded);
}

void VTMedia::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const
{
    VTElement::serializeToExport(json, bSingleLayout, bWithEvents);
    const bool bPlayer = !bSingleLayout && bWithEvents;
    json.insert(QStringLiteral("rs"), m_resource.getId());
    json.insert(QStringLiteral("vol"), m_dVolume * 100.0);
    json.insert(QStringLiteral("ap"), bPlayer && m_bAutoplay);
    json.insert(QStringLiteral("lo"), m_bLoop);
    json.insert(QStringLiteral("ct"), m_bControls);
    json.insert(QStringLiteral("pl"), bSingleLayout || m_bPreload);
}

bool VTMedia::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    const QString kindText = m_nType == VT::AudioElement ? tr("sound or film") : tr("film or sound");
    VTResource* pResource = VTElementResourceLink::readResource(
        json, pManager, {VTResource::Audio, VTResource::Video},
        m_nType == VT::AudioElement ? VTResource::Audio : VTResource::Video, kindText, pProblems);
    if (!pResource)
        return false;
    m_resource.set(pResource);

    const VTPropertyJson reader(json, VTElementResourceLink::describeElement(json), pProblems);
    m_nDuration = reader.readInt(kDuration, 0, 0);
    m_dVolume = reader.readDouble(kVolume, 0.0, 0.0, 1.0);
    m_bAutoplay = reader.reader().readBool(kAutoplay, false);
    m_bLoop = reader.reader().readBool(kLoop, false);
    m_bControls = reader.reader().readBool(kControls, false);
    m_bPreload = reader.reader().readBool(kPreload, false);
    m_bInfoLoaded = reader.reader().readBool(kInfoLoaded, false);
    return VTElement::parse(json, pManager, pProblems);
}
