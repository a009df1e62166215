#include "state/LightOrder.h"

#include <QTest>

namespace {

QList<HueLight> lamps(const QStringList& ids)
{
    QList<HueLight> lights;
    for (const QString& id : ids) {
        HueLight light;
        light.lamp_id = id;
        light.name = QStringLiteral("Lamp ") + id;
        lights.append(light);
    }
    return lights;
}

QStringList idsOf(const QList<HueLight>& lights)
{
    QStringList ids;
    for (const HueLight& light : lights)
        ids.append(light.lamp_id);
    return ids;
}

} // namespace

class TestLightOrder final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void putsStoredLightsFirst_data();
    void putsStoredLightsFirst();
};

void TestLightOrder::putsStoredLightsFirst_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("two named") << "3,1" << QStringList{"3", "1", "2"};
    QTest::newRow("empty piece, unknown and repeated id") << "3,,9,3" << QStringList{"3", "1", "2"};
    QTest::newRow("nothing stored") << "" << QStringList{"1", "2", "3"};
}

void TestLightOrder::putsStoredLightsFirst()
{
    QFETCH(QString, stored);
    QFETCH(QStringList, expected);
    const QList<HueLight> ordered = LightOrder::apply(lamps({"1", "2", "3"}), stored);
    QCOMPARE(idsOf(ordered), expected);
    QCOMPARE(ordered.first().name, QStringLiteral("Lamp ") + expected.first());
}

QTEST_GUILESS_MAIN(TestLightOrder)
#include "tst_lightorder.moc"
