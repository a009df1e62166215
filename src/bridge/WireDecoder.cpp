#include "bridge/WireDecoder.h"

#include "bridge/JsonReading.h"

#include <simdjson.h>

#include <cmath>
#include <limits>
#include <string_view>

namespace {

using simdjson::dom::element;
using simdjson::dom::element_type;

using JsonReading::isNull;
using JsonReading::read;
using JsonReading::WrongShape;

simdjson::dom::parser& sharedParser()
{
    // Reusing the parser keeps its buffers between refreshes. Answers are decoded on the thread pool (on the
    // calling thread when there is no application object): one parser per thread, never shared.
    thread_local simdjson::dom::parser parser;
    return parser;
}

std::optional<element> parseDocument(QByteArrayView json)
{
    element root;
    if (sharedParser().parse(json.data(), size_t(json.size())).get(root) != simdjson::SUCCESS)
        return std::nullopt;
    return root;
}

void read(const element& value, std::optional<qint64>& field)
{
    switch (value.type()) {
    case element_type::NULL_VALUE:
        return field.reset();
    case element_type::INT64:
        field = value.get_int64().value_unsafe();
        return;
    case element_type::UINT64:
        // Only values above the signed range land here: they do not fit the record.
        throw WrongShape{};
    case element_type::DOUBLE: {
        const double number = value.get_double().value_unsafe();
        constexpr double limit = 9223372036854775808.0; // 2^63
        if (std::trunc(number) != number || number >= limit || number < -limit)
            throw WrongShape{};
        field = qint64(number);
        return;
    }
    default:
        throw WrongShape{};
    }
}

void read(const element& value, std::optional<WireTextList>& field)
{
    if (isNull(value))
        return field.reset();
    simdjson::dom::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        throw WrongShape{};
    WireTextList texts;
    texts.reserve(array.size());
    for (element item : array) {
        std::string_view text;
        if (item.get_string().get(text) != simdjson::SUCCESS)
            throw WrongShape{};
        texts.push_back(text);
    }
    field = std::move(texts);
}

void read(const element& value, std::optional<QVarLengthArray<float, 3>>& field)
{
    if (isNull(value))
        return field.reset();
    simdjson::dom::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        throw WrongShape{};
    // Filled in place, never moved or assigned over an earlier value: Qt 6.4's QVarLengthArray leaks its heap
    // buffer in a move assignment where both sides have one, and a key given twice (five numbers under "xy",
    // twice) would leak on every refresh. A wrong shape fails the whole answer, so a half-filled field is
    // never seen.
    field.reset();
    QVarLengthArray<float, 3>& numbers = field.emplace();
    for (element item : array) {
        double number = 0;
        if (item.get_double().get(number) != simdjson::SUCCESS) // also accepts integers, as in [0, 0]
            throw WrongShape{};
        // A coordinate is between 0 and 1; one that does not even fit a float is not a coordinate.
        if (!(std::abs(number) <= double(std::numeric_limits<float>::max())))
            throw WrongShape{};
        numbers.append(float(number));
    }
}

/// Walks the members of an object, handing each to `onMember(key, value)`; null leaves `field` empty.
template <typename Record, typename OnMember>
void readObject(const element& value, std::optional<Record>& field, OnMember onMember)
{
    if (isNull(value))
        return field.reset();
    simdjson::dom::object object;
    if (value.get_object().get(object) != simdjson::SUCCESS)
        throw WrongShape{};
    // Built in place for the same reason as the coordinates above: a repeated key replaces a record that may
    // hold them.
    field.reset();
    Record& record = field.emplace();
    for (auto [key, member] : object)
        onMember(record, key, member);
}

void readGroupState(const element& value, std::optional<BridgeDataType_Group_State>& field)
{
    readObject(value, field,
               [](BridgeDataType_Group_State& state, std::string_view key, const element& member) {
                   if (key == "all_on")
                       read(member, state.all_on);
                   else if (key == "any_on")
                       read(member, state.any_on);
               });
}

void readGroupAction(const element& value, std::optional<BridgeDataType_Group_Action>& field)
{
    readObject(value, field,
               [](BridgeDataType_Group_Action& action, std::string_view key, const element& member) {
                   if (key == "on")
                       read(member, action.on);
                   else if (key == "bri")
                       read(member, action.bri);
                   else if (key == "sat")
                       read(member, action.sat);
                   else if (key == "hue")
                       read(member, action.hue);
                   else if (key == "ct")
                       read(member, action.ct);
               });
}

void readGroup(const element& value, std::optional<BridgeDataType_Group>& field)
{
    readObject(value, field, [](BridgeDataType_Group& group, std::string_view key, const element& member) {
        if (key == "name")
            read(member, group.name);
        else if (key == "lights")
            read(member, group.lights);
        else if (key == "sensors")
            read(member, group.sensors);
        else if (key == "type")
            read(member, group.type);
        else if (key == "state")
            readGroupState(member, group.state);
        else if (key == "recycle")
            read(member, group.recycle);
        else if (key == "class")
            read(member, group.classString);
        else if (key == "action")
            readGroupAction(member, group.action);
    });
}

void readDeviceState(const element& value, std::optional<HueDeviceState>& field)
{
    readObject(value, field, [](HueDeviceState& state, std::string_view key, const element& member) {
        if (key == "reachable")
            read(member, state.reachable);
        else if (key == "colormode")
            read(member, state.colormode);
        else if (key == "xy")
            read(member, state.xy);
        else if (key == "ct")
            read(member, state.ct);
        else if (key == "bri")
            read(member, state.bri);
        else if (key == "hue")
            read(member, state.hue);
        else if (key == "sat")
            read(member, state.sat);
        else if (key == "on")
            read(member, state.on);
    });
}

void readCapabilities(const element& value, std::optional<HueDeviceCapabilities>& field)
{
    using Ct = HueDeviceCapabilitiesControlCt;
    using Control = HueDeviceCapabilitiesControl;
    readObject(value, field,
               [](HueDeviceCapabilities& capabilities, std::string_view key, const element& member) {
                   if (key != "control")
                       return;
                   readObject(member, capabilities.control,
                              [](Control& control, std::string_view key, const element& member) {
                                  if (key == "mindimlevel")
                                      read(member, control.mindimlevel);
                                  else if (key == "maxlumen")
                                      read(member, control.maxlumen);
                                  else if (key == "colorgamuttype")
                                      read(member, control.colorgamuttype);
                                  else if (key == "ct")
                                      readObject(member, control.ct,
                                                 [](Ct& ct, std::string_view key, const element& member) {
                                                     if (key == "min")
                                                         read(member, ct.min);
                                                     else if (key == "max")
                                                         read(member, ct.max);
                                                 });
                              });
               });
}

void readDevice(const element& value, std::optional<HueDevice>& field)
{
    readObject(value, field, [](HueDevice& device, std::string_view key, const element& member) {
        if (key == "state")
            readDeviceState(member, device.state);
        else if (key == "capabilities")
            readCapabilities(member, device.capabilities);
        else if (key == "name")
            read(member, device.name);
        else if (key == "type")
            read(member, device.type);
        else if (key == "modelid")
            read(member, device.modelid);
        else if (key == "uniqueid")
            read(member, device.uniqueid);
        else if (key == "productname")
            read(member, device.productname);
    });
}

void readScene(const element& value, std::optional<BridgeDataType_Scene>& field)
{
    readObject(value, field, [](BridgeDataType_Scene& scene, std::string_view key, const element& member) {
        if (key == "name")
            read(member, scene.name);
        else if (key == "lights")
            read(member, scene.lights);
        else if (key == "recycle")
            read(member, scene.recycle);
        else if (key == "version")
            read(member, scene.version);
        else if (key == "type")
            read(member, scene.type);
        else if (key == "group")
            read(member, scene.group);
    });
}

/// Decodes the top-level object member by member. A member that is null, or not an object, fails the answer:
/// every element must decode as a resource.
template <typename Element, typename ReadElement>
std::optional<std::vector<Element>> decodeList(QByteArrayView json, std::size_t* memberCount,
                                               ReadElement readElement)
{
    if (memberCount)
        *memberCount = 0;
    const std::optional<element> root = parseDocument(json);
    if (!root)
        return std::nullopt;
    simdjson::dom::object object;
    if (root->get_object().get(object) != simdjson::SUCCESS)
        return std::nullopt;
    // The parser counts members as it goes (saturating far above the cap), so this costs nothing.
    if (memberCount)
        *memberCount = object.size();
    if (object.size() > WireDecoder::maxListMembers)
        return std::nullopt;
    try {
        std::vector<Element> list;
        list.reserve(object.size());
        for (auto [key, value] : object) {
            if (isNull(value))
                throw WrongShape{};
            std::optional<Element> decoded;
            readElement(value, decoded);
            decoded->id = key;
            list.push_back(std::move(*decoded));
        }
        return list;
    } catch (const WrongShape&) {
        return std::nullopt;
    }
}

} // namespace

namespace WireDecoder {

std::optional<HueBridgeGroupsResponse> decodeGroups(QByteArrayView json, std::size_t* memberCount)
{
    auto groups = decodeList<BridgeDataType_Group>(json, memberCount, readGroup);
    if (!groups)
        return std::nullopt;
    return HueBridgeGroupsResponse{std::move(groups)};
}

std::optional<HueBridgeLightsResponse> decodeLights(QByteArrayView json, std::size_t* memberCount)
{
    auto devices = decodeList<HueDevice>(json, memberCount, readDevice);
    if (!devices)
        return std::nullopt;
    return HueBridgeLightsResponse{std::move(devices)};
}

std::optional<HueBridgeScenesResponse> decodeScenes(QByteArrayView json, std::size_t* memberCount)
{
    auto scenes = decodeList<BridgeDataType_Scene>(json, memberCount, readScene);
    if (!scenes)
        return std::nullopt;
    return HueBridgeScenesResponse{std::move(scenes)};
}

bool parseOnly(QByteArrayView json)
{
    return parseDocument(json).has_value();
}

} // namespace WireDecoder
