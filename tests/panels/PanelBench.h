#pragma once

#include "MouseDrag.h"
#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTest>

#include <memory>

/// What the panels talk to, as in the running program: the shared state on a fresh settings file, the real
/// commands and queue. What the commands put on the wire is their own tests' business: the bench keeps what
/// leaves the queue, and the requests go to a loopback port where nobody listens.
class PanelBench final
{
public:
    PanelBench()
    {
        m_network = std::make_unique<BridgeNetwork>();
        m_queue = std::make_unique<ActionQueue>(m_state.settings(), *m_network);
        m_commands = std::make_unique<BridgeCommands>(m_state.settings(), *m_queue);
        QObject::connect(m_queue.get(), &ActionQueue::sent,
                         [this](const ActionQueueItem& item) { m_sent.append(item); });
        settings().setHueIP(QStringLiteral("127.0.0.1:9"));
        // Paired in clear, as a bridge of the first generation: the key goes to it over plain HTTP.
        settings().setBridgeContact(QStringLiteral("http"), QStringLiteral("001788FFFE6A3B2C"), {});
        settings().setHueKey(m_key);
    }

    BridgeLink& settings() { return m_state.settings(); }
    SettingsStore& store() { return m_state.store(); }
    BridgeCommands& commands() { return *m_commands; }

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
                .ct_max = 500};
    }

    /// The bodies of the changes that left the queue for @p target, e.g. "lights/3/state".
    QList<QJsonObject> sentTo(const QString& target) const
    {
        QList<QJsonObject> bodies;
        const QString path = QStringLiteral("/api/%1/%2").arg(m_key, target);
        for (const ActionQueueItem& item : m_sent) {
            if (item.url.path() == path)
                bodies.append(QJsonDocument::fromJson(item.body).object());
        }
        return bodies;
    }
    /// Every change that left the queue.
    QList<ActionQueueItem> sent() const { return m_sent; }

    /// Every queued change has been sent and answered (the queue only starts once something was enqueued).
    bool settled()
    {
        return m_queue->requestsInFlight() == 0 && !m_queue->isProcessing() && m_queue->pending().isEmpty();
    }

private:
    QString m_key = QStringLiteral("panel-bench-key");
    QList<ActionQueueItem> m_sent;
    TestSettings m_state;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeCommands> m_commands;
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
