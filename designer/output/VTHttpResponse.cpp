#include "VTHttpResponse.h"

#include "VTHttpConnection.h"

VTHttpResponse::VTHttpResponse(VTHttpConnection* pConnection, bool bHeadOnly, bool bKeepAlive, bool bHttp10)
    : QObject(pConnection)
    , m_pConnection(pConnection)
    , m_bHeadOnly(bHeadOnly)
    , m_bKeepAlive(bKeepAlive)
    , m_bHttp10(bHttp10)
{}

QByteArray VTHttpResponse::getReasonPhrase(int nStatus)
{
    switch (nStatus) {
    case 200:
        return "OK";
    case 206:
        return "Partial Content";
    case 400:
        return "Bad Request";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 408:
        return "Request Timeout";
    case 431:
        return "Request Header Fields Too Large";
    case 500:
        return "Internal Server Error";
    case 505:
        return "HTTP Version Not Supported";
    default:
        return "Unknown";
    }
}

void VTHttpResponse::setStatusCode(int nStatus)
{
    if (!m_bHeadersSent)
        m_nStatus = nStatus;
}

void VTHttpResponse::addHeader(const QByteArray& name, const QByteArray& value)
{
    if (m_bHeadersSent)
        return;
    const QByteArray key = name.toLower();
    for (QPair<QByteArray, QByteArray>& header : m_lstHeaders) {
        if (header.first == key) {
            header.second = value;
            return;
        }
    }
    m_lstHeaders.append({key, value});
}

QByteArray VTHttpResponse::getHeader(const QByteArray& name) const
{
    const QByteArray key = name.toLower();
    for (const QPair<QByteArray, QByteArray>& header : m_lstHeaders) {
        if (header.first == key)
            return header.second;
    }
    return QByteArray();
}

void VTHttpResponse::sendHeaders(qint64 nBodySize)
{
    m_bHeadersSent = true;
    bool bOk = false;
    const QByteArray length = getHeader("content-length");
    m_nDeclaredLength = length.isEmpty() ? -1 : length.toLongLong(&bOk);
    if (!bOk)
        m_nDeclaredLength = -1;
    if (m_nDeclaredLength < 0 && nBodySize >= 0) {
        m_nDeclaredLength = nBodySize;
        m_lstHeaders.append(qMakePair(QByteArray("content-length"), QByteArray::number(nBodySize)));
    }
    // Without a length only the end of the connection tells where the body ends.
    if (m_nDeclaredLength < 0)
        m_bKeepAlive = false;
    for (int i = m_lstHeaders.size() - 1; i >= 0; --i) {
        if (m_lstHeaders.at(i).first == "connection")
            m_lstHeaders.removeAt(i);
    }
    if (!m_bKeepAlive)
        m_lstHeaders.append(qMakePair(QByteArray("connection"), QByteArray("close")));
    else if (m_bHttp10)
        m_lstHeaders.append(qMakePair(QByteArray("connection"), QByteArray("keep-alive")));

    // Kept until the first body bytes, so that both leave in one piece.
    m_baHead.reserve(256);
    m_baHead += "HTTP/1.1 " + QByteArray::number(m_nStatus) + ' ' + getReasonPhrase(m_nStatus) + "\r\n";
    for (const QPair<QByteArray, QByteArray>& header : qAsConst(m_lstHeaders))
        m_baHead += header.first + ": " + header.second + "\r\n";
    m_baHead += "\r\n";
}

bool VTHttpResponse::send(const char* pData, qint64 nSize)
{
    if (!m_pConnection)
        return false;
    const bool bOk = m_pConnection->writeData(m_baHead, pData, nSize);
    m_baHead.clear();
    return bOk;
}

bool VTHttpResponse::isAllWritten() const
{
    return m_pConnection && !m_pConnection->hasPendingOutput();
}

bool VTHttpResponse::write(const char* pData, qint64 nSize)
{
    if (m_bFinished || !m_pConnection)
        return false;
    if (!m_bHeadersSent)
        sendHeaders(-1);
    if (m_bHeadOnly || nSize <= 0)
        return m_pConnection != nullptr;
    if (m_nDeclaredLength >= 0)
        nSize = qMin(nSize, m_nDeclaredLength - m_nBodyWritten);
    if (nSize <= 0)
        return true;
    m_nBodyWritten += nSize;
    return send(pData, nSize);
}

void VTHttpResponse::end(const QByteArray& data)
{
    if (m_bFinished)
        return;
    if (!m_bHeadersSent)
        sendHeaders(data.size());
    if (!data.isEmpty())
        write(data);
    if (!m_baHead.isEmpty())
        send(nullptr, 0);
    m_bFinished = true;
    if (!m_bHeadOnly && m_nDeclaredLength >= 0 && m_nBodyWritten < m_nDeclaredLength)
        m_bKeepAlive = false;
    if (m_pConnection)
        m_pConnection->responseEnded(this);
}
