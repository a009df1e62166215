#include "bridge/BridgeEvents.h"

#include <QHash>

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

using simdjson::dom::element;
using simdjson::dom::element_type;

/// A hostile event could hold a hundred thousand broken resources; the log needs a few.
constexpr qsizetype maxProblems = 20;

/// The resource types that touch what Glowdeck shows.
enum class Kind
{
    light,
    groupedLight,
    room,
    zone,
    scene,
    connectivity,
    other,
};

Kind kindOf(std::string_view type)
{
    if (type == "light")
        return Kind::light;
    if (type == "grouped_light")
        return Kind::groupedLight;
    if (type == "room")
        return Kind::room;
    if (type == "zone")
        return Kind::zone;
    if (type == "scene")
        return Kind::scene;
    if (type == "zigbee_connectivity")
        return Kind::connectivity;
    return Kind::other;
}

simdjson::dom::parser& sharedParser()
{
    // Keeps its buffers between events; one per thread, never shared.
    thread_local simdjson::dom::parser parser;
    return parser;
}

bool isNull(const element& value)
{
    return value.type() == element_type::NULL_VALUE;
}

/// A finite number, or nothing when `value` is not a number.
std::optional<double> number(const element& value)
{
    double result = 0;
    if (value.get_double().get(result) != simdjson::SUCCESS)
        return std::nullopt;
    return result;
}

/// The id in a version-1 path such as "/lights/7" after `prefix` ("/lights/"); empty when the path is not of
/// that list or the id could not be one (the lists' ids are short words of letters and digits).
QString versionOneId(std::string_view path, std::string_view prefix)
{
    if (!path.starts_with(prefix))
        return {};
    const std::string_view id = path.substr(prefix.size());
    if (id.empty() || id.size() > 32)
        return {};
    for (const char c : id) {
        const bool allowed = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                             c == '-' || c == '_';
        if (!allowed)
            return {};
    }
    return QString::fromLatin1(id.data(), qsizetype(id.size()));
}

/// Per cent (fractions allowed) to the lists' 1 to 254; nothing outside 0 to 100.
std::optional<qint64> brightnessOf(double percent)
{
    if (!(percent >= 0 && percent <= 100))
        return std::nullopt;
    return std::clamp<qint64>(qRound(percent * 254.0 / 100.0), 1, 254);
}

/// The members of one resource that matter, the last of each name winning as in the lists.
struct ResourceMembers
{
    std::optional<element> type;
    std::optional<element> id;
    std::optional<element> idV1;
    std::optional<element> on;
    std::optional<element> dimming;
    std::optional<element> color;
    std::optional<element> colorTemperature;
    std::optional<element> status;
    bool renamedOrRegrouped = false; ///< "metadata", "children" or "group" present

    explicit ResourceMembers(const simdjson::dom::object& resource)
    {
        for (auto [key, value] : resource) {
            if (key == "type")
                type = value;
            else if (key == "id")
                id = value;
            else if (key == "id_v1")
                idV1 = value;
            else if (key == "on")
                on = value;
            else if (key == "dimming")
                dimming = value;
            else if (key == "color")
                color = value;
            else if (key == "color_temperature")
                colorTemperature = value;
            else if (key == "status")
                status = value;
            else if (key == "metadata" || key == "children" || key == "group")
                renamedOrRegrouped = true;
        }
    }

    /// Carries something a lamp's or room's row shows.
    bool changesState() const { return on || dimming || color || colorTemperature; }
};

/// The member `key` of `value`, which must be an object; `wrongType` is set when it is not.
std::optional<element> memberOf(const element& value, std::string_view key, bool& wrongType)
{
    simdjson::dom::object object;
    if (value.get_object().get(object) != simdjson::SUCCESS) {
        wrongType = true;
        return std::nullopt;
    }
    std::optional<element> found;
    for (auto [name, member] : object) {
        if (name == key)
            found = member;
    }
    return found;
}

/// Collects the batch of one event.
class EventReader final
{
public:
    /// Reads one container; false with `problem` set when it is not one.
    bool readContainer(const element& container, QString* problem);
    BridgeEventBatch finish();

private:
    bool readResources(const element& data, std::string_view containerType, QString* problem);
    void readResource(const simdjson::dom::object& resource, std::string_view containerType);
    void readLightUpdate(const ResourceMembers& members);
    void readGroupedLightUpdate(const ResourceMembers& members);
    /// The ids of an update to apply: the first interface's ("7" of "/lights/7") and the resource's UUID,
    /// either possibly empty; both empty after marking its list for reading again.
    std::pair<QString, QString> usableIds(const ResourceMembers& members, std::string_view prefix,
                                          const char* what, bool& relist);
    void relist(Kind kind);
    void note(QString problem);

    BridgeEventBatch m_batch;
    QHash<QString, qsizetype> m_lightAt;
    QHash<QString, qsizetype> m_groupAt;
    qsizetype m_problemsLeftOut = 0;
};

bool EventReader::readContainer(const element& container, QString* problem)
{
    simdjson::dom::object object;
    if (container.get_object().get(object) != simdjson::SUCCESS) {
        *problem = QStringLiteral("An entry of the bridge's event is not an object.");
        return false;
    }
    std::string_view type;
    bool hasType = false;
    std::optional<element> data;
    for (auto [key, value] : object) {
        if (key == "type")
            hasType = value.get_string().get(type) == simdjson::SUCCESS;
        else if (key == "data")
            data = value;
    }
    if (!hasType) {
        *problem = QStringLiteral("An entry of the bridge's event has no type.");
        return false;
    }
    if (type == "error") {
        // The bridge lost track of something; only the lists can say what is true now.
        m_batch.relistLights = true;
        m_batch.relistGroups = true;
        return true;
    }
    if (type != "update" && type != "add" && type != "delete") {
        note(QStringLiteral("An entry of an unknown type was left out."));
        return true;
    }
    if (!data) {
        *problem = QStringLiteral("An entry of the bridge's event names no resources.");
        return false;
    }
    return readResources(*data, type, problem);
}

bool EventReader::readResources(const element& data, std::string_view containerType, QString* problem)
{
    simdjson::dom::array resources;
    if (data.get_array().get(resources) != simdjson::SUCCESS) {
        *problem = QStringLiteral("An entry of the bridge's event holds no list of resources.");
        return false;
    }
    for (element item : resources) {
        simdjson::dom::object resource;
        if (item.get_object().get(resource) != simdjson::SUCCESS) {
            *problem = QStringLiteral("A resource in the bridge's event is not an object.");
            return false;
        }
        readResource(resource, containerType);
    }
    return true;
}

void EventReader::readResource(const simdjson::dom::object& resource, std::string_view containerType)
{
    const ResourceMembers members(resource);
    std::string_view type;
    if (!members.type || members.type->get_string().get(type) != simdjson::SUCCESS) {
        note(QStringLiteral("A resource without a type was left out."));
        return;
    }
    const Kind kind = kindOf(type);
    if (containerType != "update") {
        relist(kind);
        return;
    }
    switch (kind) {
    case Kind::light:
        return readLightUpdate(members);
    case Kind::groupedLight:
        return readGroupedLightUpdate(members);
    case Kind::room:
    case Kind::zone:
    case Kind::scene:
        if (members.renamedOrRegrouped)
            relist(kind);
        return;
    case Kind::connectivity:
        // The lamp list leaves out lamps out of reach, so one coming back must be read as much as one going.
        if (members.status) {
            if (!members.status->is_string())
                note(QStringLiteral("A connectivity change whose \"status\" is not a text was left out."));
            relist(Kind::light);
        }
        return;
    case Kind::other:
        return;
    }
}

std::pair<QString, QString> EventReader::usableIds(const ResourceMembers& members, std::string_view prefix,
                                                   const char* what, bool& relist)
{
    std::string_view path;
    QString v1;
    if (members.idV1 && members.idV1->get_string().get(path) == simdjson::SUCCESS)
        v1 = versionOneId(path, prefix);
    // Records read over the current interface are found by the UUID: a resource without "id_v1" is fine.
    std::string_view uuid;
    QString v2;
    if (members.id && members.id->get_string().get(uuid) == simdjson::SUCCESS && !uuid.empty() &&
        uuid.size() <= 64)
        v2 = QString::fromUtf8(uuid.data(), qsizetype(uuid.size()));
    if (v1.isEmpty() && v2.isEmpty()) {
        relist = true;
        note(QStringLiteral("A %1 change without a usable \"id\" or \"id_v1\" was left out.")
                 .arg(QLatin1String(what)));
    }
    return {v1, v2};
}

void EventReader::readLightUpdate(const ResourceMembers& members)
{
    if (members.renamedOrRegrouped)
        m_batch.relistLights = true;
    if (!members.changesState())
        return;
    const auto [v1, v2] = usableIds(members, "/lights/", "lamp", m_batch.relistLights);
    if (v1.isEmpty() && v2.isEmpty())
        return;
    // Said in the log by the id the user knows best.
    const QString id = v1.isEmpty() ? v2 : v1;

    LightChange change{v1, v2};
    bool wrongType = false;
    QStringList outOfRange;
    if (members.on) {
        if (const std::optional<element> on = memberOf(*members.on, "on", wrongType)) {
            bool flag = false;
            wrongType |= on->get_bool().get(flag) != simdjson::SUCCESS;
            change.on = flag;
        }
    }
    if (members.dimming) {
        if (const std::optional<element> value = memberOf(*members.dimming, "brightness", wrongType)) {
            const std::optional<double> percent = number(*value);
            wrongType |= !percent;
            if (percent && !(change.brightness = brightnessOf(*percent)))
                outOfRange.append(QStringLiteral("brightness"));
        }
    }
    if (members.color) {
        if (const std::optional<element> xy = memberOf(*members.color, "xy", wrongType)) {
            // A coordinate that is missing reads as NaN, which is out of range like one past 1.
            double coordinates[2] = {std::nan(""), std::nan("")};
            for (int i = 0; i < 2; ++i) {
                if (const std::optional<element> c = memberOf(*xy, i == 0 ? "x" : "y", wrongType)) {
                    const std::optional<double> value = number(*c);
                    wrongType |= !value;
                    coordinates[i] = value.value_or(coordinates[i]);
                }
            }
            const auto inRange = [](double c) { return c >= 0 && c <= 1; };
            if (inRange(coordinates[0]) && inRange(coordinates[1]))
                change.xy = std::pair(float(coordinates[0]), float(coordinates[1]));
            else
                outOfRange.append(QStringLiteral("colour"));
        }
    }
    if (members.colorTemperature) {
        // Null while the lamp shows a colour: there is no temperature to show then.
        const std::optional<element> mirek = memberOf(*members.colorTemperature, "mirek", wrongType);
        if (mirek && !isNull(*mirek)) {
            const std::optional<double> value = number(*mirek);
            wrongType |= !value;
            if (value && *value >= 1 && *value <= 1000)
                change.colorTemperature = qRound64(*value);
            else if (value)
                outOfRange.append(QStringLiteral("colour temperature"));
        }
    }
    if (wrongType) {
        m_batch.relistLights = true;
        note(QStringLiteral("A change of lamp %1 with a field of the wrong type was left out.").arg(id));
        return;
    }
    if (!outOfRange.isEmpty())
        note(QStringLiteral("Lamp %1: the %2 out of range was left out.").arg(id, outOfRange.join(u", ")));
    if (!change.on && !change.brightness && !change.xy && !change.colorTemperature)
        return;

    if (const auto at = m_lightAt.constFind(id); at != m_lightAt.cend()) {
        LightChange& merged = m_batch.lights[*at];
        merged.on = change.on ? change.on : merged.on;
        merged.brightness = change.brightness ? change.brightness : merged.brightness;
        merged.xy = change.xy ? change.xy : merged.xy;
        merged.colorTemperature = change.colorTemperature ? change.colorTemperature : merged.colorTemperature;
    } else {
        m_lightAt.insert(id, m_batch.lights.size());
        m_batch.lights.append(std::move(change));
    }
}

void EventReader::readGroupedLightUpdate(const ResourceMembers& members)
{
    if (members.renamedOrRegrouped)
        m_batch.relistGroups = true;
    if (!members.on && !members.dimming)
        return;
    const auto [v1, v2] = usableIds(members, "/groups/", "room", m_batch.relistGroups);
    if (v1.isEmpty() && v2.isEmpty())
        return;
    const QString id = v1.isEmpty() ? v2 : v1;

    GroupChange change{v1, v2};
    bool wrongType = false;
    if (members.on) {
        if (const std::optional<element> on = memberOf(*members.on, "on", wrongType)) {
            bool flag = false;
            wrongType |= on->get_bool().get(flag) != simdjson::SUCCESS;
            change.anyOn = flag;
        }
    }
    if (members.dimming) {
        if (const std::optional<element> value = memberOf(*members.dimming, "brightness", wrongType)) {
            const std::optional<double> percent = number(*value);
            wrongType |= !percent;
            if (percent && !(change.brightness = brightnessOf(*percent)))
                note(QStringLiteral("Room %1: the brightness out of range was left out.").arg(id));
        }
    }
    if (wrongType) {
        m_batch.relistGroups = true;
        note(QStringLiteral("A change of room %1 with a field of the wrong type was left out.").arg(id));
        return;
    }
    if (!change.anyOn && !change.brightness)
        return;

    if (const auto at = m_groupAt.constFind(id); at != m_groupAt.cend()) {
        GroupChange& merged = m_batch.groups[*at];
        merged.anyOn = change.anyOn ? change.anyOn : merged.anyOn;
        merged.brightness = change.brightness ? change.brightness : merged.brightness;
    } else {
        m_groupAt.insert(id, m_batch.groups.size());
        m_batch.groups.append(std::move(change));
    }
}

void EventReader::relist(Kind kind)
{
    switch (kind) {
    case Kind::light:
        m_batch.relistLights = true;
        break;
    case Kind::groupedLight:
    case Kind::room:
    case Kind::zone:
        m_batch.relistGroups = true;
        break;
    case Kind::scene:
        m_batch.relistScenes = true;
        break;
    case Kind::connectivity:
    case Kind::other:
        break;
    }
}

void EventReader::note(QString problem)
{
    if (m_batch.problems.size() < maxProblems)
        m_batch.problems.append(std::move(problem));
    else
        ++m_problemsLeftOut;
}

BridgeEventBatch EventReader::finish()
{
    if (m_problemsLeftOut > 0)
        m_batch.problems.append(QStringLiteral("%1 more problems.").arg(m_problemsLeftOut));
    return std::move(m_batch);
}

} // namespace

std::optional<BridgeEventBatch> decodeBridgeEvents(QByteArrayView data, QString* problem)
{
    QString ignored;
    if (!problem)
        problem = &ignored;
    element root;
    // An empty view may have no buffer at all, which the parser must not be handed even for no bytes.
    if (data.isEmpty() ||
        sharedParser().parse(data.data(), size_t(data.size())).get(root) != simdjson::SUCCESS) {
        *problem = QStringLiteral("The bridge's event is not JSON.");
        return std::nullopt;
    }
    simdjson::dom::array containers;
    if (root.get_array().get(containers) != simdjson::SUCCESS) {
        *problem = QStringLiteral("The bridge's event is not a list.");
        return std::nullopt;
    }
    EventReader reader;
    for (element container : containers) {
        if (!reader.readContainer(container, problem))
            return std::nullopt;
    }
    return reader.finish();
}
