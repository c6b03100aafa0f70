#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QGradientStops>
#include <QList>
#include <QObject>
#include <QStringList>

class QJsonArray;
class QJsonObject;
class VTResource;
class VTResourceManager;

// The fill of an element in one layout: nothing, a solid colour, a linear or radial gradient, or
// an image resource. The solid colour, the gradient angle and the radial origin are animated
// through their Qt properties.
//
// An image fill counts as a use of its resource, so that the resource panel knows what is free to
// remove. The count is held exactly while the fill style is Image and the block is attached, that
// is, while the element that owns the block is part of the project. A new background is
// attached; a copy is not, until whoever adds it to the project attaches it. The destructor leaves
// the count alone: at shutdown the resources may already be gone, and a block removed by a command
// has been detached before.
class VTBackground : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QColor m_clSolidColor READ getSolidColor WRITE setSolidColor)
    Q_PROPERTY(int m_nLinearGradientAngle READ getLinearGradientAngle WRITE setLinearGradientAngle)
    Q_PROPERTY(double m_dRadialOriginX READ getRadialOriginX WRITE setRadialOriginX)
    Q_PROPERTY(double m_dRadialOriginY READ getRadialOriginY WRITE setRadialOriginY)
public:
    enum FillStyle : int
    {
        NoFill = 0,
        Solid = 1,
        Gradient = 2,
        Image = 3,
    };
    Q_ENUM(FillStyle)
    enum GradientType : int
    {
        Linear = 0,
        Radial = 1,
    };
    Q_ENUM(GradientType)
    enum RadialShapeType : int
    {
        Circle = 0,
        Ellipse = 1,
    };
    Q_ENUM(RadialShapeType)
    enum SizeParam : int
    {
        ClosestSide = 0,
        FarthestSide = 1,
        ClosestCorner = 2,
        FarthestCorner = 3,
    };
    Q_ENUM(SizeParam)
    enum ImageFillType : int
    {
        Stretch = 0,
        Center = 1,
        Fit = 2,
        Tile = 3,
        Fill = 4,
    };
    Q_ENUM(ImageFillType)

    // A file may hold any number of stops; more than this are cut off on reading.
    static constexpr int kMaxGradientStops = 256;

    // A fill style outside FillStyle gives NoFill.
    explicit VTBackground(int nFillStyle = NoFill, QObject* parent = nullptr);
    // Values and resource reference; the copy is detached and has no parent.
    VTBackground(const VTBackground& other);
    VTBackground& operator=(const VTBackground&) = delete;

    static QString getGradientTypeName(int nType);
    static QString getRadialShapeName(int nShape);
    static QString getSizeParamName(int nParam);
    static QString getImageFillTypeName(int nType);

    int getFillStyle() const { return m_nFillStyle; }
    // Numbers outside FillStyle are ignored. Moves the resource's use as the style enters or
    // leaves Image.
    void setFillStyle(int nFillStyle);
    int getGradientType() const { return m_nGradientType; }
    void setGradientType(int nType);
    QColor getSolidColor() const { return m_clSolidColor; }
    void setSolidColor(const QColor& color) { m_clSolidColor = color; }
    int getLinearGradientAngle() const { return m_nLinearGradientAngle; }
    void setLinearGradientAngle(int nDegrees) { m_nLinearGradientAngle = nDegrees; }
    double getRadialOriginX() const { return m_dRadialOriginX; }
    void setRadialOriginX(double dFraction) { m_dRadialOriginX = dFraction; }
    double getRadialOriginY() const { return m_dRadialOriginY; }
    void setRadialOriginY(double dFraction) { m_dRadialOriginY = dFraction; }
    int getRadialShape() const { return m_nRadialShape; }
    void setRadialShape(int nShape);
    int getRadialSizeParam() const { return m_nRadialSizeParam; }
    void setRadialSizeParam(int nParam);
    int getImageFillType() const { return m_nImageFillType; }
    void setImageFillType(int nType);

    // Stops in the order the user made them, positions from 0 to 1.
    const QList<double>& getGradientStopFactors() const { return m_lstGradientStopFactors; }
    const QList<QColor>& getGradientStopColors() const { return m_lstGradientStopColors; }
    // Pairs up the two lists as far as the shorter one goes; two empty lists change nothing, as a
    // gradient needs stops.
    void setGradientStops(const QList<double>& lstFactors, const QList<QColor>& lstColors);
    // Sorted by position; stops at the same position keep their order.
    QGradientStops getSortedGradientStops() const;
    // The colour of the last stop in the user's order; invalid without stops.
    QColor getLastGradientStopColor() const;

    VTResource* getImageResource() const { return m_pImageResource; }
    // Moves the use from the old resource to the new one when the block counts.
    void setImageResource(VTResource* pResource);
    bool isAttached() const { return m_bAttached; }
    // The block enters the project: an image fill starts to count. Does nothing when attached.
    void attachResources();
    // The block leaves the project (its element was removed): an image fill stops counting.
    void detachResources();

    // Compares values and the resource reference, not whether the block is attached.
    bool operator==(const VTBackground& other) const;
    bool operator!=(const VTBackground& other) const { return !(*this == other); }

    void serialize(QJsonObject& json) const;
    // Missing keys take the defaults of a file, which differ from those of a new background (fill
    // style Solid, radial origin 0, 0). An image id must name an image resource of pManager;
    // anything else reads as no image. Returns false when a value had to be replaced; the reason
    // goes to pProblems.
    bool parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems = nullptr);
    // The player's "f": the fill style first, then what the style needs.
    void serializeToExport(QJsonArray& array) const;

private:
    bool countsResource() const;
    void releaseResource();
    void acquireResource();
    void readGradientStops(const QJsonArray& factors, const QJsonArray& colors, QStringList* pProblems,
                           const QString& context);

    int m_nFillStyle = NoFill;
    int m_nGradientType = Linear;
    QColor m_clSolidColor = QColor(74, 134, 232, 255);
    int m_nLinearGradientAngle = 0;
    double m_dRadialOriginX = 0.5;
    double m_dRadialOriginY = 0.5;
    int m_nRadialShape = Ellipse;
    int m_nRadialSizeParam = FarthestCorner;
    int m_nImageFillType = Stretch;
    QList<double> m_lstGradientStopFactors{0.0, 1.0};
    QList<QColor> m_lstGradientStopColors{QColor(Qt::black), QColor(Qt::white)};
    VTResource* m_pImageResource = nullptr;
    bool m_bAttached = true;
};
