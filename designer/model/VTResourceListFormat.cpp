#include "VTResourceListFormat.h"

#include "MediaResource.h"
#include "VTFontResource.h"
#include "VTGoogleFontInfo.h"
#include "VTJsonReader.h"
#include "VTOtherResource.h"
#include "VTResourceManager.h"
#include "VTSymbol.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QUrl>

#include <cmath>
#include <memory>

namespace {

QString fileUrl(const QString& path)
{
    return QUrl::fromLocalFile(path).toString();
}

VTResource* makeResource(VTResource::ResourceType type)
{
    switch (type) {
    case VTResource::Audio:
    case VTResource::Video:
        return new MediaResource(type);
    case VTResource::Font:
        return new VTFontResource();
    case VTResource::Script:
    case VTResource::StyleSheet:
    case VTResource::Html:
        return new VTOtherResource(type);
    default:
        return new VTResource(type);
    }
}

// Old projects kept each file under its hashed name; the plain name is what is used now.
void migrateHashedFile(VTResourceManager& manager, const QString& plainName, const QString& hashedName)
{
    const QString hashedPath = manager.resolveFileName(hashedName);
    const QString plainPath = manager.resolveFileName(plainName);
    if (hashedPath.isEmpty() || plainPath.isEmpty() || hashedName == plainName ||
        !QFileInfo::exists(hashedPath) || QFileInfo::exists(plainPath))
        return;
    if (QFile::copy(hashedPath, plainPath))
        manager.addMigratedFile(hashedName, plainName);
}

class EntryReader
{
public:
    EntryReader(VTResourceManager& manager, QStringList* pProblems)
        : m_manager(manager)
        , m_pProblems(pProblems)
    {}

    void note(const QString& text)
    {
        if (m_pProblems)
            m_pProblems->append(text);
    }

    // The file of a name as found at load: empty when it is missing or refused, with a note
    // that says what is lost with it.
    QString checkFile(const QString& entryName, const QString& fileName, bool bWholeResource)
    {
        const QString lost = bWholeResource ? VTResourceListFormat::tr("the resource is left out")
                                            : VTResourceListFormat::tr("this file is left out");
        const QString path = m_manager.resolveFileName(fileName);
        if (path.isEmpty()) {
            note(VTResourceListFormat::tr(
                     "Resource \"%1\": the file name \"%2\" does not lie inside the resource "
                     "folder; %3.")
                     .arg(entryName, fileName, lost));
            return {};
        }
        if (!QFileInfo(path).isFile()) {
            note(VTResourceListFormat::tr("Resource \"%1\": the file \"%2\" is missing; %3.")
                     .arg(entryName, fileName, lost));
            return {};
        }
        return path;
    }

private:
    VTResourceManager& m_manager;
    QStringList* m_pProblems;
};

} // namespace

bool VTResourceListFormat::parse(VTResourceManager& manager, const QJsonArray& array, int nDocVersion,
                                 QStringList* pProblems, bool* pbMissingFiles)
{
    EntryReader entries(manager, pProblems);
    bool bAllLoaded = true;
    bool bMissing = false;
    const int nCount = qMin(array.size(), s_nMaxEntries);
    if (array.size() > s_nMaxEntries) {
        entries.note(tr("The project lists %1 resources; only the first %2 are read.")
                         .arg(array.size())
                         .arg(s_nMaxEntries));
        bAllLoaded = false;
    }
    for (int i = 0; i < nCount; ++i) {
        const QJsonValue value = array.at(i);
        if (!value.isObject()) {
            entries.note(tr("Resource entry %1 is not an object; it is left out.").arg(i + 1));
            bAllLoaded = false;
            continue;
        }
        const QJsonObject object = value.toObject();
        const QString context = tr("resource %1").arg(i + 1);
        const VTJsonReader reader(object, context, pProblems);
        const QString name = reader.readString(QStringLiteral("name"));
        const QString shownName = name.isEmpty() ? context : name;
        const int nType = reader.readInt(QStringLiteral("type"), -1);
        const int nId = reader.readInt(QStringLiteral("id"), -1);
        const QUuid uuid(reader.readString(QStringLiteral("uuid")));
        const VTResource::ResourceType type = VTResource::toResourceType(nType);
        QString broken;
        if (type == VTResource::NoType)
            broken = tr("Resource \"%1\" has no known type (%2); it is left out.").arg(shownName).arg(nType);
        else if (nId < 0)
            broken = tr("Resource \"%1\" has no valid id; it is left out.").arg(shownName);
        else if (nId > 0 && manager.findResourceById(nId))
            broken = tr("Resource \"%1\" has the id %2 of another resource; it is left out.")
                         .arg(shownName)
                         .arg(nId);
        else if (uuid.isNull())
            broken = tr("Resource \"%1\" has no valid uuid; it is left out.").arg(shownName);
        if (!broken.isEmpty()) {
            entries.note(broken);
            bAllLoaded = false;
            continue;
        }

        std::unique_ptr<VTResource> pResource(makeResource(type));
        if (auto* pFont = dynamic_cast<VTFontResource*>(pResource.get())) {
            const QJsonObject info = reader.readObject(QStringLiteral("googlefont"));
            if (object.value(QStringLiteral("googlefont")).isObject()) {
                auto* pInfo = new VTGoogleFontInfo();
                pInfo->parseFromJson(info);
                pFont->setGoogleFontInfo(pInfo);
            }
        }
        if (auto* pOther = dynamic_cast<VTOtherResource*>(pResource.get())) {
            const int nKind = reader.readInt(QStringLiteral("resourceType"), 0);
            if (nKind < VTOtherResource::ScriptFile || nKind > VTOtherResource::HtmlFile)
                reader.report(tr("\"resourceType\" %1 is unknown; a file is assumed.").arg(nKind));
            pOther->setIncludeResource(type != VTResource::Html &&
                                       reader.readBool(QStringLiteral("includeHeader"), false));
            pOther->setResourceType(VTOtherResource::toOtherResourceType(nKind));
        }

        auto* pMedia = dynamic_cast<MediaResource*>(pResource.get());
        QStringList names;
        if (pMedia) {
            const QJsonArray list = reader.readArray(QStringLiteral("fileNames"));
            for (int n = 0; n < list.size() && n < MediaResource::s_nFormatCount * 4; ++n) {
                if (list.at(n).isString())
                    names.append(list.at(n).toString());
            }
        } else {
            names.append(reader.readString(QStringLiteral("fileName")));
        }
        for (const QString& fileName : qAsConst(names)) {
            if (pMedia && MediaResource::getMediaFormat(fileName) == MediaResource::NoFormat) {
                entries.note(tr("Resource \"%1\": \"%2\" is no known media format; it is left out.")
                                 .arg(shownName, fileName));
                bAllLoaded = false;
                continue;
            }
            pResource->setFileName(fileName);
            if (nDocVersion < 2)
                migrateHashedFile(manager, fileName, VTResource::hashFileName(fileName, type));
        }

        const bool bDeleted = reader.readBool(QStringLiteral("deleted"), false);
        const auto* pOther = dynamic_cast<const VTOtherResource*>(pResource.get());
        QStringList found;
        if (pMedia) {
            const QList<MediaResource::MediaFormat> formats = pMedia->getExistedFormat();
            for (MediaResource::MediaFormat format : formats) {
                const QString fileName = pMedia->getFileName(format);
                if (entries.checkFile(shownName, fileName, false).isEmpty()) {
                    pMedia->removeFormat(format);
                    bMissing = true;
                } else {
                    found.append(fileName);
                }
            }
            if (pMedia->getExistedFormat().isEmpty()) {
                entries.note(tr("Resource \"%1\" has no file left; it is left out.").arg(shownName));
                bMissing = true;
                continue;
            }
        } else if (!pOther || pOther->hasFile()) {
            if (entries.checkFile(shownName, pResource->getFileName(), true).isEmpty()) {
                bMissing = true;
                continue;
            }
            found.append(pResource->getFileName());
        }
        // A resource that comes in deleted does not own its files: closing must not remove
        // what a hand-edited file only claims to have given up.
        if (!bDeleted) {
            for (const QString& fileName : qAsConst(found))
                manager.adoptLoadedFile(fileName);
        }

        if (pMedia && type == VTResource::Video && object.contains(QStringLiteral("mediaW")) &&
            object.contains(QStringLiteral("mediaH"))) {
            const int nWidth = reader.readInt(QStringLiteral("mediaW"), 0);
            const int nHeight = reader.readInt(QStringLiteral("mediaH"), 0);
            if (nWidth >= 1 && nHeight >= 1)
                pMedia->setSize(QSize(nWidth, nHeight));
        }
        double dSize = object.value(QStringLiteral("dataSize")).toDouble(0);
        if (!std::isfinite(dSize) || dSize < 0 || dSize > 9.0e15)
            dSize = 0;
        pResource->setId(nId);
        pResource->setUuid(uuid);
        pResource->setName(name);
        pResource->setDataSize(static_cast<qint64>(dSize));
        manager.addResource(pResource.get());
        pResource->setDeleted(bDeleted);
        pResource.release();
    }
    if (pbMissingFiles)
        *pbMissingFiles = bMissing;
    return bAllLoaded && !bMissing;
}

void VTResourceListFormat::serialize(const VTResourceManager& manager, QJsonArray& array)
{
    const QList<VTResource*> scripts = manager.getOrderedJsResources();
    const QList<VTResource*> styleSheets = manager.getOrderedCssResources();
    int nNextScript = 0;
    int nNextStyleSheet = 0;
    // Each place a script or style sheet holds in id order takes the next one of its saved
    // order, so the user's order survives without a key of its own.
    const auto nextLive = [](const QList<VTResource*>& list, int& nIndex) -> VTResource* {
        while (nIndex < list.size()) {
            VTResource* pResource = list.at(nIndex++);
            if (!pResource->isDeleted())
                return pResource;
        }
        return nullptr;
    };
    const QMap<int, VTResource*>& resources = manager.getIdResourceMap();
    for (VTResource* pResource : resources) {
        if (pResource->isDeleted())
            continue;
        VTResource* pWritten = pResource;
        if (pResource->getType() == VTResource::Script)
            pWritten = nextLive(scripts, nNextScript);
        else if (pResource->getType() == VTResource::StyleSheet)
            pWritten = nextLive(styleSheets, nNextStyleSheet);
        if (!pWritten)
            continue;
        QJsonObject object;
        pWritten->serialize(object);
        array.append(object);
    }
}

void VTResourceListFormat::serializeToExport(VTResourceManager& manager, QJsonArray& array, bool bPreview,
                                             bool bStage, const VTResource* pOnly)
{
    QList<VTResource*> ordered;
    const QMap<int, VTResource*>& resources = manager.getIdResourceMap();
    for (VTResource* pResource : resources) {
        if (pResource->getType() != VTResource::Script && pResource->getType() != VTResource::StyleSheet)
            ordered.append(pResource);
    }
    ordered += manager.getOrderedCssResources();
    ordered += manager.getOrderedJsResources();

    int nUsedScripts = 0;
    int nUsedStyleSheets = 0;
    for (VTResource* pResource : qAsConst(ordered)) {
        if (!bStage && pResource->isDeleted())
            continue;
        if (pOnly && pResource != pOnly) {
            // The used scripts and style sheets ahead of the one asked for still count.
            if (bStage && pResource->getUsageCount() >= 1) {
                if (pResource->getType() == VTResource::Script)
                    ++nUsedScripts;
                else if (pResource->getType() == VTResource::StyleSheet)
                    ++nUsedStyleSheets;
            }
            continue;
        }
        QJsonArray entry{pResource->getId(), static_cast<int>(pResource->getType()), pResource->getName()};
        switch (pResource->getType()) {
        case VTResource::Image:
        case VTResource::Html:
        case VTResource::Other:
            if (!bPreview)
                entry.append(pResource->getFileName4Export());
            else if (!bStage)
                entry.append(pResource->getFileName());
            else
                entry.append(fileUrl(manager.getAbsTempFilename(pResource, false)));
            break;
        case VTResource::Audio:
        case VTResource::Video: {
            const auto* pMedia = static_cast<const MediaResource*>(pResource);
            QJsonArray files;
            if (bPreview) {
                const QStringList paths = manager.getAbsTempFilenames(pMedia);
                for (const QString& path : paths)
                    files.append(bStage ? fileUrl(path) : QFileInfo(path).fileName());
            } else {
                const QString display = VTResource::makeExportSafe(pResource->getName());
                const QStringList names = pMedia->getFileNames();
                for (const QString& name : names) {
                    const QString suffix = QFileInfo(name).suffix().toLower();
                    files.append(QFileInfo(display).suffix().toLower() == suffix
                                     ? display
                                     : display + QLatin1Char('.') + suffix);
                }
            }
            entry.append(files);
            break;
        }
        case VTResource::Symbol: {
            QJsonObject symbol;
            if (const VTSymbol* pSymbol = manager.getSymbolForResource(pResource))
                pSymbol->serializeToExport(symbol, bStage);
            entry.append(symbol);
            break;
        }
        case VTResource::Font: {
            if (!bStage)
                break;
            const auto* pFont = static_cast<const VTFontResource*>(pResource);
            entry.append(pFont->getGoogleFontInfo() ? pFont->getGoogleFontInfo()->getQueryWithAllVariants()
                                                    : QString());
            entry.append(pResource->isDeleted() ? 0 : 1);
            break;
        }
        case VTResource::Script:
        case VTResource::StyleSheet: {
            if (!bStage)
                break;
            const auto* pOther = static_cast<const VTOtherResource*>(pResource);
            entry.append(pOther->hasFile() ? fileUrl(manager.getAbsTempFilename(pResource, false))
                                           : pResource->getFileName());
            const bool bUsed = pResource->getUsageCount() >= 1;
            entry.append(bUsed ? 1 : 0);
            if (bUsed) {
                int& nUsed = pResource->getType() == VTResource::Script ? nUsedScripts : nUsedStyleSheets;
                entry.append(nUsed++);
            }
            break;
        }
        default:
            break;
        }
        array.append(entry);
    }
}
