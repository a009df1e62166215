#include "SimulatedResources.h"

#include "SimulatedHome.h"
#include "SimulatedStateChange.h"

#include <QDate>
#include <QSet>
#include <QTime>

#include <QHash>
#include <QJsonValue>

#include <cmath>

namespace {

// The namespace of the simulator's name-based resource ids; any fixed UUID would do.
const QUuid IdNamespace(QStringLiteral("{6c1bb8d2-3f0e-4d6e-9a52-2f0b7e1d4c90}"));

/// Members every event names its resource by; the rest is what can change.
bool isIdentity(const QString& member)
{
    return member == u"id" || member == u"id_v1" || member == u"type" || member == u"owner";
}

QJsonObject xyObject(const QJsonValue& x, const QJsonValue& y)
{
    return {{QStringLiteral("x"), x}, {QStringLiteral("y"), y}};
}

/// A version-1 brightness (1..254) as the per cent the version-2 interface speaks, to two decimals.
double percent(double bri)
{
    return std::round(bri * 10000.0 / 254.0) / 100.0;
}

QJsonObject v1StateAsAction(const QJsonObject& state)
{
    QJsonObject action;
    if (state.contains(u"on"))
        action.insert(QStringLiteral("on"), QJsonObject{{QStringLiteral("on"), state.value(u"on").toBool()}});
    if (state.contains(u"bri"))
        action.insert(QStringLiteral("dimming"),
                      QJsonObject{{QStringLiteral("brightness"), percent(state.value(u"bri").toDouble())}});
    const QJsonArray xy = state.value(u"xy").toArray();
    if (xy.size() == 2)
        action.insert(QStringLiteral("color"),
                      QJsonObject{{QStringLiteral("xy"), xyObject(xy.at(0), xy.at(1))}});
    else if (state.contains(u"ct"))
        action.insert(QStringLiteral("color_temperature"),
                      QJsonObject{{QStringLiteral("mirek"), state.value(u"ct")}});
    return action;
}

// What a colour lamp of current firmware offers; the white ones have no effects.
const char* const ColourEffects[] = {"no_effect", "candle", "fire", "prism", "sparkle", "opal", "glisten"};

class Renderer
{
public:
    explicit Renderer(const SimulatedHome& home) : m_home(home), m_bridgeId(home.bridgeId())
    {
        for (const QString& groupId : home.groupIds()) {
            if (groupType(groupId) == u"room") {
                for (const QJsonValue light : home.group(groupId).value(u"lights").toArray())
                    m_inRoom.insert(light.toString());
            }
        }
    }

    QString id(const QString& type, const QString& address) const
    {
        return SimulatedResources::resourceId(m_bridgeId, type, address).toString(QUuid::WithoutBraces);
    }

    QJsonObject reference(const QString& type, const QString& address) const
    {
        return {{QStringLiteral("rid"), id(type, address)}, {QStringLiteral("rtype"), type}};
    }

    QJsonObject base(const QString& type, const QString& address) const
    {
        return {{QStringLiteral("id"), id(type, address)},
                {QStringLiteral("id_v1"), address},
                {QStringLiteral("type"), type}};
    }

    /// A resource the version-1 interface has nothing for: no "id_v1".
    QJsonObject baseWithoutV1(const QString& type, const QString& address) const
    {
        return {{QStringLiteral("id"), id(type, address)}, {QStringLiteral("type"), type}};
    }

    /// "room", "zone", or empty for the kinds of group the version-2 interface has no resource for.
    QString groupType(const QString& groupId) const
    {
        const QString type = m_home.group(groupId).value(u"type").toString();
        return type == u"Room"   ? QStringLiteral("room")
               : type == u"Zone" ? QStringLiteral("zone")
                                 : QString();
    }

    void addLight(const QString& lightId, SimulatedResources::List* out) const
    {
        const QString address = QStringLiteral("/lights/") + lightId;
        const QJsonObject light = m_home.light(lightId);
        const QJsonObject state = light.value(u"state").toObject();
        const QJsonObject control = light.value(u"capabilities")[u"control"].toObject();
        const QJsonObject owner = reference(QStringLiteral("device"), address);
        const QString archetype =
            light.value(u"config")[u"archetype"].toString(QStringLiteral("classic_bulb"));

        QJsonObject resource = base(QStringLiteral("light"), address);
        resource.insert(QStringLiteral("owner"), owner);
        resource.insert(QStringLiteral("metadata"),
                        QJsonObject{{QStringLiteral("name"), light.value(u"name")},
                                    {QStringLiteral("archetype"), archetype}});
        resource.insert(QStringLiteral("on"),
                        QJsonObject{{QStringLiteral("on"), state.value(u"on").toBool()}});
        resource.insert(QStringLiteral("mode"), QStringLiteral("normal"));
        if (state.contains(u"bri")) {
            // The v1 "mindimlevel" counts in thousandths of the light output, v2 in per cent.
            const double minimum = control.contains(u"mindimlevel")
                                       ? std::round(control.value(u"mindimlevel").toDouble() / 10.0) / 100.0
                                       : 2.0;
            resource.insert(
                QStringLiteral("dimming"),
                QJsonObject{{QStringLiteral("brightness"), percent(state.value(u"bri").toDouble())},
                            {QStringLiteral("min_dim_level"), minimum}});
        }
        const QString colorMode = state.value(u"colormode").toString();
        const QJsonArray xy = state.value(u"xy").toArray();
        if (xy.size() == 2) {
            QJsonObject color{{QStringLiteral("xy"), xyObject(xy.at(0), xy.at(1))}};
            const QString gamutType = control.value(u"colorgamuttype").toString();
            const QJsonArray gamut = control.value(u"colorgamut").toArray();
            if (gamut.size() == 3) {
                QJsonObject corners;
                const char* names[] = {"red", "green", "blue"};
                for (int i = 0; i < 3; ++i)
                    corners.insert(QLatin1String(names[i]),
                                   xyObject(gamut.at(i)[0].toDouble(), gamut.at(i)[1].toDouble()));
                color.insert(QStringLiteral("gamut"), corners);
            }
            color.insert(QStringLiteral("gamut_type"),
                         gamutType == u"A" || gamutType == u"B" || gamutType == u"C"
                             ? gamutType
                             : QStringLiteral("other"));
            resource.insert(QStringLiteral("color"), color);
            QJsonArray effects;
            for (const char* effect : ColourEffects)
                effects.append(QLatin1String(effect));
            resource.insert(QStringLiteral("effects"),
                            QJsonObject{{QStringLiteral("effect_values"), effects},
                                        {QStringLiteral("status"), QStringLiteral("no_effect")},
                                        {QStringLiteral("status_values"), effects}});
        }
        if (state.contains(u"ct")) {
            // While the lamp shows a colour its colour temperature means nothing.
            const bool valid = colorMode.isEmpty() || colorMode == u"ct";
            const SimulatedStateChange::CtRange range = SimulatedStateChange::ctRange(light);
            resource.insert(QStringLiteral("color_temperature"),
                            QJsonObject{{QStringLiteral("mirek"), valid ? state.value(u"ct") : QJsonValue()},
                                        {QStringLiteral("mirek_valid"), valid},
                                        {QStringLiteral("mirek_schema"),
                                         QJsonObject{{QStringLiteral("mirek_minimum"), range.min},
                                                     {QStringLiteral("mirek_maximum"), range.max}}}});
        }
        out->append({QStringLiteral("light ") + address, resource});

        // Version 2 says "unreachable" through the lamp's radio link.
        QJsonObject link = base(QStringLiteral("zigbee_connectivity"), address);
        link.insert(QStringLiteral("owner"), owner);
        link.insert(QStringLiteral("status"), state.value(u"reachable").toBool(true)
                                                  ? QStringLiteral("connected")
                                                  : QStringLiteral("connectivity_issue"));
        link.insert(QStringLiteral("mac_address"), light.value(u"uniqueid").toString().left(23));
        out->append({QStringLiteral("zigbee_connectivity ") + address, link});

        QJsonObject device = base(QStringLiteral("device"), address);
        device.insert(QStringLiteral("product_data"), productData(light, archetype));
        device.insert(QStringLiteral("metadata"), QJsonObject{{QStringLiteral("name"), light.value(u"name")},
                                                              {QStringLiteral("archetype"), archetype}});
        device.insert(QStringLiteral("services"),
                      QJsonArray{reference(QStringLiteral("light"), address),
                                 reference(QStringLiteral("zigbee_connectivity"), address)});
        out->append({QStringLiteral("device ") + address, device});
    }

    /// A switch on batteries: a device with its radio link and its battery, and nothing the version-1
    /// interface would name.
    void addSensor(const QString& sensorId, SimulatedResources::List* out) const
    {
        const QJsonObject sensor = m_home.sensor(sensorId);
        const QJsonObject config = sensor.value(u"config").toObject();
        if (!config.value(u"battery").isDouble())
            return;
        const QString address = QStringLiteral("/sensors/") + sensorId;
        const QJsonObject owner = reference(QStringLiteral("device"), address);

        QJsonObject device = baseWithoutV1(QStringLiteral("device"), address);
        device.insert(QStringLiteral("product_data"),
                      productData(sensor, QStringLiteral("unknown_archetype")));
        device.insert(QStringLiteral("metadata"),
                      QJsonObject{{QStringLiteral("name"), sensor.value(u"name")},
                                  {QStringLiteral("archetype"), QStringLiteral("unknown_archetype")}});
        device.insert(QStringLiteral("services"),
                      QJsonArray{reference(QStringLiteral("zigbee_connectivity"), address),
                                 reference(QStringLiteral("device_power"), address)});
        out->append({QStringLiteral("device ") + address, device});

        QJsonObject link = baseWithoutV1(QStringLiteral("zigbee_connectivity"), address);
        link.insert(QStringLiteral("owner"), owner);
        link.insert(QStringLiteral("status"), config.value(u"reachable").toBool(true)
                                                  ? QStringLiteral("connected")
                                                  : QStringLiteral("connectivity_issue"));
        out->append({QStringLiteral("zigbee_connectivity ") + address, link});

        const int level = config.value(u"battery").toInt();
        QJsonObject power = baseWithoutV1(QStringLiteral("device_power"), address);
        power.insert(QStringLiteral("owner"), owner);
        power.insert(QStringLiteral("power_state"),
                     QJsonObject{{QStringLiteral("battery_state"), level > 20  ? QStringLiteral("normal")
                                                                   : level > 5 ? QStringLiteral("low")
                                                                               : QStringLiteral("critical")},
                                 {QStringLiteral("battery_level"), level}});
        out->append({QStringLiteral("device_power ") + address, power});
    }

    /// The bridge itself: a device holding the "bridge" service.
    void addBridge(SimulatedResources::List* out) const
    {
        const QString address = QStringLiteral("/config");
        const QJsonObject config = m_home.publicConfig();
        QJsonObject device = baseWithoutV1(QStringLiteral("device"), address);
        device.insert(
            QStringLiteral("product_data"),
            QJsonObject{{QStringLiteral("model_id"), config.value(u"modelid")},
                        {QStringLiteral("manufacturer_name"), QStringLiteral("Signify Netherlands B.V.")},
                        {QStringLiteral("product_name"), QStringLiteral("Hue Bridge")},
                        {QStringLiteral("product_archetype"), QStringLiteral("bridge_v2")},
                        {QStringLiteral("certified"), true},
                        {QStringLiteral("software_version"), config.value(u"swversion")}});
        device.insert(QStringLiteral("metadata"),
                      QJsonObject{{QStringLiteral("name"), config.value(u"name")},
                                  {QStringLiteral("archetype"), QStringLiteral("bridge_v2")}});
        device.insert(QStringLiteral("services"), QJsonArray{reference(QStringLiteral("bridge"), address)});
        out->append({QStringLiteral("device ") + address, device});

        QJsonObject bridge = baseWithoutV1(QStringLiteral("bridge"), address);
        bridge.insert(QStringLiteral("owner"), reference(QStringLiteral("device"), address));
        bridge.insert(QStringLiteral("bridge_id"), m_bridgeId.toLower());
        bridge.insert(QStringLiteral("time_zone"),
                      QJsonObject{{QStringLiteral("time_zone"), QStringLiteral("Europe/Amsterdam")}});
        out->append({QStringLiteral("bridge ") + address, bridge});
    }

    void addGroup(const QString& groupId, SimulatedResources::List* out) const
    {
        const QString address = QStringLiteral("/groups/") + groupId;
        const QJsonObject group = m_home.group(groupId);
        const QString type = groupId == u"0" ? QStringLiteral("bridge_home") : groupType(groupId);

        // A group has no state of its own: any lamp on is on, and the brightness is the mean of the lamps
        // that are lit (of all that dim when none is).
        bool anyOn = false;
        double litSum = 0, allSum = 0;
        int lit = 0, all = 0;
        for (const QJsonValue lightId : group.value(u"lights").toArray()) {
            const QJsonObject state = m_home.light(lightId.toString()).value(u"state").toObject();
            const bool on = state.value(u"on").toBool();
            anyOn = anyOn || on;
            if (!state.value(u"bri").isDouble())
                continue;
            const double bri = state.value(u"bri").toDouble();
            allSum += bri;
            ++all;
            if (on) {
                litSum += bri;
                ++lit;
            }
        }
        QJsonObject combined = base(QStringLiteral("grouped_light"), address);
        if (!type.isEmpty())
            combined.insert(QStringLiteral("owner"), reference(type, address));
        combined.insert(QStringLiteral("on"), QJsonObject{{QStringLiteral("on"), anyOn}});
        if (all > 0)
            combined.insert(
                QStringLiteral("dimming"),
                QJsonObject{{QStringLiteral("brightness"), percent(lit > 0 ? litSum / lit : allSum / all)}});
        out->append({QStringLiteral("grouped_light ") + address, combined, !type.isEmpty()});

        if (type == u"bridge_home") {
            // Every room, and every device that is in none.
            QJsonArray children;
            for (const QString& id : m_home.groupIds()) {
                if (groupType(id) == u"room")
                    children.append(reference(QStringLiteral("room"), QStringLiteral("/groups/") + id));
            }
            for (const QString& id : m_home.lightIds()) {
                if (!m_inRoom.contains(id))
                    children.append(reference(QStringLiteral("device"), QStringLiteral("/lights/") + id));
            }
            for (const QString& id : m_home.sensorIds()) {
                if (m_home.sensor(id).value(u"config")[u"battery"].isDouble())
                    children.append(reference(QStringLiteral("device"), QStringLiteral("/sensors/") + id));
            }
            QJsonObject home = base(type, address);
            home.insert(QStringLiteral("children"), children);
            home.insert(QStringLiteral("services"),
                        QJsonArray{reference(QStringLiteral("grouped_light"), address)});
            out->append({type + u' ' + address, home});
            return;
        }
        if (type != u"room" && type != u"zone")
            return;
        // As on a bridge: a room holds devices, a zone holds lights.
        const QString childType = type == u"room" ? QStringLiteral("device") : QStringLiteral("light");
        QJsonArray children;
        for (const QJsonValue lightId : group.value(u"lights").toArray())
            children.append(reference(childType, QStringLiteral("/lights/") + lightId.toString()));
        QJsonObject resource = base(type, address);
        resource.insert(
            QStringLiteral("metadata"),
            QJsonObject{{QStringLiteral("name"), group.value(u"name")},
                        {QStringLiteral("archetype"), archetypeOf(group.value(u"class").toString())}});
        resource.insert(QStringLiteral("children"), children);
        resource.insert(QStringLiteral("services"),
                        QJsonArray{reference(QStringLiteral("grouped_light"), address)});
        out->append({type + u' ' + address, resource});
    }

    void addScene(const QString& sceneId, SimulatedResources::List* out) const
    {
        const QString address = QStringLiteral("/scenes/") + sceneId;
        const QJsonObject scene = m_home.scene(sceneId);
        QJsonObject resource = base(QStringLiteral("scene"), address);
        resource.insert(QStringLiteral("metadata"),
                        QJsonObject{{QStringLiteral("name"), scene.value(u"name")}});
        const QString groupId = scene.value(u"group").toString();
        const QString type = groupId.isEmpty() ? QString() : groupType(groupId);
        if (!type.isEmpty())
            resource.insert(QStringLiteral("group"), reference(type, QStringLiteral("/groups/") + groupId));

        // Each lamp's part, and the colours of those that show one: the palette a dynamic scene plays.
        QJsonArray actions, colours, temperatures;
        const QJsonObject lightStates = scene.value(u"lightstates").toObject();
        for (auto it = lightStates.begin(); it != lightStates.end(); ++it) {
            const QJsonObject action = v1StateAsAction(it.value().toObject());
            actions.append(
                QJsonObject{{QStringLiteral("target"),
                             reference(QStringLiteral("light"), QStringLiteral("/lights/") + it.key())},
                            {QStringLiteral("action"), action}});
            const QJsonObject dimming = action.value(u"dimming").toObject();
            if (action.contains(u"color"))
                colours.append(QJsonObject{{QStringLiteral("color"), action.value(u"color")},
                                           {QStringLiteral("dimming"), dimming}});
            else if (action.contains(u"color_temperature"))
                temperatures.append(
                    QJsonObject{{QStringLiteral("color_temperature"), action.value(u"color_temperature")},
                                {QStringLiteral("dimming"), dimming}});
        }
        resource.insert(QStringLiteral("actions"), actions);
        if (!colours.isEmpty())
            resource.insert(QStringLiteral("palette"),
                            QJsonObject{{QStringLiteral("color"), colours},
                                        {QStringLiteral("dimming"), QJsonArray{}},
                                        {QStringLiteral("color_temperature"), temperatures},
                                        {QStringLiteral("effects"), QJsonArray{}}});
        resource.insert(QStringLiteral("speed"), m_home.sceneSpeed(sceneId));
        resource.insert(QStringLiteral("auto_dynamic"), false);
        resource.insert(QStringLiteral("status"),
                        QJsonObject{{QStringLiteral("active"), m_home.sceneStatus(sceneId)}});
        // A scene of the first interface that names lamps but no room: the version-2 interface has none.
        out->append({QStringLiteral("scene ") + address, resource, !type.isEmpty()});
    }

    /// A room with two scenes or more has a smart scene ("natural light"): its first scene from 7:00, its
    /// second from 20:00.
    void addSmartScene(const QString& groupId, SimulatedResources::List* out) const
    {
        if (groupType(groupId) != u"room")
            return;
        QStringList scenes;
        for (const QString& sceneId : m_home.sceneIds()) {
            if (m_home.scene(sceneId).value(u"group").toString() == groupId && scenes.size() < 2)
                scenes.append(sceneId);
        }
        if (scenes.size() < 2)
            return;
        const QString address = QStringLiteral("/groups/") + groupId;
        const QTime now = QTime::currentTime();
        const int active = now >= QTime(7, 0) && now < QTime(20, 0) ? 0 : 1;
        QJsonArray timeslots;
        for (int i = 0; i < 2; ++i)
            timeslots.append(QJsonObject{
                {QStringLiteral("start_time"),
                 QJsonObject{{QStringLiteral("kind"), QStringLiteral("time")},
                             {QStringLiteral("time"), QJsonObject{{QStringLiteral("hour"), i == 0 ? 7 : 20},
                                                                  {QStringLiteral("minute"), 0},
                                                                  {QStringLiteral("second"), 0}}}}},
                {QStringLiteral("target"),
                 reference(QStringLiteral("scene"), QStringLiteral("/scenes/") + scenes.at(i))}});
        QJsonArray days;
        for (const char* day : {"monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday"})
            days.append(QLatin1String(day));
        const QString today = days.at(QDate::currentDate().dayOfWeek() - 1).toString();

        QJsonObject resource = baseWithoutV1(QStringLiteral("smart_scene"), address);
        resource.insert(QStringLiteral("metadata"),
                        QJsonObject{{QStringLiteral("name"), QStringLiteral("Natural light")}});
        resource.insert(QStringLiteral("group"), reference(QStringLiteral("room"), address));
        resource.insert(QStringLiteral("week_timeslots"),
                        QJsonArray{QJsonObject{{QStringLiteral("timeslots"), timeslots},
                                               {QStringLiteral("recurrence"), days}}});
        resource.insert(
            QStringLiteral("active_timeslot"),
            QJsonObject{{QStringLiteral("timeslot_id"), active}, {QStringLiteral("weekday"), today}});
        resource.insert(QStringLiteral("state"), m_home.isSmartSceneActive(groupId)
                                                     ? QStringLiteral("active")
                                                     : QStringLiteral("inactive"));
        out->append({QStringLiteral("smart_scene ") + address, resource});
    }

private:
    static QJsonObject productData(const QJsonObject& v1, const QString& archetype)
    {
        return {
            {QStringLiteral("model_id"), v1.value(u"modelid")},
            {QStringLiteral("manufacturer_name"),
             v1.value(u"manufacturername").toString(QStringLiteral("Signify Netherlands B.V."))},
            {QStringLiteral("product_name"), v1.value(u"productname").toString(v1.value(u"type").toString())},
            {QStringLiteral("product_archetype"), archetype},
            {QStringLiteral("certified"), v1.value(u"capabilities")[u"certified"].toBool()},
            {QStringLiteral("software_version"), v1.value(u"swversion")}};
    }

    /// "Living room" -> "living_room", as version 2 names a room's kind.
    static QString archetypeOf(const QString& roomClass)
    {
        QString archetype = roomClass.toLower();
        archetype.replace(u' ', u'_');
        return archetype.isEmpty() ? QStringLiteral("other") : archetype;
    }

    const SimulatedHome& m_home;
    QString m_bridgeId;
    QSet<QString> m_inRoom; // lamps of a room
};

QJsonObject container(const QString& type, const QJsonObject& resource, const QString& creationTime)
{
    return {{QStringLiteral("creationtime"), creationTime},
            {QStringLiteral("id"), QUuid::createUuid().toString(QUuid::WithoutBraces)},
            {QStringLiteral("type"), type},
            {QStringLiteral("data"), QJsonArray{resource}}};
}

} // namespace

QUuid SimulatedResources::resourceId(const QString& bridgeId, const QString& type, const QString& address)
{
    return QUuid::createUuidV5(IdNamespace, bridgeId.toUpper() + u' ' + type + u' ' + address);
}

SimulatedResources::List SimulatedResources::render(const SimulatedHome& home)
{
    const Renderer renderer(home);
    List resources;
    for (const QString& id : home.lightIds())
        renderer.addLight(id, &resources);
    renderer.addGroup(QStringLiteral("0"), &resources);
    for (const QString& id : home.groupIds())
        renderer.addGroup(id, &resources);
    for (const QString& id : home.sceneIds())
        renderer.addScene(id, &resources);
    for (const QString& id : home.groupIds())
        renderer.addSmartScene(id, &resources);
    for (const QString& id : home.sensorIds())
        renderer.addSensor(id, &resources);
    renderer.addBridge(&resources);
    return resources;
}

QJsonArray SimulatedResources::changes(const List& before, const List& after, const QString& creationTime)
{
    QHash<QString, const QJsonObject*> earlier;
    for (const Resource& resource : before)
        earlier.insert(resource.key, &resource.object);
    QHash<QString, bool> present;
    for (const Resource& resource : after)
        present.insert(resource.key, true);

    QJsonArray containers;
    for (const Resource& resource : before) {
        if (!present.contains(resource.key)) {
            QJsonObject gone;
            for (const char* member : {"id", "id_v1", "type"})
                gone.insert(QLatin1String(member), resource.object.value(QLatin1String(member)));
            containers.append(container(QStringLiteral("delete"), gone, creationTime));
        }
    }
    for (const Resource& resource : after) {
        const QJsonObject* old = earlier.value(resource.key);
        if (!old) {
            containers.append(container(QStringLiteral("add"), resource.object, creationTime));
            continue;
        }
        QJsonObject update;
        for (auto it = resource.object.begin(); it != resource.object.end(); ++it) {
            const QJsonValue before = old->value(it.key());
            if (isIdentity(it.key()) || before == it.value())
                continue;
            if (!before.isObject() || !it.value().isObject()) {
                update.insert(it.key(), it.value());
                continue;
            }
            // Of an object only what changed, as a bridge tells it ("dimming" without its "min_dim_level"),
            // but a colour temperature always with whether it holds.
            const QJsonObject was = before.toObject();
            const QJsonObject is = it.value().toObject();
            QJsonObject part;
            for (auto member = is.begin(); member != is.end(); ++member) {
                if (was.value(member.key()) != member.value() ||
                    (it.key() == u"color_temperature" && member.key() != u"mirek_schema"))
                    part.insert(member.key(), member.value());
            }
            update.insert(it.key(), part);
        }
        if (update.isEmpty())
            continue;
        for (const char* member : {"id", "id_v1", "type", "owner"}) {
            if (resource.object.contains(QLatin1String(member)))
                update.insert(QLatin1String(member), resource.object.value(QLatin1String(member)));
        }
        containers.append(container(QStringLiteral("update"), update, creationTime));
    }
    return containers;
}
