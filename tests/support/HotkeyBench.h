#pragma once

#include "FakeHotkeyBackend.h"
#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "commands/HomeCommands.h"
#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyActions.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"

#include <QNetworkAccessManager>

#include <memory>

/// What the global shortcuts work with, as in the running program: the shared state on a fresh settings file,
/// one bridge's session with its commands and queue (others may be added), the commands on the home, the
/// twelve actions, and the shortcut store on a back-end of the test's choosing (a fake one unless given).
class HotkeyBench final
{
public:
    explicit HotkeyBench(std::unique_ptr<HotkeyBackend> backend = std::make_unique<FakeHotkeyBackend>())
        : m_homeCommands(m_sessions),
          m_session(m_sessions.add(std::make_unique<BridgeSession>(m_state.settings(), m_network))),
          m_actions(m_sessions, m_state.settings().preferences(), m_homeCommands),
          m_backend(std::move(backend)), m_hotkeys(m_state.store(), *m_backend)
    {
        QObject::connect(&m_session.queue(), &ActionQueue::sent,
                         [this](const ActionQueueItem& item) { m_sent.append(item); });
    }

    /// Points the shared state at a bridge; rooms made afterwards carry its address and key.
    void setBridge(const QString& hostAndPort, const QString& key)
    {
        settings().setHueIP(hostAndPort);
        // Paired in clear, as a bridge of the first generation: the key goes to it over plain HTTP.
        settings().setBridgeContact(QStringLiteral("http"), QStringLiteral("001788FFFE6A3B2C"), {});
        settings().setHueKey(key);
    }
    /// Rooms with these group ids, named "Room <id>" unless `names` says otherwise, off at brightness 100.
    void setRooms(const QStringList& ids, const QStringList& names = {})
    {
        QList<HueGroup> rooms;
        for (qsizetype i = 0; i < ids.size(); ++i)
            rooms.append({.id = QUuid::createUuid(),
                          .group_id = ids.at(i),
                          .name = names.value(i, QStringLiteral("Room ") + ids.at(i)),
                          .brightness = 100,
                          .saturation = 10,
                          .hue = 500});
        settings().home().setGroups(rooms);
    }

    TestSettings& state() { return m_state; }
    /// The sessions: the bench's bridge first; a test adds others.
    BridgeSessions& sessions() { return m_sessions; }
    BridgeLink& settings() { return m_state.settings(); }
    SettingsStore& store() { return m_state.store(); }
    ActionQueue& queue() { return m_session.queue(); }
    HotkeyActions& actions() { return m_actions; }
    GlobalHotkeys& hotkeys() { return m_hotkeys; }
    /// Every change that left the queue, as "groups/1/action {...}" (the path after the key).
    QStringList sent()
    {
        QStringList lines;
        const QString prefix = QStringLiteral("/api/%1/").arg(settings().hueKey());
        for (const ActionQueueItem& item : m_sent)
            lines.append(item.url.path().remove(prefix) + u' ' + QString::fromUtf8(item.body));
        return lines;
    }
    /// The fake back-end, when the bench made it.
    FakeHotkeyBackend& fake() { return static_cast<FakeHotkeyBackend&>(*m_backend); }

private:
    TestSettings m_state;
    BridgeNetwork m_network;
    BridgeSessions m_sessions;
    HomeCommands m_homeCommands;
    BridgeSession& m_session;
    HotkeyActions m_actions;
    std::unique_ptr<HotkeyBackend> m_backend;
    GlobalHotkeys m_hotkeys;
    QList<ActionQueueItem> m_sent;
};
