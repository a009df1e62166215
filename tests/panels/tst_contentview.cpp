#include "TestSupport.h"
#include "UrlCatcher.h"

#include "bridge/ActionQueue.h"
#include "bridge/HueHelper.h"
#include "panels/BodyView.h"
#include "panels/ContentView.h"
#include "panels/PanelTabs.h"
#include "panels/TitleBars.h"
#include "state/ProductLinks.h"

#include <QAbstractButton>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>

#include <memory>

class TestContentView final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void clickingATabShowsItsPanelAndAsksForItsHeight_data();
    void clickingATabShowsItsPanelAndAsksForItsHeight();
    void clickingTheActiveTabAsksForTheHeightAgain();
    void offersTheScenesTabOnlyWhileScenesAreShown();
    void showsTheHintOfAnEmptyPanel_data();
    void showsTheHintOfAnEmptyPanel();
    void showsTheListOnceItsPanelHasContentAndKeepsIt();
    void leadsToTheSettingsUntilTheFirstLightArrives();
    void reviewButtonThanksOnceAndHidesTheBanner();
    void reviewButtonWithTheReviewPageSwitchedOffStillThanks();
    void settingsButtonsAskForThePreferences_data();
    void settingsButtonsAskForThePreferences();
    void aClickAnywhereInTheContentCountsAsAUserAction();
    void idealHeightIsThePanelsPresetHeight_data();
    void idealHeightIsThePanelsPresetHeight();

private:
    void build(const ProductLinks& links);
    QWidget* currentBodyPage() const;
    static HueLight light(const QString& id);

    std::unique_ptr<TestSettings> m_files;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<HueHelper> m_helper;
    std::unique_ptr<ContentView> m_view;
    std::unique_ptr<UrlCatcher> m_browser;
    ProductLinks m_links;
};

void TestContentView::initTestCase()
{
    QCoreApplication::setApplicationVersion(QStringLiteral("3.1.4"));
}

void TestContentView::init()
{
    m_files = std::make_unique<TestSettings>();
    m_network = std::make_unique<QNetworkAccessManager>();
    m_queue = std::make_unique<ActionQueue>(m_files->settings(), *m_network);
    m_helper = std::make_unique<HueHelper>(m_files->settings(), *m_queue);
    m_browser = std::make_unique<UrlCatcher>();
    m_links = {};
    m_links.review = QUrl(QStringLiteral("http://127.0.0.1:9/review/"));
    build(m_links);
}

void TestContentView::cleanup()
{
    m_view.reset();
    m_browser.reset();
    m_helper.reset();
    m_queue.reset();
    m_network.reset();
    m_files.reset();
}

void TestContentView::build(const ProductLinks& links)
{
    m_view.reset();
    m_view = std::make_unique<ContentView>(m_files->settings(), *m_helper, links);
    m_view->resize(ContentView::contentWidth, 320);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

QWidget* TestContentView::currentBodyPage() const
{
    auto* body = m_view->findChild<BodyView*>();
    return body ? body->currentWidget() : nullptr;
}

HueLight TestContentView::light(const QString& id)
{
    HueLight lamp;
    lamp.lamp_id = id;
    lamp.name = QStringLiteral("Lamp ") + id;
    lamp.hue_ip = QStringLiteral("127.0.0.1:9");
    lamp.hue_key = QStringLiteral("key");
    return lamp;
}

void TestContentView::clickingATabShowsItsPanelAndAsksForItsHeight_data()
{
    QTest::addColumn<MainPanels>("panel");
    QTest::addColumn<qint64>("height");
    QTest::newRow("rooms") << MainPanels::rooms << qint64(320);
    QTest::newRow("scenes") << MainPanels::scenes << qint64(340);
    QTest::newRow("lights") << MainPanels::lights << qint64(300);
}

void TestContentView::clickingATabShowsItsPanelAndAsksForItsHeight()
{
    QFETCH(MainPanels, panel);
    QFETCH(qint64, height);
    AppSettings& settings = m_files->settings();
    settings.setShowScenes(true);
    settings.setActiveMainPanel(panel == MainPanels::lights ? MainPanels::rooms : MainPanels::lights);
    settings.setPresetWindowHeightLights(300);
    settings.setPresetWindowHeightRooms(320);
    settings.setPresetWindowHeightScenes(340);
    QSignalSpy resize(&settings, &AppSettings::windowResizePlease);

    QTest::mouseClick(m_view->findChild<PanelTabs*>()->tab(panel), Qt::LeftButton);
    // The tap is handed to the event loop: nothing has changed yet when the click returns.
    QCOMPARE(resize.size(), 0);

    QTRY_COMPARE(settings.activeMainPanel(), panel);
    QCOMPARE(resize.size(), 1);
    QCOMPARE(resize.first().first().value<qint64>(), height);
    QCOMPARE(m_files->store().readInt(QStringLiteral("activePanel")), int(panel));
}

void TestContentView::clickingTheActiveTabAsksForTheHeightAgain()
{
    AppSettings& settings = m_files->settings();
    settings.setPresetWindowHeightRooms(410);
    settings.setActiveMainPanel(MainPanels::rooms);
    QSignalSpy resize(&settings, &AppSettings::windowResizePlease);

    QAbstractButton* rooms = m_view->findChild<PanelTabs*>()->tab(MainPanels::rooms);
    QTest::mouseClick(rooms, Qt::LeftButton);
    QTRY_COMPARE(resize.size(), 1);
    QTest::mouseClick(rooms, Qt::LeftButton);
    QTRY_COMPARE(resize.size(), 2);
    QCOMPARE(resize.last().first().value<qint64>(), 410);
    QCOMPARE(settings.activeMainPanel(), MainPanels::rooms);
}

void TestContentView::offersTheScenesTabOnlyWhileScenesAreShown()
{
    auto* tabs = m_view->findChild<PanelTabs*>();
    QAbstractButton* lights = tabs->tab(MainPanels::lights);
    QAbstractButton* rooms = tabs->tab(MainPanels::rooms);
    QAbstractButton* scenes = tabs->tab(MainPanels::scenes);

    QVERIFY(!scenes->isVisible());
    QVERIFY(qAbs(lights->width() - rooms->width()) <= 1);
    QVERIFY(rooms->width() > ContentView::contentWidth / 3);
    QCOMPARE(lights->x(), 10);
    QCOMPARE(rooms->geometry().right(), tabs->width() - 10 - 1);

    m_files->settings().setShowScenes(true);
    QTRY_VERIFY(scenes->isVisible());
    QTRY_VERIFY(rooms->width() < ContentView::contentWidth / 3);
    QVERIFY(qAbs(lights->width() - rooms->width()) <= 1);
    QVERIFY(qAbs(rooms->width() - scenes->width()) <= 1);
    QCOMPARE(scenes->geometry().right(), tabs->width() - 10 - 1);

    // Taking the tab away while its panel is open falls back to the lights.
    m_files->settings().setActiveMainPanel(MainPanels::scenes);
    m_files->settings().setShowScenes(false);
    QTRY_VERIFY(!scenes->isVisible());
    auto* hint = qobject_cast<QLabel*>(currentBodyPage());
    QVERIFY(hint && hint->text().startsWith(QStringLiteral("Okay, we're not able to detect any lights")));
}

void TestContentView::showsTheHintOfAnEmptyPanel_data()
{
    QTest::addColumn<int>("panel");
    QTest::addColumn<QString>("text");
    const QString hint = QStringLiteral("\n\nHave you opened the settings and connected to the bridge?");
    QTest::newRow("lights") << 0
                            << QStringLiteral("Okay, we're not able to detect any lights just yet.") + hint;
    QTest::newRow("rooms") << 1 << QStringLiteral("There aren't any rooms visible just yet.") + hint;
    QTest::newRow("scenes") << 2 << QStringLiteral("There aren't any scenes visible just yet.") + hint;
    QTest::newRow("unknown panel") << 7
                                   << QStringLiteral("Okay, we're not able to detect any lights just yet.") +
                                          hint;
}

void TestContentView::showsTheHintOfAnEmptyPanel()
{
    QFETCH(int, panel);
    QFETCH(QString, text);
    AppSettings& settings = m_files->settings();
    // Content on another panel must not leak into the empty one.
    HueGroup room;
    room.group_id = QStringLiteral("1");
    if (text.contains(QStringLiteral("lights")))
        settings.setGroups({room});
    else
        settings.setLights({light(QStringLiteral("1"))});
    settings.setShowScenes(true);
    settings.setActiveMainPanel(MainPanels(panel));

    auto* hint = qobject_cast<QLabel*>(currentBodyPage());
    QVERIFY(hint);
    QCOMPARE(hint->text(), text);
    QVERIFY(hint->isVisible());
}

void TestContentView::showsTheListOnceItsPanelHasContentAndKeepsIt()
{
    AppSettings& settings = m_files->settings();
    settings.setLights({light(QStringLiteral("1"))});
    QWidget* list = currentBodyPage();
    QVERIFY(list);
    QVERIFY(!qobject_cast<QLabel*>(list));

    settings.setLights({light(QStringLiteral("1")), light(QStringLiteral("2"))});
    settings.setActiveMainPanel(MainPanels::rooms);
    settings.setActiveMainPanel(MainPanels::lights);
    QCOMPARE(currentBodyPage(), list);

    settings.setLights({});
    QCOMPARE(qobject_cast<QLabel*>(currentBodyPage())->objectName(), QStringLiteral("NoLights"));
}

void TestContentView::leadsToTheSettingsUntilTheFirstLightArrives()
{
    AppSettings& settings = m_files->settings();
    HueGroup room;
    room.group_id = QStringLiteral("1");
    room.name = QStringLiteral("Kitchen");
    settings.setGroups({room});
    auto* welcome = m_view->findChild<WelcomeTitlebarView*>();
    auto* regular = m_view->findChild<RegularTitlebarView*>();
    QVERIFY(welcome->isVisible());
    QVERIFY(!regular->isVisible());

    settings.setLights({light(QStringLiteral("1"))});
    QVERIFY(!welcome->isVisible());
    QVERIFY(regular->isVisible());
    QVERIFY(regular->findChild<QLabel*>(QStringLiteral("productName"))->isVisible());
}

void TestContentView::reviewButtonThanksOnceAndHidesTheBanner()
{
    AppSettings& settings = m_files->settings();
    settings.setLights({light(QStringLiteral("1"))});
    settings.setShowReviewRequest(true);
    auto* title = m_view->findChild<RegularTitlebarView*>();
    auto* heart = title->findChild<QAbstractButton*>(QStringLiteral("reviewButton"));
    QVERIFY(heart->isVisible());
    QVERIFY(title->findChild<QLabel*>(QStringLiteral("reviewText"))->isVisible());
    QVERIFY(!title->findChild<QLabel*>(QStringLiteral("productName"))->isVisible());

    QTest::mouseClick(heart, Qt::LeftButton);

    QCOMPARE(m_browser->opened, QList<QUrl>{m_links.review});
    QCOMPARE(m_files->store().value(QStringLiteral("noMoreReviewRequests")), QVariant(true));
    QCOMPARE(m_files->store().readString(QStringLiteral("reviewedVersion")).value_or(QString()),
             QStringLiteral("3.1.4"));
    QCOMPARE(settings.showReviewRequest(), false);
    QVERIFY(!heart->isVisible());
    QVERIFY(title->findChild<QLabel*>(QStringLiteral("productName"))->isVisible());
}

void TestContentView::reviewButtonWithTheReviewPageSwitchedOffStillThanks()
{
    ProductLinks switchedOff;
    build(switchedOff);
    AppSettings& settings = m_files->settings();
    settings.setLights({light(QStringLiteral("1"))});
    settings.setShowReviewRequest(true);

    auto* title = m_view->findChild<RegularTitlebarView*>();
    QTest::mouseClick(title->findChild<QAbstractButton*>(QStringLiteral("reviewButton")), Qt::LeftButton);

    QVERIFY(m_browser->opened.isEmpty());
    QCOMPARE(m_files->store().readBool(QStringLiteral("noMoreReviewRequests")), true);
    QCOMPARE(settings.showReviewRequest(), false);
}

void TestContentView::settingsButtonsAskForThePreferences_data()
{
    QTest::addColumn<bool>("withLights");
    QTest::addColumn<QString>("button");
    QTest::newRow("welcome title bar") << false << QStringLiteral("settingsTextButton");
    QTest::newRow("regular title bar") << true << QStringLiteral("settingsIconButton");
}

void TestContentView::settingsButtonsAskForThePreferences()
{
    QFETCH(bool, withLights);
    QFETCH(QString, button);
    if (withLights)
        m_files->settings().setLights({light(QStringLiteral("1"))});
    QSignalSpy requested(m_view.get(), &ContentView::settingsRequested);

    auto* settingsButton = m_view->findChild<QAbstractButton*>(button);
    QVERIFY(settingsButton->isVisible());
    QTest::mouseClick(settingsButton, Qt::LeftButton);
    QCOMPARE(requested.size(), 1);
}

void TestContentView::aClickAnywhereInTheContentCountsAsAUserAction()
{
    AppSettings& settings = m_files->settings();
    const QDateTime longAgo = QDateTime::currentDateTimeUtc().addSecs(-3600);

    settings.setLastUserActionAt(longAgo);
    QTest::mouseClick(currentBodyPage(), Qt::LeftButton);
    QVERIFY(settings.lastUserActionAt() > longAgo.addSecs(3000));

    // Widgets that join later, as list rows do on each refresh, are watched as well.
    auto* host = new QWidget(m_view->findChild<BodyView*>());
    // A button takes the press for itself, so the press never travels up to a widget watched from the start.
    auto* late = new QPushButton(QStringLiteral("row"), host);
    host->setGeometry(0, 0, 100, 40);
    late->setGeometry(0, 0, 100, 40);
    host->show();
    settings.setLastUserActionAt(longAgo);
    QTest::mouseClick(late, Qt::LeftButton);
    QVERIFY(settings.lastUserActionAt() > longAgo.addSecs(3000));
}

void TestContentView::idealHeightIsThePanelsPresetHeight_data()
{
    QTest::addColumn<int>("panel");
    QTest::addColumn<qint64>("preset");
    QTest::addColumn<int>("height");
    QTest::newRow("rooms preset") << 1 << qint64(450) << 450;
    QTest::newRow("below the minimum") << 1 << qint64(120) << 200;
    QTest::newRow("no preset stored") << 1 << qint64(0) << 200;
    QTest::newRow("unknown panel") << 9 << qint64(450) << 280;
}

void TestContentView::idealHeightIsThePanelsPresetHeight()
{
    QFETCH(int, panel);
    QFETCH(qint64, preset);
    QFETCH(int, height);
    AppSettings& settings = m_files->settings();
    settings.setPresetWindowHeightRooms(preset);
    settings.setActiveMainPanel(MainPanels(panel));
    QCOMPARE(m_view->sizeHint(), QSize(200, height));
}

QTEST_MAIN(TestContentView)
#include "tst_contentview.moc"
