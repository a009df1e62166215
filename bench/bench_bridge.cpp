#include "LargeHome.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/ResourceFetch.h"
#include "bridge/WireDecoder.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {

const LargeHome& home()
{
    static const LargeHome large = LargeHome::make(200, 50, 300);
    return large;
}

const QByteArray& body(int list)
{
    return list == 0 ? home().lights : list == 1 ? home().groups : home().scenes;
}

void label(benchmark::State& state)
{
    static const char* const names[] = {"lights (200)", "groups (50)", "scenes (300)"};
    state.SetLabel(names[state.range(0)]);
    state.SetBytesProcessed(qint64(state.iterations()) * body(int(state.range(0))).size());
}

/// The bare parse of the same bytes: what any decoding must pay at least.
void BM_Parse(benchmark::State& state)
{
    const QByteArray& json = body(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(WireDecoder::parseOnly(json));
    label(state);
}

/// The same bytes through Qt's own JSON parser, for scale (it cannot keep the member order).
void BM_QtParse(benchmark::State& state)
{
    const QByteArray& json = body(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(json));
    label(state);
}

/// Parse, decode into the wire records and derive the flat records, as a refresh does.
void BM_DecodeAndDerive(benchmark::State& state)
{
    const QByteArray& json = body(int(state.range(0)));
    for (auto _ : state) {
        switch (state.range(0)) {
        case 0:
            benchmark::DoNotOptimize(lightsFromBody(json));
            break;
        case 1:
            benchmark::DoNotOptimize(groupsFromBody(json));
            break;
        default:
            benchmark::DoNotOptimize(scenesFromBody(json));
        }
    }
    label(state);
}

const QByteArray& clipBody()
{
    static const QByteArray body = LargeHome::clipHome(home());
    return body;
}

/// The whole home over the current interface, as a refresh of a bridge that offers it does: parse, decode
/// every resource type Glowdeck reads, derive lamps, rooms and scenes. Beside it, the first interface's
/// three reads of the same home.
void BM_ClipHomeDecodeAndDerive(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(homeFromClipBody(clipBody()));
    state.SetLabel("v2 whole home (200 lights, 50 groups, 300 scenes)");
    state.SetBytesProcessed(qint64(state.iterations()) * clipBody().size());
    state.counters["bytes"] = double(clipBody().size());
}

void BM_FirstInterfaceHomeDecodeAndDerive(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(lightsFromBody(body(0)));
        benchmark::DoNotOptimize(groupsFromBody(body(1)));
        benchmark::DoNotOptimize(scenesFromBody(body(2)));
    }
    const qsizetype bytes = body(0).size() + body(1).size() + body(2).size();
    state.SetLabel("v1 lights + groups + scenes");
    state.SetBytesProcessed(qint64(state.iterations()) * bytes);
    state.counters["bytes"] = double(bytes);
}

/// One dragged slider: 10,000 enqueues of brightness changes of one lamp, with the queue's insertions run
/// as the event loop would run them.
void BM_DraggedSliderEnqueues(benchmark::State& state)
{
    QTemporaryDir dir;
    JsonSettingsStore store(dir.filePath(QStringLiteral("settings.json")));
    BridgeLink settings(store);
    QNetworkAccessManager network;
    ActionQueue queue(settings, network);
    ActionQueueItem item{QUrl(QStringLiteral("http://127.0.0.1:9/api/k/lights/7/state")),
                         {},
                         QDateTime::currentDateTimeUtc(),
                         ActionQueueItem::Target::light,
                         QStringLiteral("7"),
                         QStringLiteral("brightness")};
    QList<ActionQueueItem> drag;
    for (int i = 0; i < 10000; ++i) {
        item.body = QByteArrayLiteral(R"({"bri":)") + QByteArray::number(i % 256) + "}";
        drag.append(item);
    }
    for (auto _ : state) {
        for (const ActionQueueItem& change : drag)
            queue.enqueue(change);
        QCoreApplication::sendPostedEvents();
    }
    queue.stopProcessor(); // nothing is sent: the timer never gets to tick
    state.SetItemsProcessed(qint64(state.iterations()) * drag.size());
}

/// The same drag through the whole command: local change, address, body, enqueue.
void BM_DraggedSliderCommands(benchmark::State& state)
{
    QTemporaryDir dir;
    JsonSettingsStore store(dir.filePath(QStringLiteral("settings.json")));
    BridgeLink settings(store);
    QNetworkAccessManager network;
    ActionQueue queue(settings, network);
    BridgeCommands commands(settings, queue);
    settings.setHueIP(QStringLiteral("127.0.0.1:9"));
    settings.setHueKey(QStringLiteral("k"));
    const HueLight light{.lamp_id = QStringLiteral("7")};
    settings.home().setLights({light});
    for (auto _ : state) {
        for (int i = 0; i < 10000; ++i)
            commands.setLightBrightness(light, i % 256);
        QCoreApplication::sendPostedEvents();
    }
    queue.stopProcessor(); // nothing is sent: the timer never gets to tick
    state.SetItemsProcessed(qint64(state.iterations()) * 10000);
}

/// Enqueue alone, against a queue already holding `range(0)` other changes: the cost grows with the queue.
void BM_EnqueueBehind(benchmark::State& state)
{
    QTemporaryDir dir;
    JsonSettingsStore store(dir.filePath(QStringLiteral("settings.json")));
    BridgeLink settings(store);
    QNetworkAccessManager network;
    ActionQueue queue(settings, network);
    ActionQueueItem item{QUrl(QStringLiteral("http://127.0.0.1:9/api/k/lights/1/state")),
                         R"({"bri":1})",
                         QDateTime::currentDateTime(),
                         ActionQueueItem::Target::light,
                         QStringLiteral("1"),
                         QStringLiteral("hue")};
    for (int i = 0; i < state.range(0); ++i) {
        item.item_id = QString::number(i + 1000);
        queue.enqueue(item);
    }
    QCoreApplication::sendPostedEvents();
    item.item_id = QStringLiteral("1");
    for (auto _ : state) {
        queue.enqueue(item);
        QCoreApplication::sendPostedEvents();
    }
    queue.stopProcessor();
    state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(BM_Parse)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_QtParse)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DecodeAndDerive)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ClipHomeDecodeAndDerive)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FirstInterfaceHomeDecodeAndDerive)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DraggedSliderEnqueues)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DraggedSliderCommands)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EnqueueBehind)->RangeMultiplier(4)->Range(1, 1024)->Complexity(benchmark::oN);

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    // The bytes of each type's own answer, for the choice between one whole-home read and reads per type.
    QList<QPair<QString, qsizetype>> perType;
    LargeHome::clipHome(home(), &perType);
    qsizetype sum = 0;
    for (const auto& [type, bytes] : perType) {
        std::printf("v2 /clip/v2/resource/%s: %lld bytes\n", qPrintable(type), static_cast<long long>(bytes));
        sum += bytes;
    }
    std::printf("v2 per type, %lld requests: %lld bytes; whole home, 1 request: %lld bytes\n",
                static_cast<long long>(perType.size()), static_cast<long long>(sum),
                static_cast<long long>(clipBody().size()));
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
