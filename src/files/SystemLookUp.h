#pragma once

#include "files/FileLookUp.h"

namespace ostrelle {

/// Asks the kernel.
class SystemLookUp final : public FileLookUp
{
public:
    Entry entry(const QByteArray &path) const override;
    /// From /proc/self/mountinfo (proc(5)), which never touches what is mounted.
    QList<QByteArray> mountPoints() const override;
};

} // namespace ostrelle
