#pragma once

/// How assistive technologies (screen readers, AT-SPI clients) see the drop-down window's own controls: the
/// brightness slider, the colour field and the white-tone bar as sliders with a value they can read and set,
/// the panel tabs as page tabs they can press. Buttons, switches and labels are Qt's own.
namespace PanelAccessibility {

/// Registers the interfaces with Qt; safe to call more than once.
void install();

} // namespace PanelAccessibility
