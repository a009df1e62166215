#pragma once

#include <QTimer>
#include <QWidget>

/// The animation beside the pairing hint: frames "frame_0" to "frame_62" at 0.07 s each, the last one held
/// for 30 ticks (2.1 s), then again from the start. The timer runs only while the player is on screen.
class ImagePlayer final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ImagePlayer)

public:
    static constexpr int tickMilliseconds = 70;
    static constexpr int holdTicks = 30;

    explicit ImagePlayer(QWidget* parent = nullptr);

    int imageIndex() const { return m_imageIndex; }
    int resetDelay() const { return m_resetDelay; }
    /// The name of the frame shown, "frame_<imageIndex>".
    QString imageName() const;
    const QTimer& timer() const { return m_timer; }

    /// One tick of the timer: the next frame, or one more tick of holding the last one.
    void tick();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QTimer m_timer;
    int m_imageIndex = 0;
    int m_resetDelay = 0;
};
