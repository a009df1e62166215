#pragma once

#include "panels/WelcomeView.h"
#include "state/ProductLinks.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QSslCertificate>
#include <QSystemTrayIcon>
#include <QUrl>

#include <QPalette>

#include <functional>
#include <memory>
#include <optional>

class ActionQueue;
class ActivityLog;
class HomeModel;
class AppWindow;
class BridgeLink;
struct BridgeContact;
class Preferences;
class BridgeConnection;
class BridgeSession;
class BridgeSessions;
class HomeCommands;
class BridgeDiscovery;
class LocalNetworkBrowser;
class BridgePairing;
class DesktopAppearance;
class DebugReport;
class DebugView;
class DesktopNotifications;
class DesktopBusService;
class Diagnostics;
class GlobalHotkeys;
class HotkeyActions;
class HotkeyBackend;
class BridgeCommands;
class JsonSettingsStore;
class NotificationSink;
class PreferencesWindowController;
class QAction;
class QMenu;
class BridgeNetwork;
class QTimer;
class ReviewPrompt;
class ShellRunner;
class SleepWatcher;
class StartAtLogin;
class StatusBarMenuWindowController;
class SwitchOffNotice;
class SwitchOffTimer;

/// What differs between one run of the application and another (the real start, the demo, a test).
struct AppDelegateOptions
{
    QString settingsFile;
    ProductLinks links;
    QString crashFolder;
    /// Where the start-at-login record is kept; empty means the user's real one (the demo keeps its own).
    QString loginItemFolder;
    /// Set when the start-up time should be printed; started first thing in main.
    const QElapsedTimer* startupClock = nullptr;
    /// Makes the desktop's service for global shortcuts; empty: the platform's own (tests pass a fake one).
    std::function<std::unique_ptr<HotkeyBackend>()> hotkeyBackend;
    /// Authorities trusted for the bridge beside its maker's (--trust-root, the demo's own).
    QList<QSslCertificate> bridgeTrustRoots;
    /// Glowdeck in a window of its own from the start, without a tray icon (--window).
    bool windowMode = false;
    /// Whether the desktop has a system tray now; empty: ask Qt (tests decide themselves).
    std::function<bool()> trayAvailable;
    /// Where desktop notifications go; empty: the desktop's notification service on the session bus.
    std::function<std::unique_ptr<NotificationSink>()> notifications;
    /// Offer the D-Bus interface on the session bus (the real start; tests that build the application in
    /// their own process leave the bus alone).
    bool publishOnSessionBus = false;
};

/// The composition root: owns the shared state, the bridge client, the tray icon, its menu and the windows
/// for the whole run, and hands references down. Nothing below reaches back up to it.
class AppDelegate final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AppDelegate)

public:
    /// Names the application to the desktop: the start-at-login entry, the desktop entry, saved frames.
    static inline const QString applicationId = QStringLiteral("com.brambleworks.Glowdeck");
    /// The key under which the preferences window's frame is kept.
    static inline const QString preferencesFrameName = applicationId + QStringLiteral(".PreferencesFrame");

    AppDelegate(AppDelegateOptions options, std::unique_ptr<SleepWatcher> sleepWatcher,
                QObject* parent = nullptr);
    ~AppDelegate() override;

    /// Runs the start-up sequence: diagnostics, sleep and resize observation, settings, preferences, tray
    /// icon, drop-down window, menu, the global shortcuts, the bridge connection and, on a first start, the
    /// welcome window.
    void start();

    /// What a click on the tray icon does: a context click, or a click with Control held, shows the menu
    /// (closing the drop-down window first); a plain click toggles the drop-down window.
    void onActivated(QSystemTrayIcon::ActivationReason reason, Qt::KeyboardModifiers modifiers);
    /// Opens the drop-down window (or the window of a desktop without a tray), or raises it when open: a
    /// second start asked for it. Not a user's click on the icon, so the review prompt does not count it.
    void revealDropDownWindow();
    /// The "Open Glowdeck" shortcut: opens the window with the keyboard focus in it, or closes it when it is
    /// open (a minimised one comes back).
    void toggleFromKeyboard();

    /// Whether Glowdeck shows in a window of its own rather than under a tray icon.
    bool isInWindowMode() const { return m_windowMode; }
    /// That window, once window mode began.
    AppWindow* appWindow() const { return m_appWindow.get(); }

    /// Where Help and Provide Feedback go; tests replace the browser.
    void setUrlOpener(std::function<void(const QUrl&)> opener) { m_openUrl = std::move(opener); }

    /// The saved choices.
    Preferences& preferences() const { return *m_preferences; }
    /// The first bridge as its session sees it.
    BridgeLink& link() const;
    ActivityLog& activity() const { return *m_activity; }
    HomeModel& home() const { return *m_home; }
    /// The sessions of the bridges served (one today), and the one the window shows.
    BridgeSessions& sessions() const { return *m_sessions; }
    BridgeSession& session() const;
    /// A session for one more bridge, to be paired (the connection pane's "Add a bridge…").
    BridgeSession& addBridge();
    /// Forgets the bridge: its stored entry, its session and its home. The last bridge is emptied instead.
    void removeBridge(BridgeSession& session);
    /// Every action on the home as a whole: what the tray menu and the shortcuts run.
    HomeCommands& homeCommands() const { return *m_homeCommands; }
    ActionQueue& queue() const;
    BridgeConnection& connection() const;
    QMenu& contextMenu() const { return *m_menu; }
    StatusBarMenuWindowController& windowController() const { return *m_windowController; }
    GlobalHotkeys& hotkeys() const { return *m_hotkeys; }
    /// The preferences window's controller, created with its panes on first use.
    PreferencesWindowController& preferencesWindow();
    StartAtLogin& startAtLogin() const { return *m_startAtLogin; }
    /// The debug information window while it exists.
    DebugView* debugWindow() const { return m_debugWindow.get(); }
    QSystemTrayIcon& trayIcon() const { return *m_trayIcon; }
    SwitchOffNotice& switchOffNotice() const { return *m_switchOffNotice; }
    SwitchOffTimer& switchOffTimer() const;
    /// The D-Bus interface, while it is offered.
    DesktopBusService* busService() const { return m_busService.get(); }
    /// The welcome window while it is open.
    WelcomeView* welcomeWindow() const { return m_welcome; }

private:
    void createPreferences();
    /// What the program is started with at login: its settings file, when that is not the usual one.
    QStringList loginArguments() const;
    void createTrayIcon();
    void createNotifications();
    void showTrayIconWhenAvailable();
    bool trayAvailable() const;
    /// Moves the content into a window of its own and shows it; `explain`: say there, once, why.
    void enterWindowMode(bool explain);
    /// Gives the content back to the drop-down window (a tray appeared and the window was closed).
    void leaveWindowMode();
    /// Widens the window of its own to the longest name while nobody has sized it.
    void fitAppWindowWidth();
    void showAppWindow();
    void onAppWindowClosed();
    void onMenuRequested(QPoint at);
    void buildContextMenu();
    void registerHotkeys();
    void publishOnSessionBus();
    void connectToBridgeAtStart();
    BridgeSession& addSession(const BridgeContact& contact, qsizetype storedAt);
    /// Adds a session for every paired bridge stored by another program that none serves yet.
    void serveStoredBridges();
    void showWelcomeWindow();
    void popUpContextMenu();
    void openDropDownWindow();
    void showDropDownWindow();
    void openUrl(const QUrl& url);

    void onAppIconChanged();
    void onPrefersDarkChanged(bool dark);
    void onWindowResizePlease(qint64 height);
    void onAllOff();
    void onAllOffInMinutes();
    void onOpenSettings();
    /// Closes the drop-down window and shows the connection pane (the drop-down's "not paired yet" link).
    void onOpenConnectionSettings();
    void onShowDebugWindow();
    void onLetsGo();
    void onSleepNote();
    void onWakeNote();
    void onQuit();
    void stopTimers();

    AppDelegateOptions m_options;
    std::unique_ptr<SleepWatcher> m_sleepWatcher;
    std::unique_ptr<DesktopAppearance> m_appearance;
    std::optional<QPalette> m_lightPalette; // the palette before a dark one replaced it
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<JsonSettingsStore> m_store;
    std::unique_ptr<Diagnostics> m_diagnostics;
    std::unique_ptr<ActivityLog> m_activity; // outlives everything that writes to it
    std::unique_ptr<HomeModel> m_home;       // one home per bridge; the views show the first
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<BridgeSessions> m_sessions;
    std::unique_ptr<HomeCommands> m_homeCommands;
    std::unique_ptr<HotkeyBackend> m_hotkeyBackend;
    std::unique_ptr<GlobalHotkeys> m_hotkeys;
    std::unique_ptr<HotkeyActions> m_hotkeyActions;
    std::unique_ptr<DesktopBusService> m_busService; // null unless offered
    std::unique_ptr<ShellRunner> m_shell;
    std::unique_ptr<LocalNetworkBrowser> m_localNetwork; // null where there is no mDNS service
    std::unique_ptr<BridgeDiscovery> m_discovery;
    std::unique_ptr<ReviewPrompt> m_reviewPrompt;
    std::unique_ptr<StartAtLogin> m_startAtLogin;
    std::unique_ptr<DebugReport> m_debugReport;
    std::unique_ptr<PreferencesWindowController> m_preferencesWindow; // created on first use
    std::unique_ptr<DebugView> m_debugWindow;                         // created on first use
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
    std::unique_ptr<SwitchOffNotice> m_switchOffNotice;
    std::unique_ptr<NotificationSink> m_notificationSink;
    std::unique_ptr<DesktopNotifications> m_notifications;
    QAction* m_cancelTimer = nullptr; ///< "Lights off at 23:40 — Cancel", while a timer is pending
    std::unique_ptr<StatusBarMenuWindowController> m_windowController;
    std::unique_ptr<QMenu> m_menu;
    QPointer<WelcomeView> m_welcome;
    QTimer* m_trayRetry = nullptr;
    int m_trayAttempts = 0;
    std::unique_ptr<AppWindow> m_appWindow; // created when window mode begins
    bool m_windowMode = false;
    bool m_windowShownOnce = false;  // the start-up trace names the first showing only
    int m_appWindowFittedWidth = -1; // the width fitAppWindowWidth gave; -1 once a stored frame sized it
    bool m_leaveWindowModeOnClose = false; // a tray appeared while the window was open
    std::function<void(const QUrl&)> m_openUrl;
};
