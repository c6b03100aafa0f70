#include "WebChannelServer.h"

#include "WebSocketTransport.h"

#include <QRandomGenerator>
#include <QUrlQuery>
#include <QWebChannel>
#include <QWebSocket>
#include <QWebSocketCorsAuthenticator>
#include <QWebSocketServer>

namespace {

QString makeToken()
{
    static const char kAlphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QString token;
    auto* pGenerator = QRandomGenerator::system();
    for (int i = 0; i < 32; ++i)
        token += QLatin1Char(kAlphabet[pGenerator->bounded(int(sizeof(kAlphabet) - 1))]);
    return token;
}

// Pages of the studio are loaded from file://, which browsers send as the origin "file://"
// (some builds send "null" for opaque file origins).
bool isLocalFileOrigin(const QString& origin)
{
    return origin == QLatin1String("file://") || origin == QLatin1String("null");
}

} // namespace

WebChannelServer::WebChannelServer(QObject* parent)
    : QObject(parent)
    , m_pServer(new QWebSocketServer(QStringLiteral("Vetra Studio"), QWebSocketServer::NonSecureMode, this))
    , m_pChannel(new QWebChannel(this))
    , m_strToken(makeToken())
{
    connect(m_pServer, &QWebSocketServer::originAuthenticationRequired, this,
            &WebChannelServer::onOriginAuthentication);
    connect(m_pServer, &QWebSocketServer::newConnection, this, &WebChannelServer::onNewConnection);
    if (!m_pServer->listen(QHostAddress::LocalHost, 0))
        qWarning("Web channel: cannot listen on 127.0.0.1: %s", qPrintable(m_pServer->errorString()));
}

WebChannelServer::~WebChannelServer()
{
    m_pServer->close();
}

bool WebChannelServer::isListening() const
{
    return m_pServer->isListening();
}

QUrl WebChannelServer::getChannelUrl() const
{
    QUrl url = m_pServer->serverUrl();
    url.setPath(QStringLiteral("/"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("token"), m_strToken);
    url.setQuery(query);
    return url;
}

void WebChannelServer::onOriginAuthentication(QWebSocketCorsAuthenticator* pAuthenticator)
{
    const bool bAllowed = isLocalFileOrigin(pAuthenticator->origin());
    pAuthenticator->setAllowed(bAllowed);
    if (!bAllowed)
        emit connectionRefused(tr("origin \"%1\" is not a local page").arg(pAuthenticator->origin()));
}

void WebChannelServer::onNewConnection()
{
    while (QWebSocket* pSocket = m_pServer->nextPendingConnection()) {
        // Origin is checked again here: a handshake without any Origin header skips the
        // authentication signal.
        if (!isLocalFileOrigin(pSocket->origin())) {
            refuse(pSocket, tr("origin \"%1\" is not a local page").arg(pSocket->origin()));
            continue;
        }
        const QString token = QUrlQuery(pSocket->requestUrl()).queryItemValue(QStringLiteral("token"));
        if (token != m_strToken) {
            refuse(pSocket, tr("missing or wrong access token"));
            continue;
        }
        ++m_nConnections;
        auto* pTransport = new WebSocketTransport(pSocket);
        connect(pTransport, &QObject::destroyed, this, [this] { --m_nConnections; });
        m_pChannel->connectTo(pTransport);
    }
}

void WebChannelServer::refuse(QWebSocket* pSocket, const QString& reason)
{
    qWarning("Web channel: refused a connection: %s", qPrintable(reason));
    emit connectionRefused(reason);
    pSocket->close(QWebSocketProtocol::CloseCodePolicyViolated, QStringLiteral("refused"));
    pSocket->deleteLater();
}
