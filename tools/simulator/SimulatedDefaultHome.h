#pragma once

#include <QByteArray>

/// The home a simulator starts with: twelve lights of the common kinds (colour, ambiance, white, a plug, an
/// IKEA lamp with a broken colour temperature range, an old bulb without capabilities, two unreachable), four
/// rooms, a zone, a light group, scenes of both versions and a bridge config.
class SimulatedDefaultHome final
{
public:
    /// The home as a home document (see SimulatedHomeDocument); ids are deliberately not all in order.
    static QByteArray document();

    SimulatedDefaultHome() = delete;
};
