#pragma once

/// The panels of the drop-down window, stored as their integer under "activePanel". A stored value outside
/// the three is kept as it is (the window then opens at the default height).
enum class MainPanels : int
{
    lights = 0,
    rooms = 1,
    scenes = 2
};
