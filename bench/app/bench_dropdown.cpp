// The drop-down window of a large home, measured in the program's own objects: the time from a click on the
// tray icon to the window shown and painted, and the CPU one refresh tick costs the views when the bridge
// reports nothing new, with the window open and closed. Run it on a real display (bench/app/measure_app.sh
// runs it on Xvfb); docs/performance.md records the figures.
//
// Usage: bench_dropdown [--lights N] [--opens N] [--ticks N] [--home FILE]
// --home reads the lights, rooms and scenes of a glowdeck-simulator home file instead of generating them.

#include "LargeHome.h"
#include "app/DropDownWindow.h"
#include "app/StatusBarMenuWindowController.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/ResourceFetch.h"
#include "panels/ContentView.h"
#include "panels/LightRow.h"
#include "panels/ListLights.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/LightOrder.h"
#include "state/MemorySettingsStore.h"
#include "state/ProductLinks.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QScrollBar>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

namespace {

const QString bridge = QStringLiteral("127.0.0.1:9");
const QString key = QStringLiteral("benchdropdownkey");

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

/// Counts the widget work an application does: paints and layout passes.
class WorkCounter final : public QObject
{
public:
    int paints = 0;
    int layouts = 0;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        else if (event->type() == QEvent::LayoutRequest)
            ++layouts;
        return QObject::eventFilter(watched, event);
    }
};

/// Notes the first paint of the content after an opening.
class PaintWatch final : public QObject
{
public:
    bool painted = false;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

/// One refresh's lists, decoded as the connection decodes them (rooms get fresh list identities each time).
struct Refresh
{
    QList<HueLight> lights;
    QList<HueGroup> groups;
};

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption lightsOption(QStringLiteral("lights"), QStringLiteral("Lights of the home."),
                                          QStringLiteral("N"), QStringLiteral("200"));
    const QCommandLineOption opensOption(QStringLiteral("opens"), QStringLiteral("Openings to time."),
                                         QStringLiteral("N"), QStringLiteral("30"));
    const QCommandLineOption ticksOption(QStringLiteral("ticks"), QStringLiteral("Refresh ticks to time."),
                                         QStringLiteral("N"), QStringLiteral("2000"));
    const QCommandLineOption homeOption(QStringLiteral("home"),
                                        QStringLiteral("A glowdeck-simulator home file to show instead."),
                                        QStringLiteral("FILE"));
    parser.addHelpOption();
    parser.addOptions({lightsOption, opensOption, ticksOption, homeOption});
    parser.process(app);
    const int lightCount = parser.value(lightsOption).toInt();
    const int opens = parser.value(opensOption).toInt();
    const int ticks = parser.value(ticksOption).toInt();
    if (lightCount < 1 || opens < 1 || ticks < 1) {
        std::fprintf(stderr, "bench_dropdown: --lights, --opens and --ticks need positive numbers\n");
        return 2;
    }

    LargeHome home = LargeHome::makeNumbered(lightCount, 50, 300);
    if (parser.isSet(homeOption)) {
        QFile file(parser.value(homeOption));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "bench_dropdown: cannot read %s\n", qPrintable(file.fileName()));
            return 2;
        }
        const QJsonObject saved = QJsonDocument::fromJson(file.readAll()).object();
        const auto part = [&saved](const char* name) {
            return QJsonDocument(saved.value(QLatin1String(name)).toObject()).toJson(QJsonDocument::Compact);
        };
        home = LargeHome{part("lights"), part("groups"), part("scenes")};
    }
    MemorySettingsStore store;
    BridgeLink settings(store);
    // A first start: no stored heights, so the window opens at its content's height.
    settings.load();
    settings.setHueIP(bridge);
    settings.setHueKey(key);
    settings.preferences().setShowScenes(true);
    QNetworkAccessManager network;
    BridgeSessions sessions;
    sessions.add(std::make_unique<BridgeSession>(settings, network));

    const auto decode = [&] {
        return Refresh{LightOrder::apply(lightsFromBody(home.lights).records, settings.lightOrder()),
                       groupsFromBody(home.groups).records};
    };
    // As at start-up: the window's content exists before the first read brings the lists.
    auto* content = new ContentView(settings.preferences(), sessions, ProductLinks{});
    const Refresh first = decode();
    const QList<HueScene> scenes = scenesFromBody(home.scenes).records;
    QElapsedTimer clock;
    clock.start();
    settings.home().setLights(first.lights);
    settings.home().setGroups(first.groups);
    settings.home().setScenes(scenes);
    settings.home().setBridgeConnected(true);
    const double built = double(clock.nsecsElapsed()) / 1e6;
    StatusBarMenuWindowController controller(settings.preferences(), content,
                                             [] { return std::optional<QRect>(QRect(1257, 1, 22, 22)); });
    PaintWatch watch;
    content->installEventFilter(&watch);

    // ---- Click to window shown
    // ------------------------------------------------------------------------------ What a click on the icon
    // runs (AppDelegate::showDropDownWindow), until the content has been painted.
    const auto open = [&] {
        watch.painted = false;
        QElapsedTimer timer;
        timer.start();
        controller.restoreActivePanel();
        controller.setPreferredHeight(settings.preferences().preferredHeightOfActivePanel());
        controller.show();
        while (!watch.painted && timer.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        return double(timer.nsecsElapsed()) / 1e6;
    };
    const auto close = [&] {
        controller.closeWithoutFade();
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    };
    const double firstOpen = open();
    const int shownRows = int(content->findChildren<QWidget*>().size());
    // The lamps a user sees without scrolling: rows whose whole height is inside the list's visible part.
    if (auto* list = content->findChild<ListLights*>()) {
        QElapsedTimer settle; // the layout passes that follow the first paint (the scroll bar appearing)
        settle.start();
        while (settle.elapsed() < 200)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        const QRect view = list->viewport()->rect();
        int whole = 0;
        for (LightRow* row : list->lightRows()) {
            const QRect at(row->mapTo(list->viewport(), QPoint(0, 0)), row->size());
            if (row->isVisible() && at.top() >= view.top() && at.bottom() <= view.bottom())
                ++whole;
        }
        std::printf("lamps in view at the default size: %d of %lld (window %dx%d, rows %s)\n", whole,
                    qint64(list->lightRows().size()), controller.window().width(),
                    controller.window().height(),
                    list->lightRows().isEmpty() || list->lightRows().first()->isOneLine() ? "on one line"
                                                                                          : "on two lines");
    }
    close();
    QList<double> later;
    for (int i = 0; i < opens; ++i) {
        later.append(open());
        close();
    }
    std::printf("%d lights (%lld kept), %lld rooms, %lld scenes; first read shown in the closed window's "
                "rows in %.1f ms (%d widgets)\n",
                lightCount, qint64(settings.home().lights().size()), qint64(settings.home().groups().size()),
                qint64(settings.home().scenes().size()), built, shownRows);
    std::printf("click to window shown: first %.1f ms, then median %.1f ms (min %.1f, max %.1f, %d opens), "
                "window %dx%d\n",
                firstOpen, median(later), *std::min_element(later.cbegin(), later.cend()),
                *std::max_element(later.cbegin(), later.cend()), opens, controller.window().width(),
                controller.window().height());

    // ---- A refresh tick that brings nothing new
    // -------------------------------------------------------------
    QList<Refresh> refreshes;
    for (int i = 0; i < 16; ++i)
        refreshes.append(decode());
    WorkCounter work;
    app.installEventFilter(&work);
    const auto measureTicks = [&](const char* label) {
        work.paints = work.layouts = 0;
        const double start = cpuSeconds();
        for (int i = 0; i < ticks; ++i) {
            // What BridgeConnection applies after its reads, then the event loop's turn.
            const Refresh& refresh = refreshes.at(i % refreshes.size());
            settings.home().setLights(refresh.lights);
            settings.home().setBridgeConnected(true);
            settings.home().setConnectionErrorMessage(QString());
            settings.home().setGroups(refresh.groups);
            QCoreApplication::processEvents();
        }
        const double perTick = (cpuSeconds() - start) / ticks;
        std::printf("unchanged refresh tick, window %s: %.1f us CPU in the views per tick; %d paints, "
                    "%d layout passes in %d ticks\n",
                    label, perTick * 1e6, work.paints, work.layouts, ticks);
    };
    // Every panel's list exists from here on, as after a user has looked at each once.
    for (MainPanels panel : {MainPanels::scenes, MainPanels::rooms, MainPanels::lights}) {
        settings.preferences().setActiveMainPanel(panel);
        open();
        close();
    }
    open();
    measureTicks("open on the lights");
    close();
    settings.preferences().setActiveMainPanel(MainPanels::rooms);
    open();
    measureTicks("open on the rooms");
    close();
    measureTicks("closed");

    // For scale: decoding the two answers, which every tick pays before the views see anything.
    const double decodeStart = cpuSeconds();
    for (int i = 0; i < 50; ++i)
        decode();
    std::printf("for scale: decoding the light and room answers costs %.1f us CPU per tick\n",
                (cpuSeconds() - decodeStart) / 50 * 1e6);
    return 0;
}
