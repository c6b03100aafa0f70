#pragma once

#include "VTElement.h"
#include "VTElementResourceLink.h"

#include <QString>

class QJsonObject;

// A frame that shows a web page: an address, an HTML or image resource of the project, or inline
// HTML. What it shows holds for all layouts and lives on the element.
//
// While it shows a resource the element holds one use of it as long as it is part of the project
// (see VTElementResourceLink).
class VTHTMLWidget : public VTElement
{
    Q_OBJECT
public:
    // Longer texts in a file are not taken; real addresses and pages stay far below.
    static constexpr int kMaxUrlLength = 1 << 20;
    static constexpr int kMaxSrcDocLength = 1 << 22;

    VTHTMLWidget() = default;
    VTHTMLWidget(const VTHTMLWidget& other) = default;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::HTMLWidgetElement; }
    // No fill, so the page shows through, and a solid border that marks the frame on the stage.
    void initDefault() override;

    void prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const override;
    void updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources) override;
    void attachResources() override;
    void detachResources() override;

    // Adds "useresource", "srcdoc", and "resourceId" or "url", whichever is in use.
    void serialize(QJsonObject& json) const override;
    // Adds "useresource", "srcdoc", and "rs" or "url", whichever is in use.
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const override;
    // With "useresource", a "resourceId" that names no image or HTML resource falls back to the
    // last image in id order; without any image the element cannot stand and false is returned.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;

    QString getUrl() const { return m_strUrl; }
    void setUrl(const QString& url) { m_strUrl = url; }
    QString getSrcHTML() const { return m_strSrcDoc; }
    void setSrcHTML(const QString& html) { m_strSrcDoc = html; }
    bool isUseResource() const { return m_bUseResource; }
    void setUseResource(bool bUseResource) { m_bUseResource = bUseResource; }

    VTResource* getHTMLResource() const { return m_resource.get(); }
    // Moves the use from the old resource to the new one; the element counts from now on.
    void setHTMLResource(VTResource* pResource) { m_resource.set(pResource); }
    bool isResourceAttached() const { return m_resource.isAttached(); }

private:
    VTElementResourceLink m_resource;
    QString m_strUrl;
    QString m_strSrcDoc;
    bool m_bUseResource = false;
};
