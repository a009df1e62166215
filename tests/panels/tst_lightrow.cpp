#include "PanelBench.h"
#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/LightRow.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"

#include <QJsonObject>
#include <QTest>

#include <memory>

class TestLightRow final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sliderSendsTheBrightnessOfItsPosition_data();
    void sliderSendsTheBrightnessOfItsPosition();
    void dragOfManyMovesReachesTheBridgeAsItsLastValue();
    void colorFieldSendsHueAndSaturation_data();
    void colorFieldSendsHueAndSaturation();
    void whiteToneBarSendsTheTemperatureRange_data();
    void whiteToneBarSendsTheTemperatureRange();
    void switchSendsOnAndOff();
    void showsTheBarsTheLampSupports_data();
    void showsTheBarsTheLampSupports();
    void ignoresAChangeToALightThatIsGone();

private:
    void makeRow(bool color, bool ambient);

    std::unique_ptr<PanelBench> m_bench;
    std::unique_ptr<LightRow> m_row;
    QString m_id;
};

void TestLightRow::init()
{
    m_bench = std::make_unique<PanelBench>();
    QVERIFY(m_bench->start());
    m_id = m_bench->bridge().lightIds().first();
    makeRow(true, true);
}

void TestLightRow::cleanup()
{
    m_row.reset();
    m_bench.reset();
}

void TestLightRow::makeRow(bool color, bool ambient)
{
    const HueLight light = m_bench->light(m_id, color, ambient);
    m_bench->settings().setLights({light});
    m_row = std::make_unique<LightRow>(m_bench->settings(), m_bench->helper(), light);
    m_row->setFixedWidth(240);
    m_row->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_row.get()));
}

void TestLightRow::sliderSendsTheBrightnessOfItsPosition_data()
{
    QTest::addColumn<qreal>("fraction"); // of the slider's width
    QTest::addColumn<int>("brightness");
    QTest::addColumn<bool>("on");

    QTest::newRow("right end sends 255") << 1.0 << 255 << true;
    QTest::newRow("beyond the right end") << 1.3 << 255 << true;
    QTest::newRow("middle") << 0.5 << 127 << true;
    QTest::newRow("left end switches off") << 0.0 << 0 << false;
    QTest::newRow("beyond the left end") << -0.2 << 0 << false;
}

void TestLightRow::sliderSendsTheBrightnessOfItsPosition()
{
    QFETCH(qreal, fraction);
    QFETCH(int, brightness);
    QFETCH(bool, on);

    auto* slider = m_row->findChild<CustomSlider*>();
    drag(slider, {QPointF(slider->width() * fraction, 8)});

    const HueLight record = m_bench->settings().lights().first();
    QCOMPARE(record.brightness, brightness);
    QCOMPARE(record.is_on, on);
    QTRY_COMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).first().body,
             (QJsonObject{{"bri", brightness}, {"on", on}, {"transitiontime", 2}}));
}

void TestLightRow::dragOfManyMovesReachesTheBridgeAsItsLastValue()
{
    auto* slider = m_row->findChild<CustomSlider*>();
    const qreal w = slider->width();
    drag(slider,
         {QPointF(5, 8), QPointF(w * 0.2, 8), QPointF(w * 0.9, 8), QPointF(w * 0.3, 8), QPointF(60, 8)});
    const int last = int(60 / w * 255);

    QTRY_VERIFY(m_bench->settled());
    const QList<SimulatedRequest> sent = m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().body.value(u"bri").toInt(), last);
    QCOMPARE(slider->value(), float(60 / w));
    QCOMPARE(m_bench->bridge().light(m_id).value(u"state").toObject().value(u"bri").toInt(), last);
}

void TestLightRow::colorFieldSendsHueAndSaturation_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("saturation");

    QTest::newRow("bottom edge is saturation 250") << QPointF(10, 50) << 3640 << 250;
    QTest::newRow("half way is hue 32767") << QPointF(90, 25) << 32767 << 125;
    QTest::newRow("nominal right edge is hue 65535") << QPointF(180, 0) << 65535 << 0;
}

void TestLightRow::colorFieldSendsHueAndSaturation()
{
    QFETCH(QPointF, point);
    QFETCH(int, hue);
    QFETCH(int, saturation);

    m_bench->settings().updateLight(m_id, [](HueLight& l) { l.is_on = false; });
    drag(m_row->findChild<ColorField*>(), {point});

    const HueLight record = m_bench->settings().lights().first();
    QCOMPARE(record.hue, hue);
    QCOMPARE(record.saturation, saturation);
    QVERIFY(record.is_on);
    QTRY_COMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).first().body,
             (QJsonObject{{"hue", hue}, {"sat", saturation}, {"on", true}, {"transitiontime", 2}}));
}

void TestLightRow::whiteToneBarSendsTheTemperatureRange_data()
{
    QTest::addColumn<qreal>("x");
    QTest::addColumn<int>("mired");

    // The lamp's range is 153..454.
    QTest::newRow("left end is exactly ct_min") << 0.0 << 153;
    QTest::newRow("half way") << 90.0 << 153 + 150;
    QTest::newRow("nominal right end is ct_max") << 180.0 << 454;
}

void TestLightRow::whiteToneBarSendsTheTemperatureRange()
{
    QFETCH(qreal, x);
    QFETCH(int, mired);

    drag(m_row->findChild<TemperatureBar*>(), {QPointF(x, 7)});

    QCOMPARE(m_bench->settings().lights().first().color_temperature, mired);
    QTRY_COMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).first().body,
             (QJsonObject{{"ct", mired}, {"on", true}, {"transitiontime", 2}}));
}

void TestLightRow::switchSendsOnAndOff()
{
    auto* toggle = m_row->findChild<RowSwitch*>();
    QVERIFY(toggle->isChecked()); // the record is on

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(!m_bench->settings().lights().first().is_on);
    QTRY_COMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).last().body, (QJsonObject{{"on", false}}));

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(m_bench->settings().lights().first().is_on);
    QTRY_COMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).size(), 2);
    QCOMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).last().body, (QJsonObject{{"on", true}}));
}

void TestLightRow::showsTheBarsTheLampSupports_data()
{
    QTest::addColumn<bool>("color");
    QTest::addColumn<bool>("ambient");
    QTest::addColumn<bool>("roomBars"); // the rooms' option must not matter here

    QTest::newRow("colour and white tones") << true << true << true;
    QTest::newRow("white tones only") << false << true << true;
    QTest::newRow("colour only") << true << false << true;
    QTest::newRow("dimmable only") << false << false << true;
    QTest::newRow("colour, room bars off") << true << true << false;
}

void TestLightRow::showsTheBarsTheLampSupports()
{
    QFETCH(bool, color);
    QFETCH(bool, ambient);
    QFETCH(bool, roomBars);

    m_bench->settings().setShowColorBarsForRooms(roomBars);
    makeRow(color, ambient);
    QCOMPARE(m_row->findChild<ColorField*>()->isVisible(), color);
    QCOMPARE(m_row->findChild<TemperatureBar*>()->isVisible(), ambient);

    // A refresh that reports other capabilities is shown by the same row.
    HueLight changed = m_bench->settings().lights().first();
    changed.allows_color = !color;
    m_row->setLight(changed);
    QCOMPARE(m_row->findChild<ColorField*>()->isVisible(), !color);
}

void TestLightRow::ignoresAChangeToALightThatIsGone()
{
    m_bench->settings().setLights({});
    auto* slider = m_row->findChild<CustomSlider*>();
    drag(slider, {QPointF(slider->width(), 8)});
    drag(m_row->findChild<ColorField*>(), {QPointF(20, 20)});
    QTest::mouseClick(m_row->findChild<RowSwitch*>(), Qt::LeftButton);

    QVERIFY(m_bench->settings().lights().isEmpty());
    QVERIFY(m_bench->settled()); // a command starts the queue at once: nothing was queued
    QVERIFY(m_bench->bridge().requests().isEmpty());
}

QTEST_MAIN(TestLightRow)
#include "tst_lightrow.moc"
