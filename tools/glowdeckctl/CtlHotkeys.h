#pragma once

#include "CtlArguments.h"

/// `glowdeckctl hotkeys`: the thirteen global shortcuts from the settings file, with their keys as the
/// hotkeys pane shows them, what each does, and the choice of each custom one. Reads only; needs neither the
/// bridge nor a display.
namespace CtlHotkeys {

/// Prints the list (a table, or with --json one JSON array); returns the exit status.
int run(const CtlInvocation& invocation);

} // namespace CtlHotkeys
