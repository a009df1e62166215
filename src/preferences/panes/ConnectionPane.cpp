#include "preferences/panes/ConnectionPane.h"

#include "preferences/panes/ConnectionView.h"
#include "preferences/panes/PairedBridgeList.h"
#include "preferences/panes/PaneWidgets.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeLink.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

ConnectionPane::ConnectionPane(BridgeSessions& sessions, BridgeDiscovery& discovery, DebugReport& debugReport,
                               AddBridge addBridge, RemoveBridge removeBridge, QWidget* parent)
    : QWidget(parent), m_sessions(sessions), m_discovery(discovery), m_debugReport(debugReport),
      m_addBridge(std::move(addBridge)), m_removeBridge(std::move(removeBridge)),
      m_list(new PairedBridgeList(sessions, this)), m_layout(new QVBoxLayout(this))
{
    // The view below keeps margins of its own; the list gets the same ones, so that both line up.
    m_list->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin, 0);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_list);

    // The list announces no selection while its selected row goes; onRemoved() answers that.
    connect(m_list, &PairedBridgeList::selectionChanged, this, [this](BridgeSession* session) {
        if (session)
            showSession(session);
    });
    connect(m_list, &PairedBridgeList::addRequested, this, &ConnectionPane::onAdd);
    connect(m_list, &PairedBridgeList::pairAgainRequested, this, &ConnectionPane::onPairAgain);
    connect(m_list, &PairedBridgeList::removeRequested, this, &ConnectionPane::onRemove);
    connect(&m_sessions, &BridgeSessions::removed, this, &ConnectionPane::onRemoved);
    m_list->select(m_sessions.first());
    showSession(m_sessions.first());
}

QString ConnectionPane::removeQuestion(const QString& name)
{
    return tr("Remove the bridge %1? Glowdeck forgets its key and stops showing its lights; to use it again, "
              "pair it again with its link button.")
        .arg(name);
}

void ConnectionPane::showSession(BridgeSession* session)
{
    if (m_view && &m_view->session() == session)
        return;
    // At once, not later: the view holds references into its session, which may be about to go.
    delete m_view;
    m_view = nullptr;
    if (!session)
        return;
    m_view = new ConnectionView(*session, m_sessions, m_discovery, m_debugReport, this);
    m_layout->addWidget(m_view);
    m_view->show();
}

void ConnectionPane::onAdd()
{
    BridgeSession& session = m_addBridge();
    m_list->select(&session);
    showSession(&session);
}

void ConnectionPane::onPairAgain(BridgeSession* session)
{
    showSession(session);
    m_view->pairAgain();
}

void ConnectionPane::onRemove(BridgeSession* session)
{
    const QPointer<ConnectionPane> self(this);
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::Question, tr("Remove bridge"),
                        removeQuestion(session->link().displayName()), QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("removeBridgeQuestion"));
    const QPushButton* remove = box->addButton(tr("Remove"), QMessageBox::DestructiveRole);
    box->setDefaultButton(QMessageBox::Cancel);
    box->exec();
    // The window may have closed, or the session ended, while the question was open.
    if (!self || !box)
        return;
    const bool confirmed = box->clickedButton() == remove;
    delete box;
    if (confirmed && m_sessions.all().contains(session))
        m_removeBridge(*session);
}

void ConnectionPane::onRemoved(BridgeSession* session)
{
    if (m_view && &m_view->session() != session)
        return;
    BridgeSession* other = nullptr;
    for (BridgeSession* candidate : m_sessions.all()) {
        if (candidate != session) {
            other = candidate;
            break;
        }
    }
    showSession(other);
    m_list->select(other);
}
