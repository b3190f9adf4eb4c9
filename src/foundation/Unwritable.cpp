#include "foundation/Unwritable.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <atomic>
#include <cerrno>
#include <unistd.h>

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcUnwritable, "ostrelle.foundation", QtWarningMsg)

/// Of a folder that does not exist yet, where it would be made.
bool refusesWrites(QByteArray folder)
{
    while (::access(folder.constData(), W_OK) != 0) {
        const int error = errno;
        if (error != ENOENT || folder.lastIndexOf('/') <= 0)
            return error == EROFS || error == EACCES || error == EPERM;
        folder.truncate(folder.lastIndexOf('/'));
    }
    return false;
}

} // namespace

bool reportUnwritable(const QString &folder)
{
    static std::atomic<bool> isReported = false;
    if (!refusesWrites(QFile::encodeName(QDir::cleanPath(folder))))
        return false;
    if (!isReported.exchange(true))
        qCWarning(lcUnwritable, "%s cannot be written: what is copied or changed now is lost when the program ends",
                  qUtf8Printable(folder));
    return true;
}

} // namespace ostrelle
