#include "VTElementProperty.h"

#include "VTBackground.h"
#include "VTBorder.h"
#include "VTClip.h"
#include "VTElementPropertyInfo.h"
#include "VTFilterEffect.h"
#include "VTPropertyJson.h"
#include "VTShadow.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

const QString kPath = QStringLiteral("path");
const QString kTransform = QStringLiteral("transform");

bool isPositionUnit(int nUnit)
{
    return nUnit == VT::Pixel || nUnit == VT::Percent;
}

bool isSizeUnit(int nUnit)
{
    return nUnit >= VT::Pixel && nUnit <= VT::Ratio;
}

} // namespace

VTElementProperty::VTElementProperty(QObject* parent)
    : QObject(parent)
    , m_pBorder(new VTBorder(this))
    , m_pBackground(new VTBackground(VTBackground::NoFill, this))
    , m_pShadow(new VTShadow(this))
    , m_pFilter(new VTFilterEffect(this))
    , m_pClip(new VTClip(this))
{}

VTElementProperty::VTElementProperty(const VTElementProperty& other)
    : QObject()
    , m_dPositionX(other.m_dPositionX)
    , m_dPositionY(other.m_dPositionY)
    , m_dSizeW(other.m_dSizeW)
    , m_dSizeH(other.m_dSizeH)
    , m_nCoordinateType(other.m_nCoordinateType)
    , m_nUnitW(other.m_nUnitW)
    , m_nUnitH(other.m_nUnitH)
    , m_nUnitX(other.m_nUnitX)
    , m_nUnitY(other.m_nUnitY)
    , m_dOriginRatioX(other.m_dOriginRatioX)
    , m_dOriginRatioY(other.m_dOriginRatioY)
    , m_dOriginZ(other.m_dOriginZ)
    , m_dTranslateX(other.m_dTranslateX)
    , m_dTranslateY(other.m_dTranslateY)
    , m_dTranslateZ(other.m_dTranslateZ)
    , m_dScaleX(other.m_dScaleX)
    , m_dScaleY(other.m_dScaleY)
    , m_dScaleZ(other.m_dScaleZ)
    , m_dSkewX(other.m_dSkewX)
    , m_dSkewY(other.m_dSkewY)
    , m_dRotateX(other.m_dRotateX)
    , m_dRotateY(other.m_dRotateY)
    , m_dRotateZ(other.m_dRotateZ)
    , m_dOpacity(other.m_dOpacity)
    , m_nOverflowType(other.m_nOverflowType)
    , m_nDisplay(other.m_nDisplay)
    , m_nTabIndex(other.m_nTabIndex)
    , m_strValueCursor(other.m_strValueCursor)
    , m_strTitle(other.m_strTitle)
    , m_strClassName(other.m_strClassName)
    , m_pBorder(new VTBorder(*other.m_pBorder))
    , m_pBackground(new VTBackground(*other.m_pBackground))
    , m_pShadow(new VTShadow(*other.m_pShadow))
    , m_pFilter(new VTFilterEffect(*other.m_pFilter))
    , m_pClip(new VTClip(*other.m_pClip))
    , m_mapInherit(other.m_mapInherit)
{
    m_pBorder->setParent(this);
    m_pBackground->setParent(this);
    m_pShadow->setParent(this);
    m_pFilter->setParent(this);
    m_pClip->setParent(this);
}

// The sub-objects are children and go with the QObject destructor.
VTElementProperty::~VTElementProperty() = default;

VTElementProperty* VTElementProperty::clone() const
{
    return new VTElementProperty(*this);
}

void VTElementProperty::setCoordinateType(int nType)
{
    if (nType >= VT::LeftTop && nType <= VT::LeftBottom)
        m_nCoordinateType = nType;
}

void VTElementProperty::setUnitW(int nUnit)
{
    if (isSizeUnit(nUnit))
        m_nUnitW = nUnit;
}

void VTElementProperty::setUnitH(int nUnit)
{
    if (isSizeUnit(nUnit))
        m_nUnitH = nUnit;
}

void VTElementProperty::setUnitX(int nUnit)
{
    if (isPositionUnit(nUnit))
        m_nUnitX = nUnit;
}

void VTElementProperty::setUnitY(int nUnit)
{
    if (isPositionUnit(nUnit))
        m_nUnitY = nUnit;
}

void VTElementProperty::setTranslateXY(const QPointF& ptValue)
{
    m_dTranslateX = ptValue.x();
    m_dTranslateY = ptValue.y();
}

void VTElementProperty::setOverflowType(int nType)
{
    if (nType >= VT::Visible && nType <= VT::Auto)
        m_nOverflowType = nType;
}

bool VTElementProperty::isPreserved3D() const
{
    return m_dOriginZ != 0.0 || m_dTranslateZ != 0.0 || m_dScaleZ != 1.0 || m_dRotateX != 0.0 ||
           m_dRotateY != 0.0;
}

int VTElementProperty::getPropertyUnit(int nProperty) const
{
    switch (nProperty) {
    case VT::PropLeft:
    case VT::PropRight:
        return m_nUnitX;
    case VT::PropTop:
    case VT::PropBottom:
        return m_nUnitY;
    case VT::PropWidth:
        return m_nUnitW;
    case VT::PropHeight:
        return m_nUnitH;
    default:
        return m_pClip->getUnitOfProperty(nProperty);
    }
}

void VTElementProperty::getExportedFontInfo(QList<VTExportedFontInfo>& lstFonts) const
{
    Q_UNUSED(lstFonts)
}

// Inheritance

bool VTElementProperty::isInherit(int nProperty) const
{
    return m_mapInherit.value(nProperty, true);
}

void VTElementProperty::setInherit(int nProperty, bool bInherit)
{
    updateInherit(m_mapInherit, nProperty, bInherit);
}

void VTElementProperty::setInherits(bool bInherit)
{
    m_mapInherit.clear();
    if (bInherit)
        return;
    for (int nProperty = 0; nProperty < VT::ElementPropertyCount; ++nProperty)
        m_mapInherit.insert(nProperty, false);
}

void VTElementProperty::addInherits(const QMap<int, bool>& mapInherits)
{
    for (auto it = mapInherits.cbegin(); it != mapInherits.cend(); ++it)
        updateInherit(m_mapInherit, it.key(), it.value());
}

void VTElementProperty::updateInherit(QMap<int, bool>& mapInherits, int nProperty, bool bInherit)
{
    if (!VTElementPropertyInfo::isValidProperty(nProperty))
        return;
    if (bInherit)
        mapInherits.remove(nProperty);
    else
        mapInherits.insert(nProperty, false);
}

void VTElementProperty::serializeInherit(const QMap<int, bool>& mapInherits, QJsonArray& array)
{
    for (auto it = mapInherits.cbegin(); it != mapInherits.cend(); ++it) {
        if (!it.value() && VTElementPropertyInfo::isValidProperty(it.key()))
            array.append(it.key());
    }
}

void VTElementProperty::parseInherit(const QJsonArray& array, QMap<int, bool>& mapInherits,
                                     const VTJsonReader& reader)
{
    mapInherits.clear();
    // A damaged list can be long; the note names the first few entries only.
    constexpr int kNamedEntries = 5;
    QStringList lstDropped;
    int nDropped = 0;
    for (const QJsonValue& value : array) {
        const bool bInt = VTJsonReader::isInt(value);
        if (bInt && VTElementPropertyInfo::isValidProperty(value.toInt())) {
            mapInherits.insert(value.toInt(), false);
            continue;
        }
        if (++nDropped <= kNamedEntries)
            lstDropped << (bInt ? QString::number(value.toInt()) : VTJsonReader::describeType(value));
    }
    if (nDropped > kNamedEntries)
        lstDropped << tr("%n more", nullptr, nDropped - kNamedEntries);
    if (nDropped > 0)
        reader.report(tr("\"inherit\" holds entries that are no property numbers (%1); they are left out.")
                          .arg(lstDropped.join(QStringLiteral(", "))));
}

// Saved form

void VTElementProperty::serialize(QJsonObject& json) const
{
    QJsonObject path;
    path.insert(QStringLiteral("l"), m_dPositionX);
    path.insert(QStringLiteral("t"), m_dPositionY);
    path.insert(QStringLiteral("w"), m_dSizeW);
    path.insert(QStringLiteral("h"), m_dSizeH);
    path.insert(QStringLiteral("coordinateType"), m_nCoordinateType);
    path.insert(QStringLiteral("unitW"), m_nUnitW);
    path.insert(QStringLiteral("unitH"), m_nUnitH);
    path.insert(QStringLiteral("unitX"), m_nUnitX);
    path.insert(QStringLiteral("unitY"), m_nUnitY);
    json.insert(kPath, path);

    QJsonObject transform;
    transform.insert(QStringLiteral("originX"), m_dOriginRatioX);
    transform.insert(QStringLiteral("originY"), m_dOriginRatioY);
    transform.insert(QStringLiteral("originZ"), m_dOriginZ);
    transform.insert(QStringLiteral("translateX"), m_dTranslateX);
    transform.insert(QStringLiteral("translateY"), m_dTranslateY);
    transform.insert(QStringLiteral("translateZ"), m_dTranslateZ);
    transform.insert(QStringLiteral("scaleX"), m_dScaleX);
    transform.insert(QStringLiteral("scaleY"), m_dScaleY);
    transform.insert(QStringLiteral("scaleZ"), m_dScaleZ);
    transform.insert(QStringLiteral("skewX"), m_dSkewX);
    transform.insert(QStringLiteral("skewY"), m_dSkewY);
    transform.insert(QStringLiteral("rotateX"), m_dRotateX);
    transform.insert(QStringLiteral("rotateY"), m_dRotateY);
    transform.insert(QStringLiteral("rotate"), m_dRotateZ);
    json.insert(kTransform, transform);

    json.insert(QStringLiteral("opacity"), m_dOpacity);
    json.insert(QStringLiteral("overflow"), m_nOverflowType);
    json.insert(QStringLiteral("display"), m_nDisplay);
    json.insert(QStringLiteral("tabIndex"), m_nTabIndex);
    json.insert(QStringLiteral("valueCursor"), m_strValueCursor);
    json.insert(QStringLiteral("title"), m_strTitle);
    json.insert(QStringLiteral("className"), m_strClassName);

    QJsonObject border;
    m_pBorder->serialize(border);
    json.insert(QStringLiteral("border"), border);
    QJsonObject background;
    m_pBackground->serialize(background);
    json.insert(QStringLiteral("background"), background);
    QJsonObject shadow;
    m_pShadow->serialize(shadow);
    json.insert(QStringLiteral("shadow"), shadow);
    QJsonObject filter;
    m_pFilter->serialize(filter);
    json.insert(QStringLiteral("filter"), filter);
    QJsonObject clip;
    m_pClip->serialize(clip);
    json.insert(QStringLiteral("clip"), clip);

    QJsonArray inherit;
    serializeInherit(m_mapInherit, inherit);
    json.insert(QStringLiteral("inherit"), inherit);
}

bool VTElementProperty::parse(const QJsonObject& json, VTResourceManager* pManager, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("layout properties"), &lstProblems);

    const VTPropertyJson path(reader.readObject(kPath), kPath, &lstProblems);
    m_dPositionX = path.readDouble(QStringLiteral("l"), 0.0);
    m_dPositionY = path.readDouble(QStringLiteral("t"), 0.0);
    // A negative size has no box to draw, and the stage's handles would turn inside out.
    m_dSizeW = path.readDouble(QStringLiteral("w"), 100.0, 0.0);
    m_dSizeH = path.readDouble(QStringLiteral("h"), 50.0, 0.0);
    m_nCoordinateType =
        path.readInt(QStringLiteral("coordinateType"), VT::LeftTop, VT::LeftTop, VT::LeftBottom);
    m_nUnitW = path.readUnit(QStringLiteral("unitW"), true);
    m_nUnitH = path.readUnit(QStringLiteral("unitH"), true);
    m_nUnitX = path.readUnit(QStringLiteral("unitX"));
    m_nUnitY = path.readUnit(QStringLiteral("unitY"));
    if (m_nUnitW == VT::Ratio && m_nUnitH == VT::Ratio) {
        // Each side would be a multiple of the other, which no layout can resolve.
        path.report(tr("width and height are both ratios of each other; the height is taken as pixels."));
        m_nUnitH = VT::Pixel;
    }

    // Older files kept the transform under another name and rotated about Z with "rotateZ".
    QJsonObject transformObject;
    const QJsonValue transformValue = json.value(kTransform);
    if (transformValue.isObject()) {
        transformObject = transformValue.toObject();
    } else {
        if (!transformValue.isUndefined())
            reader.reader().reportWrongType(kTransform, VTJsonReader::tr("an object"),
                                            QStringLiteral("\"transform2d\""));
        transformObject = reader.readObject(QStringLiteral("transform2d"));
    }
    const VTPropertyJson transform(transformObject, kTransform, &lstProblems);
    m_dOriginRatioX = transform.readDouble(QStringLiteral("originX"), 0.5);
    m_dOriginRatioY = transform.readDouble(QStringLiteral("originY"), 0.5);
    m_dOriginZ = transform.readDouble(QStringLiteral("originZ"), 0.0);
    m_dTranslateX = transform.readDouble(QStringLiteral("translateX"), 0.0);
    m_dTranslateY = transform.readDouble(QStringLiteral("translateY"), 0.0);
    m_dTranslateZ = transform.readDouble(QStringLiteral("translateZ"), 0.0);
    m_dScaleX = transform.readDouble(QStringLiteral("scaleX"), 1.0);
    m_dScaleY = transform.readDouble(QStringLiteral("scaleY"), 1.0);
    m_dScaleZ = transform.readDouble(QStringLiteral("scaleZ"), 1.0);
    m_dSkewX = transform.readDouble(QStringLiteral("skewX"), 0.0);
    m_dSkewY = transform.readDouble(QStringLiteral("skewY"), 0.0);
    m_dRotateX = transform.readDouble(QStringLiteral("rotateX"), 0.0);
    m_dRotateY = transform.readDouble(QStringLiteral("rotateY"), 0.0);
    m_dRotateZ = transform.has(QStringLiteral("rotateZ"))
                     ? transform.readDouble(QStringLiteral("rotateZ"), 0.0)
                     : transform.readDouble(QStringLiteral("rotate"), 0.0);

    m_dOpacity = reader.readDouble(QStringLiteral("opacity"), 1.0, 0.0, 1.0);
    m_nOverflowType = reader.readInt(QStringLiteral("overflow"), VT::Visible, VT::Visible, VT::Auto);
    m_nDisplay = reader.readInt(QStringLiteral("display"), 1, 0, 1);
    m_nTabIndex = reader.readInt(QStringLiteral("tabIndex"), -2, -2);
    m_strValueCursor = reader.readString(QStringLiteral("valueCursor"), QStringLiteral("auto"));
    m_strTitle = reader.readString(QStringLiteral("title"));
    m_strClassName = reader.readString(QStringLiteral("className"));

    m_pBorder->parse(reader.readObject(QStringLiteral("border")), &lstProblems);
    m_pBackground->parse(reader.readObject(QStringLiteral("background")), pManager, &lstProblems);
    m_pShadow->parse(reader.readObject(QStringLiteral("shadow")), &lstProblems);
    m_pFilter->parse(reader.readObject(QStringLiteral("filter")), &lstProblems);
    m_pClip->parse(reader.readObject(QStringLiteral("clip")), &lstProblems);

    parseInherit(reader.readArray(QStringLiteral("inherit")), m_mapInherit, reader.reader());

    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

// Player form

bool VTElementProperty::isGroupWritten(bool bOverride, std::initializer_list<int> properties) const
{
    if (!bOverride)
        return true;
    for (int nProperty : properties) {
        if (!isInherit(nProperty))
            return true;
    }
    return false;
}

void VTElementProperty::writeGeometry(QJsonObject& json, bool bOverride, QStringList& lstDrop) const
{
    if (isGroupWritten(bOverride,
                       {VT::PropLeft, VT::PropTop, VT::PropWidth, VT::PropHeight, VT::PropCoordinateType})) {
        json.insert(QStringLiteral("r"),
                    QJsonArray{VTPropertyJson::toExportLength(m_dPositionX, m_nUnitX),
                               VTPropertyJson::toExportLength(m_dPositionY, m_nUnitY),
                               VTPropertyJson::toExportLength(m_dSizeW, m_nUnitW),
                               VTPropertyJson::toExportLength(m_dSizeH, m_nUnitH), m_nCoordinateType});
    }

    if (!isGroupWritten(bOverride,
                        {VT::PropRotateX, VT::PropRotateY, VT::PropRotateZ, VT::PropScaleX, VT::PropScaleY,
                         VT::PropScaleZ, VT::PropSkewX, VT::PropSkewY, VT::PropTranslateX, VT::PropTranslateY,
                         VT::PropTranslateZ, VT::PropOriginX, VT::PropOriginY, VT::PropOriginZ}))
        return;
    // The player applies the parts in this order and reads an empty part as its identity, so a
    // part at its default costs two characters and a trailing one nothing.
    QList<QJsonArray> parts;
    parts << (m_dTranslateX == 0.0 && m_dTranslateY == 0.0 && m_dTranslateZ == 0.0
                  ? QJsonArray()
                  : QJsonArray{m_dTranslateX, m_dTranslateY, m_dTranslateZ});
    parts << (m_dScaleX == 1.0 && m_dScaleY == 1.0 && m_dScaleZ == 1.0
                  ? QJsonArray()
                  : QJsonArray{m_dScaleX * 100.0, m_dScaleY * 100.0, m_dScaleZ * 100.0});
    parts << (m_dSkewX == 0.0 && m_dSkewY == 0.0 ? QJsonArray() : QJsonArray{m_dSkewX, m_dSkewY});
    parts << (m_dRotateX == 0.0 && m_dRotateY == 0.0 && m_dRotateZ == 0.0
                  ? QJsonArray()
                  : QJsonArray{m_dRotateX, m_dRotateY, m_dRotateZ});
    parts << (m_dOriginRatioX == 0.5 && m_dOriginRatioY == 0.5 && m_dOriginZ == 0.0
                  ? QJsonArray()
                  : QJsonArray{m_dOriginRatioX * 100.0, m_dOriginRatioY * 100.0, m_dOriginZ});
    while (!parts.isEmpty() && parts.last().isEmpty())
        parts.removeLast();
    if (parts.isEmpty()) {
        lstDrop << QStringLiteral("t");
        return;
    }
    QJsonArray transform;
    for (const QJsonArray& part : qAsConst(parts))
        transform.append(part);
    json.insert(QStringLiteral("t"), transform);
}

void VTElementProperty::serializeGeomToExport(QJsonObject& json, bool bOverride) const
{
    QStringList lstDrop;
    writeGeometry(json, bOverride, lstDrop);
}

QStringList VTElementProperty::serializeToExport(QJsonObject& json, bool bFirstBlock, bool bOverride) const
{
    QStringList lstDrop;
    writeGeometry(json, bOverride, lstDrop);

    const auto writeArray = [&json, &lstDrop](const QString& key, const QJsonArray& array) {
        if (array.isEmpty())
            lstDrop << key;
        else
            json.insert(key, array);
    };

    if (isGroupWritten(bOverride, {VT::PropBorderStyle, VT::PropBorderWidth, VT::PropBorderColor})) {
        QJsonArray border;
        m_pBorder->serializeToExport(border);
        writeArray(QStringLiteral("l"), border);
    }
    if (isGroupWritten(bOverride, {VT::PropFillStyle})) {
        QJsonArray background;
        m_pBackground->serializeToExport(background);
        writeArray(QStringLiteral("f"), background);
    }
    if (isGroupWritten(bOverride, {VT::PropShadowStyle, VT::PropShadowBlurRadius, VT::PropShadowAngle,
                                   VT::PropShadowDistance, VT::PropShadowColor})) {
        QJsonArray shadow;
        m_pShadow->serializeToExport(shadow);
        writeArray(QStringLiteral("sh"), shadow);
    }
    if (isGroupWritten(bOverride, {VT::PropInvertFilter, VT::PropHueFilter, VT::PropContrastFilter,
                                   VT::PropBrightnessFilter, VT::PropSaturateFilter, VT::PropSepiaFilter,
                                   VT::PropGrayscaleFilter, VT::PropBlurFilter})) {
        QJsonArray filter;
        m_pFilter->serializeToExport(filter);
        writeArray(QStringLiteral("fe"), filter);
    }
    if (isGroupWritten(bOverride, {VT::PropClipStyle, VT::PropClipRectTop, VT::PropClipRectRight,
                                   VT::PropClipRectBottom, VT::PropClipRectLeft, VT::PropClipOvalVertex,
                                   VT::PropClipOvalCoVertex, VT::PropClipCircleRadius})) {
        QJsonArray clip;
        m_pClip->serializeToExport(clip);
        writeArray(QStringLiteral("wc"), clip);
    }
    if (isGroupWritten(bOverride, {VT::PropOpacity}))
        json.insert(QStringLiteral("o"), m_dOpacity * 100.0);
    if (isGroupWritten(bOverride, {VT::PropOverflow}))
        json.insert(QStringLiteral("of"), m_nOverflowType);
    if (isGroupWritten(bOverride, {VT::PropDisplay})) {
        if (m_nDisplay == 0)
            json.insert(QStringLiteral("d"), 0);
        else
            lstDrop << QStringLiteral("d");
    }
    if (isGroupWritten(bOverride, {VT::PropClassName})) {
        if (m_strClassName.isEmpty())
            lstDrop << QStringLiteral("cl");
        else
            json.insert(QStringLiteral("cl"), m_strClassName);
    }
    if (bFirstBlock)
        return lstDrop;

    if (isGroupWritten(bOverride, {VT::PropTabIndex})) {
        if (m_nTabIndex >= -1)
            json.insert(QStringLiteral("tb"), m_nTabIndex);
        else
            lstDrop << QStringLiteral("tb");
    }
    if (isGroupWritten(bOverride, {VT::PropCursor})) {
        if (m_strValueCursor == QLatin1String("auto"))
            lstDrop << QStringLiteral("c");
        else
            json.insert(QStringLiteral("c"), m_strValueCursor);
    }
    if (isGroupWritten(bOverride, {VT::PropTitle})) {
        if (m_strTitle.isEmpty())
            lstDrop << QStringLiteral("tl");
        else
            json.insert(QStringLiteral("tl"), m_strTitle);
    }
    return lstDrop;
}
