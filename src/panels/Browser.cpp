#include "panels/Browser.h"

#include <QDesktopServices>
#include <QUrl>

namespace Browser {

bool open(const QUrl& url)
{
    if (url.isEmpty() || !url.isValid())
        return false;
    return QDesktopServices::openUrl(url);
}

} // namespace Browser
