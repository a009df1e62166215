#pragma once

#include "hotkeys/GlobalHotkeys.h"

#include <QList>

/// The thirteen shortcut names of the application, made once on first use. None has a default shortcut: a
/// fresh installation has all of them unassigned. The raw values are the storage names and never change.
namespace HotkeyNames {

const GlobalHotkeys::Name& allLightsOn();
const GlobalHotkeys::Name& allLightsOff();
const GlobalHotkeys::Name& allLightsBrighter();
const GlobalHotkeys::Name& allLightsDarker();
const GlobalHotkeys::Name& allLightsRed();
const GlobalHotkeys::Name& allLightsBlue();
const GlobalHotkeys::Name& allLightsWhite();

/// The number of custom group shortcuts.
inline constexpr int customGroupCount = 5;
/// actionCustomGroup1 to actionCustomGroup5: `number` is the one the user sees, 1 to 5.
const GlobalHotkeys::Name& customGroup(int number);

/// Opens or closes Glowdeck's window, with the keyboard focus in it.
const GlobalHotkeys::Name& openGlowdeck();

/// The seven that act on every room: on, off, brighter, darker, red, blue, white.
const QList<GlobalHotkeys::Name>& everything();
/// All thirteen: the seven, then the five custom ones, then "Open Glowdeck".
const QList<GlobalHotkeys::Name>& all();

} // namespace HotkeyNames
