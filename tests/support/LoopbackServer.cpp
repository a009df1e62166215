#include "LoopbackServer.h"

#include <QTcpSocket>

LoopbackServer::LoopbackServer(QObject* parent) : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &LoopbackServer::onConnection);
}

bool LoopbackServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost, 0);
}

QUrl LoopbackServer::url(const QString& path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void LoopbackServer::onConnection()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            const QByteArray received = socket->property("received").toByteArray() + socket->readAll();
            socket->setProperty("received", received);
            const qsizetype headerEnd = received.indexOf("\r\n\r\n");
            if (headerEnd < 0)
                return;
            Request request;
            const QList<QByteArray> lines = received.left(headerEnd).split('\n');
            request.requestLine = lines.first().trimmed();
            for (const QByteArray& line : lines.mid(1)) {
                const qsizetype colon = line.indexOf(':');
                request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
            }
            request.body = received.mid(headerEnd + 4);
            if (request.body.size() < request.headers.value("content-length").toLongLong())
                return;
            m_requests.append(request);
            if (!m_silent) {
                socket->write("HTTP/1.1 " + QByteArray::number(m_status) +
                              " Answer\r\nContent-Type: application/json\r\nContent-Length: " +
                              QByteArray::number(m_answer.size()) + "\r\nConnection: close\r\n\r\n" +
                              m_answer);
            }
            socket->disconnectFromHost();
        });
    }
}
