#pragma once

#include <QAbstractButton>

/// A scene in the scenes panel: its name on a faint rounded plate exactly 180 points wide. A long name wraps
/// inside the plate (and a single over-long word is cut by it); the plate never grows wider. The plate
/// brightens while the pointer is over it. Tab reaches it, Space or Enter presses it; a name that does not
/// fit shows whole as the tooltip.
class SceneButton final : public QAbstractButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SceneButton)

public:
    static constexpr int buttonWidth = 180;

    explicit SceneButton(const QString& sceneName, QWidget* parent = nullptr);

    QString sceneName() const { return text(); }
    /// Opacity of the plate: 0.2 at rest, 0.5 while hovered.
    qreal plateOpacity() const { return m_opacity; }

    QSize sizeHint() const override;

    /// Draws the button faded (the bridge cannot be reached); it keeps working.
    void setDimmed(bool dimmed);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int heightForName() const;

    qreal m_opacity = 0.2;
    bool m_dimmed = false;
};
