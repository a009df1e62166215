#pragma once

#include "SimulatedDefaultHome.h"
#include "SimulatedHomeDocument.h"

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// The data a simulated bridge keeps: lights, groups, scenes, config and the registered users, plus the
/// state changes a bridge makes to them. Lists keep their ids in the order they were loaded, which is the
/// order they are served in. Knows nothing about HTTP; the answers it builds are the bridge's JSON items.
class SimulatedHome final
{
public:
    using User = SimulatedHomeDocument::User;

    /// Starts with the built-in home of @p floor and no users.
    explicit SimulatedHome(SimulatedDefaultHome::Floor floor = SimulatedDefaultHome::Floor::Ground);

    /// Replaces lights, groups, scenes and config with the built-in home of its floor; users and the bridge
    /// id are kept.
    void loadDefault();
    /// Replaces the home with the home document @p text ({"lights":{..},"groups":{..},"scenes":{..},
    /// "config":{..},"users":[..]}). Users of the document are added to the current ones. A bad document
    /// gives the reason in @p error and changes nothing.
    bool load(const QByteArray& text, QString* error = nullptr);
    /// Writes the home document. Fails when a resource list holds raw text that is not a list.
    bool save(QByteArray* text, QString* error = nullptr) const;
    /// Drops every light, group and scene; users and config stay.
    void clear();
    /// Replaces the "lights", "groups" or "scenes" list by @p body: an object of id -> object keeps its
    /// order, anything else is served verbatim. Returns false for an unknown resource name.
    bool setRaw(const QString& resource, const QByteArray& body);

    /// The lists as served, in home order (scenes without their "lightstates", as a bridge lists them).
    QByteArray lightsJson() const;
    QByteArray groupsJson() const;
    QByteArray scenesJson() const;
    QByteArray sensorsJson() const;

    /// One item, or an empty object when there is none. group("0") is the bridge's group of all lights.
    QJsonObject light(const QString& id) const;
    QJsonObject group(const QString& id) const;
    QJsonObject scene(const QString& id) const;
    bool hasLight(const QString& id) const;
    bool hasGroup(const QString& id) const;
    bool hasScene(const QString& id) const;
    QStringList lightIds() const { return m_lights.order; }
    QStringList groupIds() const { return m_groups.order; }
    QStringList sceneIds() const { return m_scenes.order; }
    /// Sensors (switches) in home order, and one of them or an empty object.
    QStringList sensorIds() const { return m_sensors.order; }
    QJsonObject sensor(const QString& id) const { return m_sensors.items.value(id); }

    /// PUT /lights/<id>/state. Returns the answer items; the light must exist.
    QJsonArray setLightState(const QString& id, const QJsonObject& body);
    /// PUT /lights/<id> ("name").
    QJsonArray setLightAttributes(const QString& id, const QJsonObject& body);
    /// PUT /groups/<id>/action, "scene" recalls included. The group must exist (or be "0"). With
    /// @p skipUnreachable the lamps that cannot be reached keep their state, as over the version-2 interface.
    QJsonArray setGroupAction(const QString& id, const QJsonObject& body, bool skipUnreachable = false);
    /// PUT /groups/<id> ("name", "lights", "class").
    QJsonArray setGroupAttributes(const QString& id, const QJsonObject& body);
    /// PUT /scenes/<id> ("name").
    QJsonArray setSceneAttributes(const QString& id, const QJsonObject& body);
    /// Sets a light's "reachable" flag. Returns false when there is no such light.
    bool setLightReachable(const QString& id, bool reachable);
    bool isLightReachable(const QString& id) const;

    // What only the version-2 interface shows: whether a scene plays and how, and smart scenes.

    /// "inactive", "static" or "dynamic_palette". A recall makes its scene "static" and the other scenes of
    /// its group "inactive"; a change of one of its lamps makes it "inactive" again.
    QString sceneStatus(const QString& sceneId) const;
    /// Recalls the scene over the version-2 interface; @p status "static" or "dynamic_palette".
    void recallScene(const QString& sceneId, const QString& status);
    /// How fast a scene's palette plays, 0 to 1.
    double sceneSpeed(const QString& sceneId) const;
    void setSceneSpeed(const QString& sceneId, double speed);
    /// Whether the smart scene of room @p groupId runs (it recalls the scene of the time of day).
    bool isSmartSceneActive(const QString& groupId) const { return m_activeSmartScenes.contains(groupId); }
    void setSmartSceneActive(const QString& groupId, bool active);

    /// The full config: the stored one plus the whitelist, link button and clock.
    QJsonObject fullConfig(bool linkButtonPressed) const;
    /// The few config attributes a bridge tells anybody who asks without a user.
    QJsonObject publicConfig() const;
    /// Sets "ipaddress" of the config (the address the simulator listens on).
    void setIpAddress(const QString& address);
    /// The config's "bridgeid", upper case; and a new one (the "mac" follows it, as on a real bridge).
    QString bridgeId() const;
    void setBridgeId(const QString& id);

    QList<User> users() const { return m_users; }
    bool hasUser(const QString& name) const;
    /// Adds a user, or refreshes the device type of a known one.
    void addUser(const QString& name, const QString& deviceType);
    bool removeUser(const QString& name);
    /// Notes that @p name just used the interface ("last use date").
    void touchUser(const QString& name);

private:
    using Resources = SimulatedHomeDocument::Resources;

    QByteArray listJson(const Resources& resources, const QString& stripMember = {}) const;
    QStringList groupMembers(const QString& groupId) const;
    /// Applies state parameters to one light; collects answer items when @p answer is given.
    void changeLight(const QString& id, const QJsonObject& parameters, QJsonArray* answer);
    void applySceneStates(const QString& sceneId);
    /// Lamps changed by hand: the scenes and smart scenes that hold them no longer play.
    void stopScenesOf(const QStringList& lightIds);
    /// Recomputes every group's "state" (all_on/any_on) and "action.on" from its lights.
    void updateGroupStates();

    SimulatedDefaultHome::Floor m_floor;
    Resources m_lights;
    Resources m_groups;
    Resources m_scenes;
    Resources m_sensors;
    QHash<QString, QString> m_sceneStatus; // scene id -> "static" or "dynamic_palette"; others inactive
    QHash<QString, double> m_sceneSpeed;
    QSet<QString> m_activeSmartScenes; // group ids
    QJsonObject m_groupZeroAction;
    QJsonObject m_config;
    QString m_ipAddress;
    QList<User> m_users;
};
