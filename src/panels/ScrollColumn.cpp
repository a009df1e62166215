#include "panels/ScrollColumn.h"

#include <QVBoxLayout>

ScrollColumn::ScrollColumn(int padding, int spacing, QWidget* parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
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
}
