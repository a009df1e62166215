#pragma once

#include <QAbstractButton>

/// A scene in the scenes panel: its name on a faint rounded plate exactly 180 points wide. A long name wraps
/// inside the plate (and a single over-long word is cut by it); the plate never grows wider. The plate
/// brightens while the pointer is over it.
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

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int heightForName() const;

    qreal m_opacity = 0.2;
};
