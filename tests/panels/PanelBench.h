#pragma once

#include "MouseDrag.h"
#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/HueHelper.h"
#include "simulator/BridgeSimulator.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTest>

#include <memory>

/// What the panels talk to, as in the running program: the shared state on a fresh settings file, the real
/// commands and queue, and a simulated bridge on loopback that records what reaches it.
class PanelBench final
{
public:
    PanelBench()
    {
        m_network = std::make_unique<BridgeNetwork>();
        m_queue = std::make_unique<ActionQueue>(m_state.settings(), *m_network);
        m_helper = std::make_unique<HueHelper>(m_state.settings(), *m_queue);
    }

    /// Starts the bridge and points the shared state at it.
    bool start()
    {
        if (!m_bridge.listen())
            return false;
        settings().setHueIP(m_bridge.hostAndPort());
        settings().setBridgeContact(QStringLiteral("http"), {}, {});
        m_key = m_bridge.addUser();
        settings().setHueKey(m_key);
        return true;
    }

    AppSettings& settings() { return m_state.settings(); }
    SettingsStore& store() { return m_state.store(); }
    HueHelper& helper() { return *m_helper; }
    BridgeSimulator& bridge() { return m_bridge; }

    HueLight light(const QString& lampId, bool color, bool ambient)
    {
        return {.lamp_id = lampId,
                .name = QStringLiteral("Lamp %1").arg(lampId),
                .allows_color = color,
                .allows_ambient = ambient,
                .is_on = true,
                .brightness = 100,
                .hue = 1000,
                .saturation = 140,
                .color_temperature = 300,
                .ct_min = 153,
                .ct_max = 454,
                .hue_ip = settings().bridgeEndpoint(),
                .hue_key = settings().hueKey(),
                .unique_id = QStringLiteral("00:17:88:01:00:00:00:%1-0b").arg(lampId)};
    }

    HueGroup room(const QString& groupId, const QStringList& members)
    {
        return {.id = QUuid::createUuid(),
                .group_id = groupId,
                .name = QStringLiteral("Room %1").arg(groupId),
                .lights = members,
                .type = QStringLiteral("Room"),
                .is_on = true,
                .brightness = 100,
                .saturation = 77,
                .ct_min = 153,
                .ct_max = 500,
                .hue_ip = settings().bridgeEndpoint(),
                .hue_key = settings().hueKey()};
    }

    /// The PUT requests that reached the bridge for @p target, e.g. "lights/3/state".
    QList<SimulatedRequest> requestsTo(const QString& target) const
    {
        QList<SimulatedRequest> matching;
        const QString path = QStringLiteral("/api/%1/%2").arg(m_key, target);
        for (const SimulatedRequest& request : m_bridge.requests()) {
            if (request.method == "PUT" && request.path == path)
                matching.append(request);
        }
        return matching;
    }

    /// Every queued change has been sent and answered (the queue only starts once something was enqueued).
    bool settled()
    {
        return m_queue->requestsInFlight() == 0 && !m_queue->isProcessing() &&
               settings().actionQueue().isEmpty();
    }

private:
    BridgeSimulator m_bridge;
    QString m_key;
    TestSettings m_state;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<HueHelper> m_helper;
};

/// The child of @p parent whose class is named @p className (the last one, if several).
inline QWidget* childOfClass(QWidget* parent, const QString& className)
{
    QWidget* found = nullptr;
    for (auto* candidate : parent->findChildren<QWidget*>()) {
        if (QString::fromLatin1(candidate->metaObject()->className()) == className)
            found = candidate;
    }
    return found;
}

/// The keys of a command's body whose values the light's or room's record does not show.
template <typename Record>
QStringList unshownFields(const Record& record, const QJsonObject& body)
{
    const QJsonObject shown{{"bri", record.brightness},
                            {"hue", record.hue},
                            {"sat", record.saturation},
                            {"ct", record.color_temperature},
                            {"on", record.is_on}};
    QStringList unshown;
    for (auto it = body.begin(); it != body.end(); ++it) {
        if (it.key() != u"transitiontime" && shown.value(it.key()) != it.value())
            unshown << it.key();
    }
    return unshown;
}
