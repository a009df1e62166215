#include "TestSupport.h"
#include "state/LightVisibility.h"

#include <QTest>

class TestLightVisibility final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hiddenLightsAreLeftOutInOrder_data();
    void hiddenLightsAreLeftOutInOrder();
};

void TestLightVisibility::hiddenLightsAreLeftOutInOrder_data()
{
    QTest::addColumn<QVariant>("flag"); // stored for light 2; invalid: nothing stored
    QTest::addColumn<QStringList>("shown");

    QTest::newRow("never switched") << QVariant() << QStringList{"3", "1", "2"};
    QTest::newRow("hidden") << QVariant(true) << QStringList{"3", "1"};
    QTest::newRow("shown again") << QVariant(false) << QStringList{"3", "1", "2"};
    QTest::newRow("hand-edited \"true\"") << QVariant(QStringLiteral("true")) << QStringList{"3", "1"};
}

void TestLightVisibility::hiddenLightsAreLeftOutInOrder()
{
    QFETCH(QVariant, flag);
    QFETCH(QStringList, shown);
    TestSettings state;
    QList<HueLight> lights;
    for (const char* id : {"3", "1", "2"})
        lights.append({.lamp_id = QString::fromLatin1(id),
                       .unique_id = QStringLiteral("00:17:88:01:0") + QLatin1StringView(id)});
    state.settings().setLights(lights);
    if (flag.isValid())
        state.store().setValue(LightVisibility::hiddenKey(lights.at(2)), flag);

    QStringList ids;
    for (const HueLight& light : LightVisibility::shownLights(state.settings()))
        ids << light.lamp_id;

    QCOMPARE(ids, shown);
    QCOMPARE(LightVisibility::hiddenKey(lights.at(2)), QStringLiteral("hide_light_00:17:88:01:02"));
}

QTEST_GUILESS_MAIN(TestLightVisibility)
#include "tst_lightvisibility.moc"
