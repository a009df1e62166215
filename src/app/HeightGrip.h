#pragma once

#include <QWidget>

#include <functional>

/// A thin strip along the bottom edge of the drop-down window that drags the window's height.
class HeightGrip final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HeightGrip)

public:
    static constexpr int thickness = 6;

    explicit HeightGrip(QWidget* window);

Q_SIGNALS:
    /// The user let go after changing the height.
    void resizeFinished();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QWidget* m_window;
    int m_pressY = 0;
    int m_startHeight = 0;
    bool m_dragging = false;
    bool m_moved = false;
};
