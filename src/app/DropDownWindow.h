#pragma once

#include <QRegion>
#include <QWidget>

class HeightGrip;

/// The borderless window that hosts the content under the tray icon. The content paints its own rounded
/// background; the window adds the height grip, closes on Escape and, where the desktop does not compose
/// windows, cuts its corners out with a shape that holds only fully painted pixels.
class DropDownWindow final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DropDownWindow)

public:
    /// The narrowest the window gets, and its width until the user drags it wider.
    static constexpr int contentWidth = 200;
    static constexpr int minimumWindowHeight = 200;
    static constexpr int cornerRadius = 10;

    /// Takes ownership of `content`.
    explicit DropDownWindow(QWidget* content);

    QWidget* content() const { return m_content; }
    HeightGrip* grip() const { return m_grip; }
    /// Hands the content to the window of a desktop without a tray, and takes it back.
    QWidget* releaseContent();
    void adoptContent(QWidget* content);

    /// Whether the window cuts its corners out with a shape (set before each showing: a compositing manager
    /// may have started or stopped since the last one).
    void setShapedCorners(bool shaped);
    bool hasShapedCorners() const { return m_shaped; }

    /// The pixels of a `size` window that an antialiased rounded rectangle of `radius` covers completely.
    /// Partly covered edge pixels are left out: without a compositor they would show black.
    static QRegion fullyCoveredRegion(QSize size, qreal radius);

Q_SIGNALS:
    /// The window lost the focus to another window (of this or another program).
    void deactivated();
    /// The user pressed Escape in the window.
    void escapePressed();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateShape();

    QWidget* m_content;
    HeightGrip* m_grip;
    bool m_shaped = false;
};
