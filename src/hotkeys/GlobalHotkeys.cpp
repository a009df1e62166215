#include "hotkeys/GlobalHotkeys.h"

#include "hotkeys/HotkeyBackend.h"
#include "state/Console.h"
#include "state/SettingsStore.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr qint64 largestCode = std::numeric_limits<quint32>::max();

const QString keyCodeMember = QStringLiteral("carbonKeyCode");
const QString modifiersMember = QStringLiteral("carbonModifiers");

/// A member that is a whole number the platforms can take (they pass codes as unsigned 32-bit values).
std::optional<qint64> codeMember(const QJsonObject& object, const QString& member)
{
    const QJsonValue value = object.value(member);
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (std::trunc(number) != number || number < 0 || number > double(largestCode))
        return std::nullopt;
    return qint64(number);
}

bool inRange(qint64 code)
{
    return code >= 0 && code <= largestCode;
}

} // namespace

QString GlobalHotkeys::Shortcut::toJson() const
{
    const QJsonObject object{{keyCodeMember, carbonKeyCode}, {modifiersMember, carbonModifiers}};
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<GlobalHotkeys::Shortcut> GlobalHotkeys::Shortcut::fromJson(const QString& text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const std::optional<qint64> keyCode = codeMember(document.object(), keyCodeMember);
    const std::optional<qint64> modifiers = codeMember(document.object(), modifiersMember);
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut{*keyCode, *modifiers};
}

size_t qHash(const GlobalHotkeys::Shortcut& shortcut, size_t seed) noexcept
{
    return qHashMulti(seed, shortcut.carbonKeyCode, shortcut.carbonModifiers);
}

GlobalHotkeys::GlobalHotkeys(SettingsStore& store, HotkeyBackend& backend, QObject* parent)
    : QObject(parent), m_store(store), m_backend(backend)
{
    connect(&m_backend, &HotkeyBackend::pressed, this, &GlobalHotkeys::onPressed);
    connect(&m_backend, &HotkeyBackend::released, this, &GlobalHotkeys::onReleased);
    connect(&m_backend, &HotkeyBackend::unavailable, this, [this](const QString& reason) {
        m_unavailableReason = reason;
        Q_EMIT unavailable(reason);
    });
}

GlobalHotkeys::~GlobalHotkeys() = default;

void GlobalHotkeys::applyDefault(const Name& name)
{
    if (name.defaultShortcut && !m_store.contains(keyPrefix + name.rawValue))
        m_store.writeString(keyPrefix + name.rawValue, name.defaultShortcut->toJson());
}

std::optional<GlobalHotkeys::Shortcut> GlobalHotkeys::getShortcut(const Name& name) const
{
    return readShortcut(m_store, name.rawValue);
}

std::optional<GlobalHotkeys::Shortcut> GlobalHotkeys::readShortcut(const SettingsStore& store,
                                                                   const QString& rawValue)
{
    // The value as it is: false (cleared) is a stored form of its own here, not a string that failed to read.
    const QVariant stored = store.value(keyPrefix + rawValue);
    if (stored.typeId() != QMetaType::QString)
        return std::nullopt;
    return Shortcut::fromJson(stored.toString());
}

void GlobalHotkeys::setShortcut(std::optional<Shortcut> shortcut, const Name& name)
{
    if (shortcut && !(inRange(shortcut->carbonKeyCode) && inRange(shortcut->carbonModifiers)))
        qFatal("GlobalHotkeys: key code %lld or modifiers %lld out of range", shortcut->carbonKeyCode,
               shortcut->carbonModifiers);

    const std::optional<Shortcut> old = getShortcut(name);
    const QString key = keyPrefix + name.rawValue;
    if (shortcut)
        m_store.writeString(key, shortcut->toJson());
    else
        m_store.writeBool(key, false); // so that a default shortcut is not stored again

    // Another name may share the old combination: it keeps working for that one.
    if (old && old != shortcut && handledNamesWith(*old).isEmpty())
        unregisterShortcut(*old);
    if (shortcut && hasHandler(name.rawValue))
        registerShortcut(*shortcut);
    Q_EMIT shortcutByNameDidChange(name.rawValue);
}

void GlobalHotkeys::onKeyDown(const Name& name, Action action)
{
    addHandler(m_keyDownHandlers, name, std::move(action));
}

void GlobalHotkeys::onKeyUp(const Name& name, Action action)
{
    addHandler(m_keyUpHandlers, name, std::move(action));
}

void GlobalHotkeys::addHandler(HandlerTable& table, const Name& name, Action action)
{
    auto entry = std::find_if(table.begin(), table.end(), [&](const auto& e) { return e.first == name; });
    if (entry == table.end()) {
        table.append({name, {}});
        entry = std::prev(table.end());
    }
    entry->second.append(std::move(action));

    if (const std::optional<Shortcut> shortcut = getShortcut(name))
        registerShortcut(*shortcut);
    else
        reportUnreadable(name);
}

void GlobalHotkeys::removeAllHandlers()
{
    for (const quint32 id : m_hotKeys.keys())
        m_backend.unregisterHotKey(id);
    m_hotKeys.clear();
    m_keyDownHandlers.clear();
    m_keyUpHandlers.clear();
}

bool GlobalHotkeys::isAvailable() const
{
    return m_backend.isAvailable();
}

bool GlobalHotkeys::isTakenBySystem(const Shortcut& shortcut) const
{
    return !isRegistered(shortcut) && m_backend.isTakenBySystem(shortcut);
}

bool GlobalHotkeys::isRegistered(const Shortcut& shortcut) const
{
    return std::find(m_hotKeys.cbegin(), m_hotKeys.cend(), shortcut) != m_hotKeys.cend();
}

bool GlobalHotkeys::hasHandler(const QString& rawValue) const
{
    const auto named = [&](const auto& entry) { return entry.first.rawValue == rawValue; };
    return std::any_of(m_keyDownHandlers.cbegin(), m_keyDownHandlers.cend(), named) ||
           std::any_of(m_keyUpHandlers.cbegin(), m_keyUpHandlers.cend(), named);
}

QList<GlobalHotkeys::Name> GlobalHotkeys::handledNamesWith(const Shortcut& shortcut) const
{
    QList<Name> names;
    for (const HandlerTable* table : {&m_keyDownHandlers, &m_keyUpHandlers}) {
        for (const auto& [name, actions] : *table) {
            if (!names.contains(name) && getShortcut(name) == shortcut)
                names.append(name);
        }
    }
    return names;
}

void GlobalHotkeys::registerShortcut(const Shortcut& shortcut)
{
    if (isRegistered(shortcut))
        return;
    const quint32 id = ++m_lastHotKeyId;
    QStringList descriptions;
    for (const Name& name : handledNamesWith(shortcut))
        descriptions.append(name.description.isEmpty() ? name.rawValue : name.description);
    // A combination the desktop refuses (held by another program, no such key here) simply does not work.
    if (m_backend.registerHotKey(id, shortcut, descriptions.join(QStringLiteral(", "))))
        m_hotKeys.insert(id, shortcut);
}

void GlobalHotkeys::unregisterShortcut(const Shortcut& shortcut)
{
    for (auto it = m_hotKeys.begin(); it != m_hotKeys.end();) {
        if (it.value() == shortcut) {
            m_backend.unregisterHotKey(it.key());
            it = m_hotKeys.erase(it);
        } else {
            ++it;
        }
    }
}

void GlobalHotkeys::onPressed(quint32 id)
{
    dispatch(m_keyDownHandlers, id);
}

void GlobalHotkeys::onReleased(quint32 id)
{
    dispatch(m_keyUpHandlers, id);
}

void GlobalHotkeys::dispatch(const HandlerTable& table, quint32 id)
{
    if (m_paused || !m_hotKeys.contains(id))
        return;
    const Shortcut shortcut = m_hotKeys.value(id);
    // A copy: an action may add handlers or change shortcuts.
    const HandlerTable handlers = table;
    for (const auto& [name, actions] : handlers) {
        if (getShortcut(name) != shortcut)
            continue;
        for (const Action& action : actions)
            action();
    }
}

void GlobalHotkeys::reportUnreadable(const Name& name)
{
    const QString key = keyPrefix + name.rawValue;
    const QVariant stored = m_store.value(key);
    const bool cleared = stored.typeId() == QMetaType::Bool && !stored.toBool();
    if (!stored.isValid() || cleared || m_reportedUnreadable.contains(key))
        return;
    m_reportedUnreadable.append(key);
    printLine(
        QStringLiteral("Glowdeck: the shortcut stored under \"%1\" is not one Glowdeck can read; it does "
                       "nothing until you record a new one.")
            .arg(key));
}
