#include "VTDocumentActions.h"

#include "MediaResource.h"
#include "VTActionParams.h"
#include "VTCommand.h"
#include "VTCommandAction.h"
#include "VTDocument.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTLoadIndicatorProps.h"
#include "VTOtherResource.h"
#include "VTPreloader.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTSymbolElement.h"
#include "VTTimeline.h"

#include <QUuid>

#include <functional>

namespace {

using Id = VTCommandAction::ActionId;

void swapString(VTCommandAction& action, int nIndex, const std::function<QString()>& get,
                const std::function<void(const QString&)>& set)
{
    VTActionParams::swap<QString>(action.getParam(nIndex), get, set);
}

bool isTrigger(const VTEventListener* pListener)
{
    return pListener->getEventType() == VTEventListener::Trigger;
}

// The symbol that a resource id names for the editing stack: -1 is the document's own symbol.
VTSymbol* symbolOfResourceId(VTDocument* pDocument, int nResourceId)
{
    if (nResourceId == -1)
        return pDocument;
    VTResourceManager* pManager = pDocument->getResourceManager();
    VTResource* pResource = pManager ? pManager->findResourceById(nResourceId) : nullptr;
    return pResource ? pManager->getSymbolForResource(pResource) : nullptr;
}

// Placed symbols show the layout of the symbol they sit in, which changes with the editing symbol.
void updateChildrenSymbolLayoutId(VTSymbol* pSymbol)
{
    for (VTScene* pScene : pSymbol->getSceneManager()->getScenes()) {
        for (VTSymbolElement* pElement : pScene->findChildren<VTSymbolElement*>())
            pElement->updateSymbolLayoutId();
    }
}

VTLoadIndicatorProps* loaderPropsOf(const VTCommandAction& action)
{
    VTDocument* pDocument = action.getDocument();
    if (!pDocument)
        return nullptr;
    if (action.getId() == Id::SetDefaultLoaderProps)
        return pDocument->getDefaultLoadingIndicatorProps();
    VTPreloader* pPreloader = VTDocumentActions::getPreloader(pDocument);
    return pPreloader ? pPreloader->getLoadingIndicatorProps() : nullptr;
}

} // namespace

bool VTDocumentActions::handles(int nId)
{
    switch (nId) {
    case Id::AddEventListener:
    case Id::RemoveEventListener:
    case Id::MoveEventListener:
    case Id::ChangeEventAction:
    case Id::RestoreResource:
    case Id::DeleteResource:
    case Id::AddFunction:
    case Id::RemoveFunction:
    case Id::ChangeFunction:
    case Id::ChangeMediaFormat:
    case Id::RenameResource:
    case Id::SetIncludeResource:
    case Id::ChangeResourceOrder:
    case Id::ChangeResourcePath:
    case Id::SetSymbolWidth:
    case Id::SetSymbolHeight:
    case Id::SetSymbolAlignment:
    case Id::ChangeCurrentSymbol:
    case Id::ChangeResourceUuid:
    case Id::SetExportTitle:
    case Id::SetExportDescription:
    case Id::SetExportAuthor:
    case Id::SetAutoplay:
    case Id::SetLoaderType:
    case Id::SetDefaultLoaderProps:
    case Id::SetCanvasLoaderProps:
    case Id::SetUseLoadingIndicator:
    case Id::SetExportKeywords:
    case Id::SetEmbedSystemFonts:
    case Id::SetHtml5ResFolder:
    case Id::SetViewport:
    case Id::SetContainerId:
    case Id::SetPreloaderResFolder:
    case Id::SetHtmlOutput:
    case Id::SetCssOutput:
    case Id::SetAutoFit:
        return true;
    default:
        return false;
    }
}

void VTDocumentActions::run(VTCommandAction& action, bool bUndo)
{
    switch (action.getId()) {
    case Id::AddEventListener:
    case Id::RemoveEventListener:
        if (VTActionParams::hasCount(action, 3, 4))
            addEventListener(action, (action.getId() == Id::AddEventListener) != bUndo);
        break;
    case Id::MoveEventListener:
        if (VTActionParams::hasCount(action, 3))
            moveEventListener(action);
        break;
    case Id::ChangeEventAction:
        if (VTActionParams::hasCount(action, 3))
            changeEventAction(action);
        break;
    case Id::RestoreResource:
    case Id::DeleteResource:
        setResourcesDeleted(action, (action.getId() == Id::DeleteResource) != bUndo);
        break;
    case Id::AddFunction:
    case Id::RemoveFunction:
        if (VTActionParams::hasCount(action, 3))
            addFunction(action, (action.getId() == Id::AddFunction) != bUndo);
        break;
    case Id::ChangeFunction:
        if (VTActionParams::hasCount(action, 5))
            changeFunction(action);
        break;
    case Id::ChangeMediaFormat:
        if (VTActionParams::hasCount(action, 4))
            changeMediaFormat(action);
        break;
    case Id::RenameResource:
    case Id::SetIncludeResource:
    case Id::ChangeResourceOrder:
    case Id::ChangeResourcePath:
    case Id::ChangeResourceUuid:
        if (VTActionParams::hasCount(action, 2))
            changeResource(action);
        break;
    case Id::SetSymbolWidth:
    case Id::SetSymbolHeight:
    case Id::SetSymbolAlignment:
    case Id::SetAutoFit:
        if (VTActionParams::hasCount(action, 2))
            changeSymbol(action);
        break;
    case Id::ChangeCurrentSymbol:
        if (VTActionParams::hasCount(action, 2))
            changeCurrentSymbol(action, bUndo);
        break;
    case Id::SetDefaultLoaderProps:
    case Id::SetCanvasLoaderProps:
        if (VTActionParams::hasCount(action, 6))
            changeLoaderProps(action);
        break;
    default:
        changeDocument(action);
        break;
    }
}

VTPreloader* VTDocumentActions::getPreloader(VTDocument* pDocument)
{
    if (!pDocument)
        return nullptr;
    return pDocument->isPreloader() ? static_cast<VTPreloader*>(pDocument) : pDocument->getPreloaderDoc();
}

void VTDocumentActions::addEventListener(VTCommandAction& action, bool bAdd)
{
    VTEventListenerList* pList = VTActionParams::getEventList(action.getParam(0));
    VTEventListener* pListener = action.getParam(2)->getAsEventListener();
    if (!pList || !pListener || (pList->getEventListenerIndex(pListener) >= 0) == bAdd)
        return;
    VTTimeline* pTimeline = action.paramCount() == 4 ? action.getParam(3)->getAsTimeline() : nullptr;
    if (bAdd) {
        pList->addEventListener(pListener, action.getParam(1)->getAsInt());
    } else {
        action.getParam(1)->setValue(pList->detachEventListener(pListener));
    }
    action.getParam(2)->setOwned(!bAdd);
    if (!pTimeline || !isTrigger(pListener))
        return;
    // A trigger is a list of its own on the timeline: its first listener brings it onto the
    // timeline and its last one takes it off, and while it is off the action keeps it.
    const bool bWasTrigger = pTimeline->getTriggers().contains(pList);
    if (bAdd)
        pTimeline->addTrigger(pList);
    else
        pTimeline->detachTrigger(pList);
    const bool bIsTrigger = pTimeline->getTriggers().contains(pList);
    if (bWasTrigger != bIsTrigger && action.getParam(0)->getType() == VTCmdParam::EventListenerList)
        action.getParam(0)->setOwned(!bIsTrigger);
}

void VTDocumentActions::moveEventListener(VTCommandAction& action)
{
    VTEventListenerList* pList = VTActionParams::getEventList(action.getParam(0));
    VTEventListener* pListener = action.getParam(1)->getAsEventListener();
    const int nIndex = action.getParam(2)->getAsInt();
    const int nOldIndex = pList && pListener ? pList->getEventListenerIndex(pListener) : -1;
    if (nOldIndex < 0 || nIndex < 0 || nIndex >= pList->getEventListenerCount())
        return;
    // The listener takes the slot and the one that held it takes the listener's old slot; moves
    // of several rows are made of such exchanges, each undone by exchanging back.
    const int nFirst = qMin(nIndex, nOldIndex);
    const int nLast = qMax(nIndex, nOldIndex);
    if (nFirst != nLast) {
        // The list holds each listener once, so the two leave it before they trade places; the
        // later one first, which keeps the earlier index valid.
        VTEventListener* pFirst = pList->getEventListenerAt(nFirst);
        VTEventListener* pLast = pList->getEventListenerAt(nLast);
        pList->detachEventListener(pLast);
        pList->detachEventListener(pFirst);
        pList->addEventListener(pLast, nFirst);
        pList->addEventListener(pFirst, nLast);
    }
    action.getParam(2)->setValue(nOldIndex);
}

void VTDocumentActions::changeEventAction(VTCommandAction& action)
{
    VTEventListener* pListener = action.getParam(0)->getAsEventListener();
    if (!pListener)
        return;
    VTActionParams::swap<int>(
        action.getParam(1), [pListener] { return static_cast<int>(pListener->getActionType()); },
        [pListener](int nType) {
            pListener->setActionType(static_cast<VTEventListener::ActionType>(nType));
        });
    VTActionParams::swap<QJsonObject>(
        action.getParam(2), [pListener] { return pListener->getActionData(); },
        [pListener](const QJsonObject& data) { pListener->setActionData(data); });
}

void VTDocumentActions::setResourcesDeleted(VTCommandAction& action, bool bDeleted)
{
    for (const VTCmdParam* pParam : action.getParams()) {
        if (VTResource* pResource = pParam->getAsResource())
            pResource->setDeleted(bDeleted);
    }
}

void VTDocumentActions::addFunction(VTCommandAction& action, bool bAdd)
{
    VTFunction* pFunction = action.getParam(0)->getAsJSFunction();
    VTFunctionManager* pManager = action.getParam(1)->getAsFunctionManager();
    if (!pFunction || !pManager)
        return;
    if (bAdd) {
        if (pManager->addFunction(pFunction, action.getParam(2)->getAsInt()) < 0)
            return;
    } else {
        const int nIndex = pManager->detachFunction(pFunction);
        if (nIndex < 0)
            return;
        action.getParam(2)->setValue(nIndex);
    }
    action.getParam(0)->setOwned(!bAdd);
}

void VTDocumentActions::changeFunction(VTCommandAction& action)
{
    VTFunction* pFunction = action.getParam(0)->getAsJSFunction();
    if (!pFunction)
        return;
    swapString(
        action, 1, [pFunction] { return pFunction->getName(); },
        [pFunction](const QString& name) { pFunction->setName(name); });
    swapString(
        action, 2, [pFunction] { return pFunction->getContent(); },
        [pFunction](const QString& content) { pFunction->setContent(content); });
    VTActionParams::swap<QJsonArray>(
        action.getParam(3), [pFunction] { return QJsonArray::fromStringList(pFunction->getParams()); },
        [pFunction](const QJsonArray& params) {
            QStringList lstParams;
            for (const QJsonValue& param : params)
                lstParams.append(param.toString());
            pFunction->setParams(lstParams);
        });
    swapString(
        action, 4, [pFunction] { return pFunction->getUuid().toString(); },
        [pFunction](const QString& uuid) { pFunction->setUuid(QUuid(uuid)); });
}

void VTDocumentActions::changeMediaFormat(VTCommandAction& action)
{
    auto* pMedia = dynamic_cast<MediaResource*>(action.getParam(0)->getAsResource());
    if (!pMedia)
        return;
    const auto format = static_cast<MediaResource::MediaFormat>(action.getParam(1)->getAsInt());
    swapString(
        action, 2, [pMedia, format] { return pMedia->getFileName(format); },
        [pMedia, format](const QString& fileName) {
            pMedia->removeFormat(format);
            if (!fileName.isEmpty())
                pMedia->setFileName(fileName);
        });
    swapString(
        action, 3, [pMedia] { return pMedia->getUuid().toString(); },
        [pMedia](const QString& uuid) { pMedia->setUuid(QUuid(uuid)); });
}

void VTDocumentActions::changeResource(VTCommandAction& action)
{
    VTResource* pResource = action.getParam(0)->getAsResource();
    if (!pResource)
        return;
    VTCmdParam* pParam = action.getParam(1);
    switch (action.getId()) {
    case Id::RenameResource:
        swapString(
            action, 1, [pResource] { return pResource->getName(); },
            [pResource](const QString& name) { pResource->setName(name); });
        break;
    case Id::ChangeResourcePath:
        swapString(
            action, 1, [pResource] { return pResource->getFileName(); },
            [pResource](const QString& fileName) { pResource->setFileName(fileName); });
        break;
    case Id::ChangeResourceUuid:
        swapString(
            action, 1, [pResource] { return pResource->getUuid().toString(); },
            [pResource](const QString& uuid) { pResource->setUuid(QUuid(uuid)); });
        break;
    case Id::SetIncludeResource:
        if (auto* pOther = dynamic_cast<VTOtherResource*>(pResource)) {
            VTActionParams::swap<bool>(
                pParam, [pOther] { return pOther->isIncludeResource(); },
                [pOther](bool bInclude) { pOther->setIncludeResource(bInclude); });
        }
        break;
    case Id::ChangeResourceOrder: {
        VTDocument* pDocument = action.getDocument();
        VTResourceManager* pManager = pDocument ? pDocument->getResourceManager() : pResource->getManager();
        if (!pManager)
            break;
        const int nOldOrder = pManager->getJsCssResourceOrder(pResource);
        if (pManager->setJsCssResourceOrder(pResource, pParam->getAsInt()))
            pParam->setValue(nOldOrder);
        break;
    }
    default:
        break;
    }
}

void VTDocumentActions::changeSymbol(VTCommandAction& action)
{
    VTSymbol* pSymbol = action.getParam(0)->getAsSymbol();
    if (!pSymbol)
        return;
    VTCmdParam* pParam = action.getParam(1);
    switch (action.getId()) {
    case Id::SetSymbolWidth:
        VTActionParams::swap<int>(
            pParam, [pSymbol] { return pSymbol->getWidth(); },
            [pSymbol](int nWidth) { pSymbol->setWidth(nWidth); });
        break;
    case Id::SetSymbolHeight:
        VTActionParams::swap<int>(
            pParam, [pSymbol] { return pSymbol->getHeight(); },
            [pSymbol](int nHeight) { pSymbol->setHeight(nHeight); });
        break;
    case Id::SetSymbolAlignment:
        VTActionParams::swap<int>(
            pParam, [pSymbol] { return pSymbol->getAlignment(); },
            [pSymbol](int nAlign) { pSymbol->setAlignment(nAlign); });
        break;
    case Id::SetAutoFit:
        VTActionParams::swap<bool>(
            pParam, [pSymbol] { return pSymbol->isAutofit(); },
            [pSymbol](bool bAutofit) { pSymbol->setAutofit(bAutofit); });
        break;
    default:
        break;
    }
}

void VTDocumentActions::changeCurrentSymbol(VTCommandAction& action, bool bUndo)
{
    VTDocument* pDocument = action.getDocument();
    if (!pDocument)
        return;
    VTSymbol* pSymbol = symbolOfResourceId(pDocument, action.getParam(bUndo ? 1 : 0)->getAsInt());
    if (!pSymbol)
        return;
    pDocument->setCurrentSymbol(pSymbol);
    updateChildrenSymbolLayoutId(pSymbol);
    // The stack changed outside any record of its own; the views learn of it from a command
    // that runs once and is gone.
    VTCommand command(pDocument);
    command.addAction(new VTCommandAction(Id::EditingSymbolChanged, pDocument));
    command.doCmd();
}

void VTDocumentActions::changeDocument(VTCommandAction& action)
{
    VTDocument* pDocument = action.getDocument();
    const int nCount = action.paramCount();
    if (!pDocument || nCount < 1)
        return;
    VTCmdParam* pParam = action.getParam(0);
    if (action.getId() == Id::SetViewport) {
        if (nCount != 2)
            return;
        VTActionParams::swap<int>(
            pParam, [pDocument] { return pDocument->getViewportWMeta(); },
            [pDocument](int nValue) { pDocument->setViewportWMeta(nValue); });
        VTActionParams::swap<int>(
            action.getParam(1), [pDocument] { return pDocument->getViewportHMeta(); },
            [pDocument](int nValue) { pDocument->setViewportHMeta(nValue); });
        return;
    }
    if (nCount != 1)
        return;
    switch (action.getId()) {
    case Id::SetExportTitle:
        swapString(
            action, 0, [pDocument] { return pDocument->getTitle(); },
            [pDocument](const QString& text) { pDocument->setTitle(text); });
        break;
    case Id::SetExportDescription:
        swapString(
            action, 0, [pDocument] { return pDocument->getDescription(); },
            [pDocument](const QString& text) { pDocument->setDescription(text); });
        break;
    case Id::SetExportAuthor:
        swapString(
            action, 0, [pDocument] { return pDocument->getAuthor(); },
            [pDocument](const QString& text) { pDocument->setAuthor(text); });
        break;
    case Id::SetExportKeywords:
        swapString(
            action, 0, [pDocument] { return pDocument->getKeywords(); },
            [pDocument](const QString& text) { pDocument->setKeywords(text); });
        break;
    case Id::SetAutoplay:
        VTActionParams::swap<bool>(
            pParam, [pDocument] { return pDocument->isAutoplay(); },
            [pDocument](bool bAutoplay) { pDocument->setAutoplay(bAutoplay); });
        break;
    case Id::SetLoaderType:
        VTActionParams::swap<int>(
            pParam, [pDocument] { return static_cast<int>(pDocument->getLoaderType()); },
            [pDocument](int nType) { pDocument->setLoaderType(static_cast<VT::PreloaderType>(nType)); });
        break;
    case Id::SetUseLoadingIndicator:
        if (VTPreloader* pPreloader = getPreloader(pDocument)) {
            VTActionParams::swap<bool>(
                pParam, [pPreloader] { return pPreloader->isUseLoadingIndicator(); },
                [pPreloader](bool bUse) { pPreloader->setUseLoadingIndicator(bUse); });
        }
        break;
    case Id::SetEmbedSystemFonts:
        VTActionParams::swap<bool>(
            pParam, [pDocument] { return pDocument->isEmbedSystemFont(); },
            [pDocument](bool bEmbed) { pDocument->setEmbedSystemFont(bEmbed); });
        break;
    case Id::SetHtml5ResFolder:
        swapString(
            action, 0, [pDocument] { return pDocument->getResFolderHTML5Output(); },
            [pDocument](const QString& text) { pDocument->setResFolderHTML5Output(text); });
        break;
    case Id::SetContainerId:
        swapString(
            action, 0, [pDocument] { return pDocument->getContainerID(); },
            [pDocument](const QString& text) { pDocument->setContainerID(text); });
        break;
    case Id::SetPreloaderResFolder:
        // The document's own value: the getter follows the preloader chain, the setter feeds it.
        swapString(
            action, 0, [pDocument] { return pDocument->getOutputSettings().getPreloaderResFolder(); },
            [pDocument](const QString& text) { pDocument->setPreloaderResFolderHTML5Output(text); });
        break;
    case Id::SetHtmlOutput:
        swapString(
            action, 0, [pDocument] { return pDocument->getHtmlOutput(); },
            [pDocument](const QString& text) { pDocument->setHtmlOutput(text); });
        break;
    case Id::SetCssOutput:
        swapString(
            action, 0, [pDocument] { return pDocument->getCssDoc(); },
            [pDocument](const QString& text) { pDocument->setCssDoc(text); });
        break;
    default:
        break;
    }
}

void VTDocumentActions::changeLoaderProps(VTCommandAction& action)
{
    VTLoadIndicatorProps* pProps = loaderPropsOf(action);
    if (!pProps)
        return;
    VTActionParams::swap<int>(
        action.getParam(0), [pProps] { return pProps->getDiameter(); },
        [pProps](int nValue) { pProps->setDiameter(nValue); });
    VTActionParams::swap<int>(
        action.getParam(1), [pProps] { return pProps->getDensity(); },
        [pProps](int nValue) { pProps->setDensity(nValue); });
    VTActionParams::swap<double>(
        action.getParam(2), [pProps] { return pProps->getRange(); },
        [pProps](double dValue) { pProps->setRange(dValue); });
    VTActionParams::swap<int>(
        action.getParam(3), [pProps] { return pProps->getSpeed(); },
        [pProps](int nValue) { pProps->setSpeed(nValue); });
    VTActionParams::swap<int>(
        action.getParam(4), [pProps] { return static_cast<int>(pProps->getColor().rgba()); },
        [pProps](int nRgba) { pProps->setColor(QColor::fromRgba(static_cast<QRgb>(nRgba))); });
    VTActionParams::swap<int>(
        action.getParam(5), [pProps] { return pProps->getShape(); },
        [pProps](int nValue) { pProps->setShape(nValue); });
}
