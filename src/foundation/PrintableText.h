#pragma once

#include <QString>

namespace ostrelle {

/// `text` without control characters, so that nothing in it can steer a terminal.
QString printable(const QString &text);

} // namespace ostrelle
