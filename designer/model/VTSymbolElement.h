#pragma once

#include "VTElement.h"

class VTResource;

// An instance of a symbol resource on a scene. While attached it holds one use of the resource,
// so that the resource panel knows the symbol is placed and deletion can warn.
class VTSymbolElement final : public VTElement
{
    Q_OBJECT
public:
    VTSymbolElement() = default;
    // The same resource and auto-play; the copy holds no use until attachResources.
    VTSymbolElement(const VTSymbolElement& other);
    VTSymbolElement& operator=(const VTSymbolElement&) = delete;
    ~VTSymbolElement() override;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::SymbolElement; }

    VTResource* getSymbolResource() const { return m_pResource; }
    // An attached element moves its use from the old resource to the new one.
    void setSymbolResource(VTResource* pResource);
    bool isAttached() const { return m_bAttached; }
    bool isAutoplay() const { return m_bAutoplay; }
    void setAutoplay(bool bAutoplay) { m_bAutoplay = bAutoplay; }

    void prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const override;
    void updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources) override;
    void attachResources() override;
    void detachResources() override;

    // Passes the layout on to the placed symbol.
    void setCurrentLayoutID(const VTLayoutKey& key) override;
    void updateSymbolLayoutId();

    // Adds "resourceId" (-1 without resource) and "autoplay".
    void serialize(QJsonObject& json) const override;
    // False, so that the scene fails to load, when "resourceId" names no symbol resource. A read
    // element holds its use at once, as read backgrounds do.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;
    // Adds "rs" and "ap"; auto-play only in the player's form with events.
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const override;

private:
    VTResource* m_pResource = nullptr;
    bool m_bAttached = false;
    bool m_bAutoplay = false;
};
