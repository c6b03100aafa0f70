#pragma once

#include <QWebChannelAbstractTransport>

class QWebSocket;

// Carries web channel messages over one WebSocket as JSON text frames.
class WebSocketTransport final : public QWebChannelAbstractTransport
{
    Q_OBJECT
public:
    explicit WebSocketTransport(QWebSocket* pSocket);
    ~WebSocketTransport() override;

    void sendMessage(const QJsonObject& message) override;

private:
    void onTextMessage(const QString& message);

    QWebSocket* m_pSocket;
};
