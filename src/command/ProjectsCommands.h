#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runProjectsList(const Invocation &invocation);
ExitStatus runProjectsAdd(const Invocation &invocation);
ExitStatus runProjectsRename(const Invocation &invocation);
ExitStatus runProjectsMove(const Invocation &invocation);
ExitStatus runProjectsRemove(const Invocation &invocation);
ExitStatus runProjectsOpen(const Invocation &invocation);

} // namespace ostrelle
