#pragma once

#include <QString>

namespace ostrelle {

/// A file's size as people read it, in decimal units: "Zero KB", "1 KB" at least, "12.3 MB", "1.25 GB".
QString byteCountString(qint64 bytes);

} // namespace ostrelle
