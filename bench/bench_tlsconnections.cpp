// Memory of many new TLS connections: requests through BridgeNetwork, one after the other, to a bridge on
// loopback that closes every connection after its answer (as a bridge does with idle ones), so each request
// makes a new connection and a full handshake. Prints the resident memory (VmRSS) before the first, after
// 100 and after N connections; the target is a flat line after the first 100. docs/performance.md records
// the figures.
//
// The bridge runs in a child process (this program again, with --serve), so that the server's own memory
// stays out of the figures.
//
// Usage: bench_tlsconnections [CONNECTIONS] [--keep-alive] [--with-stream]
//   CONNECTIONS     1000 by default
//   --keep-alive    a bridge that keeps connections open, for comparison
//   --with-stream   an event stream open all along, as the program has one (through a manager of its own,
//                   as the program does); the bridge writes a comment to it every 200 ms, and the figures
//                   say how many came after the last request

#include "bridge/BridgeNetwork.h"
#include "bridge/HttpExchange.h"
#include "simulator/SimulatorCertificates.h"

#include <QCoreApplication>
#include <QFile>
#include <QNetworkReply>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <memory>

namespace {

const QString bridgeId = QStringLiteral("001788FFFE0BE4C5");

long residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

/// The bridge: answers every request with a short JSON body; closes the connection after it unless kept
/// alive. Prints its port, then its authority's certificate, on standard output.
int serve(bool keepAlive)
{
    const SimulatorIdentity authority = SimulatorCertificates::makeAuthority(QStringLiteral("Bench Root"));
    const QSslKey key = SimulatorCertificates::makeKey();
    const QSslCertificate leaf = SimulatorCertificates::makeLeaf(bridgeId, key, &authority);
    if (authority.isNull() || leaf.isNull()) {
        std::fprintf(stderr, "bench_tlsconnections: no certificate\n");
        return 1;
    }
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(leaf);
    tls.setPrivateKey(key);
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    QSslServer server;
    server.setSslConfiguration(tls);
    QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [&server, keepAlive] {
        while (QTcpSocket* socket = server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            auto buffer = std::make_shared<QByteArray>();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, keepAlive, buffer] {
                // Requests without a body, one at a time: the end of the head is the end of the request.
                *buffer += socket->readAll();
                while (buffer->contains("\r\n\r\n")) {
                    const QByteArray head = buffer->left(buffer->indexOf("\r\n\r\n"));
                    buffer->remove(0, head.size() + 4);
                    if (head.contains("text/event-stream")) {
                        socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n"
                                      "Connection: close\r\n\r\n: hi\n\n");
                        auto* ticks = new QTimer(socket);
                        QObject::connect(ticks, &QTimer::timeout, socket,
                                         [socket] { socket->write(": keep-alive\n\n"); });
                        ticks->start(200);
                        return;
                    }
                    const QByteArray body = QByteArrayLiteral("{\"name\":\"Bench\"}");
                    socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
                                  QByteArray::number(body.size()) +
                                  (keepAlive ? "\r\n\r\n" : "\r\nConnection: close\r\n\r\n") + body);
                    if (!keepAlive) {
                        socket->disconnectFromHost();
                        return;
                    }
                }
            });
        }
    });
    if (!server.listen(QHostAddress::LocalHost, 0)) {
        std::fprintf(stderr, "bench_tlsconnections: %s\n", qPrintable(server.errorString()));
        return 1;
    }
    std::printf("%u\n%s", unsigned(server.serverPort()), authority.certificate.toPem().constData());
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.contains(QStringLiteral("--serve")))
        return serve(arguments.contains(QStringLiteral("--keep-alive")));
    const bool keepAlive = arguments.contains(QStringLiteral("--keep-alive"));
    const int connections = argc > 1 && QByteArray(argv[1]).toInt() > 0 ? QByteArray(argv[1]).toInt() : 1000;

    const long before = residentKilobytes();
    QProcess bridge;
    bridge.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList serveArguments{QStringLiteral("--serve")};
    if (keepAlive)
        serveArguments += QStringLiteral("--keep-alive");
    bridge.start(app.applicationFilePath(), serveArguments);
    if (!bridge.waitForReadyRead(10000)) {
        std::fprintf(stderr, "bench_tlsconnections: the bridge did not start\n");
        return 1;
    }
    QByteArray announced;
    while (!announced.contains("END CERTIFICATE") && bridge.waitForReadyRead(10000))
        announced += bridge.readAll();
    announced += bridge.readAll();
    const quint16 port = quint16(announced.left(announced.indexOf('\n')).toUInt());
    const QList<QSslCertificate> authority = QSslCertificate::fromData(announced, QSsl::Pem);
    if (port == 0 || authority.isEmpty()) {
        std::fprintf(stderr, "bench_tlsconnections: the bridge did not say where it is\n");
        return 1;
    }

    BridgeNetwork network;
    network.addTrustRoots(authority);
    BridgeIdentity identity;
    identity.bridgeId = bridgeId;
    const QUrl url(QStringLiteral("https://127.0.0.1:%1/api/config").arg(port));

    long afterFirst = 0;
    long afterHundred = 0;
    int done = 0;
    int failed = 0;
    int handshakes = 0;
    const std::unique_ptr<BridgeNetwork> streamNetwork = network.withSameTrust();
    QNetworkReply* stream = nullptr;
    int streamPieces = 0;
    int streamPiecesAtEnd = 0;
    if (arguments.contains(QStringLiteral("--with-stream"))) {
        QNetworkRequest request(url.resolved(QUrl(QStringLiteral("/eventstream/clip/v2"))));
        BridgeNetwork::prepare(request, identity);
        request.setRawHeader("Accept", "text/event-stream");
        stream = streamNetwork->get(request);
        QObject::connect(stream, &QNetworkReply::readyRead, &app,
                         [stream, &streamPieces] { streamPieces += int(stream->readAll().count("\n\n")); });
    }
    // Emitted once per new connection: a request on a kept connection has no handshake of its own.
    QObject::connect(&network, &QNetworkAccessManager::encrypted, &app, [&handshakes] { ++handshakes; });
    std::function<void()> next = [&] {
        QNetworkRequest request(url);
        BridgeNetwork::prepare(request, identity);
        sendHttpRequest(network, request, QByteArrayLiteral("GET"), {},
                        {std::chrono::seconds(10), std::chrono::seconds(10)}, [&](const HttpResult& result) {
                            if (result.transportFailed || result.status != 200) {
                                if (++failed == 1)
                                    std::fprintf(
                                        stderr, "bench_tlsconnections: %s\n",
                                        qPrintable(result.refusal.isEmpty() ? result.error : result.refusal));
                            }
                            ++done;
                            if (done == 1)
                                afterFirst = residentKilobytes();
                            if (done == 100)
                                afterHundred = residentKilobytes();
                            if (done == connections || failed > 10) {
                                streamPiecesAtEnd = streamPieces;
                                // A second for the stream to show that it still runs.
                                QTimer::singleShot(stream ? 1000 : 0, &app, &QCoreApplication::quit);
                                return;
                            }
                            // From the event loop, as the program's requests go: the finished reply is
                            // deleted first.
                            QTimer::singleShot(0, &app, next);
                        });
    };
    next();
    app.exec();
    const long after = residentKilobytes();
    if (stream) {
        std::printf("The event stream: %s, %d comment(s) in the second after the last request\n",
                    stream->isFinished() ? "ended" : "open", streamPieces - streamPiecesAtEnd);
    }
    bridge.kill();
    bridge.waitForFinished();
    if (failed > 0) {
        std::fprintf(stderr, "bench_tlsconnections: %d of %d requests failed\n", failed, done);
        return 1;
    }
    std::printf("%d requests, %d TLS handshakes. VmRSS before: %ld kB, after 1: %ld kB, after 100: %ld kB, "
                "after %d: %ld kB (%+ld kB since 100)\n",
                done, handshakes, before, afterFirst, afterHundred, connections, after, after - afterHundred);
    return 0;
}
