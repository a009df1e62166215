#include "PanelBench.h"
#include "panels/CustomSlider.h"
#include "panels/FilterField.h"
#include "panels/LightRow.h"
#include "panels/ListLights.h"

#include <QAccessible>
#include <QJsonObject>
#include <QPointer>
#include <QScrollBar>
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
    void filterNarrowsAManyLightsListByNameWhateverCaseAndAccents();

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

void TestListLights::filterNarrowsAManyLightsListByNameWhateverCaseAndAccents()
{
    FilterField* filter = m_list->filterField();
    QVERIFY(!filter->isVisible()); // three lights need no filter

    QList<HueLight> lights;
    for (int i = 1; i <= FilterField::threshold + 1; ++i)
        lights.append(m_bench->light(QString::number(i), false, false));
    lights[4].name = u"Café corner"_qs;
    lights[9].name = u"CAFE TABLE"_qs;
    lights[14].name = u"Hall"_qs;
    m_bench->settings().home().setLights(lights);
    QTRY_VERIFY(filter->isVisible());
    QCOMPARE(filter->accessibleName(), u"Filter lamps"_qs);
    // A screen reader finds it among the list's children, as it finds the rows.
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(m_list.get());
    QVERIFY(list);
    QStringList children;
    for (int i = 0; i < list->childCount(); ++i)
        children << list->child(i)->text(QAccessible::Name);
    QVERIFY2(children.contains(u"Filter lamps"_qs), qPrintable(children.join(u", "_qs)));
    // The field, the rows and their switches stay clear of the scroll bar that many lights bring.
    QTRY_VERIFY(m_list->verticalScrollBar()->isVisible());
    const int clear = m_list->viewport()->width();
    QTRY_VERIFY2(filter->geometry().right() < clear,
                 qPrintable(u"%1 %2"_qs.arg(filter->geometry().right()).arg(clear)));
    for (LightRow* row : m_list->lightRows()) {
        const int right = row->mapTo(m_list->viewport(), QPoint(row->width() - 1, 0)).x();
        QVERIFY2(right < clear, qPrintable(u"%1: %2 %3"_qs.arg(row->name()).arg(right).arg(clear)));
    }
    const auto visibleNames = [this] {
        QStringList names;
        for (LightRow* row : m_list->lightRows()) {
            if (row->isVisible())
                names << row->name();
        }
        return names;
    };

    QTest::keyClicks(filter, u"cafe"_qs);
    QCOMPARE(visibleNames(), (QStringList{u"Café corner"_qs, u"CAFE TABLE"_qs}));
    filter->clear();
    QTest::keyClicks(filter, u"CAFÉ c"_qs);
    QCOMPARE(visibleNames(), QStringList{u"Café corner"_qs});
    // A refresh keeps the filter applied, to rows old and new.
    lights.append(m_bench->light(u"99"_qs, false, false));
    lights.last().name = u"cafe counter"_qs;
    m_bench->settings().home().setLights(lights);
    QCOMPARE(visibleNames(), (QStringList{u"Café corner"_qs, u"cafe counter"_qs}));

    // Escape empties the field and shows every lamp again.
    QTest::keyClick(filter, Qt::Key_Escape);
    QVERIFY(filter->text().isEmpty());
    QCOMPARE(visibleNames().size(), lights.size());

    // Down to few lights: the field goes, and with it any text in it.
    QTest::keyClicks(filter, u"hall"_qs);
    m_bench->settings().home().setLights(lights.mid(0, FilterField::threshold));
    QTRY_VERIFY(!filter->isVisible());
    QVERIFY(filter->text().isEmpty());
    QCOMPARE(visibleNames().size(), FilterField::threshold);
}

QTEST_MAIN(TestListLights)
#include "tst_listlights.moc"
