#include "IPlugin.h"
#include "PluginManager.h"
#include "PluginSpec.h"

#include <QLibrary>
#include <QtTest>

using namespace ExtensionSystem;

class TestPluginManager : public QObject
{
    Q_OBJECT
private slots:
    void versions();
    void loadsGoodAndRefusesWrongMetadata();
};

void TestPluginManager::versions()
{
    QVERIFY(PluginSpec::isValidVersion("1.0.0"));
    QVERIFY(PluginSpec::isValidVersion("2"));
    QVERIFY(!PluginSpec::isValidVersion("1.0.0.0.0"));
    QVERIFY(!PluginSpec::isValidVersion("1.x"));
    QVERIFY(!PluginSpec::isValidVersion(""));
    QCOMPARE(PluginSpec::compareVersions("1.10.0", "1.9.9"), 1);
    QCOMPARE(PluginSpec::compareVersions("1.0", "1.0.0"), 0);
    QCOMPARE(PluginSpec::compareVersions("0.9", "1"), -1);

    // A provider covers the versions between its compatibility version and its own.
    QScopedPointer<PluginSpec> core(PluginSpec::createBuiltin("core", "1.0.0"));
    QVERIFY(core->provides("core", "1.0.0"));
    QVERIFY(!core->provides("core", "1.1.0"));
    QVERIFY(!core->provides("other", "1.0.0"));
}

void TestPluginManager::loadsGoodAndRefusesWrongMetadata()
{
    PluginManager::addBuiltinPlugin("core", "1.0.0");
    PluginManager::setPluginPaths({QStringLiteral(TEST_PLUGIN_DIR)});
    PluginManager::loadPlugins();

    const PluginSpec* pGood = PluginManager::findPlugin("good");
    QVERIFY(pGood);
    QCOMPARE(pGood->getState(), PluginSpec::Running);
    QVERIFY(!pGood->hasError());
    QVERIFY(pGood->getPlugin());

    // Every wrong library is listed with the reason, and none of them was started.
    int nWrongIid = 0;
    for (const PluginSpec* pSpec : PluginManager::plugins()) {
        const QString file = QFileInfo(pSpec->getFilePath()).fileName();
        if (file.contains("tp_wrongiid")) {
            ++nWrongIid;
            QVERIFY(pSpec->hasError());
            QVERIFY2(pSpec->getErrorString().contains("org.example.Other.Plugin"), qPrintable(pSpec->getErrorString()));
            QVERIFY(!pSpec->getPlugin());
        }
        if (file.contains("tp_noname"))
            QVERIFY(pSpec->getErrorString().contains("no name"));
        if (file.contains("tp_badversion"))
            QVERIFY(pSpec->getErrorString().contains("not valid"));
    }
    QCOMPARE(nWrongIid, 1);
    const PluginSpec* pMissing = PluginManager::findPlugin("missingdep");
    QVERIFY(pMissing);
    QVERIFY(pMissing->hasError());
    QVERIFY(pMissing->getErrorString().contains("3.0.0"));
    QVERIFY(!pMissing->getPlugin());
    const QStringList errors = PluginManager::errorStrings();
    QCOMPARE(errors.size(), 4);

    PluginManager::shutdown();
    QCOMPARE(pGood->getState(), PluginSpec::Deleted);
    QVERIFY(!pGood->getPlugin());
}

QTEST_GUILESS_MAIN(TestPluginManager)
#include "tst_pluginmanager.moc"
