#include "bridge/ClipUnits.h"
#include "bridge/CodedRecords.h"
#include "bridge/ResourceFetch.h"
#include "state/MemorySettingsStore.h"
#include "state/Preferences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace {

/// A small home over the current interface, shaped after the interface's description: a colour lamp, a
/// white-tone lamp, a dimmable lamp, a plug, a lamp out of reach, a device holding two lamps, a room of
/// devices, a zone of lamps, a scene of that zone, a smart scene, the bridge's home and some resources
/// Glowdeck does not read.
const QByteArray home = R"({"errors":[],"data":[
 {"id":"l-colour","id_v1":"/lights/3","type":"light","owner":{"rid":"d-colour","rtype":"device"},
  "metadata":{"name":"Desk","archetype":"sultan_bulb"},"on":{"on":true},
  "dimming":{"brightness":49.8,"min_dim_level":0.2},
  "color_temperature":{"mirek":null,"mirek_valid":false,"mirek_schema":{"mirek_minimum":153,"mirek_maximum":500}},
  "color":{"xy":{"x":0.4575,"y":0.4101},"gamut_type":"C","gamut":{}},"effects":{"effect_values":["candle"]}},
 {"id":"l-white","id_v1":"/lights/4","type":"light","owner":{"rid":"d-white","rtype":"device"},
  "metadata":{"name":"Hall"},"on":{"on":false},"dimming":{"brightness":100},
  "color_temperature":{"mirek":366,"mirek_valid":true,"mirek_schema":{"mirek_minimum":153,"mirek_maximum":454}}},
 {"id":"l-dim","id_v1":"/lights/5","type":"light","owner":{"rid":"d-dim","rtype":"device"},
  "metadata":{"name":"Porch"},"on":{"on":true},"dimming":{"brightness":0.4}},
 {"id":"l-plug","type":"light","owner":{"rid":"d-plug","rtype":"device"},
  "metadata":{"name":"Kettle\u202e"},"on":{"on":true}},
 {"id":"l-away","id_v1":"/lights/7","type":"light","owner":{"rid":"d-away","rtype":"device"},
  "metadata":{"name":"Garden"},"on":{"on":true},"dimming":{"brightness":10}},
 {"id":"l-strip-a","id_v1":"/lights/8","type":"light","owner":{"rid":"d-double","rtype":"device"},
  "metadata":{"name":"Strip A"},"on":{"on":true},"dimming":{"brightness":20}},
 {"id":"l-strip-b","id_v1":"/lights/9","type":"light","owner":{"rid":"d-double","rtype":"device"},
  "metadata":{"name":"Strip B"},"on":{"on":false},"dimming":{"brightness":20}},
 {"id":"d-colour","id_v1":"/lights/3","type":"device","metadata":{"name":"Desk"},
  "product_data":{"model_id":"LCT015","manufacturer_name":"Signify Netherlands B.V.",
   "product_name":"Hue color lamp"},"services":[{"rid":"l-colour","rtype":"light"},{"rid":"z-colour","rtype":"zigbee_connectivity"}]},
 {"id":"d-plug","type":"device","metadata":{"name":"Kettle"},
  "product_data":{"model_id":"TS011F","manufacturer_name":"_TZ3000","product_name":"Smart plug"},"services":[]},
 {"id":"d-double","type":"device","metadata":{"name":"Strips"},"product_data":{"product_name":"Twin strip"}},
 {"id":"z-colour","type":"zigbee_connectivity","owner":{"rid":"d-colour","rtype":"device"},
  "status":"connected","mac_address":"00:17:88:01:00:aa:bb:cc"},
 {"id":"z-plug","type":"zigbee_connectivity","owner":{"rid":"d-plug","rtype":"device"},
  "status":"connected","mac_address":"a4:c1:38:00:00:00:00:01"},
 {"id":"z-away","type":"zigbee_connectivity","owner":{"rid":"d-away","rtype":"device"},
  "status":"connectivity_issue","mac_address":"00:17:88:01:00:00:00:07"},
 {"id":"p-plug","type":"device_power","owner":{"rid":"d-plug","rtype":"device"},
  "power_state":{"battery_state":"normal","battery_level":76}},
 {"id":"r-living","id_v1":"/groups/2","type":"room","metadata":{"name":"Living room","archetype":"living_room"},
  "children":[{"rid":"d-colour","rtype":"device"},{"rid":"d-double","rtype":"device"}],
  "services":[{"rid":"g-living","rtype":"grouped_light"}]},
 {"id":"zone-tv","type":"zone","metadata":{"name":"TV corner","archetype":"tv"},
  "children":[{"rid":"l-white","rtype":"light"},{"rid":"l-strip-b","rtype":"light"}],
  "services":[{"rid":"g-tv","rtype":"grouped_light"}]},
 {"id":"g-living","id_v1":"/groups/2","type":"grouped_light","owner":{"rid":"r-living","rtype":"room"},
  "on":{"on":true},"dimming":{"brightness":39.37}},
 {"id":"g-tv","type":"grouped_light","owner":{"rid":"zone-tv","rtype":"zone"},"on":{"on":false}},
 {"id":"g-home","id_v1":"/groups/0","type":"grouped_light","owner":{"rid":"bh","rtype":"bridge_home"},
  "on":{"on":true}},
 {"id":"bh","type":"bridge_home","children":[],"services":[{"rid":"g-home","rtype":"grouped_light"}]},
 {"id":"s-movie","id_v1":"/scenes/AbC12","type":"scene","metadata":{"name":"Movie"},
  "group":{"rid":"zone-tv","rtype":"zone"},
  "actions":[{"target":{"rid":"l-white","rtype":"light"},"action":{"on":{"on":true}}},
             {"target":{"rid":"l-strip-b","rtype":"light"},"action":{"on":{"on":false}}}],
  "palette":{"color":[{"color":{"xy":{"x":0.6,"y":0.3}},"dimming":{"brightness":80}},
                      {"color":{"xy":{"x":0.2,"y":0.1}}}],"dimming":[],"color_temperature":[],"effects":[]},
  "speed":0.62,"status":{"active":"inactive"}},
 {"id":"ss-natural","type":"smart_scene","metadata":{"name":"Natural light"},
  "group":{"rid":"r-living","rtype":"room"},"week_timeslots":[],"state":"inactive"},
 {"id":"b-1","type":"button","owner":{"rid":"d-x","rtype":"device"},"button":{"last_event":"short_release"}},
 {"id":"bs","type":"behavior_script","metadata":{"name":7}}
]})";

QJsonObject coded(const HomeResult& result, const QString& kind, const QString& id)
{
    const auto find = [&id](const auto& records, auto idOf) -> QJsonObject {
        for (const auto& record : records) {
            if (idOf(record) == id)
                return QJsonDocument::fromJson(CodedRecords::encode(record)).object();
        }
        return {};
    };
    if (kind == u"light")
        return find(result.records, [](const HueLight& l) { return l.lamp_id; });
    if (kind == u"group")
        return find(result.groups, [](const HueGroup& g) { return g.group_id; });
    return find(result.scenes, [](const HueScene& s) { return s.scene_id; });
}

} // namespace

class TestClipDecoding final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesTheRecordsTheViewsShow_data();
    void derivesTheRecordsTheViewsShow();
    void leavesOutWhatIsNotShownAndKeepsTheDetailsForLater();
    void refusesAnswersOfTheWrongShape_data();
    void refusesAnswersOfTheWrongShape();
    void brightnessSurvivesTheTripToTheBridgeAndBack();
    void colourSurvivesTheTripThroughXy_data();
    void colourSurvivesTheTripThroughXy();
    void aHiddenLampStaysHiddenOverTheCurrentInterface();
};

void TestClipDecoding::derivesTheRecordsTheViewsShow_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QJsonValue>("expected");

    const auto row = [](const char* name, const char* kind, const char* id, const char* field,
                        const QJsonValue& expected) {
        QTest::newRow(name) << QString::fromUtf8(kind) << QString::fromUtf8(id) << QString::fromUtf8(field)
                            << expected;
    };
    row("colour lamp keeps its first id", "light", "3", "v2_id", "l-colour");
    row("colour lamp: colour", "light", "3", "allows_color", true);
    row("colour lamp: white tone too", "light", "3", "allows_ambient", true);
    row("colour lamp: per cent to 1-254", "light", "3", "brightness", 126);
    row("colour lamp: xy", "light", "3", "xy_x", 0.4575);
    row("colour lamp: no mirek in colour mode", "light", "3", "color_temperature", 0);
    row("colour lamp: product", "light", "3", "product_name", "Hue color lamp");
    row("colour lamp: model", "light", "3", "model_id", "LCT015");
    row("white lamp: no colour", "light", "4", "allows_color", false);
    row("white lamp: white tone", "light", "4", "allows_ambient", true);
    row("white lamp: mirek", "light", "4", "color_temperature", 366);
    row("white lamp: its range", "light", "4", "ct_max", 454);
    row("white lamp: off", "light", "4", "is_on", false);
    row("white lamp: full", "light", "4", "brightness", 254);
    row("dimmable lamp: no colour", "light", "5", "allows_color", false);
    row("dimmable lamp: no white tone", "light", "5", "allows_ambient", false);
    row("dimmable lamp: slider", "light", "5", "allows_brightness", true);
    row("dimmable lamp: lowest lit is 1", "light", "5", "brightness", 1);
    row("plug: its UUID for an id", "light", "l-plug", "lamp_id", "l-plug");
    row("plug: no slider", "light", "l-plug", "allows_brightness", false);
    row("plug: its name made safe", "light", "l-plug", "name", "Kettle?");
    row("plug: battery of its device", "light", "l-plug", "battery_level", 76);
    row("room: the lamps of its devices", "group", "2", "lights", QJsonArray{"3", "8", "9"});
    row("room: switched through its grouped light", "group", "2", "grouped_light_id", "g-living");
    row("room: its state", "group", "2", "is_on", true);
    row("room: not every lamp on", "group", "2", "all_on", false);
    row("room: brightness", "group", "2", "brightness", 100);
    row("room: class", "group", "2", "group_class", "Living room");
    row("zone: its lamps", "group", "zone-tv", "lights", QJsonArray{"4", "9"});
    row("zone: a zone", "group", "zone-tv", "type", "Zone");
    row("scene of a zone: kept id", "scene", "AbC12", "v2_id", "s-movie");
    row("scene of a zone: its zone", "scene", "AbC12", "group_id", "zone-tv");
    row("scene of a zone: its lamps", "scene", "AbC12", "lights", QJsonArray{"4", "9"});
    row("smart scene: its UUID", "scene", "ss-natural", "type", "SmartScene");
    row("smart scene: its room", "scene", "ss-natural", "group_id", "2");
    row("smart scene: its room's lamps", "scene", "ss-natural", "lights", QJsonArray{"3", "8", "9"});
}

void TestClipDecoding::derivesTheRecordsTheViewsShow()
{
    QFETCH(QString, kind);
    QFETCH(QString, id);
    QFETCH(QString, field);
    QFETCH(QJsonValue, expected);
    const HomeResult result = homeFromClipBody(home);
    QVERIFY2(result.ok(), qPrintable(result.message));
    const QJsonObject record = coded(result, kind, id);
    QVERIFY2(!record.isEmpty(), "no such record");
    if (expected.isDouble())
        QCOMPARE(float(record.value(field).toDouble()), float(expected.toDouble()));
    else
        QCOMPARE(record.value(field), expected);
}

void TestClipDecoding::leavesOutWhatIsNotShownAndKeepsTheDetailsForLater()
{
    const HomeResult result = homeFromClipBody(home);
    QVERIFY(result.ok());
    // The lamp out of reach is left out, as over the first interface; the others keep the bridge's order.
    QStringList lamps;
    for (const HueLight& light : result.records)
        lamps.append(light.lamp_id);
    QCOMPARE(lamps, QStringList({"3", "4", "5", "l-plug", "8", "9"}));
    QCOMPARE(result.groups.size(), 2);
    QCOMPARE(result.homeGroupedLight, QStringLiteral("g-home"));
    const HueScene& movie = result.scenes.at(0);
    QCOMPARE(movie.palette.size(), 2);
    QCOMPARE(movie.palette.at(0), (ScenePaletteColour{0.6f, 0.3f, 80}));
    QCOMPARE(movie.palette.at(1).brightness, -1.0);
    QCOMPARE(movie.speed, 0.62);
    QVERIFY(result.scenes.at(1).isSmart());
}

void TestClipDecoding::refusesAnswersOfTheWrongShape_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("not JSON") << QByteArray("<html>");
    QTest::newRow("a list of the first interface") << QByteArray(R"({"1":{"name":"x"}})");
    QTest::newRow("data not a list") << QByteArray(R"({"errors":[],"data":{}})");
    QTest::newRow("a resource without id")
        << QByteArray(R"({"errors":[],"data":[{"type":"light","on":{"on":true}}]})");
    QTest::newRow("on as a text") << QByteArray(
        R"({"errors":[],"data":[{"id":"a","type":"light","on":{"on":"yes"}}]})");
    QTest::newRow("brightness as a text")
        << QByteArray(R"({"errors":[],"data":[{"id":"a","type":"light","dimming":{"brightness":"50"}}]})");
    QTest::newRow("children not a list")
        << QByteArray(R"({"errors":[],"data":[{"id":"a","type":"room","children":7}]})");
    QTest::newRow("one lamp id twice")
        << QByteArray(R"({"errors":[],"data":[{"id":"a","id_v1":"/lights/1","type":"light"},)"
                      R"({"id":"b","id_v1":"/lights/1","type":"light"}]})");
}

void TestClipDecoding::refusesAnswersOfTheWrongShape()
{
    QFETCH(QByteArray, body);
    const HomeResult result = homeFromClipBody(body);
    QCOMPARE(result.error, LightsError::invalidData);
    QVERIFY(!result.message.isEmpty());
}

void TestClipDecoding::brightnessSurvivesTheTripToTheBridgeAndBack()
{
    for (qint64 brightness = 1; brightness <= 254; ++brightness)
        QCOMPARE(ClipUnits::brightnessFromPercent(ClipUnits::percentFromBrightness(brightness)), brightness);
    // A lit lamp at its lowest level is still lit.
    QCOMPARE(ClipUnits::brightnessFromPercent(0.1), 1);
    QCOMPARE(ClipUnits::brightnessFromPercent(100), 254);
}

void TestClipDecoding::colourSurvivesTheTripThroughXy_data()
{
    QTest::addColumn<qint64>("hue");
    QTest::addColumn<qint64>("saturation");
    QTest::newRow("red") << qint64(0) << qint64(254);
    QTest::newRow("green") << qint64(21845) << qint64(254);
    QTest::newRow("blue") << qint64(43690) << qint64(254);
    QTest::newRow("pale orange") << qint64(6000) << qint64(120);
    QTest::newRow("pale violet") << qint64(50000) << qint64(60);
}

void TestClipDecoding::colourSurvivesTheTripThroughXy()
{
    // The colour field writes hue and saturation and shows what comes back: the marker must not wander.
    QFETCH(qint64, hue);
    QFETCH(qint64, saturation);
    const auto [x, y] = ClipUnits::xyFromHueSaturation(hue, saturation);
    const auto [hueBack, saturationBack] = ClipUnits::hueSaturationFromXy(x, y);
    const qint64 hueError = std::min((hueBack - hue + 65536) % 65536, (hue - hueBack + 65536) % 65536);
    QVERIFY2(hueError <= 200, qPrintable(QString::number(hueBack)));
    QVERIFY2(std::abs(saturationBack - saturation) <= 2, qPrintable(QString::number(saturationBack)));
}

void TestClipDecoding::aHiddenLampStaysHiddenOverTheCurrentInterface()
{
    // Hidden lamps are stored by the first interface's "uniqueid": the same lamp read over the current one
    // must find its entry.
    MemorySettingsStore store;
    Preferences preferences(store);
    const HueLight before{.lamp_id = "3", .unique_id = "00:17:88:01:00:aa:bb:cc-0b"};
    preferences.setLightHidden(before, true);
    const HomeResult result = homeFromClipBody(home);
    QVERIFY(result.ok());
    const HueLight& after = result.records.first();
    QCOMPARE(after.lamp_id, before.lamp_id);
    QVERIFY(preferences.isLightHidden(after));
    // Another maker's lamp uses endpoint 1.
    QCOMPARE(result.records.at(3).unique_id, QStringLiteral("a4:c1:38:00:00:00:00:01-01"));
}

QTEST_GUILESS_MAIN(TestClipDecoding)
#include "tst_clipdecoding.moc"
