#include "panels/ControlRow.h"

#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/ElidedLabel.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"
#include "panels/Theme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace {
constexpr int controlSpacing = 6;
constexpr qreal nameFontSize = 12;
} // namespace

ControlRow::ControlRow(QWidget* parent) : QWidget(parent)
{
    // Created in the order Tab visits them: switch, slider, colour field, white-tone bar.
    m_name = new ElidedLabel(this);
    QFont font = m_name->font();
    font.setPointSizeF(nameFontSize);
    m_name->setFont(font);
    m_switch = new RowSwitch(this);
    m_slider = new CustomSlider(this);
    m_colorField = new ColorField(this);
    m_temperatureBar = new TemperatureBar(this);
    m_colorField->hide();
    m_temperatureBar->hide();

    auto* header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 0, 0);
    header->setSpacing(controlSpacing);
    header->addWidget(m_name, 1);
    header->addWidget(m_switch, 0, Qt::AlignVCenter);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(controlSpacing);
    column->addLayout(header);
    column->addWidget(m_slider);
    column->addWidget(m_colorField);
    column->addWidget(m_temperatureBar);

    // Member pointers to the virtual actions call the light's or the room's own.
    connect(m_switch, &RowSwitch::clicked, this, &ControlRow::switchTo);
    connect(m_slider, &CustomSlider::valueChanged, this, &ControlRow::brightnessTo);
    connect(m_colorField, &ColorField::picked, this, &ControlRow::colorAt);
    connect(m_temperatureBar, &TemperatureBar::picked, this, &ControlRow::temperatureAt);
}

bool ControlRow::isInteracting() const
{
    return m_slider->isDragging() || m_colorField->isDragging() || m_temperatureBar->isDragging();
}

void ControlRow::setBridgeReachable(bool reachable)
{
    if (m_reachable == reachable)
        return;
    m_reachable = reachable;
    applyDimming();
}

void ControlRow::showState(const RowState& state)
{
    // A refresh every few seconds brings the same values again: then nothing is touched.
    if (m_shownOnce && state == m_state)
        return;
    const bool renamed = !m_shownOnce || state.name != m_state.name;
    m_state = state;
    m_shownOnce = true;
    if (renamed)
        applyName();
    m_switch->setChecked(state.on);
    if (!m_slider->isDragging())
        m_slider->setValue(float(state.brightness) / 255.0f);
    if (!m_colorField->isDragging())
        m_colorField->setMarker(state.hue, state.saturation);
    if (!m_temperatureBar->isDragging())
        m_temperatureBar->setMarker(state.warmth);
    if (m_slider->isVisibleTo(this) != state.slider)
        m_slider->setVisible(state.slider);
    if (m_colorField->isVisibleTo(this) != state.colorField)
        m_colorField->setVisible(state.colorField);
    if (m_temperatureBar->isVisibleTo(this) != state.temperatureBar)
        m_temperatureBar->setVisible(state.temperatureBar);
    applyDimming();
}

void ControlRow::applyName()
{
    const QString& name = m_state.name;
    m_name->setFullText(name);
    // A screen reader announces each control on its own: each carries the lamp's or room's name.
    m_switch->setAccessibleName(name);
    m_slider->setAccessibleName(tr("%1 brightness").arg(name));
    m_colorField->setAccessibleName(tr("%1 colour").arg(name));
    m_temperatureBar->setAccessibleName(tr("%1 white tone").arg(name));
}

void ControlRow::applyDimming()
{
    const bool dimmed = !m_state.on || !m_reachable;
    if (dimmed == m_dimmed)
        return;
    m_dimmed = dimmed;
    // The switch stays clear: it is what brings the row back.
    m_name->setTextOpacity(dimmed ? Theme::dimmedOpacity : 1.0);
    m_slider->setDimmed(dimmed);
    m_colorField->setDimmed(dimmed);
    m_temperatureBar->setDimmed(dimmed);
}
