#pragma once

#include <QPixmap>
#include <QWidget>

/// The colour field of a row: hue runs left to right, saturation grows downward. A press, every move of the
/// drag and the release report the pointer in local coordinates, unclamped; the row turns them into hue and
/// saturation against the field's nominal 180 by 50 points.
class ColorField final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ColorField)

public:
    /// Nominal size of the field, in points: the row's hue and saturation are computed against it.
    static constexpr qreal nominalWidth = 180;
    static constexpr qreal nominalHeight = 50;

    explicit ColorField(QWidget* parent = nullptr);

    /// True between a press and its release.
    bool isDragging() const { return m_dragging; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user pressed or dragged on the field at (@p x, @p y).
    void picked(double x, double y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void renderGradient();

    QPixmap m_gradient; // the field is repainted on every refresh; its 24 gradients only on resize
    bool m_dragging = false;
};
