#include "VTExportScripts.h"

#include "VTBreakpointManager.h"
#include "VTDocument.h"
#include "VTEngine.h"
#include "VTEventListenerList.h"
#include "VTExportText.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTLoadIndicatorProps.h"
#include "VTPreloader.h"
#include "VTPreloaderLink.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// The format the player reads, and the oldest player that reads it.
constexpr int s_nDataVersion = 3;
constexpr int s_nMinimumPlayerVersion = 2;

// Alignment flags as the document stores them (Qt::AlignHCenter, Qt::AlignVCenter).
constexpr int s_nAlignHorizontal = 4;
constexpr int s_nAlignVertical = 128;

// Empty until read; a single blank once read and found empty, so a missing file is not read
// again and again.
QString& scopeInjectionCache()
{
    static QString s_strScript;
    return s_strScript;
}

QString compactJson(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

QString VTExportScripts::createDocDataScript(VTDocument& document, bool bPreview, bool bCurrentSceneOnly,
                                             bool bPreloader)
{
    // A preview shows what the author is working on, which may be a symbol.
    VTSymbol* pSymbol = bPreview && !bPreloader ? document.getCurrentSymbol() : &document;
    QJsonObject data;

    QJsonObject breakpoints;
    pSymbol->getBreakpointManager()->serializeToExport(breakpoints, false);
    if (!breakpoints.isEmpty())
        data.insert(QStringLiteral("b"), breakpoints);
    data.insert(QStringLiteral("v"), s_nDataVersion);
    data.insert(QStringLiteral("mpv"), s_nMinimumPlayerVersion);
    data.insert(QStringLiteral("w"), pSymbol->getWidth());
    data.insert(QStringLiteral("h"), pSymbol->getHeight());
    const VTSceneManager* pSceneManager = pSymbol->getSceneManager();
    data.insert(QStringLiteral("dur"), pSceneManager->getTotalTimelineDuration());

    const VTEventListenerList* pEvents = pSymbol->getEventListenerList();
    if (pEvents->hasEventListeners()) {
        QJsonObject events;
        pEvents->serializeToExport(events, false);
        const QJsonValue value = events.value(QStringLiteral("e"));
        if (!value.isUndefined())
            data.insert(bPreloader ? QStringLiteral("pe") : QStringLiteral("e"), value);
    }

    QList<VTScene*> lstScenes;
    if (!bCurrentSceneOnly)
        lstScenes = pSceneManager->getScenes();
    else if (VTScene* pCurrent = pSceneManager->getCurrentScene())
        lstScenes.append(pCurrent);
    QJsonArray scenes;
    for (const VTScene* pScene : qAsConst(lstScenes)) {
        QJsonObject scene;
        pScene->serializeToExport(scene, false, true, true);
        scenes.append(scene);
    }
    data.insert(QStringLiteral("scenes"), scenes);

    QJsonArray resources;
    if (VTResourceManager* pManager = document.getResourceManager())
        pManager->serializeToExport(resources, bPreview, false);
    data.insert(QStringLiteral("resources"), resources);
    data.insert(QStringLiteral("resourceFolder"), getResourceFolder(document, bPreview, bPreloader));
    data.insert(QStringLiteral("cssUrl"), document.getHTML5CSSFileName());
    return compactJson(data);
}

QString VTExportScripts::createFunctionDataScript(const VTDocument& document, bool bInline)
{
    QString script = QStringLiteral("var f = [];");
    const VTFunctionManager* pManager = document.getFunctionManager();
    if (!pManager)
        return script;
    const QList<VTFunction*> lstFunctions = pManager->getFunctions();
    for (const VTFunction* pFunction : lstFunctions) {
        const QString name = pFunction->getName();
        if (!VTExportText::isValidScriptName(name))
            continue;
        const QString code =
            bInline ? VTExportText::toInlineCode(pFunction->toString(true)) : pFunction->toString(true);
        script += QStringLiteral("\nvar ") + name + QStringLiteral(" = ") + code + QStringLiteral(";\n") +
                  QStringLiteral("f.push([%1, \"%2\", %3]);")
                      .arg(QString::number(pFunction->getId()), VTExportText::escapeJsString(name), name);
    }
    return script;
}

QString VTExportScripts::createDataFileScript(VTDocument& document, bool bPreview, bool bCurrentSceneOnly)
{
    const QString data = createDocDataScript(document, bPreview, bCurrentSceneOnly, false);
    const QString scope = VTExportText::indentLines(getScopeInjectionScript());
    const QString functions = VTExportText::indentLines(createFunctionDataScript(document, false) +
                                                        QStringLiteral("\ndocData.f = f;"));
    return QStringLiteral("(function(Vetra) {\n\tvar docData = ") + data + QStringLiteral(";\n\t") + scope +
           functions + QStringLiteral("\n\tVetra.loadedDocs.push(docData);\n}(KorvelVetra)); ");
}

QString VTExportScripts::createLoadScript(VTDocument& document, bool bPreview)
{
    const QString dataFile = VTExportText::escapeJsString(document.getHTML5DataFileName());
    const QString containerId = VTExportText::escapeJsString(document.getContainerID());
    const QString paused = document.isAutoplay() ? QStringLiteral("false") : QStringLiteral("true");
    const QString center = convertAlignToString(document.getAlignment());
    const QString autofit = document.isAutofit() ? QStringLiteral(", autofit: true") : QString();

    if (document.isPreloader()) {
        // The preloader in an editor of its own, shown without the document it preloads.
        const QString resourceFolder = bPreview ? QStringLiteral(", resourceFolder: ''") : QString();
        return QStringLiteral("(function(Vetra){\n\t") +
               QStringLiteral("Vetra.openDoc('%1', '%2', {paused:%3, center:'%4'%5%6});")
                   .arg(dataFile, containerId, paused, center, autofit, resourceFolder) +
               QStringLiteral("\n})(KorvelVetra);");
    }

    QString script = QStringLiteral("(function(Vetra) {\n\t");
    const bool bCustomPreloader = document.getLoaderType() != VT::DefaultPreloader;
    if (bCustomPreloader) {
        VTPreloader* pPreloader = document.initPreloaderDocument() ? document.getPreloaderDoc() : nullptr;
        if (pPreloader) {
            script += QStringLiteral("preloaderDocData = ") +
                      VTExportText::toInlineJson(createDocDataScript(*pPreloader, bPreview, false, true)) +
                      QLatin1Char(';');
            const QString scope = getScopeInjectionScript();
            if (!scope.isEmpty())
                script +=
                    QStringLiteral("\n\t") + VTExportText::indentLines(VTExportText::toInlineCode(scope));
            script += QStringLiteral("\n\t") +
                      VTExportText::indentLines(createFunctionDataScript(*pPreloader, true));
            script += QStringLiteral("\n\tpreloaderDocData.f = f;\n\t");
            if (pPreloader->isUseLoadingIndicator()) {
                QJsonObject indicator;
                pPreloader->getLoadingIndicatorProps()->serializeToExport(indicator);
                script += QStringLiteral("preloaderDocData.li = ") +
                          VTExportText::toInlineJson(compactJson(indicator)) + QLatin1Char(';');
            } else {
                script += QStringLiteral("preloaderDocData.li = false;");
            }
        } else {
            script += QStringLiteral("preloaderDocData = {};");
        }
    } else {
        QJsonObject indicator;
        document.getDefaultLoadingIndicatorProps()->serializeToExport(indicator);
        script += QStringLiteral("var li = ") + VTExportText::toInlineJson(compactJson(indicator)) +
                  QLatin1Char(';');
    }
    const QString option = bCustomPreloader ? QStringLiteral("preloaderDoc: preloaderDocData")
                                            : QStringLiteral("preloaderOptions: li");
    script += QStringLiteral("\n\t") +
              QStringLiteral("Vetra.openDoc('%1', '%2', {paused:%3, %4, center: '%5'%6});")
                  .arg(dataFile, containerId, paused, option, center, autofit) +
              QStringLiteral("})(KorvelVetra);");
    return script;
}

QString VTExportScripts::getScopeInjectionScript()
{
    QString& cache = scopeInjectionCache();
    if (cache.isEmpty()) {
        QFile file(VTEngine::resourcePath() + QStringLiteral("/resources/canvas/vtscopeinjection.js"));
        const QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        cache = stripComments(text).trimmed();
        if (cache.isEmpty())
            cache = QStringLiteral(" ");
    }
    return cache.trimmed();
}

void VTExportScripts::reloadScopeInjectionScript()
{
    scopeInjectionCache().clear();
}

QString VTExportScripts::stripComments(const QString& script)
{
    QString result;
    result.reserve(script.size());
    const int nSize = script.size();
    int i = 0;
    while (i < nSize) {
        const bool bSlash = script.at(i) == QLatin1Char('/') && i + 1 < nSize;
        if (bSlash && script.at(i + 1) == QLatin1Char('/')) {
            const int nEnd = script.indexOf(QLatin1Char('\n'), i + 2);
            i = nEnd < 0 ? nSize : nEnd + 1;
        } else if (bSlash && script.at(i + 1) == QLatin1Char('*')) {
            const int nEnd = script.indexOf(QLatin1String("*/"), i + 2);
            i = nEnd < 0 ? nSize : nEnd + 2;
        } else {
            result += script.at(i);
            ++i;
        }
    }
    return result;
}

QString VTExportScripts::convertAlignToString(int nAlign)
{
    switch (nAlign) {
    case s_nAlignHorizontal:
        return QStringLiteral("horizontal");
    case s_nAlignVertical:
        return QStringLiteral("vertical");
    case s_nAlignHorizontal | s_nAlignVertical:
        return QStringLiteral("both");
    default:
        return QStringLiteral("none");
    }
}

QString VTExportScripts::getResourceFolder(const VTDocument& document, bool bPreview, bool bPreloader)
{
    if (bPreloader) {
        // The preview page sits in the resource folder's "preview"; the preloader's resources are
        // in its own resource folder beside it.
        return bPreview ? QStringLiteral("../%1/%2%3")
                              .arg(VTPreloaderLink::getPreloaderFolderName(),
                                   VTPreloaderLink::getPreloaderFolderName(), QStringLiteral("_res"))
                        : VTDocument::getPath4Export(document.getPreloaderResFolderHTML5Output());
    }
    return bPreview ? QStringLiteral("../") : VTDocument::getPath4Export(document.getResFolderHTML5Output());
}
