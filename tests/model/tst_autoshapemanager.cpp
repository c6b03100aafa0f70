#include "VTAutoShape.h"
#include "VTAutoShapeManager.h"
#include "VTFreeFormShape.h"

#include <QtTest>

class TestAutoShapeManager : public QObject
{
    Q_OBJECT
private slots:
    void prototypesInTypeOrder();
    void registration();
};

void TestAutoShapeManager::prototypesInTypeOrder()
{
    VTAutoShapeManager* pManager = VTAutoShapeManager::getInstance();
    QCOMPARE(pManager->getCount(), 48);
    // The menus go by number, not by the order in which the table registers the shapes.
    QCOMPARE(pManager->getIndex(11), 0);
    QCOMPARE(pManager->getIndex(595), 47);
    QCOMPARE(pManager->getIndex(23), -1);
    QCOMPARE(pManager->findShapeByIndex(0)->getAutoShapeType(), 11);
    QVERIFY(!pManager->findShapeByIndex(48));
    QVERIFY(!pManager->findShapeByIndex(-1));
    QCOMPARE(pManager->getName(21), QStringLiteral("Oval"));
    QCOMPARE(pManager->getName(594), QStringLiteral("Freeform: Shape"));
    QVERIFY(pManager->getName(23).isEmpty());

    const QMap<int, VTAutoShape*> stars = pManager->getAutoShapes(VTAutoShapeTypes::Stars);
    QCOMPARE(stars.keys(), (QList<int>{81, 82, 83, 85, 89, 101}));
    // The pentagon sits among the block arrows although the table lists it with the basic shapes.
    QVERIFY(pManager->getAutoShapes(VTAutoShapeTypes::BlockArrows).contains(73));
    QCOMPARE(pManager->getAutoShapes(VTAutoShapeTypes::BasicShapes).size(), 20);

    // Freeform types are freeform elements; the parametric ones are shapes.
    VTAutoShape* pCurve = pManager->findShapeByShapeType(593);
    QVERIFY(qobject_cast<VTFreeFormShape*>(pCurve));
    QCOMPARE(pCurve->getType(), int(VT::FreeFormElement));
    QVERIFY(!qobject_cast<VTFreeFormShape*>(pManager->findShapeByShapeType(11)));
    QCOMPARE(pManager->findShapeByShapeType(11)->getType(), int(VT::ShapeElement));
}

void TestAutoShapeManager::registration()
{
    VTAutoShapeManager* pManager = VTAutoShapeManager::getInstance();
    pManager->registerShape(nullptr, 500, QStringLiteral("None"), 0);
    QCOMPARE(pManager->getCount(), 48);
    auto* pRefused = new VTAutoShape();
    pRefused->initDefault();
    pManager->registerShape(pRefused, -4, QStringLiteral("Negative"), 0);
    QCOMPARE(pManager->getCount(), 48);

    auto* pExtra = new VTAutoShape();
    pExtra->initDefault();
    pManager->registerShape(pExtra, 23, QStringLiteral("Extra"), VTAutoShapeTypes::Callouts);
    QCOMPARE(pManager->getName(23), QStringLiteral("Extra"));
    QCOMPARE(pManager->findShapeByShapeType(23), pExtra);
    QVERIFY(pManager->getAutoShapes(VTAutoShapeTypes::Callouts).contains(23));
    // Later numbers move up one place.
    QCOMPARE(pManager->getIndex(25), 13);

    // Registering a type again replaces its prototype.
    auto* pAgain = new VTAutoShape();
    pAgain->initDefault();
    pManager->registerShape(pAgain, 23, QStringLiteral("Again"), VTAutoShapeTypes::Callouts);
    QCOMPARE(pManager->getCount(), 49);
    QCOMPARE(pManager->findShapeByShapeType(23), pAgain);
    VTAutoShapeManager::destroyInstance();
    QCOMPARE(VTAutoShapeManager::getInstance()->getCount(), 48);
    VTAutoShapeManager::destroyInstance();
}

QTEST_GUILESS_MAIN(TestAutoShapeManager)
#include "tst_autoshapemanager.moc"
