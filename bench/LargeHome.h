#pragma once

#include <QByteArray>
#include <QString>

/// Bridge answers of a large home (lights, rooms, scenes), shaped like what real bridges send: a mix of lamp
/// generations, rooms with and without colour actions, zones and light groups between them, scenes of both
/// versions. Deterministic, so runs compare.
struct LargeHome
{
    QByteArray lights;
    QByteArray groups;
    QByteArray scenes;

    static LargeHome make(int lightCount, int roomCount, int sceneCount);
    /// The same home with lights and rooms numbered 1..N in their generated order, as a bridge whose rooms
    /// name its own lights lists them.
    static LargeHome makeNumbered(int lightCount, int roomCount, int sceneCount);
    /// Writes the numbered home of `lightCount` lights in 50 rooms with 300 scenes as a glowdeck-simulator
    /// home file (the simulator registers the key from its command line); false when it cannot.
    static bool writeSimulatorHome(const QString& fileName, int lightCount);
};
