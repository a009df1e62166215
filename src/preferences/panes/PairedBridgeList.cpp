#include "preferences/panes/PairedBridgeList.h"

#include "preferences/panes/PaneWidgets.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {
enum Column
{
    nameColumn,
    idColumn,
    addressColumn,
    transportColumn,
    stateColumn,
};

/// Past this many rows the list scrolls rather than grows.
constexpr int tallestRows = 5;
} // namespace

PairedBridgeList::PairedBridgeList(BridgeSessions& sessions, QWidget* parent)
    : QWidget(parent), m_sessions(sessions), m_list(new QTreeWidget(this)),
      m_add(new QPushButton(tr("Add a bridge…"), this)), m_pairAgain(new QPushButton(tr("Pair again"), this)),
      m_remove(new QPushButton(tr("Remove"), this))
{
    m_list->setObjectName(QStringLiteral("pairedBridges"));
    m_list->setAccessibleName(tr("Paired bridges"));
    m_list->setHeaderLabels({tr("Name"), tr("ID"), tr("Address"), tr("Transport"), tr("State")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    m_add->setObjectName(QStringLiteral("addBridge"));
    m_pairAgain->setObjectName(QStringLiteral("pairBridgeAgain"));
    m_remove->setObjectName(QStringLiteral("removeBridge"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_add);
    buttons->addStretch();
    buttons->addWidget(m_pairAgain);
    buttons->addWidget(m_remove);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PaneWidgets::subheading(tr("Paired bridges"), this));
    layout->addWidget(m_list);
    layout->addLayout(buttons);

    connect(m_list, &QTreeWidget::currentItemChanged, this, &PairedBridgeList::onCurrentRowChanged);
    connect(m_add, &QPushButton::clicked, this, &PairedBridgeList::addRequested);
    connect(m_pairAgain, &QPushButton::clicked, this, [this] {
        if (BridgeSession* session = selected())
            Q_EMIT pairAgainRequested(session);
    });
    connect(m_remove, &QPushButton::clicked, this, [this] {
        if (BridgeSession* session = selected())
            Q_EMIT removeRequested(session);
    });
    connect(&m_sessions, &BridgeSessions::added, this, &PairedBridgeList::onAdded);
    connect(&m_sessions, &BridgeSessions::removed, this, &PairedBridgeList::onRemoved);
    for (BridgeSession* session : m_sessions.all())
        onAdded(session);
    onCurrentRowChanged();
}

BridgeSession* PairedBridgeList::selected() const
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem());
    return row < 0 ? nullptr : m_rows.at(row);
}

void PairedBridgeList::select(BridgeSession* session)
{
    const qsizetype row = m_rows.indexOf(session);
    if (row >= 0)
        m_list->setCurrentItem(m_list->topLevelItem(int(row)));
}

QString PairedBridgeList::stateOf(const BridgeSession& session)
{
    const BridgeLink& link = session.link();
    const BridgeHome& home = link.home();
    if (link.hueKey().isEmpty())
        return tr("not paired");
    if (home.bridgeConnected())
        return home.liveUpdates() ? tr("live") : tr("reading");
    switch (home.bridgeReach()) {
    case BridgeHome::Reach::notAnswering:
        return tr("not answering");
    case BridgeHome::Reach::refused:
        return tr("not trusted");
    case BridgeHome::Reach::unknown:
    case BridgeHome::Reach::answering:
        break;
    }
    return tr("connecting");
}

void PairedBridgeList::onAdded(BridgeSession* session)
{
    m_rows.append(session);
    new QTreeWidgetItem(m_list);
    const auto changed = [this, session] {
        updateRow(session);
        updateShape();
    };
    BridgeLink& link = session->link();
    connect(&link, &BridgeLink::hueIPChanged, this, changed);
    connect(&link, &BridgeLink::hueKeyChanged, this, changed);
    connect(&link, &BridgeLink::bridgeContactChanged, this, changed);
    connect(&link.home(), &BridgeHome::bridgeConnectedChanged, this, changed);
    connect(&link.home(), &BridgeHome::bridgeReachChanged, this, changed);
    connect(&link.home(), &BridgeHome::liveUpdatesChanged, this, changed);
    changed();
}

void PairedBridgeList::onRemoved(BridgeSession* session)
{
    const qsizetype row = m_rows.indexOf(session);
    if (row < 0)
        return;
    // The session still lives: nothing it or its home sends later may reach a row that is gone.
    disconnect(&session->link(), nullptr, this, nullptr);
    disconnect(&session->link().home(), nullptr, this, nullptr);
    const bool wasSelected = selected() == session;
    {
        // While the row goes, the selection moves through rows of the old order: say only where it ends.
        const QSignalBlocker quiet(m_list);
        m_rows.removeAt(row);
        delete m_list->takeTopLevelItem(int(row));
    }
    updateShape();
    if (wasSelected)
        onCurrentRowChanged();
}

void PairedBridgeList::onCurrentRowChanged()
{
    const bool any = selected() != nullptr;
    m_pairAgain->setEnabled(any);
    m_remove->setEnabled(any);
    Q_EMIT selectionChanged(selected());
}

void PairedBridgeList::updateRow(const BridgeSession* session)
{
    const qsizetype row = m_rows.indexOf(session);
    if (row < 0)
        return;
    const BridgeLink& link = session->link();
    const QString transport = link.bridgeTransport().toUpper(); // "HTTPS" or "HTTP", empty until known
    const QString name = link.displayName().isEmpty() ? tr("New bridge") : link.displayName();
    QTreeWidgetItem* item = m_list->topLevelItem(int(row));
    item->setText(nameColumn, name);
    item->setText(idColumn, link.bridgeID());
    item->setText(addressColumn, link.hueIP());
    item->setText(transportColumn, transport);
    item->setText(stateColumn, stateOf(*session));
}

void PairedBridgeList::updateShape()
{
    const bool anyPaired = std::any_of(m_rows.cbegin(), m_rows.cend(), [](const BridgeSession* session) {
        return !session->link().hueKey().isEmpty();
    });
    setVisible(anyPaired);
    const int rows = std::clamp(int(m_rows.size()), 1, tallestRows);
    const int rowHeight = m_list->topLevelItemCount() > 0 ? m_list->sizeHintForRow(0) : 0;
    m_list->setFixedHeight(m_list->header()->sizeHint().height() + rows * rowHeight +
                           2 * m_list->frameWidth());
}
