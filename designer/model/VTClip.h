#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QStringList>

class QJsonArray;
class QJsonObject;

// The clip shape of an element in one layout: an inset rectangle, a circle or an oval, each
// length with its own unit (pixels, or percent of the element's box). The lengths are animated
// through their Qt properties.
class VTClip : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double m_dCRectTop READ getRectTop WRITE setRectTop)
    Q_PROPERTY(double m_dCRectRight READ getRectRight WRITE setRectRight)
    Q_PROPERTY(double m_dCRectBottom READ getRectBottom WRITE setRectBottom)
    Q_PROPERTY(double m_dCRectLeft READ getRectLeft WRITE setRectLeft)
    Q_PROPERTY(double m_dCOvalVertex READ getOvalVertex WRITE setOvalVertex)
    Q_PROPERTY(double m_dCOvalCoVertex READ getOvalCoVertex WRITE setOvalCoVertex)
    Q_PROPERTY(double m_dCCircleRadius READ getCircleRadius WRITE setCircleRadius)
public:
    enum ClipStyle : int
    {
        None = 0,
        Rectangle = 1,
        Circle = 2,
        Oval = 3,
    };
    Q_ENUM(ClipStyle)

    explicit VTClip(QObject* parent = nullptr);
    // Values only; the copy has no parent.
    VTClip(const VTClip& other);
    VTClip& operator=(const VTClip&) = delete;

    static QString getStyleName(int nStyle);

    int getStyle() const { return m_nStyle; }
    // Numbers outside ClipStyle are ignored.
    void setStyle(int nStyle);

    double getRectTop() const { return m_dCRectTop; }
    void setRectTop(double dValue) { m_dCRectTop = dValue; }
    double getRectRight() const { return m_dCRectRight; }
    void setRectRight(double dValue) { m_dCRectRight = dValue; }
    double getRectBottom() const { return m_dCRectBottom; }
    void setRectBottom(double dValue) { m_dCRectBottom = dValue; }
    double getRectLeft() const { return m_dCRectLeft; }
    void setRectLeft(double dValue) { m_dCRectLeft = dValue; }
    double getOvalVertex() const { return m_dCOvalVertex; }
    void setOvalVertex(double dValue) { m_dCOvalVertex = dValue; }
    double getOvalCoVertex() const { return m_dCOvalCoVertex; }
    void setOvalCoVertex(double dValue) { m_dCOvalCoVertex = dValue; }
    double getCircleRadius() const { return m_dCCircleRadius; }
    void setCircleRadius(double dValue) { m_dCCircleRadius = dValue; }

    // VT::MeasureUnit, pixels or percent; other numbers are ignored by the setters.
    int getUnitRectTop() const { return m_nUnitRectTop; }
    void setUnitRectTop(int nUnit);
    int getUnitRectRight() const { return m_nUnitRectRight; }
    void setUnitRectRight(int nUnit);
    int getUnitRectBottom() const { return m_nUnitRectBottom; }
    void setUnitRectBottom(int nUnit);
    int getUnitRectLeft() const { return m_nUnitRectLeft; }
    void setUnitRectLeft(int nUnit);
    int getUnitOvalVertex() const { return m_nUnitOvalVertex; }
    void setUnitOvalVertex(int nUnit);
    int getUnitOvalCoVertex() const { return m_nUnitOvalCoVertex; }
    void setUnitOvalCoVertex(int nUnit);
    int getUnitCircleRadius() const { return m_nUnitCircleRadius; }
    void setUnitCircleRadius(int nUnit);
    // The unit of the value of a VT::ElementProperty from 63 to 69; -1 for any other number.
    int getUnitOfProperty(int nProperty) const;

    bool operator==(const VTClip& other) const;
    bool operator!=(const VTClip& other) const { return !(*this == other); }

    void serialize(QJsonObject& json) const;
    // Returns false when a value had to be replaced; the reason goes to pProblems.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);
    // By style: [1, top, right, bottom, left], [2, radius] or [3, vertex, co-vertex], lengths in
    // the length form; nothing without a style.
    void serializeToExport(QJsonArray& array) const;

private:
    int m_nStyle = None;
    double m_dCRectTop = 0.0;
    double m_dCRectRight = 0.0;
    double m_dCRectBottom = 0.0;
    double m_dCRectLeft = 0.0;
    double m_dCOvalVertex = 0.25;
    double m_dCOvalCoVertex = 0.5;
    double m_dCCircleRadius = 0.5;
    int m_nUnitRectTop = 0;
    int m_nUnitRectRight = 0;
    int m_nUnitRectBottom = 0;
    int m_nUnitRectLeft = 0;
    int m_nUnitOvalVertex = 1;
    int m_nUnitOvalCoVertex = 1;
    int m_nUnitCircleRadius = 1;
};
