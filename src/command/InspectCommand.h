#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runInspect(const Invocation &invocation);

} // namespace ostrelle
