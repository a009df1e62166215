#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

/// Bridge answers of a large home (lights, rooms, scenes), shaped like what real bridges send: a mix of lamp
/// generations, rooms with and without colour actions, zones and light groups between them, scenes of both
/// versions. Deterministic, so runs compare.
struct LargeHome
{
    QByteArray lights;
    QByteArray groups;
    QByteArray scenes;

    /// The same home as the current interface's whole-home answer ("/clip/v2/resource"): each lamp as a
    /// light, its device and its connectivity (with the members a real bridge sends beside those Glowdeck
    /// reads), rooms of devices, zones of lights, a grouped light each, the bridge's home and the scenes.
    /// `perType` gets the bytes of each type's own answer, for comparing one read with several.
    static QByteArray clipHome(const LargeHome& home, QList<QPair<QString, qsizetype>>* perType = nullptr);

    static LargeHome make(int lightCount, int roomCount, int sceneCount);
    /// The same home with lights and rooms numbered 1..N in their generated order, as a bridge whose rooms
    /// name its own lights lists them.
    static LargeHome makeNumbered(int lightCount, int roomCount, int sceneCount);
    /// Writes the numbered home of `lightCount` lights in 50 rooms with 300 scenes as a glowdeck-simulator
    /// home file (the simulator registers the key from its command line); false when it cannot.
    static bool writeSimulatorHome(const QString& fileName, int lightCount);
};
