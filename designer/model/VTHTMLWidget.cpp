#include "VTHTMLWidget.h"

#include "VTBackground.h"
#include "VTBorder.h"
#include "VTJsonReader.h"
#include "VTResource.h"

#include <QJsonObject>

namespace {

const QString kUrl = QStringLiteral("url");
const QString kSrcDoc = QStringLiteral("srcdoc");
const QString kUseResource = QStringLiteral("useresource");
const QString kResourceId = QStringLiteral("resourceId");

QString readLimitedString(const VTJsonReader& reader, const QString& key, int nMaxLength)
{
    const QString text = reader.readString(key);
    if (text.size() <= nMaxLength)
        return text;
    reader.report(VTHTMLWidget::tr("\"%1\" holds %2 characters, more than %3; it is left empty.")
                      .arg(key, QString::number(text.size()), QString::number(nMaxLength)));
    return QString();
}

} // namespace

VTElement* VTHTMLWidget::clone() const
{
    return new VTHTMLWidget(*this);
}

void VTHTMLWidget::initDefault()
{
    const bool bHadBase = getLayoutProperty(VTLayoutKey::base()) != nullptr;
    VTElement::initDefault();
    if (bHadBase)
        return;
    if (VTElementProperty* pBlock = getLayoutProperty(VTLayoutKey::base())) {
        pBlock->getBackground()->setFillStyle(VTBackground::NoFill);
        pBlock->getBorder()->setStyle(VTBorder::Solid);
    }
}

void VTHTMLWidget::prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const
{
    VTElement::prepareResourceMap(mapResources);
    m_resource.prepareResourceMap(mapResources);
}

void VTHTMLWidget::updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources)
{
    VTElement::updateResourceMap(mapResources);
    m_resource.updateResourceMap(mapResources);
}

void VTHTMLWidget::attachResources()
{
    VTElement::attachResources();
    m_resource.attach();
}

void VTHTMLWidget::detachResources()
{
    VTElement::detachResources();
    m_resource.detach();
}

void VTHTMLWidget::serialize(QJsonObject& json) const
{
    VTElement::serialize(json);
    json.insert(kUseResource, m_bUseResource);
    if (m_bUseResource)
        json.insert(kResourceId, m_resource.getId());
    else
        json.insert(kUrl, m_strUrl);
    json.insert(kSrcDoc, m_strSrcDoc);
}

void VTHTMLWidget::serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const
{
    VTElement::serializeToExport(json, bSingleLayout, bWithEvents);
    json.insert(kUseResource, m_bUseResource);
    if (m_bUseResource)
        json.insert(QStringLiteral("rs"), m_resource.getId());
    else
        json.insert(kUrl, m_strUrl);
    json.insert(kSrcDoc, m_strSrcDoc);
}

bool VTHTMLWidget::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    const VTJsonReader reader(json, VTElementResourceLink::describeElement(json), pProblems);
    const QString url = readLimitedString(reader, kUrl, kMaxUrlLength);
    const QString srcDoc = readLimitedString(reader, kSrcDoc, kMaxSrcDocLength);
    const bool bUseResource = reader.readBool(kUseResource, false);

    VTResource* pResource = nullptr;
    if (bUseResource) {
        pResource =
            VTElementResourceLink::readResource(json, pManager, {VTResource::Image, VTResource::Html},
                                                VTResource::Image, tr("image or HTML page"), pProblems);
        if (!pResource)
            return false;
    }
    m_resource.set(pResource);
    m_strUrl = url;
    m_strSrcDoc = srcDoc;
    m_bUseResource = bUseResource;
    return VTElement::parse(json, pManager, pProblems);
}
