#include "connection/BridgeConnection.h"

#include "connection/BridgePairing.h"
#include "state/AppSettings.h"
#include "state/LightOrder.h"
#include "state/SettingsKeys.h"
#include "state/SettingsStore.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>

BridgeConnection::BridgeConnection(AppSettings& settings, QNetworkAccessManager& network,
                                   BridgePairing& pairing, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(network), m_pairing(pairing)
{
    // Pairing that succeeds comes back here, now with a key.
    connect(&m_pairing, &BridgePairing::paired, this, &BridgeConnection::connectToBridge);
}

void BridgeConnection::connectToBridge()
{
    if (m_settings.hueKey().isEmpty()) {
        m_settings.addLogLine(QStringLiteral("We have a Bridge IP, but no API key yet..."));
        m_pairing.pairWithBridge();
        return;
    }
    m_settings.addLogLine(QStringLiteral("Connecting to Bridge... [") + m_settings.hueKey() + u']');
    refreshLights();
    refreshGroups();
    refreshScenes();
    startBridgeStateRefresher();
}

void BridgeConnection::disconnectFromBridge()
{
    m_settings.setLights({});
    m_settings.setGroups({});
    m_settings.setHueKey(QString());
    m_settings.store().writeString(SettingsKeys::bridgeUser, QString());
    m_settings.setBridgeConnected(false);
}

void BridgeConnection::refreshLights()
{
    // A reply can arrive after this object is gone (the application quits mid-read): guard on it.
    HueCommunicationLights{m_settings.hueIP(), m_settings.hueKey()}.fetch(
        m_network, [self = QPointer(this)](const LightsResult& result) {
            if (self)
                self->onLights(result);
        });
}

void BridgeConnection::refreshGroups()
{
    HueCommunicationGroups{m_settings.hueIP(), m_settings.hueKey()}.fetch(
        m_network, [self = QPointer(this)](const GroupsResult& result) {
            if (!self)
                return;
            // A failed room read is silent: the rooms shown stay until a read succeeds.
            if (result.ok())
                self->m_settings.setGroups(result.records);
            Q_EMIT self->groupsRefreshed(result);
        });
}

void BridgeConnection::refreshScenes()
{
    HueCommunicationScenes{m_settings.hueIP(), m_settings.hueKey()}.fetch(
        m_network, [self = QPointer(this)](const ScenesResult& result) {
            if (!self)
                return;
            if (result.ok())
                self->m_settings.setScenes(result.records);
            Q_EMIT self->scenesRefreshed(result);
        });
}

void BridgeConnection::onLights(const LightsResult& result)
{
    if (result.error == BridgeError::noDevices) {
        m_settings.setConnectionErrorMessage(
            QCoreApplication::translate("BridgeConnection", "We were unable to find any devices"));
    } else if (!result.ok()) {
        m_settings.setBridgeConnected(false);
    } else {
        m_settings.setLights(LightOrder::apply(result.records, m_settings.store()));
        m_settings.setBridgeConnected(true);
        m_settings.setConnectionErrorMessage(QString());
        // Only an address and key the bridge has just answered with are worth keeping.
        if (!m_settings.hueIP().isEmpty()) {
            m_settings.store().writeString(SettingsKeys::bridgeIP, m_settings.hueIP());
            m_settings.store().writeString(SettingsKeys::bridgeUser, m_settings.hueKey());
        }
    }
    Q_EMIT lightsRefreshed(result);
}

void BridgeConnection::startBridgeStateRefresher()
{
    if (m_refresher)
        return;
    m_refresher = new QTimer(this);
    m_refresher->setInterval(refreshInterval);
    connect(m_refresher, &QTimer::timeout, this, &BridgeConnection::refreshTick);
    m_refresher->start();
}

void BridgeConnection::stopBridgeStateRefresher()
{
    if (!m_refresher)
        return;
    m_refresher->stop();
    m_refresher->deleteLater();
    m_refresher = nullptr;
}

void BridgeConnection::refreshTick()
{
    const QDateTime now = m_now();
    // Leave the bridge alone while the user is still changing things, or the refresh would undo them.
    if (now.msecsTo(m_settings.lastUserActionAt()) >= -qint64(quietAfterUserAction.count()) * 1000)
        return;
    refreshLights();
    refreshGroups();
    // Scenes rarely change: refresh them only during four minutes of every hour.
    if (now.toLocalTime().time().minute() % 15 == 0)
        refreshScenes();
}
