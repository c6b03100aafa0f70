#include "DocumentManager.h"
#include "IProjectDialogs.h"
#include "IUtils.h"
#include "MessageRecorder.h"
#include "VTDocument.h"
#include "VTFileLocker.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

#include <memory>
#include <vector>

using Choice = IProjectDialogs::BackupChoice;
Q_DECLARE_METATYPE(IProjectDialogs::BackupChoice)

namespace {

bool writeProject(const QString& filePath, int nWidth)
{
    const QJsonObject document{{"docVersion", 3}, {"width", nWidth}, {"height", 100}};
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(
               QJsonDocument(QJsonObject{{"appName", QStringLiteral("Vetra Studio")}, {"document", document}})
                   .toJson(QJsonDocument::Compact)) > 0;
}

// "name width" for each file (-1 when it is no project), "name/" for each folder, sorted.
QStringList contentsOf(const QString& folder)
{
    QStringList result;
    for (const QFileInfo& info :
         QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name)) {
        QFile file(info.filePath());
        if (info.isDir() || !file.open(QIODevice::ReadOnly)) {
            result << info.fileName() + QLatin1Char('/');
            continue;
        }
        const QJsonObject document =
            QJsonDocument::fromJson(file.readAll()).object().value("document").toObject();
        result << QStringLiteral("%1 %2").arg(info.fileName()).arg(document.value("width").toInt(-1));
    }
    result.sort();
    return result;
}

void makeDirty(VTDocument& document, int nWidth)
{
    document.setWidth(nWidth);
    document.getUndoStack()->push(new QUndoCommand(QStringLiteral("Width")));
}

// Answers the recovery question and the Save As dialog from the test, and keeps what it is handed.
class RecoveryDialogs final : public IProjectDialogs
{
public:
    explicit RecoveryDialogs(Choice choice)
        : m_choice(choice)
    {
        setInstance(this);
    }
    ~RecoveryDialogs() override { setInstance(nullptr); }

    Choice m_choice;
    QString m_strSaveAsPath;
    std::vector<std::unique_ptr<IDocument>> m_lstOpened;

    bool askProjectLocation(const QString&, const QString&, const QString&, QString* pFilePath) override
    {
        *pFilePath = m_strSaveAsPath;
        return !m_strSaveAsPath.isEmpty();
    }
    Choice askBackupRecovery(const QString&) override { return m_choice; }
    bool addOpenedDocument(IDocument* pDocument) override
    {
        m_lstOpened.emplace_back(pDocument);
        return true;
    }
};

} // namespace

class TestBackup : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void backupNeverTouchesProject();
    void recoveryChoices_data();
    void recoveryChoices();
    void failedRecoveryLosesNothing();
    void closeOnBackup_data();
    void closeOnBackup();
    void saveAsOnBackup();

private:
    // N.vetra of width 100 with a resource, beside a backup of width 200.
    QString makeCrashedProject();
    QString m_strFolder;
    QString m_strProject;
    std::unique_ptr<QTemporaryDir> m_pDir;
};

void TestBackup::init()
{
    m_pDir = std::make_unique<QTemporaryDir>();
    m_strFolder = QDir(m_pDir->path()).filePath("N");
    m_strProject = QDir(m_strFolder).filePath("N.vetra");
    QVERIFY(writeProject(m_strProject, 100));
    QVERIFY(writeProject(QDir(m_strFolder).filePath("N_res/data.bin"), 5));
}

QString TestBackup::makeCrashedProject()
{
    writeProject(QDir(m_strFolder).filePath("N.vetrabak"), 200);
    return m_strProject;
}

void TestBackup::backupNeverTouchesProject()
{
    MessageRecorder messages;
    const QStringList untouched{"N.vetra 100", "N_res/"};
    {
        VTDocument document;
        document.setFileName(m_strProject);
        QVERIFY(document.open());
        QVERIFY(!document.saveBackup());
        // The host's timer backs up unsaved work, again and again until it is saved or dropped.
        DocumentManager::setAutobackupTimeout(1);
        makeDirty(document, 300);
        QTRY_COMPARE_WITH_TIMEOUT(contentsOf(m_strFolder),
                                  (QStringList{"N.vetra 100", "N.vetrabak 300", "N_res/"}), 5000);
        QVERIFY(DocumentManager::isWaitingBackup(&document));
        DocumentManager::setAutobackupTimeout(300);
        makeDirty(document, 400);
        QVERIFY(document.saveBackup());
        QCOMPARE(contentsOf(m_strFolder), (QStringList{"N.vetra 100", "N.vetrabak 400", "N_res/"}));
        // Changes that are discarded at close take their backup with them.
        messages.m_lstAnswers << IMessageBox::Discard;
        QVERIFY(document.close());
        QVERIFY(!DocumentManager::isWaitingBackup(&document));
    }
    QCOMPARE(contentsOf(m_strFolder), untouched);

    // A crash right after the backup leaves it beside the untouched project.
    QProcess helper;
    helper.start(QStringLiteral(BACKUP_CRASH_HELPER), {m_strProject});
    QVERIFY(helper.waitForFinished(30000));
    QCOMPARE(helper.exitStatus(), QProcess::CrashExit);
    QCOMPARE(contentsOf(m_strFolder), (QStringList{"N.vetra 100", "N.vetrabak 777", "N_res/"}));
}

void TestBackup::recoveryChoices_data()
{
    QTest::addColumn<Choice>("choice");
    QTest::addColumn<int>("nOpenedWidth");
    QTest::addColumn<QStringList>("files");

    QTest::newRow("open backup") << Choice::OpenBackup << 200
                                 << QStringList{"N.vetra 200", "N.vetra.old 100", "N_res/"};
    QTest::newRow("open both") << Choice::OpenBoth << 100
                               << QStringList{"N-backup.vetra 200", "N-backup_res/", "N.vetra 100", "N_res/"};
    QTest::newRow("open last saved") << Choice::OpenLastSaved << 100 << QStringList{"N.vetra 100", "N_res/"};
    QTest::newRow("cancel") << Choice::Cancel << -1 << QStringList{"N.vetra 100", "N.vetrabak 200", "N_res/"};
    QTest::newRow("unattended") << Choice::OpenLastSavedKeepBackup << 100
                                << QStringList{"N.vetra 100", "N.vetrabak 200", "N_res/"};
}

void TestBackup::recoveryChoices()
{
    QFETCH(Choice, choice);
    QFETCH(int, nOpenedWidth);
    QFETCH(QStringList, files);
    MessageRecorder messages;
    RecoveryDialogs dialogs(choice);
    VTDocument document;
    document.setFileName(makeCrashedProject());
    QCOMPARE(document.open(), nOpenedWidth > 0);
    QCOMPARE(contentsOf(m_strFolder), files);
    QVERIFY(messages.m_lstMessages.isEmpty());
    if (nOpenedWidth < 0)
        return;
    QCOMPARE(document.getWidth(), nOpenedWidth);
    QCOMPARE(document.isOpenAsBackup(), choice == Choice::OpenBackup);
    QCOMPARE(document.getFileLocker()->isLocked(m_strProject + ".old"), choice == Choice::OpenBackup);
    QCOMPARE(dialogs.m_lstOpened.size(), size_t(choice == Choice::OpenBoth ? 1 : 0));
    if (choice == Choice::OpenBoth) {
        auto* pCopy = qobject_cast<VTDocument*>(dialogs.m_lstOpened.front().get());
        QCOMPARE(pCopy->getWidth(), 200);
        QVERIFY(pCopy->isTempDocument());
        QCOMPARE(contentsOf(pCopy->getResourceFolderPath()), QStringList{"data.bin 5"});
        // Unless it is saved elsewhere, the copy goes at close, and the project is as before.
        messages.m_lstAnswers << IMessageBox::Discard;
        QVERIFY(pCopy->close());
        QVERIFY(!QFileInfo::exists(pCopy->getFileName()));
    }
    // Saving the recovered backup ends the recovery with the backup as the project.
    makeDirty(document, 300);
    QVERIFY(document.save());
    QVERIFY(!document.isOpenAsBackup());
    QVERIFY(!QFileInfo::exists(m_strProject + ".old"));
    QCOMPARE(QFileInfo::exists(document.getBackupFilePath()), choice == Choice::OpenLastSavedKeepBackup);
}

void TestBackup::failedRecoveryLosesNothing()
{
    MessageRecorder messages;
    RecoveryDialogs dialogs(Choice::OpenBoth);
    const QString unable = QStringLiteral("Unable to open backup project.");
    const QStringList crashed{"N.vetra 100", "N.vetrabak 200", "N_res/"};

    // The copy of the resources never mixes with an earlier one; the project still opens.
    QVERIFY(writeProject(QDir(m_strFolder).filePath("N-backup_res/data.bin"), 6));
    {
        VTDocument document;
        document.setFileName(makeCrashedProject());
        QVERIFY(document.open());
        QCOMPARE(messages.getTexts(), QStringList{unable});
    }
    QCOMPARE(contentsOf(m_strFolder), (QStringList{"N-backup_res/"} + crashed));
    QCOMPARE(contentsOf(QDir(m_strFolder).filePath("N-backup_res")), QStringList{"data.bin 6"});
    QVERIFY(IUtils::removeDir(QDir(m_strFolder).filePath("N-backup_res")));

    // A copy that does not load gives the backup its name back.
    QFile backup(QDir(m_strFolder).filePath("N.vetrabak"));
    QVERIFY(backup.open(QIODevice::WriteOnly) && backup.write("{\"appName\":\"Vetra Studio\",\"docu") > 0);
    backup.close();
    messages.clear();
    {
        VTDocument document;
        document.setFileName(m_strProject);
        QVERIFY(document.open());
        QCOMPARE(messages.getTexts().constLast(), unable);
    }
    QCOMPARE(contentsOf(m_strFolder), (QStringList{"N.vetra 100", "N.vetrabak -1", "N_res/"}));

    // A backup that does not load goes back to being one, and the last saved file with it; a
    // .old file left by an earlier recovery is kept, never replaced.
    writeProject(QDir(m_strFolder).filePath("N.vetra.old"), 50);
    dialogs.m_choice = Choice::OpenBackup;
    {
        VTDocument document;
        document.setFileName(m_strProject);
        QVERIFY(!document.open());
        QVERIFY(!document.isOpenAsBackup());
    }
    QCOMPARE(contentsOf(m_strFolder),
             (QStringList{"N.vetra 100", "N.vetra.old 50", "N.vetrabak -1", "N_res/"}));
    makeCrashedProject();
    VTDocument document;
    document.setFileName(m_strProject);
    QVERIFY(document.open());
    QCOMPARE(contentsOf(m_strFolder),
             (QStringList{"N.vetra 200", "N.vetra.old 100", "N.vetra.old.1 50", "N_res/"}));
}

void TestBackup::closeOnBackup_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("bClosed");
    QTest::addColumn<QStringList>("files");

    QTest::newRow("yes") << int(IMessageBox::Yes) << true << QStringList{"N.vetra 300", "N_res/"};
    QTest::newRow("no") << int(IMessageBox::No) << true << QStringList{"N.vetra 100", "N_res/"};
    QTest::newRow("cancel") << int(IMessageBox::Cancel) << false
                            << QStringList{"N.vetra 200", "N.vetra.old 100", "N_res/"};
}

void TestBackup::closeOnBackup()
{
    QFETCH(int, answer);
    QFETCH(bool, bClosed);
    QFETCH(QStringList, files);
    MessageRecorder messages;
    RecoveryDialogs dialogs(Choice::OpenBackup);
    VTDocument document;
    document.setFileName(makeCrashedProject());
    QVERIFY(document.open());
    makeDirty(document, 300);
    messages.m_lstAnswers << IMessageBox::StandardButton(answer);
    QCOMPARE(document.close(), bClosed);
    // One question, and none about unsaved changes after it.
    QCOMPARE(messages.getTexts(),
             QStringList{"Do you want to used this backup version of the current project?"});
    QCOMPARE(contentsOf(m_strFolder), files);
    QCOMPARE(document.isOpenAsBackup(), !bClosed);
}

void TestBackup::saveAsOnBackup()
{
    MessageRecorder messages;
    RecoveryDialogs dialogs(Choice::OpenBackup);
    VTDocument document;
    document.setFileName(makeCrashedProject());
    QVERIFY(document.open());
    makeDirty(document, 300);
    QVERIFY(document.saveBackup());

    // The same name in another folder: neither backup nor .old travels along.
    const QString otherFolder = QDir(m_pDir->path()).filePath("other/N");
    QVERIFY(QDir().mkpath(otherFolder));
    dialogs.m_strSaveAsPath = QDir(otherFolder).filePath("N.vetra");
    QVERIFY(document.saveAs());
    QVERIFY(messages.m_lstMessages.isEmpty());
    QCOMPARE(contentsOf(otherFolder), (QStringList{"N.vetra 300", "N_res/"}));
    // The old project is as it was last saved.
    QCOMPARE(contentsOf(m_strFolder), (QStringList{"N.vetra 100", "N_res/"}));
    QVERIFY(!document.isOpenAsBackup());
    for (const QString& locked : document.getFileLocker()->getLockedFiles())
        QVERIFY2(locked.startsWith(QFileInfo(otherFolder).canonicalFilePath()), qPrintable(locked));
    QVERIFY(document.close());

    // A backup left in place at the open is not the saved changes: it stays with its project.
    dialogs.m_choice = Choice::OpenLastSavedKeepBackup;
    VTDocument other;
    other.setFileName(makeCrashedProject());
    QVERIFY(other.open());
    makeDirty(other, 400);
    const QString newFolder = QDir(m_pDir->path()).filePath("M");
    QVERIFY(QDir().mkpath(newFolder));
    dialogs.m_strSaveAsPath = QDir(newFolder).filePath("M.vetra");
    QVERIFY(other.saveAs());
    QCOMPARE(contentsOf(m_strFolder), (QStringList{"N.vetra 100", "N.vetrabak 200", "N_res/"}));
    QCOMPARE(contentsOf(newFolder), (QStringList{"M.vetra 400", "M_res/"}));
}

QTEST_MAIN(TestBackup)
#include "tst_backup.moc"
