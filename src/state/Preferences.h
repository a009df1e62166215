#pragma once

#include "model/BridgeContact.h"
#include "model/HueLight.h"
#include "state/MainPanels.h"
#include "state/SettingsKeys.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <type_traits>

class ActivityLog;
class SettingsStore;

/// The user's persisted choices and what the application remembers between runs: each is read and written
/// here under its key (state/SettingsKeys.h) and nowhere else, through the store, so that no copy can drift
/// from the file. Every key changed, here or by another program, is announced with `changed`; views redraw
/// from it. The application keeps one, which follows the store; the command-line tool and the error reports
/// make their own over the same file. Lives on the main thread.
class Preferences final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Preferences)

public:
    /// The height a panel opens with when nothing else is known, in points.
    static constexpr qint64 defaultWindowHeight = 280;

    /// With `activity`, it follows the store: what another program stored is announced with `changed`, and
    /// what the store could not save or did on its own is told in `activity`. Without, it only reads and
    /// writes.
    explicit Preferences(SettingsStore& store, ActivityLog* activity = nullptr, QObject* parent = nullptr);
    ~Preferences() override;

    /// Stores the defaults the application has always settled at its start: the colour bars on when never
    /// chosen, and the lights panel for the next start when scenes are off. The command-line tool never calls
    /// it, so that it leaves the file as it found it.
    void settleDefaults();

    QString appIcon() const;
    void setAppIcon(const QString& name);
    /// The step of the brighter and darker shortcuts; a stored 0, or nothing, is 50.
    qint64 keyIncrement() const;
    void setKeyIncrement(qint64 increment);
    /// The height each panel opens with, as stored (0 when never stored: the window then takes its fallback).
    qint64 presetWindowHeight(MainPanels panel) const;
    void setPresetWindowHeight(MainPanels panel, qint64 height);
    /// The panel shown in this run; the lights panel until one is assigned.
    MainPanels activeMainPanel() const { return m_activeMainPanel; }
    /// Stores the panel and asks the window to resize with `windowResizePlease` on every call, even when the
    /// panel stays the same.
    void setActiveMainPanel(MainPanels panel);
    /// The preset height of the active panel.
    qint64 preferredHeightOfActivePanel() const { return presetWindowHeight(m_activeMainPanel); }
    bool showScenes() const;
    /// Switching scenes off also makes the next start open the lights panel.
    void setShowScenes(bool show);
    bool showColorBarsForRooms() const;
    void setShowColorBarsForRooms(bool show);
    /// Whether the rooms panel lists the zones after the rooms (on unless the user switched it off).
    bool showZones() const;
    void setShowZones(bool show);
    /// Whether the desktop is told of what happened without the user's doing (a timer went off, a change
    /// refused while the window was closed, a bridge lost or found again); off unless the user switched it
    /// on. A timer the user sets is confirmed either way.
    bool notifiesEvents() const;
    void setNotifiesEvents(bool notify);

    /// Whether the drop-down window asks for a review now: never stored, decided by the review prompt from
    /// the stored counts; announced with `reviewRequestChanged`.
    bool showReviewRequest() const { return m_showReviewRequest; }
    void setShowReviewRequest(bool show);

    /// The stored bridges, in their order. From "bridges" when the file has it: an entry that is not a
    /// contact is left out, and a member of the wrong shape dropped, each with a line in `problems`. From a
    /// file of an older version, the one bridge of its loose keys ("bridgeIP", "bridgeUser", "bridgeID",
    /// "bridgeTransport", "bridgeCertificateKey"); none when it has neither address nor key.
    QList<BridgeContact> bridges(QStringList* problems = nullptr) const;
    /// Stores `bridges` in one save, as "bridges" and, for older versions, the first one in the loose keys as
    /// well (removed when there is none).
    void setBridges(const QList<BridgeContact>& bridges);
    /// Whether the bridges are stored in the loose keys only: an older version's file, to be written anew.
    bool holdsOnlyLooseBridgeKeys() const;
    /// Whether `keys` (changed by another program) touch the stored bridges.
    static bool touchesBridges(const QStringList& keys);

    /// The stored address and key of the first bridge, as the application last wrote them.
    QString bridgeAddress() const;
    QString bridgeKey() const;
    /// Stores `address` as the first bridge's (a new first bridge when there is none); its other members
    /// stay.
    void setBridgeAddress(const QString& address);

    bool hasSeenWelcomeScreen() const;
    void setHasSeenWelcomeScreen();

    /// How often the user has opened the drop-down window with a click.
    qint64 windowOpenings() const;
    void setWindowOpenings(qint64 count);
    /// Whether the user has followed the review request.
    bool hasReviewed() const;
    void setReviewed(const QString& version);

    /// Whether the connection pane was left on Manual (the address typed in) rather than Automatic.
    bool connectsManually() const;
    void setConnectsManually(bool manual);

    /// The drop-down window's width as the user left it; 0 when never changed.
    qint64 dropDownWidth() const;
    void setDropDownWidth(qint64 width);
    /// Whether the window of a desktop without a tray has said why Glowdeck shows there.
    bool hasExplainedWindowMode() const;
    void setHasExplainedWindowMode();

    /// The panel stored last, as stored (it may name none of the three); nothing when absent.
    std::optional<qint64> storedActivePanel() const;

    /// The stored room action of a custom shortcut's slot; nothing when absent or not text.
    std::optional<QString> customGroupAction(int slot) const;
    void setCustomGroupAction(int slot, const QString& optionId);

    /// The lamp ids of the bridge with `bridgeId` in the order the user gave them, joined with ","; empty
    /// when never ordered. Kept per bridge ("lightOrder_<bridge id>"): two bridges both have a lamp "1". The
    /// order an older version stored under "lightOrder" is the first stored bridge's (and that of a bridge
    /// whose id is not known yet).
    QString lightOrder(const QString& bridgeId) const;
    void setLightOrder(const QString& bridgeId, const QList<HueLight>& lights);
    /// Whether `key` holds a bridge's lamp order.
    static bool isLightOrderKey(const QString& key);

    /// true only when the flag is stored as true; a light never shown in the lights pane is visible. The flag
    /// is kept under the lamp's own unique id, so a lamp "1" of another bridge is another lamp.
    bool isLightHidden(const HueLight& light) const;
    void setLightHidden(const HueLight& light, bool hidden);
    /// Whether `key` is the hidden flag of a lamp.
    static bool isLightVisibilityKey(const QString& key);

    /// A window's saved frame (base64 of its geometry) under its autosave name.
    std::optional<QString> windowFrame(const QString& name) const;
    void setWindowFrame(const QString& name, const QString& frame);

    /// Unless the user stored "sendErrorReports": false.
    bool sendsErrorReports() const;

    SettingsStore& store() const { return m_store; }

    /// Calls `slot` on `receiver` whenever one of `keys` changes, for as long as `receiver` lives.
    template <typename Receiver, typename Slot>
    QMetaObject::Connection whenChanged(const QStringList& keys, Receiver* receiver, Slot slot)
    {
        return connect(this, &Preferences::changed, receiver, [keys, receiver, slot](const QString& key) {
            if (keys.contains(key))
                call(receiver, slot);
        });
    }
    /// Calls `slot` on `receiver` whenever a lamp is hidden or shown.
    template <typename Receiver, typename Slot>
    QMetaObject::Connection whenLightVisibilityChanged(Receiver* receiver, Slot slot)
    {
        return connect(this, &Preferences::changed, receiver, [receiver, slot](const QString& key) {
            if (isLightVisibilityKey(key))
                call(receiver, slot);
        });
    }

    /// A member function of the receiver, or any function without arguments.
    template <typename Receiver, typename Slot>
    static void call(Receiver* receiver, const Slot& slot)
    {
        if constexpr (std::is_invocable_v<Slot, Receiver*>)
            std::invoke(slot, receiver);
        else
            slot();
    }

Q_SIGNALS:
    /// The value under `key` changed, here or in another program.
    void changed(const QString& key);
    /// The drop-down window should take this height (in points): sent on every panel assignment.
    void windowResizePlease(qint64 height);
    void reviewRequestChanged();

private:
    /// Stores `value` under `key` and announces the key when the stored value changed.
    void write(const QString& key, const QVariant& value);

    SettingsStore& m_store;
    ActivityLog* m_activity = nullptr; // set when this one follows the store
    MainPanels m_activeMainPanel = MainPanels::lights;
    bool m_showReviewRequest = false;
};
