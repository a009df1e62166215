#pragma once

#include "model/HueLight.h"
#include "panels/ScrollColumn.h"

class BridgeLink;
class BridgeCommands;
class FilterField;
class LightRow;

/// The lights panel: one `LightRow` per light of `BridgeHome::lights`, in that order, leaving out the lights
/// hidden in the preferences. Rows are kept and updated in place when the list changes, so a refresh every
/// few seconds costs little and never cuts off a drag. Every row is dimmed while the bridge cannot be
/// reached. Above more than `FilterField::threshold` lights a filter field narrows the rows to the lights
/// whose name holds the typed text.
class ListLights final : public ScrollColumn
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ListLights)

public:
    ListLights(BridgeLink& settings, BridgeCommands& commands, QWidget* parent = nullptr);

    /// The shown rows, top to bottom.
    QList<LightRow*> lightRows() const;
    /// Reads the lights and the hidden set again (after the preferences changed which lights show).
    void refresh();
    /// The filter field; hidden while there are few lights.
    FilterField* filterField() const { return m_filter; }

private:
    /// Which lights the panel shows, in order: the one place that decides it.
    QList<HueLight> shownLights() const;
    void onLightsChanged();
    void onBridgeConnectedChanged();
    void applyFilter();

    BridgeLink& m_settings;
    BridgeCommands& m_commands;
    FilterField* m_filter;
};
