#pragma once

#include "bridge/WireTypes.h"

#include <QByteArrayView>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

// Read-only mirrors of the resources of the bridge's current interface (`/clip/v2/resource`), as far as
// Glowdeck reads them. As with the lists of the first interface, every field is optional (a missing key and
// null both leave it empty) and texts are views into the decoder's buffer, valid until the next decode on the
// same thread.

/// `{"rid": "...", "rtype": "..."}`: one resource naming another.
struct ClipReference
{
    WireText rid;
    WireText rtype;
};
using ClipReferences = std::vector<ClipReference>;

/// The members every resource may carry.
struct ClipResource
{
    WireText id;                   ///< the UUID
    std::optional<WireText> id_v1; ///< "/lights/3", "/groups/5", "/scenes/AbC": the first interface's id
    std::optional<WireText> name;  ///< metadata.name
    std::optional<ClipReference> owner;
};

struct ClipLight : ClipResource
{
    std::optional<bool> on;
    bool dimmable = false;              ///< has "dimming"
    std::optional<double> brightness;   ///< per cent
    bool coloured = false;              ///< has "color"
    std::optional<WireText> gamut_type; ///< "A", "B", "C" or "other"
    std::optional<float> x;
    std::optional<float> y;
    bool whiteTone = false;      ///< has "color_temperature" with a "mirek_schema"
    std::optional<qint64> mirek; ///< null while the lamp shows a colour
    std::optional<qint64> mirek_minimum;
    std::optional<qint64> mirek_maximum;
};

struct ClipDevice : ClipResource
{
    std::optional<WireText> product_name;
    std::optional<WireText> model_id;
    std::optional<WireText> manufacturer_name;
    ClipReferences services;
};

struct ClipConnectivity : ClipResource
{
    std::optional<WireText> status;      ///< "connected", "disconnected", "connectivity_issue", ...
    std::optional<WireText> mac_address; ///< "00:17:88:01:0b:aa:bb:cc"
};

struct ClipDevicePower : ClipResource
{
    std::optional<qint64> battery_level; ///< per cent
};

/// A room or a zone (`zone` tells which).
struct ClipGroup : ClipResource
{
    bool zone = false;
    std::optional<WireText> archetype; ///< metadata.archetype: "living_room"
    ClipReferences children;           ///< devices for a room, lights for a zone
    ClipReferences services;           ///< its grouped_light among them
};

struct ClipGroupedLight : ClipResource
{
    std::optional<bool> on;
    std::optional<double> brightness; ///< per cent
};

/// A scene or a smart scene (`smart` tells which).
struct ClipScene : ClipResource
{
    bool smart = false;
    std::optional<ClipReference> group; ///< the room or zone it belongs to
    std::vector<WireText> lights;       ///< the targets of its actions
    struct Colour
    {
        float x = 0;
        float y = 0;
        std::optional<double> brightness;
    };
    std::vector<Colour> palette;
    std::optional<double> speed;
};

/// Everything of one home that Glowdeck reads, each kind in the order the bridge wrote it.
struct ClipHome
{
    std::vector<ClipLight> lights;
    std::vector<ClipDevice> devices;
    std::vector<ClipConnectivity> connectivity;
    std::vector<ClipDevicePower> power;
    std::vector<ClipGroup> groups;
    std::vector<ClipGroupedLight> groupedLights;
    std::vector<ClipResource> bridgeHomes; ///< with their services in `homeServices`
    ClipReferences homeServices;
    std::vector<ClipScene> scenes;
};

/// Strict decoding of the current interface's answers, `{"errors": [...], "data": [...]}`, in document
/// order. `data` may hold resources of every type (the whole-home read) or of one; types Glowdeck does not
/// show are skipped unread. A resource without an id or type, or a field Glowdeck reads holding a value of
/// the wrong JSON type, fails the whole answer, as with the first interface.
namespace ClipDecoder {

/// A home with more resources than this is refused before any is decoded: a large real home holds a few
/// thousand (every lamp is a light, a device and a connectivity), never a hundred thousand.
inline constexpr std::size_t maxResources = 20000;

/// `*resourceCount`, when given, is set to the number of entries of `data` (0 when there is none).
std::optional<ClipHome> decodeHome(QByteArrayView json, std::size_t* resourceCount = nullptr);

/// The descriptions of the `errors` of such an answer (also of a write's); empty when `json` is not one or
/// has none. An entry without a description reads "error".
QStringList errorDescriptions(QByteArrayView json);

} // namespace ClipDecoder
