#include "state/AppSettings.h"

#include "model/BridgeAddress.h"

#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/LightOrder.h"
#include "state/SettingsKeys.h"
#include "state/SettingsStore.h"

#include <algorithm>

AppSettings::AppSettings(SettingsStore& store, ActivityLog& activity, BridgeHome& home, QObject* parent)
    : AppSettings(store, &activity, &home, parent)
{}

AppSettings::AppSettings(SettingsStore& store, QObject* parent) : AppSettings(store, nullptr, nullptr, parent)
{}

AppSettings::AppSettings(SettingsStore& store, ActivityLog* activity, BridgeHome* home, QObject* parent)
    : QObject(parent), m_store(store), m_ownActivity(activity ? nullptr : std::make_unique<ActivityLog>()),
      m_ownHome(home ? nullptr : std::make_unique<BridgeHome>()),
      m_activity(activity ? *activity : *m_ownActivity), m_home(home ? *home : *m_ownHome)
{
    m_store.setChangedElsewhereHandler([this](const QStringList& keys) { onChangedElsewhere(keys); });
    m_store.setSaveErrorHandler([this] { m_activity.setSettingsSaveError(m_store.saveError()); });
    m_store.setNoticeHandler([this](const QString& message) { m_activity.showNotice(message); });
}

AppSettings::~AppSettings()
{
    m_activity.setKey(this, QString());
    m_store.setChangedElsewhereHandler({});
    m_store.setSaveErrorHandler({});
    m_store.setNoticeHandler({});
}

void AppSettings::onChangedElsewhere(const QStringList& keys)
{
    namespace Keys = SettingsKeys;
    const auto changed = [&keys](const QString& key) { return keys.contains(key); };
    // The fields are assigned, never stored again: the file holds the other program's value already, and a
    // setter's side effect (switching scenes off resets the stored panel) is not what the user asked for.
    if (changed(Keys::appIcon))
        assign(m_appIcon, m_store.readString(Keys::appIcon).value_or(QStringLiteral("Icon_Lamp0")),
               &AppSettings::appIconChanged);
    if (changed(Keys::keyIncrement))
        assign(m_keyIncrement, m_preferences.keyIncrement(), &AppSettings::keyIncrementChanged);
    if (changed(Keys::preferredWindowHeightLights))
        assign(m_presetWindowHeightLights, m_store.readInt(Keys::preferredWindowHeightLights),
               &AppSettings::presetWindowHeightLightsChanged);
    if (changed(Keys::preferredWindowHeightRooms))
        assign(m_presetWindowHeightRooms, m_store.readInt(Keys::preferredWindowHeightRooms),
               &AppSettings::presetWindowHeightRoomsChanged);
    if (changed(Keys::preferredWindowHeightScenes))
        assign(m_presetWindowHeightScenes, m_store.readInt(Keys::preferredWindowHeightScenes),
               &AppSettings::presetWindowHeightScenesChanged);
    if (changed(Keys::showScenes))
        assign(m_showScenes, m_store.storedBool(Keys::showScenes).value_or(false),
               &AppSettings::showScenesChanged);
    if (changed(Keys::showColorBarsForRooms))
        assign(m_showColorBarsForRooms, m_store.storedBool(Keys::showColorBarsForRooms).value_or(true),
               &AppSettings::showColorBarsForRoomsChanged);
    if (changed(Keys::showZones))
        assign(m_showZones, m_store.storedBool(Keys::showZones).value_or(true),
               &AppSettings::showZonesChanged);
    // The lights panel lists the lights in the stored order: a new order applies now, not at the next read.
    if (changed(Keys::lightOrder))
        m_home.setLights(LightOrder::apply(m_home.lights(), m_preferences.lightOrder()));
    if (std::any_of(keys.cbegin(), keys.cend(),
                    [](const QString& key) { return key.startsWith(Keys::hiddenLightPrefix); }))
        Q_EMIT lightVisibilityChanged();

    if (!Preferences::touchesBridges(keys))
        return;
    loadBridge();
    m_activity.addLogLine(QStringLiteral("Another program stored a bridge in the settings file: using it"));
    Q_EMIT bridgeChangedElsewhere();
}

void AppSettings::loadBridge()
{
    QStringList problems;
    const QList<BridgeContact> stored = m_preferences.bridges(&problems);
    for (const QString& problem : problems)
        m_activity.addLogLine(problem);
    // One bridge is served: the first one stored. The others stay in the file as they are.
    const BridgeContact contact = stored.value(0);
    setHueIP(contact.address);
    setHueKey(contact.key);
    setBridgeContact(contact.transport, contact.id, contact.certificate);
    setBridgeName(contact.name);
}

void AppSettings::keepBridgesInTheNewForm()
{
    // The loose keys stay beside, written from the same contact, so an older version still finds its bridge.
    const QList<BridgeContact> stored = m_preferences.bridges();
    if (stored.isEmpty() || !m_preferences.holdsOnlyLooseBridgeKeys())
        return;
    m_preferences.setBridges(stored);
    m_activity.addLogLine(QStringLiteral("The bridge stored by an older version is now kept in \"bridges\""));
}

void AppSettings::load()
{
    namespace Keys = SettingsKeys;
    loadBridge();
    assign(m_appIcon, m_store.readString(Keys::appIcon).value_or(QStringLiteral("Icon_Lamp0")),
           &AppSettings::appIconChanged);

    // An absent height reads as 0 and is taken as it stands: the window then opens at its fallback height.
    assign(m_presetWindowHeightRooms, m_store.readInt(Keys::preferredWindowHeightRooms),
           &AppSettings::presetWindowHeightRoomsChanged);
    assign(m_presetWindowHeightLights, m_store.readInt(Keys::preferredWindowHeightLights),
           &AppSettings::presetWindowHeightLightsChanged);
    assign(m_presetWindowHeightScenes, m_store.readInt(Keys::preferredWindowHeightScenes),
           &AppSettings::presetWindowHeightScenesChanged);

    assign(m_keyIncrement, m_preferences.keyIncrement(), &AppSettings::keyIncrementChanged);

    // Both flags are stored again as read. A value that cannot be read is the user's own: it stays in the
    // file (the store has said so) and the field takes its default until the user changes the setting.
    if (!m_store.contains(Keys::showColorBarsForRooms))
        m_store.writeBool(Keys::showColorBarsForRooms, true);
    if (const std::optional<bool> colorBars = m_store.storedBool(Keys::showColorBarsForRooms))
        setShowColorBarsForRooms(*colorBars);
    else
        assign(m_showColorBarsForRooms, true, &AppSettings::showColorBarsForRoomsChanged);

    assign(m_showZones, m_store.storedBool(Keys::showZones).value_or(true), &AppSettings::showZonesChanged);

    const std::optional<bool> showScenes = m_store.storedBool(Keys::showScenes);
    if (showScenes || !m_store.contains(Keys::showScenes)) {
        setShowScenes(showScenes.value_or(false));
    } else {
        m_store.writeInt(Keys::activePanel, int(MainPanels::lights));
        assign(m_showScenes, false, &AppSettings::showScenesChanged);
    }
}

qint64 AppSettings::preferredHeightOfActivePanel() const
{
    switch (m_activeMainPanel) {
    case MainPanels::lights:
        return m_presetWindowHeightLights;
    case MainPanels::rooms:
        return m_presetWindowHeightRooms;
    case MainPanels::scenes:
        return m_presetWindowHeightScenes;
    }
    return defaultWindowHeight;
}

template <typename T>
void AppSettings::assign(T& field, const T& value, void (AppSettings::*changed)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

void AppSettings::setHueIP(const QString& address)
{
    assign(m_contact.address, address, &AppSettings::hueIPChanged);
}

void AppSettings::setHueKey(const QString& key)
{
    // Kept out of the log before it is used anywhere.
    m_activity.setKey(this, key);
    assign(m_contact.key, key, &AppSettings::hueKeyChanged);
}

void AppSettings::setBridgeContact(const QString& transport, const QString& bridgeId,
                                   const QByteArray& certificateKey)
{
    if (transport == m_contact.transport && bridgeId == m_contact.id &&
        certificateKey == m_contact.certificate)
        return;
    if (transport != m_contact.transport || bridgeId != m_contact.id)
        m_bridgeSigner = {};
    m_contact.transport = transport;
    m_contact.id = bridgeId;
    m_home.setBridgeId(bridgeId);
    m_contact.certificate = certificateKey;
    Q_EMIT bridgeContactChanged();
}

void AppSettings::setBridgeName(const QString& name)
{
    assign(m_contact.name, name, &AppSettings::bridgeContactChanged);
}

CertificateSigner AppSettings::bridgeSigner() const
{
    if (m_bridgeSigner.kind == CertificateSigner::Kind::unknown && !m_contact.certificate.isEmpty())
        return {CertificateSigner::Kind::pinned, {}};
    return m_bridgeSigner;
}

void AppSettings::setBridgeSigner(const CertificateSigner& signer)
{
    assign(m_bridgeSigner, signer, &AppSettings::bridgeContactChanged);
}

void AppSettings::persistBridge()
{
    storeContact(m_contact);
}

void AppSettings::forgetStoredKey()
{
    const QList<BridgeContact> stored = m_preferences.bridges();
    if (stored.isEmpty())
        return;
    BridgeContact contact;
    const auto same = std::find_if(stored.cbegin(), stored.cend(), [this](const BridgeContact& c) {
        return !c.id.isEmpty() && c.id == m_contact.id;
    });
    // The stored contact as it is, less its key: what this run learnt since is not written with it.
    contact = same != stored.cend() ? *same : stored.constFirst();
    contact.key.clear();
    storeContact(contact);
}

void AppSettings::storeContact(const BridgeContact& contact)
{
    QList<BridgeContact> stored = m_preferences.bridges();
    const auto same = std::find_if(stored.begin(), stored.end(), [&contact](const BridgeContact& c) {
        return !c.id.isEmpty() && c.id == contact.id;
    });
    if (same != stored.end())
        *same = contact;
    else if (!stored.isEmpty())
        stored.first() = contact;
    else
        stored.append(contact);
    m_preferences.setBridges(stored);
}

void AppSettings::setLightHidden(const HueLight& light, bool hidden)
{
    if (m_preferences.isLightHidden(light) == hidden)
        return;
    m_preferences.setLightHidden(light, hidden);
    Q_EMIT lightVisibilityChanged();
}

void AppSettings::setForceRedraw(int counter)
{
    assign(m_forceRedraw, counter, &AppSettings::forceRedrawChanged);
}

void AppSettings::setShowReviewRequest(bool show)
{
    assign(m_showReviewRequest, show, &AppSettings::showReviewRequestChanged);
}

void AppSettings::setAppIcon(const QString& name)
{
    m_store.writeString(SettingsKeys::appIcon, name);
    assign(m_appIcon, name, &AppSettings::appIconChanged);
}

void AppSettings::setKeyIncrement(qint64 increment)
{
    m_store.writeInt(SettingsKeys::keyIncrement, increment);
    assign(m_keyIncrement, increment, &AppSettings::keyIncrementChanged);
}

void AppSettings::setPresetWindowHeightLights(qint64 height)
{
    m_store.writeInt(SettingsKeys::preferredWindowHeightLights, height);
    assign(m_presetWindowHeightLights, height, &AppSettings::presetWindowHeightLightsChanged);
}

void AppSettings::setPresetWindowHeightRooms(qint64 height)
{
    m_store.writeInt(SettingsKeys::preferredWindowHeightRooms, height);
    assign(m_presetWindowHeightRooms, height, &AppSettings::presetWindowHeightRoomsChanged);
}

void AppSettings::setPresetWindowHeightScenes(qint64 height)
{
    m_store.writeInt(SettingsKeys::preferredWindowHeightScenes, height);
    assign(m_presetWindowHeightScenes, height, &AppSettings::presetWindowHeightScenesChanged);
}

void AppSettings::setActiveMainPanel(MainPanels panel)
{
    assign(m_activeMainPanel, panel, &AppSettings::activeMainPanelChanged);
    m_store.writeInt(SettingsKeys::activePanel, int(panel));
    Q_EMIT windowResizePlease(preferredHeightOfActivePanel());
}

void AppSettings::setShowScenes(bool show)
{
    m_store.writeBool(SettingsKeys::showScenes, show);
    if (!show)
        m_store.writeInt(SettingsKeys::activePanel, int(MainPanels::lights));
    assign(m_showScenes, show, &AppSettings::showScenesChanged);
}

void AppSettings::setShowColorBarsForRooms(bool show)
{
    m_store.writeBool(SettingsKeys::showColorBarsForRooms, show);
    assign(m_showColorBarsForRooms, show, &AppSettings::showColorBarsForRoomsChanged);
}

void AppSettings::setShowZones(bool show)
{
    m_store.writeBool(SettingsKeys::showZones, show);
    assign(m_showZones, show, &AppSettings::showZonesChanged);
}
