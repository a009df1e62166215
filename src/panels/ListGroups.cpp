#include "panels/ListGroups.h"

#include "panels/FilterField.h"
#include "panels/GroupRow.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QFont>
#include <QHash>
#include <QLabel>
#include <QSet>

namespace {
constexpr int padding = 10;
constexpr int rowSpacing = 8;
} // namespace

ListGroups::ListGroups(BridgeLink& settings, BridgeCommands& commands, QWidget* parent)
    : ScrollColumn(padding, rowSpacing, parent), m_settings(settings), m_commands(commands),
      m_filter(new FilterField(tr("Filter rooms"), this))
{
    m_filter->setObjectName(QStringLiteral("roomFilter"));
    m_filter->setAccessibleDescription(tr("Type part of a room's or a zone's name. Escape clears it."));
    setHeader(m_filter);
    connect(m_filter, &FilterField::textChanged, this, &ListGroups::applyFilter);
    connect(&m_settings.home(), &BridgeHome::groupsChanged, this, &ListGroups::onGroupsChanged);
    connect(&m_settings.home(), &BridgeHome::lightsChanged, this, &ListGroups::onGroupsChanged);
    m_settings.preferences().whenChanged({SettingsKeys::showColorBarsForRooms, SettingsKeys::showZones}, this,
                                         &ListGroups::onGroupsChanged);
    m_zonesHeading = new QLabel(tr("Zones"), content());
    m_zonesHeading->setObjectName(QStringLiteral("zonesHeading"));
    QFont bold = m_zonesHeading->font();
    bold.setBold(true);
    m_zonesHeading->setFont(bold);
    m_zonesHeading->hide();
    connect(&m_settings.home(), &BridgeHome::bridgeConnectedChanged, this,
            &ListGroups::onBridgeConnectedChanged);
    onGroupsChanged();
}

QList<GroupRow*> ListGroups::groupRows() const
{
    QList<GroupRow*> result;
    for (QWidget* row : rows()) {
        if (auto* groupRow = qobject_cast<GroupRow*>(row))
            result.append(groupRow);
    }
    return result;
}

void ListGroups::onGroupsChanged()
{
    // Rooms get a fresh list identity on every refresh; the bridge's group id is what stays.
    QHash<QString, GroupRow*> previous;
    for (GroupRow* row : groupRows())
        previous.insert(row->groupId(), row);

    const GroupRow::LampAbilities lamps = GroupRow::lampAbilities(m_settings.home().lights());
    const bool reachable = m_settings.home().bridgeConnected();
    QList<QWidget*> rows;
    QList<QWidget*> zones;
    QSet<QString> seen;
    const QList<HueGroup> groups = m_settings.home().groups();
    for (const HueGroup& group : groups) {
        // A room listed twice gets one row; the first record wins, as it does for the row's writes.
        if (seen.contains(group.group_id) || (group.isZone() && !m_settings.preferences().showZones()))
            continue;
        seen.insert(group.group_id);
        GroupRow* row = previous.take(group.group_id);
        if (row == nullptr) {
            row = new GroupRow(m_settings, m_commands, group, content());
            row->setBridgeReachable(reachable);
        } else {
            row->setGroup(group, lamps);
        }
        (group.isZone() ? zones : rows).append(row);
    }
    setHeaderVisible(rows.size() + zones.size() > FilterField::threshold);
    if (m_filter->isHidden())
        m_filter->clear();
    // The zones after the rooms, under their heading.
    if (!zones.isEmpty())
        rows += QList<QWidget*>{m_zonesHeading} + zones;
    else
        m_zonesHeading->hide();
    arrange(rows);
    applyFilter();
    // Possibly called from inside a row's own write: let the row finish its handler first.
    for (GroupRow* gone : std::as_const(previous)) {
        gone->hide();
        gone->deleteLater();
    }
}

void ListGroups::onBridgeConnectedChanged()
{
    const bool reachable = m_settings.home().bridgeConnected();
    for (GroupRow* row : groupRows())
        row->setBridgeReachable(reachable);
}

void ListGroups::applyFilter()
{
    const QString typed = m_filter->folded();
    bool anyZone = false;
    for (GroupRow* row : groupRows()) {
        const bool match = FilterField::matches(row->name(), typed);
        if (row->isVisibleTo(this) != match)
            row->setVisible(match);
        anyZone = anyZone || (match && rows().indexOf(row) > rows().indexOf(m_zonesHeading));
    }
    // The zones' heading goes with its last zone.
    if (rows().contains(m_zonesHeading))
        m_zonesHeading->setVisible(anyZone);
}
