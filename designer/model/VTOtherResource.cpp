#include "VTOtherResource.h"

#include "VTResourceManager.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

VTOtherResource::VTOtherResource(ResourceType type)
    : VTResource(type)
{
    if (type == StyleSheet)
        m_nResourceType = StyleSheetFile;
    else if (type == Html)
        m_nResourceType = HtmlFile;
}

VTResource* VTOtherResource::clone() const
{
    auto* pCopy = new VTOtherResource(*this);
    pCopy->setId(-1);
    pCopy->setUsageCount(0);
    return pCopy;
}

QString VTOtherResource::getFileName4Export() const
{
    return hasFile() ? VTResource::getFileName4Export() : getFileName();
}

VTOtherResource::OtherResourceType VTOtherResource::toOtherResourceType(int nValue)
{
    return nValue >= ScriptFile && nValue <= HtmlFile ? static_cast<OtherResourceType>(nValue) : ScriptFile;
}

void VTOtherResource::setResourceType(OtherResourceType type)
{
    m_nResourceType = type;
    if (type < HtmlFile)
        setIncludeResource(m_bIncludeResource);
}

void VTOtherResource::setIncludeResource(bool bInclude)
{
    m_bIncludeResource = bInclude;
    // Unused scripts and style sheets are what "select unused" offers to remove; being linked
    // in the page is their one use.
    if (bInclude && getUsageCount() <= 0)
        setUsageCount(1);
    else if (!bInclude && getUsageCount() > 0)
        setUsageCount(0);
}

int VTOtherResource::getFileType(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("js"))
        return ScriptFile;
    if (suffix == QLatin1String("css"))
        return StyleSheetFile;
    return -1;
}

QString VTOtherResource::getExtensionOfType(int nType)
{
    if (nType == ScriptFile)
        return QStringLiteral("js");
    if (nType == StyleSheetFile)
        return QStringLiteral("css");
    return {};
}

QString VTOtherResource::getContent() const
{
    if (!hasFile() || !getManager())
        return {};
    QFile file(getManager()->resolveFileName(getFileName()));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QString text;
    while (!stream.atEnd()) {
        text += stream.readLine();
        if (!stream.atEnd())
            text += QLatin1Char('\n');
    }
    return text;
}

bool VTOtherResource::setContent(const QString& text)
{
    if (!hasFile() || !getManager())
        return false;
    const QString path = getManager()->resolveFileName(getFileName());
    if (path.isEmpty())
        return false;
    // The file is replaced as a whole, so an interrupted write never leaves half a script.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray data = text.toUtf8();
    if (file.write(data) != data.size()) {
        file.cancelWriting();
        return false;
    }
    return getManager()->commitLockedFile(path, &file);
}

QString VTOtherResource::hashContent(const QString& text)
{
    return QString::fromLatin1(QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex());
}

void VTOtherResource::setOriginalResource(const QString& filePath)
{
    m_strOriginalResource = filePath;
    m_strOriginalHash = hashContent(getContent());
}

QString VTOtherResource::getOriginalContent() const
{
    if (m_strOriginalResource.isEmpty())
        return {};
    QFile file(m_strOriginalResource);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

bool VTOtherResource::updateOriginalResource()
{
    if (m_strOriginalResource.isEmpty() || !QFileInfo(m_strOriginalResource).isReadable())
        return false;
    return setContent(getOriginalContent());
}

bool VTOtherResource::isModified() const
{
    return hashContent(getContent()) != m_strOriginalHash;
}

void VTOtherResource::serialize(QJsonObject& object) const
{
    VTResource::serialize(object);
    object.insert(QStringLiteral("resourceType"), static_cast<int>(m_nResourceType));
    if (getType() != Html)
        object.insert(QStringLiteral("includeHeader"), m_bIncludeResource);
}
