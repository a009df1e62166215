#include "panels/ControlRow.h"

#include "panels/ColorField.h"
#include "panels/CustomSlider.h"
#include "panels/ElidedLabel.h"
#include "panels/RowSwitch.h"
#include "panels/TemperatureBar.h"
#include "panels/Theme.h"

#include <QGridLayout>
#include <QResizeEvent>
#include <QToolButton>

namespace {
constexpr int controlSpacing = 6;
constexpr qreal nameFontSize = 12;
constexpr int disclosureSize = 14;
constexpr int nameColumn = 1;
constexpr int lastColumn = 3;
} // namespace

QFont ControlRow::nameFont(const QFont& base)
{
    QFont font = base;
    font.setPointSizeF(nameFontSize);
    return font;
}

int ControlRow::widthForName(int nameWidth)
{
    // Disclosure, name, slider and switch, with the spacing between them; a pixel for rounding.
    return disclosureSize + nameWidth + inlineSliderWidth + RowSwitch::outerSize().width() +
           3 * controlSpacing + 1;
}

ControlRow::ControlRow(QWidget* parent) : QWidget(parent)
{
    // Created in the order Tab visits them, the order they stand in: disclosure, slider, switch, then the
    // colour field and the white-tone bar below.
    m_more = new QToolButton(this);
    m_more->setObjectName(QStringLiteral("moreControls"));
    m_more->setCheckable(true);
    m_more->setAutoRaise(true);
    m_more->setArrowType(Qt::RightArrow);
    m_more->setFixedSize(disclosureSize, disclosureSize);
    m_more->setFocusPolicy(Qt::StrongFocus);
    m_more->setStyleSheet(QStringLiteral("QToolButton { border: none; padding: 0; }"
                                         "QToolButton:focus { border: 2px solid %1; border-radius: 3px; }")
                              .arg(Theme::focusRing(false).name()));
    // A row without colour or white tone keeps the button's room, so every name starts at the same place.
    QSizePolicy keepRoom = m_more->sizePolicy();
    keepRoom.setRetainSizeWhenHidden(true);
    m_more->setSizePolicy(keepRoom);
    m_name = new ElidedLabel(this);
    m_name->setFont(nameFont(m_name->font()));
    m_slider = new CustomSlider(this);
    m_switch = new RowSwitch(this);
    m_colorField = new ColorField(this);
    m_temperatureBar = new TemperatureBar(this);
    m_colorField->hide();
    m_temperatureBar->hide();

    m_grid = new QGridLayout(this);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(controlSpacing);
    m_grid->setVerticalSpacing(controlSpacing);
    m_grid->addWidget(m_more, 0, 0, Qt::AlignVCenter);
    m_grid->addWidget(m_name, 0, nameColumn);
    m_grid->addWidget(m_switch, 0, lastColumn, Qt::AlignVCenter);
    m_grid->addWidget(m_colorField, 2, nameColumn, 1, lastColumn);
    m_grid->addWidget(m_temperatureBar, 3, nameColumn, 1, lastColumn);
    m_grid->setColumnStretch(nameColumn, 1);
    arrange(true);

    connect(m_more, &QToolButton::toggled, this, &ControlRow::setExpanded);
    // Member pointers to the virtual actions call the light's or the room's own.
    connect(m_switch, &RowSwitch::clicked, this, &ControlRow::switchTo);
    connect(m_slider, &CustomSlider::valueChanged, this, &ControlRow::brightnessTo);
    connect(m_colorField, &ColorField::picked, this, &ControlRow::colorAt);
    connect(m_temperatureBar, &TemperatureBar::picked, this, &ControlRow::temperatureAt);
}

void ControlRow::arrange(bool oneLine)
{
    m_oneLine = oneLine;
    m_grid->removeWidget(m_slider);
    if (oneLine) {
        m_slider->setFixedWidth(inlineSliderWidth);
        m_grid->addWidget(m_slider, 0, 2, Qt::AlignVCenter);
    } else {
        m_slider->setMinimumWidth(0);
        m_slider->setMaximumWidth(QWIDGETSIZE_MAX);
        m_grid->addWidget(m_slider, 1, nameColumn, 1, lastColumn);
    }
}

void ControlRow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const bool oneLine = event->size().width() >= widthForName(shortestInlineName);
    if (oneLine != m_oneLine)
        arrange(oneLine);
}

void ControlRow::setExpanded(bool expanded)
{
    if (m_expanded == expanded)
        return;
    m_expanded = expanded;
    const QSignalBlocker quiet(m_more);
    m_more->setChecked(expanded);
    m_more->setArrowType(expanded ? Qt::DownArrow : Qt::RightArrow);
    applyFields();
}

void ControlRow::applyFields()
{
    const bool any = m_state.colorField || m_state.temperatureBar;
    if (m_more->isVisibleTo(this) != any)
        m_more->setVisible(any);
    const bool color = m_expanded && m_state.colorField;
    const bool whiteTone = m_expanded && m_state.temperatureBar;
    if (m_colorField->isVisibleTo(this) != color)
        m_colorField->setVisible(color);
    if (m_temperatureBar->isVisibleTo(this) != whiteTone)
        m_temperatureBar->setVisible(whiteTone);
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
    applyFields();
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
    m_more->setAccessibleName(tr("%1 colour and white tone").arg(name));
    m_more->setToolTip(tr("Show or hide the colour and white tone of %1").arg(name));
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
