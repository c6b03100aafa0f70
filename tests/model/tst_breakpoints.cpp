#include "VTBorder.h"
#include "VTBreakpointManager.h"
#include "VTElement.h"
#include "VTLayoutOperations.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTSymbol.h"
#include "VTTypes.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QtTest>

#include <memory>

using Entry = VTBreakpointManager::Entry;
using Keys = QList<VTLayoutKey>;

namespace {

const Entry kRefused(-1, -1);

// Horizontal 0, 375, 768 with the ids 1, 2, 3.
void addPhoneTablet(VTBreakpointManager& manager)
{
    for (const int nValue : {0, 375, 768})
        manager.addHorizontal(nValue);
}

QVector<int> valuesOf(const VTBreakpointManager::EntryList& lstEntries)
{
    QVector<int> vecValues;
    for (const Entry& entry : lstEntries)
        vecValues.append(entry.second);
    return vecValues;
}

// A scene of the symbol with one 200 by 100 box at 100, 50, both with blocks for every layout.
VTElement* addSceneWithBox(VTSymbol& symbol)
{
    auto* pScene = new VTScene();
    pScene->initDefault();
    auto* pBox = new VTElement();
    pBox->initDefault();
    pBox->setPositionX(100);
    pBox->setPositionY(50);
    pBox->setSizeW(200);
    pBox->setSizeH(100);
    pScene->addElement(pBox);
    const Keys lstLayouts = symbol.getBreakpointManager()->getAllBreakpointIds(false);
    pScene->prepareLayoutProperty(lstLayouts, true, VTLayoutKey::base());
    pBox->prepareLayoutProperty(lstLayouts, true, VTLayoutKey::base());
    symbol.getSceneManager()->addScene(pScene);
    return pBox;
}

// The layouts that the scenes of the symbol and the elements in them show.
QSet<VTLayoutKey> shownLayouts(const VTSymbol& symbol)
{
    QSet<VTLayoutKey> setKeys;
    for (const VTScene* pScene : symbol.getSceneManager()->getScenes()) {
        setKeys.insert(pScene->getCurrentLayoutID());
        for (const VTElement* pChild : pScene->getChildren())
            setKeys.insert(pChild->getCurrentLayoutID());
    }
    return setKeys;
}

} // namespace

class TestBreakpoints : public QObject
{
    Q_OBJECT
private slots:
    void defaultsAndEditing();
    void sizesRangesAndLayouts();
    void parseHostileInput();
    void jsonRoundTrip();
    void symbolShowsCurrentLayout();
    void positionOnOppositeSide();
    void layoutsReachedByEdit();
};

void TestBreakpoints::defaultsAndEditing()
{
    // Not even the base entry when the smallest width does not fit.
    const QList<QPair<int, QVector<int>>> lstDefaults = {
        {300, {}}, {1000, {0, 375, 667, 768}}, {1280, {0, 375, 667, 768, 1024, 1280}}};
    for (const auto& defaults : lstDefaults) {
        VTBreakpointManager manager;
        manager.initDefault(defaults.first);
        QCOMPARE(valuesOf(manager.getHBreakpoints()), defaults.second);
        QCOMPARE(manager.getNextId(), 1 + defaults.second.size());
    }

    VTBreakpointManager manager;
    addPhoneTablet(manager);
    QCOMPARE(manager.addHorizontal(500), Entry(4, 500));
    QCOMPARE(valuesOf(manager.getHBreakpoints()), (QVector<int>{0, 375, 500, 768}));
    // A value that exists is refused and costs no id.
    QCOMPARE(manager.addHorizontal(375), kRefused);
    QCOMPARE(manager.getNextId(), 5);
    // A given id is kept without raising the counter; one in use is refused.
    QCOMPARE(manager.addHorizontal(900, 42), Entry(42, 900));
    QCOMPARE(manager.addHorizontal(950, 42), kRefused);
    // One counter for both directions.
    QCOMPARE(manager.addVertical(600), Entry(5, 600));
    // An update keeps the entry where it stands.
    QVERIFY(manager.updateHorizontal(4, 520));
    QVERIFY(!manager.updateVertical(4, 1));
    QCOMPARE(valuesOf(manager.getHBreakpoints()), (QVector<int>{0, 375, 520, 768, 900}));
    QCOMPARE(manager.removeHorizontal(4), Entry(4, 520));
    QCOMPARE(manager.removeHorizontal(4), kRefused);

    // Presets: enabled ones only, each direction behind its own base entry.
    manager.init({{480, true}, {1024, false}, {800, true}}, {{640, true}});
    QCOMPARE(manager.getHBreakpoints(), (VTBreakpointManager::EntryList{{6, 0}, {7, 480}, {8, 800}}));
    QCOMPARE(manager.getVBreakpoints(), (VTBreakpointManager::EntryList{{9, 0}, {10, 640}}));
}

void TestBreakpoints::sizesRangesAndLayouts()
{
    VTBreakpointManager manager;
    QCOMPARE(manager.getAllBreakpointIds(true), Keys{VTLayoutKey::base()});
    manager.addVertical(0);
    manager.addVertical(500);
    QCOMPARE(manager.getBreakpointsFromDirection(VTBreakpointManager::Horizontal, {7}),
             (Keys{{7, 1}, {7, 2}}));
    addPhoneTablet(manager);
    QCOMPARE(manager.getAllBreakpointIds(true),
             (Keys{{0, 0}, {3, 1}, {3, 2}, {4, 1}, {4, 2}, {5, 1}, {5, 2}}));
    QCOMPARE(manager.getBreakpointsFromDirection(VTBreakpointManager::Vertical, {2}),
             (Keys{{3, 2}, {4, 2}, {5, 2}}));
    QCOMPARE(manager.getHRange(4), qMakePair(375, 768));
    QCOMPARE(manager.getHRange(5), qMakePair(768, -1));
    QCOMPARE(manager.getVRange(3), qMakePair(-1, -1));

    // A size equal to a breakpoint belongs to it.
    QCOMPARE(manager.getBreakpointBySize(400, 100), VTLayoutKey(4, 1));
    QCOMPARE(manager.getBreakpointBySize(375, 500), VTLayoutKey(4, 2));
    QCOMPARE(manager.getBreakpointBySize(374, 499), VTLayoutKey(3, 1));
    QCOMPARE(manager.getBreakpointBySize(-5, 100000), VTLayoutKey(0, 2));

    const auto best = [&](int nId, int nSize) {
        return manager.getBestSize(VTBreakpointManager::Horizontal, nId, nSize);
    };
    QCOMPARE(best(0, 123), 123);
    // The larger of the middle, 571, and 100 below the end.
    QCOMPARE(best(4, 1000), 668);
    QCOMPARE(best(4, 500), 500);
    QCOMPARE(best(5, 400), 868);
    QCOMPARE(best(5, 2000), 2000);
    QCOMPARE(manager.getBestSize(VTBreakpointManager::Vertical, 2, 50), 600);

    // A value stays strictly between its neighbours, the first real one above the base's 0.
    const auto validate = [&](int nId, int nValue) {
        return manager.validate(VTBreakpointManager::Horizontal, nId, nValue);
    };
    QCOMPARE(validate(4, 0), 1);
    QCOMPARE(validate(4, 5000), 767);
    QCOMPARE(validate(99, -7), -7);

    // Only values count, not ids.
    VTBreakpointManager other;
    for (const int nValue : {0, 375, 768})
        other.addHorizontal(nValue, 10 + nValue);
    QVERIFY(!other.isSameBreakpoints(&manager));
    other.addVertical(0);
    other.addVertical(500);
    QVERIFY(other.isSameBreakpoints(&manager));

    // A small last range still opens at 300; sizes stop at the end of the int range.
    VTBreakpointManager small;
    small.addHorizontal(0);
    small.addHorizontal(100);
    QCOMPARE(small.getBestSize(VTBreakpointManager::Horizontal, 2, 50), 300);
    small.addHorizontal(2147483600);
    QCOMPARE(small.getBestSize(VTBreakpointManager::Horizontal, 3, 5), 2147483647);
}

void TestBreakpoints::parseHostileInput()
{
    VTBreakpointManager manager;
    addPhoneTablet(manager);
    QStringList lstProblems;
    const QJsonObject json{{"responsiveMode", true},
                           {"nextId", 2},
                           {"h", QJsonArray{QJsonArray{1, 0}, QJsonArray{7, 375, 1}, QJsonArray{3, "768"},
                                            "x", QJsonArray{4, 1.5}, QJsonArray{0, 500}, QJsonArray{5, -1},
                                            QJsonArray{6, 375}, QJsonArray{1, 900}, QJsonArray{9, 768}}},
                           {"v", "not a list"},
                           {"hCurrentId", 9},
                           {"vCurrentId", -3}};
    QVERIFY(manager.parse(json, &lstProblems));
    // What was there before is gone; the good pairs stay, in file order, and raise the counter.
    QCOMPARE(manager.getHBreakpoints(), (VTBreakpointManager::EntryList{{1, 0}, {6, 375}, {9, 768}}));
    QCOMPARE(manager.countVBreakpoints(), 0);
    QCOMPARE(manager.getNextId(), 10);
    QCOMPARE(manager.getCurrentId(true), VTLayoutKey(9, 0));
    const QString problems = lstProblems.join('\n');
    for (const char* pszExpected :
         {"left out 4 of its entries, the first at position 1", "left out 2 of",
          "left out 1 of its entries, the first at position 8", "\"v\"", "vCurrentId"})
        QVERIFY2(problems.contains(QLatin1String(pszExpected)), qPrintable(problems));
    QCOMPARE(lstProblems.size(), 5);

    // A list far too long is cut, and what was cut is told.
    QJsonArray bulk;
    for (int i = 1; i <= 5000; ++i)
        bulk.append(QJsonArray{i, i * 10});
    lstProblems.clear();
    QVERIFY(manager.parse(QJsonObject{{"v", bulk}}, &lstProblems));
    QCOMPARE(manager.countVBreakpoints(), VTBreakpointManager::kMaxBreakpointsPerDirection);
    QCOMPARE(manager.getNextId(), 1001);
    QCOMPARE(lstProblems.size(), 1);
    QVERIFY2(lstProblems.first().contains("1000 to 4999"), qPrintable(lstProblems.first()));
}

void TestBreakpoints::jsonRoundTrip()
{
    VTBreakpointManager empty;
    QJsonObject json;
    empty.serialize(json);
    QCOMPARE(json.keys(), (QStringList{"hCurrentId", "nextId", "responsiveMode", "vCurrentId"}));
    json = QJsonObject();
    empty.serializeToExport(json, false);
    QVERIFY(json.isEmpty());

    VTBreakpointManager manager;
    addPhoneTablet(manager);
    manager.addVertical(0);
    manager.setResponsiveMode(true);
    manager.setCurrentId({2, 4});
    manager.serialize(json);
    QCOMPARE(json.value("h").toArray(),
             (QJsonArray{QJsonArray{1, 0}, QJsonArray{2, 375}, QJsonArray{3, 768}}));
    VTBreakpointManager reread;
    QStringList lstProblems;
    QVERIFY(reread.parse(json, &lstProblems) && lstProblems.isEmpty());
    QJsonObject again;
    reread.serialize(again);
    QCOMPARE(again, json);
}

void TestBreakpoints::symbolShowsCurrentLayout()
{
    VTSymbol symbol;
    symbol.setWidth(500);
    addPhoneTablet(*symbol.getBreakpointManager());
    addSceneWithBox(symbol);
    addSceneWithBox(symbol);
    symbol.setResponsiveMode(true);
    symbol.setCurrentLayoutId(3, 0);
    QCOMPARE(shownLayouts(symbol), QSet<VTLayoutKey>{VTLayoutKey(3, 0)});
    // Leaving the mode shows the base and keeps the pair, which a change outside the mode sets.
    symbol.setResponsiveMode(false);
    QCOMPARE(shownLayouts(symbol), QSet<VTLayoutKey>{VTLayoutKey::base()});
    QCOMPARE(symbol.getCurrentLayoutId(false), VTLayoutKey(3, 0));
    symbol.setCurrentLayoutId(2, 0);
    QCOMPARE(shownLayouts(symbol), QSet<VTLayoutKey>{VTLayoutKey::base()});
    symbol.setResponsiveMode(true);
    addSceneWithBox(symbol);
    QCOMPARE(shownLayouts(symbol), QSet<VTLayoutKey>{VTLayoutKey(2, 0)});

    // The base has room above every breakpoint; other layouts fit their ranges.
    QCOMPARE(symbol.getBestSize(VTLayoutKey::base()), QSize(868, 600));
    QCOMPARE(symbol.getBestSize({2, 0}), QSize(500, 600));

    // Read back from its file, a copy shows the same layout in all its scenes.
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    QVERIFY(symbol.saveTempData(&buffer));
    buffer.seek(0);
    VTSymbol reread;
    QVERIFY(reread.loadTempData(&buffer));
    QVERIFY2(reread.getLoadProblems().isEmpty(), qPrintable(reread.getLoadProblems().join('\n')));
    QVERIFY(reread.getBreakpointManager()->isSameBreakpoints(symbol.getBreakpointManager()));
    QCOMPARE(shownLayouts(reread), QSet<VTLayoutKey>{VTLayoutKey(2, 0)});
    const std::unique_ptr<VTSymbol> pCopy(symbol.clone());
    QCOMPARE(shownLayouts(*pCopy), QSet<VTLayoutKey>{VTLayoutKey(2, 0)});

    // The player gets the lists without the mode.
    QJsonObject exported;
    symbol.serializeToExport(exported, false);
    QCOMPARE(exported.value("b").toObject().keys(), QStringList{"h"});
}

void TestBreakpoints::positionOnOppositeSide()
{
    VTSymbol symbol;
    symbol.setWidth(1000);
    symbol.getBreakpointManager()->addHorizontal(0);
    symbol.getBreakpointManager()->addHorizontal(600);
    VTElement* pBox = addSceneWithBox(symbol);
    VTElement* pScene = pBox->getParent();
    pScene->setSizeH(400, {2, 0});
    pBox->getBorder({2, 0})->setStyle(VTBorder::Solid);
    pBox->getBorder({2, 0})->setWidth(5);

    // Pixels: the rest of the 800 by 600 scene, in the asked layout, border included.
    double dX = -1;
    double dY = -1;
    VTLayoutOperations::updatePositionWhenChangeCoordinate(pBox, &symbol, VTLayoutKey::current(), dX, dY);
    QCOMPARE(QPointF(dX, dY), QPointF(500, 450));
    VTLayoutOperations::updatePositionWhenChangeCoordinate(pBox, &symbol, {2, 0}, dX, dY);
    QCOMPARE(QPointF(dX, dY), QPointF(490, 240));
    QCOMPARE(pBox->getCurrentLayoutID(), VTLayoutKey::base());

    // Shares of the parent: 0.25 of 800 plus 200 wide leaves 0.5 on the right.
    pBox->setUnitX(VT::Percent, {1, 0});
    pBox->setPositionX(0.25, {1, 0});
    VTLayoutOperations::updatePositionWhenChangeCoordinate(pBox, &symbol, {1, 0}, dX, dY);
    QCOMPARE(QPointF(dX, dY), QPointF(0.5, 450));
    // A parent without size solves nothing; an element without parent measures against the stage.
    pScene->setSizeW(0, {1, 0});
    VTLayoutOperations::updatePositionWhenChangeCoordinate(pBox, &symbol, {1, 0}, dX, dY);
    QCOMPARE(dX, 0.5);
    QCOMPARE(VTLayoutOperations::getParentWidth(pScene, &symbol, VTLayoutKey::base()), 1000.0);

    QVERIFY(VTLayoutOperations::isDifferentOnlyX(VT::LeftBottom, VT::RightBottom));
    QVERIFY(!VTLayoutOperations::isDifferentOnlyY(VT::LeftTop, VT::RightBottom));
}

void TestBreakpoints::layoutsReachedByEdit()
{
    VTSymbol symbol;
    addPhoneTablet(*symbol.getBreakpointManager());
    VTElement* pBox = addSceneWithBox(symbol);
    // Layout 2 has a border of its own, layout 3 its own opacity.
    for (const int nProperty : {VT::PropBorderStyle, VT::PropBorderWidth, VT::PropBorderColor})
        pBox->setInherit(nProperty, false, {2, 0});
    pBox->setInherit(VT::PropOpacity, false, {3, 0});
    const auto reached = [&](int nProperty) {
        return VTLayoutOperations::getLayoutsReachedByEdit(pBox, &symbol, nProperty);
    };
    QCOMPARE(reached(VT::PropBorderWidth), (Keys{{0, 0}, {1, 0}, {3, 0}}));
    QCOMPARE(reached(VT::PropOpacity), (Keys{{0, 0}, {1, 0}, {2, 0}}));
    QCOMPARE(reached(VT::PropWidth), (Keys{{0, 0}, {1, 0}, {2, 0}, {3, 0}}));

    // In responsive mode the current layout alone, overridden or not.
    symbol.setResponsiveMode(true);
    QCOMPARE(reached(VT::PropWidth), Keys{VTLayoutKey::base()});
    symbol.setCurrentLayoutId(2, 0);
    QCOMPARE(reached(VT::PropBorderWidth), (Keys{{2, 0}}));
    // A layout the element has no block for takes no edit.
    symbol.setCurrentLayoutId(7, 0);
    QVERIFY(reached(VT::PropWidth).isEmpty());

    // A new element gets the symbol's layouts as copies of its source; others go.
    VTElement element;
    element.initDefault();
    element.setSizeW(50);
    element.addLayoutProperty(element.createLayoutBlock(), {9, 0});
    element.setSizeW(10, {9, 0});
    element.prepareLayoutProperty(symbol.getBreakpointManager()->getAllBreakpointIds(false), true, {9, 0});
    QCOMPARE(element.getAllLayoutIds(), (Keys{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {9, 0}}));
    QCOMPARE(QPointF(element.getSizeW({2, 0}), element.getSizeW(VTLayoutKey::base())), QPointF(10, 50));
    element.prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    QCOMPARE(element.getAllLayoutIds(), (Keys{{0, 0}, {1, 0}}));
}

QTEST_GUILESS_MAIN(TestBreakpoints)
#include "tst_breakpoints.moc"
