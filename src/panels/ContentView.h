#pragma once

#include <QWidget>

class BridgeSession;
class BridgeSessions;
class Preferences;
class BodyView;
class ConnectionBanner;
class PanelTabs;
class RegularTitlebarView;
class WelcomeTitlebarView;
struct ProductLinks;

/// Everything inside the drop-down window: the title bar, a divider, the panel tabs, the connection banner
/// and the body, on a rounded background. At least 200 points wide, and as wide as the longest name of a lamp
/// or room needs (`sizeHint`); the window takes the height the user chose for the active panel, or without
/// one the content's own height.
class ContentView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ContentView)

public:
    static constexpr int contentWidth = 200;
    static constexpr int minimumHeight = 200;

    /// The window's content for the bridges of `sessions`, each added or removed later followed.
    ContentView(Preferences& preferences, BridgeSessions& sessions, const ProductLinks& links,
                QWidget* parent = nullptr);

    BodyView& body() const { return *m_body; }

    /// The width at which the longest name of a lamp or room shows whole, and the height at which the active
    /// panel shows all of its rows without scrolling.
    QSize sizeHint() const override;
    /// Empties the lists' filter fields: the window closed, and opens again on whole lists.
    void clearFilters();

Q_SIGNALS:
    /// The user pressed one of the settings buttons: the window should hide and the preferences open.
    void settingsRequested();
    /// The user followed the "settings" link of an empty panel: the preferences should open at the
    /// connection to the bridge.
    void connectionSettingsRequested();
    /// The user wants the tray icon's menu: the menu button, or the Menu key or Shift+F10 anywhere inside.
    /// `at` is where it should open, in screen coordinates.
    void menuRequested(QPoint at);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void onLightsChanged();
    void watchClicks(QObject* object);

    void followSession(BridgeSession* session);

    BridgeSessions& m_sessions;
    WelcomeTitlebarView* m_welcomeTitle;
    RegularTitlebarView* m_regularTitle;
    PanelTabs* m_tabs;
    ConnectionBanner* m_banner;
    BodyView* m_body;
};
