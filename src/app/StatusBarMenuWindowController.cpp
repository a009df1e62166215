#include "app/StatusBarMenuWindowController.h"

#include "app/DropDownWindow.h"
#include "app/HeightGrip.h"
#include "app/WindowPlacement.h"
#include "state/AppSettings.h"
#include "state/MainPanels.h"
#include "state/SettingsKeys.h"
#include "state/SettingsStore.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QScreen>
#include <QTimer>

namespace {

// The press on the tray icon and its activation arrive within a few milliseconds of each other.
constexpr qint64 toggleGraceMilliseconds = 300;

} // namespace

StatusBarMenuWindowController::StatusBarMenuWindowController(AppSettings& settings, QWidget* content,
                                                             IconGeometry iconGeometry, QObject* parent)
    : QObject(parent), m_settings(settings), m_iconGeometry(std::move(iconGeometry)),
      m_window(std::make_unique<DropDownWindow>(content)),
      m_fade(new QPropertyAnimation(m_window.get(), "windowOpacity", this))
{
    m_fade->setDuration(fadeMilliseconds);
    m_fade->setEndValue(0.0);
    connect(m_fade, &QPropertyAnimation::finished, this, &StatusBarMenuWindowController::onFadeFinished);
    connect(m_window.get(), &DropDownWindow::deactivated, this,
            &StatusBarMenuWindowController::closeFromOutside);
    connect(m_window->grip(), &HeightGrip::resizeFinished, this,
            &StatusBarMenuWindowController::saveWindowHeight);
}

StatusBarMenuWindowController::~StatusBarMenuWindowController()
{
    stopOutsideClickMonitor();
}

void StatusBarMenuWindowController::show()
{
    m_fade->stop();
    m_closedFromOutside.invalidate();
    positionWindow(m_preferredHeight);
    m_window->setWindowOpacity(1.0);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    startOutsideClickMonitor();
    m_isShown = true;
}

void StatusBarMenuWindowController::close()
{
    if (!m_isShown)
        return;
    Q_EMIT windowWillClose();
    stopOutsideClickMonitor();
    m_isShown = false;
    m_fade->stop();
    m_fade->setStartValue(m_window->windowOpacity());
    m_fade->start();
}

void StatusBarMenuWindowController::closeWithoutFade()
{
    close();
    m_fade->stop();
    m_window->hide();
}

bool StatusBarMenuWindowController::closedByOutsideClickJustNow() const
{
    return m_closedFromOutside.isValid() && m_closedFromOutside.elapsed() < toggleGraceMilliseconds;
}

void StatusBarMenuWindowController::closeFromOutside()
{
    if (!m_isShown)
        return;
    m_closedFromOutside.start();
    close();
}

void StatusBarMenuWindowController::onFadeFinished()
{
    // show() stops a running fade, so a finished one means the window is meant to be hidden.
    if (!m_isShown)
        m_window->hide();
}

void StatusBarMenuWindowController::positionWindow(qint64 height)
{
    const std::optional<QRect> icon = m_iconGeometry ? m_iconGeometry() : std::nullopt;
    QScreen* screen = nullptr;
    if (icon && !icon->isEmpty())
        screen = QGuiApplication::screenAt(icon->center());
    if (!screen)
        screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);

    const QRect frame = WindowPlacement::dropDownFrame(icon, DropDownWindow::contentWidth, height, available);
    m_window->setGeometry(frame.x(), frame.y(), frame.width(),
                          std::max(frame.height(), DropDownWindow::minimumWindowHeight));
}

void StatusBarMenuWindowController::saveWindowHeight()
{
    const qint64 panel = m_settings.store().readInt(SettingsKeys::activePanel);
    const int height = m_window->content()->height();
    switch (panel) {
    case static_cast<qint64>(MainPanels::lights):
        m_settings.store().writeInt(SettingsKeys::preferredWindowHeightLights, height);
        break;
    case static_cast<qint64>(MainPanels::rooms):
        m_settings.store().writeInt(SettingsKeys::preferredWindowHeightRooms, height);
        break;
    case static_cast<qint64>(MainPanels::scenes):
        m_settings.store().writeInt(SettingsKeys::preferredWindowHeightScenes, height);
        break;
    default:
        return;
    }
    m_settings.reloadPresetHeights();
}

void StatusBarMenuWindowController::startOutsideClickMonitor()
{
    if (m_monitoring)
        return;
    qApp->installEventFilter(this);
    m_monitoring = true;
}

void StatusBarMenuWindowController::stopOutsideClickMonitor()
{
    if (!m_monitoring)
        return;
    qApp->removeEventFilter(this);
    m_monitoring = false;
}

bool StatusBarMenuWindowController::eventFilter(QObject* watched, QEvent* event)
{
    // Sees presses in this program's own windows (other windows, the XEmbed tray icon); clicks in other
    // programs take the focus away and arrive as a deactivation instead.
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(watched);
        if (widget->window() != m_window.get()) {
            // Defer: closing from inside another widget's event delivery would animate under its feet.
            QTimer::singleShot(0, this, &StatusBarMenuWindowController::closeFromOutside);
            m_closedFromOutside.start();
        }
    }
    return QObject::eventFilter(watched, event);
}
