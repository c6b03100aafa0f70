#include "VTShadow.h"

#include "VTPropertyJson.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

constexpr int kDefaultBlurRadius = 5;
constexpr int kDefaultAngle = 45;
constexpr int kDefaultDistance = 5;
constexpr QRgb kDefaultColor = 0x80000000;

} // namespace

VTShadow::VTShadow(QObject* parent)
    : QObject(parent)
{}

VTShadow::VTShadow(const VTShadow& other)
    : QObject()
    , m_nStyle(other.m_nStyle)
    , m_nShBlurRadius(other.m_nShBlurRadius)
    , m_nShAngle(other.m_nShAngle)
    , m_nShDistance(other.m_nShDistance)
    , m_shColor(other.m_shColor)
{}

QString VTShadow::getStyleName(int nStyle)
{
    switch (nStyle) {
    case None:
        return tr("None");
    case DropShadow:
        return tr("Drop Shadow");
    default:
        return QString();
    }
}

QList<VTShadow::Preset> VTShadow::getPresets()
{
    return {
        {tr("Top Left"), QStringLiteral("shadow_top_left"), 225},
        {tr("Top"), QStringLiteral("shadow_top"), 270},
        {tr("Top Right"), QStringLiteral("shadow_top_right"), 315},
        {tr("Bottom Left"), QStringLiteral("shadow_bottom_left"), 135},
        {tr("Bottom"), QStringLiteral("shadow_bottom"), 90},
        {tr("Bottom Right"), QStringLiteral("shadow_bottom_right"), 45},
        {tr("Right"), QStringLiteral("shadow_right"), 0},
        {tr("Left"), QStringLiteral("shadow_left"), 180},
    };
}

void VTShadow::applyPreset(const Preset& preset)
{
    m_nStyle = DropShadow;
    m_nShBlurRadius = kDefaultBlurRadius;
    m_nShAngle = preset.nAngle;
    m_nShDistance = kDefaultDistance;
    m_shColor = QColor::fromRgba(kDefaultColor);
}

void VTShadow::setStyle(int nStyle)
{
    if (nStyle == None || nStyle == DropShadow)
        m_nStyle = nStyle;
}

bool VTShadow::operator==(const VTShadow& other) const
{
    return m_nStyle == other.m_nStyle && m_nShBlurRadius == other.m_nShBlurRadius &&
           m_nShAngle == other.m_nShAngle && m_nShDistance == other.m_nShDistance &&
           m_shColor.rgba() == other.m_shColor.rgba();
}

void VTShadow::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("st"), m_nStyle);
    json.insert(QStringLiteral("br"), m_nShBlurRadius);
    json.insert(QStringLiteral("ag"), m_nShAngle);
    json.insert(QStringLiteral("dt"), m_nShDistance);
    json.insert(QStringLiteral("cl"), VTPropertyJson::colorToJson(m_shColor));
}

bool VTShadow::parse(const QJsonObject& json, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("shadow"), &lstProblems);
    m_nStyle = reader.readInt(QStringLiteral("st"), None, None, DropShadow);
    // A negative blur makes the browser drop the whole shadow; a negative distance only turns it
    // round, which the stage draws the same way.
    m_nShBlurRadius = reader.readInt(QStringLiteral("br"), kDefaultBlurRadius, 0);
    m_nShAngle = reader.readInt(QStringLiteral("ag"), kDefaultAngle);
    m_nShDistance = reader.readInt(QStringLiteral("dt"), kDefaultDistance);
    m_shColor = reader.readColor(QStringLiteral("cl"), QColor::fromRgba(kDefaultColor));
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTShadow::serializeToExport(QJsonArray& array) const
{
    if (m_nStyle == None)
        return;
    array.append(m_nShBlurRadius);
    array.append(m_nShAngle);
    array.append(m_nShDistance);
    VTPropertyJson::appendExportColor(array, m_shColor);
}
