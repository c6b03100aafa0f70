#include "VTHttpRequest.h"

#include "VTHttpConnection.h"

namespace {

bool isTokenChar(char c)
{
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
        return true;
    switch (c) {
    case '!':
    case '#':
    case '$':
    case '%':
    case '&':
    case '\'':
    case '*':
    case '+':
    case '-':
    case '.':
    case '^':
    case '_':
    case '`':
    case '|':
    case '~':
        return true;
    default:
        return false;
    }
}

// Visible ASCII only: a target with blanks, controls or raw 8-bit bytes is malformed.
bool isTargetText(const QByteArray& text)
{
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (u <= 0x20 || u >= 0x7f)
            return false;
    }
    return !text.isEmpty();
}

// Field values may hold blanks and tabs, and bytes above 0x7f (obsolete text), never controls.
bool isFieldValue(const QByteArray& value)
{
    for (const char c : value) {
        const auto u = static_cast<unsigned char>(c);
        if ((u < 0x20 && u != '\t') || u == 0x7f)
            return false;
    }
    return true;
}

QByteArray trimBlanks(const QByteArray& text)
{
    int nStart = 0;
    int nEnd = text.size();
    while (nStart < nEnd && (text.at(nStart) == ' ' || text.at(nStart) == '\t'))
        ++nStart;
    while (nEnd > nStart && (text.at(nEnd - 1) == ' ' || text.at(nEnd - 1) == '\t'))
        --nEnd;
    return text.mid(nStart, nEnd - nStart);
}

} // namespace

VTHttpRequest::VTHttpRequest(VTHttpConnection* pConnection)
    : QObject(pConnection)
    , m_pConnection(pConnection)
{}

bool VTHttpRequest::isToken(const QByteArray& text)
{
    if (text.isEmpty())
        return false;
    for (const char c : text) {
        if (!isTokenChar(c))
            return false;
    }
    return true;
}

bool VTHttpRequest::parse(const QByteArray& head, int* pnErrorStatus)
{
    *pnErrorStatus = 400;
    m_lstHeaders.clear();
    // Lines end with CRLF; a bare LF is accepted as well, a bare CR is not.
    QList<QByteArray> lines = head.split('\n');
    for (QByteArray& line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.contains('\r'))
            return false;
    }
    if (lines.isEmpty() || !parseRequestLine(lines.first(), pnErrorStatus))
        return false;

    bool bHostSeen = false;
    QByteArray fieldHost;
    for (int i = 1; i < lines.size(); ++i) {
        const QByteArray& line = lines.at(i);
        // Folded continuation lines are obsolete and a way to smuggle fields: refused.
        if (line.isEmpty() || line.at(0) == ' ' || line.at(0) == '\t')
            return false;
        const int nColon = line.indexOf(':');
        if (nColon <= 0)
            return false;
        const QByteArray name = line.left(nColon).toLower();
        const QByteArray value = trimBlanks(line.mid(nColon + 1));
        // No blank may stand between the name and its colon.
        if (!isToken(name) || !isFieldValue(value))
            return false;
        if (name == "host") {
            // Two hosts leave it open which one was meant.
            if (bHostSeen)
                return false;
            bHostSeen = true;
            fieldHost = value;
        }
        bool bJoined = false;
        for (QPair<QByteArray, QByteArray>& header : m_lstHeaders) {
            if (header.first == name) {
                header.second += ", " + value;
                bJoined = true;
                break;
            }
        }
        if (!bJoined)
            m_lstHeaders.append({name, value});
    }
    if (m_baHost.isEmpty())
        m_baHost = fieldHost;

    // A length that is no plain number cannot frame the next request.
    if (hasHeader("content-length")) {
        bool bOk = false;
        const qlonglong nLength = getHeader("content-length").toLongLong(&bOk);
        if (!bOk || nLength < 0)
            return false;
    }
    return true;
}

bool VTHttpRequest::parseRequestLine(const QByteArray& line, int* pnErrorStatus)
{
    const QList<QByteArray> parts = line.split(' ');
    if (parts.size() != 3 || !isToken(parts.at(0)) || !isTargetText(parts.at(1)))
        return false;
    const QByteArray& version = parts.at(2);
    if (version.size() != 8 || !version.startsWith("HTTP/") || version.at(6) != '.' ||
        !QByteArray("0123456789").contains(version.at(5)) ||
        !QByteArray("0123456789").contains(version.at(7)))
        return false;
    if (version.at(5) != '1' || (version.at(7) != '0' && version.at(7) != '1')) {
        *pnErrorStatus = 505;
        return false;
    }
    m_baMethod = parts.at(0);
    m_nMinorVersion = version.at(7) - '0';
    return parseTarget(parts.at(1));
}

bool VTHttpRequest::parseTarget(const QByteArray& target)
{
    m_baTarget = target;
    QByteArray path = target;
    const int nQuery = path.indexOf('?');
    if (nQuery >= 0)
        path.truncate(nQuery);
    if (path.size() > 7 && path.left(7).toLower() == "http://") {
        const int nSlash = path.indexOf('/', 7);
        m_baHost = path.mid(7, nSlash < 0 ? -1 : nSlash - 7);
        if (m_baHost.isEmpty())
            return false;
        path = nSlash < 0 ? QByteArray("/") : path.mid(nSlash);
    }
    if (!path.startsWith('/'))
        return false;
    // With its length: a decoded zero byte stays in the path, where the server refuses it,
    // instead of silently cutting the path short.
    const QByteArray decoded = QByteArray::fromPercentEncoding(path);
    m_strPath = QString::fromUtf8(decoded.constData(), decoded.size());
    return true;
}

QByteArray VTHttpRequest::getHeader(const QByteArray& name) const
{
    for (const QPair<QByteArray, QByteArray>& header : m_lstHeaders) {
        if (header.first == name)
            return header.second;
    }
    return QByteArray();
}

bool VTHttpRequest::hasHeader(const QByteArray& name) const
{
    for (const QPair<QByteArray, QByteArray>& header : m_lstHeaders) {
        if (header.first == name)
            return true;
    }
    return false;
}

bool VTHttpRequest::hasConnectionOption(const QByteArray& option) const
{
    const QList<QByteArray> options = getHeader("connection").split(',');
    for (const QByteArray& each : options) {
        if (trimBlanks(each).toLower() == option)
            return true;
    }
    return false;
}

bool VTHttpRequest::isKeepAlive() const
{
    if (m_nMinorVersion >= 1)
        return !hasConnectionOption("close");
    return hasConnectionOption("keep-alive");
}

bool VTHttpRequest::hasBody() const
{
    return hasHeader("transfer-encoding") || getHeader("content-length").toLongLong() > 0;
}
