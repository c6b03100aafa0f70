#include "MediaResource.h"
#include "MessageRecorder.h"
#include "ScriptedProjectDialogs.h"
#include "VTApplicationFonts.h"
#include "VTDocument.h"
#include "VTFileLocker.h"
#include "VTFontResource.h"
#include "VTGoogleFontInfo.h"
#include "VTOtherResource.h"
#include "VTResourceManager.h"
#include "VTSymbol.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

namespace {

bool writeBytes(const QString& filePath, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

QByteArray readBytes(const QString& filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject entry(int nId, int nType, const QString& name, const QString& fileName)
{
    return {{"id", nId},           {"uuid", QUuid::createUuid().toString()},
            {"name", name},        {"deleted", false},
            {"type", nType},       {"dataSize", 4.0},
            {"fileName", fileName}};
}

// A project folder N/ with N.vetra listing the given resources, and their files written.
QString writeProject(const QString& root, const QJsonArray& resources, const QStringList& files,
                     int nVersion = 3)
{
    const QString folder = root + QStringLiteral("/show");
    for (const QString& file : files)
        writeBytes(folder + QStringLiteral("/show_res/") + file, file.toUtf8());
    QDir().mkpath(folder + QStringLiteral("/show_res"));
    const QJsonObject document{
        {"docVersion", nVersion}, {"width", 640}, {"height", 480}, {"resources", resources}};
    const QString path = folder + QStringLiteral("/show.vetra");
    writeBytes(path,
               QJsonDocument(QJsonObject{{"appName", QStringLiteral("Vetra Studio")}, {"document", document}})
                   .toJson(QJsonDocument::Compact));
    return path;
}

QJsonArray savedResources(VTDocument& document)
{
    QJsonObject root;
    document.saveData(root);
    return root.value("document").toObject().value("resources").toArray();
}

// Cancels the copy once the first chunk has gone through, as a user pressing Abort would.
class CancellingProgress final : public ICopyProgress
{
public:
    void addCopiedBytes(qint64 nBytes) override
    {
        m_nBytes += nBytes;
        if (m_handler)
            m_handler();
    }
    bool wasCanceled() const override { return m_nBytes > 0; }
    void setCancelHandler(std::function<void()> handler) override { m_handler = std::move(handler); }

    qint64 m_nBytes = 0;
    std::function<void()> m_handler;
};

class ProgressDialogs final : public IProjectDialogs
{
public:
    ProgressDialogs() { IProjectDialogs::setInstance(this); }
    ~ProgressDialogs() override { IProjectDialogs::setInstance(nullptr); }
    bool askProjectLocation(const QString&, const QString&, const QString&, QString*) override
    {
        return false;
    }
    ICopyProgress* createCopyProgress(const QString&, qint64 nTotal) override
    {
        m_lstTotals << nTotal;
        return new CancellingProgress();
    }
    QList<qint64> m_lstTotals;
};

} // namespace

class TestResources : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void namingCollisions();
    void importCopiesLocksAndCancels();
    void roundTripOfEveryKind();
    void scriptOrderSurvivesSavesAndDeletion();
    void hostileFileNamesNeverLeaveTheFolder();
    void brokenEntriesAreReportedNotFatal();
    void deletedResourcesStayUntilClose();
    void exportFormsAndUrls();
    void oldHashedFilesAreMigrated();
    void googleFontQueries();
    void fontsRegisterAndPixmapsLoad();
    void symbolResourcesKeepTheirFiles();
    void folderCopies();

private:
    QTemporaryDir m_tmp;
};

void TestResources::init()
{
    QVERIFY(m_tmp.isValid());
}

void TestResources::namingCollisions()
{
    QTemporaryDir dir;
    VTDocument document;
    document.setFileName(dir.filePath("n/n.vetra"));
    QVERIFY(document.openTempDocument(100, 100, 1, false));
    VTResourceManager* pManager = document.getResourceManager();

    auto* pImage = new VTResource(VTResource::Image);
    pImage->setFileName("photo.png");
    pImage->setName("photo.png");
    pManager->addResource(pImage);
    // Case does not make a name free: folders on other systems ignore it.
    QCOMPARE(pManager->getValidFileName("Photo.PNG"), QStringLiteral("Photo_1.PNG"));
    // The names of the folders the project keeps inside its resource folder.
    QCOMPARE(pManager->getValidFileName("preview"), QStringLiteral("preview_1"));
    QCOMPARE(pManager->getValidFileName("preloader"), QStringLiteral("preloader_1"));
    QCOMPARE(pManager->getValidFileName("a:b*c?.png"), QStringLiteral("a_b_c_.png"));
    // A deleted resource keeps its name until it is gone, so undo can bring it back.
    pImage->setDeleted(true);
    QCOMPARE(pManager->getValidFileName("photo.png"), QStringLiteral("photo_1.png"));
    QVERIFY(!pManager->findResourceByFileName("photo.png"));
    QCOMPARE(pManager->findResourceByUuid(pImage->getUuid()), pImage);
    // A file put in the folder by hand is never overwritten by an import.
    QVERIFY(writeBytes(document.getResourceFolderPath() + "/loose.js", "x"));
    QCOMPARE(pManager->getValidFileName("loose.js"), QStringLiteral("loose_1.js"));

    // Media compare only the file of their own format.
    auto* pVideo = new MediaResource(VTResource::Video);
    pVideo->setFileName("clip.mp4");
    pManager->addResource(pVideo);
    QCOMPARE(pManager->getValidFileName("clip.webm"), QStringLiteral("clip.webm"));
    QCOMPARE(pManager->getValidFileName("clip.mp4"), QStringLiteral("clip_1.mp4"));

    // Display names: the suffix tells a.jpg and a.png apart better than a number.
    auto* pPng = new VTResource(VTResource::Image);
    pPng->setFileName("a.png");
    pPng->setName("a");
    pManager->addResource(pPng);
    auto* pJpg = new VTResource(VTResource::Image);
    pJpg->setFileName("a.jpg");
    pManager->addResource(pJpg);
    QCOMPARE(pManager->getValidResourceName("a", pJpg), QStringLiteral("a.jpg"));
    QCOMPARE(pManager->getValidResourceName("a"), QStringLiteral("a_1"));
    QCOMPARE(pManager->getValidResourceName("a", pPng), QStringLiteral("a"));

    // Ids: registration fills the next free id and never replaces a registered resource.
    auto* pFixed = new VTResource(VTResource::Other);
    pFixed->setId(40);
    pManager->addResource(pFixed);
    auto* pClash = new VTResource(VTResource::Other);
    pClash->setId(40);
    pManager->addResource(pClash);
    QCOMPARE(pFixed->getId(), 40);
    QCOMPARE(pClash->getId(), 41);
    QCOMPARE(pManager->findResourceById(40), pFixed);
    document.close();
}

void TestResources::importCopiesLocksAndCancels()
{
    QTemporaryDir dir;
    MessageRecorder messages;
    VTDocument document;
    document.setFileName(dir.filePath("n/n.vetra"));
    QVERIFY(document.openTempDocument(100, 100, 1, false));
    VTResourceManager* pManager = document.getResourceManager();
    const QString source = dir.filePath("in/Photo.PNG");
    QVERIFY(writeBytes(source, "image bytes"));

    auto* pImage = new VTResource(VTResource::Image);
    QVERIFY(pManager->addResource(pImage, source));
    const QString imported = pManager->getAbsTempFilename(pImage);
    QCOMPARE(QFileInfo(imported).fileName(), QStringLiteral("Photo.PNG"));
    QCOMPARE(readBytes(imported), QByteArray("image bytes"));
    QVERIFY(document.getFileLocker()->isLocked(imported));
    QVERIFY(document.getFileHistory().contains("n_res/Photo.PNG"));
    QCOMPARE(pManager->findResourceById(pImage->getId()), pImage);
    // Importing the same file twice makes two resources with two files.
    auto* pAgain = new VTResource(VTResource::Image);
    QVERIFY(pManager->addResource(pAgain, source));
    QCOMPARE(pAgain->getFileName(), QStringLiteral("Photo_1.PNG"));
    QCOMPARE(pManager->getDataSize(pImage, false), qint64(11));

    auto* pMissing = new VTResource(VTResource::Image);
    QVERIFY(!pManager->addResource(pMissing, dir.filePath("in/none.png")));
    delete pMissing;

    // Media gather one file per format.
    auto* pAudio = new MediaResource(VTResource::Audio);
    QVERIFY(writeBytes(dir.filePath("in/song.mp3"), "mp3"));
    QVERIFY(writeBytes(dir.filePath("in/song.ogg"), "ogg!"));
    QVERIFY(pManager->addResource(pAudio, dir.filePath("in/song.mp3")));
    QVERIFY(pManager->addResource(pAudio, dir.filePath("in/song.ogg")));
    QCOMPARE(pAudio->getExistedFormat(),
             (QList<MediaResource::MediaFormat>{MediaResource::Mp3, MediaResource::Ogg}));
    QCOMPARE(pManager->getDataSize(pAudio, false), qint64(7));
    QCOMPARE(pManager->getAbsTempFilenames(pAudio).size(), 2);

    // A large copy shows progress; cancelling it leaves no file and no registration.
    const QString big = dir.filePath("in/big.mp4");
    {
        QFile file(big);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(VTResourceManager::getMinimumDatasizeToShow() + 1));
    }
    ProgressDialogs progress;
    const int nBefore = pManager->getIdResourceMap().size();
    auto* pVideo = new MediaResource(VTResource::Video);
    QVERIFY(!pManager->addResource(pVideo, big));
    QCOMPARE(progress.m_lstTotals, (QList<qint64>{VTResourceManager::getMinimumDatasizeToShow() + 1}));
    QVERIFY(!QFileInfo::exists(document.getResourceFolderPath() + "/big.mp4"));
    QVERIFY(pVideo->getExistedFormat().isEmpty());
    QCOMPARE(pManager->getIdResourceMap().size(), nBefore);
    delete pVideo;

    // Exactly the limit copies without asking for a dialog.
    {
        QFile file(big);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(VTResourceManager::getMinimumDatasizeToShow()));
    }
    auto* pVideo2 = new MediaResource(VTResource::Video);
    QVERIFY(pManager->addResource(pVideo2, big));
    QCOMPARE(progress.m_lstTotals.size(), 1);

    // Saving a copy out of the project.
    const QString exported = dir.filePath("out/copy.ogg");
    QDir().mkpath(dir.filePath("out"));
    QVERIFY(pManager->saveResourceAsFile(pAudio, exported));
    QCOMPARE(readBytes(exported), QByteArray("ogg!"));
    document.close();
}

void TestResources::roundTripOfEveryKind()
{
    QTemporaryDir dir;
    MessageRecorder messages;
    QJsonObject video = entry(3, 2, "clip", QString());
    video.remove("fileName");
    video.insert("fileNames", QJsonArray{"clip.mp4", "clip.webm"});
    video.insert("mediaW", 640);
    video.insert("mediaH", 360);
    QJsonObject audio = entry(2, 1, "song", QString());
    audio.remove("fileName");
    audio.insert("fileNames", QJsonArray{"song.mp3"});
    QJsonObject font = entry(4, 4, "Lobster", "Lobster.ttf");
    font.insert("googlefont", QJsonObject{{"family", "Lobster"},
                                          {"category", "display"},
                                          {"subsets", QJsonArray{"latin"}},
                                          {"variants", QJsonArray{"regular", "700italic"}},
                                          {"files", QJsonObject{{"regular", "http://x/l.ttf"}}}});
    QJsonObject script = entry(5, 5, "app.js", "app.js");
    script.insert("resourceType", 0);
    script.insert("includeHeader", true);
    QJsonObject url = entry(6, 5, "lib", "https://example.invalid/lib.js");
    url.insert("resourceType", 1);
    url.insert("includeHeader", false);
    QJsonObject css = entry(7, 6, "look.css", "look.css");
    css.insert("resourceType", 2);
    css.insert("includeHeader", true);
    QJsonObject html = entry(8, 7, "page.html", "page.html");
    html.insert("resourceType", 4);
    const QJsonArray resources{
        entry(1, 0, "logo.png", "logo.png"),  audio, video, font, script, url, css, html,
        entry(9, 8, "notes.txt", "notes.txt")};
    const QString path = writeProject(m_tmp.path() + "/kinds", resources,
                                      {"logo.png", "song.mp3", "clip.mp4", "clip.webm", "Lobster.ttf",
                                       "app.js", "look.css", "page.html", "notes.txt"});
    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    QVERIFY2(document.getLoadProblems().isEmpty(), qPrintable(document.getLoadProblems().join('\n')));
    QVERIFY(messages.m_lstMessages.isEmpty());
    QCOMPARE(savedResources(document), resources);

    VTResourceManager* pManager = document.getResourceManager();
    auto* pVideo = static_cast<MediaResource*>(pManager->findResourceById(3));
    QCOMPARE(pVideo->getSize(), QSize(640, 360));
    QCOMPARE(pManager->findResourceById(5)->getUsageCount(), 1);
    QCOMPARE(pManager->findResourceById(6)->getUsageCount(), 0);
    QVERIFY(!pManager->findResourceById(4)->acceptDrag());
    QVERIFY(pManager->findResourceById(8)->acceptDrag());
    QVERIFY(!pManager->findResourceById(9)->acceptDrag());
    QCOMPARE(static_cast<VTOtherResource*>(pManager->findResourceById(5))->getContent(),
             QStringLiteral("app.js"));
    // Every file with a file is locked; the URL script has none to check or lock.
    QCOMPARE(pManager->getAbsTempFilenames(true, false).size(), 9);
    for (const QString& file : pManager->getAbsTempFilenames(true, false))
        QVERIFY2(document.getFileLocker()->isLocked(file), qPrintable(file));

    // A clone is a new resource with the same identity and no uses.
    VTResource* pClone = pManager->findResourceById(5)->clone();
    QCOMPARE(pClone->getId(), -1);
    QCOMPARE(pClone->getUsageCount(), 0);
    QCOMPARE(pClone->getUuid(), pManager->findResourceById(5)->getUuid());
    delete pClone;

    // mediaW without mediaH leaves the size invalid.
    QJsonObject half = video;
    half.remove("mediaH");
    half.insert("id", 10);
    half.insert("uuid", QUuid::createUuid().toString());
    VTDocument other;
    other.setFileName(writeProject(m_tmp.path() + "/half", {half}, {"clip.mp4", "clip.webm"}));
    QVERIFY(other.open());
    QVERIFY(!static_cast<MediaResource*>(other.getResourceManager()->findResourceById(10))->hasValidSize());
    other.close();
    document.close();
}

void TestResources::scriptOrderSurvivesSavesAndDeletion()
{
    QTemporaryDir dir;
    VTDocument document;
    document.setFileName(dir.filePath("n/n.vetra"));
    QVERIFY(document.openTempDocument(100, 100, 1, false));
    VTResourceManager* pManager = document.getResourceManager();
    QList<VTResource*> scripts;
    for (const char* pszName : {"a.js", "b.js", "c.js"}) {
        QVERIFY(writeBytes(dir.filePath(pszName), pszName));
        auto* pScript = new VTOtherResource(VTResource::Script);
        QVERIFY(pManager->addResource(pScript, dir.filePath(pszName)));
        pScript->setName(pszName);
        scripts << pScript;
    }
    QVERIFY(pManager->setJsCssResourceOrder(scripts[2], 0));
    QVERIFY(!pManager->setJsCssResourceOrder(scripts[0], 3));
    QVERIFY(!pManager->setJsCssResourceOrder(nullptr, 0));
    QCOMPARE(pManager->getJsCssResourceOrder(scripts[2]), 0);
    const auto names = [](const QJsonArray& array) {
        QStringList list;
        for (const QJsonValue& value : array)
            list << value.toObject().value("name").toString();
        return list;
    };
    QVERIFY(document.save());
    QCOMPARE(names(savedResources(document)), (QStringList{"c.js", "a.js", "b.js"}));

    VTDocument reopened;
    reopened.setFileName(document.getFileName());
    document.close();
    QVERIFY(reopened.open());
    QCOMPARE(names(savedResources(reopened)), (QStringList{"c.js", "a.js", "b.js"}));
    // A script deleted in between drops out without shifting the others.
    reopened.getResourceManager()->findResourceByName("a.js")->setDeleted(true);
    QCOMPARE(names(savedResources(reopened)), (QStringList{"c.js", "b.js"}));
    reopened.close();
}

void TestResources::hostileFileNamesNeverLeaveTheFolder()
{
    MessageRecorder messages;
    const QString root = m_tmp.path() + "/hostile";
    const QString outside = root + "/secret.png";
    QVERIFY(writeBytes(outside, "do not touch"));
    const QString folder = root + "/show/show_res";
    QDir().mkpath(folder);
    QVERIFY(QFile::link(outside, folder + "/link.png"));
    const QJsonArray resources{entry(1, 0, "up", "../secret.png"),
                               entry(2, 0, "abs", outside),
                               entry(3, 0, "link", "link.png"),
                               entry(4, 0, "back", "..\\secret.png"),
                               entry(5, 0, "nested", "sub/../../secret.png"),
                               entry(6, 0, "ok", "fine.png")};
    const QString path = writeProject(root, resources, {"fine.png"});

    // A project that refuses to go on with missing files does not open.
    messages.m_lstAnswers << IMessageBox::No;
    VTDocument refused;
    refused.setFileName(path);
    QVERIFY(!refused.open());

    QVERIFY(readBytes(path).contains("secret"));
    messages.clear();
    messages.m_lstAnswers << IMessageBox::Yes;
    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    QCOMPARE(messages.getTexts(MessageRecorder::Question),
             QStringList{"Some resource files cannot be loaded.\nDo you want to continue?"});
    QCOMPARE(document.getResourceManager()->getIdResourceMap().keys(), QList<int>{6});
    const QString problems = document.getLoadProblems().join('\n');
    for (const char* pszName : {"up", "abs", "link", "back", "nested"})
        QVERIFY2(problems.contains(QStringLiteral("\"%1\"").arg(pszName)), qPrintable(problems));
    for (const QString& locked : document.getFileLocker()->getLockedFiles())
        QVERIFY2(!locked.contains("secret") && !locked.contains("link.png"), qPrintable(locked));

    // Saving, saving elsewhere and closing leave the outside file alone.
    QVERIFY(document.save());
    QVERIFY(QDir().mkpath(root + "/copy"));
    QVERIFY(document.save(root + "/copy/copy.vetra"));
    document.close();
    QCOMPARE(readBytes(outside), QByteArray("do not touch"));
    QVERIFY(QFileInfo(folder + "/link.png").isSymLink());
    QVERIFY(!QFileInfo::exists(root + "/copy/copy_res/link.png"));

    // Names made for export stay inside the export folder.
    VTResource resource(VTResource::Image);
    resource.setName("../../evil");
    resource.setFileName("evil.png");
    QVERIFY(!resource.getFileName4Export().contains('/'));
    resource.setName("..");
    QVERIFY(resource.getFileName4Export() != "..");
    resource.setName("a\\b.png");
    QCOMPARE(resource.getFileName4Export(), QStringLiteral("a_b.png"));
}

void TestResources::brokenEntriesAreReportedNotFatal()
{
    MessageRecorder messages;
    messages.m_lstAnswers << IMessageBox::Yes;
    QJsonObject noUuid = entry(3, 0, "nouuid", "c.png");
    noUuid.remove("uuid");
    QJsonObject hugeSize = entry(6, 0, "size", "f.png");
    hugeSize.insert("dataSize", -5.0);
    const QJsonArray resources{entry(-1, 0, "noid", "a.png"),
                               entry(2, 42, "alien", "b.png"),
                               noUuid,
                               QJsonValue("text"),
                               entry(7, 0, "dup1", "d.png"),
                               entry(7, 0, "dup2", "e.png"),
                               hugeSize,
                               QJsonObject{{"id", "x"}, {"type", 0}}};
    const QString path = writeProject(m_tmp.path() + "/broken", resources,
                                      {"a.png", "b.png", "c.png", "d.png", "e.png", "f.png"});
    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    VTResourceManager* pManager = document.getResourceManager();
    QCOMPARE(pManager->getIdResourceMap().keys(), (QList<int>{6, 7}));
    QCOMPARE(pManager->findResourceById(7)->getName(), QStringLiteral("dup1"));
    QCOMPARE(pManager->findResourceById(6)->getDataSize(), qint64(0));
    QCOMPARE(document.getLoadProblems().filter("left out").size(), 6);
    // Files of dropped entries are not the project's: closing leaves them.
    document.close();
    QVERIFY(QFileInfo::exists(m_tmp.path() + "/broken/show/show_res/e.png"));
    QVERIFY(QFileInfo::exists(m_tmp.path() + "/broken/show/show_res/b.png"));
}

void TestResources::deletedResourcesStayUntilClose()
{
    MessageRecorder messages;
    const QString path =
        writeProject(m_tmp.path() + "/deleted", {entry(1, 0, "a", "a.png"), entry(2, 0, "b", "b.png")},
                     {"a.png", "b.png"});
    const QString folder = m_tmp.path() + "/deleted/show/show_res/";
    {
        VTDocument document;
        document.setFileName(path);
        QVERIFY(document.open());
        VTResource* pA = document.getResourceManager()->findResourceById(1);
        pA->setDeleted(true);
        QVERIFY(document.save());
        QCOMPARE(savedResources(document).size(), 1);
        QVERIFY(QFileInfo::exists(folder + "a.png"));
        // Brought back by undo: saved again, file still there.
        pA->setDeleted(false);
        QVERIFY(document.save());
        QCOMPARE(savedResources(document).size(), 2);
        pA->setDeleted(true);
        QVERIFY(document.save());
        document.close();
    }
    QVERIFY(!QFileInfo::exists(folder + "a.png"));
    QVERIFY(QFileInfo::exists(folder + "b.png"));
}

void TestResources::exportFormsAndUrls()
{
    MessageRecorder messages;
    QJsonObject audio = entry(2, 1, "song", QString());
    audio.remove("fileName");
    audio.insert("fileNames", QJsonArray{"song.mp3", "song.OGG"});
    QJsonObject script = entry(3, 5, "s1", "s1.js");
    script.insert("resourceType", 0);
    script.insert("includeHeader", true);
    QJsonObject unused = entry(4, 5, "s2", "s2.js");
    unused.insert("resourceType", 0);
    QJsonObject used = entry(5, 5, "s3", "https://example.invalid/s3.js");
    used.insert("resourceType", 1);
    used.insert("includeHeader", true);
    QJsonObject font = entry(6, 4, "f", "f.ttf");
    const QString path = writeProject(m_tmp.path() + "/export",
                                      {entry(1, 0, "logo", "logo.png"), audio, script, unused, used, font},
                                      {"logo.png", "song.mp3", "song.OGG", "s1.js", "s2.js", "f.ttf"});
    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    VTResourceManager* pManager = document.getResourceManager();
    const QString folder = document.getResourceFolderPath() + "/";

    QJsonArray player;
    pManager->serializeToExport(player, false, false);
    QCOMPARE(player,
             (QJsonArray{QJsonArray{1, 0, "logo", "logo.png"},
                         QJsonArray{2, 1, "song", QJsonArray{"song.mp3", "song.ogg"}}, QJsonArray{6, 4, "f"},
                         QJsonArray{3, 5, "s1"}, QJsonArray{4, 5, "s2"}, QJsonArray{5, 5, "s3"}}));
    QJsonArray preview;
    pManager->serializeToExport(preview, true, false);
    QCOMPARE(preview.at(0).toArray().at(3).toString(), QStringLiteral("logo.png"));
    QCOMPARE(preview.at(1).toArray().at(3).toArray(), (QJsonArray{"song.mp3", "song.OGG"}));

    pManager->findResourceById(1)->setDeleted(true);
    QJsonArray stage;
    pManager->serializeToExport(stage, true, true);
    QCOMPARE(stage.size(), 6);
    QCOMPARE(stage.at(0).toArray().at(3).toString(), QUrl::fromLocalFile(folder + "logo.png").toString());
    QCOMPARE(stage.at(2).toArray(), (QJsonArray{6, 4, "f", "", 1}));
    QCOMPARE(stage.at(3).toArray(),
             (QJsonArray{3, 5, "s1", QUrl::fromLocalFile(folder + "s1.js").toString(), 1, 0}));
    QCOMPARE(stage.at(4).toArray(),
             (QJsonArray{4, 5, "s2", QUrl::fromLocalFile(folder + "s2.js").toString(), 0}));
    QCOMPARE(stage.at(5).toArray(), (QJsonArray{5, 5, "s3", "https://example.invalid/s3.js", 1, 1}));
    QJsonArray exported;
    pManager->serializeToExport(exported, false, false);
    QCOMPARE(exported.size(), 5);

    // resource:// links name the export file; a display name without the suffix gains it.
    VTResource* pLogo = pManager->findResourceById(1);
    pLogo->setDeleted(false);
    QCOMPARE(VTResourceManager::getUrlResource(pLogo), QStringLiteral("resource://logo.png"));
    QCOMPARE(VTResourceManager::getUrlResource(nullptr), QStringLiteral("resource://"));
    QCOMPARE(pManager->getResourceFromUrl("resource://logo.png"), pLogo);
    QVERIFY(!pManager->getResourceFromUrl("resource://logo"));
    QVERIFY(!pManager->getResourceFromUrl("logo.png"));
    document.close();
}

void TestResources::oldHashedFilesAreMigrated()
{
    MessageRecorder messages;
    const QString hashed = VTResource::hashFileName("old.png", VTResource::Image);
    const QString path = writeProject(m_tmp.path() + "/old", {entry(1, 0, "old", "old.png")}, {hashed}, 1);
    const QString folder = m_tmp.path() + "/old/show/show_res/";
    VTDocument document;
    document.setFileName(path);
    QVERIFY(document.open());
    QVERIFY(document.getLoadProblems().isEmpty());
    QCOMPARE(readBytes(folder + "old.png"), hashed.toUtf8());
    QVERIFY(document.getResourceManager()->isTempResource(folder + "old.png"));
    QVERIFY(!document.getResourceManager()->isTempResource(folder + hashed));
    messages.m_lstAnswers << IMessageBox::Yes;
    QVERIFY(document.save());
    document.close();
    // Saved in the current format, the hashed copy has no more reason to exist.
    QVERIFY(!QFileInfo::exists(folder + hashed));
    QVERIFY(QFileInfo::exists(folder + "old.png"));
}

void TestResources::googleFontQueries()
{
    VTGoogleFontInfo info;
    info.parseFromJson(QJsonObject{{"family", "Open Sans"},
                                   {"variants", QJsonArray{"regular", "italic", "700", "700italic", "300"}},
                                   {"files", QJsonObject{{"regular", "u"}, {"bad", 3}}}});
    QCOMPARE(info.getQueryWithAllVariants(), QStringLiteral("Open+Sans:400,i,700,700i,300"));
    QCOMPARE(info.getFiles().size(), 1);
    QCOMPARE(info.getStringCombinedStyleVariantToExport(false, false), QString());
    QCOMPARE(info.getStringCombinedStyleVariantToExport(true, false), QStringLiteral("400,700"));
    QCOMPARE(info.getStringCombinedStyleVariantToExport(true, true), QStringLiteral("400,i,700,700i"));
    QCOMPARE(info.getSuitableVariantForGoogleFontInfo(false), QStringLiteral("regular"));
    QCOMPARE(info.getSuitableVariantForGoogleFontInfo(true), QString());

    VTGoogleFontInfo heavy;
    heavy.setFamily("Black");
    heavy.setVariants({"900"});
    QCOMPARE(heavy.getQueryWithAllVariants(), QStringLiteral("Black:900"));
    QCOMPARE(heavy.getStringCombinedStyleVariantToExport(false, true), QStringLiteral("900"));
    heavy.setVariants({"regular"});
    QCOMPARE(heavy.getQueryWithAllVariants(), QStringLiteral("Black"));
}

void TestResources::fontsRegisterAndPixmapsLoad()
{
    const QString fontPath = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    if (!QFileInfo::exists(fontPath))
        QSKIP("DejaVu Sans is not installed");
    MessageRecorder messages;
    const QString path = writeProject(m_tmp.path() + "/fonts",
                                      {entry(1, 4, "sans", "sans.ttf"), entry(2, 0, "pic", "pic.svg")}, {});
    const QString folder = m_tmp.path() + "/fonts/show/show_res/";
    QVERIFY(QFile::copy(fontPath, folder + "sans.ttf"));
    // The style element as some editors write it: without a type the image reader skips it.
    QVERIFY(writeBytes(folder + "pic.svg",
                       "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"20\">"
                       "<style>rect{fill:red}</style><rect width=\"30\" height=\"20\"/></svg>"));
    {
        VTDocument document;
        document.setFileName(path);
        QVERIFY(document.open());
        auto* pFont = static_cast<VTFontResource*>(document.getResourceManager()->findResourceById(1));
        QCOMPARE(pFont->getFamilyName(), QStringLiteral("DejaVu Sans"));
        QCOMPARE(document.getStatus(), QString());
        const QPixmap pixmap = document.getResourceManager()->loadResouceAsPixmap(
            document.getResourceManager()->findResourceById(2));
        QCOMPARE(pixmap.size(), QSize(30, 20));
        QCOMPARE(pixmap.toImage().pixelColor(15, 10), QColor(Qt::red));

        // Each project removes only the fonts it registered itself.
        VTApplicationFonts fonts;
        QStringList statuses;
        fonts.registerAll(document.getResourceManager(),
                          [&statuses](const QString& text) { statuses << text; });
        QCOMPARE(fonts.getCount(), 1);
        QCOMPARE(statuses, (QStringList{"Adding Google fonts 1/1", QString()}));
        document.getResourceManager()->findResourceById(1)->setDeleted(true);
        fonts.registerAll(document.getResourceManager(), [](const QString&) {});
        QCOMPARE(fonts.getCount(), 0);
        document.close();
    }
}

void TestResources::symbolResourcesKeepTheirFiles()
{
    MessageRecorder messages;
    const QString path =
        writeProject(m_tmp.path() + "/symbols", {entry(1, 3, "Button", "Button.vetrasym")}, {});
    const QString folder = m_tmp.path() + "/symbols/show/show_res/";
    QVERIFY(writeBytes(folder + "Button.vetrasym", R"({"width":120,"height":40,"title":"b","scenes":"x"})"));
    {
        VTDocument document;
        document.setFileName(path);
        QVERIFY(document.open());
        VTResourceManager* pManager = document.getResourceManager();
        VTResource* pResource = pManager->findResourceById(1);
        VTSymbol* pSymbol = pManager->getSymbolForResource(pResource);
        QVERIFY(pSymbol);
        QCOMPARE(pManager->getResourceForSymbol(pSymbol), pResource);
        QCOMPARE(pSymbol->getWidth(), 120);
        QCOMPARE(pSymbol->getResourceManager(), pManager);
        // What the symbol's file lost is in the project's list, named by the symbol.
        QCOMPARE(document.getLoadProblems().size(), 1);
        QVERIFY(document.getLoadProblems().first().startsWith("Symbol \"Button\": "));

        // A symbol made in the project gets a file named after it, written at the save.
        auto* pNew = new VTResource(VTResource::Symbol);
        pNew->setName("Button");
        auto* pNewSymbol = new VTSymbol();
        pNewSymbol->setWidth(7);
        pManager->addResource(pNew, pNewSymbol);
        QCOMPARE(pNew->getFileName(), QStringLiteral("Button_1.vetrasym"));
        pSymbol->setWidth(130);
        QVERIFY(document.save());
        QCOMPARE(
            QJsonDocument::fromJson(readBytes(folder + "Button.vetrasym")).object().value("width").toInt(),
            130);
        QCOMPARE(
            QJsonDocument::fromJson(readBytes(folder + "Button_1.vetrasym")).object().value("width").toInt(),
            7);
        QVERIFY(document.getFileLocker()->isLocked(folder + "Button_1.vetrasym"));
        QCOMPARE(savedResources(document).size(), 2);

        // Save As writes the edited symbol into the new project only; the old one keeps what it
        // was last saved with.
        pSymbol->setWidth(140);
        const QString copyFolder = m_tmp.path() + "/symbols/copy";
        QVERIFY(QDir().mkpath(copyFolder));
        QVERIFY(document.save(copyFolder + "/copy.vetra"));
        QCOMPARE(
            QJsonDocument::fromJson(readBytes(folder + "Button.vetrasym")).object().value("width").toInt(),
            130);
        QCOMPARE(QJsonDocument::fromJson(readBytes(copyFolder + "/copy_res/Button.vetrasym"))
                     .object()
                     .value("width")
                     .toInt(),
                 140);
        QVERIFY(document.getFileLocker()->isLocked(copyFolder + "/copy_res/Button.vetrasym"));
        QVERIFY(!document.getFileLocker()->isLocked(folder + "Button.vetrasym"));
        document.close();
    }
    QVERIFY(QFileInfo::exists(folder + "Button_1.vetrasym"));

    // A symbol file that is no symbol keeps the project from opening, with a reason.
    QVERIFY(writeBytes(folder + "Button.vetrasym", "not json"));
    messages.clear();
    VTDocument broken;
    broken.setFileName(path);
    QVERIFY(!broken.open());
    QCOMPARE(messages.getTexts(MessageRecorder::Warning),
             QStringList{"Cannot open project.\nError while loading symbol resources."});
    QVERIFY(broken.getLoadProblems().join('\n').contains("Button.vetrasym"));
}

void TestResources::folderCopies()
{
    QTemporaryDir dir;
    const QString source = dir.filePath("src");
    QVERIFY(writeBytes(source + "/a.txt", "a"));
    QVERIFY(writeBytes(source + "/.hidden", "h"));
    QVERIFY(writeBytes(source + "/sub/b.txt", "b"));
    QVERIFY(writeBytes(dir.filePath("outside.txt"), "o"));
    // Links are not followed: they could lead out of the tree or round in a loop.
    QVERIFY(QFile::link(dir.filePath("outside.txt"), source + "/link.txt"));
    QVERIFY(QFile::link(source, source + "/sub/loop"));

    QVERIFY(VTResourceManager::copyDir(source, dir.filePath("copy")));
    QCOMPARE(readBytes(dir.filePath("copy/.hidden")), QByteArray("h"));
    QCOMPARE(readBytes(dir.filePath("copy/sub/b.txt")), QByteArray("b"));
    QVERIFY(!QFileInfo::exists(dir.filePath("copy/link.txt")));
    QVERIFY(!QFileInfo::exists(dir.filePath("copy/sub/loop")));
    // A plain copy never replaces a file that is there.
    QVERIFY(!VTResourceManager::copyDir(source, dir.filePath("copy")));
    QVERIFY(!VTResourceManager::copyDir(dir.filePath("none"), dir.filePath("copy2")));
    QVERIFY(!VTResourceManager::copyDir(source, dir.filePath("no/parent/copy")));

    QVERIFY(writeBytes(dir.filePath("copy/a.txt"), "changed"));
    QVERIFY(VTResourceManager::copyDirRecursive(source, dir.filePath("copy"), false));
    QCOMPARE(readBytes(dir.filePath("copy/a.txt")), QByteArray("changed"));
    QVERIFY(VTResourceManager::copyDirRecursive(source, dir.filePath("copy"), true));
    QCOMPARE(readBytes(dir.filePath("copy/a.txt")), QByteArray("a"));
}

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
