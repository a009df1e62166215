#pragma once

#include "hotkeys/GlobalHotkeys.h"

#include <QLineEdit>
#include <QPointer>

#include <optional>

class QMessageBox;

/// The field in which the user records the key combination of one shortcut name. It shows the stored
/// combination as the desktop writes it ("Ctrl+Alt+K", also in the tooltip); its clear button removes it.
/// While it has the keyboard focus it records: global shortcuts are paused and the keyboard is held, so the
/// next combination comes here even when it is a global shortcut already. Escape cancels, Delete and
/// Backspace clear, Tab moves on. A key needs a modifier other than Shift, unless it is one of F1 to F20; a
/// combination the application or another program uses already is refused with an alert.
class RecorderField final : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecorderField)

public:
    static constexpr int minimumWidth = 130;

    RecorderField(GlobalHotkeys& hotkeys, GlobalHotkeys::Name name, QWidget* parent = nullptr);
    ~RecorderField() override;

    const GlobalHotkeys::Name& shortcutName() const { return m_name; }
    bool isRecording() const { return m_recording; }
    /// Room for the longer placeholder with the clear button beside it.
    QSize sizeHint() const override;

    /// The alert of a refused combination while it shows.
    QMessageBox* alert() const;

    /// The placeholders and alert texts.
    static QString recordShortcutText();
    static QString pressShortcutText();
    static QString usedByMenuItemText(const QString& title);
    static QString usedBySystemText();
    static QString canBeChangedText();

Q_SIGNALS:
    /// The user changed the name's shortcut in this field (nothing: cleared).
    void shortcutChanged(std::optional<GlobalHotkeys::Shortcut> shortcut);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void startRecording();
    void endRecording();
    /// Shows the stored shortcut (or the placeholder), with the clear button when there is one.
    void showStoredShortcut();
    void showHeldModifiers(Qt::KeyboardModifiers modifiers);
    void clearShortcut();
    void accept(const GlobalHotkeys::Shortcut& shortcut);
    /// Says why the combination cannot be had; recording goes on once the alert is closed.
    void refuse(const QString& text, const QString& explanation = QString());
    void onStoredShortcutChanged(const QString& rawValue);

    GlobalHotkeys& m_hotkeys;
    GlobalHotkeys::Name m_name;
    QAction* m_clear;
    QPointer<QMessageBox> m_alert;
    bool m_recording = false;
};
