#pragma once

#include <QWidget>

/// The brightness slider of a row: a full-width rounded track whose filled part grows with the value. A press
/// and every move of the drag set the value from the pointer's position at once, with no step and no minimum
/// distance; the action queue merges the resulting flood of commands.
class CustomSlider final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CustomSlider)

public:
    /// Height of the track, in points.
    static constexpr int trackHeight = 16;

    explicit CustomSlider(QWidget* parent = nullptr);

    /// The shown value, 0 to 1.
    float value() const { return m_value; }
    /// Shows @p value (clamped to 0-1) without emitting `valueChanged`.
    void setValue(float value);
    /// True between a press and its release: the row must not overwrite the value from a refresh then.
    bool isDragging() const { return m_dragging; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user moved the slider to @p value (0 to 1); sent for the press, every move and the release.
    void valueChanged(float value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void followPointer(qreal x);

    float m_value = 0;
    bool m_dragging = false;
};
