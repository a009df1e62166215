#include "CtlHotkeys.h"

#include "CtlCommon.h"

#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyActions.h"
#include "hotkeys/HotkeyNames.h"
#include "hotkeys/KeyTranslation.h"
#include "state/JsonSettingsStore.h"
#include "state/Preferences.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;
using Kind = GroupHotkeyAction::Kind;

/// What there is to read without a settings file: nothing. Nothing is written here either.
class NoSettings final : public SettingsStore
{
public:
    bool contains(const QString&) const override { return false; }
    QVariant value(const QString&) const override { return {}; }
    void setValue(const QString&, const QVariant&) override {}
    void remove(const QString&) override {}
};

/// One shortcut as listed.
struct Entry
{
    QString name;
    std::optional<Shortcut> shortcut;
    bool unreadable = false;       ///< something is stored that is not a shortcut
    QString action;                ///< what it does, in words
    std::optional<QString> choice; ///< a custom shortcut's stored choice ("<bridge id>/3_on", "no_action")
};

/// Which bridge `action` acts on, as the listing names it: nothing with one bridge stored (and the choice for
/// it), else the bridge's name, or its id when it has none or is not stored.
QString bridgeOf(const GroupHotkeyAction& action, const QList<BridgeContact>& bridges)
{
    // A choice without a bridge id was made for the first stored bridge.
    const BridgeContact* bridge = bridges.isEmpty() ? nullptr : &bridges.first();
    if (!action.bridgeId.isEmpty()) {
        bridge = nullptr;
        for (const BridgeContact& contact : bridges) {
            if (contact.id.compare(action.bridgeId, Qt::CaseInsensitive) == 0)
                bridge = &contact;
        }
        if (!bridge)
            return Ctl::Text::tr("bridge %1, not stored").arg(action.bridgeId);
    }
    if (!bridge || bridges.size() < 2)
        return {};
    if (!bridge->name.isEmpty())
        return bridge->name;
    return bridge->id.isEmpty() ? Ctl::Text::tr("the first bridge") : bridge->id;
}

QString customAction(const QString& choice, const QList<BridgeContact>& bridges)
{
    const GroupHotkeyAction action = HotkeyActions::parseCustomGroupAction(choice);
    QString words;
    switch (action.kind) {
    case Kind::on:
        words = Ctl::Text::tr("room %1 on").arg(action.groupId);
        break;
    case Kind::off:
        words = Ctl::Text::tr("room %1 off").arg(action.groupId);
        break;
    case Kind::brighter:
        words = Ctl::Text::tr("room %1 brighter").arg(action.groupId);
        break;
    case Kind::darker:
        words = Ctl::Text::tr("room %1 darker").arg(action.groupId);
        break;
    case Kind::none:
        return choice == HotkeyActions::noAction
                   ? Ctl::Text::tr("nothing")
                   : Ctl::Text::tr("nothing (\"%1\" is no room action)").arg(choice);
    }
    const QString bridge = bridgeOf(action, bridges);
    return bridge.isEmpty() ? words : QStringLiteral("%1 (%2)").arg(words, bridge);
}

QList<Entry> readEntries(SettingsStore& store)
{
    // As the application reads it: a stored 0, or nothing, is 50.
    const Preferences preferences(store);
    const qint64 step = preferences.keyIncrement();
    const QList<BridgeContact> bridges = preferences.bridges();
    const QStringList everyRoom{Ctl::Text::tr("every room on"),
                                Ctl::Text::tr("every room off"),
                                Ctl::Text::tr("every room brighter by %1").arg(step),
                                Ctl::Text::tr("every room darker by %1").arg(step),
                                Ctl::Text::tr("every room red"),
                                Ctl::Text::tr("every room blue"),
                                Ctl::Text::tr("every room white")};
    QList<Entry> entries;
    const QList<GlobalHotkeys::Name>& names = HotkeyNames::all();
    for (qsizetype i = 0; i < names.size(); ++i) {
        Entry entry;
        entry.name = names.at(i).rawValue;
        entry.shortcut = GlobalHotkeys::readShortcut(store, entry.name);
        const QVariant stored = store.value(GlobalHotkeys::keyPrefix + entry.name);
        entry.unreadable = !entry.shortcut && stored.isValid() && stored != QVariant(false);
        if (i < everyRoom.size()) {
            entry.action = everyRoom.at(i);
        } else if (names.at(i) == HotkeyNames::openGlowdeck()) {
            entry.action = Ctl::Text::tr("open or close the Glowdeck window");
        } else {
            // Custom shortcut n reads slot n - 1.
            const int slot = HotkeyActions::slotOfCustomShortcut(int(i - everyRoom.size()) + 1);
            entry.choice = preferences.customGroupAction(slot).value_or(HotkeyActions::noAction);
            entry.action = customAction(*entry.choice, bridges);
        }
        entries.append(entry);
    }
    return entries;
}

QString keysOf(const Entry& entry)
{
    if (entry.shortcut)
        return KeyTranslation::displayString(*entry.shortcut);
    return entry.unreadable ? Ctl::Text::tr("(unreadable)") : QStringLiteral("-");
}

QString table(const QList<Entry>& entries)
{
    qsizetype nameWidth = 4;
    qsizetype keysWidth = 4;
    for (const Entry& entry : entries) {
        nameWidth = std::max(nameWidth, entry.name.size());
        keysWidth = std::max(keysWidth, keysOf(entry).size());
    }
    const auto line = [&](const QString& name, const QString& keys, const QString& action) {
        return name.leftJustified(nameWidth + 2) + keys.leftJustified(keysWidth + 2) + action + u'\n';
    };
    QString text = line(Ctl::Text::tr("NAME"), Ctl::Text::tr("KEYS"), Ctl::Text::tr("ACTION"));
    for (const Entry& entry : entries)
        text += line(entry.name, keysOf(entry), Ctl::printable(entry.action));
    return text;
}

QString json(const QList<Entry>& entries)
{
    QJsonArray array;
    for (const Entry& entry : entries) {
        QJsonObject object{{QStringLiteral("name"), entry.name}, {QStringLiteral("action"), entry.action}};
        object.insert(QStringLiteral("keys"), entry.shortcut ? QJsonValue(keysOf(entry)) : QJsonValue());
        object.insert(QStringLiteral("shortcut"),
                      entry.shortcut
                          ? QJsonValue(QJsonObject{
                                {QStringLiteral("carbonKeyCode"), entry.shortcut->carbonKeyCode},
                                {QStringLiteral("carbonModifiers"), entry.shortcut->carbonModifiers}})
                          : QJsonValue());
        if (entry.choice)
            object.insert(QStringLiteral("choice"), *entry.choice);
        array.append(object);
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Indented));
}

} // namespace

namespace CtlHotkeys {

int run(const CtlInvocation& invocation)
{
    // An absent file is read as empty, never created.
    const QString file = Ctl::settingsFileName(invocation);
    std::unique_ptr<SettingsStore> store;
    if (QFileInfo(file).isFile())
        store = std::make_unique<JsonSettingsStore>(file);
    else
        store = std::make_unique<NoSettings>();
    const QList<Entry> entries = readEntries(*store);
    Ctl::write(stdout, invocation.json ? json(entries) : table(entries));
    return exitDone;
}

} // namespace CtlHotkeys
