#pragma once

#include <QByteArray>

/// Bridge answers of a large home (lights, rooms, scenes), shaped like what real bridges send: a mix of lamp
/// generations, rooms with and without colour actions, zones and light groups between them, scenes of both
/// versions. Deterministic, so runs compare.
struct LargeHome
{
    QByteArray lights;
    QByteArray groups;
    QByteArray scenes;

    static LargeHome make(int lightCount, int roomCount, int sceneCount);
};
