#pragma once

#include "hotkeys/GlobalHotkeys.h"

#include <QKeyCombination>
#include <QString>

#include <optional>

/// Translations between the stored encoding of a shortcut (virtual key codes of Apple's extended keyboard
/// layout and its modifier bits) and Qt's keys, X11 keysyms and the text shown for a shortcut. Letters,
/// digits and punctuation are translated by the character they stand for on a US layout, so a stored K is the
/// key that types k on any Latin layout.
namespace KeyTranslation {

/// The stored modifier bits of Qt's modifiers (Control, Alt, Shift, Meta; where Qt swaps Control and Meta,
/// as on macOS, Control stands for Command). Other modifiers are ignored.
qint64 carbonModifiers(Qt::KeyboardModifiers modifiers);
/// The other way round.
Qt::KeyboardModifiers qtModifiers(qint64 carbonModifiers);

/// The key code of a key Qt reports. With `keypad` (Qt's KeypadModifier), a key of the numeric keypad is
/// looked for first. A symbol typed with Shift on a US layout ("!", "?") gives the key it is on; Backtab
/// gives Tab. Nothing for keys the stored encoding has no code for, and for modifier keys.
std::optional<qint64> carbonKeyCode(Qt::Key key, bool keypad = false);
/// The shortcut of a key press Qt reports, or nothing when the key has no code.
std::optional<GlobalHotkeys::Shortcut> shortcut(QKeyCombination combination);
/// The Qt key combination of a shortcut (KeypadModifier set for keypad keys); nothing for an unknown code.
std::optional<QKeyCombination> qtCombination(const GlobalHotkeys::Shortcut& shortcut);

/// The X11 keysym of the key (its unshifted symbol), or nothing.
std::optional<quint32> x11Keysym(qint64 carbonKeyCode);
/// The keysym's name ("k", "F1", "Page_Up"), as shortcut triggers of the desktop portal write it.
QString x11KeysymName(qint64 carbonKeyCode);

/// Whether the key is one of F1 to F20.
bool isFunctionKey(qint64 carbonKeyCode);
/// Whether it is a modifier key, which only ever accompanies a shortcut's key.
bool isModifierKey(Qt::Key key);

/// The modifiers as a shortcut's text starts, always in Qt's order: "Meta+Ctrl+Alt+Shift+".
QString modifierText(qint64 carbonModifiers);
/// The key's text: Qt's name of a key that types no character ("Return", "PgUp", "F5"), else the character
/// it types, in upper case; "�" for an unknown code.
QString keyText(qint64 carbonKeyCode);
/// How a shortcut is shown, the way the desktop writes key combinations: the text QKeySequence gives its
/// combination (NativeText away from macOS), e.g. "Ctrl+Alt+K", "Meta+F1" or "Alt+Num+1". Written here
/// rather than by QKeySequence, which is Qt Gui, so glowdeckctl shows the same text without it.
QString displayString(const GlobalHotkeys::Shortcut& shortcut);

} // namespace KeyTranslation
