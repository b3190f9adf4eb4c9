#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runThumbnail(const Invocation &invocation);

} // namespace ostrelle
