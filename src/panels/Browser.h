#pragma once

class QUrl;

/// Every address the drop-down window hands to the desktop goes through here, so the rule for switched-off
/// links lives in one place and tests catch the call with `QDesktopServices::setUrlHandler`.
namespace Browser {

/// Opens the address in the default browser; an empty or malformed address (a page switched off) does
/// nothing and returns false.
bool open(const QUrl& url);

} // namespace Browser
