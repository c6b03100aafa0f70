#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

// One family of the web font catalogue, as the catalogue describes it. A font resource that came
// from the catalogue keeps it, so the exported page can link the family instead of a file.
class VTGoogleFontInfo final
{
public:
    VTGoogleFontInfo() = default;

    VTGoogleFontInfo* clone() const { return new VTGoogleFontInfo(*this); }

    // Keys of the wrong type read as empty.
    void parseFromJson(const QJsonObject& object);
    void serializeToJson(QJsonObject& object) const;

    QString getFamily() const { return m_strFamily; }
    void setFamily(const QString& family) { m_strFamily = family; }
    QString getCategory() const { return m_strCategory; }
    void setCategory(const QString& category) { m_strCategory = category; }
    QStringList getSubsets() const { return m_lstSubsets; }
    void setSubsets(const QStringList& subsets) { m_lstSubsets = subsets; }
    QStringList getVariants() const { return m_lstVariants; }
    void setVariants(const QStringList& variants) { m_lstVariants = variants; }
    QMap<QString, QString> getFiles() const { return m_mapFiles; }
    void setFiles(const QMap<QString, QString>& files) { m_mapFiles = files; }

    // "Open+Sans:400,i,700": the family query that asks for every variant.
    QString getQueryWithAllVariants() const;
    // The variant to show or load when nothing in particular is asked for.
    QString getSuitableVariantForGoogleFontInfo(bool bForExport) const;
    // The variants that the used styles need, in the query form.
    QString getStringCombinedStyleVariantToExport(bool bBold, bool bItalic) const;

private:
    QString m_strFamily;
    QString m_strCategory;
    QStringList m_lstSubsets;
    QStringList m_lstVariants;
    QMap<QString, QString> m_mapFiles;
};
