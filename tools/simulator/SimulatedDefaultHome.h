#pragma once

#include <QByteArray>

/// The homes a simulator starts with, one for each floor of a house with a bridge on every floor.
///
/// The ground floor (the default): twelve lights of the common kinds (colour, ambiance, white, a plug, an
/// IKEA lamp with a broken colour temperature range, an old bulb without capabilities, two unreachable), four
/// rooms, a zone, a light group, scenes of both versions, two dimmer switches on batteries (one nearly
/// empty) and a bridge config.
/// The upper floor: five lights, three rooms, a zone, two scenes and a bridge id of its own; its lamp "1",
/// its room "1" "Living room" and the scene "Relax" there have the ids and names of the ground floor's, as
/// two real homes have, but are other lamps with other states.
class SimulatedDefaultHome final
{
public:
    enum class Floor
    {
        Ground,
        Upper,
    };

    /// The home as a home document (see SimulatedHomeDocument); ids are deliberately not all in order.
    static QByteArray document(Floor floor = Floor::Ground);

    SimulatedDefaultHome() = delete;
};
