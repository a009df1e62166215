#include "app/HeightGrip.h"

#include <QMouseEvent>

HeightGrip::HeightGrip(QWidget* window) : QWidget(window), m_window(window)
{
    setCursor(Qt::SizeVerCursor);
    setAttribute(Qt::WA_NoSystemBackground);
}

void HeightGrip::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_moved = false;
    m_pressY = qRound(event->globalPosition().y());
    m_startHeight = m_window->height();
}

void HeightGrip::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging)
        return;
    const int height = m_startHeight + qRound(event->globalPosition().y()) - m_pressY;
    m_window->resize(m_window->width(), std::max(height, m_window->minimumHeight()));
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
