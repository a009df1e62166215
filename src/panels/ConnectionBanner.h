#pragma once

#include <QWidget>

class BridgeSession;
class BridgeSessions;
class QLabel;

/// A line at the top of the body while the bridge cannot be reached: the connection's last error, or
/// "Bridge not reachable — retrying" (a long error wraps rather than losing its end). It goes away at the
/// first successful read. Before the program is paired it only shows a message the connection has for the
/// user (the empty panel says the rest). While the bridge answers, it says that settings cannot be saved,
/// or else shows the current notice (a change the bridge refused). With several bridges it names the bridge
/// that cannot be reached; the others keep working.
class ConnectionBanner final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConnectionBanner)

public:
    explicit ConnectionBanner(BridgeSessions& sessions, QWidget* parent = nullptr);

    /// What the banner says (the whole text, also when the line cuts it).
    QString message() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void onStateChanged();
    void followSession(BridgeSession* session);
    void applyColours();

    BridgeSessions& m_sessions;
    bool m_followsLog = false;
    QLabel* m_text;
};
