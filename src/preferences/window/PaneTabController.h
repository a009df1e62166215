#pragma once

#include "preferences/window/Pane.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class PaneStyleController;
class QPropertyAnimation;
class QToolBar;
class QVBoxLayout;

/// The content of the preferences window: the pane buttons in a toolbar ("PreferencesToolbar") and the one
/// pane shown below them. Switching panes fits the window to the new pane, animated over 0.25 s with input
/// paused, and sets the window title.
class PaneTabController final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PaneTabController)

public:
    static constexpr int animationMilliseconds = 250;

    PaneTabController(QList<Pane> panes, PaneStyle style, bool animated, QWidget* parent = nullptr);
    ~PaneTabController() override;

    std::optional<int> activeTab() const { return m_activeTab; }
    const QList<Pane>& preferencePanes() const { return m_panes; }
    PaneStyle style() const { return m_style; }
    bool isAnimated() const { return m_animated; }
    QToolBar& toolbar() const { return *m_toolbar; }
    /// Whether the window is being resized to a new pane right now.
    bool isResizing() const { return !m_animation.isNull(); }

    /// Shows the pane at `index`; nothing happens for the pane already shown or an index out of range. The
    /// change is animated when `animated` is set, this controller animates at all and the window is shown.
    void activateTab(int index, bool animated);
    /// Shows the pane with this identifier; an unknown identifier shows the first pane without animation.
    void activateTab(const QString& identifier, bool animated);

    /// The window title for the pane at `index`: the application's name, a dash and the pane's title
    /// ("Glowdeck — Lights"), or with fewer than two panes the application's name followed by " Preferences".
    QString windowTitleFor(int index) const;
    /// The application's display name, or "<Unknown App Name>" when it has none.
    static QString applicationDisplayName();

private:
    void onPaneSelected(int index);
    void onNextPane(int step);
    /// Lets the window follow the pane's size by itself (the normal state) or not at all (while animating).
    void setWindowFollowsContent(bool follows);
    QSize fittingWindowSize() const;

    QList<Pane> m_panes;
    PaneStyle m_style;
    bool m_animated;
    std::optional<int> m_activeTab;
    QToolBar* m_toolbar;
    QWidget* m_paneArea;
    QVBoxLayout* m_paneLayout;
    std::unique_ptr<PaneStyleController> m_styleController;
    QPointer<QPropertyAnimation> m_animation;
};
