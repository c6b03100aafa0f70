#include "VTBackground.h"

#include "VTPropertyJson.h"
#include "VTResource.h"
#include "VTResourceManager.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonObject>
#include <QPixmap>
#include <QPixmapCache>

#include <algorithm>
#include <cmath>

namespace {

bool isInRange(int nValue, int nFirst, int nLast)
{
    return nValue >= nFirst && nValue <= nLast;
}

// The pixel size of an image resource for the player, which lays out image fills before the
// image has loaded. The file header is enough in most cases; a format that does not tell its size
// up front is decoded once and kept in the pixmap cache, which needs a GUI application (the
// command-line tool runs without one and then writes 0 x 0).
QSize imageSizeOf(VTResource* pResource)
{
    VTResourceManager* pManager = pResource->getManager();
    if (pManager) {
        const QString path = pManager->getAbsTempFilename(pResource, false);
        if (!path.isEmpty()) {
            const QSize size = QImageReader(path).size();
            if (size.width() >= 0 && size.height() >= 0)
                return size;
        }
    }
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return QSize(0, 0);
    const QString key = pResource->getUuid().toString();
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap) && pManager) {
        pixmap = pManager->loadResouceAsPixmap(pResource);
        if (!pixmap.isNull())
            QPixmapCache::insert(key, pixmap);
    }
    return pixmap.isNull() ? QSize(0, 0) : pixmap.size();
}

} // namespace

VTBackground::VTBackground(int nFillStyle, QObject* parent)
    : QObject(parent)
    , m_nFillStyle(isInRange(nFillStyle, NoFill, Image) ? nFillStyle : NoFill)
{}

VTBackground::VTBackground(const VTBackground& other)
    : QObject()
    , m_nFillStyle(other.m_nFillStyle)
    , m_nGradientType(other.m_nGradientType)
    , m_clSolidColor(other.m_clSolidColor)
    , m_nLinearGradientAngle(other.m_nLinearGradientAngle)
    , m_dRadialOriginX(other.m_dRadialOriginX)
    , m_dRadialOriginY(other.m_dRadialOriginY)
    , m_nRadialShape(other.m_nRadialShape)
    , m_nRadialSizeParam(other.m_nRadialSizeParam)
    , m_nImageFillType(other.m_nImageFillType)
    , m_lstGradientStopFactors(other.m_lstGradientStopFactors)
    , m_lstGradientStopColors(other.m_lstGradientStopColors)
    , m_pImageResource(other.m_pImageResource)
    , m_bAttached(false)
{}

QString VTBackground::getGradientTypeName(int nType)
{
    switch (nType) {
    case Linear:
        return tr("Linear");
    case Radial:
        return tr("Radial");
    default:
        return QString();
    }
}

QString VTBackground::getRadialShapeName(int nShape)
{
    switch (nShape) {
    case Circle:
        return tr("Circle");
    case Ellipse:
        return tr("Ellipse");
    default:
        return QString();
    }
}

QString VTBackground::getSizeParamName(int nParam)
{
    switch (nParam) {
    case ClosestSide:
        return tr("Closest Side");
    case FarthestSide:
        return tr("Farthest Side");
    case ClosestCorner:
        return tr("Closest Corner");
    case FarthestCorner:
        return tr("Farthest Corner");
    default:
        return QString();
    }
}

QString VTBackground::getImageFillTypeName(int nType)
{
    switch (nType) {
    case Stretch:
        return tr("Stretch");
    case Center:
        return tr("Center");
    case Fit:
        return tr("Fit");
    case Tile:
        return tr("Tile");
    case Fill:
        return tr("Fill");
    default:
        return QString();
    }
}

bool VTBackground::countsResource() const
{
    return m_nFillStyle == Image && m_bAttached && m_pImageResource;
}

void VTBackground::releaseResource()
{
    if (countsResource())
        m_pImageResource->decreaseUsageCount();
}

void VTBackground::acquireResource()
{
    if (countsResource())
        m_pImageResource->increaseUsageCount();
}

void VTBackground::setFillStyle(int nFillStyle)
{
    if (!isInRange(nFillStyle, NoFill, Image) || nFillStyle == m_nFillStyle)
        return;
    releaseResource();
    m_nFillStyle = nFillStyle;
    acquireResource();
}

void VTBackground::setGradientType(int nType)
{
    if (isInRange(nType, Linear, Radial))
        m_nGradientType = nType;
}

void VTBackground::setRadialShape(int nShape)
{
    if (isInRange(nShape, Circle, Ellipse))
        m_nRadialShape = nShape;
}

void VTBackground::setRadialSizeParam(int nParam)
{
    if (isInRange(nParam, ClosestSide, FarthestCorner))
        m_nRadialSizeParam = nParam;
}

void VTBackground::setImageFillType(int nType)
{
    if (isInRange(nType, Stretch, Fill))
        m_nImageFillType = nType;
}

void VTBackground::setGradientStops(const QList<double>& lstFactors, const QList<QColor>& lstColors)
{
    const int nCount = std::min(lstFactors.size(), lstColors.size());
    if (nCount == 0)
        return;
    m_lstGradientStopFactors = lstFactors.mid(0, nCount);
    m_lstGradientStopColors = lstColors.mid(0, nCount);
}

QGradientStops VTBackground::getSortedGradientStops() const
{
    QGradientStops stops;
    stops.reserve(m_lstGradientStopFactors.size());
    for (int i = 0; i < m_lstGradientStopFactors.size(); ++i)
        stops.append(QGradientStop(m_lstGradientStopFactors.at(i), m_lstGradientStopColors.at(i)));
    std::stable_sort(stops.begin(), stops.end(),
                     [](const QGradientStop& a, const QGradientStop& b) { return a.first < b.first; });
    return stops;
}

QColor VTBackground::getLastGradientStopColor() const
{
    return m_lstGradientStopColors.isEmpty() ? QColor() : m_lstGradientStopColors.last();
}

void VTBackground::setImageResource(VTResource* pResource)
{
    if (pResource == m_pImageResource)
        return;
    releaseResource();
    m_pImageResource = pResource;
    acquireResource();
}

void VTBackground::attachResources()
{
    if (m_bAttached)
        return;
    m_bAttached = true;
    acquireResource();
}

void VTBackground::detachResources()
{
    if (!m_bAttached)
        return;
    releaseResource();
    m_bAttached = false;
}

bool VTBackground::operator==(const VTBackground& other) const
{
    if (m_lstGradientStopColors.size() != other.m_lstGradientStopColors.size())
        return false;
    for (int i = 0; i < m_lstGradientStopColors.size(); ++i) {
        if (m_lstGradientStopColors.at(i).rgba() != other.m_lstGradientStopColors.at(i).rgba())
            return false;
    }
    return m_nFillStyle == other.m_nFillStyle && m_nGradientType == other.m_nGradientType &&
           m_clSolidColor.rgba() == other.m_clSolidColor.rgba() &&
           m_nLinearGradientAngle == other.m_nLinearGradientAngle &&
           m_dRadialOriginX == other.m_dRadialOriginX && m_dRadialOriginY == other.m_dRadialOriginY &&
           m_nRadialShape == other.m_nRadialShape && m_nRadialSizeParam == other.m_nRadialSizeParam &&
           m_nImageFillType == other.m_nImageFillType &&
           m_lstGradientStopFactors == other.m_lstGradientStopFactors &&
           m_pImageResource == other.m_pImageResource;
}

void VTBackground::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("fillStyle"), m_nFillStyle);
    json.insert(QStringLiteral("gradientType"), m_nGradientType);
    json.insert(QStringLiteral("solidColor"), VTPropertyJson::colorToJson(m_clSolidColor));
    json.insert(QStringLiteral("linearGradientAngle"), m_nLinearGradientAngle);
    json.insert(QStringLiteral("radialOriginX"), m_dRadialOriginX);
    json.insert(QStringLiteral("radialOriginY"), m_dRadialOriginY);
    json.insert(QStringLiteral("radialShape"), m_nRadialShape);
    json.insert(QStringLiteral("radialSizeParam"), m_nRadialSizeParam);
    json.insert(QStringLiteral("imageFillType"), m_nImageFillType);
    // A detached block belongs to something a command removed; its resource may have been removed
    // with it, and a deleted resource is not saved, so the id would dangle.
    int nResourceId = -1;
    if (m_pImageResource && (m_bAttached || !m_pImageResource->isDeleted()))
        nResourceId = m_pImageResource->getId();
    json.insert(QStringLiteral("imageResourceId"), nResourceId);

    QJsonArray factors;
    QJsonArray colors;
    for (int i = 0; i < m_lstGradientStopFactors.size(); ++i) {
        factors.append(m_lstGradientStopFactors.at(i));
        colors.append(VTPropertyJson::colorToJson(m_lstGradientStopColors.at(i)));
    }
    json.insert(QStringLiteral("gradientStopFactors"), factors);
    json.insert(QStringLiteral("gradientStopColors"), colors);
}

bool VTBackground::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const QString context = tr("background");
    const VTPropertyJson reader(json, context, &lstProblems);

    releaseResource();
    m_nFillStyle = reader.readInt(QStringLiteral("fillStyle"), Solid, NoFill, Image);
    m_nGradientType = reader.readInt(QStringLiteral("gradientType"), Linear, Linear, Radial);
    m_clSolidColor = reader.readColor(QStringLiteral("solidColor"), QColor(74, 134, 232, 255));
    m_nLinearGradientAngle = reader.readInt(QStringLiteral("linearGradientAngle"), 0);
    m_dRadialOriginX = reader.readDouble(QStringLiteral("radialOriginX"), 0.0);
    m_dRadialOriginY = reader.readDouble(QStringLiteral("radialOriginY"), 0.0);
    m_nRadialShape = reader.readInt(QStringLiteral("radialShape"), Circle, Circle, Ellipse);
    m_nRadialSizeParam =
        reader.readInt(QStringLiteral("radialSizeParam"), ClosestSide, ClosestSide, FarthestCorner);
    m_nImageFillType = reader.readInt(QStringLiteral("imageFillType"), Stretch, Stretch, Fill);

    m_pImageResource = nullptr;
    const int nResourceId = reader.readInt(QStringLiteral("imageResourceId"), -1);
    if (nResourceId >= 0 && pManager) {
        VTResource* pResource = pManager->findResourceById(nResourceId);
        if (!pResource)
            reader.report(
                tr("image resource %1 does not exist; the background has no image.").arg(nResourceId));
        else if (pResource->getType() != VTResource::Image)
            reader.report(tr("resource %1 is not an image; the background has no image.").arg(nResourceId));
        else
            m_pImageResource = pResource;
    }
    acquireResource();

    readGradientStops(reader.readArray(QStringLiteral("gradientStopFactors")),
                      reader.readArray(QStringLiteral("gradientStopColors")), &lstProblems, context);

    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTBackground::readGradientStops(const QJsonArray& factors, const QJsonArray& colors,
                                     QStringList* pProblems, const QString& context)
{
    const VTJsonReader reader(QJsonObject(), context, pProblems);
    int nCount = std::min(factors.size(), colors.size());
    if (factors.size() != colors.size())
        reader.report(tr("%1 gradient positions but %2 colours; only the first %3 stops are read.")
                          .arg(factors.size())
                          .arg(colors.size())
                          .arg(nCount));
    if (nCount == 0)
        return;
    if (nCount > kMaxGradientStops) {
        reader.report(tr("%1 gradient stops exceed the limit of %2; the rest are left out.")
                          .arg(nCount)
                          .arg(kMaxGradientStops));
        nCount = kMaxGradientStops;
    }

    QList<double> lstFactors;
    QList<QColor> lstColors;
    for (int i = 0; i < nCount; ++i) {
        const QJsonValue factor = factors.at(i);
        QColor color;
        if (!factor.isDouble() || !std::isfinite(factor.toDouble()) ||
            !VTPropertyJson::colorFromJson(colors.at(i), &color)) {
            reader.report(tr("gradient stop %1 is not a position and a colour; it is left out.").arg(i));
            continue;
        }
        double dFactor = factor.toDouble();
        if (dFactor < 0.0 || dFactor > 1.0) {
            reader.report(tr("gradient stop %1 lies at %2, outside 0 to 1; it is moved to the nearer end.")
                              .arg(i)
                              .arg(dFactor));
            dFactor = std::clamp(dFactor, 0.0, 1.0);
        }
        lstFactors.append(dFactor);
        lstColors.append(color);
    }
    if (lstFactors.isEmpty()) {
        reader.report(tr("no gradient stop could be read; the gradient keeps its stops."));
        return;
    }
    m_lstGradientStopFactors = lstFactors;
    m_lstGradientStopColors = lstColors;
}

void VTBackground::serializeToExport(QJsonArray& array) const
{
    array.append(m_nFillStyle);
    switch (m_nFillStyle) {
    case Solid:
        VTPropertyJson::appendExportColor(array, m_clSolidColor);
        break;
    case Gradient: {
        QJsonArray stops;
        for (const QGradientStop& stop : getSortedGradientStops()) {
            QJsonArray entry{stop.first * 100.0};
            VTPropertyJson::appendExportColor(entry, stop.second);
            stops.append(entry);
        }
        array.append(m_nGradientType);
        if (m_nGradientType == Radial) {
            array.append(m_dRadialOriginX * 100.0);
            array.append(m_dRadialOriginY * 100.0);
            array.append(stops);
            array.append(m_nRadialShape);
            array.append(m_nRadialSizeParam);
        } else {
            array.append(m_nLinearGradientAngle);
            array.append(stops);
        }
        break;
    }
    case Image:
        if (m_pImageResource) {
            const QSize size = imageSizeOf(m_pImageResource);
            array.append(m_pImageResource->getId());
            array.append(m_nImageFillType);
            array.append(size.width());
            array.append(size.height());
        }
        break;
    default:
        break;
    }
}
