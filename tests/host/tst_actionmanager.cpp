#include "ActionContainer.h"
#include "ActionManager.h"
#include "ContextAction.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class TestActionManager : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { ActionManager::clear(); }
    void containersKeepOrderAndPaths();
    void shortcutsPersistOnlyWhenChanged();
    void contextAlternativesShareTheShortcut();
};

void TestActionManager::containersKeepOrderAndPaths()
{
    QMenuBar bar;
    ActionContainer* pBar = ActionManager::registerMenuBar(&bar, "Vetra.MenuBar");
    ActionContainer* pFile = ActionManager::createMenuContainer("&File", "MenuBar.File");
    ActionContainer* pHelp = ActionManager::createMenuContainer("&Help", "MenuBar.Help");
    pBar->addContainer(pFile);
    pBar->addContainer(pHelp);
    ActionContainer* pScene = ActionManager::createMenuContainer("&Scene", "MenuBar.Scene");
    pBar->insertContainer(pHelp->containerAction(), pScene);
    QCOMPARE(bar.actions().size(), 3);
    QCOMPARE(bar.actions().at(1)->text(), QString("&Scene"));
    // Asking again for an id gives the same container.
    QCOMPARE(ActionManager::createMenuContainer("x", "MenuBar.Scene"), pScene);

    ActionContainer* pSaveAs = ActionManager::createMenuContainer("Save &As", "File.SaveAs");
    pFile->addContainer(pSaveAs);
    QAction package("Package");
    ContextAction* pPackage = ActionManager::registerAction(&package, "File.SaveAs.Package");
    pSaveAs->addAction(pPackage, true);
    QCOMPARE(pSaveAs->menu()->actions().size(), 2);
    QVERIFY(pSaveAs->menu()->actions().first()->isSeparator());
    QCOMPARE(ActionManager::getActionFullText(pPackage), QString("File > Save As > Package"));
    QCOMPARE(pPackage->getDescription(), QString("Package"));
    pPackage->setDescription("Save document as package file");
    QCOMPARE(pPackage->getDescription(), QString("Save document as package file"));
}

void TestActionManager::shortcutsPersistOnlyWhenChanged()
{
    QTemporaryDir dir;
    QSettings settings(dir.filePath("s.ini"), QSettings::IniFormat);
    auto* pCut = new QAction("Cut", this);
    auto* pGroup = new QAction("Group", this);
    ContextAction* pCutAction = ActionManager::registerAction(pCut, "Edit.Cut");
    ContextAction* pGroupAction = ActionManager::registerAction(pGroup, "Edit.Group_Elements.Group");
    pCutAction->setDefaultKeySequence(QKeySequence("Ctrl+X"));
    pGroupAction->setDefaultKeySequence(QKeySequence("Ctrl+G"));
    QCOMPARE(pCut->shortcut(), QKeySequence("Ctrl+X"));

    pGroupAction->setKeySequence(QKeySequence("Ctrl+Alt+G"));
    ActionManager::saveSettings(&settings);
    QCOMPARE(settings.value("Shortcuts/Edit.Group_Elements.Group").toString(), QString("Ctrl+Alt+G"));
    QVERIFY(!settings.contains("Shortcuts/Edit.Cut"));

    // A later start: the stored binding wins over the default that the catalogue sets again.
    ActionManager::clear();
    auto* pGroup2 = new QAction("Group", this);
    ContextAction* pAgain = ActionManager::registerAction(pGroup2, "Edit.Group_Elements.Group");
    ActionManager::readFromSettings(&settings);
    pAgain->setDefaultKeySequence(QKeySequence("Ctrl+G"));
    QCOMPARE(pGroup2->shortcut(), QKeySequence("Ctrl+Alt+G"));

    ActionManager::resetToDefault();
    QCOMPARE(pGroup2->shortcut(), QKeySequence("Ctrl+G"));
    ActionManager::saveSettings(&settings);
    QVERIFY(!settings.contains("Shortcuts/Edit.Group_Elements.Group"));

    // A deleted action leaves the catalogue.
    delete pGroup2;
    QTRY_VERIFY(!ActionManager::getAction("Edit.Group_Elements.Group"));
}

void TestActionManager::contextAlternativesShareTheShortcut()
{
    QWidget canvas, timeline;
    auto* pCanvasCopy = new QAction("Copy", &canvas);
    auto* pTimelineCopy = new QAction("Copy", &timeline);
    ContextAction* pCopy = ActionManager::registerAction(pCanvasCopy, "Edit.Copy", &canvas);
    QCOMPARE(ActionManager::registerAction(pTimelineCopy, "Edit.Copy", &timeline), pCopy);
    QCOMPARE(pCopy->getAlternatives().size(), 2);
    QVERIFY(timeline.actions().contains(pTimelineCopy));
    QCOMPARE(pTimelineCopy->shortcutContext(), Qt::WidgetWithChildrenShortcut);
    pCopy->setKeySequence(QKeySequence("Ctrl+Shift+C"));
    QCOMPARE(pCanvasCopy->shortcut(), QKeySequence("Ctrl+Shift+C"));
    QCOMPARE(pTimelineCopy->shortcut(), QKeySequence("Ctrl+Shift+C"));
    pCopy->setVisible(false);
    QVERIFY(!pTimelineCopy->isVisible());
}

QTEST_MAIN(TestActionManager)
#include "tst_actionmanager.moc"
