#pragma once

#include <QObject>
#include <QUrl>

class QWebChannel;
class QWebSocket;
class QWebSocketCorsAuthenticator;
class QWebSocketServer;

// The socket server through which the studio's own pages reach the web channel. It listens on
// 127.0.0.1 only, and a connection must come from a local file page and present this process's
// token: otherwise any web site open in the user's browser could drive the open project.
class WebChannelServer final : public QObject
{
    Q_OBJECT
public:
    explicit WebChannelServer(QObject* parent = nullptr);
    ~WebChannelServer() override;

    bool isListening() const;
    QWebSocketServer* getServer() const { return m_pServer; }
    QWebChannel* getChannel() const { return m_pChannel; }
    QString getToken() const { return m_strToken; }
    // What a page is given to connect: ws://127.0.0.1:<port>/?token=<token>
    QUrl getChannelUrl() const;
    int getConnectionCount() const { return m_nConnections; }

signals:
    void connectionRefused(const QString& reason);

private:
    void onOriginAuthentication(QWebSocketCorsAuthenticator* pAuthenticator);
    void onNewConnection();
    void refuse(QWebSocket* pSocket, const QString& reason);

    QWebSocketServer* m_pServer;
    QWebChannel* m_pChannel;
    QString m_strToken;
    int m_nConnections = 0;
};
