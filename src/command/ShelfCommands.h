#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runShelfList(const Invocation &invocation);
ExitStatus runShelfAdd(const Invocation &invocation);
ExitStatus runShelfRemove(const Invocation &invocation);
ExitStatus runShelfClear(const Invocation &invocation);

} // namespace ostrelle
