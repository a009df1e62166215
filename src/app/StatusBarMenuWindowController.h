#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>

class Preferences;
class DropDownWindow;
class QPropertyAnimation;
class QWidget;

/// Shows the content window right under the tray icon, as if it were a menu: placed from the icon's
/// geometry (or at the pointer where the tray does not tell it), closed with a fade by any click outside it,
/// when it loses the focus or on Escape, and remembering the height the user dragged it to, per panel, and
/// the width. Until the user drags the width, the window is as wide as its content asks (the longest name),
/// up to a third of the screen.
class StatusBarMenuWindowController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StatusBarMenuWindowController)

public:
    /// The tray icon's screen geometry, or nothing when the tray does not tell (StatusNotifier trays).
    using IconGeometry = std::function<std::optional<QRect>()>;
    /// Where the pointer is, in screen coordinates.
    using PointerPosition = std::function<QPoint()>;

    static constexpr int fadeMilliseconds = 150;

    /// Takes ownership of `content`.
    StatusBarMenuWindowController(Preferences& preferences, QWidget* content, IconGeometry iconGeometry,
                                  QObject* parent = nullptr);
    ~StatusBarMenuWindowController() override;

    /// Reads the panel stored under "activePanel" back into the shared state, so the window opens on the
    /// panel it showed last and a dragged height is stored under the panel that is shown.
    void restoreActivePanel();
    /// Places the window under the icon with `preferredHeight`, shows and activates it, and starts watching
    /// for clicks outside it.
    void show();
    /// Fades the window out and stops watching clicks.
    void close();
    /// Hides the window at once, for a menu about to open: a window still fading out would take the menu's
    /// popup down with it.
    void closeWithoutFade();
    bool isShown() const { return m_isShown; }

    /// Whether the window was closed by a click outside it or a focus loss within the last moments. A click
    /// on the tray icon does both before the icon reports its activation; the toggle must not open the
    /// window again right away.
    bool closedByOutsideClickJustNow() const;

    void setPreferredHeight(qint64 height) { m_preferredHeight = height; }
    qint64 preferredHeight() const { return m_preferredHeight; }

    /// Places the window for a content height of `height`; a height of 0 or less (no stored height) takes
    /// the content's own height, at most two thirds of the screen. The window keeps its minimum height of 200
    /// and stays inside the screen's available area.
    void positionWindow(qint64 height);
    /// Stores the content's height for the active panel and has the shared state read it again, and the
    /// window's width when the user changed it.
    void saveWindowHeight();

    DropDownWindow& window() const { return *m_window; }
    /// Replaces where the pointer is read from (tests).
    void setPointerPosition(PointerPosition pointer) { m_pointer = std::move(pointer); }

Q_SIGNALS:
    /// The window is closing (also when it was closed by an outside click).
    void windowWillClose();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void closeFromOutside();
    void startOutsideClickMonitor();
    void stopOutsideClickMonitor();
    void onFadeFinished();

    Preferences& m_preferences;
    IconGeometry m_iconGeometry;
    PointerPosition m_pointer;
    std::unique_ptr<DropDownWindow> m_window;
    QPropertyAnimation* m_fade;
    bool m_isShown = false;
    bool m_monitoring = false;
    qint64 m_preferredHeight = 0;
    int m_placedWidth = 0; ///< the width the window was given at its last placing
    QElapsedTimer m_closedFromOutside;
};
