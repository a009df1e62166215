#include "CtlConnectionCommands.h"

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
#include "session/BridgeSession.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"
#include "state/MemorySettingsStore.h"
#include "state/Preferences.h"

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
    m_stream.reset();
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
        printError(QStringLiteral("This command is not run here."));
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
        BridgeLink stored(*m_store);
        stored.load();
        paired = {stored.bridgeTransport(), stored.bridgeIdentity(), false};
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
        printError(QStringLiteral("No Hue bridge found on this network."));
        printError(QStringLiteral("A bridge whose address you know: glowdeckctl pair --bridge HOST[:PORT]"));
        return finish(exitFailed);
    }
    if (!m_invocation.json) {
        for (const BridgeDiscovery::FoundBridge& bridge : bridges)
            printOut(QStringLiteral("Found a Hue bridge at %1: %2 (%3).")
                         .arg(printable(bridge.address), printable(bridge.name), bridge.bridgeId));
    }
    const auto picked = std::find_if(bridges.cbegin(), bridges.cend(), [this](const auto& bridge) {
        return bridge.bridgeId.compare(m_invocation.pick, Qt::CaseInsensitive) == 0;
    });
    if (!m_invocation.pick.isEmpty() && picked == bridges.cend()) {
        printError(QStringLiteral("No bridge %1 answered; nothing was stored.").arg(m_invocation.pick));
        return finish(exitFailed);
    }
    if (m_invocation.pick.isEmpty() && bridges.size() > 1) {
        printError(
            QStringLiteral("Several bridges answered; store yours with: glowdeckctl discover --pick ID"));
        return finish(exitFailed);
    }
    const QString address = (m_invocation.pick.isEmpty() ? bridges.first() : *picked).address;
    // The bridge's word is taken for the address, but it must still be one.
    if (!CtlArguments::isBridgeAddress(address)) {
        printError(
            QStringLiteral("A bridge was reported at %1, which is not HOST[:PORT]; nothing was stored.")
                .arg(printable(address)));
        return finish(exitFailed);
    }
    m_store = std::make_unique<JsonSettingsStore>(m_fileName);
    Preferences(*m_store).setBridgeAddress(address);
    if (!m_store->saveError().isEmpty()) {
        printError(QStringLiteral("Its address was not stored: %1.").arg(m_store->saveError()));
        return finish(exitFailed);
    }
    // With --json the standard output is the list alone.
    const QString stored = QStringLiteral("Stored %1 as the bridge address in %2; next: glowdeckctl pair")
                               .arg(address, m_fileName);
    m_invocation.json ? printError(stored) : printOut(stored);
    finish(exitDone);
}

// pair

void CtlConnectionCommands::pair()
{
    m_address = m_invocation.bridge;
    openExistingSettings();
    if (m_address.isEmpty())
        m_address = storedAddress();
    if (m_address.isEmpty()) {
        printError(
            QStringLiteral("No bridge address stored in %1.\nRun 'glowdeckctl discover' first, or pass "
                           "--bridge HOST[:PORT].")
                .arg(m_fileName));
        return finish(exitFailed);
    }
    if (!CtlArguments::isBridgeAddress(m_address)) {
        printError(
            QStringLiteral("The stored bridge address %1 is not HOST[:PORT]; run 'glowdeckctl discover' "
                           "or pass --bridge.")
                .arg(printable(m_address)));
        return finish(exitFailed);
    }

    m_pairingStore = std::make_unique<MemorySettingsStore>();
    m_pairingSettings = std::make_unique<BridgeLink>(*m_pairingStore);
    if (m_store && sameBridgeAddress(m_address, storedAddress())) {
        // Pairing the stored bridge again: what it proved before holds (a bridge reached over HTTPS is not
        // paired in clear, whatever answers there now).
        BridgeLink stored(*m_store);
        stored.load();
        Preferences(*m_pairingStore).setBridgeAddress(storedAddress());
        m_pairingSettings->setBridgeContact(stored.bridgeTransport(), stored.bridgeID(),
                                            stored.bridgeCertificateKey());
    }
    m_pairing = std::make_unique<BridgePairing>(*m_pairingSettings, *m_network);
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
                printOut(
                    QStringLiteral("Press the link button on the bridge at %1; waiting up to %2 seconds.")
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
    // Now there is something to store: the file is created if need be.
    if (!m_store)
        m_store = std::make_unique<JsonSettingsStore>(m_fileName);
    m_settings = std::make_unique<BridgeLink>(*m_store);
    m_address = addressAfter(m_address, *m_contact);
    m_settings->setHueIP(m_address);
    m_settings->setHueKey(key);
    m_settings->setBridgeContact(m_contact->transport, m_contact->bridgeId, m_contact->pinnedKey);
    m_settings->setBridgeName(m_contact->name);
    m_session = std::make_unique<BridgeSession>(*m_settings, *m_network);
    BridgeConnection* connection = &m_session->connection();
    m_listsPending = 3;
    connect(connection, &BridgeConnection::lightsRefreshed, this, [this](const LightsResult& result) {
        if (!m_lights)
            m_lights = result;
        onListRefreshed();
    });
    connect(connection, &BridgeConnection::groupsRefreshed, this, &CtlConnectionCommands::onListRefreshed);
    connect(connection, &BridgeConnection::scenesRefreshed, this, &CtlConnectionCommands::onListRefreshed);
    // The same step as the tray's: with a light read that succeeds, it stores the address and the key.
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
            QStringLiteral("The bridge at %1 gave a key, but reading its lamps failed (%2); nothing was "
                           "stored.")
                .arg(m_address, why));
        return finish(exitFailed);
    }
    const QList<HueGroup> groups = m_settings->home().groups();
    const auto rooms =
        std::count_if(groups.cbegin(), groups.cend(), [](const HueGroup& g) { return !g.isZone(); });
    printOut(QStringLiteral("Paired with bridge %1 at %2 over %3: %4, %5, %6.")
                 .arg(m_settings->bridgeID(), m_address,
                      describeTransport(m_settings->bridgeTransport(), m_contact->signer),
                      Ctl::counted(m_settings->home().lights().size(), QStringLiteral("light")),
                      Ctl::counted(rooms, QStringLiteral("room")),
                      Ctl::counted(m_settings->home().scenes().size(), QStringLiteral("scene"))));
    // The key is not printed instead: it lets whoever reads it control the lights. Pairing again is cheap.
    if (!m_store->saveError().isEmpty()) {
        printError(QStringLiteral("The key was not stored, so it is lost: %1.\nMake the settings file "
                                  "writable (or pass --settings FILE) and pair again.")
                       .arg(m_store->saveError()));
        return finish(exitFailed);
    }
    printOut(QStringLiteral("Stored its address and key in %1.").arg(m_fileName));
    finish(exitDone);
}

// status

void CtlConnectionCommands::status()
{
    openExistingSettings();
    m_address = m_invocation.bridge.isEmpty() ? storedAddress() : m_invocation.bridge;
    const QString key = m_invocation.key.isEmpty() ? storedKey() : m_invocation.key;
    const bool keyStored = !storedKey().isEmpty();

    printField(QStringLiteral("Settings file"),
               m_fileName + (m_store ? QString() : QStringLiteral(" (not there yet)")));
    printField(QStringLiteral("Bridge address"),
               (m_address.isEmpty() ? QStringLiteral("none") : printable(m_address)) +
                   (m_invocation.bridge.isEmpty() ? QString() : QStringLiteral(" (from --bridge)")));
    // Whether there is a key, never the key itself: this output ends up in bug reports.
    printField(QStringLiteral("Key stored"),
               (keyStored ? QStringLiteral("yes") : QStringLiteral("no")) +
                   (m_invocation.key.isEmpty() ? QString() : QStringLiteral(" (this run uses --key)")));

    if (m_address.isEmpty()) {
        printField(QStringLiteral("Bridge"),
                   QStringLiteral("no bridge address stored; run glowdeckctl discover"));
        return finish(exitFailed);
    }
    const std::optional<BridgeAddress> address = BridgeAddress::parse(m_address);
    if (!address) {
        printField(QStringLiteral("Bridge"),
                   QStringLiteral("the stored address is not HOST[:PORT]; run glowdeckctl discover"));
        return finish(exitFailed);
    }
    // What the file says about the bridge holds for the stored address only; its key goes nowhere else
    // unless the bridge there proves the stored id.
    ProbeKnowledge known;
    if (m_store) {
        BridgeLink settings(*m_store);
        settings.load();
        if (m_invocation.key.isEmpty() && keyStored) {
            const Ctl::StoredKeyUse use = Ctl::storedKeyUse(m_address, settings, m_fileName);
            if (!use.refusal.isEmpty()) {
                printField(QStringLiteral("Bridge"), use.refusal);
                return finish(exitFailed);
            }
            known = use.knowledge;
        } else if (sameBridgeAddress(m_address, storedAddress())) {
            known = {settings.bridgeTransport(), settings.bridgeIdentity(), false};
        }
    }
    probeBridge(*m_network, *address, known, this,
                [this, key](const ProbeResult& result) { onStatusProbe(result, key); });
}

void CtlConnectionCommands::onStatusProbe(const ProbeResult& result, const QString& key)
{
    if (!result.contact) {
        printField(QStringLiteral("Bridge"), printable(result.problem));
        return finish(exitFailed);
    }
    const ProbedBridge& contact = *result.contact;
    printField(QStringLiteral("Bridge id"), contact.bridgeId);
    printField(QStringLiteral("Transport"), describeTransport(contact.transport, contact.signer));
    if (key.isEmpty()) {
        printField(QStringLiteral("Bridge"), QStringLiteral("answers; no key yet: run glowdeckctl pair"));
        return finish(exitDone);
    }
    LightsRead{.endpoint = contact.endpoint, .key = key, .identity = contact.identity()}.fetch(
        *m_network,
        [this, contact, key](const LightsResult& result) { onStatusLights(result, contact, key); });
}

void CtlConnectionCommands::onStatusLights(const LightsResult& result, const ProbedBridge& contact,
                                           const QString& key)
{
    if (result.ok() || result.error == LightsError::noDevices) {
        printField(
            QStringLiteral("Bridge"),
            QStringLiteral("answers (%1)").arg(Ctl::counted(result.records.size(), QStringLiteral("light"))));
        return reportUpdates(contact, key);
    }
    QString state = QStringLiteral("answers, but sent no lamps for this key; run glowdeckctl pair");
    if (result.timedOut)
        state = QStringLiteral("answers too slowly: gave up on its lamps after %1 s")
                    .arg(fetchDeadline.count() / 1000);
    else if (result.error == LightsError::connectionFailed)
        state = QStringLiteral("does not answer");
    else if (result.bridgeErrors.isEmpty() && !result.message.isEmpty())
        state = QStringLiteral("answers, but its lamps cannot be read");
    printField(QStringLiteral("Bridge"), state);
    finish(exitFailed);
}

void CtlConnectionCommands::reportUpdates(const ProbedBridge& contact, const QString& key)
{
    // The tray application's choice, said the same way: pushed changes while the stream is up, else reading.
    if (contact.transport != BridgeAddress::https)
        return onUpdates(QStringLiteral("no event stream over plain HTTP"));
    m_stream = std::make_unique<BridgeEventStream>(*m_network);
    connect(m_stream.get(), &BridgeEventStream::connected, this, [this] { onUpdates({}); });
    connect(m_stream.get(), &BridgeEventStream::disconnected, this,
            [this](const QString& reason) { onUpdates(Ctl::clause(printable(reason))); });
    connect(m_stream.get(), &BridgeEventStream::unavailable, this,
            [this](const QString& reason) { onUpdates(Ctl::clause(printable(reason))); });
    m_streamWait.setSingleShot(true);
    connect(&m_streamWait, &QTimer::timeout, this, [this] {
        onUpdates(QStringLiteral("the event stream did not answer within %1 s")
                      .arg(QString::number(streamPatience.count())));
    });
    m_streamWait.start(streamPatience);
    m_stream->start(contact.endpoint, key, contact.identity());
}

void CtlConnectionCommands::onUpdates(const QString& reasonToRead)
{
    if (m_finished)
        return;
    m_streamWait.stop();
    if (m_stream)
        m_stream->stop();
    printField(QStringLiteral("Updates"),
               reasonToRead.isEmpty()
                   ? QStringLiteral("live updates (the bridge pushes its changes)")
                   : QStringLiteral("reading every %1 s (%2)")
                         .arg(Ctl::seconds(BridgeConnection::refreshInterval), reasonToRead));
    finish(exitDone);
}

void CtlConnectionCommands::finish(int exitStatus)
{
    if (m_finished)
        return;
    m_finished = true;
    Q_EMIT finished(exitStatus);
}
