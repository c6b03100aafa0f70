#pragma once

#include <QCoreApplication>
#include <QList>
#include <QObject>
#include <QStringList>

class QJsonArray;
class QJsonObject;

// The CSS filter chain of an element in one layout. Every value is animated through its Qt
// property. Fractions are stored as such (1 is 100%); hue is in degrees and blur in pixels.
class VTFilterEffect : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double m_dInvert READ getInvert WRITE setInvert)
    Q_PROPERTY(int m_nHue READ getHue WRITE setHue)
    Q_PROPERTY(double m_dContrast READ getContrast WRITE setContrast)
    Q_PROPERTY(double m_dBrightness READ getBrightness WRITE setBrightness)
    Q_PROPERTY(double m_dSaturate READ getSaturate WRITE setSaturate)
    Q_PROPERTY(double m_dSepia READ getSepia WRITE setSepia)
    Q_PROPERTY(double m_dGrayscale READ getGrayscale WRITE setGrayscale)
    Q_PROPERTY(int m_nBlur READ getBlur WRITE setBlur)
public:
    // One entry of the inspector's filter gallery, as stored values.
    struct Preset
    {
        QString title;
        QString iconStem;
        double dInvert = 0.0;
        int nHue = 0;
        double dContrast = 1.0;
        double dBrightness = 1.0;
        double dSaturate = 1.0;
        double dSepia = 0.0;
        double dGrayscale = 0.0;
        int nBlur = 0;
    };

    explicit VTFilterEffect(QObject* parent = nullptr);
    // Values only; the copy has no parent.
    VTFilterEffect(const VTFilterEffect& other);
    VTFilterEffect& operator=(const VTFilterEffect&) = delete;

    // The gallery in display order; the first entry is the defaults.
    static QList<Preset> getPresets();
    void applyPreset(const Preset& preset);

    double getInvert() const { return m_dInvert; }
    void setInvert(double dValue) { m_dInvert = dValue; }
    int getHue() const { return m_nHue; }
    void setHue(int nDegrees) { m_nHue = nDegrees; }
    double getContrast() const { return m_dContrast; }
    void setContrast(double dValue) { m_dContrast = dValue; }
    double getBrightness() const { return m_dBrightness; }
    void setBrightness(double dValue) { m_dBrightness = dValue; }
    double getSaturate() const { return m_dSaturate; }
    void setSaturate(double dValue) { m_dSaturate = dValue; }
    double getSepia() const { return m_dSepia; }
    void setSepia(double dValue) { m_dSepia = dValue; }
    double getGrayscale() const { return m_dGrayscale; }
    void setGrayscale(double dValue) { m_dGrayscale = dValue; }
    int getBlur() const { return m_nBlur; }
    void setBlur(int nPixels) { m_nBlur = nPixels; }

    // Every value at its default: the filter changes nothing.
    bool isDefault() const;
    bool operator==(const VTFilterEffect& other) const;
    bool operator!=(const VTFilterEffect& other) const { return !(*this == other); }

    void serialize(QJsonObject& json) const;
    // Returns false when a value had to be replaced; the reason goes to pProblems.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);
    // [invert, hue, contrast, brightness, saturate, sepia, grayscale, blur], fractions times 100.
    void serializeToExport(QJsonArray& array) const;

private:
    double m_dInvert = 0.0;
    int m_nHue = 0;
    double m_dContrast = 1.0;
    double m_dBrightness = 1.0;
    double m_dSaturate = 1.0;
    double m_dSepia = 0.0;
    double m_dGrayscale = 0.0;
    int m_nBlur = 0;
};
