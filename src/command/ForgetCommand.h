#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runForget(const Invocation &invocation);

} // namespace ostrelle
