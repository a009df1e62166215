#include "hotkeys/recorder/RecorderField.h"

#include "hotkeys/KeyTranslation.h"
#include "hotkeys/recorder/ApplicationShortcuts.h"

#include <QAction>
#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;

constexpr qint64 f12 = 111;

/// "Ctrl+Alt+K", Qt's own text of the combination, for the tooltip (a narrow field elides a long text) and
/// screen readers.
QString spelledOut(const Shortcut& shortcut)
{
    const std::optional<QKeyCombination> combination = KeyTranslation::qtCombination(shortcut);
    return combination ? QKeySequence(*combination).toString(QKeySequence::NativeText) : QString();
}

bool holdsKeyboard()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

} // namespace

RecorderField::RecorderField(GlobalHotkeys& hotkeys, GlobalHotkeys::Name name, QWidget* parent)
    : QLineEdit(parent), m_hotkeys(hotkeys), m_name(std::move(name)),
      m_clear(new QAction(style()->standardIcon(QStyle::SP_LineEditClearButton), tr("Clear shortcut"), this))
{
    // Read-only: nothing is typed here, and no text cursor blinks while recording.
    setReadOnly(true);
    setAlignment(Qt::AlignCenter);
    setContextMenuPolicy(Qt::NoContextMenu);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumWidth(minimumWidth);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    setPlaceholderText(recordShortcutText());
    addAction(m_clear, QLineEdit::TrailingPosition);
    connect(m_clear, &QAction::triggered, this, &RecorderField::clearShortcut);
    connect(&m_hotkeys, &GlobalHotkeys::shortcutByNameDidChange, this,
            &RecorderField::onStoredShortcutChanged);
    showStoredShortcut();
}

RecorderField::~RecorderField()
{
    endRecording();
}

QSize RecorderField::sizeHint() const
{
    const int text = std::max(fontMetrics().horizontalAdvance(recordShortcutText()),
                              fontMetrics().horizontalAdvance(pressShortcutText()));
    const int clearButton = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this) + 8;
    // Centred text with the clear button on one side needs the button's room on both.
    return {std::max(minimumWidth, text + 2 * clearButton + 16), QLineEdit::sizeHint().height()};
}

QMessageBox* RecorderField::alert() const
{
    return m_alert;
}

QString RecorderField::recordShortcutText()
{
    return tr("Record shortcut");
}

QString RecorderField::pressShortcutText()
{
    return tr("Press shortcut");
}

QString RecorderField::usedByMenuItemText(const QString& title)
{
    return tr("This shortcut cannot be used because Glowdeck already uses it for “%1”.").arg(title);
}

QString RecorderField::usedBySystemText()
{
    return tr("This shortcut cannot be used because it is already used by the system.");
}

QString RecorderField::canBeChangedText()
{
    return tr("Your desktop or another running program has taken it. Most desktops let you change their own "
              "shortcuts in their keyboard settings.");
}

bool RecorderField::event(QEvent* event)
{
    // While recording, every key is ours: the window's own shortcuts (Escape, Ctrl+W) must not run.
    if (event->type() == QEvent::ShortcutOverride && m_recording) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

bool RecorderField::eventFilter(QObject* watched, QEvent* event)
{
    // A click anywhere outside the field ends recording, and goes on to where it was meant.
    if (m_recording && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const bool inside = rect().contains(mapFromGlobal(mouse->globalPosition().toPoint()));
        if (!inside && (mouse->button() == Qt::LeftButton || mouse->button() == Qt::RightButton))
            clearFocus();
    }
    return QLineEdit::eventFilter(watched, event);
}

void RecorderField::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    startRecording();
}

void RecorderField::focusOutEvent(QFocusEvent* event)
{
    endRecording();
    QLineEdit::focusOutEvent(event);
}

void RecorderField::startRecording()
{
    if (m_recording)
        return;
    m_recording = true;
    // An existing combination is recorded, not run.
    m_hotkeys.setPaused(true);
    // On X11 the keyboard is held, so that a combination another program grabbed comes here too and can be
    // refused by name. Elsewhere the desktop keeps its shortcuts to itself anyway.
    if (holdsKeyboard())
        grabKeyboard();
    qApp->installEventFilter(this);
    m_clear->setVisible(false);
    clear();
    setPlaceholderText(pressShortcutText());
}

void RecorderField::endRecording()
{
    if (!m_recording)
        return;
    m_recording = false;
    qApp->removeEventFilter(this);
    if (holdsKeyboard())
        releaseKeyboard();
    m_hotkeys.setPaused(false);
    setPlaceholderText(recordShortcutText());
    showStoredShortcut();
}

void RecorderField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    // A centred line edit hides its placeholder while it has the focus, which is all the time it records:
    // the cue ("Press Shortcut", or the modifiers held) is drawn here then.
    if (!m_recording || !text().isEmpty() || !hasFocus())
        return;
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect area = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    QPainter painter(this);
    painter.setPen(palette().placeholderText().color());
    painter.drawText(area, Qt::AlignCenter, placeholderText());
}

void RecorderField::showStoredShortcut()
{
    const std::optional<Shortcut> shortcut = m_hotkeys.getShortcut(m_name);
    setText(shortcut ? KeyTranslation::displayString(*shortcut) : QString());
    setToolTip(shortcut ? spelledOut(*shortcut) : QString());
    setAccessibleDescription(shortcut ? spelledOut(*shortcut) : tr("No shortcut"));
    m_clear->setVisible(shortcut.has_value() && !m_recording);
}

void RecorderField::showHeldModifiers(Qt::KeyboardModifiers modifiers)
{
    // "Ctrl+Alt+": the key still to come goes at the end.
    const QString held = KeyTranslation::modifierText(KeyTranslation::carbonModifiers(modifiers));
    setPlaceholderText(held.isEmpty() ? pressShortcutText() : held);
}

void RecorderField::keyPressEvent(QKeyEvent* event)
{
    if (!m_recording) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    const auto key = Qt::Key(event->key());
    if (KeyTranslation::isModifierKey(key)) {
        showHeldModifiers(event->modifiers());
        return;
    }
    const qint64 modifiers = KeyTranslation::carbonModifiers(event->modifiers());
    if (modifiers == 0) {
        if (key == Qt::Key_Escape) {
            clearFocus(); // keeps the old shortcut
            return;
        }
        if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
            clearShortcut();
            return;
        }
    }

    const std::optional<Shortcut> candidate = KeyTranslation::shortcut(event->keyCombination());
    const bool usable = candidate && ((modifiers & ~Shortcut::shift) != 0 ||
                                      KeyTranslation::isFunctionKey(candidate->carbonKeyCode));
    if (!usable) {
        QApplication::beep();
        return;
    }
    if (const std::optional<QString> title = ApplicationShortcuts::titleOf(*candidate)) {
        refuse(usedByMenuItemText(*title));
        return;
    }
    // F12 alone counts as free even where the desktop lists it.
    const bool plainF12 = candidate->carbonKeyCode == f12 && modifiers == 0;
    if (!plainF12 && m_hotkeys.isTakenBySystem(*candidate)) {
        refuse(usedBySystemText(), canBeChangedText());
        return;
    }
    accept(*candidate);
}

void RecorderField::keyReleaseEvent(QKeyEvent* event)
{
    if (m_recording && KeyTranslation::isModifierKey(Qt::Key(event->key())))
        showHeldModifiers(event->modifiers());
    QLineEdit::keyReleaseEvent(event);
}

void RecorderField::mousePressEvent(QMouseEvent* event)
{
    // No text to select or place a cursor in: a click only starts recording.
    setFocus(Qt::MouseFocusReason);
    event->accept();
}

void RecorderField::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
}

void RecorderField::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
}

void RecorderField::clearShortcut()
{
    m_hotkeys.setShortcut(std::nullopt, m_name);
    showStoredShortcut();
    Q_EMIT shortcutChanged(std::nullopt);
    // Straight on to recording a new one.
    setFocus(Qt::OtherFocusReason);
}

void RecorderField::accept(const Shortcut& shortcut)
{
    m_hotkeys.setShortcut(shortcut, m_name);
    Q_EMIT shortcutChanged(shortcut);
    clearFocus();
    showStoredShortcut();
}

void RecorderField::refuse(const QString& text, const QString& explanation)
{
    // The keyboard goes back to the desktop first, so the alert can be answered.
    endRecording();
    m_alert = new QMessageBox(QMessageBox::NoIcon, QApplication::applicationDisplayName(), text,
                              QMessageBox::Ok, window());
    m_alert->setObjectName(QStringLiteral("shortcutRefusedAlert"));
    m_alert->setInformativeText(explanation);
    m_alert->setAttribute(Qt::WA_DeleteOnClose);
    // Over the preferences window, as a sheet would be; a field without a window gets a modal panel.
    m_alert->setWindowModality(window() != this ? Qt::WindowModal : Qt::ApplicationModal);
    connect(m_alert, &QMessageBox::finished, this, [this] {
        // Back to recording; the window may need to be made active again first.
        activateWindow();
        setFocus(Qt::OtherFocusReason);
    });
    m_alert->open();
}

void RecorderField::onStoredShortcutChanged(const QString& rawValue)
{
    if (rawValue == m_name.rawValue && !m_recording)
        showStoredShortcut();
}
