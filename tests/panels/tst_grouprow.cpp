#include "PanelBench.h"
#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/FilterField.h"
#include "panels/GroupRow.h"
#include "panels/ListGroups.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"

#include <QJsonObject>
#include <QLabel>
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
    void dragSendsTheRoomCommand_data();
    void dragSendsTheRoomCommand();
    void switchSendsOnAndOff();
    void zonesFollowTheRoomsUnderTheirHeading();
    void filterNarrowsManyRoomsAndZonesByName();

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
    m_groupId = QStringLiteral("1");
    // Light "1" takes colour; "2" and "3" are white-tone lamps.
    m_bench->settings().home().setLights(
        {m_bench->light(u"1"_qs, true, true), m_bench->light(u"2"_qs, false, true),
         m_bench->light(u"3"_qs, false, true), m_bench->light(u"4"_qs, true, false)});
}

void TestGroupRow::cleanup()
{
    m_list.reset();
    m_bench.reset();
}

GroupRow* TestGroupRow::showRoom(const QStringList& members)
{
    m_bench->settings().home().setGroups({m_bench->room(m_groupId, members)});
    m_list = std::make_unique<ListGroups>(m_bench->settings(), m_bench->commands());
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

    // Colour and white tone both, whatever the lamps show now: lamp 1 takes colour and has a white-tone
    // range.
    QTest::newRow("one colour lamp among white ones") << QStringList{"2", "1", "3"} << true << true << true;
    QTest::newRow("colour lamps without white tone") << QStringList{"4"} << true << true << false;
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

    m_bench->settings().preferences().setShowColorBarsForRooms(roomBars);
    GroupRow* row = showRoom(members);
    QVERIFY(row);
    row->setExpanded(true);
    QCOMPARE(row->findChild<ColorField*>()->isVisible(), color);
    QCOMPARE(row->findChild<TemperatureBar*>()->isVisible(), whiteTone);
}

void TestGroupRow::followsTheColorBarOptionAndTheLights()
{
    GroupRow* row = showRoom({u"2"_qs});
    QVERIFY(row);
    row->setExpanded(true);
    auto* colorField = row->findChild<ColorField*>();
    auto* whiteTone = row->findChild<TemperatureBar*>();
    QVERIFY(whiteTone->isVisible());

    m_bench->settings().preferences().setShowColorBarsForRooms(false);
    QVERIFY(!whiteTone->isVisible());
    QVERIFY(!colorField->isVisible());

    m_bench->settings().preferences().setShowColorBarsForRooms(true);
    // Lamp "2" turns out to take colour on the next refresh of the lights.
    m_bench->settings().home().updateLight(u"2"_qs, [](HueLight& l) { l.allows_color = true; });
    QVERIFY(colorField->isVisible());
    QVERIFY(whiteTone->isVisible());            // it keeps its white-tone range
    QCOMPARE(m_list->groupRows().first(), row); // updated in place, not rebuilt
}

void TestGroupRow::dragSendsTheRoomCommand_data()
{
    QTest::addColumn<QString>("member");        // "1" takes colour, "2" white tones only
    QTest::addColumn<QString>("control");       // class name
    QTest::addColumn<QList<QPointF>>("points"); // fractions of the control's real size, first to last pixel
    QTest::addColumn<QJsonObject>("body");      // without the transition time

    QTest::newRow("slider, right end sends 255")
        << "1"
        << "CustomSlider" << QList<QPointF>{{0.5, 0.5}, {1, 0.5}} << QJsonObject{{"bri", 255}, {"on", true}};
    QTest::newRow("slider, left end switches off")
        << "1"
        << "CustomSlider" << QList<QPointF>{{0.5, 0.5}, {0, 0.5}} << QJsonObject{{"bri", 0}, {"on", false}};
    QTest::newRow("colour, half way and past the bottom edge")
        << "1"
        << "ColorField" << QList<QPointF>{{0.1, 0.1}, {0.5, 2}}
        << QJsonObject{{"hue", 32767}, {"sat", 250}, {"on", true}};
    QTest::newRow("white tone starts at ct_min")
        << "2"
        << "TemperatureBar" << QList<QPointF>{{0, 0.5}} << QJsonObject{{"ct", 153}, {"on", true}};
}

void TestGroupRow::dragSendsTheRoomCommand()
{
    QFETCH(QString, member);
    QFETCH(QString, control);
    QFETCH(QList<QPointF>, points);
    QFETCH(QJsonObject, body);

    GroupRow* row = showRoom({member});
    QVERIFY(row);
    QWidget* target = childOfClass(row, control);
    QVERIFY(target);
    for (QPointF& point : points)
        point = QPointF(point.x() * (target->width() - 1), point.y() * (target->height() - 1));
    drag(target, points);

    // Shown at once in the record, and sent as one request.
    QCOMPARE(unshownFields(m_bench->settings().home().groups().first(), body), QStringList());
    QTRY_VERIFY(m_bench->settled());
    const QList<QJsonObject> sent = m_bench->sentTo(this->target());
    QCOMPARE(sent.size(), 1);
    body.insert(u"transitiontime"_qs, 2);
    QCOMPARE(sent.first(), body);
}

void TestGroupRow::switchSendsOnAndOff()
{
    GroupRow* row = showRoom({u"1"_qs});
    QVERIFY(row);
    auto* toggle = row->findChild<RowSwitch*>();

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(!m_bench->settings().home().groups().first().is_on);
    QTRY_COMPARE(m_bench->sentTo(target()).size(), 1);
    QCOMPARE(m_bench->sentTo(target()).last(), (QJsonObject{{"on", false}}));

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(m_bench->settings().home().groups().first().is_on);
    QTRY_COMPARE(m_bench->sentTo(target()).size(), 2);
    QCOMPARE(m_bench->sentTo(target()).last(), (QJsonObject{{"on", true}}));
}

void TestGroupRow::zonesFollowTheRoomsUnderTheirHeading()
{
    HueGroup downstairs = m_bench->room(u"9"_qs, {u"1"_qs, u"2"_qs});
    downstairs.name = u"Downstairs"_qs;
    downstairs.type = u"Zone"_qs;
    m_bench->settings().home().setGroups(
        {downstairs, m_bench->room(u"1"_qs, {u"1"_qs}), m_bench->room(u"2"_qs, {u"2"_qs})});
    m_list = std::make_unique<ListGroups>(m_bench->settings(), m_bench->commands());
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));

    const auto shown = [this] {
        QStringList order;
        for (QWidget* row : m_list->rows())
            order << (qobject_cast<GroupRow*>(row) ? static_cast<GroupRow*>(row)->groupId()
                                                   : static_cast<QLabel*>(row)->text());
        return order;
    };
    QCOMPARE(shown(), (QStringList{u"1"_qs, u"2"_qs, u"Zones"_qs, u"9"_qs}));
    QVERIFY(m_list->findChild<QLabel*>(u"zonesHeading"_qs)->isVisible());

    // A zone's switch sends its own group command.
    QTest::mouseClick(m_list->groupRows().last()->findChild<RowSwitch*>(), Qt::LeftButton);
    QTRY_COMPARE(m_bench->sentTo(u"groups/9/action"_qs).size(), 1);

    m_bench->settings().preferences().setShowZones(false);
    QCOMPARE(shown(), (QStringList{u"1"_qs, u"2"_qs}));
    QVERIFY(!m_list->findChild<QLabel*>(u"zonesHeading"_qs)->isVisible());
}

void TestGroupRow::filterNarrowsManyRoomsAndZonesByName()
{
    QList<HueGroup> groups;
    for (int i = 1; i <= FilterField::threshold; ++i)
        groups.append(m_bench->room(QString::number(i), {u"1"_qs}));
    HueGroup upstairs = m_bench->room(u"90"_qs, {u"2"_qs});
    upstairs.name = u"Étage"_qs;
    upstairs.type = u"Zone"_qs;
    m_bench->settings().home().setGroups(groups);
    m_list = std::make_unique<ListGroups>(m_bench->settings(), m_bench->commands());
    m_list->resize(260, 400);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    FilterField* filter = m_list->filterField();
    QVERIFY(!filter->isVisible()); // twenty rooms need no filter

    m_bench->settings().home().setGroups(groups + QList<HueGroup>{upstairs});
    QTRY_VERIFY(filter->isVisible());
    QCOMPARE(filter->accessibleName(), u"Filter rooms"_qs);
    auto* heading = m_list->findChild<QLabel*>(u"zonesHeading"_qs);
    const auto visibleIds = [this] {
        QStringList ids;
        for (GroupRow* row : m_list->groupRows()) {
            if (row->isVisible())
                ids << row->groupId();
        }
        return ids;
    };

    QTest::keyClicks(filter, u"etage"_qs);
    QCOMPARE(visibleIds(), QStringList{u"90"_qs});
    QVERIFY(heading->isVisible());
    filter->clear();
    QTest::keyClicks(filter, u"ROOM 1"_qs);
    QCOMPARE(visibleIds().size(), 11); // 1 and 10 to 19
    QVERIFY(!heading->isVisible());    // no zone left under it
    QTest::keyClick(filter, Qt::Key_Escape);
    QCOMPARE(visibleIds().size(), groups.size() + 1);
    QVERIFY(heading->isVisible());
}

QTEST_MAIN(TestGroupRow)
#include "tst_grouprow.moc"
