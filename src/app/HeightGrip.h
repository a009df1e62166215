#pragma once

#include <QWidget>

/// A strip along the edge of the drop-down window away from the panel (the bottom edge when the window opens
/// downwards, the top edge when it opens upwards), with a small visible handle, that drags the window's
/// height. The opposite edge stays where it is, next to the panel. Its trailing corner drags the width as
/// well, between the window's minimum and half the screen.
class HeightGrip final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HeightGrip)

public:
    static constexpr int thickness = 8;
    /// How far from the trailing end a press takes the width along.
    static constexpr int cornerLength = 18;

    explicit HeightGrip(QWidget* window);

    /// Which edge of the window the grip sits on: Qt::BottomEdge or Qt::TopEdge.
    void setEdge(Qt::Edge edge);
    Qt::Edge edge() const { return m_edge; }
    /// Lays the grip along its edge of the window.
    void place();

Q_SIGNALS:
    /// The user let go after changing the height.
    void resizeFinished();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QWidget* m_window;
    Qt::Edge m_edge = Qt::BottomEdge;
    QPoint m_press;
    QRect m_startFrame;
    bool m_dragging = false;
    bool m_moved = false;
    bool m_corner = false; // the press was in the corner: the width follows too
};
