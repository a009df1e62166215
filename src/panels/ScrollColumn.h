#pragma once

#include <QList>
#include <QScrollArea>

class QVBoxLayout;

/// A transparent, vertically scrolling column of rows, the body of the lights, rooms and scenes panels.
/// The owner creates and deletes the rows; the column only keeps them in the given order.
class ScrollColumn : public QScrollArea
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ScrollColumn)

public:
    /// The rows, top to bottom.
    QList<QWidget*> rows() const { return m_rows; }
    /// The height that shows every row without scrolling.
    int naturalHeight() const;
    /// Inside a column that scrolls (a bridge's section of the window): this one never scrolls and is always
    /// as tall as its rows.
    void setEmbedded();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;

    /// A widget above the rows that stays in place while they scroll (a filter field); Tab reaches it before
    /// the rows. It is a child of the column, not of the scrolling part: screen readers see it wherever the
    /// list is scrolled to. Shown and hidden with `setHeaderVisible`.
    void setHeader(QWidget* header);
    void setHeaderVisible(bool visible);

    /// @p padding around the rows and @p spacing between them, in points.
    ScrollColumn(int padding, int spacing, QWidget* parent);

    /// The parent for new rows.
    QWidget* content() const { return m_content; }
    /// Shows exactly @p rows in this order; rows left out are removed from the column (not deleted). Tab
    /// then visits the rows' controls in this order too. The same rows in the same order cost nothing.
    void arrange(const QList<QWidget*>& rows, Qt::Alignment alignment = {});

private:
    QWidget* m_content = nullptr;
    QVBoxLayout* m_column = nullptr;
    void placeHeader();
    void chainTabStops();
    int headerHeight() const;

    QWidget* m_header = nullptr;
    QList<QWidget*> m_rows;
    int m_padding = 0;
    bool m_embedded = false;
};
