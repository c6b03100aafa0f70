#include "IProjectDialogs.h"
#include "MediaResource.h"
#include "MessageRecorder.h"
#include "VTDocument.h"
#include "VTPackage.h"
#include "VTPreloader.h"
#include "VTResource.h"
#include "VTResourceManager.h"
#include "VTSymbol.h"

#include <quacrc32.h>
#include <quazip.h>
#include <quazipfile.h>
#include <quazipnewinfo.h>

#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtEndian>
#include <QtTest>

#include <functional>

namespace {

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeBytes(const QString& path, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

QJsonObject readJson(const QString& path)
{
    return QJsonDocument::fromJson(readBytes(path)).object();
}

// Media and pictures barely compress; such bytes keep the sizes in the tests honest.
QByteArray noise(int nSize, quint32 nSeed)
{
    QByteArray data(nSize, Qt::Uninitialized);
    QRandomGenerator generator(nSeed);
    generator.fillRange(reinterpret_cast<quint32*>(data.data()), nSize / 4);
    return data;
}

QStringList entryNames(const QString& packagePath)
{
    QuaZip zip(packagePath);
    return zip.open(QuaZip::mdUnzip) ? zip.getFileNameList() : QStringList();
}

// One entry of an archive built by a test. A declared size of -1 is the honest one.
struct TestEntry
{
    QString strName;
    QByteArray data;
    qint64 nDeclaredSize = -1;
};

// Writes the data as it is, or with a size in its headers that the data does not have.
bool buildArchive(const QString& path, const QList<TestEntry>& entries)
{
    QuaZip zip(path);
    zip.setFileNameCodec("UTF-8");
    if (!zip.open(QuaZip::mdCreate))
        return false;
    for (const TestEntry& entry : entries) {
        QuaZipFile file(&zip);
        QuaZipNewInfo info(entry.strName);
        if (entry.nDeclaredSize < 0) {
            if (!file.open(QIODevice::WriteOnly, info) || file.write(entry.data) != entry.data.size())
                return false;
        } else {
            // A raw deflate stream is what qCompress gives, less its length, header and checksum.
            const QByteArray compressed = qCompress(entry.data);
            const QByteArray raw = compressed.mid(6, compressed.size() - 10);
            info.uncompressedSize = ulong(entry.nDeclaredSize);
            QuaCrc32 crc;
            if (!file.open(QIODevice::WriteOnly, info, nullptr, crc.calculate(entry.data), Z_DEFLATED,
                           Z_DEFAULT_COMPRESSION, true) ||
                file.write(raw) != raw.size())
                return false;
        }
        file.close();
    }
    zip.close();
    return zip.getZipError() == ZIP_OK;
}

// Copies the central directory record of one entry under new names of the same length, all
// pointing at the one stored entry: the overlapping kind of zip bomb.
bool overlapEntries(const QString& path, const QByteArray& name, int nCopies)
{
    QByteArray archive = readBytes(path);
    const int nEnd = archive.size() - 22;
    if (nEnd < 0 || qFromLittleEndian<quint32>(archive.constData() + nEnd) != 0x06054b50)
        return false;
    const quint32 nDirectorySize = qFromLittleEndian<quint32>(archive.constData() + nEnd + 12);
    const quint32 nDirectoryOffset = qFromLittleEndian<quint32>(archive.constData() + nEnd + 16);
    const int nNameAt = archive.indexOf(name, int(nDirectoryOffset));
    const int nRecord = nNameAt - 46;
    if (nNameAt < 0 || qFromLittleEndian<quint32>(archive.constData() + nRecord) != 0x02014b50)
        return false;
    const int nRecordSize = 46 + qFromLittleEndian<quint16>(archive.constData() + nRecord + 28) +
                            qFromLittleEndian<quint16>(archive.constData() + nRecord + 30) +
                            qFromLittleEndian<quint16>(archive.constData() + nRecord + 32);
    const QByteArray record = archive.mid(nRecord, nRecordSize);
    QByteArray copies;
    for (int i = 0; i < nCopies; ++i) {
        QByteArray copy = record;
        const QByteArray copyName = name.left(name.size() - 8) + QByteArray::number(1000 + i) + ".bin";
        copy.replace(46, name.size(), copyName);
        copies += copy;
    }
    QByteArray end = archive.mid(nEnd);
    const quint16 nCount = qFromLittleEndian<quint16>(end.constData() + 10) + quint16(nCopies);
    qToLittleEndian<quint16>(nCount, end.data() + 8);
    qToLittleEndian<quint16>(nCount, end.data() + 10);
    qToLittleEndian<quint32>(nDirectorySize + quint32(copies.size()), end.data() + 12);
    archive = archive.left(nEnd) + copies + end;
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(archive) == archive.size();
}

// Every file below root that is neither the package nor inside the allowed folder.
QStringList strayFiles(const QString& root, const QString& package, const QString& allowed)
{
    QStringList stray;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path != package && !path.startsWith(allowed + QLatin1Char('/')))
            stray << path;
    }
    return stray;
}

class ScriptedDialogs final : public IProjectDialogs
{
public:
    ScriptedDialogs() { IProjectDialogs::setInstance(this); }
    ~ScriptedDialogs() override { IProjectDialogs::setInstance(nullptr); }
    bool askProjectLocation(const QString&, const QString&, const QString&, QString* pFilePath) override
    {
        if (m_strAnswer.isEmpty())
            return false;
        QDir().mkpath(QFileInfo(m_strAnswer).absolutePath());
        *pFilePath = m_strAnswer;
        return true;
    }
    ICopyProgress* createCopyProgress(const QString& label, qint64 nTotal) override
    {
        m_lstLabels << label;
        m_lstTotals << nTotal;
        return new Progress(m_bCancel);
    }

    QString m_strAnswer;
    bool m_bCancel = false;
    QStringList m_lstLabels;
    QList<qint64> m_lstTotals;

private:
    // Gives up once the first chunk has gone through, as a user pressing Abort would.
    class Progress final : public ICopyProgress
    {
    public:
        explicit Progress(bool bCancel)
            : m_bCancel(bCancel)
        {}
        void addCopiedBytes(qint64 nBytes) override { m_nBytes += nBytes; }
        bool wasCanceled() const override { return m_bCancel && m_nBytes > 0; }
        void setCancelHandler(std::function<void()>) override {}

    private:
        bool m_bCancel = false;
        qint64 m_nBytes = 0;
    };
};

} // namespace

class TestPackage : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void packAndUnpackReproduceTheProject();
    void preloaderTravelsOnlyWhenCustom();
    void hostileArchivesAreRefused_data();
    void hostileArchivesAreRefused();
    void largePackagesShowProgressAndAbortCleanly();

private:
    QString path(const QString& relative) const { return QDir(m_dir.path()).filePath(relative); }
    // A saved project folder/N/N.vetra.
    bool makeProject(VTDocument* pDocument, const QString& folder);
    static VTResource* import(VTDocument* pDocument, VTResource* pResource, const QString& sourcePath);

    QTemporaryDir m_dir;
};

void TestPackage::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qputenv("HOME", path(QStringLiteral("home")).toLocal8Bit());
}

bool TestPackage::makeProject(VTDocument* pDocument, const QString& folder)
{
    const QString name = QFileInfo(folder).fileName();
    QDir().mkpath(folder);
    pDocument->setFileName(QDir(folder).filePath(name + QStringLiteral(".vetra")));
    return pDocument->openTempDocument(640, 360, 1, false) && pDocument->save();
}

VTResource* TestPackage::import(VTDocument* pDocument, VTResource* pResource, const QString& sourcePath)
{
    pResource->setName(QFileInfo(sourcePath).completeBaseName());
    if (!pDocument->getResourceManager()->addResource(pResource, sourcePath)) {
        delete pResource;
        return nullptr;
    }
    return pResource;
}

void TestPackage::packAndUnpackReproduceTheProject()
{
    MessageRecorder messages;
    ScriptedDialogs dialogs;
    VTDocument document;
    QVERIFY(makeProject(&document, path(QStringLiteral("origin/show"))));
    const QList<QPair<VTResource*, QByteArray>> imports{
        {new VTResource(VTResource::Image), noise(3000, 1)},
        {new MediaResource(VTResource::Video), noise(70000, 2)},
        {new VTResource(VTResource::Other), QByteArray("notes ").repeated(500)},
        {new VTResource(VTResource::Image), noise(100, 3)}};
    const QStringList importNames{"logo.png", "clip.webm", "notes.txt", "old.png"};
    for (int i = 0; i < imports.size(); ++i) {
        const QString source = path(QStringLiteral("in/") + importNames.at(i));
        QVERIFY(writeBytes(source, imports.at(i).second));
        QVERIFY(import(&document, imports.at(i).first, source));
    }
    auto* pSymbol = new VTSymbol();
    pSymbol->setWidth(77);
    auto* pBadge = new VTResource(VTResource::Symbol);
    pBadge->setName(QStringLiteral("Badge"));
    document.getResourceManager()->addResource(pBadge, pSymbol);
    QVERIFY(document.save());
    // Deleted but still on disk, as undo needs it; a package leaves it behind.
    imports.last().first->setDeleted(true);
    // An edit of the symbol that only memory holds yet.
    pSymbol->setWidth(99);

    const QString projectFile = document.getFileName();
    const QString badgeFile =
        QDir(document.getResourceFolderPath()).filePath(QStringLiteral("Badge.vetrasym"));
    const QByteArray projectBytes = readBytes(projectFile);
    const QByteArray badgeBytes = readBytes(badgeFile);
    QJsonObject saved;
    QVERIFY(document.saveData(saved));
    const QString package = path(QStringLiteral("out/show.vetrapack"));
    QVERIFY(QDir().mkpath(path(QStringLiteral("out"))));
    QVERIFY(document.save(package));
    QCOMPARE(messages.getTexts(), QStringList{QStringLiteral("Save to package successfully.")});

    // Fixed names, the project first, the resources flat in the manager's order; nothing of the
    // deleted one, and no preloader without a custom one.
    QStringList expected{QStringLiteral("vetra-studio.vetra")};
    const QStringList files = document.getResourceManager()->getAbsTempFilenames(true, false);
    for (const QString& file : files)
        expected << QStringLiteral("vetra-studio_res/") + QFileInfo(file).fileName();
    QCOMPARE(expected.size(), 5);
    QCOMPARE(entryNames(package), expected);
    // Packing wrote nothing into the project and left the document as it was.
    QCOMPARE(readBytes(projectFile), projectBytes);
    QCOMPARE(readBytes(badgeFile), badgeBytes);
    QCOMPARE(document.getFileName(), projectFile);

    // Renamed on disk, the package opens all the same: its names inside do not depend on it.
    const QString renamed = path(QStringLiteral("out/Renamed Copy.vetrapack"));
    QVERIFY(QFile::rename(package, renamed));
    dialogs.m_strAnswer = path(QStringLiteral("unpacked/Show/Show.vetra"));
    VTDocument reopened;
    reopened.setFileName(renamed);
    QVERIFY2(reopened.open(), qPrintable(reopened.getLoadProblems().join(QLatin1Char('|'))));
    QCOMPARE(reopened.getFileName(), dialogs.m_strAnswer);
    QCOMPARE(readJson(dialogs.m_strAnswer), saved);
    const QDir extracted(path(QStringLiteral("unpacked/Show/Show_res")));
    QCOMPARE(extracted.entryList(QDir::Files).size(), files.size());
    for (const QString& file : files) {
        if (file != badgeFile)
            QVERIFY2(readBytes(extracted.filePath(QFileInfo(file).fileName())) == readBytes(file),
                     qPrintable(file));
    }
    VTResourceManager* pReopened = reopened.getResourceManager();
    QCOMPARE(pReopened->getSymbolForResource(pReopened->findResourceByFileName("Badge.vetrasym"))->getWidth(),
             99);

    // A symbol file is the same archive, written without the closing message.
    messages.clear();
    QVERIFY(VTPackage::save(document, path(QStringLiteral("out/badge.vetrasym")), false));
    QVERIFY(messages.m_lstMessages.isEmpty());
    QCOMPARE(entryNames(path(QStringLiteral("out/badge.vetrasym"))), expected);

    // Entries that are no part of a project are left out, and named.
    const QString extra = path(QStringLiteral("extra/extra.vetrapack"));
    QVERIFY(QDir().mkpath(path(QStringLiteral("extra/target"))));
    QVERIFY(buildArchive(extra, {{QStringLiteral("vetra-studio.vetra"), projectBytes},
                                 {QStringLiteral("readme.txt"), "hello"},
                                 {QStringLiteral("vetra-studio_res/sub/deep.png"), "x"},
                                 {QStringLiteral("vetra-studio_res/a.png"), "a"}}));
    QStringList problems;
    QVERIFY(VTPackage::extract(extra, path(QStringLiteral("extra/target")), &problems));
    QCOMPARE(problems.size(), 2);
    QVERIFY(problems.at(0).contains(QLatin1String("\"readme.txt\"")));
    QCOMPARE(QDir(path(QStringLiteral("extra/target/target_res")))
                 .entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("a.png")});
}

void TestPackage::preloaderTravelsOnlyWhenCustom()
{
    MessageRecorder messages;
    VTDocument owner;
    QVERIFY(makeProject(&owner, path(QStringLiteral("loader/banner"))));
    const QString plain = path(QStringLiteral("loader/plain.vetrapack"));
    QVERIFY(VTPackage::save(owner, plain, false));
    for (const QString& name : entryNames(plain))
        QVERIFY2(!name.startsWith(QLatin1String("vetra-studio_res/preloader")), qPrintable(name));

    QVERIFY(owner.initPreloaderDocument());
    VTPreloader* pPreloader = owner.getPreloaderDoc();
    QVERIFY(writeBytes(path(QStringLiteral("loader/in/spinner.png")), noise(5000, 4)));
    QVERIFY(
        import(pPreloader, new VTResource(VTResource::Image), path(QStringLiteral("loader/in/spinner.png"))));
    pPreloader->setWidth(321);
    QVERIFY(pPreloader->save());
    QVERIFY(owner.hasCustomLoader());
    QJsonObject preloaderSaved;
    QVERIFY(pPreloader->saveData(preloaderSaved));
    // Closed, the preloader is read from disk again for the package.
    QVERIFY(pPreloader->close());
    QVERIFY(!owner.getPreloaderDoc());

    const QString custom = path(QStringLiteral("loader/custom.vetrapack"));
    QVERIFY(VTPackage::save(owner, custom, false));
    QCOMPARE(entryNames(custom).mid(0, 3),
             (QStringList{QStringLiteral("vetra-studio.vetra"),
                          QStringLiteral("vetra-studio_res/preloader/preloader.vetra"),
                          QStringLiteral("vetra-studio_res/preloader/preloader_res/spinner.png")}));

    const QString target = path(QStringLiteral("loader/unpacked/Show"));
    QVERIFY(QDir().mkpath(target));
    QVERIFY(owner.extractPackage(custom, target));
    QCOMPARE(readJson(target + QStringLiteral("/Show_res/preloader/preloader.vetra")), preloaderSaved);
    QCOMPARE(readBytes(target + QStringLiteral("/Show_res/preloader/preloader_res/spinner.png")),
             noise(5000, 4));
    VTDocument reopened;
    reopened.setFileName(target + QStringLiteral("/Show.vetra"));
    QVERIFY(reopened.open());
    QVERIFY(reopened.initPreloaderDocument());
    QCOMPARE(reopened.getPreloaderDoc()->getWidth(), 321);
    QCOMPARE(reopened.getPreloaderDoc()->getResourceManager()->getIdResourceMap().size(), 1);
    QVERIFY(messages.m_lstMessages.isEmpty());
}

void TestPackage::hostileArchivesAreRefused_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("message");
    // Whether the refusal comes before anything is written.
    QTest::addColumn<bool>("bUpFront");
    const QString resources = QStringLiteral("Cannot read project resources.");
    QTest::newRow("zip slip") << "vetra-studio_res/../../evil.txt" << resources << true;
    QTest::newRow("absolute") << "/evil.txt" << resources << true;
    QTest::newRow("backslash") << "vetra-studio_res/..\\..\\evil.txt" << resources << true;
    QTest::newRow("drive") << "C:/evil.txt" << resources << true;
    QTest::newRow("duplicate") << "duplicate" << resources << true;
    QTest::newRow("impossible ratio") << "ratio" << resources << true;
    QTest::newRow("overlapping bomb") << "overlap" << resources << true;
    QTest::newRow("lying size") << "lying" << resources << false;
    QTest::newRow("damaged data") << "damaged" << resources << false;
    QTest::newRow("truncated") << "truncated" << QStringLiteral("Cannot open package file.") << true;
    QTest::newRow("no project") << "noproject" << QStringLiteral("Cannot read project data.") << true;
    QTest::newRow("missing file") << "missing" << QStringLiteral("The package file doesn't exist.") << true;
}

void TestPackage::hostileArchivesAreRefused()
{
    QFETCH(QString, kind);
    QFETCH(QString, message);
    QFETCH(bool, bUpFront);
    const QString sandbox = path(QStringLiteral("hostile/") + QString::fromLatin1(QTest::currentDataTag()));
    const QString package = sandbox + QStringLiteral("/p.vetrapack");
    const QString target = sandbox + QStringLiteral("/out/Show");
    QVERIFY(QDir().mkpath(target));
    const QByteArray project = R"({"appName":"Vetra Studio","document":{}})";
    const TestEntry projectEntry{QStringLiteral("vetra-studio.vetra"), project};
    QByteArray pattern(1024 * 1024, 'v');
    for (int i = 0; i < pattern.size(); i += 512)
        pattern[i] = char(i / 512);

    bool bBuilt = false;
    if (kind.contains(QLatin1Char('/')) || kind.contains(QLatin1Char('\\'))) {
        const QString name =
            kind == QLatin1String("/evil.txt") ? sandbox + QStringLiteral("/out/evil.txt") : kind;
        bBuilt = buildArchive(
            package, {projectEntry, {QStringLiteral("vetra-studio_res/a.png"), "a"}, {name, "evil"}});
    } else if (kind == QLatin1String("duplicate")) {
        bBuilt = buildArchive(package, {projectEntry,
                                        {QStringLiteral("vetra-studio_res/a.png"), "a"},
                                        {QStringLiteral("vetra-studio_res/a.png"), "b"}});
    } else if (kind == QLatin1String("ratio")) {
        bBuilt = buildArchive(package,
                              {projectEntry, {QStringLiteral("vetra-studio_res/a.bin"), "abc", 1LL << 40}});
    } else if (kind == QLatin1String("overlap")) {
        bBuilt =
            buildArchive(package, {projectEntry, {QStringLiteral("vetra-studio_res/a0000.bin"), pattern}}) &&
            overlapEntries(package, "vetra-studio_res/a0000.bin", 300);
    } else if (kind == QLatin1String("lying")) {
        // 64 MiB of data behind a header that promises 1000 bytes.
        bBuilt = buildArchive(
            package, {projectEntry,
                      {QStringLiteral("vetra-studio_res/a.bin"), QByteArray(64 * 1024 * 1024, '\0'), 1000}});
    } else if (kind == QLatin1String("damaged")) {
        bBuilt = buildArchive(package, {projectEntry, {QStringLiteral("vetra-studio_res/a.bin"), pattern}});
        QByteArray bytes = readBytes(package);
        const int nAt = bytes.indexOf("vetra-studio_res/a.bin") + 200;
        for (int i = 0; i < 64; ++i)
            bytes[nAt + i] = char(~bytes.at(nAt + i));
        bBuilt = bBuilt && writeBytes(package, bytes);
    } else if (kind == QLatin1String("truncated")) {
        bBuilt = buildArchive(package,
                              {projectEntry, {QStringLiteral("vetra-studio_res/a.bin"), noise(20000, 5)}}) &&
                 writeBytes(package, readBytes(package).left(12000));
    } else if (kind == QLatin1String("noproject")) {
        bBuilt = buildArchive(package, {{QStringLiteral("vetra-studio_res/a.png"), "a"}});
    } else {
        bBuilt = true;
    }
    QVERIFY(bBuilt);

    MessageRecorder messages;
    QVERIFY(!VTPackage::extract(package, target));
    QCOMPARE(messages.getTexts(), QStringList{message});
    QCOMPARE(strayFiles(sandbox, package, target), QStringList());
    if (bUpFront)
        QVERIFY(QDir(target).isEmpty());
    // Whatever was refused mid-way did not stay as a truncated or oversized file.
    QVERIFY(!QFileInfo::exists(target + QStringLiteral("/Show_res/a.bin")));
}

void TestPackage::largePackagesShowProgressAndAbortCleanly()
{
    MessageRecorder messages;
    ScriptedDialogs dialogs;
    VTDocument document;
    QVERIFY(makeProject(&document, path(QStringLiteral("large/big"))));
    // Exactly the limit: no display, and nothing that could cancel.
    const qint64 nLimit = VTResourceManager::getMinimumDatasizeToShow();
    QVERIFY(writeBytes(path(QStringLiteral("large/in/big.png")), noise(int(nLimit), 6)));
    QVERIFY(import(&document, new VTResource(VTResource::Image), path(QStringLiteral("large/in/big.png"))));
    QCOMPARE(document.getResourceManager()->getDataSize(false), nLimit);
    dialogs.m_bCancel = true;
    const QString package = path(QStringLiteral("large/big.vetrapack"));
    QVERIFY(VTPackage::save(document, package, false));
    QVERIFY(dialogs.m_lstLabels.isEmpty());

    // Past it, the display comes, and an abort keeps the package that was there before.
    QVERIFY(writeBytes(path(QStringLiteral("large/in/more.png")), noise(1000, 7)));
    QVERIFY(import(&document, new VTResource(VTResource::Image), path(QStringLiteral("large/in/more.png"))));
    const QByteArray before = readBytes(package);
    QVERIFY(!VTPackage::save(document, package, false));
    QCOMPARE(dialogs.m_lstLabels, QStringList{QStringLiteral("Exporting package...")});
    QCOMPARE(dialogs.m_lstTotals, QList<qint64>{nLimit + 1000});
    QVERIFY(messages.m_lstMessages.isEmpty());
    QVERIFY(readBytes(package) == before);
    QCOMPARE(QDir(path(QStringLiteral("large"))).entryList(QDir::Files),
             QStringList{QStringLiteral("big.vetrapack")});

    // Extraction counts by the package's size; aborted, it keeps no partial resource.
    dialogs.m_lstLabels.clear();
    dialogs.m_lstTotals.clear();
    const QString target = path(QStringLiteral("large/unpacked/Big"));
    QVERIFY(QDir().mkpath(target));
    QVERIFY(!VTPackage::extract(package, target));
    QCOMPARE(dialogs.m_lstLabels, QStringList{QStringLiteral("Extracting package...")});
    QCOMPARE(dialogs.m_lstTotals, QList<qint64>{QFileInfo(package).size()});
    QVERIFY(QFileInfo::exists(target + QStringLiteral("/Big.vetra")));
    QVERIFY(QDir(target + QStringLiteral("/Big_res")).isEmpty());
}

QTEST_GUILESS_MAIN(TestPackage)
#include "tst_package.moc"
