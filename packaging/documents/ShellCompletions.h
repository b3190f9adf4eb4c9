#pragma once

#include <QString>

namespace ostrelle {

// Each finds out in its shell's own words at which place of completionPlaces() the cursor stands.
QString bashCompletion();
QString zshCompletion();
QString fishCompletion();

} // namespace ostrelle
