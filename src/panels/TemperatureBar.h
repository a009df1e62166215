#pragma once

#include <QPixmap>
#include <QWidget>

/// The white-tone bar of a row ("temp_curve"): the white range from cool on the left to warm on the right,
/// 14 points high and stretched to the row. A press, every move of the drag and the release report the
/// pointer's local x, unclamped; the row maps it onto the record's colour-temperature range.
class TemperatureBar final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TemperatureBar)

public:
    /// Nominal width of the bar, in points: the row computes the temperature against it.
    static constexpr qreal nominalWidth = 180;
    static constexpr int barHeight = 14;

    explicit TemperatureBar(QWidget* parent = nullptr);

    /// True between a press and its release.
    bool isDragging() const { return m_dragging; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user pressed or dragged on the bar at local @p x.
    void picked(double x);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void renderCurve();

    QPixmap m_curve; // drawn again only when the size changes
    bool m_dragging = false;
};
