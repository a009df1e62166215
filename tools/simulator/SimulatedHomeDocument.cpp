#include "SimulatedHomeDocument.h"

#include "SimulatorJson.h"

#include <QJsonArray>

namespace {

bool validId(const QString& id)
{
    return !id.isEmpty() && id.size() <= 64 && !id.contains(QLatin1Char('/'));
}

bool failWith(QString* error, const QString& message)
{
    if (error)
        *error = message;
    return false;
}

// One resource per line: readable, and diffs of a home file stay small.
void writeList(QByteArray& out, const char* name, const SimulatedHomeDocument::Resources& resources)
{
    out += "    \"";
    out += name;
    out += "\": {";
    for (qsizetype i = 0; i < resources.order.size(); ++i) {
        const QString& id = resources.order.at(i);
        out += i ? ",\n        " : "\n        ";
        out += SimulatorJson::quoted(id) + ": " + SimulatorJson::write(resources.items.value(id));
    }
    out += resources.order.isEmpty() ? "},\n" : "\n    },\n";
}

bool checkResources(const SimulatedHomeDocument& document, QString* error)
{
    for (const QString& id : document.lights.order) {
        if (!document.lights.items.value(id).value(QLatin1String("state")).isObject())
            return failWith(error, QStringLiteral("lights/%1 has no \"state\" object").arg(id));
    }
    for (const QString& id : document.groups.order) {
        if (id == QLatin1String("0"))
            return failWith(error,
                            QStringLiteral("groups/0 is the bridge's own group of all lights and cannot "
                                           "be stored"));
        const QJsonValue members = document.groups.items.value(id).value(QLatin1String("lights"));
        if (!members.isArray())
            return failWith(error, QStringLiteral("groups/%1 has no \"lights\" array").arg(id));
        for (const QJsonValue light : members.toArray()) {
            if (!light.isString() || !document.lights.items.contains(light.toString()))
                return failWith(error, QStringLiteral("groups/%1 lists light %2, which does not exist")
                                           .arg(id, SimulatorJson::valueText(light)));
        }
    }
    for (const QString& id : document.scenes.order) {
        const QJsonObject scene = document.scenes.items.value(id);
        const QJsonValue lightStates = scene.value(QLatin1String("lightstates"));
        if (!lightStates.isUndefined() && !lightStates.isObject())
            return failWith(error, QStringLiteral("scenes/%1: \"lightstates\" is not an object").arg(id));
        const QJsonValue sceneLights = scene.value(QLatin1String("lights"));
        if (!sceneLights.isUndefined() && !sceneLights.isArray())
            return failWith(error, QStringLiteral("scenes/%1: \"lights\" is not an array").arg(id));
    }
    return true;
}

bool readUsers(const QJsonValue& value, QList<SimulatedHomeDocument::User>* users, QString* error)
{
    if (!value.isArray())
        return failWith(error, QStringLiteral("\"users\" is not an array"));
    for (const QJsonValue entry : value.toArray()) {
        SimulatedHomeDocument::User user;
        if (entry.isString()) {
            user.name = entry.toString();
        } else {
            user.name = entry.toObject().value(QLatin1String("username")).toString();
            user.deviceType = entry.toObject().value(QLatin1String("devicetype")).toString();
        }
        if (!validId(user.name))
            return failWith(error, QStringLiteral("\"users\" holds %1, which is not a user name")
                                       .arg(SimulatorJson::valueText(entry)));
        users->append(user);
    }
    return true;
}

} // namespace

bool SimulatedHomeDocument::readResources(const QByteArray& json, const QString& name, Resources* out,
                                          QString* error)
{
    QList<SimulatorJson::Member> members;
    QString reason;
    if (!SimulatorJson::readMembers(json, &members, &reason))
        return failWith(error, QStringLiteral("\"%1\" is %2").arg(name, reason));
    Resources resources;
    for (const SimulatorJson::Member& member : std::as_const(members)) {
        if (!validId(member.key))
            return failWith(error, QStringLiteral("%1: \"%2\" is not a usable id").arg(name, member.key));
        if (resources.items.contains(member.key))
            return failWith(error, QStringLiteral("%1: id \"%2\" appears twice").arg(name, member.key));
        const QJsonValue value = SimulatorJson::parseValue(member.json);
        if (!value.isObject())
            return failWith(error, QStringLiteral("%1/%2 is not an object").arg(name, member.key));
        resources.order.append(member.key);
        resources.items.insert(member.key, value.toObject());
    }
    *out = std::move(resources);
    return true;
}

bool SimulatedHomeDocument::read(const QByteArray& text, SimulatedHomeDocument* out, QString* error)
{
    QList<SimulatorJson::Member> members;
    QString reason;
    if (!SimulatorJson::readMembers(text, &members, &reason))
        return failWith(error, QStringLiteral("the home document is %1").arg(reason));

    SimulatedHomeDocument document;
    bool hasUsers = false;
    for (const SimulatorJson::Member& member : std::as_const(members)) {
        const QString& key = member.key;
        if (key == QLatin1String("lights")) {
            if (!readResources(member.json, key, &document.lights, error))
                return false;
        } else if (key == QLatin1String("groups")) {
            if (!readResources(member.json, key, &document.groups, error))
                return false;
        } else if (key == QLatin1String("scenes")) {
            if (!readResources(member.json, key, &document.scenes, error))
                return false;
        } else if (key == QLatin1String("sensors")) {
            if (!readResources(member.json, key, &document.sensors, error))
                return false;
        } else if (key == QLatin1String("config")) {
            const QJsonValue value = SimulatorJson::parseValue(member.json);
            if (!value.isObject())
                return failWith(error, QStringLiteral("\"config\" is not an object"));
            document.config = value.toObject();
        } else if (key == QLatin1String("users")) {
            if (!readUsers(SimulatorJson::parseValue(member.json), &document.users, error))
                return false;
            hasUsers = true;
        }
        // Anything else (rules, schedules, ... of a full state dump) is not simulated and skipped.
    }
    if (!checkResources(document, error))
        return false;
    if (!hasUsers) {
        const QJsonObject whitelist = document.config.value(QLatin1String("whitelist")).toObject();
        for (auto it = whitelist.begin(); it != whitelist.end(); ++it) {
            if (validId(it.key()))
                document.users.append(
                    {it.key(), it.value().toObject().value(QLatin1String("name")).toString(),
                     it.value().toObject().value(QLatin1String("create date")).toString(),
                     it.value().toObject().value(QLatin1String("last use date")).toString()});
        }
    }
    // Users live in "users"; the whitelist is generated from them when the config is served.
    document.config.remove(QStringLiteral("whitelist"));
    if (out)
        *out = std::move(document);
    return true;
}

bool SimulatedHomeDocument::write(QByteArray* text, QString* error) const
{
    for (const auto& [name, resources] :
         {std::pair{"lights", &lights}, std::pair{"groups", &groups}, std::pair{"scenes", &scenes}}) {
        if (resources->isRaw)
            return failWith(error, QStringLiteral("\"%1\" holds raw text that is not a list of resources")
                                       .arg(QLatin1String(name)));
    }
    QByteArray out("{\n");
    writeList(out, "lights", lights);
    writeList(out, "groups", groups);
    writeList(out, "scenes", scenes);
    if (!sensors.order.isEmpty())
        writeList(out, "sensors", sensors);
    out += "    \"config\": " + SimulatorJson::write(config) + ",\n";
    out += "    \"users\": [";
    for (qsizetype i = 0; i < users.size(); ++i) {
        const User& user = users.at(i);
        out += i ? ",\n        " : "\n        ";
        out += SimulatorJson::write(QJsonObject{{QStringLiteral("username"), user.name},
                                                {QStringLiteral("devicetype"), user.deviceType}});
    }
    out += users.isEmpty() ? "]\n}\n" : "\n    ]\n}\n";
    if (text)
        *text = out;
    return true;
}
