#pragma once

#include "hotkeys/GlobalHotkeys.h"

#include <QString>

#include <optional>

/// The application's own keyboard shortcuts: the actions of its menus and the shortcuts of its windows
/// (closing a window, stepping through panes...). A global shortcut with the same keys would take them away,
/// since the desktop hands a global shortcut to its owner before any window sees it.
namespace ApplicationShortcuts {

/// What the application's own shortcut with these keys does (an action's text, a window shortcut's "What's
/// This" text, else the keys themselves), or nothing when no enabled one has them.
std::optional<QString> titleOf(const GlobalHotkeys::Shortcut& shortcut);

} // namespace ApplicationShortcuts
