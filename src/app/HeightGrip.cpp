#include "app/HeightGrip.h"

#include "panels/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace {
constexpr qreal handleWidth = 28;
constexpr qreal handleHeight = 3;
} // namespace

HeightGrip::HeightGrip(QWidget* window) : QWidget(window), m_window(window)
{
    setCursor(Qt::SizeVerCursor);
    setAttribute(Qt::WA_NoSystemBackground);
    setAccessibleName(tr("Resize"));
    setToolTip(tr("Drag to change the height, or at the corner the size"));
    setMouseTracking(true);
}

void HeightGrip::setEdge(Qt::Edge edge)
{
    if (m_edge == edge)
        return;
    m_edge = edge;
    place();
}

void HeightGrip::place()
{
    const int y = m_edge == Qt::TopEdge ? 0 : m_window->height() - thickness;
    setGeometry(0, y, m_window->width(), thickness);
    raise();
}

void HeightGrip::paintEvent(QPaintEvent*)
{
    // A short rounded bar in the text colour, faint enough not to compete with the rows.
    QColor ink = Theme::text(Theme::isDark(this));
    ink.setAlphaF(0.35f);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    const QRectF handle((width() - handleWidth) / 2, (height() - handleHeight) / 2, handleWidth,
                        handleHeight);
    painter.drawRoundedRect(handle, handleHeight / 2, handleHeight / 2);
    // Three dots in the trailing corner: that end takes the width along.
    const qreal dot = 2;
    for (int i = 0; i < 3; ++i)
        painter.drawEllipse(QRectF(width() - 6 - i * 4, (height() - dot) / 2, dot, dot));
}

void HeightGrip::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_moved = false;
    m_corner = event->position().x() >= width() - cornerLength;
    m_press = event->globalPosition().toPoint();
    m_startFrame = m_window->geometry();
}

void HeightGrip::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        const bool corner = event->position().x() >= width() - cornerLength;
        setCursor(!corner                 ? Qt::SizeVerCursor
                  : m_edge == Qt::TopEdge ? Qt::SizeBDiagCursor
                                          : Qt::SizeFDiagCursor);
        return;
    }
    const QPoint moved = event->globalPosition().toPoint() - m_press;
    const int delta = moved.y();
    QRect frame = m_startFrame;
    const QScreen* screen = m_window->screen();
    const QRect available = screen ? screen->availableGeometry() : QRect();
    if (m_corner) {
        // The leading edge stays; the trailing one follows, up to half the screen and not off it.
        int widest = available.isValid()
                         ? std::min(available.width() / 2, available.right() + 1 - frame.left())
                         : m_window->maximumWidth();
        widest = std::max(widest, m_window->minimumWidth());
        frame.setWidth(std::clamp(m_startFrame.width() + moved.x(), m_window->minimumWidth(), widest));
    }
    if (m_edge == Qt::TopEdge) {
        // The bottom edge stays by the panel; the top follows the pointer, not above the screen's top.
        int top = std::min(m_startFrame.top() + delta, m_startFrame.bottom() + 1 - m_window->minimumHeight());
        if (available.isValid())
            top = std::max(top, available.top());
        frame.setTop(top);
    } else {
        int height = std::max(m_startFrame.height() + delta, m_window->minimumHeight());
        if (available.isValid())
            height =
                std::max(m_window->minimumHeight(), std::min(height, available.bottom() + 1 - frame.top()));
        frame.setHeight(height);
    }
    m_window->setGeometry(frame);
    m_moved = true;
}

void HeightGrip::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_dragging)
        return;
    m_dragging = false;
    if (m_moved)
        Q_EMIT resizeFinished();
}

void HeightGrip::leaveEvent(QEvent* event)
{
    setCursor(Qt::SizeVerCursor);
    QWidget::leaveEvent(event);
}
