#pragma once

#include <QWidget>

class BridgeSession;
class BridgeSessions;
class LampSelectorView;
class QComboBox;
class QLabel;
class QVBoxLayout;

/// The lights pane: the lamps of one bridge to show, hide and order (LampSelectorView). With several bridges
/// paired, a list above it picks the bridge; its lamps' order is that bridge's own.
class LightsPane final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LightsPane)

public:
    explicit LightsPane(BridgeSessions& sessions, QWidget* parent = nullptr);

    /// The lamps of the bridge picked; null only while there is no session at all.
    LampSelectorView* lampSelector() const { return m_view; }
    QComboBox& bridgePicker() const { return *m_picker; }

Q_SIGNALS:
    /// The user wants to connect to a bridge first (the pane has nothing to list).
    void connectionPaneRequested();

private:
    void refill();
    void showBridge(BridgeSession* session);

    BridgeSessions& m_sessions;
    QVBoxLayout* m_layout;
    QLabel* m_pickerLabel;
    QComboBox* m_picker;
    BridgeSession* m_shown = nullptr;
    LampSelectorView* m_view = nullptr;
};
