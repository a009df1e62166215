#include "bridge/BridgeNetwork.h"
#include "connection/BridgeEventStream.h"
#include "simulator/SimulatorCertificates.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QSslServer>
#include <QSslSocket>
#include <QTest>

namespace {

const QByteArray streamHead = "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream; charset=utf-8\r\n"
                              "Cache-Control: no-cache\r\nConnection: close\r\n\r\n";

QByteArray statusHead(int status)
{
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Status\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

const QByteArray lampSevenOff =
    R"([{"creationtime":"2021-10-18T17:04:55Z","id":"9de116fc","type":"update","data":[{"id":"b6b13ab2",)"
    R"("id_v1":"/lights/7","type":"light","owner":{"rid":"d","rtype":"device"},"on":{"on":false}}]}])";

} // namespace

/// A bridge's event stream on 127.0.0.1, over TLS with a bridge's certificate signed by an authority of its
/// own: answers every request with one head, greets a stream with a comment, and writes what the test sends.
class StreamServer final : public QObject
{
    Q_OBJECT

public:
    static inline const QString bridgeId = QStringLiteral("001788FFFE00E5E1");

    StreamServer() : m_authority(SimulatorCertificates::makeAuthority(QStringLiteral("Stream test root")))
    {
        m_clock.start();
        const QSslKey key = SimulatorCertificates::makeKey();
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(SimulatorCertificates::makeLeaf(bridgeId, key, &m_authority));
        tls.setPrivateKey(key);
        tls.setPeerVerifyMode(QSslSocket::VerifyNone);
        m_server.setSslConfiguration(tls);
        connect(&m_server, &QTcpServer::pendingConnectionAvailable, this, &StreamServer::onConnection);
    }

    bool listen() { return m_server.listen(QHostAddress::LocalHost, 0); }
    QString address() const { return QStringLiteral("https://127.0.0.1:%1").arg(m_server.serverPort()); }
    QSslCertificate authority() const { return m_authority.certificate; }
    void setHead(const QByteArray& head) { m_head = head; }
    /// Written to every stream right after its greeting, which then ends: a stream that lives a moment.
    void setParting(const QByteArray& bytes) { m_parting = bytes; }
    /// The heads of the requests received, in order.
    QList<QByteArray> requests() const { return m_requests; }
    /// When each request came, in milliseconds since the server was made.
    QList<qint64> requestTimes() const { return m_requestTimes; }

    void send(const QByteArray& bytes)
    {
        for (QSslSocket* socket : std::as_const(m_streams)) {
            if (socket)
                socket->write(bytes);
        }
    }
    void closeStreams()
    {
        for (QSslSocket* socket : std::as_const(m_streams)) {
            if (socket)
                socket->disconnectFromHost();
        }
        m_streams.clear();
    }

private:
    void onConnection()
    {
        while (auto* socket = qobject_cast<QSslSocket*>(m_server.nextPendingConnection())) {
            connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QSslSocket::readyRead, this, [this, socket] {
                const QByteArray received = socket->property("received").toByteArray() + socket->readAll();
                socket->setProperty("received", received);
                if (!received.contains("\r\n\r\n") || socket->property("answered").toBool())
                    return;
                socket->setProperty("answered", true);
                m_requests.append(received.left(received.indexOf("\r\n\r\n")));
                m_requestTimes.append(m_clock.elapsed());
                socket->write(m_head);
                if (m_head != streamHead)
                    return socket->disconnectFromHost();
                socket->write(": hi\n\n");
                if (!m_parting.isEmpty()) {
                    socket->write(m_parting);
                    return socket->disconnectFromHost();
                }
                m_streams.append(socket);
            });
        }
    }

    QSslServer m_server;
    SimulatorIdentity m_authority;
    QByteArray m_head = streamHead;
    QByteArray m_parting;
    QList<QPointer<QSslSocket>> m_streams;
    QList<QByteArray> m_requests;
    QElapsedTimer m_clock;
    QList<qint64> m_requestTimes;
};

/// One stream kept open to the bridge, over the same certificate checks as every other request.
class TestBridgeEventStream final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void deliversTheChangesOfEachEvent();
    void reconnectsAfterTheStreamEndsOrBreaks_data();
    void reconnectsAfterTheStreamEndsOrBreaks();
    void aStreamThatEndsSoonIsOpenedLessAndLessOften();
    void leavesABridgeWithoutTheStreamAlone_data();
    void leavesABridgeWithoutTheStreamAlone();
    void givesTheKeyToNoOtherBridge();

private:
    void start(const QString& bridgeId = StreamServer::bridgeId)
    {
        m_stream->start(m_server->address(), QStringLiteral("streamkey"), BridgeIdentity{bridgeId});
    }

    std::unique_ptr<StreamServer> m_server;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<BridgeEventStream> m_stream;
};

void TestBridgeEventStream::init()
{
    m_server = std::make_unique<StreamServer>();
    QVERIFY(m_server->listen());
    m_network = std::make_unique<BridgeNetwork>();
    m_network->addTrustRoots({m_server->authority()});
    m_stream = std::make_unique<BridgeEventStream>(*m_network);
    // Quick retries, so that one too many shows within a test's patience.
    m_stream->setTimings({.firstRetry = std::chrono::milliseconds(20)});
}

void TestBridgeEventStream::cleanup()
{
    m_stream.reset();
    m_network.reset();
    m_server.reset();
}

void TestBridgeEventStream::deliversTheChangesOfEachEvent()
{
    QSignalSpy connected(m_stream.get(), &BridgeEventStream::connected);
    QSignalSpy changes(m_stream.get(), &BridgeEventStream::changes);
    start();
    QTRY_COMPARE_WITH_TIMEOUT(connected.size(), 1, 10000);
    QVERIFY(m_stream->isLive());
    const QByteArray request = m_server->requests().value(0);
    QVERIFY(request.startsWith("GET /eventstream/clip/v2 HTTP/1.1\r\n"));
    QVERIFY(request.contains("\r\nhue-application-key: streamkey\r\n"));
    QVERIFY(request.contains("\r\nAccept: text/event-stream\r\n"));
    start(); // as every connect of the program does: the stream stays as it is

    // An event in two pieces; one that changes nothing shown is not passed on.
    m_server->send("id: 1634576695:0\ndata: " + lampSevenOff.left(40));
    m_server->send(lampSevenOff.mid(40) + "\n\n");
    m_server->send(R"(data: [{"type":"update","data":[{"type":"device","metadata":{}}]}])"
                   "\n\n: keep-alive\n");
    m_server->send(R"(data: [{"type":"add","data":[{"type":"scene"}]}])"
                   "\n\n");
    QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 2, 10000);
    const BridgeEventBatch lampOff{.lights = {{.lampId = "7", .resourceId = "b6b13ab2", .on = false}}};
    QCOMPARE(changes.at(0).at(0).value<BridgeEventBatch>(), lampOff);
    QCOMPARE(changes.at(1).at(0).value<BridgeEventBatch>(), BridgeEventBatch{.relistScenes = true});
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(connected.size(), 1);
}

void TestBridgeEventStream::reconnectsAfterTheStreamEndsOrBreaks_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("sent"); // "close": the bridge ends the stream
    QTest::addColumn<int>("silenceMs");
    QTest::addColumn<QString>("reason");
    QTest::newRow("ended by the bridge") << streamHead << QByteArray("close") << 60000 << QString();
    QTest::newRow("unreadable event")
        << streamHead << QByteArray("data: {\"type\"\n\n") << 60000 << "unreadable event";
    QTest::newRow("line too long") << streamHead << QByteArray(ServerSentEvents::maxLineBytes + 10, 'x')
                                   << 60000 << "line longer";
    QTest::newRow("silent") << streamHead << QByteArray() << 300 << "sent nothing";
    QTest::newRow("bridge busy") << statusHead(503) << QByteArray() << 60000 << "HTTP 503";
}

void TestBridgeEventStream::reconnectsAfterTheStreamEndsOrBreaks()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, sent);
    QFETCH(int, silenceMs);
    QFETCH(QString, reason);
    m_stream->setTimings(
        {.firstRetry = std::chrono::milliseconds(20), .silence = std::chrono::milliseconds(silenceMs)});
    m_server->setHead(head);
    QSignalSpy connected(m_stream.get(), &BridgeEventStream::connected);
    QSignalSpy disconnected(m_stream.get(), &BridgeEventStream::disconnected);
    QSignalSpy unavailable(m_stream.get(), &BridgeEventStream::unavailable);
    start();
    const bool streams = head == streamHead;
    if (streams) {
        QTRY_COMPARE_WITH_TIMEOUT(connected.size(), 1, 10000);
        m_server->setHead(statusHead(503)); // the next attempt fails, so that it stops there
        sent == "close" ? m_server->closeStreams() : m_server->send(sent);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!disconnected.isEmpty(), 10000);
    QVERIFY2(disconnected.first().first().toString().contains(reason),
             qPrintable(disconnected.first().first().toString()));
    QVERIFY(!m_stream->isLive());
    // Asked again after the back-off, which does not stop at one failure.
    QTRY_VERIFY_WITH_TIMEOUT(m_server->requests().size() >= 3, 10000);
    QCOMPARE(connected.size(), streams ? 1 : 0);
    QVERIFY(unavailable.isEmpty());

    m_stream->stop();
    const qsizetype asked = m_server->requests().size();
    QTest::qWait(300);
    QVERIFY(m_server->requests().size() <= asked + 1); // one may have been under way
}

void TestBridgeEventStream::aStreamThatEndsSoonIsOpenedLessAndLessOften()
{
    // Every opening brings an event and ends: news, but no stream to rely on. The program reads the lists in
    // full at every opening, so each one costs the bridge more than the stream's own request.
    const std::chrono::milliseconds firstRetry(100);
    m_stream->setTimings({.firstRetry = firstRetry});
    m_server->setParting("data: " + lampSevenOff + "\n\n");
    QSignalSpy connected(m_stream.get(), &BridgeEventStream::connected);
    QSignalSpy changes(m_stream.get(), &BridgeEventStream::changes);
    start();
    QTRY_VERIFY_WITH_TIMEOUT(m_server->requests().size() >= 5, 10000);
    QVERIFY(!changes.isEmpty());

    // The waits double from the first one: 0.1, 0.2, 0.4, 0.8 s (any slowness only lengthens them).
    const QList<qint64> times = m_server->requestTimes();
    for (qsizetype i = 1; i < 5; ++i) {
        const qint64 wait = firstRetry.count() << (i - 1);
        QVERIFY2(times.at(i) - times.at(i - 1) >= wait * 9 / 10,
                 qPrintable(u"opening %1 came %2 ms after the one before, not after %3 ms or more"_qs.arg(i)
                                .arg(times.at(i) - times.at(i - 1))
                                .arg(wait)));
    }
    QVERIFY(connected.size() >= 4); // each one opened as a stream
}

void TestBridgeEventStream::leavesABridgeWithoutTheStreamAlone_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("plainHttp");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no stream") << statusHead(404) << false << "no event stream";
    QTest::newRow("key refused") << statusHead(403) << false << "refused the key";
    QTest::newRow("not events") << QByteArray("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                                              "Content-Length: 2\r\n\r\n[]")
                                << false << "application/json";
    QTest::newRow("plain HTTP") << streamHead << true << "plain HTTP";
}

void TestBridgeEventStream::leavesABridgeWithoutTheStreamAlone()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, plainHttp);
    QFETCH(QString, reason);
    m_server->setHead(head);
    QSignalSpy unavailable(m_stream.get(), &BridgeEventStream::unavailable);
    QSignalSpy disconnected(m_stream.get(), &BridgeEventStream::disconnected);
    const QString address = m_server->address();
    m_stream->start(plainHttp ? QString(address).replace(QLatin1String("https:"), QLatin1String("http:"))
                              : address,
                    QStringLiteral("streamkey"), BridgeIdentity{StreamServer::bridgeId});
    QTRY_COMPARE_WITH_TIMEOUT(unavailable.size(), 1, 10000);
    QVERIFY2(unavailable.first().first().toString().contains(reason),
             qPrintable(unavailable.first().first().toString()));
    // Many first retries' worth of waiting: still the one request (none over plain HTTP).
    QTest::qWait(300);
    QCOMPARE(m_server->requests().size(), plainHttp ? 0 : 1);
    QCOMPARE(unavailable.size(), 1);
    QVERIFY(disconnected.isEmpty());
}

void TestBridgeEventStream::givesTheKeyToNoOtherBridge()
{
    QSignalSpy disconnected(m_stream.get(), &BridgeEventStream::disconnected);
    start(QStringLiteral("001788FFFE000BAD"));
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), 2, 10000);
    QVERIFY2(disconnected.first().first().toString().contains(QLatin1String("another bridge")),
             qPrintable(disconnected.first().first().toString()));
    QVERIFY(m_server->requests().isEmpty());
}

QTEST_GUILESS_MAIN(TestBridgeEventStream)
#include "tst_bridgeeventstream.moc"
