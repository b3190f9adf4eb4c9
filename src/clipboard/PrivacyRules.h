#pragma once

#include "platform/Frontmost.h"

#include <QStringList>

#include <optional>

namespace ostrelle {

/// True when the owner of the clipboard marked its content as none of a history's business (nspasteboard.org).
bool isConcealed(const QStringList &types);

/// True when the application goes by any of the `excluded` identifiers, compared exactly.
bool isExcluded(const std::optional<Application> &application, const QStringList &excluded);

} // namespace ostrelle
