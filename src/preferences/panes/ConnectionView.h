#pragma once

#include <QWidget>

class BridgeLink;
class BridgeConnection;
class BridgeDiscovery;
class BridgePairing;
class BridgeSession;
class BridgeSessions;
class ConfigurationPart;
class DebugReport;
class ImagePlayer;
class LinkButton;
class QLabel;
class QListWidget;
class QPushButton;

/// One bridge's connection, under the list of bridges in the connection pane: whether it is connected (or,
/// once paired, whether it answers and proves to be the bridge paired), Connect or Disconnect, finding the
/// bridge or typing its address, the last connection problem, the link-button hint with its animation while
/// pairing is what is needed, and the offer to send debug data. All network work runs asynchronously; the
/// view only starts it and shows the shared state. Connect asks the bridge for a new key and keeps the stored
/// one until the new one has worked. Detect offers only bridges that no other session has paired.
class ConnectionView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConnectionView)

public:
    /// "Connect" waits this long after clearing the message, so a repeated failure visibly comes back.
    static constexpr int connectDelayMilliseconds = 500;

    /// The view of `session`, one of `sessions`; it must not outlive the session.
    ConnectionView(BridgeSession& session, const BridgeSessions& sessions, BridgeDiscovery& discovery,
                   DebugReport& debugReport, QWidget* parent = nullptr);

    BridgeSession& session() const { return m_session; }
    /// Asks the bridge for a new key, as Connect does ("Pair again" in the list of bridges).
    void pairAgain();

    ConfigurationPart& configurationPart() const { return *m_configuration; }
    ImagePlayer& linkExplainer() const { return *m_player; }
    bool debugSent() const { return m_debugSent; }

    static QString connectedHint();
    static QString unpairedHint();
    static QString linkButtonHint();
    /// What is said under the status of a paired bridge that does not answer at `address`.
    static QString notAnsweringHint(const QString& address);
    /// ... and of something at `address` whose certificate or answer was refused.
    static QString refusedHint(const QString& address);
    static QString sendDebugText();
    /// What Detect says when every bridge it found is paired in another session.
    static QString allPairedText();

protected:
    void changeEvent(QEvent* event) override;

private:
    void onStateChanged();
    void onStatusButton();
    void onConnect();
    void onDetect();
    /// Uses the bridge at `address`: stores it and connects (asking for a key when there is none).
    void useBridge(const QString& address);
    void onBridgeChosen();
    void onDisconnect();
    void onSendDebug();
    void onPairingFinished();
    void updateBusy();
    /// Whether another session serves the bridge with `bridgeId` with a key.
    bool isPairedElsewhere(const QString& bridgeId) const;

    BridgeSession& m_session;
    const BridgeSessions& m_sessions;
    BridgeLink& m_settings;
    BridgeDiscovery& m_discovery;
    BridgePairing& m_pairing;
    BridgeConnection& m_connection;
    DebugReport& m_debugReport;
    bool m_detecting = false;
    bool m_connecting = false;
    bool m_debugSent = false;
    QLabel* m_status;
    QPushButton* m_statusButton;
    QLabel* m_statusDetail; ///< why a paired bridge is not connected, when the status alone does not say
    QLabel* m_connectedHint;
    QLabel* m_unpairedHint;
    QLabel* m_security; ///< how the bridge is reached and who it proved to be
    QString m_moved;    ///< where the bridge was found after it moved, while it stays there
    ConfigurationPart* m_configuration;
    QLabel* m_choiceHint;   ///< shown with the list when Detect found several bridges
    QListWidget* m_choices; ///< the bridges Detect found, one per row
    QPushButton* m_useChoice;
    QLabel* m_error;
    QLabel* m_linkHint;
    ImagePlayer* m_player;
    LinkButton* m_sendDebug;
};
