#include "preferences/window/PreferencesWindowController.h"

#include "preferences/window/PaneTabController.h"
#include "preferences/window/PausableWindow.h"
#include "state/Preferences.h"

#include <QApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

PreferencesWindowController::PreferencesWindowController(QList<Pane> panes, PaneStyle style, bool animated,
                                                         bool hidesToolbarForSingleItem, QObject* parent)
    : QObject(parent), m_window(std::make_unique<PausableWindow>()),
      m_hidesToolbarForSingleItem(hidesToolbarForSingleItem)
{
    const bool singlePane = panes.size() == 1;
    m_tabs = new PaneTabController(std::move(panes), style, animated, m_window.get());
    m_tabs->toolbar().setVisible(!(singlePane && m_hidesToolbarForSingleItem));

    m_window->setObjectName(QStringLiteral("preferencesWindow"));
    // Titled and closable, but neither resizable nor minimisable: the panes decide the size.
    m_window->setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                             Qt::CustomizeWindowHint);
    auto* layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tabs);
    m_status = new QLabel(m_window.get());
    m_status->setObjectName(QStringLiteral("preferencesStatus"));
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setContentsMargins(12, 0, 12, 10);
    m_status->hide();
    layout->addWidget(m_status);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)}) {
        auto* shortcut = new QShortcut(keys, m_window.get());
        shortcut->setContext(Qt::WindowShortcut);
        // Also names it where a global shortcut with the same keys is refused.
        shortcut->setWhatsThis(tr("Close the window"));
        connect(shortcut, &QShortcut::activated, this, &PreferencesWindowController::closeByKeys);
    }
    connect(m_window.get(), &PausableWindow::hidden, this, &PreferencesWindowController::saveFrame);
    // Watches lists closing (see closeByKeys) only while the window shows.
    connect(m_window.get(), &PausableWindow::hidden, this, [this] { qApp->removeEventFilter(this); });
}

void PreferencesWindowController::closeByKeys()
{
    // An open list (a picker's) closes first, as everywhere else. Qt's lists close on the check for shortcuts
    // and then leave the keys to the window's shortcuts all the same, so a list that closed while these keys
    // were being handled counts as open.
    if (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
        return;
    }
    if (!m_listClosedByTheseKeys)
        m_window->close();
}

bool PreferencesWindowController::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Hide && watched->isWidgetType() &&
        static_cast<QWidget*>(watched)->windowType() == Qt::Popup) {
        // Keys are handled at once, within this turn of the event loop.
        m_listClosedByTheseKeys = true;
        QTimer::singleShot(0, this, [this] { m_listClosedByTheseKeys = false; });
    }
    return false;
}

void PreferencesWindowController::setStatus(const QString& text)
{
    m_status->setText(text);
    m_status->setVisible(!text.isEmpty());
}

QString PreferencesWindowController::status() const
{
    return m_status->text();
}

PreferencesWindowController::~PreferencesWindowController()
{
    if (m_window->isVisible())
        saveFrame();
    // Destroying the window hides it, which would save again from a controller that is half gone.
    m_window->disconnect(this);
}

void PreferencesWindowController::setFrameAutosaveName(const QString& name, Preferences* preferences)
{
    m_autosaveName = name;
    m_framePreferences = preferences;
}

void PreferencesWindowController::show(const QString& paneIdentifier)
{
    if (!paneIdentifier.isEmpty())
        m_tabs->activateTab(paneIdentifier, true);
    else if (!m_tabs->activeTab())
        m_tabs->activateTab(0, false);

    if (!m_shownBefore) {
        m_shownBefore = true;
        restoreFrame();
    }
    // A window the user minimised through the window manager comes back as well.
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    qApp->installEventFilter(this);
}

void PreferencesWindowController::restoreFrame()
{
    m_window->adjustSize();
    if (m_framePreferences && !m_autosaveName.isEmpty()) {
        const std::optional<QString> saved = m_framePreferences->windowFrame(m_autosaveName);
        // restoreGeometry() refuses damaged data and moves a frame from a screen that is gone onto one that
        // is there.
        if (saved && m_window->restoreGeometry(QByteArray::fromBase64(saved->toLatin1())))
            return;
    }
    // The first time, the middle of the screen the pointer is on.
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        QRect frame(QPoint(), m_window->size());
        frame.moveCenter(screen->availableGeometry().center());
        m_window->move(frame.topLeft());
    }
}

void PreferencesWindowController::saveFrame()
{
    if (m_framePreferences && !m_autosaveName.isEmpty())
        m_framePreferences->setWindowFrame(m_autosaveName,
                                           QString::fromLatin1(m_window->saveGeometry().toBase64()));
}
