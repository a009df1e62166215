#pragma once

#include <QWidget>

class QPainter;

/// What the brightness slider, the colour field and the white-tone bar share: a press and every move of the
/// drag report the pointer at once, with no minimum distance; the arrow keys, Page Up and Page Down, Home and
/// End step the value from the keyboard; a ring shows the keyboard focus; the control can be drawn dimmed
/// (its row is off, or the bridge cannot be reached) and still works. Its accessible interface is a slider
/// whose value runs from 0 to `accessibleMaximum()`.
class PanelControl : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelControl)

public:
    /// True between a press and its release: the row must not overwrite the value from a refresh then.
    bool isDragging() const { return m_dragging; }

    /// Draws the control faded; it keeps working.
    void setDimmed(bool dimmed);
    bool isDimmed() const { return m_dimmed; }

    /// The value an assistive technology reads and sets, from 0 to `accessibleMaximum()`.
    virtual double accessibleValue() const = 0;
    virtual double accessibleMaximum() const = 0;
    /// The step of one arrow key, in the units of `accessibleValue()`.
    virtual double accessibleStep() const = 0;
    /// Sets the value as if the user had moved the control there.
    virtual void setAccessibleValue(double value) = 0;

protected:
    explicit PanelControl(QWidget* parent = nullptr);

    /// The pointer is at `position` during a press, a drag or its release.
    virtual void pointerAt(QPointF position) = 0;
    /// A key moved the value by `steps` small steps horizontally and `rows` steps vertically; `page` asks
    /// for large steps, `toEnd` for the lowest (negative) or highest (positive) value.
    virtual void keyStep(int steps, int rows, bool page, int toEnd) = 0;

    /// Tells assistive technologies that the value changed (nothing when none listens).
    void announceValue();
    /// The opacity the control draws with: lower while dimmed.
    qreal paintOpacity() const;
    /// Draws the keyboard-focus ring around `rect` when the focus came from the keyboard.
    void paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius) const;

    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_dragging = false;
    bool m_dimmed = false;
    bool m_keyboardFocus = false;
};
