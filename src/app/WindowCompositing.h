#pragma once

/// Whether the desktop composes windows, so that a translucent window's see-through pixels show what lies
/// behind it. On X11 without a compositing manager they show black instead, and the drop-down window cuts
/// its rounded corners out with a shape. CMake compiles exactly one implementation.
bool isWindowCompositingActive();
