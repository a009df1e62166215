#include "hotkeys/KeyTranslation.h"

#include <QCoreApplication>
#include <QOperatingSystemVersion>

#include <algorithm>
#include <array>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;

/// One key: its stored code, the key Qt reports for it, and the X11 keysym of its unshifted symbol and that
/// keysym's name.
struct Key
{
    qint64 code;
    Qt::Key qtKey;
    bool keypad;
    quint32 keysym;
    const char* keysymName;
};

// Codes of Apple's extended keyboard layout ("kVK_..."); for letters, digits and punctuation the key at that
// place on a US layout.
constexpr std::array keys = {
    Key{0, Qt::Key_A, false, 0x61, "a"},
    Key{1, Qt::Key_S, false, 0x73, "s"},
    Key{2, Qt::Key_D, false, 0x64, "d"},
    Key{3, Qt::Key_F, false, 0x66, "f"},
    Key{4, Qt::Key_H, false, 0x68, "h"},
    Key{5, Qt::Key_G, false, 0x67, "g"},
    Key{6, Qt::Key_Z, false, 0x7a, "z"},
    Key{7, Qt::Key_X, false, 0x78, "x"},
    Key{8, Qt::Key_C, false, 0x63, "c"},
    Key{9, Qt::Key_V, false, 0x76, "v"},
    Key{11, Qt::Key_B, false, 0x62, "b"},
    Key{12, Qt::Key_Q, false, 0x71, "q"},
    Key{13, Qt::Key_W, false, 0x77, "w"},
    Key{14, Qt::Key_E, false, 0x65, "e"},
    Key{15, Qt::Key_R, false, 0x72, "r"},
    Key{16, Qt::Key_Y, false, 0x79, "y"},
    Key{17, Qt::Key_T, false, 0x74, "t"},
    Key{18, Qt::Key_1, false, 0x31, "1"},
    Key{19, Qt::Key_2, false, 0x32, "2"},
    Key{20, Qt::Key_3, false, 0x33, "3"},
    Key{21, Qt::Key_4, false, 0x34, "4"},
    Key{22, Qt::Key_6, false, 0x36, "6"},
    Key{23, Qt::Key_5, false, 0x35, "5"},
    Key{24, Qt::Key_Equal, false, 0x3d, "equal"},
    Key{25, Qt::Key_9, false, 0x39, "9"},
    Key{26, Qt::Key_7, false, 0x37, "7"},
    Key{27, Qt::Key_Minus, false, 0x2d, "minus"},
    Key{28, Qt::Key_8, false, 0x38, "8"},
    Key{29, Qt::Key_0, false, 0x30, "0"},
    Key{30, Qt::Key_BracketRight, false, 0x5d, "bracketright"},
    Key{31, Qt::Key_O, false, 0x6f, "o"},
    Key{32, Qt::Key_U, false, 0x75, "u"},
    Key{33, Qt::Key_BracketLeft, false, 0x5b, "bracketleft"},
    Key{34, Qt::Key_I, false, 0x69, "i"},
    Key{35, Qt::Key_P, false, 0x70, "p"},
    Key{36, Qt::Key_Return, false, 0xff0d, "Return"},
    Key{37, Qt::Key_L, false, 0x6c, "l"},
    Key{38, Qt::Key_J, false, 0x6a, "j"},
    Key{39, Qt::Key_Apostrophe, false, 0x27, "apostrophe"},
    Key{40, Qt::Key_K, false, 0x6b, "k"},
    Key{41, Qt::Key_Semicolon, false, 0x3b, "semicolon"},
    Key{42, Qt::Key_Backslash, false, 0x5c, "backslash"},
    Key{43, Qt::Key_Comma, false, 0x2c, "comma"},
    Key{44, Qt::Key_Slash, false, 0x2f, "slash"},
    Key{45, Qt::Key_N, false, 0x6e, "n"},
    Key{46, Qt::Key_M, false, 0x6d, "m"},
    Key{47, Qt::Key_Period, false, 0x2e, "period"},
    Key{48, Qt::Key_Tab, false, 0xff09, "Tab"},
    Key{49, Qt::Key_Space, false, 0x20, "space"},
    Key{50, Qt::Key_QuoteLeft, false, 0x60, "grave"},
    Key{51, Qt::Key_Backspace, false, 0xff08, "BackSpace"},
    Key{53, Qt::Key_Escape, false, 0xff1b, "Escape"},
    Key{64, Qt::Key_F17, false, 0xffce, "F17"},
    Key{65, Qt::Key_Period, true, 0xffae, "KP_Decimal"},
    Key{67, Qt::Key_Asterisk, true, 0xffaa, "KP_Multiply"},
    Key{69, Qt::Key_Plus, true, 0xffab, "KP_Add"},
    Key{75, Qt::Key_Slash, true, 0xffaf, "KP_Divide"},
    Key{76, Qt::Key_Enter, true, 0xff8d, "KP_Enter"},
    Key{78, Qt::Key_Minus, true, 0xffad, "KP_Subtract"},
    Key{79, Qt::Key_F18, false, 0xffcf, "F18"},
    Key{80, Qt::Key_F19, false, 0xffd0, "F19"},
    Key{81, Qt::Key_Equal, true, 0xffbd, "KP_Equal"},
    Key{82, Qt::Key_0, true, 0xffb0, "KP_0"},
    Key{83, Qt::Key_1, true, 0xffb1, "KP_1"},
    Key{84, Qt::Key_2, true, 0xffb2, "KP_2"},
    Key{85, Qt::Key_3, true, 0xffb3, "KP_3"},
    Key{86, Qt::Key_4, true, 0xffb4, "KP_4"},
    Key{87, Qt::Key_5, true, 0xffb5, "KP_5"},
    Key{88, Qt::Key_6, true, 0xffb6, "KP_6"},
    Key{89, Qt::Key_7, true, 0xffb7, "KP_7"},
    Key{90, Qt::Key_F20, false, 0xffd1, "F20"},
    Key{91, Qt::Key_8, true, 0xffb8, "KP_8"},
    Key{92, Qt::Key_9, true, 0xffb9, "KP_9"},
    Key{96, Qt::Key_F5, false, 0xffc2, "F5"},
    Key{97, Qt::Key_F6, false, 0xffc3, "F6"},
    Key{98, Qt::Key_F7, false, 0xffc4, "F7"},
    Key{99, Qt::Key_F3, false, 0xffc0, "F3"},
    Key{100, Qt::Key_F8, false, 0xffc5, "F8"},
    Key{101, Qt::Key_F9, false, 0xffc6, "F9"},
    Key{103, Qt::Key_F11, false, 0xffc8, "F11"},
    Key{105, Qt::Key_F13, false, 0xffca, "F13"},
    Key{106, Qt::Key_F16, false, 0xffcd, "F16"},
    Key{107, Qt::Key_F14, false, 0xffcb, "F14"},
    Key{109, Qt::Key_F10, false, 0xffc7, "F10"},
    Key{111, Qt::Key_F12, false, 0xffc9, "F12"},
    Key{113, Qt::Key_F15, false, 0xffcc, "F15"},
    // The Help key sits where a PC keyboard has Insert, and a Mac reads Insert as Help.
    Key{114, Qt::Key_Insert, false, 0xff63, "Insert"},
    Key{115, Qt::Key_Home, false, 0xff50, "Home"},
    Key{116, Qt::Key_PageUp, false, 0xff55, "Page_Up"},
    Key{117, Qt::Key_Delete, false, 0xffff, "Delete"},
    Key{118, Qt::Key_F4, false, 0xffc1, "F4"},
    Key{119, Qt::Key_End, false, 0xff57, "End"},
    Key{120, Qt::Key_F2, false, 0xffbf, "F2"},
    Key{121, Qt::Key_PageDown, false, 0xff56, "Page_Down"},
    Key{122, Qt::Key_F1, false, 0xffbe, "F1"},
    Key{123, Qt::Key_Left, false, 0xff51, "Left"},
    Key{124, Qt::Key_Right, false, 0xff53, "Right"},
    Key{125, Qt::Key_Down, false, 0xff54, "Down"},
    Key{126, Qt::Key_Up, false, 0xff52, "Up"},
};

/// Keys Qt reports under another name than the table's: symbols typed with Shift on a US layout, and a few
/// keys with two names.
struct Alias
{
    Qt::Key qtKey;
    qint64 code;
};
constexpr std::array aliases = {
    Alias{Qt::Key_Exclam, 18},     Alias{Qt::Key_At, 19},         Alias{Qt::Key_NumberSign, 20},
    Alias{Qt::Key_Dollar, 21},     Alias{Qt::Key_Percent, 23},    Alias{Qt::Key_AsciiCircum, 22},
    Alias{Qt::Key_Ampersand, 26},  Alias{Qt::Key_Asterisk, 28},   Alias{Qt::Key_ParenLeft, 25},
    Alias{Qt::Key_ParenRight, 29}, Alias{Qt::Key_Underscore, 27}, Alias{Qt::Key_Plus, 24},
    Alias{Qt::Key_BraceLeft, 33},  Alias{Qt::Key_BraceRight, 30}, Alias{Qt::Key_Bar, 42},
    Alias{Qt::Key_Colon, 41},      Alias{Qt::Key_QuoteDbl, 39},   Alias{Qt::Key_Less, 43},
    Alias{Qt::Key_Greater, 47},    Alias{Qt::Key_Question, 44},   Alias{Qt::Key_AsciiTilde, 50},
    Alias{Qt::Key_Backtab, 48},    Alias{Qt::Key_Help, 114},      Alias{Qt::Key_Enter, 36},
};

/// The names Qt gives keys that type no character in a shortcut's text (QKeySequence::NativeText, away from
/// macOS), in the same translation context, so a translated Qt writes them the same way here.
struct KeyName
{
    Qt::Key qtKey;
    const char* name;
};
constexpr std::array keyNames = {
    KeyName{Qt::Key_Return, QT_TRANSLATE_NOOP("QShortcut", "Return")},
    KeyName{Qt::Key_Enter, QT_TRANSLATE_NOOP("QShortcut", "Enter")},
    KeyName{Qt::Key_Tab, QT_TRANSLATE_NOOP("QShortcut", "Tab")},
    KeyName{Qt::Key_Space, QT_TRANSLATE_NOOP("QShortcut", "Space")},
    KeyName{Qt::Key_Backspace, QT_TRANSLATE_NOOP("QShortcut", "Backspace")},
    KeyName{Qt::Key_Escape, QT_TRANSLATE_NOOP("QShortcut", "Esc")},
    KeyName{Qt::Key_Insert, QT_TRANSLATE_NOOP("QShortcut", "Ins")},
    KeyName{Qt::Key_Delete, QT_TRANSLATE_NOOP("QShortcut", "Del")},
    KeyName{Qt::Key_Home, QT_TRANSLATE_NOOP("QShortcut", "Home")},
    KeyName{Qt::Key_End, QT_TRANSLATE_NOOP("QShortcut", "End")},
    KeyName{Qt::Key_PageUp, QT_TRANSLATE_NOOP("QShortcut", "PgUp")},
    KeyName{Qt::Key_PageDown, QT_TRANSLATE_NOOP("QShortcut", "PgDown")},
    KeyName{Qt::Key_Left, QT_TRANSLATE_NOOP("QShortcut", "Left")},
    KeyName{Qt::Key_Right, QT_TRANSLATE_NOOP("QShortcut", "Right")},
    KeyName{Qt::Key_Up, QT_TRANSLATE_NOOP("QShortcut", "Up")},
    KeyName{Qt::Key_Down, QT_TRANSLATE_NOOP("QShortcut", "Down")},
};

/// "Ctrl+": one modifier as Qt writes it in a shortcut's text.
QString modifierName(const char* name)
{
    return QCoreApplication::translate("QShortcut", name) + u'+';
}

const Key* keyWithCode(qint64 code)
{
    const auto key = std::find_if(keys.begin(), keys.end(), [code](const Key& k) { return k.code == code; });
    return key == keys.end() ? nullptr : &*key;
}

/// Qt on macOS reports the Command key as Control and the Control key as Meta, unless told not to.
bool qtSwapsControlAndMeta()
{
    return QOperatingSystemVersion::currentType() == QOperatingSystemVersion::MacOS &&
           !QCoreApplication::testAttribute(Qt::AA_MacDontSwapCtrlAndMeta);
}

} // namespace

namespace KeyTranslation {

qint64 carbonModifiers(Qt::KeyboardModifiers modifiers)
{
    const bool swapped = qtSwapsControlAndMeta();
    qint64 bits = 0;
    if (modifiers.testFlag(Qt::ControlModifier))
        bits |= swapped ? Shortcut::command : Shortcut::control;
    if (modifiers.testFlag(Qt::MetaModifier))
        bits |= swapped ? Shortcut::control : Shortcut::command;
    if (modifiers.testFlag(Qt::AltModifier))
        bits |= Shortcut::option;
    if (modifiers.testFlag(Qt::ShiftModifier))
        bits |= Shortcut::shift;
    return bits;
}

Qt::KeyboardModifiers qtModifiers(qint64 carbonModifiers)
{
    const bool swapped = qtSwapsControlAndMeta();
    Qt::KeyboardModifiers modifiers;
    if (carbonModifiers & Shortcut::control)
        modifiers |= swapped ? Qt::MetaModifier : Qt::ControlModifier;
    if (carbonModifiers & Shortcut::command)
        modifiers |= swapped ? Qt::ControlModifier : Qt::MetaModifier;
    if (carbonModifiers & Shortcut::option)
        modifiers |= Qt::AltModifier;
    if (carbonModifiers & Shortcut::shift)
        modifiers |= Qt::ShiftModifier;
    return modifiers;
}

std::optional<qint64> carbonKeyCode(Qt::Key key, bool keypad)
{
    // A keypad key without Num Lock (Qt says "Home" with the keypad flag) is taken for the main one.
    for (const bool onKeypad : {keypad, false}) {
        const auto found = std::find_if(keys.begin(), keys.end(),
                                        [&](const Key& k) { return k.qtKey == key && k.keypad == onKeypad; });
        if (found != keys.end())
            return found->code;
    }
    const auto alias =
        std::find_if(aliases.begin(), aliases.end(), [key](const Alias& a) { return a.qtKey == key; });
    if (alias != aliases.end())
        return alias->code;
    return std::nullopt;
}

std::optional<GlobalHotkeys::Shortcut> shortcut(QKeyCombination combination)
{
    const std::optional<qint64> code =
        carbonKeyCode(combination.key(), combination.keyboardModifiers().testFlag(Qt::KeypadModifier));
    if (!code)
        return std::nullopt;
    return Shortcut{*code, carbonModifiers(combination.keyboardModifiers())};
}

std::optional<QKeyCombination> qtCombination(const GlobalHotkeys::Shortcut& shortcut)
{
    const Key* key = keyWithCode(shortcut.carbonKeyCode);
    if (!key)
        return std::nullopt;
    Qt::KeyboardModifiers modifiers = qtModifiers(shortcut.carbonModifiers);
    if (key->keypad)
        modifiers |= Qt::KeypadModifier;
    return QKeyCombination(modifiers, key->qtKey);
}

std::optional<quint32> x11Keysym(qint64 carbonKeyCode)
{
    const Key* key = keyWithCode(carbonKeyCode);
    return key ? std::optional<quint32>(key->keysym) : std::nullopt;
}

QString x11KeysymName(qint64 carbonKeyCode)
{
    const Key* key = keyWithCode(carbonKeyCode);
    return key ? QString::fromLatin1(key->keysymName) : QString();
}

bool isFunctionKey(qint64 carbonKeyCode)
{
    const Key* key = keyWithCode(carbonKeyCode);
    return key && key->qtKey >= Qt::Key_F1 && key->qtKey <= Qt::Key_F20;
}

bool isModifierKey(Qt::Key key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

QString modifierText(qint64 carbonModifiers)
{
    // Qt's order, whatever order they were pressed in.
    const Qt::KeyboardModifiers modifiers = qtModifiers(carbonModifiers);
    QString text;
    if (modifiers & Qt::MetaModifier)
        text += modifierName(QT_TRANSLATE_NOOP("QShortcut", "Meta"));
    if (modifiers & Qt::ControlModifier)
        text += modifierName(QT_TRANSLATE_NOOP("QShortcut", "Ctrl"));
    if (modifiers & Qt::AltModifier)
        text += modifierName(QT_TRANSLATE_NOOP("QShortcut", "Alt"));
    if (modifiers & Qt::ShiftModifier)
        text += modifierName(QT_TRANSLATE_NOOP("QShortcut", "Shift"));
    return text;
}

QString keyText(qint64 carbonKeyCode)
{
    const Key* key = keyWithCode(carbonKeyCode);
    if (!key)
        return QStringLiteral("\uFFFD");
    if (key->qtKey >= Qt::Key_F1 && key->qtKey <= Qt::Key_F35)
        return QCoreApplication::translate("QShortcut", "F%1").arg(key->qtKey - Qt::Key_F1 + 1);
    const auto named = std::find_if(keyNames.begin(), keyNames.end(),
                                    [key](const KeyName& k) { return k.qtKey == key->qtKey; });
    if (named != keyNames.end())
        return QCoreApplication::translate("QShortcut", named->name);
    // The rest type one character of Latin-1; Qt's key value is that character, letters in upper case.
    return QString(QChar(key->qtKey));
}

QString displayString(const GlobalHotkeys::Shortcut& shortcut)
{
    const Key* key = keyWithCode(shortcut.carbonKeyCode);
    const QString keypad =
        key && key->keypad ? modifierName(QT_TRANSLATE_NOOP("QShortcut", "Num")) : QString();
    return modifierText(shortcut.carbonModifiers) + keypad + keyText(shortcut.carbonKeyCode);
}

} // namespace KeyTranslation
