#pragma once

#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

/// One bridge's home as the views show it: its lamps, rooms and zones, and scenes, and how the connection to
/// it stands. Every field notifies on change; views redraw from these signals. Learnt anew in every run,
/// never stored. Lives on the main thread and is only touched there.
class BridgeHome final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeHome)

    Q_PROPERTY(QList<HueLight> lights READ lights WRITE setLights NOTIFY lightsChanged)
    Q_PROPERTY(QList<HueGroup> groups READ groups WRITE setGroups NOTIFY groupsChanged)
    Q_PROPERTY(QList<HueScene> scenes READ scenes WRITE setScenes NOTIFY scenesChanged)
    Q_PROPERTY(
        bool bridgeConnected READ bridgeConnected WRITE setBridgeConnected NOTIFY bridgeConnectedChanged)
    Q_PROPERTY(Reach bridgeReach READ bridgeReach WRITE setBridgeReach NOTIFY bridgeReachChanged)
    Q_PROPERTY(QString connectionErrorMessage READ connectionErrorMessage WRITE setConnectionErrorMessage
                   NOTIFY connectionErrorMessageChanged)

public:
    /// What the bridge did when it was last asked.
    enum class Reach
    {
        unknown,      ///< not asked yet, or forgotten with the key
        answering,    ///< it answered as a bridge
        notAnswering, ///< nothing answered at its address
        refused,      ///< something answered but did not prove to be the bridge: nothing was sent to it
    };
    Q_ENUM(Reach)

    /// The home of the bridge with this id (empty while the bridge has not proved one).
    explicit BridgeHome(const QString& bridgeId = QString(), QObject* parent = nullptr);

    QString bridgeId() const { return m_bridgeId; }
    void setBridgeId(const QString& bridgeId) { m_bridgeId = bridgeId; }

    QList<HueLight> lights() const { return m_lights; }
    QList<HueGroup> groups() const { return m_groups; }
    QList<HueScene> scenes() const { return m_scenes; }
    bool bridgeConnected() const { return m_bridgeConnected; }
    Reach bridgeReach() const { return m_bridgeReach; }
    /// The bridge pushes its changes (its event stream is open), so it is read only now and then; otherwise
    /// it is read every 3.5 s.
    bool liveUpdates() const { return m_liveUpdates; }
    QString connectionErrorMessage() const { return m_connectionErrorMessage; }

    void setLights(const QList<HueLight>& lights);
    void setGroups(const QList<HueGroup>& groups);
    void setScenes(const QList<HueScene>& scenes);
    void setBridgeConnected(bool connected);
    void setBridgeReach(Reach reach);
    void setLiveUpdates(bool live);
    void setConnectionErrorMessage(const QString& message);

    /// Changes the first light with this id in place; returns false when there is none.
    bool updateLight(const QString& lampId, const std::function<void(HueLight&)>& change);
    /// Changes the first room with this id in place; returns false when there is none.
    bool updateGroup(const QString& groupId, const std::function<void(HueGroup&)>& change);

Q_SIGNALS:
    void lightsChanged();
    void groupsChanged();
    void scenesChanged();
    void bridgeConnectedChanged();
    void bridgeReachChanged();
    void liveUpdatesChanged();
    void connectionErrorMessageChanged();

private:
    template <typename T>
    void assign(T& field, const T& value, void (BridgeHome::*changed)());

    QString m_bridgeId;
    QList<HueLight> m_lights;
    QList<HueGroup> m_groups;
    QList<HueScene> m_scenes;
    bool m_bridgeConnected = false;
    Reach m_bridgeReach = Reach::unknown;
    bool m_liveUpdates = false;
    QString m_connectionErrorMessage;
};
