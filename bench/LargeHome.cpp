#include "LargeHome.h"

#include <QFile>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace {

QByteArray light(int i)
{
    // Four lamp generations in turn: colour with capabilities, white tone, an old colour lamp without
    // capabilities, a dimmable one; every ninth is unreachable.
    const int kind = i % 4;
    const char* type = kind == 0   ? "Extended color light"
                       : kind == 1 ? "Color temperature light"
                       : kind == 2 ? "Extended color light"
                                   : "Dimmable light";
    const char* model = kind == 0 ? "LCT015" : kind == 1 ? "LTW012" : kind == 2 ? "LCT001" : "LWB010";
    const char* mode = kind == 0   ? R"("colormode":"xy",)"
                       : kind == 1 ? R"("colormode":"ct",)"
                       : kind == 2 ? R"("colormode":"hs",)"
                                   : "";
    const char* capabilities =
        kind == 2 ? ""
                  : R"(,"capabilities":{"certified":true,"control":{"mindimlevel":1000,"maxlumen":806,)"
                    R"("colorgamuttype":"C","colorgamut":[[0.6915,0.3083],[0.17,0.7],[0.1532,0.0475]],)"
                    R"("ct":{"min":153,"max":500}},"streaming":{"renderer":true,"proxy":true}},)"
                    R"("config":{"archetype":"sultanbulb","function":"mixed","direction":"omnidirectional"})";
    return QStringLiteral(
               R"({"state":{"on":%1,"bri":%2,"hue":%3,"sat":%4,"effect":"none",)"
               R"("xy":[0.4575,0.4101],"ct":%5,"alert":"none",%6"mode":"homeautomation",)"
               R"("reachable":%7},"swupdate":{"state":"noupdates","lastinstall":"2019-03-12T15:51:35"},)"
               R"("type":"%8","name":"Lamp %9","modelid":"%10","manufacturername":"Signify",)"
               R"("productname":"Hue lamp","uniqueid":"00:17:88:01:00:%11:%12-0b",)"
               R"("swversion":"1.46.13_r26312"%13})")
        .arg(i % 3 ? "true" : "false")
        .arg(i * 37 % 254 + 1)
        .arg(i * 997 % 65536)
        .arg(i * 13 % 255)
        .arg(153 + i % 347)
        .arg(QString::fromLatin1(mode))
        .arg(i % 9 ? "true" : "false")
        .arg(QString::fromLatin1(type))
        .arg(i)
        .arg(QString::fromLatin1(model))
        .arg(i / 256, 2, 16, QLatin1Char('0'))
        .arg(i % 256, 2, 16, QLatin1Char('0'))
        .arg(QString::fromLatin1(capabilities))
        .toUtf8();
}

QByteArray memberList(int first, int count, int modulo)
{
    QByteArray list = "[";
    for (int k = 0; k < count; ++k)
        list += (k ? ",\"" : "\"") + QByteArray::number((first + k) % modulo + 1) + '"';
    return list + ']';
}

QByteArray group(int i, int lightCount)
{
    const char* type = i % 10 == 8 ? "Zone" : i % 10 == 9 ? "LightGroup" : "Room";
    return QStringLiteral(R"({"name":"Room %1","lights":%2,"sensors":[],"type":"%3",)"
                          R"("state":{"all_on":false,"any_on":true},"recycle":false,"class":"Living room",)"
                          R"("action":{"on":true,"bri":%4,"hue":8418,"sat":140,"effect":"none",)"
                          R"("xy":[0.4575,0.4101],"ct":366,"alert":"select","colormode":"ct"}})")
        .arg(i)
        .arg(QString::fromLatin1(memberList(i * 4, 4, lightCount)))
        .arg(QString::fromLatin1(type))
        .arg(i * 5 % 254 + 1)
        .toUtf8();
}

QByteArray scene(int i, int lightCount)
{
    return QStringLiteral(R"({"name":"Scene %1","type":"GroupScene","group":"%2","lights":%3,)"
                          R"("owner":"53587a59-92a7-4c1b-a2e6-ab777830b474","recycle":%4,"locked":false,)"
                          R"("appdata":{"version":1,"data":"YP0PB_r09_d99"},"picture":"",)"
                          R"("lastupdated":"2019-12-11T21:31:52","version":%5})")
        .arg(i)
        .arg(i % 50 + 1)
        .arg(QString::fromLatin1(memberList(i * 3, 6, lightCount)))
        .arg(i % 7 ? "false" : "true")
        .arg(i % 5 ? 2 : 1)
        .toUtf8();
}

int sparseId(int i)
{
    return i * 7919 % 100003;
}

template <typename Make>
QByteArray object(int count, Make make)
{
    QByteArray text = "{";
    for (int i = 1; i <= count; ++i)
        text += (i > 1 ? ",\"" : "\"") + QByteArray::number(sparseId(i)) + "\":" + make(i);
    return text + '}';
}

// The generated lists number their resources sparsely while rooms and scenes name lights 1..N.
QByteArray renumbered(const QByteArray& list, int count)
{
    const QJsonObject resources = QJsonDocument::fromJson(list).object();
    QByteArray out = "{";
    for (int i = 1; i <= count; ++i) {
        const QJsonObject resource = resources.value(QString::number(sparseId(i))).toObject();
        out += (i > 1 ? ",\"" : "\"") + QByteArray::number(i) +
               "\":" + QJsonDocument(resource).toJson(QJsonDocument::Compact);
    }
    return out + '}';
}

} // namespace

LargeHome LargeHome::makeNumbered(int lightCount, int roomCount, int sceneCount)
{
    LargeHome home = make(lightCount, roomCount, sceneCount);
    home.lights = renumbered(home.lights, lightCount);
    home.groups = renumbered(home.groups, roomCount);
    return home;
}

LargeHome LargeHome::make(int lightCount, int roomCount, int sceneCount)
{
    return {object(lightCount, light), object(roomCount, [&](int i) { return group(i, lightCount); }),
            object(sceneCount, [&](int i) { return scene(i, lightCount); })};
}

bool LargeHome::writeSimulatorHome(const QString& fileName, int lightCount)
{
    const LargeHome home = makeNumbered(lightCount, 50, 300);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("{\"lights\":" + home.lights + ",\"groups\":" + home.groups + ",\"scenes\":" + home.scenes +
               ",\"config\":{}}\n");
    return file.error() == QFileDevice::NoError;
}

namespace {

/// A stable UUID-shaped id per resource, as the bridge's are.
QString uuid(const char* kind, const QString& id)
{
    const QByteArray hash =
        QByteArray::number(qHash(QString::fromLatin1(kind) + id), 16).rightJustified(16, '0');
    return QStringLiteral("%1-%2-4%3-8%4-%5")
        .arg(QString::fromLatin1(hash.left(8)), QString::fromLatin1(hash.mid(8, 4)),
             QString::fromLatin1(hash.mid(12, 3)), QString::fromLatin1(hash.left(3)),
             QString::fromLatin1(hash.mid(4, 12)).leftJustified(12, u'0'));
}

QJsonObject reference(const QString& rid, const char* rtype)
{
    return {{"rid", rid}, {"rtype", QString::fromLatin1(rtype)}};
}

} // namespace

QByteArray LargeHome::clipHome(const LargeHome& home, QList<QPair<QString, qsizetype>>* perType)
{
    const QJsonObject lights = QJsonDocument::fromJson(home.lights).object();
    const QJsonObject groups = QJsonDocument::fromJson(home.groups).object();
    const QJsonObject scenes = QJsonDocument::fromJson(home.scenes).object();
    QHash<QString, QJsonArray> byType;
    const QStringList order{"light", "device",        "zigbee_connectivity", "room",
                            "zone",  "grouped_light", "bridge_home",         "scene"};
    for (auto it = lights.begin(); it != lights.end(); ++it) {
        const QJsonObject v1 = it.value().toObject();
        const QJsonObject state = v1.value(u"state").toObject();
        const QJsonObject control = v1.value(u"capabilities").toObject().value(u"control").toObject();
        const QString id = it.key();
        QJsonObject light{
            {"id", uuid("light", id)},
            {"id_v1", u"/lights/"_qs + id},
            {"owner", reference(uuid("device", id), "device")},
            {"metadata", QJsonObject{{"name", v1.value(u"name")}, {"archetype", "sultan_bulb"}}},
            {"on", QJsonObject{{"on", state.value(u"on")}}},
            {"mode", "normal"},
            {"alert", QJsonObject{{"action_values", QJsonArray{"breathe"}}}},
            {"signaling", QJsonObject{{"signal_values", QJsonArray{"no_signal", "on_off"}}}},
            {"dynamics", QJsonObject{{"status", "none"}, {"speed", 0}, {"speed_valid", false}}},
            {"powerup", QJsonObject{{"preset", "safety"}, {"configured", true}}},
            {"type", "light"}};
        if (state.contains(u"bri"))
            light.insert("dimming", QJsonObject{{"brightness", state.value(u"bri").toDouble() * 100 / 254},
                                                {"min_dim_level", 0.2}});
        if (control.contains(u"ct"))
            light.insert(
                "color_temperature",
                QJsonObject{{"mirek", state.value(u"ct")},
                            {"mirek_valid", true},
                            {"mirek_schema", QJsonObject{{"mirek_minimum", 153}, {"mirek_maximum", 500}}}});
        if (control.contains(u"colorgamuttype")) {
            const QJsonArray xy = state.value(u"xy").toArray();
            light.insert(
                "color",
                QJsonObject{{"xy", QJsonObject{{"x", xy.at(0)}, {"y", xy.at(1)}}},
                            {"gamut_type", "C"},
                            {"gamut", QJsonObject{{"red", QJsonObject{{"x", 0.6915}, {"y", 0.3083}}},
                                                  {"green", QJsonObject{{"x", 0.17}, {"y", 0.7}}},
                                                  {"blue", QJsonObject{{"x", 0.1532}, {"y", 0.0475}}}}}});
            light.insert("effects", QJsonObject{{"effect_values", QJsonArray{"no_effect", "candle", "fire"}},
                                                {"status", "no_effect"}});
        }
        byType["light"].append(light);
        byType["device"].append(QJsonObject{
            {"id", uuid("device", id)},
            {"id_v1", u"/lights/"_qs + id},
            {"product_data", QJsonObject{{"model_id", v1.value(u"modelid")},
                                         {"manufacturer_name", "Signify Netherlands B.V."},
                                         {"product_name", v1.value(u"productname")},
                                         {"product_archetype", "sultan_bulb"},
                                         {"certified", true},
                                         {"software_version", "1.104.2"}}},
            {"metadata", QJsonObject{{"name", v1.value(u"name")}, {"archetype", "sultan_bulb"}}},
            {"identify", QJsonObject{}},
            {"services", QJsonArray{reference(uuid("light", id), "light"),
                                    reference(uuid("zigbee_connectivity", id), "zigbee_connectivity")}},
            {"type", "device"}});
        const QString uniqueId = v1.value(u"uniqueid").toString();
        byType["zigbee_connectivity"].append(
            QJsonObject{{"id", uuid("zigbee_connectivity", id)},
                        {"id_v1", u"/lights/"_qs + id},
                        {"owner", reference(uuid("device", id), "device")},
                        {"status", state.value(u"reachable").toBool() ? "connected" : "connectivity_issue"},
                        {"mac_address", uniqueId.left(uniqueId.indexOf(u'-'))},
                        {"type", "zigbee_connectivity"}});
    }
    QJsonArray everyDevice;
    for (auto it = groups.begin(); it != groups.end(); ++it) {
        const QJsonObject v1 = it.value().toObject();
        const QString type = v1.value(u"type").toString();
        if (type != u"Room" && type != u"Zone")
            continue;
        const bool zone = type == u"Zone";
        QJsonArray children;
        for (const QJsonValue member : v1.value(u"lights").toArray())
            children.append(zone ? reference(uuid("light", member.toString()), "light")
                                 : reference(uuid("device", member.toString()), "device"));
        const QString id = it.key();
        byType[zone ? "zone" : "room"].append(
            QJsonObject{{"id", uuid("group", id)},
                        {"id_v1", u"/groups/"_qs + id},
                        {"children", children},
                        {"services", QJsonArray{reference(uuid("grouped_light", id), "grouped_light")}},
                        {"metadata", QJsonObject{{"name", v1.value(u"name")}, {"archetype", "living_room"}}},
                        {"type", zone ? "zone" : "room"}});
        byType["grouped_light"].append(QJsonObject{
            {"id", uuid("grouped_light", id)},
            {"id_v1", u"/groups/"_qs + id},
            {"owner", reference(uuid("group", id), zone ? "zone" : "room")},
            {"on", QJsonObject{{"on", v1.value(u"state").toObject().value(u"any_on")}}},
            {"dimming", QJsonObject{{"brightness",
                                     v1.value(u"action").toObject().value(u"bri").toDouble() * 100 / 254}}},
            {"alert", QJsonObject{{"action_values", QJsonArray{"breathe"}}}},
            {"signaling", QJsonObject{{"signal_values", QJsonArray{"no_signal", "on_off"}}}},
            {"type", "grouped_light"}});
    }
    byType["grouped_light"].append(QJsonObject{{"id", uuid("grouped_light", u"0"_qs)},
                                               {"id_v1", "/groups/0"},
                                               {"on", QJsonObject{{"on", true}}},
                                               {"type", "grouped_light"}});
    byType["bridge_home"].append(
        QJsonObject{{"id", uuid("bridge_home", u"0"_qs)},
                    {"id_v1", "/groups/0"},
                    {"children", QJsonArray{}},
                    {"services", QJsonArray{reference(uuid("grouped_light", u"0"_qs), "grouped_light")}},
                    {"type", "bridge_home"}});
    for (auto it = scenes.begin(); it != scenes.end(); ++it) {
        const QJsonObject v1 = it.value().toObject();
        QJsonArray actions;
        for (const QJsonValue member : v1.value(u"lights").toArray())
            actions.append(QJsonObject{
                {"target", reference(uuid("light", member.toString()), "light")},
                {"action",
                 QJsonObject{{"on", QJsonObject{{"on", true}}},
                             {"dimming", QJsonObject{{"brightness", 80.0}}},
                             {"color", QJsonObject{{"xy", QJsonObject{{"x", 0.4575}, {"y", 0.4101}}}}}}}});
        byType["scene"].append(QJsonObject{
            {"id", uuid("scene", it.key())},
            {"id_v1", u"/scenes/"_qs + it.key()},
            {"actions", actions},
            {"palette",
             QJsonObject{{"color", QJsonArray{QJsonObject{
                                       {"color", QJsonObject{{"xy", QJsonObject{{"x", 0.6}, {"y", 0.3}}}}},
                                       {"dimming", QJsonObject{{"brightness", 80.0}}}}}},
                         {"dimming", QJsonArray{}},
                         {"color_temperature", QJsonArray{}},
                         {"effects", QJsonArray{}}}},
            {"metadata", QJsonObject{{"name", v1.value(u"name")}}},
            {"group", reference(uuid("group", v1.value(u"group").toString()), "room")},
            {"speed", 0.6},
            {"auto_dynamic", false},
            {"status", QJsonObject{{"active", "inactive"}}},
            {"type", "scene"}});
    }
    QJsonArray all;
    for (const QString& type : order) {
        const QJsonArray& list = byType.value(type);
        for (const QJsonValue resource : list)
            all.append(resource);
        if (perType)
            perType->append({type, QJsonDocument(QJsonObject{{"errors", QJsonArray{}}, {"data", list}})
                                       .toJson(QJsonDocument::Compact)
                                       .size()});
    }
    return QJsonDocument(QJsonObject{{"errors", QJsonArray{}}, {"data", all}}).toJson(QJsonDocument::Compact);
}
