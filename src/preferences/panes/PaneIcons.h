#pragma once

#include <QIcon>

/// The toolbar icons of the preference panes: one-colour drawings painted in the toolbar's text colour at
/// the moment they are drawn, so they follow the light and dark appearance without a restart.
namespace PaneIcons {

QIcon general();
QIcon connection();
QIcon lights();
QIcon hotkeys();

} // namespace PaneIcons
