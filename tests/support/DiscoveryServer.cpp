#include "DiscoveryServer.h"

#include <QTcpSocket>

DiscoveryServer::DiscoveryServer(QObject* parent) : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &DiscoveryServer::onConnection);
}

bool DiscoveryServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost, 0);
}

QUrl DiscoveryServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_server.serverPort()));
}

void DiscoveryServer::onConnection()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            // Requests are GETs without a body: the header's end is the request's end.
            socket->setProperty("received", socket->property("received").toByteArray() + socket->readAll());
            if (!socket->property("received").toByteArray().contains("\r\n\r\n"))
                return;
            ++m_requests;
            if (!m_silent) {
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
                              QByteArray::number(m_answer.size()) + "\r\nConnection: close\r\n\r\n" +
                              m_answer);
            }
            socket->disconnectFromHost();
        });
    }
}
