#include "bridge/BridgeEvents.h"
#include "bridge/ServerSentEvents.h"

#include <QTest>

/// The framing of the bridge's event stream, and what its events say about lamps, rooms and lists.
class TestServerSentEvents final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheSameEventsHoweverTheBytesAreCut();
    void failsOnALineOrEventTooLong();
    void turnsEventsIntoChanges_data();
    void turnsEventsIntoChanges();
    void refusesDataThatIsNotAListOfChanges_data();
    void refusesDataThatIsNotAListOfChanges();
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

void TestServerSentEvents::turnsEventsIntoChanges_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<BridgeEventBatch>("expected");
    QTest::addColumn<int>("problems");

    const auto update = [](const QByteArray& resources) {
        return R"([{"creationtime":"2021-10-18T17:04:55Z","id":"9de1","type":"update","data":[)" + resources +
               "]}]";
    };
    const auto light = [](const char* id, const QByteArray& fields) {
        return R"({"id":"b6b1","id_v1":"/lights/)" + QByteArray(id) +
               R"(","type":"light","owner":{"rid":"x","rtype":"device"},)" + fields + "}";
    };
    const auto dim = [&](const char* percent) {
        return update(light("7", R"("dimming":{"brightness":)" + QByteArray(percent) + "}"));
    };
    const auto brightness = [](qint64 value) {
        return BridgeEventBatch{.lights = {{.lampId = "7", .resourceId = "b6b1", .brightness = value}}};
    };

    QTest::newRow("switched off")
        << update(light("7", R"("on":{"on":false})"))
        << BridgeEventBatch{.lights = {{.lampId = "7", .resourceId = "b6b1", .on = false}}} << 0;
    QTest::newRow("0 % is the dimmest") << dim("0") << brightness(1) << 0;
    QTest::newRow("0.39 %") << dim("0.39") << brightness(1) << 0;
    QTest::newRow("100 %") << dim("100.0") << brightness(254) << 0;
    QTest::newRow("over 100 %") << dim("100.5") << BridgeEventBatch{} << 1;
    QTest::newRow("colour, no temperature")
        << update(light("7", R"("color":{"xy":{"x":0.4573,"y":0.41}},"color_temperature":{"mirek":null,)"
                             R"("mirek_valid":false})"))
        << BridgeEventBatch{.lights = {{.lampId = "7",
                                        .resourceId = "b6b1",
                                        .xy = std::pair(0.4573f, 0.41f)}}}
        << 0;
    QTest::newRow("values out of range")
        << update(light("7", R"("on":{"on":true},"color":{"xy":{"x":1.2,"y":0.4}},)"
                             R"("color_temperature":{"mirek":0})"))
        << BridgeEventBatch{.lights = {{.lampId = "7", .resourceId = "b6b1", .on = true}}} << 1;
    QTest::newRow("merged in order")
        << update(light("7", R"("on":{"on":true},"color_temperature":{"mirek":366})") + "," +
                  light("9", R"("on":{"on":true})") + "," +
                  light("7", R"("on":{"on":false},"dimming":{"brightness":100})"))
        << BridgeEventBatch{.lights = {{.lampId = "7",
                                        .resourceId = "b6b1",
                                        .on = false,
                                        .brightness = 254,
                                        .colorTemperature = 366},
                                       {.lampId = "9", .resourceId = "b6b1", .on = true}}}
        << 0;
    QTest::newRow("room")
        << update(
               R"({"id_v1":"/groups/3","type":"grouped_light","on":{"on":true},"dimming":{"brightness":50}})")
        << BridgeEventBatch{.groups = {{.groupId = "3", .anyOn = true, .brightness = 127}}} << 0;
    QTest::newRow("unknown fields and types")
        << update(light("7", R"("on":{"on":true,"extra":[1]},"dynamics":{"speed":1})") + "," +
                  R"({"type":"button","button":{"last_event":"short_release"}},)"
                  R"({"type":"zigbee_connectivity","status":"connected","id_v1":"/lights/7"})")
        << BridgeEventBatch{.lights = {{.lampId = "7", .resourceId = "b6b1", .on = true}},
                            .relistLights = true}
        << 0;

    QTest::newRow("lamp renamed") << update(light("7", R"("metadata":{"name":"Desk"})"))
                                  << BridgeEventBatch{.relistLights = true} << 0;
    QTest::newRow("lamp out of reach")
        << update(R"({"type":"zigbee_connectivity","status":"connectivity_issue"})")
        << BridgeEventBatch{.relistLights = true} << 0;
    QTest::newRow("lamp without any id")
        << update(R"({"type":"light","on":{"on":true}})") << BridgeEventBatch{.relistLights = true} << 1;
    // Found by its UUID among records read over the current interface.
    QTest::newRow("lamp by its UUID only")
        << update(R"({"id":"c0ffee","type":"light","on":{"on":true}})")
        << BridgeEventBatch{.lights = {{.resourceId = "c0ffee", .on = true}}} << 0;
    QTest::newRow("room by its grouped light's UUID only")
        << update(R"({"id":"g-1","type":"grouped_light","on":{"on":false}})")
        << BridgeEventBatch{.groups = {{.resourceId = "g-1", .anyOn = false}}} << 0;
    QTest::newRow("lamp change of the wrong type")
        << update(light("7", R"("on":{"on":"yes"})")) << BridgeEventBatch{.relistLights = true} << 1;
    QTest::newRow("room without any id") << update(R"({"type":"grouped_light","on":{"on":true}})")
                                         << BridgeEventBatch{.relistGroups = true} << 1;
    QTest::newRow("zone members") << update(R"({"type":"zone","children":[]})")
                                  << BridgeEventBatch{.relistGroups = true} << 0;
    QTest::newRow("scene moved") << update(R"({"type":"scene","group":{"rid":"r","rtype":"room"}})")
                                 << BridgeEventBatch{.relistScenes = true} << 0;
    QTest::newRow("scene recalled") << update(R"({"type":"scene","status":{"active":"static"}})")
                                    << BridgeEventBatch{} << 0;
    QTest::newRow("added and deleted")
        << QByteArray(R"([{"type":"add","data":[{"type":"light"},{"type":"device"}]},)"
                      R"({"type":"delete","data":[{"type":"scene"},{"type":"room"}]}])")
        << BridgeEventBatch{.relistLights = true, .relistGroups = true, .relistScenes = true} << 0;
    QTest::newRow("error") << QByteArray(R"([{"type":"error","data":[]}])")
                           << BridgeEventBatch{.relistLights = true, .relistGroups = true} << 0;
}

void TestServerSentEvents::turnsEventsIntoChanges()
{
    QFETCH(QByteArray, data);
    QFETCH(BridgeEventBatch, expected);
    QFETCH(int, problems);
    QString problem;
    std::optional<BridgeEventBatch> batch = decodeBridgeEvents(data, &problem);
    QVERIFY2(batch, qPrintable(problem));
    QCOMPARE(batch->problems.size(), problems);
    batch->problems.clear();
    QCOMPARE(*batch, expected);
}

void TestServerSentEvents::refusesDataThatIsNotAListOfChanges_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not JSON") << QByteArray("[{\"type\":\"update\",");
    QTest::newRow("an object") << QByteArray(R"({"type":"update","data":[]})");
    QTest::newRow("a container that is no object") << QByteArray(R"([1])");
    QTest::newRow("a container without type") << QByteArray(R"([{"data":[]}])");
    QTest::newRow("an update without resources") << QByteArray(R"([{"type":"update"}])");
    QTest::newRow("resources that are no list") << QByteArray(R"([{"type":"update","data":{}}])");
    QTest::newRow("a resource that is no object") << QByteArray(R"([{"type":"add","data":["light"]}])");
}

void TestServerSentEvents::refusesDataThatIsNotAListOfChanges()
{
    QFETCH(QByteArray, data);
    QString problem;
    QVERIFY(!decodeBridgeEvents(data, &problem));
    QVERIFY(!problem.isEmpty());
}

QTEST_GUILESS_MAIN(TestServerSentEvents)
#include "tst_serversentevents.moc"
