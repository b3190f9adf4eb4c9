#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runAutostartOn(const Invocation &invocation);
ExitStatus runAutostartOff(const Invocation &invocation);
ExitStatus runAutostartStatus(const Invocation &invocation);

} // namespace ostrelle
