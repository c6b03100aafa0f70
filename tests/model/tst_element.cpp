#include "VTBackground.h"
#include "VTBorder.h"
#include "VTElement.h"
#include "VTElementFactory.h"
#include "VTElementProperty.h"
#include "VTElementPropertyFactory.h"
#include "VTEventListener.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTTypes.h"

#include <QtTest>

#include <array>
#include <cmath>
#include <memory>

namespace {

// Stands in for a scene where the tree needs one: the kind that bounds searches and chains, and
// the symbol's size as the parent size of percent values.
class TestScene final : public VTElement
{
public:
    TestScene() { initDefault(); }
    VT::ElementType getType() const override { return VT::SceneElement; }
    double getParentComputedW(const VTLayoutKey& key) const override
    {
        Q_UNUSED(key)
        return 1000.0;
    }
    double getParentComputedH(const VTLayoutKey& key) const override
    {
        Q_UNUSED(key)
        return 500.0;
    }
    using VTElement::getParentComputedH;
    using VTElement::getParentComputedW;
};

// A group with a base block in pixels at the given place and size, added to pParent if given.
VTElement* makeBox(VTElement* pParent, const QString& name, double dLeft, double dTop, double dWidth,
                   double dHeight)
{
    auto* pElement = new VTElement();
    pElement->initDefault();
    pElement->setName(name);
    pElement->setPositionX(dLeft);
    pElement->setPositionY(dTop);
    pElement->setSizeW(dWidth);
    pElement->setSizeH(dHeight);
    if (pParent)
        pParent->addChild(pElement);
    return pElement;
}

VTElement* makeNamed(VTElement* pParent, const QString& name, int nId = -1)
{
    VTElement* pElement = makeBox(pParent, name, 0, 0, 10, 10);
    pElement->setId(nId);
    return pElement;
}

void setBorder(VTElement* pElement, int nStyle, int nWidth, const VTLayoutKey& key = VTElement::kCurrent)
{
    pElement->getBorder(key)->setStyle(nStyle);
    pElement->getBorder(key)->setWidth(nWidth);
}

QStringList namesOf(const QList<VTElement*>& lstElements)
{
    QStringList names;
    for (const VTElement* pElement : lstElements)
        names << pElement->getName();
    return names;
}

bool isNear(const QPointF& a, const QPointF& b, double dTolerance = 1e-4)
{
    return std::abs(a.x() - b.x()) <= dTolerance && std::abs(a.y() - b.y()) <= dTolerance;
}

QString describe(const QPointF& point)
{
    return QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y());
}

#define COMPARE_POINT(actual, expected)                                                                      \
    do {                                                                                                     \
        const QPointF ptActual = (actual);                                                                   \
        const QPointF ptExpected = (expected);                                                               \
        QVERIFY2(isNear(ptActual, ptExpected),                                                               \
                 qPrintable(describe(ptActual) + QStringLiteral(" != ") + describe(ptExpected)));            \
    } while (false)

// Empty when every entry is within the tolerance, else the first entry that is not.
QString findDifference(const VTMatrix4x4& matrix, const std::array<double, 16>& arrExpected)
{
    for (int i = 0; i < 16; ++i) {
        if (!(std::abs(matrix.data()[i] - arrExpected[i]) <= 1e-4))
            return QStringLiteral("m[%1] is %2, expected %3")
                .arg(i)
                .arg(matrix.data()[i])
                .arg(arrExpected[i]);
    }
    return QString();
}

#define COMPARE_MATRIX(matrix, ...)                                                                          \
    do {                                                                                                     \
        const QString difference = findDifference(matrix, __VA_ARGS__);                                      \
        QVERIFY2(difference.isEmpty(), qPrintable(difference));                                              \
    } while (false)

const std::array<double, 16> kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

} // namespace

class TestElement : public QObject
{
    Q_OBJECT
private slots:
    void missingLayoutBlock();
    void layoutBlocks();
    void prepareLayoutProperty();
    void idsAndNames();
    void childrenAndTree();
    void selectionAndCommonAncestor();
    void unitsAndEdges();
    void absoluteAndGlobalPositions();
    void coordinateTypeHelpers();
    void transformMatrix();
    void transformChain();
    void copyAndClone();
    void resourceUses();
    void factoriesAnd3D();
};

void TestElement::missingLayoutBlock()
{
    VTElement element;
    element.initDefault();
    element.setSizeW(40);
    const VTLayoutKey other(1, 0);

    QCOMPARE(element.getSizeW(other), 0.0);
    element.setSizeW(99, other);
    QVERIFY(!element.getLayoutProperty(other));
    QCOMPARE(element.getSizeW(), 40.0);

    // Switching to a layout without a block: every value reads empty, and writes go nowhere.
    element.setCurrentLayoutID(other);
    QCOMPARE(element.getSizeW(), 0.0);
    QCOMPARE(element.getComputedTotalW(), 0.0);
    QVERIFY(!element.getBorder());
    QVERIFY(element.getTitle().isNull());
    QVERIFY(!element.isInherit(VT::PropWidth));
    QVERIFY(!element.isInherit(other));
    element.setSizeW(77);
    element.setComputedLeft(50);
    QCOMPARE(element.getSizeW(VTLayoutKey::base()), 40.0);
    QCOMPARE(element.getPositionX(VTLayoutKey::base()), 300.0);
    COMPARE_MATRIX(element.getTransformMatrix(), kIdentity);

    // (-1, -1) is no layout to switch to; a key given to a call names that layout only.
    element.setCurrentLayoutID(VTLayoutKey::current());
    QCOMPARE(element.getCurrentLayoutID(), other);
    element.setCurrentLayoutID(VTLayoutKey::base());
    element.setTitle(QStringLiteral("tip"), VTLayoutKey::current());
    QCOMPARE(element.getTitle(VTLayoutKey::base()), QStringLiteral("tip"));

    // Animation writes through the element's Qt properties into the current layout.
    QVERIFY(element.setProperty("m_dSizeW", 12.0));
    QVERIFY(element.setProperty("m_ptTranslateXY", QPointF(3, 4)));
    QCOMPARE(element.getSizeW(VTLayoutKey::base()), 12.0);
    QCOMPARE(element.getTranslateY(VTLayoutKey::base()), 4.0);
    QCOMPARE(element.property("m_dSizeW").toDouble(), 12.0);
}

void TestElement::layoutBlocks()
{
    VTElement element;
    const QList<VTLayoutKey> lstInsertOrder{{2, 1}, {0, 0}, {2, 0}, {1, 5}};
    for (const VTLayoutKey& key : lstInsertOrder) {
        auto* pBlock = new VTElementProperty();
        pBlock->setSizeW(key.first * 10 + key.second);
        QVERIFY(element.addLayoutProperty(pBlock, key));
        QCOMPARE(pBlock->parent(), &element);
    }
    // Keys with the same horizontal id are ordered by the vertical one, in memory and in the file.
    const QList<VTLayoutKey> lstSorted{{0, 0}, {1, 5}, {2, 0}, {2, 1}};
    QCOMPARE(element.getAllLayoutIds(), lstSorted);
    QJsonObject json;
    element.serialize(json);
    const QJsonArray layouts = json.value("respProps").toArray();
    QCOMPARE(layouts.size(), 4);
    for (int i = 0; i < layouts.size(); ++i) {
        const QJsonObject entry = layouts.at(i).toObject();
        QCOMPARE(VTLayoutKey(entry.value("hLayoutId").toInt(), entry.value("vLayoutId").toInt()),
                 lstSorted.at(i));
        QCOMPARE(entry.value("values").toObject().value("path").toObject().value("w").toDouble(),
                 lstSorted.at(i).first * 10.0 + lstSorted.at(i).second);
    }

    // Refused additions leave the block with the caller.
    VTElementProperty spare;
    QVERIFY(!element.addLayoutProperty(&spare, {2, 0}));
    QVERIFY(!element.addLayoutProperty(&spare, {-1, 3}));
    QVERIFY(!element.addLayoutProperty(nullptr, {7, 0}));
    QVERIFY(!element.addLayoutProperty(element.getLayoutProperty({2, 0}), {7, 0}));
    QVERIFY(!spare.parent());
    QCOMPARE(element.getAllLayoutIds().size(), 4);

    auto* pReplacement = new VTElementProperty();
    std::unique_ptr<VTElementProperty> pOld(element.updateLayoutProperty(pReplacement, {2, 0}));
    QVERIFY(pOld);
    QCOMPARE(pOld->getSizeW(), 20.0);
    QVERIFY(!pOld->parent());
    QCOMPARE(element.getLayoutProperty({2, 0}), pReplacement);
    std::unique_ptr<VTElementProperty> pNone(element.updateLayoutProperty(new VTElementProperty(), {4, 4}));
    QVERIFY(!pNone);
    QVERIFY(element.getLayoutProperty({4, 4}));

    std::unique_ptr<VTElementProperty> pRemoved(element.removeLayoutProperty({1, 5}));
    QVERIFY(pRemoved);
    QCOMPARE(pRemoved->getSizeW(), 15.0);
    QVERIFY(!pRemoved->parent());
    QVERIFY(!element.removeLayoutProperty({1, 5}));
    QVERIFY(!element.getAllLayoutIds().contains({1, 5}));
}

void TestElement::prepareLayoutProperty()
{
    VTElement element;
    element.initDefault();
    element.setSizeW(50);
    for (int h : {1, 2}) {
        auto* pBlock = new VTElementProperty();
        pBlock->setSizeW(h * 10);
        element.addLayoutProperty(pBlock, {h, 0});
    }

    // Wanted layouts keep their blocks, unwanted ones go, missing ones copy the source.
    element.prepareLayoutProperty({{1, 0}, {3, 0}}, true, VTLayoutKey::base());
    QCOMPARE(element.getAllLayoutIds(), (QList<VTLayoutKey>{{0, 0}, {1, 0}, {3, 0}}));
    QCOMPARE(element.getSizeW({1, 0}), 10.0);
    QCOMPARE(element.getSizeW({3, 0}), 50.0);
    QVERIFY(element.getLayoutProperty({3, 0}) != element.getLayoutProperty(VTLayoutKey::base()));

    // Without the base kept, every layout becomes a copy of the source, the base included.
    element.setSizeW(70, {3, 0});
    element.prepareLayoutProperty({{1, 0}}, false, {3, 0});
    QCOMPARE(element.getAllLayoutIds(), (QList<VTLayoutKey>{{0, 0}, {1, 0}, {3, 0}}));
    for (const VTLayoutKey& key : element.getAllLayoutIds())
        QCOMPARE(element.getSizeW(key), 70.0);

    element.prepareLayoutProperty({{5, 0}}, false, {9, 9});
    QCOMPARE(element.getAllLayoutIds().size(), 3);
}

void TestElement::idsAndNames()
{
    VTElement root;
    VTElement* pFirst = makeNamed(&root, "first");
    VTElement* pDeep = makeNamed(pFirst, "deep");
    VTElement* pOwn = makeNamed(&root, "own", 7);
    VTElement* pLast = makeNamed(pOwn, "last", 0);

    int nNext = 1;
    root.updateId(nNext);
    QCOMPARE(QList<int>({root.getId(), pFirst->getId(), pDeep->getId(), pOwn->getId(), pLast->getId()}),
             QList<int>({1, 2, 3, 7, 8}));
    QCOMPARE(nNext, 9);
    QCOMPARE(root.getElementById(7, false), pOwn);
    QCOMPARE(root.getElementById(1, true), &root);
    QVERIFY(!root.getElementById(1, false));

    pOwn->resetId();
    QCOMPARE(pOwn->getId(), -1);
    QCOMPARE(pLast->getId(), -1);
    QCOMPARE(root.getId(), 1);
    root.updateId(nNext);
    QCOMPARE(pOwn->getId(), 9);
    QCOMPARE(pLast->getId(), 10);
    QCOMPARE(nNext, 11);

    // Names are unique across the whole scene, not only among siblings.
    TestScene scene;
    VTElement* pGroupA = makeNamed(&scene, "A");
    VTElement* pGroupB = makeNamed(&scene, "B");
    makeNamed(pGroupA, "Text_1");
    VTElement* pClash = makeNamed(pGroupB, "Text_1");
    QCOMPARE(pClash->getScene(), &scene);
    QVERIFY(scene.isDuplicatedElemName("Text_1", pClash));
    QVERIFY(!scene.isDuplicatedElemName("text_1", pClash));
    pClash->updateName();
    QCOMPARE(pClash->getName(), QStringLiteral("Text_1_1"));
    pClash->updateName();
    QCOMPARE(pClash->getName(), QStringLiteral("Text_1_1"));

    // Empty names take the kind's name, and children are named after their parent.
    makeNamed(pGroupA, "Hero");
    VTElement* pNew = makeNamed(pGroupB, QString());
    makeNamed(pNew, QString());
    makeNamed(pNew, "Hero");
    pNew->updateName();
    QCOMPARE(namesOf({pNew, pNew->getChildByIndex(0), pNew->getChildByIndex(1)}),
             QStringList({"Group_1", "Group_2", "Hero_1"}));

    // A name that looks like a placeholder stays text.
    makeNamed(pGroupA, "a%1");
    VTElement* pPercent = makeNamed(pGroupB, "a%1");
    pPercent->updateName();
    QCOMPARE(pPercent->getName(), QStringLiteral("a%1_1"));
}

void TestElement::childrenAndTree()
{
    VTElement parent;
    parent.initDefault();
    VTElement* pA = makeNamed(&parent, "a");
    VTElement* pB = makeNamed(&parent, "b");
    VTElement* pC = makeNamed(&parent, "c");
    QCOMPARE(parent.getChildIndex(pC), 2);

    // An index inside the list inserts; any other appends.
    QCOMPARE(parent.addChild(makeNamed(nullptr, "d"), 1), 1);
    QCOMPARE(parent.addChild(makeNamed(nullptr, "e"), 4), 4);
    QCOMPARE(parent.addChild(makeNamed(nullptr, "f"), -5), 5);
    QCOMPARE(parent.addChild(makeNamed(nullptr, "g"), 99), 6);
    QCOMPARE(namesOf(parent.getChildren()), QStringList({"a", "d", "b", "c", "e", "f", "g"}));
    QVERIFY(!parent.getChildByIndex(7));
    QVERIFY(!parent.getChildByIndex(-1));

    // A new child follows the parent's layout, down its own subtree.
    parent.setCurrentLayoutID({2, 0});
    QCOMPARE(pA->getCurrentLayoutID(), VTLayoutKey(2, 0));
    std::unique_ptr<VTElement> pLoose(makeNamed(nullptr, "loose"));
    VTElement* pLooseChild = makeNamed(pLoose.get(), "looseChild");
    QCOMPARE(parent.addChild(pLoose.get()), 7);
    VTElement* pAdded = pLoose.release();
    QCOMPARE(pLooseChild->getCurrentLayoutID(), VTLayoutKey(2, 0));
    QCOMPARE(pAdded->getParent(), &parent);

    std::unique_ptr<VTElement> pD(parent.getChildByIndex(1));
    QCOMPARE(parent.detachChild(pD.get()), 1);
    QVERIFY(!pD->getParent());
    QVERIFY(!pD->parent());
    QCOMPARE(parent.detachChild(pD.get()), -1);
    QCOMPARE(parent.getChildIndex(pD.get()), -1);

    // No cycles; a child of another parent moves.
    QCOMPARE(pA->addChild(&parent), -1);
    QCOMPARE(pLooseChild->addChild(pAdded), -1);
    QCOMPARE(parent.addChild(&parent), -1);
    QCOMPARE(parent.addChild(nullptr), -1);
    QCOMPARE(pA->addChild(pB), 0);
    QCOMPARE(pB->getParent(), pA);
    QCOMPARE(parent.getChildIndex(pB), -1);
    QVERIFY(parent.isParentOf(pB));
    QVERIFY(!pB->isParentOf(&parent));
    QVERIFY(!parent.isParentOf(&parent));
    QCOMPARE(pB->getRoot(), &parent);

    // Deleting a child directly must not leave it in the list.
    const int nCount = parent.getChildren().size();
    delete pC;
    QCOMPARE(parent.getChildren().size(), nCount - 1);

    // Lock and hiding reach down; showing again is for each element itself.
    parent.setLocked(true);
    parent.setVisible(false);
    parent.updateLockAndVisibility();
    QVERIFY(pB->isLocked() && !pB->isVisible());
    parent.setVisible(true);
    parent.updateLockAndVisibility();
    QVERIFY(!pA->isVisible());
}

void TestElement::selectionAndCommonAncestor()
{
    VTElement root;
    root.setSelected(true);
    VTElement* pA = makeNamed(&root, "a");
    VTElement* pA1 = makeNamed(pA, "a1");
    makeNamed(pA, "a2");
    VTElement* pB = makeNamed(&root, "b");
    VTElement* pB1 = makeNamed(pB, "b1");
    VTElement* pC = makeNamed(&root, "c");
    for (VTElement* pElement : {pA, pA1, pB1, pC})
        pElement->setSelected(true);

    QCOMPARE(namesOf(root.getSelectedElements(true)), QStringList({"a", "c"}));
    QCOMPARE(namesOf(root.getSelectedElements(false)), QStringList({"a1", "c"}));
    QCOMPARE(root.getSelectedElementsCount(), 2);
    root.setSelected(false);
    QVERIFY(root.getSelectedElements(false).isEmpty());

    QCOMPARE(pA1->getCommonAncestor(pB1), &root);
    QCOMPARE(pA->getCommonAncestor(pA1), pA);
    QCOMPARE(pA1->getCommonAncestor(pA), pA);
    QVERIFY(!pA->getCommonAncestor(nullptr));
    VTElement other;
    QVERIFY(!pA->getCommonAncestor(&other));

    // The search stops at the scene.
    VTElement outer;
    auto* pScene = new TestScene();
    outer.addChild(pScene);
    VTElement* pInScene = makeNamed(pScene, "in");
    VTElement* pBesideScene = makeNamed(&outer, "beside");
    QCOMPARE(pInScene->getCommonAncestor(makeNamed(pScene, "in2")), pScene);
    QVERIFY(!pInScene->getCommonAncestor(pBesideScene));
    QVERIFY(!pBesideScene->getCommonAncestor(pInScene));
}

void TestElement::unitsAndEdges()
{
    VTElement parent;
    parent.initDefault();
    parent.setSizeW(800);
    parent.setSizeH(600);
    VTElement* pChild = makeBox(&parent, "child", 0.25, 20, 0.5, 0.25);

    // Percent of the parent's size; a ratio height follows the computed width.
    pChild->setUnitX(VT::Percent);
    pChild->setUnitW(VT::Percent);
    pChild->setUnitH(VT::Ratio);
    QCOMPARE(pChild->getComputedX(), 200.0);
    QCOMPARE(pChild->getComputedW(), 400.0);
    QCOMPARE(pChild->getComputedH(), 100.0);
    pChild->setComputedX(400);
    QCOMPARE(pChild->getPositionX(), 0.5);
    pChild->setComputedH(50);
    QCOMPARE(pChild->getSizeH(), 0.125);
    pChild->setComputedW(200);
    QCOMPARE(pChild->getSizeW(), 0.25);

    // A ratio width follows the computed height, here a quarter of the parent's 600.
    pChild->setUnitH(VT::Percent);
    pChild->setSizeH(0.25);
    pChild->setUnitW(VT::Ratio);
    pChild->setSizeW(1.5);
    QCOMPARE(pChild->getComputedW(), 225.0);
    pChild->setComputedW(300);
    QCOMPARE(pChild->getSizeW(), 2.0);

    // Without a parent size a percent value cannot be solved for and stays.
    VTElement* pRoot = makeBox(nullptr, "root", 0.3, 0, 10, 10);
    std::unique_ptr<VTElement> rootOwner(pRoot);
    pRoot->setUnitX(VT::Percent);
    QCOMPARE(pRoot->getComputedX(), 0.0);
    pRoot->setComputedX(50);
    QCOMPARE(pRoot->getPositionX(), 0.3);

    // A scene's children take the symbol's size through the scene.
    TestScene scene;
    scene.setUnitW(VT::Percent);
    scene.setSizeW(1.0);
    VTElement* pInScene = makeBox(&scene, "in", 0, 0, 0.5, 10);
    pInScene->setUnitW(VT::Percent);
    QCOMPARE(pInScene->getComputedW(), 500.0);

    // Measured from the right: 800 - 10 - 100. A border without style adds nothing.
    VTElement* pRight = makeBox(&parent, "right", 10, 20, 100, 50);
    pRight->setCoordinateType(VT::RightBottom);
    setBorder(pRight, VTBorder::None, 7);
    QCOMPARE(pRight->getContentBoxOffset(), 0.0);
    QCOMPARE(pRight->getComputedTotalW(), 100.0);
    QCOMPARE(pRight->getComputedLeft(), 690.0);
    QCOMPARE(pRight->getComputedTop(), 530.0);
    setBorder(pRight, VTBorder::Solid, 5);
    QCOMPARE(pRight->getComputedTotalW(), 110.0);
    QCOMPARE(pRight->getComputedTotalH(), 60.0);
    QCOMPARE(pRight->getComputedLeft(), 680.0);
    pRight->setComputedLeftTop(QPointF(300, 100));
    QCOMPARE(pRight->getPositionX(), 390.0);
    QCOMPARE(pRight->getPositionY(), 440.0);
    QCOMPARE(pRight->getComputedLeftTop(), QPointF(300, 100));
    pRight->setComputedTotalW(120);
    QCOMPARE(pRight->getSizeW(), 110.0);

    pRight->setCoordinateType(VT::RightTop);
    QCOMPARE(pRight->getComputedTop(), 440.0);
    pRight->setCoordinateType(VT::LeftBottom);
    QCOMPARE(pRight->getComputedLeft(), 390.0);
    QCOMPARE(pRight->getComputedTop(), 100.0);
}

void TestElement::absoluteAndGlobalPositions()
{
    VTElement root;
    root.initDefault();
    root.setPositionX(10);
    root.setPositionY(20);
    root.setSizeW(1000);
    root.setSizeH(500);
    VTElement* pMiddle = makeBox(&root, "middle", 100, 50, 100, 80);
    pMiddle->setTranslateX(2);
    VTElement* pLeaf = makeBox(pMiddle, "leaf", 5, 5, 10, 10);
    pLeaf->setTranslateXY(QPointF(3, 4));

    QCOMPARE(pLeaf->getAbsoluteLeftTop(), QPointF(115, 75));
    QCOMPARE(pLeaf->getAbsoluteLeftIncludeTranslate(), 120.0);
    QCOMPARE(pLeaf->getAbsoluteTopIncludeTranslate(), 79.0);
    QCOMPARE(pLeaf->getGlobalPosition(), QPointF(115, 75));
    pLeaf->setAbsoluteLeftTop(QPointF(200, 100));
    QCOMPARE(pLeaf->getComputedLeftTop(), QPointF(90, 30));

    // In percent the global position is a share of the root's size.
    pLeaf->setUnitX(VT::Percent);
    pLeaf->setPositionX(0.05);
    QCOMPARE(pLeaf->getGlobalPositionX(), 0.115);
    pLeaf->setGlobalPositionX(0.2);
    QCOMPARE(pLeaf->getPositionX(), 0.9);
    pLeaf->setUnitY(VT::Percent);
    pLeaf->setGlobalPositionY(0.5);
    QCOMPARE(pLeaf->getComputedTop(), 180.0);
    root.setSizeW(0);
    QCOMPARE(pLeaf->getGlobalPositionX(), 0.0);
}

void TestElement::coordinateTypeHelpers()
{
    VTElement element;
    element.initDefault();
    const QList<int> lstXProperty{VT::PropLeft, VT::PropRight, VT::PropRight, VT::PropLeft};
    const QList<int> lstYProperty{VT::PropTop, VT::PropTop, VT::PropBottom, VT::PropBottom};
    const QList<int> lstOtherX{1, 0, 3, 2};
    const QList<int> lstOtherY{3, 2, 1, 0};
    for (int nType = 0; nType < 4; ++nType) {
        element.setCoordinateType(nType);
        QCOMPARE(element.getXKeyframeType(), lstXProperty.at(nType));
        QCOMPARE(element.getYKeyframeType(), lstYProperty.at(nType));
        QCOMPARE(VTElement::changeCoordinateX(nType), lstOtherX.at(nType));
        QCOMPARE(VTElement::changeCoordinateY(nType), lstOtherY.at(nType));
    }
    QCOMPARE(VTElement::changeCoordinateY(9), 9);
}

void TestElement::transformMatrix()
{
    VTElement element;
    element.initDefault();
    element.setTranslateX(5);
    element.setRotateZ(90);
    element.setScaleX(2);
    // Translate, then rotate, then scale, each acting after the next: (1, 0) scales to (2, 0),
    // turns to (0, 2) and moves to (5, 2).
    COMPARE_MATRIX(element.getTransformMatrix(), {0, 2, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1});
    // The skew sits between rotation and scale.
    element.setSkewX(45);
    COMPARE_MATRIX(element.getTransformMatrix(), {0, 2, 0, 0, -1, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1});

    element.setTranslateXY(QPointF(3, -4));
    element.setTranslateZ(7);
    element.setRotateX(20);
    element.setRotateY(-35);
    element.setRotateZ(50);
    element.setSkewX(10);
    element.setSkewY(-15);
    element.setScaleX(2);
    element.setScaleY(0.5);
    element.setScaleZ(3);
    VTMatrix4x4 product = element.getInversedTransformMatrix();
    product.multiply(element.getTransformMatrix());
    COMPARE_MATRIX(product, kIdentity);

    // A flat scale has no inverse; the result stays finite.
    element.setScaleY(0);
    const VTMatrix4x4 inverse = element.getInversedTransformMatrix();
    for (int i = 0; i < 16; ++i)
        QVERIFY(std::isfinite(inverse.data()[i]));
}

void TestElement::transformChain()
{
    // The element sits 100, 50 inside the parent's 5 px border, 40 by 20 with its own border,
    // turned 90 degrees about its centre (125, 65).
    VTElement parent;
    parent.initDefault();
    setBorder(&parent, VTBorder::Solid, 5);
    VTElement* pTurned = makeBox(&parent, "turned", 100, 50, 30, 10);
    setBorder(pTurned, VTBorder::Solid, 5);
    pTurned->setRotateZ(90);
    COMPARE_MATRIX(pTurned->getTransformToParent(), {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 135, 45, 0, 1});
    COMPARE_POINT(pTurned->getTransformToParent().map(40, 20), QPointF(115, 85));
    VTMatrix4x4 roundTrip = pTurned->getTransformFromParent();
    roundTrip.multiply(pTurned->getTransformToParent());
    COMPARE_MATRIX(roundTrip, kIdentity);
    COMPARE_MATRIX(parent.getTransformToParent(), kIdentity);

    // Up to the scene, whose own place does not count.
    VTElement outer;
    auto* pScene = new TestScene();
    outer.addChild(pScene);
    VTElement* pA = makeBox(pScene, "a", 10, 20, 100, 100);
    VTElement* pB = makeBox(pA, "b", 5, 5, 10, 10);
    pB->setRotateZ(90);
    COMPARE_POINT(pB->getTransformToScene().map(0, 0), QPointF(25, 25));
    COMPARE_POINT(pB->getTransformFromScene().map(25, 25), QPointF(0, 0));
    QCOMPARE(pB->getBoundaryRect(), QRectF(15, 25, 10, 10));

    // Across the tree: from a1 (at 11, 22 in the scene) into c, placed at 50, 60 and scaled by 2
    // about its top left corner.
    VTElement* pA1 = makeBox(pA, "a1", 1, 2, 5, 5);
    VTElement* pC = makeBox(pScene, "c", 50, 60, 30, 30);
    pC->setOriginRatioX(0);
    pC->setOriginRatioY(0);
    pC->setScaleX(2);
    pC->setScaleY(2);
    COMPARE_POINT(pA1->getTransformToElement(pC).map(0, 0), QPointF(-19.5, -19));
    COMPARE_POINT(pA1->getTransformToElement(pC, VTElement::kCurrent, pScene).map(0, 0), QPointF(-19.5, -19));
    COMPARE_POINT(pC->getTransformToElement(pA1).map(-19.5, -19), QPointF(0, 0));
    setBorder(pC, VTBorder::Solid, 4);
    COMPARE_POINT(pC->getContentOffsetToElement(pScene), QPointF(58, 68));

    // Moved under c, b keeps its place on the stage.
    const VTMatrix4x4 reparented = pB->getTransformMatrixWhenReparent(pC);
    VTMatrix4x4 viaNewParent = pC->getTransformToScene();
    viaNewParent.multiply(reparented);
    for (const QPointF& point : {QPointF(0, 0), QPointF(10, 3)})
        COMPARE_POINT(viaNewParent.map(point.x(), point.y()),
                      pB->getTransformToScene().map(point.x(), point.y()));
}

void TestElement::copyAndClone()
{
    VTResourceManager manager(nullptr);
    auto* pImage = new VTResource(VTResource::Image);
    manager.addResource(pImage);

    VTElement parent;
    VTElement* pOriginal = makeBox(&parent, "Box", 1, 2, 3, 4);
    pOriginal->setId(4);
    pOriginal->setVisible(false);
    pOriginal->setLocked(true);
    pOriginal->setLockAspectRatio(true);
    pOriginal->setSelected(true);
    pOriginal->setExpandedKeyframe(false);
    pOriginal->setExpandedTimeline(false);
    pOriginal->setExpandedElementPane(false);
    pOriginal->getBackground()->setImageResource(pImage);
    pOriginal->getBackground()->setFillStyle(VTBackground::Image);
    pOriginal->prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    pOriginal->setSizeW(9, {1, 0});
    makeNamed(pOriginal, "inner", 5);
    pOriginal->addEventListener(new VTEventListener());
    QCOMPARE(pImage->getUsageCount(), 2);

    std::unique_ptr<VTElement> pCopy(pOriginal->clone());
    QCOMPARE(pCopy->getId(), 4);
    QCOMPARE(pCopy->getName(), QStringLiteral("Box"));
    QVERIFY(!pCopy->isVisible());
    QVERIFY(pCopy->isLocked());
    QVERIFY(pCopy->isAspectRatioLocked());
    QVERIFY(!pCopy->isSelected());
    QVERIFY(!pCopy->getParent());
    QVERIFY(pCopy->isExpandedKeyframe() && pCopy->isExpandedTimeline() && pCopy->isExpandedElementPane());
    QCOMPARE(pCopy->getAllLayoutIds(), pOriginal->getAllLayoutIds());
    QCOMPARE(pCopy->getSizeW({1, 0}), 9.0);
    QVERIFY(pCopy->getLayoutProperty() != pOriginal->getLayoutProperty());
    pCopy->setSizeW(77);
    QCOMPARE(pOriginal->getSizeW(), 3.0);

    QCOMPARE(pCopy->getChildren().size(), 1);
    VTElement* pInnerCopy = pCopy->getChildByIndex(0);
    QVERIFY(pInnerCopy != pOriginal->getChildByIndex(0));
    QCOMPARE(pInnerCopy->getName(), QStringLiteral("inner"));
    QCOMPARE(pInnerCopy->getParent(), pCopy.get());
    QCOMPARE(pCopy->getEventListenerCount(), 1);
    QVERIFY(pCopy->getEventListenerAt(0) != pOriginal->getEventListenerAt(0));

    // The copy counts its images only once it enters the project.
    QCOMPARE(pImage->getUsageCount(), 2);
    pCopy->attachResources();
    QCOMPARE(pImage->getUsageCount(), 4);
    pCopy->detachResources();
}

void TestElement::resourceUses()
{
    VTResourceManager manager(nullptr);
    auto* pImage = new VTResource(VTResource::Image);
    auto* pOther = new VTResource(VTResource::Image);
    manager.addResource(pImage);
    manager.addResource(pOther);

    VTElement element;
    element.initDefault();
    element.getBackground()->setImageResource(pImage);
    element.getBackground()->setFillStyle(VTBackground::Image);
    element.prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    VTElement* pChild = makeNamed(&element, "child");
    pChild->getBackground()->setImageResource(pImage);
    pChild->getBackground()->setFillStyle(VTBackground::Image);
    QCOMPARE(pImage->getUsageCount(), 3);

    element.detachResources();
    element.detachResources();
    QCOMPARE(pImage->getUsageCount(), 0);
    element.attachResources();
    QCOMPARE(pImage->getUsageCount(), 3);

    QMap<VTResource*, VTResource*> map;
    element.prepareResourceMap(map);
    QCOMPARE(map.keys(), QList<VTResource*>{pImage});
    element.updateResourceMap(map);
    QCOMPARE(pImage->getUsageCount(), 3);
    map.insert(pImage, pOther);
    element.updateResourceMap(map);
    QCOMPARE(pImage->getUsageCount(), 0);
    QCOMPARE(pOther->getUsageCount(), 3);
    QCOMPARE(element.getBackground({1, 0})->getImageResource(), pOther);

    // Reading new content gives back the uses of what it replaces.
    QJsonObject json;
    VTElement().serialize(json);
    QVERIFY(element.parse(json, &manager));
    QCOMPARE(pOther->getUsageCount(), 0);
}

void TestElement::factoriesAnd3D()
{
    std::unique_ptr<VTElement> pGroup(VTElementFactory::createElement(VT::GroupElement));
    QVERIFY(pGroup);
    QCOMPARE(pGroup->getType(), VT::GroupElement);
    QCOMPARE(pGroup->getKindName(), QStringLiteral("Group"));
    QCOMPARE(pGroup->getAllLayoutIds(), QList<VTLayoutKey>{VTLayoutKey::base()});
    QCOMPARE(pGroup->getComputedSize(), QSizeF(256, 128));
    QCOMPARE(pGroup->getBackground()->getFillStyle(), static_cast<int>(VTBackground::NoFill));
    for (int nType : {int(VT::SceneElement), int(VT::ComponentElement), 12, -1})
        QVERIFY2(!VTElementFactory::createElement(nType), qPrintable(QString::number(nType)));
    // Each kind gets the block class that holds its values, the most derived one.
    const QList<QPair<int, const char*>> lstBlockClasses{{VT::ImageElement, "VTImageProperty"},
                                                         {VT::AudioElement, "VTElementProperty"},
                                                         {VT::VideoElement, "VTElementProperty"},
                                                         {VT::HTMLWidgetElement, "VTElementProperty"},
                                                         {VT::TextElement, "VTTextProperty"},
                                                         {VT::DivElement, "VTDivProperty"},
                                                         {VT::GroupElement, "VTElementProperty"},
                                                         {VT::SymbolElement, "VTElementProperty"},
                                                         {VT::SceneElement, "VTSceneProperty"},
                                                         {VT::ShapeElement, "VTAutoShapeProperty"},
                                                         {VT::FreeFormElement, "VTFreeFormShapeProperty"}};
    for (const auto& blockClass : lstBlockClasses) {
        const std::unique_ptr<VTElementProperty> pBlock(
            VTElementPropertyFactory::createElementProperty(blockClass.first));
        QVERIFY(pBlock);
        QCOMPARE(pBlock->metaObject()->className(), blockClass.second);
    }
    QVERIFY(!VTElementPropertyFactory::createElementProperty(VT::ComponentElement));
    QVERIFY(!VTElementPropertyFactory::createElementProperty(12));

    // Depth anywhere in the subtree, in any layout, keeps the player in 3D.
    QVERIFY(!pGroup->isPreserved3D());
    VTElement* pChild = makeNamed(pGroup.get(), "child");
    pChild->prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    pChild->setRotateY(10, {1, 0});
    QVERIFY(pGroup->isPreserved3D());
    pChild->setRotateY(0, {1, 0});
    pChild->setOriginZ(3);
    QVERIFY(pGroup->isPreserved3D());
    pChild->setOriginZ(0);
    pChild->setSkewX(30);
    QVERIFY(!pGroup->isPreserved3D());
}

QTEST_GUILESS_MAIN(TestElement)

#include "tst_element.moc"
