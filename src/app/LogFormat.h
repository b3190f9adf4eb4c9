#pragma once

namespace ostrelle {

/// Log lines read "ostrelle: message", with category and time where somebody asked for more than warnings.
void installLogFormat();

} // namespace ostrelle
