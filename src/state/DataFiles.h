#pragma once

#include <QString>

/// Finds a file shipped with Glowdeck (the diagnostic script, the user guide) by its path below the data
/// folder, e.g. "scripts/send_debug.rb". Looks, in this order, in $GLOWDECK_DATA_DIR, in "../share/glowdeck"
/// from the running program's folder (an installed program, wherever its prefix was moved), in the source
/// tree's "data" folder (a program run from the build tree) and in the configured installation prefix's data
/// folder. Returns an empty string when none of them holds the file.
QString dataFilePath(const QString& relativePath);
