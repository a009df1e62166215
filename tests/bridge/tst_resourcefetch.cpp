#include "LoopbackServer.h"
#include "TestSupport.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/ResourceFetch.h"
#include "simulator/BridgeSimulator.h"

#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

namespace {

// Light objects shaped like what bridges send: several firmware generations, with and without capabilities.
QByteArray lamp(const char* type, const char* state, const char* extra = "")
{
    return QByteArrayLiteral(R"({"state":{"on":true,"bri":200,"alert":"none","reachable":true)") + state +
           QByteArrayLiteral(R"(},"type":")") + type +
           QByteArrayLiteral(R"(","name":"Lamp","modelid":"LCT015","manufacturername":"Signify",)"
                             R"("productname":"Hue color lamp","uniqueid":"00:17:88:01:00:aa:bb:cc-0b")") +
           extra + '}';
}

const char* const ct153to500 =
    R"(,"capabilities":{"certified":true,"control":{"mindimlevel":1000,"maxlumen":806,)"
    R"("colorgamuttype":"C","ct":{"min":153,"max":500}},"streaming":{"renderer":true}})";

/// "id:CA:min-max" per light: colour, ambient and the colour temperature range.
QStringList summaries(const LightsResult& result)
{
    QStringList list;
    for (const HueLight& l : result.records)
        list.append(QStringLiteral("%1:%2%3:%4-%5")
                        .arg(l.lamp_id, l.allows_color ? u"C" : u"-", l.allows_ambient ? u"A" : u"-")
                        .arg(l.ct_min)
                        .arg(l.ct_max));
    return result.ok() ? list : QStringList{"failed"};
}

QByteArray object(std::initializer_list<std::pair<const char*, QByteArray>> members)
{
    QByteArray text = "{";
    for (const auto& [id, body] : members)
        text += (text.size() > 1 ? ",\"" : "\"") + QByteArray(id) + "\":" + body;
    return text + '}';
}

} // namespace

class TestResourceFetch final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesLights_data();
    void derivesLights();
    void flattensLightFields();
    void derivesRooms_data();
    void derivesRooms();
    void derivesScenes_data();
    void derivesScenes();
    void reportsFailuresWithTheListsOwnMessage_data();
    void reportsFailuresWithTheListsOwnMessage();
    void acceptsAThousandMembersAndNoMore();
};

void TestResourceFetch::derivesLights_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("expected");

    const QByteArray colour = lamp("Extended color light", R"(,"colormode":"xy","xy":[0.4,0.5])", ct153to500);
    QTest::newRow("bridge member order, not numeric")
        << object({{"2", colour}, {"10", colour}, {"1", colour}})
        << QStringList{"2:CA:153-500", "10:CA:153-500", "1:CA:153-500"};
    QTest::newRow("unreachable, unknown reachability and stateless lamps are left out")
        << object({{"1", QByteArray(colour).replace("\"reachable\":true", "\"reachable\":false")},
                   {"2", QByteArray(colour).replace(",\"reachable\":true", "")},
                   {"3", R"({"name":"Old","type":"Dimmable light"})"},
                   {"4", colour}})
        << QStringList{"4:CA:153-500"};
    QTest::newRow("empty object") << QByteArray("{}") << QStringList{};
    // What the lamp can do, not what it shows now: a colour lamp after a white scene keeps its colour field.
    QTest::newRow("the type beats the colour mode")
        << object({{"1", lamp("Extended color light", R"(,"colormode":"ct")", ct153to500)},
                   {"2", lamp("Color temperature light", R"(,"colormode":"HS")")},
                   {"3", lamp("Extended color light", R"(,"colormode":"effect")")}})
        << QStringList{"1:CA:153-500", "2:-A:0-10000", "3:CA:0-10000"};
    QTest::newRow("capabilities speak for a lamp of an unknown type")
        << object({{"1", lamp("Some light", R"(,"colormode":"ct")",
                              R"(,"capabilities":{"control":{"colorgamuttype":"C"}})")},
                   {"2", lamp("Some light", R"(,"colormode":"xy")",
                              R"(,"capabilities":{"control":{"ct":{"min":153,"max":500}}})")},
                   {"3", lamp("Some light", R"(,"colormode":"xy")")}})
        << QStringList{"1:C-:0-10000", "2:-A:153-500", "3:C-:0-10000"};
    QTest::newRow("type text when there is no colour mode")
        << object({{"1", lamp("Color temperature light", "")},
                   {"2", lamp("Dimmable light", "")},
                   {"3", lamp("Extended Color Ambient light", "")},
                   {"4", QByteArray(R"({"state":{"reachable":true},"name":"No type"})")}})
        << QStringList{"1:-A:0-10000", "2:--:0-10000", "3:CA:0-10000", "4:--:0-10000"};
    QTest::newRow("partial capabilities fall back per limit")
        << object({{"1", lamp("Dimmable light", "", R"(,"capabilities":{"control":{"mindimlevel":5000}})")},
                   {"2", lamp("Color temperature light", R"(,"colormode":"ct")",
                              R"(,"capabilities":{"control":{"ct":{"min":151}}})")}})
        << QStringList{"1:--:0-10000", "2:-A:151-10000"};
    QTest::newRow("the opal TRADFRI bulb is a white-tone bulb from 250 to 454 mired")
        << object({{"1", lamp("Extended color light", R"(,"colormode":"xy")", ct153to500)
                             .replace("LCT015", "TRADFRI bulb E27 WS opal 980lm")}})
        << QStringList{"1:-A:250-454"};
    QTest::newRow("a whole-number float is an integer")
        << object({{"1", lamp("Dimmable light", R"(,"bri":254.0)")}}) << QStringList{"1:--:0-10000"};

    const QStringList failed{"failed"};
    QTest::newRow("fractional brightness")
        << object({{"1", lamp("Dimmable light", R"(,"bri":12.5)")}}) << failed;
    QTest::newRow("brightness as text")
        << object({{"1", lamp("Dimmable light", R"(,"bri":"12")")}}) << failed;
    QTest::newRow("reachable as text")
        << object({{"1", lamp("Dimmable light", "").replace("\"reachable\":true", "\"reachable\":\"true\"")}})
        << failed;
    QTest::newRow("xy as text") << object({{"1", lamp("Extended color light", R"(,"xy":"0.1,0.2")")}})
                                << failed;
    QTest::newRow("name as number")
        << object({{"1", lamp("Dimmable light", "").replace("\"name\":\"Lamp\"", "\"name\":7")}}) << failed;
    QTest::newRow("one member not an object")
        << object({{"1", colour}, {"lastscan", "\"2012-10-29T12:00:00\""}}) << failed;
    QTest::newRow("null member") << object({{"1", colour}, {"2", "null"}}) << failed;
    QTest::newRow("bridge error array")
        << QByteArray(R"([{"error":{"type":1,"address":"/lights","description":"unauthorized user"}}])")
        << failed;
    QTest::newRow("cut off") << QByteArray(R"({"1": {"state": {"reachable": tru)") << failed;
    QTest::newRow("the same id twice") << object({{"1", colour}, {"2", colour}, {"1", colour}}) << failed;
}

void TestResourceFetch::derivesLights()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, expected);
    QCOMPARE(summaries(lightsFromBody(body)), expected);
}

void TestResourceFetch::flattensLightFields()
{
    const QByteArray body = object(
        {{"7", lamp("Extended color light",
                    R"(,"hue":8418,"sat":140,"ct":366,"xy":[0.4575,0.4101],"colormode":"hs")", ct153to500)},
         {"8", lamp("Extended color light", R"(,"xy":[0.1,0.2,0.3])")
                   .replace("\"name\":\"Lamp\"", "\"name\":null")},
         {"9", lamp("Dimmable light", R"(,"xy":[0,0])").replace("\"name\":\"Lamp\"", "\"name\":\"\"")},
         {"10", QByteArray(R"({"state":{"reachable":true},"name":"\u202Eevil\u2066\u0007"})")},
         // As a bridge reports a Hue smart plug: no "bri", no colour.
         {"11",
          QByteArray(R"({"state":{"on":true,"alert":"select","mode":"homeautomation","reachable":true},)"
                     R"("swupdate":{"state":"noupdates","lastinstall":"2024-03-02T10:11:12"},)"
                     R"("type":"On/Off plug-in unit","name":"Hall plug","modelid":"LOM001",)"
                     R"("manufacturername":"Signify Netherlands B.V.","productname":"Hue Smart plug",)"
                     R"("capabilities":{"certified":true,"control":{},"streaming":{"renderer":false,)"
                     R"("proxy":false}},"config":{"archetype":"plug","function":"functional",)"
                     R"("direction":"omnidirectional","startup":{"mode":"safety","configured":true}},)"
                     R"("uniqueid":"00:17:88:01:08:4a:1b:2c-0b","swversion":"1.104.2"})")}});
    const LightsResult result = lightsFromBody(body);
    QVERIFY(result.ok());
    QCOMPARE(result.records.size(), 5);

    const HueLight& full = result.records[0];
    QCOMPARE((QStringList{full.name, full.product_name, full.model_id, full.unique_id}),
             (QStringList{"Lamp", "Hue color lamp", "LCT015", "00:17:88:01:00:aa:bb:cc-0b"}));
    QVERIFY(full.is_on && full.allows_brightness);
    QCOMPARE((QList<qint64>{full.brightness, full.hue, full.saturation, full.color_temperature}),
             (QList<qint64>{200, 8418, 140, 366}));
    QCOMPARE((QList<float>{full.xy_x, full.xy_y}), (QList<float>{0.4575f, 0.4101f}));

    QCOMPARE(result.records[1].name, QStringLiteral("No name"));
    QCOMPARE(result.records[1].xy_x, 0.0f); // three elements are not a colour point
    QCOMPARE(result.records[2].name, QString());

    const HueLight& bare = result.records[3];
    // Shown as the tables show it: no override turning the row around, no control character.
    QCOMPARE(bare.name, QStringLiteral("?evil??"));
    // No brightness in the state: a lamp that only switches.
    QVERIFY(!bare.is_on && !bare.allows_brightness && bare.product_name.isEmpty() &&
            bare.unique_id.isEmpty());
    QCOMPARE(bare.brightness, 0);

    const HueLight& plug = result.records[4];
    QVERIFY(plug.is_on && !plug.allows_brightness && !plug.allows_color && !plug.allows_ambient);
    QCOMPARE(plug.product_name, QStringLiteral("Hue Smart plug"));
}

void TestResourceFetch::derivesRooms_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>(
        "expected"); // group_id name type class on bri sat hue ct ct_min-ct_max lights

    const QByteArray room = R"({"name":"Kitchen","lights":["3","4"],"sensors":[],"type":"Room",)"
                            R"("state":{"all_on":false,"any_on":true},"recycle":false,"class":"Kitchen",)"
                            R"("action":{"on":true,"bri":144,"hue":8418,"sat":140,"effect":"none",)"
                            R"("xy":[0.4575,0.4101],"ct":366,"alert":"select","colormode":"ct"}})";
    QTest::newRow("a room") << object({{"1", room}})
                            << QStringList{"1 Kitchen Room Kitchen any on 144 140 8418 366 153-500 3,4"};
    QTest::newRow(
        "zones kept, other groups, recycled and stateless rooms left out; room in any case and typeless")
        << object({{"1", QByteArray(room).replace("\"Room\"", "\"Zone\"")},
                   {"2", QByteArray(room).replace("\"Room\"", "\"room\"")},
                   {"3", QByteArray(room).replace("\"recycle\":false", "\"recycle\":true")},
                   {"4", QByteArray(R"({"name":"Old","lights":["1"],"type":"Room"})")},
                   {"5", QByteArray(R"({"state":{"any_on":false}})")},
                   {"6", QByteArray(room).replace("\"Room\"", "\"Entertainment\"")}})
        << QStringList{"1 Kitchen Zone Kitchen any on 144 140 8418 366 153-500 3,4",
                       "2 Kitchen room Kitchen any on 144 140 8418 366 153-500 3,4",
                       "5 No name unknown  - off 0 0 0 0 153-500 "};
    QTest::newRow("partial action")
        << object({{"1", QByteArray(R"({"type":"Room","state":{},"action":{"on":true,"bri":61}})")}})
        << QStringList{"1 No name Room  - on 61 0 0 0 153-500 "};

    QTest::newRow("brightness as text")
        << object({{"1", QByteArray(room).replace("\"bri\":144", "\"bri\":\"61\"")}})
        << QStringList{"failed"};
    QTest::newRow("lights as text") << object({{"1", QByteArray(room).replace(R"(["3","4"])", R"("3,4")")}})
                                    << QStringList{"failed"};
}

void TestResourceFetch::derivesRooms()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, expected);
    const GroupsResult result = groupsFromBody(body);
    QStringList actual;
    for (const HueGroup& g : result.records) {
        const QString state = g.all_on ? QStringLiteral("all") : g.any_on ? QStringLiteral("any") : u"-"_qs;
        QStringList numbers;
        for (qint64 n : {g.brightness, g.saturation, g.hue, g.color_temperature})
            numbers.append(QString::number(n));
        actual.append(
            QStringLiteral("%1 %2 %3 %4 %5 %6 ")
                .arg(g.group_id, g.name, g.type, g.group_class, state, g.is_on ? u"on"_qs : u"off"_qs) +
            numbers.join(u' ') + QStringLiteral(" %1-%2 ").arg(g.ct_min).arg(g.ct_max) + g.lights.join(u','));
        QVERIFY(!g.id.isNull());
    }
    QCOMPARE(result.ok() ? actual : QStringList{"failed"}, expected);
}

void TestResourceFetch::derivesScenes_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("expected"); // scene_id name type lights group

    const QByteArray scene = R"({"name":"Relax","type":"GroupScene","group":"1","lights":["1","2"],)"
                             R"("owner":"0f7d8e3b","recycle":false,"locked":false,"appdata":{"version":1,)"
                             R"("data":"x"},"picture":"","lastupdated":"2019-12-11T21:31:52","version":2})";
    QTest::newRow("versions and recycling")
        << object({{"aaaa1", scene},
                   {"aaaa2", QByteArray(scene).replace("\"version\":2", "\"version\":1")},
                   {"aaaa3", QByteArray(scene).replace(",\"version\":2", "")},
                   {"aaaa4", QByteArray(scene).replace("\"recycle\":false", "\"recycle\":true")},
                   {"aaaa5", QByteArray(scene)
                                 .replace("\"recycle\":false,", "")
                                 .replace("\"version\":2", "\"version\":3")},
                   {"aaaa6", QByteArray(R"({"version":2})")}})
        << QStringList{"aaaa1 Relax GroupScene 1,2 1", "aaaa5 Relax GroupScene 1,2 1",
                       "aaaa6 No name unknown  "};
    QTest::newRow("version as text") << object({{"x", QByteArray(scene).replace("\"version\":2",
                                                                                "\"version\":\"2\"")}})
                                     << QStringList{"failed"};
    QTest::newRow("lights as object")
        << object({{"x", QByteArray(scene).replace(R"(["1","2"])", R"({"1":true})")}})
        << QStringList{"failed"};
}

void TestResourceFetch::derivesScenes()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, expected);
    const ScenesResult result = scenesFromBody(body);
    QStringList actual;
    for (const HueScene& s : result.records)
        actual.append(QStringLiteral("%1 %2 %3 %4 %5")
                          .arg(s.scene_id, s.name, s.type, s.lights.join(u','), s.group_id));
    QCOMPARE(result.ok() ? actual : QStringList{"failed"}, expected);
}

void TestResourceFetch::reportsFailuresWithTheListsOwnMessage_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<int>("fault"); // what the bridge does
    QTest::addColumn<int>("error"); // 0 connectionFailed, 1 invalidData
    QTest::addColumn<QString>("message");

    using Fault = BridgeSimulator::Fault;
    const QString noData = QStringLiteral("empty");
    QTest::newRow("lights, error array") << "lights" << int(Fault::ErrorArray) << 1
                                         << "Error: Couldn't decode Hue data due to unknown JSON data.";
    QTest::newRow("groups, error array")
        << "groups" << int(Fault::ErrorArray) << 1
        << "Error: Couldn't decode Hue GROUPS data due to unknown JSON data.";
    QTest::newRow("scenes, garbage") << "scenes" << int(Fault::GarbageBody) << 1
                                     << "Error: Couldn't decode Hue SCENE data due to unknown JSON data.";
    QTest::newRow("lights, dropped connection") << "lights" << int(Fault::DropConnection) << 0 << QString();
    QTest::newRow("lights, empty answer") << "lights" << -1 << 1 << "ERROR: No data received. Giving up.";
    QTest::newRow("groups, empty answer")
        << "groups" << -1 << 1 << "ERROR: No GROUPS data received. Giving up.";
    QTest::newRow("scenes, empty answer")
        << "scenes" << -1 << 1 << "ERROR: No SCENE data received. Giving up.";
    QTest::newRow("lights, oversized answer")
        << "lights" << -2 << 1 << "Error: Couldn't decode Hue data due to unknown JSON data.";
    QTest::newRow("scenes, nobody listening") << "scenes" << -3 << 0 << QString();
    QTest::newRow("lights, silent bridge: gives up") << "lights" << -4 << 0 << QString();
    QTest::newRow("lights, HTTP error") << "lights" << int(Fault::HttpError) << 1
                                        << "Error: Couldn't decode Hue data due to unknown JSON data.";
    QTest::newRow("scenes, trickling bridge: gives up at the deadline")
        << "scenes" << int(Fault::DripFeed) << 0 << QString();
    // A redirect or a status no server sends may hold JSON: only a 2xx answer is the list.
    QTest::newRow("lights, a redirect holding a list")
        << "lights" << -301 << 1 << "Error: Couldn't decode Hue data due to unknown JSON data.";
    QTest::newRow("lights, status 999 holding a list")
        << "lights" << -999 << 1 << "Error: Couldn't decode Hue data due to unknown JSON data.";
    QTest::newRow("groups, too many")
        << "groups" << -5 << 1
        << "Error: Hue GROUPS data lists 1001 groups, more than the 1000 a bridge "
           "can hold; the answer was refused.";
}

void TestResourceFetch::reportsFailuresWithTheListsOwnMessage()
{
    QFETCH(QString, list);
    QFETCH(int, fault);
    QFETCH(int, error);
    QFETCH(QString, message);

    BridgeSimulator bridge;
    QVERIFY(bridge.listen());
    const QString key = bridge.addUser();
    QString address = QStringLiteral("http://") + bridge.hostAndPort();
    // A byte every half second never trips the time-out without data: only the deadline ends the read.
    bridge.setDripFeed(1, 500);
    if (fault >= 0)
        bridge.setFault(BridgeSimulator::Fault(fault));
    else if (fault == -1)
        bridge.setRawResource(list, QByteArray());
    else if (fault == -2)
        bridge.setRawResource(list, "{\"1\":\"" + QByteArray(17 * 1024 * 1024, 'x') + "\"}");
    else if (fault == -3)
        address = QStringLiteral("http://127.0.0.1:1");
    else if (fault == -5)
        bridge.setRawResource(list, '{' + QByteArray("\"1\":{},").repeated(1001).chopped(1) + '}');
    LoopbackServer server;
    if (fault <= -301) {
        QVERIFY(server.listen());
        server.setStatus(-fault);
        server.setAnswer(object({{"1", lamp("Dimmable light", "")}}));
        address = u"http://%1:%2"_qs.arg(server.url().host()).arg(server.url().port());
    } else if (fault == -4)
        bridge.setLatency(int(fetchTimeout.count()) + 2000); // answers only after the fetch has given up

    PrintedLines printed;
    BridgeNetwork network;
    std::optional<int> outcome;
    bool onMainThread = false; // decoding runs on a worker thread, the answer comes back to this one
    const auto done = [&](const auto& result) {
        outcome = result.error ? int(*result.error) : -1;
        onMainThread = QThread::currentThread() == thread();
    };
    // A bridge of the first generation, paired in clear: the key may go to it over plain HTTP.
    const BridgeIdentity identity{bridge.bridgeId(), {}, false, true};
    if (list == u"lights")
        LightsRead{.endpoint = address, .key = key, .identity = identity}.fetch(network, done);
    else if (list == u"groups")
        GroupsRead{.endpoint = address, .key = key, .identity = identity}.fetch(network, done);
    else
        ScenesRead{.endpoint = address, .key = key, .identity = identity}.fetch(network, done);

    QTRY_VERIFY_WITH_TIMEOUT(outcome.has_value(), int(fetchDeadline.count()) + 5000);
    QCOMPARE(*outcome, error);
    QVERIFY(onMainThread);
    QCOMPARE(printed.lines(), message.isEmpty() ? QStringList{} : QStringList{message});
}

void TestResourceFetch::acceptsAThousandMembersAndNoMore()
{
    const QByteArray member = lamp("Dimmable light", "");
    const auto lamps = [&member](int count) {
        QByteArray text = "{";
        for (int i = 1; i <= count; ++i)
            text += (i > 1 ? ",\"" : "\"") + QByteArray::number(i) + "\":" + member;
        return text + '}';
    };
    const LightsResult thousand = lightsFromBody(lamps(1000));
    QVERIFY(thousand.ok());
    QCOMPARE(thousand.records.size(), 1000);
    const LightsResult more = lightsFromBody(lamps(1001));
    QCOMPARE(more.error, LightsError::invalidData);
    QVERIFY(more.records.isEmpty());
    QVERIFY2(more.message.contains(QStringLiteral("lists 1001 lights")), qPrintable(more.message));
}

QTEST_GUILESS_MAIN(TestResourceFetch)
#include "tst_resourcefetch.moc"
