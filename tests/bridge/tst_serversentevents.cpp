#include "bridge/ServerSentEvents.h"

#include <QTest>

/// The framing of the bridge's event stream.
class TestServerSentEvents final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheSameEventsHoweverTheBytesAreCut();
    void failsOnALineOrEventTooLong();
};

namespace {

// A greeting, the three line endings, two data lines, a line without a colon, an id with a NUL (ignored),
// an empty event (nothing dispatched), a keep-alive, and an unfinished event at the end.
const QByteArray sample = QByteArrayLiteral("\xEF\xBB\xBF: hi\n\n"
                                            "id: 1634576695:0\r\n"
                                            "data: [{\"type\":\r\n"
                                            "data: \"update\"}]\r\n\r\n"
                                            "event: update\r"
                                            "data:one\r"
                                            "data:  two\r"
                                            "data\r\r"
                                            "id: bad\0id\n"
                                            "retry: 10\n\n"
                                            ":keep-alive\n"
                                            "id:1634576696:0\n"
                                            "data: last\n\n"
                                            "data: never completed\n");

const QList<ServerSentEvent> sampleEvents{
    {"1634576695:0", "", "[{\"type\":\n\"update\"}]"},
    {"1634576695:0", "update", "one\n two\n"},
    {"1634576696:0", "", "last"},
};

} // namespace

void TestServerSentEvents::readsTheSameEventsHoweverTheBytesAreCut()
{
    // Two pieces cut at every position, then one byte at a time.
    for (qsizetype cut = 0; cut <= sample.size(); ++cut) {
        ServerSentEvents parser;
        QList<ServerSentEvent> events = parser.feed(QByteArrayView(sample).first(cut));
        events += parser.feed(QByteArrayView(sample).sliced(cut));
        QCOMPARE(events, sampleEvents);
        QCOMPARE(parser.commentsSeen(), 2);
        QCOMPARE(parser.lastEventId(), QByteArray("1634576696:0"));
        QVERIFY(!parser.failed());
    }
    ServerSentEvents parser;
    QList<ServerSentEvent> events;
    for (const char byte : sample)
        events += parser.feed(QByteArrayView(&byte, 1));
    QCOMPARE(events, sampleEvents);
}

void TestServerSentEvents::failsOnALineOrEventTooLong()
{
    const QByteArray longest(ServerSentEvents::maxLineBytes - 6, 'x'); // "data: " makes it the longest line
    ServerSentEvents fits;
    QCOMPARE(fits.feed("data: " + longest + "\n\n").size(), 1);
    QVERIFY(!fits.failed());

    // The line is refused as it grows, before its end comes; what came before it still counts.
    ServerSentEvents tooLong;
    QCOMPARE(tooLong.feed("data: a\n\ndata: " + longest).size(), 1);
    QVERIFY(!tooLong.failed());
    QVERIFY(tooLong.feed("x").isEmpty());
    QVERIFY(tooLong.failed());
    QVERIFY(tooLong.problem().contains(QLatin1String("line longer")));
    QVERIFY(tooLong.feed("\n\ndata: b\n\n").isEmpty());

    ServerSentEvents tooMuchData;
    QByteArray lines;
    for (qsizetype sent = 0; sent <= ServerSentEvents::maxEventBytes; sent += longest.size() + 1)
        lines += "data: " + longest + '\n';
    QVERIFY(tooMuchData.feed(lines + '\n').isEmpty());
    QVERIFY(tooMuchData.failed());
}

QTEST_GUILESS_MAIN(TestServerSentEvents)
#include "tst_serversentevents.moc"
