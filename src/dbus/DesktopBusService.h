#pragma once

#include "model/HueGroup.h"
#include "model/HueLight.h"
#include <QDBusConnection>

#include <QDBusContext>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>

class BridgeHome;
class BridgeSession;
class BridgeSessions;
class HomeCommands;

/// The running application on the session bus (interface com.brambleworks.Glowdeck at
/// /com/brambleworks/Glowdeck): its live lamps, rooms and scenes as records (`RecordFields`), changes that go
/// through the same commands and queues as the window's, so they are merged, paced and shown at once, the
/// whole-home actions and the switch-off timer, and a signal per change of the state. An argument it cannot
/// use is answered with a D-Bus error that says why; nothing is sent then. Ids are those of the window; with
/// several bridges a `bridge_id` says which one is meant.
class DesktopBusService final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopBusService)
    Q_CLASSINFO("D-Bus Interface", "com.brambleworks.Glowdeck")
    Q_PROPERTY(QString Version READ version)
    Q_PROPERTY(int RecordsVersion READ recordsVersion)
    Q_PROPERTY(QString SettingsFile READ settingsFile)

public:
    DesktopBusService(BridgeSessions& sessions, HomeCommands& commands, QString settingsFile,
                      QObject* parent = nullptr);
    ~DesktopBusService() override;

    /// Offers the interface on `bus` and takes the application's name there. False, with the reason in
    /// `problem`, when the bus is not there or another program holds the name (another Glowdeck with other
    /// settings); the application runs on without it.
    bool publish(QDBusConnection bus, QString* problem);

    QString version() const;
    int recordsVersion() const;
    QString settingsFile() const { return m_settingsFile; }

public Q_SLOTS:
    Q_SCRIPTABLE QList<QVariantMap> ListLights();
    Q_SCRIPTABLE QList<QVariantMap> ListRooms();
    Q_SCRIPTABLE QList<QVariantMap> ListScenes();
    /// Each served bridge as ConnectionChanged tells it.
    Q_SCRIPTABLE QList<QVariantMap> ListBridges();
    /// `change`: on (b), brightness (0-100 per cent), brightness_step (-100 to 100 per cent), xy (two
    /// doubles), mirek, hue (0-65535); bridge_id (s) picks the bridge.
    Q_SCRIPTABLE void SetLight(const QString& id, const QVariantMap& change);
    Q_SCRIPTABLE void SetRoom(const QString& id, const QVariantMap& change);
    /// `options`: bridge_id (s) picks the bridge.
    Q_SCRIPTABLE void RecallScene(const QString& id, const QVariantMap& options);
    Q_SCRIPTABLE void AllOn();
    Q_SCRIPTABLE void AllOff();
    /// Returns when the lights go off, as ISO 8601 local time with its offset.
    Q_SCRIPTABLE QString SwitchOffIn(int minutes);
    Q_SCRIPTABLE void CancelSwitchOff();
    Q_SCRIPTABLE void OpenWindow();

Q_SIGNALS:
    /// The lamps that changed, each with only the fields that changed (and its lamp_id and bridge_id).
    Q_SCRIPTABLE void LightsChanged(const QList<QVariantMap>& lights);
    /// The rooms and zones that changed, each with only the fields that changed (and group_id, bridge_id).
    Q_SCRIPTABLE void RoomsChanged(const QList<QVariantMap>& rooms);
    /// A bridge's connection: bridge_id, name, connected, reach, live_updates, error.
    Q_SCRIPTABLE void ConnectionChanged(const QVariantMap& bridge);

    /// OpenWindow was called; the application shows its window.
    void windowRequested();

private:
    struct Change;
    /// The records of one bridge as the signals last told them, so that only what differs is told.
    struct Told
    {
        QHash<QString, HueLight> lights; ///< by lamp id
        QHash<QString, HueGroup> rooms;  ///< by group id
    };

    void watch(BridgeSession* session);
    void forget(BridgeSession* session);
    void onLightsChanged(BridgeSession* session);
    void onRoomsChanged(BridgeSession* session);
    QVariantMap connectionOf(const BridgeSession& session) const;

    /// The sessions a call may act on: all, or the one its bridge_id names (an error reply when none).
    bool sessionsFor(const QVariantMap& options, QList<BridgeSession*>& sessions);
    /// Reads a change; false after an error reply.
    bool readChange(const QVariantMap& fields, bool room, Change& change);
    /// Finds the one record `id` names among `lists`; false after an error reply.
    template <typename Record>
    bool findOne(const QList<QList<Record>>& lists, const QString& id, const QString& what, qsizetype& bridge,
                 qsizetype& index);
    void fail(const QString& name, const QString& message);

    BridgeSessions& m_sessions;
    HomeCommands& m_commands;
    QString m_settingsFile;
    QHash<const BridgeSession*, Told> m_told;
};
