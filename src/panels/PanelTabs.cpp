#include "panels/PanelTabs.h"

#include "panels/PanelTab.h"
#include "state/Preferences.h"

#include <QHBoxLayout>

namespace {
constexpr int outerPadding = 10;
constexpr int tabSpacing = 5;
constexpr int verticalPadding = 5;
} // namespace

PanelTabs::PanelTabs(Preferences& preferences, QWidget* parent) : QWidget(parent), m_preferences(preferences)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(outerPadding, verticalPadding, outerPadding, verticalPadding);
    layout->setSpacing(tabSpacing);

    const struct
    {
        QString label;
        QString name;
        MainPanels panel;
    } tabs[] = {
        {QStringLiteral("\U0001F4A1"), tr("Lights"), MainPanels::lights},
        {QStringLiteral("\U0001F3E0"), tr("Rooms"), MainPanels::rooms},
        {QStringLiteral("\U0001F3AC"), tr("Scenes"), MainPanels::scenes},
    };
    for (const auto& [label, name, panel] : tabs) {
        auto* tab = new PanelTab(label, name, this);
        tab->setObjectName(QStringLiteral("panelTab%1").arg(int(panel)));
        layout->addWidget(tab, 1);
        connect(tab, &QAbstractButton::clicked, this, [this, panel = panel] { onTabClicked(panel); });
        m_tabs.append(tab);
    }

    m_preferences.whenChanged({SettingsKeys::showScenes}, this, &PanelTabs::onShowScenesChanged);
    m_preferences.whenChanged({SettingsKeys::activePanel}, this, &PanelTabs::onActiveMainPanelChanged);
    onShowScenesChanged();
    onActiveMainPanelChanged();
}

QAbstractButton* PanelTabs::tab(MainPanels panel) const
{
    const int index = int(panel);
    return index >= 0 && index < m_tabs.size() ? m_tabs.at(index) : nullptr;
}

void PanelTabs::onTabClicked(MainPanels panel)
{
    // The panel changes from the event loop, after the click has finished, as every tap does; the setter
    // then asks the window for the panel's height, also when the tab was already active.
    QMetaObject::invokeMethod(
        this, [this, panel] { m_preferences.setActiveMainPanel(panel); }, Qt::QueuedConnection);
}

void PanelTabs::onShowScenesChanged()
{
    tab(MainPanels::scenes)->setVisible(m_preferences.showScenes());
}

void PanelTabs::onActiveMainPanelChanged()
{
    for (int index = 0; index < m_tabs.size(); ++index)
        static_cast<PanelTab*>(m_tabs.at(index))->setActive(index == int(m_preferences.activeMainPanel()));
}
