#pragma once

#include "panels/PanelControl.h"

/// The brightness slider of a row: a full-width rounded track whose filled part grows with the value. A press
/// and every move of the drag set the value from the pointer's position at once, with no step and no minimum
/// distance; the action queue merges the resulting flood of commands. Left and Right move it by 5 %, Page Up
/// and Page Down by 20 %, Home and End to either end; each key press is one change, like a drag event.
class CustomSlider final : public PanelControl
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CustomSlider)

public:
    /// Height of the track, in points.
    static constexpr int trackHeight = 16;
    /// One arrow key's step and one page key's step, as fractions of the range.
    static constexpr float keyStepSize = 0.05f;
    static constexpr float pageStepSize = 0.2f;

    explicit CustomSlider(QWidget* parent = nullptr);

    /// The shown value, 0 to 1.
    float value() const { return m_value; }
    /// Shows @p value (clamped to 0-1) without emitting `valueChanged`.
    void setValue(float value);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// In per cent.
    double accessibleValue() const override { return double(m_value) * 100; }
    double accessibleMaximum() const override { return 100; }
    double accessibleStep() const override { return double(keyStepSize) * 100; }
    void setAccessibleValue(double value) override;

Q_SIGNALS:
    /// The user moved the slider to @p value (0 to 1); sent for the press, every move and the release, and
    /// for every key.
    void valueChanged(float value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void pointerAt(QPointF position) override;
    void keyStep(int steps, int rows, bool page, int toEnd) override;

private:
    void moveTo(float value);

    float m_value = 0;
};
