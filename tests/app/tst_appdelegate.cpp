#include "FakeHotkeyBackend.h"
#include "TestSupport.h"
#include "app/AppDelegate.h"
#include "app/AppWindow.h"
#include "app/DropDownWindow.h"
#include "app/NotificationSink.h"
#include "app/SleepWatcher.h"
#include "app/StatusBarMenuWindowController.h"
#include "app/SwitchOffNotice.h"
#include "bridge/ActionQueue.h"
#include "commands/SwitchOffTimer.h"
#include "connection/BridgeConnection.h"
#include "panels/ContentView.h"
#include "panels/FilterField.h"
#include "panels/WelcomeView.h"
#include "preferences/window/PaneTabController.h"
#include "preferences/window/PausableWindow.h"
#include "preferences/window/PreferencesWindowController.h"
#include "simulator/BridgeSimulator.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"
#include "state/MainPanels.h"
#include "state/SettingsKeys.h"

#include <QAction>
#include <QJsonObject>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

/// Keeps the notifications off the desktop of whoever runs the tests: "summary | body" each.
class RecordedNotifications final : public NotificationSink
{
public:
    explicit RecordedNotifications(QStringList& shown) : m_shown(shown) {}
    void show(const QString&, const QString& summary, const QString& body) override
    {
        m_shown << summary + u" | "_qs + body;
    }

private:
    QStringList& m_shown;
};

} // namespace

class TestAppDelegate final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void menuListsItsEntriesInOrder();
    void darknessSwitchesTheWholeHouseOffAtOnce();
    void offInMinutesTakesTheDelayFromTheEntry_data();
    void offInMinutesTakesTheDelayFromTheEntry();
    void tooltipAndMenuFollowTheSwitchOffTimer();
    void aPendingSwitchOffTimerIsFoundAgainAtStartAndOnWake();
    void controlClickOpensTheMenuAndNotTheWindow();
    void contextClickClosesTheOpenWindow();
    void plainClickTogglesTheWindowAndCountsTheOpening();
    void sleepThenWakeLeavesOneTimerOfEachKind();
    void helpOpensTheConfiguredPageAndAnEmptyOneNothing();
    void firstStartGreetsAndLetsGoOpensTheWindow();
    void settingsLinkOfAnEmptyPanelOpensTheConnectionPane();
    void aStoredShortcutWorksFromTheStart();
    void withoutATrayGlowdeckShowsInAWindowOfItsOwn_data();
    void withoutATrayGlowdeckShowsInAWindowOfItsOwn();

private:
    /// Starts the application against the simulator, already paired.
    void startDelegate(bool seenWelcome = true);
    QAction* action(const QString& title) const;
    /// "Lights off at HH:MM — Cancel" while a timer is pending, else empty.
    QString pendingTimerEntry() const;
    /// Our timer, as an earlier run of Glowdeck left it on the bridge; its id.
    QString addOurTimer(const QString& localtime);
    /// The identifier of the pane the preferences window shows.
    QString shownPane() const;
    int activeTimers(QObject& owner, std::chrono::milliseconds interval) const;
    /// The targets and bodies of the changes that entered the queue since the start, in order, as
    /// "/lights/3/state {...}": what each command puts on the wire is its own test's business.
    QStringList queued() const;

    std::unique_ptr<BridgeSimulator> m_bridge;
    QString m_key;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<AppDelegate> m_delegate;
    SleepWatcher* m_sleepWatcher = nullptr;
    FakeHotkeyBackend* m_hotkeyBackend = nullptr;
    ProductLinks m_links;
    QList<QUrl> m_opened;
    QList<ActionQueueItem> m_queued;
    bool m_tray = true; // whether the desktop has a system tray
    QStringList m_notified;
};

void TestAppDelegate::init()
{
    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listen());
    m_key = m_bridge->addUser();
    m_folder = std::make_unique<QTemporaryDir>();
    m_links = ProductLinks{};
    m_opened.clear();
    m_tray = true;
    m_notified.clear();
}

void TestAppDelegate::cleanup()
{
    m_delegate.reset();
    m_bridge.reset();
    m_folder.reset();
}

void TestAppDelegate::startDelegate(bool seenWelcome)
{
    const QString file = m_folder->filePath(QStringLiteral("settings.json"));
    {
        JsonSettingsStore store(file);
        store.writeString(SettingsKeys::bridgeIP, m_bridge->hostAndPort());
        store.writeString(SettingsKeys::bridgeUser, m_key);
        if (seenWelcome)
            store.writeBool(SettingsKeys::hasSeenWelcomeScreen, true);
        // Ctrl+Alt+K switches every room off.
        store.writeString(QStringLiteral("GlobalHotkeys_allLightsOff"),
                          QStringLiteral(R"({"carbonKeyCode":40,"carbonModifiers":6144})"));
        // Ctrl+Alt+G opens Glowdeck.
        store.writeString(QStringLiteral("GlobalHotkeys_openGlowdeck"),
                          QStringLiteral(R"({"carbonKeyCode":5,"carbonModifiers":6144})"));
    }
    auto watcher = std::make_unique<SleepWatcher>();
    m_sleepWatcher = watcher.get();
    AppDelegateOptions options{file, m_links, m_folder->filePath(QStringLiteral("crashes"))};
    options.hotkeyBackend = [this] {
        auto backend = std::make_unique<FakeHotkeyBackend>();
        m_hotkeyBackend = backend.get();
        return backend;
    };
    options.trayAvailable = [this] { return m_tray; };
    options.notifications = [this] { return std::make_unique<RecordedNotifications>(m_notified); };
    m_delegate = std::make_unique<AppDelegate>(std::move(options), std::move(watcher));
    m_delegate->setUrlOpener([this](const QUrl& url) { m_opened << url; });
    m_delegate->start();
    m_queued.clear();
    connect(&m_delegate->queue(), &ActionQueue::pendingChanged, this, [this] {
        for (const ActionQueueItem& item : m_delegate->queue().pending()) {
            if (!m_queued.contains(item))
                m_queued.append(item);
        }
    });
    QTRY_VERIFY(!m_delegate->link().home().lights().isEmpty());
    QTRY_VERIFY(m_delegate->link().home().bridgeConnected());
}

QStringList TestAppDelegate::queued() const
{
    QStringList lines;
    for (const ActionQueueItem& item : m_queued) {
        const QString path = item.url.path();
        lines << path.mid(path.indexOf(u'/', QStringLiteral("/api/").size())) + u' ' +
                     QString::fromUtf8(item.body);
    }
    return lines;
}

QString TestAppDelegate::pendingTimerEntry() const
{
    for (QAction* entry : m_delegate->contextMenu().actions()) {
        if (entry->isVisible() && entry->text().startsWith(u"Lights off at "))
            return entry->text();
    }
    return QString();
}

QString TestAppDelegate::addOurTimer(const QString& localtime)
{
    return m_bridge->addSchedule(
        QJsonObject{{"name", "Glowdeck: lights off"},
                    {"command", QJsonObject{{"address", u"/api/%1/groups/0/action"_qs.arg(m_key)},
                                            {"method", "PUT"},
                                            {"body", QJsonObject{{"on", false}}}}},
                    {"localtime", localtime}});
}

QString TestAppDelegate::shownPane() const
{
    const PaneTabController& tabs = m_delegate->preferencesWindow().tabViewController();
    return tabs.preferencePanes().at(tabs.activeTab().value_or(0)).identifier;
}

QAction* TestAppDelegate::action(const QString& title) const
{
    for (QAction* entry : m_delegate->contextMenu().actions()) {
        if (entry->text() == title)
            return entry;
    }
    return nullptr;
}

int TestAppDelegate::activeTimers(QObject& owner, std::chrono::milliseconds interval) const
{
    int count = 0;
    for (QTimer* timer : owner.findChildren<QTimer*>()) {
        if (timer->isActive() && timer->intervalAsDuration() == interval)
            ++count;
    }
    return count;
}

void TestAppDelegate::menuListsItsEntriesInOrder()
{
    startDelegate();
    const auto titles = [this] {
        QStringList shown;
        for (QAction* entry : m_delegate->contextMenu().actions()) {
            if (entry->isVisible())
                shown << (entry->isSeparator() ? QStringLiteral("-") : entry->text());
        }
        return shown;
    };
    QCOMPARE(titles(), (QStringList{"Darkness!", "Off in 5 minutes", "Off in 30 minutes", "Off in 60 minutes",
                                    "-", "Settings", "-", "Help", "Provide feedback", "-", "Quit Glowdeck"}));

    // A pending timer shows when it goes off, and how to take it back, after the choices of delay.
    action(QStringLiteral("Off in 30 minutes"))->trigger();
    QCOMPARE(titles().at(4), pendingTimerEntry());
}

void TestAppDelegate::darknessSwitchesTheWholeHouseOffAtOnce()
{
    startDelegate();
    action(QStringLiteral("Darkness!"))->trigger();

    // One stroke for the whole house, not a wave of one lamp per tick.
    QTRY_COMPARE(queued(), QStringList{QStringLiteral(R"(/groups/0/action {"on":false})")});
}

void TestAppDelegate::offInMinutesTakesTheDelayFromTheEntry_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("newTitle"); // empty: keep it
    QTest::addColumn<QString>("localtime");

    QTest::newRow("5") << "Off in 5 minutes" << QString() << "PT00:05:00";
    QTest::newRow("30") << "Off in 30 minutes" << QString() << "PT00:30:00";
    QTest::newRow("60") << "Off in 60 minutes" << QString() << "PT01:00:00";
    // Translated titles need not hold the number at all.
    QTest::newRow("translated, in words") << "Off in 30 minutes"
                                          << "Dans une demi-heure"
                                          << "PT00:30:00";
    QTest::newRow("translated, other digits") << "Off in 60 minutes"
                                              << "In 1 Stunde aus"
                                              << "PT01:00:00";
}

void TestAppDelegate::offInMinutesTakesTheDelayFromTheEntry()
{
    QFETCH(QString, title);
    QFETCH(QString, newTitle);
    QFETCH(QString, localtime);
    startDelegate();
    QAction* entry = action(title);
    QVERIFY(entry);
    if (!newTitle.isEmpty())
        entry->setText(newTitle);

    entry->trigger();

    QTRY_COMPARE(queued().size(), 1);
    QVERIFY(queued().first().startsWith(QStringLiteral("/schedules ")));
    QVERIFY2(queued().first().contains(u"\"localtime\":\"%1\""_qs.arg(localtime)),
             qPrintable(queued().first()));
    const QString at =
        QLocale().toString(m_delegate->switchOffTimer().firesAt().time(), QLocale::ShortFormat);
    QVERIFY(m_delegate->trayIcon().toolTip().contains(at));
    // Told on the desktop as well: where no tray shows the tooltip, the only feedback.
    QCOMPARE(m_notified.size(), 1);
    QVERIFY2(m_notified.first().startsWith(u"Lights off at %1 | "_qs.arg(at)),
             qPrintable(m_notified.first()));
}

void TestAppDelegate::tooltipAndMenuFollowTheSwitchOffTimer()
{
    startDelegate();
    const auto atRest = [this] {
        return pendingTimerEntry().isEmpty() &&
               m_delegate->trayIcon().toolTip() == SwitchOffNotice::restingToolTip;
    };

    // Set, then cancelled.
    action(QStringLiteral("Off in 30 minutes"))->trigger();
    const QString at =
        QLocale().toString(m_delegate->switchOffTimer().firesAt().time(), QLocale::ShortFormat);
    QCOMPARE(pendingTimerEntry(), u"Lights off at %1 \u2014 Cancel"_qs.arg(at));
    QVERIFY(m_delegate->trayIcon().toolTip().contains(at));
    QTRY_COMPARE(m_bridge->scheduleIds().size(), 1);
    action(pendingTimerEntry())->trigger();
    QVERIFY(atRest());
    QTRY_VERIFY(m_bridge->scheduleIds().isEmpty());

    // Refused by the bridge.
    m_bridge->setFault(BridgeSimulator::Fault::ErrorArray, 1, "POST");
    action(QStringLiteral("Off in 5 minutes"))->trigger();
    QVERIFY(!atRest());
    QTRY_VERIFY(atRest());
}

void TestAppDelegate::aPendingSwitchOffTimerIsFoundAgainAtStartAndOnWake()
{
    // Set before a restart, beside another app's timer.
    const QString ours = addOurTimer(u"PT00:30:00"_qs);
    const QString foreign = m_bridge->addSchedule(QJsonObject{
        {"name", "Wake-up light"},
        {"command", QJsonObject{{"address", u"/api/%1/groups/0/action"_qs.arg(m_bridge->addUser())},
                                {"method", "PUT"},
                                {"body", QJsonObject{{"on", true}}}}},
        {"localtime", "PT00:20:00"}});
    const QDateTime started =
        QDateTime::fromString(m_bridge->schedule(ours).value(u"starttime").toString() + u'Z', Qt::ISODate);
    const QString at =
        QLocale().toString(started.addSecs(30 * 60).toLocalTime().time(), QLocale::ShortFormat);
    startDelegate();
    QTRY_COMPARE(pendingTimerEntry(), u"Lights off at %1 \u2014 Cancel"_qs.arg(at));
    QVERIFY(m_delegate->trayIcon().toolTip().contains(at));
    action(pendingTimerEntry())->trigger();
    QTRY_COMPARE(m_bridge->scheduleIds(), QStringList{foreign});

    // Set again, and gone off while the computer slept.
    action(QStringLiteral("Off in 60 minutes"))->trigger();
    QTRY_COMPARE(m_bridge->scheduleIds().size(), 2);
    Q_EMIT m_sleepWatcher->aboutToSleep();
    QVERIFY(m_bridge->fireSchedule(m_bridge->scheduleIds().last()));
    QVERIFY(!pendingTimerEntry().isEmpty());
    Q_EMIT m_sleepWatcher->wokeUp();
    QTRY_VERIFY_WITH_TIMEOUT(pendingTimerEntry().isEmpty(), 15000);
    QCOMPARE(m_delegate->trayIcon().toolTip(), SwitchOffNotice::restingToolTip);
    QCOMPARE(m_bridge->scheduleIds(), QStringList{foreign});
}

void TestAppDelegate::controlClickOpensTheMenuAndNotTheWindow()
{
    startDelegate();
    m_delegate->onActivated(QSystemTrayIcon::Trigger, Qt::ControlModifier);
    QTRY_VERIFY(m_delegate->contextMenu().isVisible());
    QVERIFY(!m_delegate->windowController().isShown());

    m_delegate->contextMenu().close();
    QTRY_VERIFY(!m_delegate->contextMenu().isVisible());
    m_delegate->onActivated(QSystemTrayIcon::Trigger, Qt::NoModifier);

    QVERIFY(m_delegate->windowController().isShown());
    QVERIFY(!m_delegate->contextMenu().isVisible());
}

void TestAppDelegate::contextClickClosesTheOpenWindow()
{
    startDelegate();
    m_delegate->onActivated(QSystemTrayIcon::Trigger, Qt::NoModifier);
    QVERIFY(m_delegate->windowController().isShown());

    m_delegate->onActivated(QSystemTrayIcon::Context, Qt::NoModifier);

    QVERIFY(!m_delegate->windowController().isShown());
    // Gone at once, not fading: a window fading out under the menu takes the menu down with it on X11.
    QVERIFY(!m_delegate->windowController().window().isVisible());
    QTRY_VERIFY(m_delegate->contextMenu().isVisible());
}

void TestAppDelegate::plainClickTogglesTheWindowAndCountsTheOpening()
{
    startDelegate();
    m_delegate->preferences().setPresetWindowHeight(MainPanels::lights, 360);

    m_delegate->onActivated(QSystemTrayIcon::Trigger, Qt::NoModifier);
    QVERIFY(m_delegate->windowController().isShown());
    QCOMPARE(m_delegate->windowController().preferredHeight(), 360);
    QTRY_COMPARE(m_delegate->preferences().windowOpenings(), 1);

    // What the user typed into a filter goes with the window: the next opening shows whole lists.
    QWidget* content = m_delegate->windowController().window().content();
    // The lights' list is there; the rooms' and the scenes' are built when first shown.
    m_delegate->preferences().setActiveMainPanel(MainPanels::scenes);
    m_delegate->preferences().setActiveMainPanel(MainPanels::rooms);
    QTRY_COMPARE(content->findChildren<FilterField*>().size(), 3);
    for (FilterField* field : content->findChildren<FilterField*>())
        field->setText(u"kitchen"_qs);

    m_delegate->onActivated(QSystemTrayIcon::Trigger, Qt::NoModifier);
    QVERIFY(!m_delegate->windowController().isShown());
    for (FilterField* field : content->findChildren<FilterField*>())
        QVERIFY2(field->text().isEmpty(), qPrintable(field->objectName()));
}

void TestAppDelegate::sleepThenWakeLeavesOneTimerOfEachKind()
{
    startDelegate();
    QVERIFY(m_delegate->connection().isRefreshing());

    Q_EMIT m_sleepWatcher->aboutToSleep();
    QVERIFY(!m_delegate->queue().isProcessing());
    QVERIFY(!m_delegate->connection().isRefreshing());
    QCOMPARE(activeTimers(m_delegate->connection(), BridgeConnection::refreshInterval), 0);

    Q_EMIT m_sleepWatcher->wokeUp();
    Q_EMIT m_sleepWatcher->wokeUp(); // a repeated notice must not add timers

    QVERIFY(m_delegate->queue().isProcessing());
    QVERIFY(m_delegate->connection().isRefreshing());
    QCOMPARE(activeTimers(m_delegate->queue(), ActionQueue::tickInterval), 1);
    QCOMPARE(activeTimers(m_delegate->connection(), BridgeConnection::refreshInterval), 1);
}

void TestAppDelegate::helpOpensTheConfiguredPageAndAnEmptyOneNothing()
{
    m_links.help = QUrl(QStringLiteral("http://127.0.0.1:9/help"));
    startDelegate();

    action(QStringLiteral("Help"))->trigger();
    action(QStringLiteral("Provide feedback"))->trigger();

    QCOMPARE(m_opened, QList<QUrl>{m_links.help});
}

void TestAppDelegate::firstStartGreetsAndLetsGoOpensTheWindow()
{
    startDelegate(false);
    QPointer<WelcomeView> welcome = m_delegate->welcomeWindow();
    QVERIFY(welcome);
    QVERIFY(welcome->isVisible());

    Q_EMIT welcome->letsGo();

    QTRY_VERIFY(!welcome); // closed and gone
    QVERIFY(m_delegate->windowController().isShown());
    QVERIFY(m_delegate->preferences().hasSeenWelcomeScreen());
    QCoreApplication::processEvents();
    QCOMPARE(m_delegate->preferences().windowOpenings(), 0); // not a user's click
}

void TestAppDelegate::settingsLinkOfAnEmptyPanelOpensTheConnectionPane()
{
    startDelegate();
    m_delegate->windowController().show();
    auto* content = qobject_cast<ContentView*>(m_delegate->windowController().window().content());
    QVERIFY(content);
    Q_EMIT content->connectionSettingsRequested();
    QVERIFY(!m_delegate->windowController().isShown());
    QVERIFY(m_delegate->preferencesWindow().window().isVisible());
    QCOMPARE(shownPane(), QStringLiteral("advanced"));
}

void TestAppDelegate::aStoredShortcutWorksFromTheStart()
{
    startDelegate();
    const GlobalHotkeys::Shortcut controlAltK{40, GlobalHotkeys::Shortcut::control |
                                                      GlobalHotkeys::Shortcut::option};
    const GlobalHotkeys::Shortcut controlAltG{5, GlobalHotkeys::Shortcut::control |
                                                     GlobalHotkeys::Shortcut::option};
    QCOMPARE(m_hotkeyBackend->registered().size(), 2);
    QVERIFY(m_hotkeyBackend->registered().contains(controlAltK));
    QVERIFY(m_hotkeyBackend->registered().contains(controlAltG));

    // "Open Glowdeck" opens the window with the focus in it, and closes it again.
    QVERIFY(m_hotkeyBackend->press(controlAltG));
    QTRY_VERIFY(m_delegate->windowController().isShown());
    QTRY_VERIFY(m_delegate->windowController().window().isActiveWindow());
    QVERIFY(m_hotkeyBackend->press(controlAltG));
    QTRY_VERIFY(!m_delegate->windowController().isShown());

    QTRY_VERIFY(!m_delegate->link().home().groups().isEmpty());
    m_bridge->clearRequests();

    QVERIFY(m_hotkeyBackend->press(controlAltK));
    // Shown at once, after the key event.
    const auto anyOn = [this] {
        const QList<HueGroup> groups = m_delegate->link().home().groups();
        return std::any_of(groups.cbegin(), groups.cend(), [](const HueGroup& group) { return group.is_on; });
    };
    QTRY_VERIFY(!anyOn());
    // The whole home in one request.
    QTRY_COMPARE(queued(), QStringList{QStringLiteral(R"(/groups/0/action {"on":false})")});
}

void TestAppDelegate::withoutATrayGlowdeckShowsInAWindowOfItsOwn_data()
{
    QTest::addColumn<bool>("seenWelcome");
    QTest::newRow("first start") << false;
    QTest::newRow("greeted before") << true;
}

void TestAppDelegate::withoutATrayGlowdeckShowsInAWindowOfItsOwn()
{
    QFETCH(bool, seenWelcome);
    m_tray = false;
    startDelegate(seenWelcome);
    // No tray at start: the window comes at once, without waiting for one.
    QVERIFY(m_delegate->isInWindowMode());
    AppWindow* window = m_delegate->appWindow();
    if (!seenWelcome) {
        // The greeting says why, once; the window adds no note of its own.
        auto* welcome = m_delegate->welcomeWindow();
        QVERIFY(welcome->findChild<QLabel*>(QStringLiteral("welcomeText"))->text().contains("AppIndicator"));
        QVERIFY(!window->isVisible());
        Q_EMIT welcome->letsGo();
        QVERIFY(window->notice().isEmpty());
    } else {
        QVERIFY(window->notice().contains(QStringLiteral("AppIndicator")));
    }
    QTRY_VERIFY(window->isVisible());
    QCOMPARE(window->windowTitle(), QStringLiteral("Glowdeck"));
    auto* content = qobject_cast<ContentView*>(window->content());
    QVERIFY(content);
    QVERIFY(m_delegate->preferences().hasExplainedWindowMode());

    // The menu opens from the window and leaves it open; a second start brings it back from the task bar.
    // Another panel keeps the window's size (the drop-down would resize to it).
    const QSize size = window->size();
    m_delegate->preferences().setActiveMainPanel(MainPanels::rooms);
    QTest::qWait(50);
    QCOMPARE(window->size(), size);

    Q_EMIT content->menuRequested(window->geometry().topLeft());
    QTRY_VERIFY(m_delegate->contextMenu().isVisible());
    m_delegate->contextMenu().close();
    QVERIFY(window->isVisible());
    window->showMinimized();
    m_delegate->revealDropDownWindow();
    QTRY_VERIFY(window->isVisible() && !window->isMinimized());

    // A tray that starts later gets the icon at once, and the drop-down back once the window is closed; the
    // window's close also empties the filters.
    for (FilterField* field : content->findChildren<FilterField*>())
        field->setText(u"kitchen"_qs);
    m_tray = true;
    QTRY_VERIFY(m_delegate->trayIcon().isVisible());
    QVERIFY(m_delegate->isInWindowMode());
    window->close();
    QTRY_VERIFY(!m_delegate->isInWindowMode());
    QCOMPARE(m_delegate->windowController().window().content(), content);
    QVERIFY(!content->findChildren<FilterField*>().isEmpty());
    for (FilterField* field : content->findChildren<FilterField*>())
        QVERIFY2(field->text().isEmpty(), qPrintable(field->objectName()));
    QVERIFY(m_delegate->preferences().windowFrame(AppDelegate::applicationId + ".WindowFrame"));
    m_delegate->onActivated(QSystemTrayIcon::Trigger, Qt::NoModifier);
    QVERIFY(m_delegate->windowController().isShown());
}

QTEST_MAIN(TestAppDelegate)
#include "tst_appdelegate.moc"
