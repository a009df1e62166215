#include "app/StatusBarMenuWindowController.h"

#include "app/DropDownWindow.h"
#include "app/HeightGrip.h"
#include "app/WindowCompositing.h"
#include "app/WindowPlacement.h"
#include "state/MainPanels.h"
#include "state/Preferences.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QScreen>
#include <QTimer>

#include <limits>

namespace {

// The press on the tray icon and its activation arrive within a few milliseconds of each other.
constexpr qint64 toggleGraceMilliseconds = 300;

} // namespace

StatusBarMenuWindowController::StatusBarMenuWindowController(Preferences& preferences, QWidget* content,
                                                             IconGeometry iconGeometry, QObject* parent)
    : QObject(parent), m_preferences(preferences), m_iconGeometry(std::move(iconGeometry)),
      m_pointer([] { return QCursor::pos(); }), m_window(std::make_unique<DropDownWindow>(content)),
      m_fade(new QPropertyAnimation(m_window.get(), "windowOpacity", this))
{
    m_fade->setDuration(fadeMilliseconds);
    m_fade->setEndValue(0.0);
    connect(m_fade, &QPropertyAnimation::finished, this, &StatusBarMenuWindowController::onFadeFinished);
    connect(m_window.get(), &DropDownWindow::deactivated, this,
            &StatusBarMenuWindowController::closeFromOutside);
    connect(m_window.get(), &DropDownWindow::escapePressed, this, &StatusBarMenuWindowController::close);
    connect(m_window->grip(), &HeightGrip::resizeFinished, this,
            &StatusBarMenuWindowController::saveWindowHeight);
    // The first click should not pay for making the window on the display: make it as soon as the program
    // is idle, hidden.
    QTimer::singleShot(0, m_window.get(), [window = m_window.get()] { window->winId(); });
}

StatusBarMenuWindowController::~StatusBarMenuWindowController()
{
    stopOutsideClickMonitor();
}

void StatusBarMenuWindowController::restoreActivePanel()
{
    const std::optional<qint64> storedPanel = m_preferences.storedActivePanel();
    if (!storedPanel)
        return;
    const qint64 stored = *storedPanel;
    // A value outside int is damage, not a panel; one outside the three is kept, as the setter keeps it.
    if (stored < std::numeric_limits<int>::min() || stored > std::numeric_limits<int>::max())
        return;
    const auto panel = static_cast<MainPanels>(stored);
    // Assigning also asks for a resize; the opening places the window anyway, so only a change is assigned.
    if (panel != m_preferences.activeMainPanel())
        m_preferences.setActiveMainPanel(panel);
}

void StatusBarMenuWindowController::show()
{
    m_fade->stop();
    m_closedFromOutside.invalidate();
    m_window->setShapedCorners(!isWindowCompositingActive());
    positionWindow(m_preferredHeight);
    m_window->setWindowOpacity(1.0);
    // Each opening starts with no control focused; the first Tab goes to the first control.
    m_window->setFocus(Qt::ActiveWindowFocusReason);
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
    const QPoint pointer = m_pointer ? m_pointer() : QCursor::pos();
    QScreen* screen = nullptr;
    if (icon && !icon->isEmpty())
        screen = QGuiApplication::screenAt(icon->center());
    if (!screen)
        screen = QGuiApplication::screenAt(pointer);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);

    const int minimum = DropDownWindow::minimumWindowHeight;
    qint64 wanted = height;
    if (wanted <= 0) {
        // No stored height: as tall as the content, which a plain widget cannot tell.
        const QSize hint = m_window->content() ? m_window->content()->sizeHint() : QSize();
        const int content = hint.isValid() ? hint.height() : WindowPlacement::fallbackHeight;
        wanted = WindowPlacement::heightFromContent(content, available, minimum);
    }
    wanted = std::max<qint64>(wanted, minimum);

    // The width the user dragged it to, as far as this screen allows; else as wide as the longest name needs,
    // up to a third of the screen.
    const qint64 storedWidth = m_preferences.dropDownWidth();
    const int minimumWidth = DropDownWindow::contentWidth;
    int width = 0;
    if (storedWidth > 0) {
        width =
            int(std::clamp<qint64>(storedWidth, minimumWidth, std::max(minimumWidth, available.width() / 2)));
    } else {
        const int natural = m_window->content() ? m_window->content()->sizeHint().width() : minimumWidth;
        width = std::clamp(natural, minimumWidth, std::max(minimumWidth, available.width() / 3));
    }
    m_placedWidth = width;
    const WindowPlacement::Placement placement =
        WindowPlacement::dropDownFrame(icon, pointer, width, wanted, available);
    // A height stored on a taller screen shrinks to the room there is; panels lie outside the available area.
    QRect frame = placement.frame.intersected(available);
    if (frame.height() < minimum) {
        frame.setHeight(minimum);
        if (placement.upwards)
            frame.moveBottom(placement.frame.bottom());
    }
    m_window->grip()->setEdge(placement.upwards ? Qt::TopEdge : Qt::BottomEdge);
    m_window->setGeometry(frame);
}

void StatusBarMenuWindowController::saveWindowHeight()
{
    // The stored panel, not the field: before the first opening the field may not have been restored yet.
    const qint64 panel = m_preferences.storedActivePanel().value_or(0);
    if (!m_window->content())
        return;
    const int height = m_window->content()->height();
    // Only a width the user dragged to is kept; the one the names asked for follows them.
    if (m_window->width() != m_placedWidth && m_window->width() != m_preferences.dropDownWidth())
        m_preferences.setDropDownWidth(m_window->width());
    switch (panel) {
    case static_cast<qint64>(MainPanels::lights):
        m_preferences.setPresetWindowHeight(MainPanels::lights, height);
        break;
    case static_cast<qint64>(MainPanels::rooms):
        m_preferences.setPresetWindowHeight(MainPanels::rooms, height);
        break;
    case static_cast<qint64>(MainPanels::scenes):
        m_preferences.setPresetWindowHeight(MainPanels::scenes, height);
        break;
    default:
        break;
    }
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
