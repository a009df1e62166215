#pragma once

#include <QWidget>

class BridgeLink;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QStackedWidget;

/// Where the bridge is: found automatically ("Automatic", the "Detect and pair" button, which pairs with the
/// bridge found at once) or typed in ("Manual", an address field bound to `hueIP` and a Connect button).
/// What the buttons start is the connection pane's.
class ConfigurationPart final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConfigurationPart)

public:
    enum ConnectionType
    {
        automatic = 0,
        manual = 1,
    };

    explicit ConfigurationPart(BridgeLink& settings, QWidget* parent = nullptr);

    ConnectionType connectionType() const { return m_connectionType; }
    void setConnectionType(ConnectionType type);
    /// Disables what cannot start again while a search or a pairing attempt runs, and says so on the buttons.
    void setBusy(bool detecting, bool connecting);
    /// Says that Detect found @p count (two or more) bridges, until an address is chosen.
    void showFoundCount(int count);

    static QString addressPlaceholder();

Q_SIGNALS:
    void connectionTypeChanged(ConfigurationPart::ConnectionType type);
    void detectRequested();
    void connectRequested();

private:
    void onHueIPChanged();
    void onAddressEdited(const QString& text);

    BridgeLink& m_settings;
    ConnectionType m_connectionType = automatic;
    QRadioButton* m_automatic;
    QRadioButton* m_manual;
    QStackedWidget* m_modes;
    QPushButton* m_detect;
    QLabel* m_found;
    QLineEdit* m_address;
    QLabel* m_addressProblem; ///< why the typed text is not an address; hidden while it is one
    QPushButton* m_connect;
    bool m_connecting = false;
};
