#include "SimulatedApi.h"

#include "SimulatedHome.h"
#include "SimulatedSchedules.h"
#include "SimulatorJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>

#include <algorithm>

namespace {

constexpr qint64 LinkButtonMilliseconds = 30'000;

bool hasSuccess(const QJsonArray& items)
{
    return std::any_of(items.begin(), items.end(), [](const QJsonValue& item) {
        return item.toObject().contains(QLatin1String("success"));
    });
}

} // namespace

bool SimulatedApi::parseObject(const QByteArray& rawBody, QJsonObject* object)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(rawBody, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    *object = document.object();
    return true;
}

SimulatedApi::SimulatedApi(SimulatedHome& home, SimulatedSchedules& schedules)
    : m_home(home), m_schedules(schedules)
{}

void SimulatedApi::pressLinkButton()
{
    m_linkButtonPressed.start();
}

void SimulatedApi::setAcceptPairingAtOnce(bool accept)
{
    m_acceptPairingAtOnce = accept;
}

bool SimulatedApi::linkButtonPressed() const
{
    return m_linkButtonPressed.isValid() && m_linkButtonPressed.elapsed() < LinkButtonMilliseconds;
}

QString SimulatedApi::newUserName() const
{
    static const char alphabet[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    QString name;
    do {
        name.clear();
        for (int i = 0; i < 40; ++i)
            name += QLatin1Char(alphabet[QRandomGenerator::global()->bounded(int(sizeof(alphabet) - 1))]);
    } while (m_home.hasUser(name));
    return name;
}

SimulatedApi::Answer SimulatedApi::handle(const QByteArray& method, const QString& path,
                                          const QByteArray& rawBody)
{
    const QStringList segments = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (segments.isEmpty() || segments.first() != QLatin1String("api"))
        return {404,
                SimulatorJson::errorAnswer(3, path, QStringLiteral("resource, %1, not available").arg(path))};
    if (segments.size() == 1) {
        if (method == "POST")
            return pair(rawBody);
        if (method == "GET")
            return {200,
                    SimulatorJson::errorAnswer(1, QStringLiteral("/"), QStringLiteral("unauthorized user"))};
        return {200, SimulatorJson::errorAnswer(4, QStringLiteral("/"),
                                                QStringLiteral("method, %1, not available for resource, /")
                                                    .arg(QString::fromLatin1(method)))};
    }

    const QString user = segments.at(1);
    const QStringList rest = segments.mid(2);
    if (!m_home.hasUser(user)) {
        // A bridge tells anybody its public config; that is how applications recognise a bridge.
        if (method == "GET" && (rest == QStringList{QStringLiteral("config")} ||
                                (rest.isEmpty() && user == QLatin1String("config"))))
            return {200, SimulatorJson::write(m_home.publicConfig())};
        return {200, SimulatorJson::errorAnswer(1, QLatin1Char('/') + rest.join(QLatin1Char('/')),
                                                QStringLiteral("unauthorized user"))};
    }
    m_home.touchUser(user);
    return userRequest(method, rest, rawBody);
}

SimulatedApi::Answer SimulatedApi::handleForAnyUser(const QByteArray& method, const QString& address,
                                                    const QByteArray& rawBody)
{
    return userRequest(method, address.split(QLatin1Char('/'), Qt::SkipEmptyParts), rawBody);
}

SimulatedApi::Answer SimulatedApi::pair(const QByteArray& rawBody)
{
    QJsonObject body;
    if (!parseObject(rawBody, &body))
        return {200, SimulatorJson::errorAnswer(2, QString(), QStringLiteral("body contains invalid json"))};
    const QJsonValue deviceType = body.value(QLatin1String("devicetype"));
    if (deviceType.isUndefined())
        return {200, SimulatorJson::errorAnswer(5, QString(),
                                                QStringLiteral("invalid/missing parameters in body"))};
    if (!deviceType.isString() || deviceType.toString().isEmpty() || deviceType.toString().size() > 40)
        return {200, SimulatorJson::errorAnswer(7, QStringLiteral("/devicetype"),
                                                QStringLiteral("invalid value, %1, for parameter, devicetype")
                                                    .arg(SimulatorJson::valueText(deviceType)))};
    if (!m_acceptPairingAtOnce && !linkButtonPressed())
        return {200, SimulatorJson::errorAnswer(101, QString(), QStringLiteral("link button not pressed"))};

    const QString name = newUserName();
    m_home.addUser(name, deviceType.toString());
    QJsonObject success{{QStringLiteral("username"), name}};
    if (body.value(QLatin1String("generateclientkey")).toBool()) {
        QString key;
        for (int i = 0; i < 32; ++i)
            key += QString::number(QRandomGenerator::global()->bounded(16), 16).toUpper();
        success.insert(QStringLiteral("clientkey"), key);
    }
    return {200, SimulatorJson::write(QJsonArray{QJsonObject{{QStringLiteral("success"), success}}}), true};
}

QByteArray SimulatedApi::fullState() const
{
    return SimulatorJson::writeObject({
        {QStringLiteral("lights"), m_home.lightsJson()},
        {QStringLiteral("groups"), m_home.groupsJson()},
        {QStringLiteral("config"), SimulatorJson::write(m_home.fullConfig(linkButtonPressed()))},
        {QStringLiteral("schedules"), m_schedules.json()},
        {QStringLiteral("scenes"), m_home.scenesJson()},
        {QStringLiteral("rules"), QByteArrayLiteral("{}")},
        {QStringLiteral("sensors"), m_home.sensorsJson()},
        {QStringLiteral("resourcelinks"), QByteArrayLiteral("{}")},
    });
}

SimulatedApi::Answer SimulatedApi::userRequest(const QByteArray& method, const QStringList& rest,
                                               const QByteArray& rawBody)
{
    const QString address = QLatin1Char('/') + rest.join(QLatin1Char('/'));
    const Answer notAvailable{
        200,
        SimulatorJson::errorAnswer(3, address, QStringLiteral("resource, %1, not available").arg(address))};
    const Answer wrongMethod{200, SimulatorJson::errorAnswer(4, address,
                                                             QStringLiteral("method, %1, not available for "
                                                                            "resource, %2")
                                                                 .arg(QString::fromLatin1(method), address))};
    const bool get = method == "GET";
    const bool put = method == "PUT";
    auto json = [](const QJsonValue& value) { return Answer{200, SimulatorJson::write(value)}; };
    // Changes need a JSON object body; their answer tells whether anything changed.
    auto change = [&](auto&& apply) -> Answer {
        QJsonObject body;
        if (!parseObject(rawBody, &body))
            return {200,
                    SimulatorJson::errorAnswer(2, address, QStringLiteral("body contains invalid json"))};
        const QJsonArray items = apply(body);
        return {200, SimulatorJson::write(items), hasSuccess(items)};
    };

    if (rest.isEmpty())
        return get ? Answer{200, fullState()} : wrongMethod;
    const QString& resource = rest.at(0);
    const QString id = rest.value(1);

    if (resource == QLatin1String("lights")) {
        if (rest.size() == 1) {
            if (get)
                return {200, m_home.lightsJson()};
            // A search for new lamps finds none, but is accepted like on a bridge.
            if (method == "POST")
                return json(
                    QJsonArray{QJsonObject{{QStringLiteral("success"),
                                            QJsonObject{{QStringLiteral("/lights"),
                                                         QStringLiteral("Searching for new devices")}}}}});
            return wrongMethod;
        }
        if (rest.size() == 2 && id == QLatin1String("new"))
            return get ? json(QJsonObject{{QStringLiteral("lastscan"), QStringLiteral("none")}})
                       : wrongMethod;
        if (!m_home.hasLight(id) || rest.size() > 3 ||
            (rest.size() == 3 && rest.at(2) != QLatin1String("state")))
            return notAvailable;
        if (rest.size() == 2)
            return get ? json(m_home.light(id))
                   : put
                       ? change([&](const QJsonObject& body) { return m_home.setLightAttributes(id, body); })
                       : wrongMethod;
        return put ? change([&](const QJsonObject& body) { return m_home.setLightState(id, body); })
                   : wrongMethod;
    }

    if (resource == QLatin1String("groups")) {
        if (rest.size() == 1)
            return get ? Answer{200, m_home.groupsJson()} : wrongMethod;
        if (!m_home.hasGroup(id) || rest.size() > 3 ||
            (rest.size() == 3 && rest.at(2) != QLatin1String("action")))
            return notAvailable;
        if (rest.size() == 2)
            return get ? json(m_home.group(id))
                   : put
                       ? change([&](const QJsonObject& body) { return m_home.setGroupAttributes(id, body); })
                       : wrongMethod;
        return put ? change([&](const QJsonObject& body) { return m_home.setGroupAction(id, body); })
                   : wrongMethod;
    }

    if (resource == QLatin1String("scenes")) {
        if (rest.size() == 1)
            return get ? Answer{200, m_home.scenesJson()} : wrongMethod;
        if (rest.size() > 2 || !m_home.hasScene(id))
            return notAvailable;
        return get   ? json(m_home.scene(id))
               : put ? change([&](const QJsonObject& body) { return m_home.setSceneAttributes(id, body); })
                     : wrongMethod;
    }

    if (resource == QLatin1String("schedules")) {
        if (rest.size() == 1)
            return get ? Answer{200, m_schedules.json()}
                   : method == "POST"
                       ? change([&](const QJsonObject& body) { return m_schedules.create(body); })
                       : wrongMethod;
        if (rest.size() > 2 || !m_schedules.contains(id))
            return notAvailable;
        if (get)
            return json(m_schedules.schedule(id));
        if (method == "DELETE")
            return {200, SimulatorJson::write(m_schedules.remove(id)), true};
        return wrongMethod;
    }

    if (resource == QLatin1String("config")) {
        if (rest.size() == 1)
            return get ? json(m_home.fullConfig(linkButtonPressed())) : wrongMethod;
        if (rest.size() == 3 && rest.at(1) == QLatin1String("whitelist") && m_home.hasUser(rest.at(2))) {
            if (method != "DELETE")
                return wrongMethod;
            m_home.removeUser(rest.at(2));
            const QJsonObject deleted{
                {QStringLiteral("success"), QStringLiteral("/config/whitelist/%1 deleted").arg(rest.at(2))}};
            return {200, SimulatorJson::write(QJsonArray{deleted}), true};
        }
        return notAvailable;
    }

    if (resource == QLatin1String("sensors")) {
        if (rest.size() == 1)
            return get ? Answer{200, m_home.sensorsJson()} : wrongMethod;
        if (rest.size() > 2 || m_home.sensor(id).isEmpty())
            return notAvailable;
        return get ? json(m_home.sensor(id)) : wrongMethod;
    }
    // Not simulated, but present on every bridge: empty lists.
    if (resource == QLatin1String("rules") || resource == QLatin1String("resourcelinks")) {
        if (rest.size() > 1)
            return notAvailable;
        return get ? Answer{200, QByteArrayLiteral("{}")} : wrongMethod;
    }
    return wrongMethod;
}
