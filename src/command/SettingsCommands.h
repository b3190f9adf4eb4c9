#pragma once

#include "command/CommandTable.h"

namespace ostrelle {

/// Opens the window.
ExitStatus runSettings(const Invocation &invocation);
ExitStatus runSettingsList(const Invocation &invocation);
ExitStatus runSettingsGet(const Invocation &invocation);
ExitStatus runSettingsSet(const Invocation &invocation);
ExitStatus runSettingsReset(const Invocation &invocation);

} // namespace ostrelle
