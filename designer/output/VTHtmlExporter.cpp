#include "VTHtmlExporter.h"

#include "ICopyProgress.h"
#include "IMessageBox.h"
#include "IProjectDialogs.h"
#include "IUtils.h"
#include "MediaResource.h"
#include "VTDocument.h"
#include "VTEngine.h"
#include "VTExportScripts.h"
#include "VTExportText.h"
#include "VTFontResource.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTGoogleFontInfo.h"
#include "VTOtherResource.h"
#include "VTPreloader.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QUrl>

#include <memory>

namespace {

const QString s_strGoogleFontsCss = QStringLiteral("https://fonts.googleapis.com/css");

// A file left behind as a symbolic link would take the write somewhere else.
void removeIfLink(const QString& filePath)
{
    if (QFileInfo(filePath).isSymLink())
        QFile::remove(filePath);
}

bool isInside(const QString& canonicalBase, const QString& canonicalPath)
{
    if (canonicalBase.isEmpty() || canonicalPath.isEmpty())
        return false;
    const QString relative = QDir(canonicalBase).relativeFilePath(canonicalPath);
    return relative == QLatin1String(".") ||
           (!QDir::isAbsolutePath(relative) && relative != QLatin1String("..") &&
            !relative.startsWith(QLatin1String("../")));
}

// Shows the copy progress of both managers as one, and stops both when the user cancels.
class ExportProgress final
{
public:
    ExportProgress(qint64 nTotal, const QList<VTResourceManager*>& managers)
    {
        if (nTotal <= VTResourceManager::getMinimumDatasizeToShow())
            return;
        m_pProgress.reset(IProjectDialogs::instance()->createCopyProgress(
            VTHtmlExporter::tr("Exporting to HTML5..."), nTotal));
        if (!m_pProgress)
            return;
        m_pProgress->setCancelHandler([this, managers]() {
            m_bCancelled = true;
            for (VTResourceManager* pManager : managers)
                pManager->cancelCopyingData();
        });
        ICopyProgress* pRaw = m_pProgress.get();
        for (VTResourceManager* pManager : managers) {
            m_lstConnections.append(
                QObject::connect(pManager, &VTResourceManager::bytesWritten, pManager,
                                 [pRaw](qint64 nBytes) { pRaw->addCopiedBytes(nBytes); }));
        }
    }
    ~ExportProgress()
    {
        for (const QMetaObject::Connection& connection : qAsConst(m_lstConnections))
            QObject::disconnect(connection);
    }
    ExportProgress(const ExportProgress&) = delete;
    ExportProgress& operator=(const ExportProgress&) = delete;

    // Either through the handler or as the display reports it afterwards.
    bool isCancelled() const { return m_bCancelled || (m_pProgress && m_pProgress->wasCanceled()); }

private:
    std::unique_ptr<ICopyProgress> m_pProgress;
    QList<QMetaObject::Connection> m_lstConnections;
    bool m_bCancelled = false;
};

} // namespace

VTHtmlExporter::VTHtmlExporter(VTDocument& document)
    : m_document(document)
{}

void VTHtmlExporter::tell(const QString& text)
{
    IMessageBox::instance()->warning(IUtils::getApplicationName(), text, IMessageBox::Ok);
}

bool VTHtmlExporter::exportTo(const QString& folder)
{
    // Refusals come first, so a project that cannot be exported leaves the folder untouched.
    if (!checkOutputFolders() || !checkFunctionNames() || !checkResourceNames())
        return false;
    if (!QDir().mkpath(folder)) {
        tell(tr("Unable to export to HTML5.\nThe folder %1 cannot be created.")
                 .arg(QDir::toNativeSeparators(folder)));
        return false;
    }
    if (!exportPlayerFile(folder) || !exportHtmlFile(folder, false) ||
        !exportDataFile(folder, false, false) || !exportResources(QDir(folder)))
        return false;
    // The fonts make the style sheet's text, so they go before it; a font that cannot be
    // embedded is no reason to fail the export.
    if (m_document.isEmbedSystemFont())
        exportFonts(QDir(folder));
    return exportCSSFile(folder, false);
}

QString VTHtmlExporter::getPageFilePath(const QString& folder) const
{
    return QDir(folder).filePath(m_document.getHTML5EntryFileName());
}

bool VTHtmlExporter::exportPlayerFile(const QString& folder)
{
    const QString playerFolder = VTEngine::path();
    const QString source = QDir(playerFolder).filePath(VTEngine::getPlayerFileName());
    if (!QFileInfo(playerFolder).isDir() || !QFileInfo(source).isFile()) {
        tell(tr("Player file is undefined or inaccessible."));
        return false;
    }
    const QString target = QDir(folder).filePath(VTEngine::getPlayerFileName());
    const QFileInfo targetInfo(target);
    // Exporting into the player folder itself: the player is there already.
    if (targetInfo.exists() && !targetInfo.isSymLink() &&
        targetInfo.canonicalFilePath() == QFileInfo(source).canonicalFilePath())
        return true;
    if (targetInfo.exists() || targetInfo.isSymLink())
        QFile::remove(target);
    if (!QFile::copy(source, target)) {
        tell(tr("Cannot copy player file."));
        return false;
    }
    return true;
}

bool VTHtmlExporter::exportHtmlFile(const QString& folder, bool bPreview)
{
    if (!checkFunctionNames())
        return false;
    QString page = m_document.getHtmlOutput();
    if (page.isEmpty()) {
        bool bOk = true;
        page = readPlayerTemplate(VTEngine::getPageTemplateFileName(), &bOk);
        if (!bOk)
            return false;
    }
    QMap<QString, QString> values;
    values.insert(QStringLiteral("title"), VTExportText::escapeHtml(m_document.getTitle()));
    values.insert(QStringLiteral("description"), VTExportText::escapeHtml(m_document.getDescription()));
    values.insert(QStringLiteral("keywords"), VTExportText::escapeHtml(m_document.getKeywords()));
    values.insert(QStringLiteral("author"), VTExportText::escapeHtml(m_document.getAuthor()));
    values.insert(QStringLiteral("playerURL"), VTEngine::getPlayerFileName());
    values.insert(QStringLiteral("cssFiles"), loadIncludeFiles(VTResource::StyleSheet, bPreview));
    values.insert(QStringLiteral("jsFiles"), loadIncludeFiles(VTResource::Script, bPreview));
    values.insert(QStringLiteral("loadDocumentScript"), createLoadScript(bPreview));
    values.insert(QStringLiteral("containerID"), VTExportText::escapeHtml(m_document.getContainerID()));
    values.insert(QStringLiteral("viewportWidth"),
                  VTExportText::escapeHtml(m_document.getViewportWidthTag()));
    values.insert(QStringLiteral("viewportHeight"),
                  VTExportText::escapeHtml(m_document.getViewportHeightTag()));
    values.insert(QStringLiteral("googleFonts"), getStringIncludeHeaderGoogleFont());
    const QString failure =
        tr("Error when writing player file.\nThe file is open in another process or inaccessible.");
    return writeTextFile(getPageFilePath(folder), VTExportText::fillPlaceholders(page, values), failure,
                         failure);
}

bool VTHtmlExporter::exportDataFile(const QString& folder, bool bPreview, bool bCurrentSceneOnly)
{
    if (!checkFunctionNames())
        return false;
    if (!bPreview)
        collectSystemFonts();
    const QString script = VTExportScripts::createDataFileScript(m_document, bPreview, bCurrentSceneOnly);
    return writeTextFile(QDir(folder).filePath(m_document.getHTML5DataFileName()), script,
                         tr("Cannot write data file."), tr("Error when writing data file."));
}

bool VTHtmlExporter::exportCSSFile(const QString& folder, bool bPreview)
{
    QString css = m_document.getCssDoc();
    if (css.isEmpty()) {
        bool bOk = true;
        css = readPlayerTemplate(VTEngine::getStyleTemplateFileName(), &bOk);
        if (!bOk)
            return false;
    }
    const QString fontFaces = !bPreview && m_document.isEmbedSystemFont() ? m_strFontFace : QString();
    css = VTExportText::fillPlaceholders(css, {{QStringLiteral("systemFonts"), fontFaces}});
    const QString failure =
        tr("Error when writing player file.\nThe file is open in another process or inaccessible.");
    return writeTextFile(QDir(folder).filePath(m_document.getHTML5CSSFileName()), css, failure, failure);
}

QString VTHtmlExporter::getCSSContent(bool bPreview) const
{
    QString css = m_document.getCssDoc();
    if (css.isEmpty())
        css = getDefaultCSSContent();
    const QString fontFaces = !bPreview && m_document.isEmbedSystemFont() ? m_strFontFace : QString();
    return VTExportText::fillPlaceholders(css, {{QStringLiteral("systemFonts"), fontFaces}});
}

QString VTHtmlExporter::getDefaultHtmlContent() const
{
    return readPlayerTemplate(VTEngine::getPageTemplateFileName(), nullptr);
}

QString VTHtmlExporter::getDefaultCSSContent() const
{
    return readPlayerTemplate(VTEngine::getStyleTemplateFileName(), nullptr);
}

QString VTHtmlExporter::readPlayerTemplate(const QString& fileName, bool* pbOk) const
{
    if (pbOk)
        *pbOk = false;
    const QString playerFolder = VTEngine::path();
    const QString filePath = QDir(playerFolder).filePath(fileName);
    if (!QFileInfo(playerFolder).isDir() || !QFileInfo(filePath).isFile()) {
        tell(tr("Player file is undefined or inaccessible."));
        return QString();
    }
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        tell(tr("Cannot open player file."));
        return QString();
    }
    QByteArray data = file.readAll();
    // A template is text; whatever follows a zero byte is not part of it.
    const int nZero = data.indexOf('\0');
    if (nZero >= 0)
        data.truncate(nZero);
    if (pbOk)
        *pbOk = true;
    return QString::fromUtf8(data);
}

bool VTHtmlExporter::writeTextFile(const QString& filePath, const QString& text, const QString& openFailure,
                                   const QString& writeFailure) const
{
    removeIfLink(filePath);
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        tell(openFailure);
        return false;
    }
    const QByteArray data = text.toUtf8();
    if (file.write(data) != data.size() || !file.flush()) {
        tell(writeFailure);
        return false;
    }
    return true;
}

QString VTHtmlExporter::createDocDataScript(VTDocument& document, bool bPreview, bool bCurrentSceneOnly,
                                            bool bPreloader)
{
    if (!bPreview && !bPreloader && &document == &m_document)
        collectSystemFonts();
    return VTExportScripts::createDocDataScript(document, bPreview, bCurrentSceneOnly, bPreloader);
}

QString VTHtmlExporter::createFunctionDataScript(const VTDocument& document, bool bInline) const
{
    return VTExportScripts::createFunctionDataScript(document, bInline);
}

QString VTHtmlExporter::createLoadScript(bool bPreview)
{
    return VTExportScripts::createLoadScript(m_document, bPreview);
}

QString VTHtmlExporter::getScopeInjectionScript()
{
    return VTExportScripts::getScopeInjectionScript();
}

QString VTHtmlExporter::convertAlignToString(int nAlign)
{
    return VTExportScripts::convertAlignToString(nAlign);
}

QString VTHtmlExporter::loadIncludeFiles(VTResource::ResourceType type, bool bPreview) const
{
    if (type != VTResource::Script && type != VTResource::StyleSheet)
        return QString();
    const QString folder =
        VTDocument::getPath4Export(bPreview ? QStringLiteral("..") : m_document.getResFolderHTML5Output());
    const QString tag = type == VTResource::Script
                            ? QStringLiteral("<script type=\"text/javascript\" src=\"%1\"></script>")
                            : QStringLiteral("<link rel=\"stylesheet\" type=\"text/css\" href=\"%1\">");
    QStringList lines;
    const QList<VTResource*> resources = m_document.getResourceManager()->getResourcesByType(type, true);
    for (const VTResource* pResource : resources) {
        const auto* pOther = dynamic_cast<const VTOtherResource*>(pResource);
        if (!pOther || pOther->isDeleted() || !pOther->isIncludeResource())
            continue;
        const QString path =
            pOther->hasFile()
                ? VTExportText::escapeUrlPath(VTExportText::joinPath(folder, pOther->getFileName4Export()))
                : pOther->getFileName4Export();
        lines.append(tag.arg(VTExportText::escapeHtml(path)));
    }
    return lines.join(QStringLiteral("\n\t"));
}

QList<VTExportedFontInfo> VTHtmlExporter::collectUsedFonts() const
{
    QList<VTExportedFontInfo> lstFonts;
    for (const VTScene* pScene : m_document.getSceneManager()->getScenes())
        pScene->getExportedFontInfo(lstFonts);
    const VTResourceManager* pManager = m_document.getResourceManager();
    for (VTResource* pResource : pManager->getIdResourceMap()) {
        if (pResource->getType() != VTResource::Symbol || pResource->isDeleted() ||
            pResource->getUsageCount() <= 0)
            continue;
        if (const VTSymbol* pSymbol = pManager->getSymbolForResource(pResource)) {
            for (const VTScene* pScene : pSymbol->getSceneManager()->getScenes())
                pScene->getExportedFontInfo(lstFonts);
        }
    }
    return lstFonts;
}

QString VTHtmlExporter::getStringIncludeHeaderGoogleFont() const
{
    const QList<VTResource*> fonts =
        m_document.getResourceManager()->getResourcesByType(VTResource::Font, true);
    if (fonts.isEmpty())
        return QString();
    // Per family: whether any text uses it bold, and whether any uses it italic.
    QHash<QString, QPair<bool, bool>> families;
    const QList<VTExportedFontInfo> lstUsed = collectUsedFonts();
    for (const VTExportedFontInfo& info : lstUsed) {
        QPair<bool, bool>& styles = families[info.family];
        styles.first = styles.first || info.bold;
        styles.second = styles.second || info.italic;
    }
    if (families.isEmpty())
        return QString();
    QStringList entries;
    for (const VTResource* pResource : fonts) {
        const auto* pFont = dynamic_cast<const VTFontResource*>(pResource);
        const VTGoogleFontInfo* pInfo = pFont && !pFont->isDeleted() ? pFont->getGoogleFontInfo() : nullptr;
        if (!pInfo || !families.contains(pInfo->getFamily()))
            continue;
        const QPair<bool, bool> styles = families.value(pInfo->getFamily());
        QString entry = QString::fromLatin1(QUrl::toPercentEncoding(pInfo->getFamily(), " "));
        entry.replace(QLatin1Char(' '), QLatin1Char('+'));
        const QString variants = pInfo->getStringCombinedStyleVariantToExport(styles.first, styles.second);
        if (!variants.isEmpty())
            entry += QLatin1Char(':') + variants;
        entries.append(entry);
    }
    if (entries.isEmpty())
        return QString();
    const QString url = s_strGoogleFontsCss + QStringLiteral("?family=") + entries.join(QLatin1Char('|'));
    return QStringLiteral("<link href = \"") + VTExportText::escapeHtml(url) +
           QStringLiteral("\" rel = \"stylesheet\">");
}

void VTHtmlExporter::collectSystemFonts()
{
    m_lstSystemFonts.clear();
    if (!m_document.isEmbedSystemFont())
        return;
    // Families that the project brings as font resources are linked or shipped already.
    QSet<QString> resourceFamilies;
    const QList<VTResource*> fonts =
        m_document.getResourceManager()->getResourcesByType(VTResource::Font, true);
    for (const VTResource* pResource : fonts) {
        const auto* pFont = dynamic_cast<const VTFontResource*>(pResource);
        if (!pFont || pFont->isDeleted())
            continue;
        if (pFont->getGoogleFontInfo())
            resourceFamilies.insert(pFont->getGoogleFontInfo()->getFamily().toLower());
        if (!pFont->getFamilyName().isEmpty())
            resourceFamilies.insert(pFont->getFamilyName().toLower());
    }
    const QList<VTExportedFontInfo> lstUsed = collectUsedFonts();
    for (VTExportedFontInfo info : lstUsed) {
        if (resourceFamilies.contains(info.family.toLower()) || m_lstSystemFonts.contains(info))
            continue;
        info.ordered = m_lstSystemFonts.size();
        m_lstSystemFonts.append(info);
    }
}

bool VTHtmlExporter::exportFonts(const QDir& target)
{
    m_strFontFace.clear();
    const QString folderName = VTDocument::getPath4Export(m_document.getResFolderHTML5Output());
    QString folder;
    if (!makeOutputFolder(target, folderName, &folder))
        return true;
    if (m_document.isEmbedSystemFont()) {
        // Fonts of an earlier export that this one may no longer embed.
        const QDir dir(folder);
        const QStringList stale = dir.entryList({QStringLiteral("*.woff")}, QDir::Files);
        for (const QString& name : stale)
            QFile::remove(dir.filePath(name));
    }
    for (const VTExportedFontInfo& info : qAsConst(m_lstSystemFonts)) {
        QString family = info.family.section(QLatin1Char(','), 0, 0);
        family.remove(QLatin1Char('"'));
        family.remove(QLatin1Char('\''));
        const QString fileName = VTResource::makeExportSafe(
            (family + (info.bold ? QStringLiteral("_Bold") : QString()) +
             (info.italic ? QStringLiteral("_Italic") : QString()) + QStringLiteral(".woff"))
                .toLower());
        const QString filePath = QDir(folder).filePath(fileName);
        removeIfLink(filePath);
        if (!m_fontConverter || !m_fontConverter(family, filePath, info.bold, info.italic))
            continue;
        const QString localName = family + (info.bold ? QStringLiteral(" Bold") : QString()) +
                                  (info.italic ? QStringLiteral(" Italic") : QString());
        const QString url = VTExportText::escapeUrlPath(VTExportText::joinPath(folderName, fileName));
        m_strFontFace += QStringLiteral("@font-face{\n") + QStringLiteral("    font-family: '") +
                         VTExportText::escapeCssString(family) + QStringLiteral("';\n") +
                         QStringLiteral("    font-style: ") +
                         (info.italic ? QStringLiteral("italic") : QStringLiteral("normal")) +
                         QStringLiteral(";\n") + QStringLiteral("    font-weight: ") +
                         (info.bold ? QStringLiteral("700") : QStringLiteral("400")) + QStringLiteral(";\n") +
                         QStringLiteral("    src: local('") + VTExportText::escapeCssString(localName) +
                         QStringLiteral("'),\n") + QStringLiteral("         url('") +
                         VTExportText::escapeCssString(url) + QStringLiteral("');\n") + QStringLiteral("}\n");
    }
    return true;
}

VTResourceManager* VTHtmlExporter::getPreloaderManager()
{
    if (m_document.getLoaderType() != VT::CustomPreloader || !m_document.initPreloaderDocument())
        return nullptr;
    VTPreloader* pPreloader = m_document.getPreloaderDoc();
    return pPreloader ? pPreloader->getResourceManager() : nullptr;
}

QList<VTHtmlExporter::ResourceFile> VTHtmlExporter::listResourceFiles(VTResourceManager& manager,
                                                                      bool bPreloader)
{
    QList<ResourceFile> files;
    for (VTResource* pResource : manager.getIdResourceMap()) {
        const VTResource::ResourceType type = pResource->getType();
        // Symbols travel inside the data script; the main page links its web fonts instead.
        if (pResource->isDeleted() || type == VTResource::Symbol || (!bPreloader && type == VTResource::Font))
            continue;
        const auto* pOther = dynamic_cast<const VTOtherResource*>(pResource);
        if (pOther && !pOther->hasFile())
            continue;
        if (const auto* pMedia = dynamic_cast<const MediaResource*>(pResource)) {
            // The names that the data script gives the player for each encoding.
            const QString display = VTResource::makeExportSafe(pResource->getName());
            const QStringList names = pMedia->getFileNames();
            for (const QString& name : names) {
                const QString suffix = QFileInfo(name).suffix().toLower();
                const QString target = QFileInfo(display).suffix().toLower() == suffix
                                           ? display
                                           : display + QLatin1Char('.') + suffix;
                files.append({pResource->getName(),
                              manager.getAbsTempFilename(pMedia, MediaResource::getMediaFormat(name)),
                              target});
            }
        } else {
            files.append({pResource->getName(), manager.getAbsTempFilename(pResource, false),
                          pResource->getFileName4Export()});
        }
    }
    return files;
}

bool VTHtmlExporter::checkOutputFolders() const
{
    QStringList names{m_document.getResFolderHTML5Output()};
    if (m_document.getLoaderType() == VT::CustomPreloader)
        names.append(m_document.getPreloaderResFolderHTML5Output());
    for (const QString& name : qAsConst(names)) {
        if (!VTExportText::isSafeRelativeFolder(name)) {
            tell(tr("Unable to export to HTML5.\nThe resource folder name \"%1\" leads outside the export "
                    "folder; "
                    "choose a folder name inside it.")
                     .arg(name));
            return false;
        }
    }
    return true;
}

bool VTHtmlExporter::checkFunctionNames()
{
    QList<const VTDocument*> documents{&m_document};
    if (m_document.getLoaderType() == VT::CustomPreloader && m_document.initPreloaderDocument() &&
        m_document.getPreloaderDoc())
        documents.append(m_document.getPreloaderDoc());
    for (const VTDocument* pDocument : qAsConst(documents)) {
        const VTFunctionManager* pManager = pDocument->getFunctionManager();
        const QList<VTFunction*> functions = pManager ? pManager->getFunctions() : QList<VTFunction*>();
        for (const VTFunction* pFunction : functions) {
            if (!VTExportText::isValidScriptName(pFunction->getName())) {
                tell(tr("Unable to export to HTML5.\nThe function name \"%1\" is not a valid JavaScript name "
                        "or "
                        "is reserved; rename the function and export again.")
                         .arg(pFunction->getName()));
                return false;
            }
        }
    }
    return true;
}

bool VTHtmlExporter::checkResourceNames()
{
    QList<ResourceFile> files = listResourceFiles(*m_document.getResourceManager(), false);
    if (VTResourceManager* pPreloaderManager = getPreloaderManager())
        files += listResourceFiles(*pPreloaderManager, true);
    for (const ResourceFile& file : qAsConst(files)) {
        if (!VTExportText::isSafeFileName(file.strTarget)) {
            tell(tr("Unable to export to HTML5.\nThe resource \"%1\" would be written as \"%2\", which is "
                    "not a "
                    "plain file name; rename the resource and export again.")
                     .arg(file.strName, file.strTarget));
            return false;
        }
    }
    return true;
}

bool VTHtmlExporter::makeOutputFolder(const QDir& target, const QString& name, QString* pPath)
{
    if (!VTExportText::isSafeRelativeFolder(name))
        return false;
    const QString base = target.absolutePath();
    const QString path = name.isEmpty() ? base : QDir(base).filePath(name);
    if (!QDir().mkpath(path))
        return false;
    // A link inside the export folder must not carry the files out of it.
    if (!isInside(QFileInfo(base).canonicalFilePath(), QFileInfo(path).canonicalFilePath()))
        return false;
    *pPath = path;
    return true;
}

bool VTHtmlExporter::copyResourceFiles(VTResourceManager& manager, const QList<ResourceFile>& files,
                                       const QString& folder, const std::function<bool()>& isCancelled) const
{
    bool bOk = true;
    for (const ResourceFile& file : files) {
        if (isCancelled())
            return false;
        const QString targetPath = QDir(folder).filePath(file.strTarget);
        removeIfLink(targetPath);
        QFile source(file.strSource);
        QFile target(targetPath);
        if (file.strSource.isEmpty() || !source.open(QIODevice::ReadOnly) ||
            !target.open(QIODevice::WriteOnly)) {
            bOk = false;
            continue;
        }
        if (!manager.copyResourceData(&source, &target)) {
            QFile::remove(targetPath);
            bOk = false;
        }
    }
    return bOk && !isCancelled();
}

bool VTHtmlExporter::exportResources(const QDir& target)
{
    if (!checkOutputFolders() || !checkResourceNames())
        return false;
    VTResourceManager* pManager = m_document.getResourceManager();
    VTResourceManager* pPreloaderManager = getPreloaderManager();
    QList<VTResourceManager*> managers{pManager};
    if (pPreloaderManager)
        managers.append(pPreloaderManager);
    qint64 nTotal = 0;
    for (const VTResourceManager* pEach : qAsConst(managers))
        nTotal += pEach->getDataSize(false);
    ExportProgress progress(nTotal, managers);
    const auto isCancelled = [&progress]() { return progress.isCancelled(); };

    // Each manager writes into its folder when it has anything beside symbols.
    const auto hasFiles = [](const VTResourceManager& manager) {
        int nSymbols = 0;
        for (const VTResource* pResource : manager.getIdResourceMap())
            nSymbols += pResource->getType() == VTResource::Symbol ? 1 : 0;
        return manager.getIdResourceMap().size() != nSymbols;
    };
    if (hasFiles(*pManager)) {
        QString folder;
        if (!makeOutputFolder(target, VTDocument::getPath4Export(m_document.getResFolderHTML5Output()),
                              &folder)) {
            tell(tr("Cannot create folder to export resources."));
            return false;
        }
        const bool bCopied =
            copyResourceFiles(*pManager, listResourceFiles(*pManager, false), folder, isCancelled);
        if (isCancelled())
            return false;
        if (!bCopied) {
            tell(tr("Error while exporting resource files."));
            return false;
        }
    }
    if (pPreloaderManager && hasFiles(*pPreloaderManager)) {
        QString folder;
        if (!makeOutputFolder(
                target, VTDocument::getPath4Export(m_document.getPreloaderResFolderHTML5Output()), &folder)) {
            tell(tr("Error while exporting preloader resources"));
            return false;
        }
        const bool bCopied = copyResourceFiles(
            *pPreloaderManager, listResourceFiles(*pPreloaderManager, true), folder, isCancelled);
        if (isCancelled())
            return false;
        if (!bCopied) {
            tell(tr("Error when exporting preloader's resources"));
            return false;
        }
    }
    return true;
}
