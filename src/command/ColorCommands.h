#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runColorList(const Invocation &invocation);
ExitStatus runColorAdd(const Invocation &invocation);
ExitStatus runColorFavorite(const Invocation &invocation);
ExitStatus runColorClear(const Invocation &invocation);

} // namespace ostrelle
