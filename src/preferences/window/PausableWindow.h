#pragma once

#include <QWidget>

/// A top-level window that can stop taking input for a moment: while user interaction is disabled it drops
/// mouse, key and shortcut events meant for itself or anything inside it, so a click during the animated
/// resize cannot start a second pane switch.
class PausableWindow final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PausableWindow)

public:
    explicit PausableWindow(QWidget* parent = nullptr);
    ~PausableWindow() override;

    bool isUserInteractionEnabled() const { return m_interactive; }
    void setUserInteractionEnabled(bool enabled);

Q_SIGNALS:
    /// The window was hidden (closed by the user or by a shortcut).
    void hidden();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool m_interactive = true;
};
