#include "ICopyProgress.h"
#include "IProjectDialogs.h"
#include "IUtils.h"
#include "MessageRecorder.h"
#include "VTDocument.h"
#include "VTElementProperty.h"
#include "VTEngine.h"
#include "VTEventListener.h"
#include "VTEventListenerList.h"
#include "VTExportScripts.h"
#include "VTExportText.h"
#include "VTFontResource.h"
#include "VTFunction.h"
#include "VTFunctionManager.h"
#include "VTGoogleFontInfo.h"
#include "VTHtmlExporter.h"
#include "VTPreloader.h"
#include "VTResourceManager.h"
#include "VTScene.h"
#include "VTSceneManager.h"
#include "VTText.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString s_strDataPrefix = QStringLiteral("(function(Vetra) {\n\tvar docData = ");

QString readText(const QString& filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool writeText(const QString& filePath, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

// The document object of a data script.
QJsonObject docDataOf(const QString& script)
{
    if (!script.startsWith(s_strDataPrefix))
        return QJsonObject();
    const int nEnd = script.indexOf(";\n\t", s_strDataPrefix.size());
    return QJsonDocument::fromJson(script.mid(s_strDataPrefix.size(), nEnd - s_strDataPrefix.size()).toUtf8())
        .object();
}

QStringList filesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(folder).relativeFilePath(it.next()));
    files.sort();
    return files;
}

// The first place where a block breaks the player's form, or empty.
QString blockBreach(const QJsonObject& block, const QString& where)
{
    static const QRegularExpression s_length("^-?[0-9.e+-]+(%|a)$");
    const QJsonArray transform = block.value("t").toArray();
    if (block.contains("t") && (transform.size() > 5 || transform.last().toArray().isEmpty()))
        return where + ": \"t\" ends with an empty array";
    const QJsonArray rect = block.value("r").toArray();
    for (int i = 0; i < rect.size() && i < 4; ++i) {
        const QString text = rect.at(i).toString();
        if (!rect.at(i).isDouble() && !(s_length.match(text).hasMatch() && (i >= 2 || text.endsWith('%'))))
            return where + QStringLiteral(": \"r\" item %1 is no length").arg(i);
    }
    return QString();
}

QString elementBreach(const QJsonObject& element, const QString& where)
{
    const QString name = where + '/' + element.value("n").toString();
    QString problem = blockBreach(element, name);
    if (element.contains("elems") && element.value("elems").toArray().isEmpty())
        problem = name + ": empty \"elems\"";
    for (const QJsonValue& value : element.value("rp").toArray()) {
        const QJsonArray entry = value.toArray();
        const QJsonObject block = entry.at(2).toObject();
        if (entry.size() != 3 || !entry.at(0).isDouble() || !entry.at(1).isDouble() || block.isEmpty())
            problem = name + ": malformed \"rp\" entry";
        for (const QJsonValue& key : block.value("or").toArray())
            problem = key.isString() ? problem : name + ": \"or\" holds no key names";
        problem = problem.isEmpty() ? blockBreach(block, name + " rp") : problem;
    }
    for (const QJsonValue& child : element.value("elems").toArray())
        problem = problem.isEmpty() ? elementBreach(child.toObject(), name) : problem;
    return problem;
}

QString formBreach(const QJsonObject& data)
{
    QString problem;
    for (const QJsonValue& scene : data.value("scenes").toArray())
        problem = problem.isEmpty() ? elementBreach(scene.toObject(), QString()) : problem;
    return problem;
}

// A copy progress whose user gives up as soon as anything is copied.
class GivingUpProgress final : public ICopyProgress
{
public:
    void addCopiedBytes(qint64) override { m_handler(); }
    bool wasCanceled() const override { return false; }
    void setCancelHandler(std::function<void()> handler) override { m_handler = std::move(handler); }

private:
    std::function<void()> m_handler;
};

class GivingUpDialogs final : public IProjectDialogs
{
public:
    bool askProjectLocation(const QString&, const QString&, const QString&, QString*) override
    {
        return false;
    }
    ICopyProgress* createCopyProgress(const QString& label, qint64 nTotalBytes) override
    {
        m_strLabel = label;
        m_nTotal = nTotalBytes;
        return new GivingUpProgress;
    }
    QString m_strLabel;
    qint64 m_nTotal = 0;
};

} // namespace

class TestHtmlExport : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void engineAndTextRules();
    void sampleExport();
    void elementKinds_data();
    void elementKinds();
    void dataScriptForms();
    void loadScripts();
    void customTemplatesAndFonts();
    void hostileProjects();
    void failures();

private:
    // A copy of the welcome sample in a folder of its own, opened.
    std::unique_ptr<VTDocument> openSample(const QString& name);
    QString freshFolder(const QString& name) const { return QDir(m_dir.path()).filePath(name); }

    QTemporaryDir m_dir;
    QString m_strPlayer;
    QString m_strSample;
};

void TestHtmlExport::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", freshFolder("home").toLocal8Bit());
    m_strSample = QFINDTESTDATA("../../examples/welcome/welcome.vetra");
    const QString templates = QFINDTESTDATA("../../resources/canvas/player/vtplayer.html");
    const QString scope = QFINDTESTDATA("../../resources/canvas/vtscopeinjection.js");
    QVERIFY(!m_strSample.isEmpty() && !templates.isEmpty() && !scope.isEmpty());

    // The shared folder of the tests: the real templates and scope script, a stand-in player.
    const QString shared = freshFolder("share");
    m_strPlayer = shared + "/resources/canvas/player";
    QVERIFY(QDir().mkpath(m_strPlayer));
    QVERIFY(writeText(m_strPlayer + "/vtplayer.js", "var KorvelVetra = {loadedDocs: []};\n"));
    for (const QString& name : QStringList{"vtplayer.html", "vtplayer.css"})
        QVERIFY(
            QFile::copy(QFileInfo(templates).dir().filePath(name), m_strPlayer + QLatin1Char('/') + name));
    QVERIFY(QFile::copy(scope, shared + "/resources/canvas/vtscopeinjection.js"));
    qputenv("VETRA_RESOURCE_PATH", shared.toLocal8Bit());
}

void TestHtmlExport::init()
{
    VTEngine::setPath(QString());
    VTExportScripts::reloadScopeInjectionScript();
}

std::unique_ptr<VTDocument> TestHtmlExport::openSample(const QString& name)
{
    const QString folder = freshFolder(name);
    if (!IUtils::copyDir(QFileInfo(m_strSample).absolutePath(), folder))
        return nullptr;
    auto pDocument = std::make_unique<VTDocument>();
    pDocument->setFileName(QDir(folder).filePath("welcome.vetra"));
    return pDocument->open() ? std::move(pDocument) : nullptr;
}

void TestHtmlExport::engineAndTextRules()
{
    QCOMPARE(VTEngine::path(), m_strPlayer);
    QVERIFY(VTEngine::isValid());
    VTEngine::pathChanged();
    // A player folder must hold every file of the default one.
    const QString other = freshFolder("otherplayer");
    QVERIFY(writeText(other + "/vtplayer.js", "") && writeText(other + "/vtplayer.html", ""));
    VTEngine::setPath(other);
    QVERIFY(VTEngine::pathChanged() && !VTEngine::pathChanged());
    QVERIFY(!VTEngine::isValid());
    QVERIFY(writeText(other + "/vtplayer.css", ""));
    QVERIFY(VTEngine::isValid() && !VTEngine::isValidPath(QString()));

    for (const char* pszName : {"greet", "_a$1", "ñandú"})
        QVERIFY2(VTExportText::isValidScriptName(QString::fromUtf8(pszName)), pszName);
    for (const char* pszName : {"", "1a", "a-b", "a b", "class", "docData", "f", "x=alert(1)"})
        QVERIFY2(!VTExportText::isValidScriptName(pszName), pszName);
    for (const char* pszPath : {"", "resources", "a/b", "..a"})
        QVERIFY2(VTExportText::isSafeRelativeFolder(pszPath), pszPath);
    for (const char* pszPath : {"..", "a/../../b", "a\\..\\..\\b", "/tmp/x", "\\\\server\\x", "C:/x"})
        QVERIFY2(!VTExportText::isSafeRelativeFolder(pszPath), pszPath);
    QCOMPARE(VTExportScripts::stripComments("a// x\nb/* y\n*/c/* open"), QStringLiteral("abc"));
    const QStringList aligns{"horizontal", "vertical", "both", "none"};
    for (int i = 0; i < aligns.size(); ++i)
        QCOMPARE(VTHtmlExporter::convertAlignToString(QList<int>{4, 128, 132, 1}.at(i)), aligns.at(i));
}

void TestHtmlExport::sampleExport()
{
    MessageRecorder messages;
    const std::unique_ptr<VTDocument> pDocument = openSample("sample");
    QVERIFY(pDocument);
    const QStringList projectFiles = filesBelow(pDocument->getLocation());
    const QString out = freshFolder("sample-out");
    VTHtmlExporter exporter(*pDocument);
    QVERIFY(exporter.exportTo(out));
    QVERIFY2(messages.m_lstMessages.isEmpty(), qPrintable(messages.getTexts().join('\n')));
    const QStringList written = filesBelow(out);
    for (const char* pszName :
         {"vtplayer.js", "welcome.css", "welcome.html", "welcome.js", "resources/logo.svg"})
        QVERIFY2(written.contains(pszName), pszName);
    QCOMPARE(filesBelow(pDocument->getLocation()), projectFiles);
    QCOMPARE(readText(out + QStringLiteral("/resources/logo.svg")),
             readText(pDocument->getResourceFolderPath() + QStringLiteral("/logo.svg")));

    const QString page = readText(exporter.getPageFilePath(out));
    QVERIFY(!page.contains("{$"));
    QVERIFY(page.contains("<title>Welcome to Vetra Studio</title>"));
    QVERIFY(page.contains("<div id=\"wlcmStag\" class=\"vetra-container\">"));
    QVERIFY(page.contains(
        QStringLiteral("Vetra.openDoc('welcome.js', 'wlcmStag', {paused:false, preloaderOptions: "
                       "li, center: 'horizontal'});})(KorvelVetra);")));
    QVERIFY(!page.contains("fonts.googleapis.com"));

    const QString script = readText(out + "/welcome.js");
    QVERIFY(script.endsWith("\n\tdocData.f = f;\n\tVetra.loadedDocs.push(docData);\n}(KorvelVetra)); "));
    QVERIFY(script.contains(";\n\tvar vetra = Vetra;"));
    QVERIFY(!script.contains("comments are stripped"));
    const VTFunction* pGreet = pDocument->getFunctionManager()->getFunctions().first();
    QVERIFY(
        script.contains("}var f = [];\n\tvar greet = " + VTExportText::indentLines(pGreet->toString(true)) +
                        ";\n\tf.push([1, \"greet\", greet]);\n"));
    const QJsonObject data = docDataOf(script);
    QJsonObject head;
    for (const char* pszKey : {"v", "mpv", "w", "h", "dur", "resourceFolder", "cssUrl", "e"})
        head.insert(pszKey, data.value(pszKey));
    QCOMPARE(head, (QJsonObject{{"v", 3},
                                {"mpv", 2},
                                {"w", 800},
                                {"h", 600},
                                {"dur", pDocument->getSceneManager()->getTotalTimelineDuration()},
                                {"resourceFolder", "resources"},
                                {"cssUrl", "welcome.css"}}));
    QCOMPARE(data.value("b").toObject().value("h").toArray().size(), 2);
    QCOMPARE(data.value("scenes").toArray().size(), 2);
    QCOMPARE(formBreach(data), QString());
    // Every file the data names is where the page will look for it, and nothing else was copied.
    QStringList named;
    for (const QJsonValue& entry : data.value("resources").toArray()) {
        const QJsonValue files = entry.toArray().at(3);
        for (const QJsonValue& name : files.isArray() ? files.toArray() : QJsonArray{files})
            named += name.isString() ? QStringList{"resources/" + name.toString()} : QStringList();
    }
    named.sort();
    QCOMPARE(written.filter(QRegularExpression("^resources/")), named);
}

void TestHtmlExport::elementKinds_data()
{
    QTest::addColumn<int>("nScene");
    QTest::addColumn<int>("nElement");
    // Every element at the top of the sample's scenes: one of each kind.
    const std::unique_ptr<VTDocument> pSample = openSample("kinds");
    QVERIFY(pSample);
    const QList<VTScene*> scenes = pSample->getSceneManager()->getScenes();
    for (int i = 0; i < scenes.size(); ++i) {
        for (int j = 0; j < scenes.at(i)->getChildren().size(); ++j) {
            const VTElement* pElement = scenes.at(i)->getChildren().at(j);
            QTest::addRow("%s (kind %d)", qPrintable(pElement->getName()), int(pElement->getType()))
                << i << j;
        }
    }
}

void TestHtmlExport::elementKinds()
{
    QFETCH(int, nScene);
    QFETCH(int, nElement);
    const std::unique_ptr<VTDocument> pDocument =
        openSample(QStringLiteral("kind-%1-%2").arg(nScene).arg(nElement));
    QVERIFY(pDocument);
    // The project keeps one scene with one element.
    VTSceneManager* pScenes = pDocument->getSceneManager();
    VTScene* pScene = pScenes->getScenes().at(nScene);
    std::vector<std::unique_ptr<VTScene>> removedScenes;
    for (VTScene* pOther : pScenes->getScenes().mid(0)) {
        if (pOther != pScene && pScenes->detachScene(pOther) >= 0)
            removedScenes.emplace_back(pOther);
    }
    VTElement* pKept = pScene->getChildren().at(nElement);
    std::vector<std::unique_ptr<VTElement>> removedElements;
    for (VTElement* pChild : pScene->getChildren().mid(0)) {
        if (pChild != pKept && pScene->detachChild(pChild) >= 0)
            removedElements.emplace_back(pChild);
    }

    const QJsonObject data = docDataOf(VTExportScripts::createDataFileScript(*pDocument, false, false));
    const QJsonArray scenes = data.value("scenes").toArray();
    QCOMPARE(scenes.size(), 1);
    const QJsonArray elements = scenes.at(0).toObject().value("elems").toArray();
    QCOMPARE(elements.size(), 1);
    const QJsonObject element = elements.at(0).toObject();
    QCOMPARE(element.value("k").toInt(), static_cast<int>(pKept->getType()));
    QCOMPARE(element.value("n").toString(), pKept->getName());
    QCOMPARE(element.contains("elems"), !pKept->getChildren().isEmpty());
    QCOMPARE(formBreach(data), QString());
    // The player's form: every layout, with events.
    QJsonObject expected;
    pScene->serializeToExport(expected, false, true, true);
    QCOMPARE(scenes.at(0).toObject(), expected);
}

void TestHtmlExport::dataScriptForms()
{
    const std::unique_ptr<VTDocument> pDocument = openSample("forms");
    QVERIFY(pDocument);
    VTScene* pScene = pDocument->getSceneManager()->getScenes().first();
    VTElement* pTitle = pScene->getChildren().first();
    VTElementProperty* pBase = pTitle->getLayoutProperty(VTLayoutKey(0, 0));
    pBase->setUnitX(1);
    pBase->setPositionX(0.25);
    pBase->setUnitW(2);
    pBase->setSizeW(1.0);
    pBase->setTranslateX(5);
    // The narrow layout takes the shadow away.
    VTElementProperty* pNarrow = pTitle->getLayoutProperty(VTLayoutKey(1, 0));
    QVERIFY(pNarrow);
    pNarrow->setInherit(VT::PropShadowStyle, false);
    pDocument->getEventListenerList()->addEventListener(new VTEventListener());
    VTFunctionManager* pFunctions = pDocument->getFunctionManager();
    const std::unique_ptr<VTFunction> pRemoved(pFunctions->getFunctions().first());
    QVERIFY(pFunctions->detachFunction(pRemoved.get()) >= 0);

    const QString script = VTExportScripts::createDataFileScript(*pDocument, false, false);
    const QJsonObject data = docDataOf(script);
    QCOMPARE(formBreach(data), QString());
    const QJsonObject title =
        data.value("scenes").toArray().at(0).toObject().value("elems").toArray().at(0).toObject();
    const QJsonArray rect = title.value("r").toArray();
    QCOMPARE(rect.at(0).toString(), QStringLiteral("25%"));
    QCOMPARE(rect.at(2).toString(), QStringLiteral("100a"));
    QCOMPARE(title.value("t").toArray(), (QJsonArray{QJsonArray{5, 0, 0}}));
    bool bDropped = false;
    for (const QJsonValue& entry : title.value("rp").toArray()) {
        if (entry.toArray().at(0).toInt() == 1)
            bDropped = entry.toArray().at(2).toObject().value("or").toArray() == QJsonArray{"sh"};
    }
    QVERIFY(bDropped);
    QCOMPARE(data.value("e").toArray().first().toArray().first().toInt(), 100);
    QVERIFY(script.endsWith(QStringLiteral(
        "}var f = [];\n\tdocData.f = f;\n\tVetra.loadedDocs.push(docData);\n}(KorvelVetra)); ")));

    // Preview: the folder above the preview folder, and the current scene alone.
    pDocument->getSceneManager()->getScenes().at(1)->setSelected(true);
    const QJsonObject preview = docDataOf(VTExportScripts::createDataFileScript(*pDocument, true, true));
    QCOMPARE(preview.value("resourceFolder").toString(), QStringLiteral("../"));
    QCOMPARE(preview.value("scenes").toArray().size(), 1);

    // Without the scope script the data still loads: nothing stands between data and functions.
    qputenv("VETRA_RESOURCE_PATH", freshFolder("noscope").toLocal8Bit());
    VTExportScripts::reloadScopeInjectionScript();
    const QString bare = VTExportScripts::createDataFileScript(*pDocument, false, false);
    qputenv("VETRA_RESOURCE_PATH", freshFolder("share").toLocal8Bit());
    QCOMPARE(
        bare,
        s_strDataPrefix + VTExportScripts::createDocDataScript(*pDocument, false, false, false) +
            QStringLiteral(
                ";\n\tvar f = [];\n\tdocData.f = f;\n\tVetra.loadedDocs.push(docData);\n}(KorvelVetra)); "));
}

void TestHtmlExport::loadScripts()
{
    MessageRecorder messages;
    const QString folder = freshFolder("it's");
    QVERIFY(QDir().mkpath(folder));
    VTDocument document;
    document.setFileName(folder + "/it's.vetra");
    QVERIFY(document.openTempDocument(320, 200, 1, false));
    document.setContainerID("box");
    document.setAutoplay(false);
    document.setAlignment(132);
    document.setAutofit(true);
    VTHtmlExporter exporter(document);
    QCOMPARE(exporter.createLoadScript(false),
             QStringLiteral(
                 "(function(Vetra) {\n\tvar li = {\"color\":\"#2090e6\",\"density\":9,\"diameter\":60,"
                 "\"range\":1,\"shape\":\"oval\",\"speed\":1};\n\tVetra.openDoc('it\\'s.js', 'box', "
                 "{paused:true, preloaderOptions: li, center: 'both', autofit: true});})(KorvelVetra);"));

    // A custom preloader travels inside the load script, with its own events and functions.
    document.setLoaderType(VT::CustomPreloader);
    QVERIFY(document.initPreloaderDocument());
    VTPreloader* pPreloader = document.getPreloaderDoc();
    pPreloader->getEventListenerList()->addEventListener(new VTEventListener());
    std::unique_ptr<VTFunction> pFunction = VTFunction::createFunction(VTFunctionData::NormalFunction);
    pFunction->setName("spin");
    pFunction->setContent("var s = '</script><script>alert(1)';");
    pPreloader->getFunctionManager()->addFunction(pFunction.release());
    const QString script = exporter.createLoadScript(false);
    QVERIFY(script.startsWith("(function(Vetra) {\n\tpreloaderDocData = {"));
    QVERIFY(script.contains("\n\tvar vetra = Vetra;"));
    QVERIFY(script.contains("var s = '<\\/script><script>alert(1)';"));
    QVERIFY(!script.contains("</script"));
    QVERIFY(script.contains("\n\tpreloaderDocData.f = f;\n\tpreloaderDocData.li = {"));
    QVERIFY(script.endsWith(
        QStringLiteral("\n\tVetra.openDoc('it\\'s.js', 'box', {paused:true, preloaderDoc: "
                       "preloaderDocData, center: 'both', autofit: true});})(KorvelVetra);")));
    const int nStart = script.indexOf(QLatin1Char('{'), script.indexOf("preloaderDocData = "));
    const QJsonObject preloaderData =
        QJsonDocument::fromJson(script.mid(nStart, script.indexOf(";\n\t", nStart) - nStart).toUtf8())
            .object();
    QCOMPARE(preloaderData.value("resourceFolder").toString(), QStringLiteral("preloader_resources"));
    QVERIFY(preloaderData.contains("pe") && !preloaderData.contains("e"));
    pPreloader->setUseLoadingIndicator(false);
    QVERIFY(exporter.createLoadScript(true).contains("\"resourceFolder\":\"../preloader/preloader_res\""));
    QVERIFY(exporter.createLoadScript(true).contains("\n\tpreloaderDocData.li = false;\n\t"));

    // Its resources go to a folder of their own; the document has none and gets no folder.
    auto* pDot = new VTResource(VTResource::Image);
    pDot->setFileName("dot.png");
    pDot->setName("dot");
    QVERIFY(writeText(pPreloader->getResourceManager()->getTempPath() + "dot.png", "png"));
    pPreloader->getResourceManager()->addResource(pDot);
    const QString out = freshFolder("preloaded-out");
    QVERIFY(exporter.exportResources(QDir(out)));
    QCOMPARE(filesBelow(out), QStringList{QStringLiteral("preloader_resources/dot.png")});

    // The preloader in its own editor opens by itself.
    VTHtmlExporter preloaderExporter(*pPreloader);
    pPreloader->setContainerID("pre");
    QCOMPARE(preloaderExporter.createLoadScript(true),
             QStringLiteral("(function(Vetra){\n\tVetra.openDoc('preloader.js', 'pre', {paused:false, "
                            "center:'horizontal', resourceFolder: ''});\n})(KorvelVetra);"));
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestHtmlExport::customTemplatesAndFonts()
{
    MessageRecorder messages;
    const std::unique_ptr<VTDocument> pDocument = openSample("custom");
    QVERIFY(pDocument);
    pDocument->setHtmlOutput(
        "<h1>{$title}</h1>{$googleFonts}{$unknown}<script>{$loadDocumentScript}</script>");
    pDocument->setCssDoc("/* mine */{$systemFonts}.x{}");
    pDocument->setEmbedSystemFont(true);

    // One web font that a text uses, one that none does.
    auto* pInfo = new VTGoogleFontInfo;
    pInfo->setFamily("Open Sans");
    pInfo->setVariants({"regular", "700"});
    auto* pUsed = new VTFontResource;
    pUsed->setGoogleFontInfo(pInfo);
    auto* pUnused = new VTFontResource;
    pUnused->setGoogleFontInfo(pInfo->clone());
    pUnused->getGoogleFontInfo()->setFamily("Lobster");
    pDocument->getResourceManager()->addResource(pUnused);
    VTHtmlExporter exporter(*pDocument);
    QCOMPARE(exporter.getStringIncludeHeaderGoogleFont(), QString());
    pDocument->getResourceManager()->addResource(pUsed);
    auto* pTitle =
        qobject_cast<VTText*>(pDocument->getSceneManager()->getScenes().first()->getChildren().first());
    QVERIFY(pTitle);
    pTitle->setFontFamily("Open Sans", VTLayoutKey(0, 0));

    // Each system font becomes a file and a face; a stale file of an earlier export goes.
    const QString out = freshFolder("custom-out");
    QVERIFY(writeText(out + "/resources/old.woff", "old"));
    QStringList converted;
    exporter.setFontConverter([&converted](const QString& family, const QString& path, bool, bool) {
        converted.append(family);
        return writeText(path, "woff");
    });
    QVERIFY(exporter.exportTo(out));
    QVERIFY2(messages.m_lstMessages.isEmpty(), qPrintable(messages.getTexts().join('\n')));
    QVERIFY(QFileInfo::exists(out + "/vtplayer.js"));
    const QString page = readText(exporter.getPageFilePath(out));
    QVERIFY(
        page.startsWith(QStringLiteral("<h1>Welcome to Vetra Studio</h1><link href = "
                                       "\"https://fonts.googleapis.com/css?family=Open+Sans:400,700\" rel = "
                                       "\"stylesheet\">{$unknown}<script>(function(Vetra) {")));
    QVERIFY(!QFileInfo::exists(out + "/resources/old.woff"));
    // The web font is linked, not embedded; every other family is.
    QCOMPARE(converted.size(), exporter.getSystemFonts().size());
    QVERIFY(!converted.isEmpty() && !converted.contains("Open Sans"));
    const VTExportedFontInfo first = exporter.getSystemFonts().first();
    const QString fileName =
        (first.family + (first.bold ? "_Bold" : "") + (first.italic ? "_Italic" : "") + ".woff").toLower();
    QVERIFY(QFileInfo::exists(out + "/resources/" + fileName));
    const QString css = readText(out + "/welcome.css");
    const QString face =
        QStringLiteral("/* mine */@font-face{\n    font-family: '%1';\n    font-style: %2;\n    "
                       "font-weight: %3;\n    src: local('%4'),\n         url('resources/%5');\n}\n")
            .arg(first.family, first.italic ? "italic" : "normal", first.bold ? "700" : "400",
                 first.family + (first.bold ? " Bold" : "") + (first.italic ? " Italic" : ""), fileName);
    QVERIFY2(css.startsWith(face), qPrintable(css));
    QVERIFY(css.endsWith("}\n.x{}"));

    // Without a converter nothing is embedded, and a preview never embeds.
    VTHtmlExporter plain(*pDocument);
    QVERIFY(plain.exportTo(freshFolder("plain-out")));
    QCOMPARE(readText(freshFolder(QStringLiteral("plain-out/welcome.css"))),
             QStringLiteral("/* mine */.x{}"));
    QCOMPARE(exporter.getCSSContent(true), QStringLiteral("/* mine */.x{}"));
}

void TestHtmlExport::hostileProjects()
{
    MessageRecorder messages;
    const std::unique_ptr<VTDocument> pDocument = openSample("hostile");
    QVERIFY(pDocument);
    pDocument->setTitle("</title><script>alert(1)</script>{$containerID}");
    pDocument->setDescription("\" onload=\"x");
    pDocument->setContainerID("a'</script>\"");
    const QString out = freshFolder("hostile-out");
    VTHtmlExporter exporter(*pDocument);
    QVERIFY(exporter.exportTo(out));
    const QString page = readText(exporter.getPageFilePath(out));
    QVERIFY(
        page.contains("<title>&lt;/title&gt;&lt;script&gt;alert(1)&lt;/script&gt;{$containerID}</title>"));
    QVERIFY(page.contains("content=\"&quot; onload=&quot;x\""));
    QVERIFY(page.contains("<div id=\"a&#39;&lt;/script&gt;&quot;\""));
    QVERIFY(page.contains("Vetra.openDoc('welcome.js', 'a\\'\\x3C/script>\\\"'"));
    QCOMPARE(page.count(QStringLiteral("</script>")), 2);

    // Refusals come before the first file is written, and nothing lands outside the folder.
    const auto refused = [&](const QString& name, const QString& expected) {
        messages.clear();
        const QString target = freshFolder(QStringLiteral("refused-%1").arg(name));
        const bool bExported = VTHtmlExporter(*pDocument).exportTo(target);
        return !bExported && filesBelow(target).isEmpty() && messages.getTexts().size() == 1 &&
               messages.getTexts().first().contains(expected) &&
               messages.m_lstTitles.first() == "Vetra Studio";
    };
    const QStringList before = filesBelow(m_dir.path());
    for (const QString& folder : QStringList{"../escaped", freshFolder("escaped"), "res/../../escaped"}) {
        pDocument->setResFolderHTML5Output(folder);
        QVERIFY2(refused(QString::number(qHash(folder)), folder), qPrintable(folder));
    }
    pDocument->setResFolderHTML5Output("resources");
    QCOMPARE(filesBelow(m_dir.path()), before);
    pDocument->getFunctionManager()->getFunctions().first()->setName("go(); alert");
    QVERIFY(refused("function", "\"go(); alert\""));
    pDocument->getFunctionManager()->getFunctions().first()->setName("greet");

    // A resource name with separators stays one file inside the folder.
    pDocument->getResourceManager()->findResourceById(1)->setName("../../evil.svg");
    const QString named = freshFolder("named-out");
    QVERIFY(VTHtmlExporter(*pDocument).exportTo(named));
    QVERIFY(filesBelow(named).contains("resources/.._.._evil.svg"));

    // A folder that links out of the export is not written through.
    const QString linked = freshFolder("linked-out");
    const QString elsewhere = freshFolder("elsewhere");
    QVERIFY(QDir().mkpath(linked) && QDir().mkpath(elsewhere));
    QVERIFY(QFile::link(elsewhere, linked + "/resources"));
    messages.clear();
    QVERIFY(!VTHtmlExporter(*pDocument).exportTo(linked));
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("Cannot create folder to export resources.")});
    QVERIFY(filesBelow(elsewhere).isEmpty());
}

void TestHtmlExport::failures()
{
    MessageRecorder messages;
    const std::unique_ptr<VTDocument> pDocument = openSample("failing");
    QVERIFY(pDocument);
    VTHtmlExporter exporter(*pDocument);
    const auto expectFailure = [&](const std::function<bool()>& step, const QString& text) {
        messages.clear();
        return !step() && messages.getTexts() == QStringList{text};
    };
    const QString out = freshFolder("failing-out");
    QVERIFY(QDir().mkpath(out));

    const QString empty = freshFolder("emptyplayer");
    QVERIFY(QDir().mkpath(empty));
    VTEngine::setPath(empty);
    QVERIFY(expectFailure([&] { return exporter.exportPlayerFile(out); },
                          "Player file is undefined or inaccessible."));
    QVERIFY(expectFailure([&] { return exporter.exportHtmlFile(out, false); },
                          "Player file is undefined or inaccessible."));
    VTEngine::setPath(QString());

    QVERIFY(QDir().mkpath(out + "/welcome.js"));
    QVERIFY(
        expectFailure([&] { return exporter.exportDataFile(out, false, false); }, "Cannot write data file."));
    QVERIFY(QDir().mkpath(out + "/welcome.html"));
    QVERIFY(expectFailure(
        [&] { return exporter.exportHtmlFile(out, false); },
        QStringLiteral("Error when writing player file.\nThe file is open in another process or "
                       "inaccessible.")));
    QVERIFY(writeText(out + "/resources", "a file"));
    QVERIFY(expectFailure([&] { return exporter.exportResources(QDir(out)); },
                          "Cannot create folder to export resources."));

    // A missing file fails the step, but the others are still written.
    const QString resources = freshFolder("failing-res");
    QVERIFY(QFile::remove(pDocument->getResourceFolderPath() + "/chime.mp3"));
    QVERIFY(expectFailure([&] { return exporter.exportResources(QDir(resources)); },
                          "Error while exporting resource files."));
    QVERIFY(filesBelow(resources).contains("resources/logo.svg"));
    QVERIFY(!filesBelow(resources).contains("resources/chime.mp3"));

    // Above 20 MiB the copy shows its progress, and giving up stops it without a message.
    QVERIFY(writeText(pDocument->getResourceFolderPath() + "/big.png", QByteArray(21 * 1024 * 1024, 'x')));
    auto* pBig = new VTResource(VTResource::Image);
    pBig->setFileName("big.png");
    pBig->setName("big.png");
    pDocument->getResourceManager()->addResource(pBig);
    QVERIFY(writeText(pDocument->getResourceFolderPath() + "/chime.mp3", "mp3"));
    GivingUpDialogs dialogs;
    IProjectDialogs* pPrevious = IProjectDialogs::instance();
    IProjectDialogs::setInstance(&dialogs);
    messages.clear();
    const QString cancelled = freshFolder("cancelled");
    const bool bExported = exporter.exportResources(QDir(cancelled));
    IProjectDialogs::setInstance(pPrevious);
    QVERIFY(!bExported);
    QVERIFY(messages.m_lstMessages.isEmpty());
    QCOMPARE(dialogs.m_strLabel, QStringLiteral("Exporting to HTML5..."));
    QVERIFY(dialogs.m_nTotal > 21 * 1024 * 1024);
    QCOMPARE(filesBelow(cancelled), QStringList());
}

QTEST_MAIN(TestHtmlExport)
#include "tst_htmlexport.moc"
