#pragma once

#include "panels/ScrollColumn.h"

class BridgeLink;
class FilterField;
class GroupRow;
class BridgeCommands;
class QLabel;

/// The rooms panel: one `GroupRow` per room of `BridgeHome::groups`, in that order. Follows the rooms, the
/// lights (membership decides the colour bars) and the colour-bars option; rows are updated in place. Every
/// row is dimmed while the bridge cannot be reached. Above more than `FilterField::threshold` rooms a filter
/// field narrows the rows to the rooms and zones whose name holds the typed text.
class ListGroups final : public ScrollColumn
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ListGroups)

public:
    ListGroups(BridgeLink& settings, BridgeCommands& commands, QWidget* parent = nullptr);

    /// The shown rows, top to bottom.
    QList<GroupRow*> groupRows() const;
    /// The filter field; hidden while there are few rooms.
    FilterField* filterField() const { return m_filter; }

private:
    void onGroupsChanged();
    void onBridgeConnectedChanged();
    void applyFilter();

    BridgeLink& m_settings;
    BridgeCommands& m_commands;
    FilterField* m_filter;
    QLabel* m_zonesHeading; ///< above the zones, after the rooms
};
