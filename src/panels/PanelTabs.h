#pragma once

#include "state/MainPanels.h"

#include <QList>
#include <QWidget>

class Preferences;
class QAbstractButton;

/// The row of panel tabs under the title bar: lights, rooms and, while the scene panel is offered, scenes.
/// The tabs share the width equally; the active panel's tab is yellow.
class PanelTabs final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelTabs)

public:
    explicit PanelTabs(Preferences& preferences, QWidget* parent = nullptr);

    /// The tab of `panel`; null for a value outside the three.
    QAbstractButton* tab(MainPanels panel) const;

private:
    void onTabClicked(MainPanels panel);
    void onShowScenesChanged();
    void onActiveMainPanelChanged();

    Preferences& m_preferences;
    QList<QAbstractButton*> m_tabs; // indexed by the panel's integer
};
