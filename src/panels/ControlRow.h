#pragma once

#include <QWidget>

class ColorField;
class CustomSlider;
class QLabel;
class RowSwitch;
class TemperatureBar;

/// What a light row and a room row share: a header with the name and the on/off switch, the brightness
/// slider, then the colour field and the white-tone bar where they apply. The rows stay alive across
/// refreshes and are updated in place, so a drag in progress survives a refresh arriving in its middle.
class ControlRow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ControlRow)

public:
    /// True while the user holds the pointer down on one of the row's controls.
    bool isInteracting() const;

protected:
    explicit ControlRow(QWidget* parent = nullptr);

    /// Shows the record's values; the slider keeps the user's position while it is dragged.
    void showState(const QString& name, bool on, qint64 brightness);
    void showBars(bool colorField, bool temperatureBar);

    virtual void switchTo(bool on) = 0;
    virtual void brightnessTo(float sliderValue) = 0;
    virtual void colorAt(double x, double y) = 0;
    virtual void temperatureAt(double x) = 0;

    QLabel* m_name = nullptr;
    RowSwitch* m_switch = nullptr;
    CustomSlider* m_slider = nullptr;
    ColorField* m_colorField = nullptr;
    TemperatureBar* m_temperatureBar = nullptr;

private:
    void onSwitchClicked(bool on);
    void onSliderMoved(float value);
    void onColorPicked(double x, double y);
    void onTemperaturePicked(double x);
};
