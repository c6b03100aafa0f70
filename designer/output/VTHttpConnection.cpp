#include "VTHttpConnection.h"

#include "VTHttpRequest.h"
#include "VTHttpResponse.h"
#include "VTHttpServer.h"

#include <QElapsedTimer>
#include <QTcpSocket>

#ifdef Q_OS_LINUX
#include <sys/socket.h>
#include <sys/uio.h>
#endif

namespace {

// Room for one head and a little of what follows it; the socket stops reading beyond that
// while a response is under way.
constexpr qint64 s_nInputLimit = VTHttpRequest::s_nMaxHeadSize + 16 * 1024;

} // namespace

VTHttpConnection::VTHttpConnection(QTcpSocket* pSocket, int nIdleTimeoutMs, QObject* parent)
    : QObject(parent)
    , m_pSocket(pSocket)
    , m_nLastMoveMs(getClockMs())
    , m_nIdleTimeoutMs(nIdleTimeoutMs)
{
    m_pSocket->setParent(this);
    m_pSocket->setReadBufferSize(s_nInputLimit);
    connect(m_pSocket, &QTcpSocket::readyRead, this, &VTHttpConnection::onReadyRead);
    connect(m_pSocket, &QTcpSocket::bytesWritten, this, &VTHttpConnection::onBytesWritten);
    connect(m_pSocket, &QTcpSocket::disconnected, this, &VTHttpConnection::onSocketDisconnected);
    // Whatever the error, a socket that is no longer connected ends the connection.
    connect(m_pSocket, &QTcpSocket::errorOccurred, this, [this]() {
        if (m_pSocket->state() != QAbstractSocket::ConnectedState)
            onSocketDisconnected();
    });
    if (m_pSocket->state() != QAbstractSocket::ConnectedState)
        QMetaObject::invokeMethod(this, &VTHttpConnection::onSocketDisconnected, Qt::QueuedConnection);
    else if (m_pSocket->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, &VTHttpConnection::processInput, Qt::QueuedConnection);
}

VTHttpConnection::~VTHttpConnection()
{
    if (m_pResponse)
        m_pResponse->detach();
}

qint64 VTHttpConnection::getClockMs()
{
    static QElapsedTimer s_clock;
    if (!s_clock.isValid())
        s_clock.start();
    return s_clock.elapsed();
}

bool VTHttpConnection::dropIfIdle(qint64 nNowMs)
{
    if (m_bGone || nNowMs - m_nLastMoveMs < m_nIdleTimeoutMs)
        return false;
    abort();
    return true;
}

void VTHttpConnection::abort()
{
    if (m_bGone)
        return;
    m_pSocket->abort();
    onSocketDisconnected();
}

bool VTHttpConnection::hasPendingOutput() const
{
    return !m_bGone && m_pSocket->bytesToWrite() > 0;
}

bool VTHttpConnection::writeData(const QByteArray& head, const char* pData, qint64 nSize)
{
    if (m_bGone)
        return false;
    const qint64 nHead = head.size();
    qint64 nSent = 0;
#ifdef Q_OS_LINUX
    // Straight to the system while nothing waits in the socket's own buffer, which keeps the
    // order: an answer then costs one call, instead of a turn of the event loop with the
    // socket's write notifier switched on and off around it.
    if (m_pSocket->bytesToWrite() == 0) {
        iovec parts[2] = {{const_cast<char*>(head.constData()), size_t(nHead)},
                          {const_cast<char*>(pData), size_t(qMax<qint64>(0, nSize))}};
        msghdr message = {};
        message.msg_iov = parts;
        message.msg_iovlen = 2;
        const ssize_t nWritten =
            ::sendmsg(int(m_pSocket->socketDescriptor()), &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        nSent = qMax<qint64>(0, nWritten);
    }
#endif
    if (nSent > 0)
        m_nLastMoveMs = getClockMs();
    // What the system did not take goes through the socket, which reports its progress and any
    // error of the connection.
    bool bOk = true;
    if (nSent < nHead)
        bOk = m_pSocket->write(head.constData() + nSent, nHead - nSent) == nHead - nSent;
    const qint64 nDataSent = qMax<qint64>(0, nSent - nHead);
    if (bOk && nSize > nDataSent)
        bOk = m_pSocket->write(pData + nDataSent, nSize - nDataSent) == nSize - nDataSent;
    m_bPendingWrite = m_pSocket->bytesToWrite() > 0;
    return bOk;
}

void VTHttpConnection::responseEnded(VTHttpResponse* pResponse)
{
    if (pResponse != m_pResponse)
        return;
    m_pResponse = nullptr;
    m_bPendingWrite = false;
    pResponse->detach();
    // The request goes with its response.
    if (m_pRequest)
        m_pRequest->setParent(pResponse);
    m_pRequest = nullptr;
    delete m_pFinishedResponse;
    m_pFinishedResponse = pResponse;
    if (m_bGone)
        return;
    m_nLastMoveMs = getClockMs();
    if (!pResponse->isKeepAlive()) {
        m_bClosing = true;
        // Sends what is buffered, then closes.
        m_pSocket->disconnectFromHost();
        return;
    }
    // Short answers leave at once instead of on the next turn of the event loop.
    m_pSocket->flush();
    // Queued: a client that pipelines many requests that are answered at once must not deepen
    // the stack with each one. Without input waiting, the next readyRead brings the request.
    if (!m_baInput.isEmpty() || m_pSocket->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, &VTHttpConnection::processInput, Qt::QueuedConnection);
}

void VTHttpConnection::onReadyRead()
{
    if (!m_pResponse)
        processInput();
}

void VTHttpConnection::onBytesWritten()
{
    if (m_bGone)
        return;
    m_nLastMoveMs = getClockMs();
    if (m_pResponse && m_bPendingWrite && m_pSocket->bytesToWrite() == 0) {
        m_bPendingWrite = false;
        emit m_pResponse->allBytesWritten();
    }
}

void VTHttpConnection::onSocketDisconnected()
{
    if (m_bGone)
        return;
    m_bGone = true;
    if (m_pResponse)
        m_pResponse->detach();
    emit disconnected();
    deleteLater();
}

bool VTHttpConnection::takeHead(QByteArray* pHead, bool* pbTooLarge)
{
    *pbTooLarge = false;
    // Empty lines before a request are allowed and ignored.
    int nStart = 0;
    while (nStart < m_baInput.size() && (m_baInput.at(nStart) == '\r' || m_baInput.at(nStart) == '\n'))
        ++nStart;
    if (nStart > 0)
        m_baInput.remove(0, nStart);
    int nFrom = 0;
    while (true) {
        const int nLineEnd = m_baInput.indexOf('\n', nFrom);
        if (nLineEnd < 0 || nLineEnd > VTHttpRequest::s_nMaxHeadSize)
            break;
        // The head ends with the first empty line: "\n\n" or "\n\r\n".
        int nEmptyEnd = -1;
        if (nLineEnd + 1 < m_baInput.size() && m_baInput.at(nLineEnd + 1) == '\n')
            nEmptyEnd = nLineEnd + 2;
        else if (nLineEnd + 2 < m_baInput.size() && m_baInput.at(nLineEnd + 1) == '\r' &&
                 m_baInput.at(nLineEnd + 2) == '\n')
            nEmptyEnd = nLineEnd + 3;
        if (nEmptyEnd > 0) {
            *pHead = m_baInput.left(nLineEnd);
            if (pHead->endsWith('\r'))
                pHead->chop(1);
            m_baInput.remove(0, nEmptyEnd);
            return true;
        }
        nFrom = nLineEnd + 1;
    }
    *pbTooLarge = m_baInput.size() > VTHttpRequest::s_nMaxHeadSize;
    return false;
}

void VTHttpConnection::processInput()
{
    if (m_pResponse || m_bClosing || m_bGone)
        return;
    delete m_pFinishedResponse;
    m_pFinishedResponse = nullptr;
    QByteArray head;
    bool bTooLarge = false;
    // What is already read is parsed before more is read, so the input never holds much more
    // than one head, however many requests the client sends ahead.
    while (!takeHead(&head, &bTooLarge)) {
        if (bTooLarge) {
            sendErrorAndClose(431);
            return;
        }
        if (m_pSocket->bytesAvailable() <= 0)
            return;
        m_baInput += m_pSocket->read(qMax<qint64>(1, s_nInputLimit - m_baInput.size()));
    }

    auto* pRequest = new VTHttpRequest(this);
    int nStatus = 400;
    if (!pRequest->parse(head, &nStatus)) {
        delete pRequest;
        sendErrorAndClose(nStatus);
        return;
    }
    const QByteArray method = pRequest->getMethod();
    if (method != "GET" && method != "HEAD") {
        delete pRequest;
        sendErrorAndClose(405);
        return;
    }
    // The server reads no bodies, so it could not find where the next request starts.
    if (pRequest->hasBody()) {
        delete pRequest;
        sendErrorAndClose(400);
        return;
    }
    m_pRequest = pRequest;
    m_pResponse = new VTHttpResponse(this, pRequest->isHead(), pRequest->isKeepAlive(),
                                     pRequest->getMinorVersion() == 0);
    m_nLastMoveMs = getClockMs();
    emit newRequest(m_pRequest, m_pResponse);
}

void VTHttpConnection::sendErrorAndClose(int nStatus)
{
    m_baInput.clear();
    m_pResponse = new VTHttpResponse(this, false, false, false);
    m_pResponse->setStatusCode(nStatus);
    m_pResponse->addHeader("server", VTHttpServer::getServerName());
    if (nStatus == 405)
        m_pResponse->addHeader("allow", "GET, HEAD");
    m_pResponse->end();
}
