#include "bridge/BridgeNetworkAccess.h"
#include "bridge/HttpExchange.h"

#include <QNetworkReply>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <deque>
#include <optional>

namespace {

/// What the server does with one request.
struct Answer
{
    QByteArray bytes;
    bool closeAfter = false;
    /// Sent this many bytes at a time, each piece on a later turn of the event loop; 0: at once.
    int piece = 0;
};

/// A loopback HTTP peer that answers each request it reads with the next scripted answer, and records the
/// requests and how many connections carried them.
class ScriptedServer final : public QObject
{
public:
    ScriptedServer()
    {
        QVERIFY(m_server.listen(QHostAddress::LocalHost));
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection()) {
                ++connections;
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
            }
        });
    }

    QUrl url(const QString& path = QStringLiteral("/api/key/lights")) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
    }

    std::deque<Answer> answers;
    QList<QByteArray> requests;
    int connections = 0;

private:
    void onReadyRead(QTcpSocket* socket)
    {
        QByteArray& buffer = m_buffers[socket];
        buffer += socket->readAll();
        const qsizetype headEnd = buffer.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return;
        const qsizetype lengthAt = buffer.indexOf("Content-Length: ");
        const qsizetype length =
            lengthAt < 0 ? 0 : buffer.mid(lengthAt + 16).split('\r').first().toLongLong();
        if (buffer.size() < headEnd + 4 + length)
            return;
        requests.append(buffer.left(headEnd + 4 + length));
        buffer.remove(0, headEnd + 4 + length);
        if (answers.empty())
            return; // never answered
        const Answer answer = answers.front();
        answers.pop_front();
        send(socket, answer, 0);
    }

    void send(QTcpSocket* socket, const Answer& answer, qsizetype from)
    {
        const qsizetype size = answer.piece > 0 ? answer.piece : answer.bytes.size();
        socket->write(answer.bytes.mid(from, size));
        socket->flush();
        if (from + size < answer.bytes.size()) {
            QTimer::singleShot(1, socket, [=, this] { send(socket, answer, from + size); });
        } else if (answer.closeAfter) {
            socket->disconnectFromHost();
        }
    }

    QTcpServer m_server;
    QHash<QTcpSocket*, QByteArray> m_buffers;
};

const QByteArray helloAnswer =
    "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 5\r\n\r\nhello";

struct Outcome
{
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    int status = 0;
    QByteArray body;
    int finishedSignals = 0;
};

/// Sends one request and waits for its end.
Outcome exchange(QNetworkAccessManager& network, const QUrl& url, const QByteArray& method = "GET",
                 const QByteArray& body = {})
{
    QNetworkReply* reply = network.sendCustomRequest(QNetworkRequest(url), method, body);
    Outcome outcome;
    QObject::connect(reply, &QNetworkReply::finished, reply, [&outcome, reply] {
        ++outcome.finishedSignals;
        outcome.error = reply->error();
        outcome.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        outcome.body = reply->readAll();
    });
    if (!reply->isFinished())
        QSignalSpy(reply, &QNetworkReply::finished).wait(5000);
    QCoreApplication::processEvents(); // a second finished() would come now
    reply->deleteLater();
    return outcome;
}

} // namespace

Q_DECLARE_METATYPE(Answer)

class TestBridgeNetworkAccess final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryFraming_data();
    void readsEveryFraming();
    void failsAsQtsOwnManagerDoes_data();
    void failsAsQtsOwnManagerDoes();
    void keepsTheConnectionAndSendsTheBodyWhole();
    void sendsAgainOnceWhenAKeptConnectionWasClosed();
    void abortEndsTheReplyAtOnce();
    void theExchangeLimitsStillApply();
};

void TestBridgeNetworkAccess::readsEveryFraming_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");

    QTest::newRow("length") << Answer{helloAnswer} << 200 << QByteArray("hello");
    QTest::newRow("length, a byte at a time") << Answer{helloAnswer, false, 1} << 200 << QByteArray("hello");
    QTest::newRow("chunked") << Answer{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                       "5\r\nhello\r\n3;ext=1\r\n, w\r\n0\r\nX-Trailer: t\r\n\r\n",
                                       false, 7}
                             << 200 << QByteArray("hello, w");
    QTest::newRow("until close") << Answer{"HTTP/1.0 200 OK\r\n\r\n[1,2]", true, 3} << 200
                                 << QByteArray("[1,2]");
    QTest::newRow("interim answer first")
        << Answer{"HTTP/1.1 100 Continue\r\n\r\n" + helloAnswer} << 200 << QByteArray("hello");
    QTest::newRow("no body") << Answer{"HTTP/1.1 204 No Content\r\n\r\n"} << 204 << QByteArray();
    QTest::newRow("error status keeps its body")
        << Answer{"HTTP/1.1 500 Internal Server Error\r\ncontent-length: 4\r\n\r\noops"} << 500
        << QByteArray("oops");
}

void TestBridgeNetworkAccess::readsEveryFraming()
{
    QFETCH(Answer, answer);
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    ScriptedServer server;
    server.answers = {answer};
    BridgeNetworkAccess network;

    const Outcome outcome = exchange(network, server.url());
    QCOMPARE(outcome.finishedSignals, 1);
    QCOMPARE(outcome.status, status);
    QCOMPARE(outcome.body, body);
    QCOMPARE(outcome.error, status == 500 ? QNetworkReply::InternalServerError : QNetworkReply::NoError);
}

void TestBridgeNetworkAccess::failsAsQtsOwnManagerDoes_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QNetworkReply::NetworkError>("error");

    QTest::newRow("not HTTP") << Answer{"SSH-2.0-OpenSSH\r\n\r\n"} << QNetworkReply::ProtocolFailure;
    QTest::newRow("bad length") << Answer{"HTTP/1.1 200 OK\r\nContent-Length: 1x\r\n\r\n"}
                                << QNetworkReply::ProtocolFailure;
    QTest::newRow("bad chunk") << Answer{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n"}
                               << QNetworkReply::ProtocolFailure;
    QTest::newRow("head without end")
        << Answer{"HTTP/1.1 200 OK\r\n" + QByteArray(70 * 1024, 'x')} << QNetworkReply::ProtocolFailure;
    QTest::newRow("dropped in the body") << Answer{"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhal", true}
                                         << QNetworkReply::RemoteHostClosedError;
    QTest::newRow("dropped without answer") << Answer{{}, true} << QNetworkReply::RemoteHostClosedError;
}

void TestBridgeNetworkAccess::failsAsQtsOwnManagerDoes()
{
    QFETCH(Answer, answer);
    QFETCH(QNetworkReply::NetworkError, error);
    ScriptedServer server;
    server.answers = {answer, Answer{helloAnswer}};
    BridgeNetworkAccess network;

    const Outcome outcome = exchange(network, server.url());
    QCOMPARE(outcome.finishedSignals, 1);
    QCOMPARE(outcome.error, error);
    // A connection that carried a broken answer is not used again; the next request gets a fresh one.
    QCOMPARE(exchange(network, server.url()).body, QByteArray("hello"));
    QCOMPARE(server.connections, 2);
}

void TestBridgeNetworkAccess::keepsTheConnectionAndSendsTheBodyWhole()
{
    ScriptedServer server;
    server.answers = {Answer{helloAnswer}, Answer{helloAnswer}, Answer{helloAnswer}};
    BridgeNetworkAccess network;

    QCOMPARE(exchange(network, server.url()).body, QByteArray("hello"));
    QCOMPARE(exchange(network, server.url(QStringLiteral("/api/key/lights/7/state")), "PUT", R"({"on":true})")
                 .status,
             200);
    QCOMPARE(exchange(network, server.url()).body, QByteArray("hello"));
    QCOMPARE(server.connections, 1);
    QCOMPARE(server.requests.size(), 3);
    const QByteArray put = server.requests.at(1);
    QVERIFY2(put.startsWith("PUT /api/key/lights/7/state HTTP/1.1\r\nHost: 127.0.0.1:"), put.constData());
    QVERIFY2(put.endsWith("Content-Length: 11\r\n\r\n{\"on\":true}"), put.constData());

    QCOMPARE(exchange(network, QUrl(QStringLiteral("http://127.0.0.1:1/api"))).error,
             QNetworkReply::ConnectionRefusedError);
}

void TestBridgeNetworkAccess::sendsAgainOnceWhenAKeptConnectionWasClosed()
{
    ScriptedServer server;
    // The bridge closes the kept connection as the next request arrives: that one goes again, on a new one.
    server.answers = {Answer{helloAnswer}, Answer{{}, true}, Answer{helloAnswer}};
    BridgeNetworkAccess network;
    QCOMPARE(exchange(network, server.url()).body, QByteArray("hello"));
    QCOMPARE(exchange(network, server.url()).body, QByteArray("hello"));
    QCOMPARE(server.requests.size(), 3);
    QCOMPARE(server.connections, 2);

    // Only once: a bridge that keeps dropping is reported.
    server.answers = {Answer{{}, true}, Answer{{}, true}, Answer{helloAnswer}};
    QCOMPARE(exchange(network, server.url()).error, QNetworkReply::RemoteHostClosedError);
    QCOMPARE(server.requests.size(), 5);
}

void TestBridgeNetworkAccess::abortEndsTheReplyAtOnce()
{
    ScriptedServer server; // answers nothing
    BridgeNetworkAccess network;
    for (const bool started : {false, true}) {
        QNetworkReply* reply = network.get(QNetworkRequest(server.url()));
        QSignalSpy finished(reply, &QNetworkReply::finished);
        if (started)
            QTRY_COMPARE(server.requests.size(), 1);
        reply->abort();
        QCOMPARE(finished.size(), 1);
        QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
        QCoreApplication::processEvents();
        QCOMPARE(finished.size(), 1);
        delete reply;
    }
    QCOMPARE(server.requests.size(), 1);
}

void TestBridgeNetworkAccess::theExchangeLimitsStillApply()
{
    ScriptedServer server;
    server.answers = {Answer{"HTTP/1.1 200 OK\r\nContent-Length: 17000000\r\n\r\n[]"},
                      Answer{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n[1,"}};
    BridgeNetworkAccess network;
    std::optional<HttpResult> result;
    const auto send = [&] {
        result.reset();
        sendHttpRequest(network, QNetworkRequest(server.url()), "GET", {},
                        {std::chrono::milliseconds(200), longestExchange},
                        [&result](const HttpResult& r) { result = r; });
        QTRY_VERIFY(result.has_value());
    };
    send();
    QVERIFY(result->tooLarge);
    send();
    QVERIFY(result->timedOut);
    QVERIFY(result->transportFailed);
}

QTEST_GUILESS_MAIN(TestBridgeNetworkAccess)
#include "tst_bridgenetworkaccess.moc"
