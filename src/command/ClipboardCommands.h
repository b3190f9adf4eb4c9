#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

ExitStatus runClipboardList(const Invocation &invocation);
ExitStatus runClipboardCopy(const Invocation &invocation);
ExitStatus runClipboardPin(const Invocation &invocation);
ExitStatus runClipboardDelete(const Invocation &invocation);
ExitStatus runClipboardClear(const Invocation &invocation);

} // namespace ostrelle
