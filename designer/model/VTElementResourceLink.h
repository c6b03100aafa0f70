#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

#include <initializer_list>

class QJsonObject;
class VTResource;
class VTResourceManager;

// The one resource that an image, media or HTML widget element shows, with the element's share of
// the resource's usage count. The count is held exactly while the link is attached, that is, while
// the element is part of the project; a copy is detached until whoever adds it attaches it. The
// destructor leaves the count alone, as backgrounds do: at shutdown the resources may be gone, and
// an element removed by a command has been detached before.
class VTElementResourceLink final
{
    Q_DECLARE_TR_FUNCTIONS(VTElementResourceLink)
public:
    VTElementResourceLink() = default;
    // Same resource, detached.
    VTElementResourceLink(const VTElementResourceLink& other)
        : m_pResource(other.m_pResource)
    {}
    VTElementResourceLink& operator=(const VTElementResourceLink&) = delete;

    VTResource* get() const { return m_pResource; }
    int getId() const;
    bool isAttached() const { return m_bAttached; }
    // Moves the use from the old resource to the new one and counts from now on.
    void set(VTResource* pResource);
    void attach();
    void detach();
    void prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const;
    // An absent key, a null value or the same resource changes nothing.
    void updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources);

    // The resource a file names by id when its type is one of the accepted ones; else the last one
    // of the fallback type in id order that is not deleted; else null. *pbFallback tells whether
    // the fallback was taken.
    static VTResource* findForFile(const VTResourceManager* pManager, int nId,
                                   std::initializer_list<int> acceptedTypes, int nFallbackType,
                                   bool* pbFallback);
    // How problem lines name an element that is being read: by name, or by id when it has none.
    static QString describeElement(const QJsonObject& json);
    // Reads the element's "resourceId" and settles the resource as findForFile does, reporting a
    // replacement or the lack of any resource. Returns null when there is none at all.
    static VTResource* readResource(const QJsonObject& json, const VTResourceManager* pManager,
                                    std::initializer_list<int> acceptedTypes, int nFallbackType,
                                    const QString& kindText, QStringList* pProblems);

private:
    VTResource* m_pResource = nullptr;
    bool m_bAttached = false;
};
