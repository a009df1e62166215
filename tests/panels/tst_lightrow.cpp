#include "PanelBench.h"
#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/ElidedLabel.h"
#include "panels/LightRow.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"

#include <QJsonObject>
#include <QTest>
#include <QToolButton>

#include <memory>

class TestLightRow final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void dragSendsTheValueOfThePoint_data();
    void dragSendsTheValueOfThePoint();
    void dragOfManyMovesReachesTheBridgeAsItsLastValue();
    void switchSendsOnAndOff();
    void showsTheBarsTheLampSupports_data();
    void showsTheBarsTheLampSupports();
    void namesSliderAndSwitchShareOneLineWhereTheWidthAllows();
    void ignoresAChangeToALightThatIsGone();
    void keysMoveAFocusedControlThroughItsCommand_data();
    void keysMoveAFocusedControlThroughItsCommand();
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
    m_id = QStringLiteral("1");
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
    m_bench->settings().home().setLights({light});
    m_row = std::make_unique<LightRow>(m_bench->settings(), m_bench->commands(), light);
    m_row->setFixedWidth(240);
    m_row->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_row.get()));
}

void TestLightRow::dragSendsTheValueOfThePoint_data()
{
    // Points as fractions of the control's real size (first to last pixel), which a click reaches; beyond 1
    // or below 0 is a drag past the control's edge, which must stay in the bridge's ranges. The record
    // starts off, so every change but a brightness of 0 switches the lamp on.
    QTest::addColumn<QString>("control"); // class name
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<qint64>("ctMax"); // the lamp's range is 153..ctMax; 10000 with ct_min 0: none reported
    QTest::addColumn<QJsonObject>("body");
    const auto row = [](const char* name, const char* control, QPointF point, const QJsonObject& body,
                        qint64 ctMax = 454) {
        QJsonObject withTransition = body;
        withTransition.insert(u"transitiontime"_qs, 2);
        QTest::newRow(name) << QString::fromLatin1(control) << point << ctMax << withTransition;
    };
    const auto bri = [](int value) { return QJsonObject{{"bri", value}, {"on", value > 0}}; };
    row("slider, right end sends 255", "CustomSlider", {1.0, 0.5}, bri(255));
    row("slider, beyond the right end", "CustomSlider", {1.3, 0.5}, bri(255));
    row("slider, middle", "CustomSlider", {0.5, 0.5}, bri(127));
    row("slider, a fifth", "CustomSlider", {0.2, 0.5}, bri(51));
    row("slider, left end switches off", "CustomSlider", {0.0, 0.5}, bri(0));
    row("slider, beyond the left end", "CustomSlider", {-0.2, 0.5}, bri(0));
    const auto hueSat = [](int hue, int sat) {
        return QJsonObject{{"hue", hue}, {"sat", sat}, {"on", true}};
    };
    row("colour, bottom edge is saturation 250", "ColorField", {0.05, 1}, hueSat(3276, 250));
    row("colour, half way is hue 32767", "ColorField", {0.5, 0.5}, hueSat(32767, 125));
    row("colour, right edge is hue 65535", "ColorField", {1, 0}, hueSat(65535, 0));
    row("colour, far past the bottom right", "ColorField", {9, 12}, hueSat(65535, 250));
    row("colour, far past the top left", "ColorField", {-7, -3}, hueSat(0, 0));
    const auto ct = [](int mired) { return QJsonObject{{"ct", mired}, {"on", true}}; };
    row("white tone, left end is exactly ct_min", "TemperatureBar", {0.0, 0.5}, ct(153));
    row("white tone, half way", "TemperatureBar", {0.5, 0.5}, ct(153 + 150));
    row("white tone, right end is ct_max", "TemperatureBar", {1.0, 0.5}, ct(454));
    row("white tone, past the right end", "TemperatureBar", {1.6, 0.5}, ct(454));
    row("white tone, past the left end", "TemperatureBar", {-0.4, 0.5}, ct(153));
    // The decoder's stand-ins for a lamp that reports no range: the common white range instead.
    row("white tone, no range, right end", "TemperatureBar", {1.0, 0.5}, ct(500), 10000);
    row("white tone, no range, left end", "TemperatureBar", {0.0, 0.5}, ct(153), 10000);
}

void TestLightRow::dragSendsTheValueOfThePoint()
{
    QFETCH(QString, control);
    QFETCH(QPointF, point);
    QFETCH(qint64, ctMax);
    QFETCH(QJsonObject, body);

    m_bench->settings().home().updateLight(m_id, [=](HueLight& l) {
        l.is_on = false;
        l.ct_min = ctMax == 10000 ? 0 : 153;
        l.ct_max = ctMax;
    });
    QWidget* target = childOfClass(m_row.get(), control);
    QVERIFY(target);
    drag(target, {QPointF(point.x() * (target->width() - 1), point.y() * (target->height() - 1))});

    // Shown at once in the record, and sent as one request.
    QCOMPARE(unshownFields(m_bench->settings().home().lights().first(), body), QStringList());
    QTRY_COMPARE(m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id)).first(), body);
}

void TestLightRow::dragOfManyMovesReachesTheBridgeAsItsLastValue()
{
    auto* slider = m_row->findChild<CustomSlider*>();
    const qreal w = slider->width() - 1;
    drag(slider,
         {QPointF(5, 8), QPointF(w * 0.2, 8), QPointF(w * 0.9, 8), QPointF(w * 0.3, 8), QPointF(60, 8)});
    const int last = int(float(60 / w) * 255);

    QTRY_VERIFY(m_bench->settled());
    const QList<QJsonObject> sent = m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().value(u"bri").toInt(), last);
    QCOMPARE(slider->value(), float(60 / w));
}

void TestLightRow::switchSendsOnAndOff()
{
    auto* toggle = m_row->findChild<RowSwitch*>();
    QVERIFY(toggle->isChecked()); // the record is on
    QCOMPARE(toggle->accessibleName(), u"Lamp %1"_qs.arg(m_id));

    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(!m_bench->settings().home().lights().first().is_on);
    QTRY_COMPARE(m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id)).size(), 1);
    QCOMPARE(m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id)).last(), (QJsonObject{{"on", false}}));

    QTest::keyClick(toggle, Qt::Key_Space); // a focused switch toggles on Space
    QVERIFY(m_bench->settings().home().lights().first().is_on);
    QTRY_COMPARE(m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id)).size(), 2);
    QCOMPARE(m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id)).last(), (QJsonObject{{"on", true}}));
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

    m_bench->settings().preferences().setShowColorBarsForRooms(roomBars);
    makeRow(color, ambient);
    // Folded away at first; the disclosure, a Tab stop named after the lamp, opens them with Space.
    auto* more = m_row->findChild<QToolButton*>(u"moreControls"_qs);
    QCOMPARE(more->isVisible(), color || ambient);
    QVERIFY(!m_row->findChild<ColorField*>()->isVisible() &&
            !m_row->findChild<TemperatureBar*>()->isVisible());
    QCOMPARE(more->accessibleName(), u"Lamp 1 colour and white tone"_qs);
    QVERIFY(more->focusPolicy() & Qt::TabFocus);
    if (more->isVisible()) {
        m_row->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_row.get()));
        more->setFocus(Qt::TabFocusReason);
        QTest::keyClick(more, Qt::Key_Space);
        QVERIFY(m_row->isExpanded());
    }
    m_row->setExpanded(true);
    QCOMPARE(m_row->findChild<ColorField*>()->isVisible(), color);
    QCOMPARE(m_row->findChild<TemperatureBar*>()->isVisible(), ambient);

    // A refresh that reports other capabilities is shown by the same row.
    HueLight changed = m_bench->settings().home().lights().first();
    changed.allows_color = !color;
    m_row->setLight(changed);
    QCOMPARE(m_row->findChild<ColorField*>()->isVisible(), !color);
    QVERIFY(m_row->findChild<CustomSlider*>()->isVisible());

    // A plug (no brightness in its state) only switches: no slider, no colour, whatever else it claims.
    changed.allows_brightness = false;
    changed.allows_color = changed.allows_ambient = true;
    m_row->setLight(changed);
    QVERIFY(!m_row->findChild<CustomSlider*>()->isVisible());
    QVERIFY(!m_row->findChild<ColorField*>()->isVisible() &&
            !m_row->findChild<TemperatureBar*>()->isVisible());
    QVERIFY(m_row->findChild<RowSwitch*>()->isVisible());
}

void TestLightRow::namesSliderAndSwitchShareOneLineWhereTheWidthAllows()
{
    auto* name = m_row->findChild<ElidedLabel*>();
    auto* slider = m_row->findChild<CustomSlider*>();
    auto* lampSwitch = m_row->findChild<RowSwitch*>();
    const auto sameLine = [](const QWidget* a, const QWidget* b) {
        return a->geometry().center().y() - b->geometry().center().y() <= 2 &&
               b->geometry().center().y() - a->geometry().center().y() <= 2;
    };
    QCOMPARE(m_row->width(), 240);
    QTRY_VERIFY(m_row->isOneLine());
    QVERIFY(sameLine(name, slider) && sameLine(slider, lampSwitch));
    QVERIFY(name->geometry().right() < slider->x() && slider->geometry().right() < lampSwitch->x());
    // One line, folded: a 149-lamp home shows many of these in the window's height.
    QVERIFY2(m_row->sizeHint().height() <= 26, qPrintable(QString::number(m_row->sizeHint().height())));

    // Too narrow for a readable name beside the slider: the slider goes under it, as wide as the row.
    m_row->setFixedWidth(ControlRow::widthForName(ControlRow::shortestInlineName) - 1);
    QTRY_VERIFY(!m_row->isOneLine());
    QTRY_VERIFY(slider->y() > name->geometry().bottom());
    QVERIFY(slider->width() > ControlRow::inlineSliderWidth);
    QVERIFY(sameLine(name, lampSwitch));
}

void TestLightRow::ignoresAChangeToALightThatIsGone()
{
    m_bench->settings().home().setLights({});
    auto* slider = m_row->findChild<CustomSlider*>();
    drag(slider, {QPointF(slider->width(), 8)});
    drag(m_row->findChild<ColorField*>(), {QPointF(20, 20)});
    QTest::mouseClick(m_row->findChild<RowSwitch*>(), Qt::LeftButton);

    QVERIFY(m_bench->settings().home().lights().isEmpty());
    QVERIFY(m_bench->settled()); // a command starts the queue at once: nothing was queued
    QVERIFY(m_bench->sent().isEmpty());
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

    QWidget* focused = childOfClass(m_row.get(), control);
    QVERIFY(focused && (focused->focusPolicy() & Qt::TabFocus));
    for (int key : keys)
        QTest::keyClick(focused, Qt::Key(key));

    QTRY_VERIFY(m_bench->settled());
    const QList<QJsonObject> sent = m_bench->sentTo(u"lights/%1/state"_qs.arg(m_id));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first(), body);
}

void TestLightRow::showsOffDimmedAndCutsALongNameWithATooltip()
{
    QVERIFY(!m_row->isDimmed());
    const QString longName = u"Living room floor lamp by the big window"_qs;
    m_bench->settings().home().updateLight(m_id, [&](HueLight& l) {
        l.is_on = false;
        l.name = longName;
    });
    m_row->setLight(m_bench->settings().home().lights().first());
    QVERIFY(m_row->isDimmed());
    QVERIFY(m_row->findChild<CustomSlider*>()->isDimmed());

    auto* name = m_row->findChild<ElidedLabel*>();
    QTRY_VERIFY(name->isElided());
    QCOMPARE(name->toolTip(), longName);
    // The switch stays on the row, right of the cut name.
    QVERIFY(name->geometry().right() < m_row->findChild<RowSwitch*>()->geometry().left());

    // Controls still work on a dimmed row, and the bridge being away dims it as well.
    drag(m_row->findChild<CustomSlider*>(), {QPointF(100, 8)});
    m_row->setLight(m_bench->settings().home().lights().first());
    QVERIFY(!m_row->isDimmed());
    m_row->setBridgeReachable(false);
    QVERIFY(m_row->isDimmed());
}

void TestLightRow::markersShowTheCurrentColourAndTone()
{
    m_bench->settings().home().updateLight(m_id, [](HueLight& l) {
        l.hue = 65535 / 4;
        l.saturation = 125;
        l.color_temperature = 454;
    });
    m_row->setLight(m_bench->settings().home().lights().first());
    auto* field = m_row->findChild<ColorField*>();
    QVERIFY(qAbs(field->markedHue() - 0.25) < 1e-4);
    QCOMPARE(field->markedSaturation(), 0.5);
    QCOMPARE(m_row->findChild<TemperatureBar*>()->markedWarmth(), 1.0);
}

QTEST_MAIN(TestLightRow)
#include "tst_lightrow.moc"
