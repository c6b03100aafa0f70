#pragma once

#include <QColor>
#include <QJsonObject>
#include <QString>
#include <QStringList>

// The look of the built-in loading indicator that the player shows while the page loads its
// files. A plain value: commands copy it whole to swap the old and new look.
class VTLoadIndicatorProps
{
public:
    // Stored by number; the player knows the shapes by name.
    enum PreloaderShape : int
    {
        Oval = 0,
        Spiral = 1,
        Square = 2,
        Rect = 3,
        RoundRect = 4,
    };

    int getDiameter() const { return m_nDiameter; }
    void setDiameter(int nDiameter) { m_nDiameter = nDiameter; }
    int getDensity() const { return m_nDensity; }
    void setDensity(int nDensity) { m_nDensity = nDensity; }
    double getRange() const { return m_dRange; }
    void setRange(double dRange) { m_dRange = dRange; }
    int getSpeed() const { return m_nSpeed; }
    void setSpeed(int nSpeed) { m_nSpeed = nSpeed; }
    QColor getColor() const { return m_clColor; }
    // The indicator is always opaque; any alpha is dropped here as on reading.
    void setColor(const QColor& color);
    int getShape() const { return m_nShape; }
    void setShape(int nShape) { m_nShape = nShape; }

    // The player's name of the shape; a number it does not know draws as an oval.
    QString getShapeName() const { return getShapeName(m_nShape); }
    static QString getShapeName(int nShape);

    // Every key is read with 0 as its default, so an absent key does not bring back the look of
    // a new project. Values of the wrong type count as absent and are noted in pProblems (may be
    // null) under context. The colour loses any alpha: the indicator is always opaque.
    void parse(const QJsonObject& object, const QString& context = QString(),
               QStringList* pProblems = nullptr);
    void serialize(QJsonObject& object) const;
    // What the player's indicator takes: the colour as "#rrggbb", the shape by name.
    void serializeToExport(QJsonObject& object) const;

    bool operator==(const VTLoadIndicatorProps& other) const;
    bool operator!=(const VTLoadIndicatorProps& other) const { return !(*this == other); }

private:
    int m_nDiameter = 60;
    int m_nDensity = 9;
    double m_dRange = 1.0;
    int m_nSpeed = 1;
    QColor m_clColor = QColor(0x20, 0x90, 0xe6);
    int m_nShape = Oval;
};
