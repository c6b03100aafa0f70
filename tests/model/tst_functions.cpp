#include "VTFunction.h"
#include "VTFunctionData.h"
#include "VTFunctionManager.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QtTest>

#include <limits>
#include <memory>

namespace {

VTFunction* makeFunction(const QString& strName, const QStringList& lstParams = {},
                         const QString& strContent = {},
                         VTFunctionData::FunctionType nType = VTFunctionData::NormalFunction)
{
    auto* pFunction = new VTFunction();
    pFunction->setData(VTFunctionData(strName, strContent, lstParams, nType));
    return pFunction;
}

QStringList namesOf(const VTFunctionManager& manager)
{
    QStringList lstNames;
    for (const VTFunction* pFunction : manager.getFunctions())
        lstNames << pFunction->getName();
    return lstNames;
}

} // namespace

class TestFunctions : public QObject
{
    Q_OBJECT
private slots:
    void newFunctionsByKind();
    void dataComparisonAndParams();
    void functionText();
    void copiesKeepIdentity();
    void functionJson();
    void hostileFunctionJson();
    void uniqueNamesAndIds();
    void lookups();
    void managerJson();
    void hostileManagerJson();
    void copyingBetweenDocuments();
    void playerScript();
};

void TestFunctions::newFunctionsByKind()
{
    const VTFunction plain;
    QVERIFY(plain.getName().isEmpty());
    QCOMPARE(plain.getType(), VTFunctionData::NormalFunction);
    QCOMPARE(plain.getId(), -1);
    QVERIFY(!plain.getUuid().isNull());

    const QStringList lstNames = {"untitledFunction",  "documentEventHandler", "timelineEventHandler",
                                  "sceneEventHandler", "elementEventHandler",  "preloaderEventHandler"};
    QSet<QUuid> setUuids{plain.getUuid()};
    for (int nType = 0; nType < lstNames.size(); ++nType) {
        const auto kind = static_cast<VTFunctionData::FunctionType>(nType);
        const std::unique_ptr<VTFunction> pFunction = VTFunction::createFunction(kind);
        QCOMPARE(pFunction->getName(), lstNames.at(nType));
        QCOMPARE(pFunction->getType(), kind);
        QCOMPARE(pFunction->getParams(), nType == 0 ? QStringList() : QStringList({"doc", "e"}));
        QVERIFY(pFunction->getContent().isEmpty());
        QCOMPARE(pFunction->getId(), -1);
        setUuids.insert(pFunction->getUuid());
    }
    QCOMPARE(setUuids.size(), lstNames.size() + 1);

    QCOMPARE(VTFunctionData::getTypeLabel(VTFunctionData::SceneEventHandler), QString("Scene Event Handler"));
    QVERIFY(VTFunctionData::getTypeLabel(VTFunctionData::PreloaderEventHandler).isEmpty());
}

void TestFunctions::dataComparisonAndParams()
{
    const VTFunctionData a("go", "run();", {"doc", "e"}, VTFunctionData::NormalFunction);
    QVERIFY(a == VTFunctionData("go", "run();", {"doc", "e"}, VTFunctionData::SceneEventHandler));
    QVERIFY(a != VTFunctionData("go", "run();", {"e", "doc"}, VTFunctionData::NormalFunction));
    QVERIFY(a != VTFunctionData("go", "run(); ", {"doc", "e"}, VTFunctionData::NormalFunction));
    QVERIFY(a != VTFunctionData("Go", "run();", {"doc", "e"}, VTFunctionData::NormalFunction));

    VTFunction function;
    function.addParam("b");
    function.addParam("d", 5);
    function.addParam("a", 0);
    function.addParam("c", 2);
    function.addParam("e", 4); // one past the end appends too
    QCOMPARE(function.getParams(), QStringList({"a", "b", "c", "d", "e"}));
    function.setParamAt(1, "x");
    function.setParamAt(5, "nope");
    function.setParamAt(-1, "nope");
    function.removeParamAt(5);
    function.removeParamAt(-1);
    function.removeParamAt(0);
    QCOMPARE(function.getParams(), QStringList({"x", "c", "d", "e"}));
    QCOMPARE(function.getParamAt(3), QString("e"));
    QVERIFY(function.getParamAt(4).isNull());
}

void TestFunctions::functionText()
{
    std::unique_ptr<VTFunction> pFunction(makeFunction("add", {"a", "b"}, "return a + b;"));
    QCOMPARE(pFunction->toString(true), QString("function add(a, b) {\nreturn a + b;\n}"));
    QCOMPARE(pFunction->toString(false), QString("function(a, b) {\nreturn a + b;\n}"));

    pFunction->setParams({});
    pFunction->setContent("var x = 1;\nalert(x);");
    QCOMPARE(pFunction->toString(true), QString("function add() {\nvar x = 1;\nalert(x);\n}"));
    pFunction->setContent(QString());
    QCOMPARE(pFunction->toString(false), QString("function() {\n\n}"));
}

void TestFunctions::copiesKeepIdentity()
{
    std::unique_ptr<VTFunction> pFunction(
        makeFunction("f", {"doc"}, "x();", VTFunctionData::ElementEventHandler));
    pFunction->setId(12);
    const std::unique_ptr<VTFunction> pClone = pFunction->clone();
    QCOMPARE(pClone->getId(), 12);
    QCOMPARE(pClone->getUuid(), pFunction->getUuid());
    QCOMPARE(pClone->getType(), VTFunctionData::ElementEventHandler);
    QVERIFY(pClone->getData() == pFunction->getData());
    pClone->addParam("e");
    QCOMPARE(pFunction->getParams(), QStringList({"doc"}));
}

void TestFunctions::functionJson()
{
    std::unique_ptr<VTFunction> pFunction(
        makeFunction("onTap", {"doc", "e"}, "a();\nb();", VTFunctionData::TimelineEventHandler));
    pFunction->setId(4);
    QJsonObject json;
    pFunction->serialize(json);
    QCOMPARE(json.value("uuid").toString(), pFunction->getUuid().toString());
    QVERIFY(json.value("uuid").toString().startsWith('{'));
    QCOMPARE(json.value("params").toArray(), QJsonArray({"doc", "e"}));
    QCOMPARE(json.value("type").toInt(), 2);

    VTFunction read;
    QStringList lstWarnings;
    QVERIFY(read.parse(json, &lstWarnings));
    QVERIFY(lstWarnings.isEmpty());
    QVERIFY(read.getData() == pFunction->getData());
    QCOMPARE(read.getType(), VTFunctionData::TimelineEventHandler);
    QCOMPARE(read.getId(), 4);
    QCOMPARE(read.getUuid(), pFunction->getUuid());

    // What this program writes comes back unchanged.
    const QJsonObject joWritten{{"id", 9},        {"uuid", "{6f1c2a8e-95a4-4c55-a0c6-1f2d3e4b5a69}"},
                                {"name", "fade"}, {"content", "go();"},
                                {"type", 0},      {"params", QJsonArray()}};
    QVERIFY(read.parse(joWritten));
    QJsonObject joAgain;
    read.serialize(joAgain);
    QCOMPARE(joAgain, joWritten);

    // Reading an empty object gives the read defaults, which differ from a new function's.
    QVERIFY(read.parse(QJsonObject()));
    QCOMPARE(read.getId(), -1);
    QVERIFY(read.getUuid().isNull());
    QVERIFY(read.getName().isEmpty());
    QVERIFY(read.getParams().isEmpty());
    QCOMPARE(read.getType(), VTFunctionData::NormalFunction);

    // Such a function is written with the null UUID, which reads back without a complaint.
    QJsonObject joNoUuid;
    read.serialize(joNoUuid);
    QStringList lstNoUuidWarnings;
    QVERIFY(read.parse(joNoUuid, &lstNoUuidWarnings));
    QVERIFY2(lstNoUuidWarnings.isEmpty(), qPrintable(lstNoUuidWarnings.join('\n')));
    QVERIFY(read.getUuid().isNull());
}

void TestFunctions::hostileFunctionJson()
{
    VTFunction function;
    QStringList lstWarnings;
    QVERIFY(!function.parse(QJsonObject{{"id", "7"},
                                        {"uuid", "not-a-uuid"},
                                        {"name", 5},
                                        {"content", QJsonArray{1}},
                                        {"type", 42},
                                        {"params", QJsonArray{"a", 3, QJsonObject(), "b"}}},
                            &lstWarnings));
    QCOMPARE(lstWarnings.size(), 7);
    QCOMPARE(function.getId(), -1);
    QVERIFY(function.getUuid().isNull());
    QVERIFY(function.getName().isEmpty());
    QCOMPARE(function.getType(), VTFunctionData::NormalFunction);
    QCOMPARE(function.getParams(), QStringList({"a", "b"}));

    lstWarnings.clear();
    QJsonArray jaMany;
    for (int i = 0; i <= VTFunction::kMaxParamCount; ++i)
        jaMany.append(QStringLiteral("p%1").arg(i));
    QVERIFY(!function.parse(QJsonObject{{"name", "big"}, {"params", jaMany}, {"type", -1}, {"id", 1.5}},
                            &lstWarnings));
    QCOMPARE(lstWarnings.size(), 3);
    QVERIFY(lstWarnings.first().startsWith("function \"big\""));
    QVERIFY(function.getParams().isEmpty());
    QCOMPARE(function.getId(), -1);
}

void TestFunctions::uniqueNamesAndIds()
{
    VTFunctionManager manager;
    QCOMPARE(manager.addFunction(VTFunction::createFunction(VTFunctionData::NormalFunction).release()), 0);
    QCOMPARE(manager.addFunction(VTFunction::createFunction(VTFunctionData::NormalFunction).release(), -1),
             1);
    QCOMPARE(manager.addFunction(VTFunction::createFunction(VTFunctionData::NormalFunction).release(), 99),
             2);
    QCOMPARE(namesOf(manager),
             QStringList({"untitledFunction", "untitledFunction_0", "untitledFunction_0_1"}));
    QCOMPARE(manager.getValidFunctionName("UntitledFunction"), QString("UntitledFunction"));
    QCOMPARE(manager.getValidFunctionName("untitledFunction_0_1"), QString("untitledFunction_0_1_0"));
    QList<int> lstIds;
    for (const VTFunction* pFunction : manager.getFunctions())
        lstIds << pFunction->getId();
    QCOMPARE(lstIds, QList<int>({1, 2, 3}));
    QCOMPARE(manager.getCurrentId(), 3);

    // Removing never frees an id for reuse.
    VTFunction* pLast = manager.getFunctions().last();
    QCOMPARE(manager.detachFunction(pLast), 2);
    QCOMPARE(manager.detachFunction(pLast), -1);
    manager.addFunction(makeFunction("later"));
    QCOMPARE(manager.findFunctionByName("later")->getId(), 4);

    // The undo road: back at its index, same id, counter untouched; the name is checked again.
    pLast->setName("later");
    QCOMPARE(manager.addFunction(pLast, 1), 1);
    QCOMPARE(pLast->getId(), 3);
    QCOMPARE(pLast->getName(), QString("later_0"));
    QCOMPARE(manager.getCurrentId(), 4);

    VTFunction* pKept = makeFunction("kept");
    pKept->setId(7);
    QCOMPARE(manager.addFunction(pKept, -1), 4);
    QCOMPARE(pKept->getId(), 7);
    QCOMPARE(manager.getCurrentId(), 4);

    QCOMPARE(manager.addFunction(pKept, 0), -1);
    QCOMPARE(manager.addFunction(nullptr), -1);
    QCOMPARE(manager.getFunctionCount(), 5);
}

void TestFunctions::lookups()
{
    VTFunctionManager manager;
    VTFunction* pA = makeFunction("a");
    VTFunction* pB = makeFunction("b");
    manager.addFunction(pA);
    manager.addFunction(pB);
    QCOMPARE(manager.findFunctionById(2), pB);
    QCOMPARE(manager.findFunctionById(3), nullptr);
    QCOMPARE(manager.findFunctionByName("a"), pA);
    QCOMPARE(manager.findFunctionByName("A"), nullptr);
    QCOMPARE(manager.findFunctionByUuid(pB->getUuid()), pB);
    QCOMPARE(manager.findFunctionByUuid(QUuid::createUuid()), nullptr);
    pA->setUuid(QUuid());
    QCOMPARE(manager.findFunctionByUuid(QUuid()), nullptr);
}

void TestFunctions::managerJson()
{
    VTFunctionManager empty;
    QJsonObject joEmpty;
    empty.serialize(joEmpty);
    QCOMPARE(joEmpty, QJsonObject({{"current_id", 0}, {"functions", QJsonArray()}}));
    // A project without "scripts" hands the document an empty object: no complaint, same result.
    VTFunctionManager fromNothing;
    QStringList lstNotes;
    QVERIFY(fromNothing.parse(QJsonObject(), &lstNotes) && lstNotes.isEmpty());
    QJsonObject joNothing;
    fromNothing.serialize(joNothing);
    QCOMPARE(joNothing, joEmpty);

    VTFunctionManager manager;
    manager.addFunction(makeFunction("first", {"x"}, "x++;"));
    manager.addFunction(VTFunction::createFunction(VTFunctionData::DocumentEventHandler).release());
    const std::unique_ptr<VTFunction> pDetached(manager.findFunctionByName("first"));
    manager.detachFunction(pDetached.get()); // the counter stays at 2
    QJsonObject json;
    manager.serialize(json);
    QCOMPARE(json.value("current_id").toInt(), 2);

    VTFunctionManager read;
    QStringList lstWarnings;
    QVERIFY(read.parse(json, &lstWarnings));
    QVERIFY(lstWarnings.isEmpty());
    QCOMPARE(read.getCurrentId(), 2);
    QCOMPARE(read.getFunctionCount(), 1);
    const VTFunction* pRead = read.getFunctions().first();
    const VTFunction* pOriginal = manager.getFunctions().first();
    QVERIFY(pRead->getData() == pOriginal->getData());
    QCOMPARE(pRead->getType(), pOriginal->getType());
    QCOMPARE(pRead->getId(), 2);
    QCOMPARE(pRead->getUuid(), pOriginal->getUuid());
    QJsonObject joAgain;
    read.serialize(joAgain);
    QCOMPARE(joAgain, json);

    // parse appends; the second copy's id is already in use, which is told.
    lstWarnings.clear();
    QVERIFY(!read.parse(json, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 1);
    QCOMPARE(read.getFunctionCount(), 2);
    read.addFunction(makeFunction("next"));
    QCOMPARE(read.findFunctionByName("next")->getId(), 3);
}

void TestFunctions::hostileManagerJson()
{
    VTFunctionManager manager;
    QStringList lstWarnings;
    QVERIFY(!manager.parse(QJsonObject{{"current_id", "x"}, {"functions", QJsonObject()}}, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 2);
    QCOMPARE(manager.getCurrentId(), 0);
    QCOMPARE(manager.getFunctionCount(), 0);

    // Stored names and ids are taken as they stand; a counter that would hand out an id in use is
    // raised, and duplicated ids are told.
    lstWarnings.clear();
    const QJsonArray jaFunctions{QJsonObject{{"id", 5}, {"name", "same"}}, 3, "x",
                                 QJsonObject{{"id", 5}, {"name", "same"}, {"type", 99}}};
    QVERIFY(!manager.parse(QJsonObject{{"current_id", 1}, {"functions", jaFunctions}}, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 5);
    QCOMPARE(namesOf(manager), QStringList({"same", "same"}));
    QCOMPARE(manager.getCurrentId(), 5);
    manager.addFunction(makeFunction("fresh"));
    QCOMPARE(manager.findFunctionByName("fresh")->getId(), 6);

    // A negative counter would hand out -1, the mark of a function never added; a counter at the
    // largest int must not overflow, so the next function gets a free id instead.
    lstWarnings.clear();
    VTFunctionManager negative;
    QVERIFY(!negative.parse(QJsonObject{{"current_id", -2}}, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 1);
    negative.addFunction(makeFunction("a"));
    QCOMPARE(negative.findFunctionByName("a")->getId(), 1);
    VTFunctionManager saturated;
    const int nMax = std::numeric_limits<int>::max();
    QVERIFY(saturated.parse(QJsonObject{
        {"current_id", nMax},
        {"functions", QJsonArray{QJsonObject{{"id", 1}, {"name", "one"}}, QJsonObject{{"id", nMax}}}}}));
    saturated.addFunction(makeFunction("next"));
    QCOMPARE(saturated.findFunctionByName("next")->getId(), 2);
    QCOMPARE(saturated.getCurrentId(), nMax);

    lstWarnings.clear();
    VTFunctionManager flooded;
    QJsonArray jaMany;
    for (int i = 0; i <= VTFunctionManager::kMaxFunctionCount; ++i)
        jaMany.append(QJsonObject{{"id", i + 1}});
    QVERIFY(!flooded.parse(QJsonObject{{"current_id", 3}, {"functions", jaMany}}, &lstWarnings));
    QCOMPARE(lstWarnings.size(), 1);
    QCOMPARE(flooded.getFunctionCount(), 0);
    QCOMPARE(flooded.getCurrentId(), 3);
}

void TestFunctions::copyingBetweenDocuments()
{
    VTFunctionManager source;
    VTFunction* pShared = makeFunction("shared", {}, "a();");
    VTFunction* pOwn = makeFunction("own", {"doc", "e"}, "b();", VTFunctionData::SceneEventHandler);
    VTFunction* pNamesake = makeFunction("taken", {}, "c();");
    source.addFunction(pShared);
    source.addFunction(pOwn);
    source.addFunction(pNamesake);

    VTFunctionManager target;
    VTFunction* pTargetShared = pShared->clone().release();
    pTargetShared->setId(-1);
    target.addFunction(makeFunction("first"));
    target.addFunction(pTargetShared);
    target.addFunction(makeFunction("taken", {}, "different();"));
    QCOMPARE(target.getCurrentId(), 3);

    QMap<VTFunction*, VTFunction*> mapFunctions{{pShared, nullptr}, {pOwn, nullptr}, {pNamesake, nullptr}};
    QList<VTFunction*> lstNew;
    target.processFunctionMap(mapFunctions, lstNew);

    QCOMPARE(mapFunctions.value(pShared), pTargetShared);
    QCOMPARE(lstNew.size(), 2);
    VTFunction* pOwnCopy = mapFunctions.value(pOwn);
    QVERIFY(lstNew.contains(pOwnCopy));
    QCOMPARE(pOwnCopy->getUuid(), pOwn->getUuid());
    QCOMPARE(pOwnCopy->getType(), VTFunctionData::SceneEventHandler);
    QVERIFY(pOwnCopy->getData() == pOwn->getData());
    // Only the UUID merges: a function of the same name is copied under a new name.
    VTFunction* pNamesakeCopy = mapFunctions.value(pNamesake);
    QVERIFY(lstNew.contains(pNamesakeCopy));
    QCOMPARE(pNamesakeCopy->getName(), QString("taken_0"));
    QCOMPARE(pNamesakeCopy->getContent(), QString("c();"));
    QCOMPARE(QSet<int>({pOwnCopy->getId(), pNamesakeCopy->getId()}), QSet<int>({4, 5}));
    QCOMPARE(target.getFunctionCount(), 5);
    QCOMPARE(target.findFunctionById(pOwnCopy->getId()), pOwnCopy);
    // The source is left as it was.
    QCOMPARE(pOwn->getId(), 2);
    QCOMPARE(source.getFunctionCount(), 3);
}

void TestFunctions::playerScript()
{
    VTFunctionManager manager;
    QCOMPARE(manager.createFunctionDataScript(), QString("var f = [];"));

    manager.addFunction(makeFunction("add", {"a", "b"}, "return a + b;"));
    manager.addFunction(VTFunction::createFunction(VTFunctionData::ElementEventHandler).release());
    manager.findFunctionById(2)->setContent("doc.play();\ne.stop();");
    const QString strExpected = "var f = [];\n"
                                "var add = function add(a, b) {\n"
                                "return a + b;\n"
                                "};\n"
                                "f.push([1, \"add\", add]);\n"
                                "var elementEventHandler = function elementEventHandler(doc, e) {\n"
                                "doc.play();\n"
                                "e.stop();\n"
                                "};\n"
                                "f.push([2, \"elementEventHandler\", elementEventHandler]);";
    QCOMPARE(manager.createFunctionDataScript(), strExpected);
}

QTEST_GUILESS_MAIN(TestFunctions)
#include "tst_functions.moc"
