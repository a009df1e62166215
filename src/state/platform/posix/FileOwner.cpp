#include "state/FileOwner.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace FileOwner {

bool isOwnedByThisUser(const QString& path)
{
    // lstat: a link is judged by who made it, not by what it leads to.
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && status.st_uid == ::geteuid();
}

} // namespace FileOwner
