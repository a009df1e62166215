#pragma once

#include <QHostAddress>
#include <QObject>
#include <QString>

class QSslConfiguration;
class QTcpServer;
class SimulatorHttpConnection;
struct SimulatorHttpRequest;

/// The simulator's small HTTP/1.1 server (keep-alive, Content-Length bodies, one request at a time per
/// connection). A server of its own rather than QHttpServer: a simulated bridge must answer late without
/// blocking the thread and drop a connection without any answer, and Qt 6.4's QHttpServer has no documented
/// way to do either; with our own sockets both are plain.
class SimulatorHttpServer final : public QObject
{
    Q_OBJECT
public:
    /// `encrypted`: TLS on every connection (setSslConfiguration() says with which certificate).
    explicit SimulatorHttpServer(bool encrypted = false, QObject* parent = nullptr);
    ~SimulatorHttpServer() override;

    /// Starts listening; false with errorString() on failure. Listening again first closes.
    bool listen(const QHostAddress& address, quint16 port);
    /// Stops listening and drops every open connection.
    void close();
    /// Drops every open connection, listening on.
    void dropConnections();
    /// The certificate and key of an encrypted server, for connections from now on.
    void setSslConfiguration(const QSslConfiguration& configuration);
    bool isListening() const;
    quint16 port() const;
    QHostAddress address() const;
    QString errorString() const { return m_errorString; }

signals:
    /// A request arrived on @p connection, which must get exactly one answer (or be aborted).
    void requestReady(SimulatorHttpConnection* connection, const SimulatorHttpRequest& request);

private:
    void onNewConnection();

    QTcpServer* m_tcpServer = nullptr;
    QString m_errorString;
};
