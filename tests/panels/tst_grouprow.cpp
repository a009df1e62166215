#include "PanelBench.h"
#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/GroupRow.h"
#include "panels/ListGroups.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"

#include <QJsonObject>
#include <QTest>

#include <memory>

class TestGroupRow final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void membersDecideTheBar_data();
    void membersDecideTheBar();
    void followsTheColorBarOptionAndTheLights();
    void sliderSendsTheRoomBrightness_data();
    void sliderSendsTheRoomBrightness();
    void colorFieldSendsTheRoomHue();
    void whiteToneBarStartsAtCtMin();
    void switchSendsOnAndOff();

private:
    GroupRow* showRoom(const QStringList& members);
    QString target() const { return u"groups/%1/action"_qs.arg(m_groupId); }

    std::unique_ptr<PanelBench> m_bench;
    std::unique_ptr<ListGroups> m_list;
    QString m_groupId;
};

void TestGroupRow::init()
{
    m_bench = std::make_unique<PanelBench>();
    QVERIFY(m_bench->start());
    m_groupId = m_bench->bridge().groupIds().first();
    // Light "1" takes colour; "2" and "3" are white-tone lamps.
    m_bench->settings().setLights({m_bench->light(u"1"_qs, true, true), m_bench->light(u"2"_qs, false, true),
                                   m_bench->light(u"3"_qs, false, true)});
}

void TestGroupRow::cleanup()
{
    m_list.reset();
    m_bench.reset();
}

GroupRow* TestGroupRow::showRoom(const QStringList& members)
{
    m_bench->settings().setGroups({m_bench->room(m_groupId, members)});
    m_list = std::make_unique<ListGroups>(m_bench->settings(), m_bench->helper());
    m_list->resize(260, 300);
    m_list->show();
    if (!QTest::qWaitForWindowExposed(m_list.get()) || m_list->groupRows().size() != 1)
        return nullptr;
    return m_list->groupRows().first();
}

void TestGroupRow::membersDecideTheBar_data()
{
    QTest::addColumn<QStringList>("members");
    QTest::addColumn<bool>("roomBars");
    QTest::addColumn<bool>("color");
    QTest::addColumn<bool>("whiteTone");

    QTest::newRow("one colour lamp among white ones") << QStringList{"2", "1", "3"} << true << true << false;
    QTest::newRow("white lamps only") << QStringList{"2", "3"} << true << false << true;
    QTest::newRow("unknown members") << QStringList{"41", "42"} << true << false << true;
    QTest::newRow("no members") << QStringList{} << true << false << true;
    QTest::newRow("bars off, colour lamp") << QStringList{"1"} << false << false << false;
    QTest::newRow("bars off, white lamps") << QStringList{"2"} << false << false << false;
}

void TestGroupRow::membersDecideTheBar()
{
    QFETCH(QStringList, members);
    QFETCH(bool, roomBars);
    QFETCH(bool, color);
    QFETCH(bool, whiteTone);

    m_bench->settings().setShowColorBarsForRooms(roomBars);
    GroupRow* row = showRoom(members);
    QVERIFY(row);
    QCOMPARE(row->findChild<ColorField*>()->isVisible(), color);
    QCOMPARE(row->findChild<TemperatureBar*>()->isVisible(), whiteTone);
}

void TestGroupRow::followsTheColorBarOptionAndTheLights()
{
    GroupRow* row = showRoom({u"2"_qs});
    QVERIFY(row);
    auto* colorField = row->findChild<ColorField*>();
    auto* whiteTone = row->findChild<TemperatureBar*>();
    QVERIFY(whiteTone->isVisible());

    m_bench->settings().setShowColorBarsForRooms(false);
    QVERIFY(!whiteTone->isVisible());
    QVERIFY(!colorField->isVisible());

    m_bench->settings().setShowColorBarsForRooms(true);
    // Lamp "2" turns out to take colour on the next refresh of the lights.
    m_bench->settings().updateLight(u"2"_qs, [](HueLight& l) { l.allows_color = true; });
    QVERIFY(colorField->isVisible());
    QVERIFY(!whiteTone->isVisible());
    QCOMPARE(m_list->groupRows().first(), row); // updated in place, not rebuilt
}

void TestGroupRow::sliderSendsTheRoomBrightness_data()
{
    QTest::addColumn<qreal>("fraction");
    QTest::addColumn<int>("brightness");
    QTest::addColumn<bool>("on");

    QTest::newRow("right end sends 255") << 1.0 << 255 << true;
    QTest::newRow("left end switches off") << 0.0 << 0 << false;
}

void TestGroupRow::sliderSendsTheRoomBrightness()
{
    QFETCH(qreal, fraction);
    QFETCH(int, brightness);
    QFETCH(bool, on);

    GroupRow* row = showRoom({u"1"_qs});
    QVERIFY(row);
    auto* slider = row->findChild<CustomSlider*>();
    drag(slider, {QPointF(slider->width() * 0.5, 8), QPointF(slider->width() * fraction, 8)});

    const HueGroup record = m_bench->settings().groups().first();
    QCOMPARE(record.brightness, brightness);
    QCOMPARE(record.is_on, on);
    QTRY_VERIFY(m_bench->settled());
    const QList<SimulatedRequest> sent = m_bench->requestsTo(target());
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().body, (QJsonObject{{"bri", brightness}, {"on", on}, {"transitiontime", 2}}));
}

void TestGroupRow::colorFieldSendsTheRoomHue()
{
    GroupRow* row = showRoom({u"1"_qs});
    QVERIFY(row);
    auto* field = row->findChild<ColorField*>();
    // Half way along the field's real width, and dragged past its bottom edge.
    drag(field, {QPointF(20, 10), QPointF((field->width() - 1) / 2.0, 80)});

    const HueGroup record = m_bench->settings().groups().first();
    QCOMPARE(record.hue, 32767);
    QCOMPARE(record.saturation, 250);
    QTRY_VERIFY(m_bench->settled());
    const QList<SimulatedRequest> sent = m_bench->requestsTo(target());
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().body,
             (QJsonObject{{"hue", 32767}, {"sat", 250}, {"on", true}, {"transitiontime", 2}}));
}

void TestGroupRow::whiteToneBarStartsAtCtMin()
{
    GroupRow* row = showRoom({u"2"_qs});
    QVERIFY(row);
    drag(row->findChild<TemperatureBar*>(), {QPointF(0, 7)});

    QCOMPARE(m_bench->settings().groups().first().color_temperature, 153);
    QTRY_COMPARE(m_bench->requestsTo(target()).size(), 1);
    QCOMPARE(m_bench->requestsTo(target()).first().body,
             (QJsonObject{{"ct", 153}, {"on", true}, {"transitiontime", 2}}));
}

void TestGroupRow::switchSendsOnAndOff()
{
    GroupRow* row = showRoom({u"1"_qs});
    QVERIFY(row);
    auto* toggle = row->findChild<RowSwitch*>();

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(!m_bench->settings().groups().first().is_on);
    QTRY_COMPARE(m_bench->requestsTo(target()).size(), 1);
    QCOMPARE(m_bench->requestsTo(target()).last().body, (QJsonObject{{"on", false}}));

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(m_bench->settings().groups().first().is_on);
    QTRY_COMPARE(m_bench->requestsTo(target()).size(), 2);
    QCOMPARE(m_bench->requestsTo(target()).last().body, (QJsonObject{{"on", true}}));
}

QTEST_MAIN(TestGroupRow)
#include "tst_grouprow.moc"
