#pragma once

#include <QIcon>
#include <QString>

class QWidget;

/// One pane of the preferences window, as the application hands it over.
struct Pane
{
    /// Names the pane for PreferencesWindowController::show(), e.g. "general".
    QString identifier;
    /// Shown under the toolbar button, and as the window title while the pane is shown.
    QString title;
    QIcon toolbarIcon;
    /// The pane's view; the window takes it over.
    QWidget* content = nullptr;
};

/// How the panes are offered at the top of the window.
enum class PaneStyle
{
    toolbarItems,     ///< one toolbar button per pane, icon and title
    segmentedControl, ///< one row of joined buttons centred in the toolbar, titles only
};
