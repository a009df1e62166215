#include "preferences/panes/ConnectionView.h"

#include "connection/BridgeProbe.h"

#include "connection/BridgeConnection.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgePairing.h"
#include "preferences/panes/ConfigurationPart.h"
#include "preferences/panes/DebugReport.h"
#include "preferences/panes/ImagePlayer.h"
#include "preferences/panes/PaneWidgets.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

ConnectionView::ConnectionView(BridgeSession& session, const BridgeSessions& sessions,
                               BridgeDiscovery& discovery, DebugReport& debugReport, QWidget* parent)
    : QWidget(parent), m_session(session), m_sessions(sessions), m_settings(session.link()),
      m_discovery(discovery), m_pairing(session.pairing()), m_connection(session.connection()),
      m_debugReport(debugReport), m_status(new QLabel(this)), m_statusButton(new QPushButton(this)),
      m_statusDetail(PaneWidgets::wrappedText(QString(), this)),
      m_connectedHint(PaneWidgets::wrappedText(connectedHint(), this)),
      m_unpairedHint(PaneWidgets::wrappedText(unpairedHint(), this)),
      m_security(PaneWidgets::wrappedText(QString(), this)),
      m_configuration(new ConfigurationPart(m_settings, this)),
      m_choiceHint(PaneWidgets::wrappedText(tr("Several bridges answered. Pick yours:"), this)),
      m_choices(new QListWidget(this)), m_useChoice(new QPushButton(tr("Use this bridge"), this)),
      m_error(PaneWidgets::wrappedText(QString(), this)),
      m_linkHint(PaneWidgets::wrappedText(linkButtonHint(), this)), m_player(new ImagePlayer(this)),
      m_sendDebug(new LinkButton(sendDebugText(), this))
{
    m_status->setObjectName(QStringLiteral("connectionStatus"));
    QFont bold = m_status->font();
    bold.setBold(true);
    m_status->setFont(bold);
    m_statusButton->setObjectName(QStringLiteral("statusButton"));
    m_statusDetail->setObjectName(QStringLiteral("statusDetail"));
    m_linkHint->setObjectName(QStringLiteral("linkButtonHint"));
    m_error->setObjectName(QStringLiteral("connectionError"));
    m_security->setObjectName(QStringLiteral("connectionSecurity"));
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_sendDebug->setObjectName(QStringLiteral("sendDebugLink"));
    m_choices->setObjectName(QStringLiteral("bridgeChoices"));
    m_choices->setAccessibleName(tr("Bridges found"));
    m_useChoice->setObjectName(QStringLiteral("useBridge"));
    for (QWidget* part : std::initializer_list<QWidget*>{m_choiceHint, m_choices, m_useChoice})
        part->hide();

    auto* statusRow = new QHBoxLayout;
    statusRow->addWidget(m_status);
    statusRow->addSpacing(12);
    statusRow->addWidget(m_statusButton);
    statusRow->addStretch();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin,
                               PaneWidgets::margin);
    layout->setSpacing(10);
    layout->addWidget(PaneWidgets::heading(tr("Connect to a Hue bridge"), this));
    layout->addWidget(PaneWidgets::subheading(tr("Connection status"), this));
    layout->addLayout(statusRow);
    layout->addWidget(m_statusDetail);
    layout->addWidget(m_security);
    layout->addWidget(m_connectedHint);
    layout->addWidget(m_unpairedHint);
    layout->addSpacing(6);
    layout->addWidget(m_configuration);
    layout->addWidget(m_choiceHint);
    layout->addWidget(m_choices);
    layout->addWidget(m_useChoice, 0, Qt::AlignLeft);
    layout->addWidget(m_error);
    layout->addSpacing(6);
    layout->addWidget(m_linkHint);
    layout->addWidget(m_player, 0, Qt::AlignHCenter);
    layout->addWidget(m_sendDebug);

    connect(m_statusButton, &QPushButton::clicked, this, &ConnectionView::onStatusButton);
    // A double click or Enter on a row, or the button, takes the bridge of the current row.
    connect(m_choices, &QListWidget::itemActivated, this, &ConnectionView::onBridgeChosen);
    connect(m_useChoice, &QPushButton::clicked, this, &ConnectionView::onBridgeChosen);
    connect(&m_connection, &BridgeConnection::bridgeMoved, this,
            [this](const QString&, const QString& from, const QString& to) {
                m_moved = tr("It moved from %1 to %2 and was found there by itself.").arg(from, to);
                onStateChanged();
            });
    connect(m_configuration, &ConfigurationPart::connectRequested, this, &ConnectionView::onConnect);
    connect(m_configuration, &ConfigurationPart::connectionTypeChanged, this, &ConnectionView::updateBusy);
    connect(m_configuration, &ConfigurationPart::detectRequested, this, &ConnectionView::onDetect);
    connect(m_sendDebug, &LinkButton::clicked, this, &ConnectionView::onSendDebug);
    connect(&m_pairing, &BridgePairing::pairingFinished, this, &ConnectionView::onPairingFinished);
    connect(&m_settings.home(), &BridgeHome::bridgeConnectedChanged, this, &ConnectionView::onStateChanged);
    connect(&m_settings.home(), &BridgeHome::bridgeReachChanged, this, &ConnectionView::onStateChanged);
    connect(&m_settings, &BridgeLink::hueIPChanged, this, &ConnectionView::onStateChanged);
    connect(&m_settings.home(), &BridgeHome::liveUpdatesChanged, this, &ConnectionView::onStateChanged);
    connect(&m_settings.home(), &BridgeHome::connectionErrorMessageChanged, this,
            &ConnectionView::onStateChanged);
    connect(&m_settings, &BridgeLink::hueKeyChanged, this, &ConnectionView::onStateChanged);
    connect(&m_settings, &BridgeLink::bridgeContactChanged, this, &ConnectionView::onStateChanged);
    onStateChanged();
}

QString ConnectionView::connectedHint()
{
    // Panels sit at the top, the bottom or the side, and some desktops have none: name no place.
    return tr("Click Glowdeck's lamp icon (or open its window) and you should see your lights now. If not, "
              "you can try to re-connect.");
}

QString ConnectionView::unpairedHint()
{
    return tr("Glowdeck is not paired with a Hue bridge yet. Press the round link button on the bridge, then "
              "click \"Detect and pair\" below: it finds the bridge and asks it to pair at once. Or choose "
              "Manual, type the bridge's address and click Connect.");
}

QString ConnectionView::linkButtonHint()
{
    return tr("You need to press the link button on your bridge before clicking \"Detect and pair\" or "
              "Connect.");
}

QString ConnectionView::notAnsweringHint(const QString& address)
{
    return tr("The bridge at %1 does not answer. Glowdeck keeps its key and keeps trying, and looks for the "
              "bridge on your network in case it moved. Check that the bridge has power and is connected to "
              "your router.")
        .arg(address);
}

QString ConnectionView::refusedHint(const QString& address)
{
    return tr("Glowdeck sent nothing to %1, not even its key. Pairing again is not the fix: it would trust "
              "whatever answers there. Detect finds your bridge if it moved; pair again only with a bridge "
              "you reset or replaced yourself.")
        .arg(address);
}

QString ConnectionView::sendDebugText()
{
    return tr("Connection trouble? Click to send debug data!");
}

QString ConnectionView::allPairedText()
{
    return tr("Every bridge found is paired already.");
}

void ConnectionView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        onStateChanged();
}

void ConnectionView::onStateChanged()
{
    using Reach = BridgeHome::Reach;
    const bool connected = m_settings.home().bridgeConnected();
    const bool dark = PaneWidgets::isDark(this);
    // Once paired, "disconnected" would leave the user to guess: say what the bridge did.
    const Reach reach =
        connected || m_settings.hueKey().isEmpty() ? Reach::unknown : m_settings.home().bridgeReach();
    m_status->setText(connected                      ? tr("CONNECTED")
                      : reach == Reach::notAnswering ? tr("NOT ANSWERING")
                      : reach == Reach::refused      ? tr("NOT TRUSTED")
                                                     : tr("DISCONNECTED"));
    QPalette palette = m_status->palette();
    palette.setColor(QPalette::WindowText,
                     connected ? PaneWidgets::goodColor(dark) : PaneWidgets::badColor(dark));
    m_status->setPalette(palette);
    const QString address = m_settings.hueIP();
    m_statusDetail->setText(reach == Reach::notAnswering ? notAnsweringHint(address)
                            : reach == Reach::refused    ? refusedHint(address)
                                                         : QString());
    m_statusDetail->setVisible(!m_statusDetail->text().isEmpty());
    m_connectedHint->setVisible(connected);
    // What a new user needs to know first; once paired it would only be in the way.
    m_unpairedHint->setVisible(!connected && m_settings.hueKey().isEmpty());
    // The link button is the answer only while a key is what is missing: not once connected, nor for a
    // paired bridge that does not answer or is not trusted.
    const bool linkButtonHelps = !connected && reach != Reach::notAnswering && reach != Reach::refused;
    m_linkHint->setVisible(linkButtonHelps);
    m_player->setVisible(linkButtonHelps);
    m_error->setText(m_settings.home().connectionErrorMessage());
    m_error->setVisible(!m_settings.home().connectionErrorMessage().isEmpty());
    // Whether the key travels encrypted, and to which bridge: worth a line while paired.
    const QString transport = describeTransport(m_settings.bridgeTransport(), m_settings.bridgeSigner());
    const bool paired = !m_settings.hueKey().isEmpty() && !transport.isEmpty();
    QString security = paired && !m_settings.bridgeID().isEmpty()
                           ? tr("Bridge %1, over %2").arg(m_settings.bridgeID(), transport)
                           : tr("Over %1").arg(transport);
    // How changes made elsewhere get here: pushed by the bridge, or read every few seconds.
    if (connected)
        security +=
            u'\n' + (m_settings.home().liveUpdates() ? tr("Live updates: the bridge tells of every change")
                                                     : tr("Reading every 3.5 s"));
    // Which of the bridge's interfaces this session uses: an older bridge lacks the newer features.
    if (connected && m_settings.bridgeInterface() != BridgeInterface::unknown)
        security +=
            u'\n' + (m_settings.bridgeInterface() == BridgeInterface::v2 ? tr("interface v2")
                                                                         : tr("interface v1 (older bridge)"));
    if (!m_moved.isEmpty())
        security += u'\n' + m_moved;
    m_security->setText(security);
    m_security->setVisible(paired);
    updateBusy();
}

void ConnectionView::updateBusy()
{
    const bool connected = m_settings.home().bridgeConnected();
    m_statusButton->setText(connected ? tr("Disconnect") : m_connecting ? tr("Connecting…") : tr("Connect"));
    m_statusButton->setEnabled(connected || !m_connecting);
    // Manual has its own Connect beside the address: a second one by the status would only puzzle.
    m_statusButton->setVisible(connected || m_configuration->connectionType() != ConfigurationPart::manual);
    m_configuration->setBusy(m_detecting, m_connecting);
}

void ConnectionView::onStatusButton()
{
    if (m_settings.home().bridgeConnected())
        onDisconnect();
    else
        onConnect();
}

void ConnectionView::onConnect()
{
    if (m_connecting)
        return;
    m_settings.home().setConnectionErrorMessage(QString());
    m_connecting = true;
    updateBusy();
    // A new key is asked for. The stored one stays until the new one has worked (the connection stores it
    // then): a bridge that does not answer now may well answer after a restart, to the key it knows.
    QTimer::singleShot(connectDelayMilliseconds, this, [this] { m_pairing.pairWithBridge(); });
}

void ConnectionView::pairAgain()
{
    onConnect();
}

void ConnectionView::onPairingFinished()
{
    m_connecting = false;
    updateBusy();
}

void ConnectionView::onDetect()
{
    if (m_detecting)
        return;
    m_detecting = true;
    m_settings.home().setConnectionErrorMessage(QString());
    for (QWidget* part : std::initializer_list<QWidget*>{m_choiceHint, m_choices, m_useChoice})
        part->hide();
    updateBusy();
    // A bridge paired over HTTPS is not replaced by an address that only claims its id in clear.
    const ProbeKnowledge paired{m_settings.bridgeTransport(), m_settings.bridgeIdentity(), false};
    using Found = QList<BridgeDiscovery::FoundBridge>;
    m_discovery.detectBridges(paired, [self = QPointer(this)](Found bridges) {
        if (!self)
            return;
        self->m_detecting = false;
        self->updateBusy();
        if (bridges.isEmpty()) {
            self->m_settings.home().setConnectionErrorMessage(BridgePairing::noConnectionMessage());
            return;
        }
        // Another session serves those already: pairing one here would serve it twice.
        bridges.removeIf([&self](const BridgeDiscovery::FoundBridge& bridge) {
            return self->isPairedElsewhere(bridge.bridgeId);
        });
        if (bridges.isEmpty()) {
            self->m_settings.home().setConnectionErrorMessage(allPairedText());
            return;
        }
        if (bridges.size() == 1)
            return self->useBridge(bridges.first().address);
        // Several: the user says which is theirs.
        self->m_choices->clear();
        for (const BridgeDiscovery::FoundBridge& bridge : bridges) {
            const QString name = bridge.name.isEmpty() ? tr("Hue bridge") : bridge.name;
            auto* row = new QListWidgetItem(tr("%1 at %2 (%3)").arg(name, bridge.address, bridge.bridgeId),
                                            self->m_choices);
            row->setData(Qt::UserRole, bridge.address);
        }
        self->m_choices->setCurrentRow(0);
        self->m_configuration->showFoundCount(int(bridges.size()));
        self->m_choices->setFixedHeight(int(bridges.size()) * (self->m_choices->sizeHintForRow(0) + 2) +
                                        2 * self->m_choices->frameWidth());
        for (QWidget* part :
             std::initializer_list<QWidget*>{self->m_choiceHint, self->m_choices, self->m_useChoice})
            part->show();
        self->m_choices->setFocus();
    });
}

bool ConnectionView::isPairedElsewhere(const QString& bridgeId) const
{
    const BridgeSession* other = m_sessions.find(bridgeId);
    return other && other != &m_session && !other->link().hueKey().isEmpty();
}

void ConnectionView::onBridgeChosen()
{
    const QListWidgetItem* row = m_choices->currentItem();
    if (!row)
        return;
    for (QWidget* part : std::initializer_list<QWidget*>{m_choiceHint, m_choices, m_useChoice})
        part->hide();
    useBridge(row->data(Qt::UserRole).toString());
}

void ConnectionView::useBridge(const QString& address)
{
    m_settings.setHueIP(address);
    // Without a key this asks the bridge for one: the link-button message tells the user what to do.
    m_connection.connectToBridge();
}

void ConnectionView::onDisconnect()
{
    // Forgets the key (also the stored one, as the empty string), empties the lists and marks the bridge
    // disconnected at once; the address stays for the next Connect.
    m_connection.disconnectFromBridge();
}

void ConnectionView::onSendDebug()
{
    m_debugReport.send();
    if (!m_debugSent) {
        m_debugSent = true;
        m_sendDebug->setText(tr("Thank you!"));
        m_sendDebug->updateGeometry();
    }
}
