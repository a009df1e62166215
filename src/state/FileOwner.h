#pragma once

#include <QString>

/// Who owns an entry on disk, so that a symbolic link in the settings file's place is followed only where
/// this user put it. One implementation per system; CMake compiles exactly one.
namespace FileOwner {

/// Whether the entry at @p path itself (a symbolic link, not what it leads to) belongs to the user this
/// program runs as. False where the system cannot tell.
bool isOwnedByThisUser(const QString& path);

} // namespace FileOwner
