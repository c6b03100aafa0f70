#include "IUtils.h"
#include "MessageRecorder.h"
#include "VTDocument.h"
#include "VTEngine.h"
#include "VTHttpFileReader.h"
#include "VTHttpServer.h"
#include "VTPreview.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

struct Response
{
    int nStatus = 0;
    QMap<QByteArray, QByteArray> headers;
    QByteArray body;
};

bool writeFile(const QString& filePath, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QFile file(filePath);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

// Moves one complete response out of the buffer. bHead: the answer to HEAD, without a body.
bool takeResponse(QByteArray& buffer, Response* pResponse, bool bHead = false)
{
    const int nHeadEnd = buffer.indexOf("\r\n\r\n");
    if (nHeadEnd < 0)
        return false;
    const QList<QByteArray> lines = buffer.left(nHeadEnd).split('\n');
    Response response;
    response.nStatus = lines.first().split(' ').value(1).toInt();
    for (int i = 1; i < lines.size(); ++i) {
        const int nColon = lines.at(i).indexOf(':');
        response.headers.insert(lines.at(i).left(nColon).toLower(), lines.at(i).mid(nColon + 1).trimmed());
    }
    const int nLength = bHead ? 0 : response.headers.value("content-length").toInt();
    if (buffer.size() < nHeadEnd + 4 + nLength)
        return false;
    response.body = buffer.mid(nHeadEnd + 4, nLength);
    buffer.remove(0, nHeadEnd + 4 + nLength);
    *pResponse = response;
    return true;
}

// Spins the event loop (the server runs in this thread) until the condition holds.
template <typename Condition> bool waitFor(Condition condition, int nTimeoutMs = 5000)
{
    QElapsedTimer timer;
    timer.start();
    // Conditions may consume what they look at: each is asked once per turn.
    while (!condition()) {
        if (timer.elapsed() >= nTimeoutMs)
            return false;
        QTest::qWait(2);
    }
    return true;
}

// Sends raw bytes on a new connection and reads until the server closes it.
QByteArray exchange(quint16 nPort, const QByteArray& request, bool* pbClosed = nullptr)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, nPort);
    if (!waitFor([&]() { return socket.state() == QAbstractSocket::ConnectedState; }))
        return QByteArray();
    socket.write(request);
    QByteArray data;
    const bool bClosed = waitFor([&]() {
        data += socket.readAll();
        return socket.state() == QAbstractSocket::UnconnectedState;
    });
    data += socket.readAll();
    if (pbClosed)
        *pbClosed = bClosed;
    return data;
}

QByteArray getRequest(const QByteArray& path, quint16 nPort, const QByteArray& extra = QByteArray())
{
    return "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(nPort) +
           "\r\nConnection: close\r\n" + extra + "\r\n";
}

qint64 residentKiB()
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression s_rss("VmRSS:\\s+(\\d+)");
    return s_rss.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong();
}

int readerCount()
{
    return VTHttpServer::getInstance()->findChildren<VTHttpFileReader*>().size();
}

} // namespace

class TestHttpServer : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void allowedFolders();
    void statusRules_data();
    void statusRules();
    void ranges_data();
    void ranges();
    void keepAliveAndPipelining();
    void badRequests_data();
    void badRequests();
    void idleConnectionsAreDropped();
    void answersFollowChangesOnDisk();
    void largeFileStreamsWithFlatMemory();
    void clientLeavingMidFile();
    void previewOfProject();

private:
    Response get(const QByteArray& path, const QByteArray& range = QByteArray(), bool bHead = false);
    QString path(const QString& name) const { return QDir(m_dir.path()).filePath(name); }
    quint16 port() const { return VTHttpServer::getInstance()->getPort(); }

    QTemporaryDir m_dir;
    QNetworkAccessManager m_network;
    QByteArray m_baThousand;
};

void TestHttpServer::initTestCase()
{
    QVERIFY(m_dir.isValid());
    for (int i = 0; i < 1000; ++i)
        m_baThousand.append(char('a' + i % 26));
    QVERIFY(writeFile(path("site/page.html"), "<html>hello</html>"));
    QVERIFY(writeFile(path("site/sub/thousand.bin"), m_baThousand));
    QVERIFY(writeFile(path("site/empty.txt"), QByteArray()));
    QVERIFY(writeFile(path("outside/secret.txt"), "secret"));
    QVERIFY(writeFile(path("siteb/near.txt"), "near"));
    QVERIFY(QFile::link(path("outside/secret.txt"), path("site/link.txt")));
    QVERIFY(QFile::link(path("outside"), path("site/outlink")));
    VTHttpServer* pServer = VTHttpServer::getInstance();
    QVERIFY(pServer->start(QHostAddress(QHostAddress::LocalHost), 0));
    QVERIFY(port() != 0);
    pServer->addAllowedDir(path("site"));
}

void TestHttpServer::cleanupTestCase()
{
    VTHttpServer::destroyInstance();
}

Response TestHttpServer::get(const QByteArray& filePath, const QByteArray& range, bool bHead)
{
    QNetworkRequest request(
        QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port()) + QString::fromUtf8(filePath)));
    if (!range.isEmpty())
        request.setRawHeader("Range", range);
    std::unique_ptr<QNetworkReply> pReply(bHead ? m_network.head(request) : m_network.get(request));
    QSignalSpy finished(pReply.get(), &QNetworkReply::finished);
    if (!pReply->isFinished())
        finished.wait(5000);
    Response response;
    response.nStatus = pReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    for (const QNetworkReply::RawHeaderPair& header : pReply->rawHeaderPairs())
        response.headers.insert(header.first.toLower(), header.second);
    response.body = pReply->readAll();
    return response;
}

void TestHttpServer::allowedFolders()
{
    VTHttpServer* pServer = VTHttpServer::getInstance();
    const QStringList before = pServer->getAllowedDirs();
    pServer->addAllowedDir(path("site/"));
    pServer->addAllowedDir(path("nowhere"));
    QCOMPARE(pServer->getAllowedDirs(), before);
    QVERIFY(pServer->isFileInAllowedDirs(path("site/sub/thousand.bin")));
    QVERIFY(pServer->isFileInAllowedDirs(path("site/sub/../page.html")));
    // A folder whose name only starts like an allowed one is another folder.
    QVERIFY(!pServer->isFileInAllowedDirs(path("siteb/near.txt")));
    QVERIFY(!pServer->isFileInAllowedDirs(path("site/link.txt")));
    QVERIFY(!pServer->isFileInAllowedDirs(path("site/outlink/secret.txt")));
    pServer->addAllowedDir(path("outside"));
    QVERIFY(pServer->isFileInAllowedDirs(path("site/link.txt")));
    pServer->removeAllowedDir(path("outside/../outside"));
    QCOMPARE(pServer->getAllowedDirs(), before);
    QVERIFY(!pServer->isFileInAllowedDirs(path("outside/secret.txt")));
}

void TestHttpServer::statusRules_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("host");
    QTest::addColumn<int>("nStatus");
    QTest::addColumn<QByteArray>("body");

    const QByteArray site = QDir(m_dir.path()).filePath("site").toUtf8();
    const QByteArray root = m_dir.path().toUtf8();
    QTest::newRow("file") << site + "/page.html" << QByteArray() << 200 << QByteArray("<html>hello</html>");
    QTest::newRow("as the preview's URL writes it")
        << "/" + site + "/page.html" << QByteArray() << 200 << QByteArray("<html>hello</html>");
    QTest::newRow("encoded name") << site + "/p%61ge.html?reload=1" << QByteArray() << 200
                                  << QByteArray("<html>hello</html>");
    QTest::newRow("localhost") << site + "/page.html" << QByteArray("LocalHost:%1") << 200
                               << QByteArray("<html>hello</html>");
    QTest::newRow("missing inside") << site + "/none.html" << QByteArray() << 404 << QByteArray();
    QTest::newRow("missing outside") << root + "/outside/none.txt" << QByteArray() << 404 << QByteArray();
    QTest::newRow("outside") << root + "/outside/secret.txt" << QByteArray() << 403 << QByteArray();
    QTest::newRow("a folder") << site + "/sub" << QByteArray() << 403 << QByteArray();
    QTest::newRow("dot dot") << site + "/../outside/secret.txt" << QByteArray() << 403 << QByteArray();
    QTest::newRow("encoded dot dot") << site + "/%2e%2e/outside/secret.txt" << QByteArray() << 403
                                     << QByteArray();
    QTest::newRow("encoded slashes") << site + "%2f..%2Foutside%2fsecret.txt" << QByteArray() << 403
                                     << QByteArray();
    QTest::newRow("double slash") << "/" + root + "/outside/secret.txt" << QByteArray() << 403
                                  << QByteArray();
    QTest::newRow("link to a file outside") << site + "/link.txt" << QByteArray() << 403 << QByteArray();
    QTest::newRow("link to a folder outside")
        << site + "/outlink/secret.txt" << QByteArray() << 403 << QByteArray();
    QTest::newRow("zero byte") << site + "/page.html%00.png" << QByteArray() << 404 << QByteArray();
    QTest::newRow("other host") << site + "/page.html" << QByteArray("attacker.example:%1") << 403
                                << QByteArray();
    QTest::newRow("other port") << site + "/page.html" << QByteArray("127.0.0.1:1") << 403 << QByteArray();
    QTest::newRow("no port") << site + "/page.html" << QByteArray("127.0.0.1") << 403 << QByteArray();
    QTest::newRow("no host") << site + "/page.html" << QByteArray("-") << 403 << QByteArray();
    QTest::newRow("absolute target naming another host")
        << "http://attacker.example" + site + "/page.html" << QByteArray() << 403 << QByteArray();
}

void TestHttpServer::statusRules()
{
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, host);
    QFETCH(int, nStatus);
    QFETCH(QByteArray, body);
    QByteArray request = getRequest(target, port());
    const QByteArray ownHost = "Host: 127.0.0.1:" + QByteArray::number(port()) + "\r\n";
    if (host == "-")
        request.replace(ownHost, QByteArray());
    else if (!host.isEmpty())
        request.replace(ownHost, "Host: " + host.replace("%1", QByteArray::number(port())) + "\r\n");
    QByteArray data = exchange(port(), request);
    Response response;
    QVERIFY2(takeResponse(data, &response), data.constData());
    QCOMPARE(response.nStatus, nStatus);
    QCOMPARE(response.body, body);
    QCOMPARE(response.headers.value("server"), QByteArray("Vetra Studio"));
    if (nStatus != 200) {
        QCOMPARE(response.headers.value("content-length"), QByteArray("0"));
        return;
    }
    QCOMPARE(response.headers.value("content-type"), QByteArray("text/html"));
    QCOMPARE(response.headers.value("content-length"), QByteArray::number(body.size()));
    QCOMPARE(response.headers.value("accept-ranges"), QByteArray("bytes"));
    QCOMPARE(response.headers.value("expires"), QByteArray("0"));
    QCOMPARE(response.headers.value("cache-control"), QByteArray("no-cache, no-store, must-revalidate"));
    const QDateTime modified = QFileInfo(path("site/page.html")).lastModified().toUTC();
    QCOMPARE(response.headers.value("last-modified"),
             QLocale::c().toString(modified, "ddd, dd MMM yyyy hh:mm:ss").toLatin1() + " GMT");
    QVERIFY(QRegularExpression("^[A-Z][a-z]{2}, \\d\\d [A-Z][a-z]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d GMT$")
                .match(QString::fromLatin1(response.headers.value("last-modified")))
                .hasMatch());
}

void TestHttpServer::ranges_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("range");
    QTest::addColumn<int>("nStatus");
    QTest::addColumn<QByteArray>("contentRange");
    QTest::addColumn<int>("nFrom");
    QTest::addColumn<int>("nLength");

    const QByteArray bin = "/sub/thousand.bin";
    QTest::newRow("none") << bin << QByteArray() << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("open end") << bin << QByteArray("bytes=0-") << 206 << QByteArray("bytes 0-999/1000") << 0
                              << 1000;
    QTest::newRow("middle") << bin << QByteArray("bytes=10-19") << 206 << QByteArray("bytes 10-19/1000") << 10
                            << 10;
    QTest::newRow("last byte") << bin << QByteArray("bytes=999-999") << 206
                               << QByteArray("bytes 999-999/1000") << 999 << 1;
    QTest::newRow("blanks") << bin << QByteArray("bytes = 5 - 9") << 206 << QByteArray("bytes 5-9/1000") << 5
                            << 5;
    QTest::newRow("backwards") << bin << QByteArray("bytes=100-50") << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("past the end") << bin << QByteArray("bytes=0-5000") << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("start at size") << bin << QByteArray("bytes=1000-") << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("other unit") << bin << QByteArray("items=0-1") << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("suffix") << bin << QByteArray("bytes=-100") << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("no number") << bin << QByteArray("bytes=x-5") << 200 << QByteArray() << 0 << 1000;
    QTest::newRow("empty file") << QByteArray("/empty.txt") << QByteArray() << 200 << QByteArray() << 0 << 0;
    QTest::newRow("empty file, range")
        << QByteArray("/empty.txt") << QByteArray("bytes=0-") << 200 << QByteArray() << 0 << 0;
}

void TestHttpServer::ranges()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, range);
    QFETCH(int, nStatus);
    QFETCH(QByteArray, contentRange);
    QFETCH(int, nFrom);
    QFETCH(int, nLength);
    const QByteArray target = QDir(m_dir.path()).filePath("site").toUtf8() + file;
    const Response response = get(target, range);
    QCOMPARE(response.nStatus, nStatus);
    QCOMPARE(response.headers.value("content-range"), contentRange);
    QCOMPARE(response.headers.value("content-length"), QByteArray::number(nLength));
    QCOMPARE(response.headers.value("accept-ranges"), QByteArray("bytes"));
    QCOMPARE(response.body, m_baThousand.mid(nFrom, nLength).left(file.endsWith(".bin") ? nLength : 0));
    // HEAD tells the same without the body.
    const Response head = get(target, range, true);
    QCOMPARE(head.nStatus, nStatus);
    QCOMPARE(head.headers.value("content-length"), QByteArray::number(nLength));
    QVERIFY(head.body.isEmpty());
}

void TestHttpServer::keepAliveAndPipelining()
{
    const QByteArray site = QDir(m_dir.path()).filePath("site").toUtf8();
    const QByteArray host = "Host: 127.0.0.1:" + QByteArray::number(port()) + "\r\n";
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port());
    QVERIFY(waitFor([&]() { return socket.state() == QAbstractSocket::ConnectedState; }));
    // Two requests in one write, then a third on the same connection after both answers.
    socket.write("GET " + site + "/page.html HTTP/1.1\r\n" + host + "\r\nGET " + site +
                 "/sub/thousand.bin HTTP/1.1\r\n" + host + "Range: bytes=1-3\r\n\r\n");
    QByteArray data;
    Response first;
    Response second;
    QVERIFY(waitFor([&]() {
        data += socket.readAll();
        QByteArray copy = data;
        return takeResponse(copy, &first) && takeResponse(copy, &second);
    }));
    QVERIFY(takeResponse(data, &first) && takeResponse(data, &second));
    QCOMPARE(first.body, QByteArray("<html>hello</html>"));
    QCOMPARE(second.nStatus, 206);
    QCOMPARE(second.body, QByteArray("bcd"));
    QVERIFY(data.isEmpty());
    QVERIFY(!first.headers.contains("connection"));
    socket.write("HEAD " + site + "/page.html HTTP/1.1\r\n" + host + "\r\n");
    Response third;
    QVERIFY(waitFor([&]() {
        data += socket.readAll();
        return takeResponse(data, &third, true);
    }));
    QCOMPARE(third.nStatus, 200);
    QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);

    // HTTP/1.0 closes unless asked to keep the connection.
    bool bClosed = false;
    data = exchange(port(), "GET " + site + "/page.html HTTP/1.0\r\n" + host + "\r\n", &bClosed);
    QVERIFY(bClosed);
    QVERIFY(takeResponse(data, &first));
    QCOMPARE(first.headers.value("connection"), QByteArray("close"));
    QTcpSocket kept;
    kept.connectToHost(QHostAddress::LocalHost, port());
    kept.write("GET " + site + "/page.html HTTP/1.0\r\n" + host + "Connection: keep-alive\r\n\r\n");
    data.clear();
    QVERIFY(waitFor([&]() {
        data += kept.readAll();
        return takeResponse(data, &first);
    }));
    QCOMPARE(first.headers.value("connection"), QByteArray("keep-alive"));
    QTest::qWait(50);
    QCOMPARE(kept.state(), QAbstractSocket::ConnectedState);
}

void TestHttpServer::badRequests_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("nStatus");

    const QByteArray host = "Host: 127.0.0.1\r\n";
    QTest::newRow("garbage") << QByteArray("\x01\x02\xff garbage\r\n\r\n") << 400;
    QTest::newRow("no version") << QByteArray("GET /x\r\n\r\n") << 400;
    QTest::newRow("relative target") << QByteArray("GET x HTTP/1.1\r\n" + host + "\r\n") << 400;
    QTest::newRow("blank before colon") << QByteArray("GET /x HTTP/1.1\r\nHost : a\r\n\r\n") << 400;
    QTest::newRow("folded field") << QByteArray("GET /x HTTP/1.1\r\n" + host + " more\r\n\r\n") << 400;
    QTest::newRow("two hosts") << QByteArray("GET /x HTTP/1.1\r\n" + host + host + "\r\n") << 400;
    QTest::newRow("body") << QByteArray("GET /x HTTP/1.1\r\n" + host + "Content-Length: 3\r\n\r\nabc") << 400;
    QTest::newRow("bad length") << QByteArray("GET /x HTTP/1.1\r\n" + host + "Content-Length: -1\r\n\r\n")
                                << 400;
    QTest::newRow("post") << QByteArray("POST /x HTTP/1.1\r\n" + host + "Content-Length: 0\r\n\r\n") << 405;
    QTest::newRow("version 2") << QByteArray("GET /x HTTP/2.0\r\n" + host + "\r\n") << 505;
    QTest::newRow("huge head") << QByteArray("GET /x HTTP/1.1\r\nX-Fill: " + QByteArray(70000, 'a') +
                                             "\r\n\r\n")
                               << 431;
    QTest::newRow("endless line") << QByteArray(70000, 'G') << 431;
}

void TestHttpServer::badRequests()
{
    QFETCH(QByteArray, request);
    QFETCH(int, nStatus);
    bool bClosed = false;
    QByteArray data = exchange(port(), request, &bClosed);
    Response response;
    QVERIFY2(takeResponse(data, &response), data.left(200).constData());
    QCOMPARE(response.nStatus, nStatus);
    QVERIFY(bClosed);
    if (nStatus == 405)
        QCOMPARE(response.headers.value("allow"), QByteArray("GET, HEAD"));
    // The server goes on serving.
    QCOMPARE(get(QDir(m_dir.path()).filePath("site/page.html").toUtf8()).nStatus, 200);
}

void TestHttpServer::idleConnectionsAreDropped()
{
    VTHttpServer* pServer = VTHttpServer::getInstance();
    // Only the connections made here are counted.
    m_network.clearConnectionCache();
    QVERIFY(waitFor([&]() { return pServer->getConnectionCount() == 0; }));
    pServer->setIdleTimeout(200);
    std::vector<std::unique_ptr<QTcpSocket>> sockets;
    for (int i = 0; i < 20; ++i) {
        sockets.push_back(std::make_unique<QTcpSocket>());
        sockets.back()->connectToHost(QHostAddress::LocalHost, port());
    }
    // One that never finishes its head is no better than a silent one.
    QVERIFY(waitFor([&]() { return sockets.back()->state() == QAbstractSocket::ConnectedState; }));
    sockets.back()->write("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n");
    QVERIFY(waitFor([&]() { return pServer->getConnectionCount() == 20; }));
    QVERIFY(waitFor([&]() { return pServer->getConnectionCount() == 0; }, 3000));
    for (const auto& pSocket : sockets)
        QVERIFY(waitFor([&]() { return pSocket->state() == QAbstractSocket::UnconnectedState; }));
    pServer->setIdleTimeout(VTHttpServer::s_nDefaultIdleTimeoutMs);
}

void TestHttpServer::answersFollowChangesOnDisk()
{
    // What the server remembers of a path must never outlive what the disk says.
    const QString swap = path("site/swap.txt");
    const QByteArray target = swap.toUtf8();
    QVERIFY(writeFile(swap, "first"));
    QCOMPARE(get(target).body, QByteArray("first"));
    QCOMPARE(get(target).headers.value("content-type"), QByteArray("text/plain"));
    // The same name, now a link that leads out of the folder.
    QVERIFY(QFile::remove(swap));
    QVERIFY(QFile::link(path("outside/secret.txt"), swap));
    QCOMPARE(get(target).nStatus, 403);
    // A file again, with other content, size and time.
    QVERIFY(QFile::remove(swap));
    QVERIFY(writeFile(swap, "second, longer"));
    QFile(swap).setFileTime(QDateTime::currentDateTimeUtc().addSecs(-3600),
                            QFileDevice::FileModificationTime);
    const Response again = get(target);
    QCOMPARE(again.body, QByteArray("second, longer"));
    QCOMPARE(again.headers.value("last-modified"),
             QLocale::c()
                     .toString(QFileInfo(swap).lastModified().toUTC(), "ddd, dd MMM yyyy hh:mm:ss")
                     .toLatin1() +
                 " GMT");
    QVERIFY(QFile::remove(swap));
    QCOMPARE(get(target).nStatus, 404);
    // A folder no longer served takes its files with it.
    VTHttpServer* pServer = VTHttpServer::getInstance();
    const QByteArray page = path("site/page.html").toUtf8();
    QCOMPARE(get(page).nStatus, 200);
    pServer->removeAllowedDir(path("site"));
    QCOMPARE(get(page).nStatus, 403);
    pServer->addAllowedDir(path("site"));
    QCOMPARE(get(page).nStatus, 200);
}

void TestHttpServer::largeFileStreamsWithFlatMemory()
{
    const QString big = path("site/big.bin");
    {
        QFile file(big);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(qint64(1) << 30));
    }
    QTcpSocket socket;
    // The client takes no more from the system than it reads itself.
    socket.setReadBufferSize(64 * 1024);
    socket.connectToHost(QHostAddress::LocalHost, port());
    QVERIFY(waitFor([&]() { return socket.state() == QAbstractSocket::ConnectedState; }));
    socket.write(getRequest(big.toUtf8(), port()));
    qint64 nReceived = 0;
    const auto receive = [&](qint64 nUpTo) {
        QElapsedTimer timer;
        timer.start();
        while (nReceived < nUpTo && timer.elapsed() < 30000) {
            QCoreApplication::processEvents();
            nReceived += socket.readAll().size();
        }
        return nReceived >= nUpTo;
    };
    QVERIFY(receive(4 << 20));
    const qint64 nBefore = residentKiB();
    QVERIFY(nBefore > 0);
    qint64 nPeak = nBefore;
    for (int nStep = 1; nStep <= 8; ++nStep) {
        QVERIFY(receive((4 << 20) + qint64(nStep) * (24 << 20)));
        // The client stops reading for a while: a server that did not wait for it would fill
        // its memory with the file meanwhile.
        QTest::qWait(100);
        nPeak = qMax(nPeak, residentKiB());
    }
    QVERIFY2(nPeak - nBefore < 24 * 1024,
             qPrintable(QStringLiteral("RSS grew by %1 KiB while streaming 192 MiB").arg(nPeak - nBefore)));
    QCOMPARE(readerCount(), 1);
    socket.abort();
    QVERIFY(waitFor([]() { return readerCount() == 0; }));
    QFile::remove(big);
}

void TestHttpServer::clientLeavingMidFile()
{
    const QString file = path("site/mid.bin");
    {
        // More than the system's socket buffers hold, so the reader is still at work.
        QFile big(file);
        QVERIFY(big.open(QIODevice::WriteOnly) && big.resize(64 << 20));
    }
    m_network.clearConnectionCache();
    QVERIFY(waitFor([]() { return VTHttpServer::getInstance()->getConnectionCount() == 0; }));
    for (const bool bRange : {false, true}) {
        QTcpSocket socket;
        socket.setReadBufferSize(16 * 1024);
        socket.connectToHost(QHostAddress::LocalHost, port());
        QVERIFY(waitFor([&]() { return socket.state() == QAbstractSocket::ConnectedState; }));
        socket.write(getRequest(file.toUtf8(), port(), bRange ? "Range: bytes=1000-\r\n" : ""));
        QVERIFY(waitFor([&]() { return socket.bytesAvailable() > 0; }));
        QCOMPARE(readerCount(), 1);
        socket.abort();
        QVERIFY(waitFor(
            []() { return readerCount() == 0 && VTHttpServer::getInstance()->getConnectionCount() == 0; }));
    }
    // The whole file still comes through for the next client.
    const Response response = get(file.toUtf8());
    QCOMPARE(response.nStatus, 200);
    QCOMPARE(response.body.size(), 64 << 20);
    QVERIFY(waitFor([]() { return readerCount() == 0; }));
}

void TestHttpServer::previewOfProject()
{
    MessageRecorder messages;
    const QString player = path("player");
    const QString templates = QFINDTESTDATA("../../resources/canvas/player/vtplayer.html");
    const QString sample = QFINDTESTDATA("../../examples/welcome/welcome.vetra");
    QVERIFY(!templates.isEmpty() && !sample.isEmpty());
    QVERIFY(writeFile(player + "/vtplayer.js", "var KorvelVetra = {loadedDocs: []};\n"));
    for (const QString& name : QStringList{"vtplayer.html", "vtplayer.css"})
        QVERIFY(QFile::copy(QFileInfo(templates).dir().filePath(name), player + QLatin1Char('/') + name));
    VTEngine::setPath(player);
    QVERIFY(IUtils::copyDir(QFileInfo(sample).absolutePath(), path("project")));
    VTDocument document;
    document.setFileName(path("project/welcome.vetra"));
    QVERIFY(document.open());

    // The default port is taken: the server comes up on another, and the URL says which.
    VTHttpServer* pServer = VTHttpServer::getInstance();
    // An address of no interface here: neither attempt listens.
    QVERIFY(!pServer->start(QHostAddress("192.0.2.1"), VTHttpServer::s_nDefaultPort));
    QCOMPARE(pServer->getPort(), quint16(0));
    QTcpServer blocker;
    blocker.listen(QHostAddress::LocalHost, VTHttpServer::s_nDefaultPort);
    QList<QUrl> opened;
    VTPreview preview(&document);
    preview.setUrlOpener([&opened](const QUrl& url) {
        opened.append(url);
        return true;
    });
    QVERIFY(preview.previewProject(false));
    QVERIFY(messages.getTexts().isEmpty());
    QCOMPARE(opened.size(), 1);
    const quint16 nPort = pServer->getPort();
    QVERIFY(nPort != 0 && nPort != VTHttpServer::s_nDefaultPort);
    const QString folder = path("project/welcome_res/preview");
    QCOMPARE(opened.first().toString(),
             QStringLiteral("http://127.0.0.1:%1/").arg(nPort) + folder + "/welcome.html");
    for (const QString& name : QStringList{"vtplayer.js", "welcome.html", "welcome.js", "welcome.css"}) {
        QVERIFY2(QFileInfo(folder + '/' + name).isFile(), qPrintable(name));
        QVERIFY2(document.getFileHistory().contains("welcome_res/preview/" + name), qPrintable(name));
    }
    // The page comes through the URL given to the browser.
    QByteArray data = exchange(
        nPort, getRequest(opened.first().toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority), nPort));
    Response page;
    QVERIFY(takeResponse(data, &page));
    QCOMPARE(page.nStatus, 200);
    QFile html(folder + "/welcome.html");
    QVERIFY(html.open(QIODevice::ReadOnly));
    QCOMPARE(page.body, html.readAll());
    html.close();

    // Again, with the current scene alone: the same server, the files written anew.
    QVERIFY(writeFile(folder + "/welcome.html", "stale"));
    preview.setUrlOpener([](const QUrl&) { return false; });
    QVERIFY(preview.previewProject(true));
    QCOMPARE(pServer->getPort(), nPort);
    QVERIFY(html.open(QIODevice::ReadOnly));
    QVERIFY(html.readAll() != "stale");
    QCOMPARE(messages.getTexts(), QStringList{"Unable to preview current scene in default browser."});

    // A preview folder that leads elsewhere is refused, and nothing is written there.
    messages.clear();
    QVERIFY(IUtils::removeDir(folder));
    QVERIFY(QDir().mkpath(path("elsewhere")));
    QVERIFY(QFile::link(path("elsewhere"), folder));
    QVERIFY(!preview.previewProject(false));
    QCOMPARE(messages.getTexts(),
             QStringList{"Unable to preview project.\nThe resources folder is undefined or inaccessible."});
    QVERIFY(QDir(path("elsewhere")).isEmpty());

    messages.clear();
    VTPreview none(nullptr);
    QVERIFY(!none.previewProject(false));
    QCOMPARE(messages.getTexts(), QStringList{"Unable to preview document."});
    VTEngine::setPath(QString());
}

QTEST_MAIN(TestHttpServer)
#include "tst_httpserver.moc"
