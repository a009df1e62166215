#include "CtlConnectionCommands.h"

#include "CtlApp.h"
#include "CtlBridge.h"
#include "CtlCommon.h"

#include "bridge/BridgeNetwork.h"
#include "bridge/HttpExchange.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgeEventStream.h"
#include "connection/BridgePairing.h"
#include "connection/BridgeProbe.h"
#include "connection/ShellRunner.h"
#include "dbus/BusNames.h"
#include "session/BridgeSession.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"
#include "state/Preferences.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTimer>

using Ctl::printable;
using Ctl::printError;
using Ctl::write;

namespace {

/// The pause between two key requests while `pair --wait` waits for the link button.
constexpr std::chrono::milliseconds pairingRetry{1000};

void printOut(const QString& line)
{
    write(stdout, line + u'\n');
}

/// One line of the status report, the values in one column.
void printField(const QString& name, const QString& value)
{
    printOut((name + u':').leftJustified(16) + value);
}

} // namespace

bool CtlConnectionCommands::handles(CtlCommand command)
{
    return command == CtlCommand::discover || command == CtlCommand::pair || command == CtlCommand::status;
}

CtlConnectionCommands::CtlConnectionCommands(CtlInvocation invocation, QObject* parent)
    : QObject(parent), m_invocation(std::move(invocation)), m_network(Ctl::makeNetwork(m_invocation))
{}

CtlConnectionCommands::~CtlConnectionCommands()
{
    // Replies still out go first, so none can call back into a half-destroyed run.
    m_reports.clear();
    m_network.reset();
}

void CtlConnectionCommands::start()
{
    m_fileName = Ctl::settingsFileName(m_invocation);
    if (!m_network)
        return finish(exitFailed);
    switch (m_invocation.command) {
    case CtlCommand::discover:
        return discover();
    case CtlCommand::pair:
        return pair();
    case CtlCommand::status:
        return status();
    default:
        printError(Ctl::Text::tr("This command is not run here."));
        return finish(exitFailed);
    }
}

bool CtlConnectionCommands::openExistingSettings()
{
    if (!m_store && QFileInfo(m_fileName).isFile())
        m_store = std::make_unique<JsonSettingsStore>(m_fileName);
    return m_store != nullptr;
}

QString CtlConnectionCommands::storedAddress() const
{
    return m_store ? Preferences(*m_store).bridgeAddress() : QString();
}

QString CtlConnectionCommands::storedKey() const
{
    return m_store ? Preferences(*m_store).bridgeKey() : QString();
}

// discover

void CtlConnectionCommands::discover()
{
    m_shell = std::make_unique<ShellRunner>();
    m_discovery = std::make_unique<BridgeDiscovery>(*m_shell, *m_network);
    m_localNetwork = createLocalNetworkBrowser();
    m_discovery->setLocalNetworkBrowser(m_localNetwork.get());
    if (m_invocation.discoveryUrl)
        m_discovery->setServiceUrl(QUrl(*m_invocation.discoveryUrl));
    // A bridge paired over HTTPS is never replaced by an address that merely claims its id in clear.
    ProbeKnowledge paired;
    if (openExistingSettings()) {
        const BridgeContact first = Preferences(*m_store).bridges().value(0);
        paired = {first.transport, first.identity(), false};
    }
    m_discovery->detectBridges(
        paired, [this](const QList<BridgeDiscovery::FoundBridge>& bridges) { onDiscovered(bridges); });
}

void CtlConnectionCommands::onDiscovered(const QList<BridgeDiscovery::FoundBridge>& bridges)
{
    if (m_invocation.json) {
        QJsonArray list;
        for (const BridgeDiscovery::FoundBridge& bridge : bridges)
            list.append(QJsonObject{
                {"address", bridge.address}, {"name", bridge.name}, {"bridgeid", bridge.bridgeId}});
        write(stdout, QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Indented)));
    }
    if (bridges.isEmpty()) {
        printError(Ctl::Text::tr("No Hue bridge found on this network."));
        printError(Ctl::Text::tr("A bridge whose address you know: glowdeckctl pair --bridge HOST[:PORT]"));
        return finish(exitFailed);
    }
    if (!m_invocation.json) {
        for (const BridgeDiscovery::FoundBridge& bridge : bridges)
            printOut(Ctl::Text::tr("Found a Hue bridge at %1: %2 (%3).")
                         .arg(printable(bridge.address), printable(bridge.name), bridge.bridgeId));
    }
    const auto picked = std::find_if(bridges.cbegin(), bridges.cend(), [this](const auto& bridge) {
        return bridge.bridgeId.compare(m_invocation.pick, Qt::CaseInsensitive) == 0;
    });
    if (!m_invocation.pick.isEmpty() && picked == bridges.cend()) {
        printError(Ctl::Text::tr("No bridge %1 answered; nothing was stored.").arg(m_invocation.pick));
        return finish(exitFailed);
    }
    if (m_invocation.pick.isEmpty() && m_invocation.command == CtlCommand::discover) {
        // Showing is all: the settings change only when the user names the bridge to keep.
        if (!m_invocation.json)
            printOut(Ctl::Text::tr("Nothing was stored; store a bridge's address with: glowdeckctl discover "
                                   "--pick ID"));
        return finish(exitDone);
    }
    if (m_invocation.pick.isEmpty() && bridges.size() > 1) {
        printError(
            Ctl::Text::tr("Several bridges answered; pair with yours with: glowdeckctl pair --pick ID"));
        return finish(exitFailed);
    }
    const BridgeDiscovery::FoundBridge& found = m_invocation.pick.isEmpty() ? bridges.first() : *picked;
    const QString& address = found.address;
    // The bridge's word is taken for the address, but it must still be one.
    if (!CtlArguments::isBridgeAddress(address)) {
        printError(Ctl::Text::tr("A bridge was reported at %1, which is not HOST[:PORT]; nothing was stored.")
                       .arg(printable(address)));
        return finish(exitFailed);
    }
    if (m_invocation.command == CtlCommand::pair)
        return pairAt(address);
    m_store = std::make_unique<JsonSettingsStore>(m_fileName);
    // The address goes to the stored bridge with that id; a bridge not stored yet is added beside those
    // paired, and takes the place of one only found before.
    Preferences preferences(*m_store);
    QList<BridgeContact> contacts = preferences.bridges();
    auto same = std::find_if(contacts.begin(), contacts.end(), [&found](const BridgeContact& bridge) {
        return !bridge.id.isEmpty() && bridge.id.compare(found.bridgeId, Qt::CaseInsensitive) == 0;
    });
    const auto unpaired = std::find_if(contacts.begin(), contacts.end(),
                                       [](const BridgeContact& bridge) { return bridge.key.isEmpty(); });
    if (same != contacts.end())
        same->address = address;
    else if (unpaired != contacts.end())
        *unpaired = BridgeContact{.id = found.bridgeId.toUpper(), .address = address};
    else
        contacts.append(BridgeContact{.id = found.bridgeId.toUpper(), .address = address});
    preferences.setBridges(contacts);
    if (!m_store->saveError().isEmpty()) {
        printError(Ctl::Text::tr("Its address was not stored: %1.").arg(m_store->saveError()));
        return finish(exitFailed);
    }
    // With --json the standard output is the list alone.
    const QString stored = Ctl::Text::tr("Stored %1 as the bridge address in %2; next: glowdeckctl pair")
                               .arg(address, m_fileName);
    m_invocation.json ? printError(stored) : printOut(stored);
    finish(exitDone);
}

// pair

void CtlConnectionCommands::pair()
{
    openExistingSettings();
    // The bridge found with --pick is asked for a key once discovery has found it.
    if (!m_invocation.pick.isEmpty())
        return discover();
    QString address = m_invocation.bridge;
    if (address.isEmpty() && !m_invocation.bridgeId.isEmpty()) {
        const QList<BridgeContact> stored = storedBridges();
        const auto picked = std::find_if(stored.cbegin(), stored.cend(), [this](const BridgeContact& bridge) {
            return bridge.id.compare(m_invocation.bridgeId, Qt::CaseInsensitive) == 0;
        });
        if (picked == stored.cend()) {
            printError(Ctl::Text::tr("No bridge %1 is stored in %2; pair it with --pick %1 or --bridge "
                                     "HOST[:PORT].")
                           .arg(m_invocation.bridgeId, m_fileName));
            return finish(exitUsage);
        }
        address = picked->address;
    }
    if (address.isEmpty())
        address = storedAddress();
    if (address.isEmpty()) {
        printError(Ctl::Text::tr("No bridge address stored in %1.\nRun 'glowdeckctl discover' first, or pass "
                                 "--bridge HOST[:PORT].")
                       .arg(m_fileName));
        return finish(exitFailed);
    }
    if (!CtlArguments::isBridgeAddress(address)) {
        printError(
            Ctl::Text::tr("The stored bridge address %1 is not HOST[:PORT]; run 'glowdeckctl discover' "
                          "or pass --bridge.")
                .arg(printable(address)));
        return finish(exitFailed);
    }
    pairAt(address);
}

QList<BridgeContact> CtlConnectionCommands::storedBridges() const
{
    return m_store ? Preferences(*m_store).bridges() : QList<BridgeContact>();
}

void CtlConnectionCommands::pairAt(const QString& address)
{
    m_address = address;
    // Pairing a stored bridge again: what it proved before holds (a bridge reached over HTTPS is not paired
    // in clear, whatever answers there now).
    const QList<BridgeContact> stored = storedBridges();
    const auto same = std::find_if(stored.cbegin(), stored.cend(), [this](const BridgeContact& bridge) {
        return sameBridgeAddress(m_address, bridge.address);
    });
    BridgeContact known;
    if (same != stored.cend())
        known = {.id = same->id,
                 .address = same->address,
                 .transport = same->transport,
                 .certificate = same->certificate};
    m_pairingLink = std::make_unique<CtlLink>(known);
    m_pairing = std::make_unique<BridgePairing>(m_pairingLink->state(), *m_network);
    if (m_invocation.waitSeconds)
        m_waitUntil.setRemainingTime(std::chrono::seconds(*m_invocation.waitSeconds));
    askForKey();
}

void CtlConnectionCommands::askForKey()
{
    m_pairing->requestApiKey(m_address, [this](const PairingOutcome& outcome) { onPairingOutcome(outcome); });
}

void CtlConnectionCommands::onPairingOutcome(const PairingOutcome& answer)
{
    const QString& outcome = answer.outcome;
    if (answer.contact)
        m_contact = answer.contact;
    if (outcome == BridgePairing::pressButton) {
        // Only ask again when the next answer can still come within the time given.
        if (m_invocation.waitSeconds && m_waitUntil.remainingTimeAsDuration() > pairingRetry) {
            if (!std::exchange(m_toldToPress, true))
                printOut(Ctl::Text::tr("Press the link button on the bridge at %1; waiting up to %2 seconds.")
                             .arg(m_address, QString::number(*m_invocation.waitSeconds)));
            QTimer::singleShot(pairingRetry, this, &CtlConnectionCommands::askForKey);
            return;
        }
        printError(BridgePairing::pressButtonMessage());
        return finish(exitFailed);
    }
    if (outcome == BridgePairing::noConnection) {
        printError(answer.refusal.isEmpty() ? BridgePairing::noConnectionMessage()
                                            : printable(answer.refusal));
        return finish(exitFailed);
    }
    connectWithKey(outcome);
}

void CtlConnectionCommands::connectWithKey(const QString& key)
{
    m_address = addressAfter(m_address, *m_contact);
    m_link = std::make_unique<CtlLink>(BridgeContact{.id = m_contact->bridgeId,
                                                     .address = m_address,
                                                     .key = key,
                                                     .transport = m_contact->transport,
                                                     .certificate = m_contact->pinnedKey,
                                                     .name = m_contact->name});
    m_session = std::make_unique<BridgeSession>(m_link->state(), *m_network);
    BridgeConnection* connection = &m_session->connection();
    m_listsPending = 3;
    connect(connection, &BridgeConnection::lightsRefreshed, this, [this](const LightsResult& result) {
        if (!m_lights)
            m_lights = result;
        onListRefreshed();
    });
    connect(connection, &BridgeConnection::groupsRefreshed, this, &CtlConnectionCommands::onListRefreshed);
    connect(connection, &BridgeConnection::scenesRefreshed, this, &CtlConnectionCommands::onListRefreshed);
    // The same step as the tray's; what it stores stays in the link's own store, and this run writes the
    // settings file itself, once, beside the other paired bridges.
    m_session->connectToBridge();
}

void CtlConnectionCommands::onListRefreshed()
{
    // A refresh tick after the first round (only when a list read is slow) is not waited for.
    if (m_listsPending == 0 || --m_listsPending > 0)
        return;
    m_session->suspend();
    if (!m_lights || !m_lights->ok()) {
        const QString why = m_lights ? describe(*m_lights->error) : QString();
        printError(
            Ctl::Text::tr("The bridge at %1 gave a key, but reading its lamps failed (%2); nothing was "
                          "stored.")
                .arg(m_address, why));
        return finish(exitFailed);
    }
    const BridgeLink& state = m_link->state();
    const QList<HueGroup> groups = state.home().groups();
    const auto rooms =
        std::count_if(groups.cbegin(), groups.cend(), [](const HueGroup& g) { return !g.isZone(); });
    printOut(Ctl::Text::tr("Paired with bridge %1 at %2 over %3: %4, %5, %6.")
                 .arg(state.bridgeID(), m_address,
                      describeTransport(state.bridgeTransport(), m_contact->signer),
                      Ctl::Text::tr("%n lights", nullptr, int(state.home().lights().size())),
                      Ctl::Text::tr("%n rooms", nullptr, int(rooms)),
                      Ctl::Text::tr("%n scenes", nullptr, int(state.home().scenes().size()))));

    // Now there is something to store: the file is created if need be. The bridge takes the place of its own
    // entry (or of the one found at its address before it was paired); the other bridges stay as they are.
    if (!m_store)
        m_store = std::make_unique<JsonSettingsStore>(m_fileName);
    QList<BridgeContact> bridges = storedBridges();
    const BridgeContact& paired = state.contact();
    auto same = std::find_if(bridges.begin(), bridges.end(), [&paired](const BridgeContact& bridge) {
        return !bridge.id.isEmpty() && bridge.id.compare(paired.id, Qt::CaseInsensitive) == 0;
    });
    if (same == bridges.end())
        same = std::find_if(bridges.begin(), bridges.end(), [this](const BridgeContact& bridge) {
            return bridge.id.isEmpty() && bridge.key.isEmpty() ? sameBridgeAddress(m_address, bridge.address)
                                                               : false;
        });
    if (same != bridges.end())
        *same = paired;
    else
        bridges.append(paired);
    Preferences(*m_store).setBridges(bridges);
    // The key is not printed instead: it lets whoever reads it control the lights. Pairing again is cheap.
    if (!m_store->saveError().isEmpty()) {
        printError(Ctl::Text::tr("The key was not stored, so it is lost: %1.\nMake the settings file "
                                 "writable (or pass --settings FILE) and pair again.")
                       .arg(m_store->saveError()));
        return finish(exitFailed);
    }
    printOut(Ctl::Text::tr("Stored its address and key in %1.").arg(m_fileName));
    finish(exitDone);
}

// status

/// What `status` learns of one bridge, printed once every bridge has answered or failed.
struct CtlConnectionCommands::Status
{
    QString name;
    QString storedId;
    QString address;
    QString key;
    bool keyStored = false;
    /// What the file says of the bridge (its key's rules included); unused when `refusal` is set.
    ProbeKnowledge known;
    QString refusal;
    /// The report's lines after the address and key, as name and value.
    QList<std::pair<QString, QString>> fields;
    QString bridgeId;
    QString transport;
    bool reachable = false;
    bool failed = false;
    bool done = false;
    std::unique_ptr<BridgeEventStream> stream;
    QTimer streamWait;
};

void CtlConnectionCommands::status()
{
    openExistingSettings();
    QList<BridgeContact> stored = storedBridges();
    if (!m_invocation.bridgeId.isEmpty()) {
        const auto picked = std::find_if(stored.cbegin(), stored.cend(), [this](const BridgeContact& bridge) {
            return bridge.id.compare(m_invocation.bridgeId, Qt::CaseInsensitive) == 0;
        });
        if (picked == stored.cend()) {
            QStringList ids;
            for (const BridgeContact& bridge : std::as_const(stored))
                ids << bridge.id;
            printError(Ctl::Text::tr("No bridge %1 is paired in %2; stored: %3.")
                           .arg(m_invocation.bridgeId, m_fileName,
                                ids.isEmpty() ? QStringLiteral("none") : ids.join(QStringLiteral(", "))));
            return finish(exitUsage);
        }
        stored = {*picked};
    }
    if (!m_invocation.key.isEmpty() && m_invocation.bridge.isEmpty() && stored.size() > 1) {
        printError(Ctl::Text::tr("--key is the key of one bridge: name it with --bridge-id or --bridge."));
        return finish(exitUsage);
    }
    // --bridge: that address alone, with the key of the stored bridge there (else of the first).
    if (!m_invocation.bridge.isEmpty()) {
        const auto same = std::find_if(stored.cbegin(), stored.cend(), [this](const BridgeContact& bridge) {
            return sameBridgeAddress(m_invocation.bridge, bridge.address);
        });
        BridgeContact owner = same != stored.cend() ? *same : stored.value(0);
        owner.name = same != stored.cend() ? same->name : QString();
        stored = {owner};
    }
    if (stored.isEmpty())
        stored.append(BridgeContact{});
    for (const BridgeContact& contact : std::as_const(stored)) {
        auto& report = *m_reports.emplace_back(std::make_unique<Status>());
        report.name = contact.name;
        report.storedId = contact.id;
        report.address = m_invocation.bridge.isEmpty() ? contact.address : m_invocation.bridge;
        report.keyStored = !contact.key.isEmpty();
        report.key = m_invocation.key.isEmpty() ? contact.key : m_invocation.key;
        // What the file says about the bridge holds for the stored address only; its key goes nowhere else
        // unless the bridge there proves the stored id.
        if (m_invocation.key.isEmpty() && report.keyStored) {
            const Ctl::StoredKeyUse use = Ctl::storedKeyUse(report.address, contact, m_fileName);
            report.refusal = use.refusal;
            report.known = use.knowledge;
        } else if (sameBridgeAddress(report.address, contact.address)) {
            report.known = {contact.transport, contact.identity(), false};
        }
    }
    for (const std::unique_ptr<Status>& each : m_reports) {
        Status& report = *each;
        if (report.address.isEmpty()) {
            report.fields.append({Ctl::Text::tr("Bridge"),
                                  Ctl::Text::tr("no bridge address stored; run glowdeckctl discover")});
            statusDone(report, false);
            continue;
        }
        const std::optional<BridgeAddress> address = BridgeAddress::parse(report.address);
        if (!address) {
            report.fields.append({Ctl::Text::tr("Bridge"), Ctl::Text::tr("the stored address is not "
                                                                         "HOST[:PORT]; run glowdeckctl "
                                                                         "discover")});
            statusDone(report, false);
            continue;
        }
        if (!report.refusal.isEmpty()) {
            report.fields.append({Ctl::Text::tr("Bridge"), report.refusal});
            statusDone(report, false);
            continue;
        }
        // Every bridge at once: one that does not answer holds up none of the others.
        probeBridge(*m_network, *address, report.known, this,
                    [this, &report](const ProbeResult& result) { onStatusProbe(report, result); });
    }
}

void CtlConnectionCommands::onStatusProbe(Status& report, const ProbeResult& result)
{
    if (!result.contact) {
        // The id the file holds, so that the bridge that does not answer is known among several.
        if (!report.storedId.isEmpty()) {
            report.bridgeId = report.storedId;
            report.fields.append({Ctl::Text::tr("Bridge id"), report.storedId});
        }
        report.fields.append({Ctl::Text::tr("Bridge"), printable(result.problem)});
        return statusDone(report, false);
    }
    const ProbedBridge& contact = *result.contact;
    report.bridgeId = contact.bridgeId;
    report.transport = describeTransport(contact.transport, contact.signer);
    report.reachable = true;
    report.fields.append({Ctl::Text::tr("Bridge id"), contact.bridgeId});
    report.fields.append({Ctl::Text::tr("Transport"), report.transport});
    if (report.key.isEmpty()) {
        report.fields.append(
            {Ctl::Text::tr("Bridge"), Ctl::Text::tr("answers; no key yet: run glowdeckctl pair")});
        return statusDone(report, true);
    }
    LightsRead{.endpoint = contact.endpoint, .key = report.key, .identity = contact.identity()}.fetch(
        *m_network,
        [this, contact, &report](const LightsResult& result) { onStatusLights(report, result, contact); });
}

void CtlConnectionCommands::onStatusLights(Status& report, const LightsResult& result,
                                           const ProbedBridge& contact)
{
    if (result.ok() || result.error == LightsError::noDevices) {
        report.fields.append({Ctl::Text::tr("Bridge"),
                              Ctl::Text::tr("answers (%1)")
                                  .arg(Ctl::Text::tr("%n lights", nullptr, int(result.records.size())))});
        // Said as the connection pane says it.
        askBridgeInterface(
            *m_network, contact.endpoint, report.key, contact.identity(), this,
            [this, contact, &report](std::optional<BridgeInterface> interface, const HttpResult&) {
                report.fields.append(
                    {Ctl::Text::tr("Interface"), interface ? describeInterface(*interface)
                                                           : Ctl::Text::tr("unknown (the bridge is busy)")});
                reportUpdates(report, contact);
            });
        return;
    }
    QString state = Ctl::Text::tr("answers, but sent no lamps for this key; run glowdeckctl pair");
    if (result.timedOut)
        state = Ctl::Text::tr("answers too slowly: gave up on its lamps after %1 s")
                    .arg(fetchDeadline.count() / 1000);
    else if (result.error == LightsError::connectionFailed)
        state = Ctl::Text::tr("does not answer");
    else if (result.bridgeErrors.isEmpty() && !result.message.isEmpty())
        state = Ctl::Text::tr("answers, but its lamps cannot be read");
    report.reachable = result.error != LightsError::connectionFailed && !result.timedOut;
    report.fields.append({Ctl::Text::tr("Bridge"), state});
    statusDone(report, false);
}

void CtlConnectionCommands::reportUpdates(Status& report, const ProbedBridge& contact)
{
    // The tray application's choice, said the same way: pushed changes while the stream is up, else reading.
    if (contact.transport != BridgeAddress::https)
        return onUpdates(report, Ctl::Text::tr("no event stream over plain HTTP"));
    report.stream = std::make_unique<BridgeEventStream>(*m_network);
    connect(report.stream.get(), &BridgeEventStream::connected, this,
            [this, &report] { onUpdates(report, {}); });
    connect(report.stream.get(), &BridgeEventStream::disconnected, this,
            [this, &report](const QString& reason) { onUpdates(report, Ctl::clause(printable(reason))); });
    connect(report.stream.get(), &BridgeEventStream::unavailable, this,
            [this, &report](const QString& reason) { onUpdates(report, Ctl::clause(printable(reason))); });
    report.streamWait.setSingleShot(true);
    connect(&report.streamWait, &QTimer::timeout, this, [this, &report] {
        onUpdates(report, Ctl::Text::tr("the event stream did not answer within %1 s")
                              .arg(QString::number(streamPatience.count())));
    });
    report.streamWait.start(streamPatience);
    report.stream->start(contact.endpoint, report.key, contact.identity());
}

void CtlConnectionCommands::onUpdates(Status& report, const QString& reasonToRead)
{
    if (report.done)
        return;
    report.streamWait.stop();
    if (report.stream)
        report.stream->stop();
    report.fields.append({Ctl::Text::tr("Updates"),
                          reasonToRead.isEmpty()
                              ? Ctl::Text::tr("live updates (the bridge pushes its changes)")
                              : Ctl::Text::tr("reading every %1 s (%2)")
                                    .arg(Ctl::seconds(BridgeConnection::refreshInterval), reasonToRead)});
    statusDone(report, true);
}

void CtlConnectionCommands::statusDone(Status& report, bool ok)
{
    if (std::exchange(report.done, true))
        return;
    report.failed = !ok;
    if (std::any_of(m_reports.cbegin(), m_reports.cend(), [](const auto& each) { return !each->done; }))
        return;
    const bool failed =
        std::any_of(m_reports.cbegin(), m_reports.cend(), [](const auto& each) { return each->failed; });
    m_invocation.json ? printStatusJson() : printStatus();
    finish(failed ? exitFailed : exitDone);
}

void CtlConnectionCommands::printStatus()
{
    printField(Ctl::Text::tr("Settings file"),
               m_fileName + (m_store ? QString() : Ctl::Text::tr(" (not there yet)")));
    printField(Ctl::Text::tr("Glowdeck"), CtlApp::runsWith(m_fileName)
                                              ? Ctl::Text::tr("running: lists and changes go through it")
                                              : Ctl::Text::tr("not running with this settings file"));
    for (const std::unique_ptr<Status>& report : m_reports) {
        if (report != m_reports.front())
            printOut(QString());
        if (!report->name.isEmpty())
            printField(Ctl::Text::tr("Bridge name"), printable(report->name));
        printField(Ctl::Text::tr("Bridge address"),
                   (report->address.isEmpty() ? QStringLiteral("none") : printable(report->address)) +
                       (m_invocation.bridge.isEmpty() ? QString() : Ctl::Text::tr(" (from --bridge)")));
        // Whether there is a key, never the key itself: this output ends up in bug reports.
        printField(Ctl::Text::tr("Key stored"),
                   (report->keyStored ? Ctl::Text::tr("yes") : Ctl::Text::tr("no")) +
                       (m_invocation.key.isEmpty() ? QString() : Ctl::Text::tr(" (this run uses --key)")));
        for (const auto& [name, value] : std::as_const(report->fields))
            printField(name, value);
    }
}

void CtlConnectionCommands::printStatusJson()
{
    QJsonArray list;
    for (const std::unique_ptr<Status>& report : m_reports) {
        QJsonObject bridge{{"settings_file", m_fileName},     {"name", report->name},
                           {"bridge_id", report->bridgeId},   {"address", report->address},
                           {"key_stored", report->keyStored}, {"transport", report->transport},
                           {"reachable", report->reachable}};
        for (const auto& [name, value] : std::as_const(report->fields)) {
            if (name == Ctl::Text::tr("Bridge"))
                bridge.insert(QStringLiteral("bridge"), value);
            else if (name == Ctl::Text::tr("Updates"))
                bridge.insert(QStringLiteral("updates"), value);
        }
        list.append(bridge);
    }
    // "records_version" is the version of the shape of the records that lights, rooms, scenes, watch and
    // the D-Bus interface print; it changes when a field changes its meaning or goes.
    const QJsonObject status{{"version", QCoreApplication::applicationVersion()},
                             {"records_version", BusNames::recordsVersion},
                             {"settings_file", m_fileName},
                             {"glowdeck_running", CtlApp::runsWith(m_fileName)},
                             {"bridges", list}};
    write(stdout, QString::fromUtf8(QJsonDocument(status).toJson(QJsonDocument::Indented)));
}

void CtlConnectionCommands::finish(int exitStatus)
{
    if (m_finished)
        return;
    m_finished = true;
    Q_EMIT finished(exitStatus);
}
