#pragma once

#include "VTElementProperty.h"

// A scene's block: the perspective of its stage on top of the usual values. The origin is a ratio
// of the stage size, the distance is in pixels; all three are animated through their Qt
// properties.
class VTSceneProperty : public VTElementProperty
{
    Q_OBJECT
    Q_PROPERTY(double m_dPerspectiveOrgX READ getPerspectiveX WRITE setPerspectiveX)
    Q_PROPERTY(double m_dPerspectiveOrgY READ getPerspectiveY WRITE setPerspectiveY)
    Q_PROPERTY(double m_dPerspectiveOrgZ READ getPerspectiveZ WRITE setPerspectiveZ)
public:
    static constexpr double kDefaultPerspectiveX = 0.5;
    static constexpr double kDefaultPerspectiveY = 0.5;
    static constexpr double kDefaultPerspectiveZ = 1200.0;

    explicit VTSceneProperty(QObject* parent = nullptr);
    VTSceneProperty(const VTSceneProperty& other);

    VTElementProperty* clone() const override;
    // Adds "perspectiveOrgX", "perspectiveOrgY" and "perspectiveOrgZ".
    void serialize(QJsonObject& json) const override;
    // Adds "pso": [origin X × 100, origin Y × 100, distance].
    QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const override;
    // Reads the perspective, then the base block.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;
    // A perspective moved off its defaults is a 3D stage too.
    bool isPreserved3D() const override;

    double getPerspectiveX() const { return m_dPerspectiveOrgX; }
    void setPerspectiveX(double dValue) { m_dPerspectiveOrgX = dValue; }
    double getPerspectiveY() const { return m_dPerspectiveOrgY; }
    void setPerspectiveY(double dValue) { m_dPerspectiveOrgY = dValue; }
    double getPerspectiveZ() const { return m_dPerspectiveOrgZ; }
    // A negative distance is ignored: CSS refuses it.
    void setPerspectiveZ(double dValue);

private:
    double m_dPerspectiveOrgX = kDefaultPerspectiveX;
    double m_dPerspectiveOrgY = kDefaultPerspectiveY;
    double m_dPerspectiveOrgZ = kDefaultPerspectiveZ;
};
