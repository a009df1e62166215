#include "PanelBench.h"
#include "panels/CustomSlider.h"
#include "panels/LightRow.h"
#include "panels/ListLights.h"

#include <QJsonObject>
#include <QPointer>
#include <QTest>

#include <memory>

class TestListLights final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsTheLightsInOrderWithoutTheHiddenOnes();
    void keepsADragAliveThroughARefresh();
    void dropsTheRowOfALightThatLeft();

private:
    QStringList shownIds() const;

    std::unique_ptr<PanelBench> m_bench;
    std::unique_ptr<ListLights> m_list;
    QStringList m_ids;
};

void TestListLights::init()
{
    m_bench = std::make_unique<PanelBench>();
    m_ids = QStringList{QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")};
    QCOMPARE(m_ids.size(), 3);
    QList<HueLight> lights;
    for (const QString& id : std::as_const(m_ids))
        lights.append(m_bench->light(id, true, true));
    m_bench->settings().home().setLights(lights);
    m_list = std::make_unique<ListLights>(m_bench->settings(), m_bench->commands());
    m_list->resize(260, 400);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
}

void TestListLights::cleanup()
{
    m_list.reset();
    m_bench.reset();
}

QStringList TestListLights::shownIds() const
{
    QStringList ids;
    for (LightRow* row : m_list->lightRows())
        ids.append(row->lampId());
    return ids;
}

void TestListLights::showsTheLightsInOrderWithoutTheHiddenOnes()
{
    QCOMPARE(shownIds(), m_ids);

    const QList<HueLight> lights = m_bench->settings().home().lights();
    m_bench->store().writeBool(QStringLiteral("hide_light_") + lights.at(1).unique_id, true);
    m_list->refresh();
    QCOMPARE(shownIds(), (QStringList{m_ids.at(0), m_ids.at(2)}));

    // The user's order from the preferences arrives as a reordered list.
    m_bench->settings().home().setLights({lights.at(2), lights.at(1), lights.at(0)});
    QCOMPARE(shownIds(), (QStringList{m_ids.at(2), m_ids.at(0)}));
}

void TestListLights::keepsADragAliveThroughARefresh()
{
    LightRow* row = m_list->lightRows().at(1);
    auto* slider = row->findChild<CustomSlider*>();
    const qreal last = slider->width() - 1; // the last pixel is the slider's top
    sendMouse(slider, QEvent::MouseButtonPress, QPointF(last * 0.2, 8));
    sendMouse(slider, QEvent::MouseMove, QPointF(last * 0.4, 8));

    // A refresh from the bridge reports other values while the pointer is still down.
    QList<HueLight> refreshed = m_bench->settings().home().lights();
    for (HueLight& light : refreshed)
        light.brightness = 10;
    m_bench->settings().home().setLights(refreshed);
    QCOMPARE(m_list->lightRows().at(1), row);
    QCOMPARE(slider->value(), float(0.4));

    sendMouse(slider, QEvent::MouseMove, QPointF(last * 0.8, 8));
    sendMouse(slider, QEvent::MouseButtonRelease, QPointF(last * 0.8, 8));
    const int brightness = int(0.8 * 255);
    QCOMPARE(m_bench->settings().home().lights().at(1).brightness, brightness);
    QTRY_VERIFY(m_bench->settled());
    const QList<QJsonObject> sent = m_bench->sentTo(u"lights/%1/state"_qs.arg(m_ids.at(1)));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().value(u"bri").toInt(), brightness);

    // Once released, the next refresh shows through again.
    m_bench->settings().home().setLights(refreshed);
    QCOMPARE(slider->value(), float(10) / 255);
}

void TestListLights::dropsTheRowOfALightThatLeft()
{
    QPointer<LightRow> leaving = m_list->lightRows().at(0);
    QPointer<LightRow> staying = m_list->lightRows().at(2);
    m_bench->settings().home().setLights({m_bench->settings().home().lights().at(2)});
    QCOMPARE(shownIds(), (QStringList{m_ids.at(2)}));
    QCOMPARE(m_list->lightRows().first(), staying.data());
    QTRY_VERIFY(leaving.isNull());
}

QTEST_MAIN(TestListLights)
#include "tst_listlights.moc"
