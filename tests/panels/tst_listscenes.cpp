#include "PanelBench.h"
#include "panels/ListScenes.h"
#include "panels/SceneButton.h"

#include <QEnterEvent>
#include <QJsonObject>
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

private:
    HueScene scene(const QString& id, const QString& name) const;
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

HueScene TestListScenes::scene(const QString& id, const QString& name) const
{
    return {.id = QUuid::createUuid(), .scene_id = id, .name = name, .type = QStringLiteral("GroupScene")};
}

void TestListScenes::showList(const QList<HueScene>& scenes)
{
    m_bench->settings().setScenes(scenes);
    m_list = std::make_unique<ListScenes>(m_bench->settings(), m_bench->helper());
    m_list->resize(220, 300);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
}

void TestListScenes::scenesWithTheSameNameRecallTheirOwnIdsAndNothingElse()
{
    const QList<HueScene> scenes{scene(u"AbC-1"_qs, u"Relax"_qs), scene(u"xYz-2"_qs, u"Relax"_qs)};
    showList(scenes);
    const QList<HueLight> lights{m_bench->light(u"1"_qs, true, true)};
    m_bench->settings().setLights(lights);
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
    QCOMPARE(m_bench->settings().scenes(), scenes);
    QCOMPARE(m_bench->settings().lights(), lights);
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
    m_bench->settings().setScenes({scene(u"1"_qs, u"Relax"_qs), scene(u"2"_qs, u"Read"_qs)});
    QCOMPARE(m_list->sceneButtons().first(), first);

    m_bench->settings().setScenes({scene(u"3"_qs, u"Energize"_qs)});
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
    QTRY_VERIFY(m_list->verticalScrollBar()->maximum() > 0);
}

QTEST_MAIN(TestListScenes)
#include "tst_listscenes.moc"
