#pragma once

#include <QVarLengthArray>

#include <optional>
#include <string_view>
#include <vector>

// Read-only mirrors of the bridge's JSON, as far as Glowdeck reads it. Every field is optional: a missing key
// and a JSON null both leave it empty. The flat records are derived from these (RecordDerivation).
//
// Texts are views into the decoder's buffer, valid until the next decode on the same thread: a refresh turns
// them into the flat records right away, and most of them (types, colour modes, skipped lamps) never need a
// copy of their own.

/// UTF-8 text of a JSON string, without its quotes and escapes.
using WireText = std::string_view;
using WireTextList = std::vector<WireText>;

struct BridgeDataType_Group_State
{
    std::optional<bool> all_on;
    std::optional<bool> any_on;
};

struct BridgeDataType_Group_Action
{
    std::optional<bool> on;
    std::optional<qint64> bri;
    std::optional<qint64> sat;
    std::optional<qint64> hue;
    std::optional<qint64> ct;
};

struct BridgeDataType_Group
{
    WireText id; ///< the member name in the groups object
    std::optional<WireText> name;
    std::optional<WireTextList> lights;
    std::optional<WireTextList> sensors;
    std::optional<WireText> type;
    std::optional<BridgeDataType_Group_State> state;
    std::optional<bool> recycle;
    std::optional<WireText> classString; ///< "class"
    std::optional<BridgeDataType_Group_Action> action;
};

struct HueDeviceState
{
    std::optional<bool> reachable;
    std::optional<WireText> colormode;
    std::optional<QVarLengthArray<float, 3>> xy;
    std::optional<qint64> ct;
    std::optional<qint64> bri;
    std::optional<qint64> hue;
    std::optional<qint64> sat;
    std::optional<bool> on;
};

struct HueDeviceCapabilitiesControlCt
{
    std::optional<qint64> min;
    std::optional<qint64> max;
};

struct HueDeviceCapabilitiesControl
{
    std::optional<qint64> mindimlevel;
    std::optional<qint64> maxlumen;
    std::optional<WireText> colorgamuttype;
    std::optional<HueDeviceCapabilitiesControlCt> ct;
};

struct HueDeviceCapabilities
{
    std::optional<HueDeviceCapabilitiesControl> control;
};

struct HueDevice
{
    WireText id; ///< the member name in the lights object
    std::optional<HueDeviceState> state;
    std::optional<HueDeviceCapabilities> capabilities;
    std::optional<WireText> name;
    std::optional<WireText> type;
    std::optional<WireText> modelid;
    std::optional<WireText> uniqueid;
    std::optional<WireText> productname;
};

struct BridgeDataType_Scene
{
    WireText id; ///< the member name in the scenes object
    std::optional<WireText> name;
    std::optional<WireTextList> lights;
    std::optional<bool> recycle;
    std::optional<qint64> version;
    std::optional<WireText> type;
    std::optional<WireText> group; ///< the room or zone of a group scene
};

struct HueBridgeGroupsResponse
{
    std::optional<std::vector<BridgeDataType_Group>> groups;
};

struct HueBridgeLightsResponse
{
    std::optional<std::vector<HueDevice>> devices;
};

struct HueBridgeScenesResponse
{
    std::optional<std::vector<BridgeDataType_Scene>> scenes;
};
