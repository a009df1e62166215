#pragma once

#include "model/BridgeContact.h"
#include "model/BridgeIdentity.h"
#include "model/BridgeInterface.h"
#include "model/CertificateSigner.h"
#include "model/HueLight.h"
#include "state/Preferences.h"

#include <QObject>
#include <QString>

#include <memory>

class ActivityLog;
class BridgeHome;
class SettingsStore;

/// One bridge as its session sees it: its contact (address, key, id, transport, pinned certificate, name) and
/// the signer learnt in this run, its home as the views show it, and the shared log and saved choices. The
/// contact is saved as this bridge's entry of the stored bridges, in one write, leaving the other bridges'
/// entries as they are; a contact another program stores for this bridge is taken in at once. Lives on the
/// main thread and is only touched there.
class BridgeLink final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeLink)

    Q_PROPERTY(QString hueIP READ hueIP WRITE setHueIP NOTIFY hueIPChanged)
    Q_PROPERTY(QString hueKey READ hueKey WRITE setHueKey NOTIFY hueKeyChanged)

public:
    BridgeLink(Preferences& preferences, ActivityLog& activity, BridgeHome& home, QObject* parent = nullptr);
    /// With saved choices over `store`, an activity log and a home of its own: for a program that only reads
    /// or pairs (glowdeckctl) and for tests.
    explicit BridgeLink(SettingsStore& store, QObject* parent = nullptr);
    ~BridgeLink() override;

    /// Takes `contact`, stored at `index` of the stored bridges, for this bridge: later saves replace its
    /// entry.
    void load(const BridgeContact& contact, qsizetype index);
    /// Takes the first stored bridge (none: an empty contact, saved as the first), saying in the log what in
    /// the file could not be read.
    void load();
    /// Writes the bridges of an older version's file (loose keys only) anew as "bridges", once; the
    /// application does it at its start.
    static void keepBridgesInTheNewForm(Preferences& preferences, ActivityLog& activity);

    /// Where the program tells what it does; the bridge's key is kept out of it.
    ActivityLog& activity() const { return m_activity; }
    /// The bridge's home as the views show it: its lamps, rooms, scenes and how the connection stands.
    BridgeHome& home() const { return m_home; }
    /// The user's saved choices, shared by every bridge.
    Preferences& preferences() const { return m_preferences; }

    /// How the bridge was reached and who it proved to be, learnt when it was paired or first reached:
    /// "https" or "http" (empty until known), its bridge id, and the pinned key of a self-signed certificate.
    QString bridgeTransport() const { return m_contact.transport; }
    QString bridgeID() const { return m_contact.id; }
    QByteArray bridgeCertificateKey() const { return m_contact.certificate; }
    void setBridgeContact(const QString& transport, const QString& bridgeId,
                          const QByteArray& certificateKey);
    /// Everything about reaching the bridge in one value: `hueIP`, `hueKey`, what was learnt of it and its
    /// name.
    const BridgeContact& contact() const { return m_contact; }
    /// The bridge's own name, for display; notifies with `bridgeContactChanged`.
    void setBridgeName(const QString& name);
    /// What the views call the bridge: its name, else its id, else its address.
    QString displayName() const;
    /// Who vouched for the bridge's certificate, as learnt when it was last reached over HTTPS in this run
    /// (`pinned` as soon as a pinned key is known); never stored. A new transport or bridge id forgets it.
    CertificateSigner bridgeSigner() const;
    /// Notifies with `bridgeContactChanged`.
    void setBridgeSigner(const CertificateSigner& signer);
    /// Which interface the session reads and writes this bridge over, learnt at every connect and never
    /// stored; notifies with `bridgeContactChanged`. Unknown again when the transport or the bridge changes.
    BridgeInterface bridgeInterface() const { return m_interface; }
    void setBridgeInterface(BridgeInterface interface);
    /// The current interface's `grouped_light` that holds every lamp (its `bridge_home`'s), learnt with the
    /// lists; empty over the first interface.
    QString homeGroupedLight() const { return m_homeGroupedLight; }
    void setHomeGroupedLight(const QString& id) { m_homeGroupedLight = id; }
    /// What the bridge at `hueIP` must prove: the stored id and pinned key; plain HTTP only for a bridge that
    /// was paired that way.
    BridgeIdentity bridgeIdentity() const { return m_contact.identity(); }
    /// The base every request to the bridge starts with ("https://192.168.1.5"): `hueIP` with its own scheme,
    /// or with the transport learnt; empty while neither says how to reach it.
    QString bridgeEndpoint() const { return m_contact.endpoint(); }
    /// Writes the contact to the settings file as this bridge's entry (the one with its id, else the one it
    /// was loaded from, else a new one at the end): done once the bridge has answered with it.
    void persistBridge();
    /// Empties the key of this bridge's entry in the settings file; `hueKey` keeps its value.
    void forgetStoredKey();
    /// Removes this bridge's entry from the settings file (the user removed the bridge); the others stay.
    void forgetStoredEntry();
    /// Whether `contact`, as stored, is this bridge's entry.
    bool isStoredAs(const BridgeContact& contact) const;
    /// The lamp ids of this bridge in the order the user gave them, joined with ","; empty when never
    /// ordered.
    QString lightOrder() const;
    /// Stores the order of this bridge's lamps; the lights panel follows at once.
    void setLightOrder(const QList<HueLight>& lights);
    /// Hides or shows a light in the lights panel (announced by the preferences).
    void setLightHidden(const HueLight& light, bool hidden);

    QString hueIP() const { return m_contact.address; }
    QString hueKey() const { return m_contact.key; }
    void setHueIP(const QString& address);
    void setHueKey(const QString& key);

Q_SIGNALS:
    void hueIPChanged();
    void hueKeyChanged();
    /// The transport, the bridge id, the pinned key, the bridge's name or the signer changed.
    void bridgeContactChanged();
    /// Another program stored a contact for this bridge, and these fields now hold it.
    void bridgeChangedElsewhere();

private:
    BridgeLink(SettingsStore* store, Preferences* preferences, ActivityLog* activity, BridgeHome* home,
               QObject* parent);
    template <typename T>
    void assign(T& field, const T& value, void (BridgeLink::*changed)());
    void take(const BridgeContact& contact, qsizetype index);
    /// The index of this bridge's entry in `stored`; -1 when it has none.
    qsizetype entryIn(const QList<BridgeContact>& stored, const QString& bridgeId) const;
    void storeContact(const BridgeContact& contact);
    void onPreferenceChanged(const QString& key);

    std::unique_ptr<ActivityLog> m_ownActivity;    // null when the log is the application's
    std::unique_ptr<BridgeHome> m_ownHome;         // null when the home is the application's
    std::unique_ptr<Preferences> m_ownPreferences; // null when the choices are the application's
    ActivityLog& m_activity;
    BridgeHome& m_home;
    Preferences& m_preferences;

    BridgeContact m_contact;
    /// The entry this bridge has in the settings file, as it was loaded or last saved, and where it was;
    /// empty and -1 before either.
    BridgeContact m_stored;
    qsizetype m_index = -1;
    CertificateSigner m_bridgeSigner;
    BridgeInterface m_interface = BridgeInterface::unknown;
    QString m_homeGroupedLight;
};
