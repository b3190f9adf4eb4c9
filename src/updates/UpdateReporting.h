#pragma once

#include "updates/UpdateState.h"

namespace ostrelle {

struct UpdateReport;

/// A state after a check, as the command tells it.
UpdateReport reportOf(const UpdateState &state);

} // namespace ostrelle
