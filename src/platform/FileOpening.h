#pragma once

#include "platform/ActivationToken.h"

#include <QString>

namespace ostrelle {

/// Opens and shows files by the desktop's means. Nothing here blocks; a failure is logged. Main thread.
class FileOpening
{
public:
    virtual ~FileOpening() = default;

    /// With the default application of the file's kind; a folder in the file manager.
    virtual void open(const QString &path, const ActivationToken &token) = 0;
    /// Shows the file selected in its folder, or opens that folder where the file manager cannot select.
    virtual void reveal(const QString &path, const ActivationToken &token) = 0;
};

} // namespace ostrelle
