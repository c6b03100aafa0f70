#pragma once

#include "VTElementProperty.h"

#include <QString>

// An image element's block: where the picture sits inside the element's box, drawn as a
// background image so that it can be smaller, larger or offset. The four values are animated
// through their Qt properties; each has its own unit.
class VTImageProperty : public VTElementProperty
{
    Q_OBJECT
    Q_PROPERTY(double m_dBgImageX READ getBgImageX WRITE setBgImageX)
    Q_PROPERTY(double m_dBgImageY READ getBgImageY WRITE setBgImageY)
    Q_PROPERTY(double m_dBgImageW READ getBgImageW WRITE setBgImageW)
    Q_PROPERTY(double m_dBgImageH READ getBgImageH WRITE setBgImageH)
public:
    // A new image fills its box.
    explicit VTImageProperty(QObject* parent = nullptr);
    // Deep copy, the alternative text included.
    VTImageProperty(const VTImageProperty& other);

    VTElementProperty* clone() const override;
    // Adds the placement keys at the top level, and "alt" when there is an alternative text.
    void serialize(QJsonObject& json) const override;
    // Adds "ir" with the placement in the player's length form.
    QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const override;
    // Reads the placement, then the base block. Missing keys read 0 in pixels: older files placed
    // the image by its own size.
    bool parse(const QJsonObject& json, VTResourceManager* pManager,
               QStringList* pProblems = nullptr) override;
    int getPropertyUnit(int nProperty) const override;

    // The eight placement keys alone, as the file holds them; the stage reads the same object.
    void serializeBgImage(QJsonObject& json) const;

    double getBgImageX() const { return m_dBgImageX; }
    void setBgImageX(double dValue) { m_dBgImageX = dValue; }
    double getBgImageY() const { return m_dBgImageY; }
    void setBgImageY(double dValue) { m_dBgImageY = dValue; }
    double getBgImageW() const { return m_dBgImageW; }
    void setBgImageW(double dValue) { m_dBgImageW = dValue; }
    double getBgImageH() const { return m_dBgImageH; }
    void setBgImageH(double dValue) { m_dBgImageH = dValue; }
    // VT::MeasureUnit, pixels or percent; other numbers are ignored.
    int getBgImageUnitX() const { return m_nBgImageUnitX; }
    void setBgImageUnitX(int nUnit);
    int getBgImageUnitY() const { return m_nBgImageUnitY; }
    void setBgImageUnitY(int nUnit);
    int getBgImageUnitW() const { return m_nBgImageUnitW; }
    void setBgImageUnitW(int nUnit);
    int getBgImageUnitH() const { return m_nBgImageUnitH; }
    void setBgImageUnitH(int nUnit);

    // The text that replaces the picture for screen readers and broken links.
    QString getAlt() const { return m_strAlt; }
    void setAlt(const QString& alt) { m_strAlt = alt; }

private:
    double m_dBgImageX = 0.0;
    double m_dBgImageY = 0.0;
    double m_dBgImageW = 1.0;
    double m_dBgImageH = 1.0;
    int m_nBgImageUnitX = 0;
    int m_nBgImageUnitY = 0;
    int m_nBgImageUnitW = 1;
    int m_nBgImageUnitH = 1;
    QString m_strAlt;
};
