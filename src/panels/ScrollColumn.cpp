#include "panels/ScrollColumn.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QResizeEvent>
#include <QVBoxLayout>

namespace {

/// The row's controls Tab stops at, in the row's own order (the order they were made in).
QList<QWidget*> tabStops(QWidget* row)
{
    QList<QWidget*> stops;
    if (row->focusPolicy() & Qt::TabFocus)
        stops.append(row);
    for (QWidget* child : row->findChildren<QWidget*>()) {
        if (child->focusPolicy() & Qt::TabFocus)
            stops.append(child);
    }
    return stops;
}

/// Qt tells screen readers of a scroll area's viewport, scroll bars and corner only: the header above the
/// rows (the filter field) would be on screen and in the Tab order but missing from the accessibility tree.
/// The column is told as a plain pane of all its child widgets instead.
QAccessibleInterface* accessibleColumn(const QString& className, QObject* object)
{
    if (className != u"ScrollColumn" || !object->isWidgetType())
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Pane);
}

} // namespace

ScrollColumn::ScrollColumn(int padding, int spacing, QWidget* parent)
    : QScrollArea(parent), m_padding(padding)
{
    static const bool accessible = [] {
        QAccessible::installFactory(accessibleColumn);
        return true;
    }();
    Q_UNUSED(accessible);
    setFrameShape(QFrame::NoFrame);
    // Tab goes through the rows' controls; the column itself would be an invisible stop between them.
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    // The window's rounded background shows through.
    viewport()->setAutoFillBackground(false);

    m_content = new QWidget;
    m_content->setAutoFillBackground(false);
    m_column = new QVBoxLayout(m_content);
    m_column->setContentsMargins(padding, padding, padding, padding);
    m_column->setSpacing(spacing);
    m_column->addStretch(1);
    setWidget(m_content);
}

void ScrollColumn::arrange(const QList<QWidget*>& rows, Qt::Alignment alignment)
{
    if (rows == m_rows)
        return;
    for (QWidget* row : std::as_const(m_rows))
        m_column->removeWidget(row);
    int index = 0;
    for (QWidget* row : rows) {
        m_column->insertWidget(index++, row, 0, alignment);
        row->show();
    }
    m_rows = rows;

    chainTabStops();
}

void ScrollColumn::chainTabStops()
{
    // New rows join the end of the window's focus chain, and a reordered list keeps the old chain: set it
    // again, row by row, so Tab walks the list from top to bottom, after the header.
    QWidget* previous = m_header && m_header->isVisibleTo(this) ? m_header : nullptr;
    for (QWidget* row : std::as_const(m_rows)) {
        for (QWidget* stop : tabStops(row)) {
            if (previous)
                QWidget::setTabOrder(previous, stop);
            previous = stop;
        }
    }
}

int ScrollColumn::naturalHeight() const
{
    return headerHeight() + m_content->sizeHint().height() + 2 * frameWidth();
}

void ScrollColumn::setHeader(QWidget* header)
{
    m_header = header;
    header->setParent(this);
    header->hide();
    placeHeader();
}

void ScrollColumn::setHeaderVisible(bool visible)
{
    if (!m_header || m_header->isVisibleTo(this) == visible)
        return;
    m_header->setVisible(visible);
    chainTabStops();
    placeHeader();
    if (m_embedded)
        setFixedHeight(naturalHeight());
}

int ScrollColumn::headerHeight() const
{
    return m_header && m_header->isVisibleTo(this) ? m_header->sizeHint().height() + m_padding : 0;
}

void ScrollColumn::placeHeader()
{
    const int height = headerHeight();
    if (viewportMargins().top() != height)
        setViewportMargins(0, height, 0, 0);
    // As wide as the rows below it: clear of a scroll bar, which runs the column's whole height.
    const QRect rows = viewport()->geometry();
    if (height > 0)
        m_header->setGeometry(rows.left() + m_padding, m_padding, rows.width() - 2 * m_padding,
                              height - m_padding);
}

bool ScrollColumn::viewportEvent(QEvent* event)
{
    // The scroll bar came or went: the header follows the rows' width.
    if (event->type() == QEvent::Resize)
        placeHeader();
    return QScrollArea::viewportEvent(event);
}

void ScrollColumn::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    placeHeader();
}

void ScrollColumn::setEmbedded()
{
    m_embedded = true;
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_content->installEventFilter(this);
    setFixedHeight(naturalHeight());
}

bool ScrollColumn::eventFilter(QObject* watched, QEvent* event)
{
    // Rows added, removed or rewrapped: the column takes the height they need.
    if (m_embedded && watched == m_content && event->type() == QEvent::LayoutRequest)
        setFixedHeight(naturalHeight());
    return QScrollArea::eventFilter(watched, event);
}
