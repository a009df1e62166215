#include "panels/ListLights.h"

#include "panels/FilterField.h"
#include "panels/LightRow.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/LightVisibility.h"

#include <QHash>
#include <QSet>

namespace {
constexpr int padding = 10;
constexpr int rowSpacing = 8;
} // namespace

ListLights::ListLights(BridgeLink& settings, BridgeCommands& commands, QWidget* parent)
    : ScrollColumn(padding, rowSpacing, parent), m_settings(settings), m_commands(commands),
      m_filter(new FilterField(tr("Filter lamps"), this))
{
    m_filter->setObjectName(QStringLiteral("lampFilter"));
    m_filter->setAccessibleDescription(tr("Type part of a lamp's name. Escape clears it."));
    setHeader(m_filter);
    connect(m_filter, &FilterField::textChanged, this, &ListLights::applyFilter);
    connect(&m_settings.home(), &BridgeHome::lightsChanged, this, &ListLights::onLightsChanged);
    connect(&m_settings.home(), &BridgeHome::bridgeConnectedChanged, this,
            &ListLights::onBridgeConnectedChanged);
    m_settings.preferences().whenLightVisibilityChanged(this, &ListLights::onLightsChanged);
    refresh();
}

QList<LightRow*> ListLights::lightRows() const
{
    QList<LightRow*> result;
    for (QWidget* row : rows())
        result.append(static_cast<LightRow*>(row));
    return result;
}

void ListLights::refresh()
{
    onLightsChanged();
}

QList<HueLight> ListLights::shownLights() const
{
    QList<HueLight> shown;
    QSet<QString> seen;
    const QList<HueLight> lights = LightVisibility::shownLights(m_settings);
    for (const HueLight& light : lights) {
        // A light listed twice gets one row; the first record wins, as it does for the row's writes.
        if (seen.contains(light.lamp_id))
            continue;
        seen.insert(light.lamp_id);
        shown.append(light);
    }
    return shown;
}

void ListLights::onLightsChanged()
{
    QHash<QString, LightRow*> previous;
    for (LightRow* row : lightRows())
        previous.insert(row->lampId(), row);

    const bool reachable = m_settings.home().bridgeConnected();
    QList<QWidget*> rows;
    for (const HueLight& light : shownLights()) {
        LightRow* row = previous.take(light.lamp_id);
        if (row == nullptr) {
            row = new LightRow(m_settings, m_commands, light, content());
            row->setBridgeReachable(reachable);
        } else {
            row->setLight(light);
        }
        rows.append(row);
    }
    setHeaderVisible(rows.size() > FilterField::threshold);
    if (m_filter->isHidden())
        m_filter->clear();
    arrange(rows);
    applyFilter();
    // Called from inside a row's own write when a light vanishes: let the row finish its handler first.
    for (LightRow* gone : std::as_const(previous)) {
        gone->hide();
        gone->deleteLater();
    }
}

void ListLights::onBridgeConnectedChanged()
{
    const bool reachable = m_settings.home().bridgeConnected();
    for (LightRow* row : lightRows())
        row->setBridgeReachable(reachable);
}

void ListLights::applyFilter()
{
    const QString typed = m_filter->folded();
    for (LightRow* row : lightRows()) {
        const bool match = FilterField::matches(row->name(), typed);
        if (row->isVisibleTo(this) != match)
            row->setVisible(match);
    }
}
