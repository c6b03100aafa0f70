#include "WebSocketTransport.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

WebSocketTransport::WebSocketTransport(QWebSocket* pSocket)
    : QWebChannelAbstractTransport(pSocket)
    , m_pSocket(pSocket)
{
    connect(pSocket, &QWebSocket::textMessageReceived, this, &WebSocketTransport::onTextMessage);
    connect(pSocket, &QWebSocket::disconnected, this, &QObject::deleteLater);
}

WebSocketTransport::~WebSocketTransport()
{
    m_pSocket->deleteLater();
}

void WebSocketTransport::sendMessage(const QJsonObject& message)
{
    m_pSocket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}

void WebSocketTransport::onTextMessage(const QString& message)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(message.toUtf8(), &error);
    // A page that sends garbage is dropped rather than allowed to confuse the channel.
    if (error.error != QJsonParseError::NoError || !doc.isObject()) {
        qWarning("Web channel: dropping a connection that sent a malformed message");
        m_pSocket->close(QWebSocketProtocol::CloseCodeBadOperation);
        return;
    }
    emit messageReceived(doc.object(), this);
}
