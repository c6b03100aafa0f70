#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QList>
#include <QObject>
#include <QStringList>

class QJsonArray;
class QJsonObject;

// The drop shadow of an element in one layout. Blur, angle, distance and colour are animated
// through their Qt properties.
class VTShadow : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int m_nShBlurRadius READ getBlurRadius WRITE setBlurRadius)
    Q_PROPERTY(int m_nShAngle READ getAngle WRITE setAngle)
    Q_PROPERTY(int m_nShDistance READ getDistance WRITE setDistance)
    Q_PROPERTY(QColor m_shColor READ getColor WRITE setColor)
public:
    enum ShadowStyle : int
    {
        None = 0,
        DropShadow = 1,
    };
    Q_ENUM(ShadowStyle)

    // One entry of the inspector's shadow gallery.
    struct Preset
    {
        QString title;
        QString iconStem;
        int nAngle = 0;
    };

    explicit VTShadow(QObject* parent = nullptr);
    // Values only; the copy has no parent.
    VTShadow(const VTShadow& other);
    VTShadow& operator=(const VTShadow&) = delete;

    static QString getStyleName(int nStyle);
    // The gallery in display order; every entry is a drop shadow with the default blur, distance
    // and colour, and differs only in its angle.
    static QList<Preset> getPresets();
    void applyPreset(const Preset& preset);

    int getStyle() const { return m_nStyle; }
    // Numbers outside ShadowStyle are ignored.
    void setStyle(int nStyle);
    int getBlurRadius() const { return m_nShBlurRadius; }
    void setBlurRadius(int nRadius) { m_nShBlurRadius = nRadius; }
    // Degrees, clockwise from the positive x axis as the stage draws it.
    int getAngle() const { return m_nShAngle; }
    void setAngle(int nAngle) { m_nShAngle = nAngle; }
    int getDistance() const { return m_nShDistance; }
    void setDistance(int nDistance) { m_nShDistance = nDistance; }
    QColor getColor() const { return m_shColor; }
    void setColor(const QColor& color) { m_shColor = color; }

    // Colours compare by their ARGB value, the precision the file keeps.
    bool operator==(const VTShadow& other) const;
    bool operator!=(const VTShadow& other) const { return !(*this == other); }

    void serialize(QJsonObject& json) const;
    // Returns false when a value had to be replaced; the reason goes to pProblems.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);
    // [blur, angle, distance, red, green, blue, alpha]; nothing without a style.
    void serializeToExport(QJsonArray& array) const;

private:
    int m_nStyle = None;
    int m_nShBlurRadius = 5;
    int m_nShAngle = 45;
    int m_nShDistance = 5;
    QColor m_shColor = QColor::fromRgba(0x80000000);
};
