#include "TestSupport.h"
#include "login/StartAtLogin.h"
#include "preferences/panes/PaneWidgets.h"
#include "preferences/panes/PreferencesGeneralView.h"
#include "state/ProductLinks.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

class TestPreferencesGeneralView final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void switchesStoreTheirSettings_data();
    void switchesStoreTheirSettings();
    void turningScenesOffWhileTheyAreShownGoesBackToTheLights();
    void choosingAnIconChangesItAtOnceAndAcrossRestarts();
    void runAtStartWritesAndRemovesTheAutostartEntry();
    void supportLinksOpenTheirPagesAndTheVersionShows();

private:
    void build();
    QCheckBox* box(const QString& name) const { return m_view->findChild<QCheckBox*>(name); }
    /// On the box itself: the row is wider than what a click toggles.
    static void click(QCheckBox* box)
    {
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2));
    }
    QString readEntry() const
    {
        QFile file(autostartEntry());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    QString autostartEntry() const
    {
        return m_config->filePath(QStringLiteral("autostart/com.brambleworks.Glowdeck.desktop"));
    }

    std::unique_ptr<QTemporaryDir> m_config;
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<StartAtLogin> m_startAtLogin;
    std::unique_ptr<PreferencesGeneralView> m_view;
    ProductLinks m_links;
    QList<QUrl> m_opened;
};

void TestPreferencesGeneralView::initTestCase()
{
    QCoreApplication::setApplicationVersion(QStringLiteral("4.5.6"));
}

void TestPreferencesGeneralView::init()
{
    m_config = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", m_config->path().toUtf8());
    m_state = std::make_unique<TestSettings>();
    m_state->settings().load();
    m_startAtLogin =
        std::make_unique<StartAtLogin>(createLoginItem(QStringLiteral("com.brambleworks.Glowdeck")));
    m_links = ProductLinks{};
    m_opened.clear();
    build();
}

void TestPreferencesGeneralView::build()
{
    QList<AppIconChoice> icons;
    for (int i = 0; i < 4; ++i)
        icons.append({QStringLiteral("Icon_Lamp%1").arg(i), QStringLiteral("Lamp %1").arg(i), QIcon()});
    m_view =
        std::make_unique<PreferencesGeneralView>(m_state->settings().preferences(), *m_startAtLogin, icons,
                                                 m_links, [this](const QUrl& url) { m_opened << url; });
    m_view->show();
}

void TestPreferencesGeneralView::cleanup()
{
    m_view.reset();
    m_startAtLogin.reset();
    m_state.reset();
    qunsetenv("XDG_CONFIG_HOME");
}

void TestPreferencesGeneralView::switchesStoreTheirSettings_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("before");

    QTest::newRow("colour bars") << "showColorBars"
                                 << "showColorBarsForRooms" << true;
    QTest::newRow("scene panel") << "showScenes"
                                 << "showScenes" << true;
    QTest::newRow("zones") << "showZones"
                           << "showZones" << true;
    // The desktop hears of events the user did not cause only once asked to.
    QTest::newRow("notifications") << "notifications"
                                   << "notifyEvents" << false;
}

void TestPreferencesGeneralView::switchesStoreTheirSettings()
{
    QFETCH(QString, box);
    QFETCH(QString, key);
    QFETCH(bool, before);
    QCOMPARE(this->box(box)->isChecked(), before);

    click(this->box(box));

    QCOMPARE(m_state->store().value(key), QVariant(!before));
    const Preferences& preferences = m_state->settings().preferences();
    QCOMPARE(key == "showScenes"     ? preferences.showScenes()
             : key == "showZones"    ? preferences.showZones()
             : key == "notifyEvents" ? preferences.notifiesEvents()
                                     : preferences.showColorBarsForRooms(),
             !before);
}

void TestPreferencesGeneralView::turningScenesOffWhileTheyAreShownGoesBackToTheLights()
{
    QVERIFY(box(QStringLiteral("showScenes"))->isChecked()); // shown by default
    m_state->settings().preferences().setActiveMainPanel(MainPanels::scenes);
    QCOMPARE(m_state->store().readInt(QStringLiteral("activePanel")), 2);

    click(box(QStringLiteral("showScenes")));

    QCOMPARE(m_state->settings().preferences().activeMainPanel(), MainPanels::lights);
    QCOMPARE(m_state->store().value(QStringLiteral("activePanel")), QVariant(qint64(0)));
    QCOMPARE(m_state->store().value(QStringLiteral("showScenes")), QVariant(false));
}

void TestPreferencesGeneralView::choosingAnIconChangesItAtOnceAndAcrossRestarts()
{
    auto* picker = m_view->findChild<QComboBox*>(QStringLiteral("appIconPicker"));
    QCOMPARE(picker->currentData().toString(), QStringLiteral("Icon_Lamp0"));
    QStringList changes;
    m_state->settings().preferences().whenChanged(
        {SettingsKeys::appIcon}, this, [&] { changes << m_state->settings().preferences().appIcon(); });

    picker->setFocus();
    QTest::keyClick(picker, Qt::Key_Down);
    QTest::keyClick(picker, Qt::Key_Down);

    QCOMPARE(changes, (QStringList{"Icon_Lamp1", "Icon_Lamp2"}));
    QCOMPARE(m_state->store().value(QStringLiteral("appIcon")), QVariant(QStringLiteral("Icon_Lamp2")));
    m_state->reopen();
    m_state->settings().load();
    QCOMPARE(m_state->settings().preferences().appIcon(), QStringLiteral("Icon_Lamp2"));
    build();
    QCOMPARE(m_view->findChild<QComboBox*>(QStringLiteral("appIconPicker"))->currentData().toString(),
             QStringLiteral("Icon_Lamp2"));
}

void TestPreferencesGeneralView::runAtStartWritesAndRemovesTheAutostartEntry()
{
#if defined(Q_OS_MACOS) || defined(Q_OS_WIN)
    QSKIP("The autostart entry is the free desktops' way");
#endif
    QCheckBox* runAtStart = box(QStringLiteral("runAtStart"));
    QVERIFY(!runAtStart->isChecked());

    click(runAtStart);

    QVERIFY(runAtStart->isChecked());
    // Not installed: the entry starts the very program that is running.
    QVERIFY(
        readEntry().contains(QStringLiteral("\nExec=") + QCoreApplication::applicationFilePath() + u'\n'));

    // Switched off in the desktop's own settings meanwhile: the pane shows it the next time it opens.
    QVERIFY(QFile::remove(autostartEntry()));
    m_view->hide();
    m_view->show();
    QVERIFY(!runAtStart->isChecked());

    click(runAtStart);
    click(runAtStart);
    QVERIFY(!QFile::exists(autostartEntry()));
    QVERIFY(!runAtStart->isChecked());
}

void TestPreferencesGeneralView::supportLinksOpenTheirPagesAndTheVersionShows()
{
    m_links.help = QUrl(QStringLiteral("http://127.0.0.1:9/faq"));
    build();
    QCOMPARE(m_view->findChild<QLabel*>(QStringLiteral("versionLabel"))->text(),
             QStringLiteral("Version 4.5.6"));
    QStringList links;
    for (LinkButton* link : m_view->findChildren<LinkButton*>()) {
        links << link->text();
        QTest::mouseClick(link, Qt::LeftButton);
    }

    // The feedback page is switched off: its link is not there at all.
    QCOMPARE(links, (QStringList{"Frequently asked questions", "Debug information…"}));
    QCOMPARE(m_opened, QList<QUrl>{m_links.help});
}

QTEST_MAIN(TestPreferencesGeneralView)
#include "tst_preferencesgeneralview.moc"
