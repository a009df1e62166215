#pragma once

#include "model/BridgeContact.h"
#include "model/HueLight.h"

#include <QList>
#include <QString>

#include <optional>

class SettingsStore;

/// The user's persisted choices that are not fields of the shared state, and what the application remembers
/// between runs: each is read and written here under its key (state/SettingsKeys.h) and nowhere else.
/// `AppSettings` owns the one the application uses; the command-line tool and the error reports make their
/// own over the same file.
class Preferences final
{
public:
    explicit Preferences(SettingsStore& store) : m_store(store) {}

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

    /// The step of the brighter and darker shortcuts; a stored 0, or nothing, is 50.
    qint64 keyIncrement() const;

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

    /// The lamp ids in the order the user gave them, joined with ","; empty when never ordered.
    QString lightOrder() const;
    void setLightOrder(const QList<HueLight>& lights);

    /// true only when the flag is stored as true; a light never shown in the lights pane is visible.
    bool isLightHidden(const HueLight& light) const;
    void setLightHidden(const HueLight& light, bool hidden);

    /// A window's saved frame (base64 of its geometry) under its autosave name.
    std::optional<QString> windowFrame(const QString& name) const;
    void setWindowFrame(const QString& name, const QString& frame);

    /// Unless the user stored "sendErrorReports": false.
    bool sendsErrorReports() const;

private:
    SettingsStore& m_store;
};
