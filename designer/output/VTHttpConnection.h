#pragma once

#include <QByteArray>
#include <QObject>

class QTcpSocket;
class VTHttpRequest;
class VTHttpResponse;

// One client connection of the preview server. Reads request heads, hands each on as a request
// and its response through newRequest, and answers malformed ones itself (400, 405, 431, 505)
// before it closes. Requests of one connection are answered strictly one after another: while a
// response is under way the next request, pipelined or not, waits in the socket, whose buffer is
// bounded, so a client cannot make the server hold more than one head's worth of input.
//
// A connection on which nothing moves for the idle time (no request, no byte of an answer taken
// by the client) is dropped by the server's sweep (dropIfIdle), so silent clients do not pile
// up; noting the time of each move costs less than a timer per connection restarted with every
// request. It deletes itself once closed.
class VTHttpConnection final : public QObject
{
    Q_OBJECT
public:
    // Takes the socket over.
    VTHttpConnection(QTcpSocket* pSocket, int nIdleTimeoutMs, QObject* parent);
    ~VTHttpConnection() override;

    QTcpSocket* getSocket() const { return m_pSocket; }
    bool isClosed() const { return m_bGone; }
    // A response is under way.
    bool isBusy() const { return m_pResponse != nullptr; }
    // Drops the connection at once; whatever was not sent is lost.
    void abort();
    // Drops it when nothing moved for its idle time; true when it did.
    bool dropIfIdle(qint64 nNowMs);
    // Milliseconds on a monotonic clock shared by all connections.
    static qint64 getClockMs();

    // The current response's bytes, head and data in one piece; false when the socket refused
    // them.
    bool writeData(const QByteArray& head, const char* pData, qint64 nSize);
    // Bytes written wait in the socket's buffer.
    bool hasPendingOutput() const;
    // The current response is complete: the connection goes on with the next request or closes.
    void responseEnded(VTHttpResponse* pResponse);

signals:
    void newRequest(VTHttpRequest* pRequest, VTHttpResponse* pResponse);
    // The client went away, the connection was dropped or it closed after its last response.
    void disconnected();

private slots:
    void onReadyRead();
    void onBytesWritten();
    void onSocketDisconnected();
    void processInput();

private:
    // Moves one complete head out of the input, without its closing empty line. False when the
    // input holds no complete head yet; *pbTooLarge when it cannot be one within the limit.
    bool takeHead(QByteArray* pHead, bool* pbTooLarge);
    void sendErrorAndClose(int nStatus);

    QTcpSocket* m_pSocket = nullptr;
    qint64 m_nLastMoveMs = 0;
    int m_nIdleTimeoutMs = 0;
    QByteArray m_baInput;
    VTHttpRequest* m_pRequest = nullptr;
    VTHttpResponse* m_pResponse = nullptr;
    // The last response that ended, with its request; deleted when the connection moves on,
    // since the one who ended it may still hold it.
    VTHttpResponse* m_pFinishedResponse = nullptr;
    // Bytes of the current response wait in the socket.
    bool m_bPendingWrite = false;
    // No further request is read: the last response says close.
    bool m_bClosing = false;
    bool m_bGone = false;
};
