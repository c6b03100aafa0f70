#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QStringList>

class QJsonArray;
class QJsonObject;

// The corner radii of a div in one layout, each with its own unit. The radii are animated through
// their Qt properties; the names keep the integer prefix of the older format although the values
// are fractional.
class VTCorner : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double m_nTopLeft READ getTopLeft WRITE setTopLeft)
    Q_PROPERTY(double m_nTopRight READ getTopRight WRITE setTopRight)
    Q_PROPERTY(double m_nBottomLeft READ getBottomLeft WRITE setBottomLeft)
    Q_PROPERTY(double m_nBottomRight READ getBottomRight WRITE setBottomRight)
public:
    explicit VTCorner(QObject* parent = nullptr);
    // Values only; the copy has no parent.
    VTCorner(const VTCorner& other);
    VTCorner& operator=(const VTCorner&) = delete;

    double getTopLeft() const { return m_nTopLeft; }
    void setTopLeft(double dRadius) { m_nTopLeft = dRadius; }
    double getTopRight() const { return m_nTopRight; }
    void setTopRight(double dRadius) { m_nTopRight = dRadius; }
    double getBottomLeft() const { return m_nBottomLeft; }
    void setBottomLeft(double dRadius) { m_nBottomLeft = dRadius; }
    double getBottomRight() const { return m_nBottomRight; }
    void setBottomRight(double dRadius) { m_nBottomRight = dRadius; }

    // VT::MeasureUnit, pixels or percent; other numbers are ignored.
    int getUnitTopLeft() const { return m_nUnitTopLeft; }
    void setUnitTopLeft(int nUnit);
    int getUnitTopRight() const { return m_nUnitTopRight; }
    void setUnitTopRight(int nUnit);
    int getUnitBottomLeft() const { return m_nUnitBottomLeft; }
    void setUnitBottomLeft(int nUnit);
    int getUnitBottomRight() const { return m_nUnitBottomRight; }
    void setUnitBottomRight(int nUnit);

    bool isAllZero() const;
    bool operator==(const VTCorner& other) const;
    bool operator!=(const VTCorner& other) const { return !(*this == other); }

    void serialize(QJsonObject& json) const;
    // Missing keys read 0. Returns false when a value had to be replaced; the reason goes to
    // pProblems.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);
    // [top left, top right, bottom left, bottom right] in the length form; nothing when all four
    // radii are 0.
    void serializeToExport(QJsonArray& array) const;

private:
    double m_nTopLeft = 0.0;
    double m_nTopRight = 0.0;
    double m_nBottomLeft = 0.0;
    double m_nBottomRight = 0.0;
    int m_nUnitTopLeft = 0;
    int m_nUnitTopRight = 0;
    int m_nUnitBottomLeft = 0;
    int m_nUnitBottomRight = 0;
};
