#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

struct Result
{
    int nExitCode = -1;
    QString strOut;
    QString strErr;
};

Result runVetra(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(VETRA_CLI_PATH), arguments);
    Result result;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.nExitCode = process.exitCode();
    result.strOut = QString::fromUtf8(process.readAllStandardOutput());
    result.strErr = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QString samplePath()
{
    return QStringLiteral(VETRA_EXAMPLES_DIR "/welcome/welcome.vetra");
}

QJsonObject sample()
{
    QFile file(samplePath());
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

QByteArray readBytes(const QString& filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeProject(const QString& filePath, const QJsonObject& object)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    const QByteArray data = QJsonDocument(object).toJson();
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

} // namespace

class TestCli : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void sampleChecksAndStaysUntouched();
    void refusedProjectsFail();
    void damagedContentIsReported();
    void resaveWritesACopyAndLeavesTheOriginal();
    void packThenUnpackGivesTheSameProject();
    void unpackRefusesHostilePackagesAndProjects();
    void valuesFollowTheSampleKeyframes();
    void exportWritesThePlayerFolder();
    void commandLine();

private:
    QTemporaryDir m_dir;
};

void TestCli::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QVERIFY(QFileInfo::exists(QStringLiteral(VETRA_CLI_PATH)));
    QVERIFY(!sample().isEmpty());
}

void TestCli::sampleChecksAndStaysUntouched()
{
    const QFileInfo before(samplePath());
    QFile file(samplePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    file.close();
    const QStringList entries = QDir(before.absolutePath()).entryList(QDir::AllEntries | QDir::Hidden);

    const Result result = runVetra({QStringLiteral("check"), samplePath()});
    QCOMPARE(result.nExitCode, 0);
    QVERIFY2(result.strErr.isEmpty(), qPrintable(result.strErr));
    QVERIFY2(result.strOut.contains(QStringLiteral("\"welcome\", 800 x 600 px, format version 3")),
             qPrintable(result.strOut));
    QCOMPARE(result.strOut.count(QLatin1Char('\n')), 1);

    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
    QCOMPARE(QFileInfo(samplePath()).lastModified(), before.lastModified());
    QCOMPARE(QDir(before.absolutePath()).entryList(QDir::AllEntries | QDir::Hidden), entries);
}

void TestCli::refusedProjectsFail()
{
    QJsonObject other = sample();
    other.insert(QStringLiteral("appName"), QStringLiteral("Other Studio"));
    const QString otherPath = QDir(m_dir.path()).filePath(QStringLiteral("other/other.vetra"));
    QVERIFY(writeProject(otherPath, other));
    Result result = runVetra({QStringLiteral("check"), otherPath});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY2(result.strErr.contains(QStringLiteral("Vetra Studio: Not a valid Vetra Studio project.")),
             qPrintable(result.strErr));
    QVERIFY(result.strOut.isEmpty());

    const QString missing = QDir(m_dir.path()).filePath(QStringLiteral("missing.vetra"));
    result = runVetra({QStringLiteral("check"), missing});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("Vetra Studio: File doesn't exist.\n") + missing));

    // A newer format is a question; without a user the answer is Cancel, so it does not open.
    QJsonObject newer = sample();
    QJsonObject document = newer.value(QStringLiteral("document")).toObject();
    document.insert(QStringLiteral("docVersion"), 9);
    newer.insert(QStringLiteral("document"), document);
    const QString newerPath = QDir(m_dir.path()).filePath(QStringLiteral("newer/newer.vetra"));
    QVERIFY(writeProject(newerPath, newer));
    result = runVetra({QStringLiteral("check"), newerPath});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(
        QStringLiteral("Vetra Studio: The project is incompatible with current application version.")));
    QVERIFY(result.strErr.contains(QStringLiteral("\"Cancel\"")));

    // A package that is no zip is refused, and nothing is unpacked beside it.
    const QString package = QDir(m_dir.path()).filePath(QStringLiteral("packed/show.vetrapack"));
    QVERIFY(writeProject(package, sample()));
    result = runVetra({QStringLiteral("check"), package});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("Vetra Studio: Cannot open package file.")));
    QCOMPARE(QDir(QFileInfo(package).absolutePath()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList{QStringLiteral("show.vetrapack")});
}

void TestCli::damagedContentIsReported()
{
    QJsonObject damaged = sample();
    QJsonObject document = damaged.value(QStringLiteral("document")).toObject();
    document.insert(QStringLiteral("width"), QStringLiteral("wide"));
    document.insert(QStringLiteral("scenes"), 5);
    damaged.insert(QStringLiteral("document"), document);
    const QString path = QDir(m_dir.path()).filePath(QStringLiteral("damaged/damaged.vetra"));
    QVERIFY(writeProject(path, damaged));
    // The sample's files come along, so that only the damage is reported.
    const QDir sampleResources(QFileInfo(samplePath()).absolutePath() + QStringLiteral("/welcome_res"));
    QDir().mkpath(QFileInfo(path).absolutePath() + QStringLiteral("/damaged_res"));
    for (const QString& name : sampleResources.entryList(QDir::Files))
        QVERIFY(QFile::copy(sampleResources.filePath(name),
                            QFileInfo(path).absolutePath() + QStringLiteral("/damaged_res/") + name));
    const Result result = runVetra({QStringLiteral("check"), path});
    // It opens, as in the studio, but nothing that was dropped goes unmentioned.
    QCOMPARE(result.nExitCode, 0);
    QCOMPARE(result.strErr.count(QLatin1Char('\n')), 2);
    QVERIFY(result.strErr.contains(QStringLiteral("\"width\"")));
    QVERIFY(result.strErr.contains(QStringLiteral("\"scenes\"")));
    QVERIFY(result.strOut.contains(QStringLiteral("0 x 600 px")));
    QVERIFY(result.strOut.contains(QStringLiteral("2 problems")));

    // A resource naming a file outside its folder is refused and named; without a user to say
    // go on, a project with resources left out does not open.
    QJsonObject hostile = sample();
    document = hostile.value(QStringLiteral("document")).toObject();
    document.insert(QStringLiteral("resources"),
                    QJsonArray{QJsonObject{{"id", 1},
                                           {"uuid", QStringLiteral("{0b6c1f3e-8a59-4f0e-9d59-3b0f7e0c6a11}")},
                                           {"name", "key"},
                                           {"type", 8},
                                           {"fileName", "../../keys"}}});
    hostile.insert(QStringLiteral("document"), document);
    const QString hostilePath = QDir(m_dir.path()).filePath(QStringLiteral("hostile/hostile.vetra"));
    QVERIFY(writeProject(hostilePath, hostile));
    const Result refused = runVetra({QStringLiteral("check"), hostilePath});
    QCOMPARE(refused.nExitCode, 1);
    QVERIFY2(
        refused.strErr.contains(QStringLiteral("Resource \"key\": the file name \"../../keys\" does not lie "
                                               "inside the resource folder")),
        qPrintable(refused.strErr));
    QVERIFY(refused.strErr.contains(QStringLiteral("Some resource files cannot be loaded.")));
}

void TestCli::resaveWritesACopyAndLeavesTheOriginal()
{
    QJsonObject project = sample();
    QJsonObject document = project.value(QStringLiteral("document")).toObject();
    document.insert(QStringLiteral("resources"),
                    QJsonArray{QJsonObject{{"id", 4},
                                           {"uuid", QStringLiteral("{0b6c1f3e-8a59-4f0e-9d59-3b0f7e0c6a11}")},
                                           {"name", "logo.png"},
                                           {"deleted", false},
                                           {"type", 0},
                                           {"dataSize", 4},
                                           {"fileName", "logo.png"}}});
    project.insert(QStringLiteral("document"), document);
    const QString inPath = QDir(m_dir.path()).filePath(QStringLiteral("resave/in/in.vetra"));
    QVERIFY(writeProject(inPath, project));
    const QString logo = QDir(m_dir.path()).filePath(QStringLiteral("resave/in/in_res/logo.png"));
    QDir().mkpath(QFileInfo(logo).absolutePath());
    {
        QFile file(logo);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("logo") == 4);
    }
    QFile in(inPath);
    QVERIFY(in.open(QIODevice::ReadOnly));
    const QByteArray inBytes = in.readAll();
    in.close();

    const QString outPath = QDir(m_dir.path()).filePath(QStringLiteral("resave/out/out.vetra"));
    Result result = runVetra({QStringLiteral("resave"), inPath, outPath});
    QVERIFY2(result.nExitCode == 0, qPrintable(result.strErr));
    QCOMPARE(result.strOut.trimmed(), QDir::toNativeSeparators(outPath));
    QVERIFY(QFileInfo(QDir(m_dir.path()).filePath(QStringLiteral("resave/out/out_res/logo.png"))).isFile());
    QVERIFY(in.open(QIODevice::ReadOnly));
    QCOMPARE(in.readAll(), inBytes);
    in.close();
    QVERIFY(QFileInfo(logo).isFile());

    // What the model writes, it reads back to the same: a second round changes nothing.
    const QString againPath = QDir(m_dir.path()).filePath(QStringLiteral("resave/again/again.vetra"));
    result = runVetra({QStringLiteral("resave"), outPath, againPath});
    QCOMPARE(result.nExitCode, 0);
    const auto readDocument = [](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    };
    QCOMPARE(readDocument(againPath), readDocument(outPath));
    QCOMPARE(readDocument(outPath).value("document").toObject().value("resources"),
             document.value("resources"));

    // The sample, which uses every kind of element, a symbol and every kind of media, comes
    // through a resave whole.
    const QString sampleCopy = QDir(m_dir.path()).filePath(QStringLiteral("resave/sample/sample.vetra"));
    result = runVetra({QStringLiteral("resave"), samplePath(), sampleCopy});
    QVERIFY2(result.nExitCode == 0, qPrintable(result.strErr));
    QVERIFY2(result.strErr.isEmpty(), qPrintable(result.strErr));
    const Result original = runVetra({QStringLiteral("check"), samplePath()});
    const Result copy = runVetra({QStringLiteral("check"), sampleCopy});
    QVERIFY2(original.strOut.contains(QStringLiteral("2 scenes, 11 elements, 4 resources, 1 function")),
             qPrintable(original.strOut));
    QCOMPARE(copy.strOut.mid(copy.strOut.indexOf(QLatin1String(" px,"))),
             original.strOut.mid(original.strOut.indexOf(QLatin1String(" px,"))));
    for (const char* pszFile : {"Badge.vetrasym", "chime.mp3", "clip.webm", "logo.svg"})
        QVERIFY2(
            QFileInfo(QDir(m_dir.path())
                          .filePath(QStringLiteral("resave/sample/sample_res/") + QLatin1String(pszFile)))
                .isFile(),
            pszFile);

    // An existing project is never replaced, and bad arguments say how it is used.
    result = runVetra({QStringLiteral("resave"), inPath, outPath});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("exists already")));
    QCOMPARE(runVetra({QStringLiteral("resave"), inPath}).nExitCode, 2);
    QCOMPARE(runVetra({QStringLiteral("resave"), inPath, outPath + QStringLiteral(".txt")}).nExitCode, 2);
    result = runVetra({QStringLiteral("resave"), QDir(m_dir.path()).filePath(QStringLiteral("none.vetra")),
                       QDir(m_dir.path()).filePath(QStringLiteral("resave/x/x.vetra"))});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("File doesn't exist.")));
}

void TestCli::packThenUnpackGivesTheSameProject()
{
    const QString sampleFolder = QFileInfo(samplePath()).absolutePath() + QStringLiteral("/welcome_res");
    const QByteArray symbolBytes = readBytes(sampleFolder + QStringLiteral("/Badge.vetrasym"));
    const QString package = QDir(m_dir.path()).filePath(QStringLiteral("pack/welcome.vetrapack"));
    Result result = runVetra({QStringLiteral("pack"), samplePath(), package});
    QVERIFY2(result.nExitCode == 0, qPrintable(result.strErr));
    QVERIFY2(result.strErr.isEmpty(), qPrintable(result.strErr));
    QCOMPARE(result.strOut.trimmed(), QDir::toNativeSeparators(package));
    // Packing only reads the project, symbols included.
    QCOMPARE(readBytes(sampleFolder + QStringLiteral("/Badge.vetrasym")), symbolBytes);

    const QString folder = QDir(m_dir.path()).filePath(QStringLiteral("pack/unpacked/Show"));
    result = runVetra({QStringLiteral("unpack"), package, folder});
    QVERIFY2(result.nExitCode == 0, qPrintable(result.strErr));
    const QString project = folder + QStringLiteral("/Show.vetra");
    QCOMPARE(result.strOut.trimmed(), QDir::toNativeSeparators(project));
    const Result original = runVetra({QStringLiteral("check"), samplePath()});
    const Result unpacked = runVetra({QStringLiteral("check"), project});
    QVERIFY2(unpacked.nExitCode == 0 && unpacked.strErr.isEmpty(), qPrintable(unpacked.strErr));
    QCOMPARE(unpacked.strOut.mid(unpacked.strOut.indexOf(QLatin1String(" px,"))),
             original.strOut.mid(original.strOut.indexOf(QLatin1String(" px,"))));
    // The package itself checks as well, unpacked out of sight.
    const Result packed = runVetra({QStringLiteral("check"), package});
    QCOMPARE(packed.strOut.mid(packed.strOut.indexOf(QLatin1String(" px,"))),
             original.strOut.mid(original.strOut.indexOf(QLatin1String(" px,"))));

    // Nothing is replaced, and bad arguments say how it is used.
    result = runVetra({QStringLiteral("pack"), samplePath(), package});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("exists already")));
    result = runVetra({QStringLiteral("unpack"), package, folder});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("holds a project already")));
    QCOMPARE(runVetra({QStringLiteral("pack"), samplePath(), package + QStringLiteral(".zip")}).nExitCode, 2);
    QCOMPARE(runVetra({QStringLiteral("unpack"), package}).nExitCode, 2);
}

void TestCli::unpackRefusesHostilePackagesAndProjects()
{
    const QString package = QDir(m_dir.path()).filePath(QStringLiteral("hostile/welcome.vetrapack"));
    Result result = runVetra({QStringLiteral("pack"), samplePath(), package});
    QCOMPARE(result.nExitCode, 0);
    // A resource renamed in place, to the same length, so that it would land two folders up.
    QByteArray bytes = readBytes(package);
    QVERIFY(bytes.contains("vetra-studio_res/logo.svg"));
    bytes.replace("vetra-studio_res/logo.svg", "vetra-studio_res/../../ab");
    const QString hostile = QDir(m_dir.path()).filePath(QStringLiteral("hostile/slip.vetrapack"));
    {
        QFile file(hostile);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    const QString folder = QDir(m_dir.path()).filePath(QStringLiteral("hostile/out/Show"));
    result = runVetra({QStringLiteral("unpack"), hostile, folder});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY2(result.strErr.contains(QStringLiteral("Vetra Studio: Cannot read project resources.")),
             qPrintable(result.strErr));
    QVERIFY(result.strOut.isEmpty());
    // The folder it made is gone again, and nothing landed beside it.
    QVERIFY(!QFileInfo::exists(folder));
    QVERIFY(!QFileInfo::exists(QDir(m_dir.path()).filePath(QStringLiteral("hostile/ab"))));
    QVERIFY(!QFileInfo::exists(QDir(m_dir.path()).filePath(QStringLiteral("hostile/out/ab"))));

    result = runVetra(
        {QStringLiteral("unpack"), QDir(m_dir.path()).filePath(QStringLiteral("none.vetrapack")), folder});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("Vetra Studio: The package file doesn't exist.")));
    QVERIFY(!QFileInfo::exists(folder));
}

namespace {

// The easing curves the sample uses, written out as the textbook formulas.
double ease(int nType, double p)
{
    switch (nType) {
    case 3:
        return p < 0.5 ? 2 * p * p : 1 - 2 * (1 - p) * (1 - p);
    case 6:
        return 1 + (p - 1) * (p - 1) * (p - 1);
    case 19:
        return -0.5 * (std::cos(M_PI * p) - 1);
    case 38: {
        if (p < 4 / 11.0)
            return 7.5625 * p * p;
        if (p < 8 / 11.0)
            return 7.5625 * (p - 6 / 11.0) * (p - 6 / 11.0) + 0.75;
        if (p < 10 / 11.0)
            return 7.5625 * (p - 9 / 11.0) * (p - 9 / 11.0) + 0.9375;
        return 7.5625 * (p - 21 / 22.0) * (p - 21 / 22.0) + 0.984375;
    }
    case 34: {
        const double s = 1.70158;
        return (p - 1) * (p - 1) * ((s + 1) * (p - 1) + s) + 1;
    }
    default:
        return p;
    }
}

// The value of a plain number keyframe of the project file at nTime.
double expectedNumber(const QJsonObject& keyframe, int nTime)
{
    const QJsonArray keys = keyframe.value("keyValues").toArray();
    const QJsonArray segments = keyframe.value("keyframeSegments").toArray();
    auto valueOf = [](const QJsonValue& key, const char* which) {
        return key.toObject().value(which).toObject().value("val").toDouble();
    };
    if (nTime < keys.first().toObject().value("time").toInt())
        return valueOf(keys.first(), "value_minus");
    for (int i = keys.size() - 1; i >= 0; --i) {
        const int nFrom = keys.at(i).toObject().value("time").toInt();
        if (nTime < nFrom)
            continue;
        if (i == keys.size() - 1 || !segments.at(i).toObject().value("has_transition").toBool())
            return valueOf(keys.at(i), "value");
        const int nTo = keys.at(i + 1).toObject().value("time").toInt();
        const double p = ease(segments.at(i).toObject().value("easing_curve").toInt(),
                              double(nTime - nFrom) / (nTo - nFrom));
        return valueOf(keys.at(i), "value") +
               (valueOf(keys.at(i + 1), "value_minus") - valueOf(keys.at(i), "value")) * p;
    }
    return 0;
}

} // namespace

void TestCli::valuesFollowTheSampleKeyframes()
{
    const QJsonArray timelines = sample()
                                     .value("document")
                                     .toObject()
                                     .value("scenes")
                                     .toArray()
                                     .first()
                                     .toObject()
                                     .value("timelines")
                                     .toObject()
                                     .value("timelines")
                                     .toArray();
    QVERIFY(timelines.size() >= 2);
    // Each timeline in two layouts; every number keyframe of the file at times before, on,
    // between and after its keys.
    const QList<QPair<QString, QStringList>> runs{{"Main", {}}, {"Main", {"--layout", "1,0"}}, {"Pulse", {}}};
    int nChecked = 0;
    for (const auto& run : runs) {
        const bool bNarrow = !run.second.isEmpty();
        QJsonObject timeline;
        for (const QJsonValue& item : timelines) {
            if (item.toObject().value("name").toString() == run.first)
                timeline = item.toObject();
        }
        QJsonArray animations;
        for (const QJsonValue& layout : timeline.value("respAnims").toArray()) {
            if (layout.toObject().value("hLayoutId").toInt() == (bNarrow ? 1 : 0))
                animations = layout.toObject().value("animations").toArray();
        }
        QVERIFY(!animations.isEmpty());
        for (int nTime : {0, 150, 400, 799, 800, 1000, 1499, 1500, 2000, 2999, 6000}) {
            const Result result = runVetra(QStringList{"values", samplePath(), "--time",
                                                       QString::number(nTime), "--timeline", run.first} +
                                           run.second);
            QCOMPARE(result.nExitCode, 0);
            const QJsonObject values = QJsonDocument::fromJson(result.strOut.toUtf8()).object();
            QCOMPARE(values.value("time").toInt(), nTime);
            QCOMPARE(values.value("layout").toArray(), (QJsonArray{bNarrow ? 1 : 0, 0}));
            QMap<int, QJsonObject> mapReported;
            for (const QJsonValue& element : values.value("elements").toArray())
                mapReported.insert(element.toObject().value("id").toInt(),
                                   element.toObject().value("values").toObject());
            for (const QJsonValue& animation : animations) {
                const int nId = animation.toObject().value("element_id").toInt();
                for (const QJsonValue& item : animation.toObject().value("keyframes").toArray()) {
                    const QJsonObject keyframe = item.toObject();
                    const QString unit = keyframe.value("unit").toString();
                    if (unit == "color" || keyframe.value("type").toInt() == 6)
                        continue;
                    static const QMap<int, QString> s_keys{{2, "tp"},  {7, "sX"}, {8, "sY"},
                                                           {11, "rZ"}, {14, "o"}, {16, "lw"}};
                    const QString key = s_keys.value(keyframe.value("type").toInt());
                    QVERIFY2(!key.isEmpty(), qPrintable(QString::number(keyframe.value("type").toInt())));
                    double dExpected = expectedNumber(keyframe, nTime);
                    // Border width is a whole number: Qt rounds the keys and truncates between.
                    if (key == "lw")
                        dExpected = std::trunc(dExpected);
                    const double dReported = mapReported.value(nId).value(key).toDouble(-12345);
                    QVERIFY2(qAbs(dReported - dExpected) < 1e-9,
                             qPrintable(QString("%1 %2 of element %3 at %4 ms: %5, expected %6")
                                            .arg(run.first, key)
                                            .arg(nId)
                                            .arg(nTime)
                                            .arg(dReported)
                                            .arg(dExpected)));
                    ++nChecked;
                }
            }
        }
    }
    QVERIFY(nChecked > 100);

    // The star travels its motion path: at its anchors before and after.
    auto position = [](int nTime) {
        const Result result = runVetra({"values", samplePath(), "--time", QString::number(nTime)});
        for (const QJsonValue& element :
             QJsonDocument::fromJson(result.strOut.toUtf8()).object().value("elements").toArray()) {
            if (element.toObject().value("name").toString() == "Star")
                return element.toObject().value("values").toObject().value("pos").toArray();
        }
        return QJsonArray();
    };
    QCOMPARE(position(0), (QJsonArray{0, 0}));
    QCOMPARE(position(2500), (QJsonArray{-160, 0}));
    QVERIFY(position(1000).at(1).toDouble() < -40.0);

    // Refusals name what is wrong.
    Result result = runVetra({"values", samplePath(), "--time", "100", "--layout", "7,7"});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains("no layout 7,7"));
    result = runVetra({"values", samplePath(), "--time", "100", "--timeline", "Nope"});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains("no timeline \"Nope\""));
    QCOMPARE(runVetra({"values", samplePath()}).nExitCode, 2);
    QCOMPARE(runVetra({"values", samplePath(), "--time", "-5"}).nExitCode, 2);
}

void TestCli::exportWritesThePlayerFolder()
{
    // A player folder as the studio ships it, with a stand-in script.
    const QString player = QDir(m_dir.path()).filePath(QStringLiteral("player"));
    const QString templates = QStringLiteral(VETRA_EXAMPLES_DIR "/../resources/canvas/player");
    QVERIFY(QDir().mkpath(player));
    for (const QString& name : {QStringLiteral("vtplayer.html"), QStringLiteral("vtplayer.css")})
        QVERIFY(QFile::copy(templates + QLatin1Char('/') + name, player + QLatin1Char('/') + name));
    QFile script(player + QStringLiteral("/vtplayer.js"));
    QVERIFY(script.open(QIODevice::WriteOnly) && script.write("var KorvelVetra = {};\n") > 0);
    script.close();

    const QString out = QDir(m_dir.path()).filePath(QStringLiteral("exported"));
    Result result =
        runVetra({QStringLiteral("export"), samplePath(), out, QStringLiteral("--player"), player});
    QCOMPARE(result.nExitCode, 0);
    QVERIFY2(result.strErr.isEmpty(), qPrintable(result.strErr));
    QCOMPARE(result.strOut.trimmed(), QDir::toNativeSeparators(out + QStringLiteral("/welcome.html")));
    for (const QString& name :
         {QStringLiteral("vtplayer.js"), QStringLiteral("welcome.js"), QStringLiteral("welcome.css"),
          QStringLiteral("resources/logo.svg"), QStringLiteral("resources/clip.webm")})
        QVERIFY2(QFileInfo::exists(out + QLatin1Char('/') + name), qPrintable(name));
    const QString page = QString::fromUtf8(readBytes(out + QStringLiteral("/welcome.html")));
    QVERIFY(page.contains(QStringLiteral("Vetra.openDoc('welcome.js', 'wlcmStag'")));

    // An export never replaces an earlier one.
    result = runVetra({QStringLiteral("export"), samplePath(), out, QStringLiteral("--player"), player});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("is not an empty folder")));

    // A failing export says why, and fails.
    result = runVetra({QStringLiteral("export"), samplePath(), samplePath() + QStringLiteral("/out"),
                       QStringLiteral("--player"), player});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("Vetra Studio: Unable to export to HTML5.")));

    QCOMPARE(runVetra({QStringLiteral("export"), samplePath()}).nExitCode, 2);
    QCOMPARE(runVetra({QStringLiteral("export"), samplePath(), out, QStringLiteral("--player")}).nExitCode,
             2);
    result = runVetra({QStringLiteral("export"), samplePath(), out + QStringLiteral("2"),
                       QStringLiteral("--player"), m_dir.path()});
    QCOMPARE(result.nExitCode, 1);
    QVERIFY(result.strErr.contains(QStringLiteral("is no player folder")));
}

void TestCli::commandLine()
{
    Result result = runVetra({QStringLiteral("--version")});
    QCOMPARE(result.nExitCode, 0);
    QCOMPARE(result.strOut.trimmed(), QStringLiteral("vetra 2.6.0"));

    result = runVetra({QStringLiteral("--help")});
    QCOMPARE(result.nExitCode, 0);
    QVERIFY(result.strOut.contains(QStringLiteral("check FILE")));
    QVERIFY(result.strErr.isEmpty());

    for (const QStringList& arguments :
         {QStringList(), QStringList{QStringLiteral("publish")}, QStringList{QStringLiteral("check")},
          QStringList{QStringLiteral("check"), QStringLiteral("a"), QStringLiteral("b")}}) {
        result = runVetra(arguments);
        QCOMPARE(result.nExitCode, 2);
        QVERIFY(result.strErr.contains(QStringLiteral("Usage:")));
        QVERIFY(result.strOut.isEmpty());
    }
    QVERIFY(
        runVetra({QStringLiteral("publish")}).strErr.contains(QStringLiteral("unknown command \"publish\"")));
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
