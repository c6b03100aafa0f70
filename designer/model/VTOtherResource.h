#pragma once

#include "VTResource.h"

// A script, a style sheet or an HTML file, either a file in the resource folder or, for scripts
// and style sheets, a URL that the page links. Being included in the page counts as a use.
class VTOtherResource final : public VTResource
{
public:
    enum OtherResourceType : int
    {
        ScriptFile = 0,
        ScriptUrl = 1,
        StyleSheetFile = 2,
        StyleSheetUrl = 3,
        HtmlFile = 4,
    };

    explicit VTOtherResource(ResourceType type);

    VTResource* clone() const override;
    QString getFileName4Export() const override;
    bool acceptDrag() const override { return m_nResourceType == HtmlFile; }

    OtherResourceType getResourceType() const { return m_nResourceType; }
    // Kinds below HtmlFile count their inclusion as a use.
    void setResourceType(OtherResourceType type);
    static OtherResourceType toOtherResourceType(int nValue);
    // The kind has a file in the resource folder rather than a URL.
    bool hasFile() const { return m_nResourceType != ScriptUrl && m_nResourceType != StyleSheetUrl; }

    bool isIncludeResource() const { return m_bIncludeResource; }
    void setIncludeResource(bool bInclude);

    // By suffix: "js" ScriptFile, "css" StyleSheetFile, anything else -1.
    static int getFileType(const QString& fileName);
    static QString getExtensionOfType(int nType);

    // The file's text as UTF-8; empty for a URL or without a manager.
    QString getContent() const;
    bool setContent(const QString& text);

    // The file the resource came from, to tell later whether it was edited since.
    QString getOriginalResource() const { return m_strOriginalResource; }
    void setOriginalResource(const QString& filePath);
    QString getOriginalContent() const;
    bool updateOriginalResource();
    bool isModified() const;

    void serialize(QJsonObject& object) const override;

private:
    VTOtherResource(const VTOtherResource& other) = default;
    static QString hashContent(const QString& text);

    OtherResourceType m_nResourceType = ScriptFile;
    bool m_bIncludeResource = true;
    QString m_strOriginalResource;
    QString m_strOriginalHash;
};
