#pragma once

#include "panels/PanelControl.h"

#include <QPixmap>

/// The colour field of a row: hue runs left to right, saturation grows downward, and a small ring marks the
/// current colour. A press, every move of the drag and the release report where the pointer is, as fractions
/// of the field's real size; Left and Right step the hue by a twentieth, Page Up and Page Down by a fifth,
/// Up and Down the saturation, each as one change.
class ColorField final : public PanelControl
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ColorField)

public:
    /// Height of the field, in points.
    static constexpr int fieldHeight = 50;

    explicit ColorField(QWidget* parent = nullptr);

    /// Marks the current colour, hue and saturation as fractions 0 to 1 (no signal).
    void setMarker(double hue, double saturation);
    double markedHue() const { return m_hue; }
    double markedSaturation() const { return m_saturation; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// The hue, in degrees.
    double accessibleValue() const override { return m_hue * 360; }
    double accessibleMaximum() const override { return 360; }
    double accessibleStep() const override { return 360.0 / 20; }
    void setAccessibleValue(double value) override;

Q_SIGNALS:
    /// The user picked the colour at (@p hue, @p saturation), fractions 0 to 1 of the field.
    void picked(double hue, double saturation);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void pointerAt(QPointF position) override;
    void keyStep(int steps, int rows, bool page, int toEnd) override;

private:
    void renderGradient();
    void pick(double hue, double saturation);

    QPixmap m_gradient; // the field is repainted on every refresh; its 24 gradients only on resize
    double m_hue = 0;
    double m_saturation = 0;
};
