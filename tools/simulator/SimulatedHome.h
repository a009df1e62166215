#pragma once

#include "SimulatedDefaultHome.h"
#include "SimulatedHomeDocument.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
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

    /// PUT /lights/<id>/state. Returns the answer items; the light must exist.
    QJsonArray setLightState(const QString& id, const QJsonObject& body);
    /// PUT /lights/<id> ("name").
    QJsonArray setLightAttributes(const QString& id, const QJsonObject& body);
    /// PUT /groups/<id>/action, "scene" recalls included. The group must exist (or be "0").
    QJsonArray setGroupAction(const QString& id, const QJsonObject& body);
    /// PUT /groups/<id> ("name", "lights", "class").
    QJsonArray setGroupAttributes(const QString& id, const QJsonObject& body);
    /// PUT /scenes/<id> ("name").
    QJsonArray setSceneAttributes(const QString& id, const QJsonObject& body);
    /// Sets a light's "reachable" flag. Returns false when there is no such light.
    bool setLightReachable(const QString& id, bool reachable);

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
    void recallScene(const QString& sceneId);
    /// Recomputes every group's "state" (all_on/any_on) and "action.on" from its lights.
    void updateGroupStates();

    SimulatedDefaultHome::Floor m_floor;
    Resources m_lights;
    Resources m_groups;
    Resources m_scenes;
    QJsonObject m_groupZeroAction;
    QJsonObject m_config;
    QString m_ipAddress;
    QList<User> m_users;
};
