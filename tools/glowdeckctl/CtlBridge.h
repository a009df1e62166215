#pragma once

#include "CtlArguments.h"
#include "CtlCommon.h"

#include "bridge/ResourceFetch.h"
#include "connection/BridgeProbe.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class BridgeLink;
class QNetworkAccessManager;
class QObject;
class SettingsStore;
struct BridgeContact;

/// The state one bridge's session runs on: its contact, in a store of its own that is never saved, so that
/// nothing a session learns reaches the settings file unasked and no two bridges share a field.
class CtlLink final
{
    Q_DISABLE_COPY_MOVE(CtlLink)

public:
    explicit CtlLink(const BridgeContact& contact);
    ~CtlLink();

    BridgeLink& state() const { return *m_state; }

private:
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<BridgeLink> m_state;
};

/// One bridge a run of glowdeckctl talks to: the address and key of --bridge and --key, else those of a
/// paired bridge of the settings file, and what the file knows about that bridge. As with the tray
/// application's connection, the key goes to the bridge only once it has proved who it is; a stored key only
/// to the bridge it was paired with (`Ctl::storedKeyUse`).
class CtlBridge final
{
    Q_DISABLE_COPY_MOVE(CtlBridge)

public:
    ~CtlBridge();

    /// The bridges a run of `invocation` talks to, in the order they are stored: the one at --bridge (with
    /// --key, else with the key of the stored bridge it belongs to), else every paired bridge, or only the
    /// one of --bridge-id. None, with the reason printed and the exit status in `failure`, when there is
    /// nothing to talk to.
    static std::vector<std::unique_ptr<CtlBridge>> open(const CtlInvocation& invocation, int& failure);
    /// Makes sure of the bridge's identity and how to reach it: at once for a bridge known by its id and
    /// transport, else by asking it (no key is sent). `done` gets whether requests with the key may go to it;
    /// when not, the reason is printed. Nothing is called once `context` is gone.
    void reach(QNetworkAccessManager& network, QObject* context, std::function<void(bool reached)> done);
    /// Once reached: asks the bridge which interface it offers, as the application's connection does, and
    /// keeps the answer in settings(), where the commands and the reads look for it. A bridge too busy to
    /// answer is used over the first interface, which every bridge keeps. `done` gets false, with the reason
    /// printed, when the bridge did not answer at all. Nothing is called once `context` is gone.
    void learnInterface(QNetworkAccessManager& network, QObject* context, std::function<void(bool ok)> done);
    /// Whether the lists are read and the changes sent over the current interface.
    bool overClip() const;

    /// The address, key and contact to send requests with.
    BridgeLink& settings() const { return m_link->state(); }
    /// How output names the bridge: its stored name, else its id, else its address.
    QString label() const;

private:
    CtlBridge() = default;
    /// Sets up the bridge at `address` with `key`; `keyOwner` is the stored bridge whose key it is (null for
    /// --key), `known` what the file says of the bridge at that address. False, with the reason printed,
    /// when the stored key may not go there.
    bool prepare(const QString& address, const QString& key, const BridgeContact* keyOwner,
                 const BridgeContact* known, const QString& file);

    std::unique_ptr<CtlLink> m_link;
    /// What the settings file says about the bridge being addressed, when it is a stored one.
    ProbeKnowledge m_knowledge;
    /// What to do when the bridge addressed turns out not to be the one the stored key belongs to; empty
    /// when the key was given with --key.
    QString m_storedKeyAdvice;
    /// The stored key is for another address: the bridge here is asked who it is before anything else.
    bool m_mustProbe = false;
};

namespace Ctl {

/// What a run may do with the key of the settings file `file` at `address`. The key belongs to the bridge
/// id stored with it: it goes only to a bridge that proves that id over HTTPS, and in clear only to the
/// stored address of a bridge paired in clear.
struct StoredKeyUse
{
    /// What the bridge at `address` must prove before the key goes to it.
    ProbeKnowledge knowledge;
    /// Why the key may not go there at all, with what to do instead; empty when it may, once proved.
    QString refusal;
    /// What to say when the bridge there fails to prove it.
    QString advice;
};
/// `stored` is what `file` says of the bridge its key belongs to.
StoredKeyUse storedKeyUse(const QString& address, const BridgeContact& stored, const QString& file);

/// One sentence about a failed list read of the bridge at `bridge`, or nothing when the read has printed its
/// own message (an answer it could not use).
template <typename Result>
QString failedRead(const QString& bridge, const Result& result)
{
    using Error = typename decltype(Result::error)::value_type;
    if (result.timedOut)
        return QStringLiteral(
                   "The Hue bridge at %1 did not send the list in time (%2 s without data, or %3 s "
                   "in all).")
            .arg(bridge, seconds(fetchTimeout), seconds(fetchDeadline));
    if (result.error == Error::connectionFailed)
        return QStringLiteral("Unable to connect to the Hue bridge at %1.").arg(bridge) +
               (result.connectionError.isEmpty() ? QString()
                                                 : u' ' + printable(result.connectionError) + u'.');
    if (!result.bridgeErrors.isEmpty()) {
        const QString errors = result.bridgeErrors.join(QStringLiteral("; "));
        // "unauthorized user" is what a bridge says to a key it does not know.
        const QString hint = errors.contains(QStringLiteral("unauthorized"))
                                 ? QStringLiteral(" Check --key, or pair Glowdeck with the bridge again.")
                                 : QString();
        return QStringLiteral("The bridge at %1 refused to send the list: %2.")
                   .arg(bridge, printable(errors)) +
               hint;
    }
    if (result.error == Error::invalidData) {
        const bool httpError = result.httpStatus != 0 && (result.httpStatus < 200 || result.httpStatus > 299);
        return QStringLiteral("The bridge at %1 did not send a list that can be used").arg(bridge) +
               (httpError ? QStringLiteral(" (HTTP status %1).").arg(result.httpStatus)
                          : QStringLiteral("."));
    }
    return {};
}

} // namespace Ctl
