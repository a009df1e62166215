#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class QToolButton;
class QVBoxLayout;

/// Glowdeck as an ordinary window, for desktops without a system tray: the drop-down's content in a small
/// window with the usual decorations, which minimises to the task bar and whose close button only hides it
/// (the shortcuts keep working; a second start or "Open Glowdeck" brings it back). Above the content it can
/// say once why Glowdeck shows here.
class AppWindow final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AppWindow)

public:
    AppWindow();

    /// Shows `content` (re-parented here); the previous content, if any, is handed back first.
    void adoptContent(QWidget* content);
    /// Takes the content out again (unparented) and returns it.
    QWidget* releaseContent();
    QWidget* content() const { return m_content; }

    /// A line above the content with a button that dismisses it; an empty text hides it.
    void setNotice(const QString& text);
    QString notice() const;

Q_SIGNALS:
    /// The user closed the window (it is hidden, not destroyed).
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* m_noticeBar;
    QLabel* m_notice;
    QVBoxLayout* m_layout;
    QPointer<QWidget> m_content;
};
