#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPair>

class VTHttpConnection;

// The answer to one request. The status line and the header fields go out with the first
// write (or with end); the body follows in as many writes as the sender likes. The connection
// tells, through allBytesWritten, when everything written so far has reached the system, so a
// sender writes its next block only then and never holds more than one in memory.
//
// The connection stays open for the next request only when the body's length is known: the
// "content-length" field set before the first write, or a body given whole to end().
class VTHttpResponse final : public QObject
{
    Q_OBJECT
public:
    // bHeadOnly: the answer to HEAD, whose body is never sent; bKeepAlive: whether the client
    // lets the connection stay open; bHttp10: the client speaks HTTP/1.0, which has to be told
    // that the connection stays open.
    VTHttpResponse(VTHttpConnection* pConnection, bool bHeadOnly, bool bKeepAlive, bool bHttp10);

    VTHttpConnection* getConnection() const { return m_pConnection; }

    // 200 unless set; only before the first write.
    void setStatusCode(int nStatus);
    int getStatusCode() const { return m_nStatus; }
    // Names are lower case. A field set again replaces the value; only before the first write.
    void addHeader(const QByteArray& name, const QByteArray& value);
    QByteArray getHeader(const QByteArray& name) const;

    // False once the connection is gone or the response has ended. A body longer than the
    // announced length is cut to it.
    bool write(const char* pData, qint64 nSize);
    bool write(const QByteArray& data) { return write(data.constData(), data.size()); }
    // Ends the response, after writing data. A response that did not send as many body bytes as
    // it announced closes the connection, as the client could not tell where the next one starts.
    void end(const QByteArray& data = QByteArray());

    bool isHeadOnly() const { return m_bHeadOnly; }
    bool isFinished() const { return m_bFinished; }
    bool areHeadersSent() const { return m_bHeadersSent; }
    // Whether the connection is kept after this response; settled when the headers go out.
    bool isKeepAlive() const { return m_bKeepAlive; }
    qint64 getBodyBytesWritten() const { return m_nBodyWritten; }
    // Nothing written waits in the connection any more: the system has taken it all, and no
    // allBytesWritten will follow for it.
    bool isAllWritten() const;

    static QByteArray getReasonPhrase(int nStatus);

signals:
    // Everything written so far has been handed to the system.
    void allBytesWritten();

private:
    friend class VTHttpConnection;
    void sendHeaders(qint64 nBodySize);
    // The status line and fields still unsent, followed by the data.
    bool send(const char* pData, qint64 nSize);
    // The connection went away.
    void detach() { m_pConnection = nullptr; }

    VTHttpConnection* m_pConnection = nullptr;
    QList<QPair<QByteArray, QByteArray>> m_lstHeaders;
    QByteArray m_baHead;
    int m_nStatus = 200;
    qint64 m_nDeclaredLength = -1;
    qint64 m_nBodyWritten = 0;
    bool m_bHeadOnly = false;
    bool m_bKeepAlive = true;
    bool m_bHttp10 = false;
    bool m_bHeadersSent = false;
    bool m_bFinished = false;
};
