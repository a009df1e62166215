#include "state/Preferences.h"

#include "state/ActivityLog.h"
#include "state/SettingsKeys.h"
#include "state/SettingsStore.h"

#include <QStringList>
#include <QVariantList>

#include <algorithm>

namespace Keys = SettingsKeys;

namespace {

const QStringList looseBridgeKeys{Keys::bridgeIP, Keys::bridgeUser, Keys::bridgeID, Keys::bridgeTransport,
                                  Keys::bridgeCertificateKey};

QString heightKey(MainPanels panel)
{
    switch (panel) {
    case MainPanels::lights:
        return Keys::preferredWindowHeightLights;
    case MainPanels::rooms:
        return Keys::preferredWindowHeightRooms;
    case MainPanels::scenes:
        return Keys::preferredWindowHeightScenes;
    }
    return {};
}

} // namespace

Preferences::Preferences(SettingsStore& store, ActivityLog* activity, QObject* parent)
    : QObject(parent), m_store(store), m_activity(activity)
{
    if (!m_activity)
        return;
    m_store.setChangedElsewhereHandler([this](const QStringList& keys) {
        for (const QString& key : keys)
            Q_EMIT changed(key);
    });
    m_store.setSaveErrorHandler([this] { m_activity->setSettingsSaveError(m_store.saveError()); });
    m_store.setNoticeHandler([this](const QString& message) { m_activity->showNotice(message); });
}

Preferences::~Preferences()
{
    if (!m_activity)
        return;
    m_store.setChangedElsewhereHandler({});
    m_store.setSaveErrorHandler({});
    m_store.setNoticeHandler({});
}

void Preferences::write(const QString& key, const QVariant& value)
{
    const QVariant before = m_store.value(key);
    m_store.setValue(key, value);
    if (before != value || before.typeId() != value.typeId())
        Q_EMIT changed(key);
}

void Preferences::settleDefaults()
{
    // A value that cannot be read is the user's own: it stays in the file (the store has said so) and reads
    // as the default until the user changes the setting.
    if (!m_store.contains(Keys::showColorBarsForRooms))
        write(Keys::showColorBarsForRooms, true);
    // A new user sees the scenes; a user who chose before keeps the choice (earlier versions stored "off" on
    // their first start, so every existing file holds one).
    if (!m_store.contains(Keys::showScenes))
        setShowScenes(true);
}

QString Preferences::appIcon() const
{
    return m_store.readString(Keys::appIcon).value_or(QStringLiteral("Icon_Lamp0"));
}

void Preferences::setAppIcon(const QString& name)
{
    write(Keys::appIcon, name);
}

void Preferences::setKeyIncrement(qint64 increment)
{
    write(Keys::keyIncrement, increment);
}

qint64 Preferences::presetWindowHeight(MainPanels panel) const
{
    const QString key = heightKey(panel);
    return key.isEmpty() ? defaultWindowHeight : m_store.readInt(key);
}

void Preferences::setPresetWindowHeight(MainPanels panel, qint64 height)
{
    if (const QString key = heightKey(panel); !key.isEmpty())
        write(key, height);
}

void Preferences::setActiveMainPanel(MainPanels panel)
{
    const bool other = panel != m_activeMainPanel;
    m_activeMainPanel = panel;
    m_store.writeInt(Keys::activePanel, qint64(panel));
    if (other)
        Q_EMIT changed(Keys::activePanel);
    Q_EMIT windowResizePlease(preferredHeightOfActivePanel());
}

bool Preferences::showScenes() const
{
    return m_store.storedBool(Keys::showScenes).value_or(true);
}

void Preferences::setShowScenes(bool show)
{
    write(Keys::showScenes, show);
    // Stored for the next start only: the panel shown now stays until the views move off the scenes.
    if (!show)
        m_store.writeInt(Keys::activePanel, qint64(MainPanels::lights));
}

bool Preferences::showColorBarsForRooms() const
{
    return m_store.storedBool(Keys::showColorBarsForRooms).value_or(true);
}

void Preferences::setShowColorBarsForRooms(bool show)
{
    write(Keys::showColorBarsForRooms, show);
}

bool Preferences::showZones() const
{
    return m_store.storedBool(Keys::showZones).value_or(true);
}

void Preferences::setShowZones(bool show)
{
    write(Keys::showZones, show);
}

bool Preferences::notifiesEvents() const
{
    return m_store.storedBool(Keys::notifyEvents).value_or(false);
}

void Preferences::setNotifiesEvents(bool notify)
{
    write(Keys::notifyEvents, notify);
}

void Preferences::setShowReviewRequest(bool show)
{
    if (show == m_showReviewRequest)
        return;
    m_showReviewRequest = show;
    Q_EMIT reviewRequestChanged();
}

QList<BridgeContact> Preferences::bridges(QStringList* problems) const
{
    QList<BridgeContact> contacts;
    if (m_store.contains(Keys::bridges)) {
        const QVariant stored = m_store.value(Keys::bridges);
        if (stored.typeId() != QMetaType::QVariantList) {
            if (problems)
                problems->append(
                    QStringLiteral("The stored \"bridges\" is not a list: no bridge was read from it"));
            return contacts;
        }
        const QVariantList entries = stored.toList();
        for (qsizetype i = 0; i < entries.size(); ++i) {
            QStringList wrong;
            const std::optional<BridgeContact> contact =
                BridgeContact::fromJson(QJsonValue::fromVariant(entries.at(i)), &wrong);
            if (problems) {
                for (const QString& why : wrong)
                    problems->append(QStringLiteral("Stored bridge %1: %2").arg(i + 1).arg(why));
            }
            if (contact)
                contacts.append(*contact);
        }
        return contacts;
    }
    // An older version's file: one bridge in loose keys, read with the same rules as a contact.
    const QString address = m_store.readString(Keys::bridgeIP).value_or(QString());
    const QString key = m_store.readString(Keys::bridgeUser).value_or(QString());
    if (address.isEmpty() && key.isEmpty())
        return contacts;
    const QJsonObject loose{
        {QStringLiteral("id"), m_store.readString(Keys::bridgeID).value_or(QString())},
        {QStringLiteral("address"), address},
        {QStringLiteral("key"), key},
        {QStringLiteral("transport"), m_store.readString(Keys::bridgeTransport).value_or(QString())},
        {QStringLiteral("certificate"), m_store.readString(Keys::bridgeCertificateKey).value_or(QString())},
    };
    QStringList wrong;
    if (const std::optional<BridgeContact> contact = BridgeContact::fromJson(loose, &wrong))
        contacts.append(*contact);
    if (problems) {
        for (const QString& why : wrong)
            problems->append(QStringLiteral("Stored bridge: %1").arg(why));
    }
    return contacts;
}

void Preferences::setBridges(const QList<BridgeContact>& bridges)
{
    QVariantList entries;
    for (const BridgeContact& contact : bridges)
        entries.append(contact.toJson().toVariantMap());
    QVariantMap values{{Keys::bridges, entries}};
    // One save: a program reading the file between two writes would take a new address with the old key.
    if (bridges.isEmpty()) {
        for (const QString& key : looseBridgeKeys)
            values.insert(key, QVariant());
    } else {
        const BridgeContact& first = bridges.constFirst();
        values.insert(Keys::bridgeIP, first.address);
        values.insert(Keys::bridgeUser, first.key);
        values.insert(Keys::bridgeID, first.id);
        values.insert(Keys::bridgeTransport, first.transport);
        values.insert(Keys::bridgeCertificateKey, QString::fromLatin1(first.certificate.toHex()));
    }
    m_store.setValues(values);
}

bool Preferences::holdsOnlyLooseBridgeKeys() const
{
    return !m_store.contains(Keys::bridges) &&
           (m_store.contains(Keys::bridgeIP) || m_store.contains(Keys::bridgeUser));
}

bool Preferences::touchesBridges(const QStringList& keys)
{
    return std::any_of(keys.cbegin(), keys.cend(), [](const QString& key) {
        return key == Keys::bridges || looseBridgeKeys.contains(key);
    });
}

QString Preferences::bridgeAddress() const
{
    const QList<BridgeContact> stored = bridges();
    return stored.isEmpty() ? QString() : stored.constFirst().address;
}

QString Preferences::bridgeKey() const
{
    const QList<BridgeContact> stored = bridges();
    return stored.isEmpty() ? QString() : stored.constFirst().key;
}

void Preferences::setBridgeAddress(const QString& address)
{
    QList<BridgeContact> stored = bridges();
    if (stored.isEmpty())
        stored.append(BridgeContact{});
    stored.first().address = address;
    setBridges(stored);
}

qint64 Preferences::keyIncrement() const
{
    const qint64 stored = m_store.readInt(Keys::keyIncrement);
    return stored == 0 ? 50 : stored;
}

bool Preferences::hasSeenWelcomeScreen() const
{
    return m_store.readBool(Keys::hasSeenWelcomeScreen);
}

void Preferences::setHasSeenWelcomeScreen()
{
    m_store.writeBool(Keys::hasSeenWelcomeScreen, true);
}

qint64 Preferences::windowOpenings() const
{
    return m_store.readInt(Keys::appInvocations);
}

void Preferences::setWindowOpenings(qint64 count)
{
    m_store.writeInt(Keys::appInvocations, count);
}

bool Preferences::hasReviewed() const
{
    return m_store.readBool(Keys::noMoreReviewRequests);
}

void Preferences::setReviewed(const QString& version)
{
    m_store.writeBool(Keys::noMoreReviewRequests, true);
    m_store.writeString(Keys::reviewedVersion, version);
}

bool Preferences::connectsManually() const
{
    return m_store.readString(Keys::connectionChoice) == QLatin1String("manual");
}

void Preferences::setConnectsManually(bool manual)
{
    m_store.writeString(Keys::connectionChoice,
                        manual ? QStringLiteral("manual") : QStringLiteral("automatic"));
}

qint64 Preferences::dropDownWidth() const
{
    return m_store.readInt(Keys::dropDownWidth);
}

void Preferences::setDropDownWidth(qint64 width)
{
    m_store.writeInt(Keys::dropDownWidth, width);
}

bool Preferences::hasExplainedWindowMode() const
{
    return m_store.readBool(Keys::hasExplainedWindowMode);
}

void Preferences::setHasExplainedWindowMode()
{
    m_store.writeBool(Keys::hasExplainedWindowMode, true);
}

std::optional<qint64> Preferences::storedActivePanel() const
{
    if (!m_store.contains(Keys::activePanel))
        return std::nullopt;
    return m_store.readInt(Keys::activePanel);
}

std::optional<QString> Preferences::customGroupAction(int slot) const
{
    return m_store.readString(Keys::customGroupActionPrefix + QString::number(slot));
}

void Preferences::setCustomGroupAction(int slot, const QString& optionId)
{
    m_store.writeString(Keys::customGroupActionPrefix + QString::number(slot), optionId);
}

namespace {

QString lightOrderKey(const QString& bridgeId)
{
    return bridgeId.isEmpty() ? Keys::lightOrder : Keys::lightOrder + u'_' + bridgeId.toUpper();
}

} // namespace

QString Preferences::lightOrder(const QString& bridgeId) const
{
    if (const std::optional<QString> own = m_store.readString(lightOrderKey(bridgeId)))
        return *own;
    const QList<BridgeContact> stored = bridges();
    const bool first = stored.isEmpty() || stored.constFirst().id.compare(bridgeId, Qt::CaseInsensitive) == 0;
    return first ? m_store.readString(Keys::lightOrder).value_or(QString()) : QString();
}

void Preferences::setLightOrder(const QString& bridgeId, const QList<HueLight>& lights)
{
    QStringList ids;
    ids.reserve(lights.size());
    for (const HueLight& light : lights)
        ids.append(light.lamp_id);
    write(lightOrderKey(bridgeId), ids.join(u','));
}

bool Preferences::isLightOrderKey(const QString& key)
{
    return key == Keys::lightOrder || key.startsWith(Keys::lightOrder + u'_');
}

bool Preferences::isLightHidden(const HueLight& light) const
{
    return m_store.readBool(Keys::hiddenLightPrefix + light.unique_id);
}

void Preferences::setLightHidden(const HueLight& light, bool hidden)
{
    if (isLightHidden(light) != hidden)
        write(Keys::hiddenLightPrefix + light.unique_id, hidden);
}

bool Preferences::isLightVisibilityKey(const QString& key)
{
    return key.startsWith(Keys::hiddenLightPrefix);
}

std::optional<QString> Preferences::windowFrame(const QString& name) const
{
    return m_store.readString(name);
}

void Preferences::setWindowFrame(const QString& name, const QString& frame)
{
    m_store.writeString(name, frame);
}

bool Preferences::sendsErrorReports() const
{
    return !m_store.contains(Keys::sendErrorReports) || m_store.readBool(Keys::sendErrorReports);
}
