#pragma once

#include <QString>
#include <QWidget>

class ColorField;
class CustomSlider;
class ElidedLabel;
class QGridLayout;
class QToolButton;
class RowSwitch;
class TemperatureBar;

/// What a row shows of its lamp or room; a row given the same state again does nothing at all.
struct RowState
{
    QString name;
    bool on = false;
    qint64 brightness = 0;
    /// Markers, as fractions of the colour field and the white-tone bar.
    double hue = 0;
    double saturation = 0;
    double warmth = 0;
    bool slider = true; ///< the brightness slider: not for a lamp that only switches (a plug)
    bool colorField = false;
    bool temperatureBar = false;

    bool operator==(const RowState&) const = default;
};

/// What a light row and a room row share: one line with the name, the brightness slider and the on/off
/// switch (the slider takes a line of its own below the name when the row is too narrow for both), and under
/// it, on demand, the colour field and the white-tone bar where they apply. A small disclosure button at the
/// start of the line shows and hides them; it is a Tab stop of its own, named after the lamp or room. The
/// rows stay alive across refreshes and are updated in place, so a drag in progress survives a refresh
/// arriving in its middle, and a refresh that changes nothing costs no widget work. A row that is off, or
/// every row while the bridge cannot be reached, is drawn dimmed and keeps working.
class ControlRow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ControlRow)

public:
    /// The slider's width while it shares the line with the name.
    static constexpr int inlineSliderWidth = 80;
    /// The narrowest name for which the slider stays on the name's line.
    static constexpr int shortestInlineName = 60;

    /// The font of the names.
    static QFont nameFont(const QFont& base);
    /// The row width at which a name @p nameWidth wide shows whole, on one line with the slider and switch.
    static int widthForName(int nameWidth);

    /// True while the user holds the pointer down on one of the row's controls.
    bool isInteracting() const;
    /// Dims the row while the bridge cannot be reached.
    void setBridgeReachable(bool reachable);
    bool isDimmed() const { return m_dimmed; }
    QString name() const { return m_state.name; }
    /// Whether name, slider and switch share one line at the row's width.
    bool isOneLine() const { return m_oneLine; }
    /// Whether the colour field and the white-tone bar (those that apply) show.
    bool isExpanded() const { return m_expanded; }
    void setExpanded(bool expanded);

protected:
    explicit ControlRow(QWidget* parent = nullptr);

    /// Shows the record's values; a control being dragged keeps the user's position.
    void showState(const RowState& state);

    virtual void switchTo(bool on) = 0;
    virtual void brightnessTo(float sliderValue) = 0;
    /// The user picked a colour at these fractions of the colour field.
    virtual void colorAt(double hue, double saturation) = 0;
    /// The user picked a white tone at this fraction of the white-tone bar.
    virtual void temperatureAt(double warmth) = 0;

    void resizeEvent(QResizeEvent* event) override;

    QToolButton* m_more = nullptr;
    ElidedLabel* m_name = nullptr;
    RowSwitch* m_switch = nullptr;
    CustomSlider* m_slider = nullptr;
    ColorField* m_colorField = nullptr;
    TemperatureBar* m_temperatureBar = nullptr;

private:
    void applyName();
    void applyDimming();
    void applyFields();
    /// Puts the slider on the name's line or on a line of its own.
    void arrange(bool oneLine);

    QGridLayout* m_grid = nullptr;
    RowState m_state;
    bool m_oneLine = false;
    bool m_expanded = false;
    bool m_shownOnce = false;
    bool m_reachable = true;
    bool m_dimmed = false;
};
