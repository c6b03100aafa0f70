#pragma once

#include "VTTextProperty.h"

class VTCorner;

// A div's block: text like a text element, plus rounded corners. The corner is a child object so
// that animation reaches its radii as the corner's own Qt properties.
class VTDivProperty : public VTTextProperty
{
    Q_OBJECT
public:
    explicit VTDivProperty(QObject* parent = nullptr);
    // Deep copy; the corner is copied too.
    VTDivProperty(const VTDivProperty& other);

    VTElementProperty* clone() const override;
    // Adds the object "corner".
    void serialize(QJsonObject& json) const override;
    // Adds "lr" with the four radii; nothing, and "lr" in the drop list, when all are 0.
    QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const override;
    // Reads "corner", then the text block. A missing "corner" gives square corners.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;
    // The radii have units of their own.
    int getPropertyUnit(int nProperty) const override;

    VTCorner* getCorner() const { return m_pCorner; }

private:
    VTCorner* m_pCorner = nullptr;
};
