#include "MediaResource.h"

#include <QFileInfo>
#include <QJsonArray>

MediaResource::MediaResource(ResourceType type)
    : VTResource(type)
{}

VTResource* MediaResource::clone() const
{
    auto* pCopy = new MediaResource(*this);
    pCopy->setId(-1);
    pCopy->setUsageCount(0);
    return pCopy;
}

QString MediaResource::getExtensionOfFormat(int nFormat)
{
    static const char* const s_aszExtensions[s_nFormatCount] = {"mp4", "m4v", "webm", "ogv", "mp3",
                                                                "m4a", "aac", "wav",  "ogg", "oga"};
    if (nFormat < 0 || nFormat >= s_nFormatCount)
        return {};
    return QString::fromLatin1(s_aszExtensions[nFormat]);
}

MediaResource::MediaFormat MediaResource::getMediaFormat(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    for (int nFormat = 0; nFormat < s_nFormatCount; ++nFormat) {
        if (suffix == getExtensionOfFormat(nFormat))
            return static_cast<MediaFormat>(nFormat);
    }
    return NoFormat;
}

QString MediaResource::getFileName() const
{
    return m_mapFileNames.isEmpty() ? QString() : m_mapFileNames.first();
}

QString MediaResource::getHashedFileName() const
{
    return m_mapHashedFileNames.isEmpty() ? QString() : m_mapHashedFileNames.first();
}

void MediaResource::setFileName(const QString& fileName)
{
    const MediaFormat format = getMediaFormat(fileName);
    if (format == NoFormat)
        return;
    m_mapFileNames.insert(format, fileName);
    m_mapHashedFileNames.insert(format, hashFileName(fileName, getType()));
}

void MediaResource::removeFormat(MediaFormat format)
{
    m_mapFileNames.remove(format);
    m_mapHashedFileNames.remove(format);
}

void MediaResource::serialize(QJsonObject& object) const
{
    VTResource::serialize(object);
    object.remove(QStringLiteral("fileName"));
    QJsonArray names;
    for (const QString& name : m_mapFileNames)
        names.append(name);
    object.insert(QStringLiteral("fileNames"), names);
    if (getType() == Video && hasValidSize()) {
        object.insert(QStringLiteral("mediaW"), m_size.width());
        object.insert(QStringLiteral("mediaH"), m_size.height());
    }
}
