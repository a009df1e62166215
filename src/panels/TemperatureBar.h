#pragma once

#include "panels/PanelControl.h"

#include <QPixmap>

/// The white-tone bar of a row ("temp_curve"): the white range from cool on the left to warm on the right,
/// 14 points high and stretched to the row, with a small mark at the current tone. A press, every move of
/// the drag and the release report where the pointer is, as a fraction of the bar's real width; Left and
/// Right step by a twentieth, Page Up and Page Down by a fifth, Home and End go to either end.
class TemperatureBar final : public PanelControl
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TemperatureBar)

public:
    static constexpr int barHeight = 14;

    explicit TemperatureBar(QWidget* parent = nullptr);

    /// Marks the current tone, a fraction 0 (coolest) to 1 (warmest) of the range (no signal).
    void setMarker(double warmth);
    double markedWarmth() const { return m_warmth; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// In per cent of the range, from the coolest.
    double accessibleValue() const override { return m_warmth * 100; }
    double accessibleMaximum() const override { return 100; }
    double accessibleStep() const override { return 5; }
    void setAccessibleValue(double value) override;

Q_SIGNALS:
    /// The user picked the tone at @p warmth, a fraction 0 to 1 of the bar.
    void picked(double warmth);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void pointerAt(QPointF position) override;
    void keyStep(int steps, int rows, bool page, int toEnd) override;

private:
    void renderCurve();
    void pick(double warmth);

    QPixmap m_curve; // drawn again only when the size changes
    double m_warmth = 0;
};
