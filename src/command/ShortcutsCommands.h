#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runShortcutsList(const Invocation &invocation);
ExitStatus runShortcutsSet(const Invocation &invocation);
ExitStatus runShortcutsUnset(const Invocation &invocation);

} // namespace ostrelle
