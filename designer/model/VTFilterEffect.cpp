#include "VTFilterEffect.h"

#include "VTPropertyJson.h"

#include <QJsonArray>
#include <QJsonObject>

VTFilterEffect::VTFilterEffect(QObject* parent)
    : QObject(parent)
{}

VTFilterEffect::VTFilterEffect(const VTFilterEffect& other)
    : QObject()
    , m_dInvert(other.m_dInvert)
    , m_nHue(other.m_nHue)
    , m_dContrast(other.m_dContrast)
    , m_dBrightness(other.m_dBrightness)
    , m_dSaturate(other.m_dSaturate)
    , m_dSepia(other.m_dSepia)
    , m_dGrayscale(other.m_dGrayscale)
    , m_nBlur(other.m_nBlur)
{}

QList<VTFilterEffect::Preset> VTFilterEffect::getPresets()
{
    const auto preset = [](const QString& title, const char* iconStem) {
        Preset entry;
        entry.title = title;
        entry.iconStem = QString::fromLatin1(iconStem);
        return entry;
    };
    QList<Preset> lstPresets;
    lstPresets << preset(tr("Default"), "filter_1");
    Preset entry = preset(tr("Lively Color"), "filter_2");
    entry.nHue = 10;
    entry.dSaturate = 1.5;
    lstPresets << entry;
    entry = preset(tr("Yellow Boost"), "filter_3");
    entry.dContrast = 0.9;
    entry.dBrightness = 1.1;
    entry.dSaturate = 1.5;
    lstPresets << entry;
    entry = preset(tr("Old Style"), "filter_4");
    entry.dBrightness = 1.05;
    entry.dSaturate = 0.6;
    lstPresets << entry;
    entry = preset(tr("Blur"), "filter_5");
    entry.nBlur = 1;
    lstPresets << entry;
    entry = preset(tr("Hue 180"), "filter_6");
    entry.nHue = 180;
    lstPresets << entry;
    entry = preset(tr("Invert"), "filter_7");
    entry.dInvert = 1.0;
    lstPresets << entry;
    entry = preset(tr("Sepia"), "filter_8");
    entry.dSepia = 1.0;
    lstPresets << entry;
    entry = preset(tr("Grayscale"), "filter_9");
    entry.dGrayscale = 1.0;
    lstPresets << entry;
    return lstPresets;
}

void VTFilterEffect::applyPreset(const Preset& preset)
{
    m_dInvert = preset.dInvert;
    m_nHue = preset.nHue;
    m_dContrast = preset.dContrast;
    m_dBrightness = preset.dBrightness;
    m_dSaturate = preset.dSaturate;
    m_dSepia = preset.dSepia;
    m_dGrayscale = preset.dGrayscale;
    m_nBlur = preset.nBlur;
}

bool VTFilterEffect::isDefault() const
{
    return *this == VTFilterEffect();
}

bool VTFilterEffect::operator==(const VTFilterEffect& other) const
{
    return m_dInvert == other.m_dInvert && m_nHue == other.m_nHue && m_dContrast == other.m_dContrast &&
           m_dBrightness == other.m_dBrightness && m_dSaturate == other.m_dSaturate &&
           m_dSepia == other.m_dSepia && m_dGrayscale == other.m_dGrayscale && m_nBlur == other.m_nBlur;
}

void VTFilterEffect::serialize(QJsonObject& json) const
{
    json.insert(QStringLiteral("i"), m_dInvert);
    json.insert(QStringLiteral("h"), m_nHue);
    json.insert(QStringLiteral("c"), m_dContrast);
    json.insert(QStringLiteral("r"), m_dBrightness);
    json.insert(QStringLiteral("s"), m_dSaturate);
    json.insert(QStringLiteral("sp"), m_dSepia);
    json.insert(QStringLiteral("g"), m_dGrayscale);
    json.insert(QStringLiteral("b"), m_nBlur);
}

bool VTFilterEffect::parse(const QJsonObject& json, QStringList* pProblems)
{
    QStringList lstProblems;
    const VTPropertyJson reader(json, tr("filter"), &lstProblems);
    // CSS refuses negative amounts for all of these, and with them the whole filter chain.
    m_dInvert = reader.readDouble(QStringLiteral("i"), 0.0, 0.0);
    m_nHue = reader.readInt(QStringLiteral("h"), 0);
    m_dContrast = reader.readDouble(QStringLiteral("c"), 1.0, 0.0);
    m_dBrightness = reader.readDouble(QStringLiteral("r"), 1.0, 0.0);
    m_dSaturate = reader.readDouble(QStringLiteral("s"), 1.0, 0.0);
    m_dSepia = reader.readDouble(QStringLiteral("sp"), 0.0, 0.0);
    m_dGrayscale = reader.readDouble(QStringLiteral("g"), 0.0, 0.0);
    m_nBlur = reader.readInt(QStringLiteral("b"), 0, 0);
    if (pProblems)
        pProblems->append(lstProblems);
    return lstProblems.isEmpty();
}

void VTFilterEffect::serializeToExport(QJsonArray& array) const
{
    array.append(m_dInvert * 100.0);
    array.append(m_nHue);
    array.append(m_dContrast * 100.0);
    array.append(m_dBrightness * 100.0);
    array.append(m_dSaturate * 100.0);
    array.append(m_dSepia * 100.0);
    array.append(m_dGrayscale * 100.0);
    array.append(m_nBlur);
}
