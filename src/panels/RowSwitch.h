#pragma once

#include <QAbstractButton>

/// The small on/off switch in a row's header: 30 by 13 points, drawn white in dark and black in light
/// appearance. A click, or Space while it has the keyboard focus, toggles it and emits `clicked(bool)`;
/// `setChecked` from a refresh emits nothing the row listens to. Assistive technologies see a check box
/// named after its lamp or room.
class RowSwitch final : public QAbstractButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RowSwitch)

public:
    explicit RowSwitch(QWidget* parent = nullptr);

    /// The switch's size with the room for its focus ring.
    static QSize outerSize();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
