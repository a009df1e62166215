#include "TestSupport.h"
#include "preferences/panes/LampSelectorView.h"
#include "preferences/panes/LightsPane.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"

#include "preferences/panes/PaneWidgets.h"
#include "state/LightVisibility.h"
#include <QComboBox>
#include <QNetworkAccessManager>

#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

class TestLampSelectorView final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void listsTheLightsInTheStoredOrderWithTheirSwitches();
    void switchingALightOffHidesItFromTheDropDown();
    void movingALightStoresTheOrderAtOnce_data();
    void movingALightStoresTheOrderAtOnce();
    void aRefreshLeavesTheRowsAloneUntilTheLightsChange();
    void withoutLightsItLeadsToTheConnectionPane();
    void withSeveralBridgesThePanePicksOne();

private:
    static HueLight lamp(const QString& id)
    {
        return {.lamp_id = id,
                .name = QStringLiteral("Lamp %1").arg(id),
                .unique_id = QStringLiteral("uid-") + id};
    }
    QStringList rows() const
    {
        QStringList names;
        for (int row = 0; row < m_view->list().count(); ++row)
            names << m_view->list().item(row)->text();
        return names;
    }
    Qt::CheckState state(int row) const { return m_view->list().item(row)->checkState(); }

    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<LampSelectorView> m_view;
};

void TestLampSelectorView::init()
{
    m_state = std::make_unique<TestSettings>();
    m_state->settings().home().setLights({lamp("1"), lamp("2"), lamp("3")});
    m_view = std::make_unique<LampSelectorView>(m_state->settings());
    m_view->show();
}

void TestLampSelectorView::cleanup()
{
    m_view.reset();
    m_state.reset();
}

void TestLampSelectorView::listsTheLightsInTheStoredOrderWithTheirSwitches()
{
    m_state->store().writeString(QStringLiteral("lightOrder"), QStringLiteral("3,,9,1,3"));
    m_state->store().writeBool(QStringLiteral("hide_light_uid-2"), true);
    m_view = std::make_unique<LampSelectorView>(m_state->settings());

    QCOMPARE(rows(), (QStringList{"Lamp 3", "Lamp 1", "Lamp 2"}));
    QCOMPARE(state(0), Qt::Checked);
    QCOMPARE(state(2), Qt::Unchecked);
    // Shown as on without a flag, and nothing is written just by showing it.
    QVERIFY(!m_state->store().contains(QStringLiteral("hide_light_uid-3")));

    // Another program (glowdeckctl, an editor) changes both: the open pane follows.
    m_state->store().watchForChanges();
    JsonSettingsStore other(m_state->fileName());
    other.setValues(
        {{QStringLiteral("hide_light_uid-2"), false}, {QStringLiteral("hide_light_uid-1"), true}});
    QTRY_COMPARE(state(1), Qt::Unchecked);
    QCOMPARE(state(2), Qt::Checked);
    other.writeString(QStringLiteral("lightOrder"), QStringLiteral("2,3,1"));
    QTRY_COMPARE(rows(), (QStringList{"Lamp 2", "Lamp 3", "Lamp 1"}));
    QCOMPARE(state(2), Qt::Unchecked);
}

void TestLampSelectorView::switchingALightOffHidesItFromTheDropDown()
{
    QSignalSpy redraw(&m_state->settings().preferences(), &Preferences::changed);

    m_view->list().item(1)->setCheckState(Qt::Unchecked);

    QCOMPARE(m_state->store().value(QStringLiteral("hide_light_uid-2")), QVariant(true));
    QCOMPARE(redraw.size(), 1);
    QStringList shown;
    for (const HueLight& light : LightVisibility::shownLights(m_state->settings()))
        shown << light.lamp_id;
    QCOMPARE(shown, (QStringList{"1", "3"}));

    m_view->list().item(1)->setCheckState(Qt::Checked);
    QCOMPARE(m_state->store().value(QStringLiteral("hide_light_uid-2")), QVariant(false));
    QCOMPARE(LightVisibility::shownLights(m_state->settings()).size(), 3);
}

void TestLampSelectorView::movingALightStoresTheOrderAtOnce_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("byDrop"); // as a drop does it, straight in the list's model
    QTest::addColumn<QString>("order");

    QTest::newRow("first to last") << 0 << 2 << false << "2,3,1";
    QTest::newRow("last to first") << 2 << 0 << false << "3,1,2";
    QTest::newRow("one down") << 0 << 1 << false << "2,1,3";
    QTest::newRow("dropped at the end") << 0 << 3 << true << "2,3,1";
    QTest::newRow("dropped at the top") << 2 << 0 << true << "3,1,2";
    QTest::newRow("past the end") << 2 << 3 << false << "";
}

void TestLampSelectorView::movingALightStoresTheOrderAtOnce()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, byDrop);
    QFETCH(QString, order);

    if (byDrop)
        m_view->list().model()->moveRow(QModelIndex(), from, QModelIndex(), to);
    else
        m_view->moveLight(from, to);

    QTRY_COMPARE(m_state->store().readString(QStringLiteral("lightOrder")).value_or(QString()), order);
    QStringList ids;
    for (const HueLight& light : m_view->lights())
        ids << light.lamp_id;
    QCOMPARE(ids.join(u','), order.isEmpty() ? QStringLiteral("1,2,3") : order);
}

void TestLampSelectorView::aRefreshLeavesTheRowsAloneUntilTheLightsChange()
{
    QListWidgetItem* first = m_view->list().item(0);
    m_view->list().setCurrentRow(1);
    QList<HueLight> lights = m_state->settings().home().lights();
    lights[0].brightness = 200;

    m_state->settings().home().setLights(lights);

    QCOMPARE(m_view->list().item(0), first);

    lights.append(lamp("4"));
    m_state->settings().home().setLights(lights);

    QCOMPARE(rows(), (QStringList{"Lamp 1", "Lamp 2", "Lamp 3", "Lamp 4"}));
    QCOMPARE(m_view->list().currentRow(), 1); // the selection survives
}

void TestLampSelectorView::withoutLightsItLeadsToTheConnectionPane()
{
    m_state->settings().home().setLights({});
    QVERIFY(!m_view->list().isVisible());
    auto* link = m_view->findChild<LinkButton*>();
    QVERIFY(link && link->isVisible());
    QSignalSpy requested(m_view.get(), &LampSelectorView::connectionPaneRequested);

    QTest::mouseClick(link, Qt::LeftButton);

    QCOMPARE(requested.size(), 1);
}

void TestLampSelectorView::withSeveralBridgesThePanePicksOne()
{
    QNetworkAccessManager network;
    BridgeSessions sessions;
    m_state->settings().setBridgeName(u"Downstairs"_qs);
    sessions.add(std::make_unique<BridgeSession>(m_state->settings(), network));
    LightsPane pane(sessions);
    pane.show();
    // One bridge: its lamps alone, as the pane has always shown them.
    QVERIFY(!pane.bridgePicker().isVisible());
    QCOMPARE(pane.lampSelector()->lights().size(), 3);

    BridgeHome upstairsHome;
    auto upstairs = std::make_unique<BridgeLink>(m_state->settings().preferences(),
                                                 m_state->settings().activity(), upstairsHome);
    upstairs->setBridgeContact(u"http"_qs, u"001788FFFE9C4D5E"_qs, {});
    upstairs->setBridgeName(u"Upstairs"_qs);
    upstairsHome.setLights(
        {HueLight{.lamp_id = u"1"_qs, .name = u"Attic lamp"_qs, .unique_id = u"uid-up-1"_qs}});
    BridgeSession& second = sessions.add(std::make_unique<BridgeSession>(std::move(upstairs), network));
    QVERIFY(pane.bridgePicker().isVisible());
    QCOMPARE(pane.bridgePicker().itemText(1), u"Upstairs"_qs);

    // Picking the second bridge lists its lamps; hiding one is kept under that lamp's own id.
    pane.bridgePicker().setCurrentIndex(1);
    Q_EMIT pane.bridgePicker().activated(1);
    QCOMPARE(pane.lampSelector()->list().item(0)->text(), u"Attic lamp"_qs);
    pane.lampSelector()->list().item(0)->setCheckState(Qt::Unchecked);
    QCOMPARE(m_state->store().value(u"hide_light_uid-up-1"_qs), QVariant(true));
    QVERIFY(!m_state->store().contains(u"hide_light_uid-1"_qs));

    // The bridge removed while it shows: the pane goes back to the first, without the picker.
    sessions.remove(&second);
    QCOMPARE(pane.lampSelector()->lights().size(), 3);
    QTRY_VERIFY(!pane.bridgePicker().isVisible());
}

QTEST_MAIN(TestLampSelectorView)
#include "tst_lampselectorview.moc"
