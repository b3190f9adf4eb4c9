#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runUpdateCheck(const Invocation &invocation);

} // namespace ostrelle
