#include "RandomDocumentGestures.h"

#include "MediaResource.h"
#include "RandomCommandContext.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTElementCommandAction.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTOtherResource.h"
#include "VTPreloader.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSymbol.h"
#include "VTTimelineManager.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUuid>

#include <algorithm>

namespace {

using Id = VTCommandAction::ActionId;
using ElementId = VTElementCommandAction::ElementActionId;

VTCommand* single(RandomCommandContext& context, const QString& name, VTCommandAction* pAction)
{
    VTCommand* pCommand = context.newCommand(name);
    pCommand->addAction(pAction);
    return pCommand;
}

VTCommandAction* newAction(RandomCommandContext& context, int nId, int nReserve = 3)
{
    return new VTCommandAction(nId, &context.getDocument(), nReserve);
}

// Where handlers live: an element, the current scene or the document's own list. The parameter
// that names it is of the list's own type.
struct HandlerList
{
    VTEventListenerList* pList = nullptr;
    VTElement* pElement = nullptr;
    VTScene* pScene = nullptr;

    void addTo(VTCommandAction& action) const
    {
        if (pScene)
            action.addParam(pScene, false);
        else if (pElement)
            action.addParam(pElement, false);
        else
            action.addParam(pList, false);
    }
};

HandlerList pickHandlerList(RandomCommandContext& context, bool bWithHandlers)
{
    QList<HandlerList> lstLists;
    for (VTElement* pElement : context.getElements())
        lstLists.append({pElement, pElement, nullptr});
    if (VTScene* pScene = context.getScene())
        lstLists.append({pScene, nullptr, pScene});
    lstLists.append({context.getDocument().getEventListenerList(), nullptr, nullptr});
    if (bWithHandlers) {
        lstLists.erase(
            std::remove_if(lstLists.begin(), lstLists.end(),
                           [](const HandlerList& list) { return !list.pList->hasEventListeners(); }),
            lstLists.end());
    }
    return context.pick(lstLists);
}

VTCommand* addHandler(RandomCommandContext& context)
{
    const HandlerList target = pickHandlerList(context, false);
    const auto nEvent = target.pScene     ? VTEventListener::SceneActivate
                        : target.pElement ? VTEventListener::MouseClick
                                          : VTEventListener::DocumentReady;
    auto* pListener = new VTEventListener(
        nEvent, context.chance(50) ? VTEventListener::ToggleHideShowElement : VTEventListener::GoToURL,
        QJsonObject(), QJsonObject{{QStringLiteral("url"), context.uniqueText(QStringLiteral("u"))}});
    VTCommandAction* pAction = newAction(context, Id::AddEventListener);
    target.addTo(*pAction);
    pAction->addParam(context.intIn(-1, target.pList->getEventListenerCount()));
    pAction->addParam(pListener, true);
    return single(context, QStringLiteral("add handler"), pAction);
}

VTCommand* editHandler(RandomCommandContext& context, int nId)
{
    const HandlerList target = pickHandlerList(context, true);
    if (!target.pList)
        return nullptr;
    VTEventListener* pListener = context.pick(target.pList->getEventListeners());
    VTCommandAction* pAction = newAction(context, nId);
    switch (nId) {
    case Id::RemoveEventListener:
        target.addTo(*pAction);
        pAction->addParam(-1);
        pAction->addParam(pListener, false);
        break;
    case Id::MoveEventListener: {
        const int nCount = target.pList->getEventListenerCount();
        const int nPresent = target.pList->getEventListenerIndex(pListener);
        if (nCount < 2) {
            delete pAction;
            return nullptr;
        }
        const int nIndex = context.intIn(0, nCount - 2);
        target.addTo(*pAction);
        pAction->addParam(pListener, false);
        pAction->addParam(nIndex >= nPresent ? nIndex + 1 : nIndex);
        break;
    }
    default:
        pAction->addParam(pListener, false);
        pAction->addParam(static_cast<int>(VTEventListener::RunJavaScript));
        pAction->addParam(QJsonObject{{QStringLiteral("function_id"), context.intIn(1, 3)}});
        break;
    }
    return single(context, QStringLiteral("handler"), pAction);
}

VTResourceManager* resources(const RandomCommandContext& context)
{
    return context.getDocument().getResourceManager();
}

QList<VTResource*> liveResources(const RandomCommandContext& context, const QList<int>& lstTypes)
{
    QList<VTResource*> lstResources;
    for (VTResource* pResource : resources(context)->getIdResourceMap()) {
        if (!pResource->isDeleted() && (lstTypes.isEmpty() || lstTypes.contains(pResource->getType())))
            lstResources.append(pResource);
    }
    return lstResources;
}

// A file the user imports: in the project at once but deleted, so that only the command shows it.
VTCommand* addResource(RandomCommandContext& context)
{
    const int nType = context.pick(
        QList<int>{VTResource::Script, VTResource::StyleSheet, VTResource::Html, VTResource::Image});
    VTResource* pResource = nType == VTResource::Image
                                ? new VTResource(VTResource::Image)
                                : new VTOtherResource(static_cast<VTResource::ResourceType>(nType));
    static const QStringList s_lstSuffixes{QStringLiteral("js"), QStringLiteral("css"),
                                           QStringLiteral("html"), QStringLiteral("png")};
    const QString base = context.uniqueText(QStringLiteral("file"));
    const QString suffix = s_lstSuffixes.at(nType == VTResource::Image ? 3 : nType - VTResource::Script);
    pResource->setFileName(base + '.' + suffix);
    // A name in use makes the command rename the newcomer.
    const VTResource* pNamesake = context.chance(30) ? context.pick(liveResources(context, {})) : nullptr;
    pResource->setName(pNamesake ? pNamesake->getName() : base);
    pResource->setDeleted(true);
    resources(context)->addResource(pResource);
    VTCommand* pCommand = context.newCommand(QStringLiteral("add resource"));
    pCommand->createActionsForAddResource(pResource, false);
    return pCommand;
}

VTCommand* editResource(RandomCommandContext& context, int nId)
{
    QList<int> lstTypes;
    if (nId == Id::DeleteResource || nId == Id::SetIncludeResource || nId == Id::ChangeResourceOrder)
        lstTypes = {VTResource::Script, VTResource::StyleSheet};
    else if (nId == Id::ChangeResourcePath)
        lstTypes = {VTResource::Image, VTResource::Script, VTResource::StyleSheet, VTResource::Html};
    VTResource* pResource = context.pick(liveResources(context, lstTypes));
    if (!pResource)
        return nullptr;
    VTCommandAction* pAction = newAction(context, nId, 2);
    pAction->addParam(pResource, false);
    switch (nId) {
    case Id::RenameResource:
        pAction->addParam(context.uniqueText(QStringLiteral("resource")));
        break;
    case Id::SetIncludeResource:
        pAction->addParam(context.chance(50));
        break;
    case Id::ChangeResourceOrder: {
        // To the place of another live file of the kind, so that the page's order changes.
        QList<VTResource*> lstOthers = liveResources(context, {pResource->getType()});
        lstOthers.removeAll(pResource);
        VTResource* pOther = context.pick(lstOthers);
        if (!pOther) {
            delete pAction;
            return nullptr;
        }
        pAction->addParam(resources(context)->getJsCssResourceOrder(pOther));
        break;
    }
    case Id::ChangeResourcePath:
        pAction->addParam(context.uniqueText(QStringLiteral("moved/")) + '.' +
                          pResource->getFileName().section('.', -1));
        break;
    case Id::ChangeResourceUuid:
        pAction->addParam(QUuid::createUuid().toString());
        break;
    default:
        break;
    }
    return single(context, QStringLiteral("resource"), pAction);
}

VTCommand* changeMediaFormat(RandomCommandContext& context)
{
    auto* pMedia = dynamic_cast<MediaResource*>(
        context.pick(liveResources(context, {VTResource::Audio, VTResource::Video})));
    if (!pMedia)
        return nullptr;
    const QList<int> lstFormats =
        pMedia->getType() == VTResource::Audio
            ? QList<int>{MediaResource::Mp3, MediaResource::M4a, MediaResource::Wav, MediaResource::Ogg}
            : QList<int>{MediaResource::Mp4, MediaResource::Webm, MediaResource::Ogv};
    const int nFormat = context.pick(lstFormats);
    // A format goes only while another one stays.
    const bool bRemove = pMedia->hasFormat(static_cast<MediaResource::MediaFormat>(nFormat)) &&
                         pMedia->getExistedFormat().size() > 1 && context.chance(40);
    VTCommandAction* pAction = newAction(context, Id::ChangeMediaFormat, 4);
    pAction->addParam(static_cast<VTResource*>(pMedia), false);
    pAction->addParam(nFormat);
    pAction->addParam(bRemove ? QString()
                              : context.uniqueText(QStringLiteral("media")) + '.' +
                                    MediaResource::getExtensionOfFormat(nFormat));
    pAction->addParam(QUuid::createUuid().toString());
    return single(context, QStringLiteral("media format"), pAction);
}

VTCommand* addFunction(RandomCommandContext& context)
{
    VTFunctionManager* pManager = context.getDocument().getFunctionManager();
    VTFunction* pFunction = VTFunction::createFunction(VTFunctionData::NormalFunction).release();
    pFunction->setName(context.uniqueText(QStringLiteral("fn")));
    pFunction->setContent(QStringLiteral("return 1;"));
    VTCommandAction* pAction = newAction(context, Id::AddFunction);
    pAction->addParam(pFunction, true);
    pAction->addParam(pManager, false);
    // A new function goes at the end, where it gets its id; an index is for functions coming back.
    pAction->addParam(-1);
    return single(context, QStringLiteral("add function"), pAction);
}

VTCommand* editFunction(RandomCommandContext& context, int nId)
{
    VTFunctionManager* pManager = context.getDocument().getFunctionManager();
    VTFunction* pFunction = context.pick(pManager->getFunctions());
    if (!pFunction)
        return nullptr;
    VTCommandAction* pAction = newAction(context, nId, 5);
    if (nId == Id::RemoveFunction) {
        pAction->addParam(pFunction, false);
        pAction->addParam(pManager, false);
        pAction->addParam(-1);
    } else {
        pAction->prepareToChangeJSFunctionParams(pFunction);
        pAction->getParam(context.intIn(1, 4))->setValue(context.uniqueText(QStringLiteral("edit")));
        pAction->getParam(3)->setValue(
            QJsonArray{QStringLiteral("a"), context.uniqueText(QStringLiteral("p"))});
    }
    return single(context, QStringLiteral("function"), pAction);
}

VTCommand* changeSymbol(RandomCommandContext& context, int nId)
{
    VTSymbol* pSymbol = context.getSymbol();
    VTCommandAction* pAction = newAction(context, nId, 2);
    pAction->addParam(pSymbol, false);
    switch (nId) {
    case Id::SetSymbolWidth:
        pAction->addParam(context.intIn(100, 1200));
        break;
    case Id::SetSymbolHeight:
        pAction->addParam(context.intIn(100, 900));
        break;
    case Id::SetSymbolAlignment:
        pAction->addParam(context.intIn(0, 8));
        break;
    default:
        pAction->addParam(!pSymbol->isAutofit());
        break;
    }
    return single(context, QStringLiteral("symbol"), pAction);
}

// Into the placed symbol and out again, as the editing stack bar does it.
VTCommand* changeCurrentSymbol(RandomCommandContext& context)
{
    VTDocument& document = context.getDocument();
    VTSymbol* pTarget = &document;
    if (document.getCurrentSymbol() == &document) {
        // In the order of the resources: the map itself is ordered by address.
        QList<VTSymbol*> lstSymbols;
        for (VTResource* pResource : resources(context)->getIdResourceMap()) {
            if (VTSymbol* pSymbol = resources(context)->getSymbolForResource(pResource))
                lstSymbols.append(pSymbol);
        }
        pTarget = context.pick(lstSymbols);
    }
    if (!pTarget)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("edit symbol"));
    pCommand->createActionsForChangeCurrentSymbol(pTarget);
    return pCommand;
}

VTCommand* changeSetting(RandomCommandContext& context, int nId)
{
    VTDocument& document = context.getDocument();
    VTCommandAction* pAction = newAction(context, nId, 6);
    switch (nId) {
    case Id::SetAutoplay:
        pAction->addParam(!document.isAutoplay());
        break;
    case Id::SetLoaderType:
        pAction->addParam(document.getLoaderType() == VT::DefaultPreloader ? int(VT::CustomPreloader)
                                                                           : int(VT::DefaultPreloader));
        break;
    case Id::SetDefaultLoaderProps:
    case Id::SetCanvasLoaderProps:
        if (nId == Id::SetDefaultLoaderProps)
            pAction->prepareToChangeDefaultLoaderProps();
        else
            pAction->prepareToChangeLoaderDocCanvasLoaderProps();
        if (pAction->paramCount() == 6) {
            pAction->getParam(0)->setValue(context.intIn(20, 120));
            pAction->getParam(4)->setValue(static_cast<int>(qRgba(context.intIn(0, 255), 40, 90, 255)));
        }
        break;
    case Id::SetUseLoadingIndicator: {
        const VTPreloader* pPreloader = document.getPreloaderDoc();
        pAction->addParam(!(pPreloader && pPreloader->isUseLoadingIndicator()));
        break;
    }
    case Id::SetEmbedSystemFonts:
        pAction->addParam(!document.isEmbedSystemFont());
        break;
    case Id::SetViewport:
        pAction->addParam(context.pick(QList<int>{-2, -1, 320, 1024}));
        pAction->addParam(context.pick(QList<int>{-2, -1, 480, 768}));
        break;
    default:
        // The texts of the export: title, description, author, keywords, folders, page and style.
        pAction->addParam(context.uniqueText(QStringLiteral("text")));
        break;
    }
    return single(context, QStringLiteral("setting"), pAction);
}

// Actions that change nothing and exist for their record.
VTCommand* records(RandomCommandContext& context)
{
    VTDocument* pDocument = &context.getDocument();
    VTCommand* pCommand = context.newCommand(QStringLiteral("records"));
    const QList<int> lstIds{
        Id::CommandFinished,   Id::EditingSymbolChanged, Id::TextEditingChanged,
        Id::TextFormatChanged, Id::TextEditorCommand,    Id::MediaInfoChanged,
        Id::TimelinePlayed,    Id::TimelinePaused,       Id::TimeChanged,
        Id::StopAllTasks,      Id::ResourceChanged,      ElementId::UpdateHtmlWidgetFromResource};
    VTScene* pScene = context.getScene();
    VTTimeline* pTimeline = pScene ? pScene->getTimelineManager()->getCurrentTimeline() : nullptr;
    for (int nId : context.pickSome(lstIds, context.intIn(1, 4))) {
        // What the record is about, for the ids that name something.
        const void* pTarget = pDocument;
        VTCommandAction* pAction =
            nId >= ElementId::ChangeGeometry
                ? new VTElementCommandAction(ElementId::UpdateHtmlWidgetFromResource, pDocument, 1)
                : new VTCommandAction(nId, pDocument, 3);
        switch (nId) {
        case Id::TextEditingChanged:
            pAction->addParam(true);
            pAction->addParam(context.intIn(0, 9));
            pAction->addParam(context.intIn(0, 9));
            break;
        case Id::TextFormatChanged:
            pAction->addParam(QStringLiteral("{\"bold\":true}"));
            break;
        case Id::TextEditorCommand:
            pAction->addParam(QStringLiteral("italic"));
            pAction->addParam(QString());
            break;
        case Id::MediaInfoChanged:
        case Id::ResourceChanged: {
            VTResource* pResource = context.pick(liveResources(context, {}));
            pTarget = pResource;
            pAction->addParam(pResource, false);
            break;
        }
        case Id::TimelinePlayed:
        case Id::TimelinePaused:
            pTarget = pTimeline;
            pAction->addParam(pTimeline, false);
            pAction->addParam(context.intIn(0, 2000));
            break;
        case Id::TimeChanged:
            pAction->addParam(context.intIn(0, 2000));
            pAction->addParam(false);
            break;
        case ElementId::UpdateHtmlWidgetFromResource: {
            VTElement* pWidget = context.pick(context.getElementsAnywhere(
                [](const VTElement* pElement) { return pElement->getType() == VT::HTMLWidgetElement; }));
            pTarget = pWidget;
            pAction->addParam(pWidget, false);
            break;
        }
        default:
            break;
        }
        // A record about nothing is no record a view would get.
        if (!pTarget) {
            delete pAction;
            continue;
        }
        pCommand->addAction(pAction);
    }
    return pCommand;
}

VTCommand* updateWidgetsFromResource(RandomCommandContext& context)
{
    VTResource* pResource = context.pick(liveResources(context, {VTResource::Html}));
    if (!pResource)
        return nullptr;
    VTCommand* pCommand = context.newCommand(QStringLiteral("html changed"));
    pCommand->createActionsToUpdateHtmlWidgetFromResource(context.getSymbol(), pResource);
    return pCommand;
}

} // namespace

void RandomDocumentGestures::append(QList<RandomGesture>& lstGestures)
{
    const auto handler = [](int nId) {
        return [nId](RandomCommandContext& context) { return editHandler(context, nId); };
    };
    const auto resource = [](int nId) {
        return [nId](RandomCommandContext& context) { return editResource(context, nId); };
    };
    const auto function = [](int nId) {
        return [nId](RandomCommandContext& context) { return editFunction(context, nId); };
    };
    const auto symbol = [](int nId) {
        return [nId](RandomCommandContext& context) { return changeSymbol(context, nId); };
    };
    lstGestures
        << RandomGesture{QStringLiteral("add handler"),
                         {Id::AddEventListener, Id::RemoveEventListener, Id::MoveEventListener,
                          Id::ChangeEventAction},
                         2,
                         addHandler}
        << RandomGesture{QStringLiteral("remove handler"),
                         {Id::RemoveEventListener},
                         1,
                         handler(Id::RemoveEventListener)}
        << RandomGesture{QStringLiteral("move handler"),
                         {Id::MoveEventListener},
                         1,
                         handler(Id::MoveEventListener)}
        << RandomGesture{QStringLiteral("handler action"),
                         {Id::ChangeEventAction},
                         1,
                         handler(Id::ChangeEventAction)}
        << RandomGesture{QStringLiteral("add resource"),
                         {Id::RestoreResource, Id::RenameResource, Id::SetIncludeResource, Id::DeleteResource,
                          Id::ChangeResourceOrder, Id::ChangeResourcePath, ElementId::ChangeImageResource},
                         2,
                         addResource}
        << RandomGesture{QStringLiteral("delete resource"),
                         {Id::DeleteResource},
                         1,
                         resource(Id::DeleteResource)}
        << RandomGesture{QStringLiteral("rename resource"),
                         {Id::RenameResource},
                         1,
                         resource(Id::RenameResource)}
        << RandomGesture{QStringLiteral("include resource"),
                         {Id::SetIncludeResource},
                         1,
                         resource(Id::SetIncludeResource)}
        << RandomGesture{QStringLiteral("resource order"),
                         {Id::ChangeResourceOrder},
                         1,
                         resource(Id::ChangeResourceOrder)}
        << RandomGesture{QStringLiteral("resource path"),
                         {Id::ChangeResourcePath},
                         1,
                         resource(Id::ChangeResourcePath)}
        << RandomGesture{QStringLiteral("resource uuid"),
                         {Id::ChangeResourceUuid},
                         1,
                         resource(Id::ChangeResourceUuid)}
        << RandomGesture{QStringLiteral("media format"), {Id::ChangeMediaFormat}, 1, changeMediaFormat}
        << RandomGesture{QStringLiteral("add function"),
                         {Id::AddFunction, Id::RemoveFunction, Id::ChangeFunction},
                         1,
                         addFunction}
        << RandomGesture{QStringLiteral("remove function"),
                         {Id::RemoveFunction},
                         1,
                         function(Id::RemoveFunction)}
        << RandomGesture{QStringLiteral("edit function"),
                         {Id::ChangeFunction},
                         1,
                         function(Id::ChangeFunction)}
        << RandomGesture{QStringLiteral("symbol width"), {Id::SetSymbolWidth}, 1, symbol(Id::SetSymbolWidth)}
        << RandomGesture{QStringLiteral("symbol height"),
                         {Id::SetSymbolHeight},
                         1,
                         symbol(Id::SetSymbolHeight)}
        << RandomGesture{QStringLiteral("symbol alignment"),
                         {Id::SetSymbolAlignment},
                         1,
                         symbol(Id::SetSymbolAlignment)}
        << RandomGesture{QStringLiteral("auto fit"), {Id::SetAutoFit}, 1, symbol(Id::SetAutoFit)}
        << RandomGesture{QStringLiteral("edit symbol"), {Id::ChangeCurrentSymbol}, 1, changeCurrentSymbol}
        << RandomGesture{QStringLiteral("records"),
                         {Id::CommandFinished, Id::EditingSymbolChanged, Id::TextEditingChanged,
                          Id::TextFormatChanged, Id::TextEditorCommand, Id::MediaInfoChanged,
                          Id::TimelinePlayed, Id::TimelinePaused, Id::TimeChanged, Id::StopAllTasks,
                          Id::ResourceChanged, ElementId::UpdateHtmlWidgetFromResource},
                         1,
                         records}
        << RandomGesture{QStringLiteral("html changed"),
                         {ElementId::UpdateHtmlWidgetFromResource},
                         1,
                         updateWidgetsFromResource};
    for (int nId :
         {Id::SetExportTitle, Id::SetExportDescription, Id::SetExportAuthor, Id::SetAutoplay,
          Id::SetLoaderType, Id::SetDefaultLoaderProps, Id::SetCanvasLoaderProps, Id::SetUseLoadingIndicator,
          Id::SetExportKeywords, Id::SetEmbedSystemFonts, Id::SetHtml5ResFolder, Id::SetViewport,
          Id::SetContainerId, Id::SetPreloaderResFolder, Id::SetHtmlOutput, Id::SetCssOutput}) {
        lstGestures << RandomGesture{
            QStringLiteral("setting %1").arg(nId), {nId}, 1, [nId](RandomCommandContext& context) {
                return changeSetting(context, nId);
            }};
    }
}
