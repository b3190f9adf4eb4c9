#pragma once

#include <QStringView>

namespace ostrelle {

/// "http://" or "https://" in lower case, then at least one character and no white space.
bool isWebAddress(QStringView text);

/// User-perceived characters (extended grapheme clusters, UAX #29).
qsizetype characterCount(QStringView text);

/// Canonical equivalence (UAX #15). Reads no further than to the first difference.
bool canonicallyEqual(QStringView left, QStringView right);

} // namespace ostrelle
