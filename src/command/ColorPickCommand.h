#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

/// Lets the running program open its loupe and prints the colour picked; becomes a loupe without a notch (same process
/// id) when none runs.
ExitStatus runColorPick(const Invocation &invocation);

} // namespace ostrelle
