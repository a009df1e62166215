#pragma once

#include "model/HueLight.h"

#include <QList>
#include <QWidget>

class BridgeLink;
class LinkButton;
class QLabel;
class QListWidget;
class QPushButton;

/// The lights pane: one switch per light in the current order, on when the light is shown in the drop-down
/// window. Rows are dragged (or moved with the buttons below, or Alt+Up and Alt+Down) into a new order, which
/// is stored at once as that bridge's "lightOrder_<bridge id>" and applied to the next list read from the
/// bridge.
class LampSelectorView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LampSelectorView)

public:
    explicit LampSelectorView(BridgeLink& settings, QWidget* parent = nullptr);

    /// The lights as the pane lists them, top to bottom.
    QList<HueLight> lights() const { return m_lights; }
    QListWidget& list() const { return *m_list; }

    /// Moves the light in row `from` to row `to` (as the list ends up), and stores the order.
    void moveLight(int from, int to);

Q_SIGNALS:
    /// The user wants to connect to a bridge first (the pane has nothing to list).
    void connectionPaneRequested();

private:
    void onLightsChanged();
    void onVisibilityChanged();
    void onItemChanged();
    void onRowsMoved();
    void onCurrentRowChanged();
    int selectedRow() const;
    void rebuild();
    void fitListHeight();
    int rowHeight() const;

    BridgeLink& m_settings;
    QList<HueLight> m_lights;
    QListWidget* m_list;
    QWidget* m_moveButtons;
    QPushButton* m_up;
    QPushButton* m_down;
    QLabel* m_empty;
    LinkButton* m_toConnection;
};
