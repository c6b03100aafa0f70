#include "VTSymbolElement.h"

#include "VTElementReader.h"
#include "VTJsonReader.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTSymbol.h"

#include <QJsonObject>

VTSymbolElement::VTSymbolElement(const VTSymbolElement& other)
    : VTElement(other)
    , m_pResource(other.m_pResource)
    , m_bAutoplay(other.m_bAutoplay)
{}

// Uses are given back by detachResources, not here: at the end of a project the resources may go
// before the scenes, and an element kept for undo is detached already.
VTSymbolElement::~VTSymbolElement() = default;

VTElement* VTSymbolElement::clone() const
{
    return new VTSymbolElement(*this);
}

void VTSymbolElement::setSymbolResource(VTResource* pResource)
{
    if (pResource == m_pResource)
        return;
    if (m_bAttached && m_pResource)
        m_pResource->decreaseUsageCount();
    m_pResource = pResource;
    if (m_bAttached && m_pResource)
        m_pResource->increaseUsageCount();
    updateSymbolLayoutId();
}

void VTSymbolElement::prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const
{
    VTElement::prepareResourceMap(mapResources);
    if (m_pResource && !mapResources.contains(m_pResource))
        mapResources.insert(m_pResource, nullptr);
}

void VTSymbolElement::updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources)
{
    VTElement::updateResourceMap(mapResources);
    if (VTResource* pMapped = mapResources.value(m_pResource, nullptr))
        setSymbolResource(pMapped);
}

void VTSymbolElement::attachResources()
{
    VTElement::attachResources();
    if (m_bAttached)
        return;
    m_bAttached = true;
    if (m_pResource)
        m_pResource->increaseUsageCount();
}

void VTSymbolElement::detachResources()
{
    VTElement::detachResources();
    if (!m_bAttached)
        return;
    m_bAttached = false;
    if (m_pResource)
        m_pResource->decreaseUsageCount();
}

void VTSymbolElement::setCurrentLayoutID(const VTLayoutKey& key)
{
    VTElement::setCurrentLayoutID(key);
    updateSymbolLayoutId();
}

void VTSymbolElement::updateSymbolLayoutId()
{
    VTResourceManager* pManager = m_pResource ? m_pResource->getManager() : nullptr;
    VTSymbol* pSymbol = pManager ? pManager->getSymbolForResource(m_pResource) : nullptr;
    // Only a change goes on: besides saving work, it stops at once should a symbol ever reach
    // itself, which loading refuses but an edit could still attempt.
    if (pSymbol && pSymbol->getCurrentLayoutId(false) != getCurrentLayoutID())
        pSymbol->setCurrentLayoutId(getCurrentLayoutID());
}

void VTSymbolElement::serialize(QJsonObject& json) const
{
    VTElement::serialize(json);
    json.insert(QStringLiteral("resourceId"), m_pResource ? m_pResource->getId() : -1);
    json.insert(QStringLiteral("autoplay"), m_bAutoplay);
}

bool VTSymbolElement::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    if (!VTElement::parse(json, pManager, pProblems))
        return false;
    const QString context = tr("symbol instance \"%1\"").arg(getName());
    const VTJsonReader reader(json, context, pProblems);
    m_bAutoplay = reader.readBool(QStringLiteral("autoplay"), false);
    const int nResourceId = reader.readInt(QStringLiteral("resourceId"), -1);
    VTResource* pResource = pManager && nResourceId >= 0 ? pManager->findResourceById(nResourceId) : nullptr;
    if (!pResource || pResource->getType() != VTResource::Symbol) {
        VTElementReader::report(pProblems, context,
                                tr("\"resourceId\" %1 names no symbol resource.").arg(nResourceId));
        return false;
    }
    if (m_bAttached && m_pResource)
        m_pResource->decreaseUsageCount();
    m_pResource = pResource;
    m_bAttached = true;
    m_pResource->increaseUsageCount();
    return true;
}

void VTSymbolElement::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const
{
    VTElement::serializeToExport(json, bSingleLayout, bWithEvents);
    json.insert(QStringLiteral("rs"), m_pResource ? m_pResource->getId() : -1);
    json.insert(QStringLiteral("ap"), !bSingleLayout && bWithEvents && m_bAutoplay);
}
