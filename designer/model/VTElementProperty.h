#pragma once

#include "VTExportedFontInfo.h"

#include <QCoreApplication>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <initializer_list>

class QJsonArray;
class QJsonObject;
class VTBackground;
class VTBorder;
class VTClip;
class VTFilterEffect;
class VTJsonReader;
class VTResourceManager;
class VTShadow;

// Everything about an element that can differ between responsive layouts or be animated:
// geometry, transform and look. An element holds one block per layout; element kinds derive from
// this class to add their own values.
//
// The block owns its border, background, shadow, filter and clip as child objects. The Qt
// properties carry the names that keyframes animate, so animation writes values through
// QObject::setProperty.
//
// Inheritance between layouts: a layout other than the base shows the base layout's value of a
// property unless the property is marked as not inheriting in that layout's block. Only the
// exceptions are stored; a property not in the map inherits.
class VTElementProperty : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double m_dPositionX READ getPositionX WRITE setPositionX)
    Q_PROPERTY(double m_dPositionY READ getPositionY WRITE setPositionY)
    Q_PROPERTY(double m_dSizeW READ getSizeW WRITE setSizeW)
    Q_PROPERTY(double m_dSizeH READ getSizeH WRITE setSizeH)
    Q_PROPERTY(QPointF m_ptTranslateXY READ getTranslateXY WRITE setTranslateXY)
    Q_PROPERTY(double m_dScaleX READ getScaleX WRITE setScaleX)
    Q_PROPERTY(double m_dScaleY READ getScaleY WRITE setScaleY)
    Q_PROPERTY(double m_dScaleZ READ getScaleZ WRITE setScaleZ)
    Q_PROPERTY(double m_dSkewX READ getSkewX WRITE setSkewX)
    Q_PROPERTY(double m_dSkewY READ getSkewY WRITE setSkewY)
    Q_PROPERTY(double m_dRotateX READ getRotateX WRITE setRotateX)
    Q_PROPERTY(double m_dRotateY READ getRotateY WRITE setRotateY)
    Q_PROPERTY(double m_dRotateZ READ getRotateZ WRITE setRotateZ)
    Q_PROPERTY(double m_dOriginRatioX READ getOriginRatioX WRITE setOriginRatioX)
    Q_PROPERTY(double m_dOriginRatioY READ getOriginRatioY WRITE setOriginRatioY)
    Q_PROPERTY(double m_dOriginZ READ getOriginZ WRITE setOriginZ)
    Q_PROPERTY(double m_dTranslateX READ getTranslateX WRITE setTranslateX)
    Q_PROPERTY(double m_dTranslateY READ getTranslateY WRITE setTranslateY)
    Q_PROPERTY(double m_dTranslateZ READ getTranslateZ WRITE setTranslateZ)
    Q_PROPERTY(double m_dOpacity READ getOpacity WRITE setOpacity)
    Q_PROPERTY(int m_nDisplay READ getDisplay WRITE setDisplay)
public:
    explicit VTElementProperty(QObject* parent = nullptr);
    // Deep copy: the sub-objects are copied too, the background detached. The copy has no parent.
    VTElementProperty(const VTElementProperty& other);
    VTElementProperty& operator=(const VTElementProperty&) = delete;
    ~VTElementProperty() override;

    virtual VTElementProperty* clone() const;
    // The object of one layout in "respProps".
    virtual void serialize(QJsonObject& json) const;
    // The player's block keys. bFirstBlock: the copy at the top of an element object, which stops
    // after the class name. bOverride: a layout other than the base, where a group of keys whose
    // properties all inherit is left out. Returns the keys of groups that have nothing to say
    // (a border without style, a display that is on...), so that a layout can drop what the base
    // layout set.
    virtual QStringList serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const;
    // Only "r" and "t", which the stage asks for alone while a gesture runs.
    virtual void serializeGeomToExport(QJsonObject& json, bool bOverride) const;
    // Missing keys take the defaults of a file, which differ from those of a new block (a missing
    // width reads 100). Damaged values fall back the same way. Returns false when a value had to
    // be replaced; the reasons go to pProblems.
    virtual bool parse(const QJsonObject& json, VTResourceManager* pManager,
                       QStringList* pProblems = nullptr);
    // The fonts a text block needs in an export; a block without text has none.
    virtual void getExportedFontInfo(QList<VTExportedFontInfo>& lstFonts) const;
    // Whether the transform uses the third dimension, so the player must preserve 3D.
    virtual bool isPreserved3D() const;
    // The VT::MeasureUnit of the value of a property that has a unit of its own choice; -1 when
    // this block does not hold such a value. Kinds with more lengths extend it.
    virtual int getPropertyUnit(int nProperty) const;

    // Geometry. Positions and sizes are in the unit of their axis.
    double getPositionX() const { return m_dPositionX; }
    void setPositionX(double dValue) { m_dPositionX = dValue; }
    double getPositionY() const { return m_dPositionY; }
    void setPositionY(double dValue) { m_dPositionY = dValue; }
    double getSizeW() const { return m_dSizeW; }
    void setSizeW(double dValue) { m_dSizeW = dValue; }
    double getSizeH() const { return m_dSizeH; }
    void setSizeH(double dValue) { m_dSizeH = dValue; }
    // VT::CoordinateType; other numbers are ignored.
    int getCoordinateType() const { return m_nCoordinateType; }
    void setCoordinateType(int nType);
    // VT::MeasureUnit. Width and height take all three units, positions pixels or percent; other
    // numbers are ignored.
    int getUnitW() const { return m_nUnitW; }
    void setUnitW(int nUnit);
    int getUnitH() const { return m_nUnitH; }
    void setUnitH(int nUnit);
    int getUnitX() const { return m_nUnitX; }
    void setUnitX(int nUnit);
    int getUnitY() const { return m_nUnitY; }
    void setUnitY(int nUnit);

    // Transform. Origin X and Y are fractions of the size, origin Z pixels.
    double getOriginRatioX() const { return m_dOriginRatioX; }
    void setOriginRatioX(double dValue) { m_dOriginRatioX = dValue; }
    double getOriginRatioY() const { return m_dOriginRatioY; }
    void setOriginRatioY(double dValue) { m_dOriginRatioY = dValue; }
    double getOriginZ() const { return m_dOriginZ; }
    void setOriginZ(double dValue) { m_dOriginZ = dValue; }
    double getTranslateX() const { return m_dTranslateX; }
    void setTranslateX(double dValue) { m_dTranslateX = dValue; }
    double getTranslateY() const { return m_dTranslateY; }
    void setTranslateY(double dValue) { m_dTranslateY = dValue; }
    double getTranslateZ() const { return m_dTranslateZ; }
    void setTranslateZ(double dValue) { m_dTranslateZ = dValue; }
    // Translate X and Y together: the location that motion paths animate.
    QPointF getTranslateXY() const { return QPointF(m_dTranslateX, m_dTranslateY); }
    void setTranslateXY(const QPointF& ptValue);
    double getScaleX() const { return m_dScaleX; }
    void setScaleX(double dValue) { m_dScaleX = dValue; }
    double getScaleY() const { return m_dScaleY; }
    void setScaleY(double dValue) { m_dScaleY = dValue; }
    double getScaleZ() const { return m_dScaleZ; }
    void setScaleZ(double dValue) { m_dScaleZ = dValue; }
    double getSkewX() const { return m_dSkewX; }
    void setSkewX(double dValue) { m_dSkewX = dValue; }
    double getSkewY() const { return m_dSkewY; }
    void setSkewY(double dValue) { m_dSkewY = dValue; }
    double getRotateX() const { return m_dRotateX; }
    void setRotateX(double dValue) { m_dRotateX = dValue; }
    double getRotateY() const { return m_dRotateY; }
    void setRotateY(double dValue) { m_dRotateY = dValue; }
    double getRotateZ() const { return m_dRotateZ; }
    void setRotateZ(double dValue) { m_dRotateZ = dValue; }

    // General.
    double getOpacity() const { return m_dOpacity; }
    void setOpacity(double dValue) { m_dOpacity = dValue; }
    // VT::OverFlowType; other numbers are ignored.
    int getOverflowType() const { return m_nOverflowType; }
    void setOverflowType(int nType);
    // 1 shown, 0 hidden; animation steps between the two, so any other number counts as shown.
    int getDisplay() const { return m_nDisplay; }
    void setDisplay(int nDisplay) { m_nDisplay = nDisplay == 0 ? 0 : 1; }
    // -2 is no tab index; numbers below are taken as -2.
    int getTabIndex() const { return m_nTabIndex; }
    void setTabIndex(int nIndex) { m_nTabIndex = nIndex < -2 ? -2 : nIndex; }
    // A CSS cursor name.
    QString getCursorValue() const { return m_strValueCursor; }
    void setCursorValue(const QString& value) { m_strValueCursor = value; }
    QString getTitle() const { return m_strTitle; }
    void setTitle(const QString& title) { m_strTitle = title; }
    // CSS class names, separated by blanks.
    QString getClassName() const { return m_strClassName; }
    void setClassName(const QString& className) { m_strClassName = className; }

    VTBorder* getBorder() const { return m_pBorder; }
    VTBackground* getBackground() const { return m_pBackground; }
    VTShadow* getShadow() const { return m_pShadow; }
    VTFilterEffect* getFilter() const { return m_pFilter; }
    VTClip* getClip() const { return m_pClip; }

    // Inheritance. Property numbers outside VT::ElementProperty are never stored.
    bool isInherit(int nProperty) const;
    void setInherit(int nProperty, bool bInherit);
    // false: no property inherits; true: all do.
    void setInherits(bool bInherit);
    // Applies every entry of the map as setInherit would.
    void addInherits(const QMap<int, bool>& mapInherits);
    const QMap<int, bool>& getInherits() const { return m_mapInherit; }
    bool isInheritAll() const { return m_mapInherit.isEmpty(); }
    // The rule of setInherit on any map: true removes the entry, false stores it.
    static void updateInherit(QMap<int, bool>& mapInherits, int nProperty, bool bInherit);
    // The properties that do not inherit, in ascending order.
    static void serializeInherit(const QMap<int, bool>& mapInherits, QJsonArray& array);
    // Replaces the map with the list of a file: every property number in it is stored as not
    // inheriting; anything else is left out with a note through the reader.
    static void parseInherit(const QJsonArray& array, QMap<int, bool>& mapInherits,
                             const VTJsonReader& reader);

protected:
    // Whether a group of keys is written: always for the base, and for another layout when one of
    // its properties does not inherit.
    bool isGroupWritten(bool bOverride, std::initializer_list<int> properties) const;

private:
    // "r" and "t"; adds "t" to the drop list when the transform is at its defaults.
    void writeGeometry(QJsonObject& json, bool bOverride, QStringList& lstDrop) const;

    double m_dPositionX = 300.0;
    double m_dPositionY = 300.0;
    double m_dSizeW = 256.0;
    double m_dSizeH = 128.0;
    int m_nCoordinateType = 0;
    int m_nUnitW = 0;
    int m_nUnitH = 0;
    int m_nUnitX = 0;
    int m_nUnitY = 0;
    double m_dOriginRatioX = 0.5;
    double m_dOriginRatioY = 0.5;
    double m_dOriginZ = 0.0;
    double m_dTranslateX = 0.0;
    double m_dTranslateY = 0.0;
    double m_dTranslateZ = 0.0;
    double m_dScaleX = 1.0;
    double m_dScaleY = 1.0;
    double m_dScaleZ = 1.0;
    double m_dSkewX = 0.0;
    double m_dSkewY = 0.0;
    double m_dRotateX = 0.0;
    double m_dRotateY = 0.0;
    double m_dRotateZ = 0.0;
    double m_dOpacity = 1.0;
    int m_nOverflowType = 0;
    int m_nDisplay = 1;
    int m_nTabIndex = -2;
    QString m_strValueCursor = QStringLiteral("auto");
    QString m_strTitle;
    QString m_strClassName;

    VTBorder* m_pBorder = nullptr;
    VTBackground* m_pBackground = nullptr;
    VTShadow* m_pShadow = nullptr;
    VTFilterEffect* m_pFilter = nullptr;
    VTClip* m_pClip = nullptr;

    QMap<int, bool> m_mapInherit;
};
