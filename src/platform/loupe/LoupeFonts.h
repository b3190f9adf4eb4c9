#pragma once

#include <QFont>

namespace ostrelle::loupeFonts {

/// Of that many pixels, as the rest of the program writes.
QFont caption(int pixels, QFont::Weight weight);
/// Figures of one width.
QFont monospaced(int pixels);

} // namespace ostrelle::loupeFonts
