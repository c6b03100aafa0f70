#pragma once

#include "VTAutoShapeTypes.h"
#include "VTTextProperty.h"

#include <QVector>

// A shape's block: text like a div, plus the shape number and the adjustment values that the
// stage sends. The model never interprets the adjustments; it keeps them per layout and gives them
// back in the file and the export.
class VTAutoShapeProperty : public VTTextProperty
{
    Q_OBJECT
public:
    // Real shapes take a handful of adjustments; a longer list in a file is cut here.
    static constexpr int kMaxAdjustmentCount = 64;

    explicit VTAutoShapeProperty(QObject* parent = nullptr);
    // Deep copy, name and group included.
    VTAutoShapeProperty(const VTAutoShapeProperty& other);

    VTElementProperty* clone() const override;
    // Adds "adjustments", "adjustmentCount" and "autoshapeType". Name and group belong to the
    // shape table and are not saved.
    void serialize(QJsonObject& json) const override;
    // Adds "s": [type] or [type, adjustments].
    QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const override;
    // Reads the shape keys, then the text block. "adjustmentCount" is not read: the list says it.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;

    const QVector<double>& getAdjustments() const { return m_vecAdjustments; }
    // The values are taken as the stage sends them.
    void setAdjustments(const QVector<double>& adjustments) { m_vecAdjustments = adjustments; }
    int getAdjustmentCount() const { return m_vecAdjustments.size(); }
    // A VTAutoShapeTypes::AutoShapeType, or a number that the table does not know; never negative.
    int getAutoShapeType() const { return m_nAutoShapeType; }
    void setAutoShapeType(int nType);
    QString getAutoShapeName() const { return m_strAutoShapeName; }
    void setAutoShapeName(const QString& name) { m_strAutoShapeName = name; }
    // A VTAutoShapeTypes::AutoShapeGroup.
    int getAutoShapeGroup() const { return m_nAutoShapeGroup; }
    void setAutoShapeGroup(int nGroup) { m_nAutoShapeGroup = nGroup; }

private:
    QVector<double> m_vecAdjustments;
    int m_nAutoShapeType = 0;
    QString m_strAutoShapeName;
    int m_nAutoShapeGroup = VTAutoShapeTypes::BasicShapes;
};
