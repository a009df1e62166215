#include "bridge/UpdateBodies.h"

#include "bridge/JsonWriter.h"

#include <cmath>

QByteArray HueLampOnOffUpdate::encode() const
{
    return JsonWriter().beginObject().member(u"on", on).endObject().text();
}

QByteArray HueLampBrightnessUpdate::encode() const
{
    return JsonWriter()
        .beginObject()
        .member(u"bri", bri)
        .member(u"on", on)
        .member(u"transitiontime", transitiontime)
        .endObject()
        .text();
}

QByteArray HueLampHueSatUpdate::encode() const
{
    return JsonWriter()
        .beginObject()
        .member(u"hue", hue)
        .member(u"sat", sat)
        .member(u"on", on)
        .member(u"transitiontime", transitiontime)
        .endObject()
        .text();
}

QByteArray HueLampTemperatureUpdate::encode() const
{
    return JsonWriter()
        .beginObject()
        .member(u"ct", ct)
        .member(u"on", on)
        .member(u"transitiontime", transitiontime)
        .endObject()
        .text();
}

QByteArray HueGroupStateUpdate::encode() const
{
    return JsonWriter().beginObject().member(u"on", on).endObject().text();
}

QByteArray HueGroupBrightnessUpdate::encode() const
{
    return HueLampBrightnessUpdate{bri, on, transitiontime}.encode();
}

QByteArray HueGroupHueUpdate::encode() const
{
    return HueLampHueSatUpdate{hue, sat, on, transitiontime}.encode();
}

QByteArray HueLampXyUpdate::encode() const
{
    return JsonWriter()
        .beginObject()
        .key(u"xy")
        .beginArray()
        .value(x)
        .value(y)
        .endArray()
        .member(u"on", on)
        .member(u"transitiontime", transitiontime)
        .endObject()
        .text();
}

QByteArray HueGroupTemperatureUpdate::encode() const
{
    return HueLampTemperatureUpdate{ct, on, transitiontime}.encode();
}

QByteArray HueGroupBrightnessIncrease::encode() const
{
    return JsonWriter()
        .beginObject()
        .member(u"bri_inc", bri_inc)
        .member(u"transitiontime", transitiontime)
        .member(u"on", on)
        .endObject()
        .text();
}

QByteArray HueSceneRecall::encode() const
{
    return JsonWriter().beginObject().member(u"scene", scene).endObject().text();
}

QByteArray HueScheduleOffMinutes::encode() const
{
    JsonWriter json;
    json.beginObject();
    if (!name.isEmpty())
        json.member(u"name", name);
    json.key(u"command")
        .beginObject()
        .member(u"address", command.address)
        .member(u"method", command.method)
        .key(u"body")
        .beginObject()
        .member(u"on", command.body.on)
        .endObject()
        .endObject()
        .member(u"autodelete", autodelete)
        .member(u"localtime", localtime)
        .member(u"recycle", recycle)
        .endObject();
    return json.text();
}

QByteArray ClipStateUpdate::encode() const
{
    JsonWriter json;
    json.beginObject();
    if (on)
        json.key(u"on").beginObject().member(u"on", *on).endObject();
    if (brightness)
        json.key(u"dimming").beginObject().member(u"brightness", *brightness).endObject();
    if (brightnessDelta) {
        json.key(u"dimming_delta")
            .beginObject()
            .member(u"action", QStringView(*brightnessDelta < 0 ? u"down" : u"up"))
            .member(u"brightness_delta", std::abs(*brightnessDelta))
            .endObject();
    }
    if (xy) {
        json.key(u"color")
            .beginObject()
            .key(u"xy")
            .beginObject()
            .member(u"x", xy->first)
            .member(u"y", xy->second)
            .endObject()
            .endObject();
    }
    if (mirek)
        json.key(u"color_temperature").beginObject().member(u"mirek", *mirek).endObject();
    if (durationMs)
        json.key(u"dynamics").beginObject().member(u"duration", *durationMs).endObject();
    return json.endObject().text();
}

QByteArray ClipSceneRecall::encode() const
{
    return JsonWriter()
        .beginObject()
        .key(u"recall")
        .beginObject()
        .member(u"action", QStringView(smart ? u"activate" : u"active"))
        .endObject()
        .endObject()
        .text();
}
