#include "MessageRecorder.h"
#include "VTDocument.h"
#include "VTEventListenerList.h"
#include "VTFileLocker.h"
#include "VTLoadIndicatorProps.h"
#include "VTLocationManager.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace {

const QString s_strIncompatible =
    QStringLiteral("The project is incompatible with current application version.\n"
                   "Do you want to open anyway (some information may be lost)?");
const QString s_strInvalidFormat = QStringLiteral("The project file format is invalid.");

QJsonObject allLocations(const QMap<int, QString>& values = {})
{
    QJsonObject locations;
    for (int nId = 1000; nId <= 1020; ++nId)
        locations.insert(QString::number(nId), values.value(nId));
    return locations;
}

QJsonObject readJson(const QString& filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool hasProblemAbout(const VTDocument& document, const QString& key)
{
    const QStringList problems = document.getLoadProblems();
    return std::any_of(problems.cbegin(), problems.cend(), [&key](const QString& p) {
        return p.contains(QLatin1Char('"') + key + QLatin1Char('"'));
    });
}

} // namespace

class TestDocumentFormat : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void newProjectDefaults();
    void absentKeysReadAsFileDefaults();
    void roundTripKeepsEveryKey();
    void docVersionCases();
    void oldFormatAsksBeforeSaving();
    void locationsAreDocumentHistory();
    void refusalsAndTheirMessages();
    void wrongTypesFallBackAndAreReported();

private:
    QString writeProject(const QString& name, const QByteArray& data);
    QString writeProject(const QString& name, const QJsonObject& object);
    QJsonObject fullProject() const;

    QTemporaryDir m_dir;
};

void TestDocumentFormat::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // Nothing here may reach the real home folder.
    qputenv("HOME", QDir(m_dir.path()).filePath(QStringLiteral("home")).toLocal8Bit());
}

QString TestDocumentFormat::writeProject(const QString& name, const QByteArray& data)
{
    QDir(m_dir.path()).mkpath(name);
    const QString filePath =
        QDir(m_dir.path()).filePath(name + QLatin1Char('/') + name + QStringLiteral(".vetra"));
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(data) != data.size())
        return {};
    return filePath;
}

QString TestDocumentFormat::writeProject(const QString& name, const QJsonObject& object)
{
    return writeProject(name, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

// A project with every key set to something other than either default, and keys this version
// does not model at all.
QJsonObject TestDocumentFormat::fullProject() const
{
    // Scenes and events in the form this program writes them, so the round trip can be exact.
    const auto scene = [](const QString& name, int nId) {
        VTScene model;
        model.initDefault();
        model.setName(name);
        model.setId(nId);
        // A load without a selected scene selects the first; the file states it already.
        model.setSelected(nId == 1);
        QJsonObject json;
        model.serialize(json);
        return json;
    };
    VTEventListenerList eventModel;
    eventModel.parse(QJsonArray{QJsonObject{{QStringLiteral("event"), 50}, {QStringLiteral("action"), 1}}});
    QJsonArray events;
    eventModel.serialize(events);
    const QJsonObject document{
        {QStringLiteral("author"), QStringLiteral("Ada")},
        {QStringLiteral("created"), QStringLiteral("2024-02-01T10:00:00Z")},
        {QStringLiteral("modified"), QStringLiteral("2024-03-01T10:00:00Z")},
        {QStringLiteral("modifiedBy"), QStringLiteral("Grace")},
        {QStringLiteral("width"), 1280},
        {QStringLiteral("height"), 720},
        {QStringLiteral("align"), 132},
        {QStringLiteral("title"), QStringLiteral("Banner")},
        {QStringLiteral("description"), QStringLiteral("A banner")},
        {QStringLiteral("keywords"), QStringLiteral("ad, banner")},
        {QStringLiteral("autofit"), true},
        {QStringLiteral("scenes"),
         QJsonArray{scene(QStringLiteral("Intro"), 1), scene(QStringLiteral("Outro"), 2)}},
        {QStringLiteral("events"), events},
        {QStringLiteral("layoutBreakpoints"),
         QJsonObject{{QStringLiteral("responsiveMode"), false},
                     {QStringLiteral("h"), QJsonArray{QJsonArray{1, 0}, QJsonArray{2, 480}}},
                     {QStringLiteral("hCurrentId"), 2},
                     {QStringLiteral("vCurrentId"), 0},
                     {QStringLiteral("nextId"), 3}}},
        // A script linked by URL: a resource with no file to look for.
        {QStringLiteral("resources"),
         QJsonArray{
             QJsonObject{{QStringLiteral("id"), 7},
                         {QStringLiteral("uuid"), QStringLiteral("{0b6c1f3e-8a59-4f0e-9d59-3b0f7e0c6a11}")},
                         {QStringLiteral("name"), QStringLiteral("lib")},
                         {QStringLiteral("deleted"), false},
                         {QStringLiteral("type"), 5},
                         {QStringLiteral("dataSize"), 0},
                         {QStringLiteral("fileName"), QStringLiteral("https://example.invalid/lib.js")},
                         {QStringLiteral("resourceType"), 1},
                         {QStringLiteral("includeHeader"), true}}}},
        {QStringLiteral("scripts"),
         QJsonObject{{QStringLiteral("current_id"), 0}, {QStringLiteral("functions"), QJsonArray{}}}},
        {QStringLiteral("docVersion"), 3},
        {QStringLiteral("autoplay"), false},
        {QStringLiteral("autoKeyframeMode"), true},
        {QStringLiteral("hasCustomLoader"), true},
        {QStringLiteral("loaderType"), 1},
        {QStringLiteral("defaultLoadingIndicatorProps"),
         QJsonObject{{QStringLiteral("diameter"), 120},
                     {QStringLiteral("density"), 9},
                     {QStringLiteral("range"), 1.5},
                     {QStringLiteral("speed"), 2},
                     {QStringLiteral("color"), double(qRgb(1, 2, 3))},
                     {QStringLiteral("shape"), 4}}},
        {QStringLiteral("embedSytemFont"), true},
        {QStringLiteral("resFolderHtml5Output"), QStringLiteral("media")},
        {QStringLiteral("preResFolderHtml5Output"), QStringLiteral("premedia")},
        {QStringLiteral("viewportWMeta"), 480},
        {QStringLiteral("viewportHMeta"), -1},
        {QStringLiteral("containerID"), QStringLiteral("banner01")},
        {QStringLiteral("htmlOutput"), QStringLiteral("<html></html>")},
        {QStringLiteral("cssDoc"), QStringLiteral("body{}")},
        {QStringLiteral("initResponsive"), true},
        {QStringLiteral("futureDocumentKey"), QJsonObject{{QStringLiteral("x"), 1}}}};
    return {{QStringLiteral("appName"), QStringLiteral("Vetra Studio")},
            {QStringLiteral("document"), document},
            {QStringLiteral("locations"), allLocations({{1005, QStringLiteral("/pictures")}})},
            {QStringLiteral("futureTopKey"), QJsonArray{1, 2, 3}}};
}

void TestDocumentFormat::newProjectDefaults()
{
    MessageRecorder messages;
    for (const bool bResponsive : {false, true}) {
        const QString name = bResponsive ? QStringLiteral("fresh_responsive") : QStringLiteral("fresh");
        QDir(m_dir.path()).mkpath(name);
        DocumentManager::setHBreakpoints({{480, true}, {1024, false}});
        DocumentManager::setVBreakpoints({{640, true}});

        VTDocument document;
        QSignalSpy status(&document, &IDocument::statusChanged);
        document.setFileName(
            QDir(m_dir.path()).filePath(name + QLatin1Char('/') + name + QStringLiteral(".vetra")));
        QVERIFY(document.openTempDocument(1024, 768, 3, bResponsive));
        QVERIFY(QFileInfo(document.getResourceFolderPath()).isDir());
        QCOMPARE(status.count(), 1);
        QCOMPARE(status.first().first().toString(), QStringLiteral("Ready"));
        QCOMPARE(document.getStatus(), QStringLiteral("Ready"));

        QCOMPARE(document.getDocVersion(), 3);
        QCOMPARE(document.isAutoplay(), true);
        QCOMPARE(document.isAutoKeyframeMode(), false);
        QCOMPARE(document.hasCustomLoader(), false);
        QCOMPARE(document.getLoaderType(), VT::DefaultPreloader);
        const VTLoadIndicatorProps props = *document.getDefaultLoadingIndicatorProps();
        QCOMPARE(props.getDiameter(), 60);
        QCOMPARE(props.getColor(), QColor("#2090e6"));
        QCOMPARE(document.isEmbedSystemFont(), false);
        QCOMPARE(document.getResFolderHTML5Output(), QStringLiteral("resources"));
        QCOMPARE(document.getPreloaderResFolderHTML5Output(), QStringLiteral("preloader_resources"));
        QCOMPARE(document.getHtmlOutput(), QString());
        QCOMPARE(document.getCssDoc(), QString());
        QCOMPARE(document.getContainerID().size(), 8);
        QCOMPARE(document.getWidth(), 1024);
        QCOMPARE(document.getHeight(), 768);
        QCOMPARE(document.getRequestedSceneCount(), 3);
        // The scenes are there, the first one current, each the size of the stage or the page.
        QCOMPARE(document.getSceneCount(), 3);
        const VTScene* pFirst = document.getSceneManager()->getCurrentScene();
        QVERIFY(pFirst);
        QCOMPARE(pFirst, document.getSceneManager()->getScenes().first());
        QCOMPARE(pFirst->getName(), QStringLiteral("Scene_1"));
        QCOMPARE(document.getSceneManager()->getScenes().last()->getName(), QStringLiteral("Scene_3"));
        QCOMPARE(pFirst->getComputedW(), 1024.0);
        QCOMPARE(pFirst->getComputedH(), 768.0);
        QCOMPARE(pFirst->getUnitW(), bResponsive ? int(VT::Percent) : int(VT::Pixel));
        QCOMPARE(document.isInitResponsive(), bResponsive);
        if (bResponsive) {
            QCOMPARE(document.getViewportWMeta(), int(VTDocument::ViewportDeviceWidth));
            QCOMPARE(document.getViewportHMeta(), int(VTDocument::ViewportNone));
            QCOMPARE(document.getInitialHBreakpoints(), DocumentManager::getHBreakpoints());
            QCOMPARE(document.getInitialVBreakpoints(), DocumentManager::getVBreakpoints());
        } else {
            QCOMPARE(document.getViewportWMeta(), int(VTDocument::ViewportNone));
            QCOMPARE(document.getViewportHMeta(), int(VTDocument::ViewportNone));
            QVERIFY(document.getInitialHBreakpoints().isEmpty());
        }

        // What was made new reads back the same.
        const QString containerId = document.getContainerID();
        QVERIFY(document.save());
        VTDocument reopened;
        reopened.setFileName(document.getFileName());
        QVERIFY(reopened.open());
        QCOMPARE(reopened.getContainerID(), containerId);
        QCOMPARE(reopened.isAutoplay(), true);
        QCOMPARE(reopened.getViewportWMeta(), document.getViewportWMeta());
        QVERIFY(*reopened.getDefaultLoadingIndicatorProps() == props);
        QCOMPARE(reopened.isInitResponsive(), bResponsive);
    }
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestDocumentFormat::absentKeysReadAsFileDefaults()
{
    MessageRecorder messages;
    const QString filePath = writeProject(
        QStringLiteral("sparse"), QJsonObject{{QStringLiteral("appName"), QStringLiteral("Vetra Studio")},
                                              {QStringLiteral("document"), QJsonObject{{"docVersion", 3}}}});
    VTDocument document;
    document.setFileName(filePath);
    QVERIFY(document.open());
    QVERIFY(messages.m_lstMessages.isEmpty());
    QVERIFY(document.getLoadProblems().isEmpty());
    QCOMPARE(document.getDocVersion(), 3);
    QCOMPARE(document.isAutoplay(), false);
    QCOMPARE(document.isAutoKeyframeMode(), false);
    QCOMPARE(document.hasCustomLoader(), false);
    QCOMPARE(document.getLoaderType(), VT::DefaultPreloader);
    QCOMPARE(document.getDefaultLoadingIndicatorProps()->getDiameter(), 0);
    QCOMPARE(document.isEmbedSystemFont(), false);
    QCOMPARE(document.getResFolderHTML5Output(), QString());
    QCOMPARE(document.getPreloaderResFolderHTML5Output(), QString());
    QCOMPARE(document.getViewportWMeta(), 0);
    QCOMPARE(document.getViewportHMeta(), 0);
    QCOMPARE(document.getHtmlOutput(), QString());
    QCOMPARE(document.getCssDoc(), QString());
    QCOMPARE(document.isInitResponsive(), false);
    QCOMPARE(document.getWidth(), 0);
    QCOMPARE(document.getHeight(), 0);
    QCOMPARE(document.getSceneCount(), 0);
    // An empty id is replaced on first use, and then stays.
    const QString containerId = document.getContainerID();
    QCOMPARE(containerId.size(), 8);
    QCOMPARE(document.getContainerID(), containerId);
    QCOMPARE(document.getViewportWidthTag(), QStringLiteral("width=0, "));

    // Saving writes every key, so the file no longer depends on read defaults.
    QVERIFY(document.save());
    const QJsonObject saved = readJson(filePath);
    const QJsonObject savedDocument = saved.value("document").toObject();
    const QStringList documentKeys = VTDocument::getDocumentKeys();
    for (const QString& key : documentKeys)
        QVERIFY2(savedDocument.contains(key), qPrintable(key));
    QCOMPARE(savedDocument.value("containerID").toString(), containerId);
    QVERIFY(savedDocument.value("resources").isArray());
    QVERIFY(savedDocument.value("scripts").isObject());
    QCOMPARE(savedDocument.value("width").toInt(-1), 0);
    QCOMPARE(saved.value("locations").toObject(), allLocations());
}

void TestDocumentFormat::roundTripKeepsEveryKey()
{
    MessageRecorder messages;
    const QJsonObject original = fullProject();
    const QString filePath = writeProject(QStringLiteral("full"), original);
    VTDocument document;
    document.setFileName(filePath);
    QVERIFY(document.open());
    QVERIFY2(document.getLoadProblems().isEmpty(), qPrintable(document.getLoadProblems().join('\n')));

    QCOMPARE(QSize(document.getWidth(), document.getHeight()), QSize(1280, 720));
    QCOMPARE(document.isAutoplay(), false);
    QCOMPARE(document.isAutoKeyframeMode(), true);
    QCOMPARE(document.hasCustomLoader(), true);
    QCOMPARE(document.getLoaderType(), VT::CustomPreloader);
    QCOMPARE(document.isEmbedSystemFont(), true);
    QCOMPARE(document.getResFolderHTML5Output(), QStringLiteral("media"));
    QCOMPARE(document.getPreloaderResFolderHTML5Output(), QStringLiteral("premedia"));
    QCOMPARE(document.getViewportWMeta(), 480);
    QCOMPARE(document.getViewportHMeta(), -1);
    QCOMPARE(document.getContainerID(), QStringLiteral("banner01"));
    QCOMPARE(document.getHtmlOutput() + document.getCssDoc(), QStringLiteral("<html></html>body{}"));
    QCOMPARE(document.isInitResponsive(), true);
    QCOMPARE(document.getSceneCount(), 2);
    QCOMPARE(document.getResourceManager()->getIdResourceMap().size(), 1);
    QCOMPARE(VTLocationManager::getInstance()->getHistoryLocation(&document, VTLocationManager::ExportImage),
             QStringLiteral("/pictures"));

    // Nothing is lost, reordered into other keys or changed on the way back.
    QVERIFY(document.save());
    QCOMPARE(readJson(filePath), original);
    QVERIFY(messages.m_lstMessages.isEmpty());

    // Edits land in their keys and nowhere else.
    document.setWidth(300);
    document.setAutoplay(true);
    document.setContainerID(QStringLiteral("other123"));
    QVERIFY(document.save());
    QJsonObject expected = original;
    QJsonObject expectedDocument = expected.value("document").toObject();
    expectedDocument.insert("width", 300);
    expectedDocument.insert("autoplay", true);
    expectedDocument.insert("containerID", QStringLiteral("other123"));
    expected.insert("document", expectedDocument);
    QCOMPARE(readJson(filePath), expected);

    // Large content goes through unchanged too.
    QJsonObject bulk;
    for (int i = 0; i < 5000; ++i)
        bulk.insert(QString::number(i), i);
    expectedDocument.insert("bulk", bulk);
    expectedDocument.insert("cssDoc", QString(4 << 20, QLatin1Char('x')));
    expected.insert("document", expectedDocument);
    writeProject(QStringLiteral("full"), expected);
    QVERIFY(document.open());
    QCOMPARE(document.getCssDoc().size(), 4 << 20);
    QVERIFY(document.save());
    QCOMPARE(readJson(filePath), expected);
}

void TestDocumentFormat::docVersionCases()
{
    struct Case
    {
        const char* pszName;
        QJsonValue version;
        bool bAsks;
        IMessageBox::StandardButton answer;
        bool bOpens;
        int nVersion;
        bool bNoted;
    };
    const QList<Case> cases = {
        {"text 1.0", QStringLiteral("1.0"), false, IMessageBox::NoButton, true, 1, false},
        {"zero", 0, false, IMessageBox::NoButton, true, 0, false},
        {"two", 2, false, IMessageBox::NoButton, true, 2, false},
        {"three", 3, false, IMessageBox::NoButton, true, 3, false},
        {"four, OK", 4, true, IMessageBox::Ok, true, 4, false},
        {"four, Cancel", 4, true, IMessageBox::Cancel, false, 0, false},
        {"four, no answer", 4, true, IMessageBox::NoButton, false, 0, false},
        {"missing, OK", QJsonValue(QJsonValue::Undefined), true, IMessageBox::Ok, true, -1, false},
        {"missing, Cancel", QJsonValue(QJsonValue::Undefined), true, IMessageBox::Cancel, false, 0, false},
        {"text 2.0", QStringLiteral("2.0"), true, IMessageBox::Ok, true, -1, true},
        {"fraction", 2.5, true, IMessageBox::Ok, true, -1, true},
    };
    for (const Case& c : cases) {
        MessageRecorder messages;
        if (c.answer != IMessageBox::NoButton)
            messages.m_lstAnswers << c.answer;
        QJsonObject project = fullProject();
        QJsonObject document = project.value("document").toObject();
        if (c.version.isUndefined())
            document.remove("docVersion");
        else
            document.insert("docVersion", c.version);
        project.insert("document", document);
        const QString filePath = writeProject(QStringLiteral("versions"), project);

        VTDocument opened;
        opened.setFileName(filePath);
        QCOMPARE(opened.open(), c.bOpens);
        QCOMPARE(messages.getTexts(MessageRecorder::Question),
                 c.bAsks ? QStringList{s_strIncompatible} : QStringList());
        QCOMPARE(messages.getTexts(MessageRecorder::Warning), QStringList());
        if (!c.bOpens) {
            QVERIFY2(!opened.getFileLocker()->isLocked(filePath), c.pszName);
            continue;
        }
        QVERIFY2(opened.getFileLocker()->isLocked(filePath), c.pszName);
        QCOMPARE(opened.getDocVersion(), c.nVersion);
        if (c.nVersion <= 1) {
            // Formats before 2 had none of the output keys: new-project values, fresh id.
            QCOMPARE(opened.getResFolderHTML5Output(), QStringLiteral("resources"));
            QCOMPARE(opened.getPreloaderResFolderHTML5Output(), QStringLiteral("preloader_resources"));
            QCOMPARE(opened.getViewportWMeta(), int(VTDocument::ViewportNone));
            QCOMPARE(opened.getViewportHMeta(), int(VTDocument::ViewportNone));
            QVERIFY(opened.getContainerID() != QStringLiteral("banner01"));
            QCOMPARE(opened.getContainerID().size(), 8);
            QCOMPARE(opened.getHtmlOutput(), QString());
            QCOMPARE(opened.getCssDoc(), QString());
        } else {
            QCOMPARE(opened.getResFolderHTML5Output(), QStringLiteral("media"));
            QCOMPARE(opened.getViewportWMeta(), 480);
            QCOMPARE(opened.getContainerID(), QStringLiteral("banner01"));
        }
        // Keys read in every format.
        QCOMPARE(opened.isAutoKeyframeMode(), true);
        QCOMPARE(opened.isEmbedSystemFont(), true);
        QCOMPARE(opened.getLoaderType(), VT::CustomPreloader);
        QCOMPARE(hasProblemAbout(opened, QStringLiteral("docVersion")), c.bNoted);
    }
}

void TestDocumentFormat::oldFormatAsksBeforeSaving()
{
    const QString formatQuestion = QStringLiteral("The project will be saved in the file format that can "
                                                  "only be opened by Vetra Studio 2.5.0 or later.\n"
                                                  "Do you want to continue?");
    QJsonObject project = fullProject();
    QJsonObject document = project.value("document").toObject();
    document.insert("docVersion", QStringLiteral("1.0"));
    project.insert("document", document);
    const QString filePath = writeProject(QStringLiteral("old"), project);
    QFile file(filePath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();

    MessageRecorder messages;
    VTDocument first;
    first.setFileName(filePath);
    QVERIFY(first.open());
    VTDocument second;
    second.setFileName(filePath);
    QVERIFY(second.open());
    // Each open of an old project makes its own id until one is saved.
    QVERIFY(first.getContainerID() != second.getContainerID());

    // Declining keeps the old file as it was; its default is the cautious answer.
    QVERIFY(!first.save());
    QCOMPARE(messages.getTexts(MessageRecorder::Question), QStringList{formatQuestion});
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
    file.close();
    QCOMPARE(first.getDocVersion(), 1);

    messages.clear();
    messages.m_lstAnswers << IMessageBox::Yes;
    QVERIFY(first.save());
    QCOMPARE(first.getDocVersion(), 3);
    const QJsonObject saved = readJson(filePath).value("document").toObject();
    QCOMPARE(saved.value("docVersion").toInt(), 3);
    QCOMPARE(saved.value("containerID").toString(), first.getContainerID());
    // Once saved in the current format, no more questions.
    messages.clear();
    QVERIFY(first.save());
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestDocumentFormat::locationsAreDocumentHistory()
{
    MessageRecorder messages;
    VTLocationManager* pLocations = VTLocationManager::getInstance();
    pLocations->setDefaultLocation(VTLocationManager::ExportAudio, QStringLiteral("/default/music"));
    QJsonObject project = fullProject();
    project.insert("locations", QJsonObject{{"1005", QStringLiteral("/pics")},
                                            {"1020", QStringLiteral("/html")},
                                            {"1001", 5},
                                            {"999", QStringLiteral("/nowhere")}});
    const QString filePath = writeProject(QStringLiteral("locations"), project);

    const IDocument* pGone = nullptr;
    {
        VTDocument document;
        pGone = &document;
        document.setFileName(filePath);
        QVERIFY(document.open());
        QCOMPARE(pLocations->getHistoryLocation(&document, VTLocationManager::ExportImage),
                 QStringLiteral("/pics"));
        QCOMPARE(pLocations->getHistoryLocation(&document, VTLocationManager::AddHTMLCode),
                 QStringLiteral("/html"));
        QCOMPARE(pLocations->getHistoryLocation(&document, VTLocationManager::ExportAudio),
                 QStringLiteral("/default/music"));
        QVERIFY(hasProblemAbout(document, QStringLiteral("1001")));
        QVERIFY(hasProblemAbout(document, QStringLiteral("999")));

        // Written with all 21 keys; the defaults never go into the file.
        QVERIFY(document.save());
        QCOMPARE(readJson(filePath).value("locations").toObject(),
                 allLocations({{1005, QStringLiteral("/pics")}, {1020, QStringLiteral("/html")}}));
    }
    // The history of a document goes with it.
    QVERIFY(pLocations->getDocumentHistory(pGone).isEmpty());

    // A list where the object belongs is dropped and noted, never fatal.
    project.insert("locations", QJsonArray{QStringLiteral("/pics")});
    writeProject(QStringLiteral("locations"), project);
    VTDocument document;
    document.setFileName(filePath);
    QVERIFY(document.open());
    QVERIFY(hasProblemAbout(document, QStringLiteral("locations")));
    QVERIFY(pLocations->getDocumentHistory(&document).isEmpty());
    QVERIFY(document.save());
    QCOMPARE(readJson(filePath).value("locations").toObject(), allLocations());
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestDocumentFormat::refusalsAndTheirMessages()
{
    struct Case
    {
        const char* pszName;
        QByteArray data;
        QString message;
    };
    const QByteArray valid = QJsonDocument(fullProject()).toJson();
    QByteArray otherApp = valid;
    otherApp.replace("\"Vetra Studio\"", "\"Vetra Studio Pro\"");
    const QList<Case> cases = {
        {"other application", otherApp, QStringLiteral("Not a valid Vetra Studio project.")},
        {"no application", QJsonDocument(QJsonObject{{"document", QJsonObject{{"docVersion", 3}}}}).toJson(),
         QStringLiteral("Not a valid Vetra Studio project.")},
        {"application not text",
         QJsonDocument(QJsonObject{{"appName", 1}, {"document", QJsonObject{}}}).toJson(),
         QStringLiteral("Not a valid Vetra Studio project.")},
        {"broken JSON", valid.left(valid.size() / 2), s_strInvalidFormat},
        {"empty file", QByteArray(), s_strInvalidFormat},
        {"top level list", "[1, 2, 3]", s_strInvalidFormat},
        {"document is a list", R"({"appName": "Vetra Studio", "document": []})", s_strInvalidFormat},
        {"document is null", R"({"appName": "Vetra Studio", "document": null})", s_strInvalidFormat},
        {"document missing", R"({"appName": "Vetra Studio"})", s_strInvalidFormat},
        // Nested deeper than any reader should follow.
        {"deep nesting", QByteArray(100000, '[') + QByteArray(100000, ']'), s_strInvalidFormat},
        {"binary noise", QByteArray::fromHex("00ff7b22fe0a5b5d5c00").repeated(400), s_strInvalidFormat},
    };
    for (const Case& c : cases) {
        MessageRecorder messages;
        const QString filePath = writeProject(QStringLiteral("refused"), c.data);
        VTDocument document;
        document.setFileName(filePath);
        QVERIFY2(!document.open(), c.pszName);
        QCOMPARE(messages.getTexts(), QStringList{c.message});
        QCOMPARE(messages.m_lstMessages.first().first, MessageRecorder::Warning);
        QCOMPARE(messages.m_lstTitles, QStringList{QStringLiteral("Vetra Studio")});
        QVERIFY2(document.getFileLocker()->getLockedFiles().isEmpty(), c.pszName);
    }

    MessageRecorder messages;
    const QString missing = QDir(m_dir.path()).filePath(QStringLiteral("none/none.vetra"));
    VTDocument absent;
    absent.setFileName(missing);
    QVERIFY(!absent.open());
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("File doesn't exist.\n") + missing});

    // A folder with a project's name exists but cannot be read as one.
    messages.clear();
    const QString folder = QDir(m_dir.path()).filePath(QStringLiteral("folder.vetra"));
    QVERIFY(QDir().mkpath(folder));
    VTDocument unreadable;
    unreadable.setFileName(folder);
    QVERIFY(!unreadable.open());
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("Unable to read project data.")});
}

void TestDocumentFormat::wrongTypesFallBackAndAreReported()
{
    MessageRecorder messages;
    QJsonObject project = fullProject();
    QJsonObject document = project.value("document").toObject();
    document.insert("width", QStringLiteral("wide"));
    document.insert("height", -5);
    document.insert("autoplay", QStringLiteral("yes"));
    document.insert("viewportWMeta", 1e300);
    document.insert("viewportHMeta", 2.5);
    document.insert("containerID", 12);
    document.insert("scenes", QStringLiteral("none"));
    document.insert("align", QStringLiteral("center"));
    document.insert("resources", QJsonObject{{"id", 1}});
    document.insert("scripts", QJsonArray{1});
    document.insert("defaultLoadingIndicatorProps", 3);
    project.insert("document", document);
    const QString filePath = writeProject(QStringLiteral("typed"), project);

    VTDocument opened;
    opened.setFileName(filePath);
    QVERIFY(opened.open());
    QVERIFY(messages.m_lstMessages.isEmpty());
    QCOMPARE(opened.getWidth(), 0);
    QCOMPARE(opened.getHeight(), 0);
    QCOMPARE(opened.isAutoplay(), false);
    QCOMPARE(opened.getViewportWMeta(), 0);
    QCOMPARE(opened.getViewportHMeta(), 0);
    QCOMPARE(opened.getSceneCount(), 0);
    QCOMPARE(opened.getResourceManager()->getIdResourceMap().size(), 0);
    QCOMPARE(opened.getDefaultLoadingIndicatorProps()->getDiameter(), 0);
    for (const char* pszKey : {"width", "height", "autoplay", "viewportWMeta", "viewportHMeta", "containerID",
                               "scenes", "align", "resources", "scripts", "defaultLoadingIndicatorProps"})
        QVERIFY2(hasProblemAbout(opened, QString::fromLatin1(pszKey)), pszKey);
    QCOMPARE(opened.getLoadProblems().size(), 11);
    // Keys beside the damaged ones are still read.
    QCOMPARE(opened.getResFolderHTML5Output(), QStringLiteral("media"));

    // What is written back has the right types again.
    QVERIFY(opened.save());
    const QJsonObject saved = readJson(filePath).value("document").toObject();
    QVERIFY(saved.value("width").isDouble());
    QVERIFY(saved.value("autoplay").isBool());
    QVERIFY(saved.value("containerID").isString());
    QCOMPARE(saved.value("containerID").toString().size(), 8);
    QVERIFY(saved.value("resources").isArray());
    QVERIFY(saved.value("scripts").isObject());
    QCOMPARE(saved.value("scenes"), QJsonValue(QJsonArray()));
    QCOMPARE(saved.value("align"), QJsonValue(0));
    QCOMPARE(saved.value("futureDocumentKey"), document.value("futureDocumentKey"));

    // A new load starts with no notes from the one before.
    QVERIFY(opened.open());
    QVERIFY(opened.getLoadProblems().isEmpty());
}

QTEST_GUILESS_MAIN(TestDocumentFormat)
#include "tst_documentformat.moc"
