#include "PanelBench.h"
#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/ElidedLabel.h"
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
    void keysMoveAFocusedControlThroughItsCommand_data();
    void keysMoveAFocusedControlThroughItsCommand();
    void spaceTogglesAFocusedSwitch();
    void showsOffDimmedAndCutsALongNameWithATooltip();
    void markersShowTheCurrentColourAndTone();

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
    QTest::newRow("a fifth") << 0.2 << 51 << true;
    QTest::newRow("left end switches off") << 0.0 << 0 << false;
    QTest::newRow("beyond the left end") << -0.2 << 0 << false;
}

void TestLightRow::sliderSendsTheBrightnessOfItsPosition()
{
    QFETCH(qreal, fraction);
    QFETCH(int, brightness);
    QFETCH(bool, on);

    // Fractions of the span from the first pixel to the last, which a click reaches.
    auto* slider = m_row->findChild<CustomSlider*>();
    drag(slider, {QPointF((slider->width() - 1) * fraction, 8)});

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
    const qreal w = slider->width() - 1;
    drag(slider,
         {QPointF(5, 8), QPointF(w * 0.2, 8), QPointF(w * 0.9, 8), QPointF(w * 0.3, 8), QPointF(60, 8)});
    const int last = int(float(60 / w) * 255);

    QTRY_VERIFY(m_bench->settled());
    const QList<SimulatedRequest> sent = m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().body.value(u"bri").toInt(), last);
    QCOMPARE(slider->value(), float(60 / w));
    QCOMPARE(m_bench->bridge().light(m_id).value(u"state").toObject().value(u"bri").toInt(), last);
}

void TestLightRow::colorFieldSendsHueAndSaturation_data()
{
    // Points as fractions of the field's real size (first to last pixel); beyond 1 or below 0 is a drag past
    // the field's edge, which must stay in the bridge's ranges.
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("saturation");

    QTest::newRow("bottom edge is saturation 250") << QPointF(0.05, 1) << 3276 << 250;
    QTest::newRow("half way is hue 32767") << QPointF(0.5, 0.5) << 32767 << 125;
    QTest::newRow("right edge is hue 65535") << QPointF(1, 0) << 65535 << 0;
    QTest::newRow("dragged far past the bottom right") << QPointF(9, 12) << 65535 << 250;
    QTest::newRow("dragged far past the top left") << QPointF(-7, -3) << 0 << 0;
}

void TestLightRow::colorFieldSendsHueAndSaturation()
{
    QFETCH(QPointF, point);
    QFETCH(int, hue);
    QFETCH(int, saturation);

    m_bench->settings().updateLight(m_id, [](HueLight& l) { l.is_on = false; });
    auto* field = m_row->findChild<ColorField*>();
    drag(field, {QPointF(point.x() * (field->width() - 1), point.y() * (field->height() - 1))});

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
    QTest::addColumn<qreal>("fraction"); // of the bar's real width, first to last pixel
    QTest::addColumn<qint64>("ctMin");
    QTest::addColumn<qint64>("ctMax");
    QTest::addColumn<int>("mired");

    QTest::newRow("left end is exactly ct_min") << 0.0 << qint64(153) << qint64(454) << 153;
    QTest::newRow("half way") << 0.5 << qint64(153) << qint64(454) << 153 + 150;
    QTest::newRow("a click at the right end is ct_max") << 1.0 << qint64(153) << qint64(454) << 454;
    QTest::newRow("dragged past the right end") << 1.6 << qint64(153) << qint64(454) << 454;
    QTest::newRow("dragged past the left end") << -0.4 << qint64(153) << qint64(454) << 153;
    // The decoder's stand-ins for a lamp that reports no range: the common white range instead.
    QTest::newRow("no range reported, right end") << 1.0 << qint64(0) << qint64(10000) << 500;
    QTest::newRow("no range reported, left end") << 0.0 << qint64(0) << qint64(10000) << 153;
}

void TestLightRow::whiteToneBarSendsTheTemperatureRange()
{
    QFETCH(qreal, fraction);
    QFETCH(qint64, ctMin);
    QFETCH(qint64, ctMax);
    QFETCH(int, mired);

    m_bench->settings().updateLight(m_id, [=](HueLight& l) {
        l.ct_min = ctMin;
        l.ct_max = ctMax;
    });
    auto* bar = m_row->findChild<TemperatureBar*>();
    drag(bar, {QPointF(fraction * (bar->width() - 1), 7)});

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

void TestLightRow::keysMoveAFocusedControlThroughItsCommand_data()
{
    QTest::addColumn<QString>("control"); // class name of the focused control
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<QJsonObject>("body"); // the one request the keys leave

    // The record starts at brightness 100 (39 %), hue 1000, saturation 140, ct 300 in 153..454.
    QTest::newRow("Right on the slider") << u"CustomSlider"_qs << QList<int>{Qt::Key_Right}
                                         << QJsonObject{{"bri", 112}, {"on", true}, {"transitiontime", 2}};
    QTest::newRow("Page Up, then Right") << u"CustomSlider"_qs << QList<int>{Qt::Key_PageUp, Qt::Key_Right}
                                         << QJsonObject{{"bri", 163}, {"on", true}, {"transitiontime", 2}};
    QTest::newRow("Home switches off") << u"CustomSlider"_qs << QList<int>{Qt::Key_Home}
                                       << QJsonObject{{"bri", 0}, {"on", false}, {"transitiontime", 2}};
    QTest::newRow("End on the white-tone bar")
        << u"TemperatureBar"_qs << QList<int>{Qt::Key_End}
        << QJsonObject{{"ct", 454}, {"on", true}, {"transitiontime", 2}};
    QTest::newRow("Left and Down on the colour field")
        << u"ColorField"_qs << QList<int>{Qt::Key_Left, Qt::Key_Down}
        << QJsonObject{{"hue", 0}, {"sat", 152}, {"on", true}, {"transitiontime", 2}};
}

void TestLightRow::keysMoveAFocusedControlThroughItsCommand()
{
    QFETCH(QString, control);
    QFETCH(QList<int>, keys);
    QFETCH(QJsonObject, body);

    QWidget* focused = nullptr;
    for (auto* candidate : m_row->findChildren<QWidget*>()) {
        if (QString::fromLatin1(candidate->metaObject()->className()) == control)
            focused = candidate;
    }
    QVERIFY(focused && (focused->focusPolicy() & Qt::TabFocus));
    for (int key : keys)
        QTest::keyClick(focused, Qt::Key(key));

    QTRY_VERIFY(m_bench->settled());
    const QList<SimulatedRequest> sent = m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().body, body);
}

void TestLightRow::spaceTogglesAFocusedSwitch()
{
    auto* toggle = m_row->findChild<RowSwitch*>();
    QCOMPARE(toggle->accessibleName(), u"Lamp %1"_qs.arg(m_id));
    QTest::keyClick(toggle, Qt::Key_Space);
    QVERIFY(!m_bench->settings().lights().first().is_on);
    QTRY_COMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->requestsTo(u"lights/%1/state"_qs.arg(m_id)).first().body, (QJsonObject{{"on", false}}));
}

void TestLightRow::showsOffDimmedAndCutsALongNameWithATooltip()
{
    QVERIFY(!m_row->isDimmed());
    const QString longName = u"Living room floor lamp by the big window"_qs;
    m_bench->settings().updateLight(m_id, [&](HueLight& l) {
        l.is_on = false;
        l.name = longName;
    });
    m_row->setLight(m_bench->settings().lights().first());
    QVERIFY(m_row->isDimmed());
    QVERIFY(m_row->findChild<CustomSlider*>()->isDimmed());

    auto* name = m_row->findChild<ElidedLabel*>();
    QTRY_VERIFY(name->isElided());
    QCOMPARE(name->toolTip(), longName);
    // The switch stays on the row, right of the cut name.
    QVERIFY(name->geometry().right() < m_row->findChild<RowSwitch*>()->geometry().left());

    // Controls still work on a dimmed row, and the bridge being away dims it as well.
    drag(m_row->findChild<CustomSlider*>(), {QPointF(100, 8)});
    m_row->setLight(m_bench->settings().lights().first());
    QVERIFY(!m_row->isDimmed());
    m_row->setBridgeReachable(false);
    QVERIFY(m_row->isDimmed());
}

void TestLightRow::markersShowTheCurrentColourAndTone()
{
    m_bench->settings().updateLight(m_id, [](HueLight& l) {
        l.hue = 65535 / 4;
        l.saturation = 125;
        l.color_temperature = 454;
    });
    m_row->setLight(m_bench->settings().lights().first());
    auto* field = m_row->findChild<ColorField*>();
    QVERIFY(qAbs(field->markedHue() - 0.25) < 1e-4);
    QCOMPARE(field->markedSaturation(), 0.5);
    QCOMPARE(m_row->findChild<TemperatureBar*>()->markedWarmth(), 1.0);
}

QTEST_MAIN(TestLightRow)
#include "tst_lightrow.moc"
