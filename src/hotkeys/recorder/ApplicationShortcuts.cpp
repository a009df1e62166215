#include "hotkeys/recorder/ApplicationShortcuts.h"

#include "hotkeys/KeyTranslation.h"

#include <QAction>
#include <QApplication>
#include <QShortcut>
#include <QWidget>

namespace {

bool anyMatches(const QList<QKeySequence>& sequences, const GlobalHotkeys::Shortcut& shortcut)
{
    return std::any_of(sequences.cbegin(), sequences.cend(), [&](const QKeySequence& keys) {
        return keys.count() == 1 && KeyTranslation::shortcut(keys[0]) == shortcut;
    });
}

QString actionTitle(const QAction& action)
{
    QString title = action.text();
    title.remove(u'&');
    if (title.endsWith(u'…'))
        title.chop(1);
    return title.trimmed();
}

} // namespace

namespace ApplicationShortcuts {

std::optional<QString> titleOf(const GlobalHotkeys::Shortcut& shortcut)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        QList<QAction*> actions = window->findChildren<QAction*>();
        actions += window->actions();
        for (const QAction* action : std::as_const(actions)) {
            if (action->isEnabled() && anyMatches(action->shortcuts(), shortcut))
                return actionTitle(*action);
        }
        for (const QShortcut* windowShortcut : window->findChildren<QShortcut*>()) {
            if (!windowShortcut->isEnabled() || !anyMatches(windowShortcut->keys(), shortcut))
                continue;
            if (!windowShortcut->whatsThis().isEmpty())
                return windowShortcut->whatsThis();
            return windowShortcut->keys().constFirst().toString(QKeySequence::NativeText);
        }
    }
    return std::nullopt;
}

} // namespace ApplicationShortcuts
