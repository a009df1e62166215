#pragma once

#include <QWidget>

class HeightGrip;

/// The borderless window that hosts the content under the tray icon. The content paints its own rounded
/// background; the window only adds the height grip and, on X11, a rounded shape.
class DropDownWindow final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DropDownWindow)

public:
    static constexpr int contentWidth = 200;
    static constexpr int minimumWindowHeight = 200;
    static constexpr int cornerRadius = 10;

    /// Takes ownership of `content`.
    explicit DropDownWindow(QWidget* content);

    QWidget* content() const { return m_content; }
    HeightGrip* grip() const { return m_grip; }

Q_SIGNALS:
    /// The window lost the focus to another window (of this or another program).
    void deactivated();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_content;
    HeightGrip* m_grip;
};
