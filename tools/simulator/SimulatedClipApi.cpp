#include "SimulatedClipApi.h"

#include "SimulatedHome.h"
#include "SimulatedResources.h"
#include "SimulatorJson.h"

#include <QJsonArray>

#include <cmath>

namespace {

const QString ClipPrefix = QStringLiteral("/clip/v2");

// Every kind of resource a bridge of current firmware lists, simulated or not: the others read as empty.
const char* const KnownTypes[] = {"light",
                                  "device",
                                  "zigbee_connectivity",
                                  "device_power",
                                  "room",
                                  "zone",
                                  "grouped_light",
                                  "bridge_home",
                                  "scene",
                                  "smart_scene",
                                  "bridge",
                                  "button",
                                  "relative_rotary",
                                  "motion",
                                  "camera_motion",
                                  "temperature",
                                  "light_level",
                                  "grouped_motion",
                                  "grouped_light_level",
                                  "contact",
                                  "tamper",
                                  "entertainment",
                                  "entertainment_configuration",
                                  "behavior_script",
                                  "behavior_instance",
                                  "geofence_client",
                                  "geolocation",
                                  "homekit",
                                  "matter",
                                  "matter_fabric",
                                  "zgp_connectivity",
                                  "wifi_connectivity",
                                  "device_software_update",
                                  "zigbee_device_discovery",
                                  "service_group",
                                  "bell_button",
                                  "speaker",
                                  "convenience_area_motion",
                                  "security_area_motion",
                                  "motion_area_candidate",
                                  "motion_area_configuration"};

QByteArray errors(const QStringList& descriptions, const QJsonArray& data = {})
{
    QJsonArray list;
    for (const QString& description : descriptions)
        list.append(QJsonObject{{QStringLiteral("description"), description}});
    return SimulatorJson::write(
        QJsonObject{{QStringLiteral("errors"), list}, {QStringLiteral("data"), data}});
}

SimulatedClipApi::Answer failure(int status, const QString& description)
{
    return {status, errors({description})};
}

QJsonArray written(const QString& id, const QString& type)
{
    return QJsonArray{QJsonObject{{QStringLiteral("rid"), id}, {QStringLiteral("rtype"), type}}};
}

bool number(const QJsonValue& value, double minimum, double maximum, double* out)
{
    if (!value.isDouble() || !std::isfinite(value.toDouble()) || value.toDouble() < minimum ||
        value.toDouble() > maximum)
        return false;
    *out = value.toDouble();
    return true;
}

/// A per cent of brightness as the first interface's 1..254.
int bri(double percent)
{
    return std::clamp(int(std::lround(percent * 254.0 / 100.0)), 1, 254);
}

/// The version-1 state parameters that do what the version-2 @p body asks of a light or grouped light;
/// false with the bridge's wording in @p error for a bad value.
bool translate(const QJsonObject& body, QJsonObject* parameters, QString* error)
{
    auto invalid = [error](const char* what) {
        *error = QStringLiteral("invalid value for %1").arg(QLatin1String(what));
        return false;
    };
    double value = 0;
    for (auto it = body.begin(); it != body.end(); ++it) {
        const QString& key = it.key();
        const QJsonObject part = it.value().toObject();
        if (key == u"type" || key == u"alert" || key == u"identify" || key == u"effects" ||
            key == u"effects_v2" || key == u"signaling" || key == u"timed_effects" || key == u"powerup" ||
            key == u"gradient") {
            continue; // taken, and nothing the simulated lamps keep
        }
        if (!it.value().isObject())
            return invalid(qPrintable(key));
        if (key == u"on") {
            if (!part.value(u"on").isBool())
                return invalid("on");
            parameters->insert(QStringLiteral("on"), part.value(u"on"));
        } else if (key == u"dimming") {
            if (!number(part.value(u"brightness"), 0, 100, &value))
                return invalid("brightness");
            parameters->insert(QStringLiteral("bri"), bri(value));
        } else if (key == u"dimming_delta" || key == u"color_temperature_delta") {
            const bool dimming = key == u"dimming_delta";
            const QString action = part.value(u"action").toString();
            if (action != u"up" && action != u"down" && action != u"stop")
                return invalid("action");
            if (action == u"stop")
                continue;
            if (!number(part.value(dimming ? u"brightness_delta" : u"mirek_delta"), 0, dimming ? 100 : 347,
                        &value))
                return invalid(dimming ? "brightness_delta" : "mirek_delta");
            const int step = dimming ? std::max(1, int(std::lround(value * 254.0 / 100.0))) : int(value);
            parameters->insert(dimming ? QStringLiteral("bri_inc") : QStringLiteral("ct_inc"),
                               action == u"up" ? step : -step);
        } else if (key == u"color") {
            const QJsonObject xy = part.value(u"xy").toObject();
            double x = 0, y = 0;
            if (!number(xy.value(u"x"), 0, 1, &x) || !number(xy.value(u"y"), 0, 1, &y))
                return invalid("xy");
            parameters->insert(QStringLiteral("xy"), QJsonArray{x, y});
        } else if (key == u"color_temperature") {
            if (!number(part.value(u"mirek"), 153, 500, &value) || std::floor(value) != value)
                return invalid("mirek");
            parameters->insert(QStringLiteral("ct"), int(value));
        } else if (key == u"dynamics") {
            if (part.contains(u"duration")) {
                if (!number(part.value(u"duration"), 0, 6 * 3600 * 1000, &value))
                    return invalid("duration");
                parameters->insert(QStringLiteral("transitiontime"),
                                   int(std::min(65535L, std::lround(value / 100))));
            }
            if (part.contains(u"speed") && !number(part.value(u"speed"), 0, 1, &value))
                return invalid("speed");
        } else {
            *error = QStringLiteral("unknown attribute %1").arg(key);
            return false;
        }
    }
    return true;
}

} // namespace

SimulatedClipApi::SimulatedClipApi(SimulatedHome& home) : m_home(home) {}

bool SimulatedClipApi::isClipPath(const QString& path)
{
    return path == ClipPrefix || path.startsWith(ClipPrefix + u'/');
}

void SimulatedClipApi::setBusy(int status, int milliseconds, qint64 nowMs)
{
    m_busyStatus = status;
    m_busySpellMs = std::max(0, milliseconds);
    m_busyUntilMs = m_busySpellMs > 0 && nowMs >= 0 ? nowMs + m_busySpellMs : -1;
}

void SimulatedClipApi::setWriteError(int status, const QString& description, int times, const QString& id)
{
    m_errorStatus = status;
    m_errorDescription = description;
    m_errorTimes = times;
    m_errorId = id;
}

SimulatedClipApi::Answer SimulatedClipApi::handle(const QByteArray& method, const QString& path,
                                                  const QByteArray& key, const QByteArray& rawBody,
                                                  qint64 nowMs)
{
    if (!m_home.hasUser(QString::fromUtf8(key)))
        return failure(403, QStringLiteral("unauthorized user"));
    m_home.touchUser(QString::fromUtf8(key));
    const QStringList rest = path.mid(ClipPrefix.size()).split(u'/', Qt::SkipEmptyParts);
    const bool known = !rest.isEmpty() && rest.first() == u"resource" && rest.size() <= 3 &&
                       (rest.size() == 1 ||
                        std::any_of(std::begin(KnownTypes), std::end(KnownTypes),
                                    [&rest](const char* type) { return rest.at(1) == QLatin1String(type); }));
    if (!known)
        return failure(404, QStringLiteral("Not Found"));
    if (method == "GET")
        return read(rest);
    if (method == "PUT" && rest.size() == 3)
        return write(rest.at(1), rest.at(2), rawBody, nowMs);
    return failure(405, QStringLiteral("method not allowed"));
}

SimulatedClipApi::Answer SimulatedClipApi::read(const QStringList& rest) const
{
    const QString type = rest.value(1);
    const QString id = rest.value(2);
    QByteArray data = "[";
    bool found = false;
    for (const SimulatedResources::Resource& resource : SimulatedResources::render(m_home)) {
        if (!resource.listed || (!type.isEmpty() && resource.object.value(u"type").toString() != type) ||
            (!id.isEmpty() && resource.object.value(u"id").toString() != id))
            continue;
        if (found)
            data += ',';
        data += SimulatorJson::write(resource.object);
        found = true;
    }
    if (!id.isEmpty() && !found)
        return failure(404, QStringLiteral("Not Found"));
    return {200, R"({"errors":[],"data":)" + data + "]}"};
}

SimulatedClipApi::Answer SimulatedClipApi::write(const QString& type, const QString& id,
                                                 const QByteArray& rawBody, qint64 nowMs)
{
    if (type != u"light" && type != u"grouped_light" && type != u"scene" && type != u"smart_scene")
        return failure(405, QStringLiteral("method not allowed"));
    QString address;
    for (const SimulatedResources::Resource& resource : SimulatedResources::render(m_home)) {
        if (resource.object.value(u"id").toString() == id &&
            resource.object.value(u"type").toString() == type)
            address = resource.key.section(u' ', 1);
    }
    if (address.isEmpty())
        return failure(404, QStringLiteral("Not Found"));

    if (m_busySpellMs > 0 && m_busyUntilMs < 0)
        m_busyUntilMs = nowMs + m_busySpellMs; // this write is taken, and starts the spell
    else if (m_busyUntilMs >= 0 && nowMs < m_busyUntilMs)
        return failure(m_busyStatus, m_busyStatus == 503 ? QStringLiteral("service unavailable")
                                                         : QStringLiteral("too many requests"));
    if (m_errorTimes != 0 && (m_errorId.isEmpty() || m_errorId == id)) {
        if (m_errorTimes > 0)
            --m_errorTimes;
        return failure(m_errorStatus, m_errorDescription);
    }
    if (m_paceEnforced) {
        // A light takes about ten commands a second, a group about one, whoever sends them.
        const qint64 spacing = type == u"light" ? 100 : 1000;
        const qint64 last = m_lastWriteMs.value(id, -1);
        if (last >= 0 && nowMs - last < spacing)
            return failure(429, QStringLiteral("too many requests"));
        m_lastWriteMs.insert(id, nowMs);
    }

    QJsonObject body;
    if (!SimulatedApi::parseObject(rawBody, &body))
        return failure(400, QStringLiteral("body contains invalid json"));
    if (type == u"scene")
        return writeScene(address, body);
    if (type == u"smart_scene")
        return writeSmartScene(address, body);
    return writeLights(type, id, address, body);
}

SimulatedClipApi::Answer SimulatedClipApi::writeLights(const QString& type, const QString& id,
                                                       const QString& address, const QJsonObject& body)
{
    QJsonObject parameters;
    QString error;
    if (!translate(body, &parameters, &error))
        return failure(400, error);
    if (parameters.isEmpty() || (parameters.size() == 1 && parameters.contains(u"transitiontime")))
        return {200, errors({}, written(id, type))};

    const QString v1Id = address.section(u'/', 2);
    if (type == u"light") {
        // A lamp is asked only what it can do: a plug has no brightness, a white lamp no colour.
        const QJsonObject state = m_home.light(v1Id).value(u"state").toObject();
        for (const auto& [parameter, attribute, what] :
             {std::tuple("bri", "bri", "dimming"), std::tuple("bri_inc", "bri", "dimming"),
              std::tuple("xy", "xy", "color"), std::tuple("ct", "ct", "color_temperature"),
              std::tuple("ct_inc", "ct", "color_temperature")}) {
            if (parameters.contains(QLatin1String(parameter)) && !state.contains(QLatin1String(attribute)))
                return failure(400,
                               QStringLiteral("device (%1) does not support %2")
                                   .arg(m_home.light(v1Id).value(u"name").toString(), QLatin1String(what)));
        }
        m_home.setLightState(v1Id, parameters);
        return {200, errors({}, written(id, type)), true};
    }

    // A group's lamps that cannot be reached stay as they are; the answer names them.
    QStringList unreachable;
    if (m_partialSuccess) {
        const QJsonArray members = v1Id == u"0" ? QJsonArray::fromStringList(m_home.lightIds())
                                                : m_home.group(v1Id).value(u"lights").toArray();
        for (const QJsonValue light : members) {
            if (!m_home.isLightReachable(light.toString()))
                unreachable.append(QStringLiteral("device (%1) is not reachable")
                                       .arg(m_home.light(light.toString()).value(u"name").toString()));
        }
    }
    m_home.setGroupAction(v1Id, parameters, m_partialSuccess);
    return {unreachable.isEmpty() ? 200 : 207, errors(unreachable, written(id, type)), true};
}

SimulatedClipApi::Answer SimulatedClipApi::writeScene(const QString& address, const QJsonObject& body)
{
    const QString sceneId = address.section(u'/', 2);
    const QString id = SimulatedResources::resourceId(m_home.bridgeId(), QStringLiteral("scene"), address)
                           .toString(QUuid::WithoutBraces);
    double speed = 0;
    if (body.contains(u"speed") && !number(body.value(u"speed"), 0, 1, &speed))
        return failure(400, QStringLiteral("invalid value for speed"));
    QString action;
    if (body.contains(u"recall")) {
        action = body.value(u"recall")[u"action"].toString();
        if (action != u"active" && action != u"static" && action != u"dynamic_palette")
            return failure(400, QStringLiteral("invalid value for action"));
    }
    if (action.isEmpty() && !body.contains(u"speed"))
        return failure(400, QStringLiteral("body contains no change"));
    if (body.contains(u"speed"))
        m_home.setSceneSpeed(sceneId, speed);
    if (!action.isEmpty())
        m_home.recallScene(sceneId, action == u"dynamic_palette" ? action : QStringLiteral("static"));
    return {200, errors({}, written(id, QStringLiteral("scene"))), true};
}

SimulatedClipApi::Answer SimulatedClipApi::writeSmartScene(const QString& address, const QJsonObject& body)
{
    const QString groupId = address.section(u'/', 2);
    const QString action = body.value(u"recall")[u"action"].toString();
    if (action != u"activate" && action != u"deactivate")
        return failure(400, QStringLiteral("invalid value for action"));
    const QString id =
        SimulatedResources::resourceId(m_home.bridgeId(), QStringLiteral("smart_scene"), address)
            .toString(QUuid::WithoutBraces);
    if (action == u"activate") {
        // It plays the scene of the time of day at once.
        for (const SimulatedResources::Resource& resource : SimulatedResources::render(m_home)) {
            if (resource.key != QStringLiteral("smart_scene ") + address)
                continue;
            const int slot = resource.object.value(u"active_timeslot")[u"timeslot_id"].toInt();
            const QString target =
                resource.object.value(u"week_timeslots")[0][u"timeslots"][slot][u"target"][u"rid"].toString();
            for (const QString& sceneId : m_home.sceneIds()) {
                if (SimulatedResources::resourceId(m_home.bridgeId(), QStringLiteral("scene"),
                                                   QStringLiteral("/scenes/") + sceneId)
                        .toString(QUuid::WithoutBraces) == target)
                    m_home.recallScene(sceneId, QStringLiteral("static"));
            }
        }
    }
    m_home.setSmartSceneActive(groupId, action == u"activate");
    return {200, errors({}, written(id, QStringLiteral("smart_scene"))), true};
}
