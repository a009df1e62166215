#include "preferences/panes/LightsPane.h"

#include "preferences/panes/LampSelectorView.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeLink.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

LightsPane::LightsPane(BridgeSessions& sessions, QWidget* parent)
    : QWidget(parent), m_sessions(sessions), m_layout(new QVBoxLayout(this)),
      m_pickerLabel(new QLabel(tr("Bridge:"), this)), m_picker(new QComboBox(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_picker->setObjectName(QStringLiteral("lightsBridgePicker"));
    m_picker->setAccessibleName(tr("Bridge"));
    m_pickerLabel->setBuddy(m_picker);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(20, 12, 20, 0);
    row->addWidget(m_pickerLabel);
    row->addWidget(m_picker, 1);
    m_layout->addLayout(row);

    connect(m_picker, &QComboBox::activated, this, [this](int index) {
        const QList<BridgeSession*> sessions = m_sessions.all();
        if (index >= 0 && index < sessions.size())
            showBridge(sessions.at(index));
    });
    connect(&m_sessions, &BridgeSessions::added, this, [this](BridgeSession* session) {
        connect(&session->link(), &BridgeLink::bridgeContactChanged, this, &LightsPane::refill);
        refill();
    });
    // Sent while the session still lives: a view of its lamps goes before it does.
    connect(&m_sessions, &BridgeSessions::removed, this, [this](BridgeSession* leaving) {
        if (leaving == m_shown) {
            const QList<BridgeSession*> sessions = m_sessions.all();
            const auto other = std::find_if(sessions.cbegin(), sessions.cend(),
                                            [leaving](const BridgeSession* s) { return s != leaving; });
            showBridge(other == sessions.cend() ? nullptr : *other);
        }
        QMetaObject::invokeMethod(this, &LightsPane::refill, Qt::QueuedConnection);
    });
    for (BridgeSession* session : m_sessions.all())
        connect(&session->link(), &BridgeLink::bridgeContactChanged, this, &LightsPane::refill);
    refill();
}

void LightsPane::refill()
{
    const QList<BridgeSession*> sessions = m_sessions.all();
    if (!sessions.contains(m_shown))
        showBridge(sessions.value(0));
    m_picker->clear();
    for (BridgeSession* session : sessions)
        m_picker->addItem(m_sessions.nameOf(*session));
    m_picker->setCurrentIndex(int(sessions.indexOf(m_shown)));
    // One bridge: its lamps, as the pane has always shown them.
    m_pickerLabel->setVisible(sessions.size() > 1);
    m_picker->setVisible(sessions.size() > 1);
}

void LightsPane::showBridge(BridgeSession* session)
{
    if (session == m_shown && (m_view || !session))
        return;
    delete m_view;
    m_view = nullptr;
    m_shown = session;
    if (!session)
        return;
    m_view = new LampSelectorView(session->link(), this);
    connect(m_view, &LampSelectorView::connectionPaneRequested, this, &LightsPane::connectionPaneRequested);
    m_layout->addWidget(m_view, 1);
}
