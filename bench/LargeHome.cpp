#include "LargeHome.h"

#include <QFile>

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace {

QByteArray light(int i)
{
    // Four lamp generations in turn: colour with capabilities, white tone, an old colour lamp without
    // capabilities, a dimmable one; every ninth is unreachable.
    const int kind = i % 4;
    const char* type = kind == 0   ? "Extended color light"
                       : kind == 1 ? "Color temperature light"
                       : kind == 2 ? "Extended color light"
                                   : "Dimmable light";
    const char* model = kind == 0 ? "LCT015" : kind == 1 ? "LTW012" : kind == 2 ? "LCT001" : "LWB010";
    const char* mode = kind == 0   ? R"("colormode":"xy",)"
                       : kind == 1 ? R"("colormode":"ct",)"
                       : kind == 2 ? R"("colormode":"hs",)"
                                   : "";
    const char* capabilities =
        kind == 2 ? ""
                  : R"(,"capabilities":{"certified":true,"control":{"mindimlevel":1000,"maxlumen":806,)"
                    R"("colorgamuttype":"C","colorgamut":[[0.6915,0.3083],[0.17,0.7],[0.1532,0.0475]],)"
                    R"("ct":{"min":153,"max":500}},"streaming":{"renderer":true,"proxy":true}},)"
                    R"("config":{"archetype":"sultanbulb","function":"mixed","direction":"omnidirectional"})";
    return QStringLiteral(
               R"({"state":{"on":%1,"bri":%2,"hue":%3,"sat":%4,"effect":"none",)"
               R"("xy":[0.4575,0.4101],"ct":%5,"alert":"none",%6"mode":"homeautomation",)"
               R"("reachable":%7},"swupdate":{"state":"noupdates","lastinstall":"2019-03-12T15:51:35"},)"
               R"("type":"%8","name":"Lamp %9","modelid":"%10","manufacturername":"Signify",)"
               R"("productname":"Hue lamp","uniqueid":"00:17:88:01:00:%11:%12-0b",)"
               R"("swversion":"1.46.13_r26312"%13})")
        .arg(i % 3 ? "true" : "false")
        .arg(i * 37 % 254 + 1)
        .arg(i * 997 % 65536)
        .arg(i * 13 % 255)
        .arg(153 + i % 347)
        .arg(QString::fromLatin1(mode))
        .arg(i % 9 ? "true" : "false")
        .arg(QString::fromLatin1(type))
        .arg(i)
        .arg(QString::fromLatin1(model))
        .arg(i / 256, 2, 16, QLatin1Char('0'))
        .arg(i % 256, 2, 16, QLatin1Char('0'))
        .arg(QString::fromLatin1(capabilities))
        .toUtf8();
}

QByteArray memberList(int first, int count, int modulo)
{
    QByteArray list = "[";
    for (int k = 0; k < count; ++k)
        list += (k ? ",\"" : "\"") + QByteArray::number((first + k) % modulo + 1) + '"';
    return list + ']';
}

QByteArray group(int i, int lightCount)
{
    const char* type = i % 10 == 8 ? "Zone" : i % 10 == 9 ? "LightGroup" : "Room";
    return QStringLiteral(R"({"name":"Room %1","lights":%2,"sensors":[],"type":"%3",)"
                          R"("state":{"all_on":false,"any_on":true},"recycle":false,"class":"Living room",)"
                          R"("action":{"on":true,"bri":%4,"hue":8418,"sat":140,"effect":"none",)"
                          R"("xy":[0.4575,0.4101],"ct":366,"alert":"select","colormode":"ct"}})")
        .arg(i)
        .arg(QString::fromLatin1(memberList(i * 4, 4, lightCount)))
        .arg(QString::fromLatin1(type))
        .arg(i * 5 % 254 + 1)
        .toUtf8();
}

QByteArray scene(int i, int lightCount)
{
    return QStringLiteral(R"({"name":"Scene %1","type":"GroupScene","group":"%2","lights":%3,)"
                          R"("owner":"53587a59-92a7-4c1b-a2e6-ab777830b474","recycle":%4,"locked":false,)"
                          R"("appdata":{"version":1,"data":"YP0PB_r09_d99"},"picture":"",)"
                          R"("lastupdated":"2019-12-11T21:31:52","version":%5})")
        .arg(i)
        .arg(i % 50 + 1)
        .arg(QString::fromLatin1(memberList(i * 3, 6, lightCount)))
        .arg(i % 7 ? "false" : "true")
        .arg(i % 5 ? 2 : 1)
        .toUtf8();
}

int sparseId(int i)
{
    return i * 7919 % 100003;
}

template <typename Make>
QByteArray object(int count, Make make)
{
    QByteArray text = "{";
    for (int i = 1; i <= count; ++i)
        text += (i > 1 ? ",\"" : "\"") + QByteArray::number(sparseId(i)) + "\":" + make(i);
    return text + '}';
}

// The generated lists number their resources sparsely while rooms and scenes name lights 1..N.
QByteArray renumbered(const QByteArray& list, int count)
{
    const QJsonObject resources = QJsonDocument::fromJson(list).object();
    QByteArray out = "{";
    for (int i = 1; i <= count; ++i) {
        const QJsonObject resource = resources.value(QString::number(sparseId(i))).toObject();
        out += (i > 1 ? ",\"" : "\"") + QByteArray::number(i) +
               "\":" + QJsonDocument(resource).toJson(QJsonDocument::Compact);
    }
    return out + '}';
}

} // namespace

LargeHome LargeHome::makeNumbered(int lightCount, int roomCount, int sceneCount)
{
    LargeHome home = make(lightCount, roomCount, sceneCount);
    home.lights = renumbered(home.lights, lightCount);
    home.groups = renumbered(home.groups, roomCount);
    return home;
}

LargeHome LargeHome::make(int lightCount, int roomCount, int sceneCount)
{
    return {object(lightCount, light), object(roomCount, [&](int i) { return group(i, lightCount); }),
            object(sceneCount, [&](int i) { return scene(i, lightCount); })};
}

bool LargeHome::writeSimulatorHome(const QString& fileName, int lightCount)
{
    const LargeHome home = makeNumbered(lightCount, 50, 300);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("{\"lights\":" + home.lights + ",\"groups\":" + home.groups + ",\"scenes\":" + home.scenes +
               ",\"config\":{}}\n");
    return file.error() == QFileDevice::NoError;
}
