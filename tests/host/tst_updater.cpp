#include "PluginManager.h"
#include "QSimpleUpdater.h"
#include "MessageRecorder.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

// Serves one canned HTTP answer to every request, on 127.0.0.1, and remembers the paths asked.
class FeedServer : public QObject
{
public:
    FeedServer()
    {
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* pSocket = m_server.nextPendingConnection()) {
                connect(pSocket, &QTcpSocket::readyRead, pSocket, [this, pSocket] {
                    m_buffer += pSocket->readAll();
                    if (!m_buffer.contains("\r\n\r\n"))
                        return;
                    paths << QString::fromLatin1(m_buffer.split(' ').value(1));
                    m_buffer.clear();
                    pSocket->write("HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nContent-Length: "
                                   + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                    pSocket->disconnectFromHost();
                });
                connect(pSocket, &QTcpSocket::disconnected, pSocket, &QObject::deleteLater);
            }
        });
        m_server.listen(QHostAddress::LocalHost);
    }
    QString base() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()); }

    QByteArray status = "200 OK";
    QByteArray body;
    QStringList paths;

private:
    QTcpServer m_server;
    QByteArray m_buffer;
};

class TestUpdater : public QObject
{
    Q_OBJECT
private slots:
    void feedUrlFollowsTheSetting();
    void reportsNewerVersionsOnly();
    void reportsFailuresOnlyWhenAsked();

private:
    static bool check(bool bSilent);
};

bool TestUpdater::check(bool bSilent)
{
    QSimpleUpdater* pUpdater = QSimpleUpdater::getInstance();
    QSignalSpy finished(pUpdater, &QSimpleUpdater::checkingFinished);
    pUpdater->checkForUpdates(QSimpleUpdater::feedUrl(), bSilent);
    return finished.wait(5000);
}

void TestUpdater::feedUrlFollowsTheSetting()
{
    QSettings* pSettings = ExtensionSystem::PluginManager::settings();
    pSettings->setValue("Vetra/UpdateServer", "http://127.0.0.1:9/base/");
    QCOMPARE(QSimpleUpdater::feedUrl().toString(), QString("http://127.0.0.1:9/base/updates/vetra-studio/updates.json"));
    // Only web addresses: anything else falls back to the maker's endpoint.
    pSettings->setValue("Vetra/UpdateServer", "file:///etc");
    QCOMPARE(QSimpleUpdater::feedUrl().scheme(), QString("https"));
    QCOMPARE(QSimpleUpdater::feedUrl().path(), QString("/updates/vetra-studio/updates.json"));
}

void TestUpdater::reportsNewerVersionsOnly()
{
    FeedServer server;
    ExtensionSystem::PluginManager::settings()->setValue("Vetra/UpdateServer", server.base());
    MessageRecorder box;
    QSimpleUpdater* pUpdater = QSimpleUpdater::getInstance();
    pUpdater->setDownloaderEnabled(false);
    pUpdater->setNotifyOnUpdate(true);
    pUpdater->setNotifyOnFinish(true);
    QSignalSpy available(pUpdater, &QSimpleUpdater::updateAvailable);

    server.body = R"({"updates":{"linux":{"latest-version":"2.10.0","changelog":"Faster export",
                     "download-url":"https://example.invalid/vetra.deb"}}})";
    QVERIFY(check(true));
    QCOMPARE(server.paths.value(0), QString("/updates/vetra-studio/updates.json"));
    QVERIFY(pUpdater->getUpdateAvailable());
    QCOMPARE(available.count(), 1);
    QCOMPARE(available.first().first().toString(), QString("2.10.0"));
    QCOMPARE(box.getTexts().size(), 1);
    QVERIFY(box.getTexts().first().contains("2.10.0"));
    QVERIFY(box.getTexts().first().contains("Faster export"));

    // The same version, and an older one: silent at start, "up to date" when the user asks.
    box.clear();
    server.body = R"({"updates":{"linux":{"latest-version":"2.6.0"}}})";
    QVERIFY(check(true));
    QVERIFY(!pUpdater->getUpdateAvailable());
    QVERIFY(box.getTexts().isEmpty());
    server.body = R"({"updates":{"linux":{"latest-version":"1.9"}}})";
    QVERIFY(check(false));
    QCOMPARE(box.getTexts(), QStringList{"You are using the latest version of Vetra Studio."});
    QCOMPARE(available.count(), 1);

    // A feed for other platforms only does not announce anything.
    box.clear();
    server.body = R"({"updates":{"windows":{"latest-version":"9.0.0"}}})";
    QVERIFY(check(true));
    QVERIFY(!pUpdater->getUpdateAvailable());
}

void TestUpdater::reportsFailuresOnlyWhenAsked()
{
    FeedServer server;
    ExtensionSystem::PluginManager::settings()->setValue("Vetra/UpdateServer", server.base());
    MessageRecorder box;
    QSimpleUpdater* pUpdater = QSimpleUpdater::getInstance();
    pUpdater->setNotifyOnFinish(true);
    for (const QByteArray& body : {QByteArray("{not json"), QByteArray("[]"),
                                   QByteArray(R"({"updates":{"linux":{"latest-version":"soon"}}})")}) {
        box.clear();
        server.body = body;
        QVERIFY(check(true));
        QVERIFY(!pUpdater->getLastError().isEmpty());
        QVERIFY(box.getTexts().isEmpty());
        QVERIFY(check(false));
        QCOMPARE(box.getTexts().size(), 1);
        QVERIFY(box.getTexts().first().startsWith("Could not check for updates:"));
    }
    server.status = "404 Not Found";
    server.body = "missing";
    QVERIFY(check(false));
    QVERIFY(!pUpdater->getUpdateAvailable());
    QVERIFY(!pUpdater->getLastError().isEmpty());
}

QTEST_GUILESS_MAIN(TestUpdater)
#include "tst_updater.moc"
