#include "MessageRecorder.h"
#include "VTBackground.h"
#include "VTDocument.h"
#include "VTLoadIndicatorProps.h"
#include "VTPreloader.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

#include <limits>

namespace {

QJsonObject readJson(const QString& filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

QJsonValue savedWidth(const QString& filePath)
{
    return readJson(filePath).value("document").toObject().value("width");
}

} // namespace

class TestPreloader : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void indicatorProps();
    void preloaderFileRoundTrip();
    void initSaveCloseAndReload();
    void saveAsCarriesPreloader();
    void outputFolderFollowsChain();

private:
    // A saved project N in a folder of its own, made as the host makes a new one.
    bool makeProject(VTDocument* pDocument, const QString& name);
    static QString preloaderPath(const VTDocument& owner)
    {
        return QDir(owner.getResourceFolderPath()).filePath(QStringLiteral("preloader/preloader.vetra"));
    }

    QTemporaryDir m_dir;
};

void TestPreloader::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", QDir(m_dir.path()).filePath(QStringLiteral("home")).toLocal8Bit());
}

bool TestPreloader::makeProject(VTDocument* pDocument, const QString& name)
{
    QDir(m_dir.path()).mkpath(name);
    pDocument->setFileName(
        QDir(m_dir.path()).filePath(name + QLatin1Char('/') + name + QStringLiteral(".vetra")));
    return pDocument->openTempDocument(640, 360, 1, false) && pDocument->save();
}

void TestPreloader::indicatorProps()
{
    VTDocument document;
    QCOMPARE(document.getLoaderType(), VT::DefaultPreloader);
    QVERIFY(!document.getPreloaderDoc());
    const VTLoadIndicatorProps* pDefaults = document.getDefaultLoadingIndicatorProps();
    QCOMPARE(pDefaults->getDiameter(), 60);
    QCOMPARE(pDefaults->getDensity(), 9);
    QCOMPARE(pDefaults->getRange(), 1.0);
    QCOMPARE(pDefaults->getSpeed(), 1);
    QCOMPARE(pDefaults->getColor().name(), QStringLiteral("#2090e6"));
    QCOMPARE(pDefaults->getShape(), 0);

    // An absent key reads as 0, not as the look of a new project.
    VTLoadIndicatorProps props;
    props.parse(QJsonObject{{QStringLiteral("diameter"), 80}});
    QCOMPARE(props.getDiameter(), 80);
    QCOMPARE(props.getDensity() + props.getSpeed() + props.getShape(), 0);
    QCOMPARE(props.getRange(), 0.0);
    QCOMPARE(props.getColor(), QColor(Qt::black));

    // Transparency is dropped, whether the colour was written unsigned or through a signed int.
    for (const double dColor :
         {double(qRgba(0x12, 0x34, 0x56, 0x40)), double(qint32(qRgba(0x12, 0x34, 0x56, 0x80)))}) {
        props.parse(QJsonObject{{QStringLiteral("color"), dColor}});
        QCOMPARE(props.getColor(), QColor(0x12, 0x34, 0x56));
    }

    // The player takes names; a shape it does not know is an oval.
    props.setShape(7);
    QJsonObject exported;
    props.serializeToExport(exported);
    QCOMPARE(exported.value("shape").toString(), QStringLiteral("oval"));
    QCOMPARE(exported.value("color").toString(), QStringLiteral("#123456"));

    props.setDensity(40);
    props.setRange(1.7);
    props.setSpeed(33);
    QJsonObject saved;
    props.serialize(saved);
    VTLoadIndicatorProps read;
    read.parse(saved);
    QVERIFY(read == props);

    // Damaged values fall back to 0 and are noted, one note each.
    QStringList problems;
    read.parse(QJsonObject{{QStringLiteral("diameter"), QStringLiteral("big")},
                           {QStringLiteral("density"), 1e300},
                           {QStringLiteral("range"), std::numeric_limits<double>::quiet_NaN()},
                           {QStringLiteral("speed"), QJsonArray{1}},
                           {QStringLiteral("color"), 4294967296.0}},
               QStringLiteral("props"), &problems);
    QCOMPARE(problems.size(), 5);
    QCOMPARE(read.getDiameter() + read.getDensity() + read.getSpeed(), 0);
    QCOMPARE(read.getRange(), 0.0);
    QCOMPARE(read.getColor(), QColor(Qt::black));
}

void TestPreloader::preloaderFileRoundTrip()
{
    MessageRecorder messages;
    const QString filePath = QDir(m_dir.path()).filePath(QStringLiteral("alone/preloader.vetra"));
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    VTPreloader preloader;
    QVERIFY(preloader.isPreloader());
    QVERIFY(preloader.isUseLoadingIndicator());
    preloader.setFileName(filePath);
    QVERIFY(preloader.openTempDocument(300, 250, 1, false));
    preloader.setUseLoadingIndicator(false);
    preloader.getLoadingIndicatorProps()->setDiameter(120);
    preloader.getDefaultLoadingIndicatorProps()->setDensity(20);
    QVERIFY(preloader.save());
    const QJsonObject saved = readJson(filePath);
    QCOMPARE(saved.value("useLoadingIndicator"), QJsonValue(false));
    QCOMPARE(saved.value("loadingIndicatorProps").toObject().value("diameter"), QJsonValue(120));

    VTPreloader reopened;
    reopened.setFileName(filePath);
    QVERIFY(reopened.open());
    QVERIFY(!reopened.isUseLoadingIndicator());
    QVERIFY(*reopened.getLoadingIndicatorProps() == *preloader.getLoadingIndicatorProps());
    QVERIFY(*reopened.getDefaultLoadingIndicatorProps() == *preloader.getDefaultLoadingIndicatorProps());
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestPreloader::initSaveCloseAndReload()
{
    MessageRecorder messages;
    VTDocument owner;
    QVERIFY(makeProject(&owner, QStringLiteral("banner")));
    QSignalSpy ownerSaved(&owner, &VTDocument::changesSaved);

    // Nothing saved yet: an empty preloader of the project's size, not on disk until saved.
    QVERIFY(owner.initPreloaderDocument());
    VTPreloader* pPreloader = owner.getPreloaderDoc();
    QVERIFY(pPreloader);
    QCOMPARE(pPreloader->getFileName(), preloaderPath(owner));
    QCOMPARE(QSize(pPreloader->getWidth(), pPreloader->getHeight()), QSize(640, 360));
    QVERIFY(!QFileInfo::exists(preloaderPath(owner)));
    // One scene, with no fill, so the page shows through while the content loads.
    QCOMPARE(pPreloader->getSceneCount(), 1);
    QCOMPARE(pPreloader->getSceneManager()->getCurrentScene()->getBackground()->getFillStyle(),
             int(VTBackground::NoFill));

    // Saved in its own editor, it saves the owner too, whose file then knows about it.
    pPreloader->setWidth(500);
    QVERIFY(pPreloader->save());
    QCOMPARE(ownerSaved.count(), 1);
    QCOMPARE(readJson(owner.getFileName()).value("document").toObject().value("hasCustomLoader"),
             QJsonValue(true));

    // Closed, it is dropped and read from disk on the next use.
    QPointer<VTPreloader> closed(pPreloader);
    QVERIFY(pPreloader->close());
    QVERIFY(!owner.getPreloaderDoc());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(closed.isNull());
    QVERIFY(owner.initPreloaderDocument());
    pPreloader = owner.getPreloaderDoc();
    QCOMPARE(pPreloader->getWidth(), 500);

    // Forced closed when the user goes back to the built-in indicator: kept only on Yes.
    pPreloader->setWidth(222);
    pPreloader->submitCommand(new QUndoCommand);
    messages.m_lstAnswers << IMessageBox::Yes;
    QVERIFY(pPreloader->forceClose());
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("Save changes made to preloader?")});
    QCOMPARE(savedWidth(preloaderPath(owner)), QJsonValue(222));
    QVERIFY(!owner.getPreloaderDoc());

    // The owner closes a loaded preloader first and has the host drop its editor.
    QVERIFY(owner.initPreloaderDocument());
    QSignalSpy dropped(owner.getPreloaderDoc(), &IDocument::closingRequested);
    QVERIFY(owner.close());
    QCOMPARE(dropped.count(), 1);
    QCOMPARE(dropped.first().first(), QVariant(false));
    QVERIFY(!owner.getPreloaderDoc());
}

void TestPreloader::saveAsCarriesPreloader()
{
    MessageRecorder messages;
    VTDocument owner;
    QVERIFY(makeProject(&owner, QStringLiteral("origin")));
    QVERIFY(owner.initPreloaderDocument());
    owner.getPreloaderDoc()->setWidth(404);
    QVERIFY(owner.getPreloaderDoc()->save());
    const QString oldPreloader = preloaderPath(owner);
    // Not loaded when the owner moves: it is read from the old folder on the way.
    QVERIFY(owner.getPreloaderDoc()->close());

    const QString targetPath = QDir(m_dir.path()).filePath(QStringLiteral("copy/copy.vetra"));
    QVERIFY(QDir().mkpath(QFileInfo(targetPath).absolutePath()));
    QSignalSpy ownerSaved(&owner, &VTDocument::changesSaved);
    QVERIFY(owner.save(targetPath));
    QVERIFY(messages.m_lstMessages.isEmpty());
    // The preloader's own save on the way starts no second save of the owner.
    QCOMPARE(ownerSaved.count(), 1);
    const QString newPreloader =
        QDir(m_dir.path()).filePath(QStringLiteral("copy/copy_res/preloader/preloader.vetra"));
    QCOMPARE(savedWidth(newPreloader), QJsonValue(404));
    QCOMPARE(owner.getPreloaderDoc()->getFileName(), newPreloader);
    QVERIFY(!owner.getPreloaderDoc()->isTempDocument());
    // The old project keeps its own.
    QCOMPARE(savedWidth(oldPreloader), QJsonValue(404));
}

void TestPreloader::outputFolderFollowsChain()
{
    VTDocument owner;
    owner.setPreloaderResFolderHTML5Output(QStringLiteral("pre_a"));
    auto* pFirst = new VTPreloader;
    owner.setPreloaderDoc(pFirst);
    QCOMPARE(pFirst->parent(), static_cast<QObject*>(&owner));
    QCOMPARE(pFirst->getPreloaderResFolderHTML5Output(), QStringLiteral("pre_a"));

    auto* pSecond = new VTPreloader;
    pFirst->setPreloaderDoc(pSecond);
    owner.setPreloaderResFolderHTML5Output(QStringLiteral("pre_b"));
    QCOMPARE(pSecond->getPreloaderResFolderHTML5Output(), QStringLiteral("pre_b"));
    // The end of the chain answers for all.
    pSecond->setPreloaderResFolderHTML5Output(QStringLiteral("pre_c"));
    QCOMPARE(owner.getPreloaderResFolderHTML5Output(), QStringLiteral("pre_c"));
    emit pSecond->aboutToClose();
    QCOMPARE(owner.getPreloaderResFolderHTML5Output(), QStringLiteral("pre_b"));
}

QTEST_GUILESS_MAIN(TestPreloader)
#include "tst_preloader.moc"
