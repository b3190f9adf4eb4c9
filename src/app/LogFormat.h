#pragma once

namespace ostrelle {

/// Log lines read "ostrelle: message", with category and time where somebody asked for more than warnings. In the
/// journal they have their levels and categories.
void installLogFormat();

} // namespace ostrelle
