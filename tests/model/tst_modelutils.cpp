#include "ISingleton.h"
#include "IUtils.h"
#include "VTDocument.h"
#include "VTFileLocker.h"
#include "VTLocationManager.h"
#include "VTProjectPaths.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <chrono>
#include <limits>
#include <thread>
#include <vector>

namespace {

const QString s_strAlphabet = QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");

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

QAtomicInt s_nConstructions;

class CountedService final : public ISingleton<CountedService>
{
private:
    friend class ISingleton<CountedService>;
    CountedService()
    {
        s_nConstructions.ref();
        // Widen the window in which a second thread could slip past the first test.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
};

} // namespace

class TestModelUtils : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void containerIds();
    void exportPathsAndProjectNames();
    void viewportTags();
    void textHelpers();
    void fileHelpers();
    void fileLocker();
    void locationDefaultsAndHistory();
    void locationSettingsAndDocuments();
    void singletonIsMadeOnce();

private:
    QTemporaryDir m_dir;
};

void TestModelUtils::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", QDir(m_dir.path()).filePath(QStringLiteral("home")).toLocal8Bit());
}

void TestModelUtils::containerIds()
{
    srand(12345);
    QSet<QChar> firstChars;
    QSet<QChar> otherChars;
    for (int i = 0; i < 20000; ++i) {
        const QString id = IUtils::genContainerId();
        QCOMPARE(id.size(), 8);
        const int nFirst = s_strAlphabet.indexOf(id.at(0));
        QVERIFY2(nFirst >= 0 && nFirst < 42, qPrintable(id));
        firstChars.insert(id.at(0));
        for (int n = 1; n < id.size(); ++n) {
            QVERIFY2(s_strAlphabet.contains(id.at(n)), qPrintable(id));
            otherChars.insert(id.at(n));
        }
    }
    // Every allowed letter turns up where it may, so no range is cut short.
    QCOMPARE(firstChars.size(), 42);
    QCOMPARE(otherChars.size(), 52);
    QVERIFY(!firstChars.contains(QLatin1Char('Q')));
    QVERIFY(otherChars.contains(QLatin1Char('Z')));
}

void TestModelUtils::exportPathsAndProjectNames()
{
    QCOMPARE(VTDocument::getPath4Export(QStringLiteral("images/../logo.png")),
             QStringLiteral("images/../logo.png"));
    QCOMPARE(VTDocument::getPath4Export(QStringLiteral("images/.../logo.png")),
             QStringLiteral("images/logo.png"));
    QCOMPARE(VTDocument::getPath4Export(QStringLiteral("..../a/./b")), QStringLiteral("a/./b"));
    QCOMPARE(VTDocument::getPath4Export(QStringLiteral("/a//b///c/")), QStringLiteral("a/b/c"));
    QCOMPARE(VTDocument::getPath4Export(QStringLiteral("a/..x/b..")), QStringLiteral("a/..x/b.."));
    QCOMPARE(VTDocument::getPath4Export(QString()), QString());

    const VTProjectPaths paths(QStringLiteral("/work/Show/Show.vetra"));
    QCOMPARE(paths.getName(), QStringLiteral("Show"));
    QCOMPARE(paths.getLocation(), QStringLiteral("/work/Show"));
    QCOMPARE(paths.getResourceFolderName(), QStringLiteral("Show_res"));
    QCOMPARE(paths.getResourceFolderPath(), QStringLiteral("/work/Show/Show_res"));
    QCOMPARE(paths.getBackupFilePath(), QStringLiteral("/work/Show/Show.vetrabak"));
    QCOMPARE(paths.getHTML5EntryFileName(), QStringLiteral("Show.html"));
    QCOMPARE(paths.getHTML5DataFileName(), QStringLiteral("Show.js"));
    QCOMPARE(paths.getHTML5CSSFileName(), QStringLiteral("Show.css"));
    // The complete base name: only the last suffix is the extension.
    QCOMPARE(VTProjectPaths(QStringLiteral("/x/v1.2.vetra")).getResourceFolderName(),
             QStringLiteral("v1.2_res"));
    QCOMPARE(VTProjectPaths::getProjectFilePath(QStringLiteral("/work"), QStringLiteral("Show")),
             QStringLiteral("/work/Show/Show.vetra"));
    QCOMPARE(VTProjectPaths::stripProjectSuffix(QStringLiteral("  Show.VETRA ")), QStringLiteral("Show"));
    QCOMPARE(VTProjectPaths::stripProjectSuffix(QStringLiteral("Show.vetra.vetra")),
             QStringLiteral("Show.vetra"));
    QCOMPARE(VTProjectPaths::stripProjectSuffix(QStringLiteral("vetra")), QStringLiteral("vetra"));
}

void TestModelUtils::viewportTags()
{
    VTDocument document;
    const QList<QPair<int, QString>> cases = {{-1, QStringLiteral("device-height")},
                                              {-2, QStringLiteral("device-width")},
                                              {-3, QString()},
                                              {480, QStringLiteral("480")},
                                              {0, QStringLiteral("0")}};
    for (const auto& c : cases) {
        document.setViewportWMeta(c.first);
        document.setViewportHMeta(c.first);
        QCOMPARE(document.getViewportWidthTag(),
                 c.second.isEmpty() ? QString() : QStringLiteral("width=%1, ").arg(c.second));
        QCOMPARE(document.getViewportHeightTag(),
                 c.second.isEmpty() ? QString() : QStringLiteral("height=%1, ").arg(c.second));
    }
}

void TestModelUtils::textHelpers()
{
    QCOMPARE(IUtils::time2String(0), QStringLiteral("00:00:00.000"));
    QCOMPARE(IUtils::time2String(3723004), QStringLiteral("01:02:03.004"));
    QCOMPARE(IUtils::time2String(59999), QStringLiteral("00:00:59.999"));
    QCOMPARE(IUtils::time2String(100 * 3600000), QStringLiteral("100:00:00.000"));
    QCOMPARE(IUtils::time2String(-1500), QStringLiteral("-00:00:01.500"));
    QCOMPARE(IUtils::time2String(std::numeric_limits<int>::min()), QStringLiteral("-596:31:23.648"));

    const QList<QPair<QString, QString>> names = {{"my:pic?.png", "my_pic_.png"},
                                                  {"a/b\\c#d%e.js", "a_b_c_d_e.js"},
                                                  {" .hidden.css ", "_hidden.css"},
                                                  {"name. . ", "name"},
                                                  {"con.txt", "_con.txt"},
                                                  {"COM7", "_COM7"},
                                                  {"COM0", "COM0"},
                                                  {"", "_"},
                                                  {"tab\there", "tab_here"}};
    for (const auto& name : names)
        QCOMPARE(IUtils::convert2ValidResourceName(name.first), name.second);
    const QString longName = IUtils::convert2ValidResourceName(QString(500, QLatin1Char('x')) + ".webm");
    QVERIFY(longName.size() <= 200);
    QVERIFY(longName.endsWith(QLatin1String(".webm")));
}

void TestModelUtils::fileHelpers()
{
    const QDir root(m_dir.path());
    // Blocks of 1 MiB: a file of several blocks and a part arrives whole.
    QByteArray data(int(3.5 * IUtils::s_nCopyBlockSize), '\0');
    for (int i = 0; i < data.size(); ++i)
        data[i] = char(i % 251);
    const QString source = root.filePath(QStringLiteral("copy/source.bin"));
    QVERIFY(writeBytes(source, data));
    QVERIFY(IUtils::copyFileInBlocks(source, root.filePath(QStringLiteral("copy/target.bin"))));
    QCOMPARE(readBytes(root.filePath(QStringLiteral("copy/target.bin"))), data);

    bool bSourceFailed = false;
    QVERIFY(!IUtils::copyFileInBlocks(root.filePath(QStringLiteral("copy/none.bin")),
                                      root.filePath(QStringLiteral("copy/t2.bin")), &bSourceFailed));
    QVERIFY(bSourceFailed);
    QVERIFY(!QFileInfo::exists(root.filePath(QStringLiteral("copy/t2.bin"))));
    QVERIFY(!IUtils::copyFileInBlocks(source, root.filePath(QStringLiteral("copy/missing/t3.bin")),
                                      &bSourceFailed));
    QVERIFY(!bSourceFailed);

    QVERIFY(writeBytes(root.filePath(QStringLiteral("tree/a/b/c.txt")), "c"));
    QVERIFY(writeBytes(root.filePath(QStringLiteral("tree/.hidden")), "h"));
    QVERIFY(IUtils::copyDir(root.filePath(QStringLiteral("tree")), root.filePath(QStringLiteral("tree2"))));
    QCOMPARE(readBytes(root.filePath(QStringLiteral("tree2/a/b/c.txt"))), QByteArray("c"));
    QCOMPARE(readBytes(root.filePath(QStringLiteral("tree2/.hidden"))), QByteArray("h"));

    QVERIFY(IUtils::removeDir(root.filePath(QStringLiteral("tree2"))));
    QVERIFY(!QFileInfo::exists(root.filePath(QStringLiteral("tree2"))));
    QVERIFY(IUtils::removeDir(root.filePath(QStringLiteral("never"))));
    // A blank path would mean the working folder.
    const QString cwd = QDir::currentPath();
    QVERIFY(QDir::setCurrent(root.filePath(QStringLiteral("tree"))));
    QVERIFY(!IUtils::removeDir(QString()));
    QVERIFY(!IUtils::removeDir(QStringLiteral("  ")));
    QVERIFY(QFileInfo::exists(root.filePath(QStringLiteral("tree/a/b/c.txt"))));
    QVERIFY(QDir::setCurrent(cwd));
    QVERIFY(!IUtils::removeDir(QStringLiteral("/")));
}

void TestModelUtils::fileLocker()
{
    const QDir root(m_dir.path());
    const QString a = root.filePath(QStringLiteral("locks/a.vetra"));
    const QString b = root.filePath(QStringLiteral("locks/b.png"));
    QVERIFY(writeBytes(a, "a"));
    QVERIFY(writeBytes(b, "b"));
    QVERIFY(QFile::link(a, root.filePath(QStringLiteral("locks/link.vetra"))));

    VTFileLocker locker;
    QVERIFY(locker.lock(a));
    QVERIFY(!locker.lock(a));
    // The same file by another path is the same lock.
    QVERIFY(!locker.lock(root.filePath(QStringLiteral("locks/../locks/a.vetra"))));
    QVERIFY(!locker.lock(root.filePath(QStringLiteral("locks/link.vetra"))));
    QVERIFY(locker.isLocked(root.filePath(QStringLiteral("locks/link.vetra"))));
    QVERIFY(!locker.lock(root.filePath(QStringLiteral("locks/none.png"))));
    QVERIFY(!locker.lock(root.filePath(QStringLiteral("locks"))));
    QVERIFY(!locker.lock(QString()));
    QVERIFY(locker.lock(b));
    QCOMPARE(locker.getLockedFiles().size(), 2);

    QVERIFY(locker.unlock(a));
    QVERIFY(!locker.unlock(a));
    QVERIFY(!locker.isLocked(a));
    QVERIFY(locker.lock(a));

    // A held file removed from disk can still be let go.
    QVERIFY(QFile::remove(b));
    QVERIFY(locker.isLocked(b));
    QVERIFY(locker.unlock(b));
    QCOMPARE(locker.getLockedFiles(), QStringList{QFileInfo(a).canonicalFilePath()});

    locker.unlockAll();
    QVERIFY(locker.getLockedFiles().isEmpty());
    QVERIFY(locker.lock(a));
}

void TestModelUtils::locationDefaultsAndHistory()
{
    VTLocationManager::destroyInstance();
    VTLocationManager* pLocations = VTLocationManager::getInstance();
    QCOMPARE(VTLocationManager::getInstance(), pLocations);
    // Nothing is known before the defaults are made.
    QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::NewProject), QString());

    pLocations->initDefaultLocation();
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QVERIFY(documents.startsWith(QDir(m_dir.path()).filePath(QStringLiteral("home"))));
    const QString projects = QDir(documents).filePath(QStringLiteral("Vetra Studio"));
    QVERIFY(QFileInfo(projects).isDir());
    QCOMPARE(pLocations->getDefaultLocation(VTLocationManager::NewProject), projects);
    QCOMPARE(pLocations->getDefaultLocation(VTLocationManager::OpenProject), projects);
    QCOMPARE(pLocations->getDefaultLocation(VTLocationManager::AppKept), documents);
    QCOMPARE(pLocations->getDefaultLocation(VTLocationManager::SavePackage), documents);
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QMap<int, QString> expected = {
        {1000, QString()}, {1001, documents}, {1002, documents}, {1003, movies},    {1004, music},
        {1005, pictures},  {1006, documents}, {1007, documents}, {1008, QString()}, {1009, QString()},
        {1010, QString()}, {1011, QString()}, {1012, documents}, {1013, pictures},  {1014, music},
        {1015, movies},    {1016, documents}, {1017, documents}, {1018, QString()}, {1019, QString()},
        {1020, QString()}};
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QVERIFY2(pLocations->getDefaultLocation(it.key()) == it.value(),
                 qPrintable(QString::number(it.key())));

    // History first, default when there is none.
    QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::OpenProject), projects);
    pLocations->setHistoryLocation(VTLocationManager::OpenProject, QStringLiteral("/opened"));
    QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::OpenProject), QStringLiteral("/opened"));
    QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::NewProject), projects);
    pLocations->setHistoryLocation(VTLocationManager::OpenProject, QString());
    QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::OpenProject), projects);
    pLocations->setDefaultLocation(VTLocationManager::OpenProject, QStringLiteral("/elsewhere"));
    QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::OpenProject), QStringLiteral("/elsewhere"));
    VTLocationManager::destroyInstance();
}

void TestModelUtils::locationSettingsAndDocuments()
{
    const QString iniPath = QDir(m_dir.path()).filePath(QStringLiteral("locations.ini"));
    {
        QSettings settings(iniPath, QSettings::IniFormat);
        VTLocationManager* pLocations = VTLocationManager::getInstance();
        pLocations->setSettings(&settings);
        pLocations->setHistoryLocation(VTLocationManager::NewProject, QStringLiteral("/new"));
        pLocations->setHistoryLocation(VTLocationManager::SavePackage, QStringLiteral("/packs"));
        pLocations->saveSettings();
        QCOMPARE(settings.value(QStringLiteral("LocationHistory/0")).toString(), QStringLiteral("/new"));
        QCOMPARE(settings.value(QStringLiteral("LocationHistory/3")).toString(), QStringLiteral("/packs"));
        QVERIFY(!settings.contains(QStringLiteral("LocationHistory/1")));
        VTLocationManager::destroyInstance();
    }
    {
        QSettings settings(iniPath, QSettings::IniFormat);
        VTLocationManager* pLocations = VTLocationManager::getInstance();
        pLocations->setDefaultLocation(VTLocationManager::OpenProject, QStringLiteral("/default-open"));
        pLocations->setSettings(&settings);
        pLocations->readFromSettings();
        QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::NewProject), QStringLiteral("/new"));
        QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::SavePackage), QStringLiteral("/packs"));
        // An absent key leaves the default in place.
        QCOMPARE(pLocations->getHistoryLocation(VTLocationManager::OpenProject),
                 QStringLiteral("/default-open"));
        pLocations->setSettings(nullptr);
        // Without settings, saving and reading do nothing.
        pLocations->saveSettings();
        pLocations->readFromSettings();
        VTLocationManager::destroyInstance();
    }

    VTLocationManager* pLocations = VTLocationManager::getInstance();
    pLocations->setDefaultLocation(VTLocationManager::ImportAudio, QStringLiteral("/music"));
    VTDocument first;
    VTDocument second;
    pLocations->setHistoryLocation(&first, VTLocationManager::ImportAudio, QStringLiteral("/first/audio"));
    pLocations->setHistoryLocation(&first, VTLocationManager::ExportHTML5, QStringLiteral("/first/html"));
    QCOMPARE(pLocations->getHistoryLocation(&first, VTLocationManager::ImportAudio),
             QStringLiteral("/first/audio"));
    QCOMPARE(pLocations->getHistoryLocation(&second, VTLocationManager::ImportAudio),
             QStringLiteral("/music"));
    QCOMPARE(pLocations->getDocumentHistory(&first).size(), 2);
    pLocations->removeHistoryLocation(&first, VTLocationManager::ImportAudio);
    QCOMPARE(pLocations->getHistoryLocation(&first, VTLocationManager::ImportAudio),
             QStringLiteral("/music"));
    QCOMPARE(pLocations->getHistoryLocation(&first, VTLocationManager::ExportHTML5),
             QStringLiteral("/first/html"));
    pLocations->clearHistoryLocation(&first);
    QVERIFY(pLocations->getDocumentHistory(&first).isEmpty());
    // A document's folders are not the application's.
    pLocations->setHistoryLocation(nullptr, VTLocationManager::ImportAudio, QStringLiteral("/nobody"));
    QVERIFY(pLocations->getDocumentHistory(nullptr).isEmpty());
}

void TestModelUtils::singletonIsMadeOnce()
{
    s_nConstructions.storeRelaxed(0);
    std::vector<std::thread> threads;
    QVector<CountedService*> seen(8, nullptr);
    for (int i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, i] { seen[i] = CountedService::getInstance(); });
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(s_nConstructions.loadRelaxed(), 1);
    for (CountedService* pService : seen)
        QCOMPARE(pService, seen.first());
    CountedService::destroyInstance();
    CountedService::destroyInstance();
    CountedService::getInstance();
    QCOMPARE(s_nConstructions.loadRelaxed(), 2);
    CountedService::destroyInstance();
}

QTEST_GUILESS_MAIN(TestModelUtils)
#include "tst_modelutils.moc"
