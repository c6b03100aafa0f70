#include "VTCanvasMenus.h"

#include "ActionContainer.h"
#include "ActionManager.h"
#include "ContextAction.h"
#include "IMessageBox.h"
#include "VTAutoShape.h"
#include "VTBezierPath.h"
#include "VTCanvas.h"
#include "VTCommand.h"
#include "VTDocument.h"
#include "VTFreeFormShape.h"
#include "VTScene.h"

#include <QAction>
#include <QMenu>

#include <algorithm>

namespace {

// The line kinds among the autoshapes: they hold no text and have no inside to edit points of.
bool isLineShape(int nAutoShapeType)
{
    return nAutoShapeType >= 590 && nAutoShapeType <= 592;
}

// Elements whose text the page edits in place.
bool canEditText(const VTElement* pElement)
{
    if (!pElement || pElement->getDisplay() != 1)
        return false;
    switch (pElement->getType()) {
    case VT::TextElement:
    case VT::DivElement:
        return true;
    case VT::ShapeElement:
    case VT::FreeFormElement: {
        const auto* pShape = qobject_cast<const VTAutoShape*>(pElement);
        return pShape && !isLineShape(pShape->getAutoShapeType());
    }
    default:
        return false;
    }
}

const VTFreeFormShape* asPointEditable(const VTElement* pElement)
{
    const auto* pFreeForm = qobject_cast<const VTFreeFormShape*>(pElement);
    return pFreeForm && !pFreeForm->isLine() && !isLineShape(pFreeForm->getAutoShapeType()) ? pFreeForm
                                                                                            : nullptr;
}

void setShown(QAction* pAction, bool bShown)
{
    if (pAction)
        pAction->setVisible(bShown);
}

void setOn(QAction* pAction, bool bEnabled)
{
    if (pAction)
        pAction->setEnabled(bEnabled);
}

void setLabel(QAction* pAction, const QString& text)
{
    if (pAction)
        pAction->setText(text);
}

} // namespace

VTCanvasMenus::VTCanvasMenus(VTCanvas* pCanvas)
    : QObject(pCanvas)
    , m_pCanvas(pCanvas)
    , m_pMainMenu(new QMenu(pCanvas))
    , m_pBreakpointMenu(new QMenu(pCanvas))
    , m_pPointMenu(new QMenu(pCanvas))
{
    m_pMainMenu->setObjectName(QStringLiteral("canvasMenu"));
    m_pBreakpointMenu->setObjectName(QStringLiteral("canvasBreakpointMenu"));
    m_pPointMenu->setObjectName(QStringLiteral("canvasPointMenu"));
    buildMainMenu();
    buildBreakpointMenu();
    buildPointMenu();
    connectActions();
    updateActions();
}

VTCanvasMenus::~VTCanvasMenus() = default;

QAction* VTCanvasMenus::addOwn(QMenu* pMenu, const QString& key, const QString& text)
{
    auto* pAction = new QAction(text, this);
    pAction->setObjectName(key);
    m_hashActions.insert(key, pAction);
    if (pMenu)
        pMenu->addAction(pAction);
    return pAction;
}

QAction* VTCanvasMenus::addCatalogue(QMenu* pMenu, const QString& id, const QString& text,
                                     bool bCanvasHandled)
{
    QAction* pAction = nullptr;
    if (ContextAction* pCatalogued = ActionManager::getAction(id))
        pAction = pCatalogued->getAction();
    if (!pAction) {
        pAction = new QAction(text, this);
        pAction->setObjectName(id);
        // A stand-in whose behaviour lives elsewhere cannot do anything from here.
        pAction->setEnabled(bCanvasHandled);
        pAction->setProperty("vtStandIn", true);
    }
    m_hashActions.insert(id, pAction);
    if (pMenu)
        pMenu->addAction(pAction);
    return pAction;
}

void VTCanvasMenus::addContainer(QMenu* pMenu, const QString& id)
{
    ActionContainer* pContainer = ActionManager::getActionContainer(id);
    if (pContainer && pContainer->menu())
        pMenu->addMenu(pContainer->menu());
}

void VTCanvasMenus::registerOnCanvas(QAction* pAction, const QString& id)
{
    // The shortcut works while the stage has the focus, beside the catalogue's action of that id.
    ActionManager::registerAction(pAction, id, m_pCanvas);
}

void VTCanvasMenus::buildMainMenu()
{
    QMenu* pMenu = m_pMainMenu;
    addOwn(pMenu, QStringLiteral("Reload Canvas"), tr("Reload Canvas"));
    pMenu->addSeparator();

    QMenu* pView = pMenu->addMenu(tr("View"));
    QAction* pRuler = addCatalogue(pView, QStringLiteral("View.Ruler"), tr("&Rulers"), true);
    QAction* pSnap = addCatalogue(pView, QStringLiteral("View.Canvas.Snap"), tr("&Canvas Snapping"), true);
    for (QAction* pToggle : {pRuler, pSnap}) {
        if (pToggle->property("vtStandIn").toBool()) {
            pToggle->setCheckable(true);
            pToggle->setChecked(true);
        }
    }
    addContainer(pView, QStringLiteral("Timeline.Zoom"));
    addContainer(pView, QStringLiteral("View.Stage"));
    pMenu->addSeparator();

    QMenu* pArrange = pMenu->addMenu(tr("Arrange"));
    addContainer(pArrange, QStringLiteral("Edit.Size"));
    addContainer(pArrange, QStringLiteral("Edit.Alignment"));
    addContainer(pArrange, QStringLiteral("Edit.DisplayOrder"));
    addContainer(pMenu, QStringLiteral("MenuBar.Element"));
    pMenu->addSeparator();

    addOwn(pMenu, QStringLiteral("Edit Points"), tr("Edit Points"));
    addOwn(pMenu, QStringLiteral("Edit Text"), tr("Edit Text"));
    pMenu->addSeparator();
    addCatalogue(pMenu, QStringLiteral("Edit.Convert_To_Symbol"), tr("Convert to Symbol"), false);
    registerOnCanvas(addOwn(pMenu, QStringLiteral("Edit.Edit_Symbol"), tr("Edit Symbol")),
                     QStringLiteral("Edit.Edit_Symbol"));
    pMenu->addSeparator();
    addCatalogue(pMenu, QStringLiteral("Edit.Restore_Original_Size"), tr("Restore Original Size"), false);
    pMenu->addSeparator();
    addCatalogue(pMenu, QStringLiteral("Edit.Remove_All_Overrides"), tr("Remove All Overrides"), false);
    pMenu->addSeparator();
    addContainer(pMenu, QStringLiteral("Edit.Group_Elements"));
    pMenu->addSeparator();

    const auto addEdit = [this, pMenu](const QString& id, const QString& text, const QKeySequence& key) {
        QAction* pAction = addOwn(pMenu, id, text);
        pAction->setShortcut(key);
        registerOnCanvas(pAction, id);
        return pAction;
    };
    addEdit(QStringLiteral("Edit.Cut"), tr("Cu&t"), QKeySequence::Cut);
    addEdit(QStringLiteral("Edit.Copy"), tr("&Copy"), QKeySequence::Copy);
    addEdit(QStringLiteral("Edit.Paste"), tr("&Paste"), QKeySequence::Paste);
    addOwn(pMenu, QStringLiteral("Paste Here"), tr("Paste Here"));
    addEdit(QStringLiteral("Edit.Paste_With_Animation"), tr("Paste with Animation"), QKeySequence());
    addEdit(QStringLiteral("Edit.Delete"), tr("&Delete"), QKeySequence(Qt::Key_Backspace));
    pMenu->addSeparator();
    addContainer(pMenu, QStringLiteral("Timeline.Add_Keyframe"));
    pMenu->addSeparator();
    addCatalogue(pMenu, QStringLiteral("Edit.Lock_All"), tr("Lock All"), false);
    addCatalogue(pMenu, QStringLiteral("Edit.Hide ALL"), tr("Hide All"), false);
    addCatalogue(pMenu, QStringLiteral("Edit.Lock"), tr("Lock"), false);
    addCatalogue(pMenu, QStringLiteral("Edit.Hide"), tr("Hide"), false);
    pMenu->addSeparator();
    addCatalogue(pMenu, QStringLiteral("Edit.Copy_Event_Actions"), tr("Copy All Event Actions"), false);
    addCatalogue(pMenu, QStringLiteral("Edit.Paste_Event_Actions"), tr("Paste Event Actions"), false);
    addCatalogue(pMenu, QStringLiteral("View.Event_Actions_Dialog"), tr("Event Handlers"), false);

    // In no menu: its shortcut selects the stage's elements while the stage has the focus.
    QAction* pSelectAll = addOwn(nullptr, QStringLiteral("Edit.Select_All"), tr("Select &All"));
    pSelectAll->setShortcut(QKeySequence::SelectAll);
    registerOnCanvas(pSelectAll, QStringLiteral("Edit.Select_All"));
}

void VTCanvasMenus::buildBreakpointMenu()
{
    addOwn(m_pBreakpointMenu, QStringLiteral("Add Breakpoint"), tr("Add Breakpoint"));
    addOwn(m_pBreakpointMenu, QStringLiteral("Remove Selection"), tr("Remove Selection"));
}

void VTCanvasMenus::buildPointMenu()
{
    addOwn(m_pPointMenu, QStringLiteral("Open Path"), tr("Open Path"));
    addOwn(m_pPointMenu, QStringLiteral("Straight Segment"), tr("Straight Segment"));
    addOwn(m_pPointMenu, QStringLiteral("End Edit Point"), tr("End Edit Point"));
}

void VTCanvasMenus::connectActions()
{
    VTCanvas* pCanvas = m_pCanvas;
    const auto onTrigger = [this](const QString& key, auto slot) {
        connect(getAction(key), &QAction::triggered, this, slot);
    };
    onTrigger(QStringLiteral("Reload Canvas"), [pCanvas]() { pCanvas->reload(); });
    onTrigger(QStringLiteral("Edit Points"), [pCanvas]() { pCanvas->editPoint(); });
    onTrigger(QStringLiteral("Edit Text"), [pCanvas]() { pCanvas->editText(); });
    onTrigger(QStringLiteral("Edit.Edit_Symbol"), [pCanvas]() { pCanvas->onEditSymbol(); });
    onTrigger(QStringLiteral("Edit.Delete"), [pCanvas]() { pCanvas->removeSelectedItems(); });
    onTrigger(QStringLiteral("Edit.Select_All"), [pCanvas]() { pCanvas->onSelectAll(); });
    onTrigger(QStringLiteral("Add Breakpoint"), [this]() { addBreakpoint(); });
    onTrigger(QStringLiteral("Remove Selection"), [this]() { removeBreakpoint(); });
    onTrigger(QStringLiteral("Open Path"), [pCanvas]() { pCanvas->openPath(); });
    onTrigger(QStringLiteral("Straight Segment"), [pCanvas]() { pCanvas->straightSegment(); });
    onTrigger(QStringLiteral("End Edit Point"), [pCanvas]() { pCanvas->editPoint(); });
    // The catalogue's own actions reach the canvas through the plug-in's handlers.
    QAction* pRuler = getAction(QStringLiteral("View.Ruler"));
    if (pRuler->property("vtStandIn").toBool())
        connect(pRuler, &QAction::toggled, this, [pCanvas](bool bOn) { pCanvas->showRuler(bOn); });
    QAction* pSnap = getAction(QStringLiteral("View.Canvas.Snap"));
    if (pSnap->property("vtStandIn").toBool())
        connect(pSnap, &QAction::toggled, this, [pCanvas](bool bOn) { pCanvas->setSnapEnabled(bOn); });
}

void VTCanvasMenus::updateActions()
{
    // While the page edits text, its own editing keys are what counts.
    if (m_pCanvas->isEditingText())
        return;
    if (ContextAction* pPlain = ActionManager::getAction(QStringLiteral("Text.Paste_As_Plain")))
        pPlain->setVisible(false);

    const VTScene* pScene = m_pCanvas->getCurrentScene();
    const QList<VTElement*> lstSelected = m_pCanvas->getSelectedElements();
    const bool bSelection = pScene && !lstSelected.isEmpty();
    // Copy and paste wait for the studio's clipboard of elements; until it is there they stay off.
    const bool bClipboard = false;
    setOn(getAction(QStringLiteral("Edit.Cut")), bSelection && bClipboard);
    setOn(getAction(QStringLiteral("Edit.Copy")), bSelection && bClipboard);
    setOn(getAction(QStringLiteral("Edit.Delete")), bSelection);
    for (const QString& id : {QStringLiteral("Edit.Paste"), QStringLiteral("Paste Here"),
                              QStringLiteral("Edit.Paste_With_Animation")})
        setOn(getAction(id), pScene && bClipboard);

    const bool bOne = bSelection && lstSelected.size() == 1;
    QAction* pEditSymbol = getAction(QStringLiteral("Edit.Edit_Symbol"));
    pEditSymbol->setEnabled(pScene);
    pEditSymbol->setVisible(bOne && lstSelected.constFirst()->getType() == VT::SymbolElement);

    const bool bEditText = bSelection && canEditText(m_pCanvas->getFocusedElement());
    QAction* pEditText = getAction(QStringLiteral("Edit Text"));
    pEditText->setVisible(bEditText);
    pEditText->setEnabled(bEditText);

    setShown(getAction(QStringLiteral("Edit Points")), bOne && asPointEditable(lstSelected.constFirst()));
    const auto* pEditing = qobject_cast<const VTFreeFormShape*>(m_pCanvas->getPointEditingElement());
    if (pEditing && pEditing->getPath())
        setLabel(getAction(QStringLiteral("Open Path")),
                 pEditing->getPath()->isClosedPath() ? tr("Open Path") : tr("Close Path"));

    updateLockAndHide(bSelection ? lstSelected : QList<VTElement*>());
}

void VTCanvasMenus::updateLockAndHide(const QList<VTElement*>& lstSelected)
{
    const VTScene* pScene = m_pCanvas->getCurrentScene();
    const QList<VTElement*> lstChildren = pScene ? pScene->getChildren() : QList<VTElement*>();
    const bool bWhole = lstSelected.isEmpty() && !lstChildren.isEmpty();
    setShown(getAction(QStringLiteral("Edit.Lock_All")), bWhole);
    setShown(getAction(QStringLiteral("Edit.Hide ALL")), bWhole);
    setShown(getAction(QStringLiteral("Edit.Lock")), !lstSelected.isEmpty());
    setShown(getAction(QStringLiteral("Edit.Hide")), !lstSelected.isEmpty());

    const auto all = [](const QList<VTElement*>& lstElements, bool (VTElement::*test)() const) {
        return std::all_of(lstElements.cbegin(), lstElements.cend(),
                           [test](const VTElement* pElement) { return (pElement->*test)(); });
    };
    const bool bAllLocked = all(lstChildren, &VTElement::isLocked);
    const bool bNoneVisible = std::none_of(lstChildren.cbegin(), lstChildren.cend(),
                                           [](const VTElement* pElement) { return pElement->isVisible(); });
    setLabel(getAction(QStringLiteral("Edit.Lock_All")), bAllLocked ? tr("Unlock All") : tr("Lock All"));
    setLabel(getAction(QStringLiteral("Edit.Hide ALL")), bNoneVisible ? tr("Show All") : tr("Hide All"));
    setLabel(getAction(QStringLiteral("Edit.Hide")),
             all(lstSelected, &VTElement::isVisible) ? tr("Hide") : tr("Show"));
}

void VTCanvasMenus::updatePasteShortcut(bool bEditingText)
{
    QAction* pPaste = getAction(QStringLiteral("Edit.Paste"));
    const QKeySequence pasteKey(QKeySequence::Paste);
    if (bEditingText) {
        if (pPaste->shortcut() == pasteKey) {
            pPaste->setShortcut(QKeySequence());
            m_bPasteKeyCleared = true;
        }
        return;
    }
    if (m_bPasteKeyCleared && pPaste->shortcut().isEmpty())
        pPaste->setShortcut(pasteKey);
    m_bPasteKeyCleared = false;
}

QMenu* VTCanvasMenus::chooseMenu()
{
    if (!m_pCanvas->getCurrentScene())
        return nullptr;
    // The open text edit has a menu of its own, which the text editor brings.
    if (m_pCanvas->isEditingText())
        return nullptr;
    if (m_pCanvas->isEditingBreakpoint()) {
        setOn(getAction(QStringLiteral("Remove Selection")), m_pCanvas->getBreakpointValue() >= 0);
        m_pCanvas->clearEditingBreakpoint();
        return m_pBreakpointMenu;
    }
    if (m_pCanvas->getPointEditingElement()) {
        updateActions();
        return m_pPointMenu;
    }
    updateActions();
    return m_pMainMenu;
}

void VTCanvasMenus::showContextMenu(const QPoint& globalPos)
{
    QMenu* pMenu = chooseMenu();
    if (!pMenu)
        return;
    if (pMenu == m_pMainMenu)
        m_pCanvas->setLastContextMenuPos(globalPos);
    pMenu->popup(globalPos);
}

void VTCanvasMenus::addBreakpoint()
{
    VTDocument* pDocument = m_pCanvas->getDocument();
    const int nPos = m_pCanvas->getBreakpointRulerPos();
    if (!pDocument || nPos < 1 || nPos > 10000)
        return;
    auto* pCommand = new VTCommand(pDocument, tr("Add Breakpoint"));
    pCommand->createActionsToAddBreakpoint(m_pCanvas->getBreakpointDirection(), nPos);
    if (pCommand->isEmpty()) {
        delete pCommand;
        return;
    }
    pDocument->submitCommand(pCommand);
}

void VTCanvasMenus::removeBreakpoint()
{
    VTDocument* pDocument = m_pCanvas->getDocument();
    if (!pDocument)
        return;
    const IMessageBox::StandardButton answer = IMessageBox::instance()->question(
        tr("Remove Breakpoint"), tr("Are you sure you want to remove the current breakpoint?"),
        IMessageBox::Yes | IMessageBox::No, IMessageBox::Yes);
    if (answer != IMessageBox::Yes)
        return;
    auto* pCommand = new VTCommand(pDocument, tr("Remove Breakpoint"));
    pCommand->createActionsToRemoveBreakpoint(m_pCanvas->getBreakpointDirection(),
                                              m_pCanvas->getBreakpointValue());
    if (pCommand->isEmpty()) {
        delete pCommand;
        return;
    }
    pDocument->submitCommand(pCommand);
}
