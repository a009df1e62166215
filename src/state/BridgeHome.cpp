#include "state/BridgeHome.h"

BridgeHome::BridgeHome(const QString& bridgeId, QObject* parent) : QObject(parent), m_bridgeId(bridgeId) {}

template <typename T>
void BridgeHome::assign(T& field, const T& value, void (BridgeHome::*changed)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

void BridgeHome::setLights(const QList<HueLight>& lights)
{
    assign(m_lights, lights, &BridgeHome::lightsChanged);
}

void BridgeHome::setGroups(const QList<HueGroup>& groups)
{
    assign(m_groups, groups, &BridgeHome::groupsChanged);
}

void BridgeHome::setScenes(const QList<HueScene>& scenes)
{
    assign(m_scenes, scenes, &BridgeHome::scenesChanged);
}

void BridgeHome::setBridgeConnected(bool connected)
{
    assign(m_bridgeConnected, connected, &BridgeHome::bridgeConnectedChanged);
}

void BridgeHome::setBridgeReach(Reach reach)
{
    assign(m_bridgeReach, reach, &BridgeHome::bridgeReachChanged);
}

void BridgeHome::setLiveUpdates(bool live)
{
    assign(m_liveUpdates, live, &BridgeHome::liveUpdatesChanged);
}

void BridgeHome::setConnectionErrorMessage(const QString& message)
{
    assign(m_connectionErrorMessage, message, &BridgeHome::connectionErrorMessageChanged);
}

bool BridgeHome::updateLight(const QString& lampId, const std::function<void(HueLight&)>& change)
{
    for (HueLight& light : m_lights) {
        if (light.lamp_id == lampId) {
            change(light);
            Q_EMIT lightsChanged();
            return true;
        }
    }
    return false;
}

bool BridgeHome::updateGroup(const QString& groupId, const std::function<void(HueGroup&)>& change)
{
    for (HueGroup& group : m_groups) {
        if (group.group_id == groupId) {
            change(group);
            Q_EMIT groupsChanged();
            return true;
        }
    }
    return false;
}
