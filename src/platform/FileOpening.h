#pragma once

#include "platform/ActivationToken.h"

#include <QString>
#include <QUrl>

namespace ostrelle {

/// Opens files and addresses, and shows files, by the desktop's means. Nothing here blocks; a failure is logged. Main
/// thread.
class FileOpening
{
public:
    virtual ~FileOpening() = default;

    /// With the default application of the file's kind; a folder in the file manager.
    virtual void open(const QString &path, const ActivationToken &token) = 0;
    /// A web address, in the user's browser.
    virtual void openAddress(const QUrl &address, const ActivationToken &token) = 0;
    /// Shows the file selected in its folder, or opens that folder where the file manager cannot select.
    virtual void reveal(const QString &path, const ActivationToken &token) = 0;
};

} // namespace ostrelle
