#include "state/BridgeLink.h"

#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/LightOrder.h"
#include "state/Preferences.h"
#include "state/SettingsKeys.h"

BridgeLink::BridgeLink(Preferences& preferences, ActivityLog& activity, BridgeHome& home, QObject* parent)
    : BridgeLink(nullptr, &preferences, &activity, &home, parent)
{}

BridgeLink::BridgeLink(SettingsStore& store, QObject* parent)
    : BridgeLink(&store, nullptr, nullptr, nullptr, parent)
{}

BridgeLink::BridgeLink(SettingsStore* store, Preferences* preferences, ActivityLog* activity,
                       BridgeHome* home, QObject* parent)
    : QObject(parent), m_ownActivity(activity ? nullptr : std::make_unique<ActivityLog>()),
      m_ownHome(home ? nullptr : std::make_unique<BridgeHome>()),
      m_ownPreferences(preferences ? nullptr : std::make_unique<Preferences>(*store, m_ownActivity.get())),
      m_activity(activity ? *activity : *m_ownActivity), m_home(home ? *home : *m_ownHome),
      m_preferences(preferences ? *preferences : *m_ownPreferences)
{
    connect(&m_preferences, &Preferences::changed, this, &BridgeLink::onPreferenceChanged);
}

BridgeLink::~BridgeLink()
{
    m_activity.setKey(this, QString());
}

void BridgeLink::onPreferenceChanged(const QString& key)
{
    // The lights panel lists the lights in the stored order: a new order applies now, not at the next read.
    if (Preferences::isLightOrderKey(key)) {
        m_home.setLights(LightOrder::apply(m_home.lights(), lightOrder()));
        return;
    }
    if (!Preferences::touchesBridges({key}))
        return;
    const QList<BridgeContact> stored = m_preferences.bridges();
    const qsizetype index = entryIn(stored, m_contact.id);
    if (index < 0 || stored.at(index) == m_stored)
        return;
    take(stored.at(index), index);
    m_activity.addLogLine(QStringLiteral("Another program stored a bridge in the settings file: using it"));
    Q_EMIT bridgeChangedElsewhere();
}

void BridgeLink::load(const BridgeContact& contact, qsizetype index)
{
    take(contact, index);
}

void BridgeLink::load()
{
    QStringList problems;
    const QList<BridgeContact> stored = m_preferences.bridges(&problems);
    for (const QString& problem : problems)
        m_activity.addLogLine(problem);
    take(stored.value(0), 0);
}

void BridgeLink::take(const BridgeContact& contact, qsizetype index)
{
    m_stored = contact;
    m_index = index;
    setHueIP(contact.address);
    setHueKey(contact.key);
    setBridgeContact(contact.transport, contact.id, contact.certificate);
    setBridgeName(contact.name);
}

void BridgeLink::keepBridgesInTheNewForm(Preferences& preferences, ActivityLog& activity)
{
    // The loose keys stay beside, written from the same contact, so an older version still finds its bridge.
    const QList<BridgeContact> stored = preferences.bridges();
    if (stored.isEmpty() || !preferences.holdsOnlyLooseBridgeKeys())
        return;
    preferences.setBridges(stored);
    activity.addLogLine(QStringLiteral("The bridge stored by an older version is now kept in \"bridges\""));
}

template <typename T>
void BridgeLink::assign(T& field, const T& value, void (BridgeLink::*changed)())
{
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

void BridgeLink::setHueIP(const QString& address)
{
    assign(m_contact.address, address, &BridgeLink::hueIPChanged);
}

void BridgeLink::setHueKey(const QString& key)
{
    // Kept out of the log before it is used anywhere.
    m_activity.setKey(this, key);
    assign(m_contact.key, key, &BridgeLink::hueKeyChanged);
}

void BridgeLink::setBridgeContact(const QString& transport, const QString& bridgeId,
                                  const QByteArray& certificateKey)
{
    if (transport == m_contact.transport && bridgeId == m_contact.id &&
        certificateKey == m_contact.certificate)
        return;
    if (transport != m_contact.transport || bridgeId != m_contact.id) {
        m_bridgeSigner = {};
        m_interface = BridgeInterface::unknown;
    }
    m_contact.transport = transport;
    m_contact.id = bridgeId;
    m_home.setBridgeId(bridgeId);
    m_contact.certificate = certificateKey;
    Q_EMIT bridgeContactChanged();
}

void BridgeLink::setBridgeName(const QString& name)
{
    assign(m_contact.name, name, &BridgeLink::bridgeContactChanged);
}

QString BridgeLink::displayName() const
{
    if (!m_contact.name.isEmpty())
        return m_contact.name;
    return m_contact.id.isEmpty() ? m_contact.address : m_contact.id;
}

CertificateSigner BridgeLink::bridgeSigner() const
{
    if (m_bridgeSigner.kind == CertificateSigner::Kind::unknown && !m_contact.certificate.isEmpty())
        return {CertificateSigner::Kind::pinned, {}};
    return m_bridgeSigner;
}

void BridgeLink::setBridgeSigner(const CertificateSigner& signer)
{
    assign(m_bridgeSigner, signer, &BridgeLink::bridgeContactChanged);
}

void BridgeLink::setBridgeInterface(BridgeInterface interface)
{
    assign(m_interface, interface, &BridgeLink::bridgeContactChanged);
}

void BridgeLink::persistBridge()
{
    storeContact(m_contact);
}

void BridgeLink::forgetStoredKey()
{
    const QList<BridgeContact> stored = m_preferences.bridges();
    const qsizetype index = entryIn(stored, m_contact.id);
    if (index < 0)
        return;
    // The stored contact as it is, less its key: what this run learnt since is not written with it.
    BridgeContact contact = stored.at(index);
    contact.key.clear();
    storeContact(contact);
}

void BridgeLink::forgetStoredEntry()
{
    QList<BridgeContact> stored = m_preferences.bridges();
    const qsizetype index = entryIn(stored, m_contact.id);
    if (index < 0)
        return;
    stored.removeAt(index);
    m_stored = {};
    m_index = -1;
    m_preferences.setBridges(stored);
}

bool BridgeLink::isStoredAs(const BridgeContact& contact) const
{
    if (!contact.id.isEmpty())
        return contact.id.compare(m_contact.id, Qt::CaseInsensitive) == 0 ||
               contact.id.compare(m_stored.id, Qt::CaseInsensitive) == 0;
    return m_contact.id.isEmpty() && !contact.address.isEmpty() &&
           (contact.address == m_stored.address || contact.address == m_contact.address);
}

qsizetype BridgeLink::entryIn(const QList<BridgeContact>& stored, const QString& bridgeId) const
{
    const auto find = [&stored](auto same) -> qsizetype {
        for (qsizetype i = 0; i < stored.size(); ++i) {
            if (same(stored.at(i)))
                return i;
        }
        return -1;
    };
    for (const QString& id : {bridgeId, m_stored.id}) {
        if (id.isEmpty())
            continue;
        if (const qsizetype i =
                find([&id](const BridgeContact& c) { return c.id.compare(id, Qt::CaseInsensitive) == 0; });
            i >= 0)
            return i;
    }
    // Stored before its id was learnt: the entry at the address it was loaded from.
    if (m_stored.id.isEmpty() && !m_stored.address.isEmpty()) {
        if (const qsizetype i = find(
                [this](const BridgeContact& c) { return c.id.isEmpty() && c.address == m_stored.address; });
            i >= 0)
            return i;
    }
    // Replaced by another program ("glowdeckctl pair" with another bridge): the entry where it was.
    return m_index < stored.size() ? m_index : -1;
}

void BridgeLink::storeContact(const BridgeContact& contact)
{
    QList<BridgeContact> stored = m_preferences.bridges();
    const qsizetype index = entryIn(stored, contact.id);
    if (index >= 0) {
        stored[index] = contact;
        m_index = index;
    } else {
        m_index = stored.size();
        stored.append(contact);
    }
    m_stored = contact;
    m_preferences.setBridges(stored);
}

QString BridgeLink::lightOrder() const
{
    return m_preferences.lightOrder(m_contact.id);
}

void BridgeLink::setLightOrder(const QList<HueLight>& lights)
{
    m_preferences.setLightOrder(m_contact.id, lights);
}

void BridgeLink::setLightHidden(const HueLight& light, bool hidden)
{
    m_preferences.setLightHidden(light, hidden);
}
