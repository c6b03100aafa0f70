#include "WebChannelServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkRequest>
#include <QSignalSpy>
#include <QUrlQuery>
#include <QWebChannel>
#include <QWebSocket>
#include <QWebSocketServer>
#include <QtTest>

class Published : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name CONSTANT)
public:
    QString name() const { return QStringLiteral("stage"); }
};

class TestWebChannelServer : public QObject
{
    Q_OBJECT
private slots:
    void listensOnLoopbackOnly();
    void refusesWithoutTokenOrFromWebOrigin();
    void servesTheChannelToLocalPagesWithToken();

private:
    // Connects and waits until the socket is either connected-and-kept or closed.
    static bool staysConnected(QWebSocket& socket, const QUrl& url);
};

bool TestWebChannelServer::staysConnected(QWebSocket& socket, const QUrl& url)
{
    QSignalSpy closed(&socket, &QWebSocket::disconnected);
    socket.open(QNetworkRequest(url));
    // The server refuses either in the handshake or right after it; give it time for both.
    QTest::qWait(300);
    if (closed.isEmpty())
        closed.wait(700);
    return closed.isEmpty() && socket.state() == QAbstractSocket::ConnectedState;
}

void TestWebChannelServer::listensOnLoopbackOnly()
{
    WebChannelServer server;
    QVERIFY(server.isListening());
    QCOMPARE(server.getServer()->serverAddress(), QHostAddress(QHostAddress::LocalHost));
    const QUrl url = server.getChannelUrl();
    QCOMPARE(url.host(), QStringLiteral("127.0.0.1"));
    QCOMPARE(url.port(), int(server.getServer()->serverPort()));
    QCOMPARE(QUrlQuery(url).queryItemValue("token"), server.getToken());
    QVERIFY(server.getToken().size() >= 32);
    // Each run has its own token.
    WebChannelServer other;
    QVERIFY(other.getToken() != server.getToken());
}

void TestWebChannelServer::refusesWithoutTokenOrFromWebOrigin()
{
    WebChannelServer server;
    QSignalSpy refused(&server, &WebChannelServer::connectionRefused);
    QUrl noToken = server.getServer()->serverUrl();
    {
        QWebSocket socket(QStringLiteral("file://"));
        QVERIFY(!staysConnected(socket, noToken));
    }
    QUrl wrongToken = server.getChannelUrl();
    wrongToken.setQuery(QStringLiteral("token=guess"));
    {
        QWebSocket socket(QStringLiteral("file://"));
        QVERIFY(!staysConnected(socket, wrongToken));
    }
    {
        // A web site open in the user's browser knows nothing of the token, but even with it
        // a foreign origin is refused.
        QWebSocket socket(QStringLiteral("https://evil.example"));
        QVERIFY(!staysConnected(socket, server.getChannelUrl()));
    }
    {
        QWebSocket socket(QString{});
        QVERIFY(!staysConnected(socket, server.getChannelUrl()));
    }
    QVERIFY(refused.count() >= 4);
    QCOMPARE(server.getConnectionCount(), 0);
}

void TestWebChannelServer::servesTheChannelToLocalPagesWithToken()
{
    WebChannelServer server;
    Published object;
    server.getChannel()->registerObject(QStringLiteral("vtcanvas_1"), &object);
    QWebSocket socket(QStringLiteral("file://"));
    QVERIFY(staysConnected(socket, server.getChannelUrl()));
    QTRY_COMPARE(server.getConnectionCount(), 1);

    // The page's first message asks for the published objects.
    QSignalSpy received(&socket, &QWebSocket::textMessageReceived);
    socket.sendTextMessage(QStringLiteral("{\"type\":3,\"id\":0}"));
    QVERIFY(received.wait(2000));
    const QJsonObject reply = QJsonDocument::fromJson(received.first().first().toString().toUtf8()).object();
    QCOMPARE(reply.value("type").toInt(), 10);
    QVERIFY(reply.value("data").toObject().contains("vtcanvas_1"));

    // Garbage from a page ends its connection instead of reaching the channel.
    QSignalSpy closed(&socket, &QWebSocket::disconnected);
    socket.sendTextMessage(QStringLiteral("{not json"));
    QVERIFY(closed.wait(2000));
    QTRY_COMPARE(server.getConnectionCount(), 0);
}

QTEST_GUILESS_MAIN(TestWebChannelServer)
#include "tst_webchannelserver.moc"
