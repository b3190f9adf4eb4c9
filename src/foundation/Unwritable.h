#pragma once

#include <QString>

namespace ostrelle {

/// True when nothing can be written in `folder` because its mount or its permissions refuse. The first such folder is
/// told in one warning, the only one of this process about it: whoever failed to write there adds nothing. Any thread.
bool reportUnwritable(const QString &folder);

} // namespace ostrelle
