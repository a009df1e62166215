#include "app/AppDelegate.h"

#include "app/AppWindow.h"
#include "app/DesktopAppearance.h"
#include "app/DesktopNotifications.h"
#include "app/DropDownWindow.h"
#include "app/FreedesktopNotifications.h"
#include "app/ReviewPrompt.h"
#include "app/SleepWatcher.h"
#include "app/StatusBarMenuWindowController.h"
#include "app/SwitchOffNotice.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "commands/HomeCommands.h"
#include "commands/SwitchOffTimer.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgePairing.h"
#include "connection/ShellRunner.h"
#include "dbus/DesktopBusService.h"
#include "diagnostics/Diagnostics.h"
#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyActions.h"
#include "hotkeys/HotkeyBackend.h"
#include "hotkeys/HotkeyNames.h"
#include "login/StartAtLogin.h"
#include "panels/ContentView.h"
#include "panels/Theme.h"
#include "panels/WelcomeView.h"
#include "preferences/panes/ConnectionPane.h"
#include "preferences/panes/DebugReport.h"
#include "preferences/panes/DebugView.h"
#include "preferences/panes/HotkeyView.h"
#include "preferences/panes/LightsPane.h"
#include "preferences/panes/PaneIcons.h"
#include "preferences/panes/PreferencesGeneralView.h"
#include "preferences/window/PausableWindow.h"
#include "preferences/window/PreferencesWindowController.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/Console.h"
#include "state/HomeModel.h"
#include "state/JsonSettingsStore.h"
#include "state/Preferences.h"
#include "state/SettingsKeys.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QCursor>
#include <QDBusConnection>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QScreen>
#include <QTimer>

#include <utility>

namespace {

// The tray host (a panel, trayer) may start a little after us at login: look every second for half a minute,
// then every ten seconds, for as long as Glowdeck runs in a window of its own.
constexpr int trayRetryMilliseconds = 1000;
constexpr int trayRetryAttempts = 30;
constexpr int trayLateRetryMilliseconds = 10000;

// Where a window of a desktop without a tray keeps its size and place.
const QString appWindowFrameName = AppDelegate::applicationId + QStringLiteral(".WindowFrame");

QIcon lampIcon(const QString& name)
{
    const QString path = QStringLiteral(":/icons/%1.svg").arg(name);
    // An unknown name in the settings file keeps the default lamp rather than an empty tray slot.
    if (!QFile::exists(path))
        return QIcon(QStringLiteral(":/icons/Icon_Lamp0.svg"));
    return QIcon(path);
}

} // namespace

AppDelegate::AppDelegate(AppDelegateOptions options, std::unique_ptr<SleepWatcher> sleepWatcher,
                         QObject* parent)
    : QObject(parent), m_options(std::move(options)), m_sleepWatcher(std::move(sleepWatcher)),
      m_openUrl([](const QUrl& url) {
          if (QDesktopServices::openUrl(url))
              return;
          // No browser or viewer could be started: at least say where the page is.
          auto* box = new QMessageBox(QMessageBox::Information, QStringLiteral("Glowdeck"),
                                      AppDelegate::tr("No program to open this page could be started. "
                                                      "Open it yourself:"));
          box->setInformativeText(url.isLocalFile() ? url.toLocalFile() : url.toString());
          box->setTextInteractionFlags(Qt::TextSelectableByMouse);
          box->setAttribute(Qt::WA_DeleteOnClose);
          box->show();
      })
{}

AppDelegate::~AppDelegate()
{
    stopTimers();
    if (m_appWindow && m_preferences)
        m_preferences->setWindowFrame(appWindowFrameName,
                                      QString::fromLatin1(m_appWindow->saveGeometry().toBase64()));
    // The welcome window has no owner but us.
    delete m_welcome;
}

ActionQueue& AppDelegate::queue() const
{
    return session().queue();
}

BridgeConnection& AppDelegate::connection() const
{
    return session().connection();
}

SwitchOffTimer& AppDelegate::switchOffTimer() const
{
    return *m_homeCommands->switchOffTimer(session());
}

PreferencesWindowController& AppDelegate::preferencesWindow()
{
    if (!m_preferencesWindow)
        createPreferences();
    return *m_preferencesWindow;
}

void AppDelegate::createPreferences()
{
    QList<AppIconChoice> icons;
    const QStringList titles{tr("Bulb"), tr("Rays"), tr("Beams"), tr("Glow")};
    for (int i = 0; i < titles.size(); ++i) {
        const QString name = QStringLiteral("Icon_Lamp%1").arg(i);
        icons.append({name, titles.at(i), lampIcon(name)});
    }
    auto* general = new PreferencesGeneralView(*m_preferences, *m_startAtLogin, icons, m_options.links,
                                               [this](const QUrl& url) { openUrl(url); });
    auto* lights = new LightsPane(*m_sessions);
    m_preferencesWindow = std::make_unique<PreferencesWindowController>(QList<Pane>{
        {QStringLiteral("general"), tr("General"), PaneIcons::general(), general},
        {QStringLiteral("advanced"), tr("Connection"), PaneIcons::connection(),
         new ConnectionPane(
             *m_sessions, *m_discovery, *m_debugReport, [this]() -> BridgeSession& { return addBridge(); },
             [this](BridgeSession& session) { removeBridge(session); })},
        {QStringLiteral("lights"), tr("Lights"), PaneIcons::lights(), lights},
        {QStringLiteral("hotkeys"), tr("Hotkeys"), PaneIcons::hotkeys(),
         new HotkeyView(*m_preferences, *m_hotkeys, *m_hotkeyActions)},
    });
    m_preferencesWindow->setFrameAutosaveName(preferencesFrameName, m_preferences.get());
    const auto showSaveError = [this] {
        const QString error = m_activity->settingsSaveError();
        m_preferencesWindow->setStatus(error.isEmpty() ? QString()
                                                       : tr("Settings could not be saved: %1").arg(error));
    };
    connect(m_activity.get(), &ActivityLog::settingsSaveErrorChanged, m_preferencesWindow.get(),
            showSaveError);
    showSaveError();
    connect(general, &PreferencesGeneralView::debugInformationRequested, this,
            &AppDelegate::onShowDebugWindow);
    connect(lights, &LightsPane::connectionPaneRequested, this, &AppDelegate::onOpenConnectionSettings);
}

QStringList AppDelegate::loginArguments() const
{
    const QString file = QFileInfo(m_options.settingsFile).absoluteFilePath();
    if (m_options.settingsFile.isEmpty() ||
        file == QFileInfo(JsonSettingsStore::defaultFileName()).absoluteFilePath())
        return {};
    return {QStringLiteral("--settings"), file};
}

void AppDelegate::start()
{
    m_network = std::make_unique<BridgeNetwork>();
    m_network->addTrustRoots(m_options.bridgeTrustRoots);
    m_store = std::make_unique<JsonSettingsStore>(m_options.settingsFile);

    // Reports go out before anything else can fail.
    m_diagnostics = std::make_unique<Diagnostics>(*m_network, *m_store, m_options.links.errorEndpoint,
                                                  m_options.crashFolder);
    m_diagnostics->start();

    connect(m_sleepWatcher.get(), &SleepWatcher::aboutToSleep, this, &AppDelegate::onSleepNote);
    connect(m_sleepWatcher.get(), &SleepWatcher::wokeUp, this, &AppDelegate::onWakeNote);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &AppDelegate::stopTimers);
    m_appearance = createDesktopAppearance();
    connect(m_appearance.get(), &DesktopAppearance::prefersDarkChanged, this,
            &AppDelegate::onPrefersDarkChanged);

    m_activity = std::make_unique<ActivityLog>();
    m_home = std::make_unique<HomeModel>();
    m_preferences = std::make_unique<Preferences>(*m_store, m_activity.get());
    connect(m_preferences.get(), &Preferences::windowResizePlease, this, &AppDelegate::onWindowResizePlease);
    m_preferences->settleDefaults();
    BridgeLink::keepBridgesInTheNewForm(*m_preferences, *m_activity);

    m_shell = std::make_unique<ShellRunner>();
    m_discovery = std::make_unique<BridgeDiscovery>(*m_shell, *m_network);
    m_localNetwork = createLocalNetworkBrowser();
    m_discovery->setLocalNetworkBrowser(m_localNetwork.get());
    // One session per stored bridge; with none stored, one for the bridge to be paired.
    m_sessions = std::make_unique<BridgeSessions>();
    m_homeCommands = std::make_unique<HomeCommands>(*m_sessions);
    QStringList problems;
    const QList<BridgeContact> stored = m_preferences->bridges(&problems);
    for (const QString& problem : problems)
        m_activity->addLogLine(problem);
    for (qsizetype i = 0; i < stored.size(); ++i)
        addSession(stored.at(i), i);
    if (stored.isEmpty())
        addSession({}, 0);
    // A timer set before a restart is still on the bridge: it is taken up once the bridge answers.
    m_homeCommands->lookForSwitchOffTimers();
    // "glowdeckctl pair --pick" while this runs: a bridge stored by another program is served at once.
    m_preferences->whenChanged({SettingsKeys::bridges}, this, &AppDelegate::serveStoredBridges);
    // "glowdeckctl pair" while this runs: each session takes in a contact stored by another program at once.
    m_store->watchForChanges();
    m_reviewPrompt = std::make_unique<ReviewPrompt>(*m_preferences);
    m_startAtLogin = std::make_unique<StartAtLogin>(
        createLoginItem(applicationId, m_options.loginItemFolder, loginArguments()));
    m_debugReport = std::make_unique<DebugReport>(link(), *m_shell, m_options.settingsFile,
                                                  m_options.links.errorEndpoint);
    m_debugReport->setNetwork(m_network.get());

    createTrayIcon();

    auto* content = new ContentView(*m_preferences, *m_sessions, m_options.links);
    m_windowController = std::make_unique<StatusBarMenuWindowController>(
        *m_preferences, content, [this]() -> std::optional<QRect> {
            // Read at every opening: right after show() an XEmbed tray reports the origin for a while, and a
            // StatusNotifier tray reports nothing at all. Both mean "unknown".
            const QRect geometry = m_trayIcon ? m_trayIcon->geometry() : QRect();
            if (geometry.isEmpty() || geometry.topLeft() == QPoint(0, 0))
                return std::nullopt;
            return geometry;
        });
    connect(content, &ContentView::settingsRequested, this, &AppDelegate::onOpenSettings);
    connect(content, &ContentView::connectionSettingsRequested, this, &AppDelegate::onOpenConnectionSettings);
    connect(content, &ContentView::menuRequested, this, &AppDelegate::onMenuRequested);
    // A filter left set would hide lamps, rooms or scenes at the next opening, as if they were gone.
    connect(m_windowController.get(), &StatusBarMenuWindowController::windowWillClose, content,
            &ContentView::clearFilters);

    createNotifications();
    buildContextMenu();
    showTrayIconWhenAvailable();
    registerHotkeys();
    if (m_options.publishOnSessionBus)
        publishOnSessionBus();
    connectToBridgeAtStart();

    if (!m_preferences->hasSeenWelcomeScreen())
        showWelcomeWindow();
}

void AppDelegate::createTrayIcon()
{
    m_trayIcon = std::make_unique<QSystemTrayIcon>(lampIcon(m_preferences->appIcon()));
    m_trayIcon->setToolTip(SwitchOffNotice::restingToolTip);
    m_switchOffNotice = std::make_unique<SwitchOffNotice>(*m_trayIcon);
    connect(m_homeCommands.get(), &HomeCommands::switchOffChanged, m_switchOffNotice.get(),
            [this] { m_switchOffNotice->setPendingUntil(m_homeCommands->switchOffAt()); });
    m_preferences->whenChanged({SettingsKeys::appIcon}, this, &AppDelegate::onAppIconChanged);
    connect(m_trayIcon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        onActivated(r, QGuiApplication::keyboardModifiers());
    });
}

void AppDelegate::createNotifications()
{
    m_notificationSink =
        m_options.notifications ? m_options.notifications() : std::make_unique<FreedesktopNotifications>();
    m_notifications =
        std::make_unique<DesktopNotifications>(*m_notificationSink, *m_preferences, *m_sessions, [this] {
            return m_windowMode ? m_appWindow->isVisible() && !m_appWindow->isMinimized()
                                : m_windowController->isShown();
        });
    connect(m_homeCommands.get(), &HomeCommands::switchOffWentOff, m_notifications.get(),
            &DesktopNotifications::switchOffWentOff);
}

bool AppDelegate::trayAvailable() const
{
    return m_options.trayAvailable ? m_options.trayAvailable() : QSystemTrayIcon::isSystemTrayAvailable();
}

void AppDelegate::showTrayIconWhenAvailable()
{
    if (m_options.windowMode) {
        enterWindowMode(false);
        return;
    }
    if (trayAvailable()) {
        if (m_trayRetry)
            m_trayRetry->stop();
        m_trayIcon->show();
        if (m_welcome)
            m_welcome->setTrayAvailable(true);
        if (m_windowMode) {
            // The window stays until the user closes it; from then on the icon is the way in.
            m_leaveWindowModeOnClose = true;
            if (!m_appWindow->isVisible())
                leaveWindowMode();
            m_activity->addLogLine(QStringLiteral("A system tray appeared; Glowdeck's icon is in it now."));
        }
        if (m_options.startupClock && m_options.startupClock->isValid())
            printLine(QStringLiteral("Glowdeck: tray icon shown after %1 ms")
                          .arg(m_options.startupClock->elapsed()));
        return;
    }
    if (!m_trayRetry) {
        // Neither a StatusNotifierWatcher on the session bus nor an XEmbed tray owning its selection: the
        // window shows now rather than after a wait that would look like a program that failed to start. A
        // tray that starts later (a panel at login) still gets the icon.
        printLine(QStringLiteral("Glowdeck: no system tray is available; showing Glowdeck in a window until "
                                 "one starts."));
        m_trayRetry = new QTimer(this);
        m_trayRetry->setInterval(trayRetryMilliseconds);
        connect(m_trayRetry, &QTimer::timeout, this, [this] {
            ++m_trayAttempts;
            if (m_trayAttempts == trayRetryAttempts)
                m_trayRetry->setInterval(trayLateRetryMilliseconds);
            showTrayIconWhenAvailable();
        });
        enterWindowMode(true);
    }
    m_trayRetry->start();
}

void AppDelegate::enterWindowMode(bool explain)
{
    if (m_windowMode)
        return;
    m_windowMode = true;
    m_leaveWindowModeOnClose = false;
    m_windowController->closeWithoutFade();
    if (!m_appWindow) {
        m_appWindow = std::make_unique<AppWindow>();
        connect(m_appWindow.get(), &AppWindow::closed, this, &AppDelegate::onAppWindowClosed);
        m_windowController->restoreActivePanel();
        m_appWindow->resize(DropDownWindow::contentWidth + 40,
                            int(std::max<qint64>(m_preferences->preferredHeightOfActivePanel(), 420)));
        const std::optional<QString> frame = m_preferences->windowFrame(appWindowFrameName);
        if (frame)
            m_appWindow->restoreGeometry(QByteArray::fromBase64(frame->toLatin1()));
        m_appWindowFittedWidth = frame ? -1 : m_appWindow->width();
        // The names arrive with the bridge's first answer, after the window was made.
        connect(&session().link().home(), &BridgeHome::lightsChanged, this, &AppDelegate::fitAppWindowWidth);
        connect(&session().link().home(), &BridgeHome::groupsChanged, this, &AppDelegate::fitAppWindowWidth);
    }
    m_appWindow->adoptContent(m_windowController->window().releaseContent());
    fitAppWindowWidth();
    // Said once: by the greeting on a first start, else by a note above the content.
    if (explain && !m_preferences->hasExplainedWindowMode()) {
        if (m_preferences->hasSeenWelcomeScreen())
            m_appWindow->setNotice(WelcomeView::windowModeText());
        m_preferences->setHasExplainedWindowMode();
    }
    if (m_welcome)
        m_welcome->setTrayAvailable(false);
    // A first start greets first; "Let's go!" opens the window.
    if (m_preferences->hasSeenWelcomeScreen())
        showAppWindow();
}

void AppDelegate::fitAppWindowWidth()
{
    // As wide as the longest name asks, up to a third of the screen, as the drop-down would be; never once
    // the user (or a stored frame) sized the window.
    if (!m_appWindow || !m_appWindow->content() || m_appWindow->width() != m_appWindowFittedWidth)
        return;
    const QScreen* screen = m_appWindow->screen();
    const int narrowest = DropDownWindow::contentWidth + 40;
    const int third = screen ? screen->availableGeometry().width() / 3 : narrowest;
    const int width =
        std::clamp(m_appWindow->content()->sizeHint().width(), narrowest, std::max(third, narrowest));
    if (width > m_appWindow->width())
        m_appWindow->resize(width, m_appWindow->height());
    m_appWindowFittedWidth = m_appWindow->width();
}

void AppDelegate::leaveWindowMode()
{
    if (!m_windowMode)
        return;
    m_windowMode = false;
    m_leaveWindowModeOnClose = false;
    m_preferences->setWindowFrame(appWindowFrameName,
                                  QString::fromLatin1(m_appWindow->saveGeometry().toBase64()));
    m_windowController->window().adoptContent(m_appWindow->releaseContent());
    m_appWindow->hide();
}

void AppDelegate::showAppWindow()
{
    // A window the user minimised comes back as well.
    m_appWindow->setWindowState(m_appWindow->windowState() & ~Qt::WindowMinimized);
    m_appWindow->show();
    m_appWindow->raise();
    m_appWindow->activateWindow();
    if (m_appWindow->content())
        m_appWindow->content()->setFocus(Qt::ActiveWindowFocusReason);
    if (m_options.startupClock && m_options.startupClock->isValid() && !m_windowShownOnce)
        printLine(
            QStringLiteral("Glowdeck: window shown after %1 ms").arg(m_options.startupClock->elapsed()));
    m_windowShownOnce = true;
}

void AppDelegate::onAppWindowClosed()
{
    if (auto* content = qobject_cast<ContentView*>(m_appWindow->content()))
        content->clearFilters();
    m_preferences->setWindowFrame(appWindowFrameName,
                                  QString::fromLatin1(m_appWindow->saveGeometry().toBase64()));
    if (m_leaveWindowModeOnClose)
        QTimer::singleShot(0, this, &AppDelegate::leaveWindowMode);
}

void AppDelegate::onMenuRequested(QPoint at)
{
    // The drop-down closes for the menu, as for a context click on the icon; a window of its own stays.
    if (!m_windowMode)
        m_windowController->closeWithoutFade();
    m_menu->popup(at);
}

void AppDelegate::buildContextMenu()
{
    m_menu = std::make_unique<QMenu>();
    //: The command that switches every lamp off, named like a scene: its text may stay as it is.
    m_menu->addAction(tr("Darkness!"), this, &AppDelegate::onAllOff);
    for (const int minutes : {5, 30, 60})
        m_menu->addAction(tr("Off in %n minutes", nullptr, minutes), this, &AppDelegate::onAllOffInMinutes)
            ->setData(minutes);
    // The pending timer, and the way back from it.
    m_cancelTimer = m_menu->addAction(QString(), m_homeCommands.get(), &HomeCommands::cancelSwitchOff);
    const auto showTimer = [this] {
        const QDateTime at = m_homeCommands->switchOffAt();
        m_cancelTimer->setVisible(at.isValid());
        m_cancelTimer->setText(
            tr("Lights off at %1 \u2014 Cancel").arg(QLocale().toString(at.time(), QLocale::ShortFormat)));
    };
    connect(m_homeCommands.get(), &HomeCommands::switchOffChanged, m_cancelTimer, showTimer);
    showTimer();
    m_menu->addSeparator();
    m_menu->addAction(tr("Settings"), this, &AppDelegate::onOpenSettings);
    m_menu->addSeparator();
    m_menu->addAction(tr("Help"), this, [this] { openUrl(m_options.links.help); });
    m_menu->addAction(tr("Provide feedback"), this, [this] { openUrl(m_options.links.feedback); });
    m_menu->addSeparator();
    m_menu->addAction(tr("Quit Glowdeck"), this, &AppDelegate::onQuit);
}

void AppDelegate::registerHotkeys()
{
    m_hotkeyBackend =
        m_options.hotkeyBackend ? m_options.hotkeyBackend() : createHotkeyBackend(applicationId);
    m_hotkeys = std::make_unique<GlobalHotkeys>(*m_store, *m_hotkeyBackend);
    connect(m_hotkeys.get(), &GlobalHotkeys::unavailable, this, [this](const QString& reason) {
        m_activity->addLogLine(
            QStringLiteral("Glowdeck: global shortcuts are not available on this desktop: %1.").arg(reason));
    });
    m_hotkeyActions = std::make_unique<HotkeyActions>(*m_sessions, *m_preferences, *m_homeCommands);
    m_hotkeyActions->registerHandlers(*m_hotkeys);
    m_hotkeys->onKeyUp(HotkeyNames::openGlowdeck(), [this] {
        QMetaObject::invokeMethod(this, &AppDelegate::toggleFromKeyboard, Qt::QueuedConnection);
    });
}

void AppDelegate::publishOnSessionBus()
{
    m_busService = std::make_unique<DesktopBusService>(*m_sessions, *m_homeCommands,
                                                       QFileInfo(m_options.settingsFile).absoluteFilePath());
    connect(m_busService.get(), &DesktopBusService::windowRequested, this,
            &AppDelegate::revealDropDownWindow);
    QString problem;
    if (!m_busService->publish(QDBusConnection::sessionBus(), &problem)) {
        // Scripts then reach the bridge through glowdeckctl directly; everything else works as before.
        m_activity->addLogLine(QStringLiteral("Glowdeck: not offered on D-Bus: %1").arg(problem));
        m_busService.reset();
    }
}

BridgeSession& AppDelegate::addSession(const BridgeContact& contact, qsizetype storedAt)
{
    auto link = std::make_unique<BridgeLink>(*m_preferences, *m_activity, m_home->add(contact.id));
    link->load(contact, storedAt);
    BridgeSession& session = m_sessions->add(std::make_unique<BridgeSession>(std::move(link), *m_network));
    session.setBridgeFinder(m_discovery.get());
    return session;
}

BridgeSession& AppDelegate::addBridge()
{
    return addSession({}, -1);
}

void AppDelegate::removeBridge(BridgeSession& session)
{
    // The last one stays, emptied: the window and the panes always have a bridge to show, if only to pair.
    BridgeLink& link = session.link();
    link.forgetStoredEntry();
    m_activity->addLogLine(QStringLiteral("Removed the bridge %1").arg(link.displayName()));
    if (m_sessions->size() == 1) {
        link.home().setLights({});
        link.home().setGroups({});
        link.home().setScenes({});
        link.load({}, -1);
        return;
    }
    BridgeHome* home = &link.home();
    m_sessions->remove(&session);
    m_home->remove(home);
}

void AppDelegate::serveStoredBridges()
{
    const QList<BridgeContact> stored = m_preferences->bridges();
    for (qsizetype i = 0; i < stored.size(); ++i) {
        const QList<BridgeSession*> sessions = m_sessions->all();
        const bool served = std::any_of(sessions.cbegin(), sessions.cend(), [&](const BridgeSession* s) {
            return s->link().isStoredAs(stored.at(i));
        });
        if (served || stored.at(i).key.isEmpty())
            continue;
        m_activity->addLogLine(QStringLiteral("Another program paired the bridge %1: serving it too")
                                   .arg(stored.at(i).name.isEmpty() ? stored.at(i).id : stored.at(i).name));
        addSession(stored.at(i), i).connectToBridge();
    }
}

BridgeSession& AppDelegate::session() const
{
    return *m_sessions->first();
}

BridgeLink& AppDelegate::link() const
{
    return session().link();
}

void AppDelegate::connectToBridgeAtStart()
{
    for (BridgeSession* session : m_sessions->all()) {
        if (!session->link().hueIP().isEmpty())
            QTimer::singleShot(0, session, &BridgeSession::connectToBridge);
    }
    if (!link().hueIP().isEmpty())
        return;
    // Only the address is filled in: pairing waits for the user's "Connect" or the next start.
    m_discovery->detectBridgeIP([settings = QPointer(&link())](std::optional<QString> address) {
        if (!settings || !address)
            return;
        const QString trimmed = address->trimmed();
        if (!trimmed.isEmpty())
            settings->setHueIP(trimmed);
    });
}

void AppDelegate::showWelcomeWindow()
{
    m_welcome = new WelcomeView();
    m_welcome->setAttribute(Qt::WA_DeleteOnClose);
    m_welcome->setWindowTitle(tr("Welcome to Glowdeck"));
    m_welcome->setTrayAvailable(!m_windowMode && m_trayIcon->isVisible());
    connect(m_welcome, &WelcomeView::letsGo, this, &AppDelegate::onLetsGo);
    m_welcome->show();
}

void AppDelegate::onLetsGo()
{
    if (m_welcome)
        m_welcome->close();
    m_preferences->setHasSeenWelcomeScreen();
    if (m_windowMode) {
        showAppWindow();
        return;
    }
    // Not an opening by the user's click on the icon: the review prompt does not count it.
    showDropDownWindow();
}

void AppDelegate::onActivated(QSystemTrayIcon::ActivationReason reason, Qt::KeyboardModifiers modifiers)
{
    const bool menuClick = reason == QSystemTrayIcon::Context ||
                           (reason == QSystemTrayIcon::Trigger && modifiers.testFlag(Qt::ControlModifier));
    if (menuClick) {
        m_windowController->closeWithoutFade();
        popUpContextMenu();
        return;
    }
    if (reason != QSystemTrayIcon::Trigger)
        return;
    // A tray appeared while Glowdeck had a window of its own: the icon brings that window until it closes.
    if (m_windowMode) {
        toggleFromKeyboard();
        return;
    }
    if (m_windowController->isShown()) {
        m_windowController->close();
        return;
    }
    // The press on the icon already closed the window (focus loss, outside click): that was the toggle.
    if (m_windowController->closedByOutsideClickJustNow())
        return;
    openDropDownWindow();
}

void AppDelegate::openDropDownWindow()
{
    showDropDownWindow();
    QTimer::singleShot(0, this, [this] { m_reviewPrompt->onWindowOpened(); });
}

void AppDelegate::revealDropDownWindow()
{
    if (m_windowMode) {
        showAppWindow();
        return;
    }
    if (!m_windowController->isShown())
        showDropDownWindow();
    m_windowController->window().raise();
    m_windowController->window().activateWindow();
}

void AppDelegate::toggleFromKeyboard()
{
    if (m_windowMode) {
        // Whether it is in front is the window manager's secret (and not told without one): visible is open.
        if (m_appWindow->isVisible() && !m_appWindow->isMinimized())
            m_appWindow->close();
        else
            showAppWindow();
        return;
    }
    if (m_windowController->isShown()) {
        m_windowController->close();
        return;
    }
    showDropDownWindow();
}

void AppDelegate::showDropDownWindow()
{
    m_windowController->restoreActivePanel();
    m_windowController->setPreferredHeight(m_preferences->preferredHeightOfActivePanel());
    m_windowController->show();
}

void AppDelegate::popUpContextMenu()
{
    const QRect icon = m_trayIcon ? m_trayIcon->geometry() : QRect();
    m_menu->popup(icon.isEmpty() ? QCursor::pos() : icon.bottomLeft() + QPoint(0, 1));
}

void AppDelegate::openUrl(const QUrl& url)
{
    // An empty address means the page is switched off (tests, the demo).
    if (url.isEmpty())
        return;
    m_openUrl(url);
}

void AppDelegate::onAppIconChanged()
{
    m_trayIcon->setIcon(lampIcon(m_preferences->appIcon()));
}

void AppDelegate::onPrefersDarkChanged(bool dark)
{
    // A platform theme that follows the desktop (KDE's) already gave a dark palette: leave it alone.
    const bool paletteIsDark = QApplication::palette().color(QPalette::Window).lightnessF() < 0.5;
    if (dark && !paletteIsDark && !m_lightPalette) {
        m_lightPalette = QApplication::palette();
        QApplication::setPalette(Theme::darkPalette());
    } else if (!dark && m_lightPalette) {
        QApplication::setPalette(*m_lightPalette);
        m_lightPalette.reset();
    }
}

void AppDelegate::onWindowResizePlease(qint64 height)
{
    // The settings load sends this before the window exists; a window of its own keeps the size it was given.
    if (!m_windowController || m_windowMode)
        return;
    QTimer::singleShot(0, this, [this, height] { m_windowController->positionWindow(height); });
}

void AppDelegate::onAllOff()
{
    m_homeCommands->switchEverythingOff();
}

void AppDelegate::onAllOffInMinutes()
{
    // The delay goes with the entry, whatever its title says in the user's language.
    auto* action = qobject_cast<QAction*>(sender());
    const qint64 minutes = action ? action->data().toLongLong() : 0;
    if (minutes <= 0)
        return;
    m_notifications->switchOffSet(m_homeCommands->switchOffIn(minutes), minutes);
}

void AppDelegate::onOpenSettings()
{
    m_windowController->close();
    // Until a bridge is paired there is nothing else to set up: start where the pairing is.
    preferencesWindow().show(link().hueKey().isEmpty() ? QStringLiteral("advanced") : QString());
}

void AppDelegate::onOpenConnectionSettings()
{
    m_windowController->close();
    preferencesWindow().show(QStringLiteral("advanced"));
}

void AppDelegate::onShowDebugWindow()
{
    if (!m_debugWindow) {
        m_debugWindow =
            std::make_unique<DebugView>(*m_debugReport, [this](const QUrl& url) { m_openUrl(url); });
        // Over the preferences window it was asked for from.
        m_debugWindow->adjustSize();
        QRect frame(QPoint(), m_debugWindow->size());
        frame.moveCenter(preferencesWindow().window().frameGeometry().center());
        m_debugWindow->move(frame.topLeft());
    }
    m_debugWindow->show();
    m_debugWindow->raise();
    m_debugWindow->activateWindow();
}

void AppDelegate::onSleepNote()
{
    stopTimers();
}

void AppDelegate::onWakeNote()
{
    for (BridgeSession* session : m_sessions->all())
        session->resume();
    // The switch-off timer may have gone off, or been cancelled elsewhere, while the computer slept.
    m_homeCommands->lookForSwitchOffTimers();
}

void AppDelegate::onQuit()
{
    stopTimers();
    QCoreApplication::quit();
}

void AppDelegate::stopTimers()
{
    if (!m_sessions)
        return;
    for (BridgeSession* session : m_sessions->all())
        session->suspend();
}
