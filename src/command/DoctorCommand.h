#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runDoctor(const Invocation &invocation);

} // namespace ostrelle
