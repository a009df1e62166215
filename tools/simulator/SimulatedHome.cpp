#include "SimulatedHome.h"

#include "SimulatedStateChange.h"
#include "SimulatorJson.h"

#include <QDateTime>

#include <algorithm>

namespace {

QString bridgeTime(const QDateTime& time)
{
    return time.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

QString utcNow()
{
    return bridgeTime(QDateTime::currentDateTimeUtc());
}

QJsonObject defaultGroupZeroAction()
{
    QJsonObject action = SimulatedStateChange::fullState();
    action.insert(QStringLiteral("bri"), 254);
    action.insert(QStringLiteral("ct"), 366);
    return action;
}

/// A PUT of a light's or scene's attributes: only "name" (1 to 32 characters) may change, as on a bridge.
QJsonArray renameResource(const QString& resource, const QString& id, const QJsonObject& body,
                          QJsonObject& record)
{
    QJsonArray answer;
    for (auto it = body.begin(); it != body.end(); ++it) {
        const QString address = QStringLiteral("/%1/%2/%3").arg(resource, id, it.key());
        if (it.key() != QLatin1String("name")) {
            answer.append(SimulatorJson::error(6, address,
                                               QStringLiteral("parameter, %1, not available").arg(it.key())));
        } else if (!it.value().isString() || it.value().toString().isEmpty() ||
                   it.value().toString().size() > 32) {
            answer.append(SimulatorJson::error(7, address,
                                               QStringLiteral("invalid value, %1, for parameter, name")
                                                   .arg(SimulatorJson::valueText(it.value()))));
        } else {
            record.insert(it.key(), it.value());
            answer.append(SimulatorJson::success(address, it.value()));
        }
    }
    if (body.isEmpty())
        answer.append(SimulatorJson::error(5, QStringLiteral("/%1/%2").arg(resource, id),
                                           QStringLiteral("invalid/missing parameters in body")));
    return answer;
}

} // namespace

SimulatedHome::SimulatedHome(SimulatedDefaultHome::Floor floor)
    : m_floor(floor), m_ipAddress(QStringLiteral("127.0.0.1"))
{
    loadDefault();
}

void SimulatedHome::loadDefault()
{
    const QString keptId = bridgeId();
    QString error;
    const bool loaded = load(SimulatedDefaultHome::document(m_floor), &error);
    Q_ASSERT_X(loaded, "SimulatedHome::loadDefault", qPrintable(error));
    // The built-in homes name a bridge only to start with: a bridge whose home is reset stays the bridge it
    // was (a test may have named it, so as to be a second bridge beside the first).
    if (!keptId.isEmpty())
        setBridgeId(keptId);
}

bool SimulatedHome::load(const QByteArray& text, QString* error)
{
    SimulatedHomeDocument document;
    if (!SimulatedHomeDocument::read(text, &document, error))
        return false;
    m_lights = std::move(document.lights);
    m_groups = std::move(document.groups);
    m_scenes = std::move(document.scenes);
    m_sensors = std::move(document.sensors);
    m_sceneStatus.clear();
    m_sceneSpeed.clear();
    m_activeSmartScenes.clear();
    const QString keptId = bridgeId();
    m_config = document.config;
    // Every bridge has an id: a home file that names none keeps this bridge's.
    if (!m_config.contains(u"bridgeid") && !keptId.isEmpty())
        setBridgeId(keptId);
    m_groupZeroAction = defaultGroupZeroAction();
    // A loaded home never locks out an application that paired before.
    for (const User& user : std::as_const(document.users)) {
        if (!hasUser(user.name))
            m_users.append({user.name,
                            user.deviceType.isEmpty() ? QStringLiteral("unknown#home") : user.deviceType,
                            user.created.isEmpty() ? utcNow() : user.created,
                            user.lastUsed.isEmpty() ? utcNow() : user.lastUsed});
    }
    updateGroupStates();
    return true;
}

bool SimulatedHome::save(QByteArray* text, QString* error) const
{
    SimulatedHomeDocument document;
    document.lights = m_lights;
    document.groups = m_groups;
    document.scenes = m_scenes;
    document.sensors = m_sensors;
    document.config = m_config;
    document.users = m_users;
    return document.write(text, error);
}

void SimulatedHome::clear()
{
    m_lights = {};
    m_groups = {};
    m_scenes = {};
    m_sensors = {};
    m_sceneStatus.clear();
    m_activeSmartScenes.clear();
    m_groupZeroAction = defaultGroupZeroAction();
}

bool SimulatedHome::setRaw(const QString& resource, const QByteArray& body)
{
    Resources* target = resource == QLatin1String("lights")   ? &m_lights
                        : resource == QLatin1String("groups") ? &m_groups
                        : resource == QLatin1String("scenes") ? &m_scenes
                                                              : nullptr;
    if (!target)
        return false;
    Resources resources;
    if (!SimulatedHomeDocument::readResources(body, resource, &resources)) {
        resources.raw = body;
        resources.isRaw = true;
    }
    *target = std::move(resources);
    updateGroupStates();
    return true;
}

QByteArray SimulatedHome::listJson(const Resources& resources, const QString& stripMember) const
{
    if (resources.isRaw)
        return resources.raw;
    QList<QPair<QString, QByteArray>> members;
    members.reserve(resources.order.size());
    for (const QString& id : resources.order) {
        QJsonObject item = resources.items.value(id);
        if (!stripMember.isEmpty())
            item.remove(stripMember);
        members.append({id, SimulatorJson::write(item)});
    }
    return SimulatorJson::writeObject(members);
}

QByteArray SimulatedHome::lightsJson() const
{
    return listJson(m_lights);
}

QByteArray SimulatedHome::groupsJson() const
{
    return listJson(m_groups);
}

QByteArray SimulatedHome::scenesJson() const
{
    return listJson(m_scenes, QStringLiteral("lightstates"));
}

QByteArray SimulatedHome::sensorsJson() const
{
    return listJson(m_sensors);
}

QJsonObject SimulatedHome::light(const QString& id) const
{
    return m_lights.items.value(id);
}

QJsonObject SimulatedHome::group(const QString& id) const
{
    if (id != QLatin1String("0"))
        return m_groups.items.value(id);
    bool allOn = !m_lights.order.isEmpty();
    bool anyOn = false;
    for (const QString& lightId : m_lights.order) {
        const bool on =
            light(lightId).value(QLatin1String("state")).toObject().value(QLatin1String("on")).toBool();
        allOn = allOn && on;
        anyOn = anyOn || on;
    }
    return QJsonObject{{QStringLiteral("name"), QStringLiteral("Group 0")},
                       {QStringLiteral("lights"), QJsonArray::fromStringList(m_lights.order)},
                       {QStringLiteral("sensors"), QJsonArray{}},
                       {QStringLiteral("type"), QStringLiteral("LightGroup")},
                       {QStringLiteral("state"),
                        QJsonObject{{QStringLiteral("all_on"), allOn}, {QStringLiteral("any_on"), anyOn}}},
                       {QStringLiteral("recycle"), false},
                       {QStringLiteral("action"), m_groupZeroAction}};
}

QJsonObject SimulatedHome::scene(const QString& id) const
{
    return m_scenes.items.value(id);
}

bool SimulatedHome::hasLight(const QString& id) const
{
    return m_lights.items.contains(id);
}

bool SimulatedHome::hasGroup(const QString& id) const
{
    return id == QLatin1String("0") || m_groups.items.contains(id);
}

bool SimulatedHome::hasScene(const QString& id) const
{
    return m_scenes.items.contains(id);
}

QStringList SimulatedHome::groupMembers(const QString& groupId) const
{
    if (groupId == QLatin1String("0"))
        return m_lights.order;
    QStringList members;
    for (const QJsonValue id : m_groups.items.value(groupId).value(QLatin1String("lights")).toArray()) {
        if (hasLight(id.toString()))
            members.append(id.toString());
    }
    return members;
}

void SimulatedHome::changeLight(const QString& id, const QJsonObject& parameters, QJsonArray* answer)
{
    if (!hasLight(id))
        return;
    QJsonObject light = m_lights.items.value(id);
    QJsonObject state = light.value(QLatin1String("state")).toObject();
    const SimulatedStateChange::CtRange range = SimulatedStateChange::ctRange(light);
    QStringList applied;
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        const QString address = QStringLiteral("/lights/%1/state/%2").arg(id, it.key());
        QJsonValue reported;
        switch (SimulatedStateChange::apply(state, it.key(), it.value(), range, &reported)) {
        case SimulatedStateChange::Outcome::Applied:
            applied.append(it.key());
            if (answer)
                answer->append(SimulatorJson::success(address, reported));
            break;
        case SimulatedStateChange::Outcome::NotAvailable:
            if (answer)
                answer->append(SimulatorJson::error(
                    6, address, QStringLiteral("parameter, %1, not available").arg(it.key())));
            break;
        case SimulatedStateChange::Outcome::InvalidValue:
            if (answer)
                answer->append(
                    SimulatorJson::error(7, address,
                                         QStringLiteral("invalid value, %1, for parameter, %2")
                                             .arg(SimulatorJson::valueText(it.value()), it.key())));
            break;
        }
    }
    SimulatedStateChange::updateColorMode(state, applied);
    light.insert(QStringLiteral("state"), state);
    m_lights.items.insert(id, light);
}

QJsonArray SimulatedHome::setLightState(const QString& id, const QJsonObject& body)
{
    QJsonArray answer;
    if (body.isEmpty()) {
        answer.append(SimulatorJson::error(5, QStringLiteral("/lights/%1/state").arg(id),
                                           QStringLiteral("invalid/missing parameters in body")));
        return answer;
    }
    changeLight(id, body, &answer);
    stopScenesOf({id});
    updateGroupStates();
    return answer;
}

QJsonArray SimulatedHome::setLightAttributes(const QString& id, const QJsonObject& body)
{
    return renameResource(QStringLiteral("lights"), id, body, m_lights.items[id]);
}

void SimulatedHome::applySceneStates(const QString& sceneId)
{
    const QJsonObject lightStates = scene(sceneId).value(QLatin1String("lightstates")).toObject();
    for (auto it = lightStates.begin(); it != lightStates.end(); ++it)
        changeLight(it.key(), it.value().toObject(), nullptr);
}

QJsonArray SimulatedHome::setGroupAction(const QString& id, const QJsonObject& body, bool skipUnreachable)
{
    QJsonArray answer;
    const QString base = QStringLiteral("/groups/%1/action/").arg(id);
    if (body.isEmpty()) {
        answer.append(
            SimulatorJson::error(5, base.chopped(1), QStringLiteral("invalid/missing parameters in body")));
        return answer;
    }
    // A recall comes first, so that other parameters of the same request (a brightness) win over the scene.
    if (body.contains(QLatin1String("scene"))) {
        const QJsonValue sceneId = body.value(QLatin1String("scene"));
        if (sceneId.isString() && hasScene(sceneId.toString())) {
            recallScene(sceneId.toString(), QStringLiteral("static"));
            answer.append(SimulatorJson::success(base + QStringLiteral("scene"), sceneId));
        } else {
            answer.append(SimulatorJson::error(7, base + QStringLiteral("scene"),
                                               QStringLiteral("invalid value, %1, for parameter, scene")
                                                   .arg(SimulatorJson::valueText(sceneId))));
        }
    }

    QJsonObject action =
        id == QLatin1String("0") ? m_groupZeroAction : group(id).value(QLatin1String("action")).toObject();
    QJsonObject forwarded;
    QStringList applied;
    for (auto it = body.begin(); it != body.end(); ++it) {
        if (it.key() == QLatin1String("scene"))
            continue;
        const QString address = base + it.key();
        // Checked against a lamp that has everything: a group passes each lamp what it can take.
        QJsonObject check = SimulatedStateChange::fullState();
        QJsonValue reported;
        switch (SimulatedStateChange::apply(check, it.key(), it.value(), {}, &reported)) {
        case SimulatedStateChange::Outcome::Applied:
            forwarded.insert(it.key(), it.value());
            applied.append(it.key());
            SimulatedStateChange::apply(action, it.key(), it.value(), {});
            answer.append(SimulatorJson::success(address, reported));
            break;
        case SimulatedStateChange::Outcome::NotAvailable:
            answer.append(SimulatorJson::error(6, address,
                                               QStringLiteral("parameter, %1, not available").arg(it.key())));
            break;
        case SimulatedStateChange::Outcome::InvalidValue:
            answer.append(SimulatorJson::error(7, address,
                                               QStringLiteral("invalid value, %1, for parameter, %2")
                                                   .arg(SimulatorJson::valueText(it.value()), it.key())));
            break;
        }
    }
    if (!forwarded.isEmpty()) {
        QStringList changed;
        for (const QString& lightId : groupMembers(id)) {
            if (skipUnreachable && !isLightReachable(lightId))
                continue;
            changeLight(lightId, forwarded, nullptr);
            changed.append(lightId);
        }
        stopScenesOf(changed);
    }
    SimulatedStateChange::updateColorMode(action, applied);
    if (id == QLatin1String("0")) {
        m_groupZeroAction = action;
    } else {
        QJsonObject stored = m_groups.items.value(id);
        stored.insert(QStringLiteral("action"), action);
        m_groups.items.insert(id, stored);
    }
    updateGroupStates();
    return answer;
}

QJsonArray SimulatedHome::setGroupAttributes(const QString& id, const QJsonObject& body)
{
    QJsonArray answer;
    if (id == QLatin1String("0")) {
        answer.append(
            SimulatorJson::error(305, QStringLiteral("/groups/0"),
                                 QStringLiteral("It is not allowed to update or delete group of this "
                                                "type")));
        return answer;
    }
    QJsonObject group = m_groups.items.value(id);
    for (auto it = body.begin(); it != body.end(); ++it) {
        const QString address = QStringLiteral("/groups/%1/%2").arg(id, it.key());
        const QJsonValue value = it.value();
        bool valid = false;
        if (it.key() == QLatin1String("name")) {
            valid = value.isString() && !value.toString().isEmpty() && value.toString().size() <= 32;
        } else if (it.key() == QLatin1String("class")) {
            valid = value.isString() && !value.toString().isEmpty();
        } else if (it.key() == QLatin1String("lights")) {
            valid = value.isArray();
            for (const QJsonValue light : value.toArray())
                valid = valid && light.isString() && hasLight(light.toString());
        } else {
            answer.append(SimulatorJson::error(6, address,
                                               QStringLiteral("parameter, %1, not available").arg(it.key())));
            continue;
        }
        if (valid) {
            group.insert(it.key(), value);
            answer.append(SimulatorJson::success(address, value));
        } else {
            answer.append(SimulatorJson::error(7, address,
                                               QStringLiteral("invalid value, %1, for parameter, %2")
                                                   .arg(SimulatorJson::valueText(value), it.key())));
        }
    }
    if (body.isEmpty())
        answer.append(SimulatorJson::error(5, QStringLiteral("/groups/%1").arg(id),
                                           QStringLiteral("invalid/missing parameters in body")));
    m_groups.items.insert(id, group);
    updateGroupStates();
    return answer;
}

QJsonArray SimulatedHome::setSceneAttributes(const QString& id, const QJsonObject& body)
{
    return renameResource(QStringLiteral("scenes"), id, body, m_scenes.items[id]);
}

bool SimulatedHome::setLightReachable(const QString& id, bool reachable)
{
    if (!hasLight(id))
        return false;
    QJsonObject light = m_lights.items.value(id);
    QJsonObject state = light.value(QLatin1String("state")).toObject();
    state.insert(QStringLiteral("reachable"), reachable);
    light.insert(QStringLiteral("state"), state);
    m_lights.items.insert(id, light);
    return true;
}

bool SimulatedHome::isLightReachable(const QString& id) const
{
    return light(id).value(u"state").toObject().value(u"reachable").toBool(true);
}

QString SimulatedHome::sceneStatus(const QString& sceneId) const
{
    return m_sceneStatus.value(sceneId, QStringLiteral("inactive"));
}

void SimulatedHome::recallScene(const QString& sceneId, const QString& status)
{
    applySceneStates(sceneId);
    QStringList lights = groupMembers(scene(sceneId).value(u"group").toString());
    for (const QJsonValue light : scene(sceneId).value(u"lights").toArray())
        lights.append(light.toString());
    stopScenesOf(lights);
    m_sceneStatus.insert(sceneId, status);
}

double SimulatedHome::sceneSpeed(const QString& sceneId) const
{
    // New scenes play at a middle pace.
    return m_sceneSpeed.value(sceneId, 0.5);
}

void SimulatedHome::setSceneSpeed(const QString& sceneId, double speed)
{
    m_sceneSpeed.insert(sceneId, std::clamp(speed, 0.0, 1.0));
}

void SimulatedHome::setSmartSceneActive(const QString& groupId, bool active)
{
    if (active)
        m_activeSmartScenes.insert(groupId);
    else
        m_activeSmartScenes.remove(groupId);
}

void SimulatedHome::stopScenesOf(const QStringList& lightIds)
{
    if (lightIds.isEmpty())
        return;
    auto holdsAny = [&lightIds](const QJsonArray& lights) {
        return std::any_of(lights.begin(), lights.end(), [&lightIds](const QJsonValue& light) {
            return lightIds.contains(light.toString());
        });
    };
    for (auto it = m_sceneStatus.begin(); it != m_sceneStatus.end();) {
        if (holdsAny(scene(it.key()).value(u"lights").toArray()))
            it = m_sceneStatus.erase(it);
        else
            ++it;
    }
    for (auto it = m_activeSmartScenes.begin(); it != m_activeSmartScenes.end();) {
        if (holdsAny(group(*it).value(u"lights").toArray()))
            it = m_activeSmartScenes.erase(it);
        else
            ++it;
    }
}

void SimulatedHome::updateGroupStates()
{
    for (const QString& id : std::as_const(m_groups.order)) {
        bool allOn = true;
        bool anyOn = false;
        const QStringList members = groupMembers(id);
        for (const QString& lightId : members) {
            const bool on =
                light(lightId).value(QLatin1String("state")).toObject().value(QLatin1String("on")).toBool();
            allOn = allOn && on;
            anyOn = anyOn || on;
        }
        QJsonObject group = m_groups.items.value(id);
        group.insert(QStringLiteral("state"),
                     QJsonObject{{QStringLiteral("all_on"), allOn && !members.isEmpty()},
                                 {QStringLiteral("any_on"), anyOn}});
        QJsonObject action = group.value(QLatin1String("action")).toObject();
        if (action.contains(QLatin1String("on"))) {
            action.insert(QStringLiteral("on"), anyOn);
            group.insert(QStringLiteral("action"), action);
        }
        m_groups.items.insert(id, group);
    }
    m_groupZeroAction.insert(
        QStringLiteral("on"),
        group(QStringLiteral("0")).value(QLatin1String("state")).toObject().value(QLatin1String("any_on")));
}

QJsonObject SimulatedHome::fullConfig(bool linkButtonPressed) const
{
    QJsonObject config = m_config;
    QJsonObject whitelist;
    for (const User& user : m_users) {
        whitelist.insert(user.name, QJsonObject{{QStringLiteral("last use date"), user.lastUsed},
                                                {QStringLiteral("create date"), user.created},
                                                {QStringLiteral("name"), user.deviceType}});
    }
    config.insert(QStringLiteral("whitelist"), whitelist);
    config.insert(QStringLiteral("linkbutton"), linkButtonPressed);
    config.insert(QStringLiteral("ipaddress"), m_ipAddress);
    config.insert(QStringLiteral("UTC"), utcNow());
    config.insert(QStringLiteral("localtime"), bridgeTime(QDateTime::currentDateTime()));
    return config;
}

QJsonObject SimulatedHome::publicConfig() const
{
    QJsonObject config;
    for (const char* key : {"name", "datastoreversion", "swversion", "apiversion", "mac", "bridgeid",
                            "factorynew", "replacesbridgeid", "modelid", "starterkitid"}) {
        if (m_config.contains(QLatin1String(key)))
            config.insert(QLatin1String(key), m_config.value(QLatin1String(key)));
    }
    return config;
}

void SimulatedHome::setIpAddress(const QString& address)
{
    m_ipAddress = address;
}

QString SimulatedHome::bridgeId() const
{
    return m_config.value(u"bridgeid").toString().toUpper();
}

void SimulatedHome::setBridgeId(const QString& id)
{
    m_config.insert(QStringLiteral("bridgeid"), id.toUpper());
    // A bridge id is its hardware address with FFFE in the middle.
    const QString hex = id.toLower();
    if (hex.size() == 16) {
        QStringList bytes;
        for (const QString& part : {hex.left(6), hex.right(6)})
            for (int i = 0; i < 6; i += 2)
                bytes << part.mid(i, 2);
        m_config.insert(QStringLiteral("mac"), bytes.join(u':'));
    }
}

bool SimulatedHome::hasUser(const QString& name) const
{
    return std::any_of(m_users.begin(), m_users.end(),
                       [&name](const User& user) { return user.name == name; });
}

void SimulatedHome::addUser(const QString& name, const QString& deviceType)
{
    for (User& user : m_users) {
        if (user.name == name) {
            user.deviceType = deviceType;
            return;
        }
    }
    const QString now = utcNow();
    m_users.append({name, deviceType, now, now});
}

bool SimulatedHome::removeUser(const QString& name)
{
    return m_users.removeIf([&name](const User& user) { return user.name == name; }) > 0;
}

void SimulatedHome::touchUser(const QString& name)
{
    for (User& user : m_users) {
        if (user.name == name)
            user.lastUsed = utcNow();
    }
}
