#include "VTOutputSettings.h"

#include "IUtils.h"
#include "VTJsonReader.h"

#include <QJsonObject>

namespace {

const QString s_strResFolderKey = QStringLiteral("resFolderHtml5Output");
const QString s_strPreResFolderKey = QStringLiteral("preResFolderHtml5Output");
const QString s_strViewportWKey = QStringLiteral("viewportWMeta");
const QString s_strViewportHKey = QStringLiteral("viewportHMeta");
const QString s_strContainerIdKey = QStringLiteral("containerID");
const QString s_strHtmlOutputKey = QStringLiteral("htmlOutput");
const QString s_strCssDocKey = QStringLiteral("cssDoc");

} // namespace

VTOutputSettings::VTOutputSettings()
    : m_strResFolder(QStringLiteral("resources"))
    , m_strPreResFolder(QStringLiteral("preloader_resources"))
    , m_strContainerID(IUtils::genContainerId())
{}

QStringList VTOutputSettings::getKeys()
{
    return {s_strResFolderKey,   s_strPreResFolderKey, s_strViewportWKey, s_strViewportHKey,
            s_strContainerIdKey, s_strHtmlOutputKey,   s_strCssDocKey};
}

void VTOutputSettings::resetToFileDefaults()
{
    m_strResFolder.clear();
    m_strPreResFolder.clear();
    m_nViewportWMeta = 0;
    m_nViewportHMeta = 0;
    m_strContainerID.clear();
    m_strHtmlOutput.clear();
    m_strCssDoc.clear();
}

void VTOutputSettings::resetToNewDefaults()
{
    m_strResFolder = QStringLiteral("resources");
    m_strPreResFolder = QStringLiteral("preloader_resources");
    m_nViewportWMeta = ViewportNone;
    m_nViewportHMeta = ViewportNone;
    m_strContainerID = IUtils::genContainerId();
    m_strHtmlOutput.clear();
    m_strCssDoc.clear();
}

void VTOutputSettings::read(const VTJsonReader& reader)
{
    m_strResFolder = reader.readString(s_strResFolderKey);
    m_strPreResFolder = reader.readString(s_strPreResFolderKey);
    m_nViewportWMeta = reader.readInt(s_strViewportWKey, 0);
    m_nViewportHMeta = reader.readInt(s_strViewportHKey, 0);
    m_strContainerID = reader.readString(s_strContainerIdKey);
    m_strHtmlOutput = reader.readString(s_strHtmlOutputKey);
    m_strCssDoc = reader.readString(s_strCssDocKey);
}

void VTOutputSettings::write(QJsonObject& document) const
{
    document.insert(s_strResFolderKey, m_strResFolder);
    document.insert(s_strPreResFolderKey, m_strPreResFolder);
    document.insert(s_strViewportWKey, m_nViewportWMeta);
    document.insert(s_strViewportHKey, m_nViewportHMeta);
    document.insert(s_strContainerIdKey, getContainerID());
    document.insert(s_strHtmlOutputKey, m_strHtmlOutput);
    document.insert(s_strCssDocKey, m_strCssDoc);
}

QString VTOutputSettings::getViewportValueText(int nValue)
{
    switch (nValue) {
    case ViewportDeviceHeight:
        return QStringLiteral("device-height");
    case ViewportDeviceWidth:
        return QStringLiteral("device-width");
    case ViewportNone:
        return {};
    default:
        return QString::number(nValue);
    }
}

QString VTOutputSettings::getViewportWidthTag() const
{
    const QString value = getViewportValueText(m_nViewportWMeta);
    return value.isEmpty() ? QString() : QStringLiteral("width=%1, ").arg(value);
}

QString VTOutputSettings::getViewportHeightTag() const
{
    const QString value = getViewportValueText(m_nViewportHMeta);
    return value.isEmpty() ? QString() : QStringLiteral("height=%1, ").arg(value);
}

QString VTOutputSettings::getContainerID() const
{
    if (m_strContainerID.isEmpty())
        m_strContainerID = IUtils::genContainerId();
    return m_strContainerID;
}
