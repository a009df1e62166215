#include "PanelBench.h"
#include "panels/ListScenes.h"
#include "panels/SceneButton.h"
#include "panels/ScrollColumn.h"

#include <QEnterEvent>
#include <QJsonObject>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include <memory>

class TestListScenes final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void scenesWithTheSameNameRecallTheirOwnIdsAndNothingElse();
    void longNameKeepsTheButtonWidth();
    void hoverBrightensThePlate();
    void followsTheSceneList();
    void scrollsThroughManyScenes();
    void listsScenesUnderTheirRooms();
    void manyScenesCanBeNarrowedByTyping();

private:
    HueScene scene(const QString& id, const QString& name, const QString& group = {},
                   const QStringList& lights = {}) const;
    /// What the column shows from the top, headings as "# Name".
    QStringList shownRows() const;
    void showList(const QList<HueScene>& scenes);

    std::unique_ptr<PanelBench> m_bench;
    std::unique_ptr<ListScenes> m_list;
};

void TestListScenes::init()
{
    m_bench = std::make_unique<PanelBench>();
}

void TestListScenes::cleanup()
{
    m_list.reset();
    m_bench.reset();
}

HueScene TestListScenes::scene(const QString& id, const QString& name, const QString& group,
                               const QStringList& lights) const
{
    return {.id = QUuid::createUuid(),
            .scene_id = id,
            .name = name,
            .lights = lights,
            .type = group.isEmpty() ? u"LightScene"_qs : u"GroupScene"_qs,
            .group_id = group};
}

QStringList TestListScenes::shownRows() const
{
    QWidget* column = m_list->column()->widget();
    column->layout()->activate();
    QList<QWidget*> rows;
    for (QWidget* row : column->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (row->isVisibleTo(column))
            rows.append(row);
    }
    std::ranges::sort(rows, {}, [](const QWidget* row) { return row->y(); });
    QStringList shown;
    for (QWidget* row : rows) {
        if (auto* button = qobject_cast<SceneButton*>(row))
            shown << button->sceneName();
        else
            shown << u"# "_qs + static_cast<QLabel*>(row)->text();
    }
    return shown;
}

void TestListScenes::showList(const QList<HueScene>& scenes)
{
    m_bench->settings().home().setScenes(scenes);
    m_list = std::make_unique<ListScenes>(m_bench->settings(), m_bench->commands());
    m_list->resize(220, 300);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
}

void TestListScenes::scenesWithTheSameNameRecallTheirOwnIdsAndNothingElse()
{
    const QList<HueScene> scenes{scene(u"AbC-1"_qs, u"Relax"_qs), scene(u"xYz-2"_qs, u"Relax"_qs)};
    showList(scenes);
    const QList<HueLight> lights{m_bench->light(u"1"_qs, true, true)};
    m_bench->settings().home().setLights(lights);
    const QList<SceneButton*> buttons = m_list->sceneButtons();
    QCOMPARE(buttons.size(), 2);
    QCOMPARE(buttons.at(0)->sceneName(), u"Relax"_qs);
    QCOMPARE(buttons.at(1)->sceneName(), u"Relax"_qs);

    QTest::mouseClick(buttons.at(1), Qt::LeftButton);
    QTest::mouseClick(buttons.at(0), Qt::LeftButton);
    QTRY_COMPARE(m_bench->sentTo(u"groups/0/action"_qs).size(), 2);
    const QList<QJsonObject> sent = m_bench->sentTo(u"groups/0/action"_qs);
    QCOMPARE(sent.at(0), (QJsonObject{{"scene", "xYz-2"}}));
    QCOMPARE(sent.at(1), (QJsonObject{{"scene", "AbC-1"}}));
    // A recall changes nothing here: the next refresh shows what the scene did.
    QCOMPARE(m_bench->settings().home().scenes(), scenes);
    QCOMPARE(m_bench->settings().home().lights(), lights);
}

void TestListScenes::longNameKeepsTheButtonWidth()
{
    const QString longName =
        u"The long evening reading scene in the upstairs living room by the big window"_qs;
    const QString oneWord = QString(80, u'W');
    showList({scene(u"1"_qs, u"Short"_qs), scene(u"2"_qs, longName), scene(u"3"_qs, oneWord)});
    const QList<SceneButton*> buttons = m_list->sceneButtons();
    for (SceneButton* button : buttons)
        QCOMPARE(button->width(), 180);
    QVERIFY(buttons.at(1)->height() > buttons.at(0)->height()); // wrapped onto more lines
    QCOMPARE(buttons.at(2)->height(), buttons.at(0)->height()); // cut by the frame
}

void TestListScenes::hoverBrightensThePlate()
{
    showList({scene(u"1"_qs, u"Relax"_qs)});
    SceneButton* button = m_list->sceneButtons().first();
    QCOMPARE(button->plateOpacity(), 0.2);

    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), button->mapToGlobal(QPointF(5, 5)));
    QApplication::sendEvent(button, &enter);
    QCOMPARE(button->plateOpacity(), 0.5);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(button, &leave);
    QCOMPARE(button->plateOpacity(), 0.2);
}

void TestListScenes::followsTheSceneList()
{
    showList({scene(u"1"_qs, u"Relax"_qs), scene(u"2"_qs, u"Read"_qs)});
    SceneButton* first = m_list->sceneButtons().first();

    // A refresh bringing the same scenes (with fresh list identities) keeps the buttons.
    m_bench->settings().home().setScenes({scene(u"1"_qs, u"Relax"_qs), scene(u"2"_qs, u"Read"_qs)});
    QCOMPARE(m_list->sceneButtons().first(), first);

    m_bench->settings().home().setScenes({scene(u"3"_qs, u"Energize"_qs)});
    QCOMPARE(m_list->sceneButtons().size(), 1);
    QCOMPARE(m_list->sceneButtons().first()->sceneName(), u"Energize"_qs);
    QTest::mouseClick(m_list->sceneButtons().first(), Qt::LeftButton);
    QTRY_COMPARE(m_bench->sentTo(u"groups/0/action"_qs).size(), 1);
    QCOMPARE(m_bench->sentTo(u"groups/0/action"_qs).first(), (QJsonObject{{"scene", "3"}}));
}

void TestListScenes::scrollsThroughManyScenes()
{
    QList<HueScene> scenes;
    for (int i = 0; i < 40; ++i)
        scenes.append(scene(QString::number(i), u"Scene %1"_qs.arg(i)));
    showList(scenes);
    QCOMPARE(m_list->height(), 300);
    QTRY_VERIFY(m_list->column()->verticalScrollBar()->maximum() > 0);
}

void TestListScenes::listsScenesUnderTheirRooms()
{
    // Scenes of no known room only: no headings at all.
    showList({scene(u"1"_qs, u"Relax"_qs), scene(u"2"_qs, u"Read"_qs, u"7"_qs)});
    QCOMPARE(shownRows(), (QStringList{"Relax", "Read"}));

    HueGroup zone = m_bench->room(u"5"_qs, {u"1"_qs, u"4"_qs});
    zone.type = u"Zone"_qs;
    m_bench->settings().home().setGroups(
        {zone, m_bench->room(u"2"_qs, {u"3"_qs, u"4"_qs}), m_bench->room(u"1"_qs, {u"1"_qs, u"2"_qs})});
    m_bench->settings().home().setScenes({
        scene(u"a"_qs, u"Nightlight"_qs, u"1"_qs, {u"1"_qs, u"2"_qs}),
        scene(u"b"_qs, u"Nightlight"_qs, u"2"_qs, {u"3"_qs}),
        scene(u"c"_qs, u"Sunset"_qs, {}, {u"4"_qs, u"3"_qs}),    // lamps of room 2
        scene(u"d"_qs, u"Party"_qs, {}, {u"1"_qs, u"3"_qs}),     // lamps of two rooms
        scene(u"e"_qs, u"Film"_qs, u"5"_qs, {u"1"_qs, u"4"_qs}), // the zone's own
        scene(u"f"_qs, u"Game"_qs, u"9"_qs, {u"2"_qs}),          // a group not shown: placed by its lamps
    });
    // Rooms in the bridge's order, then zones, then the rest.
    QCOMPARE(shownRows(), (QStringList{"# Room 2", "Nightlight", "Sunset", "# Room 1", "Nightlight", "Game",
                                       "# Room 5", "Film", "# Other scenes", "Party"}));
    QCOMPARE(m_list->sceneButtons().at(2)->accessibleDescription(), u"Room 1"_qs);

    // A refresh that changes nothing keeps every button; a room renamed renames its heading.
    SceneButton* first = m_list->sceneButtons().first();
    m_bench->settings().home().setScenes(m_bench->settings().home().scenes());
    QCOMPARE(m_list->sceneButtons().first(), first);
    QList<HueGroup> groups = m_bench->settings().home().groups();
    groups[1].name = u"Kitchen"_qs;
    m_bench->settings().home().setGroups(groups);
    QCOMPARE(m_list->headings().first()->text(), u"Kitchen"_qs);
    QVERIFY(m_list->filterField()->isHidden()); // six scenes need no filter
}

void TestListScenes::manyScenesCanBeNarrowedByTyping()
{
    QList<HueScene> scenes;
    for (int i = 0; i < ListScenes::filterThreshold; ++i)
        scenes.append(
            scene(QString::number(i), i % 2 ? u"Bright %1"_qs.arg(i) : u"Dimmed %1"_qs.arg(i), u"1"_qs));
    m_bench->settings().home().setGroups({m_bench->room(u"1"_qs, {}), m_bench->room(u"2"_qs, {})});
    showList(scenes);
    QLineEdit* filter = m_list->filterField();
    QVERIFY(filter->isHidden());
    scenes.append(scene(u"x"_qs, u"Nightlight"_qs, u"2"_qs));
    m_bench->settings().home().setScenes(scenes);
    QVERIFY(filter->isVisible());
    QCOMPARE(filter->accessibleName(), u"Filter scenes"_qs);
    // Above the list, not scrolled with it, and the first stop of Tab.
    QVERIFY(filter->geometry().bottom() < m_list->column()->geometry().top());
    filter->setFocus();
    QTest::keyClick(filter, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_list->sceneButtons().first());
    filter->setFocus();
    QTest::keyClicks(filter, u"BRIGHT 1"_qs);
    QCOMPARE(shownRows(), (QStringList{"# Room 1", "Bright 1", "Bright 11", "Bright 13", "Bright 15",
                                       "Bright 17", "Bright 19"}));
    // A room's name shows all of its scenes; nothing found says so.
    filter->setText(u"room 2"_qs);
    QCOMPARE(shownRows(), (QStringList{"# Room 2", "Nightlight"}));
    // Accents need not be typed, nor typed right.
    filter->setText(u"NÏGHT"_qs);
    QCOMPARE(shownRows(), (QStringList{"# Room 2", "Nightlight"}));
    filter->setText(u"zzz"_qs);
    QCOMPARE(shownRows(), (QStringList{u"# No scene matches “zzz”."_qs}));

    // Escape empties the field and stays in the window; the next Escape goes on to close it.
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(filter, &escape);
    QVERIFY(escape.isAccepted());
    QCOMPARE(shownRows().size(), 23);
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(filter, &again);
    QVERIFY(!again.isAccepted());

    // Back to few scenes: the field goes, and so does what was typed.
    filter->setText(u"Night"_qs);
    m_bench->settings().home().setScenes(scenes.mid(0, 3));
    QVERIFY(filter->isHidden() && filter->text().isEmpty());
    QCOMPARE(shownRows().size(), 4);
}

QTEST_MAIN(TestListScenes)
#include "tst_listscenes.moc"
