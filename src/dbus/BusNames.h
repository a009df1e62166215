#pragma once

#include <QString>

/// Where the running application is found on the session bus, and the names of its errors. The bus name is
/// the application id of the desktop entry.
namespace BusNames {

inline const QString service = QStringLiteral("com.brambleworks.Glowdeck");
inline const QString path = QStringLiteral("/com/brambleworks/Glowdeck");
inline const QString interface = QStringLiteral("com.brambleworks.Glowdeck");

/// No lamp, room or scene has that id or name.
inline const QString noSuchTarget = QStringLiteral("com.brambleworks.Glowdeck.Error.NoSuchTarget");
/// The id or name fits several lamps, rooms or scenes; the message lists them.
inline const QString ambiguous = QStringLiteral("com.brambleworks.Glowdeck.Error.Ambiguous");
/// A field of the change is unknown, of the wrong type or out of range.
inline const QString invalidArgs = QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");

/// The version of the shape of the records (JSON and D-Bus alike); raised when a field changes its meaning or
/// goes, not when one is added.
constexpr int recordsVersion = 1;

} // namespace BusNames
