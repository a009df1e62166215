#pragma once

#include "CtlArguments.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgePairing.h"
#include "connection/LocalNetworkBrowser.h"

#include "bridge/ResourceFetch.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class BridgeLink;
class CtlLink;
struct BridgeContact;
class BridgeConnection;
class BridgeSession;
class BridgeEventStream;
class BridgeDiscovery;
class BridgePairing;
class BridgeNetwork;
class SettingsStore;
class ShellRunner;

/// Runs the commands that set up the link to the bridge, through the same connection code as the tray menu:
/// `discover` finds the bridge and stores its address, `pair` gets a key and stores it once the bridge has
/// answered with it, and `status` tells what is stored, whether the bridge answers and whether it pushes its
/// changes.
class CtlConnectionCommands final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CtlConnectionCommands)

public:
    /// How long `status` waits for the bridge to answer its event stream.
    static constexpr std::chrono::seconds streamPatience{5};

    /// Whether `command` is one of those run here.
    static bool handles(CtlCommand command);

    explicit CtlConnectionCommands(CtlInvocation invocation, QObject* parent = nullptr);
    ~CtlConnectionCommands() override;

    /// Starts the command; finished() follows exactly once. Call it from the running event loop.
    void start();

Q_SIGNALS:
    /// A CtlExitStatus: done, or failed with the reason already printed.
    void finished(int exitStatus);

private:
    /// Opens the settings file when it exists, without creating it; false when there is none.
    bool openExistingSettings();
    /// The stored address and key, or empty strings.
    QString storedAddress() const;
    QString storedKey() const;

    void discover();
    void onDiscovered(const QList<BridgeDiscovery::FoundBridge>& bridges);

    void pair();
    /// Asks the bridge at `address` for a key.
    void pairAt(const QString& address);
    /// The bridges of the settings file; none when there is no file.
    QList<BridgeContact> storedBridges() const;
    void askForKey();
    void onPairingOutcome(const PairingOutcome& answer);
    void connectWithKey(const QString& key);
    void onListRefreshed();

    /// One bridge's report; each is checked side by side.
    struct Status;
    void status();
    void onStatusProbe(Status& report, const ProbeResult& result);
    void onStatusLights(Status& report, const LightsResult& result, const ProbedBridge& contact);
    /// Says whether the bridge pushes its changes: it is asked for its event stream, at most
    /// `streamPatience`.
    void reportUpdates(Status& report, const ProbedBridge& contact);
    void onUpdates(Status& report, const QString& reasonToRead);
    /// One report is complete (`ok`: the bridge answers as it should); the last prints them all.
    void statusDone(Status& report, bool ok);
    void printStatus();
    void printStatusJson();

    void finish(int exitStatus);

    CtlInvocation m_invocation;
    QString m_fileName;
    QString m_address;
    /// How the bridge was reached when it was asked for a key.
    std::optional<ProbedBridge> m_contact;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<ShellRunner> m_shell;
    std::unique_ptr<LocalNetworkBrowser> m_localNetwork;
    std::unique_ptr<BridgeDiscovery> m_discovery;
    /// The settings file: opened to read when it exists, created once there is something to store.
    std::unique_ptr<SettingsStore> m_store;
    /// BridgePairing wants a bridge's state, but only asking for a key needs none: this one stores nothing.
    std::unique_ptr<CtlLink> m_pairingLink;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<CtlLink> m_link;          // the bridge paired
    std::unique_ptr<BridgeSession> m_session; // once paired: reads the lists and stores the contact
    std::vector<std::unique_ptr<Status>> m_reports;
    QDeadlineTimer m_waitUntil;
    bool m_toldToPress = false;
    int m_listsPending = 0;
    std::optional<LightsResult> m_lights;
    bool m_finished = false;
};
