#pragma once

#include "model/BridgeAddress.h"
#include "model/BridgeContact.h"
#include "model/BridgeIdentity.h"
#include "model/CertificateSigner.h"
#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"
#include "state/MainPanels.h"
#include "state/Preferences.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QTimer;

class ActivityLog;
class BridgeHome;
class SettingsStore;

/// The bridge's contact and the user's display settings: the persisted choices. What the bridge's home holds
/// (lamps, rooms, scenes, the connection) is its BridgeHome; what the program tells is in its ActivityLog.
/// Every published field notifies on change; views redraw from these signals. Lives on the main thread and is
/// only touched there.
class AppSettings final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AppSettings)

    Q_PROPERTY(QString hueIP READ hueIP WRITE setHueIP NOTIFY hueIPChanged)
    Q_PROPERTY(QString hueKey READ hueKey WRITE setHueKey NOTIFY hueKeyChanged)
    Q_PROPERTY(int forceRedraw READ forceRedraw WRITE setForceRedraw NOTIFY forceRedrawChanged)
    Q_PROPERTY(bool showReviewRequest READ showReviewRequest WRITE setShowReviewRequest NOTIFY
                   showReviewRequestChanged)
    Q_PROPERTY(QString appIcon READ appIcon WRITE setAppIcon NOTIFY appIconChanged)
    Q_PROPERTY(qint64 keyIncrement READ keyIncrement WRITE setKeyIncrement NOTIFY keyIncrementChanged)
    Q_PROPERTY(qint64 presetWindowHeightLights READ presetWindowHeightLights WRITE setPresetWindowHeightLights
                   NOTIFY presetWindowHeightLightsChanged)
    Q_PROPERTY(qint64 presetWindowHeightRooms READ presetWindowHeightRooms WRITE setPresetWindowHeightRooms
                   NOTIFY presetWindowHeightRoomsChanged)
    Q_PROPERTY(qint64 presetWindowHeightScenes READ presetWindowHeightScenes WRITE setPresetWindowHeightScenes
                   NOTIFY presetWindowHeightScenesChanged)
    Q_PROPERTY(MainPanels activeMainPanel READ activeMainPanel WRITE setActiveMainPanel NOTIFY
                   activeMainPanelChanged)
    Q_PROPERTY(bool showScenes READ showScenes WRITE setShowScenes NOTIFY showScenesChanged)
    Q_PROPERTY(bool showColorBarsForRooms READ showColorBarsForRooms WRITE setShowColorBarsForRooms NOTIFY
                   showColorBarsForRoomsChanged)
    Q_PROPERTY(bool showZones READ showZones WRITE setShowZones NOTIFY showZonesChanged)

public:
    /// The height a panel opens with when nothing else is known, in points.
    static constexpr qint64 defaultWindowHeight = 280;
    /// Follows the store: what another program stored is taken in at once (a bridge address or key with
    /// `bridgeChangedElsewhere`, the display choices with their own signals, hidden lights with
    /// `lightVisibilityChanged`), and what the store could not save or did on its own is told in `activity`.
    AppSettings(SettingsStore& store, ActivityLog& activity, BridgeHome& home, QObject* parent = nullptr);
    /// With an activity log and a home of its own: for a program that only reads or pairs (glowdeckctl) and
    /// for tests.
    explicit AppSettings(SettingsStore& store, QObject* parent = nullptr);
    ~AppSettings() override;

    /// Reads the persisted values, in the order the application has always read them. Writes nothing about
    /// the bridges, so that a program that only reads (glowdeckctl) leaves the file as it found it.
    void load();
    /// Writes the bridge of an older version's file (loose keys only) anew as "bridges", once; the
    /// application does it at its start.
    void keepBridgesInTheNewForm();
    /// The preset height of the active panel; 280 for a panel value outside the three.
    qint64 preferredHeightOfActivePanel() const;

    /// Where the program tells what it does; the bridge's key is kept out of it.
    ActivityLog& activity() const { return m_activity; }
    /// The bridge's home as the views show it: its lamps, rooms, scenes and how the connection stands.
    BridgeHome& home() const { return m_home; }

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
    /// Who vouched for the bridge's certificate, as learnt when it was last reached over HTTPS in this run
    /// (`pinned` as soon as a pinned key is known); never stored. A new transport or bridge id forgets it.
    CertificateSigner bridgeSigner() const;
    /// Notifies with `bridgeContactChanged`.
    void setBridgeSigner(const CertificateSigner& signer);
    /// What the bridge at `hueIP` must prove: the stored id and pinned key; plain HTTP only for a bridge that
    /// was paired that way.
    BridgeIdentity bridgeIdentity() const { return m_contact.identity(); }
    /// The base every request to the bridge starts with ("https://192.168.1.5"): `hueIP` with its own scheme,
    /// or with the transport learnt; empty while neither says how to reach it.
    QString bridgeEndpoint() const { return m_contact.endpoint(); }
    /// Writes the contact to the settings file (in place of the stored bridge with its id, or of the first):
    /// done once the bridge has answered with it.
    void persistBridge();
    /// Empties the key in the settings file; `hueKey` keeps its value.
    void forgetStoredKey();

    /// The user's other persisted choices. Only this object and the shortcuts read or write the settings
    /// file.
    Preferences& preferences() { return m_preferences; }
    const Preferences& preferences() const { return m_preferences; }
    /// Hides or shows a light in the lights panel and says so with `lightVisibilityChanged`.
    void setLightHidden(const HueLight& light, bool hidden);

    QString hueIP() const { return m_contact.address; }
    QString hueKey() const { return m_contact.key; }
    int forceRedraw() const { return m_forceRedraw; }
    bool showReviewRequest() const { return m_showReviewRequest; }
    QString appIcon() const { return m_appIcon; }
    qint64 keyIncrement() const { return m_keyIncrement; }
    qint64 presetWindowHeightLights() const { return m_presetWindowHeightLights; }
    qint64 presetWindowHeightRooms() const { return m_presetWindowHeightRooms; }
    qint64 presetWindowHeightScenes() const { return m_presetWindowHeightScenes; }
    MainPanels activeMainPanel() const { return m_activeMainPanel; }
    bool showScenes() const { return m_showScenes; }
    bool showColorBarsForRooms() const { return m_showColorBarsForRooms; }
    /// Whether the rooms panel lists the zones after the rooms (on unless the user switched it off).
    bool showZones() const { return m_showZones; }

    void setHueIP(const QString& address);
    void setHueKey(const QString& key);
    void setForceRedraw(int counter);
    void setShowReviewRequest(bool show);
    /// The setters of persisted fields store the value, then set the field.
    void setAppIcon(const QString& name);
    void setKeyIncrement(qint64 increment);
    void setPresetWindowHeightLights(qint64 height);
    void setPresetWindowHeightRooms(qint64 height);
    void setPresetWindowHeightScenes(qint64 height);
    /// Stores the panel and asks the window to resize on every call, even when the panel stays the same.
    void setActiveMainPanel(MainPanels panel);
    /// Stores the choice; switching scenes off also makes the next start open the lights panel.
    void setShowScenes(bool show);
    /// Stores the choice, then sets the field.
    void setShowColorBarsForRooms(bool show);
    void setShowZones(bool show);

Q_SIGNALS:
    void hueIPChanged();
    void hueKeyChanged();
    void forceRedrawChanged();
    void showReviewRequestChanged();
    void appIconChanged();
    void keyIncrementChanged();
    void presetWindowHeightLightsChanged();
    void presetWindowHeightRoomsChanged();
    void presetWindowHeightScenesChanged();
    void activeMainPanelChanged();
    void showScenesChanged();
    void showColorBarsForRoomsChanged();
    void showZonesChanged();

    /// The drop-down window should take this height (in points): sent on every panel assignment.
    void windowResizePlease(qint64 height);
    /// The transport, the bridge id, the pinned key, the bridge's name or the signer changed.
    void bridgeContactChanged();
    /// The user hid or showed a light, here or in another program.
    void lightVisibilityChanged();
    /// Another program stored a bridge address, key or identity, and these fields now hold it.
    void bridgeChangedElsewhere();

private:
    template <typename T>
    void assign(T& field, const T& value, void (AppSettings::*changed)());
    void loadBridge();
    /// Stores `contact` in place of the stored bridge with its id, or of the first one; the others stay.
    void storeContact(const BridgeContact& contact);
    void onChangedElsewhere(const QStringList& keys);

    AppSettings(SettingsStore& store, ActivityLog* activity, BridgeHome* home, QObject* parent);

    SettingsStore& m_store;
    std::unique_ptr<ActivityLog> m_ownActivity; // null when the log is the application's
    std::unique_ptr<BridgeHome> m_ownHome;      // null when the home is the application's
    ActivityLog& m_activity;
    BridgeHome& m_home;
    Preferences m_preferences{m_store};

    BridgeContact m_contact;
    int m_forceRedraw = 0;
    bool m_showReviewRequest = false;
    QString m_appIcon = QStringLiteral("Icon_Lamp0");
    qint64 m_keyIncrement = 50;
    qint64 m_presetWindowHeightLights = defaultWindowHeight;
    qint64 m_presetWindowHeightRooms = defaultWindowHeight;
    qint64 m_presetWindowHeightScenes = defaultWindowHeight;
    MainPanels m_activeMainPanel = MainPanels::lights;
    bool m_showScenes = false;
    bool m_showColorBarsForRooms = true;
    bool m_showZones = true;
    CertificateSigner m_bridgeSigner;
};
