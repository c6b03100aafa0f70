#pragma once

#include "VTElement.h"
#include "VTElementResourceLink.h"
#include "VTImageProperty.h"

#include <QString>

class QJsonObject;

// A picture on the stage. The image resource is the same in all layouts; where the picture sits
// inside the element's box differs per layout and lives in the blocks.
//
// The element holds one use of its resource while it is part of the project (see
// VTElementResourceLink). A copy shows the same resource but counts only once it is attached.
class VTImage : public VTElement
{
    Q_OBJECT
public:
    VTImage() = default;
    VTImage(const VTImage& other) = default;

    VTElement* clone() const override;
    VT::ElementType getType() const override { return VT::ImageElement; }
    // The aspect ratio is locked: a picture is rarely meant to be distorted.
    void initDefault() override;

    void prepareResourceMap(QMap<VTResource*, VTResource*>& mapResources) const override;
    void updateResourceMap(const QMap<VTResource*, VTResource*>& mapResources) override;
    void attachResources() override;
    void detachResources() override;

    // Adds "resourceId".
    void serialize(QJsonObject& json) const override;
    // Adds "rs", the resource id or -1.
    void serializeToExport(QJsonObject& json, bool bSingleLayout, bool bWithEvents) const override;
    // A "resourceId" that names no image of the project falls back to the last image in id order;
    // without any image the element cannot stand and false is returned.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;

    VTResource* getImageResource() const { return m_resource.get(); }
    // Moves the use from the old resource to the new one; the element counts from now on.
    void setImageResource(VTResource* pResource) { m_resource.set(pResource); }
    bool isResourceAttached() const { return m_resource.isAttached(); }

    // The block of a layout as an image block; null when there is none.
    VTImageProperty* getImageProperty(const VTLayoutKey& key = kCurrent) const;
    // The eight placement keys of a layout, as the stage reads them.
    void getBgImgData(QJsonObject& json, const VTLayoutKey& key = kCurrent) const;

    double getBgImageX(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageX);
    }
    void setBgImageX(double dValue, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageX, dValue);
    }
    double getBgImageY(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageY);
    }
    void setBgImageY(double dValue, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageY, dValue);
    }
    double getBgImageW(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageW);
    }
    void setBgImageW(double dValue, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageW, dValue);
    }
    double getBgImageH(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageH);
    }
    void setBgImageH(double dValue, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageH, dValue);
    }
    int getBgImageUnitX(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageUnitX);
    }
    void setBgImageUnitX(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageUnitX, nUnit);
    }
    int getBgImageUnitY(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageUnitY);
    }
    void setBgImageUnitY(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageUnitY, nUnit);
    }
    int getBgImageUnitW(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageUnitW);
    }
    void setBgImageUnitW(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageUnitW, nUnit);
    }
    int getBgImageUnitH(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getBgImageUnitH);
    }
    void setBgImageUnitH(int nUnit, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setBgImageUnitH, nUnit);
    }
    QString getAlt(const VTLayoutKey& key = kCurrent) const
    {
        return readImage(key, &VTImageProperty::getAlt);
    }
    void setAlt(const QString& alt, const VTLayoutKey& key = kCurrent)
    {
        writeImage(key, &VTImageProperty::setAlt, alt);
    }

private:
    template <typename T> T readImage(const VTLayoutKey& key, T (VTImageProperty::*fnRead)() const) const
    {
        const VTImageProperty* pBlock = getImageProperty(key);
        return pBlock ? (pBlock->*fnRead)() : T();
    }
    template <typename Arg, typename Value>
    void writeImage(const VTLayoutKey& key, void (VTImageProperty::*fnWrite)(Arg), const Value& value)
    {
        if (VTImageProperty* pBlock = getImageProperty(key))
            (pBlock->*fnWrite)(value);
    }

    VTElementResourceLink m_resource;
};
