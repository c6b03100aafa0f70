#include "VTResource.h"

#include "VTResourceManager.h"
#include "VTSymbol.h"

#include <QCryptographicHash>
#include <QFileInfo>

// Slashes are replaced as well, so that a display name can never reach outside the folder it
// is exported into.
QString VTResource::makeExportSafe(const QString& name)
{
    static const QString s_strReserved = QStringLiteral("<>:\"|?*\n/\\");
    QString result = name;
    for (QChar& c : result) {
        if (s_strReserved.contains(c) || c.category() == QChar::Other_Control)
            c = QLatin1Char('_');
    }
    if (result.isEmpty() || result == QLatin1String(".") || result == QLatin1String(".."))
        result = QStringLiteral("_") + result;
    return result;
}

VTResource::VTResource(ResourceType type)
    : m_uuid(QUuid::createUuid())
    , m_nType(type)
{}

VTResource::VTResource(const VTResource& other) = default;

VTResource::~VTResource() = default;

VTResource* VTResource::clone() const
{
    auto* pCopy = new VTResource(*this);
    pCopy->m_nId = -1;
    pCopy->m_nUsageCount = 0;
    return pCopy;
}

QString VTResource::getTypeName(int nType)
{
    switch (nType) {
    case Image:
        return QStringLiteral("image");
    case Audio:
        return QStringLiteral("audio");
    case Video:
        return QStringLiteral("video");
    case Symbol:
        return QStringLiteral("symbol");
    case Font:
        return QStringLiteral("font");
    case Script:
        return QStringLiteral("js");
    case StyleSheet:
        return QStringLiteral("css");
    case Html:
        return QStringLiteral("html");
    case Other:
        return QStringLiteral("misc");
    default:
        return {};
    }
}

QStringList VTResource::getSupportedExtensions(int nType)
{
    switch (nType) {
    case Image:
        return {QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg"),
                QStringLiteral("bmp"), QStringLiteral("gif"), QStringLiteral("svg")};
    case Audio:
        return {QStringLiteral("mp3"), QStringLiteral("wav"), QStringLiteral("m4a"),
                QStringLiteral("aac"), QStringLiteral("ogg"), QStringLiteral("oga")};
    case Video:
        return {QStringLiteral("mp4"), QStringLiteral("m4v"), QStringLiteral("webm"), QStringLiteral("ogv")};
    case Symbol:
        return {QStringLiteral("vetrasym")};
    case Font:
        return {QStringLiteral("ttf"), QStringLiteral("otf"), QStringLiteral("woff"), QStringLiteral("woff2"),
                QStringLiteral("eot")};
    case Script:
        return {QStringLiteral("js")};
    case StyleSheet:
        return {QStringLiteral("css")};
    case Html:
        return {QStringLiteral("html")};
    default:
        return {};
    }
}

VTResource::ResourceType VTResource::toResourceType(int nValue)
{
    return nValue >= Image && nValue <= Other ? static_cast<ResourceType>(nValue) : NoType;
}

QString VTResource::hashFileName(const QString& fileName, ResourceType type)
{
    QString hashed =
        QString::fromLatin1(QCryptographicHash::hash(fileName.toUtf8(), QCryptographicHash::Md5).toHex());
    hashed += QLatin1Char('.') + QFileInfo(fileName).suffix();
    if (type == Symbol)
        hashed += QLatin1Char('_');
    return hashed;
}

void VTResource::setFileName(const QString& fileName)
{
    m_strFileName = fileName;
    m_strHashedFileName = hashFileName(fileName, m_nType);
}

QString VTResource::getFileName4Export() const
{
    const QString fileSuffix = QFileInfo(getFileName()).suffix();
    if (QFileInfo(m_strName).suffix() == fileSuffix)
        return makeExportSafe(m_strName);
    QString name = makeExportSafe(m_strName);
    if (!fileSuffix.isEmpty())
        name += QLatin1Char('.') + makeExportSafe(fileSuffix);
    return name;
}

void VTResource::setDeleted(bool bDeleted)
{
    if (m_bDeleted == bDeleted)
        return;
    m_bDeleted = bDeleted;
    if (m_nType != Symbol || !m_pManager)
        return;
    // What a deleted symbol holds must not count as used, or the resources it places could
    // never be told apart from those still on a stage.
    if (VTSymbol* pSymbol = m_pManager->getSymbolForResource(this)) {
        if (bDeleted)
            pSymbol->detachResources();
        else
            pSymbol->attachResources();
    }
}

void VTResource::serialize(QJsonObject& object) const
{
    object.insert(QStringLiteral("id"), m_nId);
    object.insert(QStringLiteral("uuid"), m_uuid.toString());
    object.insert(QStringLiteral("name"), m_strName);
    object.insert(QStringLiteral("deleted"), m_bDeleted);
    object.insert(QStringLiteral("type"), static_cast<int>(m_nType));
    object.insert(QStringLiteral("dataSize"), static_cast<double>(m_nDataSize));
    object.insert(QStringLiteral("fileName"), getFileName());
}
