#include "TestSupport.h"
#include "UrlCatcher.h"
#include "bridge/BridgeNetwork.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "panels/BodyView.h"
#include "panels/BridgeSections.h"
#include "panels/ConnectionBanner.h"
#include "panels/ContentView.h"
#include "panels/ControlRow.h"
#include "panels/CustomSlider.h"
#include "panels/ListLights.h"
#include "panels/PanelTabs.h"
#include "panels/Theme.h"
#include "panels/TitleBars.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/ProductLinks.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QToolButton>

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
    void offersTheScenesTabOnlyWhileScenesAreShown();
    void showsTheHintOfAnEmptyPanel_data();
    void showsTheHintOfAnEmptyPanel();
    void showsTheListOnceItsPanelHasContentAndKeepsIt();
    void leadsToTheSettingsUntilTheFirstLightArrives();
    void reviewButtonThanksOnceAndHidesTheBanner_data();
    void reviewButtonThanksOnceAndHidesTheBanner();
    void settingsButtonsAskForThePreferences_data();
    void settingsButtonsAskForThePreferences();
    void titleBarButtonsStandOutFromTheBackground_data();
    void titleBarButtonsStandOutFromTheBackground();
    void aClickAnywhereInTheContentCountsAsAUserAction();
    void naturalHeightFollowsTheActivePanel();
    void emptyPanelTellsUnpairedFromUnreachable_data();
    void emptyPanelTellsUnpairedFromUnreachable();
    void settingsLinkAsksForTheConnectionSettings();
    void showsOneSectionPerBridgeWhenSeveralArePaired();
    void everyControlHasANameAndARole();
    void tabVisitsTheControlsInOrder();

private:
    void build(const ProductLinks& links);
    QWidget* currentBodyPage() const;
    BridgeLink& settings() { return m_rig->files.settings(); }
    static HueLight light(const QString& id);

    /// What a content view works with; each part refers to the ones before it.
    struct Rig
    {
        TestSettings files;
        BridgeNetwork network;
        BridgeSessions sessions;
        BridgeSession& session{sessions.add(std::make_unique<BridgeSession>(files.settings(), network))};
        ActionQueue& queue{session.queue()};
        UrlCatcher browser;
    };
    std::unique_ptr<Rig> m_rig;
    std::unique_ptr<ContentView> m_view;
    const QUrl m_review{QStringLiteral("http://127.0.0.1:9/review/")};
};

void TestContentView::initTestCase()
{
    QCoreApplication::setApplicationVersion(QStringLiteral("3.1.4"));
}

void TestContentView::init()
{
    m_rig = std::make_unique<Rig>();
    ProductLinks links;
    links.review = m_review;
    build(links);
}

void TestContentView::cleanup()
{
    m_view.reset();
    m_rig.reset();
}

void TestContentView::build(const ProductLinks& links)
{
    m_view.reset();
    m_view = std::make_unique<ContentView>(settings().preferences(), m_rig->sessions, links);
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
    return lamp;
}

void TestContentView::clickingATabShowsItsPanelAndAsksForItsHeight_data()
{
    QTest::addColumn<MainPanels>("from");
    QTest::addColumn<MainPanels>("panel");
    QTest::addColumn<qint64>("height");
    QTest::newRow("rooms") << MainPanels::lights << MainPanels::rooms << qint64(320);
    QTest::newRow("scenes") << MainPanels::lights << MainPanels::scenes << qint64(340);
    QTest::newRow("lights") << MainPanels::rooms << MainPanels::lights << qint64(300);
    QTest::newRow("the active tab asks again") << MainPanels::rooms << MainPanels::rooms << qint64(320);
}

void TestContentView::clickingATabShowsItsPanelAndAsksForItsHeight()
{
    QFETCH(MainPanels, from);
    QFETCH(MainPanels, panel);
    QFETCH(qint64, height);
    settings().preferences().setShowScenes(true);
    settings().preferences().setActiveMainPanel(from);
    settings().preferences().setPresetWindowHeight(MainPanels::lights, 300);
    settings().preferences().setPresetWindowHeight(MainPanels::rooms, 320);
    settings().preferences().setPresetWindowHeight(MainPanels::scenes, 340);
    QSignalSpy resize(&settings().preferences(), &Preferences::windowResizePlease);

    QTest::mouseClick(m_view->findChild<PanelTabs*>()->tab(panel), Qt::LeftButton);
    // The tap is handed to the event loop: nothing has changed yet when the click returns.
    QCOMPARE(resize.size(), 0);

    QTRY_COMPARE(resize.size(), 1);
    QCOMPARE(settings().preferences().activeMainPanel(), panel);
    QCOMPARE(resize.first().first().value<qint64>(), height);
    QCOMPARE(m_rig->files.store().readInt(QStringLiteral("activePanel")), int(panel));
}

void TestContentView::showsOneSectionPerBridgeWhenSeveralArePaired()
{
    settings().setBridgeName(u"Downstairs"_qs);
    settings().home().setLights({light(u"1"_qs), light(u"2"_qs)});
    QVERIFY(qobject_cast<ListLights*>(currentBodyPage()));
    const int oneBridge = m_view->sizeHint().height();

    // A second bridge with a lamp "1" of its own: each lamp is listed under its bridge.
    BridgeHome upstairsHome;
    auto upstairs =
        std::make_unique<BridgeLink>(settings().preferences(), settings().activity(), upstairsHome);
    upstairs->setBridgeName(u"Upstairs"_qs);
    upstairs->setHueKey(u"key"_qs);
    upstairsHome.setBridgeConnected(true);
    upstairsHome.setLights({light(u"1"_qs)});
    BridgeSession& second =
        m_rig->sessions.add(std::make_unique<BridgeSession>(std::move(upstairs), m_rig->network));
    QTRY_VERIFY(qobject_cast<BridgeSections*>(currentBodyPage()));
    const QList<BridgeSection*> sections = m_view->body().sections();
    QCOMPARE(sections.size(), 2);
    QCOMPARE(sections.at(0)->heading()->text(), u"Downstairs"_qs);
    QCOMPARE(sections.at(1)->heading()->accessibleName(), u"Bridge Upstairs"_qs);
    QCOMPARE(qobject_cast<ListLights*>(sections.at(0)->list())->lightRows().size(), 2);
    QCOMPARE(qobject_cast<ListLights*>(sections.at(1)->list())->lightRows().size(), 1);
    QTRY_VERIFY(m_view->sizeHint().height() > oneBridge);
    // Bridges of the same name are told apart by the end of their ids.
    second.link().setBridgeContact(u"http"_qs, u"001788FFFE9C4D5E"_qs, {});
    second.link().setBridgeName(u"Downstairs"_qs);
    QCOMPARE(sections.at(1)->heading()->text(), u"Downstairs (9C4D5E)"_qs);
    second.link().setBridgeName(u"Upstairs"_qs);
    // One bridge gone: the line names it, and the other's lamps stay listed and usable.
    upstairsHome.setBridgeConnected(false);
    auto* banner = m_view->findChild<ConnectionBanner*>();
    QTRY_COMPARE(banner->message(), u"Upstairs: Bridge not reachable \u2014 retrying"_qs);
    QVERIFY(sections.at(0)->list()->isEnabled());
    upstairsHome.setBridgeConnected(true);
    QTRY_VERIFY(!banner->isVisible());

    // A heading folds its bridge away; the rooms panel has sections too, and a bridge without rooms says so.
    const int unfolded = m_view->sizeHint().height();
    QTest::mouseClick(sections.at(0)->heading(), Qt::LeftButton);
    QVERIFY(sections.at(0)->isFolded() && !sections.at(0)->list()->isVisibleTo(sections.at(0)));
    QTRY_VERIFY(m_view->sizeHint().height() < unfolded);
    settings().preferences().setActiveMainPanel(MainPanels::rooms);
    QTRY_COMPARE(m_view->body().sections().size(), 2);
    QVERIFY(m_view->body()
                .sections()
                .at(1)
                ->findChild<QLabel*>(u"bridgeSectionEmpty"_qs)
                ->text()
                .contains(u"No rooms"));
    // Down to one bridge: its list alone again, as before the second came.
    settings().preferences().setActiveMainPanel(MainPanels::lights);
    m_rig->sessions.remove(&second);
    QTRY_VERIFY(qobject_cast<ListLights*>(currentBodyPage()));
    QVERIFY(m_view->body().sections().isEmpty());
}

void TestContentView::offersTheScenesTabOnlyWhileScenesAreShown()
{
    auto* tabs = m_view->findChild<PanelTabs*>();
    QAbstractButton *lights = tabs->tab(MainPanels::lights), *rooms = tabs->tab(MainPanels::rooms),
                    *scenes = tabs->tab(MainPanels::scenes);

    settings().preferences().setShowScenes(false);
    QTRY_VERIFY(!scenes->isVisible());
    QVERIFY(qAbs(lights->width() - rooms->width()) <= 1);
    QTRY_VERIFY(rooms->width() > ContentView::contentWidth / 3);
    QCOMPARE(lights->x(), 10);
    QCOMPARE(rooms->geometry().right(), tabs->width() - 10 - 1);

    settings().preferences().setShowScenes(true);
    QTRY_VERIFY(scenes->isVisible());
    QTRY_VERIFY(rooms->width() < ContentView::contentWidth / 3);
    QVERIFY(qAbs(lights->width() - rooms->width()) <= 1 && qAbs(rooms->width() - scenes->width()) <= 1);
    QCOMPARE(scenes->geometry().right(), tabs->width() - 10 - 1);

    // Taking the tab away while its panel is open falls back to the lights.
    settings().preferences().setActiveMainPanel(MainPanels::scenes);
    settings().preferences().setShowScenes(false);
    QTRY_VERIFY(!scenes->isVisible());
    auto* hint = qobject_cast<QLabel*>(currentBodyPage());
    QVERIFY(hint &&
            hint->accessibleName().startsWith(QStringLiteral("Okay, we're not able to detect any lights")));
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
    // Content on another panel must not leak into the empty one.
    HueGroup room;
    room.group_id = QStringLiteral("1");
    if (text.contains(QStringLiteral("lights")))
        settings().home().setGroups({room});
    else
        settings().home().setLights({light(QStringLiteral("1"))});
    settings().preferences().setShowScenes(true);
    settings().preferences().setActiveMainPanel(MainPanels(panel));

    auto* hint = qobject_cast<QLabel*>(currentBodyPage());
    QVERIFY(hint && hint->isVisible());
    // The label shows it as rich text with a link; this is the sentence itself.
    QCOMPARE(hint->accessibleName(), text);
}

void TestContentView::showsTheListOnceItsPanelHasContentAndKeepsIt()
{
    settings().home().setLights({light(QStringLiteral("1"))});
    QWidget* list = currentBodyPage();
    QVERIFY(list && !qobject_cast<QLabel*>(list));

    settings().home().setLights({light(QStringLiteral("1")), light(QStringLiteral("2"))});
    settings().preferences().setActiveMainPanel(MainPanels::rooms);
    settings().preferences().setActiveMainPanel(MainPanels::lights);
    QCOMPARE(currentBodyPage(), list);

    settings().home().setLights({});
    QCOMPARE(qobject_cast<QLabel*>(currentBodyPage())->objectName(), QStringLiteral("NoLights"));
}

void TestContentView::leadsToTheSettingsUntilTheFirstLightArrives()
{
    HueGroup room;
    room.group_id = QStringLiteral("1");
    settings().home().setGroups({room});
    auto* welcome = m_view->findChild<WelcomeTitlebarView*>();
    auto* regular = m_view->findChild<RegularTitlebarView*>();
    QVERIFY(welcome->isVisible() && !regular->isVisible());

    settings().home().setLights({light(QStringLiteral("1"))});
    QVERIFY(!welcome->isVisible() && regular->isVisible());
    QVERIFY(regular->findChild<QLabel*>(QStringLiteral("productName"))->isVisible());
}

void TestContentView::reviewButtonThanksOnceAndHidesTheBanner_data()
{
    QTest::addColumn<bool>("reviewPage");
    QTest::newRow("opens the review page") << true;
    QTest::newRow("review page switched off") << false;
}

void TestContentView::reviewButtonThanksOnceAndHidesTheBanner()
{
    QFETCH(bool, reviewPage);
    if (!reviewPage)
        build(ProductLinks{});
    settings().home().setLights({light(QStringLiteral("1"))});
    settings().preferences().setShowReviewRequest(true);
    auto* title = m_view->findChild<RegularTitlebarView*>();
    auto* heart = title->findChild<QAbstractButton*>(QStringLiteral("reviewButton"));
    auto* productName = title->findChild<QLabel*>(QStringLiteral("productName"));
    QVERIFY(heart->isVisible() && title->findChild<QLabel*>(QStringLiteral("reviewText"))->isVisible());
    QVERIFY(!productName->isVisible());

    QTest::mouseClick(heart, Qt::LeftButton);

    QCOMPARE(m_rig->browser.opened, reviewPage ? QList<QUrl>{m_review} : QList<QUrl>{});
    QCOMPARE(m_rig->files.store().value(QStringLiteral("noMoreReviewRequests")), QVariant(true));
    QCOMPARE(m_rig->files.store().readString(QStringLiteral("reviewedVersion")).value_or(QString()),
             QStringLiteral("3.1.4"));
    QVERIFY(!settings().preferences().showReviewRequest() && !heart->isVisible() && productName->isVisible());
}

void TestContentView::settingsButtonsAskForThePreferences_data()
{
    QTest::addColumn<bool>("withLights");
    QTest::newRow("welcome title bar") << false;
    QTest::newRow("regular title bar") << true;
}

void TestContentView::settingsButtonsAskForThePreferences()
{
    QFETCH(bool, withLights);
    if (withLights)
        settings().home().setLights({light(QStringLiteral("1"))});
    QSignalSpy requested(m_view.get(), &ContentView::settingsRequested);

    // The same gear before and after the first lights, named for screen readers.
    QAbstractButton* settingsButton = nullptr;
    for (auto* button : m_view->findChildren<QAbstractButton*>(QStringLiteral("settingsIconButton"))) {
        if (button->isVisible())
            settingsButton = button;
    }
    QVERIFY(settingsButton && !settingsButton->icon().isNull() && settingsButton->text().isEmpty());
    QCOMPARE(settingsButton->accessibleName(), u"Settings"_qs);
    QTest::mouseClick(settingsButton, Qt::LeftButton);
    QCOMPARE(requested.size(), 1);
}

void TestContentView::titleBarButtonsStandOutFromTheBackground_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<bool>("withLights");
    QTest::newRow("light, welcome title bar") << false << false;
    QTest::newRow("light, regular title bar") << false << true;
    QTest::newRow("dark, welcome title bar") << true << false;
    QTest::newRow("dark, regular title bar") << true << true;
}

void TestContentView::titleBarButtonsStandOutFromTheBackground()
{
    QFETCH(bool, dark);
    QFETCH(bool, withLights);
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    if (dark)
        QApplication::setPalette(Theme::darkPalette());
    if (withLights)
        settings().home().setLights({light(QStringLiteral("1"))});
    QCoreApplication::processEvents();
    QCOMPARE(Theme::isDark(m_view.get()), dark);

    // The gear and the menu button are the only mouse route to the settings and the menu: each must show
    // pixels far from the background just beside it.
    const QImage shot = m_view->grab().toImage();
    const qreal ratio = shot.devicePixelRatio();
    for (const QString& name : {u"settingsIconButton"_qs, u"menuButton"_qs}) {
        QWidget* button = nullptr;
        for (auto* candidate : m_view->findChildren<QAbstractButton*>(name)) {
            if (candidate->isVisible())
                button = candidate;
        }
        QVERIFY(button);
        const QRect area(button->mapTo(m_view.get(), QPoint(0, 0)), button->size());
        const int background = qGray(
            shot.pixel(QPoint(area.left() - 3, area.center().y()) * ratio)); // the gap left of the button
        int strongest = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                strongest =
                    std::max(strongest, std::abs(qGray(shot.pixel(QPoint(x, y) * ratio)) - background));
        }
        QVERIFY2(strongest > 128,
                 qPrintable(u"%1: %2 grey levels from the background"_qs.arg(name).arg(strongest)));
    }
}

void TestContentView::aClickAnywhereInTheContentCountsAsAUserAction()
{
    const QDateTime longAgo = QDateTime::currentDateTimeUtc().addSecs(-3600);

    m_rig->queue.setLastUserActionAt(longAgo);
    QTest::mouseClick(currentBodyPage(), Qt::LeftButton);
    QVERIFY(m_rig->queue.lastUserActionAt() > longAgo.addSecs(3000));

    // Widgets that join later, as list rows do on each refresh, are watched as well.
    auto* host = new QWidget(m_view->findChild<BodyView*>());
    // A button takes the press for itself, so the press never travels up to a widget watched from the start.
    auto* late = new QPushButton(QStringLiteral("row"), host);
    host->setGeometry(0, 0, 100, 40);
    late->setGeometry(0, 0, 100, 40);
    host->show();
    m_rig->queue.setLastUserActionAt(longAgo);
    QTest::mouseClick(late, Qt::LeftButton);
    QVERIFY(m_rig->queue.lastUserActionAt() > longAgo.addSecs(3000));
}

void TestContentView::naturalHeightFollowsTheActivePanel()
{
    const int empty = m_view->sizeHint().height();
    QCOMPARE(m_view->sizeHint().width(), 200);
    QVERIFY(empty >= ContentView::minimumHeight);

    QList<HueLight> lamps;
    for (int i = 1; i <= 6; ++i)
        lamps.append(light(QString::number(i)));
    settings().home().setLights(lamps);
    // As wide as it asks to be: every name on one line with its controls.
    QVERIFY(m_view->sizeHint().width() > ContentView::contentWidth);
    m_view->resize(m_view->sizeHint().width(), 320);
    QTRY_VERIFY(m_view->findChild<ControlRow*>()->isOneLine());
    const int six = m_view->sizeHint().height();
    for (int i = 7; i <= 12; ++i)
        lamps.append(light(QString::number(i)));
    settings().home().setLights(lamps);
    const int many = m_view->sizeHint().height();
    // Each further row adds its own height, a compact one: the window opens showing all of them.
    QVERIFY2(many - six > 6 * 20 && many - six < 6 * 36, qPrintable(u"%1 %2"_qs.arg(six).arg(many)));

    // The rooms panel has no rooms: back to the hint's height.
    settings().preferences().setActiveMainPanel(MainPanels::rooms);
    QVERIFY(m_view->sizeHint().height() < many);
}

void TestContentView::emptyPanelTellsUnpairedFromUnreachable_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("banner"); // empty: no banner
    QTest::addColumn<QString>("hint");   // how the lights hint starts

    const QString retrying = QStringLiteral("Bridge not reachable \u2014 retrying");
    QTest::newRow("not paired yet") << QString() << false << QString() << QString()
                                    << QStringLiteral("Okay, we're not able to detect any lights just yet.");
    QTest::newRow("pairing says what to do")
        << QString() << false << QStringLiteral("Press the link button on the bridge")
        << QStringLiteral("Press the link button on the bridge")
        << QStringLiteral("Okay, we're not able to detect any lights just yet.");
    QTest::newRow("paired, bridge gone") << QStringLiteral("key") << false << QString() << retrying
                                         << QStringLiteral("The bridge at 127.0.0.1:9 does not answer.");
    QTest::newRow("paired, bridge gone with a reason")
        << QStringLiteral("key") << false << QStringLiteral("Connection refused")
        << QStringLiteral("Connection refused")
        << QStringLiteral("The bridge at 127.0.0.1:9 does not answer.");
    QTest::newRow("paired and answering, but no lights")
        << QStringLiteral("key") << true << QString() << QString()
        << QStringLiteral("Okay, we're not able to detect any lights just yet.");
}

void TestContentView::emptyPanelTellsUnpairedFromUnreachable()
{
    QFETCH(QString, key);
    QFETCH(bool, connected);
    QFETCH(QString, error);
    QFETCH(QString, banner);
    QFETCH(QString, hint);
    settings().setHueIP(QStringLiteral("127.0.0.1:9"));
    settings().setHueKey(key);
    settings().home().setConnectionErrorMessage(error);
    settings().home().setBridgeConnected(connected);

    auto* bar = m_view->findChild<ConnectionBanner*>();
    QCOMPARE(bar->isVisible(), !banner.isEmpty());
    if (!banner.isEmpty())
        QCOMPARE(bar->message(), banner);
    auto* page = qobject_cast<QLabel*>(currentBodyPage());
    QVERIFY(page);
    QVERIFY2(page->accessibleName().startsWith(hint), qPrintable(page->accessibleName()));

    // The first successful read takes the banner away.
    settings().home().setConnectionErrorMessage(QString());
    settings().home().setBridgeConnected(true);
    QVERIFY(!bar->isVisible());

    // While the bridge answers: what it refused, and, before that, settings that are not saved until they
    // are.
    settings().activity().showNotice(u"The bridge refused the change: parameter, bri, is not modifiable"_qs);
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->message(), u"The bridge refused the change: parameter, bri, is not modifiable"_qs);
    const QString file = m_rig->files.fileName();
    QVERIFY(QFile::remove(file) && QDir().mkpath(file));
    settings().preferences().setAppIcon(u"Icon_Lamp2"_qs);
    QVERIFY2(bar->message().startsWith(u"Settings could not be saved: the settings file"_qs),
             qPrintable(bar->message()));
    QVERIFY(settings().activity().log().last().startsWith(u"Settings could not be saved"_qs));
    QVERIFY(QDir().rmdir(file));
    settings().preferences().setAppIcon(u"Icon_Lamp3"_qs);
    QCOMPARE(bar->message(), u"The bridge refused the change: parameter, bri, is not modifiable"_qs);
}

void TestContentView::settingsLinkAsksForTheConnectionSettings()
{
    QSignalSpy connection(m_view.get(), &ContentView::connectionSettingsRequested);
    auto* hint = qobject_cast<QLabel*>(currentBodyPage());
    QVERIFY(hint->text().contains(QStringLiteral(">settings</a>")));
    // From the keyboard: Tab reaches the link inside the text, Return follows it.
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    hint->setFocus(Qt::TabFocusReason);
    if (!hint->hasSelectedText())
        QTest::keyClick(hint, Qt::Key_Tab);
    QVERIFY(hint->hasFocus());
    QTest::keyClick(hint, Qt::Key_Return);
    QTRY_COMPARE(connection.size(), 1);
}

void TestContentView::everyControlHasANameAndARole()
{
    settings().preferences().setShowScenes(true);
    HueLight colour = light(QStringLiteral("1"));
    colour.allows_color = colour.allows_ambient = true;
    settings().home().setLights({colour, light(QStringLiteral("2"))});
    HueScene scene;
    scene.scene_id = QStringLiteral("s1");
    scene.name = QStringLiteral("Evening");
    settings().home().setScenes({scene});

    settings().preferences().setActiveMainPanel(MainPanels::lights);
    m_view->findChild<ControlRow*>()->setExpanded(true);
    int checked = 0;
    for (MainPanels panel : {MainPanels::lights, MainPanels::scenes}) {
        settings().preferences().setActiveMainPanel(panel);
        for (QWidget* widget : m_view->findChildren<QWidget*>()) {
            if (!widget->isVisibleTo(m_view.get()) || !(widget->focusPolicy() & Qt::TabFocus))
                continue;
            QAccessibleInterface* control = QAccessible::queryAccessibleInterface(widget);
            QVERIFY(control);
            const QString name = control->text(QAccessible::Name);
            QVERIFY2(!name.isEmpty(), widget->metaObject()->className());
            const QAccessible::Role role = control->role();
            QVERIFY2(role == QAccessible::Button || role == QAccessible::CheckBox ||
                         role == QAccessible::Slider || role == QAccessible::PageTab,
                     qPrintable(name));
            if (role == QAccessible::Slider) {
                QAccessibleValueInterface* value = control->valueInterface();
                QVERIFY2(value && value->maximumValue().toDouble() > 0, qPrintable(name));
            }
            ++checked;
        }
    }
    // Settings, the menu, three tabs; a disclosure, two switches, two sliders, a colour field and a
    // white-tone bar; a scene.
    QCOMPARE(checked, 2 * 5 + 7 + 1);

    // A screen reader moves the brightness the way the user would: the command follows.
    auto* brightness = QAccessible::queryAccessibleInterface(m_view->findChild<CustomSlider*>());
    QCOMPARE(brightness->text(QAccessible::Name), QStringLiteral("Lamp 1 brightness"));
    brightness->valueInterface()->setCurrentValue(100.0);
    QCOMPARE(settings().home().lights().first().brightness, 255);
}

void TestContentView::tabVisitsTheControlsInOrder()
{
    HueLight colour = light(QStringLiteral("1"));
    colour.allows_color = true;
    // Rows made in one order and then shown in another must still be visited from top to bottom.
    settings().home().setLights({light(QStringLiteral("2")), colour});
    settings().home().setLights({colour, light(QStringLiteral("2"))});
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->setFocus();

    QStringList visited;
    for (int i = 0; i < 10; ++i) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : m_view.get(),
                        Qt::Key_Tab);
        QWidget* focused = QApplication::focusWidget();
        visited << (focused ? QAccessible::queryAccessibleInterface(focused)->text(QAccessible::Name)
                            : "none");
    }
    QCOMPARE(visited,
             (QStringList{"Settings", "Menu", "Lights", "Rooms", "Scenes", "Lamp 1 colour and white tone",
                          "Lamp 1 brightness", "Lamp 1", "Lamp 2 brightness", "Lamp 2"}));

    // The tray icon's menu from the keyboard, wherever the focus is, opening under the menu button.
    QSignalSpy menu(m_view.get(), &ContentView::menuRequested);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F10, Qt::ShiftModifier);
    QTest::keyClick(m_view->findChild<CustomSlider*>(), Qt::Key_Menu);
    QCOMPARE(menu.size(), 2);
    const QList<QWidget*> buttons = m_view->findChildren<QWidget*>(QStringLiteral("menuButton"));
    const auto* button =
        *std::find_if(buttons.begin(), buttons.end(), [](QWidget* w) { return w->isVisible(); });
    QCOMPARE(menu.at(0).at(0).toPoint(), button->mapToGlobal(QPoint(0, button->height())));
}

QTEST_MAIN(TestContentView)
#include "tst_contentview.moc"
