#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runOpen(const Invocation &invocation);
ExitStatus runClose(const Invocation &invocation);
ExitStatus runToggle(const Invocation &invocation);
ExitStatus runQuit(const Invocation &invocation);
ExitStatus runStatus(const Invocation &invocation);
/// Opens the window of the first run.
ExitStatus runWelcome(const Invocation &invocation);

} // namespace ostrelle
