#include "MessageRecorder.h"
#include "ScriptedProjectDialogs.h"
#include "VTDocument.h"
#include "VTFileLocker.h"
#include "VTLocationManager.h"
#include "VTResourceManager.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUndoStack>
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

QByteArray minimalProject(int nWidth)
{
    const QJsonObject document{{"docVersion", 3}, {"width", nWidth}, {"height", 100}};
    return QJsonDocument(QJsonObject{{"appName", QStringLiteral("Vetra Studio")}, {"document", document}})
        .toJson(QJsonDocument::Compact);
}

int savedWidth(const QString& filePath)
{
    return QJsonDocument::fromJson(readBytes(filePath))
        .object()
        .value("document")
        .toObject()
        .value("width")
        .toInt();
}

// Something for the undo stack, so that a document has unsaved changes.
class WidthCommand final : public QUndoCommand
{
public:
    WidthCommand(VTDocument* pDocument, int nWidth)
        : m_pDocument(pDocument)
        , m_nWidth(nWidth)
    {
        setText(QStringLiteral("Width"));
    }
    void redo() override { swap(); }
    void undo() override { swap(); }

private:
    void swap()
    {
        const int nOld = m_pDocument->getWidth();
        m_pDocument->setWidth(m_nWidth);
        m_nWidth = nOld;
    }
    VTDocument* m_pDocument;
    int m_nWidth;
};

} // namespace

class TestDocumentFiles : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void saveReplacesFileAndKeepsLock();
    void failedSaveKeepsPreviousFileAndLock();
    void saveAsLeavesOldProjectAndCarriesFiles();
    void saveAsRefusals();
    void saveAsOfTempDocumentRemovesOldProject();
    void saveAsGoesThroughProjectDialog();
    void closingKeepsFilesOfSavedProjects();
    void packagesAreRefusedHonestly();
    void editingStackAndCommands();

private:
    QString projectPath(const QString& name) const;
    QString makeProject(const QString& name, int nWidth = 640);

    QTemporaryDir m_dir;
};

void TestDocumentFiles::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", QDir(m_dir.path()).filePath(QStringLiteral("home")).toLocal8Bit());
}

QString TestDocumentFiles::projectPath(const QString& name) const
{
    return QDir(m_dir.path()).filePath(name + QLatin1Char('/') + name + QStringLiteral(".vetra"));
}

QString TestDocumentFiles::makeProject(const QString& name, int nWidth)
{
    const QString filePath = projectPath(name);
    QDir().mkpath(QFileInfo(filePath).absolutePath() + QLatin1Char('/') + name + QStringLiteral("_res"));
    return writeBytes(filePath, minimalProject(nWidth)) ? filePath : QString();
}

void TestDocumentFiles::saveReplacesFileAndKeepsLock()
{
    MessageRecorder messages;
    const QString filePath = projectPath(QStringLiteral("saved"));
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    VTDocument document;
    document.setFileName(filePath);
    QVERIFY(document.openTempDocument(320, 240, 1, false));
    QVERIFY(!document.getFileLocker()->isLocked(filePath));

    QSignalSpy saved(&document, &VTDocument::changesSaved);
    document.submitCommand(new WidthCommand(&document, 500));
    QVERIFY(!document.getUndoStack()->isClean());
    QVERIFY(document.save());
    QCOMPARE(saved.count(), 1);
    QVERIFY(document.getUndoStack()->isClean());
    QVERIFY(!readBytes(filePath).contains('\n'));
    QCOMPARE(savedWidth(filePath), 500);
    QVERIFY(document.getFileLocker()->isLocked(filePath));

    // A stale backup goes with a successful save, from disk and from the history.
    const QString backup = document.getBackupFilePath();
    QVERIFY(writeBytes(backup, "{}"));
    QVERIFY(document.addFileHistory(QFileInfo(backup).fileName(), false));
    QVERIFY(!document.addFileHistory(QFileInfo(backup).fileName(), false));
    document.submitCommand(new WidthCommand(&document, 700));
    QVERIFY(document.save());
    QVERIFY(!QFileInfo::exists(backup));
    QVERIFY(document.getFileHistory().isEmpty());
    QCOMPARE(savedWidth(filePath), 700);
    QCOMPARE(document.getFileLocker()->getLockedFiles(),
             QStringList{QFileInfo(filePath).canonicalFilePath()});
    // No temporary file is left beside the project.
    QCOMPARE(QDir(QFileInfo(filePath).absolutePath()).entryList(QDir::Files), QStringList{"saved.vetra"});
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestDocumentFiles::failedSaveKeepsPreviousFileAndLock()
{
    MessageRecorder messages;
    // The longest name a file may have: the temporary file beside it cannot be made, whatever
    // the user's rights (the tests may run as root, where read-only folders do not stop writes).
    const QString name(255 - int(qstrlen(".vetra")), QLatin1Char('n'));
    const QString folder = QDir(m_dir.path()).filePath(QStringLiteral("long"));
    const QString filePath = QDir(folder).filePath(name + QStringLiteral(".vetra"));
    QVERIFY(writeBytes(filePath, minimalProject(640)));
    const QByteArray before = readBytes(filePath);

    VTDocument document;
    document.setFileName(filePath);
    QVERIFY(document.open());
    QVERIFY(document.getFileLocker()->isLocked(filePath));
    document.submitCommand(new WidthCommand(&document, 999));
    QSignalSpy saved(&document, &VTDocument::changesSaved);
    QVERIFY(!document.save());
    QCOMPARE(messages.getTexts(MessageRecorder::Warning),
             QStringList{QStringLiteral("Cannot write project data.")});
    QCOMPARE(readBytes(filePath), before);
    QVERIFY(document.getFileLocker()->isLocked(filePath));
    QVERIFY(!document.getUndoStack()->isClean());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 1);

    // The project folder vanished: refused the same way, nothing made up.
    messages.clear();
    VTDocument orphan;
    orphan.setFileName(QDir(m_dir.path()).filePath(QStringLiteral("vanished/vanished.vetra")));
    QVERIFY(!orphan.save());
    QCOMPARE(messages.getTexts(MessageRecorder::Warning),
             QStringList{QStringLiteral("Cannot write project data.")});
    QVERIFY(!QFileInfo::exists(QDir(m_dir.path()).filePath(QStringLiteral("vanished"))));
}

void TestDocumentFiles::saveAsLeavesOldProjectAndCarriesFiles()
{
    MessageRecorder messages;
    const QString oldPath = makeProject(QStringLiteral("source"), 640);
    const QString oldFolder = QFileInfo(oldPath).absolutePath();
    const QByteArray oldBytes = readBytes(oldPath);
    QVERIFY(
        writeBytes(QDir(oldFolder).filePath("source_res/image.png"), QByteArray(3 * 1024 * 1024 + 5, 'i')));
    QVERIFY(writeBytes(QDir(oldFolder).filePath("source_res/sub/notes.txt"), "notes"));
    QVERIFY(writeBytes(QDir(oldFolder).filePath("source_res/vtplayer.js"), "player"));
    QVERIFY(writeBytes(QDir(oldFolder).filePath("SOURCE_res/upper.txt"), "upper"));

    VTDocument document;
    document.setFileName(oldPath);
    QVERIFY(document.open());
    QVERIFY(document.addFileHistory(QStringLiteral("image.png"), true));
    auto* pImage = new VTResource(VTResource::Image);
    pImage->setFileName(QStringLiteral("image.png"));
    document.getResourceManager()->addResource(pImage);
    QVERIFY(document.addFileHistory(QStringLiteral("sub/notes.txt"), true));
    QVERIFY(document.addFileHistory(QStringLiteral("vtplayer.js"), true));
    QVERIFY(document.addFileHistory(QStringLiteral("gone.png"), true));
    // An entry whose folder is written in another case still belongs to the resource folder.
    QVERIFY(document.addFileHistory(QStringLiteral("SOURCE_res/upper.txt"), false));
    document.submitCommand(new WidthCommand(&document, 1024));

    const QString targetFolder = QDir(m_dir.path()).filePath(QStringLiteral("copies/target"));
    QVERIFY(QDir().mkpath(targetFolder));
    const QString targetPath = QDir(targetFolder).filePath(QStringLiteral("target.vetra"));
    QSignalSpy title(&document, &IDocument::titleChanged);
    QSignalSpy location(&document, &VTDocument::locationChanged);
    QVERIFY(document.save(targetPath));
    QVERIFY(messages.m_lstMessages.isEmpty());

    // The old project stays as it was last saved, with the files its resources use; a file that
    // no resource uses any more moves to the new project only.
    QCOMPARE(readBytes(oldPath), oldBytes);
    QVERIFY(QFileInfo::exists(QDir(oldFolder).filePath("source_res/image.png")));
    QVERIFY(!QFileInfo::exists(QDir(oldFolder).filePath("source_res/sub/notes.txt")));

    // The new one holds the edit and copies of the files it owns.
    QCOMPARE(document.getFileName(), targetPath);
    QCOMPARE(savedWidth(targetPath), 1024);
    QCOMPARE(readBytes(QDir(targetFolder).filePath("target_res/image.png")),
             readBytes(QDir(oldFolder).filePath("source_res/image.png")));
    QCOMPARE(readBytes(QDir(targetFolder).filePath("target_res/sub/notes.txt")), QByteArray("notes"));
    QVERIFY(!QFileInfo::exists(QDir(targetFolder).filePath("target_res/vtplayer.js")));
    QCOMPARE(readBytes(QDir(targetFolder).filePath("target_res/upper.txt")), QByteArray("upper"));
    QCOMPARE(document.getFileHistory(),
             (QStringList{QStringLiteral("target_res/image.png"), QStringLiteral("target_res/sub/notes.txt"),
                          QStringLiteral("target_res/upper.txt")}));
    QCOMPARE(document.getResourceFolderName(), QStringLiteral("target_res"));

    // The locks moved with the project.
    const VTFileLocker* pLocker = document.getFileLocker();
    QVERIFY(pLocker->isLocked(targetPath));
    QVERIFY(pLocker->isLocked(QDir(targetFolder).filePath("target_res/image.png")));
    QVERIFY(!pLocker->isLocked(oldPath));
    QVERIFY(!pLocker->isLocked(QDir(oldFolder).filePath("source_res/image.png")));
    QVERIFY(document.getUndoStack()->isClean());
    QVERIFY(title.count() >= 1);
    QCOMPARE(location.count(), 1);

    // Saving under the current name is a plain save.
    document.submitCommand(new WidthCommand(&document, 10));
    QVERIFY(document.save(targetPath));
    QCOMPARE(savedWidth(targetPath), 10);
    QCOMPARE(location.count(), 1);
}

void TestDocumentFiles::saveAsRefusals()
{
    MessageRecorder messages;
    const QString sourcePath = makeProject(QStringLiteral("refusing"), 100);
    const QString occupiedPath = makeProject(QStringLiteral("occupied"), 200);
    const QByteArray occupiedBytes = readBytes(occupiedPath);
    VTDocument document;
    document.setFileName(sourcePath);
    QVERIFY(document.open());
    document.submitCommand(new WidthCommand(&document, 300));

    // Neither a project nor a package: nothing happens.
    QVERIFY(!document.save(QDir(m_dir.path()).filePath(QStringLiteral("refusing/other.txt"))));
    QVERIFY(messages.m_lstMessages.isEmpty());

    QVERIFY(!document.save(QDir(m_dir.path()).filePath(QStringLiteral("no/such/folder/x.vetra"))));
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("The destination directory is invalid.")});

    // An existing project is replaced only on Yes; No is also the answer without a user.
    const QString overwrite =
        QStringLiteral("The selected folder has an existing project.\nDo you want to overwrite?");
    messages.clear();
    QVERIFY(!document.save(occupiedPath));
    QCOMPARE(messages.getTexts(MessageRecorder::Question), QStringList{overwrite});
    QCOMPARE(readBytes(occupiedPath), occupiedBytes);

    // An open project is never replaced.
    {
        VTDocument occupant;
        occupant.setFileName(occupiedPath);
        QVERIFY(occupant.open());
        messages.clear();
        messages.m_lstAnswers << IMessageBox::Yes;
        QVERIFY(!document.save(occupiedPath));
        QCOMPARE(messages.getTexts(),
                 (QStringList{overwrite, QStringLiteral("Cannot overwrite an opening project!")}));
        QCOMPARE(readBytes(occupiedPath), occupiedBytes);
        QCOMPARE(document.getFileName(), sourcePath);
        QVERIFY(!document.getUndoStack()->isClean());
    }

    // Once it is closed, Yes replaces it, and its stale backup goes too.
    const QString staleBackup = QDir(QFileInfo(occupiedPath).absolutePath()).filePath("occupied.vetrabak");
    QVERIFY(writeBytes(staleBackup, "{}"));
    messages.clear();
    messages.m_lstAnswers << IMessageBox::Yes;
    QVERIFY(document.save(occupiedPath));
    QCOMPARE(savedWidth(occupiedPath), 300);
    QVERIFY(!QFileInfo::exists(staleBackup));
    QCOMPARE(savedWidth(sourcePath), 100);

    // A package suffix, in any case, goes to the package writer; the project stays where it is.
    messages.clear();
    QVERIFY(document.save(QDir(m_dir.path()).filePath(QStringLiteral("packed.VETRAPACK"))));
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("Save to package successfully.")});
    QVERIFY(QFileInfo::exists(QDir(m_dir.path()).filePath(QStringLiteral("packed.VETRAPACK"))));
    QCOMPARE(document.getFileName(), occupiedPath);
}

void TestDocumentFiles::saveAsOfTempDocumentRemovesOldProject()
{
    MessageRecorder messages;
    const QString tempPath = projectPath(QStringLiteral("scratch"));
    QDir().mkpath(QFileInfo(tempPath).absolutePath());
    VTDocument document;
    document.setFileName(tempPath);
    QVERIFY(document.openTempDocument(100, 100, 1, false));
    QVERIFY(document.save());
    document.setTempDocument(true);
    QVERIFY(writeBytes(QDir(document.getResourceFolderPath()).filePath("clip.mp4"), "video"));
    QVERIFY(document.addFileHistory(QStringLiteral("clip.mp4"), true));
    const QString oldResources = document.getResourceFolderPath();

    const QString targetFolder = QDir(m_dir.path()).filePath(QStringLiteral("kept"));
    QVERIFY(QDir().mkpath(targetFolder));
    const QString targetPath = QDir(targetFolder).filePath(QStringLiteral("kept.vetra"));
    QVERIFY(document.save(targetPath));
    QVERIFY(!document.isTempDocument());
    QVERIFY(!QFileInfo::exists(tempPath));
    QVERIFY(!QFileInfo::exists(oldResources));
    QCOMPARE(readBytes(QDir(targetFolder).filePath("kept_res/clip.mp4")), QByteArray("video"));
    QVERIFY(document.getFileLocker()->isLocked(targetPath));
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestDocumentFiles::saveAsGoesThroughProjectDialog()
{
    MessageRecorder messages;
    ScriptedProjectDialogs dialogs;
    VTLocationManager* pLocations = VTLocationManager::getInstance();
    pLocations->setHistoryLocation(VTLocationManager::NewProject, m_dir.path());
    const QString sourcePath = makeProject(QStringLiteral("asked"));
    VTDocument document;
    document.setFileName(sourcePath);
    QVERIFY(document.open());
    pLocations->setHistoryLocation(&document, VTLocationManager::ExportHTML5, QStringLiteral("/exports"));

    // Cancelled: nothing happens.
    QVERIFY(!document.saveAs());
    QCOMPARE(dialogs.m_lstRequests, QStringList{QStringLiteral("Save As|asked|") + m_dir.path()});
    QCOMPARE(document.getFileName(), sourcePath);

    const QString targetPath = projectPath(QStringLiteral("answered"));
    QDir().mkpath(QFileInfo(targetPath).absolutePath());
    dialogs.m_lstAnswers << targetPath;
    QVERIFY(document.saveAs());
    QCOMPARE(document.getFileName(), targetPath);
    QVERIFY(QFileInfo::exists(targetPath));
    // The remembered folders belonged to the old project.
    QVERIFY(pLocations->getDocumentHistory(&document).isEmpty());
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestDocumentFiles::closingKeepsFilesOfSavedProjects()
{
    MessageRecorder messages;
    const QString filePath = makeProject(QStringLiteral("closing"));
    const QString resources =
        QDir(QFileInfo(filePath).absolutePath()).filePath(QStringLiteral("closing_res"));
    QVERIFY(writeBytes(QDir(resources).filePath("a.png"), "a"));
    QVERIFY(writeBytes(QDir(resources).filePath("stale.png"), "s"));
    {
        VTDocument document;
        document.setFileName(filePath);
        QVERIFY(document.open());
        QVERIFY(document.addFileHistory(QStringLiteral("a.png"), true));
        QVERIFY(document.addFileHistory(QStringLiteral("stale.png"), true));
        auto* pImage = new VTResource(VTResource::Image);
        pImage->setFileName(QStringLiteral("a.png"));
        document.getResourceManager()->addResource(pImage);
        QSignalSpy closing(&document, &IDocument::aboutToClose);
        QVERIFY(document.close());
        QCOMPARE(closing.count(), 1);
        // A saved project keeps what its resources use; what it wrote and no longer uses goes.
        QVERIFY(QFileInfo::exists(filePath));
        QVERIFY(QFileInfo::exists(QDir(resources).filePath("a.png")));
        QVERIFY(!QFileInfo::exists(QDir(resources).filePath("stale.png")));
        QVERIFY(document.getFileLocker()->getLockedFiles().isEmpty());
    }
    QVERIFY(messages.m_lstMessages.isEmpty());

    // A temporary project asks first; discarded, its own files go.
    const QString scratchPath = makeProject(QStringLiteral("discarded"));
    const QString scratchResources =
        QDir(QFileInfo(scratchPath).absolutePath()).filePath(QStringLiteral("discarded_res"));
    QVERIFY(writeBytes(QDir(scratchResources).filePath("b.png"), "b"));
    VTDocument scratch;
    scratch.setFileName(scratchPath);
    QVERIFY(scratch.open());
    scratch.setTempDocument(true);
    QVERIFY(scratch.addFileHistory(QStringLiteral("b.png"), true));
    messages.m_lstAnswers << IMessageBox::Cancel;
    QVERIFY(!scratch.close());
    QVERIFY(QFileInfo::exists(scratchPath));
    messages.m_lstAnswers << IMessageBox::Discard;
    QVERIFY(scratch.close());
    QCOMPARE(messages.getTexts(MessageRecorder::Question).size(), 2);
    QVERIFY(!QFileInfo::exists(scratchPath));
    QVERIFY(!QFileInfo::exists(QDir(scratchResources).filePath("b.png")));
    QVERIFY(scratch.cleanTempDir());
    QVERIFY(!QFileInfo::exists(scratchResources));

    // Without a file name there is nothing to clean, and the working folder is never touched.
    VTDocument unnamed;
    QVERIFY(!unnamed.cleanTempDir());
    QVERIFY(QFileInfo::exists(QDir::currentPath()));
}

void TestDocumentFiles::packagesAreRefusedHonestly()
{
    MessageRecorder messages;
    ScriptedProjectDialogs dialogs;
    const QString package = QDir(m_dir.path()).filePath(QStringLiteral("bundle.VetraPack"));
    QVERIFY(writeBytes(package, "PK"));
    VTLocationManager::getInstance()->setHistoryLocation(VTLocationManager::NewProject, m_dir.path());

    VTDocument cancelled;
    cancelled.setFileName(package);
    QVERIFY(!cancelled.open());
    QCOMPARE(dialogs.m_lstRequests, QStringList{QStringLiteral("Import Project|bundle|") + m_dir.path()});
    QVERIFY(messages.m_lstMessages.isEmpty());

    dialogs.m_lstAnswers << projectPath(QStringLiteral("imported"));
    VTDocument imported;
    imported.setFileName(package);
    QVERIFY(!imported.open());
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("Cannot open package file.")});
    QVERIFY(imported.getFileLocker()->getLockedFiles().isEmpty());
}

void TestDocumentFiles::editingStackAndCommands()
{
    VTDocument document;
    VTSymbol a;
    VTSymbol b;
    VTSymbol c;
    QCOMPARE(document.getCurrentSymbol(), static_cast<VTSymbol*>(&document));
    document.setCurrentSymbol(&a);
    document.setCurrentSymbol(&b);
    document.setCurrentSymbol(&c);
    QCOMPARE(document.getCurrentSymbol(), &c);
    // A symbol in the middle keeps itself and drops those above it.
    document.setCurrentSymbol(&b);
    QCOMPARE(document.getEditingSymbolStack(), (QList<VTSymbol*>{&a, &b}));
    QCOMPARE(document.getCurrentSymbol(), &b);
    // The project itself ends all symbol editing.
    document.setCurrentSymbol(&document);
    QVERIFY(document.getEditingSymbolStack().isEmpty());
    document.setEditingSymbolStack({&c});
    QCOMPARE(static_cast<const VTDocument&>(document).getCurrentSymbol(), static_cast<const VTSymbol*>(&c));

    // The first command after a save clears the status line; later ones leave it.
    QSignalSpy status(&document, &IDocument::statusChanged);
    document.setStatus(QStringLiteral("Saved"));
    auto* pFirst = new WidthCommand(&document, 50);
    document.submitCommand(pFirst, true);
    QCOMPARE(document.getCurrentCommand(), static_cast<QUndoCommand*>(pFirst));
    QCOMPARE(document.getWidth(), 50);
    QCOMPARE(document.getStatus(), QString());
    QCOMPARE(status.count(), 2);
    document.setStatus(QStringLiteral("Busy"));
    document.submitCommand(new WidthCommand(&document, 60));
    QCOMPARE(document.getStatus(), QStringLiteral("Busy"));
    QCOMPARE(document.getUndoStack()->count(), 2);
    document.getUndoStack()->undo();
    QCOMPARE(document.getWidth(), 50);
    QVERIFY(!document.pause());
    QVERIFY(!document.play());
    QVERIFY(document.revert());
    QVERIFY(!document.isPreloader());
}

QTEST_GUILESS_MAIN(TestDocumentFiles)
#include "tst_documentfiles.moc"
