#pragma once

#include "preferences/window/Pane.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

class PaneTabController;
class QLabel;
class PausableWindow;
class Preferences;

/// The preferences window: one window for the whole run, one pane shown at a time, chosen in its toolbar. The
/// window is not resizable; it takes each pane's size, animated when the user switches panes. Escape and the
/// platform's close shortcut close it; the last pane shown stays until the next show().
class PreferencesWindowController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreferencesWindowController)

public:
    /// Takes over the panes' views. With a single pane and `hidesToolbarForSingleItem`, no toolbar is shown.
    /// An empty list of panes is a programming error and stops the process.
    explicit PreferencesWindowController(QList<Pane> panes, PaneStyle style = PaneStyle::toolbarItems,
                                         bool animated = true, bool hidesToolbarForSingleItem = true,
                                         QObject* parent = nullptr);
    ~PreferencesWindowController() override;

    /// Keeps the window's place across restarts in `store` under `name`, restored at the first show.
    void setFrameAutosaveName(const QString& name, Preferences* preferences);

    /// Shows the window and brings it to the front. With an identifier, shows that pane (the first, without
    /// animation, when no pane has it); without one, the pane shown last, or the first the first time.
    void show(const QString& paneIdentifier = QString());

    /// A line under the panes that stays until it is set empty (settings that cannot be saved).
    void setStatus(const QString& text);
    QString status() const;

    PausableWindow& window() const { return *m_window; }
    PaneTabController& tabViewController() const { return *m_tabs; }
    bool hidesToolbarForSingleItem() const { return m_hidesToolbarForSingleItem; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void restoreFrame();
    void saveFrame();
    void closeByKeys();

    std::unique_ptr<PausableWindow> m_window;
    PaneTabController* m_tabs;
    QLabel* m_status;
    bool m_hidesToolbarForSingleItem;
    bool m_shownBefore = false;
    bool m_listClosedByTheseKeys = false;
    QString m_autosaveName;
    Preferences* m_framePreferences = nullptr;
};
