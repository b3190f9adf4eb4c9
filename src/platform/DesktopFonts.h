#pragma once

#include <QFont>

namespace ostrelle::desktopFonts {

/// The program's typeface for interfaces, else the desktop's; upright and of the size that fonts have at first.
QFont interfaceFont(QFont::Weight weight);
/// The same for figures and code: characters of one width, medium.
QFont monospacedFont();

} // namespace ostrelle::desktopFonts
