#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

class VTHttpConnection;

// One request read from a connection of the preview server: the request line and the header
// fields, never a body (the server answers GET and HEAD only). Made by the connection, which
// owns it until the answer is complete.
class VTHttpRequest final : public QObject
{
    Q_OBJECT
public:
    // The longest head (request line and header fields) that a client may send.
    static constexpr int s_nMaxHeadSize = 64 * 1024;

    explicit VTHttpRequest(VTHttpConnection* pConnection);

    // Reads a head without its closing empty line. On failure returns false and gives the status
    // to answer with: 400 for anything malformed, 505 for an HTTP version other than 1.0 and 1.1.
    bool parse(const QByteArray& head, int* pnErrorStatus);

    VTHttpConnection* getConnection() const { return m_pConnection; }
    QByteArray getMethod() const { return m_baMethod; }
    bool isHead() const { return m_baMethod == "HEAD"; }
    // The request target as sent, e.g. "/a%20b/c.html?x=1".
    QByteArray getTarget() const { return m_baTarget; }
    // The target's path with its percent-encoding decoded, without the query; for an absolute
    // target ("http://host/path") only its path.
    QString getPath() const { return m_strPath; }
    // The authority the client addressed: the target's for an absolute target, else the value of
    // the "host" field; empty when there is none.
    QByteArray getHost() const { return m_baHost; }
    int getMinorVersion() const { return m_nMinorVersion; }
    // Field names are lower case; repeated fields are joined with ", ".
    const QList<QPair<QByteArray, QByteArray>>& getHeaders() const { return m_lstHeaders; }
    QByteArray getHeader(const QByteArray& name) const;
    bool hasHeader(const QByteArray& name) const;
    // HTTP/1.1 keeps the connection unless the client says "close"; HTTP/1.0 closes it unless the
    // client asks for "keep-alive".
    bool isKeepAlive() const;
    // A body announced by "content-length" above 0 or by "transfer-encoding".
    bool hasBody() const;

    static bool isToken(const QByteArray& text);

private:
    bool parseRequestLine(const QByteArray& line, int* pnErrorStatus);
    bool parseTarget(const QByteArray& target);
    bool hasConnectionOption(const QByteArray& option) const;

    VTHttpConnection* m_pConnection = nullptr;
    QByteArray m_baMethod;
    QByteArray m_baTarget;
    QString m_strPath;
    QByteArray m_baHost;
    int m_nMinorVersion = 1;
    QList<QPair<QByteArray, QByteArray>> m_lstHeaders;
};
