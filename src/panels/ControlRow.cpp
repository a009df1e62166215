#include "panels/ControlRow.h"

#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {
constexpr int controlSpacing = 6;
constexpr qreal nameFontSize = 12;
} // namespace

ControlRow::ControlRow(QWidget* parent) : QWidget(parent)
{
    m_name = new QLabel(this);
    QFont font = m_name->font();
    font.setPointSizeF(nameFontSize);
    m_name->setFont(font);
    m_name->setTextFormat(Qt::PlainText);
    // A long name is cut by the row rather than widening the window.
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_switch = new RowSwitch(this);
    m_slider = new CustomSlider(this);
    m_colorField = new ColorField(this);
    m_temperatureBar = new TemperatureBar(this);
    m_colorField->hide();
    m_temperatureBar->hide();

    auto* header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 0, 0);
    header->addWidget(m_name, 1);
    header->addWidget(m_switch, 0, Qt::AlignVCenter);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(controlSpacing);
    column->addLayout(header);
    column->addWidget(m_slider);
    column->addWidget(m_colorField);
    column->addWidget(m_temperatureBar);

    connect(m_switch, &RowSwitch::clicked, this, &ControlRow::onSwitchClicked);
    connect(m_slider, &CustomSlider::valueChanged, this, &ControlRow::onSliderMoved);
    connect(m_colorField, &ColorField::picked, this, &ControlRow::onColorPicked);
    connect(m_temperatureBar, &TemperatureBar::picked, this, &ControlRow::onTemperaturePicked);
}

bool ControlRow::isInteracting() const
{
    return m_slider->isDragging() || m_colorField->isDragging() || m_temperatureBar->isDragging();
}

void ControlRow::showState(const QString& name, bool on, qint64 brightness)
{
    if (m_name->text() != name)
        m_name->setText(name);
    m_switch->setChecked(on);
    if (!m_slider->isDragging())
        m_slider->setValue(float(brightness) / 255.0f);
}

void ControlRow::showBars(bool colorField, bool temperatureBar)
{
    m_colorField->setVisible(colorField);
    m_temperatureBar->setVisible(temperatureBar);
}

void ControlRow::onSwitchClicked(bool on)
{
    switchTo(on);
}

void ControlRow::onSliderMoved(float value)
{
    brightnessTo(value);
}

void ControlRow::onColorPicked(double x, double y)
{
    colorAt(x, y);
}

void ControlRow::onTemperaturePicked(double x)
{
    temperatureAt(x);
}
