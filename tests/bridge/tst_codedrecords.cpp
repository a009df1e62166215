#include "bridge/CodedRecords.h"
#include "bridge/JsonWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

class TestCodedRecords final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesKeysInFieldOrder();
    void roundTripsEveryRecord();
    void refusesRecordsOfTheWrongShape();
    void escapesText();
};

void TestCodedRecords::writesKeysInFieldOrder()
{
    HueLight light{.lamp_id = QStringLiteral("10"),
                   .name = QStringLiteral("Desk"),
                   .xy_x = 0.3171f,
                   .xy_y = 0.3366f,
                   .ct_max = 500};
    QCOMPARE(
        CodedRecords::encode(light),
        QByteArray(R"({"lamp_id":"10","name":"Desk","product_name":"","model_id":"","allows_color":false,)"
                   R"("allows_ambient":false,"allows_brightness":true,"is_on":false,"brightness":0,"hue":0,)"
                   R"("saturation":0,"color_temperature":0,"xy_x":0.3171,"xy_y":0.3366,"ct_min":0,)"
                   R"("ct_max":500,"unique_id":"","v2_id":"","battery_level":-1})"));

    // The list identity is not part of the form, and the two limits of a room come last.
    HueGroup group{.group_id = QStringLiteral("1"), .lights = {QStringLiteral("2"), QStringLiteral("10")}};
    QCOMPARE(
        CodedRecords::encode(group),
        QByteArray(R"({"group_id":"1","name":"","lights":["2","10"],"type":"","group_class":"",)"
                   R"("all_on":false,"any_on":false,"is_on":false,"brightness":0,"saturation":0,"hue":0,)"
                   R"("color_temperature":0,"ct_min":0,"ct_max":0,"v2_id":"","grouped_light_id":""})"));
    // Records name no bridge address and carry no key: the key stays with the bridge's contact.
    QCOMPARE(CodedRecords::encode(HueScene{.scene_id = QStringLiteral("abc")}),
             QByteArray(R"({"scene_id":"abc","name":"","lights":[],"type":"","group_id":"","v2_id":""})"));
}

void TestCodedRecords::roundTripsEveryRecord()
{
    const auto object = [](const QByteArray& json) { return QJsonDocument::fromJson(json).object(); };

    const HueLight light{"7",
                         "Kitchen \"left\"",
                         "Hue go",
                         "LLC020",
                         true,
                         false,
                         true,
                         true,
                         254,
                         65535,
                         254,
                         366,
                         0.4575f,
                         0.4101f,
                         153,
                         500,
                         "00:17:88:01-0b"};
    QCOMPARE(CodedRecords::readLight(object(CodedRecords::encode(light))), light);

    HueGroup group{QUuid(), "1", "Living room", {"1", "2"}, "Room", "Living room", true, true, true, 12, 13,
                   14,      15,  153,           500};
    const std::optional<HueGroup> readGroup = CodedRecords::readGroup(object(CodedRecords::encode(group)));
    QVERIFY(readGroup && !readGroup->id.isNull());
    group.id = readGroup->id; // made fresh on reading
    QCOMPARE(*readGroup, group);

    HueScene scene{QUuid(), "Abc", "Relax", {"4"}, "GroupScene", "2"};
    const std::optional<HueScene> readScene = CodedRecords::readScene(object(CodedRecords::encode(scene)));
    QVERIFY(readScene);
    scene.id = readScene->id;
    QCOMPARE(*readScene, scene);

    const ActionQueueItem item{QUrl("http://127.0.0.1/api/k/lights/1/state"),
                               R"({"on":true})",
                               QDateTime(QDate(2026, 11, 23), QTime(10, 0, 0, 250), Qt::UTC),
                               ActionQueueItem::Target::scene,
                               "1",
                               "on"};
    QCOMPARE(CodedRecords::readActionQueueItem(object(CodedRecords::encode(item))), item);
}

void TestCodedRecords::refusesRecordsOfTheWrongShape()
{
    QJsonObject light = QJsonDocument::fromJson(CodedRecords::encode(HueLight{})).object();
    light.insert(QStringLiteral("brightness"), QStringLiteral("12"));
    QVERIFY(!CodedRecords::readLight(light));
    light.insert(QStringLiteral("brightness"), 12.5);
    QVERIFY(!CodedRecords::readLight(light));
    light.remove(QStringLiteral("brightness"));
    QVERIFY(!CodedRecords::readLight(light));
}

void TestCodedRecords::escapesText()
{
    JsonWriter json;
    json.value(QStringLiteral("a\"b\\c\nd\x01 é 💡"));
    QCOMPARE(json.text(), QByteArray("\"a\\\"b\\\\c\\nd\\u0001 é 💡\""));
    QCOMPARE(QJsonDocument::fromJson("[" + json.text() + "]").array().first().toString(),
             QStringLiteral("a\"b\\c\nd\x01 é 💡"));
}

QTEST_GUILESS_MAIN(TestCodedRecords)
#include "tst_codedrecords.moc"
