#pragma once

#include <QString>

namespace ostrelle {

/// A path as the text of a tooltip: whole, never taken for markup, and on several lines where it is long.
QString pathToolTip(const QString &path);

} // namespace ostrelle
