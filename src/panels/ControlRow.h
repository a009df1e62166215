#pragma once

#include <QString>
#include <QWidget>

class ColorField;
class CustomSlider;
class ElidedLabel;
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

/// What a light row and a room row share: a header with the name and the on/off switch, the brightness
/// slider, then the colour field and the white-tone bar where they apply. The rows stay alive across
/// refreshes and are updated in place, so a drag in progress survives a refresh arriving in its middle, and a
/// refresh that changes nothing costs no widget work. A row that is off, or every row while the bridge
/// cannot be reached, is drawn dimmed and keeps working.
class ControlRow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ControlRow)

public:
    /// True while the user holds the pointer down on one of the row's controls.
    bool isInteracting() const;
    /// Dims the row while the bridge cannot be reached.
    void setBridgeReachable(bool reachable);
    bool isDimmed() const { return m_dimmed; }
    QString name() const { return m_state.name; }

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

    ElidedLabel* m_name = nullptr;
    RowSwitch* m_switch = nullptr;
    CustomSlider* m_slider = nullptr;
    ColorField* m_colorField = nullptr;
    TemperatureBar* m_temperatureBar = nullptr;

private:
    void applyName();
    void applyDimming();

    RowState m_state;
    bool m_shownOnce = false;
    bool m_reachable = true;
    bool m_dimmed = false;
};
