#include "VTHttpServer.h"

#include "VTHttpConnection.h"
#include "VTHttpFileOpener.h"
#include "VTHttpFileReader.h"
#include "VTHttpRequest.h"
#include "VTHttpResponse.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace {

QString resolvedPath(const QString& path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

} // namespace

VTHttpServer::VTHttpServer()
    : m_pSweepTimer(new QTimer(this))
{
    connect(this, &VTHttpServer::newRequest, this, &VTHttpServer::onNewRequest);
    connect(m_pSweepTimer, &QTimer::timeout, this, &VTHttpServer::dropIdleConnections);
    setIdleTimeout(s_nDefaultIdleTimeoutMs);
}

void VTHttpServer::setIdleTimeout(int nMs)
{
    m_nIdleTimeoutMs = qMax(1, nMs);
    // A connection outlives its idle time by at most a quarter of it.
    m_pSweepTimer->setInterval(qBound(10, m_nIdleTimeoutMs / 4, 1000));
}

void VTHttpServer::dropIdleConnections()
{
    const qint64 nNow = VTHttpConnection::getClockMs();
    const QList<VTHttpConnection*> connections =
        findChildren<VTHttpConnection*>(QString(), Qt::FindDirectChildrenOnly);
    for (VTHttpConnection* pConnection : connections)
        pConnection->dropIfIdle(nNow);
}

VTHttpServer::~VTHttpServer()
{
    stop();
}

bool VTHttpServer::start(const QHostAddress& address, quint16 nPort)
{
    stop();
    m_pTcpServer = std::make_unique<QTcpServer>();
    connect(m_pTcpServer.get(), &QTcpServer::newConnection, this, &VTHttpServer::onNewConnection);
    if (m_pTcpServer->listen(address, nPort) || m_pTcpServer->listen(address, 0)) {
        m_pSweepTimer->start();
        return true;
    }
    m_pTcpServer.reset();
    return false;
}

void VTHttpServer::stop()
{
    m_pSweepTimer->stop();
    if (m_pTcpServer)
        m_pTcpServer->close();
    m_pTcpServer.reset();
    const QList<VTHttpConnection*> connections =
        findChildren<VTHttpConnection*>(QString(), Qt::FindDirectChildrenOnly);
    // Aborting tells each reader of the connection, which then lets its file go.
    for (VTHttpConnection* pConnection : connections)
        pConnection->abort();
}

bool VTHttpServer::isListening() const
{
    return m_pTcpServer && m_pTcpServer->isListening();
}

quint16 VTHttpServer::getPort() const
{
    return isListening() ? m_pTcpServer->serverPort() : 0;
}

int VTHttpServer::getConnectionCount() const
{
    int nCount = 0;
    const QList<VTHttpConnection*> connections =
        findChildren<VTHttpConnection*>(QString(), Qt::FindDirectChildrenOnly);
    for (const VTHttpConnection* pConnection : connections)
        nCount += pConnection->isClosed() ? 0 : 1;
    return nCount;
}

void VTHttpServer::addAllowedDir(const QString& path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (!canonical.isEmpty() && !m_lstAllowedDirs.contains(canonical))
        m_lstAllowedDirs.append(canonical);
}

void VTHttpServer::removeAllowedDir(const QString& path)
{
    // A folder removed from the disk meanwhile still leaves the list under its last name.
    m_lstAllowedDirs.removeAll(QFileInfo(path).canonicalFilePath());
    m_lstAllowedDirs.removeAll(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
}

bool VTHttpServer::isFileInAllowedDirs(const QString& path) const
{
    return !path.isEmpty() && isResolvedPathAllowed(resolvedPath(path));
}

bool VTHttpServer::isResolvedPathAllowed(const QString& resolved) const
{
    // A folder of the path, from its own up to the root, is an allowed one exactly when the
    // path continues that folder's path after a separator.
    for (const QString& allowed : m_lstAllowedDirs) {
        const bool bRoot = allowed.endsWith(QLatin1Char('/'));
        if (resolved.size() > allowed.size() && resolved.startsWith(allowed) &&
            (bRoot || resolved.at(allowed.size()) == QLatin1Char('/')))
            return true;
    }
    return false;
}

bool VTHttpServer::isAllowedHost(const QByteArray& host) const
{
    const QByteArray name = host.toLower();
    const QByteArray port = QByteArray::number(getPort());
    if (name == "127.0.0.1:" + port || name == "localhost:" + port)
        return true;
    return getPort() == 80 && (name == "127.0.0.1" || name == "localhost");
}

void VTHttpServer::onNewConnection()
{
    while (m_pTcpServer && m_pTcpServer->hasPendingConnections()) {
        QTcpSocket* pSocket = m_pTcpServer->nextPendingConnection();
        // Headers and body may leave in separate segments; waiting for the client's delayed
        // acknowledgement of the first would stall every small answer.
        pSocket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        auto* pConnection = new VTHttpConnection(pSocket, m_nIdleTimeoutMs, this);
        connect(pConnection, &VTHttpConnection::newRequest, this, &VTHttpServer::newRequest);
    }
}

void VTHttpServer::answerEmpty(VTHttpResponse* pResponse, int nStatus)
{
    pResponse->setStatusCode(nStatus);
    pResponse->addHeader("server", getServerName());
    pResponse->end();
}

const VTHttpServer::FileFacts& VTHttpServer::getFileFacts(const QString& canonical, qint64 nSize,
                                                          qint64 nModifiedMs)
{
    auto it = m_hashFileFacts.find(canonical);
    if (it != m_hashFileFacts.end() && it->nSize == nSize && it->nModifiedMs == nModifiedMs)
        return *it;
    // Only the files of the open projects' folders come here; a bound keeps it so anyway.
    if (m_hashFileFacts.size() >= 4096)
        m_hashFileFacts.clear();
    FileFacts facts;
    facts.nModifiedMs = nModifiedMs;
    facts.nSize = nSize;
    // By the resolved name: a link's own name says nothing of what it leads to.
    facts.mimeType = m_mimeDatabase.mimeTypeForFile(QFileInfo(canonical)).name().toLatin1();
    facts.lastModified = (QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(nModifiedMs, Qt::UTC),
                                                QStringLiteral("ddd, dd MMM yyyy hh:mm:ss")) +
                          QStringLiteral(" GMT"))
                             .toLatin1();
    return *m_hashFileFacts.insert(canonical, facts);
}

void VTHttpServer::onNewRequest(VTHttpRequest* pRequest, VTHttpResponse* pResponse)
{
    if (!pRequest || !pResponse)
        return;
    if (!isAllowedHost(pRequest->getHost())) {
        answerEmpty(pResponse, 403);
        return;
    }
    QString requested = pRequest->getPath();
    // "/C:/..." names a drive path on systems that have drives.
    if (requested.size() > 2 && requested.at(2) == QLatin1Char(':') && requested.at(1).isLetter() &&
        QDir::rootPath() != QLatin1String("/"))
        requested.remove(0, 1);
    VTHttpFileOpener opener(requested, &m_hashResolutions);
    if (opener.getResult() == VTHttpFileOpener::Missing) {
        answerEmpty(pResponse, 404);
        return;
    }
    if (opener.getResult() != VTHttpFileOpener::Opened || !isResolvedPathAllowed(opener.getCanonicalPath())) {
        answerEmpty(pResponse, 403);
        return;
    }
    std::unique_ptr<QFile> pFile = opener.takeFile();
    const QString canonical = opener.getCanonicalPath();
    const qint64 nSize = opener.getSize();
    qint64 nStart = -1;
    qint64 nEnd = nSize - 1;
    bool bRange = false;
    if (nSize > 0 && pRequest->hasHeader("range")) {
        const QByteArray value = pRequest->getHeader("range");
        if (value.contains("bytes")) {
            const QList<QByteArray> bounds = value.split('=').last().split('-');
            bool bStartOk = false;
            nStart = bounds.first().trimmed().toLongLong(&bStartOk);
            bool bEndOk = true;
            if (bounds.size() >= 2 && !bounds.last().trimmed().isEmpty())
                nEnd = bounds.last().trimmed().toLongLong(&bEndOk);
            bRange = bStartOk && bEndOk && nStart >= 0 && nEnd < nSize && nStart <= nEnd;
        }
    }

    pResponse->addHeader("server", getServerName());
    qint64 nBytes = -1;
    if (bRange && pFile->seek(nStart)) {
        pResponse->setStatusCode(206);
        pResponse->addHeader("accept-ranges", "bytes");
        pResponse->addHeader("content-range",
                             QStringLiteral("bytes %1-%2/%3").arg(nStart).arg(nEnd).arg(nSize).toLatin1());
        nBytes = nEnd - nStart + 1;
    } else {
        pResponse->setStatusCode(200);
        pResponse->addHeader("accept-ranges", "bytes");
    }
    const FileFacts& facts = getFileFacts(canonical, nSize, opener.getModifiedMs());
    pResponse->addHeader("content-type", facts.mimeType);
    pResponse->addHeader("content-length", QByteArray::number(nBytes >= 0 ? nBytes : nSize));
    pResponse->addHeader("last-modified", facts.lastModified);
    pResponse->addHeader("expires", "0");
    pResponse->addHeader("cache-control", "no-cache, no-store, must-revalidate");
    if (pResponse->isHeadOnly()) {
        pResponse->end();
        return;
    }
    // The reader is told the length announced, not "to the end": a file that grows meanwhile
    // must not send more, and the read that would find the end costs a call of its own.
    auto* pReader =
        new VTHttpFileReader(this, pFile.release(), pRequest, pResponse, nBytes >= 0 ? nBytes : nSize);
    pReader->start();
    // A body sent whole with the first block needs no reader any more.
    if (pReader->isDone())
        delete pReader;
}
