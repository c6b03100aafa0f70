#include "MessageRecorder.h"
#include "VTDocument.h"
#include "VTElement.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray readBytes(const QString& filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeBytes(const QString& filePath, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

bool copyFolder(const QString& source, const QString& target)
{
    QDir().mkpath(target);
    const QFileInfoList entries = QDir(source).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const QString to = QDir(target).filePath(entry.fileName());
        if (entry.isDir() ? !copyFolder(entry.absoluteFilePath(), to)
                          : !QFile::copy(entry.absoluteFilePath(), to))
            return false;
    }
    return true;
}

QJsonObject element(int nType, int nId, const QString& name)
{
    const QJsonObject values{{"path", QJsonObject{{"l", 10}, {"t", 20}, {"w", 100}, {"h", 50}}}};
    return {{"type", nType},
            {"id", nId},
            {"name", name},
            {"respProps", QJsonArray{QJsonObject{{"hLayoutId", 0}, {"vLayoutId", 0}, {"values", values}}}}};
}

QJsonObject scene(const QJsonArray& children)
{
    QJsonObject object = element(8, 1, QStringLiteral("Scene_1"));
    object.insert("isSelected", true);
    object.insert("nextChildId", 100);
    object.insert("children", children);
    return object;
}

// Project folder <root>/p with its resource files, one of each media kind and a symbol.
QString writeProject(const QString& root, const QJsonArray& children)
{
    const QString folder = root + QStringLiteral("/p");
    writeBytes(folder + "/p_res/pic.png", "png");
    writeBytes(folder + "/p_res/tune.mp3", "mp3");
    writeBytes(folder + "/p_res/film.webm", "webm");
    writeBytes(folder + "/p_res/Sym.vetrasym", R"({"width":50,"height":50,"scenes":[]})");
    const auto resource = [](int nId, int nType, const QString& fileName) {
        QJsonObject object{
            {"id", nId}, {"uuid", QUuid::createUuid().toString()}, {"name", fileName}, {"type", nType}};
        if (nType == 1 || nType == 2)
            object.insert("fileNames", QJsonArray{fileName});
        else
            object.insert("fileName", fileName);
        return object;
    };
    const QJsonObject document{
        {"docVersion", 3},
        {"width", 400},
        {"height", 300},
        {"resources", QJsonArray{resource(1, 0, "pic.png"), resource(2, 1, "tune.mp3"),
                                 resource(3, 2, "film.webm"), resource(4, 3, "Sym.vetrasym")}},
        {"scenes", QJsonArray{scene(children)}}};
    const QString path = folder + QStringLiteral("/p.vetra");
    writeBytes(path,
               QJsonDocument(QJsonObject{{"appName", "Vetra Studio"}, {"document", document}}).toJson());
    return path;
}

// Opens and saves twice; the two saved files must be the same to the byte.
void checkStableCycle(const QString& path, QStringList* pProblems)
{
    QByteArray first;
    for (int nRound = 0; nRound < 2; ++nRound) {
        VTDocument document;
        document.setFileName(path);
        QVERIFY2(document.open(), qPrintable(document.getLoadProblems().join('\n')));
        if (nRound == 0 && pProblems)
            *pProblems = document.getLoadProblems();
        QVERIFY(document.save());
        if (nRound == 0)
            first = readBytes(path);
        else
            QCOMPARE(readBytes(path), first);
        document.close();
    }
}

} // namespace

class TestRoundTrip : public QObject
{
    Q_OBJECT
private slots:
    void sampleReopensIdentical();
    void eachKindReopensIdentical_data();
    void eachKindReopensIdentical();
    void badReferencesAndIds();
    void overDeepTreesAreRefused();
};

void TestRoundTrip::sampleReopensIdentical()
{
    MessageRecorder messages;
    QTemporaryDir dir;
    QVERIFY(copyFolder(QStringLiteral(VETRA_EXAMPLES_DIR "/welcome"), dir.filePath("welcome")));
    const QString path = dir.filePath("welcome/welcome.vetra");
    QStringList problems;
    checkStableCycle(path, &problems);
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    QVERIFY(messages.m_lstMessages.isEmpty());
    // The symbol's own file goes through the same cycle.
    const QByteArray symbol = readBytes(dir.filePath("welcome/welcome_res/Badge.vetrasym"));
    checkStableCycle(path, nullptr);
    QCOMPARE(readBytes(dir.filePath("welcome/welcome_res/Badge.vetrasym")), symbol);

    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    QCOMPARE(document.getSceneCount(), 2);
    QCOMPARE(document.getElementCount(), 11);
    QCOMPARE(document.getSceneManager()->getScenes().first()->getTransitionType(), 1);
    document.close();
}

void TestRoundTrip::eachKindReopensIdentical_data()
{
    QTest::addColumn<int>("nType");
    QTest::addColumn<int>("nResource");
    QTest::newRow("image") << 0 << 1;
    QTest::newRow("audio") << 1 << 2;
    QTest::newRow("video") << 2 << 3;
    QTest::newRow("widget") << 3 << -1;
    QTest::newRow("text") << 4 << -1;
    QTest::newRow("div") << 5 << -1;
    QTest::newRow("group") << 6 << -1;
    QTest::newRow("symbol") << 7 << 4;
    QTest::newRow("shape") << 9 << -1;
    QTest::newRow("freeform") << 11 << -1;
}

void TestRoundTrip::eachKindReopensIdentical()
{
    QFETCH(int, nType);
    QFETCH(int, nResource);
    MessageRecorder messages;
    QTemporaryDir dir;
    QJsonObject object = element(nType, 7, QStringLiteral("Thing"));
    if (nResource > 0)
        object.insert("resourceId", nResource);
    if (nType == 6)
        object.insert("children", QJsonArray{element(5, 8, QStringLiteral("Inner"))});
    const QString path = writeProject(dir.path(), {object});
    QStringList problems;
    checkStableCycle(path, &problems);
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));

    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    VTElement* pElement = document.getSceneManager()->getScenes().first()->findElementById(7);
    QVERIFY(pElement);
    QCOMPARE(pElement->getType(), nType);
    QCOMPARE(pElement->getName(), QStringLiteral("Thing"));
    QCOMPARE(pElement->getComputedW(), 100.0);
    if (nResource > 0) {
        // The element holds its use of the resource while it is in the project.
        QCOMPARE(document.getResourceManager()->findResourceById(nResource)->getUsageCount(), 1);
    }
    document.close();
}

void TestRoundTrip::badReferencesAndIds()
{
    MessageRecorder messages;
    QTemporaryDir dir;
    QJsonObject missingSymbol = element(7, 3, QStringLiteral("Lost"));
    missingSymbol.insert("resourceId", 99);
    QJsonObject wrongId = element(5, 4, QStringLiteral("Odd"));
    wrongId.insert("id", QStringLiteral("four"));
    const QString path =
        writeProject(dir.path(), {element(5, 5, QStringLiteral("First")),
                                  element(5, 5, QStringLiteral("Second")), missingSymbol, wrongId});
    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    const QString problems = document.getLoadProblems().join('\n');
    // What was left out or replaced is named; nothing goes silently.
    QVERIFY2(problems.contains("Lost"), qPrintable(problems));
    QVERIFY2(problems.contains("\"id\""), qPrintable(problems));
    VTScene* pScene = document.getSceneManager()->getScenes().first();
    QCOMPARE(pScene->getChildren().size(), 3);
    // Both elements that share an id stay; the next id lies above every id in use.
    QCOMPARE(pScene->getChildren().at(0)->getId(), 5);
    QCOMPARE(pScene->getChildren().at(1)->getId(), 5);
    QVERIFY(pScene->getChildren().at(2)->getId() != 5);
    QVERIFY(pScene->getNextChildId() > 5);
    document.close();
}

void TestRoundTrip::overDeepTreesAreRefused()
{
    MessageRecorder messages;
    QTemporaryDir dir;
    // Groups inside groups far deeper than anyone builds: the tree is refused whole rather than
    // opened in part, and the user is told why.
    QJsonObject inner = element(6, 400, QStringLiteral("g400"));
    for (int nId = 399; nId >= 1; --nId) {
        QJsonObject outer = element(6, nId, QStringLiteral("g%1").arg(nId));
        outer.insert("children", QJsonArray{inner});
        inner = outer;
    }
    const QString path = writeProject(dir.path(), {inner});
    VTDocument document;
    document.setFileName(path);
    QVERIFY(!document.open());
    QCOMPARE(messages.getTexts(MessageRecorder::Warning),
             QStringList{QStringLiteral("Cannot open project.\nError while loading scene data.")});
    QVERIFY(document.getLoadProblems().join('\n').contains(QStringLiteral("deeper than 256 levels")));

    // Just within the limit it opens, and the next project read starts with a clean slate.
    QTemporaryDir other;
    QJsonObject shallow = element(6, 100, QStringLiteral("g100"));
    for (int nId = 99; nId >= 1; --nId) {
        QJsonObject outer = element(6, nId, QStringLiteral("g%1").arg(nId));
        outer.insert("children", QJsonArray{shallow});
        shallow = outer;
    }
    VTDocument fine;
    fine.setFileName(writeProject(other.path(), {shallow}));
    QVERIFY(fine.open());
    QCOMPARE(fine.getElementCount(), 100);
    fine.close();
}

QTEST_GUILESS_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
