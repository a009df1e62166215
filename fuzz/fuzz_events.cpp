// The bridge's event stream: the bytes as they come off the connection, in two pieces cut in the middle,
// framed into events whose data is decoded into changes, as the stream does; and the same bytes decoded as
// the data of one event, so that the decoder is reached without the framing too.
#include "bridge/BridgeEvents.h"
#include "bridge/ServerSentEvents.h"

#include <QByteArrayView>

#include <cstddef>
#include <cstdint>

namespace {

/// Decodes `data` and checks what every receiver of a batch relies on.
void decode(QByteArrayView data)
{
    QString problem;
    const std::optional<BridgeEventBatch> batch = decodeBridgeEvents(data, &problem);
    if (!batch) {
        if (problem.isEmpty())
            __builtin_trap();
        return;
    }
    // A change names its record by the first interface's number, by its UUID, or by both; never by neither.
    const auto isId = [](const QString& v1, const QString& v2) {
        return (!v1.isEmpty() || !v2.isEmpty()) && v1.size() <= 32 && v2.size() <= 64;
    };
    for (const LightChange& light : batch->lights) {
        if (!isId(light.lampId, light.resourceId) || (light.brightness && (*light.brightness < 1 || *light.brightness > 254)) ||
            (light.xy && !(light.xy->first >= 0 && light.xy->first <= 1 && light.xy->second >= 0 &&
                           light.xy->second <= 1)) ||
            (light.colorTemperature && (*light.colorTemperature < 1 || *light.colorTemperature > 1000)))
            __builtin_trap();
    }
    for (const GroupChange& group : batch->groups) {
        if (!isId(group.groupId, group.resourceId) || (group.brightness && (*group.brightness < 1 || *group.brightness > 254)))
            __builtin_trap();
    }
    if (batch->problems.size() > 21)
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArrayView input(reinterpret_cast<const char*>(data), qsizetype(size));
    ServerSentEvents parser;
    QList<ServerSentEvent> events = parser.feed(input.first(input.size() / 2));
    events += parser.feed(input.sliced(input.size() / 2));
    for (const ServerSentEvent& event : events) {
        if (event.data.size() > ServerSentEvents::maxEventBytes)
            __builtin_trap();
        decode(event.data);
    }
    // A parser that failed says why and takes nothing more.
    if (parser.failed() && (parser.problem().isEmpty() || !parser.feed("data: x\n\n").isEmpty()))
        __builtin_trap();
    decode(input);
    return 0;
}
