#pragma once

#include <QString>

namespace ostrelle {

/// The states of the notch.
enum class Phase { Idle, Hover, Expanded };

/// "idle", "hover", "expanded".
QString phaseName(Phase phase);

} // namespace ostrelle
