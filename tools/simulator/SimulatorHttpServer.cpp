#include "SimulatorHttpServer.h"

#include "SimulatorHttpConnection.h"

#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>

SimulatorHttpServer::SimulatorHttpServer(bool encrypted, QObject* parent)
    : QObject(parent), m_tcpServer(encrypted ? new QSslServer(this) : new QTcpServer(this))
{
    // An encrypted connection is handed out only once its handshake is done; a client that refuses the
    // certificate never gets that far, and never sends a request.
    connect(m_tcpServer, &QTcpServer::pendingConnectionAvailable, this,
            &SimulatorHttpServer::onNewConnection);
}

void SimulatorHttpServer::setSslConfiguration(const QSslConfiguration& configuration)
{
    if (auto* server = qobject_cast<QSslServer*>(m_tcpServer))
        server->setSslConfiguration(configuration);
}

SimulatorHttpServer::~SimulatorHttpServer() = default;

bool SimulatorHttpServer::listen(const QHostAddress& address, quint16 port)
{
    close();
    if (m_tcpServer->listen(address, port)) {
        m_errorString.clear();
        return true;
    }
    m_errorString = QStringLiteral("cannot listen on %1 port %2: %3")
                        .arg(address.toString(), QString::number(port), m_tcpServer->errorString());
    return false;
}

void SimulatorHttpServer::close()
{
    m_tcpServer->close();
    dropConnections();
}

void SimulatorHttpServer::dropConnections()
{
    const QList<SimulatorHttpConnection*> connections =
        findChildren<SimulatorHttpConnection*>(Qt::FindDirectChildrenOnly);
    for (SimulatorHttpConnection* connection : connections)
        connection->abortConnection();
}

bool SimulatorHttpServer::isListening() const
{
    return m_tcpServer->isListening();
}

quint16 SimulatorHttpServer::port() const
{
    return m_tcpServer->serverPort();
}

QHostAddress SimulatorHttpServer::address() const
{
    return m_tcpServer->serverAddress();
}

void SimulatorHttpServer::onNewConnection()
{
    while (QTcpSocket* socket = m_tcpServer->nextPendingConnection()) {
        auto* connection = new SimulatorHttpConnection(socket, this);
        connect(connection, &SimulatorHttpConnection::requestReady, this, &SimulatorHttpServer::requestReady);
    }
}
