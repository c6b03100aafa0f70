#pragma once

#include "VTResource.h"

#include <memory>

class VTGoogleFontInfo;

// A font file of the project, or a family of the web font catalogue with the file downloaded
// for the stage.
class VTFontResource final : public VTResource
{
public:
    VTFontResource();
    ~VTFontResource() override;

    VTResource* clone() const override;
    bool acceptDrag() const override { return false; }

    // Null for a plain font file.
    VTGoogleFontInfo* getGoogleFontInfo() const { return m_pGoogleFontInfo.get(); }
    // Takes ownership.
    void setGoogleFontInfo(VTGoogleFontInfo* pInfo);

    // The family the font registered under in the application, once it has.
    QString getFamilyName() const { return m_strFamilyName; }
    void setFamilyName(const QString& family) { m_strFamilyName = family; }

    void serialize(QJsonObject& object) const override;

private:
    VTFontResource(const VTFontResource& other);

    std::unique_ptr<VTGoogleFontInfo> m_pGoogleFontInfo;
    QString m_strFamilyName;
};
