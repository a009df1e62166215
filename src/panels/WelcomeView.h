#pragma once

#include <QWidget>

/// The first-start greeting: one sentence on where the program lives and a button to begin. What the button
/// leads to (closing this window, opening the drop-down window, remembering the greeting) is the shell's.
class WelcomeView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WelcomeView)

public:
    explicit WelcomeView(QWidget* parent = nullptr);

    /// Says where Glowdeck lives: behind an icon in the panel when there is a tray, in a window of its own
    /// when there is none.
    void setTrayAvailable(bool available);
    /// Why Glowdeck shows in a window of its own and what closing it does: the greeting's text without a
    /// tray, and the window's note for a user who was greeted before.
    static QString windowModeText();

Q_SIGNALS:
    /// The user pressed "Let's go!".
    void letsGo();

private:
    class QLabel* m_text;
};
