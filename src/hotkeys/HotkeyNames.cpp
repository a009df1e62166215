#include "hotkeys/HotkeyNames.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

GlobalHotkeys::Name name(const char* rawValue, const char* description)
{
    return {QString::fromLatin1(rawValue), std::nullopt,
            QCoreApplication::translate("HotkeyNames", description)};
}

} // namespace

namespace HotkeyNames {

const QList<GlobalHotkeys::Name>& all()
{
    // Made on first use, once the application (and its translations) exist.
    static const QList<GlobalHotkeys::Name> names = {
        name("allLightsOn", QT_TRANSLATE_NOOP("HotkeyNames", "Switch every room on")),
        name("allLightsOff", QT_TRANSLATE_NOOP("HotkeyNames", "Switch every room off")),
        name("allLightsBrighter", QT_TRANSLATE_NOOP("HotkeyNames", "Make every room brighter")),
        name("allLightsDarker", QT_TRANSLATE_NOOP("HotkeyNames", "Make every room darker")),
        name("allLightsRed", QT_TRANSLATE_NOOP("HotkeyNames", "Turn every room red")),
        name("allLightsBlue", QT_TRANSLATE_NOOP("HotkeyNames", "Turn every room blue")),
        name("allLightsWhite", QT_TRANSLATE_NOOP("HotkeyNames", "Turn every room white")),
        name("actionCustomGroup1", QT_TRANSLATE_NOOP("HotkeyNames", "Room action 1")),
        name("actionCustomGroup2", QT_TRANSLATE_NOOP("HotkeyNames", "Room action 2")),
        name("actionCustomGroup3", QT_TRANSLATE_NOOP("HotkeyNames", "Room action 3")),
        name("actionCustomGroup4", QT_TRANSLATE_NOOP("HotkeyNames", "Room action 4")),
        name("actionCustomGroup5", QT_TRANSLATE_NOOP("HotkeyNames", "Room action 5")),
        name("openGlowdeck", QT_TRANSLATE_NOOP("HotkeyNames", "Open Glowdeck")),
    };
    return names;
}

const QList<GlobalHotkeys::Name>& everything()
{
    static const QList<GlobalHotkeys::Name> names = all().first(7);
    return names;
}

const GlobalHotkeys::Name& allLightsOn()
{
    return all().at(0);
}

const GlobalHotkeys::Name& allLightsOff()
{
    return all().at(1);
}

const GlobalHotkeys::Name& allLightsBrighter()
{
    return all().at(2);
}

const GlobalHotkeys::Name& allLightsDarker()
{
    return all().at(3);
}

const GlobalHotkeys::Name& allLightsRed()
{
    return all().at(4);
}

const GlobalHotkeys::Name& allLightsBlue()
{
    return all().at(5);
}

const GlobalHotkeys::Name& allLightsWhite()
{
    return all().at(6);
}

const GlobalHotkeys::Name& openGlowdeck()
{
    return all().at(12);
}

const GlobalHotkeys::Name& customGroup(int number)
{
    Q_ASSERT(number >= 1 && number <= customGroupCount);
    return all().at(6 + std::clamp(number, 1, customGroupCount));
}

} // namespace HotkeyNames
