// All Off on a large home: the time from the command to the last request handed to the network, and the
// number of requests, against an in-process simulated bridge on loopback. The bridge's pace (one room command
// a second) decides the figure, so one run is enough; docs/performance.md records it.
//
// Usage: bench_allonoff [LIGHTS]   (149 by default; the home has 50 rooms)

#include "LargeHome.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "commands/HomeCommands.h"
#include "connection/BridgeConnection.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "simulator/BridgeSimulator.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/MemorySettingsStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int lights = argc > 1 ? QByteArray(argv[1]).toInt() : 149;
    QTemporaryDir dir;
    const QString homeFile = dir.filePath(QStringLiteral("home.json"));
    BridgeSimulator bridge;
    QString error;
    if (!LargeHome::writeSimulatorHome(homeFile, lights) || !bridge.loadHome(homeFile, &error) ||
        !bridge.listen()) {
        std::fprintf(stderr, "bench_allonoff: no simulated bridge: %s\n", qPrintable(error));
        return 1;
    }

    MemorySettingsStore store;
    BridgeLink link(store);
    link.setHueIP(QStringLiteral("http://") + bridge.hostAndPort());
    link.setBridgeContact(QStringLiteral("http"), bridge.bridgeId(), {});
    link.setHueKey(bridge.addUser());
    BridgeNetwork network;
    BridgeSessions sessions;
    BridgeSession& session = sessions.add(std::make_unique<BridgeSession>(link, network));
    HomeCommands commands(sessions);

    QElapsedTimer clock;
    qint64 lastSent = 0;
    int requests = 0;
    // The rooms as a refresh reads them, then All Off.
    QObject::connect(
        &session.connection(), &BridgeConnection::groupsRefreshed, &app,
        [&] {
            const qsizetype rooms = link.home().groups().size();
            QObject::connect(&session.queue(), &ActionQueue::sent, &app, [&clock, &lastSent, &requests] {
                lastSent = clock.elapsed();
                ++requests;
            });
            QObject::connect(&session.queue(), &ActionQueue::drained, &app, [&, rooms] {
                std::printf(
                    "All Off, %d lights in %lld groups: %d request(s), the last sent %lld ms after the "
                    "command\n",
                    lights, qlonglong(rooms), requests, qlonglong(lastSent));
                app.quit();
            });
            clock.start();
            commands.allLightsOff();
        },
        Qt::SingleShotConnection);
    // The last user action long past, or the refresh holds back.
    session.queue().setLastUserActionAt(QDateTime::currentDateTimeUtc().addSecs(-3600));
    session.connection().refreshTick();
    QTimer::singleShot(300000, &app, [&app] { app.exit(1); });
    return app.exec();
}
