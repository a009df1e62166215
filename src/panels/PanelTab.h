#pragma once

#include <QAbstractButton>

/// One emoji tab of the panel row, drawn as a rounded label; the whole tab takes the click. Tab reaches it
/// and Space presses it. Assistive technologies see a page tab named after its panel ("Lights", "Rooms",
/// "Scenes"), selected while its panel is shown.
class PanelTab final : public QAbstractButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelTab)

public:
    /// @p label is the emoji drawn; @p name the panel's name, for the tooltip and assistive technologies.
    PanelTab(const QString& label, const QString& name, QWidget* parent = nullptr);

    void setActive(bool active);
    bool isActive() const { return m_active; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_active = false;
};
