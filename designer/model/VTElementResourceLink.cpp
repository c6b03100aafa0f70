#include "VTElementResourceLink.h"

#include "VTJsonReader.h"
#include "VTResource.h"
#include "VTResourceManager.h"

#include <QJsonObject>

int VTElementResourceLink::getId() const
{
    return m_pResource ? m_pResource->getId() : -1;
}

void VTElementResourceLink::set(VTResource* pResource)
{
    // Only a counted use may be given back; a detached copy never took one.
    if (m_bAttached && m_pResource)
        m_pResource->decreaseUsageCount();
    m_pResource = pResource;
    if (m_pResource)
        m_pResource->increaseUsageCount();
    m_bAttached = true;
}

void VTElementResourceLink::attach()
{
    if (m_bAttached)
        return;
    m_bAttached = true;
    if (m_pResource)
        m_pResource->increaseUsageCount();
}

void VTElementResourceLink::detach()
{
    if (!m_bAttached)
        return;
    m_bAttached = false;
    if (m_pResource)
        m_pResource->decreaseUsageCount();
}

void VTElementResourceLink::prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const
{
    if (m_pResource && !mapResources.contains(m_pResource))
        mapResources.insert(m_pResource, nullptr);
}

void VTElementResourceLink::updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources)
{
    VTResource* pMapped = mapResources.value(m_pResource, nullptr);
    if (m_pResource && pMapped && pMapped != m_pResource)
        set(pMapped);
}

VTResource* VTElementResourceLink::findForFile(const VTResourceManager* pManager, int nId,
                                               std::initializer_list<int> acceptedTypes, int nFallbackType,
                                               bool* pbFallback)
{
    if (pbFallback)
        *pbFallback = false;
    if (!pManager)
        return nullptr;
    if (nId >= 0) {
        VTResource* pResource = pManager->findResourceById(nId);
        if (pResource) {
            for (const int nType : acceptedTypes) {
                if (pResource->getType() == nType)
                    return pResource;
            }
        }
    }
    const QList<VTResource*> lstCandidates = pManager->getResourcesByType(nFallbackType, true);
    if (lstCandidates.isEmpty())
        return nullptr;
    if (pbFallback)
        *pbFallback = true;
    return lstCandidates.last();
}

QString VTElementResourceLink::describeElement(const QJsonObject& json)
{
    const QString name = json.value(QStringLiteral("name")).toString();
    if (!name.isEmpty())
        return tr("element \"%1\"").arg(name);
    const QJsonValue id = json.value(QStringLiteral("id"));
    return VTJsonReader::isInt(id) ? tr("element with id %1").arg(id.toInt()) : tr("unnamed element");
}

VTResource* VTElementResourceLink::readResource(const QJsonObject& json, const VTResourceManager* pManager,
                                                std::initializer_list<int> acceptedTypes, int nFallbackType,
                                                const QString& kindText, QStringList* pProblems)
{
    const VTJsonReader reader(json, describeElement(json), pProblems);
    const int nId = reader.readInt(QStringLiteral("resourceId"), -1);
    bool bFallback = false;
    VTResource* pResource = findForFile(pManager, nId, acceptedTypes, nFallbackType, &bFallback);
    if (!pResource) {
        reader.report(tr("resource %1 is no %2 of the project, and the project has no other; the element "
                         "is left out.")
                          .arg(QString::number(nId), kindText));
    } else if (bFallback) {
        reader.report(tr("resource %1 is no %2 of the project; resource %3 \"%4\" is shown instead.")
                          .arg(QString::number(nId), kindText, QString::number(pResource->getId()),
                               pResource->getName()));
    }
    return pResource;
}
