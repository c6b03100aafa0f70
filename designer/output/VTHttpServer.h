#pragma once

#include "ISingleton.h"
#include "VTHttpFileOpener.h"

#include <QHash>
#include <QHostAddress>
#include <QMimeDatabase>
#include <QObject>
#include <QStringList>

#include <memory>

class QTcpServer;
class QTimer;
class VTHttpRequest;
class VTHttpResponse;

// The process-wide HTTP server of previews: serves files straight from disk, only from the
// allowed folders, with byte ranges so that media can seek.
//
// A request's path is an absolute file path. The allowed-folder test takes its canonical form
// (percent-encoding decoded first, then symbolic links, "." and ".." resolved; see
// VTHttpFileOpener), so no spelling of a path leads out of an allowed folder. Browsers reach the
// server by the loopback address; a request that names any other host (a page of another site
// whose name was pointed at 127.0.0.1) is refused.
class VTHttpServer final : public QObject, public ISingleton<VTHttpServer>
{
    Q_OBJECT
public:
    static constexpr quint16 s_nDefaultPort = 8080;
    static constexpr int s_nDefaultIdleTimeoutMs = 30000;

    ~VTHttpServer() override;

    // The "server" field of every response.
    static QByteArray getServerName() { return QByteArrayLiteral("Vetra Studio"); }

    // Listens on the port, or on one that the system picks when that port cannot be had; only
    // the second attempt's result counts then. A server that listens already is stopped first.
    bool start(const QHostAddress& address, quint16 nPort);
    // Stops listening and drops every connection.
    void stop();
    bool isListening() const;
    // 0 without a listening socket.
    quint16 getPort() const;

    // Folders are kept as canonical paths; a folder that does not exist is not added.
    void addAllowedDir(const QString& path);
    void removeAllowedDir(const QString& path);
    QStringList getAllowedDirs() const { return m_lstAllowedDirs; }
    // Whether the file lies in an allowed folder or below one, after resolving its path.
    bool isFileInAllowedDirs(const QString& path) const;

    // Connections with no traffic for this long are closed; applies to new connections.
    void setIdleTimeout(int nMs);
    int getIdleTimeout() const { return m_nIdleTimeoutMs; }
    int getConnectionCount() const;

signals:
    void newRequest(VTHttpRequest* pRequest, VTHttpResponse* pResponse);

public slots:
    void onNewRequest(VTHttpRequest* pRequest, VTHttpResponse* pResponse);

private slots:
    void onNewConnection();
    void dropIdleConnections();

private:
    friend class ISingleton<VTHttpServer>;
    VTHttpServer();

    // For a path resolved already, canonical where the file exists.
    bool isResolvedPathAllowed(const QString& resolved) const;
    // "127.0.0.1:PORT" or "localhost:PORT"; the port may be left out only when it is 80.
    bool isAllowedHost(const QByteArray& host) const;
    // What the headers say of a file, kept while its size and time stay: the mime database
    // matches patterns and reads the file's start, which would cost more than the answer itself.
    struct FileFacts
    {
        qint64 nModifiedMs = 0;
        qint64 nSize = -1;
        QByteArray mimeType;
        QByteArray lastModified;
    };
    const FileFacts& getFileFacts(const QString& canonical, qint64 nSize, qint64 nModifiedMs);
    // A response with no body, the connection kept as the request allows.
    static void answerEmpty(VTHttpResponse* pResponse, int nStatus);

    std::unique_ptr<QTcpServer> m_pTcpServer;
    QTimer* m_pSweepTimer = nullptr;
    QMimeDatabase m_mimeDatabase;
    QHash<QString, FileFacts> m_hashFileFacts;
    VTHttpFileOpener::ResolutionCache m_hashResolutions;
    QStringList m_lstAllowedDirs;
    int m_nIdleTimeoutMs = s_nDefaultIdleTimeoutMs;
};
