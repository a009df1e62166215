#pragma once

class QLocale;

namespace Translations {

/// Installs Glowdeck's texts and Qt's own (the standard buttons, the command-line help's headings) in the
/// language of `locale` on the running application; they go with it. Glowdeck's translations are built into
/// the program; Qt's are read from Qt's translations folder where the distribution installed them. A language
/// Glowdeck does not speak gets English. Returns whether Glowdeck speaks the language of `locale`.
bool install(const QLocale& locale);

} // namespace Translations
