#include "SimulatedResources.h"

#include "SimulatedHome.h"

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

class Renderer
{
public:
    explicit Renderer(const SimulatedHome& home) : m_home(home), m_bridgeId(home.bridgeId()) {}

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
        const QJsonObject owner = reference(QStringLiteral("device"), address);

        QJsonObject resource = base(QStringLiteral("light"), address);
        resource.insert(QStringLiteral("owner"), owner);
        resource.insert(QStringLiteral("metadata"),
                        QJsonObject{{QStringLiteral("name"), light.value(u"name")}});
        resource.insert(QStringLiteral("on"),
                        QJsonObject{{QStringLiteral("on"), state.value(u"on").toBool()}});
        if (state.contains(u"bri")) {
            // Per cent, to two decimals, as the bridge reports it.
            const double percent = std::round(state.value(u"bri").toDouble() * 10000.0 / 254.0) / 100.0;
            resource.insert(QStringLiteral("dimming"), QJsonObject{{QStringLiteral("brightness"), percent}});
        }
        const QString colorMode = state.value(u"colormode").toString();
        const QJsonArray xy = state.value(u"xy").toArray();
        if (xy.size() == 2)
            resource.insert(
                QStringLiteral("color"),
                QJsonObject{{QStringLiteral("xy"),
                             QJsonObject{{QStringLiteral("x"), xy.at(0)}, {QStringLiteral("y"), xy.at(1)}}}});
        if (state.contains(u"ct")) {
            // While the lamp shows a colour its colour temperature means nothing.
            const bool valid = colorMode.isEmpty() || colorMode == u"ct";
            resource.insert(QStringLiteral("color_temperature"),
                            QJsonObject{{QStringLiteral("mirek"), valid ? state.value(u"ct") : QJsonValue()},
                                        {QStringLiteral("mirek_valid"), valid}});
        }
        out->append({QStringLiteral("light ") + address, resource});

        // Version 2 says "unreachable" through the lamp's radio link.
        QJsonObject link = base(QStringLiteral("zigbee_connectivity"), address);
        link.insert(QStringLiteral("owner"), owner);
        link.insert(QStringLiteral("status"), state.value(u"reachable").toBool(true)
                                                  ? QStringLiteral("connected")
                                                  : QStringLiteral("connectivity_issue"));
        out->append({QStringLiteral("zigbee_connectivity ") + address, link});
    }

    void addGroup(const QString& groupId, SimulatedResources::List* out) const
    {
        const QString address = QStringLiteral("/groups/") + groupId;
        const QJsonObject group = m_home.group(groupId);
        const QString type = groupId == u"0" ? QStringLiteral("bridge_home") : groupType(groupId);

        QJsonObject combined = base(QStringLiteral("grouped_light"), address);
        if (!type.isEmpty())
            combined.insert(QStringLiteral("owner"), reference(type, address));
        combined.insert(QStringLiteral("on"),
                        QJsonObject{{QStringLiteral("on"), group.value(u"state")[u"any_on"].toBool()}});
        const QJsonValue bri = group.value(u"action")[u"bri"];
        if (bri.isDouble())
            combined.insert(QStringLiteral("dimming"),
                            QJsonObject{{QStringLiteral("brightness"),
                                         std::round(bri.toDouble() * 10000.0 / 254.0) / 100.0}});
        out->append({QStringLiteral("grouped_light ") + address, combined});

        if (type != u"room" && type != u"zone")
            return;
        // As on a bridge: a room holds devices, a zone holds lights.
        const QString childType = type == u"room" ? QStringLiteral("device") : QStringLiteral("light");
        QJsonArray children;
        for (const QJsonValue lightId : group.value(u"lights").toArray())
            children.append(reference(childType, QStringLiteral("/lights/") + lightId.toString()));
        QJsonObject resource = base(type, address);
        resource.insert(QStringLiteral("metadata"),
                        QJsonObject{{QStringLiteral("name"), group.value(u"name")}});
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
        out->append({QStringLiteral("scene ") + address, resource});
    }

private:
    const SimulatedHome& m_home;
    QString m_bridgeId;
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
            if (!isIdentity(it.key()) && old->value(it.key()) != it.value())
                update.insert(it.key(), it.value());
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
