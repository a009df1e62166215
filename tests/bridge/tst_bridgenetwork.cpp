#include "bridge/BridgeNetwork.h"
#include "simulator/BridgeSimulator.h"

#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include <malloc.h>

namespace {

/// Bytes the heap has handed out and not got back: what is kept, whatever the allocator does with the rest.
qint64 heapInUse()
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
#else
    return -1;
#endif
}

} // namespace

/// What the network keeps of the connections it made to a bridge over HTTPS.
class TestBridgeNetwork final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void newConnectionsLeaveNoTlsStateBehind_data();
    void newConnectionsLeaveNoTlsStateBehind();

private:
    /// GET of the public configuration, on a connection of its own when `close`; false when it failed.
    bool read(bool close);

    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<BridgeNetwork> m_network;
    BridgeIdentity m_identity;
    bool m_spaced = true; ///< the event loop comes round between two requests
};

void TestBridgeNetwork::init()
{
    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listenTls());
    m_bridge->setRecording(false);
    m_network = std::make_unique<BridgeNetwork>();
    m_network->addTrustRoots({m_bridge->authorityCertificate()});
    m_identity.bridgeId = m_bridge->bridgeId();
}

void TestBridgeNetwork::cleanup()
{
    m_network.reset();
    m_bridge.reset();
}

bool TestBridgeNetwork::read(bool close)
{
    QNetworkRequest request(QUrl(m_bridge->httpsAddress() + u"/api/config"_qs));
    BridgeNetwork::prepare(request, m_identity);
    // The bridge then closes the connection after its answer, as bridges do with idle ones.
    if (close)
        request.setRawHeader("Connection", "close");
    std::unique_ptr<QNetworkReply> reply(m_network->get(request));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    const bool ok = finished.wait(10000) && reply->error() == QNetworkReply::NoError;
    reply.reset();
    if (m_spaced)
        QTest::qWait(0);
    return ok;
}

void TestBridgeNetwork::newConnectionsLeaveNoTlsStateBehind_data()
{
    QTest::addColumn<bool>("spaced");
    QTest::newRow("the network idle between requests") << true;
    QTest::newRow("requests back to back") << false;
}

void TestBridgeNetwork::newConnectionsLeaveNoTlsStateBehind()
{
    if (heapInUse() < 0)
        QSKIP("needs glibc's mallinfo2");
    QFETCH(bool, spaced);
    m_spaced = spaced;
    QSignalSpy handshakes(m_network.get(), &QNetworkAccessManager::encrypted);

    // A bridge that keeps the connection: one for every request.
    for (int i = 0; i < 20; ++i)
        QVERIFY(read(false));
    QCOMPARE(handshakes.size(), 1);

    // A bridge that closes each: what every new connection leaves behind is let go in time. Qt alone keeps
    // about 8 KB for each, 2.5 MB for these 300.
    for (int i = 0; i < BridgeNetwork::connectionsBeforeRelease * 2; ++i)
        QVERIFY(read(true));
    QTest::qWait(0);
    const qint64 before = heapInUse();
    const qsizetype handshakesBefore = handshakes.size();
    for (int i = 0; i < 300; ++i)
        QVERIFY(read(true));
    QCOMPARE(handshakes.size(), handshakesBefore + 300);
    QTest::qWait(0);
    const qint64 kept = heapInUse() - before;
    QVERIFY2(kept < 700 * 1024, qPrintable(u"%1 KB kept"_qs.arg(kept / 1024)));

    // Letting them go never ends a request in flight: an event stream open all along, through a manager of
    // its own that trusts the bridge's authority as this one does, goes on.
    const std::unique_ptr<BridgeNetwork> streamNetwork = m_network->withSameTrust();
    QNetworkRequest streamRequest(QUrl(m_bridge->httpsAddress() + u"/eventstream/clip/v2"_qs));
    BridgeNetwork::prepare(streamRequest, m_identity);
    const QString key = m_bridge->addUser();
    streamRequest.setRawHeader("hue-application-key", key.toUtf8());
    streamRequest.setRawHeader("Accept", "text/event-stream");
    std::unique_ptr<QNetworkReply> stream(streamNetwork->get(streamRequest));
    QByteArray streamed;
    connect(stream.get(), &QNetworkReply::readyRead, this, [&] { streamed += stream->readAll(); });
    QTRY_VERIFY_WITH_TIMEOUT(streamed.contains(": hi"), 10000);
    for (int i = 0; i < BridgeNetwork::connectionsBeforeRelease + 1; ++i)
        QVERIFY(read(true));
    QTest::qWait(0);
    QNetworkRequest change(QUrl(m_bridge->httpsAddress() +
                                u"/api/%1/lights/%2/state"_qs.arg(key, m_bridge->lightIds().first())));
    BridgeNetwork::prepare(change, m_identity);
    std::unique_ptr<QNetworkReply> changed(m_network->put(change, QByteArray(R"({"on":false})")));
    QTRY_VERIFY_WITH_TIMEOUT(streamed.contains(R"("type":"update")"), 10000);
    QVERIFY(!stream->isFinished());
    QCOMPARE(BridgeNetwork::certificateOf(stream.get()).signer.kind, CertificateSigner::Kind::added);
}

QTEST_GUILESS_MAIN(TestBridgeNetwork)
#include "tst_bridgenetwork.moc"
