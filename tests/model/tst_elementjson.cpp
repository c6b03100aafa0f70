#include "VTBorder.h"
#include "VTElement.h"
#include "VTElementProperty.h"
#include "VTEventListener.h"
#include "VTShadow.h"
#include "VTTypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <limits>
#include <memory>

namespace {

QJsonObject saved(const VTElement& element)
{
    QJsonObject json;
    element.serialize(json);
    return json;
}

QJsonObject savedBlock(const VTElementProperty& block)
{
    QJsonObject json;
    block.serialize(json);
    return json;
}

QJsonObject exported(const VTElement& element, bool bSingleLayout, bool bWithEvents)
{
    QJsonObject json;
    element.serializeToExport(json, bSingleLayout, bWithEvents);
    return json;
}

QJsonObject jsonObject(const QByteArray& text)
{
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        qFatal("test data does not parse: %s", qPrintable(error.errorString()));
    return object;
}

VTElement* addGroup(VTElement* pParent, const QString& name, int nId)
{
    auto* pElement = new VTElement();
    pElement->initDefault();
    pElement->setName(name);
    pElement->setId(nId);
    pParent->addChild(pElement);
    return pElement;
}

// Whether some line names all the given fragments.
bool mentions(const QStringList& lstProblems, const QStringList& fragments)
{
    for (const QString& line : lstProblems) {
        bool bAll = true;
        for (const QString& fragment : fragments)
            bAll = bAll && line.contains(fragment);
        if (bAll)
            return true;
    }
    return false;
}

int depthOf(const VTElement* pElement)
{
    int nDepth = 1;
    while (!pElement->getChildren().isEmpty()) {
        pElement = pElement->getChildByIndex(0);
        ++nDepth;
    }
    return nDepth;
}

} // namespace

class TestElementJson : public QObject
{
    Q_OBJECT
private slots:
    void roundTrips();
    void fileRoundTrip();
    void olderForm();
    void exportPlayerForm();
    void exportStageForm();
    void eventTargetsAfterPaste();
    void hostileInput_data();
    void hostileInput();
    void nonFiniteNumbers();
    void limits();
};

void TestElementJson::roundTrips()
{
    VTElement original;
    original.initDefault();
    original.setId(12);
    original.setName(QStringLiteral("Hero"));
    original.setVisible(false);
    original.setLocked(true);
    original.setLockAspectRatio(true);
    original.setExpandedKeyframe(false);
    original.setExpandedTimeline(false);
    original.setExpandedElementPane(false);
    original.setSizeW(40);
    original.setClassName(QStringLiteral("a b"));
    original.prepareLayoutProperty({{2, 1}}, true, VTLayoutKey::base());
    original.setSizeW(99, {2, 1});
    original.setInherit(VT::PropWidth, false, {2, 1});
    original.addEventListener(new VTEventListener(VTEventListener::MouseOver, VTEventListener::HideElement,
                                                  QJsonObject(), QJsonObject{{"element_id", 13}}));
    addGroup(&original, QStringLiteral("Inner"), 13);

    const QJsonObject json = saved(original);
    QVERIFY(json.contains("children"));
    QCOMPARE(json.value("events").toArray().size(), 1);
    QVERIFY(!saved(*original.getChildByIndex(0)).contains("children"));
    QCOMPARE(saved(*original.getChildByIndex(0)).value("events"), QJsonValue(QJsonArray()));

    VTElement copy;
    QStringList lstProblems;
    QVERIFY(copy.parse(json, nullptr, &lstProblems));
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join('\n')));
    QCOMPARE(copy.getId(), 12);
    QCOMPARE(copy.getName(), QStringLiteral("Hero"));
    QVERIFY(!copy.isVisible());
    QVERIFY(copy.isLocked());
    QVERIFY(copy.isAspectRatioLocked());
    QVERIFY(!copy.isExpandedKeyframe() && !copy.isExpandedTimeline() && !copy.isExpandedElementPane());
    QCOMPARE(copy.getAllLayoutIds(), (QList<VTLayoutKey>{{0, 0}, {2, 1}}));
    QCOMPARE(copy.getSizeW(), 40.0);
    QCOMPARE(copy.getSizeW({2, 1}), 99.0);
    QVERIFY(!copy.isInherit(VT::PropWidth, {2, 1}));
    QVERIFY(copy.isInherit(VT::PropHeight, {2, 1}));
    QCOMPARE(copy.getClassName(), QStringLiteral("a b"));
    QCOMPARE(copy.getEventListenerCount(), 1);
    QCOMPARE(*copy.getEventListenerAt(0), *original.getEventListenerAt(0));
    QCOMPARE(copy.getChildren().size(), 1);
    QCOMPARE(copy.getChildByIndex(0)->getName(), QStringLiteral("Inner"));
    QCOMPARE(copy.getChildByIndex(0)->getId(), 13);
    QCOMPARE(copy.getChildByIndex(0)->getParent(), &copy);
    QCOMPARE(saved(copy), json);

    // Reading again replaces the content instead of adding to it.
    QVERIFY(copy.parse(json, nullptr));
    QCOMPARE(copy.getChildren().size(), 1);
    QCOMPARE(copy.getEventListenerCount(), 1);
    QCOMPARE(saved(copy), json);
}

void TestElementJson::fileRoundTrip()
{
    VTElementProperty base;
    base.setPositionX(0.1);
    base.setUnitX(VT::Percent);
    base.setRotateZ(15);
    VTElementProperty wide;
    wide.setSizeW(900);
    wide.setInherit(VT::PropWidth, false);
    VTEventListener listener(VTEventListener::MouseClick, VTEventListener::GoToURL, QJsonObject(),
                             QJsonObject{{"url", "https://example.org"}, {"new_window", true}});
    QJsonObject event;
    listener.serialize(event);

    QJsonObject json = jsonObject(R"({
        "type": 6, "id": 3, "name": "Group_3",
        "expanded_keyframe": false, "expanded_timeline": true, "expanded_elementpane": true,
        "isVisible": true, "isLocked": false, "isAspectRatioLocked": true,
        "children": [{
            "type": 6, "id": 4, "name": "Leaf",
            "expanded_keyframe": true, "expanded_timeline": true, "expanded_elementpane": false,
            "isVisible": false, "isLocked": true, "isAspectRatioLocked": false,
            "events": []
        }]
    })");
    const QJsonArray layouts{QJsonObject{{"hLayoutId", 0}, {"vLayoutId", 0}, {"values", savedBlock(base)}},
                             QJsonObject{{"hLayoutId", 3}, {"vLayoutId", 0}, {"values", savedBlock(wide)}}};
    json.insert("respProps", layouts);
    json.insert("events", QJsonArray{event});
    QJsonObject leaf = json.value("children").toArray().first().toObject();
    leaf.insert("respProps", QJsonArray{layouts.first()});
    json.insert("children", QJsonArray{leaf});

    VTElement element;
    QStringList lstProblems;
    QVERIFY(element.parse(json, nullptr, &lstProblems));
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join('\n')));
    QCOMPARE(saved(element), json);

    // Layouts come back in key order whatever the file's order.
    json.insert("respProps", QJsonArray{layouts.at(1), layouts.at(0)});
    QVERIFY(element.parse(json, nullptr));
    QCOMPARE(saved(element).value("respProps").toArray(), layouts);
}

void TestElementJson::olderForm()
{
    const QJsonObject json = jsonObject(R"({
        "type": 6, "id": 2, "name": "Old",
        "path": {"l": 12, "t": 34, "w": 56, "h": 78},
        "transform2d": {"rotateZ": 30},
        "opacity": 0.5
    })");
    VTElement element;
    QStringList lstProblems;
    QVERIFY(element.parse(json, nullptr, &lstProblems));
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join('\n')));
    QCOMPARE(element.getAllLayoutIds(), QList<VTLayoutKey>{VTLayoutKey::base()});
    QCOMPARE(element.getComputedLeftTop(), QPointF(12, 34));
    QCOMPARE(element.getComputedSize(), QSizeF(56, 78));
    QCOMPARE(element.getRotateZ(), 30.0);
    QCOMPARE(element.getOpacity(), 0.5);
    QVERIFY(saved(element).value("respProps").isArray());

    // A "respProps" that is no list falls back to the same reading, with a note.
    QJsonObject damaged = json;
    damaged.insert("respProps", 7);
    QVERIFY(element.parse(damaged, nullptr, &lstProblems));
    QCOMPARE(element.getSizeH(), 78.0);
    QCOMPARE(lstProblems.size(), 1);
    QVERIFY2(mentions(lstProblems, {"Old", "respProps"}), qPrintable(lstProblems.join('\n')));
}

void TestElementJson::exportPlayerForm()
{
    VTElement element;
    element.initDefault();
    element.setId(5);
    element.setName(QStringLiteral("Card"));
    element.setSelected(true);
    element.setPositionX(10);
    element.setPositionY(20);
    element.setUnitW(VT::Percent);
    element.setSizeW(0.5);
    element.setSizeH(100);
    element.setTabIndex(3);
    element.setCursorValue(QStringLiteral("pointer"));
    element.setTitle(QStringLiteral("Tip"));
    element.setClassName(QStringLiteral("x"));
    element.getBorder()->setStyle(VTBorder::Solid);
    element.getBorder()->setWidth(2);
    element.getBorder()->setColor(Qt::red);
    element.getShadow()->setStyle(VTShadow::DropShadow);
    // A leftover exception in the base must not thin out the base's entry.
    element.prepareLayoutProperty({{1, 0}, {2, 0}, {3, 0}}, true, VTLayoutKey::base());
    element.setInherit(VT::PropTabIndex, false);
    element.getBorder({1, 0})->setStyle(VTBorder::Dashed);
    element.setInherit(VT::PropBorderStyle, false, {1, 0});
    element.getShadow({2, 0})->setStyle(VTShadow::None);
    element.setInherit(VT::PropShadowStyle, false, {2, 0});
    element.addEventListener(new VTEventListener());

    const QJsonObject json = exported(element, false, true);
    QCOMPARE(json.value("id").toInt(), 5);
    QCOMPARE(json.value("n").toString(), QStringLiteral("Card"));
    QCOMPARE(json.value("k").toInt(), 6);
    QCOMPARE(json.value("selected"), QJsonValue(true));
    QCOMPARE(json.value("locked"), QJsonValue(false));
    QCOMPARE(json.value("visible"), QJsonValue(true));
    QCOMPARE(json.value("aspectRatioLocked"), QJsonValue(false));
    QCOMPARE(json.value("r").toArray(), (QJsonArray{10, 20, "50%", 100, 0}));
    QCOMPARE(json.value("cl").toString(), QStringLiteral("x"));
    QVERIFY(!json.contains("tb") && !json.contains("c") && !json.contains("tl"));
    QVERIFY(!json.contains("elems"));
    QVERIFY(json.contains("e"));

    const QJsonArray layouts = json.value("rp").toArray();
    QCOMPARE(layouts.size(), 3);
    const QJsonArray baseEntry = layouts.at(0).toArray();
    QCOMPARE(baseEntry.at(0).toInt(), 0);
    QCOMPARE(baseEntry.at(1).toInt(), 0);
    const QJsonObject base = baseEntry.at(2).toObject();
    QCOMPARE(base.value("tb").toInt(), 3);
    QCOMPARE(base.value("c").toString(), QStringLiteral("pointer"));
    QCOMPARE(base.value("tl").toString(), QStringLiteral("Tip"));
    QCOMPARE(base.value("l").toArray(), (QJsonArray{1, 2, 255, 0, 0, 255}));
    QVERIFY(base.contains("sh") && base.contains("r") && !base.contains("or"));
    // A layout that overrides only the border, one that turns the shadow off, and one that
    // inherits everything and is left out.
    QCOMPARE(layouts.at(1).toArray(),
             (QJsonArray{1, 0, QJsonObject{{"l", QJsonArray{3, 2, 255, 0, 0, 255}}}}));
    QCOMPARE(layouts.at(2).toArray(), (QJsonArray{2, 0, QJsonObject{{"or", QJsonArray{"sh"}}}}));

    QVERIFY(!exported(element, false, false).contains("e"));

    addGroup(&element, QStringLiteral("Child"), 6);
    const QJsonArray children = exported(element, false, true).value("elems").toArray();
    QCOMPARE(children.size(), 1);
    QCOMPARE(children.first().toObject().value("n").toString(), QStringLiteral("Child"));
    QVERIFY(children.first().toObject().contains("rp"));
    QVERIFY(!children.first().toObject().contains("elems"));
}

void TestElementJson::exportStageForm()
{
    VTElement element;
    element.initDefault();
    element.setTabIndex(0);
    element.setCursorValue(QStringLiteral("pointer"));
    element.setTitle(QStringLiteral("Tip"));
    element.prepareLayoutProperty({{1, 0}}, true, VTLayoutKey::base());
    element.getBorder({1, 0})->setStyle(VTBorder::Dotted);
    element.addEventListener(new VTEventListener());
    VTElement* pChild = addGroup(&element, QStringLiteral("Child"), 2);
    pChild->addEventListener(new VTEventListener());

    const QJsonObject json = exported(element, true, true);
    for (const char* key : {"rp", "tb", "c", "tl", "e"})
        QVERIFY2(!json.contains(key), key);
    const QJsonObject child = json.value("elems").toArray().first().toObject();
    QVERIFY(child.contains("r"));
    QVERIFY(!child.contains("rp") && !child.contains("e"));
    QVERIFY(!json.contains("l"));

    // The stage shows the current layout.
    element.setCurrentLayoutID({1, 0});
    QCOMPARE(exported(element, true, false).value("l").toArray().first().toInt(),
             static_cast<int>(VTBorder::Dotted));

    // Geometry alone: "r", and "t" once the transform leaves its defaults.
    QJsonObject geometry;
    element.serializeGeomToExport(geometry);
    QCOMPARE(geometry.keys(), QStringList{"r"});
    element.setTranslateX(5);
    geometry = QJsonObject();
    element.serializeGeomToExport(geometry);
    QCOMPARE(geometry.value("t").toArray(), (QJsonArray{QJsonArray{5, 0, 0}}));
}

void TestElementJson::eventTargetsAfterPaste()
{
    VTElement element;
    QVERIFY(element.isSupportedEventType(VTEventListener::MouseClick));
    QVERIFY(element.isSupportedEventType(VTEventListener::SwipeRight));
    QVERIFY(!element.isSupportedEventType(VTEventListener::WindowResize));
    QVERIFY(!element.isSupportedEventType(VTEventListener::TimelinePlay));

    const auto hideTarget = [](int nId) {
        return new VTEventListener(VTEventListener::MouseClick, VTEventListener::HideElement, QJsonObject(),
                                   QJsonObject{{"element_id", nId}});
    };
    element.addEventListener(hideTarget(5));
    element.addEventListener(hideTarget(9));
    element.addEventListener(hideTarget(-1));
    VTElement* pChild = addGroup(&element, QStringLiteral("child"), 2);
    pChild->addEventListener(hideTarget(5));
    VTElement* pCopyOfFive = addGroup(&element, QStringLiteral("copy"), 40);

    // Without a scene only mapped ids survive.
    element.updateTargetIds({{5, pCopyOfFive}}, nullptr);
    const auto targetOf = [](const VTElement* pOwner, int nIndex) {
        return pOwner->getEventListenerAt(nIndex)->getActionData().value("element_id").toInt();
    };
    QCOMPARE(targetOf(&element, 0), 40);
    QCOMPARE(targetOf(&element, 1), -1);
    QCOMPARE(targetOf(&element, 2), -1);
    QCOMPARE(targetOf(pChild, 0), 40);
}

void TestElementJson::hostileInput_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("nLayouts");
    QTest::addColumn<int>("nChildren");
    QTest::addColumn<QStringList>("lstFragments");

    QTest::newRow("wrong types") << QByteArray(
                                        R"({"id": "7", "name": 5, "isVisible": "yes", "respProps": []})")
                                 << 1 << 0 << QStringList{"\"id\"", "\"name\"", "isVisible", "(0, 0)"};
    QTest::newRow("fractional id") << QByteArray(
                                          R"({"id": 2.5, "respProps": [{"hLayoutId": 0, "vLayoutId": 0}]})")
                                   << 1 << 0 << QStringList{"\"id\""};
    QTest::newRow("layout entries") << QByteArray(R"({"name": "L", "respProps": [5,
            {"hLayoutId": "a", "vLayoutId": 0}, {"hLayoutId": -2, "vLayoutId": 0},
            {"hLayoutId": 0, "vLayoutId": 0, "values": []}, {"hLayoutId": 0, "vLayoutId": 0},
            {"hLayoutId": 1, "vLayoutId": 0, "values": {"path": {"w": -3}}}]})")
                                    << 2 << 0 << QStringList{"layout 0",      "layout 1", "layout 2",
                                                             "appears twice", "values",   "\"w\""};
    QTest::newRow("no base layout") << QByteArray(R"({"respProps": [{"hLayoutId": 2, "vLayoutId": 0,
            "values": {"path": {"w": 42}}}]})")
                                    << 2 << 0 << QStringList{"(0, 0)", "(2, 0)"};
    QTest::newRow("children of unknown kinds")
        << QByteArray(R"({"name": "P", "children": [1, {"type": 10, "name": "Title"}, {"type": 99},
            {"type": -3, "name": "NoType"}, {"type": 6, "name": "Kept"}, {"type": "6"}, {"type": 6, "id": []}]})")
        // A type of the wrong kind reads as the default, a div, which is kept.
        << 1 << 3 << QStringList{"child 0", "Title", "99", "NoType", "\"type\"", "\"id\""};
    QTest::newRow("children no list")
        << QByteArray(R"({"children": {"type": 6}})") << 1 << 0 << QStringList{"children"};
    QTest::newRow("events damaged")
        << QByteArray(R"({"name": "E", "events": [1, {"event": 100, "action": 100, "action_data": 5}]})") << 1
        << 0 << QStringList{"\"E\": events", "action_data"};
}

void TestElementJson::hostileInput()
{
    QFETCH(QByteArray, json);
    QFETCH(int, nLayouts);
    QFETCH(int, nChildren);
    QFETCH(QStringList, lstFragments);

    VTElement element;
    QStringList lstProblems;
    QVERIFY(element.parse(jsonObject(json), nullptr, &lstProblems));
    QCOMPARE(element.getAllLayoutIds().size(), nLayouts);
    QVERIFY(element.getLayoutProperty(VTLayoutKey::base()));
    QCOMPARE(element.getChildren().size(), nChildren);
    for (const QString& fragment : lstFragments)
        QVERIFY2(mentions(lstProblems, {fragment}), qPrintable(fragment + " in:\n" + lstProblems.join('\n')));
    // What was read saves and reads back without further complaint.
    VTElement again;
    QStringList lstAgain;
    QVERIFY(again.parse(saved(element), nullptr, &lstAgain));
    QVERIFY2(lstAgain.isEmpty(), qPrintable(lstAgain.join('\n')));
    QCOMPARE(saved(again), saved(element));
}

void TestElementJson::nonFiniteNumbers()
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double dInfinity = std::numeric_limits<double>::infinity();
    QJsonObject values{{"path", QJsonObject{{"l", dNaN}, {"w", dInfinity}}}};
    const QJsonObject json{
        {"id", dNaN},
        {"respProps", QJsonArray{QJsonObject{{"hLayoutId", dInfinity}, {"vLayoutId", 0}},
                                 QJsonObject{{"hLayoutId", 0}, {"vLayoutId", 0}, {"values", values}}}}};
    VTElement element;
    QStringList lstProblems;
    QVERIFY(element.parse(json, nullptr, &lstProblems));
    QCOMPARE(element.getId(), -1);
    QCOMPARE(element.getAllLayoutIds(), QList<VTLayoutKey>{VTLayoutKey::base()});
    QCOMPARE(element.getPositionX(), 0.0);
    QCOMPARE(element.getSizeW(), 100.0);
    QVERIFY2(mentions(lstProblems, {"layout 0"}), qPrintable(lstProblems.join('\n')));
    QVERIFY2(mentions(lstProblems, {"\"l\""}), qPrintable(lstProblems.join('\n')));
}

void TestElementJson::limits()
{
    // Children nested far deeper than any stage: the read stops at the limit and says so.
    QJsonObject nested{{"type", 6}, {"name", "bottom"}};
    for (int i = 0; i < VTElement::kMaxTreeDepth + 40; ++i)
        nested = QJsonObject{{"type", 6}, {"name", QString::number(i)}, {"children", QJsonArray{nested}}};
    VTElement deep;
    QStringList lstProblems;
    QVERIFY(deep.parse(nested, nullptr, &lstProblems));
    QCOMPARE(depthOf(&deep), VTElement::kMaxTreeDepth);
    QCOMPARE(lstProblems.size(), 1);
    QVERIFY2(mentions(lstProblems, {QString::number(VTElement::kMaxTreeDepth)}),
             qPrintable(lstProblems.first()));

    // More layouts than any set of breakpoints makes.
    QJsonArray layouts;
    for (int i = 0; i <= VTElement::kMaxLayoutCount; ++i)
        layouts.append(QJsonObject{{"hLayoutId", i}, {"vLayoutId", 0}});
    VTElement wide;
    lstProblems.clear();
    QVERIFY(wide.parse(QJsonObject{{"respProps", layouts}}, nullptr, &lstProblems));
    QCOMPARE(wide.getAllLayoutIds().size(), VTElement::kMaxLayoutCount);
    QCOMPARE(lstProblems.size(), 1);
    QVERIFY2(mentions(lstProblems, {QString::number(VTElement::kMaxLayoutCount + 1)}),
             qPrintable(lstProblems.first()));
}

QTEST_GUILESS_MAIN(TestElementJson)

#include "tst_elementjson.moc"
